#include "distributions/Normal.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "distributions/Common.h"
#include "distributions/TruthTable.h"

namespace poweranalysis {
namespace {

using test::ErrorOf;
using test::ExpectTruth;

TEST(NormalCdf, AgreesWithTheTruthAsFarAsItsConstantsAllow) {
  ExpectTruth("NormalCdf", [](const auto& in) { return NormalCdf(in[0]); });
}

TEST(NormalCdf, IsAHalfAtTheMean) {
  EXPECT_EQ(NormalCdf(0.0), 0.5);
  EXPECT_EQ(NormalCdf(-0.0), 0.5);
}

TEST(NormalCdf, KeepsItsOwnFitBeyondFour) {
  EXPECT_LT(ErrorOf(NormalCdf(-5.0), 2.875074607278e-07), 1e-9);
  EXPECT_LT(ErrorOf(NormalCdf(-6.0), 9.85880210802037e-10), 1e-9);
  EXPECT_LT(ErrorOf(NormalCdf(-7.0), 1.27686750062e-12), 1e-9);
}

TEST(NormalCdf, FitsTheTailInTheWholeDistanceAndNotInItsHalf) {
  const double z = 4.5;
  const double whole = std::pow(10.0, -0.560159336 - 0.139082759 * z - 0.21143111 * z * z);
  const double y = z / 2.0;
  const double half = std::pow(10.0, -0.560159336 - 0.139082759 * y - 0.21143111 * y * y);
  EXPECT_LT(ErrorOf(NormalCdf(-z), whole), 1e-9);
  EXPECT_GT(ErrorOf(NormalCdf(-z), half), 0.9);
}

TEST(NormalCdf, NeverReachesOneOrZero) {
  EXPECT_EQ(NormalCdf(8.0001), 0.9999999999999996);
  EXPECT_EQ(NormalCdf(40.0), 0.9999999999999996);
  EXPECT_LT(NormalCdf(9.0), 1.0);
  EXPECT_LT(NormalCdf(std::numeric_limits<double>::infinity()), 1.0);
  EXPECT_NEAR(NormalCdf(-9.0), 4.996e-16, 1e-18);
  EXPECT_GT(NormalCdf(-1e300), 0.0);
}

TEST(NormalCdf, JumpsAtFourAndAtEight) {
  EXPECT_EQ(NormalCdf(8.0), 0.9999999999999993);
  EXPECT_EQ(NormalCdf(8.0000001), 0.9999999999999996);
  const double before = NormalCdf(-4.0);
  const double after = NormalCdf(-std::nextafter(4.0, 5.0));
  EXPECT_GT(ErrorOf(after, before), 1e-6);
}

TEST(NormalCdf, TailsSumToOne) {
  for (double z = 0.0; z < 9.0; z += 0.03125) {
    EXPECT_NEAR(NormalCdf(z) + NormalCdf(-z), 1.0, 3e-16) << z;
  }
}

TEST(NormalCdf, RisesInsideEachOfItsPieces) {
  for (double z = -8.0; z < 8.0; z += 0.015625) {
    EXPECT_LE(NormalCdf(z), NormalCdf(z + 0.015625)) << z;
  }
}

TEST(NormalQuantile, AgreesWithTheTruthAsFarAsItsConstantsAllow) {
  ExpectTruth("NormalQuantile", [](const auto& in) { return NormalQuantile(in[0]); });
}

TEST(NormalQuantile, KeepsItsEightDigitConstants) {
  EXPECT_LT(ErrorOf(NormalQuantile(0.975), 1.959963992160338), 1e-14);
  EXPECT_GT(ErrorOf(NormalQuantile(0.975), 1.959963984540054), 1e-9);
  EXPECT_LT(ErrorOf(NormalQuantile(0.95), 1.644853632585989), 1e-14);
  EXPECT_LT(ErrorOf(NormalQuantile(0.0001), -3.719016475940936), 1e-14);
}

TEST(NormalQuantile, IsExactlyZeroAtAHalf) { EXPECT_EQ(NormalQuantile(0.5), 0.0); }

TEST(NormalQuantile, FailsOutsideItsRange) {
  EXPECT_EQ(NormalQuantile(1.0), NumericFailure);
  EXPECT_EQ(NormalQuantile(1.5), NumericFailure);
  EXPECT_EQ(NormalQuantile(0.0), NumericFailure);
  EXPECT_EQ(NormalQuantile(-0.25), NumericFailure);
  EXPECT_EQ(NormalQuantile(1e-35), NumericFailure);
  EXPECT_NEAR(NormalQuantile(1.1e-35), -12.4137833, 5e-8);
}

TEST(NormalQuantile, UndoesTheDistributionFunction) {
  for (int i = 1; i < 256; ++i) {
    const double p = i / 256.0;
    EXPECT_NEAR(NormalCdf(NormalQuantile(p)), p, 2e-8) << p;
  }
}

TEST(NormalQuantile, IsOddAboutAHalf) {
  for (int i = 1; i < 128; ++i) {
    EXPECT_EQ(NormalQuantile(i / 256.0), -NormalQuantile(1.0 - i / 256.0));
  }
}

}  // namespace
}  // namespace poweranalysis
