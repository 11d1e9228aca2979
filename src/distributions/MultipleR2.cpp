#include "distributions/MultipleR2.h"

#include <algorithm>
#include <cmath>

#include "distributions/Common.h"
#include "distributions/MultipleR2Series.h"
#include "distributions/NoncentralF.h"
#include "distributions/Normal.h"

namespace poweranalysis {

namespace {

using r2::Cancelled;
using r2::NotComputed;
using r2::Watch;

bool AreCounts(std::int32_t n, std::int32_t k) { return k >= 2 && n > k; }
bool IsInside(double p) { return p > 0.0 && p < 1.0; }
bool IsFraction(double x) { return x >= 0.0 && x <= 1.0; }

double CdfExact(double x, double rho2, std::int32_t n, std::int32_t k, int& failure, Watch& watch) {
  failure = 0;
  if (!AreCounts(n, k) || !IsFraction(x) || !(rho2 >= 0.0 && rho2 < 1.0)) {
    failure = NotComputed;
    return R2CdfFailure;
  }
  return r2::SeriesSum(r2::SeriesShape(x, rho2, n, k), failure, watch);
}

// Gives the noncentrality as well: the length of its series is the work of the call.
double CdfLee(double x, double rho2, std::int32_t n, std::int32_t k, int& failure, double& delta) {
  failure = 0;
  if (!AreCounts(n, k) || !IsFraction(x) || !(rho2 >= 0.0)) {
    failure = NotComputed;
    return R2CdfFailure;
  }
  const double v = x / (1.0 - x);
  const double N = n - 1.0;
  const double P = k - 1.0;
  const double Q = N - P;
  const double g = 1.0 / (1.0 - rho2);
  if (rho2 >= 1.0) {
    return 0.0;
  }
  const double p1 = (g - 1.0) * N + P;
  const double p2 = (g * g - 1.0) * N + P;
  const double p3 = (g * g * g - 1.0) * N + P;
  const double c = (p2 - std::sqrt(std::max(0.0, p2 * p2 - p3 * p1))) / p1;
  const double nu = (p2 - 2.0 * (g - 1.0) * std::sqrt(g) * std::sqrt(Q * N)) / (c * c);
  delta = std::sqrt(Q * N) * (g - 1.0) * std::sqrt(g) / (c * c);
  const double p = NoncentralFCdf(Q * v / (nu * c), nu, Q, delta, failure);
  return failure != 0 ? R2CdfFailure : p;
}

// About the work of the noncentral F distribution with this delta, in terms of the exact series:
// its terms, each with a continued fraction that grows with the root of the degrees of freedom.
std::int64_t LeeWork(double delta, double Q) {
  if (!(delta > 0.0)) {
    return 4;
  }
  const double terms = std::min(1e5, 32.0 + delta / 2.0 + 8.0 * std::sqrt(delta));
  return static_cast<std::int64_t>(terms * (4.0 + std::sqrt(Q) / 8.0));
}

// A distribution function of R2 as the searches see it.
struct Cdf {
  std::int32_t n;
  std::int32_t k;
  std::int16_t algorithm;

