#include "distributions/NoncentralT.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>

#include "distributions/Common.h"
#include "distributions/NoncentralTStart.h"
#include "distributions/Normal.h"
#include "distributions/OwenRecursion.h"
#include "distributions/SolveParameter.h"
#include "distributions/TruthTable.h"
#include "distributions/reference/NoncentralTReference.h"

namespace poweranalysis {
namespace {

using test::ErrorOf;
using test::ExpectTruth;

// The starts of a quantile that has all its work before it.
QuantileStart FirstStart(double delta, std::int32_t df, double p) {
  std::int64_t steps = SearchStepLimit;
  return FirstQuantileStart(delta, df, p, steps);
}

double SecondStart(double delta, std::int32_t df, double p) {
  std::int64_t steps = SearchStepLimit;
  return SecondQuantileStart(delta, df, p, steps);
}

TEST(NoncentralTCdf, AgreesWithTheTruthAsFarAsItsConstantsAllow) {
  ExpectTruth("NoncentralTCdf", [](const auto& in) {
    return NoncentralTCdf(in[0], static_cast<std::int32_t>(in[1]), in[2]);
  });
}

TEST(NoncentralTCdf, GivesTheAnchors) {
  EXPECT_NEAR(NoncentralTCdf(2.0, 24, 1.0), 0.826695772, 1e-9);
  EXPECT_NEAR(NoncentralTCdf(2.0, 25, 1.0), 0.827264370, 1e-9);
}

TEST(NoncentralTCdf, IsAHalfAtTheCentreForEvenAndOddDegreesOfFreedom) {
  for (const std::int32_t df : {1, 2, 3, 4, 5, 10, 11, 500, 501}) {
    EXPECT_EQ(NoncentralTCdf(0.0, df, 0.0), 0.5) << df;
  }
}

TEST(NoncentralTCdf, TakesTheIntegralAloneForOneDegreeOfFreedom) {
  const OwenTerms terms(1.5, 1, 0.75);
  EXPECT_EQ(OwenSum(terms, 1), 0.0);
  // At delta 0 the integral is an arc tangent.
  const double t = 1.5;
  EXPECT_NEAR(NoncentralTCdf(t, 1, 0.0), 0.5 + std::atan(t) * 0.31830988618379067, 1e-13);
}

TEST(NoncentralTCdf, StartsTheRecursionAtFourDegreesOfFreedom) {
  const OwenTerms two(1.25, 2, 0.5);
  EXPECT_LT(ErrorOf(OwenSum(two, 2), two.M0 * std::exp(two.logScale)), 1e-15);
  const OwenTerms three(1.25, 3, 0.5);
  EXPECT_LT(ErrorOf(OwenSum(three, 3), three.M1 * std::exp(three.logScale)), 1e-15);
  const OwenTerms four(1.25, 4, 0.5);
  const double once = (four.c * four.M1 + four.M0) * four.B / 2.0;
  EXPECT_LT(ErrorOf(OwenSum(four, 4), (four.M0 + once) * std::exp(four.logScale)), 1e-15);
}

TEST(NoncentralTCdf, IntegratesOverAnEmptyIntervalAtTZero) {
  for (const std::int32_t df : {1, 3, 9, 101}) {
    for (const double delta : {-1.0, 0.5, 3.0}) {
      EXPECT_EQ(NoncentralTCdf(0.0, df, delta), NormalCdf(-delta)) << df;
    }
  }
}

// The exponent of the exponential term of M1.
double ExponentOf(double t, std::int32_t df, double delta) {
  const OwenTerms terms(t, df, delta);
  return -0.5 * delta * delta - terms.logScale;
}

TEST(NoncentralTCdf, LeavesTheExponentialOutFromTwelveAndAHalf) {
  // B near .04 with 3 degrees of freedom: t^2 = 72. The exponent falls through -12.5 in delta.
  const double t = std::sqrt(72.0);
  double below = 5.0;
  double above = 5.3;
  while (std::nextafter(below, above) < above) {
    const double middle = below + (above - below) / 2.0;
    (std::fabs(ExponentOf(t, 3, middle)) < 12.5 ? below : above) = middle;
  }
  const double step = std::fabs(NoncentralTCdf(t, 3, above) - NoncentralTCdf(t, 3, below));
  EXPECT_GT(step, 5e-8);
  EXPECT_LT(step, 1.5e-7);
  EXPECT_EQ(OwenTerms(t, 3, above).M1,
            OwenTerms(t, 3, above).c * OwenTerms(t, 3, above).B * OwenTerms(t, 3, above).M0);
}

TEST(NoncentralTCdf, StaysAProbabilityForALargeDelta) {
  for (const double delta : {6.0, 10.0, 40.0, 200.0}) {
    for (const std::int32_t df : {3, 10, 75}) {
      const double p = NoncentralTCdf(2.0, df, delta);
      EXPECT_GE(p, -1e-6) << delta << " " << df;
      EXPECT_LE(p, 1.0);
    }
  }
  EXPECT_NEAR(NoncentralTCdf(5.0, 10, 1e42), 4.996e-16, 1e-18);
}

TEST(NoncentralTCdf, IsNotClamped) {
  const double low = NoncentralTCdf(-6.0, 10, 6.0);
  EXPECT_LT(low, 0.0);
  EXPECT_NEAR(low, -2.4e-8, 0.05e-8);
  const double high = NoncentralTCdf(5.0, 10, -6.0);
  EXPECT_GT(high, 1.0);
  EXPECT_NEAR(high, 1.00000004, 0.5e-8);
}

TEST(NoncentralTCdf, FailsWhenTheIntegralDoes) {
  // One degree of freedom and a t so large that twenty intervals do not resolve the peak at zero.
  EXPECT_EQ(NoncentralTCdf(1.2e5, 1, 0.5), NumericFailure);
  EXPECT_EQ(NoncentralTCdf(std::numeric_limits<double>::infinity(), 9, 1.0), NumericFailure);
}

TEST(NoncentralTCdf, IntegratesFarTailsWithoutFailure) {
  for (const double t : {10.0, 100.0, 1000.0, 5000.0}) {
    for (const double delta : {0.0, 0.5, 2.0, 30.0}) {
      EXPECT_NE(NoncentralTCdf(t, 1, delta), NumericFailure) << t << " " << delta;
    }
  }
}

TEST(NoncentralTCdf, TailsSumToOne) {
  for (const std::int32_t df : {1, 2, 3, 8, 9, 40, 41, 600}) {
    for (const double delta : {-1.5, 0.0, 0.5, 2.0}) {
      for (const double t : {0.25, 1.0, 2.5}) {
        EXPECT_NEAR(NoncentralTCdf(t, df, delta) + NoncentralTCdf(-t, df, -delta), 1.0, 1e-7)
            << df << " " << delta << " " << t;
      }
    }
  }
}

TEST(NoncentralTCdf, RisesInTAndFallsInDelta) {
  for (const std::int32_t df : {1, 2, 7, 30, 301}) {
    for (double t = -3.0; t < 5.0; t += 0.25) {
      EXPECT_LE(NoncentralTCdf(t, df, 1.0), NoncentralTCdf(t + 0.25, df, 1.0) + 1e-8);
      EXPECT_GE(NoncentralTCdf(2.0, df, t), NoncentralTCdf(2.0, df, t + 0.25) - 1e-8);
    }
  }
}

TEST(NoncentralTCdf, EqualsThePlainRecursionBitForBitWhereTheStepwiseFormStands) {
  for (const std::int32_t df : {2, 3, 4, 5, 20, 21, 300, 301, 2000, 20000, 20001}) {
    for (const double t : {-4.0, -1.5, -0.25, 0.75, 2.5}) {
      for (const double delta : {-30.0, -3.0, -0.5, 0.5, 4.0, 45.0, 400.0}) {
        if (owen::FactoredFormHolds(OwenTerms(t, df, delta), df)) {
          continue;
        }
        EXPECT_EQ(OwenSum(OwenTerms(t, df, delta), df), reference::OwenSum(t, df, delta));
        EXPECT_EQ(NoncentralTCdf(t, df, delta), reference::NoncentralTCdf(t, df, delta))
            << t << " " << df << " " << delta;
      }
    }
  }
}

TEST(NoncentralTCdf, EqualsThePlainRecursionToThirteenDigitsWhereTheFactoredFormStands) {
  int compared = 0;
  for (const std::int32_t df :
       {2, 3, 4, 5, 6, 7, 34, 35, 36, 37, 300, 301, 3000, 9999, 16384, 16385}) {
    for (const double t : {-25.0, -4.0, -1.5, -0.25, 0.0, 1e-9, 0.75, 2.5, 12.0, 31.0}) {
      for (const double magnitude : {0.0, 1e-12, 0.5, 1.0, 2.8, 7.0, 12.5}) {
        const double delta = std::copysign(magnitude, t);
        const OwenTerms terms(t, df, delta);
        if (!owen::FactoredFormHolds(terms, df)) {
          continue;
        }
        ++compared;
        EXPECT_LE(ErrorOf(OwenSum(terms, df), reference::OwenSum(t, df, delta)), 1e-13)
            << t << " " << df << " " << delta;
        EXPECT_NEAR(NoncentralTCdf(t, df, delta), reference::NoncentralTCdf(t, df, delta), 1e-13);
      }
    }
  }
  EXPECT_GT(compared, 700);
}

TEST(OwenTIntegrand, IsTheQuotient) {
  EXPECT_EQ(OwenTIntegrand(0.0, 0.0), 1.0);
  EXPECT_EQ(OwenTIntegrand(2.0, 0.0), 0.2);
  EXPECT_LT(ErrorOf(OwenTIntegrand(0.5, 1.5), std::exp(-0.5 * 2.25 * 1.25) / 1.25), 1e-15);
}

TEST(OwenTIntegrand, IsZeroWhereTheQuotientWouldUnderflow) {
  // h^2 / 2 on either side of 708 at x = 0, and one that only the logarithm of y decides.
  EXPECT_GT(OwenTIntegrand(0.0, std::sqrt(2.0 * 707.9)), 0.0);
  EXPECT_EQ(OwenTIntegrand(0.0, std::sqrt(2.0 * 708.1)), 0.0);
  const double h = std::sqrt(2.0 * 707.0 / 10.0);
  EXPECT_EQ(OwenTIntegrand(3.0, h), 0.0);
  EXPECT_GT(std::exp(-707.0) / 10.0, 0.0);
}

TEST(OwenTIntegrand, EqualsThePlainOneEverywhere) {
  for (double h = 0.0; h < 60.0; h += 0.46875) {
    const reference::PlainIntegrand plain{h};
    for (const double x : {0.0, 1e-8, 0.25, 1.0, 3.0, 17.0, 1e3, 1e12, 1e21, 1e150}) {
      EXPECT_EQ(OwenTIntegrand(x, h), plain(x).value) << x << " " << h;
    }
  }
}

TEST(NoncentralTDeltaStart, SolvesTheNormalApproximation) {
  const double z = NormalQuantile(0.9);
  EXPECT_DOUBLE_EQ(NoncentralTDeltaStart(2.0, 8, 0.9),
                   (1.0 - 1.0 / 32.0) * 2.0 - z * std::sqrt(1.0 + 4.0 / 16.0));
}

TEST(NoncentralTQuantile, AgreesWithTheTruthAsFarAsItsConstantsAllow) {
  ExpectTruth("NoncentralTQuantile", [](const auto& in) {
    int status = 0;
    int failure = 0;
    const double t =
        NoncentralTQuantile(in[0], static_cast<std::int32_t>(in[1]), in[2], status, failure);
    EXPECT_EQ(status, 0);
    EXPECT_EQ(failure, 0);
    return t;
  });
}

TEST(NoncentralTQuantile, UndoesTheDistributionFunction) {
  for (const std::int32_t df : {1, 3, 4, 7, 30, 101, 1000}) {
    for (const double delta : {-2.0, 0.0, 1.0, 4.0}) {
      for (const double p : {0.05, 0.5, 0.95}) {
        int status = 1;
        int failure = 1;
        const double t = NoncentralTQuantile(delta, df, p, status, failure);
        if (status == 0 && failure == 0) {
          EXPECT_NEAR(NoncentralTCdf(t, df, delta), p, 1.1e-10) << df << " " << delta << " " << p;
        } else {
          EXPECT_LE(df, 3) << "only the rough start of few degrees of freedom may fail";
        }
      }
    }
  }
}

// What a search from z + delta gives, status and failure with it.
struct Searched {
  double t;
  int status;
  int failure;
};

Searched SearchFrom(double start, double delta, std::int32_t df, double p) {
  Searched searched{};
  searched.t =
      SolveParameter(delta, df, p, start, searched.status, searched.failure, SearchTQuantile, 0);
  return searched;
}

TEST(NoncentralTQuantile, StartsFromTheShiftedNormalUpToThreeDegreesOfFreedom) {
  for (const std::int32_t df : {1, 2, 3}) {
    for (const double delta : {0.5, 3.0, 25.0}) {
      int status = 0;
      int failure = 0;
      const double t = NoncentralTQuantile(delta, df, 0.75, status, failure);
      const Searched expected = SearchFrom(NormalQuantile(0.75) + delta, delta, df, 0.75);
      EXPECT_EQ(t, expected.t) << df << " " << delta;
      EXPECT_EQ(status, expected.status);
      EXPECT_EQ(failure, expected.failure);
    }
  }
}

TEST(NoncentralTQuantile, StartsDirectlyFromFourDegreesOfFreedom) {
  const double n = 4.0;
  const double delta = 1.0;
  const double z = NormalQuantile(0.9);
  const double common = 1.0 - 8.0 * n + 16.0 * n * n - 8.0 * n * z * z;
  const double root = std::sqrt(8.0 * delta * delta * n + common);
  const QuantileStart start = FirstStart(delta, 4, 0.9);
  EXPECT_TRUE(start.isDirect);
  EXPECT_NEAR(start.t, 4.0 * (z * n * root + 4.0 * delta * n * n - n * delta) / common, 1e-13);
  EXPECT_FALSE(FirstStart(delta, 3, 0.9).isDirect);
  // The start stands near the quantile once n is large.
  int status = 0;
  int failure = 0;
  EXPECT_NEAR(FirstStart(delta, 200, 0.9).t, NoncentralTQuantile(delta, 200, 0.9, status, failure),
              1e-3);
}

TEST(NoncentralTQuantile, StartsFromTheSeriesWhereTheApproximationHasNoSolution) {
  // 8 n delta^2 + 1 - 8 n + 16 n^2 - 8 n z^2 is negative at n = 4 for |z| above 2.65 and delta 0.
  const QuantileStart start = FirstStart(0.25, 4, 0.001);
  EXPECT_FALSE(start.isDirect);
  EXPECT_EQ(start.t, SecondStart(0.25, 4, 0.001));
  int status = 1;
  int failure = 1;
  const double t = NoncentralTQuantile(0.25, 4, 0.001, status, failure);
  EXPECT_EQ(status, 0);
  EXPECT_EQ(failure, 0);
  EXPECT_NEAR(NoncentralTCdf(t, 4, 0.25), 0.001, 1.1e-10);
}

TEST(NoncentralTQuantile, SeriesStartAddsTwoTermsToTheCentralQuantile) {
  const std::int32_t df = 12;
  const double n = df;
  const double delta = 0.75;
  const double z = NormalQuantile(0.9);
  int status = 0;
  int failure = 0;
  const double t0 = CentralTQuantile(df, 0.9, status, failure);
  const double expected = t0 + delta + delta / (4.0 * n) * (2.0 * z * z + 1.0 + z * delta) +
                          delta / (96.0 * n * n) *
                              (3.0 * (4.0 * std::pow(z, 4) + 12.0 * z * z + 1.0) +
                               6.0 * delta * (std::pow(z, 3) + 4.0 * z) -
                               4.0 * delta * delta * (z * z - 1.0) - 3.0 * z * std::pow(delta, 3));
  EXPECT_NEAR(SecondStart(delta, df, 0.9), expected, 1e-12);
}

TEST(NoncentralTQuantile, WrapsThe32BitProductOfItsSeries) {
  EXPECT_EQ(NinetySixSquares(4729), 96 * 4729 * 4729);
  EXPECT_EQ(NinetySixSquares(4730), -2147168896);
  EXPECT_EQ(NinetySixSquares(16384), 0);
  EXPECT_EQ(NinetySixSquares(147456), 0);
}

TEST(NoncentralTQuantile, LeavesTheLastTermOfTheSeriesOutWhereTheProductIsZero) {
  const std::int32_t df = 16384;
  const double z = NormalQuantile(0.75);
  int status = 0;
  int failure = 0;
  const double t0 = CentralTQuantile(df, 0.75, status, failure);
  EXPECT_DOUBLE_EQ(SecondStart(1.0, df, 0.75),
                   t0 + 1.0 + 1.0 / (4.0 * df) * (2.0 * z * z + 1.0 + z));
}

TEST(NoncentralTQuantile, StartsFromTheShiftedNormalAtFirstAndTheNormalAloneAfterwards) {
  // No t has a cumulative probability of 1, so the central search fails; z is NumericFailure then.
  int status = 0;
  int failure = 0;
  CentralTQuantile(10, 1.0, status, failure);
  ASSERT_TRUE(status != 0 || failure != 0);
  const QuantileStart first = FirstStart(2.0, 10, 1.0);
  EXPECT_FALSE(first.isDirect);
  EXPECT_EQ(first.t, NumericFailure + 2.0);
  EXPECT_EQ(SecondStart(2.0, 10, 1.0), NumericFailure);
}

TEST(NoncentralTQuantile, FailsWhenBothStartsDo) {
  const double delta = 2e4;  // so large that the direct start exists although z is NumericFailure
  ASSERT_TRUE(FirstStart(delta, 10, 1.0).isDirect);
  int status = 0;
  int failure = 0;
  EXPECT_EQ(NoncentralTQuantile(delta, 10, 1.0, status, failure), NumericFailure);
  EXPECT_TRUE(status != 0 || failure != 0);
}

TEST(NoncentralTCdf, HasNoValueBeyondTheLargestDegreesOfFreedom) {
  for (const std::int32_t df : {LargestTDf + 1, std::numeric_limits<std::int32_t>::max()}) {
    EXPECT_EQ(NoncentralTCdf(2.0, df, 1.0), NumericFailure);
    EXPECT_EQ(NoncentralTCdfBesideLarger(-2.0, df, 1.0), NumericFailure);
  }
}

TEST(NoncentralTCdf, FailsWhereItIsNoNumber) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  for (const std::int32_t df : {1, 2, 3, 24, 25, 1000}) {
    EXPECT_EQ(NoncentralTCdf(nan, df, 1.0), NumericFailure) << df;
    EXPECT_EQ(NoncentralTCdf(1.0, df, nan), NumericFailure) << df;
    for (const double delta : {1e30, 1e36, 1e50, 1e100, 1e300}) {
      EXPECT_FALSE(std::isnan(NoncentralTCdf(2.0, df, delta))) << df << " " << delta;
      EXPECT_FALSE(std::isnan(NoncentralTCdf(2.0, df, -delta))) << df << " " << delta;
    }
  }
  EXPECT_NEAR(NoncentralTCdf(2.0, 25, 1e30), 0.0, 1e-9);
  EXPECT_NEAR(NoncentralTCdf(2.0, 25, -1e30), 1.0, 1e-9);
  EXPECT_EQ(NoncentralTCdf(2.0, 10, 1e100), NumericFailure);
}

TEST(NoncentralTQuantile, FailsBeyondTheLargestDegreesOfFreedom) {
  int status = 0;
  int failure = 0;
  EXPECT_EQ(NoncentralTQuantile(1.0, LargestTDf + 1, 0.75, status, failure), NumericFailure);
  EXPECT_EQ(CentralTQuantile(LargestTDf + 1, 0.75, status, failure), NumericFailure);
  EXPECT_EQ(failure, 1);
}

TEST(NoncentralTQuantile, CountsTheWorkOfItsStartAsWell) {
  // The series start at 4 degrees of freedom takes two steps for each evaluation of its search.
  std::int64_t steps = 1000;
  FirstQuantileStart(0.25, 4, 0.001, steps);
  EXPECT_LT(steps, 1000);
  // Without any work left the central search of the start fails.
  steps = 0;
  EXPECT_EQ(SecondQuantileStart(0.25, 4, 0.001, steps), NormalQuantile(0.001));
}

TEST(CentralTQuantile, IsFoundAtThirtyMillionDegreesOfFreedom) {
  // Groups by their largest size make that many.
  int status = 1;
  int failure = 1;
  const double t = CentralTQuantile(29'999'800, 0.025, status, failure);
  EXPECT_EQ(status, 0);
  EXPECT_EQ(failure, 0);
  EXPECT_NEAR(t, NormalQuantile(0.025), 1e-6);
}

TEST(CentralTQuantile, IsTheCentralQuantileFromTheNormalStart) {
  // Tabled by Pearson, E. S. and Hartley, H. O. (1966). Biometrika Tables for Statisticians I,
  // table 12.
  struct Row {
    std::int32_t df;
    double p;
    double t;
  };
  constexpr Row rows[] = {{1, 0.95, 6.314},   {2, 0.975, 4.303},   {5, 0.975, 2.571},
                          {10, 0.995, 3.169}, {30, 0.025, -2.042}, {60, 0.95, 1.671},
                          {120, 0.975, 1.980}};
  for (const Row& row : rows) {
    int status = 1;
    int failure = 1;
    EXPECT_NEAR(CentralTQuantile(row.df, row.p, status, failure), row.t, 0.0006);
    EXPECT_EQ(status, 0);
    EXPECT_EQ(failure, 0);
  }
}

TEST(CentralTQuantile, SettlesWhereverATestNeedsACriticalValue) {
  for (const std::int32_t df : {1, 2, 3, 4, 5, 6, 8, 10, 15, 20, 30, 50, 99, 300, 1000, 5000}) {
    for (const double p : {0.00005, 0.0001, 0.005, 0.025, 0.05, 0.125, 0.25}) {
      int status = 1;
      int failure = 1;
      const double t = CentralTQuantile(df, p, status, failure);
      EXPECT_EQ(status, 0) << df << " " << p;
      EXPECT_EQ(failure, 0);
      EXPECT_NEAR(NoncentralTCdf(t, df, 0.0), p, 1.001e-10);
      EXPECT_LT(t, 0.0);
    }
  }
}

TEST(CentralTQuantile, IsOddAboutAHalf) {
  for (const std::int32_t df : {3, 8, 77, 5000}) {
    for (const double p : {0.0001, 0.025, 0.25}) {
      int status = 0;
      int failure = 0;
      const double lower = CentralTQuantile(df, p, status, failure);
      const double upper = CentralTQuantile(df, 1.0 - p, status, failure);
      EXPECT_NEAR(lower, -upper, 1e-5 * std::fabs(upper)) << df << " " << p;
    }
  }
}

}  // namespace
}  // namespace poweranalysis
