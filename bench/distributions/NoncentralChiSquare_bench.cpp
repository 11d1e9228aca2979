#include "distributions/NoncentralChiSquare.h"

#include <benchmark/benchmark.h>

#include <cstdint>

#include "NoncentralChiSquareInputs.h"

namespace poweranalysis {
namespace {

void BenchCdf(benchmark::State& state) {
  const auto df = static_cast<std::int32_t>(state.range(0));
  const auto delta = static_cast<double>(state.range(1));
  const volatile double x = bench::ChiSquareAt(state.range(0), state.range(1), state.range(2));
  for (auto _ : state) {
    double density = 0.0;
    int failure = 0;
    benchmark::DoNotOptimize(NoncentralChiSquareCdf(x, df, delta, density, failure));
  }
}
BENCHMARK(BenchCdf)->Apply(bench::EachChiSquareDesign)->Name("NoncentralChiSquareCdf");

void BenchQuantile(benchmark::State& state) {
  const auto df = static_cast<std::int32_t>(state.range(0));
  const auto delta = static_cast<double>(state.range(1));
  const volatile double p = 0.95;
  for (auto _ : state) {
    int status = 0;
    benchmark::DoNotOptimize(NoncentralChiSquareQuantile(delta, df, p, status));
  }
}
BENCHMARK(BenchQuantile)->Apply(bench::EachChiSquareInverse)->Name("NoncentralChiSquareQuantile");

void BenchDelta(benchmark::State& state) {
  const auto df = static_cast<std::int32_t>(state.range(0));
  const volatile double x = bench::ChiSquareAt(state.range(0), state.range(1), 0);
  for (auto _ : state) {
    int word = 0;
    benchmark::DoNotOptimize(NoncentralChiSquareDelta(x, df, 0.25, word));
  }
}
BENCHMARK(BenchDelta)->Apply(bench::EachChiSquareInverse)->Name("NoncentralChiSquareDelta");

}  // namespace
}  // namespace poweranalysis
