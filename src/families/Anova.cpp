#include "procedures/Anova.h"

#include "families/SessionOf.h"
#include "intervals/Means.h"

namespace poweranalysis {

namespace {

constexpr const char* kTang = "Tang, P. C. (1938). Statistical Research Memoirs 2, 126-149.";
constexpr const char* kTiku = "Tiku, M. L. (1966). Biometrika 53, 606-610.";

double AsDouble(std::int64_t count) { return static_cast<double>(count); }

// --- Planned contrast.

struct Contrast : DesignOf<PCParams, Family::PC> {
  CriticalTCache criticals{};

  double PowerAt(std::int64_t n, Refusal& refusal) {
    return ContrastPower(record.NumberOfGroups, n, record.Alpha, record.StandardizedEffect,
                         record.SumOfSquaredWeights, refusal, criticals);
  }

  double Power(std::size_t /*effect*/, Refusal& refusal, ProcedureObserver& /*observer*/) {
    return PowerAt(record.SampleSize, refusal);
  }

  // A search that passed the limit on its way may still have come to a size: the size decides.
  SearchResult Size(std::size_t /*effect*/, ProcedureObserver& observer) {
    const PCParams& p = record;
    SearchResult found = ContrastRequiredN({p.StandardizedEffect, p.SumOfSquaredWeights,
                                            p.NumberOfGroups, p.Alpha, p.PowerGoal, sizeLimit},
                                           criticals, observer);
    if (found.requiredSize != SizeFailure) {
      found.status = SearchOk;
      found.actualPower = PowerAt(found.requiredSize, found.refusal);
    }
    return found;
  }

  bool Describe(std::size_t /*effect*/, Statistic& statistic) {
    const PCParams& p = record;
    const TDesign design =
        ContrastDesign(p.NumberOfGroups, p.SampleSize, p.StandardizedEffect, p.SumOfSquaredWeights);
    statistic.null.kind = StatisticKind::T;
    statistic.null.df1 = design.df;
    statistic.alternative = statistic.null;
    statistic.alternative.noncentrality = design.delta;
    statistic.lower = criticals.Find(design.df, p.Alpha, H0TwoTailed);
    statistic.upper = statistic.lower == NumericFailure ? NumericFailure : -statistic.lower;
    return statistic.lower != NumericFailure;
  }
};

// --- F tests.

// The F test of an effect with noncentrality `delta`, or of random effects that multiply the
// statistic by `ratio`.
bool DescribeFTest(const FDesign& design,
                   double ratio,
                   double alpha,
                   std::int16_t algorithm,
                   CriticalFCache& criticals,
                   Statistic& statistic) {
  int failure = 0;
  statistic.upper = criticals.Find(design.df1, design.df2, 1 - alpha, failure);
  statistic.null.kind = StatisticKind::F;
  statistic.null.df1 = AsDouble(design.df1);
  statistic.null.df2 = AsDouble(design.df2);
  statistic.null.algorithm = algorithm;
  statistic.alternative = statistic.null;
  statistic.alternative.noncentrality = design.delta;
  statistic.alternative.scale = ratio;
  return failure == 0;
}

// --- One-way analysis of variance.

struct OneWay : DesignOf<AV1Params, Family::AV1> {
  double committedAlpha = 0;
  double critical = NumericFailure;
  CriticalFCache criticals{};

  void Started() { committedAlpha = record.Alpha; }

  OneWayTest Test() const {
    return {record.NumberOfGroups, record.RMSSE, record.Alpha, record.ModelType, record.Algorithm};
  }
  FDesign Design() const { return OneWayDesign(record.NumberOfGroups, record.N, record.RMSSE); }

  double Power(std::size_t /*effect*/, Refusal& /*refusal*/, ProcedureObserver& /*observer*/) {
    int err = 0;
    return OneWayPower(Test(), record.N, err, critical, criticals);
  }

  SearchResult Size(std::size_t /*effect*/, ProcedureObserver& observer) {
    return OneWayRequiredN({Test(), committedAlpha, record.PowerGoal, sizeLimit}, criticals,
                           observer);
  }

  void ShowPower(Computed& computed) const {
    const FDesign design = Design();
    computed.noncentrality = design.delta;
    computed.effectDf[0] = AsDouble(design.df1);
    computed.errorDf = AsDouble(design.df2);
    computed.critical[0] = critical;
  }

  // The noncentrality is that of the size in the record, not of the required one.
  void ShowSize(const SearchResult& /*found*/, Computed& computed) const {
    computed.noncentrality = Design().delta;
  }

