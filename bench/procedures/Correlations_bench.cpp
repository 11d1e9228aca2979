#include "Unwatched.h"
#include "procedures/Correlations.h"

#include <benchmark/benchmark.h>

#include <cstdint>

// Times of the tests of correlations at alpha .05, two-tailed; those of one correlation against 0
// are what R's pwr::pwr.r.test is asked for. Arguments are correlations in hundredths and
// algorithms.
namespace poweranalysis {
namespace {

constexpr double kAlpha = .05;
constexpr int kPoints = 100;

CorrelationSizeRequest Asked(double rho, std::int64_t algorithm) {
  return {.rho = rho,
          .rho0 = 0,
          .alpha = kAlpha,
          .powerGoal = .8,
          .algorithm = static_cast<std::int16_t>(algorithm),
          .form = H0TwoTailed};
}

void BM_RPower(benchmark::State& state) {
  const auto algorithm = static_cast<std::int16_t>(state.range(0));
  int status = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(
        CorrelationPower(50, kAlpha, .3, 0, algorithm, H0TwoTailed, status, unread));
  }
}
BENCHMARK(BM_RPower)->DenseRange(0, 2);

// Against a null that is not 0 the exact critical values are searched for.
void BM_RPowerAgainstANull(benchmark::State& state) {
  const auto algorithm = static_cast<std::int16_t>(state.range(0));
  int status = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(
        CorrelationPower(50, kAlpha, .3, .1, algorithm, H0TwoTailed, status, unread));
  }
}
BENCHMARK(BM_RPowerAgainstANull)->DenseRange(0, 2);

void BM_RRequiredN(benchmark::State& state) {
  const double rho = static_cast<double>(state.range(0)) / 100;
  for (auto _ : state) {
    benchmark::DoNotOptimize(CorrelationRequiredN(Asked(rho, state.range(1)), unwatched));
  }
}
BENCHMARK(BM_RRequiredN)->ArgsProduct({{10, 20, 30, 50, 80}, {0, 1, 2}});

// Against a null that is not 0.
void BM_RRequiredNAgainstANull(benchmark::State& state) {
  for (auto _ : state) {
    CorrelationSizeRequest request = Asked(.5, state.range(0));
    request.rho0 = .3;
    benchmark::DoNotOptimize(CorrelationRequiredN(request, unwatched));
  }
}
BENCHMARK(BM_RRequiredNAgainstANull)->DenseRange(0, 2);

// Power against rho, .2 to .9, at n = 50: one pair of critical values serves all points.
void BM_RPowerCurveOverRho(benchmark::State& state) {
  const auto algorithm = static_cast<std::int16_t>(state.range(0));
  int status = 0;
  for (auto _ : state) {
    CorrelationCriticalCache criticals;
    for (int i = 0; i < kPoints; ++i) {
      const double rho = .2 + .7 * i / (kPoints - 1);
      benchmark::DoNotOptimize(CorrelationPower({50, kAlpha, .1, algorithm, H0TwoTailed}, rho,
                                                status, unread, criticals));
    }
  }
}
BENCHMARK(BM_RPowerCurveOverRho)->DenseRange(0, 2);

// Power against N, 5 to 500, at rho = .3.
void BM_RPowerCurveOverN(benchmark::State& state) {
  const auto algorithm = static_cast<std::int16_t>(state.range(0));
  int status = 0;
  for (auto _ : state) {
    for (int i = 0; i < kPoints; ++i) {
      benchmark::DoNotOptimize(
          CorrelationPower(5 * (i + 1), kAlpha, .3, 0, algorithm, H0TwoTailed, status, unread));
    }
  }
}
BENCHMARK(BM_RPowerCurveOverN)->DenseRange(0, 2);

// Required N against rho, .1 to .892.
void BM_RSizeCurveOverRho(benchmark::State& state) {
  for (auto _ : state) {
    for (int i = 0; i < kPoints; ++i) {
      benchmark::DoNotOptimize(
          CorrelationRequiredN(Asked(.1 + .008 * i, state.range(0)), unwatched));
    }
  }
}
BENCHMARK(BM_RSizeCurveOverRho)->DenseRange(0, 2);

void BM_Z2RPower(benchmark::State& state) {
  const auto algorithm = static_cast<std::int16_t>(state.range(0));
  for (auto _ : state) {
    benchmark::DoNotOptimize(
        TwoCorrelationsPower(.4, .1, 100, 120, kAlpha, H0TwoTailed, algorithm, unread));
  }
}
BENCHMARK(BM_Z2RPower)->DenseRange(1, 2);

// The group to vary.
void BM_Z2RRequiredN(benchmark::State& state) {
  TwoCorrelationsSizeRequest request;
  request.rho1 = .4;
  request.rho2 = 0;
  request.alpha = kAlpha;
  request.powerGoal = .9;
  request.n1 = request.n2 = 100;
  request.nToVary = static_cast<std::int16_t>(state.range(0));
  for (auto _ : state) {
    benchmark::DoNotOptimize(TwoCorrelationsRequiredN(request, unwatched));
  }
}
BENCHMARK(BM_Z2RRequiredN)->DenseRange(0, 2);

}  // namespace
}  // namespace poweranalysis
