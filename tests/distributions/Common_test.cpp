#include "distributions/Common.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace poweranalysis {
namespace {

double StepsAbove(double value, int steps) {
  for (int i = 0; i < steps; ++i) {
    value = std::nextafter(value, std::numeric_limits<double>::infinity());
  }
  return value;
}

TEST(IntegerImage, CountsRepresentableValues) {
  EXPECT_EQ(IntegerImage(0.0), 0);
  EXPECT_EQ(IntegerImage(std::numeric_limits<double>::denorm_min()), 1);
  EXPECT_EQ(IntegerImage(StepsAbove(1.0, 7)) - IntegerImage(1.0), 7);
  EXPECT_LT(IntegerImage(-1.0), 0);
}

TEST(AlmostEqual, HoldsUpToFifteenStepsBeyondTheTolerance) {
  EXPECT_TRUE(AlmostEqual(1e-10, 0.0));
  EXPECT_TRUE(AlmostEqual(StepsAbove(1e-10, 15), 0.0));
  EXPECT_FALSE(AlmostEqual(StepsAbove(1e-10, 16), 0.0));
  EXPECT_TRUE(AlmostEqual(0.0, -1e-10));
  EXPECT_TRUE(AlmostEqual(3.0, 3.0));
  EXPECT_FALSE(AlmostEqual(3.0, 3.0000000002));
}

TEST(AlmostEqual, IsFalseForWhatIsNoNumber) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  EXPECT_FALSE(AlmostEqual(nan, nan));
  EXPECT_FALSE(AlmostEqual(nan, 1.0));
}

TEST(AlmostZero, CountsTheFifteenSmallestDenormals) {
  EXPECT_TRUE(AlmostZero(0.0));
  EXPECT_TRUE(AlmostZero(StepsAbove(0.0, 15)));
  EXPECT_FALSE(AlmostZero(StepsAbove(0.0, 16)));
  EXPECT_FALSE(AlmostZero(1e-300));
}

TEST(AlmostZero, TakesEveryNegativeValueBecauseImagesAreSigned) {
  EXPECT_TRUE(AlmostZero(-0.0));
  EXPECT_TRUE(AlmostZero(-1e-20));
  EXPECT_TRUE(AlmostZero(-1.0));
}

TEST(NumericFailure, IsTheSameNumberForSizes) {
  EXPECT_EQ(NumericFailure, -9999.0);
  EXPECT_EQ(SizeFailure, -9999);
}

}  // namespace
}  // namespace poweranalysis
