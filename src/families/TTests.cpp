#include "procedures/TTests.h"

#include <algorithm>

#include "families/SessionOf.h"
#include "intervals/Means.h"

namespace poweranalysis {

namespace {

constexpr const char* kReference = "Owen, D. B. (1965). Biometrika 52, 437-446.";
constexpr AlgorithmRow kAlgorithms[] = {{nullptr, 0, "noncentral t distribution", kReference}};

// --- What each record means.

double EffectOf(const T1Params& p) { return OneMeanEffect(p.Mu, p.Mu0, p.Sigma); }
double EffectOf(const T2Params& p) { return TwoMeansEffect(p.Mu1, p.Mu2, p.Sigma); }
double SpreadOf(const T3Params& p) { return PairedSigmaDiff(p.Sigma1, p.Sigma2, p.BetweenGroupR); }
double EffectOf(const T3Params& p) { return PairedMeansEffect(p.Mu1, p.Mu2, SpreadOf(p)); }

double Shifted(const T1Params& p, double es) { return p.Mu0 + es * p.Sigma; }
double Shifted(const T2Params& p, double es) { return p.Mu2 + es * p.Sigma; }
double Shifted(const T3Params& p, double es) { return p.Mu2 + es * SpreadOf(p); }

TDesign DesignAt(const T2Params& p, double es) {
  return TwoGroupsDesign(es, p.SampleSizeN1, p.SampleSizeN2);
}
template <class Params>
TDesign DesignAt(const Params& p, double es) {
  return OneGroupDesign(es, p.SampleSize);
}

SearchResult Search(const T2Params& p,
                    const TSizeRequest& request,
                    CriticalTCache& criticals,
                    ProcedureObserver& observer) {
  const std::int64_t fixedN = p.NToVary == NToVaryN1 ? p.SampleSizeN2 : p.SampleSizeN1;
  return TwoGroupsRequiredN(request, p.NToVary, fixedN, criticals, observer);
}
template <class Params>
SearchResult Search(const Params& /*p*/,
                    const TSizeRequest& request,
                    CriticalTCache& criticals,
                    ProcedureObserver& observer) {
  return OneGroupRequiredN(request, criticals, observer);
}

double ShownCritical(const T1Params& p, double critical) {
  return ShownCriticalTOfOneMean(critical, p.H0Type);
}
template <class Params>
double ShownCritical(const Params& /*p*/, double critical) {
  return ShownCriticalT(critical);
}

double CriticalBeside(const T2Params& p, std::int64_t n, CriticalTCache& /*criticals*/) {
  return ShownCriticalTOfRequiredN(n, p.Alpha, p.H0Type);
}
template <class Params>
double CriticalBeside(const Params& p, std::int64_t n, CriticalTCache& criticals) {
  return ShownCriticalT(criticals.Find(OneGroupDesign(0, n).df, p.Alpha, p.H0Type));
}

template <class Params>
void ShowSpread(const Params& /*p*/, Computed& /*computed*/) {}
void ShowSpread(const T3Params& p, Computed& computed) { computed.spread = SpreadOf(p); }

// --- The design.

template <class Params, Family theFamily>
struct TTest : DesignOf<Params, theFamily> {
  double es = 0;
  CriticalTCache criticals{};

  void Follow(Question /*question*/) { es = EffectOf(this->record); }
  void SetEffect(double measure) { es = measure; }

  double Power(std::size_t /*effect*/, Refusal& refusal, ProcedureObserver& /*observer*/) {
    const Params& p = this->record;
    return TTestPower(DesignAt(p, es), p.Alpha, p.H0Type, refusal, criticals);
  }

  SearchResult Size(std::size_t /*effect*/, ProcedureObserver& observer) {
    const Params& p = this->record;
    return Search(p, {es, p.Alpha, p.PowerGoal, p.H0Type, this->sizeLimit}, criticals, observer);
  }

