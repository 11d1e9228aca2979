#include "Unwatched.h"
#include "procedures/ModelFit.h"

#include <benchmark/benchmark.h>

#include <cstdint>

// Times of the tests of model fit at the built-in values: df 20, R .08, R0 .05, alpha .05.
namespace poweranalysis {
namespace {

constexpr int kPoints = 100;

// The argument is N.
void BM_SEMPower(benchmark::State& state) {
  int err = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(
        ModelFitPower(state.range(0), 20, .05, .08, .05, H0AtMost, err, unread));
  }
}
BENCHMARK(BM_SEMPower)->Arg(100)->Arg(1000)->Arg(100000);

// The arguments are R in thousandths and the degrees of freedom. The last design needs 48 million.
void BM_SEMRequiredN(benchmark::State& state) {
  const double r = static_cast<double>(state.range(0)) / 1000;
  const ModelFitSizeRequest request = {.r = r,
                                       .r0 = r > .05 ? .05 : 0,
                                       .alpha = r > .05 ? .05 : .0001,
                                       .powerGoal = r > .05 ? .9 : .999,
                                       .df = static_cast<std::int32_t>(state.range(1)),
                                       .form = H0AtMost};
  for (auto _ : state) {
    benchmark::DoNotOptimize(ModelFitRequiredN(request, unwatched));
  }
}
BENCHMARK(BM_SEMRequiredN)->Args({80, 20})->Args({60, 20})->Args({80, 5000})->Args({1, 1});

// Power against N, 20 to 2000.
void BM_SEMPowerCurveOverN(benchmark::State& state) {
  int err = 0;
  for (auto _ : state) {
    ModelFitCriticalCache criticals;
    for (int i = 0; i < kPoints; ++i) {
      benchmark::DoNotOptimize(
          ModelFitPower({20 * (i + 1), 20, .05, .05, H0AtMost}, .08, err, unread, criticals));
    }
  }
}
BENCHMARK(BM_SEMPowerCurveOverN);

}  // namespace
}  // namespace poweranalysis
