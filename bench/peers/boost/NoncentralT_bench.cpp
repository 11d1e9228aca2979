// Times NoncentralTCdf and Boost.Math's noncentral t (double policy: no promotion to long double)
// on the same inputs.

#include <benchmark/benchmark.h>

#include <boost/math/distributions/non_central_t.hpp>
#include <cstdint>

#include "../../distributions/NoncentralTInputs.h"
#include "distributions/NoncentralT.h"

namespace poweranalysis {
namespace {

using DoublePolicy = boost::math::policies::policy<boost::math::policies::promote_double<false>>;
using BoostNoncentralT = boost::math::non_central_t_distribution<double, DoublePolicy>;

void Ours(benchmark::State& state) {
  const auto df = static_cast<std::int32_t>(state.range(0));
  const double delta = bench::DeltaOf(state.range(1));
  const volatile double t = bench::T;
  for (auto _ : state) {
    benchmark::DoNotOptimize(NoncentralTCdf(t, df, delta));
  }
}
BENCHMARK(Ours)->Apply(bench::EachDesign)->Name("ours/NoncentralTCdf");

void Boost(benchmark::State& state) {
  const auto df = static_cast<double>(state.range(0));
  const double delta = bench::DeltaOf(state.range(1));
  const volatile double t = bench::T;
  for (auto _ : state) {
    benchmark::DoNotOptimize(boost::math::cdf(BoostNoncentralT(df, delta), t));
  }
}
BENCHMARK(Boost)->Apply(bench::EachDesign)->Name("boost/NoncentralTCdf");

}  // namespace
}  // namespace poweranalysis
