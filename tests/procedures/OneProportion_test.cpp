#include "procedures/OneProportion.h"

#include <gmock/gmock.h>

#include <cmath>
#include <fstream>
#include <functional>
#include <nlohmann/json.hpp>
#include <set>
#include <sstream>

#include "distributions/Binomial.h"
#include "distributions/Normal.h"
#include "procedures/ProceduresTest.h"
#include "support/TestData.h"

namespace poweranalysis {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr std::int16_t kForms[] = {H0TwoTailed, H0AtMost, H0AtLeast};
constexpr std::int16_t kCheckNull = 1;
constexpr std::int16_t kNoCheck = 0;

class OneProportionTestCase : public ProceduresTest {
 protected:
  double Power(std::int64_t n, const OneProportionTest& test, std::int16_t algorithm) {
    return Power(n, test, algorithm, kNoCheck);
  }
  double Power(std::int64_t n,
               const OneProportionTest& test,
               std::int16_t algorithm,
               std::int16_t checkNull) {
    return HeardOf([&](Refusal& refusal) {
      return OneProportionPower(n, test, err, algorithm, checkNull, refusal);
    });
  }
  std::int64_t RequiredN(double goal, const OneProportionTest& test, std::int16_t algorithm) {
    return HeardOf([&](Refusal& refusal) {
      return OneProportionRequiredN(goal, test, err, algorithm, refusal, observer);
    });
  }

