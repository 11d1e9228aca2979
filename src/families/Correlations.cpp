#include "procedures/Correlations.h"

#include "families/SessionOf.h"
#include "intervals/Correlations.h"
#include "procedures/SquaredCorrelation.h"
#include "procedures/TTests.h"

namespace poweranalysis {

namespace {

constexpr const char* kHotelling =
    "Hotelling, H. (1953). Journal of the Royal Statistical Society B 15, 193-232.";
constexpr const char* kGayen = "Gayen, A. K. (1951). Biometrika 38, 219-247.";
constexpr const char* kFisher = "Fisher, R. A. (1921). Metron 1, 3-32.";

// --- One correlation.

struct OneCorrelation : DesignOf<RParams, Family::R> {
  CorrelationCriticalCache criticals{};

  double Power(std::size_t /*effect*/, Refusal& refusal, ProcedureObserver& /*observer*/) {
    const RParams& p = record;
    int status = 0;
    return CorrelationPower({p.SampleSize, p.Alpha, p.Rho0, p.Algorithm, p.H0Type}, p.Rho, status,
                            refusal, criticals);
  }

  // A search that went on with the refined approximation has an answer, and has said so.
  SearchResult Size(std::size_t /*effect*/, ProcedureObserver& observer) {
    const RParams& p = record;
    SearchResult found = CorrelationRequiredN(
        {p.Rho, p.Rho0, p.Alpha, p.PowerGoal, p.Algorithm, p.H0Type}, observer);
    if (found.status == CorrelationSwitched) {
      found.status = SearchOk;
    }
    return found;
  }

  bool Describe(std::size_t /*effect*/, Statistic& statistic) {
    const RParams& p = record;
    statistic.null.kind = StatisticKind::Correlation;
    statistic.null.n = p.SampleSize;
    statistic.null.parameter = p.Rho0;
    statistic.null.algorithm = p.Algorithm;
    statistic.alternative = statistic.null;
    statistic.alternative.parameter = p.Rho;
    return PutCriticals(
        p.H0Type,
        [&](std::int16_t side) {
          return CorrelationCritical(p.SampleSize, p.Alpha, p.Rho0, p.Algorithm, p.H0Type, side);
        },
        statistic);
  }
};

// --- Two correlations.

struct TwoCorrelations : DesignOf<Z2RParams, Family::Z2R> {
  double Power(std::size_t /*effect*/, Refusal& refusal, ProcedureObserver& /*observer*/) {
    const Z2RParams& p = record;
    return TwoCorrelationsPower(p.Rho1, p.Rho2, p.SampleSizeN1, p.SampleSizeN2, p.Alpha, p.H0Type,
                                p.Algorithm, refusal);
  }

  SearchResult Size(std::size_t /*effect*/, ProcedureObserver& observer) {
    const Z2RParams& p = record;
    return TwoCorrelationsRequiredN({p.Rho1, p.Rho2, p.Alpha, p.PowerGoal, p.SampleSizeN1,
                                     p.SampleSizeN2, p.H0Type, p.Algorithm, p.NToVary},
                                    observer);
  }

  // The table shows both groups, the fixed one as it is.
  void ShowSize(const SearchResult& found, Computed& computed) const {
    computed.size[0] = record.NToVary == NToVaryN2 ? record.SampleSizeN1 : found.requiredSize;
    computed.size[1] = record.NToVary == NToVaryN1 ? record.SampleSizeN2 : found.requiredSize;
  }

  bool Describe(std::size_t /*effect*/, Statistic& statistic) {
    const Z2RParams& p = record;
    const ZDifference difference =
        FisherZDifference(p.Rho1, p.Rho2, p.SampleSizeN1, p.SampleSizeN2, p.Algorithm);
    statistic.alternative.mean = difference.mean;
    statistic.alternative.sd = difference.sd;
    return difference.sd != NumericFailure &&
           PutCriticals(
               p.H0Type,
               [&](std::int16_t side) { return FisherZCritical(p.Alpha, p.H0Type, side); },
               statistic);
  }
};

// --- Squared multiple correlation.

struct SquaredCorrelation : DesignOf<R2Params, Family::R2> {
  SquaredCorrelationCriticalCache criticals{};

  double Power(std::size_t /*effect*/, Refusal& refusal, ProcedureObserver& observer) {
    const R2Params& p = record;
    int err = 0;
    return SquaredCorrelationPower(
        {p.SampleSize, p.TotalNumberOfVars, p.Alpha, p.R2Null, p.Algorithm, p.H0Type},
        p.PopulationR2, err, refusal, criticals, observer);
  }

  SearchResult Size(std::size_t /*effect*/, ProcedureObserver& observer) {
    const R2Params& p = record;
    return SquaredCorrelationRequiredN({p.PopulationR2, p.R2Null, p.Alpha, p.PowerGoal,
                                        p.TotalNumberOfVars, p.Algorithm, p.H0Type},
                                       observer);
  }

