#include "distributions/MultipleR2.h"

#include <benchmark/benchmark.h>

#include "MultipleR2Inputs.h"

namespace poweranalysis {
namespace {

void BenchExact(benchmark::State& state) {
  const bench::R2Design design = bench::DesignOf(state);
  const volatile double x = design.x;
  for (auto _ : state) {
    int failure = 0;
    benchmark::DoNotOptimize(MultipleR2CdfExact(x, design.rho2, design.n, design.k, failure));
  }
}
BENCHMARK(BenchExact)->Apply(bench::EachR2Design)->Name("MultipleR2CdfExact");

void BenchLee(benchmark::State& state) {
  const bench::R2Design design = bench::DesignOf(state);
  const volatile double x = design.x;
  for (auto _ : state) {
    int failure = 0;
    benchmark::DoNotOptimize(MultipleR2CdfLee(x, design.rho2, design.n, design.k, failure));
  }
}
BENCHMARK(BenchLee)->Apply(bench::EachR2Design)->Name("MultipleR2CdfLee");

void BenchQuantile(benchmark::State& state) {
  const bench::R2Design design = bench::DesignOf(state);
  const volatile double p = 0.95;
  for (auto _ : state) {
    int failure = 0;
    benchmark::DoNotOptimize(
        MultipleR2Quantile(design.rho2, design.n, design.k, p, failure, R2Exact));
  }
}
BENCHMARK(BenchQuantile)->Apply(bench::EachR2Design)->Name("MultipleR2Quantile");

// The median limit, from a start five percent below the observed value.
void BenchRho(benchmark::State& state) {
  const bench::R2Design design = bench::DesignOf(state);
  const volatile double target = 0.5;
  for (auto _ : state) {
    int failure = 0;
    benchmark::DoNotOptimize(
        MultipleR2RhoForP(design.x * 0.95, design.n, design.k, design.x, target, failure, R2Exact));
  }
}
BENCHMARK(BenchRho)->Apply(bench::EachR2Design)->Name("MultipleR2RhoForP");

}  // namespace
}  // namespace poweranalysis
