#pragma once

#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdint>
#include <utility>

// The inputs that ours and the peers are timed on.
namespace poweranalysis::bench {

struct R2Design {
  std::int32_t n;
  std::int32_t k;
  double rho2;
  double x;
};

// Arguments: n, k, rho2 in thousandths. The x lies one standard deviation above the mean, where the
// critical values of a test are.
inline R2Design DesignOf(const benchmark::State& state) {
  const auto n = static_cast<std::int32_t>(state.range(0));
  const auto k = static_cast<std::int32_t>(state.range(1));
  const double rho2 = static_cast<double>(state.range(2)) / 1000.0;
  const double mean = rho2 + (1.0 - rho2) * (k - 1.0) / (n - 1.0);
  const double deviation = 2.0 * (1.0 - rho2) * std::sqrt((rho2 + 1.0 / n) / n);
  return {n, k, rho2, mean + (1.0 - mean) * std::tanh(deviation / (1.0 - mean))};
}

inline void EachR2Design(benchmark::internal::Benchmark* benchmark) {
  for (const auto& [n, k] :
       {std::pair{20, 3}, {20, 6}, {100, 6}, {1000, 6}, {1000, 60}, {10000, 11}}) {
    for (const std::int64_t rho2 : {20, 200, 600}) {
      benchmark->Args({n, k, rho2});
    }
  }
}

}  // namespace poweranalysis::bench
