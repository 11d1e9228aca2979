#include "procedures/TwoProportions.h"

#include <algorithm>
#include <cmath>

#include "distributions/Normal.h"
#include "procedures/OneProportion.h"

namespace poweranalysis {

namespace {

// A guard: a fifth more each time, so many lead some 80 million times as far.
constexpr int kMostPasses = 100;
// Deliberate: a smaller first estimate says nothing, for it goes by the normal approximation.
constexpr std::int64_t kLeastStart = 10;
// The largest size that is tried: twelve times it still fit, and every one is a double.
constexpr std::int64_t kMostN = 9000000000000000;

// Kept: the mark of a true null hypothesis in the size of McNemar's test, unlike any other.
constexpr int kMcNemarNullTrue = -333;

// Standard normal critical value of the side that decides; `err` as ZCritical.
double CriticalZOf(const TwoProportionTest& test, int& err) {
  return ZCritical(test.alpha, 0, 1, test.form, err,
                   test.form == H0AtLeast ? LowerSide : UpperSide);
}

// P(sd Z <= x). Without variance 0 is as much below x = 0 as above it, and it rejects on both.
double ChanceBelow(double x, double sd) { return x == 0 && sd == 0 ? 0 : NormalCdf(x / sd); }
double ChanceUpTo(double x, double sd) { return x == 0 && sd == 0 ? 1 : NormalCdf(x / sd); }

// Power of one of the three forms, with z of CriticalZOf.
double PowerOfGroups(const TwoProportionTest& test, double z, const GroupSizes& groups) {
  if (groups.n1 < 1 || groups.n2 < 1) {
    return 0;
  }
  const double pi1 = test.pi1;
  const double pi2 = test.pi2;
  const auto n1 = static_cast<double>(groups.n1);
  const auto n2 = static_cast<double>(groups.n2);
  const double d = pi1 - pi2;
  const double pBar = (n1 * pi1 + n2 * pi2) / (n1 + n2);
  const double v = 1 / n2 + 1 / n1;
  const double s0 = std::sqrt(pBar * (1 - pBar) * v);
  const double s1 = std::sqrt(pi1 * (1 - pi1) / n1 + pi2 * (1 - pi2) / n2);
  const double cc = test.continuity != NotCorrected ? .5 * v : 0;
  if (test.form == H0TwoTailed) {
    const double c = z * s0 + cc;
    return (1 - ChanceBelow(c - d, s1)) + ChanceUpTo(-c - d, s1);
  }
  if (test.form == H0AtMost) {
    return 1 - ChanceBelow(z * s0 + cc - d, s1);
  }
  return ChanceUpTo(z * s0 - cc - d, s1);
}

// n * 12 / 10 and m * n, held at the largest size.
std::int64_t Raised(std::int64_t n) { return std::min(n * 12 / 10, kMostN); }
std::int64_t Product(std::int64_t m, std::int64_t n) { return n > kMostN / m ? kMostN : m * n; }

std::int64_t Lowered(std::int64_t n) { return n * 10 < 22 ? 1 : n * 10 / 11; }

// The group beside a fixed one so that their harmonic mean is n.
std::int64_t GroupBeside(std::int64_t fixed, std::int64_t n) {
  const std::int64_t m = std::max<std::int64_t>(fixed, 1);
  const std::int64_t q = std::max<std::int64_t>(2 * m - n, 1);
  return std::max<std::int64_t>(Product(m, n) / q, 1);
}

// The search of TwoProportionRequiredN, after the checks. It holds the powers at both ends of the
// bracket, so that no value is evaluated twice.
class GroupSizeSearch {
 public:
  GroupSizeSearch(const TwoProportionSizeRequest& request, double z, GroupSizes& groups)
      : request_(request), z_(z), groups_(groups) {}

  // The value that reaches the goal, or SizeFailure.
  std::int64_t Run() {
    size_ = TwoProportionEstimate(request_);
    if (!BracketAbove() || !BracketBelow()) {
      return SizeFailure;
    }
    Bisect();
    SetGroups(request_, size_, groups_);
    return size_;
  }
  double power() const { return power_; }

 private:
  double PowerAt(std::int64_t n) {
    SetGroups(request_, n, groups_);
    return PowerOfGroups(request_.test, z_, groups_);
  }
  // Not for a power that is not a number.
  bool Reaches(double power) const { return power >= request_.powerGoal; }

  bool BracketAbove() {
    power_ = PowerAt(size_);
    for (int pass = 0; !Reaches(power_); ++pass) {
      if (pass == kMostPasses || size_ == kMostN) {
        return false;
      }
      size_ = Raised(size_);
      power_ = PowerAt(size_);
    }
    return true;
  }

  bool BracketBelow() {
    constexpr std::int64_t kFirstStepDown = 4;
    lower_ = std::max<std::int64_t>(1, size_ - kFirstStepDown);
    double power = PowerAt(lower_);
    for (int pass = 0; Reaches(power); ++pass) {
      // Kept: an effect for which one in each group is enough has no answer.
      if (pass == kMostPasses || lower_ == 1) {
        return false;
      }
      lower_ = Lowered(lower_);
      power = PowerAt(lower_);
    }
    return true;
  }

  // Both ends are known, so that fewer than 60 halvings lead to neighbours.
  void Bisect() {
    while (size_ - lower_ >= 2) {
      const std::int64_t middle = lower_ + (size_ - lower_) / 2;
      const double power = PowerAt(middle);
      if (Reaches(power)) {
        size_ = middle;
        power_ = power;
      } else {
        lower_ = middle;
      }
    }
  }

