#include "procedures/Correlations.h"

#include <gmock/gmock.h>

#include <cmath>

#include "distributions/Normal.h"
#include "procedures/CasesAndTables.h"
#include "procedures/ProceduresTest.h"
#include "procedures/TTests.h"

namespace poweranalysis {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

constexpr std::int16_t kForms[] = {H0TwoTailed, H0AtMost, H0AtLeast};
constexpr std::int16_t kAlgorithms[] = {CorrelationExact, CorrelationFisherZRefined,
                                        CorrelationFisherZCrude};

void ExpectFailed(const SearchResult& result) {
  EXPECT_EQ(result.requiredSize, SizeFailure);
  EXPECT_EQ(result.actualPower, NumericFailure);
  EXPECT_EQ(result.status, ProcedureFailed);
}

class CorrelationsTest : public ProceduresTest {
 protected:
  double PowerOf(std::int64_t n,
                 double alpha,
                 double rho,
                 double rho0,
                 std::int16_t algorithm,
                 std::int16_t form) {
    return HeardOf([&](Refusal& refusal) {
      return CorrelationPower(n, alpha, rho, rho0, algorithm, form, status, refusal);
    });
  }
  SearchResult CorrelationRequiredN(const CorrelationSizeRequest& request) {
    return Heard(poweranalysis::CorrelationRequiredN(request, observer));
  }
  double TwoCorrelationsPower(double rho1,
                              double rho2,
                              std::int64_t n1,
                              std::int64_t n2,
                              double alpha,
                              std::int16_t form,
                              std::int16_t algorithm) {
    return HeardOf([&](Refusal& refusal) {
      return poweranalysis::TwoCorrelationsPower(rho1, rho2, n1, n2, alpha, form, algorithm,
                                                 refusal);
    });
  }
  SearchResult TwoCorrelationsRequiredN(const TwoCorrelationsSizeRequest& request) {
    return Heard(poweranalysis::TwoCorrelationsRequiredN(request, observer));
  }
  // Power at the size of an answer, or below it.
  double PowerAt(const CorrelationSizeRequest& r, std::int64_t n) {
    return PowerOf(n, r.alpha, r.rho, r.rho0, r.algorithm, r.form);
  }

