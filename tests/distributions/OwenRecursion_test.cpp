#include "distributions/OwenRecursion.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "distributions/TruthTable.h"
#include "distributions/reference/NoncentralTReference.h"

namespace poweranalysis {
namespace {

using test::ErrorOf;

bool LogarithmSays(double s) { return std::fabs(std::log(s)) > 500.0; }
bool LimitsSay(double s) { return s > owen::UpperScaleLimit || s < owen::LowerScaleLimit; }

TEST(OwenRecursion, RescalesExactlyWhereTheLogarithmPassesFiveHundred) {
  constexpr double Limits[] = {owen::UpperScaleLimit, owen::LowerScaleLimit};
  for (const double limit : Limits) {
    EXPECT_FALSE(LimitsSay(limit));
    double below = limit;
    double above = limit;
    for (int i = 0; i < 1000; ++i) {
      EXPECT_EQ(LimitsSay(below), LogarithmSays(below));
      EXPECT_EQ(LimitsSay(above), LogarithmSays(above));
      below = std::nextafter(below, 0.0);
      above = std::nextafter(above, std::numeric_limits<double>::infinity());
    }
  }
  for (const double s : {1e-300, 1e-217, 1e-10, 1.0, 1e10, 1e217, 1e300}) {
    EXPECT_EQ(LimitsSay(s), LogarithmSays(s)) << s;
  }
}

TEST(OwenRecursion, RescalesALongSumWithoutLosingIt) {
  // The sum grows to about exp(b^2 / 2) = exp(969) before its scale is put back.
  const OwenTerms terms(30.0, 20000, 45.0);
  ASSERT_FALSE(owen::FactoredFormHolds(terms, 20000));
  double logScale = terms.logScale;
  const double s = owen::StepwiseSum(terms, 20000, logScale);
  EXPECT_TRUE(std::isfinite(s));
  EXPECT_GT(logScale, terms.logScale + 300.0);
  EXPECT_EQ(OwenSum(terms, 20000), reference::OwenSum(30.0, 20000, 45.0));
}

TEST(OwenRecursion, KeepsTheStepwiseFormWhereTheTermsCancel) {
  EXPECT_FALSE(owen::FactoredFormHolds(OwenTerms(-2.0, 50, 3.0), 50));
  EXPECT_FALSE(owen::FactoredFormHolds(OwenTerms(2.0, 50, -3.0), 50));
  EXPECT_TRUE(owen::FactoredFormHolds(OwenTerms(2.0, 50, 3.0), 50));
  EXPECT_TRUE(owen::FactoredFormHolds(OwenTerms(-2.0, 50, -3.0), 50));
  EXPECT_TRUE(owen::FactoredFormHolds(OwenTerms(-2.0, 50, 0.0), 50));
}

TEST(OwenRecursion, KeepsTheStepwiseFormBeyondItsBounds) {
  EXPECT_FALSE(owen::FactoredFormHolds(OwenTerms(2.0, 16388, 3.0), 16388));
  EXPECT_TRUE(owen::FactoredFormHolds(OwenTerms(2.0, 16387, 3.0), 16387));
  EXPECT_FALSE(owen::FactoredFormHolds(OwenTerms(32.0, 50, 3.0), 50));
  EXPECT_FALSE(owen::FactoredFormHolds(OwenTerms(20.0, 5000, 25.0), 5000));
  const double nan = std::numeric_limits<double>::quiet_NaN();
  EXPECT_FALSE(owen::FactoredFormHolds(OwenTerms(nan, 50, 3.0), 50));
}

TEST(OwenRecursion, FactoredFormsStayFiniteAtTheirBounds) {
  for (const std::int32_t df : {4, 5, 50, 51, 1000, 1001, 16386, 16387}) {
    for (const double t : {0.01, 1.0, 8.0, 31.5}) {
      const OwenTerms terms(t, df, 399.0 / t);
      if (owen::FactoredFormHolds(terms, df)) {
        EXPECT_LE(ErrorOf(OwenSum(terms, df), reference::OwenSum(t, df, 399.0 / t)), 2e-13)
            << t << " " << df;
      }
    }
  }
}

TEST(OwenRecursion, DropsOnlyTermsThatAreExactlyZeroForTheCentralCase) {
  for (std::int32_t df = 4; df < 60; ++df) {
    for (const double t : {-3.0, -1.0, 0.5, 2.0, 20.0}) {
      const OwenTerms terms(t, df, 0.0);
      EXPECT_LE(ErrorOf(OwenSum(terms, df), reference::OwenSum(t, df, 0.0)), 1e-14);
    }
  }
}

}  // namespace
}  // namespace poweranalysis
