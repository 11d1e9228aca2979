#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdint>
#include <initializer_list>
#include <string>

#include "Unwatched.h"
#include "procedures/Anova.h"
#include "procedures/Correlations.h"
#include "procedures/ModelFit.h"
#include "procedures/OneProportion.h"
#include "procedures/SquaredCorrelation.h"
#include "procedures/Survival.h"
#include "procedures/TTests.h"
#include "procedures/TwoProportions.h"
#include "procedures/Variances.h"

// Times of every family at the built-in values of its fields: one power, one required size, and
// each of its charts by 100 points over the built-in range of its axis, sizes and degrees of
// freedom by ones. The files beside this one time what the peers are asked for.
namespace poweranalysis {
namespace {

constexpr double kAlpha = .05;
constexpr double kGoal = .9;
constexpr std::int64_t kLimit = 150000;
constexpr int kPoints = 100;

// A value that is computed afresh has no cache.
struct NoCache {};

// What is timed: one call at `low`, or a chart from `low` to `high` whose points share a cache.
template <class Cache>
struct Row {
  const char* name;
  double low;
  double high;
  double (*at)(double x, Cache& cache);
};

template <class Cache>
void Call(benchmark::State& state, const Row<Cache>& row) {
  volatile double x = row.low;
  for (auto _ : state) {
    Cache cache;
    benchmark::DoNotOptimize(row.at(x, cache));
  }
}

template <class Cache>
void Chart(benchmark::State& state, const Row<Cache>& row) {
  for (auto _ : state) {
    Cache cache;
    for (int i = 0; i < kPoints; ++i) {
      const double x = row.low + (row.high - row.low) * i / (kPoints - 1);
      benchmark::DoNotOptimize(row.at(x, cache));
    }
  }
}

template <class Cache>
bool Family(const std::string& family, std::initializer_list<Row<Cache>> rows) {
  for (const Row<Cache>& row : rows) {
    const bool isChart = row.low != row.high;
    benchmark::RegisterBenchmark((family + "/" + row.name).c_str(),
                                 [row, isChart](benchmark::State& state) {
                                   isChart ? Chart(state, row) : Call(state, row);
                                 });
  }
  return true;
}

std::int64_t Whole(double x) { return std::llround(x); }
std::int32_t Narrow(double x) { return static_cast<std::int32_t>(std::lround(x)); }
double SizeOf(const SearchResult& result) { return static_cast<double>(result.requiredSize); }

// --- t-tests: T1 and T3 differ in their effect alone.

double OneGroupPower(double es, double n, double alpha, CriticalTCache& c) {
  return TTestPower(OneGroupDesign(es, Whole(n)), alpha, H0TwoTailed, unread, c);
}
double OneGroupN(double es, double alpha, double goal, CriticalTCache& c) {
  return SizeOf(OneGroupRequiredN(
      {.es = es, .alpha = alpha, .powerGoal = goal, .sizeLimit = kLimit}, c, unwatched));
}
constexpr double kT1Effect = .2;
const double kT3Effect = PairedMeansEffect(8, 0, PairedSigmaDiff(10, 10, .1));

double EqualGroupsPower(double es, double n, double alpha, CriticalTCache& c) {
  return TTestPower(EqualGroupsDesign(es, Whole(n)), alpha, H0TwoTailed, unread, c);
}
double EqualGroupsN(double es, double alpha, double goal, CriticalTCache& c) {
  return SizeOf(
      TwoGroupsRequiredN({.es = es, .alpha = alpha, .powerGoal = goal, .sizeLimit = kLimit},
                         NToVaryBoth, 0, c, unwatched));
}
constexpr double kT2Effect = .2;

const bool kT1 = Family<CriticalTCache>(
    "T1",
    {{"Power", 25, 25, [](double n, auto& c) { return OneGroupPower(kT1Effect, n, kAlpha, c); }},
     {"RequiredN", kGoal, kGoal,
      [](double p, auto& c) { return OneGroupN(kT1Effect, kAlpha, p, c); }},
     {"PowerVsN", 10, 109,
      [](double n, auto& c) { return OneGroupPower(kT1Effect, n, kAlpha, c); }},
     {"PowerVsEs", .3, .9, [](double es, auto& c) { return OneGroupPower(es, 25, kAlpha, c); }},
     {"PowerVsAlpha", .01, .25,
      [](double a, auto& c) { return OneGroupPower(kT1Effect, 25, a, c); }},
     {"NVsEs", .3, .9, [](double es, auto& c) { return OneGroupN(es, kAlpha, kGoal, c); }},
     {"NVsAlpha", .01, .25, [](double a, auto& c) { return OneGroupN(kT1Effect, a, kGoal, c); }},
     {"NVsPower", .65, .95, [](double p, auto& c) { return OneGroupN(kT1Effect, kAlpha, p, c); }}});

const bool kT2 = Family<CriticalTCache>(
    "T2",
    {{"Power", 25, 25, [](double n, auto& c) { return EqualGroupsPower(kT2Effect, n, kAlpha, c); }},
     {"RequiredN", kGoal, kGoal,
      [](double p, auto& c) { return EqualGroupsN(kT2Effect, kAlpha, p, c); }},
     {"PowerVsN", 10, 109,
      [](double n, auto& c) { return EqualGroupsPower(kT2Effect, n, kAlpha, c); }},
     {"PowerVsEs", .3, .9, [](double es, auto& c) { return EqualGroupsPower(es, 25, kAlpha, c); }},
     {"PowerVsAlpha", .01, .25,
      [](double a, auto& c) { return EqualGroupsPower(kT2Effect, 25, a, c); }},
     {"NVsEs", .3, .9, [](double es, auto& c) { return EqualGroupsN(es, kAlpha, kGoal, c); }},
     {"NVsAlpha", .01, .25, [](double a, auto& c) { return EqualGroupsN(kT2Effect, a, kGoal, c); }},
     {"NVsPower", .65, .95,
      [](double p, auto& c) { return EqualGroupsN(kT2Effect, kAlpha, p, c); }}});

const bool kT3 = Family<CriticalTCache>(
    "T3",
    {{"Power", 25, 25, [](double n, auto& c) { return OneGroupPower(kT3Effect, n, kAlpha, c); }},
     {"RequiredN", kGoal, kGoal,
      [](double p, auto& c) { return OneGroupN(kT3Effect, kAlpha, p, c); }},
     {"PowerVsN", 10, 109,
      [](double n, auto& c) { return OneGroupPower(kT3Effect, n, kAlpha, c); }},
     {"PowerVsEs", .2, .8, [](double es, auto& c) { return OneGroupPower(es, 25, kAlpha, c); }},
     {"PowerVsAlpha", .01, .25,
      [](double a, auto& c) { return OneGroupPower(kT3Effect, 25, a, c); }},
     {"NVsEs", .2, .8, [](double es, auto& c) { return OneGroupN(es, kAlpha, kGoal, c); }},
     {"NVsAlpha", .01, .25, [](double a, auto& c) { return OneGroupN(kT3Effect, a, kGoal, c); }},
     {"NVsPower", .65, .95, [](double p, auto& c) { return OneGroupN(kT3Effect, kAlpha, p, c); }}});

// --- Contrasts and analyses of variance.

double PCPower(double es, double n, double alpha, CriticalTCache& c) {
  return ContrastPower(3, Whole(n), alpha, es, 6, unread, c);
}
double PCN(double es, double alpha, double goal, CriticalTCache& c) {
  return SizeOf(ContrastRequiredN(
      {.es = es, .ss = 6, .groups = 3, .alpha = alpha, .powerGoal = goal, .sizeLimit = kLimit}, c,
      unwatched));
}
double AV1Power(double rmsse, double n, double alpha, CriticalFCache& c) {
  int err = 0;
  double crit = 0;
  return OneWayPower({.groups = 3, .rmsse = rmsse, .alpha = alpha}, Whole(n), err, crit, c);
}
double AV1N(double rmsse, double alpha, double goal, CriticalFCache& c) {
  return SizeOf(OneWayRequiredN({.test = {.groups = 3, .rmsse = rmsse, .alpha = alpha},
                                 .committedAlpha = alpha,
                                 .powerGoal = goal,
                                 .sizeLimit = kLimit},
                                c, unwatched));
}
double AV2Power(double rmsse, double n, double alpha, CriticalFCache& c) {
  int err = 0;
  double crit = 0;
  return TwoWayPower(alpha, 3, 3, Whole(n), rmsse, FExact, RowEffect, crit, err, unread, c);
}
double AV2N(double rmsse, double alpha, double goal, CriticalFCache& c) {
  return SizeOf(TwoWayRequiredN({.rows = 3,
                                 .columns = 3,
                                 .rmsse = rmsse,
                                 .alpha = alpha,
                                 .powerGoal = goal,
                                 .sizeLimit = kLimit},
                                c, unwatched));
}
constexpr double kRmsse = .25;

const bool kPC = Family<CriticalTCache>(
    "PC",
    {{"Power", 10, 10, [](double n, auto& c) { return PCPower(kRmsse, n, kAlpha, c); }},
     {"RequiredN", kGoal, kGoal, [](double p, auto& c) { return PCN(kRmsse, kAlpha, p, c); }},
     {"PowerVsN", 10, 109, [](double n, auto& c) { return PCPower(kRmsse, n, kAlpha, c); }},
     {"PowerVsEs", .3, .9, [](double es, auto& c) { return PCPower(es, 10, kAlpha, c); }},
     {"PowerVsAlpha", .01, .19, [](double a, auto& c) { return PCPower(kRmsse, 10, a, c); }},
     {"NVsEs", .3, .9, [](double es, auto& c) { return PCN(es, kAlpha, kGoal, c); }},
     {"NVsAlpha", .01, .19, [](double a, auto& c) { return PCN(kRmsse, a, kGoal, c); }},
     {"NVsPower", .75, .95, [](double p, auto& c) { return PCN(kRmsse, kAlpha, p, c); }}});

const bool kAV1 = Family<CriticalFCache>(
    "AV1",
    {{"Power", 10, 10, [](double n, auto& c) { return AV1Power(kRmsse, n, kAlpha, c); }},
     {"RequiredN", kGoal, kGoal, [](double p, auto& c) { return AV1N(kRmsse, kAlpha, p, c); }},
     {"PowerVsN", 5, 104, [](double n, auto& c) { return AV1Power(kRmsse, n, kAlpha, c); }},
     {"PowerVsRMSSE", .15, .525, [](double e, auto& c) { return AV1Power(e, 10, kAlpha, c); }},
     {"PowerVsAlpha", .01, .19, [](double a, auto& c) { return AV1Power(kRmsse, 10, a, c); }},
     {"NVsRMSSE", .15, .525, [](double e, auto& c) { return AV1N(e, kAlpha, kGoal, c); }},
     {"NVsAlpha", .01, .19, [](double a, auto& c) { return AV1N(kRmsse, a, kGoal, c); }},
     {"NVsPower", .75, .95, [](double p, auto& c) { return AV1N(kRmsse, kAlpha, p, c); }}});

const bool kAV2 = Family<CriticalFCache>(
    "AV2",
    {{"Power", 10, 10, [](double n, auto& c) { return AV2Power(kRmsse, n, kAlpha, c); }},
     {"RequiredN", kGoal, kGoal, [](double p, auto& c) { return AV2N(kRmsse, kAlpha, p, c); }},
     {"PowerVsN", 5, 104, [](double n, auto& c) { return AV2Power(kRmsse, n, kAlpha, c); }},
     {"PowerVsRMSSE", .15, .525, [](double e, auto& c) { return AV2Power(e, 10, kAlpha, c); }},
     {"PowerVsAlpha", .01, .19, [](double a, auto& c) { return AV2Power(kRmsse, 10, a, c); }},
     {"NVsRMSSE", .15, .525, [](double e, auto& c) { return AV2N(e, kAlpha, kGoal, c); }},
     {"NVsAlpha", .01, .19, [](double a, auto& c) { return AV2N(kRmsse, a, kGoal, c); }},
     {"NVsPower", .75, .95, [](double p, auto& c) { return AV2N(kRmsse, kAlpha, p, c); }}});

// --- Variances.

double V1Power(double var, double df, double alpha, CriticalChiSquareCache& c) {
  int err = 0;
  return ChiSquareVariancePower(alpha, Whole(df), var, 1, H0TwoTailed, err, unread, c);
}
double V1Df(double var, double alpha, double goal, CriticalChiSquareCache& c) {
  return SizeOf(OneVarianceRequiredDf(
      {.var = var, .var0 = 1, .alpha = alpha, .powerGoal = goal, .sizeLimit = kLimit}, c,
      unwatched));
}
double V2Power(double ratio, double df, double alpha, CriticalFCache& c) {
  int err = 0;
  const std::int64_t both = Whole(df);
  return TwoVariancePower(ratio, alpha, both, both, H0TwoTailed, err, FExact, unread, c);
}
double V2Df(double ratio, double alpha, double goal, CriticalFCache& c) {
  return SizeOf(TwoVariancesRequiredDf(
      {.ratio = ratio, .alpha = alpha, .powerGoal = goal, .sizeLimit = kLimit}, c, unwatched));
}

// The built-in variance and ratio of the charts in which they do not vary.
constexpr double kRatio = 2;
constexpr double kVarianceDf = 10;

const bool kV1 = Family<CriticalChiSquareCache>(
    "V1",
    {{"Power", kVarianceDf, kVarianceDf,
      [](double df, auto& c) { return V1Power(kRatio, df, kAlpha, c); }},
     {"RequiredDf", kGoal, kGoal, [](double p, auto& c) { return V1Df(kRatio, kAlpha, p, c); }},
     {"PowerVsDf", 5, 104, [](double df, auto& c) { return V1Power(kRatio, df, kAlpha, c); }},
     {"PowerVsVariance", 1.15, 1.525,
      [](double v, auto& c) { return V1Power(v, kVarianceDf, kAlpha, c); }},
     {"PowerVsAlpha", .01, .2,
      [](double a, auto& c) { return V1Power(kRatio, kVarianceDf, a, c); }},
     {"DfVsVariance", 1.15, 1.525, [](double v, auto& c) { return V1Df(v, kAlpha, kGoal, c); }},
     {"DfVsAlpha", .01, .2, [](double a, auto& c) { return V1Df(kRatio, a, kGoal, c); }},
     {"DfVsPower", .76, .95, [](double p, auto& c) { return V1Df(kRatio, kAlpha, p, c); }}});

const bool kV2 = Family<CriticalFCache>(
    "V2",
    {{"Power", 20, 20, [](double df, auto& c) { return V2Power(kRatio, df, kAlpha, c); }},
     {"RequiredDf", kGoal, kGoal, [](double p, auto& c) { return V2Df(kRatio, kAlpha, p, c); }},
     {"PowerVsDf", 5, 104, [](double df, auto& c) { return V2Power(kRatio, df, kAlpha, c); }},
     {"PowerVsRatio", 1.5, 11, [](double r, auto& c) { return V2Power(r, 20, kAlpha, c); }},
     {"PowerVsAlpha", .01, .2, [](double a, auto& c) { return V2Power(kRatio, 20, a, c); }},
     {"DfVsRatio", 1.5, 11, [](double r, auto& c) { return V2Df(r, kAlpha, kGoal, c); }},
     {"DfVsAlpha", .01, .2, [](double a, auto& c) { return V2Df(kRatio, a, kGoal, c); }},
     {"DfVsPower", .76, .95, [](double p, auto& c) { return V2Df(kRatio, kAlpha, p, c); }}});

// --- Correlations: R by the exact distribution as well, which is not the built-in choice.

template <std::int16_t algorithm>
double RPower(double rho, double n, double alpha, CorrelationCriticalCache& c) {
  int status = 0;
  return CorrelationPower({Whole(n), alpha, 0, algorithm, H0TwoTailed}, rho, status, unread, c);
}
template <std::int16_t algorithm>
double RN(double rho, double alpha, double goal, CorrelationCriticalCache&) {
  return SizeOf(CorrelationRequiredN(
      {.rho = rho, .alpha = alpha, .powerGoal = goal, .algorithm = algorithm}, unwatched));
}
constexpr double kRho = .2;

template <std::int16_t g>
bool RFamily(const char* name) {
  return Family<CorrelationCriticalCache>(
      name,
      {{"Power", 100, 100, [](double n, auto& c) { return RPower<g>(kRho, n, kAlpha, c); }},
       {"RequiredN", kGoal, kGoal, [](double p, auto& c) { return RN<g>(kRho, kAlpha, p, c); }},
       {"PowerVsN", 100, 199, [](double n, auto& c) { return RPower<g>(kRho, n, kAlpha, c); }},
       {"PowerVsRho", .2, .9, [](double r, auto& c) { return RPower<g>(r, 100, kAlpha, c); }},
       {"PowerVsAlpha", .01, .11, [](double a, auto& c) { return RPower<g>(kRho, 100, a, c); }},
       {"NVsRho", .2, .9, [](double r, auto& c) { return RN<g>(r, kAlpha, kGoal, c); }},
       {"NVsAlpha", .01, .11, [](double a, auto& c) { return RN<g>(kRho, a, kGoal, c); }},
       {"NVsPower", .75, .95, [](double p, auto& c) { return RN<g>(kRho, kAlpha, p, c); }}});
}
const bool kR = RFamily<CorrelationFisherZRefined>("R");
const bool kRExact = RFamily<CorrelationExact>("R-exact");

double Z2RPower(double rho1, double n, double alpha, NoCache&) {
  return TwoCorrelationsPower(rho1, 0, Whole(n), Whole(n), alpha, H0TwoTailed,
                              CorrelationFisherZRefined, unread);
}
double Z2RN(double rho1, double alpha, double goal, NoCache&) {
  return SizeOf(TwoCorrelationsRequiredN(
      {.rho1 = rho1, .rho2 = 0, .alpha = alpha, .powerGoal = goal, .n1 = 100, .n2 = 100},
      unwatched));
}

const bool kZ2R = Family<NoCache>(
    "Z2R",
    {{"Power", 100, 100, [](double n, auto& c) { return Z2RPower(.4, n, kAlpha, c); }},
     {"RequiredN", kGoal, kGoal, [](double p, auto& c) { return Z2RN(.4, kAlpha, p, c); }},
     {"PowerVsN", 100, 199, [](double n, auto& c) { return Z2RPower(.4, n, kAlpha, c); }},
     {"PowerVsRho", .2, .9, [](double r, auto& c) { return Z2RPower(r, 100, kAlpha, c); }},
     {"PowerVsAlpha", .01, .11, [](double a, auto& c) { return Z2RPower(.4, 100, a, c); }},
     {"NVsRho", .2, .9, [](double r, auto& c) { return Z2RN(r, kAlpha, kGoal, c); }},
     {"NVsAlpha", .01, .11, [](double a, auto& c) { return Z2RN(.4, a, kGoal, c); }},
     {"NVsPower", .75, .95, [](double p, auto& c) { return Z2RN(.4, kAlpha, p, c); }}});

template <std::int16_t algorithm>
double R2Power(double rho2, double n, double alpha, SquaredCorrelationCriticalCache& c) {
  int err = 0;
  return SquaredCorrelationPower({Whole(n), 3, alpha, 0, algorithm, H0TwoTailed}, rho2, err, unread,
                                 c, unwatched);
}
template <std::int16_t algorithm>
double R2N(double rho2, double alpha, double goal, SquaredCorrelationCriticalCache&) {
  return SizeOf(SquaredCorrelationRequiredN(
      {.rho2 = rho2, .c2 = 0, .alpha = alpha, .powerGoal = goal, .k = 3, .algorithm = algorithm},
      unwatched));
}
constexpr double kP2 = .2;

template <std::int16_t g>
bool R2Family(const char* name) {
  return Family<SquaredCorrelationCriticalCache>(
      name,
      {{"Power", 100, 100, [](double n, auto& c) { return R2Power<g>(kP2, n, kAlpha, c); }},
       {"RequiredN", kGoal, kGoal, [](double p, auto& c) { return R2N<g>(kP2, kAlpha, p, c); }},
       {"PowerVsN", 10, 200, [](double n, auto& c) { return R2Power<g>(kP2, n, kAlpha, c); }},
       {"PowerVsP2", .05, .5, [](double r, auto& c) { return R2Power<g>(r, 100, kAlpha, c); }},
       {"PowerVsAlpha", .01, .2, [](double a, auto& c) { return R2Power<g>(kP2, 100, a, c); }},
       {"NVsP2", .05, .5, [](double r, auto& c) { return R2N<g>(r, kAlpha, kGoal, c); }},
       {"NVsAlpha", .01, .2, [](double a, auto& c) { return R2N<g>(kP2, a, kGoal, c); }},
       {"NVsPower", .65, .95, [](double p, auto& c) { return R2N<g>(kP2, kAlpha, p, c); }}});
}
const bool kR2 = R2Family<R2Lee>("R2");
const bool kR2Exact = R2Family<R2Exact>("R2-exact");

// --- Model fit.

constexpr std::int32_t kModelDf = 20;
constexpr double kR0 = .05;
constexpr double kRmsea = .08;

double SEMPower(double r, double n, double alpha, double df, ModelFitCriticalCache& c) {
  int err = 0;
  return ModelFitPower({Whole(n), Narrow(df), alpha, kR0, H0AtMost}, r, err, unread, c);
}
double SEMN(double r, double alpha, double goal, double df, ModelFitCriticalCache&) {
  return SizeOf(ModelFitRequiredN(
      {.r = r, .r0 = kR0, .alpha = alpha, .powerGoal = goal, .df = Narrow(df)}, unwatched));
}

const bool kSEM = Family<ModelFitCriticalCache>(
    "SEM",
    {{"Power", 100, 100,
      [](double n, auto& c) { return SEMPower(kRmsea, n, kAlpha, kModelDf, c); }},
     {"RequiredN", kGoal, kGoal,
      [](double p, auto& c) { return SEMN(kRmsea, kAlpha, p, kModelDf, c); }},
     {"PowerVsN", 100, 199,
      [](double n, auto& c) { return SEMPower(kRmsea, n, kAlpha, kModelDf, c); }},
     {"PowerVsRMSEA", .06, .11,
      [](double r, auto& c) { return SEMPower(r, 100, kAlpha, kModelDf, c); }},
     {"PowerVsAlpha", .01, .11,
      [](double a, auto& c) { return SEMPower(kRmsea, 100, a, kModelDf, c); }},
     {"PowerVsDf", 1, 100, [](double df, auto& c) { return SEMPower(kRmsea, 100, kAlpha, df, c); }},
     {"NVsRMSEA", .06, .11, [](double r, auto& c) { return SEMN(r, kAlpha, kGoal, kModelDf, c); }},
     {"NVsAlpha", .01, .11, [](double a, auto& c) { return SEMN(kRmsea, a, kGoal, kModelDf, c); }},
     {"NVsPower", .75, .95, [](double p, auto& c) { return SEMN(kRmsea, kAlpha, p, kModelDf, c); }},
     {"NVsDf", 1, 100, [](double df, auto& c) { return SEMN(kRmsea, kAlpha, kGoal, df, c); }}});

// --- Proportions.

double P1Power(double pi, double n, double alpha, NoCache&) {
  int err = 0;
  return OneProportionPower(Whole(n), {pi, .5, alpha, H0TwoTailed}, err, ProportionExact, 1,
                            unread);
}
double P1N(double pi, double alpha, double goal, NoCache&) {
  int err = 0;
  return static_cast<double>(OneProportionRequiredN(goal, {pi, .5, alpha, H0TwoTailed}, err,
                                                    ProportionExact, unread, unwatched));
}
double P2Power(double pi1, double n, double alpha, NoCache&) {
  int err = 0;
  return TwoProportionPower({pi1, .5, alpha, H0TwoTailed, NotCorrected}, Whole(n), Whole(n), err,
                            unread);
}
double P2N(double pi1, double alpha, double goal, NoCache&) {
  double actualPower = 0;
  int err = 0;
  GroupSizes groups;
  return static_cast<double>(TwoProportionRequiredN(
      {.test = {pi1, .5, alpha, H0TwoTailed, NotCorrected}, .powerGoal = goal}, groups, actualPower,
      err, unread));
}
double QMACPower(double delta, double eta, double n, double alpha, NoCache&) {
  int err = 0;
  return McNemarPower({delta, eta, alpha, H0TwoTailed}, n, err, unread);
}
double QMACN(double delta, double eta, double alpha, double goal, NoCache&) {
  int err = 0;
  return McNemarRequiredN({delta, eta, alpha, H0TwoTailed}, goal, err, unread);
}
constexpr double kDelta = .1;
constexpr double kEta = .4;

const bool kP1 = Family<NoCache>(
    "P1",
    {{"Power", 100, 100, [](double n, auto& c) { return P1Power(.7, n, kAlpha, c); }},
     {"RequiredN", kGoal, kGoal, [](double p, auto& c) { return P1N(.7, kAlpha, p, c); }},
     {"PowerVsN", 100, 199, [](double n, auto& c) { return P1Power(.7, n, kAlpha, c); }},
     {"PowerVsPi", .55, .75, [](double pi, auto& c) { return P1Power(pi, 100, kAlpha, c); }},
     {"PowerVsAlpha", .01, .11, [](double a, auto& c) { return P1Power(.7, 100, a, c); }},
     {"NVsPi", .55, .75, [](double pi, auto& c) { return P1N(pi, kAlpha, kGoal, c); }},
     {"NVsAlpha", .01, .11, [](double a, auto& c) { return P1N(.7, a, kGoal, c); }},
     {"NVsPower", .75, .95, [](double p, auto& c) { return P1N(.7, kAlpha, p, c); }}});

const bool kP2Rows = Family<NoCache>(
    "P2",
    {{"Power", 100, 100, [](double n, auto& c) { return P2Power(.6, n, kAlpha, c); }},
     {"RequiredN", kGoal, kGoal, [](double p, auto& c) { return P2N(.6, kAlpha, p, c); }},
     {"PowerVsN", 100, 199, [](double n, auto& c) { return P2Power(.6, n, kAlpha, c); }},
     {"PowerVsPi1", .55, .75, [](double pi, auto& c) { return P2Power(pi, 100, kAlpha, c); }},
     {"PowerVsAlpha", .01, .11, [](double a, auto& c) { return P2Power(.6, 100, a, c); }},
     {"NVsPi1", .55, .75, [](double pi, auto& c) { return P2N(pi, kAlpha, kGoal, c); }},
     {"NVsAlpha", .01, .11, [](double a, auto& c) { return P2N(.6, a, kGoal, c); }},
     {"NVsPower", .75, .95, [](double p, auto& c) { return P2N(.6, kAlpha, p, c); }}});

const bool kQMAC = Family<NoCache>(
    "QMAC",
    {{"Power", 100, 100, [](double n, auto& c) { return QMACPower(kDelta, kEta, n, kAlpha, c); }},
     {"RequiredN", kGoal, kGoal,
      [](double p, auto& c) { return QMACN(kDelta, kEta, kAlpha, p, c); }},
     {"PowerVsN", 100, 199,
      [](double n, auto& c) { return QMACPower(kDelta, kEta, n, kAlpha, c); }},
     {"PowerVsDelta", .05, .15,
      [](double d, auto& c) { return QMACPower(d, kEta, 100, kAlpha, c); }},
     {"PowerVsEta", .2, .4, [](double e, auto& c) { return QMACPower(kDelta, e, 100, kAlpha, c); }},
     {"PowerVsAlpha", .01, .11,
      [](double a, auto& c) { return QMACPower(kDelta, kEta, 100, a, c); }},
     {"NVsDelta", .05, .15, [](double d, auto& c) { return QMACN(d, kEta, kAlpha, kGoal, c); }},
     {"NVsEta", .2, .4, [](double e, auto& c) { return QMACN(kDelta, e, kAlpha, kGoal, c); }},
     {"NVsAlpha", .01, .11, [](double a, auto& c) { return QMACN(kDelta, kEta, a, kGoal, c); }},
     {"NVsPower", .75, .95, [](double p, auto& c) { return QMACN(kDelta, kEta, kAlpha, p, c); }}});

// --- Survival: SA2 and SA3 differ in their dropouts, of which the built-in values have none.

double SA1Power(double pi2, double n, double alpha, NoCache&) {
  int err = 0;
  std::int64_t events = 0;
  return LogRankPower(Whole(n), {.5, pi2, alpha, H0TwoTailed}, err, events);
}
double SA1N(double pi2, double alpha, double goal, NoCache&) {
  int err = 0;
  std::int64_t events = 0;
  return static_cast<double>(
      LogRankRequiredN({.5, pi2, alpha, H0TwoTailed}, goal, events, err, unread));
}
double SA3Power(double lambda2, double n, double alpha, NoCache&) {
  return ExponentialSurvivalPower(Whole(n), {.5, lambda2, 0, 10, 9, alpha, H0TwoTailed}, unread);
}
double SA3N(double lambda2, double alpha, double goal, NoCache&) {
  int err = 0;
  return static_cast<double>(
      ExponentialSurvivalRequiredN({.5, lambda2, 0, 10, 9, alpha, H0TwoTailed}, goal, err, unread));
}

const bool kSA1 = Family<NoCache>(
    "SA1",
    {{"Power", 100, 100, [](double n, auto& c) { return SA1Power(.7, n, kAlpha, c); }},
     {"RequiredN", kGoal, kGoal, [](double p, auto& c) { return SA1N(.7, kAlpha, p, c); }},
     {"PowerVsN", 100, 199, [](double n, auto& c) { return SA1Power(.7, n, kAlpha, c); }},
     {"PowerVsPi2", .55, .75, [](double pi, auto& c) { return SA1Power(pi, 100, kAlpha, c); }},
     {"PowerVsAlpha", .01, .11, [](double a, auto& c) { return SA1Power(.7, 100, a, c); }},
     {"NVsPi2", .55, .75, [](double pi, auto& c) { return SA1N(pi, kAlpha, kGoal, c); }},
     {"NVsAlpha", .01, .11, [](double a, auto& c) { return SA1N(.7, a, kGoal, c); }},
     {"NVsPower", .75, .95, [](double p, auto& c) { return SA1N(.7, kAlpha, p, c); }}});

bool ExponentialFamily(const char* name) {
  return Family<NoCache>(
      name,
      {{"Power", 100, 100, [](double n, auto& c) { return SA3Power(.7, n, kAlpha, c); }},
       {"RequiredN", kGoal, kGoal, [](double p, auto& c) { return SA3N(.7, kAlpha, p, c); }},
       {"PowerVsN", 100, 199, [](double n, auto& c) { return SA3Power(.7, n, kAlpha, c); }},
       {"PowerVsLambda2", .55, .75, [](double l, auto& c) { return SA3Power(l, 100, kAlpha, c); }},
       {"PowerVsAlpha", .01, .11, [](double a, auto& c) { return SA3Power(.7, 100, a, c); }},
       {"NVsLambda2", .55, .75, [](double l, auto& c) { return SA3N(l, kAlpha, kGoal, c); }},
       {"NVsAlpha", .01, .11, [](double a, auto& c) { return SA3N(.7, a, kGoal, c); }},
       {"NVsPower", .75, .95, [](double p, auto& c) { return SA3N(.7, kAlpha, p, c); }}});
}
const bool kSA2 = ExponentialFamily("SA2");
const bool kSA3 = ExponentialFamily("SA3");

}  // namespace
}  // namespace poweranalysis
