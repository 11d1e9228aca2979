#include "procedures/SquaredCorrelation.h"

#include <gmock/gmock.h>

#include <cmath>

#include "procedures/CasesAndTables.h"
#include "procedures/ProceduresTest.h"

namespace poweranalysis {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

constexpr std::int16_t kAlgorithms[] = {R2Lee, R2Exact};

void ExpectMissing(const SearchResult& result, int status) {
  EXPECT_EQ(result.requiredSize, SizeFailure);
  EXPECT_EQ(result.actualPower, NumericFailure);
  EXPECT_EQ(result.status, status);
}

SquaredCorrelationSizeRequest Asked(
    double rho2, double c2, std::int32_t k, double goal, std::int16_t form) {
  return {.rho2 = rho2, .c2 = c2, .alpha = .05, .powerGoal = goal, .k = k, .form = form};
}

class SquaredCorrelationTests : public ProceduresTest {
 protected:
  double PowerOf(std::int64_t n,
                 std::int32_t k,
                 double rho2,
                 double c2,
                 std::int16_t form,
                 std::int16_t algorithm = R2Lee,
                 double alpha = .05) {
    return HeardOf([&](Refusal& refusal) {
      return SquaredCorrelationPower(n, k, alpha, rho2, c2, algorithm, form, err, refusal,
                                     observer);
    });
  }
  SearchResult SquaredCorrelationRequiredN(const SquaredCorrelationSizeRequest& request) {
    return Heard(poweranalysis::SquaredCorrelationRequiredN(request, observer));
  }
  double PowerAt(const SquaredCorrelationSizeRequest& r, std::int64_t n) {
    return PowerOf(n, r.k, r.rho2, r.c2, r.form, r.algorithm, r.alpha);
  }

