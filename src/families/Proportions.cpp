#include <cmath>

#include "families/SessionOf.h"
#include "intervals/OneProportion.h"
#include "procedures/OneProportion.h"
#include "procedures/TwoProportions.h"

namespace poweranalysis {

namespace {

constexpr const char* kFleiss =
    "Fleiss, J. L. (1981). Statistical Methods for Rates and Proportions, 2nd ed.";

// --- One proportion.

struct OneProportion : DesignOf<P1Params, Family::P1> {
  OneProportionTest Test() const { return {record.Pi, record.Pi0, record.Alpha, record.H0Type}; }

  // By the algorithm of the record, as a curve has it.
  double Power(std::size_t /*effect*/, Refusal& refusal, ProcedureObserver& /*observer*/) {
    constexpr std::int16_t kCheckNull = 1;
    int err = 0;
    return OneProportionPower(record.SampleSize, Test(), err, record.Algorithm, kCheckNull,
                              refusal);
  }

  SearchResult Size(std::size_t /*effect*/, ProcedureObserver& observer) {
    int err = 0;
    SearchResult found;
    found.requiredSize = OneProportionRequiredN(record.PowerGoal, Test(), err, record.Algorithm,
                                                found.refusal, observer);
    found.status = found.requiredSize == SizeFailure ? SearchNullTrue : SearchOk;
    return found;
  }

  // Both tests at one size: the exact one with the type I error rate that it really has, and the
  // normal one.
  void AddPowers(std::int64_t n, Outcome& outcome) const {
    constexpr std::int16_t kChecked = 0;  // before the calculation
    int err = 0;
    const OneProportionTest test = Test();
    OneProportionTest underNull = test;
    underNull.pi = test.pi0;
    const auto power = [&](const OneProportionTest& asked, std::int16_t algorithm) {
      return OneProportionPower(n, asked, err, algorithm, kChecked, outcome.refusal);
    };
    outcome.computed.power[0] = power(test, ProportionExact);
    outcome.computed.actualAlpha = power(underNull, ProportionExact);
    outcome.computed.normalPower = power(test, ProportionNormal);
  }

  Outcome ComputePower(ProcedureObserver& /*observer*/) const {
    Outcome outcome;
    outcome.good = true;
    AddPowers(record.SampleSize, outcome);
    return outcome;
  }

  Outcome ComputeSize(ProcedureObserver& observer) {
    const SearchResult found = Size(0, observer);
    Outcome outcome;
    outcome.good = found.status == SearchOk;
    outcome.refusal = found.refusal;
    outcome.computed.size[0] = found.requiredSize;
    if (outcome.good) {
      AddPowers(found.requiredSize, outcome);
    }
    return outcome;
  }

  Distribution Under(double pi) const {
    const double mean = record.SampleSize * pi;
    Distribution distribution;
    distribution.kind =
        record.Algorithm == ProportionNormal ? StatisticKind::Normal : StatisticKind::Binomial;
    distribution.n = record.SampleSize;
    distribution.parameter = pi;
    distribution.mean = mean;
    distribution.sd = std::sqrt((1 - pi) * mean);
    return distribution;
  }

  bool Describe(std::size_t /*effect*/, Statistic& statistic) {
    const P1Params& p = record;
    statistic.null = Under(p.Pi0);
    statistic.alternative = Under(p.Pi);
    int err = 0;
    const auto critical = [&](std::int16_t side) {
      return ProportionCriticalValue(p.SampleSize, p.Alpha, p.Pi0, p.H0Type, err, side,
                                     p.Algorithm);
    };
    statistic.upper = critical(UpperSide);
    statistic.lower = critical(LowerSide);
    return statistic.upper != NumericFailure || statistic.lower != NumericFailure;
  }
};

// --- Two proportions.

struct TwoProportions : DesignOf<P2Params, Family::P2> {
  GroupSizes groups;  // that a search found

  TwoProportionTest Test() const {
    return {record.Pi1, record.Pi2, record.Alpha, record.H0Type, record.Continuity};
  }

  double Power(std::size_t /*effect*/, Refusal& refusal, ProcedureObserver& /*observer*/) {
    int err = 0;
    return TwoProportionPower(Test(), record.SampleSizeN1, record.SampleSizeN2, err, refusal);
  }

