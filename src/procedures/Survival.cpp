#include "procedures/Survival.h"

#include <algorithm>
#include <cmath>

#include "distributions/Normal.h"
#include "procedures/OneProportion.h"

namespace poweranalysis {

namespace {

// A whole number that a size or a count can hold, or SizeFailure.
std::int64_t WholeOrFailure(double whole) {
  constexpr double kLargest = 9e15;  // up to it every whole number is a double
  return std::fabs(whole) <= kLargest ? static_cast<std::int64_t>(whole) : SizeFailure;
}

// Both forms reject above; the critical value of the null of ">=" fails.
double CriticalZOf(double alpha, std::int16_t form, int& err) {
  return ZCritical(alpha, 0, 1, form, err, UpperSide);
}

bool IsRate(double pi) { return pi > 0 && pi < 1; }
bool HasHazardRatio(const LogRankTest& test) {
  return IsRate(test.pi1) && IsRate(test.pi2) && test.pi1 != test.pi2;
}

// The hazard ratio h and (h + 1) / (1 - h).
struct Hazards {
  explicit Hazards(const LogRankTest& test)
      : h(std::log(test.pi1) / std::log(test.pi2)), k((h + 1) / (1 - h)) {}
  double h;
  double k;
};

bool HasEvents(const ExponentialSurvivalTest& test) {
  return test.lambda1 > 0 && test.lambda2 > 0 && test.d >= 0;
}

double EventProbabilityOf(double lambda, const ExponentialSurvivalTest& test) {
  return EventProbability(lambda, test.d, test.t, test.t0);
}

// 1 - exp(-x) and 1 - (1 - exp(-x)) / x for an x so small that the differences would lose it.
double Lost(double x) { return -std::expm1(-x); }
double MeanLost(double x) { return x * (.5 - x * (1.0 / 6 - x / 24)); }

}  // namespace

double LogRankPower(std::int64_t n, const LogRankTest& test, int& err, std::int64_t& events) {
  err = 0;
  events = SizeFailure;
  int failure = 0;
  const double z = CriticalZOf(test.alpha, test.form, failure);
  if (failure != 0 || !HasHazardRatio(test)) {
    err = 1;
    return NumericFailure;
  }
  const Hazards hazards(test);
  const double h = hazards.h;
  const double u = h * h - 1;
  const double x =
      std::sqrt(-((test.pi1 - 2 + test.pi2) * (2 * static_cast<double>(n)) * (u * u))) /
          (std::sqrt(2.0) * (2 * h + h * h + 1)) -
      z;
  // Kept: floored from a rounded product, so that a whole number of events can show as one less.
  events = WholeOrFailure(std::floor(hazards.k * hazards.k * ((x + z) * (x + z))));
  if (events == SizeFailure || !std::isfinite(x)) {
    err = 1;
    events = SizeFailure;
    return NumericFailure;
  }
  return NormalCdf(x);
}

std::int64_t LogRankRequiredN(
    const LogRankTest& test, double goal, std::int64_t& events, int& err, Refusal& refusal) {
  err = 1;
  events = SizeFailure;
  // Kept: pi2 - pi1, so that form 1 asks for the larger rate in group 2, contrary to the wording of
  // its null hypothesis.
  if (NullHypothesisCheck(test.pi2 - test.pi1, test.form, SurvivalTolerance,
                          TrueNull::WithinTolerance, refusal) != 0) {
    return SizeFailure;
  }
  int failure = 0;
  const double zA = CriticalZOf(test.alpha, test.form, failure);
  if (failure != 0 || !HasHazardRatio(test)) {
    return SizeFailure;
  }
  const double zB = NormalQuantile(goal);
  const Hazards hazards(test);
  const double d = hazards.k * hazards.k * ((zA + zB) * (zA + zB));
  const std::int64_t n = WholeOrFailure(std::ceil(d / (2 - test.pi1 - test.pi2)));
  const std::int64_t whole = WholeOrFailure(d);
  if (n == SizeFailure || whole == SizeFailure) {
    return SizeFailure;
  }
  err = 0;
  events = whole;
  return n;
}

double EventProbability(double lambda, double d, double t, double t0) {
  const double s = lambda + d;
  // Below it the difference of two exponentials near 1 has lost six digits and more.
  constexpr double kSmall = 1e-3;
  if (t >= t0 && t * s < kSmall) {
    const double after = (t - t0) * s;
    return (lambda / s) * (Lost(after) + std::exp(-after) * MeanLost(t0 * s));
  }
  return (lambda / s) * (1 - (std::exp(-(t - t0) * s) - std::exp(-t * s)) / (s * t0));
}

double ExponentialSurvivalPower(std::int64_t n,
                                const ExponentialSurvivalTest& test,
                                Refusal& refusal) {
  if (NullHypothesisCheck(test.lambda2 - test.lambda1, test.form, SurvivalTolerance,
                          TrueNull::Exactly, refusal) != 0) {
    return NumericFailure;
  }
  int failure = 0;
  const double z = CriticalZOf(test.alpha, test.form, failure);
  if (failure != 0 || !HasEvents(test)) {
    return NumericFailure;
  }
  const double a = std::min(test.lambda1, test.lambda2);
  const double b = std::max(test.lambda1, test.lambda2);
  const double Pa = EventProbabilityOf(a, test);
  const double Pb = EventProbabilityOf(b, test);
  const double x =
      (-z * (Pa + Pb) - std::sqrt((Pa + Pb) * Pa) * std::sqrt(Pb) * (std::log(a) - std::log(b)) *
                            std::sqrt(static_cast<double>(n))) /
      (Pa + Pb);
  return std::isfinite(x) ? NormalCdf(x) : NumericFailure;
}

std::int64_t ExponentialSurvivalRequiredN(const ExponentialSurvivalTest& test,
                                          double goal,
                                          int& err,
                                          Refusal& refusal) {
  err = 1;
  if (NullHypothesisCheck(test.lambda2 - test.lambda1, test.form, SurvivalTolerance,
                          TrueNull::WithinTolerance, refusal) != 0 ||
      FollowUpCheck(test.t, test.t0, refusal) != 0) {
    return SizeFailure;
  }
  int failure = 0;
  const double zA = CriticalZOf(test.alpha, test.form, failure);
  if (failure != 0 || !HasEvents(test)) {
    return SizeFailure;
  }
  const double q = (NormalQuantile(goal) + zA) / (std::log(test.lambda1) - std::log(test.lambda2));
  const double n = std::ceil(
      (1 / EventProbabilityOf(test.lambda1, test) + 1 / EventProbabilityOf(test.lambda2, test)) *
      (q * q));
  const std::int64_t size = WholeOrFailure(n);
  err = size == SizeFailure ? 1 : 0;
  return size;
}

std::int16_t FollowUpCheck(std::int32_t t, std::int32_t t0, Refusal& refusal) {
  refusal = {};
  if (t >= t0) {
    return 0;
  }
  refusal.text = Said::FollowUpTooShort;
  return 1;
}

}  // namespace poweranalysis
