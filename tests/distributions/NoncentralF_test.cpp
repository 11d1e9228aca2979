#include "distributions/NoncentralF.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <random>
#include <string>

#include "distributions/Beta.h"
#include "distributions/BetaSeries.h"
#include "distributions/Common.h"
#include "distributions/Normal.h"
#include "distributions/SolveParameter.h"
#include "distributions/TruthTable.h"
#include "distributions/reference/NoncentralFReference.h"

namespace poweranalysis {
namespace {

using test::ErrorOf;
using test::ExpectTruth;

constexpr double Infinity = std::numeric_limits<double>::infinity();
constexpr double NaN = std::numeric_limits<double>::quiet_NaN();

// A value and the failure that came with it.
struct Answer {
  double value;
  int failure;
};

Answer Cdf(double f, double df1, double df2, double delta) {
  Answer answer{0.0, 7};
  answer.value = NoncentralFCdf(f, df1, df2, delta, answer.failure);
  return answer;
}

Answer TikuCdf(double f, std::int32_t df1, std::int32_t df2, double delta) {
  Answer answer{0.0, 7};
  answer.value = NoncentralFCdfInt(f, df1, df2, delta, answer.failure, FTiku);
  return answer;
}

Answer Central(double df1, double df2, double p) {
  Answer answer{0.0, 7};
  answer.value = CentralFQuantile(df1, df2, p, answer.failure);
  return answer;
}

Answer Quantile(double delta, double df1, double df2, double p, std::int16_t algorithm = FExact) {
  Answer answer{0.0, 7};
  answer.value = NoncentralFQuantile(delta, df1, df2, p, answer.failure, algorithm);
  return answer;
}

Answer Delta(
    double f, std::int32_t df1, std::int32_t df2, double p, std::int16_t algorithm = FExact) {
  Answer answer{0.0, 7};
  answer.value = NoncentralFDelta(f, df1, df2, p, answer.failure, algorithm);
  return answer;
}

void ExpectFailed(const Answer& answer) {
  EXPECT_EQ(answer.value, NumericFailure);
  EXPECT_EQ(answer.failure, 1);
}

// Truth

TEST(NoncentralFCdf, AgreesWithTheTruthAsFarAsItsStoppingRuleAllows) {
  ExpectTruth("NoncentralFCdf",
              [](const auto& in) { return Cdf(in[0], in[1], in[2], in[3]).value; });
}

TEST(CentralFQuantile, AgreesWithTheTruthAsFarAsItsSearchAllows) {
  ExpectTruth("CentralFQuantile",
              [](const auto& in) { return Central(in[0], in[1], in[2]).value; });
}

TEST(NoncentralFQuantile, AgreesWithTheTruthAsFarAsItsSearchAllows) {
  ExpectTruth("NoncentralFQuantile",
              [](const auto& in) { return Quantile(in[0], in[1], in[2], in[3]).value; });
}

TEST(NoncentralFDelta, AgreesWithTheTruthAsFarAsItsSearchAllows) {
  ExpectTruth("NoncentralFDelta", [](const auto& in) {
    return Delta(in[0], static_cast<std::int32_t>(in[1]), static_cast<std::int32_t>(in[2]), in[3])
        .value;
  });
}

// Against the plain mixture

struct Design {
  double f;
  double df1;
  double df2;
  double delta;
};

// Designs spread evenly over the logarithms, whole and real degrees of freedom in turn.
class Designs {
 public:
  Designs(std::uint64_t seed, double largestDf, double smallestDelta, double largestDelta)
      : generator_(seed),
        largestDf_(largestDf),
        smallestDelta_(smallestDelta),
        largestDelta_(largestDelta) {}

  Design Next() {
    whole_ = !whole_;
    Design design{};
    design.df1 = whole_ ? std::ceil(Between(0.3, 300.0)) : Between(0.3, 2000.0);
    design.df2 = whole_ ? std::ceil(Between(0.3, largestDf_)) : Between(0.3, largestDf_);
    design.delta = Between(smallestDelta_, largestDelta_);
    design.f = (design.df1 + design.delta) / design.df1 * Between(0.05, 6.0);
    return design;
  }

 private:
  double Between(double low, double high) {
    std::uniform_real_distribution<double> share(std::log(low), std::log(high));
    return std::exp(share(generator_));
  }

