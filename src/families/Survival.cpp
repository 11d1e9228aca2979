#include "procedures/Survival.h"

#include <algorithm>
#include <cmath>

#include "distributions/Common.h"
#include "families/SessionOf.h"
#include "procedures/OneProportion.h"

namespace poweranalysis {

namespace {

// Both forms reject above.
bool DescribeShift(double mean, double alpha, std::int16_t form, Statistic& statistic) {
  int failure = 0;
  statistic.upper = ZCritical(alpha, 0, 1, form, failure, UpperSide);
  statistic.alternative.mean = mean;
  return failure == 0 && std::isfinite(mean);
}

// --- Log-rank test.

struct LogRank : DesignOf<SA1Params, Family::SA1> {
  LogRankTest Test() const { return {record.Pi1, record.Pi2, record.Alpha, record.H0Type}; }

  double Power(std::size_t /*effect*/, Refusal& /*refusal*/, ProcedureObserver& /*observer*/) {
    int err = 0;
    std::int64_t events = 0;
    return LogRankPower(record.SampleSize, Test(), err, events);
  }

  SearchResult Size(std::size_t /*effect*/, ProcedureObserver& /*observer*/) {
    int err = 0;
    std::int64_t events = 0;
    SearchResult found;
    found.requiredSize = LogRankRequiredN(Test(), record.PowerGoal, events, err, found.refusal);
    found.status = found.requiredSize == SizeFailure ? SearchNullTrue : SearchOk;
    return found;
  }

  // The events shown go with the power at the required size.
  void ShowSize(const SearchResult& found, Computed& computed) const {
    if (found.status == SearchOk) {
      int err = 0;
      std::int64_t events = 0;
      computed.power[0] = LogRankPower(found.requiredSize, Test(), err, events);
      computed.events = static_cast<double>(events);
    }
  }

  bool Describe(std::size_t /*effect*/, Statistic& statistic) {
    const SA1Params& p = record;
    const double h = std::log(p.Pi1) / std::log(p.Pi2);
    const double mean = std::sqrt(static_cast<double>(p.SampleSize) * (2 - p.Pi1 - p.Pi2)) *
                        std::fabs((1 - h) / (1 + h));
    return DescribeShift(mean, p.Alpha, p.H0Type, statistic);
  }
};

// --- Exponential survival, with and without dropouts.

double DropoutsOf(const SA2Params& /*p*/) { return 0; }
double DropoutsOf(const SA3Params& p) { return p.D; }

template <class Params, Family theFamily>
struct ExponentialSurvival : DesignOf<Params, theFamily> {
  ExponentialSurvivalTest Test() const {
    const Params& p = this->record;
    return {p.Lambda1, p.Lambda2, DropoutsOf(p), p.T, p.T0, p.Alpha, p.H0Type};
  }

  double Power(std::size_t /*effect*/, Refusal& refusal, ProcedureObserver& /*observer*/) {
    return ExponentialSurvivalPower(this->record.SampleSize, Test(), refusal);
  }

  SearchResult Size(std::size_t /*effect*/, ProcedureObserver& /*observer*/) {
    int err = 0;
    SearchResult found;
    found.requiredSize =
        ExponentialSurvivalRequiredN(Test(), this->record.PowerGoal, err, found.refusal);
    found.status = found.requiredSize == SizeFailure ? SearchNullTrue : SearchOk;
    return found;
  }

  Outcome ComputeSize(ProcedureObserver& observer) {
    const SearchResult found = Size(0, observer);
    Outcome outcome;
    outcome.good = found.status == SearchOk;
    outcome.refusal = found.refusal;
    outcome.computed.power[0] = NumericFailure;
    outcome.computed.size[0] = found.requiredSize;
    if (outcome.good) {
      outcome.computed.power[0] =
          ExponentialSurvivalPower(found.requiredSize, Test(), outcome.refusal);
    }
    return outcome;
  }

