#include "procedures/TwoProportions.h"

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

constexpr std::int16_t kForms[] = {H0TwoTailed, H0AtMost, H0AtLeast};
constexpr std::int64_t kMostN = 9000000000000000;

class TwoProportions : public ProceduresTest {
 protected:
  double Power(const TwoProportionTest& test, std::int64_t n1, std::int64_t n2) {
    return HeardOf(
        [&](Refusal& refusal) { return TwoProportionPower(test, n1, n2, err, refusal); });
  }
  std::int64_t RequiredN(const TwoProportionSizeRequest& request) {
    return HeardOf([&](Refusal& refusal) {
      return TwoProportionRequiredN(request, groups, actualPower, err, refusal);
    });
  }
  std::int16_t McNemarParameterCheck(double delta, double eta) {
    return HeardOf([&](Refusal& refusal) {
      return poweranalysis::McNemarParameterCheck(delta, eta, refusal);
    });
  }
  double McNemarPower(const McNemarTest& test, double n, int& status) {
    return HeardOf(
        [&](Refusal& refusal) { return poweranalysis::McNemarPower(test, n, status, refusal); });
  }
  double McNemarRequiredN(const McNemarTest& test, double goal, int& status) {
    return HeardOf([&](Refusal& refusal) {
      return poweranalysis::McNemarRequiredN(test, goal, status, refusal);
    });
  }
  void ExpectMissing(const TwoProportionSizeRequest& request) {
    actualPower = .5;
    EXPECT_EQ(RequiredN(request), SizeFailure);
    EXPECT_EQ(actualPower, NumericFailure);
  }

  int err = 0;
  GroupSizes groups;
  double actualPower = 0;
};

// --- Power.

TEST_F(TwoProportions, CountsBothTailsInATwoTailedPower) {
  const TwoProportionTest both{.51, .5, .25, H0TwoTailed, NotCorrected};
  const TwoProportionTest upper{.51, .5, .125, H0AtMost, NotCorrected};
  const TwoProportionTest lower{.5, .51, .125, H0AtMost, NotCorrected};
  // The far tail is that of the mirrored one-tailed test, which refuses its own null.
  EXPECT_GT(Power(both, 10, 10), Power(upper, 10, 10) + .1);
  EXPECT_EQ(Power(lower, 10, 10), NumericFailure);
}

TEST_F(TwoProportions, MirrorsTheFormsOfTheTwoTails) {
  for (const std::int16_t continuity : {NotCorrected, CorrectedForContinuity}) {
    const double up = Power({.7, .4, .05, H0AtMost, continuity}, 30, 50);
    const double down = Power({.4, .7, .05, H0AtLeast, continuity}, 50, 30);
    EXPECT_NEAR(up, down, 1e-14);
    EXPECT_GT(up, .5);
  }
}

TEST_F(TwoProportions, LosesPowerToTheCorrectionForContinuity) {
  for (const std::int16_t form : kForms) {
    const double pi2 = form == H0AtLeast ? .7 : .5;
    EXPECT_LT(Power({.6, pi2, .05, form, CorrectedForContinuity}, 100, 100),
              Power({.6, pi2, .05, form, NotCorrected}, 100, 100));
  }
}

TEST_F(TwoProportions, RefusesATrueNullAndNotASmallEffect) {
  EXPECT_EQ(Power({.5, .5, .05, H0TwoTailed, NotCorrected}, 100, 100), NumericFailure);
  EXPECT_EQ(err, 1);
  EXPECT_EQ(Power({.4, .5, .05, H0AtMost, NotCorrected}, 100, 100), NumericFailure);
  EXPECT_EQ(Power({.5, .4, .05, H0AtLeast, NotCorrected}, 100, 100), NumericFailure);
  EXPECT_THAT(Shown(), ElementsAre(Said::NullHypothesisTrue, Said::NullHypothesisTrue,
                                   Said::NullHypothesisTrue));
  EXPECT_GT(Power({.50001, .5, .05, H0TwoTailed, NotCorrected}, 100, 100), .04);
  EXPECT_EQ(err, 0);
}