  void ShowPower(Computed& computed) {
    const Params& p = this->record;
    computed.effect = es;
    computed.critical[0] = ShownCritical(p, criticals.Find(DesignAt(p, es).df, p.Alpha, p.H0Type));
    ShowSpread(p, computed);
  }

  void ShowSize(const SearchResult& found, Computed& computed) {
    const Params& p = this->record;
    computed.effect = es;
    if (found.status == SearchOk) {
      computed.critical[0] = CriticalBeside(p, found.requiredSize, criticals);
    }
    ShowSpread(p, computed);
  }

  bool Describe(std::size_t /*effect*/, Statistic& statistic) {
    const Params& p = this->record;
    const TDesign design = DesignAt(p, es);
    const double critical = criticals.Find(design.df, p.Alpha, p.H0Type);
    statistic.null.kind = StatisticKind::T;
    statistic.null.df1 = design.df;
    statistic.alternative = statistic.null;
    statistic.alternative.noncentrality = design.delta;
    // The two are the same number with either sign.
    return PutCriticals(
               p.H0Type,
               [&](std::int16_t side) {
                 const bool below = side == LowSide || p.H0Type == H0AtLeast;
                 return below || critical == NumericFailure ? critical : -critical;
               },
               statistic) &&
           p.H0Type != H0Zero;
  }
};

// --- Rows.

template <class Params>
double Measure(const RecordView& record) {
  return EffectOf(As<Params>(record));
}
template <class Params>
double Solve(const RecordView& record, double es) {
  return Shifted(As<Params>(record), es);
}
template <class Params>
void Derive(const RecordView& record, Computed& derived) {
  derived.effect = EffectOf(As<Params>(record));
  ShowSpread(As<Params>(record), derived);
}
template <class Params>
Groups GroupOf(const RecordView& record) {
  return OneGroup(As<Params>(record).SampleSize);
}
Groups T2Groups(const RecordView& record) {
  const auto& p = As<T2Params>(record);
  return TwoGroups(p.SampleSizeN1, p.SampleSizeN2);
}

template <class Params>
constexpr EffectRow EffectOfMeans(const char* solved, const char* nullField) {
  constexpr double kTolerance = PolicyOf(SearchMember::TTest).nullTolerance;
  constexpr NullCheck check = {Measure<Params>, kTolerance};
  return {nullptr, "Es", solved, nullField, 0, true, Measure<Params>, Solve<Params>, check, check};
}

constexpr EffectRow kT1Effect[] = {EffectOfMeans<T1Params>("Mu", "Mu0")};
constexpr EffectRow kT2Effect[] = {EffectOfMeans<T2Params>("Mu1", "Mu2")};
constexpr EffectRow kT3Effect[] = {EffectOfMeans<T3Params>("Mu1", "Mu2")};

constexpr FamilyRow kRows[] = {
    {Family::T1,
     {nullptr, {{{Counts::Observations, "SampleSize"}}}},
     GroupOf<T1Params>,
     kT1Effect,
     false,
     kAlgorithms,
     Open<TTest<T1Params, Family::T1>>,
     IntervalFrom<T1Params, OneMeanInterval>,
     Derive<T1Params>},
    {Family::T2,
     {"NToVary",
      {{{Counts::PerGroup, "SampleSizeN1", "SampleSizeN2"},
        {Counts::Group1, "SampleSizeN1"},
        {Counts::Group2, "SampleSizeN2"}}},
      3},
     T2Groups,
     kT2Effect,
     false,
     kAlgorithms,
     Open<TTest<T2Params, Family::T2>>,
     IntervalFrom<T2Params, TwoMeansInterval>,
     Derive<T2Params>},
    {Family::T3,
     {nullptr, {{{Counts::Pairs, "SampleSize"}}}},
     GroupOf<T3Params>,
     kT3Effect,
     false,
     kAlgorithms,
     Open<TTest<T3Params, Family::T3>>,
     IntervalFrom<T3Params, PairedMeansInterval>,
     Derive<T3Params>},
};

}  // namespace

std::span<const FamilyRow> TTestRows() { return kRows; }

}  // namespace poweranalysis