  bool Describe(std::size_t /*effect*/, Statistic& statistic) {
    const R2Params& p = record;
    // Nothing lies below 0.
    const bool isF = p.R2Null == 0 && (p.H0Type == H0TwoTailed || p.H0Type == H0AtMost);
    const std::int16_t form = isF ? H0Zero : p.H0Type;
    statistic.null.kind = StatisticKind::SquaredCorrelation;
    statistic.null.n = p.SampleSize;
    statistic.null.variables = p.TotalNumberOfVars;
    statistic.null.parameter = p.R2Null;
    statistic.null.algorithm = p.Algorithm;
    statistic.alternative = statistic.null;
    statistic.alternative.parameter = p.PopulationR2;
    const auto critical = [&](std::int16_t side) {
      int failure = 0;
      const double value = MultipleR2CriticalValue(p.SampleSize, p.TotalNumberOfVars, p.Alpha,
                                                   p.R2Null, p.Algorithm, form, failure, side);
      return failure == 0 ? value : NumericFailure;
    };
    return p.SampleSize > p.TotalNumberOfVars && PutCriticals(form, critical, statistic);
  }
};

// --- Rows.

double RMeasure(const RecordView& record) { return As<RParams>(record).Rho; }
double R2Measure(const RecordView& record) { return As<R2Params>(record).PopulationR2; }
double Itself(const RecordView& /*record*/, double measure) { return measure; }
double RDifference(const RecordView& record) {
  return As<RParams>(record).Rho - As<RParams>(record).Rho0;
}
double R2Difference(const RecordView& record) {
  return As<R2Params>(record).PopulationR2 - As<R2Params>(record).R2Null;
}
double Z2RDifference(const RecordView& record) {
  return As<Z2RParams>(record).Rho1 - As<Z2RParams>(record).Rho2;
}
double SolveZ2R(const RecordView& record, double difference) {
  return As<Z2RParams>(record).Rho2 + difference;
}
// The search goes by the scale of Fisher's z.
double Z2RSearchDifference(const RecordView& record) {
  return FisherZ(As<Z2RParams>(record).Rho1) - FisherZ(As<Z2RParams>(record).Rho2);
}

template <class Params>
Groups GroupOf(const RecordView& record) {
  return OneGroup(As<Params>(record).SampleSize);
}
Groups Z2RGroups(const RecordView& record) {
  const auto& p = As<Z2RParams>(record);
  return TwoGroups(p.SampleSizeN1, p.SampleSizeN2);
}

constexpr NullCheck kRCheck = {RDifference, CorrelationTolerance};
constexpr EffectRow kREffect[] = {
    {nullptr, "Rho", "Rho", "Rho0", 0, true, RMeasure, Itself, kRCheck, kRCheck}};
constexpr EffectRow kZ2REffect[] = {{nullptr,
                                     "Rho1 - Rho2",
                                     "Rho1",
                                     "Rho2",
                                     0,
                                     true,
                                     Z2RDifference,
                                     SolveZ2R,
                                     {Z2RDifference, CorrelationTolerance},
                                     {Z2RSearchDifference, CorrelationTolerance}}};
constexpr EffectRow kR2Effect[] = {{nullptr,
                                    "P2",
                                    "PopulationR2",
                                    "R2Null",
                                    0,
                                    true,
                                    R2Measure,
                                    Itself,
                                    {R2Difference, SquaredCorrelationTolerance},
                                    {R2Difference, BracketBisectTolerance}}};

constexpr AlgorithmRow kRAlgorithms[] = {
    {"Algorithm", CorrelationExact, "distribution of r", kHotelling},
    {"Algorithm", CorrelationFisherZRefined, "Fisher's z, refined", kGayen},
    {"Algorithm", CorrelationFisherZCrude, "Fisher's z, crude", kFisher}};
constexpr AlgorithmRow kZ2RAlgorithms[] = {
    {"Algorithm", CorrelationFisherZRefined, "Fisher's z, refined", kGayen},
    {"Algorithm", CorrelationFisherZCrude, "Fisher's z, crude", kFisher}};
constexpr AlgorithmRow kR2Algorithms[] = {
    {"Algorithm", R2Lee, "noncentral F distribution by three moments",
     "Lee, Y.-S. (1971). Journal of the Royal Statistical Society B 33, 117-130."},
    {"Algorithm", R2Exact, "distribution of R2",
     "Fisher, R. A. (1928). Proceedings of the Royal Society A 121, 654-673."}};

constexpr FamilyRow kRows[] = {
    {Family::R,
     {nullptr, {{{Counts::Observations, "SampleSize"}}}},
     GroupOf<RParams>,
     kREffect,
     false,
     kRAlgorithms,
     Open<OneCorrelation>,
     IntervalFrom<RParams, CorrelationInterval>},
    {Family::Z2R,
     {"NToVary",
      {{{Counts::PerGroup, "SampleSizeN1", "SampleSizeN2"},
        {Counts::Group1, "SampleSizeN1"},
        {Counts::Group2, "SampleSizeN2", nullptr, nullptr, 1}}},
      3},
     Z2RGroups,
     kZ2REffect,
     false,
     kZ2RAlgorithms,
     Open<TwoCorrelations>},
    {Family::R2,
     {nullptr, {{{Counts::Observations, "SampleSize"}}}},
     GroupOf<R2Params>,
     kR2Effect,
     false,
     kR2Algorithms,
     Open<SquaredCorrelation>,
     IntervalFrom<R2Params, SquaredCorrelationInterval>},
};

}  // namespace

std::span<const FamilyRow> CorrelationRows() { return kRows; }

}  // namespace poweranalysis