TEST_F(TwoProportions, HasNoPowerForAFormWithoutARejectionRegion) {
  EXPECT_EQ(Power({.6, .5, .05, H0Zero, NotCorrected}, 100, 100), NumericFailure);
  EXPECT_EQ(err, 1);
  ExpectMissing({.test = {.6, .5, .05, H0Zero, NotCorrected}, .powerGoal = .9});
  EXPECT_EQ(err, 1);
  EXPECT_THAT(Shown(), IsEmpty());
}

TEST_F(TwoProportions, HasNoPowerWithAnEmptyGroup) {
  const TwoProportionTest test{.9, .1, .25, H0TwoTailed, NotCorrected};
  EXPECT_EQ(Power(test, 0, 100), 0);
  EXPECT_EQ(Power(test, 100, 0), 0);
  EXPECT_EQ(Power(test, -5, 100), 0);
  EXPECT_GT(Power(test, 1, 1), 0);
}

TEST_F(TwoProportions, KeepsToTheNormalTailWithoutVariance) {
  const TwoProportionTest test{1, 0, .05, H0TwoTailed, NotCorrected};
  // The difference is 1 for sure: beyond the critical value or not, as the normal function ends.
  EXPECT_NEAR(Power(test, 10, 10), 1, 1e-15);
  EXPECT_NEAR(Power({1, 0, .0001, H0TwoTailed, NotCorrected}, 2, 2), 0, 2e-15);
  for (std::int64_t n = 1; n < 50; ++n) {
    EXPECT_FALSE(std::isnan(Power(test, n, 2 * n)));
  }
}

TEST_F(TwoProportions, TakesGroupsBeyondThirtyTwoBits) {
  const double power = Power({.50001, .5, .05, H0TwoTailed, NotCorrected}, kMostN, kMostN);
  EXPECT_NEAR(power, 1, 1e-12);
}

// --- Groups.

TEST_F(TwoProportions, SetsBothGroupsAlike) {
  SetGroups({.nToVary = NToVaryBoth}, 77, groups);
  EXPECT_EQ(groups.n1, 77);
  EXPECT_EQ(groups.n2, 77);
}

TEST_F(TwoProportions, SetsAGroupBesideAFixedOneToAHarmonicMean) {
  groups = {0, 100};
  SetGroups({.nToVary = NToVaryN1}, 150, groups);
  EXPECT_EQ(groups.n1, 300) << "100 * 150 / 50";
  EXPECT_EQ(groups.n2, 100);
  groups = {100, 0};
  SetGroups({.nToVary = NToVaryN2}, 133, groups);
  EXPECT_EQ(groups.n1, 100);
  EXPECT_EQ(groups.n2, 198) << "13300 / 67, whole";
}

TEST_F(TwoProportions, HoldsTheDivisorOfAFixedGroupThatIsTooSmallAtOne) {
  groups = {0, 10};
  SetGroups({.nToVary = NToVaryN1}, 20, groups);
  EXPECT_EQ(groups.n1, 200);
  SetGroups({.nToVary = NToVaryN1}, 5000, groups);
  EXPECT_EQ(groups.n1, 50000);
}

TEST_F(TwoProportions, KeepsGroupsFromOneToTheLargest) {
  groups = {0, 150000};
  SetGroups({.nToVary = NToVaryN1}, kMostN, groups);
  EXPECT_EQ(groups.n1, kMostN);
  groups = {0, 2};
  SetGroups({.nToVary = NToVaryN1}, 1, groups);
  EXPECT_EQ(groups.n1, 1) << "2 / 3, whole";
  SetGroups({.nToVary = NToVaryRatio, .ratio = 99}, 50, groups);
  EXPECT_EQ(groups.n1, 50);
  EXPECT_EQ(groups.n2, 1);
  SetGroups({.nToVary = NToVaryRatio, .ratio = .011}, kMostN, groups);
  EXPECT_EQ(groups.n2, kMostN);
}