  // The size that the axis of a curve names: of the group that is sought, and of group 2 where
  // group 1 follows from it.
  SearchResult Size(std::size_t /*effect*/, ProcedureObserver& /*observer*/) {
    int err = 0;
    SearchResult found;
    groups = {record.SampleSizeN1, record.SampleSizeN2};
    const bool good =
        TwoProportionRequiredN({Test(), record.PowerGoal, record.NToVary, record.Ratio}, groups,
                               found.actualPower, err, found.refusal) != SizeFailure;
    const bool second = record.NToVary == NToVaryN2 || record.NToVary == NToVaryRatio;
    found.status = good ? SearchOk : SearchNullTrue;
    found.requiredSize = !good ? SizeFailure : second ? groups.n2 : groups.n1;
    return found;
  }

  void ShowSize(const SearchResult& /*found*/, Computed& computed) const {
    computed.size[0] = groups.n1;
    computed.size[1] = groups.n2;
  }

  // The difference of the two proportions found, about its mean under either hypothesis.
  bool Describe(std::size_t /*effect*/, Statistic& statistic) {
    const P2Params& p = record;
    const double n1 = p.SampleSizeN1;
    const double n2 = p.SampleSizeN2;
    const double v = 1 / n1 + 1 / n2;
    const double pooled = (n1 * p.Pi1 + n2 * p.Pi2) / (n1 + n2);
    statistic.null.sd = std::sqrt(pooled * (1 - pooled) * v);
    statistic.alternative.mean = p.Pi1 - p.Pi2;
    statistic.alternative.sd = std::sqrt(p.Pi1 * (1 - p.Pi1) / n1 + p.Pi2 * (1 - p.Pi2) / n2);
    const double correction = p.Continuity != NotCorrected ? v / 2 : 0;
    int err = 0;
    const double above = ZCritical(p.Alpha, 0, statistic.null.sd, p.H0Type, err, UpperSide);
    statistic.upper = err == 0 ? above + correction : NumericFailure;
    const double below = ZCritical(p.Alpha, 0, statistic.null.sd, p.H0Type, err, LowerSide);
    statistic.lower = err == 0 ? below - correction : NumericFailure;
    return statistic.upper != NumericFailure || statistic.lower != NumericFailure;
  }
};

// --- McNemar's test.

struct PairedProportions : DesignOf<QMACParams, Family::QMAC> {
  McNemarTest Test() const { return {record.Delta, record.Eta, record.Alpha, record.H0Type}; }

  double Power(std::size_t /*effect*/, Refusal& refusal, ProcedureObserver& /*observer*/) {
    int err = 0;
    return McNemarPower(Test(), record.SampleSize, err, refusal);
  }

  SearchResult Size(std::size_t /*effect*/, ProcedureObserver& /*observer*/) {
    int err = 0;
    SearchResult found;
    const double n = McNemarRequiredN(Test(), record.PowerGoal, err, found.refusal);
    found.status = SearchNullTrue;
    if (n != NumericFailure) {
      found.requiredSize = static_cast<std::int64_t>(n);
      found.actualPower = McNemarPower(Test(), n, err, found.refusal);
      found.status = SearchOk;
    }
    return found;
  }

