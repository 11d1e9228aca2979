#include "procedures/Variances.h"

#include "families/SessionOf.h"

namespace poweranalysis {

namespace {

constexpr const char* kHays =
    "Hays, W. L. (1988). Statistics, 4th ed., chapter 9. New York: Holt, Rinehart and Winston.";

double TailOf(double alpha, std::int16_t form, std::int16_t side) {
  return CriticalProbability(alpha, form, side);
}

// --- One variance.

struct OneVariance : DesignOf<V1Params, Family::V1> {
  CriticalChiSquareCache criticals{};

  double Power(std::size_t /*effect*/, Refusal& refusal, ProcedureObserver& /*observer*/) {
    const V1Params& p = record;
    int err = 0;
    return ChiSquareVariancePower(p.Alpha, p.DegreesOfFreedom, p.PopulationVariance,
                                  p.NullHypothesizedVariance, p.H0Type, err, refusal, criticals);
  }

  SearchResult Size(std::size_t /*effect*/, ProcedureObserver& observer) {
    const V1Params& p = record;
    return OneVarianceRequiredDf({p.PopulationVariance, p.NullHypothesizedVariance, p.Alpha,
                                  p.PowerGoal, p.H0Type, sizeLimit},
                                 criticals, observer);
  }

  bool Describe(std::size_t /*effect*/, Statistic& statistic) {
    const V1Params& p = record;
    statistic.null.kind = StatisticKind::ChiSquare;
    statistic.null.df1 = p.DegreesOfFreedom;
    statistic.alternative = statistic.null;
    statistic.alternative.scale = p.PopulationVariance / p.NullHypothesizedVariance;
    const auto critical = [&](std::int16_t side) {
      int status = 0;
      return criticals.Find(p.DegreesOfFreedom, TailOf(p.Alpha, p.H0Type, side), status);
    };
    return p.H0Type != H0Zero && PutCriticals(p.H0Type, critical, statistic);
  }
};

// --- Two variances, which the test knows by their ratio alone.

struct TwoVariances : DesignOf<V2Params, Family::V2> {
  double ratio = 0;
  CriticalFCache criticals{};

  // A power is asked of two variances, a size of their ratio.
  void Follow(Question question) {
    ratio = question == Question::Power ? record.Var1 / record.Var2 : record.Ratio;
  }
  void SetEffect(double measure) { ratio = measure; }

  double Power(std::size_t /*effect*/, Refusal& refusal, ProcedureObserver& /*observer*/) {
    const V2Params& p = record;
    int err = 0;
    return TwoVariancePower(ratio, p.Alpha, p.Df1, p.Df2, p.H0Type, err, p.Algorithm, refusal,
                            criticals);
  }

  SearchResult Size(std::size_t /*effect*/, ProcedureObserver& observer) {
    const V2Params& p = record;
    return TwoVariancesRequiredDf(
        {ratio, p.Alpha, p.PowerGoal, p.H0Type, p.DfToVary, p.Df2, p.Algorithm, sizeLimit},
        criticals, observer);
  }

  void ShowSize(const SearchResult& found, Computed& computed) const {
    computed.size[1] = record.DfToVary == DfToVaryBoth ? found.requiredSize : record.Df2;
  }

  bool Describe(std::size_t /*effect*/, Statistic& statistic) {
    const V2Params& p = record;
    statistic.null.kind = StatisticKind::F;
    statistic.null.df1 = p.Df1;
    statistic.null.df2 = p.Df2;
    statistic.null.algorithm = p.Algorithm;
    statistic.alternative = statistic.null;
    statistic.alternative.scale = ratio;
    const auto critical = [&](std::int16_t side) {
      int failure = 0;
      return criticals.Find(p.Df1, p.Df2, TailOf(p.Alpha, p.H0Type, side), failure);
    };
    return p.H0Type != H0Zero && PutCriticals(p.H0Type, critical, statistic);
  }
};

// --- Rows.

double V1Measure(const RecordView& record) {
  const auto& p = As<V1Params>(record);
  return p.PopulationVariance / p.NullHypothesizedVariance;
}
double SolveV1(const RecordView& record, double ratio) {
  return ratio * As<V1Params>(record).NullHypothesizedVariance;
}
double V1Difference(const RecordView& record) {
  const auto& p = As<V1Params>(record);
  return VarianceEffect(p.PopulationVariance, p.NullHypothesizedVariance);
}
double V2Measure(const RecordView& record) {
  return As<V2Params>(record).Var1 / As<V2Params>(record).Var2;
}
double SolveV2(const RecordView& record, double ratio) { return ratio * As<V2Params>(record).Var2; }
double V2Difference(const RecordView& record) {
  return VarianceEffect(As<V2Params>(record).Var1, As<V2Params>(record).Var2);
}
double V2RatioDifference(const RecordView& record) { return As<V2Params>(record).Ratio - 1; }

// The observations are one more than the degrees of freedom.
Groups V1Groups(const RecordView& record) {
  return OneGroup(std::int64_t{As<V1Params>(record).DegreesOfFreedom} + 1);
}
Groups V2Groups(const RecordView& record) {
  const auto& p = As<V2Params>(record);
  return TwoGroups(std::int64_t{p.Df1} + 1, std::int64_t{p.Df2} + 1);
}

constexpr NullCheck kV1Check = {V1Difference, PolicyOf(SearchMember::OneVariance).nullTolerance};
constexpr EffectRow kV1Effect[] = {{nullptr, "Ratio", "PopulationVariance",
                                    "NullHypothesizedVariance", 0, true, V1Measure, SolveV1,
                                    kV1Check, kV1Check}};
constexpr double kV2Tolerance = PolicyOf(SearchMember::TwoVariances).nullTolerance;
constexpr EffectRow kV2Effect[] = {{nullptr,
                                    "Ratio",
                                    "Var1",
                                    "Var2",
                                    0,
                                    true,
                                    V2Measure,
                                    SolveV2,
                                    {V2Difference, kV2Tolerance},
                                    {V2RatioDifference, kV2Tolerance}}};

constexpr AlgorithmRow kV1Algorithms[] = {{nullptr, 0, "central chi-square distribution", kHays}};
constexpr AlgorithmRow kV2Algorithms[] = {
    {"Algorithm", FExact, "central F distribution", kHays},
    {"Algorithm", FTiku, "Tiku's approximation", "Tiku, M. L. (1966). Biometrika 53, 606-610."}};

constexpr FamilyRow kRows[] = {
    {Family::V1,
     {nullptr, {{{Counts::Df, "DegreesOfFreedom"}}}},
     V1Groups,
     kV1Effect,
     false,
     kV1Algorithms,
     Open<OneVariance>},
    // Kept: the range of DfToVary holds a 2 that nothing serves; only a settings file can bring it.
    {Family::V2,
     {"DfToVary", {{{Counts::Df, "Df1", "Df2"}, {Counts::Df1, "Df1"}}}, 2, true},
     V2Groups,
     kV2Effect,
     false,
     kV2Algorithms,
     Open<TwoVariances>},
};

}  // namespace

std::span<const FamilyRow> VarianceRows() { return kRows; }

}  // namespace poweranalysis
