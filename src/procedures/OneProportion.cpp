#include "procedures/OneProportion.h"

#include <algorithm>
#include <cmath>

#include "distributions/Beta.h"
#include "distributions/Binomial.h"
#include "distributions/Normal.h"

namespace poweranalysis {

namespace {

bool HasRejectionRegion(std::int16_t form) {
  return form == H0TwoTailed || form == H0AtMost || form == H0AtLeast;
}

// Standard normal critical values, which serve every size of a test; a form reads those of its
// sides.
struct CriticalZ {
  double upper = NumericFailure;
  double lower = NumericFailure;
};

CriticalZ CriticalZOf(const OneProportionTest& test) {
  int ignored = 0;
  return {ZCritical(test.alpha, 0, 1, test.form, ignored, UpperSide),
          ZCritical(test.alpha, 0, 1, test.form, ignored, LowerSide)};
}

double CriticalCount(double n, double z, double pi, std::int16_t side, std::int16_t algorithm) {
  const double mean = n * pi;
  const double sd = std::sqrt((1 - pi) * mean);
  const double c = z * sd + mean;
  if (algorithm == ProportionNormal) {
    return c;
  }
  return side == UpperSide ? std::ceil(c) : std::floor(c);
}

// A count of n trials, by either algorithm.
class CountDistribution {
 public:
  CountDistribution(double n, double pi, std::int16_t algorithm)
      : n_(n), pi_(pi), mean_(n * pi), sd_(std::sqrt((1 - pi) * mean_)), algorithm_(algorithm) {}

  double ChanceBelow(double c) {
    if (algorithm_ != ProportionNormal) {
      return Exact(c - 1);
    }
    // Without variance the count is its mean, and a quotient of zeros says nothing about it.
    return sd_ == 0 ? static_cast<double>(c > mean_) : NormalCdf((c - mean_) / sd_);
  }
  double ChanceUpTo(double c) {
    if (algorithm_ != ProportionNormal) {
      return Exact(c);
    }
    return sd_ == 0 ? static_cast<double>(c >= mean_) : NormalCdf((c - mean_) / sd_);
  }
  bool failed() const { return failed_; }

 private:
  double Exact(double k) {
    int failure = 0;
    const double chance = BinomialCdf(n_, pi_, k, failure);
    failed_ = failed_ || failure != 0;
    return chance;
  }

  double n_;
  double pi_;
  double mean_;
  double sd_;
  std::int16_t algorithm_;
  bool failed_ = false;
};

// Power of n >= 1 trials for one of the three forms.
double PowerOfTrials(double n,
                     const OneProportionTest& test,
                     const CriticalZ& z,
                     std::int16_t algorithm) {
  CountDistribution counts(n, test.pi, algorithm);
  double power = 0;
  if (test.form == H0TwoTailed) {
    const double high = CriticalCount(n, z.upper, test.pi0, UpperSide, algorithm);
    const double low = CriticalCount(n, z.lower, test.pi0, LowerSide, algorithm);
    power = 1 - (counts.ChanceBelow(high) - counts.ChanceUpTo(low));
    // A null proportion of 0 or 1 has no variance, and both sides reject the one count 0 or n.
    power = std::min(power, 1.0);
  } else if (test.form == H0AtMost) {
    power = 1 - counts.ChanceBelow(CriticalCount(n, z.upper, test.pi0, UpperSide, algorithm));
  } else {
    power = counts.ChanceUpTo(CriticalCount(n, z.lower, test.pi0, LowerSide, algorithm));
  }
  return counts.failed() ? NumericFailure : power;
}

// P(X <= k) for designs that follow each other closely, as those of a walk do: from one to the next
// by single trials and counts,
//
//   F(k; n + 1) = F(k; n) - pi f(k; n),  F(k + 1; n) = F(k; n) + f(k + 1; n),
//
// f being the probability of one count. It agrees with BinomialCdf within `Slack`: the logarithms
// of gamma functions in the one and the other, which cancel, have rounding errors of some 1e-16 of
// n log n.
class BinomialWalk {
 public:
  explicit BinomialWalk(double pi) : pi_(pi), odds_(pi / (1 - pi)) {}

