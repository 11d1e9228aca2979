#include "Unwatched.h"
#include "procedures/OneProportion.h"

#include <benchmark/benchmark.h>

// Times of the test of one proportion. peers/proportions.R asks R for the sizes, with the designs
// in the same order.
namespace poweranalysis {
namespace {

constexpr double kGoal = .9;
constexpr std::int64_t kPoints = 100;

constexpr OneProportionTest kDesigns[] = {
    {.7, .5, .05, H0TwoTailed},   {.6, .5, .05, H0TwoTailed}, {.55, .5, .05, H0AtMost},
    {.05, .02, .01, H0AtMost},    {.02, .05, .05, H0AtLeast}, {.52, .5, .05, H0TwoTailed},
    {.505, .5, .05, H0TwoTailed},
};

void BM_P1Power(benchmark::State& state) {
  const auto algorithm = static_cast<std::int16_t>(state.range(1));
  int err = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(
        OneProportionPower(state.range(0), kDesigns[0], err, algorithm, 1, unread));
  }
}
BENCHMARK(BM_P1Power)->ArgsProduct({{100, 10000}, {ProportionExact, ProportionNormal}});

void BM_P1RequiredN(benchmark::State& state) {
  const OneProportionTest& test = kDesigns[state.range(0)];
  int err = 0;
  std::int64_t n = 0;
  for (auto _ : state) {
    n = OneProportionRequiredN(kGoal, test, err, ProportionExact, unread, unwatched);
    benchmark::DoNotOptimize(n);
  }
  state.counters["N"] = static_cast<double>(n);
}
BENCHMARK(BM_P1RequiredN)->DenseRange(0, 6);

void BM_P1NormalRequiredN(benchmark::State& state) {
  int err = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(
        OneProportionRequiredN(kGoal, kDesigns[0], err, ProportionNormal, unread, unwatched));
  }
}
BENCHMARK(BM_P1NormalRequiredN);

// The least gap that is searched for, where the walks are longest.
void BM_P1RequiredNOfTheLeastGap(benchmark::State& state) {
  int err = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(OneProportionRequiredN(.65, {.5001001, .5, .25, H0TwoTailed}, err,
                                                    ProportionExact, unread, unwatched));
  }
}
BENCHMARK(BM_P1RequiredNOfTheLeastGap)->Unit(benchmark::kMillisecond);

void BM_P1PowerCurveOverN(benchmark::State& state) {
  int err = 0;
  for (auto _ : state) {
    for (std::int64_t i = 0; i < kPoints; ++i) {
      benchmark::DoNotOptimize(
          OneProportionPower(100 + i, kDesigns[0], err, ProportionExact, 1, unread));
    }
  }
}
BENCHMARK(BM_P1PowerCurveOverN);

void BM_P1SizeCurveOverPi(benchmark::State& state) {
  int err = 0;
  for (auto _ : state) {
    for (std::int64_t i = 0; i < kPoints; ++i) {
      const OneProportionTest test{.55 + .002 * static_cast<double>(i), .5, .05, H0TwoTailed};
      benchmark::DoNotOptimize(
          OneProportionRequiredN(kGoal, test, err, ProportionExact, unread, unwatched));
    }
  }
}
BENCHMARK(BM_P1SizeCurveOverPi);

}  // namespace
}  // namespace poweranalysis
