#include "procedures/Survival.h"

#include <gmock/gmock.h>

#include <cmath>
#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>

#include "distributions/Normal.h"
#include "procedures/ProceduresTest.h"
#include "support/TestData.h"

namespace poweranalysis {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class Survival : public ProceduresTest {
 protected:
  double Power(std::int64_t n, const LogRankTest& test) {
    return LogRankPower(n, test, err, events);
  }
  double Power(std::int64_t n, const ExponentialSurvivalTest& test) {
    return HeardOf([&](Refusal& refusal) { return ExponentialSurvivalPower(n, test, refusal); });
  }
  std::int64_t RequiredN(const LogRankTest& test, double goal) {
    return HeardOf(
        [&](Refusal& refusal) { return LogRankRequiredN(test, goal, events, err, refusal); });
  }
  std::int64_t RequiredN(const ExponentialSurvivalTest& test, double goal) {
    return HeardOf(
        [&](Refusal& refusal) { return ExponentialSurvivalRequiredN(test, goal, err, refusal); });
  }
  std::int16_t FollowUpCheck(std::int32_t t, std::int32_t t0) {
    return HeardOf([&](Refusal& refusal) { return poweranalysis::FollowUpCheck(t, t0, refusal); });
  }
  template <class Test>
  void ExpectMissing(const Test& test) {
    events = 5;
    EXPECT_EQ(Power(100, test), NumericFailure);
    err = 0;
    EXPECT_EQ(RequiredN(test, .9), SizeFailure);
    EXPECT_EQ(err, 1);
  }