  std::mt19937_64 generator_;
  double largestDf_;
  double smallestDelta_;
  double largestDelta_;
  bool whole_ = false;
};

double PlainCdf(const Design& design, int& failure) {
  return reference::NoncentralFCdf(design.f, design.df1, design.df2, design.delta, failure);
}

void ExpectWithinTheTwelfthDecimal(Designs designs, int count) {
  for (int i = 0; i < count; ++i) {
    const Design design = designs.Next();
    int failure = 0;
    const double plain = PlainCdf(design, failure);
    const Answer answer = Cdf(design.f, design.df1, design.df2, design.delta);
    EXPECT_EQ(answer.failure, failure);
    EXPECT_NEAR(answer.value, plain, 1e-12)
        << design.f << " " << design.df1 << " " << design.df2 << " " << design.delta;
  }
}

TEST(NoncentralFCdf, EqualsThePlainMixtureToTheTwelfthDecimal) {
  ExpectWithinTheTwelfthDecimal({1, 5000.0, 1e-4, 300.0}, 4000);
}

TEST(NoncentralFCdf, EqualsThePlainMixtureForManyDegreesOfFreedom) {
  ExpectWithinTheTwelfthDecimal({2, 3e5, 1e-4, 300.0}, 1000);
}

TEST(NoncentralFCdf, EqualsThePlainMixtureForALargeDelta) {
  ExpectWithinTheTwelfthDecimal({3, 1000.0, 100.0, 8000.0}, 150);
}

TEST(NoncentralFCdf, EqualsThePlainMixtureBitForBitAboveADeltaOfEightThousand) {
  // The last step rounds coarser there than the two forms may differ.
  Designs designs(4, 1e5, 8001.0, 1e5);
  for (int i = 0; i < 30; ++i) {
    const Design design = designs.Next();
    int failure = 0;
    const double plain = PlainCdf(design, failure);
    EXPECT_EQ(Cdf(design.f, design.df1, design.df2, design.delta).value, plain)
        << design.f << " " << design.df1 << " " << design.df2 << " " << design.delta;
  }
}

TEST(NoncentralFCdf, EndsWithThePlainMixtureWhereTheBoundEndsTheSum) {
  // One term more or less would show: at these deltas the rest is up to 1e-9.
  Designs designs(5, 400.0, 1e-3, 4.0);
  int ended = 0;
  for (int i = 0; i < 3000; ++i) {
    const Design design = designs.Next();
    int failure = 0;
    reference::MixtureTrace trace;
    const double plain =
        reference::NoncentralFCdf(design.f, design.df1, design.df2, design.delta, failure, trace);
    ended += trace.boundEnded ? 1 : 0;
    EXPECT_NEAR(Cdf(design.f, design.df1, design.df2, design.delta).value, plain, 1e-12);
  }
  EXPECT_GT(ended, 2000);
}

TEST(BetaSeries, GivesBetaCdfToTheTwelfthDecimal) {
  for (const double a : {0.25, 0.5, 1.0, 3.5, 12.75, 13.0, 80.0, 500.0, 9990.0}) {
    for (const double b : {0.25, 1.0, 5.0, 30.5, 200.0, 3000.0, 19000.0}) {
      for (const double factor : {0.25, 0.75, 1.0, 1.25, 3.0}) {
        const double x = std::min(factor * a / (a + b), 0.9990234375);
        BetaSeries series(x, a, b);
        for (int j = 0; j < 70; ++j) {
          int failure = 0;
          EXPECT_NEAR(series.Next(), BetaCdf(x, a + j, b, failure), 1e-12)
              << x << " " << a << " " << b << " " << j;
        }
      }
    }
  }
}

TEST(BetaSeries, IsBetaCdfBitForBitWhereTermsAreTakenOneByOne) {
  for (const double x : {0.0, 1.0}) {
    BetaSeries series(x, 2.5, 7.0);
    for (int j = 0; j < 20; ++j) {
      EXPECT_EQ(series.Next(), x);
    }
  }
  BetaSeries large(0.25, 10.0, 30000.0);
  BetaSeries asked(0.25, 10.0, 30.0, BetaSeries::Terms::OneByOne);
  for (int j = 0; j < 20; ++j) {
    int failure = 0;
    EXPECT_EQ(large.Next(), BetaCdf(0.25, 10.0 + j, 30000.0, failure));
    EXPECT_EQ(asked.Next(), BetaCdf(0.25, 10.0 + j, 30.0, failure));
  }
}

TEST(BetaSeries, CrossesFromOneFractionToTheOtherInAnyPlaceOfAGroup) {
  // The fraction changes where (a + j + 1) / (a + b + j + 2) passes x.
  for (int first = 1; first <= 20; ++first) {
    const double a = 2.0;
    const double b = 40.0;
    const double x = (a + first + 0.5) / (a + b + first + 1.5);
    BetaSeries series(x, a, b);
    for (int j = 0; j < 40; ++j) {
      int failure = 0;
      EXPECT_NEAR(series.Next(), BetaCdf(x, a + j, b, failure), 1e-13) << first << " " << j;
    }
    EXPECT_LT(series.Work(), 8 * 8 * 60);
  }
}

// The noncentral beta and F distribution

TEST(NoncentralFCdf, GivesTheAnchor) {
  EXPECT_NEAR(Cdf(3.0, 2.0, 10.0, 5.0).value, 0.472229201, 5e-10);
}

TEST(NoncentralFCdf, IsTheBetaFunctionAtDeltaZero) {
  for (const double f : {0.0, 0.25, 1.0, 3.5, 40.0}) {
    int failure = 0;
    const double x = 1.5 * f / (1.5 * f + 6.0);
    EXPECT_EQ(Cdf(f, 3.0, 12.0, 0.0).value, BetaCdf(x, 1.5, 6.0, failure)) << f;
    EXPECT_EQ(NoncentralBetaCdf(x, 1.5, 6.0, 0.0, failure), BetaCdf(x, 1.5, 6.0, failure));
  }
}

TEST(NoncentralFCdf, IsTheNoncentralBetaAtTheRatio) {
  int failure = 0;
  const double x = 1.5 * 2.0 / (1.5 * 2.0 + 6.0);
  EXPECT_EQ(Cdf(2.0, 3.0, 12.0, 4.0).value, NoncentralBetaCdf(x, 1.5, 6.0, 4.0, failure));
}

TEST(NoncentralFCdf, IsZeroAtZero) {
  for (const double delta : {0.0, 1e-300, 0.5, 10.0, 5000.0}) {
    const Answer answer = Cdf(0.0, 4.0, 10.0, delta);
    EXPECT_EQ(answer.value, 0.0) << delta;
    EXPECT_EQ(answer.failure, 0);
  }
}

TEST(NoncentralFCdf, IsZeroForASmallFAndALargeDelta) {
  for (const double delta : {5000.0, 1e5, 1e9, 1e150, Infinity}) {
    const Answer answer = Cdf(0.01, 2.0, 10.0, delta);
    EXPECT_EQ(answer.value, 0.0) << delta;
    EXPECT_EQ(answer.failure, 0) << delta;
  }
}

TEST(NoncentralFCdf, TakesASmallDeltaToTheCentralValue) {
  const double central = Cdf(2.0, 3.0, 12.0, 0.0).value;
  for (const double delta : {5e-324, 1e-300, 1e-60, 1e-12}) {
    EXPECT_NEAR(Cdf(2.0, 3.0, 12.0, delta).value, central, 1e-12) << delta;
  }
}

TEST(NoncentralFCdf, LeavesARestOfUpToTenToMinusNineForASmallDelta) {
  // Kept: the bound of the rest is tested before the factor exp(-delta / 2), at 1e-9.
  int failure = 0;
  reference::MixtureTrace trace;
  const double value = reference::NoncentralFCdf(1.0, 2.0, 10.0, 0.5, failure, trace);
  EXPECT_TRUE(trace.boundEnded);
  EXPECT_LE(trace.terms, 8);
  EXPECT_NEAR(Cdf(1.0, 2.0, 10.0, 0.5).value, value, 1e-14);
}

TEST(NoncentralFCdf, FailsForDegreesOfFreedomOrDeltaOutOfRange) {
  ExpectFailed(Cdf(1.0, 0.0, 10.0, 1.0));
  ExpectFailed(Cdf(1.0, -1.0, 10.0, 1.0));
  ExpectFailed(Cdf(1.0, 4.0, 0.0, 1.0));
  ExpectFailed(Cdf(1.0, 4.0, -3.0, 0.0));
  ExpectFailed(Cdf(1.0, 4.0, 10.0, -1e-12));
  ExpectFailed(Cdf(1.0, Infinity, 10.0, 1.0));
  ExpectFailed(Cdf(1.0, 4.0, Infinity, 1.0));
}

TEST(NoncentralFCdf, DoesNotTestFSoThatANegativeOneFailsInTheBeta) {
  ExpectFailed(Cdf(-1.0, 4.0, 10.0, 0.0));
  ExpectFailed(Cdf(-1.0, 4.0, 10.0, 3.0));
  ExpectFailed(Cdf(-2.5, 4.0, 10.0, 0.0));
  ExpectFailed(Cdf(-20.0, 4.0, 10.0, 0.0));
  ExpectFailed(Cdf(-Infinity, 4.0, 10.0, 0.0));
}

TEST(NoncentralFCdf, FailsForWhatIsNotANumber) {
  ExpectFailed(Cdf(NaN, 4.0, 10.0, 1.0));
  ExpectFailed(Cdf(1.0, NaN, 10.0, 1.0));
  ExpectFailed(Cdf(1.0, 4.0, NaN, 1.0));
  ExpectFailed(Cdf(1.0, 4.0, 10.0, NaN));
}

TEST(NoncentralFCdf, IsOneWhereFOverflows) {
  for (const double f : {Infinity, 1.7e308}) {
    const Answer answer = Cdf(f, 4.0, 10.0, 3.0);
    EXPECT_EQ(answer.value, 1.0);
    EXPECT_EQ(answer.failure, 0);
  }
}

TEST(NoncentralFCdf, ClearsTheFailureOfItsCaller) {
  EXPECT_EQ(Cdf(1.0, 4.0, 10.0, 1.0).failure, 0);
}

TEST(NoncentralFCdf, FailsAfterAHundredThousandTerms) {
  // L of 2e5, where every beta is near one.
  ExpectFailed(Cdf(1e9, 2.0, 10.0, 4e5));
  EXPECT_EQ(Cdf(1e9, 2.0, 10.0, 1e5).failure, 0);
}

TEST(NoncentralBetaCdf, GivesZeroWithFailureOneWhenTheBoundRunsAway) {
  // Kept: not NumericFailure. The second weight overflows while the first term does not.
  int failure = 0;
  EXPECT_EQ(NoncentralBetaCdf(1e-6, 2.0, 3.0, 1.6e308, failure), 0.0);
  EXPECT_EQ(failure, 1);
  reference::MixtureTrace trace;
  EXPECT_EQ(reference::NoncentralBetaCdf(1e-6, 2.0, 3.0, 1.6e308, failure, trace), 0.0);
  EXPECT_EQ(failure, 1);
}

TEST(NoncentralFCdf, TurnsTheRunawayBoundIntoNumericFailure) {
  ExpectFailed(Cdf(1.5e-6, 4.0, 6.0, 1.6e308));
}

TEST(NoncentralBetaCdf, FailsOutsideItsDomain) {
  const auto fails = [](double x, double a, double b, double delta) {
    Answer answer{0.0, 7};
    answer.value = NoncentralBetaCdf(x, a, b, delta, answer.failure);
    ExpectFailed(answer);
  };
  fails(-0.1, 1.0, 1.0, 1.0);
  fails(1.1, 1.0, 1.0, 0.0);
  fails(NaN, 1.0, 1.0, 1.0);
  fails(0.5, 0.0, 1.0, 1.0);
  fails(0.5, -1e18, 1.0, 1.0);
  fails(0.5, 1.0, NaN, 0.0);
  fails(0.5, 1.0, Infinity, 0.0);
  fails(0.5, 1.0, 1.0, -1.0);
}

TEST(NoncentralFCdf, RisesInFAndFallsInDelta) {
  // By no more than the rest that the stopping rule leaves.
  for (const double df1 : {1.0, 2.0, 7.0, 60.0}) {
    for (const double df2 : {1.0, 5.0, 40.0, 900.0}) {
      for (const double delta : {0.0, 0.5, 3.0, 25.0, 200.0}) {
        double last = 0.0;
        for (double f = 0.125; f < 40.0; f *= 1.25) {
          const double p = Cdf(f, df1, df2, delta).value;
          EXPECT_GE(p, last - 1.2e-9) << f << " " << df1 << " " << df2 << " " << delta;
          last = p;
          EXPECT_LE(Cdf(f, df1, df2, delta * 1.25 + 0.125).value, p + 1.2e-9);
        }
      }
    }
  }
}

// The choice of an algorithm, and Tiku's

TEST(NoncentralFCdfInt, IsTheExactOneForAlgorithmZero) {
  int failure = 7;
  EXPECT_EQ(NoncentralFCdfInt(2.5, 3, 20, 6.0, failure, 0), Cdf(2.5, 3.0, 20.0, 6.0).value);
  EXPECT_EQ(failure, 0);
}

TEST(NoncentralFCdfInt, FailsForAnUnknownAlgorithm) {
  for (const std::int16_t algorithm : {std::int16_t{2}, std::int16_t{-1}, std::int16_t{99}}) {
    Answer answer{0.0, 0};
    answer.value = NoncentralFCdfInt(2.5, 3, 20, 6.0, answer.failure, algorithm);
    ExpectFailed(answer);
  }
}

TEST(NoncentralFCdfInt, ApproximatesByTheCentralDistributionOfThreeMatchedMoments) {
  const double d1 = 4.0;
  const double d2 = 20.0;
  const double delta = 6.0;
  const double K = (d1 + delta) * (d1 + delta) + (d1 + 2.0 * delta) * (d2 - 2.0);
  const double H = 2.0 * std::pow(d1 + delta, 3.0) +
                   3.0 * (d1 + delta) * (d1 + 2.0 * delta) * (d2 - 2.0) +
                   (d1 + 3.0 * delta) * std::pow(d2 - 2.0, 2.0);
  const double ratio = H * H / (H * H - 4.0 * std::pow(K, 3.0));
  const double v = (std::sqrt(ratio) - 1.0) * (d2 - 2.0) / 2.0;
  const double c = H / K * (v / d1) / (2.0 * v + d2 - 2.0);
  const double f = (3.0 + (c - 1.0 - delta / d1) * d2 / (d2 - 2.0)) / c;
  EXPECT_NEAR(TikuCdf(3.0, 4, 20, 6.0).value, Cdf(f, v, d2, 0.0).value, 1e-13);
}

TEST(NoncentralFCdfInt, ApproximatesTheCentralDistributionByItself) {
  for (const double f : {0.25, 1.0, 4.0}) {
    EXPECT_NEAR(TikuCdf(f, 5, 24, 0.0).value, Cdf(f, 5.0, 24.0, 0.0).value, 1e-10) << f;
  }
}

TEST(NoncentralFCdfInt, ApproximationStaysNearTheExactValue) {
  double largest = 0.0;
  Design worst{};
  for (const std::int32_t df1 : {1, 2, 3, 5, 10, 30}) {
    for (const std::int32_t df2 : {3, 4, 6, 10, 20, 60, 200, 1000}) {
      for (const double delta : {0.5, 1.0, 2.0, 5.0, 10.0, 25.0, 60.0}) {
        for (const double factor : {0.25, 0.5, 1.0, 1.5, 2.0, 4.0}) {
          const double f = factor * (df1 + delta) / df1;
          const Answer approximate = TikuCdf(f, df1, df2, delta);
          if (approximate.failure != 0) {
            // The matched distribution starts above zero.
            EXPECT_LT(Cdf(f, df1, df2, delta).value, 0.05);
            continue;
          }
          const double gap = std::fabs(approximate.value - Cdf(f, df1, df2, delta).value);
          if (gap > largest) {
            largest = gap;
            worst = {f, static_cast<double>(df1), static_cast<double>(df2), delta};
          }
        }
      }
    }
  }
  RecordProperty("largest_gap", std::to_string(largest));
  if (std::getenv("TRUTH_VERBOSE") != nullptr) {
    std::printf("largest gap %g at f %g, df %g %g, delta %g\n", largest, worst.f, worst.df1,
                worst.df2, worst.delta);
  }
  EXPECT_LT(largest, 0.05);
  EXPECT_GT(largest, 1e-4);
}

TEST(NoncentralFCdfInt, ApproximationGivesWhatItsFormulaGivesAtFewDegreesOfFreedom) {
  // With df2 2 the formula is 0 times infinity; below, it is what it is.
  ExpectFailed(TikuCdf(3.0, 4, 2, 6.0));
  const Answer one = TikuCdf(3.0, 4, 1, 6.0);
  EXPECT_TRUE(one.failure != 0 ? one.value == NumericFailure : std::isfinite(one.value));
}

// Central quantiles

struct CriticalValue {
  double df1;
  double df2;
  double p;
  double value;
};

// Merrington, M. and Thompson, C. M. (1943). Tables of percentage points of the inverted beta (F)
// distribution. Biometrika 33, 73-88; as reprinted in textbooks of statistics.
constexpr CriticalValue Printed[] = {
    {1, 1, 0.95, 161.4476},  {2, 2, 0.95, 19.0000},  {1, 5, 0.95, 6.6079},
    {1, 10, 0.95, 4.9646},   {2, 10, 0.95, 4.1028},  {3, 10, 0.95, 3.7083},
    {5, 10, 0.95, 3.3258},   {10, 10, 0.95, 2.9782}, {4, 20, 0.95, 2.8661},
    {10, 20, 0.95, 2.3479},  {20, 20, 0.95, 2.1242}, {1, 30, 0.95, 4.1709},
    {3, 60, 0.95, 2.7581},   {2, 120, 0.95, 3.0718}, {60, 120, 0.95, 1.4290},
    {20, 20, 0.975, 2.4645}, {5, 12, 0.975, 3.8911}, {1, 8, 0.975, 7.5709},
    {1, 10, 0.99, 10.044},   {2, 10, 0.99, 7.5594},  {5, 20, 0.99, 4.1027},
    {10, 30, 0.99, 2.9791},  {3, 60, 0.99, 4.1259},  {4, 120, 0.99, 3.4795},
    {6, 15, 0.90, 2.2081},   {3, 12, 0.90, 2.6055},
};

TEST(CentralFQuantile, GivesThePrintedCriticalValues) {
  for (const CriticalValue& row : Printed) {
    // Half a unit of the last printed digit.
    const double unit = row.value > 100.0 ? 1e-4 : row.value >= 10.0 && row.p == 0.99 ? 1e-3 : 1e-4;
    EXPECT_NEAR(Central(row.df1, row.df2, row.p).value, row.value, 0.51 * unit)
        << row.df1 << " " << row.df2 << " " << row.p;
  }
}

TEST(CentralFQuantile, IsRightThoughItsStartIsNotThePublishedOne) {
  EXPECT_NEAR(Central(20.0, 20.0, 0.975).value, 2.46448, 5e-6);
}

// Whether both ends of the first bracket lie where the distribution function is 1 to the last
// digit: the start with its cube and 2 / h, written out.
bool StartsWhereTheFunctionIsOne(double df1, double df2, double p) {
  const double z = NormalQuantile(p);
  const double h = 2.0 / (1.0 / (df1 - 1.0) + 1.0 / (df2 - 1.0));
  const double q = (z * z * z - 3.0) / 6.0;
  const double w = std::sqrt(q + h) * z / h - (q + 5.0 / 6.0 - 2.0 / (3.0 * h)) * (2.0 / h);
  const double start = std::exp(2.0 * w);
  return Cdf(0.99 * start, df1, df2, 0.0).value == Cdf(1.01 * start, df1, df2, 0.0).value;
}

TEST(CentralFQuantile, FailsWhereItsStartIsSoFarOffThatTheFunctionIsOneThere) {
  // Kept: with the cube a small p starts far up. Where the residuals at both ends are equal the
  // upper one moves, away from the root, until the passes are spent.
  EXPECT_TRUE(StartsWhereTheFunctionIsOne(3.75, 150000.0, 0.001));
  ExpectFailed(Central(3.75, 150000.0, 0.001));
  EXPECT_FALSE(StartsWhereTheFunctionIsOne(10.0, 20.0, 0.05));
}

TEST(CentralFQuantile, UndoesTheDistributionFunction) {
  for (const double df1 : {0.5, 1.0, 1.1, 2.0, 3.75, 10.0, 120.0, 5000.0}) {
    for (const double df2 : {0.75, 1.0, 2.0, 4.0, 4.5, 10.0, 120.0, 150000.0}) {
      for (const double p : {0.00005, 0.001, 0.025, 0.05, 0.5, 0.9, 0.95, 0.975, 0.999}) {
        const Answer f = Central(df1, df2, p);
        if (df2 < 1.0 && p > 0.99) {
          continue;  // see the test of large roots below
        }
        if (f.failure != 0) {
          EXPECT_TRUE(StartsWhereTheFunctionIsOne(df1, df2, p)) << df1 << " " << df2 << " " << p;
          continue;
        }
        // To 1e-10 in p, or where the density is large to 1e-10 in f.
        const double low = Cdf(std::max(f.value - 2.1e-10, 0.0), df1, df2, 0.0).value;
        const double high = Cdf(f.value + 2.1e-10, df1, df2, 0.0).value;
        EXPECT_LE(low, p + 1.2e-10) << df1 << " " << df2 << " " << p;
        EXPECT_GE(high, p - 1.2e-10) << df1 << " " << df2 << " " << p;
      }
    }
  }
}

TEST(CentralFQuantile, StartsFromZeroWhereItsStartIsNoNumber) {
  // The cube makes the radicand of the start negative for small p at few degrees of freedom.
  const CriticalValue lowerTails[] = {{2, 2, 0.05, 0.05 / 0.95},
                                      {2, 2, 0.025, 0.025 / 0.975},
                                      {2, 2, 0.00005, 0.00005 / 0.99995},
                                      {2, 150000, 0.00005, 0.0}};
  for (const CriticalValue& row : lowerTails) {
    const Answer f = Central(row.df1, row.df2, row.p);
    EXPECT_EQ(f.failure, 0);
    EXPECT_NEAR(Cdf(f.value, row.df1, row.df2, 0.0).value, row.p, 2.5e-10);
    if (row.value > 0.0) {
      EXPECT_NEAR(f.value, row.value, 1e-9);
    }
  }
  for (const CriticalValue& row : {CriticalValue{5, 5, 0.00005, 0},
                                   {10, 10, 0.00005, 0},
                                   {150000, 2, 0.00005, 0},
                                   {3, 3, 0.01, 0},
                                   {4, 4, 0.005, 0}}) {
    const Answer f = Central(row.df1, row.df2, row.p);
    EXPECT_EQ(f.failure, 0) << row.df1;
    EXPECT_NEAR(Cdf(f.value, row.df1, row.df2, 0.0).value, row.p, 2.5e-10) << row.df1;
  }
}

TEST(CentralFQuantile, MayFailWhereTheRootIsTooLargeForItsTolerance) {
  // Kept: the tolerance is absolute. Near 1e9 a step of 5e-11 does not move the point.
  ExpectFailed(Central(5000.0, 0.75, 0.999));
  EXPECT_GT(Central(5000.0, 0.75, 0.99).value, 1e5);
}

TEST(CentralFQuantile, MirrorsItselfInTheReciprocal) {
  for (const double p : {0.01, 0.2, 0.95}) {
    EXPECT_NEAR(Central(6.0, 17.0, p).value, 1.0 / Central(17.0, 6.0, 1.0 - p).value, 1e-8);
  }
}

TEST(CentralFQuantile, FailsForAPAtOrOutsideZeroAndOne) {
  for (const double p : {0.0, 1.0, -0.5, 1.5, -Infinity, Infinity, NaN}) {
    ExpectFailed(Central(4.0, 10.0, p));
    ExpectFailed(Central(0.5, 0.5, p));
  }
}

TEST(CentralFQuantile, FailsForDegreesOfFreedomOutOfRange) {
  for (const double df : {0.0, -1.0, Infinity, NaN}) {
    ExpectFailed(Central(df, 10.0, 0.5));
    ExpectFailed(Central(4.0, df, 0.5));
  }
}

// Noncentral quantiles

TEST(NoncentralFQuantile, IsTheCentralOneAtDeltaZeroForAnyAlgorithm) {
  for (const std::int16_t algorithm : {std::int16_t{0}, std::int16_t{1}, std::int16_t{5}}) {
    const Answer f = Quantile(0.0, 3.0, 20.0, 0.95, algorithm);
    EXPECT_EQ(f.value, Central(3.0, 20.0, 0.95).value);
    EXPECT_EQ(f.failure, 0);
  }
}

TEST(NoncentralFQuantile, GivesTheUnrefinedApproximationForAlgorithmOne) {
  const Answer f = Quantile(6.0, 4.0, 20.0, 0.75, FTiku);
  EXPECT_EQ(f.failure, 0);
  EXPECT_NEAR(TikuCdf(f.value, 4, 20, 6.0).value, 0.75, 2e-10);
  EXPECT_GT(std::fabs(Cdf(f.value, 4.0, 20.0, 6.0).value - 0.75), 1e-5);
}

TEST(NoncentralFQuantile, UndoesTheDistributionFunction) {
  for (const double df1 : {1.0, 2.5, 6.0, 40.0}) {
    for (const double df2 : {3.0, 4.5, 20.0, 300.0}) {
      for (const double delta : {0.01, 1.0, 8.0, 100.0}) {
        for (const double p : {0.01, 0.05, 0.5, 0.95, 0.999}) {
          const Answer f = Quantile(delta, df1, df2, p);
          ASSERT_EQ(f.failure, 0) << df1 << " " << df2 << " " << delta << " " << p;
          const double low = Cdf(std::max(f.value - 2.1e-10, 0.0), df1, df2, delta).value;
          const double high = Cdf(f.value + 2.1e-10, df1, df2, delta).value;
          EXPECT_LE(low, p + 1.2e-10) << df1 << " " << df2 << " " << delta << " " << p;
          EXPECT_GE(high, p - 1.2e-10) << df1 << " " << df2 << " " << delta << " " << p;
        }
      }
    }
  }
}

TEST(NoncentralFQuantile, BracketsBelowZeroUnlikeTheCentralOne) {
  // Kept: its bracket has no floor. A small p in the lower tail starts at 1e-6 (the approximation
  // is negative), and a point below zero, which fails, counts as far too low.
  const Answer approximate = Quantile(0.5, 1.0, 10.0, 1e-4, FTiku);
  EXPECT_LT(approximate.value, 0.0);
  const Answer f = Quantile(0.5, 1.0, 10.0, 1e-4);
  EXPECT_GE(f.value, 0.0);
  EXPECT_NEAR(Cdf(f.value, 1.0, 10.0, 0.5).value, 1e-4, 1e-6);
}

TEST(NoncentralFQuantile, SolvesWhereTheApproximationHasNoMeaning) {
  // df2 2 makes the formula no number; the search starts at 1e-6 all the same.
  const Answer f = Quantile(3.0, 4.0, 2.0, 0.75);
  EXPECT_EQ(f.failure, 0);
  EXPECT_NEAR(Cdf(f.value, 4.0, 2.0, 3.0).value, 0.75, 1.2e-10);
  ExpectFailed(Quantile(3.0, 4.0, 2.0, 0.75, FTiku));
}

TEST(NoncentralFQuantile, FailsForArgumentsOutOfRange) {
  for (const std::int16_t algorithm : {FExact, FTiku}) {
    ExpectFailed(Quantile(-1.0, 4.0, 10.0, 0.5, algorithm));
    ExpectFailed(Quantile(NaN, 4.0, 10.0, 0.5, algorithm));
    ExpectFailed(Quantile(3.0, 0.0, 10.0, 0.5, algorithm));
    ExpectFailed(Quantile(3.0, 4.0, -10.0, 0.5, algorithm));
    ExpectFailed(Quantile(3.0, 4.0, 10.0, NaN, algorithm));
    ExpectFailed(Quantile(3.0, 4.0, 10.0, 1.0, algorithm));
    ExpectFailed(Quantile(3.0, 4.0, 10.0, 1.5, algorithm));
  }
  ExpectFailed(Quantile(3.0, 4.0, 10.0, 0.0, FTiku));
  ExpectFailed(Quantile(3.0, 4.0, 10.0, -0.5, FTiku));
}

// The noncentrality of a probability

TEST(NoncentralFDelta, UndoesTheDistributionFunction) {
  for (const std::int32_t df1 : {1, 3, 12}) {
    for (const std::int32_t df2 : {10, 60, 500}) {
      for (const double delta : {0.5, 4.0, 30.0, 200.0}) {
        for (const double factor : {0.75, 1.0, 1.5}) {
          const double f = factor * (df1 + delta) / df1;
          const double p = Cdf(f, df1, df2, delta).value;
          const Answer found = Delta(f, df1, df2, p);
          if (found.failure != 0) {
            EXPECT_EQ(found.value, NumericFailure);
            continue;
          }
          EXPECT_NEAR(Cdf(f, df1, df2, found.value).value, p, 1.1e-10);
        }
      }
    }
  }
}

TEST(NoncentralFDelta, UndoesTheApproximationToo) {
  const double f = 3.0;
  const double p = TikuCdf(f, 4, 40, 6.0).value;
  const Answer found = Delta(f, 4, 40, p, FTiku);
  EXPECT_EQ(found.failure, 0);
  EXPECT_NEAR(found.value, 6.0, 1e-7);
}

TEST(NoncentralFDelta, IsZeroForAPAboveTheCentralValue) {
  const double central = Cdf(3.0, 3.0, 20.0, 0.0).value;
  const Answer above = Delta(3.0, 3, 20, std::nextafter(central, 1.0));
  EXPECT_EQ(above.value, 0.0);
  EXPECT_EQ(above.failure, 0);
}

TEST(NoncentralFDelta, SearchesAPOfExactlyTheCentralValue) {
  const double central = Cdf(3.0, 3.0, 20.0, 0.0).value;
  const Answer equal = Delta(3.0, 3, 20, central);
  EXPECT_EQ(equal.failure, 0);
  EXPECT_NE(equal.value, NumericFailure);
  EXPECT_GE(equal.value, 0.0);
  EXPECT_LT(equal.value, 1e-7);
}

TEST(NoncentralFDelta, GivesTheStatusOfASearchThatDidNotSettle) {
  // f = df2 / (df2 - 2) starts at delta zero, where the search ends at once.
  const Answer stuck = Delta(1.25, 1, 10, 0.5);
  EXPECT_EQ(stuck.value, NumericFailure);
  EXPECT_EQ(stuck.failure, 1);
}

TEST(NoncentralFDelta, IsTheSearchOfItsKind) {
  for (const std::int16_t algorithm : {FExact, FTiku}) {
    const double f = 3.0;
    const double start = std::fabs(4.0 * f * (40.0 - 2.0) / 40.0 - 4.0);
    int status = 7;
    int failure = 7;
    const double searched =
        SolveParameter(f, 4, 0.25, start, status, failure,
                       algorithm == FExact ? SearchFDelta : SearchFDeltaApprox, 40);
    const Answer found = Delta(f, 4, 40, 0.25, algorithm);
    EXPECT_EQ(found.value, searched);
    EXPECT_EQ(found.failure, status);
  }
}

TEST(NoncentralFDelta, FailsWhereTheCentralValueCannotBeHad) {
  ExpectFailed(Delta(3.0, 0, 20, 0.5));
  ExpectFailed(Delta(3.0, 3, 0, 0.5));
  ExpectFailed(Delta(3.0, -3, 20, 0.5));
  ExpectFailed(Delta(-3.0, 3, 20, 0.5));
  ExpectFailed(Delta(NaN, 3, 20, 0.5));
  ExpectFailed(Delta(3.0, 3, 20, NaN));
  ExpectFailed(Delta(3.0, 3, 20, 0.5, 2));
}

TEST(NoncentralFDelta, EndsForAPAtOrOutsideZeroAndOne) {
  EXPECT_EQ(Delta(3.0, 3, 20, 1.0).value, 0.0);
  EXPECT_EQ(Delta(3.0, 3, 20, 1.5).value, 0.0);
  EXPECT_EQ(Delta(3.0, 3, 20, Infinity).value, 0.0);
  EXPECT_EQ(Delta(3.0, 3, 20, -0.5).value, NumericFailure);
  EXPECT_EQ(Delta(3.0, 3, 20, -Infinity).value, NumericFailure);
  EXPECT_EQ(Delta(Infinity, 3, 20, 0.5).value, NumericFailure);
  // A delta where the function is within 1e-10 of zero, or a failure.
  const Answer zero = Delta(3.0, 3, 20, 0.0);
  EXPECT_TRUE(zero.value == NumericFailure || Cdf(3.0, 3.0, 20.0, zero.value).value <= 1.1e-10);
}

// Guards

class Stopwatch {
 public:
  double Seconds() const {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start_).count();
  }

