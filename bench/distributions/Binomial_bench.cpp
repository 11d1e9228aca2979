#include "distributions/Binomial.h"

#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdint>

#include "BinomialInputs.h"

namespace poweranalysis {
namespace {

void BenchCdf(benchmark::State& state) {
  const auto n = static_cast<double>(state.range(0));
  const volatile double pi = bench::ProportionOf(state.range(1));
  const double k = bench::CountAt(state.range(0), pi, state.range(2));
  for (auto _ : state) {
    int failure = 0;
    benchmark::DoNotOptimize(BinomialCdf(n, pi, k, failure));
  }
}
BENCHMARK(BenchCdf)->Apply(bench::EachBinomialDesign)->Name("BinomialCdf");

void BenchQuantile(benchmark::State& state) {
  const auto n = static_cast<double>(state.range(0));
  const volatile double pi = bench::ProportionOf(state.range(1));
  for (auto _ : state) {
    double actual = 1.0;
    int failure = 0;
    benchmark::DoNotOptimize(BinomialQuantile(0.95, n, pi, actual, failure, std::log(0.95)));
  }
}
BENCHMARK(BenchQuantile)->Apply(bench::EachBinomialInverse)->Name("BinomialQuantile");

void BenchProportion(benchmark::State& state) {
  const auto n = static_cast<double>(state.range(0));
  const volatile double k = bench::CountAt(state.range(0), bench::ProportionOf(state.range(1)), 0);
  for (auto _ : state) {
    int failure = 0;
    benchmark::DoNotOptimize(BinomialProportionForP(n, 0.025, k, failure));
  }
}
BENCHMARK(BenchProportion)->Apply(bench::EachBinomialInverse)->Name("BinomialProportionForP");

}  // namespace
}  // namespace poweranalysis
