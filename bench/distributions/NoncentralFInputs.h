#pragma once

#include <benchmark/benchmark.h>

#include <cstdint>

// The inputs that ours and the peers are timed on.
namespace poweranalysis::bench {

struct FDesign {
  std::int32_t df1;
  std::int32_t df2;
  double delta;
  double f;
};

inline FDesign FDesignOf(const benchmark::State& state) {
  return {static_cast<std::int32_t>(state.range(0)), static_cast<std::int32_t>(state.range(1)),
          static_cast<double>(state.range(2)), static_cast<double>(state.range(3)) / 100.0};
}

// df1, df2, delta and f in hundredths: small, medium, large; then few terms and many.
inline void EachFDesign(benchmark::internal::Benchmark* benchmark) {
  benchmark->Args({2, 10, 5, 300});
  benchmark->Args({3, 60, 10, 300});
  benchmark->Args({10, 200, 30, 200});
  benchmark->Args({20, 2000, 60, 160});
  benchmark->Args({1, 98, 1, 394});
  benchmark->Args({5, 500, 500, 5000});
}

}  // namespace poweranalysis::bench
