#include "distributions/NoncentralChiSquare.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstdint>
#include <limits>
#include <thread>
#include <vector>

#include "distributions/Common.h"
#include "distributions/Normal.h"
#include "distributions/SolveParameter.h"
#include "distributions/TruthTable.h"
#include "distributions/reference/NoncentralChiSquareReference.h"

namespace poweranalysis {
namespace {

using test::ErrorOf;
using test::ExpectTruth;

constexpr double Infinity = std::numeric_limits<double>::infinity();
constexpr double Nan = std::numeric_limits<double>::quiet_NaN();
constexpr int Untouched = 7;

struct Cdf {
  double p = 0.0;
  double density = 77.0;
  int failure = Untouched;

  Cdf(double x, std::int32_t df, double delta) {
    p = NoncentralChiSquareCdf(x, df, delta, density, failure);
  }
};

Cdf Plain(double x, std::int32_t df, double delta) {
  Cdf result(-1.0, df, delta);
  result.failure = Untouched;
  result.p = reference::NoncentralChiSquareCdf(x, df, delta, result.density, result.failure);
  return result;
}

double P(double x, std::int32_t df, double delta) { return Cdf(x, df, delta).p; }

double Quantile(double delta, std::int32_t df, double p) {
  int status = Untouched;
  const double x = NoncentralChiSquareQuantile(delta, df, p, status);
  EXPECT_EQ(status, 0) << delta << " " << df << " " << p;
  return x;
}

// x so many standard deviations from the mean, not below a sixteenth of the mean.
double At(std::int32_t df, double delta, double deviations) {
  const double mean = df + delta;
  return std::max(mean + deviations * std::sqrt(2.0 * (mean + delta)), mean / 16.0);
}

// The largest delta whose exp(-delta / 2) is above 1e-200.
double LastOfTheSeries() {
  double delta = 921.0340371976183;
  while (std::exp(-delta / 2.0) <= 1e-200) {
    delta = std::nextafter(delta, 0.0);
  }
  while (std::exp(-std::nextafter(delta, Infinity) / 2.0) > 1e-200) {
    delta = std::nextafter(delta, Infinity);
  }
  return delta;
}

TEST(NoncentralChiSquareCdf, AgreesWithTheTruthAsFarAsItsTruncationAllows) {
  ExpectTruth("NoncentralChiSquareCdf",
              [](const auto& in) { return P(in[0], static_cast<std::int32_t>(in[1]), in[2]); });
}

TEST(NoncentralChiSquareCdf, GivesTheAnchor) { EXPECT_NEAR(P(20.0, 10, 5.0), 0.801701997, 1e-9); }

TEST(NoncentralChiSquareCdf, GivesThePrintedCentralCriticalValues) {
  // Pearson, E. S. and Hartley, H. O. (1966). Biometrika Tables for Statisticians, 1, Table 8.
  struct Printed {
    std::int32_t df;
    double upper;  // probability above the value
    double x;
    double step;  // half of the last digit printed
  };
  constexpr Printed Table[] = {
      {1, 0.05, 3.84146, 5e-6},   {1, 0.01, 6.63490, 5e-6},   {2, 0.05, 5.99146, 5e-6},
      {2, 0.01, 9.21034, 5e-6},   {4, 0.05, 9.48773, 5e-6},   {5, 0.05, 11.0705, 5e-5},
      {10, 0.05, 18.3070, 5e-5},  {10, 0.01, 23.2093, 5e-5},  {10, 0.95, 3.94030, 5e-6},
      {10, 0.99, 2.55821, 5e-6},  {20, 0.05, 31.4104, 5e-5},  {20, 0.01, 37.5662, 5e-5},
      {20, 0.95, 10.8508, 5e-5},  {20, 0.99, 8.26040, 5e-6},  {30, 0.05, 43.7730, 5e-5},
      {30, 0.01, 50.8922, 5e-5},  {30, 0.95, 18.4927, 5e-5},  {30, 0.99, 14.9535, 5e-5},
      {100, 0.05, 124.342, 5e-4}, {100, 0.01, 135.807, 5e-4}, {100, 0.95, 77.9295, 5e-5},
      {100, 0.99, 70.0649, 5e-5},
  };
  for (const Printed& row : Table) {
    EXPECT_NEAR(Quantile(0.0, row.df, 1.0 - row.upper), row.x, 1.02 * row.step) << row.df;
  }
}

TEST(NoncentralChiSquareCdf, GivesThePrintedNoncentralitiesOfPower) {
  // Haynam, G. E., Govindarajulu, Z. and Leone, F. C. (1970). Tables of the cumulative non-central
  // chi-square distribution. Selected Tables in Mathematical Statistics 1, 1-78: the delta at which
  // a test of size .05 has the power.
  struct Printed {
    std::int32_t df;
    double power;
    double delta;
  };
  constexpr Printed Table[] = {{1, 0.80, 7.849},  {2, 0.80, 9.635},  {3, 0.80, 10.903},
                               {4, 0.80, 11.935}, {5, 0.80, 12.828}, {10, 0.80, 16.241},
                               {1, 0.90, 10.507}, {2, 0.90, 12.654}, {3, 0.90, 14.171},
                               {4, 0.90, 15.405}, {5, 0.90, 16.470}};
  for (const Printed& row : Table) {
    int word = Untouched;
    const double critical = Quantile(0.0, row.df, 0.95);
    EXPECT_NEAR(NoncentralChiSquareDelta(critical, row.df, 1.0 - row.power, word), row.delta, 6e-4)
        << row.df << " " << row.power;
    EXPECT_EQ(word, 0);
  }
}

TEST(NoncentralChiSquareCdf, GivesZeroWithADensityOfMinusOneOutOfRange) {
  for (const Cdf& result : {Cdf(-1.0, 10, 5.0), Cdf(3.0, 10, -1e-300), Cdf(-1e-300, 0, 0.0)}) {
    EXPECT_EQ(result.p, 0.0);
    EXPECT_EQ(result.density, -1.0);
    EXPECT_EQ(result.failure, 1);
  }
}

TEST(NoncentralChiSquareCdf, RefusesWhatIsNoNumberAndDegreesOfFreedomOutOfRange) {
  constexpr std::int32_t Most = std::numeric_limits<std::int32_t>::max();
  constexpr std::int32_t Least = std::numeric_limits<std::int32_t>::min();
  const Cdf refused[] = {
      Cdf(Nan, 5, 1.0),      Cdf(1.0, 5, Nan),       Cdf(1.0, 5, Infinity),
      Cdf(Infinity, 5, Nan), Cdf(1.0, -1, 1.0),      Cdf(1.0, Least, 1.0),
      Cdf(1.0, Most, 1.0),   Cdf(-Infinity, 5, 1.0), Cdf(1.0, LargestChiSquareDf + 1, 1.0)};
  for (const Cdf& result : refused) {
    EXPECT_EQ(result.p, 0.0);
    EXPECT_EQ(result.density, -1.0);
    EXPECT_EQ(result.failure, 1);
  }
}

TEST(NoncentralChiSquareCdf, IsZeroAtZeroWithAnyDegreeOfFreedom) {
  for (const double delta : {0.0, 3.0, 2000.0}) {
    const Cdf result(0.0, 1, delta);
    EXPECT_EQ(result.p, 0.0);
    EXPECT_EQ(result.density, 0.0);
    EXPECT_EQ(result.failure, 0);
  }
}

TEST(NoncentralChiSquareCdf, CountsThePointMassAtZeroWithoutDegreesOfFreedom) {
  for (const double delta : {0.5, 2.0, 30.0}) {
    const Cdf result(0.0, 0, delta);
    EXPECT_LE(ErrorOf(result.p, std::exp(-delta / 2.0)), 1e-15);
    EXPECT_EQ(result.failure, 0);
    // T is 1 there, so that the density of the rest is L u / 2.
    EXPECT_LE(ErrorOf(result.density, 0.25 * delta * std::exp(-delta / 2.0)), 1e-15);
  }
  EXPECT_EQ(P(0.0, 0, 0.0), 1.0);
}

TEST(NoncentralChiSquareCdf, IsOneAtInfinity) {
  for (const double delta : {0.0, 5.0, 5000.0}) {
    const Cdf result(Infinity, 3, delta);
    EXPECT_EQ(result.p, 1.0);
    EXPECT_EQ(result.density, 0.0);
    EXPECT_EQ(result.failure, 0);
  }
}

TEST(NoncentralChiSquareCdf, EndsAtOnceForAnyFiniteX) {
  for (const double x : {1e4, 1e9, 1e100, std::numeric_limits<double>::max()}) {
    for (const std::int32_t df : {0, 1, 2, 1001}) {
      EXPECT_NEAR(P(x, df, 10.0), 1.0, 1.1e-6) << x << " " << df;
    }
  }
  EXPECT_EQ(P(1e-300, LargestChiSquareDf, 1.0), 0.0);
  EXPECT_NEAR(P(LargestChiSquareDf, LargestChiSquareDf, 0.0), 0.5, 1e-3);
}

TEST(NoncentralChiSquareCdf, IsTheCentralFunctionAtDeltaZero) {
  // Two degrees of freedom: 1 - exp(-x / 2). Four: the second term of the recurrence.
  for (const double x : {0.125, 1.0, 6.0, 40.0}) {
    const double e = std::exp(-x / 2.0);
    EXPECT_NEAR(P(x, 2, 0.0), 1.0 - e, 1e-16);
    EXPECT_NEAR(P(x, 4, 0.0), 1.0 - e - e * x / 2.0, 1e-15);
    EXPECT_NEAR(Cdf(x, 2, 0.0).density, e / 2.0, 1e-16);
    EXPECT_NEAR(Cdf(x, 4, 0.0).density, e * x / 4.0, 1e-16);
    EXPECT_NEAR(P(x, 1, 0.0), 1.0 - 2.0 * (1.0 - NormalCdf(std::sqrt(x))), 1e-16);
  }
}

TEST(NoncentralChiSquareCdf, GivesTheSlopeOfTheSeriesAsItsDensity) {
  for (const std::int32_t df : {1, 2, 5, 20, 101}) {
    for (const double delta : {0.0, 1.0, 10.0, 100.0}) {
      const double x = At(df, delta, 0.5);
      const double h = 1e-4 * x;
      const double slope = (P(x + h, df, delta) - P(x - h, df, delta)) / (2.0 * h);
      EXPECT_NEAR(Cdf(x, df, delta).density, slope, 2e-5) << df << " " << delta;
    }
  }
}

TEST(NoncentralChiSquareCdf, StaysASmallProbabilityForOddDegreesOfFreedomAndATinyX) {
  // The density of one degree of freedom is unbounded at 0.
  for (const double x : {1e-4, 1e-12, 1e-40, 1e-200, 5e-324}) {
    const Cdf one(x, 1, 3.0);
    EXPECT_GE(one.p, 0.0);
    EXPECT_LT(one.p, std::sqrt(x));
    EXPECT_GT(one.density, 1.0);
    EXPECT_EQ(one.failure, 0);
    EXPECT_LT(P(x, 3, 3.0), x);
  }
}

TEST(NoncentralChiSquareCdf, LeavesFailureAsItStoodInTheApproximation) {
  const Cdf result(1000.0, 10, 950.0);
  EXPECT_NEAR(result.p, 0.74426, 5e-6);
  EXPECT_EQ(result.failure, Untouched);
  // The density of the deviate and not of x.
  EXPECT_NEAR(result.density, 0.3216, 5e-5);
}

TEST(NoncentralChiSquareCdf, TakesTheApproximationFromAWeightOfTenToTheMinusTwoHundredOn) {
  const double last = LastOfTheSeries();
  const double next = std::nextafter(last, Infinity);
  ASSERT_LE(std::exp(-next / 2.0), 1e-200);
  EXPECT_NE(Cdf(800.0, 10, last).failure, Untouched);
  EXPECT_EQ(Cdf(800.0, 10, next).failure, Untouched);
  EXPECT_LT(Cdf(800.0, 10, last).density, 0.001);
  EXPECT_GT(Cdf(800.0, 10, next).density, 0.001);
}

TEST(NoncentralChiSquareCdf, EqualsThePlainApproximationBitForBit) {
  for (const std::int32_t df : {0, 1, 2, 30, 5000}) {
    for (const double delta : {921.5, 1000.0, 4e4, 1e9, 1e60}) {
      for (const double deviations : {-4.0, -1.0, 0.0, 2.5, 9.0}) {
        const double x = At(df, delta, deviations);
        const Cdf ours(x, df, delta);
        const Cdf plain = Plain(x, df, delta);
        EXPECT_EQ(ours.p, plain.p) << x << " " << df << " " << delta;
        EXPECT_EQ(ours.density, plain.density);
        EXPECT_EQ(ours.failure, Untouched);
      }
    }
  }
}

TEST(NoncentralChiSquareCdf, RefusesADeltaAtWhichTheApproximationOverflows) {
  const Cdf result(1e200, 5, 1e200);
  EXPECT_EQ(result.p, 0.0);
  EXPECT_EQ(result.density, -1.0);
  EXPECT_EQ(result.failure, 1);
}

TEST(NoncentralChiSquareCdf, EndsItsSumAMillionthShort) {
  // The true .95 point at one degree of freedom and delta 600.
  const double p = P(683.2865852060422, 1, 600.0);
  EXPECT_NEAR(p, 0.9499994, 5e-8);
  EXPECT_LT(p, 0.95);
}

TEST(NoncentralChiSquareCdf, ReportsFiveHundredTermsThatDoNotSuffice) {
  const Cdf result(980.0, 1, 900.0);
  EXPECT_EQ(result.failure, 2);
  EXPECT_GT(result.p, 0.5);
  EXPECT_LT(result.p, 1.0);
  EXPECT_GT(result.density, 0.0);
  EXPECT_EQ(result.failure, Plain(980.0, 1, 900.0).failure);
  // In the lower tail the sum ends at once.
  EXPECT_EQ(Cdf(300.0, 1, 900.0).failure, 0);
}

TEST(NoncentralChiSquareCdf, ConvergesUpToADeltaOfAboutEightHundred) {
  for (const std::int32_t df : {1, 20, 100}) {
    EXPECT_EQ(Cdf(At(df, 800.0, 2.0), df, 800.0).failure, 0) << df;
    EXPECT_EQ(Cdf(At(df, 830.0, 2.0), df, 830.0).failure, 2) << df;
  }
}

TEST(NoncentralChiSquareCdf, EqualsThePlainSeriesBitForBitWhereTheStepwiseFormStands) {
  int compared = 0;
  for (const double delta : {0.0, 0.5, 6.0, 90.0, 700.0}) {
    for (const double x : {0.0, 1e-35, 0.25, 8.0, 120.0, 3000.0}) {
      const Cdf ours(x, 0, delta);
      const Cdf plain = Plain(x, 0, delta);
      EXPECT_EQ(ours.p, plain.p) << x << " " << delta;
      EXPECT_EQ(ours.density, plain.density);
      EXPECT_EQ(ours.failure, plain.failure);
      ++compared;
    }
    for (const std::int32_t df : {1, 2, 9, 40}) {
      for (const double x : {1e-31, 1e-60, 1e-300}) {
        EXPECT_EQ(P(x, df, delta), Plain(x, df, delta).p);
        EXPECT_EQ(Cdf(x, df, delta).density, Plain(x, df, delta).density);
      }
    }
  }
  EXPECT_EQ(compared, 30);
}

// The largest difference from the plain series over a grid; every failure word has to agree.
double LargestDifference(const std::vector<std::int32_t>& dfs, const std::vector<double>& deltas) {
  double largest = 0.0;
  for (const std::int32_t df : dfs) {
    for (const double delta : deltas) {
      for (double deviations = -7.0; deviations <= 9.0; deviations += 0.4375) {
        const double x = At(df, delta, deviations);
        const Cdf ours(x, df, delta);
        const Cdf plain = Plain(x, df, delta);
        EXPECT_EQ(ours.failure, plain.failure) << x << " " << df << " " << delta;
        EXPECT_NEAR(ours.density, plain.density, 1e-12);
        largest = std::max(largest, std::fabs(ours.p - plain.p));
      }
    }
  }
  return largest;
}

TEST(NoncentralChiSquareCdf, AgreesWithThePlainSeriesToTwelveDigits) {
  EXPECT_LT(LargestDifference({1, 2, 3, 4, 9, 10, 11, 12, 33, 90}, {0.0, 0.01, 1.0, 7.0, 40.0}),
            1e-13);
  EXPECT_LT(LargestDifference({1, 2, 5, 64, 301}, {75.0, 150.0, 333.0, 600.0, 790.0, 915.0}),
            1e-12);
  EXPECT_LT(LargestDifference({700, 1001, 1200}, {0.0, 3.0, 50.0, 160.0}), 1e-12);
}

TEST(NoncentralChiSquareCdf, AgreesWithThePlainSeriesWhereTheLogarithmsStay) {
  EXPECT_LT(LargestDifference({1450, 2000, 5001}, {0.0, 20.0, 500.0}), 1e-12);
}

TEST(NoncentralChiSquareCdf, RisesInXWithinItsTruncation) {
  for (const std::int32_t df : {0, 1, 2, 7, 60, 400}) {
    for (const double delta : {0.0, 2.0, 50.0, 400.0, 1000.0}) {
      const double step = 0.05 * std::sqrt(2.0 * (df + 2.0 * delta) + 1.0);
      for (double x = step; x < df + delta + 120.0 * step; x += step) {
        EXPECT_LE(P(x, df, delta), P(x + step, df, delta) + 1.01e-6) << x << " " << df;
      }
    }
  }
}

TEST(NoncentralChiSquareCdf, FallsInDeltaWithinItsTruncation) {
  for (const std::int32_t df : {1, 2, 7, 60}) {
    for (const double x : {0.5, 10.0, 80.0, 400.0}) {
      for (double delta = 0.0; delta < 780.0; delta += 3.25) {
        EXPECT_GE(P(x, df, delta), P(x, df, delta + 3.25) - 1.01e-6) << x << " " << df;
      }
    }
  }
}

TEST(NoncentralChiSquareCdf, LiesCloseToItsOwnApproximation) {
  double largest = 0.0;
  for (const std::int32_t df : {1, 2, 5, 20, 100, 500}) {
    for (const double delta : {300.0, 450.0, 600.0, 790.0}) {
      for (double deviations = -4.0; deviations <= 5.0; deviations += 0.125) {
        const double x = At(df, delta, deviations);
        double density = 0.0;
        const double gap = P(x, df, delta) - reference::SankaranCdf(x, df, delta, density);
        largest = std::max(largest, std::fabs(gap));
      }
    }
  }
  ::testing::Test::RecordProperty("largest_gap", std::to_string(largest * 1e6) + "e-6");
  EXPECT_LT(largest, 3e-5);
  EXPECT_GT(largest, 1e-6);
}

TEST(NoncentralChiSquareCdf, GivesTheSameOnManyThreadsAtOnce) {
  const auto value = [](int i) { return P(5.0 + i, 1 + i % 40, 3.0 * i); };
  std::vector<double> alone;
  for (int i = 0; i < 200; ++i) {
    alone.push_back(value(i));
  }
  std::atomic<int> differences{0};
  std::vector<std::thread> threads;
  for (int thread = 0; thread < 4; ++thread) {
    threads.emplace_back([&] {
      for (int i = 199; i >= 0; --i) {
        differences += value(i) == alone[static_cast<std::size_t>(i)] ? 0 : 1;
      }
    });
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
  EXPECT_EQ(differences.load(), 0);
}

TEST(NoncentralChiSquareQuantile, AgreesWithTheTruthAsFarAsTheDistributionFunctionDoes) {
  ExpectTruth("NoncentralChiSquareQuantile", [](const auto& in) {
    int status = 0;
    return NoncentralChiSquareQuantile(in[0], static_cast<std::int32_t>(in[1]), in[2], status);
  });
}

TEST(NoncentralChiSquareQuantile, UndoesTheDistributionFunction) {
  for (const std::int32_t df : {4, 5, 12, 63, 700}) {
    for (const double delta : {0.0, 1.5, 30.0, 300.0, 950.0}) {
      for (const double p : {0.01, 0.25, 0.5, 0.9, 0.999}) {
        int status = Untouched;
        const double x = NoncentralChiSquareQuantile(delta, df, p, status);
        // The sum can step over p where it ends a term earlier; the search then says so.
        EXPECT_NEAR(P(x, df, delta), p, status == 0 ? 1.01e-10 : 1.1e-6) << df << " " << delta;
      }
    }
  }
}

TEST(NoncentralChiSquareQuantile, StaysAtAStartThatWasCutOffAtZero) {
  struct Row {
    std::int32_t df;
    double p;
  };
  for (const Row& row : {Row{1, 0.025}, Row{1, 0.0494}, Row{2, 0.0037}, Row{3, 0.0003}}) {
    int status = Untouched;
    EXPECT_EQ(NoncentralChiSquareQuantile(0.0, row.df, row.p, status), 0.0) << row.df;
    EXPECT_EQ(status, 1);
  }
  EXPECT_GT(Quantile(0.0, 1, 0.06), 0.0);
  EXPECT_GT(Quantile(0.0, 2, 0.0039), 0.0);
  EXPECT_GT(Quantile(0.0, 3, 0.0004), 0.0);
}

TEST(NoncentralChiSquareQuantile, ShowsAFailedEvaluationAsNumericFailureAlone) {
  for (const double delta : {850.0, 900.0, -1.0, Nan, Infinity}) {
    int status = Untouched;
    EXPECT_EQ(NoncentralChiSquareQuantile(delta, 20, 0.95, status), NumericFailure) << delta;
    EXPECT_EQ(status, 0);
  }
}

TEST(NoncentralChiSquareQuantile, EndsForAProbabilityThatHasNoQuantile) {
  for (const double p : {-1.0, 1.0, 1.5, Infinity, -Infinity}) {
    int status = 0;
    const double x = NoncentralChiSquareQuantile(2.0, 5, p, status);
    EXPECT_TRUE(x == NumericFailure || status != 0) << p << " gives " << x;
  }
  int status = 0;
  EXPECT_EQ(NoncentralChiSquareQuantile(2.0, 5, Nan, status), NumericFailure);
  // Zero is the quantile of 0.
  EXPECT_EQ(NoncentralChiSquareQuantile(2.0, 5, 0.0, status), 0.0);
  EXPECT_EQ(status, 0);
}

TEST(NoncentralChiSquareQuantile, EndsWithoutDegreesOfFreedom) {
  int status = 0;
  EXPECT_EQ(NoncentralChiSquareQuantile(0.0, 0, 0.5, status), 0.0);
  EXPECT_EQ(status, 1);
  EXPECT_EQ(NoncentralChiSquareQuantile(1.0, -3, 0.5, status), NumericFailure);
  const double x = NoncentralChiSquareQuantile(6.0, 0, 0.75, status);
  EXPECT_EQ(status, 0);
  EXPECT_NEAR(P(x, 0, 6.0), 0.75, 1.01e-10);
}

double Delta(double x, std::int32_t df, double p) {
  int word = Untouched;
  const double delta = NoncentralChiSquareDelta(x, df, p, word);
  EXPECT_EQ(word, 0) << x << " " << df << " " << p;
  return delta;
}

TEST(NoncentralChiSquareDelta, AgreesWithTheTruthAsFarAsTheDistributionFunctionDoes) {
  ExpectTruth("NoncentralChiSquareDelta", [](const auto& in) {
    int word = 0;
    return NoncentralChiSquareDelta(in[0], static_cast<std::int32_t>(in[1]), in[2], word);
  });
}

TEST(NoncentralChiSquareDelta, UndoesTheDistributionFunction) {
  for (const std::int32_t df : {1, 2, 6, 31, 400}) {
    for (const double deviations : {1.0, 3.0, 10.0}) {
      const double x = At(df, 0.0, deviations);
      for (const double p : {0.01, 0.05, 0.25, 0.4375}) {
        if (p > 0.9 * P(x, df, 0.0)) {
          continue;
        }
        int word = Untouched;
        const double delta = NoncentralChiSquareDelta(x, df, p, word);
        EXPECT_GE(delta, 0.0);
        EXPECT_NEAR(P(x, df, delta), p, word == 0 ? 1.01e-10 : 1.1e-6) << x << " " << df;
      }
    }
  }
}

TEST(NoncentralChiSquareDelta, SaysWithNineThousandNineHundredNinetyNineThatThereIsNone) {
  int word = Untouched;
  EXPECT_EQ(NoncentralChiSquareDelta(1.0, 20, 0.95, word), NumericFailure);
  EXPECT_EQ(word, NoSuchChiSquareDelta);
  EXPECT_EQ(NoSuchChiSquareDelta, 9999);
  word = Untouched;
  const double r = P(8.0, 20, 0.0);
  EXPECT_EQ(NoncentralChiSquareDelta(8.0, 20, std::nextafter(r, 1.0), word), NumericFailure);
  EXPECT_EQ(word, NoSuchChiSquareDelta);
}

TEST(NoncentralChiSquareDelta, IsZeroForTheCentralProbabilityItself) {
  for (const std::int32_t df : {1, 2, 20}) {
    EXPECT_EQ(Delta(12.5, df, P(12.5, df, 0.0)), 0.0);
    EXPECT_EQ(Delta(12.5, df, P(12.5, df, 0.0) - 9e-11), 0.0);
  }
}

TEST(NoncentralChiSquareDelta, StartsFromANegativeRadicandAsFromZero) {
  // One to seven degrees of freedom and a chi-square that is just significant, upper p: then
  // 4 (d0 - s z) + 2 df is negative.
  for (std::int32_t df = 1; df <= 7; ++df) {
    const double x = Quantile(0.0, df, 0.951);
    const double z = NormalQuantile(0.95);
    const double d0 = x - df;
    ASSERT_LT(4.0 * (d0 - std::sqrt(4.0 * d0 + 2.0 * df) * z) + 2.0 * df, 0.0) << df;
    int word = Untouched;
    const double delta = NoncentralChiSquareDelta(x, df, 0.95, word);
    EXPECT_FALSE(std::isnan(delta));
    EXPECT_TRUE(delta == NumericFailure || std::fabs(P(x, df, delta) - 0.95) < 2e-10) << df;
  }
}

TEST(NoncentralChiSquareDelta, StartsFromOneForAMedianAboveTheDegreesOfFreedom) {
  // Both steps of the normal approximation stand still there, and without a slope the start is 0.
  // The distribution function is flat at 1 for a large x, and the search runs away.
  const double near = Delta(3.0, 2, 0.5);
  EXPECT_NEAR(P(3.0, 2, near), 0.5, 1.01e-10);
  int word = Untouched;
  int expectedWord = Untouched;
  int failure = 0;
  const double far = NoncentralChiSquareDelta(22.0, 2, 0.5, word);
  EXPECT_EQ(far, SolveParameter(22.0, 2, 0.5, 0.0, expectedWord, failure, SearchChiSquareDelta, 0));
  EXPECT_EQ(word, expectedWord);
  EXPECT_NE(word, 0);
  EXPECT_NEAR(P(22.0, 2, Delta(22.0, 2, 0.5000001)), 0.5, 2e-7);
}

TEST(NoncentralChiSquareDelta, FailsWhereAStepOfTheSearchLeavesTheDomain) {
  // The search starts at 1 and has no floor: a root close to 0 is overshot.
  const double x = 2.5;
  const double p = P(x, 1, 0.05);
  int word = Untouched;
  EXPECT_EQ(NoncentralChiSquareDelta(x, 1, p, word), NumericFailure);
  EXPECT_EQ(word, 0) << "the failure of an evaluation stays inside";
}

TEST(NoncentralChiSquareDelta, EndsForBadInput) {
  struct Row {
    double x;
    std::int32_t df;
    double p;
  };
  const Row rows[] = {{Nan, 5, 0.5},  {Infinity, 5, 0.5},  {3.0, 5, Nan},
                      {3.0, -1, 0.5}, {-Infinity, 5, 0.5}, {3.0, LargestChiSquareDf + 1, 0.5}};
  for (const Row& row : rows) {
    int word = Untouched;
    EXPECT_EQ(NoncentralChiSquareDelta(row.x, row.df, row.p, word), NumericFailure);
    EXPECT_EQ(word, 1);
  }
  // A negative x has probability 0 at any delta, and no delta reaches 1.
  for (const Row& row : {Row{-2.0, 5, 0.5}, Row{3.0, 5, 1.0}, Row{3.0, 5, 2.0}}) {
    int word = Untouched;
    EXPECT_EQ(NoncentralChiSquareDelta(row.x, row.df, row.p, word), NumericFailure);
    EXPECT_EQ(word, NoSuchChiSquareDelta);
  }
  for (const double p : {0.0, -1.0, -Infinity}) {
    int word = Untouched;
    EXPECT_FALSE(std::isnan(NoncentralChiSquareDelta(3.0, 5, p, word))) << p;
  }
}

TEST(NoncentralChiSquareDelta, EndsWithoutDegreesOfFreedom) {
  int word = Untouched;
  const double delta = NoncentralChiSquareDelta(6.0, 0, 0.5, word);
  EXPECT_EQ(word, 0);
  EXPECT_NEAR(P(6.0, 0, delta), 0.5, 1.01e-10);
  EXPECT_FALSE(std::isnan(NoncentralChiSquareDelta(0.0, 0, 0.5, word)));
}

}  // namespace
}  // namespace poweranalysis
