#include "procedures/Correlations.h"

#include <algorithm>
#include <cmath>

#include "distributions/Normal.h"
#include "procedures/TTests.h"

namespace poweranalysis {

namespace {

// So near to 1 the slope of the power says nothing: the step begins again at 1.
constexpr double kStepResetPower = .99;
// Deliberate: a walk evaluates slow distributions, and one step too far costs more than several.
constexpr double kLargestStep = 200;
// A correlation of two observations is -1 or 1: the bracket begins there.
constexpr std::int64_t kSmallestLower = 2;
// The least n at which Fisher's z has a variance, 1 / (n - 3).
constexpr std::int64_t kSmallestEstimate = 4;

SearchResult Failed(const Refusal& refusal = {}) {
  return {SizeFailure, NumericFailure, ProcedureFailed, refusal};
}

double LogRatio(double rho) { return std::log((1 + rho) / (1 - rho)); }

}  // namespace

double FisherZ(double r) { return 0.5 * LogRatio(r); }

UpwardWalk::UpwardWalk(const WalkRules& rules,
                       double powerGoal,
                       std::int64_t first,
                       double firstPower,
                       ProcedureObserver& observer)
    : rules_(rules),
      observer_(observer),
      powerGoal_(powerGoal),
      size_(first),
      lower_(std::max(first, kSmallestLower)),
      lastPower_(firstPower) {}

bool UpwardWalk::Next() {
  if (upper_ < NoWalkCap && upper_ - lower_ == 1) {
    result_ = {upper_, upperPower_, SearchOk};
    return false;
  }
  if (observer_.StopRequested()) {
    result_.status = SearchCancelled;
    return false;
  }
  size_ = std::min(std::max(size_ + direction_ * step_, lower_ + 1), rules_.cap);
  if (size_ >= upper_ && powerGoal_ < upperPower_) {
    size_ = upper_ - 1;
  }
  // At the cap, or with no upper end to the bracket, the walk would go on forever.
  if (size_ <= lower_ || size_ >= NoWalkCap) {
    result_.status = SearchTooLarge;
    return false;
  }
  return true;
}

void UpwardWalk::Record(double power) {
  if (power > powerGoal_) {
    direction_ = -1;
    if (size_ < upper_) {
      upper_ = size_;
      upperPower_ = power;
    }
  } else {
    direction_ = 1;
    lower_ = std::max(lower_, size_);
  }
  step_ = StepAfter(power);
  lastPower_ = power;
}

// The old step enters the new one, so that the step carries a memory of earlier slopes.
std::int64_t UpwardWalk::StepAfter(double power) const {
  const double change = std::fabs(power - lastPower_);
  if (!(power <= kStepResetPower) || !(change > rules_.equalPowers)) {
    return 1;
  }
  const double scaled = std::fabs(power - powerGoal_) * static_cast<double>(step_) / change;
  return std::max<std::int64_t>(static_cast<std::int64_t>(std::min(scaled, kLargestStep)), 1);
}

// --- One correlation.

namespace {

bool IsExact(std::int16_t algorithm) {
  return algorithm != CorrelationFisherZRefined && algorithm != CorrelationFisherZCrude;
}

CriticalPair CriticalsOf(const CorrelationTest& test) {
  return FindCriticals(test.form, [&](std::int16_t side) {
    return CorrelationCritical(test.n, test.alpha, test.rho0, test.algorithm, test.form, side);
  });
}

bool TooSmall(const CorrelationTest& test) {
  return test.n <= 2 || (test.n == 3 && test.algorithm == CorrelationFisherZCrude);
}

// The power of a test whose null hypothesis is known to be false.
double PowerBeyond(const CorrelationTest& test, const CriticalPair& criticals, double rho) {
  return RejectionProbability(test.form, criticals, [&](double c) {
    return CorrelationCdf(rho, static_cast<std::int32_t>(test.n), c, test.algorithm);
  });
}

double EstimateTail(const CorrelationSizeRequest& request) {
  switch (request.form) {
    case H0TwoTailed:
      return request.rho > request.rho0 ? 1 - request.alpha / 2 : request.alpha / 2;
    case H0AtMost:
      return request.alpha;
    case H0AtLeast:
      return 1 - request.alpha;
    default:
      return NumericFailure;
  }
}

// The walk with an algorithm that is settled.
SearchResult WalkFrom(std::int64_t first,
                      CorrelationTest test,
                      double powerGoal,
                      double rho,
                      ProcedureObserver& observer) {
  const auto powerAt = [&](std::int64_t n) {
    test.n = n;
    return TooSmall(test) ? NumericFailure : PowerBeyond(test, CriticalsOf(test), rho);
  };
  return WalkUp(OneCorrelationWalk, powerGoal, first, powerAt(first), powerAt, observer);
}

}  // namespace

double CorrelationCritical(std::int64_t n,
                           double alpha,
                           double rho0,
                           std::int16_t algorithm,
                           std::int16_t form,
                           std::int16_t side) {
  if (form == H0Zero) {
    return NumericFailure;
  }
  const double p = CriticalProbability(alpha, form, side);
  return p == NumericFailure
             ? NumericFailure
             : CorrelationQuantile(rho0, static_cast<std::int32_t>(n), p, algorithm);
}

double CorrelationPower(const CorrelationTest& test,
                        double rho,
                        int& status,
                        Refusal& refusal,
                        CorrelationCriticalCache& criticals) {
  status = ProcedureFailed;
  if (NullHypothesisCheck(rho - test.rho0, test.form, CorrelationTolerance, TrueNull::Exactly,
                          refusal) != 0 ||
      TooSmall(test)) {
    return NumericFailure;
  }
  const double power = PowerBeyond(test, criticals.Find(test, CriticalsOf), rho);
  if (power != NumericFailure) {
    status = ProcedureOk;
  }
  return power;
}

double CorrelationPower(std::int64_t n,
                        double alpha,
                        double rho,
                        double rho0,
                        std::int16_t algorithm,
                        std::int16_t form,
                        int& status,
                        Refusal& refusal) {
  CorrelationCriticalCache criticals;
  return CorrelationPower({n, alpha, rho0, algorithm, form}, rho, status, refusal, criticals);
}

double CorrelationFirstEstimate(const CorrelationSizeRequest& request) {
  const double difference = .5 * LogRatio(request.rho) - .5 * LogRatio(request.rho0);
  const double d =
      (NormalQuantile(request.powerGoal) - NormalQuantile(EstimateTail(request))) / difference;
  return std::trunc(d * d + 4.0);
}

SearchResult CorrelationRequiredN(const CorrelationSizeRequest& request,
                                  ProcedureObserver& observer) {
  Refusal refusal;
  if (NullHypothesisCheck(request.rho - request.rho0, request.form, CorrelationTolerance,
                          TrueNull::WithinTolerance, refusal) != 0 ||
      EstimateTail(request) == NumericFailure) {
    return Failed(refusal);
  }
  const double estimate = CorrelationFirstEstimate(request);
  if (!std::isfinite(estimate)) {
    return Failed();  // a correlation beyond one, or a goal that is not a chance
  }
  const auto first = static_cast<std::int64_t>(estimate);
  CorrelationTest test = {first, request.alpha, request.rho0, request.algorithm, request.form};
  // Kept: only the first estimate counts, so that a search that starts low stays exact and slow.
  const bool switched = IsExact(test.algorithm) && first > LargestExactEstimate;
  if (switched) {
    test.algorithm = CorrelationFisherZRefined;
    observer.Notice(Said::SwitchingToRefined, {});
  }
  SearchResult result = WalkFrom(first, test, request.powerGoal, request.rho, observer);
  if (result.status == SearchTooLarge) {
    return Failed({Said::SearchTooLarge, {OneCorrelationWalk.cap}});
  }
  if (result.status != SearchOk) {
    return Failed();
  }
  result.status = switched ? CorrelationSwitched : ProcedureOk;
  return result;
}

// --- Two correlations.

namespace {

double TermOf(const ZDifference& difference, double c) {
  return difference.sd == NumericFailure ? NumericFailure
                                         : NormalCdf((c - difference.mean) / difference.sd);
}

CriticalPair ZCriticalsOf(double alpha, std::int16_t form) {
  return FindCriticals(form, [&](std::int16_t side) { return FisherZCritical(alpha, form, side); });
}

double PowerBeyond(std::int16_t form,
                   const CriticalPair& criticals,
                   const ZDifference& difference) {
  return RejectionProbability(form, criticals, [&](double c) { return TermOf(difference, c); });
}

// A search after its checks: what varies, from where, and what fails it.
class TwoCorrelationsSearch {
 public:
  TwoCorrelationsSearch(const TwoCorrelationsSizeRequest& request, ProcedureObserver& observer)
      : request_(request),
        observer_(observer),
        criticals_(ZCriticalsOf(request.alpha, request.form)) {}