  // Kept: the upper side alone, also in the two-tailed form.
  bool Describe(std::size_t /*effect*/, Statistic& statistic) {
    const QMACParams& p = record;
    const double n = p.SampleSize;
    const double tail = p.H0Type == H0TwoTailed ? p.Alpha / 2 : p.Alpha;
    int err = 0;
    statistic.null.sd = p.Eta;
    statistic.alternative.mean = std::sqrt(p.Eta * n) * std::fabs(p.Delta);
    statistic.alternative.sd = std::sqrt(p.Eta * p.Eta - p.Delta * p.Delta * (p.Eta + 3) / 4);
    statistic.upper = ZCritical(tail, 0, p.Eta, H0AtMost, err, UpperSide);
    return err == 0;
  }
};

// --- Rows.

double P1Difference(const RecordView& record) {
  return As<P1Params>(record).Pi - As<P1Params>(record).Pi0;
}
double SolveP1(const RecordView& record, double difference) {
  return As<P1Params>(record).Pi0 + difference;
}
double P2Difference(const RecordView& record) {
  return As<P2Params>(record).Pi1 - As<P2Params>(record).Pi2;
}
double SolveP2(const RecordView& record, double difference) {
  return As<P2Params>(record).Pi2 + difference;
}
double QMACDifference(const RecordView& record) { return As<QMACParams>(record).Delta; }
double Itself(const RecordView& /*record*/, double measure) { return measure; }

Groups P1Groups(const RecordView& record) { return OneGroup(As<P1Params>(record).SampleSize); }
Groups P2Groups(const RecordView& record) {
  const auto& p = As<P2Params>(record);
  return TwoGroups(p.SampleSizeN1, p.SampleSizeN2);
}
Groups QMACGroups(const RecordView& record) { return OneGroup(As<QMACParams>(record).SampleSize); }

Outcome P1Interval(const RecordView& record, ProcedureObserver& /*observer*/) {
  return OutcomeOf(OneProportionInterval(As<P1Params>(record)));
}
void PrepareP1Interval(const RecordView& record) {
  P1Params tied = As<P1Params>(record);
  TieProportionToCount(tied);
  record.CopyFrom(RecordView(record.table(), &tied));
}

Refusal EtaSuffices(const RecordView& record) {
  Refusal refusal;
  McNemarParameterCheck(As<QMACParams>(record).Delta, As<QMACParams>(record).Eta, refusal);
  return refusal;
}

constexpr NullCheck kP1Check = {P1Difference, OneProportionTolerance};
constexpr NullCheck kP2Check = {P2Difference, TwoProportionTolerance};
constexpr NullCheck kQMACCheck = {QMACDifference, TwoProportionTolerance};
constexpr EffectRow kP1Effect[] = {
    {nullptr, "Pi - Pi0", "Pi", "Pi0", 0, true, P1Difference, SolveP1, kP1Check, kP1Check}};
constexpr EffectRow kP2Effect[] = {
    {nullptr, "Pi1 - Pi2", "Pi1", "Pi2", 0, true, P2Difference, SolveP2, kP2Check, kP2Check}};
constexpr EffectRow kQMACEffect[] = {
    {nullptr, "Delta", "Delta", nullptr, 0, false, QMACDifference, Itself, kQMACCheck, kQMACCheck}};

constexpr AlgorithmRow kP1Algorithms[] = {
    {"Algorithm", ProportionExact, "binomial distribution", kFleiss},
    {"Algorithm", ProportionNormal, "normal approximation", kFleiss}};
constexpr AlgorithmRow kP2Algorithms[] = {
    {"Continuity", NotCorrected, "normal approximation", kFleiss},
    {"Continuity", CorrectedForContinuity, "normal approximation, corrected for continuity",
     "Fleiss, J. L., Tytun, A. and Ury, H. K. (1980). Biometrics 36, 343-346."}};
constexpr AlgorithmRow kQMACAlgorithms[] = {
    {nullptr, 0, "normal approximation", "Miettinen, O. S. (1968). Biometrics 24, 339-352."}};

constexpr FamilyRow kRows[] = {
    {Family::P1,
     {nullptr, {{{Counts::Observations, "SampleSize"}}}},
     P1Groups,
     kP1Effect,
     false,
     kP1Algorithms,
     Open<OneProportion>,
     P1Interval,
     nullptr,
     nullptr,
     PrepareP1Interval},
    {Family::P2,
     {"NToVary",
      {{{Counts::PerGroup, "SampleSizeN1", "SampleSizeN2"},
        {Counts::Group1, "SampleSizeN1"},
        {Counts::Group2, "SampleSizeN2", nullptr, nullptr, 1},
        {Counts::Group1, "SampleSizeN1", "SampleSizeN2", "Ratio"}}},
      4},
     P2Groups,
     kP2Effect,
     false,
     kP2Algorithms,
     Open<TwoProportions>},
    {Family::QMAC,
     {nullptr, {{{Counts::Pairs, "SampleSize"}}}},
     QMACGroups,
     kQMACEffect,
     false,
     kQMACAlgorithms,
     Open<PairedProportions>,
     nullptr,
     nullptr,
     EtaSuffices},
};

}  // namespace

std::span<const FamilyRow> ProportionRows() { return kRows; }

}  // namespace poweranalysis
