#include <benchmark/benchmark.h>

#include <cstdint>

#include "Unwatched.h"
#include "procedures/TTests.h"

// Times of the t-tests of two means at alpha .05, two-tailed, as R's pwr::pwr.t.test is asked for
// them.
namespace poweranalysis {
namespace {

constexpr double kAlpha = .05;
constexpr double kGoal = .8;
constexpr std::int64_t kLimit = 150000;
constexpr int kPoints = 100;

TSizeRequest Asked(double es) {
  return {.es = es, .alpha = kAlpha, .powerGoal = kGoal, .sizeLimit = kLimit};
}

void BM_CriticalT(benchmark::State& state) {
  const auto df = static_cast<std::int32_t>(state.range(0));
  for (auto _ : state) {
    benchmark::DoNotOptimize(CriticalT(df, kAlpha, H0TwoTailed));
  }
}
BENCHMARK(BM_CriticalT)->Arg(9)->Arg(49)->Arg(499)->Arg(9999);

void BM_T2Power(benchmark::State& state) {
  const std::int64_t n = state.range(0);
  for (auto _ : state) {
    CriticalTCache criticals;
    benchmark::DoNotOptimize(
        TTestPower(EqualGroupsDesign(.5, n), kAlpha, H0TwoTailed, unread, criticals));
  }
}
BENCHMARK(BM_T2Power)->Arg(10)->Arg(64)->Arg(1000);

// The effect in hundredths.
void BM_T2RequiredN(benchmark::State& state) {
  const double es = static_cast<double>(state.range(0)) / 100;
  for (auto _ : state) {
    CriticalTCache criticals;
    benchmark::DoNotOptimize(TwoGroupsRequiredN(Asked(es), NToVaryBoth, 0, criticals, unwatched));
  }
}
BENCHMARK(BM_T2RequiredN)->Arg(5)->Arg(20)->Arg(50)->Arg(80);

void BM_T2RequiredNBesideAFixedGroup(benchmark::State& state) {
  for (auto _ : state) {
    CriticalTCache criticals;
    benchmark::DoNotOptimize(TwoGroupsRequiredN(Asked(.5), NToVaryN1, 50, criticals, unwatched));
  }
}
BENCHMARK(BM_T2RequiredNBesideAFixedGroup);

// Power against N, 5 to 500 a group, at d = .5.
void BM_T2PowerCurveOverN(benchmark::State& state) {
  for (auto _ : state) {
    CriticalTCache criticals;
    for (int i = 0; i < kPoints; ++i) {
      benchmark::DoNotOptimize(
          TTestPower(EqualGroupsDesign(.5, 5 * (i + 1)), kAlpha, H0TwoTailed, unread, criticals));
    }
  }
}
BENCHMARK(BM_T2PowerCurveOverN);

// Power against d, .3 to .9, at 50 a group: one critical value serves all points.
void BM_T2PowerCurveOverEffect(benchmark::State& state) {
  for (auto _ : state) {
    CriticalTCache criticals;
    for (int i = 0; i < kPoints; ++i) {
      const double es = .3 + .6 * i / (kPoints - 1);
      benchmark::DoNotOptimize(
          TTestPower(EqualGroupsDesign(es, 50), kAlpha, H0TwoTailed, unread, criticals));
    }
  }
}
BENCHMARK(BM_T2PowerCurveOverEffect);

// Required N against d, .1 to 1.09.
void BM_T2SizeCurveOverEffect(benchmark::State& state) {
  for (auto _ : state) {
    CriticalTCache criticals;
    for (int i = 0; i < kPoints; ++i) {
      const double es = .1 + .01 * i;
      benchmark::DoNotOptimize(TwoGroupsRequiredN(Asked(es), NToVaryBoth, 0, criticals, unwatched));
    }
  }
}
BENCHMARK(BM_T2SizeCurveOverEffect);

}  // namespace
}  // namespace poweranalysis
