#include "distributions/EpsilonTable.h"

#include <algorithm>
#include <cmath>

#include "distributions/GaussKronrod21.h"

namespace poweranalysis::qags {

double EpsilonTable::Extrapolate(double element, double& abserr) {
  elements_[count_++] = element;
  ++calls_;
  abserr = Largest;
  double limit = element;
  if (count_ >= 3) {
    const int before = count_;
    bool converged = false;
    limit = Accelerate(abserr, converged);
    if (!converged) {
      Shift(before, (before - 1) / 2);
      abserr = ErrorOfLimit(limit);
    }
  }
  abserr = std::max(abserr, 5.0 * Epsilon * std::fabs(limit));
  return limit;
}

// Computes the new diagonal in place. Gives the element with the smallest error estimate; an entry
// that is too close to its neighbours, or irregular, cuts the table off there.
double EpsilonTable::Accelerate(double& abserr, bool& converged) {
  const int passes = (count_ - 1) / 2;
  double limit = elements_[count_ - 1];
  elements_[count_ + 1] = elements_[count_ - 1];
  elements_[count_ - 1] = Largest;
  int k = count_ - 1;
  for (int i = 1; i <= passes; ++i, k -= 2) {
    const double e0 = elements_[k - 2];
    const double e1 = elements_[k - 1];
    const double e2 = elements_[k + 2];
    const double magnitude = std::fabs(e1);
    const double delta2 = e2 - e1;
    const double delta3 = e1 - e0;
    const double err2 = std::fabs(delta2);
    const double err3 = std::fabs(delta3);
    const double tol2 = std::max(std::fabs(e2), magnitude) * Epsilon;
    const double tol3 = std::max(magnitude, std::fabs(e0)) * Epsilon;
    if (!(err2 > tol2 || err3 > tol3)) {
      abserr = err2 + err3;
      converged = true;
      return e2;
    }
    const double e3 = elements_[k];
    elements_[k] = e1;
    const double delta1 = e1 - e3;
    const double err1 = std::fabs(delta1);
    const double tol1 = std::max(magnitude, std::fabs(e3)) * Epsilon;
    const double ss = 1.0 / delta1 + 1.0 / delta2 - 1.0 / delta3;
    if (err1 <= tol1 || err2 <= tol2 || err3 <= tol3 || !(std::fabs(ss * e1) > 1e-4)) {
      count_ = i + i - 1;
      break;
    }
    const double next = e1 + 1.0 / ss;
    elements_[k] = next;
    const double error = err2 + std::fabs(next - e2) + err3;
    if (error <= abserr) {
      abserr = error;
      limit = next;
    }
  }
  return limit;
}

// Moves the new diagonal to the head of the table.
void EpsilonTable::Shift(int before, int passes) {
  if (count_ == CountLimit) {
    count_ = 2 * (CountLimit / 2) - 1;
  }
  int to = before % 2 == 0 ? 1 : 0;
  for (int i = 0; i <= passes; ++i, to += 2) {
    elements_[to] = elements_[to + 2];
  }
  if (before != count_) {
    for (int i = 0; i < count_; ++i) {
      elements_[i] = elements_[before - count_ + i];
    }
  }
}

double EpsilonTable::ErrorOfLimit(double limit) {
  if (calls_ < 4) {
    limits_[calls_ - 1] = limit;
    return Largest;
  }
  const double error =
      std::fabs(limit - limits_[2]) + std::fabs(limit - limits_[1]) + std::fabs(limit - limits_[0]);
  limits_[0] = limits_[1];
  limits_[1] = limits_[2];
  limits_[2] = limit;
  return error;
}

}  // namespace poweranalysis::qags