  static double Slack(double n) { return 1e-8 + 5e-15 * n; }

  double Cdf(double n, double k, bool& failed) {
    if (k < 0 || k >= n) {
      return k < 0 ? 0 : 1;
    }
    if (!CanWalkTo(n, k)) {
      return Anchor(n, k, failed);
    }
    // In this order no count on the way exceeds its trials.
    while (k_ > k) {
      LoseCount();
    }
    while (n_ < n) {
      AddTrial();
    }
    while (n_ > n) {
      LoseTrial();
    }
    while (k_ < k) {
      AddCount();
    }
    return cdf_;
  }

 private:
  // Steps beyond which a new anchor costs less than the walk.
  static constexpr double kFarthest = 16;
  // Rounding gathers slowly, and probabilities that have fallen to nothing cannot rise again.
  static constexpr int kStepsAnAnchor = 4096;
  static constexpr double kLeastMass = 1e-30;

  bool CanWalkTo(double n, double k) const {
    return steps_ > 0 && mass_ > kLeastMass && std::fabs(n - n_) + std::fabs(k - k_) <= kFarthest;
  }

  double Anchor(double n, double k, bool& failed) {
    int failure = 0;
    cdf_ = BinomialCdf(n, pi_, k, failure);
    failed = failed || failure != 0;
    n_ = n;
    k_ = k;
    const bool inside = pi_ > 0 && pi_ < 1 && failure == 0;
    mass_ = inside ? std::exp(LogGamma(n + 1) - LogGamma(k + 1) - LogGamma(n - k + 1) +
                              k * std::log(pi_) + (n - k) * std::log1p(-pi_))
                   : 0;
    steps_ = kStepsAnAnchor;
    return cdf_;
  }

  void AddTrial() {
    cdf_ -= pi_ * mass_;
    n_ += 1;
    mass_ *= n_ * (1 - pi_) / (n_ - k_);
    --steps_;
  }
  void LoseTrial() {
    mass_ *= (n_ - k_) / (n_ * (1 - pi_));
    n_ -= 1;
    cdf_ += pi_ * mass_;
    --steps_;
  }
  void AddCount() {
    mass_ *= (n_ - k_) / (k_ + 1) * odds_;
    k_ += 1;
    cdf_ += mass_;
    --steps_;
  }
  void LoseCount() {
    cdf_ -= mass_;
    mass_ *= k_ / ((n_ - k_ + 1) * odds_);
    k_ -= 1;
    --steps_;
  }

  double pi_;
  double odds_;
  double n_ = 0;
  double k_ = 0;
  double cdf_ = 0;
  double mass_ = 0;  // of the count k
  int steps_ = 0;    // left before the next anchor
};

// Exact powers for a search. A power so near the goal that the walk could mistake its side is the
// one of PowerOfTrials, so that the search decides by that everywhere.
class ExactPowers {
 public:
  ExactPowers(const OneProportionTest& test, double goal)
      : test_(test), goal_(goal), z_(CriticalZOf(test)), upper_(test.pi), lower_(test.pi) {}

  double operator()(std::int64_t size) {
    const auto n = static_cast<double>(size);
    bool failed = false;
    double power = 0;
    if (test_.form != H0AtLeast) {
      power += 1 - upper_.Cdf(n, Count(n, z_.upper, UpperSide) - 1, failed);
    }
    if (test_.form != H0AtMost) {
      power += lower_.Cdf(n, Count(n, z_.lower, LowerSide), failed);
    }
    if (failed || std::fabs(power - goal_) <= BinomialWalk::Slack(n)) {
      return PowerOfTrials(n, test_, z_, ProportionExact);
    }
    return std::min(power, 1.0);
  }

 private:
  double Count(double n, double z, std::int16_t side) const {
    return CriticalCount(n, z, test_.pi0, side, ProportionExact);
  }