TEST_F(TwoProportions, CutsTheSecondGroupOfARatio) {
  SetGroups({.nToVary = NToVaryRatio, .ratio = 2}, 101, groups);
  EXPECT_EQ(groups.n1, 101);
  EXPECT_EQ(groups.n2, 50);
}

// --- Estimate.

TEST_F(TwoProportions, StartsAtTheNormalEstimateAndAtTenAtLeast) {
  TwoProportionSizeRequest request{.test = {.5, .75, .05, H0TwoTailed, NotCorrected},
                                   .powerGoal = .9};
  EXPECT_EQ(TwoProportionEstimate(request), 77);
  request.test.pi1 = .01;
  EXPECT_EQ(TwoProportionEstimate(request), 10);
}

TEST_F(TwoProportions, EstimatesWithTheCorrectionByTheSignOfTheDifference) {
  // Fleiss, Tytun and Ury (1980): without the correction n', with it
  // n' / 4 (1 + sqrt(1 + 4 / (n' d)))^2.
  TwoProportionSizeRequest request{.test = {.7, .6, .01, H0TwoTailed, CorrectedForContinuity},
                                   .powerGoal = .75};
  const double root = (NormalQuantile(.75) * std::sqrt(.7 * .3 + .6 * .4) +
                       NormalQuantile(.995) * std::sqrt(2 * .65 * .35)) /
                      .1;
  const double plain = root * root;
  const double corrected = plain / 4 * std::pow(1 + std::sqrt(1 + 4 / (plain * .1)), 2);
  EXPECT_NEAR(static_cast<double>(TwoProportionEstimate(request)), corrected, 1.01);
  // With the signs of d the other way the estimate falls below the uncorrected one.
  std::swap(request.test.pi1, request.test.pi2);
  EXPECT_LT(static_cast<double>(TwoProportionEstimate(request)), plain);
  // Here the root does not exist, and the search starts at its least.
  request = {.test = {.1, .9, .05, H0TwoTailed, CorrectedForContinuity}, .powerGoal = .8};
  EXPECT_EQ(TwoProportionEstimate(request), 10);
  EXPECT_GT(RequiredN(request), 0);
}

TEST_F(TwoProportions, DoesNotOverflowWithTheSmallestEffectAndTheLargestRatio) {
  const TwoProportionSizeRequest request{
      .test = {.50011, .5, .0001, H0TwoTailed, CorrectedForContinuity},
      .powerGoal = .999,
      .nToVary = NToVaryRatio,
      .ratio = 99.99};
  EXPECT_GT(TwoProportionEstimate(request), 50000000000);
  const std::int64_t n = RequiredN(request);
  EXPECT_GT(n, 50000000000);
  EXPECT_NEAR(actualPower, .999, 1e-6);
}

// --- Required size.

TEST_F(TwoProportions, ReachesTheGoalWithEqualGroupsAndNotOneBelow) {
  int designs = 0;
  for (const double pi2 : {.01, .3, .5, .9}) {
    for (const double gap : {.005, .05, .2, .5}) {
      for (const double alpha : {.0001, .05, .25}) {
        for (const double goal : {.65, .9, .999}) {
          for (const std::int16_t form : kForms) {
            for (const std::int16_t continuity : {NotCorrected, CorrectedForContinuity}) {
              const double pi1 = form == H0AtLeast ? pi2 - gap : pi2 + gap;
              if (pi1 < 0 || pi1 > 1) {
                continue;
              }
              const TwoProportionTest test{pi1, pi2, alpha, form, continuity};
              const std::int64_t n = RequiredN({.test = test, .powerGoal = goal});
              SCOPED_TRACE(testing::Message() << pi1 << ' ' << pi2 << ' ' << alpha << ' ' << goal
                                              << ' ' << form << ' ' << continuity << ": " << n);
              ASSERT_GE(n, 1);
              EXPECT_EQ(groups.n1, n);
              EXPECT_EQ(groups.n2, n);
              EXPECT_EQ(actualPower, Power(test, n, n));
              EXPECT_GE(actualPower, goal);
              EXPECT_LT(Power(test, n - 1, n - 1), goal);
              ++designs;
            }
          }
        }
      }
    }
  }
  EXPECT_EQ(designs, 720);
  EXPECT_THAT(Shown(), IsEmpty());
}

