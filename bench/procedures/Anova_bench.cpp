#include <benchmark/benchmark.h>

#include <cstdint>

#include "Unwatched.h"
#include "procedures/Anova.h"

// Times of planned contrasts and analyses of variance. The one-way designs with fixed effects are
// those that R's pwr::pwr.anova.test is asked for: four groups, alpha .05, goal .8, Cohen's f =
// rmsse sqrt(3 / 4).
namespace poweranalysis {
namespace {

constexpr double kAlpha = .05;
constexpr double kGoal = .8;
constexpr std::int64_t kLimit = 150000;
constexpr std::int64_t kGroups = 4;
constexpr int kPoints = 100;

OneWayTest Fixed(double rmsse) { return {.groups = kGroups, .rmsse = rmsse, .alpha = kAlpha}; }

OneWaySizeRequest Asked(const OneWayTest& test, double goal = kGoal) {
  return {.test = test, .committedAlpha = kAlpha, .powerGoal = goal, .sizeLimit = kLimit};
}

double PowerOf(const OneWayTest& test, std::int64_t n, CriticalFCache& criticals) {
  int err = 0;
  double crit = 0;
  return OneWayPower(test, n, err, crit, criticals);
}

void BM_AV1Power(benchmark::State& state) {
  const std::int64_t n = state.range(0);
  for (auto _ : state) {
    CriticalFCache criticals;
    benchmark::DoNotOptimize(PowerOf(Fixed(.25), n, criticals));
  }
}
BENCHMARK(BM_AV1Power)->Arg(10)->Arg(60)->Arg(1000);

// The effect in hundredths.
void BM_AV1RequiredN(benchmark::State& state) {
  const double rmsse = static_cast<double>(state.range(0)) / 100;
  for (auto _ : state) {
    CriticalFCache criticals;
    benchmark::DoNotOptimize(OneWayRequiredN(Asked(Fixed(rmsse)), criticals, unwatched));
  }
}
BENCHMARK(BM_AV1RequiredN)->Arg(5)->Arg(25)->Arg(50)->Arg(100);

// Power against N, 2 to 101 a group.
void BM_AV1PowerCurveOverN(benchmark::State& state) {
  for (auto _ : state) {
    CriticalFCache criticals;
    for (int i = 0; i < kPoints; ++i) {
      benchmark::DoNotOptimize(PowerOf(Fixed(.25), i + 2, criticals));
    }
  }
}
BENCHMARK(BM_AV1PowerCurveOverN);

// Power against the effect, .1 to .6, at 20 a group: one critical value serves all points.
void BM_AV1PowerCurveOverEffect(benchmark::State& state) {
  for (auto _ : state) {
    CriticalFCache criticals;
    for (int i = 0; i < kPoints; ++i) {
      benchmark::DoNotOptimize(PowerOf(Fixed(.1 + .5 * i / (kPoints - 1)), 20, criticals));
    }
  }
}
BENCHMARK(BM_AV1PowerCurveOverEffect);

// Required N against the effect, .1 to 1.09.
void BM_AV1SizeCurveOverEffect(benchmark::State& state) {
  for (auto _ : state) {
    CriticalFCache criticals;
    for (int i = 0; i < kPoints; ++i) {
      benchmark::DoNotOptimize(OneWayRequiredN(Asked(Fixed(.1 + .01 * i)), criticals, unwatched));
    }
  }
}
BENCHMARK(BM_AV1SizeCurveOverEffect);

// --- Required sizes of the defaults: goal .9.

void BM_AV1RandomDefaultN(benchmark::State& state) {
  const OneWayTest test{.groups = 3, .rmsse = .25, .alpha = kAlpha, .model = RandomEffects};
  for (auto _ : state) {
    CriticalFCache criticals;
    benchmark::DoNotOptimize(OneWayRequiredN(Asked(test, .9), criticals, unwatched));
  }
}
BENCHMARK(BM_AV1RandomDefaultN);

void BM_AV1FixedDefaultN(benchmark::State& state) {
  const OneWayTest test{.groups = 3, .rmsse = .25, .alpha = kAlpha};
  for (auto _ : state) {
    CriticalFCache criticals;
    benchmark::DoNotOptimize(OneWayRequiredN(Asked(test, .9), criticals, unwatched));
  }
}
BENCHMARK(BM_AV1FixedDefaultN);

void BM_AV2DefaultN(benchmark::State& state) {
  const TwoWaySizeRequest request{.rows = 3,
                                  .columns = 3,
                                  .rmsse = .25,
                                  .alpha = kAlpha,
                                  .powerGoal = .9,
                                  .effect = static_cast<std::int16_t>(state.range(0)),
                                  .sizeLimit = kLimit};
  for (auto _ : state) {
    CriticalFCache criticals;
    benchmark::DoNotOptimize(TwoWayRequiredN(request, criticals, unwatched));
  }
}
BENCHMARK(BM_AV2DefaultN)->Arg(RowEffect)->Arg(ColumnEffect)->Arg(InteractionEffect);

void BM_PCDefaultN(benchmark::State& state) {
  const ContrastSizeRequest request{
      .es = .25, .ss = 6, .groups = 3, .alpha = kAlpha, .powerGoal = .9, .sizeLimit = kLimit};
  for (auto _ : state) {
    CriticalTCache criticals;
    benchmark::DoNotOptimize(ContrastRequiredN(request, criticals, unwatched));
  }
}
BENCHMARK(BM_PCDefaultN);

}  // namespace
}  // namespace poweranalysis
