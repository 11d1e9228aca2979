#include "procedures/ModelFit.h"

#include "distributions/NoncentralChiSquare.h"
#include "families/SessionOf.h"
#include "intervals/ModelFit.h"

namespace poweranalysis {

namespace {

struct ModelFit : DesignOf<SEMParams, Family::SEM> {
  ModelFitCriticalCache criticals{};

  double Power(std::size_t /*effect*/, Refusal& refusal, ProcedureObserver& /*observer*/) {
    const SEMParams& p = record;
    int err = 0;
    return ModelFitPower({p.SampleSize, p.DegreesOfFreedom, p.Alpha, p.R0, p.H0Type}, p.R, err,
                         refusal, criticals);
  }

  SearchResult Size(std::size_t /*effect*/, ProcedureObserver& observer) {
    const SEMParams& p = record;
    return ModelFitRequiredN({p.R, p.R0, p.Alpha, p.PowerGoal, p.DegreesOfFreedom, p.H0Type},
                             observer);
  }

  double Noncentrality(double rmsea) const {
    return rmsea * rmsea * static_cast<double>(record.SampleSize - 1) * record.DegreesOfFreedom;
  }

  bool Describe(std::size_t /*effect*/, Statistic& statistic) {
    const SEMParams& p = record;
    // Exact fit: nothing lies below an RMSEA of 0.
    const bool isExactFit = p.R0 == 0 && (p.H0Type == H0TwoTailed || p.H0Type == H0AtMost);
    const std::int16_t form = isExactFit ? H0Zero : p.H0Type;
    statistic.null.kind = StatisticKind::ChiSquare;
    statistic.null.df1 = p.DegreesOfFreedom;
    statistic.null.noncentrality = Noncentrality(p.R0);
    statistic.alternative = statistic.null;
    statistic.alternative.noncentrality = Noncentrality(p.R);
    // Kept: the two-tailed power takes away the lower tail that it should add.
    statistic.lowTail = form == H0TwoTailed ? LowTail::Subtracted : LowTail::Added;
    const auto critical = [&](std::int16_t side) {
      int status = 0;
      return NoncentralChiSquareQuantile(statistic.null.noncentrality, p.DegreesOfFreedom,
                                         CriticalProbability(p.Alpha, form, side), status);
    };
    return PutCriticals(form, critical, statistic);
  }
};

double Measure(const RecordView& record) { return As<SEMParams>(record).R; }
double Itself(const RecordView& /*record*/, double measure) { return measure; }
double Difference(const RecordView& record) {
  return As<SEMParams>(record).R - As<SEMParams>(record).R0;
}
Groups GroupOf(const RecordView& record) { return OneGroup(As<SEMParams>(record).SampleSize); }

Outcome SEMInterval(const RecordView& record, ProcedureObserver& /*observer*/) {
  return OutcomeOf(ModelFitInterval(As<SEMParams>(record)));
}

constexpr NullCheck kCheck = {Difference, ModelFitTolerance};
constexpr EffectRow kEffect[] = {
    {nullptr, "RMSEA", "R", "R0", 0, true, Measure, Itself, kCheck, kCheck}};
constexpr AlgorithmRow kAlgorithms[] = {
    {nullptr, 0, "noncentral chi-square distribution",
     "Browne, M. W. and Cudeck, R. (1993). Alternative ways of assessing model fit. In Bollen and "
     "Long (eds.), Testing structural equation models, 136-162."}};

constexpr FamilyRow kRows[] = {
    {Family::SEM,
     {nullptr, {{{Counts::Observations, "SampleSize"}}}},
     GroupOf,
     kEffect,
     false,
     kAlgorithms,
     Open<ModelFit>,
     SEMInterval},
};

}  // namespace

std::span<const FamilyRow> ModelFitRows() { return kRows; }

}  // namespace poweranalysis