TEST_F(TwoProportions, LeavesTheFixedGroupAndGivesTheOther) {
  const TwoProportionTest test{.6, .5, .05, H0TwoTailed, NotCorrected};
  groups = {0, 500};
  TwoProportionSizeRequest request{.test = test, .powerGoal = .9, .nToVary = NToVaryN1};
  const std::int64_t n1 = RequiredN(request);
  EXPECT_EQ(groups.n1, n1);
  EXPECT_EQ(groups.n2, 500);
  EXPECT_EQ(actualPower, Power(test, n1, 500));
  EXPECT_GE(actualPower, .9);
  groups = {500, 0};
  request.nToVary = NToVaryN2;
  const std::int64_t n2 = RequiredN(request);
  EXPECT_EQ(groups.n2, n2);
  EXPECT_EQ(groups.n1, 500);
  EXPECT_EQ(actualPower, Power(test, 500, n2));
  EXPECT_GE(actualPower, .9);
}

TEST_F(TwoProportions, AnswersMoreThanTheLeastSizeBesideASmallFixedGroup) {
  // With 265 in group 2 the divisor 530 - N is small near the answer, and one step of N is many of
  // N1.
  const TwoProportionTest test{.6, .5, .05, H0TwoTailed, NotCorrected};
  groups = {0, 265};
  const TwoProportionSizeRequest request{.test = test, .powerGoal = .9, .nToVary = NToVaryN1};
  const std::int64_t answer = RequiredN(request);
  ASSERT_GT(answer, 0);
  std::int64_t least = answer;
  while (Power(test, least - 1, 265) >= .9) {
    --least;
  }
  EXPECT_LT(least, answer);
  EXPECT_GT(answer - least, 100);
  // The search variable one below falls short.
  std::int64_t n = 1;
  for (SetGroups(request, n, groups); groups.n1 < answer; SetGroups(request, ++n, groups)) {
  }
  SetGroups(request, n - 1, groups);
  EXPECT_LT(Power(test, groups.n1, 265), .9);
}

TEST_F(TwoProportions, FindsNothingBesideAFixedGroupThatIsTooSmall) {
  groups = {0, 20};
  ExpectMissing(
      {.test = {.6, .5, .05, H0TwoTailed, NotCorrected}, .powerGoal = .9, .nToVary = NToVaryN1});
  EXPECT_EQ(err, 0) << "no null hypothesis is refused";
  EXPECT_THAT(Shown(), ElementsAre(Said::SelectedGroupNotFound));
}

TEST_F(TwoProportions, FindsNothingWhereOneInEachGroupIsEnough) {
  const TwoProportionTest test{1, 0, .25, H0TwoTailed, NotCorrected};
  EXPECT_GE(Power(test, 1, 1), .9);
  ExpectMissing({.test = test, .powerGoal = .9});
  EXPECT_EQ(err, 0);
}