  int err = 0;
};
using OneProportion = OneProportionTestCase;

// --- Critical values.

TEST_F(OneProportion, GivesTheNormalQuantileOfTheSideMovedAndScaled) {
  EXPECT_EQ(ZCritical(.05, 0, 1, H0TwoTailed, err, UpperSide), NormalQuantile(.975));
  EXPECT_EQ(ZCritical(.05, 0, 1, H0TwoTailed, err, LowerSide), NormalQuantile(.025));
  EXPECT_EQ(ZCritical(.05, 0, 1, H0AtMost, err, UpperSide), NormalQuantile(.95));
  EXPECT_EQ(ZCritical(.05, 0, 1, H0AtLeast, err, LowerSide), NormalQuantile(.05));
  EXPECT_EQ(ZCritical(.05, 50, 5, H0TwoTailed, err, UpperSide), NormalQuantile(.975) * 5 + 50);
  EXPECT_EQ(err, 0);
}

TEST_F(OneProportion, HasNoCriticalValueOnASideThatTheFormDoesNotRejectOn) {
  struct Case {
    std::int16_t form;
    std::int16_t side;
  };
  for (const Case& c : {Case{H0AtMost, LowerSide}, Case{H0AtLeast, UpperSide}, Case{H0TwoTailed, 2},
                        Case{H0Zero, UpperSide}, Case{H0Zero, LowerSide}, Case{-1, UpperSide}}) {
    err = 0;
    EXPECT_EQ(ZCritical(.05, 0, 1, c.form, err, c.side), NumericFailure);
    EXPECT_EQ(err, 1);
    err = 0;
    EXPECT_EQ(ProportionCriticalValue(20, .05, .5, c.form, err, c.side, ProportionExact),
              NumericFailure);
    EXPECT_EQ(err, 1);
  }
  err = 7;
  ZCritical(.05, 0, 1, H0TwoTailed, err, UpperSide);
  EXPECT_EQ(err, 0) << "cleared on entry";
}

TEST_F(OneProportion, RoundsACriticalCountOutwardsForTheExactTestAlone) {
  const auto count = [&](std::int16_t side, std::int16_t algorithm) {
    return ProportionCriticalValue(100, .05, .5, H0TwoTailed, err, side, algorithm);
  };
  EXPECT_NEAR(count(UpperSide, ProportionNormal), 59.79982, 1e-5);
  EXPECT_NEAR(count(LowerSide, ProportionNormal), 40.20018, 1e-5);
  EXPECT_EQ(count(UpperSide, ProportionExact), 60);
  EXPECT_EQ(count(LowerSide, ProportionExact), 40);
}

// --- Power.

TEST_F(OneProportion, RejectsAtTheCriticalCountsAndBeyond) {
  const OneProportionTest test{.6, .5, .05, H0TwoTailed};
  int failure = 0;
  const double upper = 1 - BinomialCdf(100, .6, 59, failure);
  const double lower = BinomialCdf(100, .6, 40, failure);
  EXPECT_NEAR(Power(100, test, ProportionExact), upper + lower, 1e-15);
  EXPECT_NEAR(Power(100, {.6, .5, .025, H0AtMost}, ProportionExact), upper, 1e-15);
  EXPECT_NEAR(Power(100, {.6, .5, .025, H0AtLeast}, ProportionExact), lower, 1e-15);
}

TEST_F(OneProportion, HasNoPowerWithoutATrial) {
  for (const std::int64_t n : {0, -1, -9999}) {
    EXPECT_EQ(Power(n, {.5, .5, .05, H0TwoTailed}, ProportionExact, kCheckNull), 0);
    EXPECT_EQ(err, 0);
  }
  EXPECT_THAT(Shown(), IsEmpty()) << "asked before the null hypothesis";
}

TEST_F(OneProportion, GivesTheActualAlphaAtTheNullProportion) {
  const OneProportionTest test{.65, .65, .05, H0AtMost};
  EXPECT_NEAR(Power(20, test, ProportionExact), .0443756034, 1e-9);
  EXPECT_NEAR(Power(20, test, ProportionNormal), .05, 1e-7);
  EXPECT_THAT(Shown(), IsEmpty());
}

TEST_F(OneProportion, RefusesATrueNullOnlyWhenAskedTo) {
  const OneProportionTest test{.5, .5, .05, H0TwoTailed};
  EXPECT_EQ(Power(100, test, ProportionExact, kCheckNull), NumericFailure);
  EXPECT_EQ(err, 1);
  EXPECT_THAT(Shown(), ElementsAre(Said::NullHypothesisTrue));
  observer.remarks.clear();
  // A gap below the tolerance of the size is no obstacle to a power.
  EXPECT_GT(Power(100, {.50001, .5, .05, H0TwoTailed}, ProportionExact, kCheckNull), 0);
  EXPECT_EQ(err, 0);
  EXPECT_THAT(Shown(), IsEmpty());
}

TEST_F(OneProportion, HasNoPowerForAFormWithoutARejectionRegion) {
  for (const std::int16_t form : {H0Zero, std::int16_t{-1}, std::int16_t{4}}) {
    EXPECT_EQ(Power(100, {.7, .5, .05, form}, ProportionExact), NumericFailure);
    EXPECT_EQ(err, 1);
    EXPECT_EQ(RequiredN(.9, {.7, .5, .05, form}, ProportionExact), SizeFailure);
    EXPECT_EQ(err, 1);
  }
}

TEST_F(OneProportion, CountsAProportionWithoutVarianceAtItsMean) {
  // Every trial succeeds: 10 or none, on either side of the critical counts and on them.
  EXPECT_EQ(Power(10, {1, .5, .05, H0TwoTailed}, ProportionNormal), 1);
  EXPECT_EQ(Power(10, {1, .5, .05, H0AtLeast}, ProportionNormal), 0);
  EXPECT_EQ(Power(10, {0, .5, .05, H0TwoTailed}, ProportionNormal), 1);
  EXPECT_EQ(Power(10, {0, .5, .05, H0AtMost}, ProportionNormal), 0);
  EXPECT_EQ(Power(2, {1, .5, .05, H0TwoTailed}, ProportionNormal), 0);
  for (const std::int16_t form : kForms) {
    EXPECT_EQ(Power(10, {1, 1, .05, form}, ProportionNormal), 1);
    EXPECT_EQ(Power(10, {0, 0, .05, form}, ProportionNormal), 1);
  }
}

TEST_F(OneProportion, RejectsAllCountsWhenTheNullHasNoVarianceAndNotMore) {
  EXPECT_EQ(Power(10, {.2, 0, .05, H0TwoTailed}, ProportionExact), 1);
  EXPECT_EQ(Power(10, {.2, 1, .05, H0TwoTailed}, ProportionExact), 1);
  EXPECT_EQ(Power(10, {.2, 0, .05, H0AtMost}, ProportionExact), 1);
  EXPECT_EQ(RequiredN(.9, {.2, 0, .05, H0AtMost}, ProportionExact), 1);
}

TEST_F(OneProportion, HasASawtoothForAnExactPower) {
  const OneProportionTest test{.75, .5, .05, H0TwoTailed};
  EXPECT_NEAR(Power(36, test, ProportionExact), .9077930228, 1e-9);
  EXPECT_NEAR(Power(39, test, ProportionExact), .9138463934, 1e-9);
  EXPECT_NEAR(Power(41, test, ProportionExact), .9333641746, 1e-9);
  for (const std::int64_t n : {35, 37, 38, 40}) {
    EXPECT_LT(Power(n, test, ProportionExact), .9) << n;
  }
}

// --- The search, on power functions of its own.

// The numbers of `powers` at 1, 2, ... and the last one from there on.
Script Of(std::vector<double> powers) {
  return Script([powers](std::int64_t n) {
    return powers[static_cast<std::size_t>(
                      std::min<std::int64_t>(n, static_cast<std::int64_t>(powers.size()))) -
                  1];
  });
}

class SawtoothSearchTest : public ProceduresTest {
 protected:
  SearchResult Search(const SawtoothRequest& request, Script& script) {
    const auto powerAt = [&script](std::int64_t n) { return script(n); };
    return Heard(SawtoothSearch(request, powerAt, observer).Run());
  }
  SearchResult Search(Script& script, double start, double goal = .9) {
    return Search({.powerGoal = goal, .start = start}, script);
  }
};

TEST_F(SawtoothSearchTest, EndsItsWalkBelowAtAToothThatRisesAndFallsShort) {
  Script script = Of({.0, .95, .89, .88, .91});
  const SearchResult result = Search(script, 5);
  EXPECT_EQ(result.requiredSize, 5) << "and not 2, beyond the tooth at 3";
  EXPECT_EQ(result.actualPower, .91);
  EXPECT_EQ(result.status, SearchOk);
}

TEST_F(SawtoothSearchTest, TakesEveryToothThatReachesTheGoalOnItsWalkBelow) {
  Script script = Of({.1, .92, .86, .91, .88, .90, .87, .95});
  const SearchResult result = Search(script, 8);
  EXPECT_EQ(result.requiredSize, 2);
  EXPECT_EQ(result.actualPower, .92);
}

TEST_F(SawtoothSearchTest, WalksOnWhileTheToothFalls) {
  Script script = Of({.1, .92, .86, .86, .87, .88, .91});
  EXPECT_EQ(Search(script, 7).requiredSize, 2) << "equal powers are no rise";
  Script risen = Of({.1, .92, .865, .86, .87, .88, .91});
  EXPECT_EQ(Search(risen, 7).requiredSize, 7);
}

TEST_F(SawtoothSearchTest, WalksUpByOneAndAcceptsEquality) {
  Script script = Of({.1, .2, .3, .4, .5, .6, .7, .8, .89, .9, .95});
  const SearchResult result = Search(script, 6);
  EXPECT_EQ(result.requiredSize, 10);
  EXPECT_EQ(result.actualPower, .9);
}

TEST_F(SawtoothSearchTest, AcceptsOneAndNeverLess) {
  Script script([](std::int64_t) { return .99; });
  const SearchResult result = Search(script, 12);
  EXPECT_EQ(result.requiredSize, 1);
  for (const std::int64_t n : script.trials) {
    EXPECT_GE(n, 1);
  }
  Script one = Of({.99});
  EXPECT_EQ(Search(one, 1).requiredSize, 1);
}

TEST_F(SawtoothSearchTest, BisectsBetweenTheCrossingAndFourBelow) {
  // 12 reaches, 8 falls short; 10 reaches and then 9, so that 11 is never asked.
  Script script = Of({0, 0, 0, 0, 0, 0, 0, .8, .9, .91, .5, .95});
  const SearchResult result = Search(script, 12);
  EXPECT_EQ(result.requiredSize, 9);
  EXPECT_EQ(script.trials[0], 12);
  EXPECT_EQ(script.trials[1], 8);
  EXPECT_EQ(script.trials[2], 10);
  EXPECT_EQ(script.trials[3], 9);
}

TEST_F(SawtoothSearchTest, EvaluatesASizeOnce) {
  for (int start = 1; start <= 40; ++start) {
    Script script(
        [](std::int64_t n) { return .5 + .01 * static_cast<double>(n) + (n % 3 == 0 ? .03 : 0); });
    EXPECT_EQ(Search(script, start).status, SearchOk);
    const std::set<std::int64_t> distinct(script.trials.begin(), script.trials.end());
    EXPECT_EQ(distinct.size(), script.trials.size()) << start;
  }
}

TEST_F(SawtoothSearchTest, TakesAFailedPowerForShort) {
  Script script = Of({.1, .2, std::nan(""), NumericFailure, .95});
  EXPECT_EQ(Search(script, 3).requiredSize, 5);
}

TEST_F(SawtoothSearchTest, EndsAtItsLimitWithAMessage) {
  Script script([](std::int64_t) { return .5; });
  const SawtoothRequest request{.powerGoal = .9, .start = 990, .sizeLimit = 1000};
  const SearchResult result =
      Heard(SawtoothSearch(
                request, [&script](std::int64_t n) { return script(n); }, observer)
                .Run());
  EXPECT_EQ(result.requiredSize, SizeFailure);
  EXPECT_EQ(result.actualPower, NumericFailure);
  EXPECT_EQ(result.status, SearchTooLarge);
  EXPECT_EQ(script.trials.back(), 1000);
  EXPECT_THAT(Shown(), ElementsAre(Said::SearchTooLarge));
  EXPECT_EQ(SizeIn(0), 1000);
}

TEST_F(SawtoothSearchTest, CanBeCancelledInAnyWalk) {
  const auto up = [](std::int64_t) { return .5; };
  const auto down = [](std::int64_t) { return .95; };
  // From short to shorter, so that no tooth rises.
  const auto below = [](std::int64_t n) {
    return n >= 100000 ? .95 : 1e-6 * static_cast<double>(n);
  };
  for (const std::function<double(std::int64_t)>& power :
       {std::function<double(std::int64_t)>(up), std::function<double(std::int64_t)>(down),
        std::function<double(std::int64_t)>(below)}) {
    observer.stop = [polls = 0]() mutable { return ++polls == 2; };
    Script script(power);
    const SearchResult result = Search(script, 100000);
    EXPECT_EQ(result.status, SearchCancelled);
    EXPECT_EQ(result.requiredSize, SizeFailure);
    EXPECT_THAT(Shown(), ElementsAre(Said::CancelledAtRequest));
    EXPECT_LT(script.trials.size(), 15000U);
    observer.remarks.clear();
  }
}

// --- Required size.

TEST_F(OneProportion, AnswersTheNormalSizeByTheClosedForm) {
  for (const std::int16_t form : kForms) {
    const OneProportionTest test{form == H0AtLeast ? .3 : .7, .5, .05, form};
    const double tail = form == H0TwoTailed ? .025 : .05;
    const double root = (NormalQuantile(tail) * .5 + NormalQuantile(1 - .9) * std::sqrt(.21)) /
                        (test.pi - test.pi0);
    EXPECT_EQ(RequiredN(.9, test, ProportionNormal), std::ceil(root * root));
  }
  // Beyond what the exact search walks; the reference has more digits of the quantiles.
  EXPECT_NEAR(
      static_cast<double>(RequiredN(.999, {.50011, .5, .0001, H0TwoTailed}, ProportionNormal)) /
          1006857548.8,
      1, 1e-7);
}

TEST_F(OneProportion, HasNormalSizesThatReachTheGoalWithTheirPowerAndNotOneBelow) {
  for (const std::int16_t form : kForms) {
    for (const double pi : {.52, .6, .7, .9}) {
      const OneProportionTest test{form == H0AtLeast ? 1 - pi : pi, .5, .05, form};
      const std::int64_t n = RequiredN(.9, test, ProportionNormal);
      // Seven digits of the normal distribution.
      EXPECT_GE(Power(n, test, ProportionNormal), .9 - 1e-6) << n;
      EXPECT_LT(Power(n - 1, test, ProportionNormal), .9 + 1e-6) << n;
    }
  }
}

TEST_F(OneProportion, NeedsOneTrialToTellZeroFromOne) {
  for (const std::int16_t algorithm : {ProportionExact, ProportionNormal}) {
    EXPECT_EQ(RequiredN(.9, {1, 0, .05, H0TwoTailed}, algorithm), 1);
    EXPECT_EQ(RequiredN(.9, {0, 1, .05, H0AtLeast}, algorithm), 1);
  }
}

TEST_F(OneProportion, GoesOnDownToTheToleranceAndRefusesBelow) {
  EXPECT_EQ(RequiredN(.9, {.5, .5, .05, H0TwoTailed}, ProportionExact), SizeFailure);
  EXPECT_EQ(err, 1);
  EXPECT_EQ(RequiredN(.9, {.50009, .5, .05, H0TwoTailed}, ProportionExact), SizeFailure);
  EXPECT_EQ(err, 1);
  EXPECT_EQ(RequiredN(.9, {.4, .5, .05, H0AtMost}, ProportionExact), SizeFailure);
  EXPECT_EQ(err, 1);
  EXPECT_THAT(Shown(), ElementsAre(Said::NullHypothesisTrue, Said::NullHypothesisNearlyTrue,
                                   Said::NullHypothesisTrue));
  observer.remarks.clear();
  EXPECT_GT(RequiredN(.9, {.5005, .5, .05, H0TwoTailed}, ProportionExact), 10000000);
  EXPECT_EQ(err, 0);
  EXPECT_THAT(Shown(), IsEmpty()) << "a gap below .001 is not spoken of";
}

TEST_F(OneProportion, DoesNotSearchBeyondABillion) {
  EXPECT_EQ(RequiredN(.999, {.50011, .5, .0001, H0TwoTailed}, ProportionExact), SizeFailure);
  EXPECT_EQ(err, SearchTooLarge);
  EXPECT_THAT(Shown(), ElementsAre(Said::SearchTooLarge));
  EXPECT_EQ(SizeIn(0), 1000000000);
}

TEST_F(OneProportion, ReachesTheGoalWithItsExactSizeAndNotOneBelow) {
  int designs = 0;
  for (const double pi0 : {.001, .05, .5, .8, .99}) {
    for (const double gap : {.005, .02, .15, .4}) {
      for (const double alpha : {.0001, .05, .25}) {
        for (const double goal : {.65, .9, .999}) {
          for (const std::int16_t form : kForms) {
            const double pi = form == H0AtLeast ? pi0 - gap : pi0 + gap;
            if (pi < 0 || pi > 1) {
              continue;
            }
            const OneProportionTest test{pi, pi0, alpha, form};
            const std::int64_t n = RequiredN(goal, test, ProportionExact);
            SCOPED_TRACE(testing::Message() << pi << ' ' << pi0 << ' ' << alpha << ' ' << goal
                                            << ' ' << form << ": " << n);
            ASSERT_EQ(err, 0);
            EXPECT_GE(Power(n, test, ProportionExact), goal);
            if (n > 1) {
              EXPECT_LT(Power(n - 1, test, ProportionExact), goal);
            }
            ++designs;
          }
        }
      }
    }
  }
  EXPECT_EQ(designs, 414);
}

TEST_F(OneProportion, AnswersMoreThanTheLeastSizeWhereAToothBelowRisesAndFallsShort) {
  // Power passes .9 at 36, 39 and 41. The walk starts at 38, above the first of them, finds 39 and
  // ends below at 37, where the power has risen from 38 and falls short.
  const OneProportionTest test{.75, .5, .05, H0TwoTailed};
  EXPECT_EQ(OneProportionEstimate(test, .9), 38);
  EXPECT_EQ(RequiredN(.9, test, ProportionExact), 39);
  EXPECT_GE(Power(36, test, ProportionExact), .9);
  EXPECT_LT(Power(38, test, ProportionExact), Power(37, test, ProportionExact));
}

TEST_F(OneProportion, AnswersASizeWhoseSuccessorMayHaveLessPower) {
  const OneProportionTest test{.75, .5, .05, H0TwoTailed};
  EXPECT_GE(Power(39, test, ProportionExact), .9);
  EXPECT_LT(Power(40, test, ProportionExact), .9);
}

// The steps of the search one after the other, with every power evaluated where it is asked.
std::int64_t PlainSearch(const OneProportionTest& test, double goal) {
  int err = 0;
  Refusal refusal;
  const auto power = [&](std::int64_t n) {
    return OneProportionPower(n, test, err, ProportionExact, kNoCheck, refusal);
  };
  auto n = static_cast<std::int64_t>(OneProportionEstimate(test, goal));
  while (power(n) < goal) {
    ++n;
  }
  std::int64_t low = std::max<std::int64_t>(1, n - 4);
  while (power(low) >= goal) {
    --low;
  }
  while (!(n - low <= 1 && power(n) >= goal && power(low) < goal)) {
    const std::int64_t middle = (low + n) / 2;
    (power(middle) < goal ? low : n) = middle;
  }
  double above = power(low);
  while (low > 1) {
    const double p = power(--low);
    if (p >= goal) {
      n = low;
    } else if (p > above) {
      break;
    }
    above = p;
  }
  return std::max<std::int64_t>(n, 1);
}

TEST_F(OneProportion, SearchesAsThePlainStepsDo) {
  std::uint32_t state = 12345;
  const auto uniform = [&state] {
    state = state * 1664525U + 1013904223U;
    return (state >> 8) / 16777216.0;
  };
  for (int i = 0; i < 2000; ++i) {
    OneProportionTest test{uniform(), uniform(), .0001 + .2499 * uniform(),
                           static_cast<std::int16_t>(i % 3)};
    const double goal = .05 + .949 * uniform();
    const bool up = test.form == H0AtMost || (test.form == H0TwoTailed && uniform() < .5);
    if ((test.pi > test.pi0) != up) {
      std::swap(test.pi, test.pi0);
    }
    if (std::fabs(test.pi - test.pi0) < .002) {
      continue;
    }
    ASSERT_EQ(RequiredN(goal, test, ProportionExact), PlainSearch(test, goal))
        << test.pi << ' ' << test.pi0 << ' ' << test.alpha << ' ' << goal << ' ' << test.form;
  }
}

// --- Against other computations.

TEST_F(OneProportion, AgreesWithAnIndependentComputation) {
  std::ifstream file(TestDataDir() + "/one_proportion_power.csv");
  ASSERT_TRUE(file.is_open());
  std::string line;
  int rows = 0;
  double worst[2] = {0, 0};
  while (std::getline(file, line)) {
    if (line.empty() || (line[0] != '-' && (line[0] < '0' || line[0] > '9'))) {
      continue;
    }
    std::istringstream cells(line);
    char comma = 0;
    std::int64_t n = 0;
    OneProportionTest test;
    std::int16_t algorithm = 0;
    double expected = 0;
    cells >> n >> comma >> test.pi >> comma >> test.pi0 >> comma >> test.alpha >> comma >>
        test.form >> comma >> algorithm >> comma >> expected;
    ASSERT_FALSE(cells.fail()) << line;
    const double error = std::fabs(Power(n, test, algorithm) - expected);
    // The exact power rests on the incomplete beta function, the other on seven digits of the
    // normal distribution.
    EXPECT_LE(error, algorithm == ProportionExact ? 1e-9 : 1e-6) << line;
    worst[algorithm] = std::max(worst[algorithm], error);
    ++rows;
  }
  EXPECT_GT(rows, 1000);
  RecordProperty("worst_exact", std::to_string(worst[ProportionExact]));
  RecordProperty("worst_normal", std::to_string(worst[ProportionNormal]));
}

using Json = nlohmann::json;

void ExpectPublished(const Json& published, const char* key, double value) {
  const bool different = published.at("relation") == "different_formula";
  const Json& expected = published.at(different ? "recomputed" : "expected");
  if (!expected.contains(key)) {
    return;
  }
  EXPECT_NEAR(value, expected.at(key).get<double>(),
              published.at("tolerance").at(key).get<double>())
      << published.at("id") << ' ' << published.at("source");
}

TEST_F(OneProportion, AgreesWithPublishedCases) {
  std::ifstream file(TestDataDir() + "/published_proportions.json");
  int cases = 0;
  for (const Json& published : Json::parse(file)) {
    if (published.at("family") != "P1") {
      continue;
    }
    ++cases;
    const Json& in = published.at("inputs");
    OneProportionTest test{in.at("Pi"), in.at("Pi0"), in.at("Alpha"),
                           in.at("H0Type").get<std::int16_t>()};
    const auto algorithm = in.at("Algorithm").get<std::int16_t>();
    if (published.at("mode") == "power") {
      const std::int64_t n = in.at("SampleSize");
      ExpectPublished(published, "power", Power(n, test, algorithm));
      test.pi = test.pi0;
      ExpectPublished(published, "actual_alpha", Power(n, test, ProportionExact));
    } else {
      const std::int64_t n = RequiredN(in.at("PowerGoal"), test, algorithm);
      ExpectPublished(published, "N", static_cast<double>(n));
    }
  }
  EXPECT_EQ(cases, 7);
}

}  // namespace
}  // namespace poweranalysis