  bool Describe(std::size_t /*effect*/, Statistic& statistic) {
    FDesign design = Design();
    double ratio = 1;
    if (record.ModelType == RandomEffects) {
      design.delta = 0;
      ratio = AsDouble(record.N) * (record.RMSSE * record.RMSSE) + 1;
    }
    return DescribeFTest(design, ratio, record.Alpha, record.Algorithm, criticals, statistic);
  }
};

// --- Two-way analysis of variance: three tests on one error term, each on its own.

constexpr std::size_t kEffects = 3;
constexpr f64 AV2Params::*kRmsse[kEffects] = {&AV2Params::RMSSE_Row, &AV2Params::RMSSE_Col,
                                              &AV2Params::RMSSE_Int};
constexpr double kTwoWayTolerance = PolicyOf(SearchMember::TwoWayAnova).nullTolerance;

struct TwoWay : DesignOf<AV2Params, Family::AV2> {
  double critical = NumericFailure;
  CriticalFCache criticals{};

  double Power(std::size_t effect, Refusal& refusal, ProcedureObserver& /*observer*/) {
    const AV2Params& p = record;
    int err = 0;
    return TwoWayPower(p.Alpha, p.Rows, p.Columns, p.N, p.*kRmsse[effect], p.Algorithm,
                       static_cast<std::int16_t>(effect), critical, err, refusal, criticals);
  }

  SearchResult Size(std::size_t effect, ProcedureObserver& observer) {
    const AV2Params& p = record;
    return TwoWayRequiredN({p.Rows, p.Columns, p.*kRmsse[effect], p.Alpha, p.PowerGoal, p.Algorithm,
                            static_cast<std::int16_t>(effect), sizeLimit},
                           criticals, observer);
  }

  // An effect that is refused says so and leaves its rows blank; the others go on.
  bool Refused(std::size_t effect, TrueNull trueNull, ProcedureObserver& observer) const {
    Refusal refusal;
    NullHypothesisCheck(record.*kRmsse[effect], H0AtMost, kTwoWayTolerance, trueNull, refusal);
    observer.Tell(refusal);
    return static_cast<bool>(refusal);
  }

  void ShowDf(std::size_t effect, Computed& computed) const {
    const auto selector = static_cast<std::int16_t>(effect);
    computed.effectDf[effect] =
        AsDouble(ShownTwoWayEffectDf(record.Rows, record.Columns, selector));
    computed.errorDf =
        AsDouble(TwoWayDesign(record.Rows, record.Columns, record.N, 0, selector).df2);
  }

  Outcome ComputePower(ProcedureObserver& observer) {
    Outcome outcome;
    outcome.good = true;
    Computed& computed = outcome.computed;
    for (std::size_t effect = 0; effect < kEffects; ++effect) {
      ShowDf(effect, computed);
      computed.power[effect] = NumericFailure;
      if (Refused(effect, TrueNull::Exactly, observer)) {
        continue;
      }
      Refusal refusal;
      computed.power[effect] = Power(effect, refusal, observer);
      computed.critical[effect] = critical;
      observer.Tell(refusal);
    }
    return outcome;
  }

  Outcome ComputeSize(ProcedureObserver& observer) {
    Outcome outcome;
    outcome.good = true;
    Computed& computed = outcome.computed;
    for (std::size_t effect = 0; effect < kEffects; ++effect) {
      computed.power[effect] = NumericFailure;
      computed.size[effect] = SizeFailure;
      if (Refused(effect, TrueNull::WithinTolerance, observer)) {
        continue;
      }
      // A search that passed the limit still has its last power, which is not to be shown: the rows
      // of a failed effect stay blank.
      const SearchResult found = Size(effect, observer);
      observer.Tell(found.refusal);
      if (found.status == SearchOk) {
        computed.power[effect] = found.actualPower;
        computed.size[effect] = found.requiredSize;
      }
    }
    return outcome;
  }

