#include <gtest/gtest.h>

#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <new>
#include <thread>
#include <vector>

#include "distributions/Beta.h"
#include "distributions/NoncentralT.h"
#include "distributions/Normal.h"

namespace {

std::atomic<long> allocations{0};

}  // namespace

// Counts every allocation of this program. Inlined, g++ would take the pair for a mismatch.
[[gnu::noinline]] void* operator new(std::size_t size) {
  ++allocations;
  if (void* memory = std::malloc(size)) {
    return memory;
  }
  throw std::bad_alloc();
}
[[gnu::noinline]] void operator delete(void* memory) noexcept { std::free(memory); }
[[gnu::noinline]] void operator delete(void* memory, std::size_t /*size*/) noexcept {
  std::free(memory);
}

namespace poweranalysis {
namespace {

double EveryFunctionOnce(std::int32_t df) {
  int status = 0;
  int failure = 0;
  return NormalCdf(1.0) + NormalQuantile(0.9) + LogGamma(3.5) + BetaCdf(0.25, 2.0, 3.0, failure) +
         NoncentralTCdf(2.0, df, 1.0) + NoncentralTCdf(-2.0, df, 1.0) +
         CentralTQuantile(df, 0.025, status, failure) +
         NoncentralTQuantile(1.0, df, 0.75, status, failure);
}

TEST(Distributions, AllocateNothing) {
  const long before = allocations.load();
  double sum = 0.0;
  for (const std::int32_t df : {1, 2, 9, 50, 999, 20000}) {
    sum += EveryFunctionOnce(df);
  }
  EXPECT_EQ(allocations.load(), before);
  EXPECT_NE(sum, 0.0);
}

TEST(Distributions, GiveTheSameOnManyThreadsAtOnce) {
  std::vector<double> alone;
  for (std::int32_t df = 1; df <= 64; ++df) {
    alone.push_back(EveryFunctionOnce(df));
  }
  std::atomic<int> differences{0};
  std::vector<std::thread> threads;
  for (int thread = 0; thread < 4; ++thread) {
    threads.emplace_back([&] {
      for (std::int32_t df = 1; df <= 64; ++df) {
        differences += EveryFunctionOnce(df) == alone[static_cast<std::size_t>(df - 1)] ? 0 : 1;
      }
    });
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
  EXPECT_EQ(differences.load(), 0);
}

}  // namespace
}  // namespace poweranalysis
