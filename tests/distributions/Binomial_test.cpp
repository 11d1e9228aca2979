#include "distributions/Binomial.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>

#include "distributions/Beta.h"
#include "distributions/Common.h"
#include "distributions/Normal.h"
#include "distributions/SolveParameter.h"
#include "distributions/TruthTable.h"
#include "distributions/reference/BinomialReference.h"

namespace poweranalysis {
namespace {

using test::ErrorOf;
using test::ExpectTruth;

constexpr double Infinity = std::numeric_limits<double>::infinity();
constexpr double Nan = std::numeric_limits<double>::quiet_NaN();
constexpr int Untouched = 7;
constexpr double UntouchedActual = 77.0;

double Cdf(double n, double pi, double k) {
  int failure = Untouched;
  const double p = BinomialCdf(n, pi, k, failure);
  EXPECT_EQ(failure, 0) << n << " " << pi << " " << k;
  return p;
}

struct Quantile {
  double k = 0.0;
  double actual = UntouchedActual;
  int failure = Untouched;

  Quantile(double p, double n, double pi) {
    k = BinomialQuantile(p, n, pi, actual, failure, std::log(p));
  }
};

struct Proportion {
  double pi = 0.0;
  int failure = Untouched;

  Proportion(double n, double p, double k) { pi = BinomialProportionForP(n, p, k, failure); }
};

TEST(BinomialCdf, AgreesWithTheTruthAsFarAsItsConstantsAllow) {
  ExpectTruth("BinomialCdf", [](const auto& in) { return Cdf(in[0], in[1], in[2]); });
}

TEST(BinomialCdf, GivesThePrintedProbabilities) {
  // National Bureau of Standards (1950). Tables of the Binomial Probability Distribution. Applied
  // Mathematics Series 6; cumulated and rounded as textbooks print them.
  struct Printed {
    double n;
    double pi;
    double k;
    double p;
  };
  constexpr Printed Table[] = {
      {10, 0.5, 0, 0.0010}, {10, 0.5, 1, 0.0107},  {10, 0.5, 2, 0.0547}, {10, 0.5, 3, 0.1719},
      {10, 0.5, 4, 0.3770}, {10, 0.5, 5, 0.6230},  {20, 0.3, 3, 0.1071}, {20, 0.3, 6, 0.6080},
      {15, 0.4, 6, 0.6098}, {20, 0.25, 5, 0.6172}, {20, 0.5, 5, 0.0207}, {20, 0.5, 14, 0.9793},
      {25, 0.1, 2, 0.5371}, {25, 0.2, 5, 0.6167},  {5, 0.2, 0, 0.3277},  {5, 0.2, 1, 0.7373},
  };
  for (const Printed& row : Table) {
    EXPECT_NEAR(Cdf(row.n, row.pi, row.k), row.p, 5.1e-5) << row.n << " " << row.pi << " " << row.k;
  }
}

TEST(BinomialCdf, IsZeroBelowNoneAndOneFromAllOn) {
  for (const double pi : {0.0, 0.25, 1.0}) {
    EXPECT_EQ(Cdf(10.0, pi, -1.0), 0.0);
    EXPECT_EQ(Cdf(10.0, pi, -1e-9), 0.0);
    EXPECT_EQ(Cdf(10.0, pi, 10.0), 1.0);
    EXPECT_EQ(Cdf(10.0, pi, 11.0), 1.0);
    EXPECT_EQ(Cdf(10.0, pi, Infinity), 1.0);
    EXPECT_EQ(Cdf(10.0, pi, -Infinity), 0.0);
  }
}

TEST(BinomialCdf, TakesTheWholePartOfTheCount) {
  EXPECT_EQ(Cdf(10.0, 0.3, 3.7), Cdf(10.0, 0.3, 3.0));
  EXPECT_EQ(Cdf(10.0, 0.3, 9.999), Cdf(10.0, 0.3, 9.0));
  EXPECT_EQ(Cdf(10.0, 0.3, 0.5), Cdf(10.0, 0.3, 0.0));
}

TEST(BinomialCdf, KeepsASizeThatIsNotWhole) {
  int failure = 0;
  EXPECT_EQ(Cdf(10.5, 0.3, 4.0), 1.0 - BetaCdf(0.3, 5.0, 6.5, failure));
  EXPECT_LT(Cdf(10.5, 0.3, 10.0), 1.0);
}

TEST(BinomialCdf, PassesThroughTheEndsOfTheBeta) {
  for (const double k : {0.0, 4.0, 9.0}) {
    EXPECT_EQ(Cdf(10.0, 0.0, k), 1.0);
    EXPECT_EQ(Cdf(10.0, 1.0, k), 0.0);
  }
}

TEST(BinomialCdf, FailsForASizeBelowOne) {
  for (const double n : {0.999, 0.0, -5.0, -Infinity, Nan}) {
    int failure = Untouched;
    EXPECT_EQ(BinomialCdf(n, 0.5, 1.0, failure), NumericFailure) << n;
    EXPECT_EQ(failure, 1);
    // Before the count is looked at.
    EXPECT_EQ(BinomialCdf(n, 0.5, -1.0, failure), NumericFailure) << n;
  }
}

TEST(BinomialCdf, PassesTheFailureOfTheBetaThrough) {
  for (const double pi : {-0.1, 1.1, Infinity, -Infinity}) {
    int failure = Untouched;
    EXPECT_EQ(BinomialCdf(10.0, pi, 3.0, failure), NumericFailure) << pi;
    EXPECT_EQ(failure, 1);
    // Not where the answer does not depend on it.
    EXPECT_EQ(BinomialCdf(10.0, pi, 10.0, failure), 1.0);
    EXPECT_EQ(failure, 0);
  }
}

TEST(BinomialCdf, FailsForWhatIsNoNumber) {
  int failure = Untouched;
  EXPECT_EQ(BinomialCdf(10.0, Nan, 3.0, failure), NumericFailure);
  EXPECT_EQ(failure, 1);
  failure = Untouched;
  EXPECT_EQ(BinomialCdf(10.0, 0.5, Nan, failure), NumericFailure);
  EXPECT_EQ(failure, 1);
  failure = Untouched;
  EXPECT_EQ(BinomialCdf(Infinity, 0.5, 3.0, failure), NumericFailure);
  EXPECT_EQ(failure, 1);
}

TEST(BinomialCdf, IsOneLessTheBetaBitForBit) {
  for (const double n : {1.0, 2.0, 13.0, 200.0, 4e4, 1e9}) {
    for (const double pi : {1e-9, 0.01, 0.3, 0.5, 0.875}) {
      for (const double share : {0.0, 0.1, 0.4, 0.55, 0.9}) {
        const double k = std::floor(share * n);
        int failure = 0;
        EXPECT_EQ(Cdf(n, pi, k), reference::BinomialCdf(n, pi, k, failure)) << n << " " << pi;
      }
    }
  }
}

TEST(BinomialCdf, RisesInTheCountAndFallsInTheProportion) {
  for (const double n : {1.0, 7.0, 40.0, 600.0}) {
    for (double pi = 0.0; pi < 1.0; pi += 0.0625) {
      for (double k = 0.0; k < n; k += std::max(1.0, std::floor(n / 50.0))) {
        EXPECT_LE(Cdf(n, pi, k), Cdf(n, pi, k + 1.0) + 1e-10) << n << " " << pi << " " << k;
        EXPECT_GE(Cdf(n, pi, k), Cdf(n, pi + 0.0625, k) - 1e-10) << n << " " << pi << " " << k;
      }
    }
  }
}

TEST(BinomialCdf, MirrorsTheUpperTail) {
  for (const double n : {5.0, 12.0, 77.0, 1000.0}) {
    for (const double pi : {0.0625, 0.25, 0.4375, 0.75}) {
      for (const double share : {0.0, 0.2, 0.5, 0.8}) {
        const double k = std::floor(share * n);
        EXPECT_NEAR(Cdf(n, pi, k) + Cdf(n, 1.0 - pi, n - k - 1.0), 1.0, 2e-10);
      }
    }
  }
}

TEST(BinomialQuantile, AgreesWithTheTruth) {
  ExpectTruth("BinomialQuantile", [](const auto& in) {
    const Quantile answer(in[0], in[1], in[2]);
    EXPECT_EQ(answer.failure, 0);
    EXPECT_EQ(answer.actual, Cdf(in[1], in[2], answer.k));
    return answer.k;
  });
}

TEST(BinomialQuantile, IsTheFirstCountThatReachesTheProbability) {
  for (const double n : {5.0, 30.0, 101.0, 2500.0, 1e6}) {
    for (const double pi : {0.03125, 0.3, 0.5, 0.9}) {
      for (const double p : {0.05, 0.2, 0.5, 0.75, 0.95, 0.999}) {
        if (Cdf(n, pi, 0.0) >= p || n * std::log(pi) >= std::log(p)) {
          continue;
        }
        const Quantile answer(p, n, pi);
        EXPECT_GE(Cdf(n, pi, answer.k), p) << n << " " << pi << " " << p;
        EXPECT_LT(Cdf(n, pi, answer.k - 1.0), p) << n << " " << pi << " " << p;
      }
    }
  }
}

TEST(BinomialQuantile, AnswersAllWhereAPowerOfTheProportionReachesTheProbability) {
  // .8^2 is .64. Kept though wrong: P(X <= 1) is .36 and reaches .3 as well.
  const Quantile answer(0.3, 2.0, 0.8);
  EXPECT_EQ(answer.k, 2.0);
  EXPECT_EQ(answer.actual, UntouchedActual);
  EXPECT_EQ(answer.failure, 0);
  EXPECT_GT(Cdf(2.0, 0.8, 1.0), 0.3);
  EXPECT_EQ(Quantile(0.5, 10.0, 1.0).k, 10.0);
  EXPECT_EQ(Quantile(0.5, 10.0, 1.0).actual, UntouchedActual);
}

TEST(BinomialQuantile, TakesTheLogarithmOfItsCaller) {
  double actual = UntouchedActual;
  int failure = Untouched;
  // n log(pi) is -1.386: a logP of that answers n, one just above it searches.
  const double bound = 2.0 * std::log(0.5);
  EXPECT_EQ(BinomialQuantile(0.5, 2.0, 0.5, actual, failure, bound), 2.0);
  EXPECT_EQ(actual, UntouchedActual);
  EXPECT_EQ(BinomialQuantile(0.5, 2.0, 0.5, actual, failure, std::nextafter(bound, 0.0)), 1.0);
  EXPECT_EQ(actual, Cdf(2.0, 0.5, 1.0));
}

TEST(BinomialQuantile, LeavesTheSearchAtAllWithAValueOfOne) {
  // .9999 at 3 falls short, and 4 is only assumed as the upper end.
  const Quantile answer(0.99995, 4.0, 0.1);
  EXPECT_EQ(answer.k, 4.0);
  EXPECT_EQ(answer.actual, 1.0);
  EXPECT_EQ(answer.failure, 0);
  EXPECT_EQ(Quantile(0.99995, 2.0, 0.01).k, 2.0);
  EXPECT_EQ(Quantile(0.999999, 5.0, 0.1).k, 5.0);
  EXPECT_EQ(Quantile(1.0, 4.0, 0.1).k, 4.0);
  EXPECT_EQ(Quantile(1.0, 4.0, 0.1).actual, 1.0);
}

TEST(BinomialQuantile, TakesTheFirstCountWhoseValueIsTheProbabilityItself) {
  int met = 0;
  for (const double n : {6.0, 20.0, 45.0}) {
    for (const double pi : {0.3, 0.5}) {
      for (double k = 1.0; k < n - 1.0; k += 1.0) {
        const double p = Cdf(n, pi, k);
        if (p <= Cdf(n, pi, k - 1.0) || Cdf(n, pi, 0.0) >= p || n * std::log(pi) >= std::log(p)) {
          continue;
        }
        const Quantile answer(p, n, pi);
        EXPECT_EQ(answer.k, k) << n << " " << pi;
        EXPECT_EQ(answer.actual, p);
        ++met;
      }
    }
  }
  EXPECT_GT(met, 80);
}

TEST(BinomialQuantile, ClosesAWalkThatWouldGoInCircles) {
  const Quantile answer(0.999999, 100.0, 0.77);
  EXPECT_EQ(answer.k, 94.0);
  EXPECT_GE(Cdf(100.0, 0.77, 94.0), 0.999999);
  EXPECT_LT(Cdf(100.0, 0.77, 93.0), 0.999999);
}

TEST(BinomialQuantile, AnswersAsThePlainSearchWhereverThatEnds) {
  int compared = 0;
  int endless = 0;
  for (const double n : {1.0, 2.0, 3.0, 4.0, 10.0, 37.0, 100.0, 1000.0, 100000.0}) {
    for (const double pi : {0.0, 0.0001, 0.01, 0.1, 0.3, 0.5, 0.77, 0.95, 0.999}) {
      for (const double p : {1e-40, 1e-12, 1e-4, 0.025, 0.3, 0.5, 0.7, 0.95, 0.999, 0.999999}) {
        double actual = UntouchedActual;
        int passes = 0;
        const double k =
            reference::BinomialQuantile(p, n, pi, NormalQuantile(p), actual, std::log(p), passes);
        const Quantile answer(p, n, pi);
        EXPECT_EQ(answer.failure, 0);
        if (k == NumericFailure) {
          ++endless;
          EXPECT_GE(Cdf(n, pi, answer.k), p);
          continue;
        }
        ++compared;
        EXPECT_EQ(answer.k, k) << n << " " << pi << " " << p;
        EXPECT_EQ(answer.actual, actual) << n << " " << pi << " " << p;
      }
    }
  }
  EXPECT_GT(compared, 790);
  EXPECT_GT(endless, 0);
}

TEST(BinomialQuantile, ReachesAFarAnswerFromAPoorEstimate) {
  // Below 1e-35 there is no normal estimate and the search starts at 1.
  const Quantile answer(1e-36, 1e6, 0.5);
  EXPECT_EQ(answer.failure, 0);
  EXPECT_GE(Cdf(1e6, 0.5, answer.k), 1e-36);
  EXPECT_LT(Cdf(1e6, 0.5, answer.k - 1.0), 1e-36);
  // A step of at most 200 is far too short here.
  const Quantile huge(1e-36, 2147483647.0, 0.25);
  EXPECT_EQ(huge.failure, 0);
  EXPECT_GE(Cdf(2147483647.0, 0.25, huge.k), 1e-36);
}

TEST(BinomialQuantile, FailsForBadInput) {
  const Quantile refused[] = {
      Quantile(0.5, 0.5, 0.5),          Quantile(0.5, -3.0, 0.5),     Quantile(0.5, Nan, 0.5),
      Quantile(0.5, 2147483648.0, 0.5), Quantile(0.5, Infinity, 0.5), Quantile(0.5, 10.0, -0.1),
      Quantile(0.5, 10.0, 1.1),         Quantile(0.5, 10.0, Nan),     Quantile(-0.1, 10.0, 0.5),
      Quantile(1.1, 10.0, 0.5),         Quantile(Nan, 10.0, 0.5)};
  for (const Quantile& answer : refused) {
    EXPECT_EQ(answer.k, NumericFailure);
    EXPECT_EQ(answer.failure, 1);
    EXPECT_EQ(answer.actual, UntouchedActual);
  }
  // log(0) lies below any power.
  EXPECT_EQ(Quantile(0.0, 10.0, 0.5).k, 10.0);
  EXPECT_EQ(Quantile(0.5, 10.0, 0.0).k, 0.0);
}

TEST(BinomialProportionForP, AgreesWithTheTruthAsFarAsTheDistributionFunctionDoes) {
  ExpectTruth("BinomialProportionForP",
              [](const auto& in) { return Proportion(in[0], in[1], in[2]).pi; });
}

TEST(BinomialProportionForP, GivesThePrintedLimits) {
  // Clopper, C. J. and Pearson, E. S. (1934). The use of confidence or fiducial limits illustrated
  // in the case of the binomial. Biometrika 26, 404-413: limits of 95 percent, as printed in
  // Pearson and Hartley (1966), Biometrika Tables for Statisticians, 1, Table 41, and textbooks.
  struct Printed {
    double n;
    double x;
    double lower;  // negative: there is none
    double upper;
  };
  constexpr Printed Table[] = {{10, 0, -1, 0.3085},       {10, 1, 0.0025, 0.4450},
                               {10, 5, 0.1871, 0.8129},   {20, 5, 0.0866, 0.4910},
                               {100, 50, 0.3983, 0.6017}, {30, 0, -1, 0.1157}};
  for (const Printed& row : Table) {
    EXPECT_NEAR(Proportion(row.n, 0.025, row.x).pi, row.upper, 5.1e-5) << row.n << " " << row.x;
    if (row.lower >= 0.0) {
      EXPECT_NEAR(Proportion(row.n, 0.975, row.x - 1.0).pi, row.lower, 5.1e-5) << row.n;
    }
  }
}

TEST(BinomialProportionForP, UndoesTheDistributionFunction) {
  for (const double n : {1.0, 4.0, 25.0, 300.0, 7000.0}) {
    for (const double share : {0.0, 0.125, 0.5, 0.875}) {
      const double k = std::floor(share * n);
      for (const double p : {0.005, 0.05, 0.4, 0.9, 0.995}) {
        const Proportion answer(n, p, k);
        EXPECT_EQ(answer.failure, 0) << n << " " << k << " " << p;
        EXPECT_NEAR(Cdf(n, answer.pi, k), p, 1.01e-10) << n << " " << k << " " << p;
      }
    }
  }
}

TEST(BinomialProportionForP, StartsFromTheScoreLimitWithItsLastTermOutsideTheRoot) {
  for (const double n : {12.0, 90.0}) {
    for (const double p : {0.025, 0.75}) {
      const double k = std::floor(n / 3.0);
      const double q = k / n;
      const double z = NormalQuantile(p);
      const double start =
          (q + z * z / (2.0 * n) - z * std::sqrt(q * (1.0 - q) / n) + z * z / (4.0 * n * n)) * n /
          (z * z + n);
      int status = 0;
      int failure = 0;
      EXPECT_EQ(Proportion(n, p, k).pi,
                SolveParameter(k, static_cast<std::int32_t>(n), p, start, status, failure,
                               SearchBinomialProportion, 0));
    }
  }
}

TEST(BinomialProportionForP, StaysAtAStartOfZeroForTheMedianOfNone) {
  for (const double n : {1.0, 10.0, 150000.0}) {
    const Proportion answer(n, 0.5, 0.0);
    EXPECT_EQ(answer.pi, 0.0);
    EXPECT_EQ(answer.failure, 1);
  }
  EXPECT_EQ(Proportion(10.0, 0.4375, 0.0).failure, 0);
}

TEST(BinomialProportionForP, ReportsALargeSizeWhoseStepsEndBeforeItsResidual) {
  // The last step is below 1e-10 while the residual, n times as steep, is not: the value is good
  // all the same.
  struct Row {
    double p;
    double k;
    double residual;
  };
  for (const Row& row : {Row{0.005, 149999.0, 1e-7}, Row{0.025, 149999.0, 1e-9},
                         Row{0.1, 0.0, 1e-9}, Row{0.975, 0.0, 1e-8}, Row{0.5, 2.0, 1e-9}}) {
    const Proportion answer(150000.0, row.p, row.k);
    EXPECT_EQ(answer.failure, 1) << row.p << " " << row.k;
    EXPECT_NE(answer.pi, NumericFailure);
    EXPECT_NEAR(Cdf(150000.0, answer.pi, row.k), row.p, row.residual);
  }
}

TEST(BinomialProportionForP, TakesTheWholePartOfTheSizeForItsSearch) {
  const Proportion answer(10.75, 0.25, 3.0);
  EXPECT_EQ(answer.failure, 0);
  EXPECT_NEAR(Cdf(10.0, answer.pi, 3.0), 0.25, 1.01e-10);
}

TEST(BinomialProportionForP, EndsWhereNoProportionHasTheProbability) {
  // At k = n the distribution function is 1 for every proportion.
  EXPECT_NE(Proportion(10.0, 0.5, 10.0).failure, 0);
  for (const double p : {-0.5, 1.5, 1e300, -Infinity, Infinity}) {
    EXPECT_NE(Proportion(10.0, p, 3.0).failure, 0) << p;
  }
  for (const double p : {0.0, 1.0}) {
    const Proportion answer(10.0, p, 3.0);
    EXPECT_TRUE(answer.failure != 0 || std::fabs(Cdf(10.0, answer.pi, 3.0) - p) < 2e-10) << p;
  }
}

TEST(BinomialProportionForP, FailsForBadInput) {
  const Proportion refused[] = {Proportion(0.5, 0.5, 0.0),      Proportion(-1.0, 0.5, 0.0),
                                Proportion(Nan, 0.5, 0.0),      Proportion(3e9, 0.5, 10.0),
                                Proportion(Infinity, 0.5, 1.0), Proportion(10.0, Nan, 3.0),
                                Proportion(10.0, 0.5, Nan),     Proportion(10.0, 0.5, -1.0),
                                Proportion(10.0, 0.5, 11.0),    Proportion(10.0, 0.5, Infinity)};
  for (const Proportion& answer : refused) {
    EXPECT_EQ(answer.pi, NumericFailure);
    EXPECT_EQ(answer.failure, 1);
  }
}

TEST(RoundProportionToCount, TakesTheNearestCountAndTheLargerInATie) {
  struct Row {
    double proportion;
    double n;
    double count;
  };
  for (const Row& row :
       {Row{0.5, 5, 3}, Row{0.25, 10, 3}, Row{0.6, 4, 2}, Row{0.0, 7, 0}, Row{1.0, 7, 7},
        Row{0.5, 100, 50}, Row{0.334, 3, 1}, Row{0.66, 3, 2}, Row{0.5, 1, 1}, Row{0.49, 1, 0}}) {
    const CountedProportion rounded = RoundProportionToCount(row.proportion, row.n);
    EXPECT_EQ(rounded.count, row.count) << row.proportion << " " << row.n;
    EXPECT_EQ(rounded.proportion, row.count / row.n);
  }
}

TEST(RoundProportionToCount, LeavesAMultipleWhereItIs) {
  for (const double n : {1.0, 8.0, 64.0, 1024.0}) {
    for (double count = 0.0; count <= n; count += 1.0) {
      const CountedProportion rounded = RoundProportionToCount(count / n, n);
      EXPECT_EQ(rounded.count, count);
      EXPECT_EQ(rounded.proportion, count / n);
    }
  }
}

}  // namespace
}  // namespace poweranalysis