  double operator()(double x, double rho2, int& failure, Watch& watch) const {
    switch (algorithm) {
      case R2Lee: {
        double delta = 0.0;
        const double p = CdfLee(x, rho2, n, k, failure, delta);
        watch.Count(LeeWork(delta, static_cast<double>(n) - k));
        return p;
      }
      case R2Exact:
        return CdfExact(x, rho2, n, k, failure, watch);
      default:
        failure = NotComputed;
        return R2CdfFailure;
    }
  }
};

// The constants of a secant search.
struct SecantBounds {
  double tolerance;
  double lower;
  double upper;
};

constexpr SecantBounds QuantileBounds = {1e-07, 1e-07, 0.99999999};
constexpr SecantBounds RhoBounds = {1e-08, 0.0, 0.999999};
constexpr double FlatSlope = 1e-35;
constexpr double LargestResidual = 0.0001;
constexpr int FirstCounter = 3;  // the points beside and at the start have been evaluated
constexpr int PassLimit = 10000;

double Clamped(double value, const SecantBounds& bounds) {
  return std::min(bounds.upper, std::max(bounds.lower, value));
}

// True when the search cannot or must not go on from this residual.
bool MustStop(double f, int& failure, Watch& watch) {
  if (failure == Cancelled || watch.Ask()) {
    failure = Cancelled;
    return true;
  }
  if (std::isnan(f) || watch.IsExhausted()) {
    failure = NotComputed;
    return true;
  }
  return false;
}

// Secant steps from a point with residual f and a slope there. The order of the tests matters: a
// short step ends the search before its residual is looked at.
template <class Residual>
double SecantSteps(double point,
                   double f,
                   double slope,
                   const SecantBounds& bounds,
                   const Residual& residual,
                   int& failure,
                   Watch& watch) {
  int counter = FirstCounter;
  while (!(std::fabs(slope) < FlatSlope)) {
    const double previous = point;
    const double previousResidual = f;
    point = Clamped(point - f / slope, bounds);
    f = residual(point);
    if (MustStop(f, failure, watch)) {
      return point;
    }
    if (std::fabs(point - previous) <= bounds.tolerance) {
      break;
    }
    if (counter >= PassLimit) {
      failure = NotComputed;
      break;
    }
    if (std::fabs(f) <= bounds.tolerance) {
      break;
    }
    ++counter;
    slope = (f - previousResidual) / (point - previous);
  }
  if (!(std::fabs(f) <= LargestResidual)) {
    failure = NotComputed;
  }
  return point;
}

// The quantile by the cube root of the noncentral F distribution.
double QuantileStart(double rho2, std::int32_t n, std::int32_t k, double p) {
  const double Q = static_cast<double>(n) - k;
  const double z = NormalQuantile(p);
  const double g = 1.0 / (1.0 - rho2);
  const double a = n * rho2 / (1.0 - rho2) + k - 1.0;
  const double b = n * (g * g - 1.0) + k - 1.0;
  const double c = 2.0 * b / (9.0 * a * a);
  const double e = 2.0 / (9.0 * Q);
  const double f = 1.0 - 1.0 / (9.0 * Q);
  const double root = std::sqrt((1.0 - c) * (1.0 - c) * e + f * f * c - c * e * z * z);
  const double W = (z * root + (1.0 - c) * f) / (f * f - e * z * z);
  const double F0 = W * W * W * a;
  const double start = F0 / (F0 + Q);
  return std::isnan(start) ? 0.5 : std::min(0.999999, std::max(0.0, start));
}

double Quantile(double rho2, double p, const Cdf& cdf, int& failure, Watch& watch) {
  failure = 0;
  if (!AreCounts(cdf.n, cdf.k) || !(rho2 >= 0.0 && rho2 < 1.0) || !IsInside(p)) {
    failure = NotComputed;
    return NumericFailure;
  }
  watch.BeginSearch();
  const auto residual = [&](double x) { return cdf(x, rho2, failure, watch) - p; };
  const double x0 = QuantileStart(rho2, cdf.n, cdf.k, p);
  const double f0 = residual(x0);
  if (MustStop(f0, failure, watch)) {
    return x0;
  }
  const double h = std::max(x0 * 1e-06, 1e-06);
  // Below zero there is no distribution function to take a slope from.
  const bool upwards = x0 - h < 0.0;
  const double x1 = upwards ? x0 + h : x0 - h;
  const double f1 = residual(x1);
  if (MustStop(f1, failure, watch)) {
    return x1;
  }
  // Kept: only the point beside the start is looked at, not the start.
  if (std::fabs(f1) <= QuantileBounds.tolerance) {
    return x1;
  }
  const double slope = (upwards ? f1 - f0 : f0 - f1) / h;
  return SecantSteps(x0, f0, slope, QuantileBounds, residual, failure, watch);
}

double RhoForP(double start, double r2, double target, const Cdf& cdf, int& failure, Watch& watch) {
  failure = 0;
  if (!AreCounts(cdf.n, cdf.k) || !IsInside(target) || std::isnan(r2) || !std::isfinite(start)) {
    failure = NotComputed;
    return NumericFailure;
  }
  watch.BeginSearch();
  const auto residual = [&](double rho2) { return cdf(r2, rho2, failure, watch) - target; };
  const double f = residual(start);
  if (MustStop(f, failure, watch) || std::fabs(f) <= RhoBounds.tolerance) {
    return start;
  }
  const double h = std::max(start * 1e-06, 1e-12);
  const double beside = Clamped(start - h, RhoBounds);
  const double besideResidual = residual(beside);
  if (MustStop(besideResidual, failure, watch)) {
    return beside;
  }
  // Kept: the slope takes the whole h even when the point beside was clamped; at a start of 0 it
  // is 0 and the search ends there.
  const double slope = (f - besideResidual) / h;
  if (std::fabs(besideResidual) <= RhoBounds.tolerance) {
    // Kept: zero and not the point, unlike the search for a quantile.
    return 0.0;
  }
  return SecantSteps(start, f, slope, RhoBounds, residual, failure, watch);
}

// The hypothesis forms of a critical value.
enum HypothesisForm : std::int16_t { TwoSided = 0, UpperTail = 1, LowerTail = 2, AgainstZero = 3 };

// The probability of a critical value; 0, which no quantile has, for an unknown form or side.
double CriticalProbability(double alpha, double rho2, std::int16_t form, std::int16_t side) {
  if (rho2 == 0.0 && (form == TwoSided || form == UpperTail)) {
    form = AgainstZero;
  }
  switch (form) {
    case TwoSided:
      return side == 0 ? 1.0 - alpha / 2.0 : (side == 1 ? alpha / 2.0 : 0.0);
    case UpperTail:
    case AgainstZero:
      return 1.0 - alpha;
    case LowerTail:
      return alpha;
    default:
      return 0.0;
  }
}

// Mean and standard deviation of the normal approximation that the limits start from.
struct NormalStart {
  NormalStart(double r2, double n, double k)
      : mean(r2 - (k - 3.0) * (1.0 - r2) / (n - k)),
        deviation(std::sqrt(4.0 * (1.0 - r2) * (1.0 - r2) * r2 * (n - k) * (n - k) /
                            ((n * n - 1.0) * (n + 3.0)))) {}

