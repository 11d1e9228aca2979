#include "distributions/UpperTails.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "distributions/Common.h"
#include "distributions/MultipleR2.h"
#include "distributions/NoncentralChiSquare.h"
#include "distributions/NoncentralF.h"

namespace poweranalysis {
namespace {

// Relative; the central tails come from sums and fractions of ten digits.
void ExpectClose(double tail, double expected) {
  EXPECT_NEAR(tail, expected, 1e-9 * expected) << expected;
}

// Exact finite sums of the central tails, mixed with fifty digits.
TEST(UpperTails, HoldTheirDigitsFarOut) {
  ExpectClose(NoncentralChiSquareUpper(60, 4, 0), 2.9008631203404541e-12);
  ExpectClose(NoncentralChiSquareUpper(60, 4, 1), 1.6004612028976374e-10);
  ExpectClose(NoncentralChiSquareUpper(90, 10, 12), 6.7853145613631340e-08);
  ExpectClose(NoncentralFUpper(40, 4, 20, 0), 2.8361056353391922e-09);
  ExpectClose(NoncentralFUpper(100, 4, 50, 5), 4.6267581797517117e-19);
  ExpectClose(MultipleR2Upper(0.2, 100, 5, 0.8), 5.0598462678505310e-18);
  ExpectClose(MultipleR2Upper(0, 30, 3, 0.9), 3.1622776601683796e-14);
}

TEST(UpperTails, HoldNearTheMiddleToo) {
  ExpectClose(NoncentralChiSquareUpper(5, 2, 0), 8.2084998623898800e-02);
  ExpectClose(NoncentralFUpper(2.5, 6, 15, 3), 1.9464454511002349e-01);
  ExpectClose(MultipleR2Upper(0.5, 21, 3, 0.9), 2.0638712762321987e-04);
}

TEST(UpperTails, AddUpToOneWithTheDistributionFunctions) {
  int failure = 0;
  double density = 0;
  for (const double x : {0.5, 3.0, 12.0, 40.0}) {
    for (const int df : {1, 2, 7, 30}) {
      for (const double delta : {0.0, 1.5, 20.0}) {
        EXPECT_NEAR(NoncentralChiSquareUpper(x, df, delta),
                    1 - NoncentralChiSquareCdf(x, df, delta, density, failure), 2e-6)
            << x << ' ' << df << ' ' << delta;
        EXPECT_NEAR(NoncentralFUpper(x, df, 9, delta), 1 - NoncentralFCdf(x, df, 9, delta, failure),
                    1e-8)
            << x << ' ' << df << ' ' << delta;
      }
    }
  }
  for (const double x : {0.1, 0.4, 0.7}) {
    for (const double rho2 : {0.0, 0.3, 0.8}) {
      EXPECT_NEAR(MultipleR2Upper(rho2, 40, 5, x), 1 - MultipleR2CdfExact(x, rho2, 40, 5, failure),
                  1e-6)
          << x << ' ' << rho2;
    }
  }
}

TEST(UpperTails, EndAtTheBoundsAndForLargeNoncentralities) {
  EXPECT_EQ(NoncentralChiSquareUpper(0, 3, 2), 1);
  EXPECT_EQ(NoncentralFUpper(0, 3, 4, 2), 1);
  EXPECT_EQ(MultipleR2Upper(0.5, 20, 3, 0), 1);
  EXPECT_EQ(MultipleR2Upper(0.5, 20, 3, 1), 0);
  EXPECT_EQ(NoncentralChiSquareUpper(1e30, 3, 2), 0);
  EXPECT_NEAR(NoncentralChiSquareUpper(20001, 10001, 10000), 0.5, 0.01);
  EXPECT_NEAR(NoncentralFUpper(2, 10001, 10001, 10000), 0.5, 0.01);
}

TEST(UpperTails, OutsideTheirDomainFail) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  EXPECT_EQ(NoncentralChiSquareUpper(-1, 3, 2), NumericFailure);
  EXPECT_EQ(NoncentralChiSquareUpper(1, 0, 2), NumericFailure);
  EXPECT_EQ(NoncentralChiSquareUpper(1, 3, nan), NumericFailure);
  EXPECT_EQ(NoncentralFUpper(nan, 3, 4, 2), NumericFailure);
  EXPECT_EQ(NoncentralFUpper(1, 3, 0, 2), NumericFailure);
  EXPECT_EQ(NoncentralFUpper(1, 3, 4, -1), NumericFailure);
  EXPECT_EQ(MultipleR2Upper(1, 20, 3, 0.5), NumericFailure);
  EXPECT_EQ(MultipleR2Upper(0.5, 3, 3, 0.5), NumericFailure);
  EXPECT_EQ(MultipleR2Upper(0.5, 20, 3, 1.5), NumericFailure);
}

}  // namespace
}  // namespace poweranalysis
