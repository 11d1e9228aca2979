#include "distributions/NoncentralT.h"

#include <benchmark/benchmark.h>

#include <cstdint>

#include "NoncentralTInputs.h"
#include "distributions/SolveParameter.h"

namespace poweranalysis {
namespace {

void BenchNoncentralTCdf(benchmark::State& state) {
  const auto df = static_cast<std::int32_t>(state.range(0));
  const double delta = bench::DeltaOf(state.range(1));
  const volatile double t = bench::T;
  for (auto _ : state) {
    benchmark::DoNotOptimize(NoncentralTCdf(t, df, delta));
  }
}
BENCHMARK(BenchNoncentralTCdf)->Apply(bench::EachDesign)->Name("NoncentralTCdf");

// The wrong tail of a two-sided test: t and delta differ in sign.
void BenchOppositeSigns(benchmark::State& state) {
  const auto df = static_cast<std::int32_t>(state.range(0));
  const double delta = bench::DeltaOf(state.range(1));
  const volatile double t = -bench::T;
  for (auto _ : state) {
    benchmark::DoNotOptimize(NoncentralTCdf(t, df, delta));
  }
}
BENCHMARK(BenchOppositeSigns)->Apply(bench::EachDesign)->Name("NoncentralTCdf/opposite");

void BenchCentralTQuantile(benchmark::State& state) {
  const auto df = static_cast<std::int32_t>(state.range(0));
  const volatile double p = 0.025;
  for (auto _ : state) {
    int status = 0;
    int failure = 0;
    benchmark::DoNotOptimize(CentralTQuantile(df, p, status, failure));
  }
}
BENCHMARK(BenchCentralTQuantile)->Apply(bench::EachDf)->Name("CentralTQuantile");

void BenchNoncentralTQuantile(benchmark::State& state) {
  const auto df = static_cast<std::int32_t>(state.range(0));
  const volatile double p = 0.9;
  for (auto _ : state) {
    int status = 0;
    int failure = 0;
    benchmark::DoNotOptimize(NoncentralTQuantile(1.0, df, p, status, failure));
  }
}
BENCHMARK(BenchNoncentralTQuantile)->Apply(bench::EachDf)->Name("NoncentralTQuantile");

}  // namespace
}  // namespace poweranalysis