  int status = -1;
};

CorrelationSizeRequest Asked(double rho,
                             double rho0,
                             double goal,
                             std::int16_t form,
                             std::int16_t algorithm = CorrelationFisherZRefined) {
  return {.rho = rho,
          .rho0 = rho0,
          .alpha = .05,
          .powerGoal = goal,
          .algorithm = algorithm,
          .form = form};
}

// --- The walk.

class UpwardWalkTest : public ProceduresTest {
 protected:
  SearchResult Walk(const WalkRules& rules, double goal, std::int64_t first, Script& script) {
    const double firstPower = script(first);
    return WalkUp(rules, goal, first, firstPower, script, observer);
  }
};

TEST_F(UpwardWalkTest, NeverWalksDownFromAnEstimateThatPasses) {
  Script script = StepAt(3, .1, .95);
  const SearchResult result = Walk(OneCorrelationWalk, .9, 50, script);
  EXPECT_EQ(result.requiredSize, 50);
  EXPECT_EQ(result.actualPower, .95);
  EXPECT_THAT(script.trials, ElementsAre(50));
}

TEST_F(UpwardWalkTest, CountsAPowerEqualToTheGoalAsShort) {
  Script script([](std::int64_t n) { return n < 30 ? .1 : n == 30 ? .75 : .875; });
  EXPECT_EQ(Walk(OneCorrelationWalk, .75, 30, script).requiredSize, 31);
  EXPECT_EQ(Walk(TwoCorrelationsWalk, .75, 29, script).requiredSize, 31);
}

TEST_F(UpwardWalkTest, ScalesItsStepByTheSlopeAndTakesTwoHundredAtMost) {
  Script script([](std::int64_t n) { return static_cast<double>(n) / 1024; });
  // From 211 the slope asks for 301, from 411 for 101; at the goal itself for 0, which becomes 1.
  EXPECT_EQ(Walk(OneCorrelationWalk, .5, 10, script).requiredSize, 513);
  EXPECT_THAT(script.trials, ElementsAre(10, 11, 211, 411, 512, 513));
}

TEST_F(UpwardWalkTest, ClosesOnTheFirstSizeAboveTheGoal) {
  for (const std::int64_t answer : {12, 57, 600, 5000, 149999}) {
    Script script([=](std::int64_t n) {
      return .9 + .09 * std::tanh(static_cast<double>(n - answer) / 100 + .001);
    });
    const SearchResult result = Walk(OneCorrelationWalk, .9, 10, script);
    EXPECT_EQ(result.requiredSize, answer);
    EXPECT_GT(result.actualPower, .9);
    EXPECT_EQ(result.status, SearchOk);
  }
}

TEST_F(UpwardWalkTest, StepsByOneAbovePointNineNine) {
  Script script([](std::int64_t n) { return n < 15 ? .992 : .9995; });
  EXPECT_EQ(Walk(OneCorrelationWalk, .999, 10, script).requiredSize, 15);
  EXPECT_THAT(script.trials, ElementsAre(10, 11, 12, 13, 14, 15));
}

TEST_F(UpwardWalkTest, CallsPowersEqualByTheTwoRules) {
  // 1e-12 a size: no slope for one correlation, a steep need for two.
  const auto creeping = [](std::int64_t n) {
    return n > 250 ? .95 : .5 + 1e-12 * static_cast<double>(n);
  };
  Script one(creeping);
  Script two(creeping);
  EXPECT_EQ(Walk(OneCorrelationWalk, .9, 10, one).requiredSize, 251);
  EXPECT_EQ(Walk(TwoCorrelationsWalk, .9, 10, two).requiredSize, 251);
  EXPECT_THAT(one.trials, SizeIs(242));
  EXPECT_THAT(std::vector(two.trials.begin(), two.trials.begin() + 4),
              ElementsAre(10, 11, 211, 411));
}

TEST_F(UpwardWalkTest, EndsAtItsCap) {
  Script script = StepAt(200000, .5, .95);
  const SearchResult result = Walk(OneCorrelationWalk, .9, 149990, script);
  EXPECT_EQ(result.status, SearchTooLarge);
  EXPECT_EQ(result.requiredSize, SizeFailure);
  EXPECT_EQ(script.trials.back(), 150000);
  // Above it there is not one trial more.
  Script above = StepAt(200000, .5, .95);
  EXPECT_EQ(Walk(OneCorrelationWalk, .9, 150001, above).status, SearchTooLarge);
  EXPECT_THAT(above.trials, SizeIs(1));
  // The other walk goes on, to a hundred million.
  Script uncapped = StepAt(200000, .5, .95);
  EXPECT_EQ(Walk(TwoCorrelationsWalk, .9, 150001, uncapped).requiredSize, 200000);
  Script never = StepAt(NoWalkCap * 2, .5, .95);
  EXPECT_EQ(Walk(TwoCorrelationsWalk, .9, NoWalkCap - 5, never).status, SearchTooLarge);
  EXPECT_EQ(never.trials.back(), NoWalkCap - 1);
}

TEST_F(UpwardWalkTest, CountsAFailedPowerAsShort) {
  Script script([](std::int64_t n) {
    return n < 20 ? NumericFailure : n < 30 ? std::nan("") : n < 40 ? .5 : .95;
  });
  const SearchResult result = Walk(OneCorrelationWalk, .9, 5, script);
  EXPECT_EQ(result.requiredSize, 40);
  EXPECT_EQ(result.actualPower, .95);
}

TEST_F(UpwardWalkTest, AsksOnceATrialWhetherToGoOn) {
  int asked = 0;
  observer.stop = [&] { return ++asked == 4; };
  Script script = StepAt(100, .5, .95);
  EXPECT_EQ(Walk(OneCorrelationWalk, .9, 10, script).status, SearchCancelled);
  EXPECT_THAT(script.trials, SizeIs(4));
  EXPECT_THAT(Shown(), IsEmpty());
}

// --- Power of one correlation.

TEST_F(CorrelationsTest, TakesCriticalValuesFromTheTailsOfTheForm) {
  // Fisher and Yates (1963), table VII: .576 for n = 12, .361 for n = 30.
  EXPECT_NEAR(CorrelationCritical(12, .05, 0, CorrelationExact, H0TwoTailed, HighSide), .576, 5e-4);
  EXPECT_NEAR(CorrelationCritical(12, .05, 0, CorrelationExact, H0TwoTailed, LowSide), -.576, 5e-4);
  EXPECT_NEAR(CorrelationCritical(30, .025, 0, CorrelationExact, H0AtMost, HighSide), .361, 5e-4);
  EXPECT_NEAR(CorrelationCritical(30, .025, 0, CorrelationExact, H0AtLeast, HighSide), -.361, 5e-4);
  for (const std::int16_t algorithm : kAlgorithms) {
    const auto below = [&](std::int16_t form, std::int16_t side) {
      return CorrelationCdf(.4, 50, CorrelationCritical(50, .05, .4, algorithm, form, side),
                            algorithm);
    };
    EXPECT_NEAR(below(H0TwoTailed, HighSide), .975, 1e-6) << algorithm;
    EXPECT_NEAR(below(H0TwoTailed, LowSide), .025, 1e-6) << algorithm;
    EXPECT_NEAR(below(H0AtMost, HighSide), .95, 1e-6) << algorithm;
    EXPECT_NEAR(below(H0AtLeast, HighSide), .05, 1e-6) << algorithm;
  }
}

TEST_F(CorrelationsTest, AddsTheTailsThatTheFormRejectsIn) {
  const double rho = .3;
  const std::int64_t n = 20;
  for (const std::int16_t algorithm : kAlgorithms) {
    const auto cdf = [&](std::int16_t form, std::int16_t side) {
      return CorrelationCdf(rho, n, CorrelationCritical(n, .1, .2, algorithm, form, side),
                            algorithm);
    };
    EXPECT_EQ(PowerOf(n, .1, rho, .2, algorithm, H0TwoTailed),
              1 - (cdf(H0TwoTailed, HighSide) - cdf(H0TwoTailed, LowSide)));
    EXPECT_EQ(PowerOf(n, .1, rho, .2, algorithm, H0AtMost), 1 - cdf(H0AtMost, HighSide));
    EXPECT_EQ(PowerOf(n, .1, rho, .4, algorithm, H0AtLeast),
              CorrelationCdf(rho, n, CorrelationCritical(n, .1, .4, algorithm, H0AtLeast, HighSide),
                             algorithm));
    EXPECT_EQ(status, ProcedureOk);
  }
}

TEST_F(CorrelationsTest, RefusesATrueNullItself) {
  EXPECT_EQ(PowerOf(50, .05, .3, .3, 0, H0TwoTailed), NumericFailure);
  EXPECT_EQ(status, ProcedureFailed);
  EXPECT_EQ(PowerOf(50, .05, .2, .3, 1, H0AtMost), NumericFailure);
  EXPECT_EQ(PowerOf(50, .05, .4, .3, 1, H0AtLeast), NumericFailure);
  EXPECT_THAT(Shown(), ElementsAre(Said::NullHypothesisTrue, Said::NullHypothesisTrue,
                                   Said::NullHypothesisTrue));
}

TEST_F(CorrelationsTest, ComputesThePowerOfAnEffectTooSmallToSearchFor) {
  EXPECT_NEAR(PowerOf(100, .05, .3005, .3, 1, H0TwoTailed), .05, 1e-3);
  EXPECT_EQ(status, ProcedureOk);
  ExpectFailed(CorrelationRequiredN(Asked(.3005, .3, .9, H0TwoTailed)));
  EXPECT_THAT(Shown(), ElementsAre(Said::NullHypothesisNearlyTrue));
  EXPECT_EQ(ToleranceIn(0), .001);
}

TEST_F(CorrelationsTest, NeedsThreePairsOrFourInTheCrudeForm) {
  for (const std::int64_t n : {-5, 0, 1, 2}) {
    for (const std::int16_t algorithm : kAlgorithms) {
      EXPECT_EQ(PowerOf(n, .05, .5, 0, algorithm, H0TwoTailed), NumericFailure);
      EXPECT_EQ(status, ProcedureFailed);
    }
  }
  EXPECT_EQ(PowerOf(3, .05, .5, 0, CorrelationFisherZCrude, H0TwoTailed), NumericFailure);
  EXPECT_EQ(status, ProcedureFailed);
  EXPECT_GT(PowerOf(4, .05, .5, 0, CorrelationFisherZCrude, H0TwoTailed), 0);
  EXPECT_EQ(status, ProcedureOk);
  EXPECT_GT(PowerOf(3, .05, .5, 0, CorrelationFisherZRefined, H0TwoTailed), 0);
  EXPECT_GT(PowerOf(3, .05, .5, 0, CorrelationExact, H0TwoTailed), 0);
  EXPECT_THAT(Shown(), IsEmpty());
}

TEST_F(CorrelationsTest, MakesAFailedDistributionAFailedPower) {
  ASSERT_EQ(CorrelationCdf(.9999, 3, .98, CorrelationExact), NumericFailure);
  EXPECT_EQ(PowerOf(3, .05, .9999, 0, CorrelationExact, H0TwoTailed), NumericFailure);
  EXPECT_EQ(status, ProcedureFailed);
  EXPECT_EQ(PowerOf(3, .05, .9999, 0, CorrelationExact, H0AtMost), NumericFailure);
  EXPECT_EQ(status, ProcedureFailed);
  EXPECT_EQ(PowerOf(50, 0, .5, 0, CorrelationExact, H0AtMost), NumericFailure);
  EXPECT_EQ(status, ProcedureFailed);
  EXPECT_THAT(Shown(), IsEmpty());
}

TEST_F(CorrelationsTest, HasNoPowerAboveOneWhereTheExactFormLosesItsDensity) {
  const double high =
      CorrelationCritical(56, .0001, -.527, CorrelationExact, H0TwoTailed, HighSide);
  const double low = CorrelationCritical(56, .0001, -.527, CorrelationExact, H0TwoTailed, LowSide);
  ASSERT_LT(low, high);
  ASSERT_NEAR(CorrelationCdf(-.9999, 56, low, CorrelationExact), 1, 1e-6);
  ASSERT_NEAR(CorrelationCdf(-.9999, 56, high, CorrelationExact), 0, 1e-6);
  EXPECT_EQ(PowerOf(56, .0001, -.9999, -.527, CorrelationExact, H0TwoTailed), NumericFailure);
  EXPECT_EQ(status, ProcedureFailed);
}

TEST_F(CorrelationsTest, HasNoPowerForAFormThatItDoesNotServe) {
  for (const std::int16_t form : {H0Zero, std::int16_t{4}, std::int16_t{-1}}) {
    EXPECT_EQ(CorrelationCritical(50, .05, 0, 1, form, HighSide), NumericFailure);
    EXPECT_EQ(PowerOf(50, .05, .5, 0, 1, form), NumericFailure);
    EXPECT_EQ(status, ProcedureFailed);
    ExpectFailed(CorrelationRequiredN(Asked(.5, 0, .9, form)));
  }
  EXPECT_THAT(Shown(), IsEmpty());
}

TEST_F(CorrelationsTest, TakesAnUnknownAlgorithmForExact) {
  EXPECT_EQ(PowerOf(30, .05, .5, .2, 7, H0TwoTailed),
            PowerOf(30, .05, .5, .2, CorrelationExact, H0TwoTailed));
}

TEST_F(CorrelationsTest, KeepsCriticalValuesBitForBit) {
  CorrelationCriticalCache criticals;
  for (const std::int16_t algorithm : kAlgorithms) {
    for (const std::int16_t form : {H0TwoTailed, H0AtMost}) {
      for (const std::int64_t n : {40, 41}) {
        for (const double rho : {.5, .6, .7}) {
          const double cached = HeardOf([&](Refusal& refusal) {
            return CorrelationPower({n, .05, .3, algorithm, form}, rho, status, refusal, criticals);
          });
          EXPECT_EQ(cached, PowerOf(n, .05, rho, .3, algorithm, form));
        }
      }
    }
  }
}

TEST_F(CorrelationsTest, AgreesWithQuadratureOfTheDensity) {
  const std::vector<DataRow> rows = DataRows("correlation_power.csv");
  ASSERT_THAT(rows, SizeIs(156));
  int designs = 0;
  for (const DataRow& row : rows) {
    const std::vector<double>& x = row.numbers;
    const auto form = static_cast<std::int16_t>(x[5]);
    const auto algorithm = static_cast<std::int16_t>(x[6]);
    const auto n1 = static_cast<std::int64_t>(x[2]);
    const auto n2 = static_cast<std::int64_t>(x[3]);
    const double power = row.word == "R"
                             ? PowerOf(n1, x[4], x[0], x[1], algorithm, form)
                             : TwoCorrelationsPower(x[0], x[1], n1, n2, x[4], form, algorithm);
    // The series of the refined form end with the sixth power of 1 / (n - 1).
    const double tolerance = algorithm == CorrelationFisherZRefined ? 2e-5 : 2e-6;
    EXPECT_NEAR(power, x[7], tolerance) << row.line;
    ++designs;
  }
  EXPECT_EQ(designs, 156);
  EXPECT_THAT(Shown(), IsEmpty());
}

TEST_F(CorrelationsTest, RefinesTheApproximationTowardsTheExactPower) {
  for (const double rho : {-.7, -.2, .3, .6, .9}) {
    for (const double rho0 : {-.3, 0., .5}) {
      for (const std::int64_t n : {20, 60, 200, 500}) {
        const double exact = PowerOf(n, .05, rho, rho0, CorrelationExact, H0TwoTailed);
        const double refined = PowerOf(n, .05, rho, rho0, CorrelationFisherZRefined, H0TwoTailed);
        const double crude = PowerOf(n, .05, rho, rho0, CorrelationFisherZCrude, H0TwoTailed);
        EXPECT_NEAR(refined, exact, .1 / static_cast<double>(n)) << rho << ' ' << rho0 << ' ' << n;
        EXPECT_NEAR(crude, exact, .6 / static_cast<double>(n)) << rho << ' ' << rho0 << ' ' << n;
      }
    }
  }
}

// --- Required N of one correlation.

TEST_F(CorrelationsTest, ChoosesTheTailOfTheFirstEstimateByTheDirection) {
  EXPECT_EQ(CorrelationFirstEstimate(Asked(.2, 0, .9, H0TwoTailed)), 15);
  EXPECT_EQ(CorrelationFirstEstimate(Asked(-.2, 0, .9, H0TwoTailed)), 259);
  EXPECT_EQ(CorrelationFirstEstimate(Asked(.2, 0, .9, H0AtMost)), 212);
  EXPECT_EQ(CorrelationFirstEstimate(Asked(-.2, 0, .9, H0AtLeast)), 7);
}

TEST_F(CorrelationsTest, ACorrelationBeyondOneOrAGoalBeyondOneHasNoAnswer) {
  ExpectFailed(CorrelationRequiredN(Asked(1.5, 0, .9, H0TwoTailed)));
  ExpectFailed(CorrelationRequiredN(Asked(-1.5, .2, .9, H0TwoTailed)));
  ExpectFailed(CorrelationRequiredN(Asked(.2, 0, 1.5, H0TwoTailed)));
}

TEST_F(CorrelationsTest, ReturnsAPassingFirstEstimateThoughOneLessSuffices) {
  for (const CorrelationSizeRequest& request :
       {Asked(.2, 0, .9, H0AtMost), Asked(-.2, 0, .9, H0TwoTailed)}) {
    const SearchResult result = CorrelationRequiredN(request);
    EXPECT_EQ(static_cast<double>(result.requiredSize), CorrelationFirstEstimate(request));
    EXPECT_GT(PowerAt(request, result.requiredSize - 1), .9);
    EXPECT_LE(PowerAt(request, result.requiredSize - 2), .9);
    EXPECT_EQ(result.actualPower, PowerAt(request, result.requiredSize));
  }
  EXPECT_NEAR(CorrelationRequiredN(Asked(.2, 0, .9, H0AtMost)).actualPower, .90199, 5e-6);
}

TEST_F(CorrelationsTest, ClimbsToTheLeastSizeFromAnEstimateThatFallsShort) {
  const CorrelationSizeRequest up = Asked(.2, 0, .9, H0TwoTailed);
  EXPECT_EQ(CorrelationRequiredN(up).requiredSize, 258);
  EXPECT_NEAR(CorrelationRequiredN(up).actualPower, .90038, 5e-6);
  const CorrelationSizeRequest down = Asked(-.2, 0, .9, H0AtLeast);
  EXPECT_EQ(CorrelationRequiredN(down).requiredSize, 211);
  EXPECT_NEAR(CorrelationRequiredN(down).actualPower, .90077, 5e-6);
  for (const CorrelationSizeRequest& request : {up, down}) {
    const SearchResult result = CorrelationRequiredN(request);
    EXPECT_EQ(result.status, ProcedureOk);
    EXPECT_LE(PowerAt(request, result.requiredSize - 1), .9);
  }
}

TEST_F(CorrelationsTest, IsTheLeastSizeOrAPassingFirstEstimateOverAGrid) {
  int climbed = 0;
  int estimated = 0;
  for (const std::int16_t algorithm : kAlgorithms) {
    for (const double rho : {-.9, -.5, -.25, .3, .6, .95}) {
      for (const double rho0 : {-.1, 0., .5}) {
        for (const double goal : {.65, .9, .999}) {
          const std::int16_t tail = rho > rho0 ? H0AtMost : H0AtLeast;
          for (const std::int16_t form : {H0TwoTailed, tail}) {
            const CorrelationSizeRequest request = Asked(rho, rho0, goal, form, algorithm);
            const SearchResult result = CorrelationRequiredN(request);
            ASSERT_NE(result.status, ProcedureFailed) << rho << ' ' << rho0;
            CorrelationSizeRequest used = request;
            if (result.status == CorrelationSwitched) {
              used.algorithm = CorrelationFisherZRefined;
            }
            EXPECT_EQ(result.actualPower, PowerAt(used, result.requiredSize));
            EXPECT_GT(result.actualPower, goal);
            if (static_cast<double>(result.requiredSize) == CorrelationFirstEstimate(request)) {
              ++estimated;
            } else {
              EXPECT_LE(PowerAt(used, result.requiredSize - 1), goal);
              ++climbed;
            }
          }
        }
      }
    }
  }
  EXPECT_GT(climbed, 50);
  EXPECT_GT(estimated, 50);
}

TEST_F(CorrelationsTest, DoesNotCapAFirstEstimateThatPasses) {
  const SearchResult result = CorrelationRequiredN(Asked(-.005, 0, .9, H0TwoTailed));
  EXPECT_EQ(result.requiredSize, 420293);
  EXPECT_GT(result.actualPower, .9);
  EXPECT_EQ(result.status, ProcedureOk);
}

TEST_F(CorrelationsTest, EndsAtAHundredAndFiftyThousand) {
  ExpectFailed(CorrelationRequiredN(Asked(.005, 0, .9, H0TwoTailed)));
  // A first estimate beyond, which falls short.
  const CorrelationSizeRequest beyond = Asked(.004, 0, .65, H0TwoTailed);
  EXPECT_EQ(CorrelationFirstEstimate(beyond), 154971);
  ExpectFailed(CorrelationRequiredN(beyond));
  EXPECT_THAT(Shown(), ElementsAre(Said::SearchTooLarge, Said::SearchTooLarge));
  EXPECT_EQ(SizeIn(0), 150000);
}

TEST_F(CorrelationsTest, LeavesTheExactFormAboveAnEstimateOfAThousand) {
  const CorrelationSizeRequest request = Asked(.05, 0, .9, H0AtMost, CorrelationExact);
  EXPECT_EQ(CorrelationFirstEstimate(request), 3423);
  const SearchResult result = CorrelationRequiredN(request);
  EXPECT_EQ(result.status, CorrelationSwitched);
  EXPECT_EQ(CorrelationSwitched, 99);
  const SearchResult refined = CorrelationRequiredN(Asked(.05, 0, .9, H0AtMost));
  EXPECT_EQ(result.requiredSize, refined.requiredSize);
  EXPECT_EQ(result.actualPower, refined.actualPower);
  EXPECT_EQ(refined.status, ProcedureOk);
  EXPECT_THAT(Shown(), ElementsAre(Said::SwitchingToRefined));
}

TEST_F(CorrelationsTest, KeepsTheExactFormAtAnEstimateOfAThousand) {
  EXPECT_EQ(CorrelationFirstEstimate(Asked(.09245, 0, .9, H0AtMost)), 1000);
  EXPECT_EQ(CorrelationFirstEstimate(Asked(.0924, 0, .9, H0AtMost)), 1001);
  EXPECT_EQ(CorrelationRequiredN(Asked(.09245, 0, .9, H0AtMost, CorrelationExact)).status,
            ProcedureOk);
  EXPECT_EQ(CorrelationRequiredN(Asked(.0924, 0, .9, H0AtMost, CorrelationExact)).status,
            CorrelationSwitched);
}

TEST_F(CorrelationsTest, StaysExactWhenTheEstimateStartsLowThoughTheAnswerIsLarge) {
  const SearchResult result =
      CorrelationRequiredN(Asked(.65, .6, .95, H0TwoTailed, CorrelationExact));
  EXPECT_EQ(result.status, ProcedureOk);
  EXPECT_EQ(result.requiredSize, 1928);
  EXPECT_THAT(Shown(), IsEmpty());
}

TEST_F(CorrelationsTest, FailsInSilenceWhenTheUserStopsTheSearch) {
  int asked = 0;
  observer.stop = [&] { return ++asked == 3; };
  ExpectFailed(CorrelationRequiredN(Asked(.2, 0, .9, H0TwoTailed)));
  EXPECT_EQ(asked, 3);
  EXPECT_THAT(Shown(), IsEmpty());
  EXPECT_FALSE(observer.barOpen);
}

TEST_F(CorrelationsTest, RefusesATrueNullInASearch) {
  ExpectFailed(CorrelationRequiredN(Asked(.3, .3, .9, H0TwoTailed)));
  ExpectFailed(CorrelationRequiredN(Asked(.3, 0, .9, H0AtLeast)));
  EXPECT_THAT(Shown(), ElementsAre(Said::NullHypothesisTrue, Said::NullHypothesisTrue));
}

TEST_F(CorrelationsTest, SearchesAnEffectOfTheToleranceItself) {
  ExpectFailed(CorrelationRequiredN(Asked(.001, 0, .9, H0TwoTailed)));
  EXPECT_THAT(Shown(), ElementsAre(Said::SearchTooLarge));
}

// --- Two correlations.

double Atanh(double rho) { return .5 * std::log((1 + rho) / (1 - rho)); }

TwoCorrelationsSizeRequest AskedOfTwo(double rho1,
                                      double rho2,
                                      double goal,
                                      std::int16_t form,
                                      std::int16_t nToVary = NToVaryBoth,
                                      std::int64_t fixedN = 0,
                                      std::int16_t algorithm = CorrelationFisherZRefined) {
  TwoCorrelationsSizeRequest request;
  request.rho1 = rho1;
  request.rho2 = rho2;
  request.alpha = .05;
  request.powerGoal = goal;
  request.n1 = fixedN;
  request.n2 = fixedN;
  request.form = form;
  request.algorithm = algorithm;
  request.nToVary = nToVary;
  return request;
}

class TwoCorrelationsTest : public CorrelationsTest {
 protected:
  double PowerAt(const TwoCorrelationsSizeRequest& r, std::int64_t n) {
    return TwoCorrelationsPower(r.rho1, r.rho2, r.nToVary == NToVaryN2 ? r.n1 : n,
                                r.nToVary == NToVaryN1 ? r.n2 : n, r.alpha, r.form, r.algorithm);
  }
};

TEST_F(TwoCorrelationsTest, TakesCriticalValuesFromTheNormalDistribution) {
  EXPECT_NEAR(FisherZCritical(.05, H0TwoTailed, HighSide), 1.959964, 1e-6);
  EXPECT_NEAR(FisherZCritical(.05, H0TwoTailed, LowSide), -1.959964, 1e-6);
  EXPECT_NEAR(FisherZCritical(.05, H0AtMost, HighSide), 1.644854, 1e-6);
  EXPECT_NEAR(FisherZCritical(.05, H0AtLeast, HighSide), -1.644854, 1e-6);
  EXPECT_EQ(FisherZCritical(.05, H0Zero, HighSide), NumericFailure);
  EXPECT_EQ(FisherZCritical(.05, 9, HighSide), NumericFailure);
}

TEST_F(TwoCorrelationsTest, GivesTheNormalTailOfTheStandardizedDifference) {
  const double v = 1. / 27 + 1. / 57;
  const double crude = (Atanh(.6) - Atanh(.2)) / std::sqrt(v);
  EXPECT_NEAR(FisherZPowerTerm(.6, .2, 30, 60, 1.5, CorrelationFisherZCrude),
              NormalCdf(1.5 - crude), 1e-15);
  const double b = FisherZBias(.6, 30) - FisherZBias(.2, 60);
  const double s = std::sqrt((FisherZSecondMoment(.6, 30) - std::pow(FisherZBias(.6, 30), 2) +
                              FisherZSecondMoment(.2, 60) - std::pow(FisherZBias(.2, 60), 2)) /
                             v);
  EXPECT_NEAR(FisherZPowerTerm(.6, .2, 30, 60, 1.5, CorrelationFisherZRefined),
              NormalCdf((1.5 - crude - b / std::sqrt(v)) / s), 1e-14);
}

TEST_F(TwoCorrelationsTest, HasNoExactDistribution) {
  for (const std::int16_t algorithm :
       {std::int16_t{CorrelationExact}, std::int16_t{3}, std::int16_t{-1}}) {
    EXPECT_EQ(FisherZPowerTerm(.6, .2, 30, 60, 1.5, algorithm), NumericFailure);
    for (const std::int16_t form : kForms) {
      EXPECT_EQ(TwoCorrelationsPower(form == H0AtLeast ? .2 : .6, .4, 30, 30, .05, form, algorithm),
                NumericFailure);
    }
    ExpectFailed(
        TwoCorrelationsRequiredN(AskedOfTwo(.6, .2, .9, H0TwoTailed, NToVaryBoth, 0, algorithm)));
  }
  EXPECT_THAT(Shown(), IsEmpty());
}

TEST_F(TwoCorrelationsTest, HasNoPowerForAFormThatItDoesNotServe) {
  EXPECT_EQ(TwoCorrelationsPower(.6, .2, 30, 30, .05, H0Zero, 1), NumericFailure);
  EXPECT_EQ(TwoCorrelationsPower(.6, .2, 30, 30, .05, 8, 1), NumericFailure);
  ExpectFailed(TwoCorrelationsRequiredN(AskedOfTwo(.6, .2, .9, H0Zero)));
  ExpectFailed(TwoCorrelationsRequiredN(AskedOfTwo(.6, .2, .9, 8)));
  ExpectFailed(TwoCorrelationsRequiredN(AskedOfTwo(.6, .2, .9, H0TwoTailed, 3)));
  ExpectFailed(TwoCorrelationsRequiredN(AskedOfTwo(.6, .2, .9, H0TwoTailed, -1)));
  EXPECT_THAT(Shown(), IsEmpty());
}

TEST_F(TwoCorrelationsTest, SeesNoEffectInAGroupOfThree) {
  EXPECT_NEAR(TwoCorrelationsPower(.9, .1, 3, 50, .05, H0TwoTailed, 2), .05, 1e-6);
  EXPECT_NEAR(TwoCorrelationsPower(.9, .1, 3, 3, .05, H0AtMost, 2), .05, 1e-6);
  EXPECT_NEAR(TwoCorrelationsPower(.9, .1, 50, 3, .05, H0TwoTailed, 1), 0, 1e-6);
}

TEST_F(TwoCorrelationsTest, ChecksThePowerOnTheScaleOfRAndTheSearchOnThatOfFisher) {
  // .0005 apart as correlations, .0026 apart as Fisher's z.
  EXPECT_EQ(TwoCorrelationsRequiredN(AskedOfTwo(.9, .8995, .9, H0TwoTailed)).status, ProcedureOk);
  EXPECT_THAT(Shown(), IsEmpty());
  // .0005 and .00067.
  EXPECT_GT(TwoCorrelationsPower(.5, .4995, 100, 100, .05, H0TwoTailed, 1), .04);
  EXPECT_THAT(Shown(), IsEmpty());
  ExpectFailed(TwoCorrelationsRequiredN(AskedOfTwo(.5, .4995, .9, H0TwoTailed)));
  EXPECT_THAT(Shown(), ElementsAre(Said::NullHypothesisNearlyTrue));
  EXPECT_EQ(ToleranceIn(0), .001);
}

TEST_F(TwoCorrelationsTest, RefusesATrueNull) {
  EXPECT_EQ(TwoCorrelationsPower(.4, .4, 50, 50, .05, H0TwoTailed, 1), NumericFailure);
  ExpectFailed(TwoCorrelationsRequiredN(AskedOfTwo(.4, .4, .9, H0TwoTailed)));
  EXPECT_THAT(Shown(), ElementsAre(Said::NullHypothesisTrue, Said::NullHypothesisTrue));
}

TEST_F(TwoCorrelationsTest, SaysOnceThatAnEffectRunsAgainstTheTest) {
  ExpectFailed(TwoCorrelationsRequiredN(AskedOfTwo(.2, .6, .9, H0AtMost)));
  EXPECT_THAT(Shown(), ElementsAre(Said::NullHypothesisTrue));
  ExpectFailed(TwoCorrelationsRequiredN(AskedOfTwo(.6, .2, .9, H0AtLeast, NToVaryN1, 4)));
  EXPECT_THAT(Shown(), ElementsAre(Said::NullHypothesisTrue, Said::NullHypothesisTrue));
}

TEST_F(TwoCorrelationsTest, StartsAtFourAtLeast) {
  const TwoCorrelationsSizeRequest request = AskedOfTwo(.9999, -.9999, .65, H0TwoTailed);
  const SearchResult result = TwoCorrelationsRequiredN(request);
  EXPECT_EQ(result.requiredSize, 4);
  EXPECT_EQ(result.actualPower, PowerAt(request, 4));
  for (const std::int16_t vary : {NToVaryN1, NToVaryN2}) {
    EXPECT_EQ(TwoCorrelationsRequiredN(AskedOfTwo(.9999, -.9999, .65, H0TwoTailed, vary, 50))
                  .requiredSize,
              4);
  }
}

TEST_F(TwoCorrelationsTest, ReturnsAPassingEstimateThoughLessSuffices) {
  TwoCorrelationsSizeRequest request = AskedOfTwo(.2, .3, .65, H0TwoTailed);
  request.alpha = .25;
  const SearchResult result = TwoCorrelationsRequiredN(request);
  EXPECT_EQ(result.requiredSize, 416);
  EXPECT_GT(PowerAt(request, 411), .65);
  EXPECT_LE(PowerAt(request, 410), .65);
}

// The normal estimate, in the letters of its source: m is the fixed group, 0 for equal groups.
double NormalEstimate(const TwoCorrelationsSizeRequest& r, double m) {
  const double k = r.form == H0TwoTailed ? 2 : 1;
  const double d = (NormalQuantile(1 - r.alpha / k) + NormalQuantile(r.powerGoal)) /
                   (Atanh(r.rho1) - Atanh(r.rho2));
  const double n0 = 2 * d * d + 3;
  return std::max(4., std::trunc(m == 0 ? n0 : ((n0 + 3) * m - 6 * n0) / (2 * m - n0 - 3)));
}

class TwoCorrelationsGridTest : public TwoCorrelationsTest {
 protected:
  void Check(const TwoCorrelationsSizeRequest& request, std::int64_t fixedN) {
    const SearchResult result = TwoCorrelationsRequiredN(request);
    ASSERT_EQ(result.status, ProcedureOk);
    const auto size = static_cast<double>(result.requiredSize);
    EXPECT_EQ(result.actualPower, PowerAt(request, result.requiredSize));
    EXPECT_GT(result.actualPower, request.powerGoal);
    const double estimate = NormalEstimate(request, static_cast<double>(fixedN));
    if (size == estimate) {
      ++estimated;
    } else {
      EXPECT_GT(size, estimate);
      EXPECT_LE(PowerAt(request, result.requiredSize - 1), request.powerGoal);
      ++climbed;
    }
  }