  bool Describe(std::size_t effect, Statistic& statistic) {
    const AV2Params& p = record;
    const FDesign design =
        TwoWayDesign(p.Rows, p.Columns, p.N, p.*kRmsse[effect], static_cast<std::int16_t>(effect));
    return DescribeFTest(design, 1, p.Alpha, p.Algorithm, criticals, statistic);
  }
};

// --- Rows.

double PCMeasure(const RecordView& record) { return As<PCParams>(record).StandardizedEffect; }
double AV1Measure(const RecordView& record) { return As<AV1Params>(record).RMSSE; }
template <std::size_t effect>
double AV2Measure(const RecordView& record) {
  return As<AV2Params>(record).*kRmsse[effect];
}
// The measure is the field itself.
double Itself(const RecordView& /*record*/, double measure) { return measure; }

void DeriveAV1(const RecordView& record, Computed& derived) {
  const auto& p = As<AV1Params>(record);
  derived.noncentrality = OneWayDesign(p.NumberOfGroups, p.N, p.RMSSE).delta;
}

// The searches for sizes end at the limit of the field.
template <class Params,
          Family family,
          IntervalLimits (*limits)(const Params&, std::int64_t, ProcedureObserver&)>
Outcome IntervalWithSizes(const RecordView& record, ProcedureObserver& observer) {
  const auto sizeLimit = static_cast<std::int64_t>(LimitField(RowOf(family)).upper);
  return OutcomeOf(limits(As<Params>(record), sizeLimit, observer));
}

Groups PCGroups(const RecordView& record) {
  return {{{As<PCParams>(record).SampleSize, As<PCParams>(record).NumberOfGroups}}};
}
Groups AV1Groups(const RecordView& record) {
  return {{{As<AV1Params>(record).N, As<AV1Params>(record).NumberOfGroups}}};
}
Groups AV2Groups(const RecordView& record) {
  const auto& p = As<AV2Params>(record);
  return {{{p.N, static_cast<std::int64_t>(p.Rows) * p.Columns}}};
}

constexpr NullCheck kPCCheck = {PCMeasure, PolicyOf(SearchMember::PlannedContrast).nullTolerance,
                                H0TwoTailed};
constexpr EffectRow kPCEffect[] = {
    {nullptr, "Es", "StandardizedEffect", nullptr, 0, true, PCMeasure, Itself, kPCCheck, kPCCheck}};

// The power of one-way tests has no null hypothesis to refuse: without an effect it is alpha.
constexpr EffectRow kAV1Effect[] = {
    {nullptr,
     "RMSSE",
     "RMSSE",
     nullptr,
     0,
     false,
     AV1Measure,
     Itself,
     {},
     {AV1Measure, PolicyOf(SearchMember::OneWayAnova).nullTolerance, H0AtMost}}};

template <std::size_t effect>
constexpr EffectRow TwoWayEffectRow(const char* of, const char* rmsse) {
  constexpr NullCheck check = {AV2Measure<effect>, kTwoWayTolerance, H0AtMost};
  return {of, "RMSSE", rmsse, nullptr, 0, false, AV2Measure<effect>, Itself, check, check};
}
constexpr EffectRow kAV2Effects[] = {TwoWayEffectRow<0>("row", "RMSSE_Row"),
                                     TwoWayEffectRow<1>("column", "RMSSE_Col"),
                                     TwoWayEffectRow<2>("interaction", "RMSSE_Int")};

constexpr AlgorithmRow kPCAlgorithms[] = {
    {nullptr, 0, "noncentral t distribution", "Owen, D. B. (1965). Biometrika 52, 437-446."}};
constexpr AlgorithmRow kAV1Algorithms[] = {
    {"ModelType", FixedEffects, "fixed effects: noncentral F distribution", kTang},
    {"ModelType", RandomEffects, "random effects: central F distribution",
     "Scheffe, H. (1959). The analysis of variance, section 7.2. New York: Wiley."},
    {"Algorithm", FExact, "exact distribution", kTang},
    {"Algorithm", FTiku, "Tiku's approximation", kTiku}};
constexpr AlgorithmRow kAV2Algorithms[] = {
    {"Algorithm", FExact, "noncentral F distribution", kTang},
    {"Algorithm", FTiku, "Tiku's approximation", kTiku}};

constexpr FamilyRow kRows[] = {
    {Family::PC,
     {nullptr, {{{Counts::PerGroup, "SampleSize"}}}},
     PCGroups,
     kPCEffect,
     false,
     kPCAlgorithms,
     Open<Contrast>,
     IntervalFrom<PCParams, ContrastInterval>},
    {Family::AV1,
     {nullptr, {{{Counts::PerGroup, "N"}}}},
     AV1Groups,
     kAV1Effect,
     false,
     kAV1Algorithms,
     Open<OneWay>,
     IntervalWithSizes<AV1Params, Family::AV1, OneWayInterval>,
     DeriveAV1},
    {Family::AV2,
     {nullptr, {{{Counts::PerCell, "N"}}}},
     AV2Groups,
     kAV2Effects,
     true,
     kAV2Algorithms,
     Open<TwoWay>,
     IntervalWithSizes<AV2Params, Family::AV2, TwoWayInterval>},
};

}  // namespace

std::span<const FamilyRow> AnovaRows() { return kRows; }

}  // namespace poweranalysis
