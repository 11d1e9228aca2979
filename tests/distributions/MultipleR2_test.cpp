#include "distributions/MultipleR2.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <initializer_list>
#include <limits>

#include "distributions/Beta.h"
#include "distributions/Common.h"
#include "distributions/Normal.h"
#include "distributions/TruthTable.h"
#include "distributions/reference/MultipleR2Reference.h"

namespace poweranalysis {
namespace {

using test::ErrorOf;
using test::ExpectTruth;

constexpr double NaN = std::numeric_limits<double>::quiet_NaN();
constexpr double Infinity = std::numeric_limits<double>::infinity();

std::int32_t Count(double value) { return static_cast<std::int32_t>(value); }

double Exact(double x, double rho2, std::int32_t n, std::int32_t k) {
  int failure = -1;
  const double p = MultipleR2CdfExact(x, rho2, n, k, failure);
  EXPECT_EQ(failure, 0) << x << " " << rho2 << " " << n << " " << k;
  return p;
}

double Lee(double x, double rho2, std::int32_t n, std::int32_t k) {
  int failure = -1;
  const double p = MultipleR2CdfLee(x, rho2, n, k, failure);
  EXPECT_EQ(failure, 0) << x << " " << rho2 << " " << n << " " << k;
  return p;
}

double Mean(double rho2, std::int32_t n, std::int32_t k) {
  return rho2 + (1.0 - rho2) * (k - 1.0) / (n - 1.0);
}

double Deviation(double rho2, std::int32_t n) {
  return 2.0 * (1.0 - rho2) * std::sqrt((rho2 + 1.0 / n) / n);
}

struct Design {
  std::int32_t n;
  std::int32_t k;
};

constexpr Design Designs[] = {{4, 2},  {5, 3},   {10, 3},   {20, 19},
                              {30, 6}, {100, 4}, {100, 60}, {500, 11}};
constexpr double Populations[] = {0.0, 0.001, 0.0625, 0.3, 0.75};

// Calls f(x, rho2, n, k) for a grid of x about the mean of each design.
template <class Function>
void ForEachPoint(const Function& f) {
  for (const Design& design : Designs) {
    for (const double rho2 : Populations) {
      for (const double s : {-2.5, -1.0, 0.0, 0.75, 2.0}) {
        const double x = Mean(rho2, design.n, design.k) + s * Deviation(rho2, design.n);
        if (x > 0.0 && x < 1.0) {
          f(x, rho2, design.n, design.k);
        }
      }
    }
  }
}

// Stops a call after so many questions, and counts what it is told.
class Canceller final : public SearchObserver {
 public:
  explicit Canceller(int questions) : questions_(questions) {}

  void Start(std::int32_t count) override {
    ++starts;
    scale = count;
  }
  bool Advance(std::int32_t counter) override {
    EXPECT_GE(counter, last);
    last = counter;
    return ++asked > questions_;
  }
  void Stop() override { ++stops; }

  int starts = 0;
  int stops = 0;
  int asked = 0;
  std::int32_t scale = 0;
  std::int32_t last = 0;