  int err = -1;
};

// --- Power.

TEST_F(SquaredCorrelationTests, AddsTheTailsThatTheFormRejectsIn) {
  const std::int32_t n = 60;
  const std::int32_t k = 4;
  for (const std::int16_t algorithm : kAlgorithms) {
    int failure = 0;
    const auto cdf = [&](double rho2, double c2, std::int16_t form, std::int16_t side) {
      const double c = MultipleR2CriticalValue(n, k, .05, c2, algorithm, form, failure, side);
      return MultipleR2Cdf(rho2, n, k, c, algorithm, failure);
    };
    EXPECT_EQ(PowerOf(n, k, .3, .2, H0TwoTailed, algorithm),
              1 - (cdf(.3, .2, H0TwoTailed, HighSide) - cdf(.3, .2, H0TwoTailed, LowSide)));
    EXPECT_EQ(PowerOf(n, k, .3, .2, H0AtMost, algorithm), 1 - cdf(.3, .2, H0AtMost, HighSide));
    EXPECT_EQ(PowerOf(n, k, .3, 0, H0Zero, algorithm), 1 - cdf(.3, 0, H0Zero, HighSide));
    EXPECT_EQ(PowerOf(n, k, .1, .2, H0AtLeast, algorithm), cdf(.1, .2, H0AtLeast, HighSide));
    EXPECT_EQ(err, ProcedureOk);
  }
  EXPECT_THAT(Shown(), IsEmpty());
}

TEST_F(SquaredCorrelationTests, TakesANullOfExactlyZeroForTheFTest) {
  for (const std::int16_t algorithm : kAlgorithms) {
    const double f = PowerOf(50, 4, .2, 0, H0Zero, algorithm);
    EXPECT_EQ(PowerOf(50, 4, .2, 0, H0TwoTailed, algorithm), f);
    EXPECT_EQ(PowerOf(50, 4, .2, 0, H0AtMost, algorithm), f);
    // The smallest null above it is two-tailed again.
    EXPECT_LT(PowerOf(50, 4, .2, 1e-9, H0TwoTailed, algorithm), f - .01);
  }
}

TEST_F(SquaredCorrelationTests, TestsAgainstTheStoredNullInTheFormOfZero) {
  EXPECT_EQ(PowerOf(60, 4, .5, .3, H0Zero), PowerOf(60, 4, .5, .3, H0AtMost));
}

TEST_F(SquaredCorrelationTests, RefusesATrueNullInEveryForm) {
  for (const std::int16_t form : {H0TwoTailed, H0AtMost, H0AtLeast, H0Zero}) {
    EXPECT_EQ(PowerOf(60, 4, .3, .3, form), NumericFailure);
    EXPECT_EQ(err, ProcedureOk);
  }
  EXPECT_EQ(PowerOf(60, 4, .2, .3, H0AtMost), NumericFailure);
  EXPECT_EQ(PowerOf(60, 4, .4, .3, H0AtLeast), NumericFailure);
  EXPECT_EQ(PowerOf(60, 4, 0, 0, H0AtMost), NumericFailure);
  EXPECT_THAT(Shown(), ElementsAre(Said::NullHypothesisTrue, Said::NullHypothesisTrue,
                                   Said::NullHypothesisTrue, Said::NullHypothesisTrue,
                                   Said::NullHypothesisTrue, Said::NullHypothesisTrue,
                                   Said::NullHypothesisTrue));
}

TEST_F(SquaredCorrelationTests, GivesAlphaWhereAnUnknownFormPassesATrueNull) {
  EXPECT_EQ(PowerOf(60, 4, .3, .3, 7, R2Lee, .125), .125);
  EXPECT_EQ(PowerOf(60, 4, .3, .2, 7), NumericFailure);
  EXPECT_EQ(err, ProcedureFailed);
}

TEST_F(SquaredCorrelationTests, HasNoPowerWithoutDegreesOfFreedomAndSaysNothing) {
  for (const std::int64_t n : {2, 3, 4}) {
    for (const std::int16_t algorithm : kAlgorithms) {
      EXPECT_EQ(PowerOf(n, 4, .5, 0, H0TwoTailed, algorithm), NumericFailure);
      EXPECT_EQ(err, ProcedureOk);
    }
  }
  EXPECT_GT(PowerOf(5, 4, .5, 0, H0TwoTailed), 0);
  EXPECT_THAT(Shown(), IsEmpty());
}

TEST_F(SquaredCorrelationTests, MakesAFailedDistributionAFailedPower) {
  // Neither algorithm: the distribution gives -1, which would make a power of 2.
  for (const std::int16_t form : {H0TwoTailed, H0AtMost, H0Zero}) {
    EXPECT_EQ(PowerOf(60, 4, .5, .3, form, 2), NumericFailure);
    EXPECT_EQ(err, ProcedureFailed);
  }
  EXPECT_EQ(PowerOf(60, 4, .2, .3, H0AtLeast, 2), NumericFailure);
  EXPECT_EQ(err, ProcedureFailed);
  EXPECT_EQ(PowerOf(60, 4, .5, .3, H0AtMost, R2Exact, 0), NumericFailure);
  EXPECT_EQ(err, ProcedureFailed);
}

TEST_F(SquaredCorrelationTests, StopsALongSeriesWhenTheUserAsks) {
  observer.stop = [] { return true; };
  EXPECT_EQ(PowerOf(150000, 3, .9, .8, H0TwoTailed, R2Exact), NumericFailure);
  EXPECT_EQ(err, 2);
  EXPECT_THAT(Shown(), IsEmpty());
}

TEST_F(SquaredCorrelationTests, KeepsCriticalValuesBitForBit) {
  SquaredCorrelationCriticalCache criticals;
  for (const std::int16_t form : {H0TwoTailed, H0AtMost}) {
    for (const double c2 : {0., .1}) {
      for (const std::int64_t n : {40, 41}) {
        for (const double rho2 : {.2, .3}) {
          EXPECT_EQ(HeardOf([&](Refusal& refusal) {
                      return SquaredCorrelationPower({n, 4, .05, c2, R2Exact, form}, rho2, err,
                                                     refusal, criticals, observer);
                    }),
                    PowerOf(n, 4, rho2, c2, form, R2Exact));
        }
      }
    }
  }
}

TEST_F(SquaredCorrelationTests, AgreesWithSumsOfTheMixture) {
  const std::vector<DataRow> rows = DataRows("squared_correlation_power.csv");
  ASSERT_THAT(rows, SizeIs(98));
  for (const DataRow& row : rows) {
    const std::vector<double>& x = row.numbers;
    const auto form = static_cast<std::int16_t>(x[5]);
    const auto algorithm = static_cast<std::int16_t>(x[6]);
    const double power = PowerOf(static_cast<std::int64_t>(x[2]), static_cast<std::int32_t>(x[3]),
                                 x[0], x[1], form, algorithm, x[4]);
    // A quantile is good to 1e-7, one part in a thousand of the smallest alpha.
    EXPECT_NEAR(power, x[7], x[4] < .001 ? 1e-4 : 5e-6) << row.line;
    EXPECT_EQ(err, ProcedureOk) << row.line;
  }
}

TEST_F(SquaredCorrelationTests, ApproximatesTheExactPower) {
  for (const double rho2 : {.05, .2, .5, .8}) {
    for (const double c2 : {0., .1, .3, .7}) {
      for (const std::int64_t n : {20, 60, 300}) {
        if (std::fabs(rho2 - c2) < .01) {
          continue;
        }
        EXPECT_NEAR(PowerOf(n, 5, rho2, c2, H0TwoTailed, R2Lee),
                    PowerOf(n, 5, rho2, c2, H0TwoTailed, R2Exact), .005)
            << rho2 << ' ' << c2 << ' ' << n;
      }
    }
  }
}

// --- Required N.

TEST_F(SquaredCorrelationTests, RefusesAnEffectBelowAFiveHundredthThoughItHasAPower) {
  EXPECT_GT(PowerOf(100, 4, .24, .2, H0TwoTailed), .05);
  EXPECT_THAT(Shown(), IsEmpty());
  ExpectMissing(SquaredCorrelationRequiredN(Asked(.24, .2, 4, .9, H0TwoTailed)), SearchTooLarge);
  EXPECT_THAT(Shown(), ElementsAre(Said::NullHypothesisNearlyTrue));
  EXPECT_EQ(ToleranceIn(0), .05);
  EXPECT_EQ(SquaredCorrelationRequiredN(Asked(.05, 0, 4, .9, H0TwoTailed)).status, SearchOk);
}

TEST_F(SquaredCorrelationTests, RefusesATrueNullInASearch) {
  ExpectMissing(SquaredCorrelationRequiredN(Asked(.3, .3, 4, .9, H0Zero)), SearchTooLarge);
  ExpectMissing(SquaredCorrelationRequiredN(Asked(.2, .4, 4, .9, H0AtMost)), SearchTooLarge);
  EXPECT_THAT(Shown(), ElementsAre(Said::NullHypothesisTrue, Said::NullHypothesisTrue));
}

TEST_F(SquaredCorrelationTests, ReturnsTheSmallestSizeAtOnceWhenItIsEnough) {
  SquaredCorrelationSizeRequest request = Asked(.9, 0, 2, .65, H0Zero);
  request.alpha = .25;
  const SearchResult result = SquaredCorrelationRequiredN(request);
  EXPECT_EQ(result.requiredSize, 4);
  EXPECT_EQ(result.actualPower, PowerAt(request, 4));
}

TEST_F(SquaredCorrelationTests, CanEndAFewAboveTheLeastSize) {
  // The halvings of the bracket drop remainders.
  const SquaredCorrelationSizeRequest two = Asked(.1, 0, 8, .7, H0Zero);
  const SearchResult result = SquaredCorrelationRequiredN(two);
  EXPECT_EQ(result.requiredSize, 118);
  EXPECT_GE(PowerAt(two, 116), .7);
  EXPECT_LT(PowerAt(two, 115), .7);
  EXPECT_EQ(result.actualPower, PowerAt(two, 118));
}

TEST_F(SquaredCorrelationTests, ReachesTheGoalWithinAFewSizesOverAGrid) {
  int exact = 0;
  for (const std::int16_t algorithm : kAlgorithms) {
    for (const double rho2 : {.1, .3, .6, .9}) {
      for (const std::int32_t k : {2, 5, 30}) {
        for (const double goal : {.65, .9, .999}) {
          for (const double c2 : {0., .2, .75}) {
            SquaredCorrelationSizeRequest request =
                Asked(rho2, c2, k, goal, rho2 < c2 ? H0AtLeast : H0TwoTailed);
            request.algorithm = algorithm;
            const SearchResult result = SquaredCorrelationRequiredN(request);
            ASSERT_EQ(result.status, SearchOk) << rho2 << ' ' << c2;
            EXPECT_EQ(result.actualPower, PowerAt(request, result.requiredSize));
            EXPECT_GE(result.actualPower, goal);
            std::int64_t least = result.requiredSize;
            while (least > k + 2 && PowerAt(request, least - 1) >= goal) {
              --least;
            }
            EXPECT_LE(result.requiredSize - least, 5);
            exact += least == result.requiredSize ? 1 : 0;
          }
        }
      }
    }
  }
  EXPECT_GT(exact, 150);
  EXPECT_THAT(Shown(), IsEmpty());
}

TEST_F(SquaredCorrelationTests, GivesUpInSilenceOnAnUpperTestOfASmallerCorrelation) {
  for (const std::int16_t algorithm : kAlgorithms) {
    for (const std::int32_t k : {2, 200}) {
      SquaredCorrelationSizeRequest request = Asked(.2, .5, k, .9, H0Zero);
      request.algorithm = algorithm;
      ExpectMissing(SquaredCorrelationRequiredN(request), SearchTooLarge);
    }
  }
  EXPECT_THAT(Shown(), IsEmpty());
}

TEST_F(SquaredCorrelationTests, GivesUpInSilenceWithoutADistribution) {
  SquaredCorrelationSizeRequest request = Asked(.5, .2, 4, .9, H0TwoTailed);
  request.algorithm = 2;
  ExpectMissing(SquaredCorrelationRequiredN(request), SearchTooLarge);
  ExpectMissing(SquaredCorrelationRequiredN(Asked(.5, .2, 4, .9, 7)), SearchTooLarge);
  EXPECT_THAT(Shown(), IsEmpty());
}

TEST_F(SquaredCorrelationTests, ShowsItsBarAndObeysACancellation) {
  SquaredCorrelationSizeRequest request = Asked(.2, .1, 4, .9, H0TwoTailed);
  observer.showsBar = true;
  EXPECT_EQ(SquaredCorrelationRequiredN(request).status, SearchOk);
  EXPECT_GT(observer.positions.size(), 5U);
  EXPECT_FALSE(observer.barOpen);
  int asked = 0;
  observer.stop = [&] { return ++asked == 3; };
  ExpectMissing(SquaredCorrelationRequiredN(request), SearchCancelled);
  EXPECT_FALSE(observer.barOpen);
  EXPECT_THAT(Shown(), IsEmpty());
}

TEST_F(SquaredCorrelationTests, ObeysACancellationInsideAnEvaluation) {
  // A break that is asked for once, in the middle of a series of some hundred thousand terms.
  SquaredCorrelationSizeRequest request = Asked(.9999, .9, 200, .999, H0TwoTailed);
  request.algorithm = R2Exact;
  int asked = 0;
  observer.stop = [&] { return ++asked == 1; };
  ExpectMissing(SquaredCorrelationRequiredN(request), SearchCancelled);
  EXPECT_THAT(Shown(), IsEmpty());
}

// --- Published cases.

TEST_F(SquaredCorrelationTests, AgreesWithPublishedCases) {
  const nlohmann::json cases = PublishedCases("published_squared_correlation.json");
  ASSERT_THAT(cases, SizeIs(3));
  for (const nlohmann::json& published : cases) {
    const nlohmann::json& in = published.at("inputs");
    const std::int16_t form = in.at("H0Type");
    if (published.at("mode") == "power") {
      ExpectAsPublished(
          published, "power",
          PowerOf(in.at("SampleSize"), in.at("TotalNumberOfVars"), in.at("PopulationR2"),
                  in.at("R2Null"), form, in.at("Algorithm"), in.at("Alpha")));
      continue;
    }
    SquaredCorrelationSizeRequest request =
        Asked(in.at("PopulationR2"), in.at("R2Null"), in.at("TotalNumberOfVars"),
              in.at("PowerGoal"), form);
    request.alpha = in.at("Alpha");
    request.algorithm = in.at("Algorithm");
    const SearchResult result = SquaredCorrelationRequiredN(request);
    EXPECT_EQ(result.status, SearchOk);
    ExpectAsPublished(published, "N", static_cast<double>(result.requiredSize));
    ExpectAsPublished(published, "power", result.actualPower);
  }
}

}  // namespace
}  // namespace poweranalysis
