#include "distributions/Correlation.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstdint>
#include <limits>
#include <string>
#include <thread>
#include <vector>

#include "distributions/AdaptiveIntegrate.h"
#include "distributions/Common.h"
#include "distributions/CorrelationDensity.h"
#include "distributions/NoncentralT.h"
#include "distributions/Normal.h"
#include "distributions/TruthTable.h"
#include "distributions/reference/CorrelationReference.h"

namespace poweranalysis {
namespace {

using correlation::InnerIntegrand;
using correlation::InnerNodes;
using correlation::InnerSeries;
using test::ErrorOf;
using test::ExpectTruth;

constexpr double NaN = std::numeric_limits<double>::quiet_NaN();
constexpr double Infinity = std::numeric_limits<double>::infinity();
constexpr std::int16_t Algorithms[] = {CorrelationExact, CorrelationFisherZRefined,
                                       CorrelationFisherZCrude};

std::int32_t Whole(double value) { return static_cast<std::int32_t>(value); }

// ---- Moments of z ----

TEST(FisherZMoments, EqualThePlainSeries) {
  for (const std::int32_t n : {3, 4, 10, 101, 150000}) {
    for (const double rho : {-0.9999, -0.5, -0.0625, 0.25, 0.75, 0.9999}) {
      EXPECT_LT(ErrorOf(FisherZBias(rho, n), reference::GayenBias(rho, n)), 1e-14);
      EXPECT_LT(ErrorOf(FisherZSecondMoment(rho, n), reference::GayenSecondMoment(rho, n)), 1e-14);
    }
  }
}

TEST(FisherZMoments, SumTheirCoefficientsAtOneAndTwoPairs) {
  EXPECT_DOUBLE_EQ(FisherZBias(1.0, 2), 0.5 + 0.75 + 1.0 + 1.125 + 1.0 + 0.75);
  EXPECT_DOUBLE_EQ(FisherZBias(-1.0, 2), -5.125);
  EXPECT_EQ(FisherZBias(0.0, 17), 0.0);
  EXPECT_DOUBLE_EQ(FisherZSecondMoment(0.0, 2),
                   1.0 + 2.0 + 88.0 / 24.0 + 6.0 + 16256.0 / 1920.0 + 10.0);
}

TEST(FisherZMoments, KeepThePlusSignBeforeOneHundredAndThirteen) {
  // The moment itself would have 4448 in place of 4674.
  EXPECT_DOUBLE_EQ(FisherZSecondMoment(1.0, 2), 1.0 + 7.0 / 4.0 + 70.0 / 24.0 + 292.0 / 64.0 +
                                                    12656.0 / 1920.0 + 4674.0 / 512.0);
}

// ---- Density ----

TEST(CorrelationIntegrand, IsTheQuotient) {
  EXPECT_DOUBLE_EQ(CorrelationIntegrand(0.5, 0.5, 0.5, 10),
                   std::pow(0.5, 8) / std::sqrt(0.5 - 1.25 * 0.25 / 2.0));
  EXPECT_EQ(CorrelationIntegrand(0.0, 0.5, 0.5, 10), Infinity);
}

TEST(CorrelationIntegrand, TakesAPlainSquareForFourPairs) {
  for (double u = 0.015625; u < 1.0; u += 0.046875) {
    EXPECT_EQ(correlation::InnerPower(u, 4.0), (1.0 - u) * (1.0 - u));
    EXPECT_EQ(correlation::InnerPower(u, 5.0), std::pow(1.0 - u, 3.0));
  }
}

TEST(CorrelationDensity, HasTheKnownFormsAtRhoZero) {
  for (const double x : {-0.9, -0.25, 0.0, 0.5, 0.99}) {
    int flag = 1;
    const double root = std::sqrt(1.0 - x * x);
    EXPECT_NEAR(CorrelationDensity(x, 0.0, 3, flag), 1.0 / (3.14159265358979324 * root), 1e-11);
    EXPECT_NEAR(CorrelationDensity(x, 0.0, 4, flag), 0.5, 1e-12);
    EXPECT_NEAR(CorrelationDensity(x, 0.0, 5, flag), 2.0 * root / 3.14159265358979324, 1e-12);
    EXPECT_EQ(flag, 0);
  }
}

TEST(CorrelationDensity, EqualsThePlainOneToTwelveDigits) {
  for (const std::int32_t n : {3, 4, 5, 8, 40, 210, 222, 500, 1000, 1200, 5000}) {
    for (const double rho : {-0.875, 0.0, 0.25, 0.96875}) {
      for (const double x : {-0.75, 0.125, 0.25, 0.9375}) {
        int flag = 1;
        long evaluations = 0;
        const double plain = reference::HotellingDensity(x, rho, n, evaluations).value;
        const double tolerance = InnerSeries::Holds(n) ? 1e-12 : 0.0;
        EXPECT_NEAR(CorrelationDensity(x, rho, n, flag), plain, tolerance * plain)
            << n << " " << rho << " " << x;
        EXPECT_EQ(flag, 0);
      }
    }
  }
}

TEST(CorrelationDensity, IsZeroWhereTheInnerIntegralIsNotPositive) {
  int flag = 1;
  EXPECT_EQ(CorrelationDensity(0.1, 0.2, 2000000000, flag), 0.0);
  EXPECT_EQ(flag, 0);
}

TEST(CorrelationDensity, RaisesTheFlagWhenTheInnerIntegralFails) {
  int flag = 0;
  EXPECT_EQ(CorrelationDensity(0.99999, 0.99999, 3, flag), NumericFailure);
  EXPECT_EQ(flag, 1);
}

TEST(CorrelationDensity, IntegratesToOne) {
  for (const std::int32_t n : {3, 4, 5, 10, 100, 225, 1000}) {
    for (const double rho : {-0.5, 0.0, 0.25}) {
      // In z, where the density has no singular ends and no narrow peak.
      const double half = 12.0 / std::sqrt(n - 2.0);
      double result = 0.0;
      double abserr = 0.0;
      int neval = 0;
      int ier = 0;
      AdaptiveIntegrate(
          [&](double z) {
            const double x = std::tanh(z);
            int flag = 0;
            const double value = CorrelationDensity(x, rho, n, flag) * (1.0 - x * x);
            return IntegrandValue{value, flag};
          },
          std::atanh(rho) - half, std::atanh(rho) + half, 1e-9, 1e-9, result, abserr, neval, ier);
      EXPECT_EQ(ier, 0) << n << " " << rho;
      EXPECT_NEAR(result, 1.0, n == 3 ? 3e-5 : 1e-6) << n << " " << rho;
    }
  }
}

// ---- What stands behind the density ----

TEST(InnerNodes, GiveTheRuleThatEvaluatesEveryNode) {
  for (const std::int32_t n : {3, 4, 5, 40, 1000}) {
    InnerNodes nodes(n);
    for (const double slope : {0.0, 0.125, 0.5, 0.9375}) {
      const auto plain = [&](double u) {
        return IntegrandValue{reference::HotellingIntegrand(u, 2.0 * slope - 1.0, 1.0, n), 0};
      };
      // More intervals than are kept, each of them twice.
      for (int pass = 0; pass < 2; ++pass) {
        for (int i = 0; i < 100; ++i) {
          const double width = 1.0 / (i < 64 ? 64.0 : 1024.0);
          const double lower = (i % 64) * width;
          const qags::RuleEstimate expected = qags::GaussKronrod21(plain, lower, lower + width);
          const qags::RuleEstimate actual =
              GaussKronrod21(InnerIntegrand{nodes, slope}, lower, lower + width);
          EXPECT_EQ(actual.result, expected.result) << n << " " << slope << " " << i;
          EXPECT_EQ(actual.abserr, expected.abserr);
          EXPECT_EQ(actual.resabs, expected.resabs);
          EXPECT_EQ(actual.resasc, expected.resasc);
        }
      }
    }
  }
}

// The integral as it is asked for, node by node.
double PlainInnerIntegral(double h, double n, int& ier) {
  double result = 0.0;
  double abserr = 0.0;
  int neval = 0;
  AdaptiveIntegrate(
      [&](double u) {
        return IntegrandValue{reference::HotellingIntegrand(u, 2.0 * h - 1.0, 1.0, n), 0};
      },
      0.0, 1.0, 1e-8, 1e-8, result, abserr, neval, ier);
  return result;
}

TEST(InnerSeries, MeetsTheIntegrationWhereverItHolds) {
  double worst = 0.0;
  int summed = 0;
  for (std::int32_t n = 3; n <= 1600; n += n < 250 ? 1 : 5) {
    const InnerSeries series(n);
    for (double h = 1.0 / 256.0; h < 1.0; h += 1.0 / 32.0) {
      double Q = 0.0;
      if (!series.Sum(h, Q)) {
        continue;
      }
      ++summed;
      int ier = 1;
      const double integral = PlainInnerIntegral(h, n, ier);
      EXPECT_EQ(ier, 0) << n << " " << h;
      worst = std::max(worst, ErrorOf(Q, integral));
    }
  }
  EXPECT_LT(worst, 9e-13);
  EXPECT_GT(summed, 14000);
}

TEST(InnerSeries, LeavesToTheIntegrationWhatItDoesNotMeet) {
  double Q = 0.0;
  for (const std::int32_t n : {217, 222, 228, 855, 1000, 1501, 5000, 150000}) {
    EXPECT_FALSE(InnerSeries::Holds(n)) << n;
    EXPECT_FALSE(InnerSeries(n).Sum(0.5, Q)) << n;
  }
  EXPECT_TRUE(InnerSeries(3).Sum(0.75, Q));
  EXPECT_FALSE(InnerSeries(3).Sum(0.9999, Q));
  EXPECT_FALSE(InnerSeries(-5).Sum(0.5, Q));
}

// ---- Distribution function ----

TEST(CorrelationCdf, AgreesWithTheTruthInTheExactForm) {
  ExpectTruth("CorrelationCdfExact", [](const auto& in) {
    return CorrelationCdf(in[0], Whole(in[1]), in[2], CorrelationExact);
  });
}

TEST(CorrelationCdf, AgreesWithItsFormulaInTheRefinedForm) {
  ExpectTruth("CorrelationCdfRefined", [](const auto& in) {
    return CorrelationCdf(in[0], Whole(in[1]), in[2], CorrelationFisherZRefined);
  });
}

TEST(CorrelationCdf, AgreesWithItsFormulaInTheCrudeForm) {
  ExpectTruth("CorrelationCdfCrude", [](const auto& in) {
    return CorrelationCdf(in[0], Whole(in[1]), in[2], CorrelationFisherZCrude);
  });
}

TEST(CorrelationCdf, TakesEveryOtherAlgorithmForExact) {
  const double exact = CorrelationCdf(0.2, 20, 0.1, CorrelationExact);
  constexpr std::int16_t others[] = {7, 3, -1, 32767, -32768};
  for (const std::int16_t algorithm : others) {
    EXPECT_EQ(CorrelationCdf(0.2, 20, 0.1, algorithm), exact) << algorithm;
  }
  EXPECT_NE(CorrelationCdf(0.2, 20, 0.1, 1), exact);
  EXPECT_NE(CorrelationCdf(0.2, 20, 0.1, 2), exact);
}

TEST(CorrelationCdf, IsZeroAndOneAtTheEndsAndBeyondInTheExactForm) {
  for (const double beyond : {1.0, 1.5, Infinity}) {
    EXPECT_EQ(CorrelationCdf(0.5, 12, beyond, CorrelationExact), 1.0);
    EXPECT_EQ(CorrelationCdf(0.5, 12, -beyond, CorrelationExact), 0.0);
  }
}

TEST(CorrelationCdf, RefusesTheEndsInTheFisherForms) {
  for (const std::int16_t algorithm : {CorrelationFisherZRefined, CorrelationFisherZCrude}) {
    for (const double r : {1.0, -1.0, 1.5, -1.5, Infinity, -Infinity}) {
      EXPECT_EQ(CorrelationCdf(0.5, 12, r, algorithm), NumericFailure) << r;
    }
  }
}

TEST(CorrelationCdf, RefusesWhatIsNoPopulationAndNaN) {
  for (const std::int16_t algorithm : Algorithms) {
    for (const double rho : {1.0, -1.0, 1.25, -7.0, Infinity, NaN}) {
      EXPECT_EQ(CorrelationCdf(rho, 12, 0.5, algorithm), NumericFailure) << rho;
    }
    for (const std::int32_t n : {2, 1, 0, -1, std::numeric_limits<std::int32_t>::min()}) {
      EXPECT_EQ(CorrelationCdf(0.5, n, 0.5, algorithm), NumericFailure) << n;
    }
    EXPECT_EQ(CorrelationCdf(0.5, 12, NaN, algorithm), NumericFailure);
  }
}

TEST(CorrelationCdf, ChoosesTheSideByTheSignOfRAndNotOfRho) {
  const correlation::Limits above = correlation::LimitsFor(0.25);
  EXPECT_EQ(above.lower, 0.25);
  EXPECT_EQ(above.upper, 1.0);
  for (const double r : {0.0, -0.25}) {
    const correlation::Limits below = correlation::LimitsFor(r);
    EXPECT_EQ(below.lower, -1.0);
    EXPECT_EQ(below.upper, r);
  }
  // A small tail below a positive r is what is left of one, with the error of one; the same tail
  // below a negative r is integrated itself.
  const double left = CorrelationCdf(0.99, 40, 0.0625, CorrelationExact);
  EXPECT_LT(std::fabs(left), 1e-9);
  const double integrated = CorrelationCdf(0.99, 40, -0.0625, CorrelationExact);
  EXPECT_GT(integrated, 0.0);
  EXPECT_LT(integrated, 1e-30);
}

TEST(CorrelationCdf, MissesADensityThatIsNarrowOnAWideRange) {
  EXPECT_NEAR(CorrelationCdf(0.99, 1000, 0.05, CorrelationExact), 1.0, 1e-9);
  EXPECT_LT(CorrelationCdf(0.99, 1000, -0.05, CorrelationExact), 1e-100);
  for (const double rho : {0.2, 0.9}) {
    EXPECT_EQ(CorrelationCdf(rho, 150000, 0.05, CorrelationExact), 1.0) << rho;
  }
}

TEST(CorrelationCdf, NeverLeavesTheExactFormForALargeSample) {
  for (const double r : {0.1875, 0.25}) {
    const double exact = CorrelationCdf(0.2, 5000, r, CorrelationExact);
    EXPECT_EQ(exact, reference::CorrelationCdf(0.2, 5000, r, 0)) << r;
    EXPECT_NE(exact, CorrelationCdf(0.2, 5000, r, CorrelationFisherZRefined));
  }
}

TEST(CorrelationCdf, FailsWhenTheIntegralDoes) {
  for (const double r : {0.05, 0.5, 0.95}) {
    EXPECT_EQ(CorrelationCdf(0.9999, 3, r, CorrelationExact), NumericFailure) << r;
    EXPECT_EQ(CorrelationCdf(-0.9999, 3, -r, CorrelationExact), NumericFailure) << r;
  }
}

TEST(CorrelationCdf, IsAHalfForThreePairsInTheCrudeForm) {
  EXPECT_EQ(CorrelationCdf(0.5, 3, -0.75, CorrelationFisherZCrude), 0.5);
  EXPECT_EQ(CorrelationCdf(0.5, 3, 0.75, CorrelationFisherZCrude), 0.5);
}

TEST(CorrelationCdf, EqualsThePlainIntegrationBitForBitOrToTwelvePlaces) {
  double worst = 0.0;
  for (const std::int32_t n : {3, 4, 5, 6, 10, 30, 53, 100, 215, 222, 300, 475, 700, 1000, 1400}) {
    for (const double rho : {-0.9999, -0.95, -0.5, 0.0, 0.2, 0.7, 0.99}) {
      for (const double r : {-0.9999, -0.95, -0.4, -0.05, 0.0, 0.01, 0.2, 0.6, 0.95, 0.999}) {
        const double actual = CorrelationCdf(rho, n, r, CorrelationExact);
        const double plain = reference::CorrelationCdf(rho, n, r, 0);
        worst = std::max(worst, std::fabs(actual - plain));
        EXPECT_NEAR(actual, plain, InnerSeries::Holds(n) ? 1e-12 : 0.0)
            << n << " " << rho << " " << r;
      }
    }
  }
  ::testing::Test::RecordProperty("worst", std::to_string(worst * 1e12) + "e-12");
}

TEST(CorrelationCdf, EqualsThePlainFormulasInTheFisherForms) {
  for (const std::int32_t n : {4, 5, 30, 150000}) {
    for (const double rho : {-0.9999, -0.5, 0.0, 0.2, 0.95}) {
      for (const double r : {-0.99, -0.4, 0.0, 0.2, 0.999}) {
        EXPECT_NEAR(CorrelationCdf(rho, n, r, 1), reference::CorrelationCdf(rho, n, r, 1), 1e-12);
        EXPECT_EQ(CorrelationCdf(rho, n, r, 2), reference::CorrelationCdf(rho, n, r, 2));
      }
    }
  }
}

TEST(CorrelationCdf, RisesInRAndFallsInRho) {
  constexpr double error = 2e-8;
  for (const std::int16_t algorithm : Algorithms) {
    for (const std::int32_t n : {4, 5, 6, 10, 50, 222, 400}) {
      for (double x = -0.96875; x < 0.96; x += 0.03125) {
        EXPECT_LE(CorrelationCdf(0.25, n, x, algorithm),
                  CorrelationCdf(0.25, n, x + 0.03125, algorithm) + error)
            << algorithm << " " << n << " " << x;
        EXPECT_GE(CorrelationCdf(x, n, 0.25, algorithm),
                  CorrelationCdf(x + 0.03125, n, 0.25, algorithm) - error)
            << algorithm << " " << n << " " << x;
      }
    }
  }
}

TEST(CorrelationCdf, TailsOfMirroredPopulationsSumToOne) {
  for (const std::int16_t algorithm : Algorithms) {
    for (const std::int32_t n : {4, 5, 20, 222, 400}) {
      for (const double rho : {0.0, 0.25, 0.8125}) {
        for (const double r : {0.125, 0.5, 0.9375}) {
          EXPECT_NEAR(CorrelationCdf(rho, n, r, algorithm) + CorrelationCdf(-rho, n, -r, algorithm),
                      1.0, 2e-8)
              << algorithm << " " << n << " " << rho << " " << r;
        }
      }
    }
  }
}

// The largest difference of an approximation from the exact form over a grid of rho and r.
double LargestGap(std::int32_t n, std::int16_t algorithm) {
  double gap = 0.0;
  for (const double rho : {-0.9, -0.5, -0.2, 0.0, 0.2, 0.5, 0.8, 0.9, 0.95}) {
    for (double z = -3.5; z <= 3.5; z += 0.25) {
      const double r = std::tanh(std::atanh(rho) + z / std::sqrt(n - 2.0));
      gap = std::max(gap, std::fabs(CorrelationCdf(rho, n, r, algorithm) -
                                    CorrelationCdf(rho, n, r, CorrelationExact)));
    }
  }
  return gap;
}

TEST(CorrelationCdf, IsApproximatedByTheFisherForms) {
  struct Row {
    std::int32_t n;
    double refined;
    double crude;
  };
  // The gaps that docs/distributions/Correlation.md records.
  constexpr Row rows[] = {{4, 0.02843, 0.1628},      {5, 0.01906, 0.1237},
                          {10, 0.006769, 0.07034},   {25, 0.002199, 0.04002},
                          {100, 0.0004899, 0.01916}, {400, 0.0001178, 0.009501}};
  for (const Row& row : rows) {
    const double refined = LargestGap(row.n, CorrelationFisherZRefined);
    const double crude = LargestGap(row.n, CorrelationFisherZCrude);
    EXPECT_NEAR(refined, row.refined, 0.05 * row.refined) << row.n;
    EXPECT_NEAR(crude, row.crude, 0.05 * row.crude) << row.n;
    EXPECT_LT(refined, crude);
  }
}

TEST(CorrelationCdf, GivesThePublishedPowersOfTheTestAgainstACorrelation) {
  // Twelve pairs, rho .866 against 0 at .05: an example of Zar, J. H. (1984). Biostatistical
  // Analysis, 2nd ed., 312, by the exact distribution.
  const double high = CorrelationQuantile(0.0, 12, 0.975, CorrelationExact);
  const double low = CorrelationQuantile(0.0, 12, 0.025, CorrelationExact);
  EXPECT_NEAR(1.0 - (CorrelationCdf(0.866, 12, high, CorrelationExact) -
                     CorrelationCdf(0.866, 12, low, CorrelationExact)),
              0.98398, 1e-5);
  // 24 pairs, rho .3 against .5.
  const double upper = CorrelationQuantile(0.5, 24, 0.975, CorrelationExact);
  const double lower = CorrelationQuantile(0.5, 24, 0.025, CorrelationExact);
  EXPECT_NEAR(1.0 - (CorrelationCdf(0.3, 24, upper, CorrelationExact) -
                     CorrelationCdf(0.3, 24, lower, CorrelationExact)),
              0.1995, 1e-5);
}

// ---- Quantile ----

TEST(CorrelationQuantile, AgreesWithTheTruthInTheExactForm) {
  ExpectTruth("CorrelationQuantile", [](const auto& in) {
    return CorrelationQuantile(in[0], Whole(in[1]), in[2], CorrelationExact);
  });
}

TEST(CorrelationQuantile, GivesThePrintedCriticalValuesOfR) {
  // Fisher, R. A. and Yates, F. (1963). Statistical Tables for Biological, Agricultural and Medical
  // Research, 6th ed., table VII: two-sided, by degrees of freedom n - 2.
  struct Row {
    std::int32_t df;
    double alpha;
    double r;
  };
  constexpr Row rows[] = {{1, 0.05, 0.9969},   {2, 0.05, 0.9500},  {3, 0.05, 0.8783},
                          {4, 0.05, 0.8114},   {5, 0.05, 0.7545},  {10, 0.05, 0.5760},
                          {20, 0.05, 0.4227},  {30, 0.05, 0.3494}, {50, 0.05, 0.2732},
                          {100, 0.05, 0.1946}, {2, 0.01, 0.9900},  {5, 0.01, 0.8745},
                          {10, 0.01, 0.7079},  {20, 0.01, 0.5368}, {100, 0.01, 0.2540}};
  for (const Row& row : rows) {
    const double upper = 1.0 - row.alpha / 2.0;
    EXPECT_NEAR(CorrelationQuantile(0.0, row.df + 2, upper, CorrelationExact), row.r, 0.00006)
        << row.df;
    EXPECT_NEAR(CorrelationQuantile(0.0, row.df + 2, 1.0 - upper, CorrelationExact), -row.r,
                0.00006);
    // The same by integration.
    EXPECT_NEAR(CorrelationCdf(0.0, row.df + 2, row.r, CorrelationExact), upper, 2e-4);
  }
}

TEST(CorrelationQuantile, NeedsNoIntegrationAtRhoZero) {
  // From here on an integral over a half of the range sees no density any more.
  for (const std::int32_t n : {3, 4, 20, 153, 150000}) {
    for (const double p : {0.001, 0.05, 0.5, 0.95}) {
      int status = 0;
      int failure = 0;
      const double t = CentralTQuantile(n - 2, p, status, failure);
      EXPECT_EQ(CorrelationQuantile(0.0, n, p, CorrelationExact), t / std::sqrt(t * t + (n - 2.0)))
          << n << " " << p;
    }
  }
  // A published value of the critical correlation of 153 pairs at .05, one-sided.
  EXPECT_NEAR(CorrelationQuantile(0.0, 153, 0.95, CorrelationExact), 0.13347743, 1e-7);
}

TEST(CorrelationQuantile, FailsAtRhoZeroWhenTheSearchForTDoes) {
  // So far out that the normal quantile fails, and with it the start of the search.
  const double r = CorrelationQuantile(0.0, 3, 1e-300, CorrelationExact);
  EXPECT_TRUE(r == NumericFailure || (r >= -1.0 && r <= -0.999)) << r;
}

TEST(CorrelationQuantile, RefusesASearchForTOverTooManyPairs) {
  EXPECT_EQ(CorrelationQuantile(0.0, 10000001, 0.25, CorrelationExact), NumericFailure);
  EXPECT_EQ(CorrelationQuantile(0.0, 2147483647, 0.25, CorrelationExact), NumericFailure);
  EXPECT_NEAR(CorrelationQuantile(0.0, 2147483647, 0.25, CorrelationFisherZCrude), -1.4555e-5,
              1e-8);
}

TEST(CorrelationQuantile, StartIsTheRefinedFormula) {
  const double b = FisherZBias(0.25, 15);
  const double s = std::sqrt(FisherZSecondMoment(0.25, 15) - b * b);
  EXPECT_DOUBLE_EQ(CorrelationQuantileStart(0.25, 15, 0.9),
                   std::tanh(s * NormalQuantile(0.9) + 0.5 * std::log(1.25 / 0.75) + b));
  EXPECT_EQ(CorrelationQuantile(0.25, 15, 0.9, CorrelationFisherZRefined),
            CorrelationQuantileStart(0.25, 15, 0.9));
}

TEST(CorrelationQuantile, IsFishersOwnInTheCrudeForm) {
  EXPECT_DOUBLE_EQ(
      CorrelationQuantile(0.25, 15, 0.9, CorrelationFisherZCrude),
      std::tanh(NormalQuantile(0.9) * std::sqrt(1.0 / 12.0) + 0.5 * std::log(1.25 / 0.75)));
  EXPECT_DOUBLE_EQ(CorrelationQuantile(0.25, 4, 0.9, CorrelationFisherZCrude),
                   std::tanh(NormalQuantile(0.9) + 0.5 * std::log(1.25 / 0.75)));
}

TEST(CorrelationQuantile, TakesTheRefinedValueForThreePairsInTheCrudeForm) {
  for (const double p : {0.05, 0.5, 0.975}) {
    EXPECT_EQ(CorrelationQuantile(0.25, 3, p, CorrelationFisherZCrude),
              CorrelationQuantile(0.25, 3, p, CorrelationFisherZRefined));
    EXPECT_NE(CorrelationQuantile(0.25, 4, p, CorrelationFisherZCrude),
              CorrelationQuantile(0.25, 4, p, CorrelationFisherZRefined));
  }
}

TEST(CorrelationQuantile, TakesEveryOtherAlgorithmForExact) {
  for (const double rho : {0.0, 0.25}) {
    EXPECT_EQ(CorrelationQuantile(rho, 20, 0.9, 7),
              CorrelationQuantile(rho, 20, 0.9, CorrelationExact));
  }
}

TEST(CorrelationQuantile, RefusesWhatLiesOutsideItsDomain) {
  for (const std::int16_t algorithm : Algorithms) {
    for (const double p : {0.0, 1.0, -0.25, 1.25, NaN, Infinity}) {
      EXPECT_EQ(CorrelationQuantile(0.25, 20, p, algorithm), NumericFailure) << p;
      EXPECT_EQ(CorrelationQuantile(0.0, 20, p, algorithm), NumericFailure) << p;
      EXPECT_EQ(CorrelationQuantileStart(0.25, 20, p), NumericFailure) << p;
    }
    for (const double rho : {1.0, -1.0, 1.25, NaN, -Infinity}) {
      EXPECT_EQ(CorrelationQuantile(rho, 20, 0.5, algorithm), NumericFailure) << rho;
      EXPECT_EQ(CorrelationQuantileStart(rho, 20, 0.5), NumericFailure) << rho;
    }
    for (const std::int32_t n : {2, 0, -3, std::numeric_limits<std::int32_t>::min()}) {
      EXPECT_EQ(CorrelationQuantile(0.25, n, 0.5, algorithm), NumericFailure) << n;
      EXPECT_EQ(CorrelationQuantileStart(0.25, n, 0.5), NumericFailure) << n;
    }
  }
}

TEST(CorrelationQuantile, UndoesTheDistributionFunction) {
  for (const std::int32_t n : {4, 5, 8, 30, 100, 222, 500}) {
    for (const double rho : {-0.9375, -0.25, 0.125, 0.75}) {
      for (const double p : {0.0009765625, 0.0625, 0.5, 0.96875}) {
        const double r = CorrelationQuantile(rho, n, p, CorrelationExact);
        EXPECT_NEAR(CorrelationCdf(rho, n, r, CorrelationExact), p, 1.001e-10)
            << n << " " << rho << " " << p;
        EXPECT_NEAR(CorrelationCdf(rho, n, CorrelationQuantile(rho, n, p, 1), 1), p, 2e-8);
        EXPECT_NEAR(CorrelationCdf(rho, n, CorrelationQuantile(rho, n, p, 2), 2), p, 2e-8);
      }
    }
  }
}

TEST(CorrelationQuantile, ReturnsItsStartWhereTheResidualIsZeroForIt) {
  // Below 1e-35 the normal quantile fails and the start is -1, whose residual is -p.
  EXPECT_EQ(CorrelationQuantileStart(0.25, 20, 1e-37), -1.0);
  EXPECT_EQ(CorrelationQuantile(0.25, 20, 1e-37, CorrelationExact), -1.0);
}

TEST(CorrelationQuantile, SolvesFromASecondStartThatIsNone) {
  // The second start asks for a probability beyond 1 or below 0 here, and is -9999. The bracket
  // then reaches far above 1, where nothing limits it.
  int beyond = 0;
  for (const double rho : {-0.96875, 0.25, 0.96875}) {
    for (const double p : {0.0009765625, 0.9990234375, 0.9999}) {
      for (const std::int32_t n : {4, 5, 6, 7}) {
        const double x0 = CorrelationQuantileStart(rho, n, p);
        const double shifted = p - 1.006 * (CorrelationCdf(rho, n, x0, CorrelationExact) - p);
        if (CorrelationQuantileStart(rho, n, shifted) != NumericFailure) {
          continue;
        }
        ++beyond;
        const double r = CorrelationQuantile(rho, n, p, CorrelationExact);
        EXPECT_NEAR(CorrelationCdf(rho, n, r, CorrelationExact), p, 1.001e-10)
            << n << " " << rho << " " << p;
        EXPECT_LE(std::fabs(r), 1.0);
      }
    }
  }
  EXPECT_GT(beyond, 0);
}

TEST(CorrelationQuantile, FailsWhenNoBracketIsFound) {
  // The distribution function fails at the start: a residual of -9999 and less, and none of the
  // other sign below -1.
  ASSERT_EQ(CorrelationCdf(0.9999, 3, CorrelationQuantileStart(0.9999, 3, 0.5), CorrelationExact),
            NumericFailure);
  EXPECT_EQ(CorrelationQuantile(0.9999, 3, 0.5, CorrelationExact), NumericFailure);
}

// ---- Search for rho ----

// Writes down what a search says, and asks it to stop at a count.
class RecordingObserver final : public SearchObserver {
 public:
  explicit RecordingObserver(std::int32_t stopAt = 0) : stopAt_(stopAt) {}

