// Times the noncentral F distribution, its approximation and its inverses.

#include "distributions/NoncentralF.h"

#include <benchmark/benchmark.h>

#include <cstdint>

#include "NoncentralFInputs.h"

namespace poweranalysis {
namespace {

void Cdf(benchmark::State& state) {
  const bench::FDesign design = bench::FDesignOf(state);
  const volatile double f = design.f;
  int failure = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(
        NoncentralFCdfInt(f, design.df1, design.df2, design.delta, failure, FExact));
  }
}
BENCHMARK(Cdf)->Apply(bench::EachFDesign)->Name("NoncentralFCdf");

void TikuCdf(benchmark::State& state) {
  const bench::FDesign design = bench::FDesignOf(state);
  const volatile double f = design.f;
  int failure = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(
        NoncentralFCdfInt(f, design.df1, design.df2, design.delta, failure, FTiku));
  }
}
BENCHMARK(TikuCdf)->Apply(bench::EachFDesign)->Name("NoncentralFCdfTiku");

void CentralQuantile(benchmark::State& state) {
  const bench::FDesign design = bench::FDesignOf(state);
  const volatile double p = 0.95;
  int failure = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(CentralFQuantile(design.df1, design.df2, p, failure));
  }
}
BENCHMARK(CentralQuantile)->Apply(bench::EachFDesign)->Name("CentralFQuantile");

void Quantile(benchmark::State& state) {
  const bench::FDesign design = bench::FDesignOf(state);
  const volatile double p = 0.95;
  int failure = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(
        NoncentralFQuantile(design.delta, design.df1, design.df2, p, failure, FExact));
  }
}
BENCHMARK(Quantile)->Apply(bench::EachFDesign)->Name("NoncentralFQuantile");

void Delta(benchmark::State& state) {
  const bench::FDesign design = bench::FDesignOf(state);
  const volatile double f = design.f;
  const volatile double p = 0.05;
  int failure = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(NoncentralFDelta(f, design.df1, design.df2, p, failure, FExact));
  }
}
BENCHMARK(Delta)->Apply(bench::EachFDesign)->Name("NoncentralFDelta");

}  // namespace
}  // namespace poweranalysis
