// Times the binomial distribution and Boost.Math's (double policy: no promotion to long double) on
// the same inputs. Boost's quantile is asked for the smallest count whose value reaches p.

#include <benchmark/benchmark.h>

#include <boost/math/distributions/binomial.hpp>
#include <cmath>
#include <cstdint>

#include "../../distributions/BinomialInputs.h"
#include "distributions/Binomial.h"

namespace poweranalysis {
namespace {

using boost::math::policies::discrete_quantile;
using boost::math::policies::integer_round_up;
using boost::math::policies::policy;
using boost::math::policies::promote_double;
using DoublePolicy = policy<promote_double<false>, discrete_quantile<integer_round_up>>;
using BoostBinomial = boost::math::binomial_distribution<double, DoublePolicy>;

void OursCdf(benchmark::State& state) {
  const auto n = static_cast<double>(state.range(0));
  const volatile double pi = bench::ProportionOf(state.range(1));
  const double k = bench::CountAt(state.range(0), pi, state.range(2));
  for (auto _ : state) {
    int failure = 0;
    benchmark::DoNotOptimize(BinomialCdf(n, pi, k, failure));
  }
}
BENCHMARK(OursCdf)->Apply(bench::EachBinomialDesign)->Name("ours/BinomialCdf");

void BoostCdf(benchmark::State& state) {
  const auto n = static_cast<double>(state.range(0));
  const volatile double pi = bench::ProportionOf(state.range(1));
  const double k = bench::CountAt(state.range(0), pi, state.range(2));
  for (auto _ : state) {
    benchmark::DoNotOptimize(boost::math::cdf(BoostBinomial(n, pi), k));
  }
}
BENCHMARK(BoostCdf)->Apply(bench::EachBinomialDesign)->Name("boost/BinomialCdf");

void OursQuantile(benchmark::State& state) {
  const auto n = static_cast<double>(state.range(0));
  const volatile double pi = bench::ProportionOf(state.range(1));
  for (auto _ : state) {
    double actual = 1.0;
    int failure = 0;
    benchmark::DoNotOptimize(BinomialQuantile(0.95, n, pi, actual, failure, std::log(0.95)));
  }
}
BENCHMARK(OursQuantile)->Apply(bench::EachBinomialInverse)->Name("ours/BinomialQuantile");

void BoostQuantile(benchmark::State& state) {
  const auto n = static_cast<double>(state.range(0));
  const volatile double pi = bench::ProportionOf(state.range(1));
  for (auto _ : state) {
    benchmark::DoNotOptimize(boost::math::quantile(BoostBinomial(n, pi), 0.95));
  }
}
BENCHMARK(BoostQuantile)->Apply(bench::EachBinomialInverse)->Name("boost/BinomialQuantile");

void OursProportion(benchmark::State& state) {
  const auto n = static_cast<double>(state.range(0));
  const volatile double k = bench::CountAt(state.range(0), bench::ProportionOf(state.range(1)), 0);
  for (auto _ : state) {
    int failure = 0;
    benchmark::DoNotOptimize(BinomialProportionForP(n, 0.025, k, failure));
  }
}
BENCHMARK(OursProportion)->Apply(bench::EachBinomialInverse)->Name("ours/BinomialProportionForP");

void BoostProportion(benchmark::State& state) {
  const auto n = static_cast<double>(state.range(0));
  const volatile double k = bench::CountAt(state.range(0), bench::ProportionOf(state.range(1)), 0);
  for (auto _ : state) {
    benchmark::DoNotOptimize(BoostBinomial::find_upper_bound_on_p(n, k, 0.025));
  }
}
BENCHMARK(BoostProportion)->Apply(bench::EachBinomialInverse)->Name("boost/BinomialProportionForP");

}  // namespace
}  // namespace poweranalysis