  int err = 0;
  std::int64_t events = 0;
};

ExponentialSurvivalTest Exponential(double lambda1, double lambda2, double d = 0) {
  return {lambda1, lambda2, d, 10, 9, .05, H0TwoTailed};
}

// --- Log-rank test.

TEST_F(Survival, GivesPowerAndEventsOfALogRankTest) {
  EXPECT_NEAR(Power(100, LogRankTest{.5, .7, .05, H0TwoTailed}), .817720264, 1e-9);
  EXPECT_EQ(err, 0);
  EXPECT_EQ(RequiredN(LogRankTest{.5, .7, .05, H0TwoTailed}, .9), 128);
  EXPECT_EQ(events, 102);
}

TEST_F(Survival, FloorsEventsFromARoundedProduct) {
  // 200 * .4 and 200 * .625 events, the one just below its whole number.
  Power(100, LogRankTest{.5, .7, .05, H0TwoTailed});
  EXPECT_EQ(events, 79);
  Power(100, LogRankTest{.25, .5, .05, H0TwoTailed});
  EXPECT_EQ(events, 124);
  Power(128, LogRankTest{.5, .7, .05, H0TwoTailed});
  EXPECT_EQ(events, 102);
}

TEST_F(Survival, SeesEitherRateAsTheLarger) {
  EXPECT_NEAR(Power(100, LogRankTest{.5, .7, .05, H0TwoTailed}),
              Power(100, LogRankTest{.7, .5, .05, H0TwoTailed}), 1e-12);
}

TEST_F(Survival, LeavesTheNullHypothesisOfALogRankPowerToItsCaller) {
  EXPECT_GT(Power(100, LogRankTest{.7, .5, .05, H0AtMost}), .8);
  EXPECT_THAT(Shown(), IsEmpty());
}

TEST_F(Survival, AsksFormOneForTheLargerRateInGroupTwo) {
  EXPECT_GT(RequiredN(LogRankTest{.5, .7, .05, H0AtMost}, .9), 0);
  EXPECT_EQ(RequiredN(LogRankTest{.7, .5, .05, H0AtMost}, .9), SizeFailure);
  EXPECT_EQ(err, 1);
  EXPECT_EQ(events, SizeFailure);
  EXPECT_THAT(Shown(), ElementsAre(Said::NullHypothesisTrue));
}

TEST_F(Survival, RefusesEqualAndNearlyEqualRates) {
  EXPECT_EQ(RequiredN(LogRankTest{.5, .5, .05, H0TwoTailed}, .9), SizeFailure);
  EXPECT_EQ(RequiredN(LogRankTest{.5, .5009, .05, H0TwoTailed}, .9), SizeFailure);
  EXPECT_EQ(err, 1);
  EXPECT_EQ(events, SizeFailure);
  EXPECT_THAT(Shown(), ElementsAre(Said::NullHypothesisTrue, Said::NullHypothesisNearlyTrue));
  observer.remarks.clear();
  EXPECT_EQ(Power(100, LogRankTest{.5, .5, .05, H0TwoTailed}), NumericFailure);
  EXPECT_EQ(err, 1);
  EXPECT_EQ(events, SizeFailure);
  EXPECT_GT(Power(100, LogRankTest{.5, .5009, .05, H0TwoTailed}), .02);
  EXPECT_THAT(Shown(), IsEmpty());
}

TEST_F(Survival, HasNoHazardRatioAtRatesOfZeroAndOne) {
  for (const double rate : {0., 1.}) {
    ExpectMissing(LogRankTest{rate, .5, .05, H0TwoTailed});
    EXPECT_EQ(events, SizeFailure);
    ExpectMissing(LogRankTest{.5, rate, .05, H0TwoTailed});
  }
  EXPECT_THAT(Shown(), IsEmpty());
}

TEST_F(Survival, HasNoCriticalValueForTheLowerTail) {
  for (const std::int16_t form : {H0AtLeast, std::int16_t{5}}) {
    ExpectMissing(LogRankTest{.7, .5, .05, form});
    EXPECT_EQ(events, SizeFailure);
    ExponentialSurvivalTest exponential = Exponential(.7, .5);
    exponential.form = form;
    ExpectMissing(exponential);
  }
  EXPECT_THAT(Shown(), IsEmpty());
}

TEST_F(Survival, StaysShortOfCertaintyWithAnyNumber) {
  EXPECT_EQ(Power(150000, LogRankTest{.1, .9, .05, H0TwoTailed}), (.999999999999999 + 1) / 2);
  EXPECT_EQ(Power(150000, Exponential(.1, 3)), (.999999999999999 + 1) / 2);
}

TEST_F(Survival, FindsTheFewestPairsOfALogRankTest) {
  for (const double pi1 : {.05, .4, .9}) {
    for (const double pi2 : {.02, .41, .6, .95}) {
      for (const double goal : {.65, .9, .999}) {
        for (const std::int16_t form : {H0TwoTailed, H0AtMost}) {
          const LogRankTest test{std::min(pi1, pi2), std::max(pi1, pi2), .05, form};
          const std::int64_t n = RequiredN(test, goal);
          EXPECT_GE(Power(n, test), goal - 1e-6) << pi1 << ' ' << pi2;
          EXPECT_LT(Power(n - 1, test), goal + 1e-6) << pi1 << ' ' << pi2;
        }
      }
    }
  }
}

// --- Exponential survival.

TEST_F(Survival, IntegratesTheChanceOfAnEventOverTheAccrual) {
  // All enter at once, as nearly as whole periods allow, and none drop out: 1 - exp(-lambda t).
  EXPECT_NEAR(EventProbability(.5, 0, 1e6, 1), 1, 1e-15);
  // Entry over the whole follow-up: 1 - (1 - exp(-2)) / 2.
  EXPECT_NEAR(EventProbability(.5, 0, 4, 4), 1 - (1 - std::exp(-2.)) / 2, 1e-15);
  // Dropouts take their share.
  EXPECT_NEAR(EventProbability(.5, .5, 1e6, 1), .5, 1e-15);
}

TEST_F(Survival, KeepsTheChanceOfARareEvent) {
  // lambda (t - t0 / 2) to first order: the difference of exponentials would be lost.
  for (const double lambda : {1e-6, 1e-9, 1e-15, 1e-30}) {
    EXPECT_NEAR(EventProbability(lambda, 0, 10, 9) / (lambda * 5.5), 1, 20 * lambda) << lambda;
  }
  // The two ways of writing it meet.
  const double below = EventProbability(.99999e-4, 0, 10, 9);
  const double above = EventProbability(1.00001e-4, 0, 10, 9);
  EXPECT_NEAR(above / below, 1.00001 / .99999, 1e-7);
}

TEST_F(Survival, GivesThePowerAndSizeOfExponentialSurvival) {
  EXPECT_NEAR(Power(100, Exponential(.5, .7)), .613554826, 1e-9);
  EXPECT_EQ(RequiredN(Exponential(.5, .7), .9), 208);
  EXPECT_EQ(err, 0);
  EXPECT_NEAR(Power(208, Exponential(.5, .7)), .900246, 1e-6);
  EXPECT_NEAR(Power(207, Exponential(.5, .7)), .898872, 1e-6);
}

TEST_F(Survival, OrdersTheParametersItself) {
  EXPECT_EQ(Power(100, Exponential(.5, .7)), Power(100, Exponential(.7, .5)));
  EXPECT_EQ(RequiredN(Exponential(.5, .7), .9), RequiredN(Exponential(.7, .5), .9));
}

TEST_F(Survival, LosesPowerToDropoutsAndNoneWithoutThem) {
  EXPECT_LT(Power(100, Exponential(.5, .7, .3)), Power(100, Exponential(.5, .7)));
  EXPECT_NEAR(Power(100, Exponential(.5, .7, 1e-12)), Power(100, Exponential(.5, .7)), 1e-9);
}

TEST_F(Survival, AsksFormOneForTheLargerParameterInGroupTwo) {
  ExponentialSurvivalTest test = Exponential(.5, .7);
  test.form = H0AtMost;
  EXPECT_GT(Power(100, test), .7);
  std::swap(test.lambda1, test.lambda2);
  EXPECT_EQ(Power(100, test), NumericFailure);
  EXPECT_EQ(RequiredN(test, .9), SizeFailure);
  EXPECT_EQ(err, 1);
  EXPECT_THAT(Shown(), ElementsAre(Said::NullHypothesisTrue, Said::NullHypothesisTrue));
}

TEST_F(Survival, RefusesASmallGapOnlyInARequiredSize) {
  EXPECT_GT(Power(100, Exponential(.5, .5009)), .02);
  EXPECT_THAT(Shown(), IsEmpty());
  EXPECT_EQ(RequiredN(Exponential(.5, .5009), .9), SizeFailure);
  EXPECT_EQ(err, 1);
  EXPECT_THAT(Shown(), ElementsAre(Said::NullHypothesisNearlyTrue));
}

TEST_F(Survival, AcceptsAFollowUpOfTheAccrualAndNoneShorter) {
  EXPECT_EQ(FollowUpCheck(9, 9), 0);
  ExponentialSurvivalTest test = Exponential(.5, .7);
  test.t = test.t0;
  EXPECT_GT(RequiredN(test, .9), 208);
  EXPECT_THAT(Shown(), IsEmpty());
  test.t = test.t0 - 1;
  EXPECT_EQ(FollowUpCheck(test.t, test.t0), 1);
  EXPECT_THAT(Shown(), ElementsAre(Said::FollowUpTooShort));
  observer.remarks.clear();
  EXPECT_EQ(RequiredN(test, .9), SizeFailure);
  EXPECT_EQ(err, 1);
  EXPECT_THAT(Shown(), ElementsAre(Said::FollowUpTooShort));
  observer.remarks.clear();
  test.lambda2 = test.lambda1;
  EXPECT_EQ(RequiredN(test, .9), SizeFailure);
  EXPECT_THAT(Shown(), ElementsAre(Said::NullHypothesisTrue)) << "one message, the first";
}

TEST_F(Survival, HasNoEventsAtARateOfZero) {
  ExpectMissing(Exponential(0, .7));
  ExpectMissing(Exponential(.5, 0));
  ExpectMissing(Exponential(.5, .7, -.1));
  EXPECT_THAT(Shown(), IsEmpty());
}

TEST_F(Survival, HasNoSizeBeyondTheLargestWholeNumber) {
  EXPECT_EQ(RequiredN(Exponential(.5, .7, 1e30), .9), SizeFailure);
  EXPECT_EQ(err, 1);
  EXPECT_GT(RequiredN(Exponential(.5, .7, 1e6), .9), 100000000);
  EXPECT_EQ(err, 0);
  EXPECT_NEAR(Power(150000, Exponential(.5, .7, 1e30)), .025, 1e-6);
  EXPECT_THAT(Shown(), IsEmpty());
}

TEST_F(Survival, GivesNoPowerThatIsNotANumber) {
  for (const double first : {1e-300, 1e-30, 1e-3, 1., 1e30}) {
    for (const double second : {1e-300, 2e-30, 2e-3, 2., .9e30}) {
      for (const double d : {0., 1e-300, 1., 1e30}) {
        const double power = Power(150000, Exponential(first, second, d));
        EXPECT_TRUE(power == NumericFailure || (power >= 0 && power <= 1))
            << first << ' ' << second << ' ' << d << ": " << power;
        const std::int64_t n = RequiredN(Exponential(first, second, d), .9);
        EXPECT_TRUE(n == SizeFailure || n >= 1) << n;
      }
    }
  }
}

TEST_F(Survival, FindsTheFewestPairsOfExponentialSurvival) {
  for (const double lambda : {.01, .4, 5.}) {
    for (const double ratio : {1.2, 2., 10.}) {
      for (const double d : {0., .2}) {
        for (const double goal : {.65, .9, .999}) {
          for (const std::int16_t form : {H0TwoTailed, H0AtMost}) {
            ExponentialSurvivalTest test = Exponential(lambda, lambda * ratio, d);
            test.form = form;
            const std::int64_t n = RequiredN(test, goal);
            EXPECT_GE(Power(n, test), goal - 1e-6) << lambda << ' ' << ratio;
            EXPECT_LT(Power(n - 1, test), goal + 1e-6) << lambda << ' ' << ratio;
          }
        }
      }
    }
  }
}

// --- Against other computations.

TEST_F(Survival, AgreesWithAnIndependentComputation) {
  std::ifstream file(TestDataDir() + "/survival_power.csv");
  ASSERT_TRUE(file.is_open());
  std::string line;
  int rows[3] = {0, 0, 0};
  while (std::getline(file, line)) {
    if (line.rfind("SA", 0) != 0) {
      continue;
    }
    std::istringstream cells(line.substr(line.find(',') + 1));
    char comma = 0;
    std::int64_t n = 0;
    double expected = 0;
    ExponentialSurvivalTest test;
    cells >> test.lambda1 >> comma >> test.lambda2 >> comma >> test.d >> comma >> test.t >> comma >>
        test.t0 >> comma >> n >> comma >> test.alpha >> comma >> test.form >> comma >> expected;
    ASSERT_FALSE(cells.fail()) << line;
    const double power =
        line[2] == '1' ? Power(n, LogRankTest{test.lambda1, test.lambda2, test.alpha, test.form})
                       : Power(n, test);
    // Seven digits of the normal distribution.
    EXPECT_NEAR(power, expected, 1e-6) << line;
    ++rows[line[2] - '1'];
  }
  EXPECT_THAT(rows, ElementsAre(120, 160, 320));
}

using Json = nlohmann::json;

void ExpectPublished(const Json& published, const char* key, double value) {
  const bool different = published.at("relation") == "different_formula";
  const Json& expected = published.at(different ? "recomputed" : "expected");
  if (!expected.contains(key)) {
    return;
  }
  const Json& tolerance = published.at("tolerance");
  EXPECT_NEAR(value, expected.at(key).get<double>(),
              tolerance.contains(key) ? tolerance.at(key).get<double>() : 1e-6)
      << published.at("id") << ' ' << published.at("source");
}

TEST_F(Survival, AgreesWithPublishedCases) {
  std::ifstream file(TestDataDir() + "/published_survival.json");
  int cases = 0;
  for (const Json& published : Json::parse(file)) {
    ++cases;
    const Json& in = published.at("inputs");
    const bool size = published.at("mode") == "sample_size";
    const double alpha = in.at("Alpha");
    const auto form = in.at("H0Type").get<std::int16_t>();
    const auto check = [&](const auto& test) {
      if (!size) {
        ExpectPublished(published, "power", Power(in.at("SampleSize").get<std::int64_t>(), test));
        return;
      }
      const std::int64_t n = RequiredN(test, in.at("PowerGoal"));
      ExpectPublished(published, "N_per_group", static_cast<double>(n));
      ExpectPublished(published, "N_total", static_cast<double>(2 * n));
      ExpectPublished(published, "power", Power(n, test));
    };
    if (published.at("family") == "SA1") {
      check(LogRankTest{in.at("Pi1"), in.at("Pi2"), alpha, form});
    } else {
      check(ExponentialSurvivalTest{in.at("Lambda1"), in.at("Lambda2"), in.value("D", 0.),
                                    in.at("T"), in.at("T0"), alpha, form});
    }
  }
  EXPECT_EQ(cases, 9);
}

}  // namespace
}  // namespace poweranalysis
