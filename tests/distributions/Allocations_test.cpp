#include <gtest/gtest.h>

#include <atomic>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <new>
#include <thread>
#include <vector>

#include "distributions/Beta.h"
#include "distributions/Binomial.h"
#include "distributions/Correlation.h"
#include "distributions/MultipleR2.h"
#include "distributions/NoncentralChiSquare.h"
#include "distributions/NoncentralF.h"
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

double NormalAndT(std::int32_t df) {
  int status = 0;
  int failure = 0;
  return NormalCdf(1.0) + NormalQuantile(0.9) + LogGamma(3.5) + BetaCdf(0.25, 2.0, 3.0, failure) +
         NoncentralTCdf(2.0, df, 1.0) + NoncentralTCdf(-2.0, df, 1.0) +
         CentralTQuantile(df, 0.025, status, failure) +
         NoncentralTQuantile(1.0, df, 0.75, status, failure);
}

double FAndChiSquare(std::int32_t df) {
  int failure = 0;
  double density = 0.0;
  double sum = NoncentralBetaCdf(0.5, 2.0, df, 3.0, failure) +
               CentralFQuantile(3.5, df, 0.95, failure) +
               NoncentralChiSquareCdf(df, df, 3.0, density, failure) +
               NoncentralChiSquareQuantile(3.0, df, 0.75, failure) +
               NoncentralChiSquareDelta(2.0 * df, df, 0.25, failure);
  for (const std::int16_t algorithm : {FExact, FTiku}) {
    sum += NoncentralFCdfInt(2.0, 3, df + 2, 3.0, failure, algorithm) +
           NoncentralFQuantile(3.0, 3.0, df + 2, 0.75, failure, algorithm) +
           NoncentralFDelta(4.0, 3, df + 2, 0.25, failure, algorithm);
  }
  return sum;
}

double CorrelationAndBinomial(std::int32_t df) {
  int failure = 0;
  double actual = 0.0;
  const double n = df + 2;
  double sum = BinomialCdf(n, 0.25, n / 3, failure) +
               BinomialQuantile(0.75, n, 0.25, actual, failure, std::log(0.75)) +
               BinomialProportionForP(n, 0.25, 1, failure) +
               RoundProportionToCount(0.3, n).proportion;
  for (const std::int16_t algorithm :
       {CorrelationExact, CorrelationFisherZRefined, CorrelationFisherZCrude}) {
    const std::int32_t pairs = algorithm == CorrelationExact ? 4 + df % 500 : 4 + df;
    sum += CorrelationCdf(0.25, pairs, 0.5, algorithm) +
           CorrelationQuantile(0.25, pairs, 0.75, algorithm) +
           CorrelationRhoForP(pairs, 0.25, 0.75, failure, algorithm);
  }
  return sum;
}

double SquaredCorrelation(std::int32_t df) {
  int failure = 0;
  double sum = 0.0;
  for (const std::int16_t algorithm : {R2Lee, R2Exact}) {
    double lower = 0.0;
    double upper = 0.0;
    double oneSided = 0.0;
    double pValue = 0.0;
    MultipleR2Interval(3, 0.25, df + 4, 0.9, lower, upper, oneSided, failure, failure, failure,
                       algorithm, pValue);
    sum += MultipleR2Cdf(0.2, df + 4, 3, 0.25, algorithm, failure) + lower + upper + oneSided +
           MultipleR2CriticalValue(df + 4, 3, 0.05, 0.1, algorithm, 0, failure, 0) + pValue;
  }
  return sum;
}

double EveryFunctionOnce(std::int32_t df) {
  return NormalAndT(df) + FAndChiSquare(df) + CorrelationAndBinomial(df) + SquaredCorrelation(df);
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