  SearchResult Run() const;

 private:
  bool fixed() const { return request_.nToVary != NToVaryBoth; }
  double fixedN() const {
    return static_cast<double>(request_.nToVary == NToVaryN1 ? request_.n2 : request_.n1);
  }
  double PowerAt(std::int64_t n) const;
  // Not above 0: no size of the varied group reaches the goal.
  double Estimate() const;
  bool LevelsOffBelowTheGoal() const;
  SearchResult Fail() const;

  const TwoCorrelationsSizeRequest& request_;
  ProcedureObserver& observer_;
  CriticalPair criticals_;
};

double TwoCorrelationsSearch::PowerAt(std::int64_t n) const {
  const std::int64_t n1 = request_.nToVary == NToVaryN2 ? request_.n1 : n;
  const std::int64_t n2 = request_.nToVary == NToVaryN1 ? request_.n2 : n;
  return PowerBeyond(request_.form, criticals_,
                     FisherZDifference(request_.rho1, request_.rho2, n1, n2, request_.algorithm));
}

double TwoCorrelationsSearch::Estimate() const {
  const double k = request_.form == H0TwoTailed ? 2 : 1;
  const double dz = .5 * LogRatio(request_.rho1) - .5 * LogRatio(request_.rho2);
  const double d =
      (NormalQuantile(1 - request_.alpha / k) + NormalQuantile(request_.powerGoal)) / dz;
  const double n0 = 2 * (d * d) + 3;
  const double smallest = static_cast<double>(kSmallestEstimate);
  if (!fixed()) {
    return std::max(smallest, std::trunc(n0));
  }
  const double m = fixedN();
  const double room = 2 * m - n0 - 3;
  return room > 0 ? std::trunc(std::max(smallest, ((n0 + 3) * m - 6 * n0) / room)) : 0;
}

// With a group fixed the power levels off as the other grows. Where that is below the goal, the
// walk would find it only after half a million trials.
bool TwoCorrelationsSearch::LevelsOffBelowTheGoal() const {
  return fixed() && !(PowerAt(NoWalkCap - 1) > request_.powerGoal);
}

SearchResult TwoCorrelationsSearch::Fail() const {
  if (!fixed()) {
    return Failed();
  }
  return Failed({request_.nToVary == NToVaryN1 ? Said::IncreaseN2 : Said::IncreaseN1});
}

SearchResult TwoCorrelationsSearch::Run() const {
  const double estimate = Estimate();
  if (!(estimate > 0) || estimate >= static_cast<double>(NoWalkCap)) {
    return Fail();
  }
  const auto first = static_cast<std::int64_t>(estimate);
  const double firstPower = PowerAt(first);
  if (!(firstPower > request_.powerGoal) && LevelsOffBelowTheGoal()) {
    return Fail();
  }
  const SearchResult result = WalkUp(
      TwoCorrelationsWalk, request_.powerGoal, first, firstPower,
      [&](std::int64_t n) { return PowerAt(n); }, observer_);
  return result.status == SearchTooLarge ? Fail() : result.status == SearchOk ? result : Failed();
}

bool RunsAgainstTheTest(const TwoCorrelationsSizeRequest& request) {
  return (request.form == H0AtMost && request.rho1 <= request.rho2) ||
         (request.form == H0AtLeast && request.rho2 <= request.rho1);
}

// Choices that nothing serves. The fields' ranges are wider than their choices.
bool Unserved(const TwoCorrelationsSizeRequest& request) {
  return IsExact(request.algorithm) || request.nToVary < NToVaryBoth ||
         request.nToVary > NToVaryN2 ||
         FisherZCritical(.05, request.form, HighSide) == NumericFailure;
}

}  // namespace

ZDifference FisherZDifference(
    double rho1, double rho2, std::int64_t n1, std::int64_t n2, std::int16_t algorithm) {
  const double v = 1 / static_cast<double>(n1 - 3) + 1 / static_cast<double>(n2 - 3);
  const double difference = .5 * LogRatio(rho1) - .5 * LogRatio(rho2);
  if (algorithm == CorrelationFisherZCrude) {
    return {difference / std::sqrt(v), 1};
  }
  if (algorithm != CorrelationFisherZRefined) {
    return {};
  }
  const auto size1 = static_cast<std::int32_t>(n1);
  const auto size2 = static_cast<std::int32_t>(n2);
  const double b1 = FisherZBias(rho1, size1);
  const double b2 = FisherZBias(rho2, size2);
  const double m1 = FisherZSecondMoment(rho1, size1);
  const double m2 = FisherZSecondMoment(rho2, size2);
  return {(difference + b1 - b2) / std::sqrt(v), std::sqrt((m1 - b1 * b1 + m2 - b2 * b2) / v)};
}

double FisherZCritical(double alpha, std::int16_t form, std::int16_t side) {
  return form == H0Zero ? NumericFailure : NormalQuantile(CriticalProbability(alpha, form, side));
}

double FisherZPowerTerm(
    double rho1, double rho2, std::int64_t n1, std::int64_t n2, double c, std::int16_t algorithm) {
  return TermOf(FisherZDifference(rho1, rho2, n1, n2, algorithm), c);
}

double TwoCorrelationsPower(double rho1,
                            double rho2,
                            std::int64_t n1,
                            std::int64_t n2,
                            double alpha,
                            std::int16_t form,
                            std::int16_t algorithm,
                            Refusal& refusal) {
  if (NullHypothesisCheck(rho1 - rho2, form, CorrelationTolerance, TrueNull::Exactly, refusal) !=
      0) {
    return NumericFailure;
  }
  return PowerBeyond(form, ZCriticalsOf(alpha, form),
                     FisherZDifference(rho1, rho2, n1, n2, algorithm));
}

SearchResult TwoCorrelationsRequiredN(const TwoCorrelationsSizeRequest& request,
                                      ProcedureObserver& observer) {
  const double dz = .5 * LogRatio(request.rho1) - .5 * LogRatio(request.rho2);
  Refusal refusal;
  if (NullHypothesisCheck(dz, request.form, CorrelationTolerance, TrueNull::WithinTolerance,
                          refusal) != 0 ||
      RunsAgainstTheTest(request) || Unserved(request)) {
    return Failed(refusal);
  }
  return TwoCorrelationsSearch(request, observer).Run();
}

}  // namespace poweranalysis
