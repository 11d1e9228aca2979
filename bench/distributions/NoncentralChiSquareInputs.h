#pragma once

#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdint>

// The inputs that ours and the peers are timed on.
namespace poweranalysis::bench {

// x below, at and above the middle of the distribution: the mean and two standard deviations to
// either side of it.
inline double ChiSquareAt(std::int64_t df, std::int64_t delta, std::int64_t deviations) {
  const auto n = static_cast<double>(df);
  const auto noncentrality = static_cast<double>(delta);
  const double x = n + noncentrality +
                   static_cast<double>(deviations) * std::sqrt(2.0 * (n + 2.0 * noncentrality));
  return x > 0.0 ? x : 0.25 * n;
}

inline void EachChiSquareDesign(benchmark::internal::Benchmark* benchmark) {
  benchmark->ArgNames({"df", "delta", "sd"});
  for (const std::int64_t df : {1, 10, 100, 1000, 5000}) {
    for (const std::int64_t delta : {0, 5, 50, 500}) {
      for (const std::int64_t deviations : {-1, 2}) {
        benchmark->Args({df, delta, deviations});
      }
    }
  }
}

inline void EachChiSquareInverse(benchmark::internal::Benchmark* benchmark) {
  benchmark->ArgNames({"df", "delta"});
  for (const std::int64_t df : {4, 20, 200, 2000}) {
    for (const std::int64_t delta : {2, 20, 200}) {
      benchmark->Args({df, delta});
    }
  }
}

}  // namespace poweranalysis::bench