TEST_F(TwoProportions, HoldsTheRatioOfTheGroups) {
  const TwoProportionTest test{.6, .5, .05, H0TwoTailed, NotCorrected};
  for (const double ratio : {2., .5, 1., 99.9, .0101, 3.7}) {
    const TwoProportionSizeRequest request{
        .test = test, .powerGoal = .9, .nToVary = NToVaryRatio, .ratio = ratio};
    const std::int64_t n1 = RequiredN(request);
    EXPECT_EQ(groups.n1, n1);
    EXPECT_EQ(groups.n2, std::max<std::int64_t>(
                             static_cast<std::int64_t>(static_cast<double>(n1) / ratio), 1));
    EXPECT_EQ(actualPower, Power(test, groups.n1, groups.n2));
    EXPECT_GE(actualPower, .9) << ratio;
    SetGroups(request, n1 - 1, groups);
    EXPECT_LT(Power(test, groups.n1, groups.n2), .9) << ratio;
  }
  RequiredN({.test = test, .powerGoal = .9, .nToVary = NToVaryRatio, .ratio = 2});
  EXPECT_EQ(groups.n2, groups.n1 / 2);
}

TEST_F(TwoProportions, RefusesASmallEffectOnlyInASearch) {
  TwoProportionSizeRequest request{.test = {.5, .5, .05, H0TwoTailed, NotCorrected},
                                   .powerGoal = .9};
  ExpectMissing(request);
  EXPECT_EQ(err, 1);
  request.test.pi1 = .50009;
  ExpectMissing(request);
  EXPECT_EQ(err, 2);
  EXPECT_THAT(Shown(), ElementsAre(Said::NullHypothesisTrue, Said::NullHypothesisNearlyTrue));
  observer.remarks.clear();
  request.test.pi1 = .5005;
  EXPECT_GT(RequiredN(request), 1000000);
  EXPECT_THAT(Shown(), IsEmpty()) << "a gap below .001 is not spoken of";
}

TEST_F(TwoProportions, RefusesAnUnknownChoiceOfGroups) {
  for (const std::int16_t nToVary : {std::int16_t{-1}, std::int16_t{4}}) {
    ExpectMissing(
        {.test = {.6, .5, .05, H0TwoTailed, NotCorrected}, .powerGoal = .9, .nToVary = nToVary});
    EXPECT_EQ(err, 1);
  }
}

TEST_F(TwoProportions, EndsForAnyInputWithinBounds) {
  std::uint32_t state = 99;
  const auto uniform = [&state] {
    state = state * 1664525U + 1013904223U;
    return (state >> 8) / 16777216.0;
  };
  const auto proportion = [&] {
    const double u = uniform();
    return u < .1 ? 0 : u > .9 ? 1 : uniform() < .2 ? .5 + 2e-4 * uniform() : uniform();
  };
  int answered = 0;
  for (int i = 0; i < 20000; ++i) {
    TwoProportionSizeRequest request{
        .test = {proportion(), proportion(), .0001 + .2499 * uniform(),
                 static_cast<std::int16_t>(i % 4), static_cast<std::int16_t>(i % 2)},
        .powerGoal = .05 + .949 * uniform(),
        .nToVary = static_cast<std::int16_t>(i / 4 % 4),
        .ratio = .0101 * std::pow(9900, uniform())};
    groups = {2 + static_cast<std::int64_t>(149998 * uniform()),
              2 + static_cast<std::int64_t>(149998 * uniform() * uniform() * uniform())};
    const std::int64_t n = RequiredN(request);
    if (n == SizeFailure) {
      ASSERT_EQ(actualPower, NumericFailure);
      continue;
    }
    ++answered;
    ASSERT_GE(groups.n1, 1);
    ASSERT_GE(groups.n2, 1);
    ASSERT_GE(actualPower, request.powerGoal);
    ASSERT_LE(actualPower, 1);
  }
  EXPECT_GT(answered, 5000);
}

// --- McNemar's test.

