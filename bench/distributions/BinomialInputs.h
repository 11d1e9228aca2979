#pragma once

#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdint>

// The inputs that ours and the peers are timed on.
namespace poweranalysis::bench {

// Proportions are given in thousandths.
inline double ProportionOf(std::int64_t thousandths) {
  return static_cast<double>(thousandths) / 1000.0;
}

// The count so many standard deviations from the mean.
inline double CountAt(std::int64_t n, double pi, std::int64_t deviations) {
  const auto size = static_cast<double>(n);
  const double k = size * pi + static_cast<double>(deviations) * std::sqrt(size * pi * (1.0 - pi));
  return std::floor(k > 0.0 ? k : 0.0);
}

inline void EachBinomialDesign(benchmark::internal::Benchmark* benchmark) {
  benchmark->ArgNames({"n", "thousandths", "sd"});
  for (const std::int64_t n : {10, 100, 1000, 10000, 100000}) {
    for (const std::int64_t thousandths : {20, 300, 500}) {
      for (const std::int64_t deviations : {-1, 2}) {
        benchmark->Args({n, thousandths, deviations});
      }
    }
  }
}

inline void EachBinomialInverse(benchmark::internal::Benchmark* benchmark) {
  benchmark->ArgNames({"n", "thousandths"});
  for (const std::int64_t n : {10, 100, 1000, 100000}) {
    for (const std::int64_t thousandths : {20, 300, 500}) {
      benchmark->Args({n, thousandths});
    }
  }
}

}  // namespace poweranalysis::bench
