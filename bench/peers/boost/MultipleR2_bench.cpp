// Times MultipleR2CdfExact and what a user of Boost.Math would write for it on the same inputs:
// the same series, its weights by a running product, its beta functions from ibeta (double policy:
// no promotion to long double), ended by the same tests.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <boost/math/special_functions/beta.hpp>
#include <boost/math/special_functions/gamma.hpp>
#include <cmath>
#include <cstdint>

#include "../../distributions/MultipleR2Inputs.h"
#include "distributions/MultipleR2.h"

namespace poweranalysis {
namespace {

using DoublePolicy = boost::math::policies::policy<boost::math::policies::promote_double<false>>;

double PeakIndex(double rho2, double N, double P) {
  const double r = std::sqrt(rho2);
  const double S = (P - 2.0) * (P - 2.0) + 4.0 * rho2 * (N - 2.0) * (N - P);
  const double G = 8.0 - 4.0 * N - (4.0 - 4.0 * N + 2.0 * P) / (1.0 - rho2);
  const double R = 2.0 * std::sqrt(S) / ((r - 1.0) * (r + 1.0));
  return std::trunc(std::max((G + R) / 8.0, (G - R) / 8.0)) + 2.0;
}

// The logarithm of the weight is carried only as long as the weight is no double.
double UserCdf(double x, double rho2, double n, double k) {
  const double A = (n - 1.0) / 2.0;
  const double B = (k - 1.0) / 2.0;
  const double C = (n - k) / 2.0;
  const double M = PeakIndex(rho2, n - 1.0, k - 1.0);
  double logWeight = A * std::log1p(-rho2);
  double j = 0.0;
  while (logWeight < -690.0) {
    j += 1.0;
    logWeight += std::log((A + j - 1.0) * rho2 / j);
  }
  double weight = std::exp(logWeight);
  double sum = 0.0;
  double previous = 0.0;
  for (; j < 1e7; j += 1.0, weight *= (A + j - 1.0) * rho2 / j) {
    const double T = weight * boost::math::ibeta(B + j, C, x, DoublePolicy());
    sum += T;
    if ((M - j) * T <= 1e-18 && T < previous && j > 1.0 && j < M) {
      break;
    }
    const double R = (j + A - 1.0) * (j + A - 1.0) * rho2 / ((j + B - 1.0) * j);
    if (j > 0.0 && R < 1.0 && T / (1.0 - R) < 1e-7) {
      break;
    }
    previous = T;
  }
  return sum;
}

void Ours(benchmark::State& state) {
  const bench::R2Design design = bench::DesignOf(state);
  const volatile double x = design.x;
  double p = 0.0;
  for (auto _ : state) {
    int failure = 0;
    p = MultipleR2CdfExact(x, design.rho2, design.n, design.k, failure);
    benchmark::DoNotOptimize(p);
  }
  state.counters["p"] = p;
}
BENCHMARK(Ours)->Apply(bench::EachR2Design)->Name("ours/MultipleR2CdfExact");

void Boost(benchmark::State& state) {
  const bench::R2Design design = bench::DesignOf(state);
  const volatile double x = design.x;
  double p = 0.0;
  for (auto _ : state) {
    p = UserCdf(x, design.rho2, design.n, design.k);
    benchmark::DoNotOptimize(p);
  }
  state.counters["p"] = p;
}
BENCHMARK(Boost)->Apply(bench::EachR2Design)->Name("boost/MultipleR2CdfExact");

}  // namespace
}  // namespace poweranalysis
