#include "Unwatched.h"
#include "procedures/TwoProportions.h"

#include <benchmark/benchmark.h>

// Times of the tests of two proportions at the defaults of their fields.
namespace poweranalysis {
namespace {

constexpr double kGoal = .9;
constexpr std::int64_t kPoints = 100;
constexpr std::int64_t kFixed = 1000;
constexpr McNemarTest kPairs{.1, .4, .05, H0TwoTailed};

TwoProportionTest Test(std::int16_t continuity) { return {.6, .5, .05, H0TwoTailed, continuity}; }

void BM_P2Power(benchmark::State& state) {
  const TwoProportionTest test = Test(static_cast<std::int16_t>(state.range(0)));
  int err = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(TwoProportionPower(test, 100, 100, err, unread));
  }
}
BENCHMARK(BM_P2Power)->Arg(NotCorrected)->Arg(CorrectedForContinuity);

// The correction and the group to vary.
void BM_P2RequiredN(benchmark::State& state) {
  const TwoProportionSizeRequest request{.test = Test(static_cast<std::int16_t>(state.range(0))),
                                         .powerGoal = kGoal,
                                         .nToVary = static_cast<std::int16_t>(state.range(1))};
  double actualPower = 0;
  int err = 0;
  for (auto _ : state) {
    GroupSizes groups{kFixed, kFixed};
    benchmark::DoNotOptimize(TwoProportionRequiredN(request, groups, actualPower, err, unread));
  }
}
BENCHMARK(BM_P2RequiredN)
    ->ArgsProduct({{NotCorrected, CorrectedForContinuity}, {NToVaryBoth, NToVaryN1, NToVaryRatio}});

// No group is large enough beside a fixed one of two.
void BM_P2RequiredNThatIsNotFound(benchmark::State& state) {
  const TwoProportionSizeRequest request{
      .test = Test(NotCorrected), .powerGoal = kGoal, .nToVary = NToVaryN1};
  double actualPower = 0;
  int err = 0;
  for (auto _ : state) {
    GroupSizes groups{0, 2};
    benchmark::DoNotOptimize(TwoProportionRequiredN(request, groups, actualPower, err, unread));
  }
}
BENCHMARK(BM_P2RequiredNThatIsNotFound);

void BM_P2PowerCurveOverN(benchmark::State& state) {
  int err = 0;
  for (auto _ : state) {
    for (std::int64_t i = 0; i < kPoints; ++i) {
      benchmark::DoNotOptimize(
          TwoProportionPower(Test(NotCorrected), 100 + i, 100 + i, err, unread));
    }
  }
}
BENCHMARK(BM_P2PowerCurveOverN);

void BM_P2SizeCurveOverPi(benchmark::State& state) {
  double actualPower = 0;
  int err = 0;
  for (auto _ : state) {
    for (std::int64_t i = 0; i < kPoints; ++i) {
      TwoProportionSizeRequest request{.test = Test(NotCorrected), .powerGoal = kGoal};
      request.test.pi1 = .55 + .002 * static_cast<double>(i);
      GroupSizes groups;
      benchmark::DoNotOptimize(TwoProportionRequiredN(request, groups, actualPower, err, unread));
    }
  }
}
BENCHMARK(BM_P2SizeCurveOverPi);

void BM_QMACPower(benchmark::State& state) {
  int err = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(McNemarPower(kPairs, 100, err, unread));
  }
}
BENCHMARK(BM_QMACPower);

void BM_QMACRequiredN(benchmark::State& state) {
  int err = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(McNemarRequiredN(kPairs, kGoal, err, unread));
  }
}
BENCHMARK(BM_QMACRequiredN);

}  // namespace
}  // namespace poweranalysis
