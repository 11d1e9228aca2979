#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <random>

#include "distributions/Beta.h"

namespace poweranalysis {
namespace {

struct Plain {
  double value;
  int passes;
};

// The formula as it is defined, its fraction by the plain recurrence.
Plain PlainBetaCdf(double x, double a, double b) {
  const double front = std::exp(LogGamma(a + b) - LogGamma(a) - LogGamma(b) + a * std::log(x) +
                                b * std::log(1.0 - x));
  Plain plain{};
  plain.value = (a + 1.0) / (a + b + 2.0) > x
                    ? BetaContinuedFraction(a, b, x, plain.passes) * front / a
                    : 1.0 - BetaContinuedFraction(b, a, 1.0 - x, plain.passes) * front / b;
  return plain;
}

struct Design {
  double x;
  double a;
  double b;
};

// Shapes spread evenly over the logarithms up to the largest, halves and real numbers in turn, and
// x within six deviations or so of the mean.
class Designs {
 public:
  Designs(std::uint64_t seed, double largest) : generator_(seed), largest_(largest) {}

  Design Next() {
    whole_ = !whole_;
    const double a = Shape();
    const double b = Shape();
    std::uniform_real_distribution<double> deviations(-6.0, 6.0);
    const double logit = std::log(a / b) + deviations(generator_) / std::sqrt(std::fmin(a, b));
    return {1.0 / (1.0 + std::exp(-logit)), a, b};
  }

 private:
  double Shape() {
    std::uniform_real_distribution<double> logs(std::log(0.05), std::log(largest_));
    const double shape = std::exp(logs(generator_));
    return whole_ ? std::ceil(2.0 * shape) / 2.0 : shape;
  }

  std::mt19937_64 generator_;
  double largest_;
  bool whole_ = false;
};

TEST(BetaCdf, EqualsThePlainFractionToTheTwelfthDecimalAndTheSamePass) {
  for (const double largest : {60.0, 2500.0, 20000.0}) {
    Designs designs(7, largest);
    for (int i = 0; i < 20000; ++i) {
      const Design design = designs.Next();
      if (design.x == 0.0 || design.x == 1.0) {
        continue;
      }
      const Plain plain = PlainBetaCdf(design.x, design.a, design.b);
      int failure = 0;
      int passes = 0;
      EXPECT_NEAR(BetaCdf(design.x, design.a, design.b, failure, passes), plain.value, 5e-13)
          << design.x << " " << design.a << " " << design.b;
      EXPECT_EQ(passes, plain.passes) << design.x << " " << design.a << " " << design.b;
    }
  }
}

TEST(BetaCdf, IsThePlainFractionBitForBitForLargeShapes) {
  // Sums of shapes above 5000.
  for (const double x : {0.25, 0.29, 0.3, 0.31, 0.4}) {
    int failure = 0;
    EXPECT_EQ(BetaCdf(x, 3000.0, 7000.0, failure), PlainBetaCdf(x, 3000.0, 7000.0).value);
  }
}

TEST(BetaShapes, IsBetaCdfBitForBit) {
  Designs designs(8, 400.0);
  for (int i = 0; i < 2000; ++i) {
    const Design design = designs.Next();
    int failure = 0;
    int passes = 0;
    double front = 0.0;
    EXPECT_EQ(BetaShapes(design.a, design.b).Cdf(design.x, front, passes),
              BetaCdf(design.x, design.a, design.b, failure));
  }
}

TEST(BetaShapes, GivesTheDensityTimesXTimesOneLessX) {
  // The density of shapes 2 and 3 is 12 x (1 - x)^2.
  for (const double x : {0.125, 0.5, 0.875}) {
    double front = 0.0;
    int passes = 0;
    BetaShapes(2.0, 3.0).Cdf(x, front, passes);
    EXPECT_NEAR(front, 12.0 * std::pow(x, 2) * std::pow(1.0 - x, 3), 1e-10) << x;
  }
}

TEST(LogGamma, GivesTheSameForWholeAndHalfNumbersAsItsSeries) {
  // Neighbours that no table can hold.
  for (double x = 0.5; x < 600.0; x += 0.5) {
    EXPECT_NEAR(LogGamma(x), LogGamma(std::nextafter(x, 0.0)), 1e-12 * (1.0 + LogGamma(x))) << x;
  }
}

}  // namespace
}  // namespace poweranalysis