  void Start(std::int32_t count) override { log += "start " + std::to_string(count) + ";"; }
  bool Advance(std::int32_t counter) override {
    log += std::to_string(counter) + ";";
    last = counter;
    return counter == stopAt_;
  }
  void Stop() override { log += "stop;"; }

  std::string log;
  std::int32_t last = 0;

 private:
  std::int32_t stopAt_;
};

TEST(CorrelationRhoForP, AgreesWithTheTruthInTheExactForm) {
  ExpectTruth("CorrelationRhoForP", [](const auto& in) {
    int failure = 1;
    const double rho = CorrelationRhoForP(Whole(in[0]), in[1], in[2], failure, CorrelationExact);
    EXPECT_EQ(failure, 0);
    return rho;
  });
}

TEST(CorrelationRhoForP, TellsItsObserverOfEachPassFromThree) {
  RecordingObserver observer;
  int failure = 7;
  const double rho = CorrelationRhoForP(20, 0.5, 0.975, failure, CorrelationExact, observer);
  EXPECT_EQ(failure, 0);
  EXPECT_NEAR(CorrelationCdf(rho, 20, 0.5, CorrelationExact), 0.975, 1e-8);
  std::string expected = "start 10;";
  for (std::int32_t counter = 3; counter <= observer.last; ++counter) {
    expected += std::to_string(counter) + ";";
  }
  EXPECT_EQ(observer.log, expected + "stop;");
  EXPECT_GT(observer.last, 3);
  int unobserved = 7;
  EXPECT_EQ(CorrelationRhoForP(20, 0.5, 0.975, unobserved, CorrelationExact), rho);
  EXPECT_EQ(unobserved, 0);
}

TEST(CorrelationRhoForP, EndsAtItsStartWhenThatSolves) {
  // At p = 1/2 the crude start is r itself, and its probability exactly a half.
  RecordingObserver observer;
  int failure = 7;
  EXPECT_NEAR(CorrelationRhoForP(20, 0.5, 0.5, failure, CorrelationFisherZCrude, observer), 0.5,
              1e-15);
  EXPECT_EQ(failure, 0);
  EXPECT_EQ(observer.log, "start 10;stop;");
}

TEST(CorrelationRhoForP, EndsBesideItsStartWhenThatSolves) {
  // NormalCdf and NormalQuantile undo each other only to 2e-8 this far out, and the first step of
  // so large a sample moves the probability by as much.
  const std::int32_t n = 400003;
  const double p = 0.99999;
  const double start =
      std::tanh(0.5 * std::log(1.5 / 0.5) - NormalQuantile(p) / std::sqrt(n - 3.0));
  const double beside = start - start * 1e-6;
  ASSERT_GT(std::fabs(CorrelationCdf(start, n, 0.5, CorrelationFisherZCrude) - p), 1e-8);
  ASSERT_LE(std::fabs(CorrelationCdf(beside, n, 0.5, CorrelationFisherZCrude) - p), 1e-8);
  RecordingObserver observer;
  int failure = 7;
  EXPECT_EQ(CorrelationRhoForP(n, 0.5, p, failure, CorrelationFisherZCrude, observer), beside);
  EXPECT_EQ(failure, 0);
  EXPECT_EQ(observer.log, "start 10;stop;");
}

TEST(CorrelationRhoForP, KeepsTheValueLastReachedWhenItIsStoppedNearTheEnd) {
  int failure = 0;
  const double found = CorrelationRhoForP(20, 0.5, 0.975, failure, CorrelationExact);
  RecordingObserver whole;
  CorrelationRhoForP(20, 0.5, 0.975, failure, CorrelationExact, whole);
  RecordingObserver observer(whole.last);
  const double reached = CorrelationRhoForP(20, 0.5, 0.975, failure, CorrelationExact, observer);
  EXPECT_EQ(failure, 2);
  EXPECT_NEAR(reached, found, 1e-3);
  EXPECT_LE(std::fabs(CorrelationCdf(reached, 20, 0.5, CorrelationExact) - 0.975), 0.0001);
  // Closed by the stop itself and by the end.
  EXPECT_EQ(observer.log.substr(observer.log.size() - 10), "stop;stop;");
}

TEST(CorrelationRhoForP, CallsAStopFarFromTheEndAFailure) {
  RecordingObserver observer(3);
  int failure = 0;
  EXPECT_EQ(CorrelationRhoForP(20, 0.5, 0.975, failure, CorrelationExact, observer),
            NumericFailure);
  EXPECT_EQ(failure, 1);
  EXPECT_EQ(observer.log, "start 10;3;stop;stop;");
}

TEST(CorrelationRhoForP, RefusesWhatLiesOutsideItsDomainWithoutAWord) {
  struct Row {
    std::int32_t n;
    double r;
    double p;
  };
  constexpr Row rows[] = {{2, 0.5, 0.5},  {-1, 0.5, 0.5},       {20, 1.0, 0.5}, {20, -1.0, 0.5},
                          {20, 1.5, 0.5}, {20, NaN, 0.5},       {20, 0.5, 0.0}, {20, 0.5, 1.0},
                          {20, 0.5, 1.5}, {20, 0.5, -Infinity}, {20, 0.5, NaN}};
  for (const std::int16_t algorithm : Algorithms) {
    for (const Row& row : rows) {
      RecordingObserver observer;
      int failure = 0;
      EXPECT_EQ(CorrelationRhoForP(row.n, row.r, row.p, failure, algorithm, observer),
                NumericFailure)
          << row.n << " " << row.r << " " << row.p;
      EXPECT_EQ(failure, 1);
      EXPECT_EQ(observer.log, "");
    }
  }
}

TEST(CorrelationRhoForP, EndsForThreePairs) {
  // The start divides by the root of 0: it lies beyond the bounds, or is no number for p = 1/2.
  for (const std::int16_t algorithm : Algorithms) {
    for (const double p : {0.025, 0.5, 0.975}) {
      RecordingObserver observer;
      int failure = 0;
      const double rho = CorrelationRhoForP(3, 0.5, p, failure, algorithm, observer);
      EXPECT_TRUE(failure == 1 ? rho == NumericFailure : std::fabs(rho) <= 0.99999999)
          << algorithm << " " << p << " " << rho;
      EXPECT_LT(observer.last, 1000);
      EXPECT_EQ(observer.log.substr(observer.log.size() - 5), "stop;");
      if (p == 0.5) {
        EXPECT_EQ(failure, 1);
      }
    }
  }
}

TEST(CorrelationRhoForP, UndoesTheDistributionFunction) {
  for (const std::int16_t algorithm : Algorithms) {
    for (const std::int32_t n : {5, 8, 30, 100, 222, 500}) {
      for (const double r : {-0.9375, -0.25, 0.0, 0.125, 0.75}) {
        for (const double p : {0.03125, 0.5, 0.96875}) {
          int failure = 7;
          const double rho = CorrelationRhoForP(n, r, p, failure, algorithm);
          EXPECT_EQ(failure, 0) << algorithm << " " << n << " " << r << " " << p;
          EXPECT_NEAR(CorrelationCdf(rho, n, r, algorithm), p, 2e-8)
              << algorithm << " " << n << " " << r << " " << p;
        }
      }
    }
  }
}

TEST(CorrelationRhoForP, EqualsThePlainSearchToItsTolerance) {
  for (const std::int32_t n : {4, 5, 20, 222}) {
    for (const double r : {-0.99999999, -0.9999, -0.25, 0.0, 0.75, 0.9999}) {
      for (const double p : {0.0001, 0.03125, 0.5, 0.999}) {
        for (const std::int16_t algorithm : Algorithms) {
          int failure = 7;
          const double actual = CorrelationRhoForP(n, r, p, failure, algorithm);
          const double plain = reference::RhoForP(n, r, p, algorithm);
          EXPECT_EQ(failure, std::isnan(plain) ? 1 : 0)
              << algorithm << " " << n << " " << r << " " << p;
          // The search ends at 1e-8 in p, or in rho.
          if (failure == 0 && std::fabs(actual - plain) > 1e-8) {
            EXPECT_NEAR(CorrelationCdf(actual, n, r, algorithm),
                        CorrelationCdf(plain, n, r, algorithm), 2e-8)
                << algorithm << " " << n << " " << r << " " << p;
          }
        }
      }
    }
  }
}

// Runs another search whenever it is told of a pass.
class SearchingObserver final : public SearchObserver {
 public:
  void Start(std::int32_t /*count*/) override {}
  bool Advance(std::int32_t /*counter*/) override {
    int failure = 0;
    inner = CorrelationRhoForP(9, -0.25, 0.25, failure, CorrelationExact);
    return false;
  }
  void Stop() override {}