TEST_F(TwoProportions, HasOneTermInThePowerOfMcNemarsTest) {
  EXPECT_NEAR(McNemarPower({.1, .4, .05, H0TwoTailed}, 100, err), .3485244, 1e-7);
  EXPECT_NEAR(McNemarPower({.1, .4, .05, H0AtMost}, 100, err), .4738968, 1e-7);
  // With next to no effect the far tail, as large as the near one, stays out.
  EXPECT_NEAR(McNemarPower({1e-9, .4, .25, H0TwoTailed}, 100, err), .125, 1e-6);
  EXPECT_EQ(err, 0);
}

TEST_F(TwoProportions, RequiresPairsByTheClosedForm) {
  EXPECT_EQ(McNemarRequiredN({.1, .4, .05, H0TwoTailed}, .9, err), 412);
  EXPECT_EQ(err, 0);
  EXPECT_GE(McNemarPower({.1, .4, .05, H0TwoTailed}, 412, err), .9);
  EXPECT_LT(McNemarPower({.1, .4, .05, H0TwoTailed}, 411, err), .9);
}

TEST_F(TwoProportions, ReachesTheGoalWithTheRequiredPairsAndNotOneBelow) {
  for (const double delta : {.0005, .05, .3, .7}) {
    for (const double eta : {delta + .0002, delta + .1, 1.}) {
      for (const double goal : {.65, .9, .999}) {
        for (const std::int16_t form : {H0TwoTailed, H0AtMost}) {
          const McNemarTest test{delta, eta, .05, form};
          const double n = McNemarRequiredN(test, goal, err);
          EXPECT_GE(McNemarPower(test, n, err), goal - 1e-6) << delta << ' ' << eta;
          EXPECT_LT(McNemarPower(test, n - 1, err), goal + 1e-6) << delta << ' ' << eta;
        }
      }
    }
  }
}

TEST_F(TwoProportions, HasNoCapOnTheRequiredPairs) {
  const double n = McNemarRequiredN({.0001, 1, .0001, H0TwoTailed}, .999, err);
  EXPECT_GT(n, 4.8e9);
  EXPECT_LT(n, 5e9);
  EXPECT_EQ(n, std::floor(n));
}

TEST_F(TwoProportions, TakesTheMagnitudeOfDelta) {
  const McNemarTest down{-.1, .4, .05, H0AtLeast};
  EXPECT_NEAR(McNemarPower(down, 100, err), .4738968, 1e-7);
  EXPECT_EQ(McNemarRequiredN(down, .9, err), McNemarRequiredN({.1, .4, .05, H0AtMost}, .9, err));
}

TEST_F(TwoProportions, RefusesAnEtaThatIsNotAboveDeltaByTheTolerance) {
  EXPECT_EQ(McNemarParameterCheck(.1, .4), 0);
  EXPECT_EQ(McNemarParameterCheck(.5, .5001220703125), 0);
  EXPECT_THAT(Shown(), IsEmpty());
  EXPECT_EQ(McNemarParameterCheck(.1, .1), 1);
  EXPECT_EQ(McNemarParameterCheck(-.1, .1), 1);
  // Written as decimals the gap is .0001, as doubles it is a little less.
  EXPECT_EQ(McNemarParameterCheck(.1, .1001), 1);
  EXPECT_THAT(Shown(), ElementsAre(Said::EtaTooSmall, Said::EtaTooSmall, Said::EtaTooSmall));
}

TEST_F(TwoProportions, RefusesATrueNullBeforeItsParameters) {
  EXPECT_EQ(McNemarPower({0, 0, .05, H0TwoTailed}, 100, err), NumericFailure);
  EXPECT_EQ(err, 1);
  EXPECT_EQ(McNemarPower({.1, .05, .05, H0TwoTailed}, 100, err), NumericFailure);
  EXPECT_EQ(err, 0);
  EXPECT_EQ(McNemarPower({.1, .4, .05, H0AtLeast}, 100, err), NumericFailure);
  EXPECT_EQ(err, 1);
  EXPECT_THAT(Shown(),
              ElementsAre(Said::NullHypothesisTrue, Said::EtaTooSmall, Said::NullHypothesisTrue));
}

