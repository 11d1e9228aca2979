#include "procedures/ModelFit.h"

#include <gmock/gmock.h>

#include <cmath>

#include "distributions/NoncentralChiSquare.h"
#include "procedures/CasesAndTables.h"
#include "procedures/ProceduresTest.h"

namespace poweranalysis {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

void ExpectMissing(const SearchResult& result, int status) {
  EXPECT_EQ(result.requiredSize, SizeFailure);
  EXPECT_EQ(result.actualPower, NumericFailure);
  EXPECT_EQ(result.status, status);
}

ModelFitSizeRequest Asked(double r, double r0, std::int32_t df, double goal, std::int16_t form) {
  return {.r = r, .r0 = r0, .alpha = .05, .powerGoal = goal, .df = df, .form = form};
}

class ModelFitTests : public ProceduresTest {
 protected:
  double PowerOf(
      std::int64_t n, std::int32_t df, double r, double r0, std::int16_t form, double alpha = .05) {
    return HeardOf(
        [&](Refusal& refusal) { return ModelFitPower(n, df, alpha, r, r0, form, err, refusal); });
  }
  SearchResult ModelFitRequiredN(const ModelFitSizeRequest& request) {
    return Heard(poweranalysis::ModelFitRequiredN(request, observer));
  }
  double PowerAt(const ModelFitSizeRequest& r, std::int64_t n) {
    return PowerOf(n, r.df, r.r, r.r0, r.form, r.alpha);
  }

