#include "Unwatched.h"
#include "procedures/Survival.h"

#include <benchmark/benchmark.h>

// Times of the survival tests at the defaults of their fields, and with dropouts. All are closed
// forms, so that a chart takes as many of these as it has points.
namespace poweranalysis {
namespace {

constexpr double kGoal = .9;
constexpr std::int64_t kN = 100;
constexpr LogRankTest kLogRank{.5, .7, .05, H0TwoTailed};

// The rate of dropouts in hundredths.
ExponentialSurvivalTest Exponential(const benchmark::State& state) {
  return {.5, .7, static_cast<double>(state.range(0)) / 100, 10, 9, .05, H0TwoTailed};
}

void BM_SA1Power(benchmark::State& state) {
  int err = 0;
  std::int64_t events = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(LogRankPower(kN, kLogRank, err, events));
  }
}
BENCHMARK(BM_SA1Power);

void BM_SA1RequiredN(benchmark::State& state) {
  int err = 0;
  std::int64_t events = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(LogRankRequiredN(kLogRank, kGoal, events, err, unread));
  }
}
BENCHMARK(BM_SA1RequiredN);

void BM_SA3Power(benchmark::State& state) {
  const ExponentialSurvivalTest test = Exponential(state);
  for (auto _ : state) {
    benchmark::DoNotOptimize(ExponentialSurvivalPower(kN, test, unread));
  }
}
BENCHMARK(BM_SA3Power)->Arg(0)->Arg(20);

void BM_SA3RequiredN(benchmark::State& state) {
  const ExponentialSurvivalTest test = Exponential(state);
  int err = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(ExponentialSurvivalRequiredN(test, kGoal, err, unread));
  }
}
BENCHMARK(BM_SA3RequiredN)->Arg(0)->Arg(20);

}  // namespace
}  // namespace poweranalysis
