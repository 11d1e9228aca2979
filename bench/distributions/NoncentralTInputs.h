#pragma once

#include <benchmark/benchmark.h>

#include <cstdint>

// The inputs that ours and the peers are timed on.
namespace poweranalysis::bench {

inline constexpr double T = 2.0;

// Deltas are given in tenths: 1.0 near t, 3.0 where a test has about 85 percent power.
inline double DeltaOf(std::int64_t tenths) { return static_cast<double>(tenths) / 10.0; }

inline void EachDf(benchmark::internal::Benchmark* benchmark) {
  for (const std::int64_t df : {9, 49, 499, 9999}) {
    benchmark->Arg(df);
  }
}

inline void EachDesign(benchmark::internal::Benchmark* benchmark) {
  for (const std::int64_t df : {9, 10, 49, 50, 499, 500, 9999, 10000}) {
    for (const std::int64_t tenths : {10, 30}) {
      benchmark->Args({df, tenths});
    }
  }
}

}  // namespace poweranalysis::bench
