#include "distributions/Correlation.h"

#include <benchmark/benchmark.h>

#include <cstdint>

namespace poweranalysis {
namespace {

// rho and r in hundredths: both near the middle, and both near the end of the range.
void EachDesign(benchmark::internal::Benchmark* benchmark) {
  for (const std::int64_t n : {10, 30, 100, 1000}) {
    benchmark->Args({n, 20, 10});
    benchmark->Args({n, 90, 85});
  }
}

void EachSize(benchmark::internal::Benchmark* benchmark) {
  for (const std::int64_t n : {10, 30, 100, 1000}) {
    benchmark->Arg(n);
  }
}

double OfHundredths(std::int64_t value) { return static_cast<double>(value) / 100.0; }

void BenchCdf(benchmark::State& state, std::int16_t algorithm) {
  const auto n = static_cast<std::int32_t>(state.range(0));
  const double rho = OfHundredths(state.range(1));
  const volatile double r = OfHundredths(state.range(2));
  for (auto _ : state) {
    benchmark::DoNotOptimize(CorrelationCdf(rho, n, r, algorithm));
  }
}
BENCHMARK_CAPTURE(BenchCdf, exact, CorrelationExact)
    ->Apply(EachDesign)
    ->Name("CorrelationCdf/exact");
BENCHMARK_CAPTURE(BenchCdf, refined, CorrelationFisherZRefined)
    ->Args({100, 20, 10})
    ->Name("CorrelationCdf/refined");
BENCHMARK_CAPTURE(BenchCdf, crude, CorrelationFisherZCrude)
    ->Args({100, 20, 10})
    ->Name("CorrelationCdf/crude");

// A size whose integral is not replaced by a series.
void BenchCdfByIntegration(benchmark::State& state) { BenchCdf(state, CorrelationExact); }
BENCHMARK(BenchCdfByIntegration)->Args({220, 20, 10})->Name("CorrelationCdf/integrated");

void BenchQuantile(benchmark::State& state, double rho, double p) {
  const auto n = static_cast<std::int32_t>(state.range(0));
  for (auto _ : state) {
    benchmark::DoNotOptimize(CorrelationQuantile(rho, n, p, CorrelationExact));
  }
}
BENCHMARK_CAPTURE(BenchQuantile, null, 0.0, 0.975)
    ->Apply(EachSize)
    ->Name("CorrelationQuantile/rho0");
BENCHMARK_CAPTURE(BenchQuantile, middle, 0.2, 0.975)
    ->Apply(EachSize)
    ->Name("CorrelationQuantile/rho20");
BENCHMARK_CAPTURE(BenchQuantile, high, 0.9, 0.025)
    ->Apply(EachSize)
    ->Name("CorrelationQuantile/rho90");

void BenchRhoForP(benchmark::State& state) {
  const auto n = static_cast<std::int32_t>(state.range(0));
  const volatile double p = 0.975;
  for (auto _ : state) {
    int failure = 0;
    benchmark::DoNotOptimize(CorrelationRhoForP(n, 0.3, p, failure, CorrelationExact));
  }
}
BENCHMARK(BenchRhoForP)->Apply(EachSize)->Name("CorrelationRhoForP/exact");

}  // namespace
}  // namespace poweranalysis