  bool Describe(std::size_t /*effect*/, Statistic& statistic) {
    const ExponentialSurvivalTest test = Test();
    const double p1 = EventProbability(test.lambda1, test.d, test.t, test.t0);
    const double p2 = EventProbability(test.lambda2, test.d, test.t, test.t0);
    const double n = this->record.SampleSize;
    const double mean =
        std::fabs(std::log(test.lambda1 / test.lambda2)) * std::sqrt(n * p1 * p2 / (p1 + p2));
    return DescribeShift(mean, test.alpha, test.form, statistic);
  }
};

// --- Rows.

// The follow-up may not end before the accrual, and a rate of 0 has no logarithm.
template <class Params>
Refusal Check(const RecordView& record) {
  const auto& p = As<Params>(record);
  if (p.T < p.T0) {
    return {Said::FollowUpBeforeAccrual};
  }
  return p.Lambda1 > 0 && p.Lambda2 > 0 ? Refusal{} : Refusal{Said::LambdaNotPositive};
}

double SA1Measure(const RecordView& record) {
  return std::log(As<SA1Params>(record).Pi1) / std::log(As<SA1Params>(record).Pi2);
}
double SolveSA1(const RecordView& record, double hazardRatio) {
  return std::exp(std::log(As<SA1Params>(record).Pi1) / hazardRatio);
}
// Kept: the effect of the log-rank test is Pi2 - Pi1, contrary to the wording of its one-tailed
// hypothesis, which is refused where the wording is true.
double SA1Difference(const RecordView& record) {
  return As<SA1Params>(record).Pi2 - As<SA1Params>(record).Pi1;
}
template <class Params>
double HazardRatio(const RecordView& record) {
  return As<Params>(record).Lambda2 / As<Params>(record).Lambda1;
}
template <class Params>
double SolveHazard(const RecordView& record, double hazardRatio) {
  return hazardRatio * As<Params>(record).Lambda1;
}
template <class Params>
double HazardDifference(const RecordView& record) {
  return As<Params>(record).Lambda2 - As<Params>(record).Lambda1;
}
template <class Params>
Groups GroupsOf(const RecordView& record) {
  return {{{As<Params>(record).SampleSize, 2}}};
}

constexpr NullCheck kSA1Check = {SA1Difference, SurvivalTolerance};
constexpr EffectRow kSA1Effect[] = {
    {nullptr, "hazard ratio", "Pi2", "Pi1", 0, true, SA1Measure, SolveSA1, kSA1Check, kSA1Check}};
template <class Params>
constexpr EffectRow ExponentialEffect() {
  constexpr NullCheck check = {HazardDifference<Params>, SurvivalTolerance};
  return {nullptr, "hazard ratio",      "Lambda2",           "Lambda1", 0,
          true,    HazardRatio<Params>, SolveHazard<Params>, check,     check};
}
constexpr EffectRow kSA2Effect[] = {ExponentialEffect<SA2Params>()};
constexpr EffectRow kSA3Effect[] = {ExponentialEffect<SA3Params>()};

constexpr AlgorithmRow kLogRank[] = {
    {nullptr, 0, "log-rank test under proportional hazards",
     "Freedman, L. S. (1982). Statistics in Medicine 1, 121-129."}};
constexpr AlgorithmRow kExponential[] = {
    {nullptr, 0, "normal approximation for exponential survival",
     "George, S. L. and Desu, M. M. (1974). Journal of Chronic Diseases 27, 15-24; Lachin, J. M. "
     "and Foulkes, M. A. (1986). Biometrics 42, 507-519."}};

constexpr SizeRules kPerGroup = {nullptr, {{{Counts::PerGroup, "SampleSize"}}}};

constexpr FamilyRow kRows[] = {
    {Family::SA1, kPerGroup, GroupsOf<SA1Params>, kSA1Effect, false, kLogRank, Open<LogRank>},
    {Family::SA2, kPerGroup, GroupsOf<SA2Params>, kSA2Effect, false, kExponential,
     Open<ExponentialSurvival<SA2Params, Family::SA2>>, nullptr, nullptr, Check<SA2Params>},
    {Family::SA3, kPerGroup, GroupsOf<SA3Params>, kSA3Effect, false, kExponential,
     Open<ExponentialSurvival<SA3Params, Family::SA3>>, nullptr, nullptr, Check<SA3Params>},
};

}  // namespace

std::span<const FamilyRow> SurvivalRows() { return kRows; }

}  // namespace poweranalysis
