// Times the noncentral chi-square distribution and Boost.Math's (double policy: no promotion to
// long double) on the same inputs.

#include <benchmark/benchmark.h>

#include <boost/math/distributions/non_central_chi_squared.hpp>
#include <cstdint>

#include "../../distributions/NoncentralChiSquareInputs.h"
#include "distributions/NoncentralChiSquare.h"

namespace poweranalysis {
namespace {

using DoublePolicy = boost::math::policies::policy<boost::math::policies::promote_double<false>>;
using BoostChiSquare = boost::math::non_central_chi_squared_distribution<double, DoublePolicy>;

void OursCdf(benchmark::State& state) {
  const auto df = static_cast<std::int32_t>(state.range(0));
  const auto delta = static_cast<double>(state.range(1));
  const volatile double x = bench::ChiSquareAt(state.range(0), state.range(1), state.range(2));
  for (auto _ : state) {
    double density = 0.0;
    int failure = 0;
    benchmark::DoNotOptimize(NoncentralChiSquareCdf(x, df, delta, density, failure));
  }
}
BENCHMARK(OursCdf)->Apply(bench::EachChiSquareDesign)->Name("ours/NoncentralChiSquareCdf");

void BoostCdf(benchmark::State& state) {
  const auto df = static_cast<double>(state.range(0));
  const auto delta = static_cast<double>(state.range(1));
  const volatile double x = bench::ChiSquareAt(state.range(0), state.range(1), state.range(2));
  for (auto _ : state) {
    benchmark::DoNotOptimize(boost::math::cdf(BoostChiSquare(df, delta), x));
  }
}
BENCHMARK(BoostCdf)->Apply(bench::EachChiSquareDesign)->Name("boost/NoncentralChiSquareCdf");

void OursQuantile(benchmark::State& state) {
  const auto df = static_cast<std::int32_t>(state.range(0));
  const auto delta = static_cast<double>(state.range(1));
  const volatile double p = 0.95;
  for (auto _ : state) {
    int status = 0;
    benchmark::DoNotOptimize(NoncentralChiSquareQuantile(delta, df, p, status));
  }
}
BENCHMARK(OursQuantile)
    ->Apply(bench::EachChiSquareInverse)
    ->Name("ours/NoncentralChiSquareQuantile");

void BoostQuantile(benchmark::State& state) {
  const auto df = static_cast<double>(state.range(0));
  const auto delta = static_cast<double>(state.range(1));
  const volatile double p = 0.95;
  for (auto _ : state) {
    benchmark::DoNotOptimize(boost::math::quantile(BoostChiSquare(df, delta), p));
  }
}
BENCHMARK(BoostQuantile)
    ->Apply(bench::EachChiSquareInverse)
    ->Name("boost/NoncentralChiSquareQuantile");

void OursDelta(benchmark::State& state) {
  const auto df = static_cast<std::int32_t>(state.range(0));
  const volatile double x = bench::ChiSquareAt(state.range(0), state.range(1), 0);
  for (auto _ : state) {
    int word = 0;
    benchmark::DoNotOptimize(NoncentralChiSquareDelta(x, df, 0.25, word));
  }
}
BENCHMARK(OursDelta)->Apply(bench::EachChiSquareInverse)->Name("ours/NoncentralChiSquareDelta");

void BoostDelta(benchmark::State& state) {
  const auto df = static_cast<double>(state.range(0));
  const volatile double x = bench::ChiSquareAt(state.range(0), state.range(1), 0);
  for (auto _ : state) {
    benchmark::DoNotOptimize(BoostChiSquare::find_non_centrality(df, x, 0.25));
  }
}
BENCHMARK(BoostDelta)->Apply(bench::EachChiSquareInverse)->Name("boost/NoncentralChiSquareDelta");

}  // namespace
}  // namespace poweranalysis
