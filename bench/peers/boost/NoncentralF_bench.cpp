// Times the noncentral F functions and those of Boost.Math (double policy: no promotion to long
// double) on the same inputs.

#include <benchmark/benchmark.h>

#include <boost/math/distributions/fisher_f.hpp>
#include <boost/math/distributions/non_central_f.hpp>
#include <cstdint>

#include "../../distributions/NoncentralFInputs.h"
#include "distributions/NoncentralF.h"

namespace poweranalysis {
namespace {

using DoublePolicy = boost::math::policies::policy<boost::math::policies::promote_double<false>>;
using BoostF = boost::math::fisher_f_distribution<double, DoublePolicy>;
using BoostNoncentralF = boost::math::non_central_f_distribution<double, DoublePolicy>;

void OursCdf(benchmark::State& state) {
  const bench::FDesign design = bench::FDesignOf(state);
  const volatile double f = design.f;
  int failure = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(
        NoncentralFCdfInt(f, design.df1, design.df2, design.delta, failure, FExact));
  }
}
BENCHMARK(OursCdf)->Apply(bench::EachFDesign)->Name("ours/NoncentralFCdf");

void BoostCdf(benchmark::State& state) {
  const bench::FDesign design = bench::FDesignOf(state);
  const volatile double f = design.f;
  for (auto _ : state) {
    benchmark::DoNotOptimize(
        boost::math::cdf(BoostNoncentralF(design.df1, design.df2, design.delta), f));
  }
}
BENCHMARK(BoostCdf)->Apply(bench::EachFDesign)->Name("boost/NoncentralFCdf");

void OursCentralQuantile(benchmark::State& state) {
  const bench::FDesign design = bench::FDesignOf(state);
  const volatile double p = 0.95;
  int failure = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(CentralFQuantile(design.df1, design.df2, p, failure));
  }
}
BENCHMARK(OursCentralQuantile)->Apply(bench::EachFDesign)->Name("ours/CentralFQuantile");

void BoostCentralQuantile(benchmark::State& state) {
  const bench::FDesign design = bench::FDesignOf(state);
  const volatile double p = 0.95;
  for (auto _ : state) {
    benchmark::DoNotOptimize(boost::math::quantile(BoostF(design.df1, design.df2), p));
  }
}
BENCHMARK(BoostCentralQuantile)->Apply(bench::EachFDesign)->Name("boost/CentralFQuantile");

void OursQuantile(benchmark::State& state) {
  const bench::FDesign design = bench::FDesignOf(state);
  const volatile double p = 0.95;
  int failure = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(
        NoncentralFQuantile(design.delta, design.df1, design.df2, p, failure, FExact));
  }
}
BENCHMARK(OursQuantile)->Apply(bench::EachFDesign)->Name("ours/NoncentralFQuantile");

void BoostQuantile(benchmark::State& state) {
  const bench::FDesign design = bench::FDesignOf(state);
  const volatile double p = 0.95;
  for (auto _ : state) {
    benchmark::DoNotOptimize(
        boost::math::quantile(BoostNoncentralF(design.df1, design.df2, design.delta), p));
  }
}
BENCHMARK(BoostQuantile)->Apply(bench::EachFDesign)->Name("boost/NoncentralFQuantile");

// Boost has no inverse in delta, so ours has no peer here.
void OursDelta(benchmark::State& state) {
  const bench::FDesign design = bench::FDesignOf(state);
  const volatile double f = design.f;
  const volatile double p = 0.05;
  int failure = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(NoncentralFDelta(f, design.df1, design.df2, p, failure, FExact));
  }
}
BENCHMARK(OursDelta)->Apply(bench::EachFDesign)->Name("ours/NoncentralFDelta");

}  // namespace
}  // namespace poweranalysis
