#include "Unwatched.h"
#include "procedures/SquaredCorrelation.h"

#include <benchmark/benchmark.h>

#include <cstdint>

// Times of the test of a squared multiple correlation at alpha .05 with three variables. The first
// argument is the algorithm, 0 Lee's and 1 exact.
namespace poweranalysis {
namespace {

constexpr double kAlpha = .05;
constexpr int kPoints = 100;

// The second argument is N.
void BM_R2Power(benchmark::State& state) {
  const auto algorithm = static_cast<std::int16_t>(state.range(0));
  int err = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(SquaredCorrelationPower(state.range(1), 3, kAlpha, .5, .4, algorithm,
                                                     H0TwoTailed, err, unread, unwatched));
  }
}
BENCHMARK(BM_R2Power)->ArgsProduct({{0, 1}, {100, 1000, 100000}});

// The second argument is the null value in hundredths.
void BM_R2RequiredN(benchmark::State& state) {
  SquaredCorrelationSizeRequest request;
  request.rho2 = .2;
  request.c2 = static_cast<double>(state.range(1)) / 100;
  request.alpha = kAlpha;
  request.powerGoal = .9;
  request.k = 3;
  request.algorithm = static_cast<std::int16_t>(state.range(0));
  for (auto _ : state) {
    benchmark::DoNotOptimize(SquaredCorrelationRequiredN(request, unwatched));
  }
}
BENCHMARK(BM_R2RequiredN)->ArgsProduct({{0, 1}, {0, 10}});

// Power against P2, .1 to .9, at N = 100: one pair of critical values serves all points.
void BM_R2PowerCurveOverP2(benchmark::State& state) {
  const auto algorithm = static_cast<std::int16_t>(state.range(0));
  int err = 0;
  for (auto _ : state) {
    SquaredCorrelationCriticalCache criticals;
    for (int i = 0; i < kPoints; ++i) {
      const double rho2 = .1 + .8 * i / (kPoints - 1);
      benchmark::DoNotOptimize(SquaredCorrelationPower(
          {100, 3, kAlpha, .05, algorithm, H0TwoTailed}, rho2, err, unread, criticals, unwatched));
    }
  }
}
BENCHMARK(BM_R2PowerCurveOverP2)->DenseRange(0, 1);

}  // namespace
}  // namespace poweranalysis