 private:
  std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

// Generous, for instrumented builds on a busy machine; a plain build takes a tenth.
constexpr double Patience = 20.0;

TEST(NoncentralF, EndsInTimeForLargeShapesAndDelta) {
  const Stopwatch cdf;
  ExpectFailed(Cdf(1.0, 2e9, 2e9, 1.9e5));
  EXPECT_LT(cdf.Seconds(), Patience);
  const Stopwatch quantile;
  ExpectFailed(Quantile(1.9e5, 2e9, 2e9, 0.95));
  EXPECT_LT(quantile.Seconds(), Patience);
  const Stopwatch delta;
  EXPECT_EQ(Delta(1.0, 2000000000, 2000000000, 1e-4).value, NumericFailure);
  EXPECT_LT(delta.Seconds(), Patience);
}

TEST(NoncentralF, EndsInTimeForArgumentsOfAnyKind) {
  constexpr double Any[] = {-1.0, 1e-30, 50.0, 1e300, NaN};
  for (const double df1 : Any) {
    for (const double df2 : Any) {
      for (const double delta : {5e-324, 20.0, 1e300}) {
        for (const double x : {0.05, 1.0}) {
          const Stopwatch watch;
          Cdf(x, df1, df2, delta);
          Quantile(delta, df1, df2, x);
          Quantile(delta, df1, df2, x, FTiku);
          ASSERT_LT(watch.Seconds(), Patience) << x << " " << df1 << " " << df2 << " " << delta;
        }
      }
    }
  }
}

}  // namespace
}  // namespace poweranalysis