 private:
  int questions_;
};

// The exact distribution function.

TEST(MultipleR2CdfExact, AgreesWithTheTruthAsFarAsItsStopTestsAllow) {
  ExpectTruth("MultipleR2CdfExact",
              [](const auto& in) { return Exact(in[0], in[1], Count(in[2]), Count(in[3])); });
}

TEST(MultipleR2CdfExact, EqualsThePlainSeriesToTwelveDecimals) {
  double worst = 0.0;
  ForEachPoint([&](double x, double rho2, std::int32_t n, std::int32_t k) {
    int failure = 0;
    const double plain = reference::MultipleR2CdfExact(x, rho2, n, k, failure);
    EXPECT_NEAR(Exact(x, rho2, n, k), plain, 1e-12) << x << " " << rho2 << " " << n << " " << k;
    worst = std::max(worst, std::fabs(Exact(x, rho2, n, k) - plain));
  });
  RecordProperty("worst", ::testing::PrintToString(worst));
}

TEST(MultipleR2CdfExact, EqualsThePlainSeriesWhereItsWeightsAreSumsOfLogarithms) {
  for (const Design& design : {Design{60, 5}, {800, 3}, {3000, 2}, {3000, 1800}, {6000, 6}}) {
    for (const double rho2 : {0.8, 0.96}) {
      for (const double s : {-2.0, -0.25, 1.0}) {
        const double x = Mean(rho2, design.n, design.k) + s * Deviation(rho2, design.n);
        int failure = 0;
        EXPECT_NEAR(Exact(x, rho2, design.n, design.k),
                    reference::MultipleR2CdfExact(x, rho2, design.n, design.k, failure), 1e-12)
            << x << " " << rho2 << " " << design.n << " " << design.k;
      }
    }
  }
}

TEST(MultipleR2CdfExact, EqualsThePlainSeriesRelativelyInTheLowerTail) {
  for (const double x : {0.001, 0.01, 0.03125, 0.0625}) {
    int failure = 0;
    const double plain = reference::MultipleR2CdfExact(x, 0.5, 60, 6, failure);
    EXPECT_LT(plain, 1e-6);
    EXPECT_LT(ErrorOf(Exact(x, 0.5, 60, 6), plain), 1e-8) << x;
  }
}

TEST(MultipleR2CdfExact, IsTheCentralBetaFunctionAtAPopulationValueOfZero) {
  for (const Design& design : Designs) {
    for (const double x : {0.01, 0.25, 0.5, 0.875}) {
      int failure = 0;
      const double beta = BetaCdf(x, (design.k - 1) / 2.0, (design.n - design.k) / 2.0, failure);
      EXPECT_EQ(Exact(x, 0.0, design.n, design.k), beta);
      // Through the floor of the weight ratio at the second term, which is the last.
      double last = 0.0;
      EXPECT_LT(
          ErrorOf(reference::MultipleR2CdfExact(x, 0.0, design.n, design.k, failure, &last), beta),
          1e-14);
      EXPECT_EQ(last, 1.0);
    }
  }
}

TEST(MultipleR2CdfExact, FailsWithMinusOneOutsideItsDomain) {
  struct Row {
    double x;
    double rho2;
    std::int32_t n;
    std::int32_t k;
  };
  constexpr Row rows[] = {{-0.1, 0.2, 100, 3},
                          {1.1, 0.2, 100, 3},
                          {NaN, 0.2, 100, 3},
                          {Infinity, 0.2, 100, 3},
                          {0.5, 1.0, 100, 3},
                          {0.5, -0.1, 100, 3},
                          {0.5, 1.5, 100, 3},
                          {0.5, NaN, 100, 3},
                          {0.5, 0.2, 3, 3},
                          {0.5, 0.2, 3, 4},
                          {0.5, 0.2, 10, 1},
                          {0.5, 0.2, 10, 0},
                          {0.5, 0.2, 10, -5},
                          {0.5, 0.2, -5, -10},
                          {0.5, 0.2, std::numeric_limits<std::int32_t>::min(), 3}};
  for (const Row& row : rows) {
    int failure = 0;
    EXPECT_EQ(MultipleR2CdfExact(row.x, row.rho2, row.n, row.k, failure), -1.0) << row.x;
    EXPECT_EQ(failure, 1) << row.x << " " << row.rho2 << " " << row.n << " " << row.k;
  }
}

TEST(MultipleR2CdfExact, ClearsItsFailure) {
  int failure = 7;
  MultipleR2CdfExact(0.5, 0.25, 20, 3, failure);
  EXPECT_EQ(failure, 0);
}

TEST(MultipleR2CdfExact, IsZeroAtZeroAndNearlyOneAtOne) {
  ForEachPoint([](double /*x*/, double rho2, std::int32_t n, std::int32_t k) {
    EXPECT_EQ(Exact(0.0, rho2, n, k), 0.0);
    const double one = Exact(1.0, rho2, n, k);
    EXPECT_LE(one, 1.0 + 1e-12);
    // What the bounded rest may hold.
    EXPECT_GE(one, 1.0 - 1e-7);
  });
}

TEST(MultipleR2CdfExact, EndsAtTheBoundOfAGeometricRest) {
  // At x = 1 every beta function is 1 and what is missing is the rest alone.
  const double missing = 1.0 - Exact(1.0, 0.125, 6, 2);
  EXPECT_GT(missing, 1e-9);
  EXPECT_LT(missing, 1e-7);
}

TEST(MultipleR2CdfExact, RunsOnToThePeakIndexAndNotToTheFirstSmallTerm) {
  // The index lies where the bound of the ratio falls below one.
  EXPECT_EQ(reference::PeakIndex(0.0, 19.0, 4.0), 2.0);
  EXPECT_EQ(reference::PeakIndex(0.0, 9.0, 1.0), 2.0);
  const double M = reference::PeakIndex(0.5, 99.0, 4.0);
  EXPECT_EQ(M, 117.0);
  double last = 0.0;
  int failure = 0;
  reference::MultipleR2CdfExact(0.5, 0.5, 100, 5, failure, &last);
  EXPECT_GT(last, 50.0);
  EXPECT_LT(last, M);
}

TEST(MultipleR2CdfExact, GivesTheSumWithAFailureBeyondTenMillionTerms) {
  int failure = 0;
  const double sum = MultipleR2CdfExact(1.0, 0.99999998, 4, 2, failure);
  EXPECT_EQ(failure, 1);
  EXPECT_GT(sum, 0.0);
  EXPECT_LT(sum, 1.0);
  // The weights are those of a negative binomial distribution with A = 3 / 2 and a mean of 7.5e7:
  // its distribution function at 1e7 is near that of a gamma variate with shape 3 / 2 at 0.2.
  EXPECT_NEAR(sum, std::erf(std::sqrt(0.2)) - std::sqrt(0.8 / 3.14159265358979) * std::exp(-0.2),
              1e-5);
}

TEST(MultipleR2CdfExact, KnowsAtOnceThatTenMillionTermsVanish) {
  int failure = 0;
  EXPECT_EQ(MultipleR2CdfExact(0.99995, 0.9999, 150000, 5, failure), 0.0);
  EXPECT_EQ(MultipleR2CdfExact(1.0, 0.9999, 150000, 5, failure), 0.0);
  EXPECT_EQ(failure, 1);
}

TEST(MultipleR2CdfExact, SumsASeriesOfMillionsOfTerms) {
  // The limiting normal distribution of Fisher's z of R serves as a check from outside.
  const std::int32_t n = 150000;
  const double rho2 = 0.985;
  for (const double s : {-2.0, -0.5, 1.0}) {
    const double z = std::atanh(std::sqrt(rho2)) + s / std::sqrt(n - 3.0);
    const double x = std::tanh(z) * std::tanh(z);
    EXPECT_NEAR(Exact(x, rho2, n, 2), NormalCdf(s), 0.002) << s;
  }
}

TEST(MultipleR2CdfExact, KeepsTheSumOfItsWeightsWhereTheyComeInClosedForm) {
  // At x = 1 the sum is that of the weights. The plain sum of their logarithms has lost it.
  for (const std::int32_t n : {9000, 20000, 150000}) {
    EXPECT_NEAR(Exact(1.0, 0.96875, n, 6), 1.0, 1e-11) << n;
  }
  int failure = 0;
  const double plain = reference::MultipleR2CdfExact(1.0, 0.96875, 9000, 6, failure);
  EXPECT_GT(std::fabs(plain - 1.0), 1e-9);
  EXPECT_LT(std::fabs(plain - 1.0), 1e-6);
}

TEST(MultipleR2CdfExact, HasNoStepWhereTheWeightsChangeTheirForm) {
  // On either side of the index from which the weights come in closed form.
  const std::int32_t n = 20000;
  double below = 0.9;
  double above = 0.999;
  while (above - below > 1e-12) {
    const double middle = below + (above - below) / 2.0;
    (reference::PeakIndex(middle, n - 1.0, 4.0) < 2e5 ? below : above) = middle;
  }
  const double x = below;
  EXPECT_NEAR(Exact(x, below, n, 5), Exact(x, above, n, 5), 1e-6);
}

TEST(MultipleR2CdfExact, TakesTheHugestCounts) {
  const std::int32_t n = std::numeric_limits<std::int32_t>::max();
  EXPECT_GT(Exact(1e-9, 0.0, n, 2), 0.5);
  int failure = 0;
  const double p = MultipleR2CdfExact(1e-3, 1e-3, n, 3, failure);
  EXPECT_EQ(failure, 0);
  EXPECT_NEAR(p, 0.5, 0.02);
  MultipleR2CdfExact(0.5, 0.5, n, n - 1, failure);
  MultipleR2CdfExact(std::numeric_limits<double>::denorm_min(), 0.5, n, 2, failure);
  MultipleR2CdfExact(0.5, std::nextafter(1.0, 0.0), n, 2, failure);
  MultipleR2CdfExact(0.5, std::numeric_limits<double>::denorm_min(), n, 2, failure);
}

TEST(MultipleR2CdfExact, IsCancelledByItsObserver) {
  Canceller canceller(2);
  int failure = 0;
  EXPECT_EQ(MultipleR2CdfExact(0.8, 0.8, 100000, 5, failure, canceller), -1.0);
  EXPECT_EQ(failure, 2);
  EXPECT_EQ(canceller.asked, 3);
  EXPECT_EQ(canceller.starts, 1);
  EXPECT_GE(canceller.stops, 1);
  EXPECT_GT(canceller.scale, 0);
}

TEST(MultipleR2CdfExact, IsTheSameWithAnObserverThatOnlyWatches) {
  Canceller watcher(1000000);
  int failure = 0;
  const double watched = MultipleR2CdfExact(0.8, 0.8, 20000, 5, failure, watcher);
  EXPECT_EQ(watched, Exact(0.8, 0.8, 20000, 5));
  EXPECT_GT(watcher.asked, 3);
}

TEST(MultipleR2CdfExact, RisesInXAndFallsInRho) {
  for (const Design& design : Designs) {
    for (double x = 0.03125; x < 1.0; x += 0.03125) {
      for (const double rho2 : {0.0, 0.125, 0.5, 0.875}) {
        // The error allowed is that of the rest.
        EXPECT_LE(Exact(x - 0.03125, rho2, design.n, design.k),
                  Exact(x, rho2, design.n, design.k) + 1e-7);
        EXPECT_GE(Exact(x, rho2, design.n, design.k),
                  Exact(x, rho2 + 0.0625, design.n, design.k) - 1e-7);
      }
    }
  }
}

// Lee's form.

TEST(MultipleR2CdfLee, AgreesWithItsFormula) {
  ExpectTruth("MultipleR2CdfLee",
              [](const auto& in) { return Lee(in[0], in[1], Count(in[2]), Count(in[3])); });
}

TEST(MultipleR2CdfLee, EqualsThePlainFormulaBitForBit) {
  ForEachPoint([](double x, double rho2, std::int32_t n, std::int32_t k) {
    int failure = 0;
    EXPECT_EQ(Lee(x, rho2, n, k), reference::MultipleR2CdfLee(x, rho2, n, k, failure));
  });
}

TEST(MultipleR2CdfLee, IsTheCentralDistributionAtAPopulationValueOfZero) {
  int failure = 0;
  EXPECT_NEAR(Lee(0.125, 0.0, 30, 5), BetaCdf(0.125, 2.0, 12.5, failure), 1e-14);
}

TEST(MultipleR2CdfLee, IsZeroAtAPopulationValueOfOneAndAbove) {
  for (const double rho2 : {1.0, 1.5, Infinity}) {
    EXPECT_EQ(Lee(0.5, rho2, 30, 5), 0.0) << rho2;
  }
}

TEST(MultipleR2CdfLee, FailsWithMinusOneOutsideItsDomain) {
  struct Row {
    double x;
    double rho2;
    std::int32_t n;
    std::int32_t k;
  };
  constexpr Row rows[] = {{-0.1, 0.2, 100, 3}, {1.1, 0.2, 100, 3}, {NaN, 0.2, 100, 3},
                          {0.5, -0.1, 100, 3}, {0.5, NaN, 100, 3}, {0.5, 0.2, 3, 3},
                          {0.5, 0.2, 10, 1},   {0.5, 0.2, 2, 9}};
  for (const Row& row : rows) {
    int failure = 0;
    EXPECT_EQ(MultipleR2CdfLee(row.x, row.rho2, row.n, row.k, failure), -1.0) << row.x;
    EXPECT_EQ(failure, 1);
  }
}

TEST(MultipleR2CdfLee, IsOneAtOne) { EXPECT_EQ(Lee(1.0, 0.25, 30, 5), 1.0); }

TEST(MultipleR2CdfLee, TakesADifferenceThatRoundsBelowZeroForZero) {
  // g above 1e15, where p2^2 and p3 p1 agree in all their digits.
  for (const double x : {0.25, 0.5, 0.999}) {
    int failure = 0;
    const double p = MultipleR2CdfLee(x, std::nextafter(1.0, 0.0), 30, 5, failure);
    EXPECT_FALSE(std::isnan(p));
  }
}

TEST(MultipleR2CdfLee, StaysNearTheExactDistribution) {
  double largest = 0.0;
  ForEachPoint([&](double x, double rho2, std::int32_t n, std::int32_t k) {
    largest = std::max(largest, std::fabs(Lee(x, rho2, n, k) - Exact(x, rho2, n, k)));
  });
  RecordProperty("largest_gap", ::testing::PrintToString(largest));
  if (std::getenv("TRUTH_VERBOSE") != nullptr) {
    std::printf("MultipleR2CdfLee: largest gap to the exact form %g\n", largest);
  }
  EXPECT_LT(largest, 0.02);
  EXPECT_GT(largest, 1e-5) << "an approximation";
}

// The selector.

TEST(MultipleR2Cdf, SelectsByAlgorithm) {
  int failure = 0;
  EXPECT_EQ(MultipleR2Cdf(0.25, 40, 5, 0.375, R2Lee, failure), Lee(0.375, 0.25, 40, 5));
  EXPECT_EQ(MultipleR2Cdf(0.25, 40, 5, 0.375, R2Exact, failure), Exact(0.375, 0.25, 40, 5));
  EXPECT_NE(Lee(0.375, 0.25, 40, 5), Exact(0.375, 0.25, 40, 5));
}

TEST(MultipleR2Cdf, FailsForAnyOtherAlgorithm) {
  for (const std::int16_t algorithm : std::initializer_list<std::int16_t>{-1, 2, 3, 32767}) {
    int failure = 0;
    EXPECT_EQ(MultipleR2Cdf(0.25, 40, 5, 0.375, algorithm, failure), -1.0);
    EXPECT_EQ(failure, 1);
  }
}

// The quantile.

TEST(MultipleR2Quantile, AgreesWithTheTruthAsFarAsItsToleranceAllows) {
  ExpectTruth("MultipleR2Quantile", [](const auto& in) {
    int failure = -1;
    const double x = MultipleR2Quantile(in[0], Count(in[1]), Count(in[2]), in[3], failure, R2Exact);
    EXPECT_EQ(failure, 0);
    return x;
  });
}

TEST(MultipleR2Quantile, UndoesTheDistributionFunction) {
  for (const Design& design : Designs) {
    for (const double rho2 : {0.0, 0.125, 0.5, 0.875}) {
      for (const double p : {0.05, 0.5, 0.9, 0.99}) {
        for (const std::int16_t algorithm : {R2Lee, R2Exact}) {
          int failure = -1;
          const double x = MultipleR2Quantile(rho2, design.n, design.k, p, failure, algorithm);
          ASSERT_EQ(failure, 0) << rho2 << " " << design.n << " " << design.k << " " << p;
          const double back = MultipleR2Cdf(rho2, design.n, design.k, x, algorithm, failure);
          // A step of 1e-7 ends the search as well as a residual of 1e-7 does.
          const double above =
              MultipleR2Cdf(rho2, design.n, design.k, std::min(1.0, x + 1e-6), algorithm, failure);
          EXPECT_NEAR(back, p, 2e-7 + 0.2 * (above - back))
              << rho2 << " " << design.n << " " << design.k << " " << p;
        }
      }
    }
  }
}

TEST(MultipleR2Quantile, EqualsThePlainSearchWhereItsStartLiesInside) {
  for (const Design& design : Designs) {
    for (const double rho2 : {0.125, 0.5, 0.875}) {
      for (const double p : {0.05, 0.5, 0.95}) {
        int failure = 0;
        int plainFailure = 0;
        const double x = MultipleR2Quantile(rho2, design.n, design.k, p, failure, R2Exact);
        const double plain =
            reference::MultipleR2Quantile(rho2, design.n, design.k, p, plainFailure, R2Exact);
        EXPECT_EQ(failure, plainFailure);
        EXPECT_NEAR(x, plain, 1e-7) << rho2 << " " << design.n << " " << design.k << " " << p;
      }
    }
  }
}

// The point beside the start of the search for p.
double BesideStart(double rho2, std::int32_t n, std::int32_t k, double p) {
  const double start = reference::QuantileStart(rho2, n, k, p);
  return start - std::max(start * 1e-06, 1e-06);
}

TEST(MultipleR2Quantile, GivesThePointBesideTheStartWhereThatIsCloseEnough) {
  // A p that the start's neighbour meets: the approximation crosses the distribution function.
  int found = 0;
  for (const Design& design : Designs) {
    const auto gap = [&](double p) {
      return Lee(BesideStart(0.25, design.n, design.k, p), 0.25, design.n, design.k) - p;
    };
    double low = 0.05;
    double high = 0.95;
    if (gap(low) * gap(high) >= 0.0) {
      continue;
    }
    ++found;
    const bool rises = gap(high) > 0.0;
    for (int i = 0; i < 60; ++i) {
      const double middle = (low + high) / 2.0;
      ((gap(middle) > 0.0) == rises ? high : low) = middle;
    }
    int failure = -1;
    EXPECT_EQ(MultipleR2Quantile(0.25, design.n, design.k, low, failure, R2Lee),
              BesideStart(0.25, design.n, design.k, low));
    EXPECT_EQ(failure, 0);
  }
  EXPECT_GT(found, 0);
}

TEST(MultipleR2Quantile, StartsBelowOneAndStaysThereForALargeP) {
  for (const double p : {0.9999, 0.999999, 1.0 - 1e-12}) {
    EXPECT_LE(reference::QuantileStart(0.99, 5, 2, p), 0.999999);
    int failure = 0;
    const double x = MultipleR2Quantile(0.99, 5, 2, p, failure, R2Exact);
    EXPECT_LE(x, 0.99999999);
    EXPECT_GT(x, 0.99);
  }
}

TEST(MultipleR2Quantile, TakesItsFirstSlopeUpwardsAtAStartOfZero) {
  // The plain search looks below zero, where there is no distribution function, and fails.
  ASSERT_EQ(reference::QuantileStart(0.0, 100, 2, 0.025), 0.0);
  int failure = 0;
  EXPECT_EQ(reference::MultipleR2Quantile(0.0, 100, 2, 0.025, failure, R2Exact), 1e-7);
  EXPECT_EQ(failure, 1);
  const double x = MultipleR2Quantile(0.0, 100, 2, 0.025, failure, R2Exact);
  EXPECT_EQ(failure, 0);
  EXPECT_NEAR(x, 1.007e-5, 2e-8);
}

TEST(MultipleR2Quantile, StartsInTheMiddleWhereTheApproximationIsNoNumber) {
  for (const Design& design : {Design{3, 2}, {4, 3}}) {
    int failure = 0;
    const double x = MultipleR2Quantile(0.5, design.n, design.k, 0.9999, failure, R2Exact);
    EXPECT_FALSE(std::isnan(x));
    EXPECT_GE(x, 1e-7);
    EXPECT_LE(x, 0.99999999);
  }
}

TEST(MultipleR2Quantile, FailsWhereThereIsNoQuantile) {
  struct Row {
    double rho2;
    std::int32_t n;
    std::int32_t k;
    double p;
  };
  constexpr Row rows[] = {{0.25, 40, 5, 0.0},  {0.25, 40, 5, 1.0}, {0.25, 40, 5, -0.5},
                          {0.25, 40, 5, 1.5},  {0.25, 40, 5, NaN}, {1.0, 40, 5, 0.5},
                          {-0.25, 40, 5, 0.5}, {NaN, 40, 5, 0.5},  {0.25, 5, 5, 0.5},
                          {0.25, 4, 5, 0.5},   {0.25, 40, 1, 0.5}, {0.25, 40, -3, 0.5}};
  for (const Row& row : rows) {
    for (const std::int16_t algorithm : {R2Lee, R2Exact}) {
      int failure = 0;
      EXPECT_EQ(MultipleR2Quantile(row.rho2, row.n, row.k, row.p, failure, algorithm),
                NumericFailure);
      EXPECT_EQ(failure, 1);
    }
  }
  int failure = 0;
  MultipleR2Quantile(0.25, 40, 5, 0.5, failure, 2);
  EXPECT_EQ(failure, 1);
}

TEST(MultipleR2Quantile, IsCancelledByItsObserver) {
  for (const int questions : {0, 1, 3}) {
    Canceller canceller(questions);
    int failure = 0;
    MultipleR2Quantile(0.5, 40, 5, 0.9, failure, R2Exact, canceller);
    EXPECT_EQ(failure, 2);
    EXPECT_EQ(canceller.asked, questions + 1);
    EXPECT_EQ(canceller.starts, 1);
    EXPECT_GE(canceller.stops, 1);
  }
}

// Critical values.

TEST(MultipleR2CriticalValue, TakesItsProbabilityByFormAndSide) {
  struct Row {
    std::int16_t form;
    std::int16_t side;
    double p;
  };
  constexpr Row rows[] = {{0, 0, 0.975}, {0, 1, 0.025}, {1, 0, 0.95}, {1, 1, 0.95},
                          {2, 0, 0.05},  {2, 1, 0.05},  {3, 0, 0.95}, {3, 1, 0.95}};
  for (const Row& row : rows) {
    int failure = -1;
    int quantileFailure = -1;
    EXPECT_EQ(MultipleR2CriticalValue(50, 4, 0.05, 0.25, R2Exact, row.form, failure, row.side),
              MultipleR2Quantile(0.25, 50, 4, row.p, quantileFailure, R2Exact))
        << row.form << " " << row.side;
    EXPECT_EQ(failure, quantileFailure);
  }
}

TEST(MultipleR2CriticalValue, CountsFormsZeroAndOneAgainstZeroAsFormThree) {
  for (const std::int16_t form : std::initializer_list<std::int16_t>{0, 1, 3}) {
    for (const std::int16_t side : std::initializer_list<std::int16_t>{0, 1}) {
      int failure = -1;
      EXPECT_EQ(MultipleR2CriticalValue(50, 4, 0.05, 0.0, R2Exact, form, failure, side),
                MultipleR2Quantile(0.0, 50, 4, 0.95, failure, R2Exact));
    }
  }
  int failure = -1;
  EXPECT_EQ(MultipleR2CriticalValue(50, 4, 0.05, 0.0, R2Exact, 2, failure, 0),
            MultipleR2Quantile(0.0, 50, 4, 0.05, failure, R2Exact));
}

TEST(MultipleR2CriticalValue, FailsForAnUnknownFormOrSide) {
  for (const std::int16_t form : std::initializer_list<std::int16_t>{-1, 4}) {
    int failure = 0;
    EXPECT_EQ(MultipleR2CriticalValue(50, 4, 0.05, 0.25, R2Exact, form, failure, 0),
              NumericFailure);
    EXPECT_EQ(failure, 1);
  }
  int failure = 0;
  EXPECT_EQ(MultipleR2CriticalValue(50, 4, 0.05, 0.25, R2Exact, 0, failure, 2), NumericFailure);
  EXPECT_EQ(failure, 1);
}

TEST(MultipleR2CriticalValue, IsThatOfTheCentralFAgainstZero) {
  // F(.95; 2, 60) = 3.15 in every table of the distribution.
  int failure = -1;
  const double x = MultipleR2CriticalValue(63, 3, 0.05, 0.0, R2Exact, 3, failure, 0);
  EXPECT_NEAR(x / 2.0 / ((1.0 - x) / 60.0), 3.15, 0.005);
}

// The population value.

TEST(MultipleR2RhoForP, AgreesWithTheTruthAsFarAsItsToleranceAllows) {
  ExpectTruth("MultipleR2RhoForP", [](const auto& in) {
    int failure = -1;
    const double lee =
        MultipleR2RhoForP(in[0], Count(in[1]), Count(in[2]), in[3], in[4], failure, R2Lee);
    const double rho2 =
        MultipleR2RhoForP(lee, Count(in[1]), Count(in[2]), in[3], in[4], failure, R2Exact);
    EXPECT_EQ(failure, 0);
    return rho2;
  });
}

TEST(MultipleR2RhoForP, UndoesTheDistributionFunction) {
  for (const Design& design : {Design{10, 3}, {30, 6}, {100, 4}, {100, 60}, {500, 11}}) {
    for (const double rho2 : {0.125, 0.375, 0.75}) {
      const double x = Mean(rho2, design.n, design.k);
      for (const std::int16_t algorithm : {R2Lee, R2Exact}) {
        int failure = -1;
        const double p = MultipleR2Cdf(rho2, design.n, design.k, x, algorithm, failure);
        const double found =
            MultipleR2RhoForP(rho2 + 0.01, design.n, design.k, x, p, failure, algorithm);
        EXPECT_EQ(failure, 0);
        EXPECT_NEAR(found, rho2, 1e-5) << rho2 << " " << design.n << " " << design.k;
      }
    }
  }
}

TEST(MultipleR2RhoForP, EqualsThePlainSearch) {
  for (const Design& design : {Design{10, 3}, {30, 6}, {100, 60}}) {
    for (const double target : {0.05, 0.5, 0.8}) {
      const double r2 = Mean(0.5, design.n, design.k);
      int failure = 0;
      int plainFailure = 0;
      const double rho2 = MultipleR2RhoForP(0.45, design.n, design.k, r2, target, failure, R2Exact);
      EXPECT_NEAR(
          rho2,
          reference::MultipleR2RhoForP(0.45, design.n, design.k, r2, target, plainFailure, R2Exact),
          1e-8);
      EXPECT_EQ(failure, plainFailure);
    }
  }
}

TEST(MultipleR2RhoForP, IsZeroWhereThePointBesideTheStartSolvesIt) {
  // A start so far from the solution that only its neighbour is within 1e-8: the slope must be
  // steep and the start large.
  const std::int32_t n = 20000;
  const double beside = 0.5;
  const double start = beside / (1.0 - 1e-06);
  const double target = Lee(0.5, start - start * 1e-06, n, 3);
  ASSERT_GT(std::fabs(Lee(0.5, start, n, 3) - target), 1e-8);
  int failure = -1;
  EXPECT_EQ(MultipleR2RhoForP(start, n, 3, 0.5, target, failure, R2Lee), 0.0);
  EXPECT_EQ(failure, 0);
}

TEST(MultipleR2RhoForP, GivesAStartThatSolvesItAsItStands) {
  const double target = Lee(0.5, 0.375, 40, 3);
  int failure = -1;
  EXPECT_EQ(MultipleR2RhoForP(0.375, 40, 3, 0.5, target, failure, R2Lee), 0.375);
  EXPECT_EQ(failure, 0);
}

TEST(MultipleR2RhoForP, EndsAtAStartOfZero) {
  // The point beside it is clamped onto it, and the slope is 0.
  int failure = -1;
  EXPECT_EQ(MultipleR2RhoForP(0.0, 40, 3, 0.5, 0.25, failure, R2Exact), 0.0);
  EXPECT_EQ(failure, 1);
}

TEST(MultipleR2RhoForP, StaysWithinItsBounds) {
  int failure = 0;
  EXPECT_LE(MultipleR2RhoForP(0.9, 30, 5, 1.0, 0.5, failure, R2Exact), 0.999999);
  EXPECT_GE(MultipleR2RhoForP(0.5, 30, 5, 0.01, 0.999, failure, R2Exact), 0.0);
  // An r2 whose probability is below the target even at 0 has no solution.
  EXPECT_EQ(failure, 1);
}

TEST(MultipleR2RhoForP, FailsForBadInput) {
  struct Row {
    double start;
    std::int32_t n;
    std::int32_t k;
    double r2;
    double target;
  };
  constexpr Row rows[] = {
      {NaN, 40, 5, 0.5, 0.5},  {Infinity, 40, 5, 0.5, 0.5}, {0.25, 5, 5, 0.5, 0.5},
      {0.25, 40, 1, 0.5, 0.5}, {0.25, 40, 5, NaN, 0.5},     {0.25, 40, 5, 0.5, 0.0},
      {0.25, 40, 5, 0.5, 1.0}, {0.25, 40, 5, 0.5, -1.0},    {0.25, 40, 5, 0.5, NaN}};
  for (const Row& row : rows) {
    for (const std::int16_t algorithm : {R2Lee, R2Exact}) {
      int failure = 0;
      EXPECT_EQ(MultipleR2RhoForP(row.start, row.n, row.k, row.r2, row.target, failure, algorithm),
                NumericFailure);
      EXPECT_EQ(failure, 1);
    }
  }
  int failure = 0;
  MultipleR2RhoForP(0.25, 40, 5, 1.5, 0.5, failure, R2Exact);
  EXPECT_EQ(failure, 1);
  MultipleR2RhoForP(0.25, 40, 5, 0.5, 0.5, failure, 9);
  EXPECT_EQ(failure, 1);
}

TEST(MultipleR2RhoForP, GivesUpASearchThatGoesInCircles) {
  // From a start far from the solution the steps meet both bounds again and again.
  int failure = 0;
  const double rho2 = MultipleR2RhoForP(0.84, 49643, 632, 0.9172, 0.7, failure, R2Exact);
  EXPECT_EQ(failure, 1);
  EXPECT_GE(rho2, 0.0);
  EXPECT_LE(rho2, 0.999999);
}

TEST(MultipleR2RhoForP, IsCancelledByItsObserver) {
  for (const int questions : {0, 1, 3}) {
    Canceller canceller(questions);
    int failure = 0;
    MultipleR2RhoForP(0.25, 40, 5, 0.5, 0.25, failure, R2Exact, canceller);
    EXPECT_EQ(failure, 2);
    EXPECT_EQ(canceller.asked, questions + 1);
  }
}

// The interval.

struct Interval {
  Interval(std::int32_t k, double r2, std::int32_t n, double confidence, std::int16_t algorithm) {
    MultipleR2Interval(k, r2, n, confidence, lower, upper, oneSided, lowerFailure, upperFailure,
                       oneSidedFailure, algorithm, pValue);
  }

