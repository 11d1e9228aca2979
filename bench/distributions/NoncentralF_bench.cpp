// Times the noncentral F distribution, its approximation and its inverses.

#include "distributions/NoncentralF.h"

#include <benchmark/benchmark.h>

#include <cstdint>

namespace poweranalysis {
namespace {

// df1, df2, delta and f in hundredths.
void EachDesign(benchmark::internal::Benchmark* benchmark) {
  benchmark->Args({2, 10, 5, 300});
  benchmark->Args({3, 60, 10, 300});
  benchmark->Args({10, 200, 30, 200});
  benchmark->Args({20, 2000, 60, 160});
}

struct Design {
  std::int32_t df1;
  std::int32_t df2;
  double delta;
  double f;
};

Design DesignOf(const benchmark::State& state) {
  return {static_cast<std::int32_t>(state.range(0)), static_cast<std::int32_t>(state.range(1)),
          static_cast<double>(state.range(2)), static_cast<double>(state.range(3)) / 100.0};
}

void Cdf(benchmark::State& state) {
  Design design = DesignOf(state);
  int failure = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(design.f);
    benchmark::DoNotOptimize(
        NoncentralFCdfInt(design.f, design.df1, design.df2, design.delta, failure, FExact));
  }
}
BENCHMARK(Cdf)->Apply(EachDesign)->Name("NoncentralFCdf");

void TikuCdf(benchmark::State& state) {
  Design design = DesignOf(state);
  int failure = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(design.f);
    benchmark::DoNotOptimize(
        NoncentralFCdfInt(design.f, design.df1, design.df2, design.delta, failure, FTiku));
  }
}
BENCHMARK(TikuCdf)->Apply(EachDesign)->Name("NoncentralFCdfTiku");

void CentralQuantile(benchmark::State& state) {
  Design design = DesignOf(state);
  double p = 0.95;
  int failure = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(p);
    benchmark::DoNotOptimize(CentralFQuantile(design.df1, design.df2, p, failure));
  }
}
BENCHMARK(CentralQuantile)->Apply(EachDesign)->Name("CentralFQuantile");

void Quantile(benchmark::State& state) {
  Design design = DesignOf(state);
  double p = 0.95;
  int failure = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(p);
    benchmark::DoNotOptimize(
        NoncentralFQuantile(design.delta, design.df1, design.df2, p, failure, FExact));
  }
}
BENCHMARK(Quantile)->Apply(EachDesign)->Name("NoncentralFQuantile");

void Delta(benchmark::State& state) {
  Design design = DesignOf(state);
  double p = 0.05;
  int failure = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(p);
    benchmark::DoNotOptimize(
        NoncentralFDelta(design.f, design.df1, design.df2, p, failure, FExact));
  }
}
BENCHMARK(Delta)->Apply(EachDesign)->Name("NoncentralFDelta");

}  // namespace
}  // namespace poweranalysis