  int climbed = 0;
  int estimated = 0;
};

TEST_F(TwoCorrelationsGridTest, IsTheLeastSizeOrAPassingEstimate) {
  for (const double rho1 : {-.8, -.3, .25, .6, .9}) {
    for (const double rho2 : {-.5, 0., .4}) {
      for (const double goal : {.65, .9, .999}) {
        const std::int16_t tail = rho1 > rho2 ? H0AtMost : H0AtLeast;
        for (const std::int16_t form : {H0TwoTailed, tail}) {
          for (const std::int16_t algorithm : {std::int16_t{1}, std::int16_t{2}}) {
            SCOPED_TRACE(testing::Message() << rho1 << ' ' << rho2 << ' ' << goal << ' ' << form);
            const TwoCorrelationsSizeRequest equal =
                AskedOfTwo(rho1, rho2, goal, form, NToVaryBoth, 0, algorithm);
            Check(equal, 0);
            const std::int64_t fixedN = 2 * TwoCorrelationsRequiredN(equal).requiredSize;
            for (const std::int16_t vary : {NToVaryN1, NToVaryN2}) {
              Check(AskedOfTwo(rho1, rho2, goal, form, vary, fixedN, algorithm), fixedN);
            }
          }
        }
      }
    }
  }
  EXPECT_GT(climbed, 100);
  EXPECT_GT(estimated, 100);
  EXPECT_THAT(Shown(), IsEmpty());
}

TEST_F(TwoCorrelationsTest, SeeksEitherGroupAgainstTheOther) {
  const SearchResult n1 = TwoCorrelationsRequiredN(
      AskedOfTwo(.4, 0, .9, H0TwoTailed, NToVaryN1, 100, CorrelationFisherZCrude));
  const SearchResult n2 = TwoCorrelationsRequiredN(
      AskedOfTwo(.4, 0, .9, H0TwoTailed, NToVaryN2, 100, CorrelationFisherZCrude));
  EXPECT_EQ(n1.requiredSize, n2.requiredSize);
  EXPECT_EQ(n1.status, ProcedureOk);
  // The group sought is not read.
  TwoCorrelationsSizeRequest request = AskedOfTwo(.4, 0, .9, H0TwoTailed, NToVaryN1, 100);
  const SearchResult before = TwoCorrelationsRequiredN(request);
  request.n1 = 7;
  EXPECT_EQ(TwoCorrelationsRequiredN(request).requiredSize, before.requiredSize);
}

TEST_F(TwoCorrelationsTest, SaysWhichFixedGroupIsTooSmall) {
  ExpectFailed(TwoCorrelationsRequiredN(AskedOfTwo(.4, 0, .9, H0TwoTailed, NToVaryN1, 40)));
  ExpectFailed(TwoCorrelationsRequiredN(AskedOfTwo(.4, 0, .9, H0TwoTailed, NToVaryN2, 40)));
  EXPECT_THAT(Shown(), ElementsAre(Said::IncreaseN2, Said::IncreaseN1));
}

TEST_F(TwoCorrelationsTest, FailsAnEstimateBeyondAHundredMillion) {
  // The fixed group is a hair above what an infinite other one needs.
  double low = .3;
  double high = .4;
  const auto room = [](double rho1) {
    const double d = (NormalQuantile(1 - .05 / 2) + NormalQuantile(.9)) / Atanh(rho1);
    return 2 * 100 - (2 * (d * d) + 3) - 3;
  };
  while (high - low > 1e-9) {
    (room((low + high) / 2) > 0 ? high : low) = (low + high) / 2;
  }
  ASSERT_GT(room(high), 0);
  ASSERT_LT(room(high), 1e-4);
  ExpectFailed(TwoCorrelationsRequiredN(AskedOfTwo(high, 0, .9, H0TwoTailed, NToVaryN1, 100)));
  EXPECT_THAT(Shown(), ElementsAre(Said::IncreaseN2));
}

TEST_F(TwoCorrelationsTest, FailsAFixedGroupWhosePowerLevelsOffBelowTheGoal) {
  // The normal estimate has an answer, the biased Fisher z of the refined form has none.
  const TwoCorrelationsSizeRequest request = AskedOfTwo(-.95, -.9, .8, H0TwoTailed, NToVaryN1, 64);
  for (std::int64_t n = 10; n < NoWalkCap; n *= 3) {
    ASSERT_LE(PowerAt(request, n), .8);
  }
  ExpectFailed(TwoCorrelationsRequiredN(request));
  EXPECT_THAT(Shown(), ElementsAre(Said::IncreaseN2));
  EXPECT_EQ(TwoCorrelationsRequiredN(
                AskedOfTwo(-.95, -.9, .8, H0TwoTailed, NToVaryN1, 64, CorrelationFisherZCrude))
                .requiredSize,
            12782);
}

TEST_F(TwoCorrelationsTest, ReachesTensOfMillionsAndGivesUpAtAHundred) {
  TwoCorrelationsSizeRequest request =
      AskedOfTwo(.001001, 0, .999, H0TwoTailed, NToVaryBoth, 0, CorrelationFisherZCrude);
  request.alpha = .0001;
  EXPECT_EQ(TwoCorrelationsRequiredN(request).requiredSize, 97269114);
  request.alpha = 1e-6;
  ExpectFailed(TwoCorrelationsRequiredN(request));
  EXPECT_THAT(Shown(), IsEmpty());
}

TEST_F(TwoCorrelationsTest, FailsInSilenceWhenTheUserStopsTheSearch) {
  // The estimate falls short here.
  const TwoCorrelationsSizeRequest request = AskedOfTwo(-.95, -.9, .8, H0TwoTailed, NToVaryN1, 80);
  ASSERT_EQ(TwoCorrelationsRequiredN(request).status, ProcedureOk);
  observer.stop = [] { return true; };
  ExpectFailed(TwoCorrelationsRequiredN(request));
  EXPECT_THAT(Shown(), IsEmpty());
}

// --- Published cases.

TEST_F(CorrelationsTest, AgreesWithPublishedCases) {
  const nlohmann::json cases = PublishedCases("published_correlations.json");
  ASSERT_THAT(cases, SizeIs(16));
  for (const nlohmann::json& published : cases) {
    const nlohmann::json& in = published.at("inputs");
    const auto number = [&](const char* key) { return in.at(key).get<double>(); };
    const std::int16_t form = in.at("H0Type");
    const std::int16_t algorithm = in.at("Algorithm");
    const bool one = published.at("family") == "R";
    if (published.at("mode") == "power") {
      ExpectAsPublished(
          published, "power",
          one ? PowerOf(in.at("SampleSize"), number("Alpha"), number("Rho"), number("Rho0"),
                        algorithm, form)
              : TwoCorrelationsPower(number("Rho1"), number("Rho2"), in.at("SampleSizeN1"),
                                     in.at("SampleSizeN2"), number("Alpha"), form, algorithm));
      continue;
    }
    SearchResult result;
    if (one) {
      CorrelationSizeRequest request =
          Asked(number("Rho"), number("Rho0"), number("PowerGoal"), form, algorithm);
      request.alpha = number("Alpha");
      result = CorrelationRequiredN(request);
    } else {
      TwoCorrelationsSizeRequest request =
          AskedOfTwo(number("Rho1"), number("Rho2"), number("PowerGoal"), form, in.at("NToVary"), 0,
                     algorithm);
      request.alpha = number("Alpha");
      result = TwoCorrelationsRequiredN(request);
    }
    EXPECT_NE(result.status, ProcedureFailed) << published.at("id");
    ExpectAsPublished(published, one ? "N" : "N_per_group",
                      static_cast<double>(result.requiredSize));
    ExpectAsPublished(published, "power", result.actualPower);
  }
}

}  // namespace
}  // namespace poweranalysis