  double lower = 77.0;
  double upper = 77.0;
  double oneSided = 77.0;
  int lowerFailure = 77;
  int upperFailure = 77;
  int oneSidedFailure = 77;
  double pValue = 77.0;
};

TEST(MultipleR2Interval, GivesTheRootsOfTheMixture) {
  // The limits were found apart from this library, to ten digits.
  const Interval interval(6, 0.3, 50, 0.95, R2Exact);
  EXPECT_NEAR(interval.lower, 0.0337105631, 2e-7);
  EXPECT_NEAR(interval.upper, 0.4603321318, 2e-7);
  EXPECT_EQ(interval.lowerFailure, 0);
  EXPECT_EQ(interval.upperFailure, 0);
  EXPECT_EQ(interval.oneSidedFailure, 0);
}

TEST(MultipleR2Interval, SolvesForEachOfItsProbabilities) {
  for (const std::int16_t algorithm : {R2Lee, R2Exact}) {
    const Interval interval(4, 0.5, 60, 0.9, algorithm);
    int failure = 0;
    EXPECT_NEAR(MultipleR2Cdf(interval.lower, 60, 4, 0.5, algorithm, failure), 0.95, 1e-6);
    EXPECT_NEAR(MultipleR2Cdf(interval.upper, 60, 4, 0.5, algorithm, failure), 0.05, 1e-6);
    EXPECT_NEAR(MultipleR2Cdf(interval.oneSided, 60, 4, 0.5, algorithm, failure), 0.9, 1e-6);
    EXPECT_LT(interval.lower, interval.oneSided);
    EXPECT_LT(interval.oneSided, interval.upper);
    EXPECT_EQ(interval.pValue, 1.0 - Exact(0.5, 0.0, 60, 4));
  }
}

TEST(MultipleR2Interval, SearchesWithLeeFirstAndTheExactFormFromItsAnswer) {
  const double r2 = 0.5;
  const double m = r2 - (4.0 - 3.0) * (1.0 - r2) / (60.0 - 4.0);
  const double v = 4.0 * (1.0 - r2) * (1.0 - r2) * r2 * (60.0 - 4.0) * (60.0 - 4.0) /
                   ((60.0 * 60.0 - 1.0) * (60.0 + 3.0));
  const double a = (1.0 - 0.9) / 2.0;
  struct Row {
    double target;
    double lowest;
    double replacement;
    double (*limit)(const Interval&);
  };
  const Row rows[] = {
      {1.0 - a, 0.0001, 0.0001, [](const Interval& i) { return i.lower; }},
      {a, 0.0001, 2e-06, [](const Interval& i) { return i.upper; }},
      {0.9, 0.0001, 0.0001, [](const Interval& i) { return i.oneSided; }},
  };
  for (const Row& row : rows) {
    double start = m - NormalQuantile(row.target) * std::sqrt(v);
    start = start <= row.lowest ? row.replacement : start;
    int failure = -1;
    const double lee = MultipleR2RhoForP(start, 60, 4, r2, row.target, failure, R2Lee);
    EXPECT_NEAR(row.limit(Interval(4, r2, 60, 0.9, R2Lee)), lee, 1e-12);
    EXPECT_NEAR(row.limit(Interval(4, r2, 60, 0.9, R2Exact)),
                MultipleR2RhoForP(lee, 60, 4, r2, row.target, failure, R2Exact), 1e-12);
  }
}

TEST(MultipleR2Interval, LeavesLimitsWithoutASolutionAtZero) {
  const Interval interval(3, 0.01, 100, 0.9, R2Exact);
  EXPECT_EQ(interval.lower, 0.0);
  EXPECT_EQ(interval.oneSided, 0.0);
  EXPECT_GT(interval.upper, 0.0);
  EXPECT_EQ(interval.lowerFailure, 0);
  EXPECT_EQ(interval.oneSidedFailure, 0);
  const Interval none(3, 0.0, 100, 0.9, R2Exact);
  EXPECT_EQ(none.upper, 0.0);
  EXPECT_EQ(none.pValue, 1.0);
}

TEST(MultipleR2Interval, SetsThePValueAloneWhenTheDistributionFunctionFails) {
  for (const Interval& interval :
       {Interval(3, -0.1, 100, 0.9, R2Exact), Interval(3, 1.1, 100, 0.9, R2Lee),
        Interval(3, NaN, 100, 0.9, R2Exact), Interval(5, 0.5, 5, 0.9, R2Exact),
        Interval(9, 0.5, 5, 0.9, R2Lee), Interval(1, 0.5, 5, 0.9, R2Lee)}) {
    EXPECT_EQ(interval.pValue, -1.0);
    EXPECT_EQ(interval.lower, NumericFailure);
    EXPECT_EQ(interval.upper, NumericFailure);
    EXPECT_EQ(interval.oneSided, NumericFailure);
    EXPECT_EQ(interval.lowerFailure, 0);
    EXPECT_EQ(interval.upperFailure, 0);
    EXPECT_EQ(interval.oneSidedFailure, 0);
  }
}

TEST(MultipleR2Interval, RefusesAConfidenceThatIsNone) {
  for (const double confidence : {0.0, 1.0, -0.5, 2.0, NaN}) {
    const Interval interval(3, 0.5, 100, confidence, R2Exact);
    EXPECT_GE(interval.pValue, 0.0);
    EXPECT_EQ(interval.lower, NumericFailure);
    EXPECT_EQ(interval.upperFailure, 1);
  }
}

TEST(MultipleR2Interval, TakesCountsWhoseSquaresPassAWholeNumber) {
  const Interval interval(5, 0.25, 150000, 0.95, R2Lee);
  EXPECT_EQ(interval.lowerFailure, 0);
  EXPECT_NEAR(interval.lower, 0.25 - 1.96 * Deviation(0.25, 150000), 3e-4);
  EXPECT_NEAR(interval.upper, 0.25 + 1.96 * Deviation(0.25, 150000), 3e-4);
}

TEST(MultipleR2Interval, EndsAtAnObservedValueOfOne) {
  const Interval interval(3, 1.0, 30, 0.95, R2Exact);
  EXPECT_EQ(interval.pValue, 0.0);
  EXPECT_LE(interval.lower, 0.999999);
  EXPECT_EQ(interval.lowerFailure, 1);
}

TEST(MultipleR2Interval, IsCancelledByItsObserver) {
  Canceller canceller(0);
  double lower = 0.0;
  double upper = 0.0;
  double oneSided = 0.0;
  double pValue = 0.0;
  int words[3] = {};
  MultipleR2Interval(4, 0.5, 60, 0.9, lower, upper, oneSided, words[0], words[1], words[2], R2Exact,
                     pValue, canceller);
  EXPECT_EQ(words[0], 2);
  EXPECT_EQ(words[1], 2);
  EXPECT_EQ(words[2], 2);
}

}  // namespace
}  // namespace poweranalysis
