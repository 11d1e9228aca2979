// Times the noncentral F functions and those of Boost.Math (double policy: no promotion to long
// double) on the same inputs, and prints for each design the ratio of the two.

#include <benchmark/benchmark.h>

#include <boost/math/distributions/fisher_f.hpp>
#include <boost/math/distributions/non_central_f.hpp>
#include <cstdint>

#include "distributions/NoncentralF.h"

namespace poweranalysis {
namespace {

using DoublePolicy = boost::math::policies::policy<boost::math::policies::promote_double<false>>;
using BoostF = boost::math::fisher_f_distribution<double, DoublePolicy>;
using BoostNoncentralF = boost::math::non_central_f_distribution<double, DoublePolicy>;

// df1, df2, delta and f in hundredths: small, medium, large; then few terms and many.
void EachDesign(benchmark::internal::Benchmark* benchmark) {
  benchmark->Args({2, 10, 5, 300});
  benchmark->Args({3, 60, 10, 300});
  benchmark->Args({10, 200, 30, 200});
  benchmark->Args({20, 2000, 60, 160});
  benchmark->Args({1, 98, 1, 394});
  benchmark->Args({5, 500, 500, 5000});
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

void OursCdf(benchmark::State& state) {
  Design design = DesignOf(state);
  int failure = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(design.f);
    benchmark::DoNotOptimize(
        NoncentralFCdfInt(design.f, design.df1, design.df2, design.delta, failure, FExact));
  }
}
BENCHMARK(OursCdf)->Apply(EachDesign)->Name("ours/NoncentralFCdf");

void BoostCdf(benchmark::State& state) {
  Design design = DesignOf(state);
  for (auto _ : state) {
    benchmark::DoNotOptimize(design.f);
    benchmark::DoNotOptimize(
        boost::math::cdf(BoostNoncentralF(design.df1, design.df2, design.delta), design.f));
  }
}
BENCHMARK(BoostCdf)->Apply(EachDesign)->Name("boost/NoncentralFCdf");

void OursCentralQuantile(benchmark::State& state) {
  Design design = DesignOf(state);
  double p = 0.95;
  int failure = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(p);
    benchmark::DoNotOptimize(CentralFQuantile(design.df1, design.df2, p, failure));
  }
}
BENCHMARK(OursCentralQuantile)->Apply(EachDesign)->Name("ours/CentralFQuantile");

void BoostCentralQuantile(benchmark::State& state) {
  Design design = DesignOf(state);
  double p = 0.95;
  for (auto _ : state) {
    benchmark::DoNotOptimize(p);
    benchmark::DoNotOptimize(boost::math::quantile(BoostF(design.df1, design.df2), p));
  }
}
BENCHMARK(BoostCentralQuantile)->Apply(EachDesign)->Name("boost/CentralFQuantile");

void OursQuantile(benchmark::State& state) {
  Design design = DesignOf(state);
  double p = 0.95;
  int failure = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(p);
    benchmark::DoNotOptimize(
        NoncentralFQuantile(design.delta, design.df1, design.df2, p, failure, FExact));
  }
}
BENCHMARK(OursQuantile)->Apply(EachDesign)->Name("ours/NoncentralFQuantile");

void BoostQuantile(benchmark::State& state) {
  Design design = DesignOf(state);
  double p = 0.95;
  for (auto _ : state) {
    benchmark::DoNotOptimize(p);
    benchmark::DoNotOptimize(
        boost::math::quantile(BoostNoncentralF(design.df1, design.df2, design.delta), p));
  }
}
BENCHMARK(BoostQuantile)->Apply(EachDesign)->Name("boost/NoncentralFQuantile");

// Boost has no inverse in delta, so ours has no peer here.
void OursDelta(benchmark::State& state) {
  Design design = DesignOf(state);
  double p = 0.05;
  int failure = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(p);
    benchmark::DoNotOptimize(
        NoncentralFDelta(design.f, design.df1, design.df2, p, failure, FExact));
  }
}
BENCHMARK(OursDelta)->Apply(EachDesign)->Name("ours/NoncentralFDelta");

}  // namespace
}  // namespace poweranalysis