  double At(double p) const { return mean - NormalQuantile(p) * deviation; }

  double mean;
  double deviation;
};

// Searches with Lee's form and, for the exact algorithm, again from its answer.
double Limit(double start, double r2, double target, Cdf cdf, int& failure, Watch& watch) {
  const std::int16_t algorithm = cdf.algorithm;
  cdf.algorithm = R2Lee;
  const double rho2 = RhoForP(start, r2, target, cdf, failure, watch);
  if (algorithm != R2Exact || failure == Cancelled) {
    return rho2;
  }
  cdf.algorithm = R2Exact;
  return RhoForP(rho2, r2, target, cdf, failure, watch);
}

}  // namespace

double MultipleR2CdfExact(
    double x, double rho2, std::int32_t n, std::int32_t k, int& failure, SearchObserver& observer) {
  Watch watch(observer);
  return CdfExact(x, rho2, n, k, failure, watch);
}

double MultipleR2CdfExact(double x, double rho2, std::int32_t n, std::int32_t k, int& failure) {
  SilentObserver silent;
  return MultipleR2CdfExact(x, rho2, n, k, failure, silent);
}

double MultipleR2CdfLee(double x, double rho2, std::int32_t n, std::int32_t k, int& failure) {
  double delta = 0.0;
  return CdfLee(x, rho2, n, k, failure, delta);
}

double MultipleR2Cdf(double rho2,
                     std::int32_t n,
                     std::int32_t k,
                     double x,
                     std::int16_t algorithm,
                     int& failure,
                     SearchObserver& observer) {
  Watch watch(observer);
  return Cdf{n, k, algorithm}(x, rho2, failure, watch);
}

double MultipleR2Cdf(
    double rho2, std::int32_t n, std::int32_t k, double x, std::int16_t algorithm, int& failure) {
  SilentObserver silent;
  return MultipleR2Cdf(rho2, n, k, x, algorithm, failure, silent);
}

double MultipleR2Quantile(double rho2,
                          std::int32_t n,
                          std::int32_t k,
                          double p,
                          int& failure,
                          std::int16_t algorithm,
                          SearchObserver& observer) {
  Watch watch(observer);
  return Quantile(rho2, p, {n, k, algorithm}, failure, watch);
}

double MultipleR2Quantile(
    double rho2, std::int32_t n, std::int32_t k, double p, int& failure, std::int16_t algorithm) {
  SilentObserver silent;
  return MultipleR2Quantile(rho2, n, k, p, failure, algorithm, silent);
}

double MultipleR2CriticalValue(std::int32_t n,
                               std::int32_t k,
                               double alpha,
                               double rho2,
                               std::int16_t algorithm,
                               std::int16_t form,
                               int& failure,
                               std::int16_t side,
                               SearchObserver& observer) {
  const double p = CriticalProbability(alpha, rho2, form, side);
  return MultipleR2Quantile(rho2, n, k, p, failure, algorithm, observer);
}

double MultipleR2CriticalValue(std::int32_t n,
                               std::int32_t k,
                               double alpha,
                               double rho2,
                               std::int16_t algorithm,
                               std::int16_t form,
                               int& failure,
                               std::int16_t side) {
  SilentObserver silent;
  return MultipleR2CriticalValue(n, k, alpha, rho2, algorithm, form, failure, side, silent);
}

double MultipleR2RhoForP(double start,
                         std::int32_t n,
                         std::int32_t k,
                         double r2,
                         double target,
                         int& failure,
                         std::int16_t algorithm,
                         SearchObserver& observer) {
  Watch watch(observer);
  return RhoForP(start, r2, target, {n, k, algorithm}, failure, watch);
}

double MultipleR2RhoForP(double start,
                         std::int32_t n,
                         std::int32_t k,
                         double r2,
                         double target,
                         int& failure,
                         std::int16_t algorithm) {
  SilentObserver silent;
  return MultipleR2RhoForP(start, n, k, r2, target, failure, algorithm, silent);
}

void MultipleR2Interval(std::int32_t k,
                        double r2,
                        std::int32_t n,
                        double confidence,
                        double& lower,
                        double& upper,
                        double& oneSided,
                        int& lowerFailure,
                        int& upperFailure,
                        int& oneSidedFailure,
                        std::int16_t algorithm,
                        double& pValue,
                        SearchObserver& observer) {
  lowerFailure = upperFailure = oneSidedFailure = 0;
  lower = upper = oneSided = NumericFailure;
  Watch watch(observer);
  const Cdf cdf{n, k, algorithm};
  int failure = 0;
  const double c0 = CdfExact(r2, 0.0, n, k, failure, watch);
  if (failure != 0) {
    pValue = -1.0;
    return;
  }
  pValue = 1.0 - c0;
  if (!IsInside(confidence)) {
    lowerFailure = upperFailure = oneSidedFailure = NotComputed;
    return;
  }
  const NormalStart normal(r2, n, k);
  const double a = (1.0 - confidence) / 2.0;
  // Kept: a limit without a solution is 0, not a failure.
  lower = upper = oneSided = 0.0;
  if (1.0 - a < c0) {
    lower = Limit(std::max(0.0001, normal.At(1.0 - a)), r2, 1.0 - a, cdf, lowerFailure, watch);
  }
  if (a < c0) {
    const double at = normal.At(a);
    const double start = std::min(0.99999, at <= 0.0001 ? 2e-06 : at);
    upper = Limit(start, r2, a, cdf, upperFailure, watch);
  }
  if (confidence < c0) {
    const double start = std::min(0.99999, std::max(0.0001, normal.At(confidence)));
    oneSided = Limit(start, r2, confidence, cdf, oneSidedFailure, watch);
  }
}

void MultipleR2Interval(std::int32_t k,
                        double r2,
                        std::int32_t n,
                        double confidence,
                        double& lower,
                        double& upper,
                        double& oneSided,
                        int& lowerFailure,
                        int& upperFailure,
                        int& oneSidedFailure,
                        std::int16_t algorithm,
                        double& pValue) {
  SilentObserver silent;
  MultipleR2Interval(k, r2, n, confidence, lower, upper, oneSided, lowerFailure, upperFailure,
                     oneSidedFailure, algorithm, pValue, silent);
}

}  // namespace poweranalysis