  const OneProportionTest& test_;
  double goal_;
  CriticalZ z_;
  BinomialWalk upper_;
  BinomialWalk lower_;
};

std::int64_t ExactRequiredN(double goal,
                            const OneProportionTest& test,
                            double start,
                            int& err,
                            Refusal& refusal,
                            ProcedureObserver& observer) {
  ExactPowers powers(test, goal);
  const auto powerAt = [&powers](std::int64_t n) { return powers(n); };
  const SawtoothRequest request{.powerGoal = goal, .start = start};
  const SearchResult result = SawtoothSearch(request, powerAt, observer).Run();
  err = result.status;
  refusal = result.refusal;
  return result.requiredSize;
}

}  // namespace

double ZCritical(
    double alpha, double mean, double sd, std::int16_t form, int& err, std::int16_t side) {
  err = 0;
  const bool upper = side == UpperSide;
  if (form == H0TwoTailed && (upper || side == LowerSide)) {
    return NormalQuantile(upper ? 1 - alpha / 2 : alpha / 2) * sd + mean;
  }
  if (form == H0AtMost && upper) {
    return NormalQuantile(1 - alpha) * sd + mean;
  }
  if (form == H0AtLeast && side == LowerSide) {
    return NormalQuantile(alpha) * sd + mean;
  }
  err = 1;
  return NumericFailure;
}

double ProportionCriticalValue(std::int64_t n,
                               double alpha,
                               double pi,
                               std::int16_t form,
                               int& err,
                               std::int16_t side,
                               std::int16_t algorithm) {
  const double z = ZCritical(alpha, 0, 1, form, err, side);
  return err != 0 ? NumericFailure : CriticalCount(static_cast<double>(n), z, pi, side, algorithm);
}

double OneProportionPower(std::int64_t n,
                          const OneProportionTest& test,
                          int& err,
                          std::int16_t algorithm,
                          std::int16_t checkNull,
                          Refusal& refusal) {
  err = 0;
  refusal = {};
  if (n < 1) {
    return 0;
  }
  if (checkNull != 0) {
    err = NullHypothesisCheck(test.pi - test.pi0, test.form, OneProportionTolerance,
                              TrueNull::Exactly, refusal);
    if (err != 0) {
      return NumericFailure;
    }
  }
  if (!HasRejectionRegion(test.form)) {
    err = 1;
    return NumericFailure;
  }
  const double power = PowerOfTrials(static_cast<double>(n), test, CriticalZOf(test), algorithm);
  err = power == NumericFailure ? 1 : 0;
  return power;
}

double OneProportionEstimate(const OneProportionTest& test, double goal) {
  const double alpha = test.form == H0TwoTailed ? test.alpha / 2 : test.alpha;
  const double root = (NormalQuantile(alpha) * std::sqrt(test.pi0 * (1 - test.pi0)) +
                       NormalQuantile(1 - goal) * std::sqrt(test.pi * (1 - test.pi))) /
                      (test.pi - test.pi0);
  // Two proportions without variance, 0 and 1, would leave a size of 0.
  return std::max(std::ceil(root * root), 1.0);
}

std::int64_t OneProportionRequiredN(double goal,
                                    const OneProportionTest& test,
                                    int& err,
                                    std::int16_t algorithm,
                                    Refusal& refusal,
                                    ProcedureObserver& observer) {
  err = 1;
  refusal = {};
  if (!HasRejectionRegion(test.form) ||
      NullHypothesisCheck(test.pi - test.pi0, test.form, OneProportionTolerance,
                          TrueNull::WithinTolerance, refusal) != 0) {
    return SizeFailure;
  }
  constexpr double kLargestEstimate = 9e15;  // up to it every whole number is a double
  const double estimate = OneProportionEstimate(test, goal);
  if (!(estimate <= kLargestEstimate)) {
    return SizeFailure;
  }
  err = 0;
  // Kept: the normal answer is the closed form, whatever the power at its neighbours.
  return algorithm == ProportionNormal
             ? static_cast<std::int64_t>(estimate)
             : ExactRequiredN(goal, test, estimate, err, refusal, observer);
}

}  // namespace poweranalysis