  double inner = 0.0;
};

TEST(CorrelationRhoForP, KeepsItsValuesApartFromASearchInsideIt) {
  int failure = 0;
  const double outer = CorrelationRhoForP(40, 0.5, 0.875, failure, CorrelationExact);
  const double inner = CorrelationRhoForP(9, -0.25, 0.25, failure, CorrelationExact);
  SearchingObserver observer;
  EXPECT_EQ(CorrelationRhoForP(40, 0.5, 0.875, failure, CorrelationExact, observer), outer);
  EXPECT_EQ(observer.inner, inner);
}

TEST(Correlation, GivesTheSameOnManyThreadsAtOnce) {
  const auto all = [](std::int32_t n) {
    int failure = 0;
    return CorrelationCdf(0.25, n, 0.5, CorrelationExact) +
           CorrelationQuantile(0.25, n, 0.125, CorrelationExact) +
           CorrelationRhoForP(n, 0.5, 0.75, failure, CorrelationExact);
  };
  constexpr std::int32_t Sizes[] = {4, 5, 10, 50, 222, 500};
  std::vector<double> alone;
  for (const std::int32_t n : Sizes) {
    alone.push_back(all(n));
  }
  std::atomic<int> differences{0};
  std::vector<std::thread> threads;
  for (int thread = 0; thread < 3; ++thread) {
    threads.emplace_back([&] {
      for (std::size_t i = 0; i < alone.size(); ++i) {
        differences += all(Sizes[i]) == alone[i] ? 0 : 1;
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