TEST_F(TwoProportions, MarksATrueNullInTheRequiredPairsWithANumberOfItsOwn) {
  EXPECT_EQ(McNemarRequiredN({0, .4, .05, H0TwoTailed}, .9, err), NumericFailure);
  EXPECT_EQ(err, -333);
  EXPECT_EQ(McNemarRequiredN({.00009, .4, .05, H0TwoTailed}, .9, err), NumericFailure);
  EXPECT_EQ(err, -333);
  EXPECT_EQ(McNemarRequiredN({.1, .05, .05, H0TwoTailed}, .9, err), NumericFailure);
  EXPECT_EQ(err, 0);
  EXPECT_THAT(Shown(), ElementsAre(Said::NullHypothesisTrue, Said::NullHypothesisNearlyTrue,
                                   Said::EtaTooSmall));
}

// --- Against other computations.

TEST_F(TwoProportions, AgreesWithAnIndependentComputation) {
  std::ifstream file(TestDataDir() + "/two_proportions_power.csv");
  ASSERT_TRUE(file.is_open());
  std::string line;
  int two = 0;
  int paired = 0;
  while (std::getline(file, line)) {
    const bool pairs = line.rfind("QMAC,", 0) == 0;
    if (!pairs && line.rfind("P2,", 0) != 0) {
      continue;
    }
    std::istringstream cells(line.substr(line.find(',') + 1));
    char comma = 0;
    TwoProportionTest test;
    double expected = 0;
    std::int64_t n1 = 0;
    std::int64_t n2 = 0;
    cells >> test.pi1 >> comma >> test.pi2 >> comma >> n1 >> comma >> n2 >> comma >> test.alpha >>
        comma >> test.form >> comma >> test.continuity >> comma >> expected;
    ASSERT_FALSE(cells.fail()) << line;
    const double power = pairs ? McNemarPower({test.pi1, test.pi2, test.alpha, test.form},
                                              static_cast<double>(n1), err)
                               : Power(test, n1, n2);
    // Seven digits of the normal distribution.
    EXPECT_NEAR(power, expected, 1e-6) << line;
    ++(pairs ? paired : two);
  }
  EXPECT_EQ(two, 450);
  EXPECT_EQ(paired, 150);
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

TEST_F(TwoProportions, AgreesWithPublishedCases) {
  std::ifstream file(TestDataDir() + "/published_proportions.json");
  int cases = 0;
  for (const Json& published : Json::parse(file)) {
    const Json& in = published.at("inputs");
    const bool size = published.at("mode") == "sample_size";
    if (published.at("family") == "P2") {
      const TwoProportionTest test{in.at("Pi1"), in.at("Pi2"), in.at("Alpha"),
                                   in.at("H0Type").get<std::int16_t>(),
                                   in.at("Continuity").get<std::int16_t>()};
      if (size) {
        const std::int64_t n = RequiredN({.test = test,
                                          .powerGoal = in.at("PowerGoal"),
                                          .nToVary = in.at("NToVary").get<std::int16_t>()});
        ExpectPublished(published, "N_per_group", static_cast<double>(n));
        ExpectPublished(published, "power", actualPower);
      } else {
        ExpectPublished(published, "power",
                        Power(test, in.at("SampleSizeN1"), in.at("SampleSizeN2")));
      }
    } else if (published.at("family") == "QMAC") {
      const McNemarTest test{in.at("Delta"), in.at("Eta"), in.at("Alpha"),
                             in.at("H0Type").get<std::int16_t>()};
      if (size) {
        ExpectPublished(published, "N", McNemarRequiredN(test, in.at("PowerGoal"), err));
      } else {
        ExpectPublished(published, "power", McNemarPower(test, in.at("SampleSize"), err));
      }
    } else {
      continue;
    }
    ++cases;
  }
  EXPECT_EQ(cases, 12);
}

}  // namespace
}  // namespace poweranalysis
