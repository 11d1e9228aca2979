#include <benchmark/benchmark.h>

#include <cstdint>

#include "Unwatched.h"
#include "procedures/Variances.h"

// Times of the tests of one and of two variances, mostly at the defaults of their fields.
namespace poweranalysis {
namespace {

constexpr double kAlpha = .05;
constexpr double kGoal = .9;
constexpr std::int64_t kLimit = 150000;
constexpr int kPoints = 100;

double OnePower(std::int64_t df, double var, CriticalChiSquareCache& criticals) {
  int err = 0;
  return ChiSquareVariancePower(kAlpha, df, var, 1, H0TwoTailed, err, unread, criticals);
}

double TwoPower(std::int64_t df, double ratio, CriticalFCache& criticals) {
  int err = 0;
  return TwoVariancePower(ratio, kAlpha, df, df, H0TwoTailed, err, FExact, unread, criticals);
}

OneVarianceDfRequest OneAsked(double var) {
  return {.var = var, .var0 = 1, .alpha = kAlpha, .powerGoal = kGoal, .sizeLimit = kLimit};
}

TwoVariancesDfRequest TwoAsked(double ratio) {
  return {.ratio = ratio, .alpha = kAlpha, .powerGoal = kGoal, .sizeLimit = kLimit};
}

void BM_V1Power(benchmark::State& state) {
  for (auto _ : state) {
    CriticalChiSquareCache criticals;
    benchmark::DoNotOptimize(OnePower(state.range(0), 2, criticals));
  }
}
BENCHMARK(BM_V1Power)->Arg(10)->Arg(1000);

// The variance in hundredths of that under the null hypothesis; 200 is the default.
void BM_V1RequiredDf(benchmark::State& state) {
  const double var = static_cast<double>(state.range(0)) / 100;
  for (auto _ : state) {
    CriticalChiSquareCache criticals;
    benchmark::DoNotOptimize(OneVarianceRequiredDf(OneAsked(var), criticals, unwatched));
  }
}
BENCHMARK(BM_V1RequiredDf)->Arg(200)->Arg(50)->Arg(110);

void BM_V1PowerCurveOverVariance(benchmark::State& state) {
  for (auto _ : state) {
    CriticalChiSquareCache criticals;
    for (int i = 0; i < kPoints; ++i) {
      benchmark::DoNotOptimize(OnePower(50, 1.1 + .01 * i, criticals));
    }
  }
}
BENCHMARK(BM_V1PowerCurveOverVariance);

void BM_V1SizeCurveOverVariance(benchmark::State& state) {
  for (auto _ : state) {
    CriticalChiSquareCache criticals;
    for (int i = 0; i < kPoints; ++i) {
      benchmark::DoNotOptimize(
          OneVarianceRequiredDf(OneAsked(1.25 + .01 * i), criticals, unwatched));
    }
  }
}
BENCHMARK(BM_V1SizeCurveOverVariance);

void BM_V2Power(benchmark::State& state) {
  for (auto _ : state) {
    CriticalFCache criticals;
    benchmark::DoNotOptimize(TwoPower(state.range(0), 2, criticals));
  }
}
BENCHMARK(BM_V2Power)->Arg(20)->Arg(1000);

// The ratio in hundredths; 200 is the default.
void BM_V2RequiredDf(benchmark::State& state) {
  const double ratio = static_cast<double>(state.range(0)) / 100;
  for (auto _ : state) {
    CriticalFCache criticals;
    benchmark::DoNotOptimize(TwoVariancesRequiredDf(TwoAsked(ratio), criticals, unwatched));
  }
}
BENCHMARK(BM_V2RequiredDf)->Arg(200)->Arg(50)->Arg(110);

void BM_V2PowerCurveOverRatio(benchmark::State& state) {
  for (auto _ : state) {
    CriticalFCache criticals;
    for (int i = 0; i < kPoints; ++i) {
      benchmark::DoNotOptimize(TwoPower(50, 1.1 + .01 * i, criticals));
    }
  }
}
BENCHMARK(BM_V2PowerCurveOverRatio);

void BM_V2SizeCurveOverRatio(benchmark::State& state) {
  for (auto _ : state) {
    CriticalFCache criticals;
    for (int i = 0; i < kPoints; ++i) {
      benchmark::DoNotOptimize(
          TwoVariancesRequiredDf(TwoAsked(1.25 + .01 * i), criticals, unwatched));
    }
  }
}
BENCHMARK(BM_V2SizeCurveOverRatio);

}  // namespace
}  // namespace poweranalysis
