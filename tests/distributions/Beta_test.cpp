#include "distributions/Beta.h"

#include <gtest/gtest.h>

#include <cmath>

#include "distributions/Common.h"
#include "distributions/TruthTable.h"

namespace poweranalysis {
namespace {

using test::ErrorOf;
using test::ExpectTruth;

double Beta(double x, double a, double b) {
  int failure = 7;
  const double value = BetaCdf(x, a, b, failure);
  EXPECT_EQ(failure, 0);
  return value;
}

TEST(LogGamma, AgreesWithTheTruthAsFarAsItsConstantsAllow) {
  ExpectTruth("LogGamma", [](const auto& in) { return LogGamma(in[0]); });
}

// Stirling's series with the same constants and no shift.
double Direct(double x) {
  return std::log(x) * (x - 0.5) +
         ((0.083333333333333 - (0.002777777777778 - 0.000793650793651 / (x * x)) / (x * x)) / x +
          0.918938533204673 - x);
}

TEST(LogGamma, ShiftsUpToAndIncludingThirteen) {
  EXPECT_LT(ErrorOf(LogGamma(13.0), 19.98721449566749), 1e-15);
  EXPECT_EQ(LogGamma(13.0), Direct(14.0) - std::log(13.0));
  EXPECT_NE(LogGamma(13.0), Direct(13.0));
  EXPECT_EQ(LogGamma(13.5), Direct(13.5));
}

TEST(LogGamma, FollowsItsRecurrence) {
  for (double x = 0.125; x < 30.0; x += 0.375) {
    EXPECT_NEAR(LogGamma(x + 1.0), LogGamma(x) + std::log(x), 1e-11) << x;
  }
}

TEST(BetaCdf, AgreesWithTheTruthAsFarAsItsConstantsAllow) {
  ExpectTruth("BetaCdf", [](const auto& in) { return Beta(in[0], in[1], in[2]); });
}

TEST(BetaCdf, IsZeroAndOneAtTheEndsWithoutFailure) {
  for (const double a : {0.5, 1.0, 7.0}) {
    for (const double b : {0.5, 1.0, 90.0}) {
      EXPECT_EQ(Beta(0.0, a, b), 0.0);
      EXPECT_EQ(Beta(1.0, a, b), 1.0);
    }
  }
}

TEST(BetaCdf, IsZeroWithAFlagOutsideTheUnitInterval) {
  for (const double x : {1.5, -0.25}) {
    int failure = 0;
    EXPECT_EQ(BetaCdf(x, 2.0, 3.0, failure), 0.0);
    EXPECT_EQ(failure, 1);
  }
}

TEST(BetaCdf, ClearsTheFlagOfAnEarlierFailure) {
  int failure = 1;
  BetaCdf(0.25, 2.0, 3.0, failure);
  EXPECT_EQ(failure, 0);
}

TEST(BetaCdf, KeepsTheConstantsOfLogGamma) {
  EXPECT_LT(ErrorOf(Beta(0.5, 2.0, 3.0), 0.68750000000175), 1e-14);
  EXPECT_GT(ErrorOf(Beta(0.5, 2.0, 3.0), 0.6875), 1e-12);
}

TEST(BetaCdf, ReflectsItsArguments) {
  for (double x = 0.0625; x < 1.0; x += 0.0625) {
    EXPECT_NEAR(Beta(x, 2.5, 6.0), 1.0 - Beta(1.0 - x, 6.0, 2.5), 1e-11);
  }
}

TEST(BetaCdf, RisesInX) {
  for (double x = 0.0; x < 1.0; x += 0.015625) {
    EXPECT_LE(Beta(x, 3.0, 4.5), Beta(x + 0.015625, 3.0, 4.5));
  }
}

TEST(BetaContinuedFraction, GivesItsLastApproximationWhenItDoesNotConverge) {
  // Shapes of 1e13 need some three million passes: ten thousand leave the half far off.
  const double half = Beta(0.5, 1e13, 1e13);
  EXPECT_TRUE(std::isfinite(half));
  EXPECT_GT(std::fabs(half - 0.5), 0.25);
}

}  // namespace
}  // namespace poweranalysis