  const TwoProportionSizeRequest& request_;
  double z_;
  GroupSizes& groups_;
  std::int64_t size_ = 0;
  std::int64_t lower_ = 0;
  double power_ = NumericFailure;
};

// Standard normal critical value of McNemar's test, by the forms' alpha.
double McNemarZ(const McNemarTest& test) {
  return NormalQuantile(1 - (test.form == H0TwoTailed ? test.alpha / 2 : test.alpha));
}

}  // namespace

double TwoProportionPower(
    const TwoProportionTest& test, std::int64_t n1, std::int64_t n2, int& err, Refusal& refusal) {
  err = NullHypothesisCheck(test.pi1 - test.pi2, test.form, TwoProportionTolerance,
                            TrueNull::Exactly, refusal);
  if (err != 0) {
    return NumericFailure;
  }
  const double z = CriticalZOf(test, err);
  return err != 0 ? NumericFailure : PowerOfGroups(test, z, {n1, n2});
}

std::int64_t TwoProportionEstimate(const TwoProportionSizeRequest& request) {
  const TwoProportionTest& test = request.test;
  const double pi1 = test.pi1;
  const double pi2 = test.pi2;
  const double d = pi1 - pi2;
  const double k = test.form == H0TwoTailed ? 2 : 1;
  const double w = request.nToVary == NToVaryRatio ? request.ratio : 1;
  const double pBar = (w * pi1 + pi2) / (w + 1);
  const double A =
      NormalQuantile(request.powerGoal) * std::sqrt(pi1 * (1 - pi1) + w * pi2 * (1 - pi2));
  const double B = NormalQuantile(1 - test.alpha / k) * std::sqrt(pBar * (1 - pBar) * (w + 1));
  double n = 0;
  if (test.continuity == NotCorrected) {
    const double root = (A + B) / d;
    n = std::ceil(root * root);
  } else {
    // Kept: d with its sign, though the published formula has |d|; below 0 the root may not exist.
    const double h = (w + 1) * .5;
    const double squares = 2 * A * B + A * A + B * B;
    const double S = std::sqrt(4 * d * h + squares);
    n = std::ceil((2 * d * h + squares + S * (A + B)) / (2 * d * d));
  }
  if (!(n >= kLeastStart)) {
    return kLeastStart;
  }
  return n < kMostN ? static_cast<std::int64_t>(n) : kMostN;
}

void SetGroups(const TwoProportionSizeRequest& request, std::int64_t n, GroupSizes& groups) {
  switch (request.nToVary) {
    case NToVaryN1:
      groups.n1 = GroupBeside(groups.n2, n);
      return;
    case NToVaryN2:
      groups.n2 = GroupBeside(groups.n1, n);
      return;
    case NToVaryRatio: {
      const double second = static_cast<double>(n) / request.ratio;
      groups.n1 = n;
      groups.n2 =
          second < kMostN ? std::max<std::int64_t>(static_cast<std::int64_t>(second), 1) : kMostN;
      return;
    }
    default:
      groups.n1 = n;
      groups.n2 = n;
  }
}

std::int64_t TwoProportionRequiredN(const TwoProportionSizeRequest& request,
                                    GroupSizes& groups,
                                    double& actualPower,
                                    int& err,
                                    Refusal& refusal) {
  actualPower = NumericFailure;
  refusal = {};
  const TwoProportionTest& test = request.test;
  const double z = CriticalZOf(test, err);
  if (err != 0 || request.nToVary < NToVaryBoth || request.nToVary > NToVaryRatio) {
    err = 1;
    return SizeFailure;
  }
  err = NullHypothesisCheck(test.pi1 - test.pi2, test.form, TwoProportionTolerance,
                            TrueNull::WithinTolerance, refusal);
  if (err != 0) {
    return SizeFailure;
  }
  GroupSizeSearch search(request, z, groups);
  if (search.Run() == SizeFailure) {
    refusal.text = Said::SelectedGroupNotFound;
    return SizeFailure;
  }
  actualPower = search.power();
  return request.nToVary == NToVaryN2 ? groups.n2 : groups.n1;
}

std::int16_t McNemarParameterCheck(double delta, double eta, Refusal& refusal) {
  refusal = {};
  // Kept: the difference as it rounds, so that .1001 beside .1 falls short.
  if (eta - std::fabs(delta) >= TwoProportionTolerance) {
    return 0;
  }
  refusal.text = Said::EtaTooSmall;
  return 1;
}

double McNemarPower(const McNemarTest& test, double n, int& err, Refusal& refusal) {
  err = NullHypothesisCheck(test.delta, test.form, TwoProportionTolerance, TrueNull::Exactly,
                            refusal);
  if (err != 0 || McNemarParameterCheck(test.delta, test.eta, refusal) != 0) {
    return NumericFailure;
  }
  const double delta = std::fabs(test.delta);
  const double eta = test.eta;
  // Kept: one term, also in the two-sided form; the far tail is left out.
  return NormalCdf((std::sqrt(eta * n) * delta - McNemarZ(test) * eta) /
                   std::sqrt(eta * eta - delta * delta * (eta + 3) * .25));
}

double McNemarRequiredN(const McNemarTest& test, double goal, int& err, Refusal& refusal) {
  err = 0;
  if (NullHypothesisCheck(test.delta, test.form, TwoProportionTolerance, TrueNull::WithinTolerance,
                          refusal) != 0) {
    err = kMcNemarNullTrue;
    return NumericFailure;
  }
  if (McNemarParameterCheck(test.delta, test.eta, refusal) != 0) {
    return NumericFailure;
  }
  const double delta = std::fabs(test.delta);
  const double eta = test.eta;
  const double root =
      (std::sqrt(eta - delta * delta * (eta + 3) / (eta * 4)) * NormalQuantile(goal) +
       std::sqrt(eta) * McNemarZ(test)) /
      delta;
  return std::ceil(root * root);
}

}  // namespace poweranalysis