  int err = -1;
};

// --- Power.

TEST_F(ModelFitTests, SubtractsTheLowerTailOfATwoTailedTest) {
  EXPECT_NEAR(PowerOf(100, 20, .08, .05, H0TwoTailed), .1538763, 1e-6);
  EXPECT_NEAR(PowerOf(100, 20, .08, .05, H0AtMost), .2411822, 1e-6);
  int status = 0;
  double density = 0;
  const double under0 = .0025 * 99 * 20;
  const double under1 = .08 * .08 * 99 * 20;
  const double high = NoncentralChiSquareQuantile(under0, 20, .975, status);
  const double low = NoncentralChiSquareQuantile(under0, 20, .025, status);
  const double above = 1 - NoncentralChiSquareCdf(high, 20, under1, density, status);
  const double below = NoncentralChiSquareCdf(low, 20, under1, density, status);
  EXPECT_GT(below, 1e-4);
  EXPECT_NEAR(PowerOf(100, 20, .08, .05, H0TwoTailed), above - below, 1e-12);
}

TEST_F(ModelFitTests, CanHaveANegativePower) {
  EXPECT_NEAR(PowerOf(2, 20, .05, .08, H0TwoTailed), -.001425, 1e-6);
  EXPECT_NEAR(PowerOf(100, 20, .05, .08, H0TwoTailed), -.128108, 1e-6);
  EXPECT_EQ(err, ProcedureOk);
  EXPECT_THAT(Shown(), IsEmpty());
}

TEST_F(ModelFitTests, TakesANullOfExactlyZeroForTheTestOfExactFit) {
  const double exactFit = PowerOf(100, 4, .116, 0, H0Zero);
  EXPECT_NEAR(exactFit, .4208173, 1e-6);
  EXPECT_EQ(PowerOf(100, 4, .116, 0, H0AtMost), exactFit);
  EXPECT_EQ(PowerOf(100, 4, .116, 0, H0TwoTailed), exactFit);
  // With a null above it the form of zero is the one-tailed test of that null.
  EXPECT_EQ(PowerOf(100, 4, .116, .05, H0Zero), PowerOf(100, 4, .116, .05, H0AtMost));
}

TEST_F(ModelFitTests, RefusesATrueNull) {
  for (const std::int16_t form : {H0TwoTailed, H0AtMost, H0AtLeast, H0Zero}) {
    EXPECT_EQ(PowerOf(100, 20, .05, .05, form), NumericFailure);
    EXPECT_EQ(err, 1);
  }
  EXPECT_EQ(PowerOf(100, 20, .05, .08, H0AtMost), NumericFailure);
  EXPECT_EQ(PowerOf(100, 20, .08, .05, H0AtLeast), NumericFailure);
  EXPECT_EQ(PowerOf(100, 20, 0, 0, H0AtMost), NumericFailure);
  EXPECT_THAT(Shown(), ElementsAre(Said::NullHypothesisTrue, Said::NullHypothesisTrue,
                                   Said::NullHypothesisTrue, Said::NullHypothesisTrue,
                                   Said::NullHypothesisTrue, Said::NullHypothesisTrue,
                                   Said::NullHypothesisTrue));
}

TEST_F(ModelFitTests, GivesAlphaWhereAnUnknownFormPassesATrueNull) {
  EXPECT_EQ(PowerOf(100, 20, .05, .05, 7, .125), .125);
  EXPECT_EQ(PowerOf(100, 20, .08, .05, 7), NumericFailure);
  EXPECT_EQ(err, ProcedureFailed);
}

TEST_F(ModelFitTests, HasThePowerAlphaAtOne) {
  EXPECT_NEAR(PowerOf(1, 20, .08, .05, H0AtMost), .05, 1e-6);
  EXPECT_NEAR(PowerOf(1, 20, .05, .08, H0AtLeast), .05, 1e-6);
  EXPECT_NEAR(PowerOf(1, 20, .08, .05, H0TwoTailed), 0, 1e-6);
}

TEST_F(ModelFitTests, HasNoPowerWithoutACriticalValue) {
  // Where the series of the distribution ends too early for a quantile the sum would give 1.
  for (const std::int64_t n : {17000, 17500, 18000, 18400}) {
    EXPECT_EQ(PowerOf(n, 20, .0512, .05, H0AtMost), NumericFailure);
    EXPECT_EQ(err, ProcedureFailed);
    EXPECT_EQ(PowerOf(n, 20, .0512, .05, H0TwoTailed), NumericFailure);
    EXPECT_EQ(err, ProcedureFailed);
  }
  EXPECT_NEAR(PowerOf(18500, 20, .0512, .05, H0AtMost), .179184, 1e-5);
  EXPECT_EQ(err, ProcedureOk);
  EXPECT_THAT(Shown(), IsEmpty());
}

TEST_F(ModelFitTests, TellsOfASumThatEndedTooEarly) {
  EXPECT_NEAR(PowerOf(16300, 20, .0512, .05, H0AtMost), .167655, 1e-5);
  EXPECT_EQ(err, 2);
}

TEST_F(ModelFitTests, TakesACriticalValueThatStayedAtZeroAsItIs) {
  int status = 0;
  ASSERT_EQ(NoncentralChiSquareQuantile(0, 1, .025, status), 0);
  ASSERT_EQ(status, 1);
  EXPECT_EQ(PowerOf(1, 1, .1, .2, H0AtLeast, .025), 0);
  EXPECT_EQ(err, ProcedureOk);
}

TEST_F(ModelFitTests, MultipliesSizeAndDegreesOfFreedomBeyondThirtyTwoBits) {
  const double power = PowerOf(100000000, 5000, .0501, .05, H0AtMost);
  EXPECT_GT(power, .999);
  EXPECT_LE(power, 1);
}

TEST_F(ModelFitTests, KeepsCriticalValuesBitForBit) {
  ModelFitCriticalCache criticals;
  for (const std::int16_t form : {H0TwoTailed, H0AtMost, H0Zero}) {
    for (const double r0 : {0., .05}) {
      for (const std::int64_t n : {100, 200}) {
        for (const double r : {.07, .08}) {
          EXPECT_EQ(HeardOf([&](Refusal& refusal) {
                      return ModelFitPower({n, 20, .05, r0, form}, r, err, refusal, criticals);
                    }),
                    PowerOf(n, 20, r, r0, form));
        }
      }
    }
  }
}

TEST_F(ModelFitTests, AgreesWithTheChiSquareOfAnotherLibrary) {
  const std::vector<DataRow> rows = DataRows("model_fit_power.csv");
  ASSERT_THAT(rows, SizeIs(55));
  for (const DataRow& row : rows) {
    const std::vector<double>& x = row.numbers;
    const auto n = static_cast<std::int64_t>(x[0]);
    const auto df = static_cast<std::int32_t>(x[1]);
    const double power = PowerOf(n, df, x[2], x[3], static_cast<std::int16_t>(x[5]), x[4]);
    // The series ends at 1e-6, one part in a hundred of the smallest alpha, and above a
    // noncentrality of 921 the normal approximation takes over.
    const double delta = std::max(x[2], x[3]) * std::max(x[2], x[3]) * (x[0] - 1) * x[1];
    EXPECT_NEAR(power, x[6], x[4] < .01 || delta > 800 ? 3e-4 : 5e-6) << row.line;
    EXPECT_EQ(err, ProcedureOk) << row.line;
  }
}

// --- Required N.

TEST_F(ModelFitTests, ClimbsInHundredsAndHalvesDown) {
  int trials = 0;
  observer.stop = [&] {
    ++trials;
    return false;
  };
  const SearchResult result = ModelFitRequiredN(Asked(.08, .05, 20, .9, H0AtMost));
  EXPECT_EQ(result.requiredSize, 573);
  EXPECT_NEAR(result.actualPower, .900383, 1e-6);
  EXPECT_EQ(result.actualPower, PowerOf(573, 20, .08, .05, H0AtMost));
  EXPECT_EQ(result.status, ProcedureOk);
  // 100 to 600; 550, 575, 563, 569, 572, 573, and 572 and 573 once more.
  EXPECT_EQ(trials, 6 + 8);
}

TEST_F(ModelFitTests, ReturnsOneMoreWhereTheLeastSizeIsOneOrFiftyOneAboveAHundred) {
  ModelFitSizeRequest request = Asked(.08, .05, 20, .9, H0AtMost);
  std::vector<std::int64_t> oneMore;
  for (std::int64_t least = 401; least <= 600; ++least) {
    request.powerGoal = (PowerAt(request, least - 1) + PowerAt(request, least)) / 2;
    const SearchResult result = ModelFitRequiredN(request);
    EXPECT_EQ(result.actualPower, PowerAt(request, result.requiredSize));
    if (result.requiredSize != least) {
      EXPECT_EQ(result.requiredSize, least + 1);
      oneMore.push_back(least);
    }
  }
  EXPECT_THAT(oneMore, ElementsAre(401, 451, 501, 551));
}

TEST_F(ModelFitTests, WantsMoreThanTheGoalOfAHundredAndTheGoalBelow) {
  ModelFitSizeRequest request = Asked(.08, .05, 20, .9, H0AtMost);
  // Equal at 500: the climb goes on to 600, and 500 is out of reach of the halved steps.
  request.powerGoal = PowerAt(request, 500);
  EXPECT_EQ(ModelFitRequiredN(request).requiredSize, 502);
  request.powerGoal = PowerAt(request, 450);
  EXPECT_EQ(ModelFitRequiredN(request).requiredSize, 450);
}

TEST_F(ModelFitTests, RefusesANullThatIsTrueOrNearlySo) {
  ExpectMissing(ModelFitRequiredN(Asked(.05, .05, 20, .9, H0TwoTailed)), ProcedureFailed);
  ExpectMissing(ModelFitRequiredN(Asked(.05, .08, 20, .9, H0AtMost)), ProcedureFailed);
  ExpectMissing(ModelFitRequiredN(Asked(.0505, .05, 20, .9, H0AtMost)), ProcedureFailed);
  EXPECT_THAT(Shown(), ElementsAre(Said::NullHypothesisTrue, Said::NullHypothesisTrue,
                                   Said::NullHypothesisNearlyTrue));
  EXPECT_EQ(ToleranceIn(2), .001);
}

TEST_F(ModelFitTests, ReachesEverySolvableSize) {
  ModelFitSizeRequest request = Asked(.001, 0, 1, .999, H0AtMost);
  request.alpha = .0001;
  const SearchResult result = ModelFitRequiredN(request);
  EXPECT_EQ(result.status, ProcedureOk);
  EXPECT_GT(result.requiredSize, 48000000);
  EXPECT_LT(result.requiredSize, 49000000);
  EXPECT_THAT(Shown(), IsEmpty());
}

TEST_F(ModelFitTests, GivesUpOnAnUpperTestOfASmallerRmsea) {
  for (const std::int16_t form : {H0TwoTailed, H0Zero}) {
    ExpectMissing(ModelFitRequiredN(Asked(.05, .08, 20, .9, form)), ProcedureFailed);
  }
  EXPECT_THAT(Shown(), ElementsAre(Said::SearchTooLarge, Said::SearchTooLarge));
  EXPECT_EQ(SizeIn(0), 100000000);
  // Its power only falls, so that the first hundred decides.
  for (const std::int64_t n : {100, 200, 1000, 10000, 1000000}) {
    EXPECT_LT(PowerOf(n, 20, .05, .08, H0Zero), .05);
    EXPECT_LE(PowerOf(2 * n, 20, .05, .08, H0Zero), PowerOf(n, 20, .05, .08, H0Zero) + 1e-6);
  }
  // A goal below alpha is met at once.
  ModelFitSizeRequest low = Asked(.05, .052, 5, .1, H0Zero);
  low.alpha = .25;
  EXPECT_EQ(ModelFitRequiredN(low).status, ProcedureOk);
}

TEST_F(ModelFitTests, FailsInSilenceForAFormThatItDoesNotServe) {
  ExpectMissing(ModelFitRequiredN(Asked(.08, .05, 20, .9, 4)), ProcedureFailed);
  ExpectMissing(ModelFitRequiredN(Asked(.08, .05, 20, .9, -1)), ProcedureFailed);
  EXPECT_THAT(Shown(), IsEmpty());
}

class StoppedModelFitTest : public ModelFitTests, public testing::WithParamInterface<int> {};

TEST_P(StoppedModelFitTest, EndsInSilence) {
  int asked = 0;
  observer.stop = [&] { return ++asked == GetParam(); };
  ExpectMissing(ModelFitRequiredN(Asked(.08, .05, 20, .9, H0AtMost)), SearchCancelled);
  EXPECT_EQ(asked, GetParam());
  EXPECT_THAT(Shown(), IsEmpty());
  EXPECT_FALSE(observer.barOpen);
}
// In the climb, and in the halving.
INSTANTIATE_TEST_SUITE_P(Trials, StoppedModelFitTest, testing::Values(1, 6, 7, 14));

// --- Published cases.

TEST_F(ModelFitTests, AgreesWithPublishedCases) {
  const nlohmann::json cases = PublishedCases("published_model_fit.json");
  ASSERT_THAT(cases, SizeIs(10));
  for (const nlohmann::json& published : cases) {
    const nlohmann::json& in = published.at("inputs");
    const std::int16_t form = in.at("H0Type");
    if (published.at("mode") == "power") {
      ExpectAsPublished(published, "power",
                        PowerOf(in.at("SampleSize"), in.at("DegreesOfFreedom"), in.at("R"),
                                in.at("R0"), form, in.at("Alpha")));
      continue;
    }
    ModelFitSizeRequest request =
        Asked(in.at("R"), in.at("R0"), in.at("DegreesOfFreedom"), in.at("PowerGoal"), form);
    request.alpha = in.at("Alpha");
    const SearchResult result = ModelFitRequiredN(request);
    EXPECT_EQ(result.status, ProcedureOk);
    ExpectAsPublished(published, "N", static_cast<double>(result.requiredSize));
  }
}

}  // namespace
}  // namespace poweranalysis
