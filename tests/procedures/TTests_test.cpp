#include "procedures/TTests.h"

#include <gmock/gmock.h>

#include <cmath>
#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>

#include "distributions/NoncentralT.h"
#include "procedures/ProceduresTest.h"
#include "support/TestData.h"

namespace poweranalysis {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

constexpr std::int64_t kLimit = 150000;
constexpr std::int16_t kForms[] = {H0TwoTailed, H0AtMost, H0AtLeast};

void ExpectMissing(const SearchResult& result, int status) {
  EXPECT_EQ(result.requiredSize, SizeFailure);
  EXPECT_EQ(result.actualPower, NumericFailure);
  EXPECT_EQ(result.status, status);
}

class TTestsTest : public ProceduresTest {
 protected:
  CriticalTCache criticals;

  double TTestPower(double crit, std::int32_t df, double delta, std::int16_t form) {
    return HeardOf([&](Refusal& refusal) {
      return poweranalysis::TTestPower(crit, df, delta, form, refusal);
    });
  }
  double TTestPower(const TDesign& design, double alpha, std::int16_t form, CriticalTCache& known) {
    return HeardOf([&](Refusal& refusal) {
      return poweranalysis::TTestPower(design, alpha, form, refusal, known);
    });
  }
  SearchResult OneGroupRequiredN(const TSizeRequest& request, CriticalTCache& known) {
    return Heard(poweranalysis::OneGroupRequiredN(request, known, observer));
  }
  SearchResult TwoGroupsRequiredN(const TSizeRequest& request,
                                  std::int16_t nToVary,
                                  std::int64_t fixedN,
                                  CriticalTCache& known) {
    return Heard(poweranalysis::TwoGroupsRequiredN(request, nToVary, fixedN, known, observer));
  }
  double PowerOf(const TDesign& design, double alpha, std::int16_t form) {
    return TTestPower(CriticalT(design.df, alpha, form), design.df, design.delta, form);
  }
};

// --- Effects and designs.

TEST_F(TTestsTest, StandardizesTheDifferenceAndKeepsItsSign) {
  EXPECT_EQ(OneMeanEffect(7, 5, 8), .25);
  EXPECT_EQ(OneMeanEffect(5, 7, 8), -.25);
  EXPECT_EQ(TwoMeansEffect(5, 0, 10), .5);
  EXPECT_EQ(PairedMeansEffect(8, 0, 4), 2);
}

TEST_F(TTestsTest, GivesTheStandardDeviationOfTheDifferencesUndivided) {
  EXPECT_NEAR(PairedSigmaDiff(10, 10, .1), 13.4164078649987, 1e-12);
  EXPECT_EQ(PairedSigmaDiff(3, 4, .375), 4);
  EXPECT_EQ(PairedSigmaDiff(3, 4, 0), 5);
}

TEST_F(TTestsTest, GivesDegreesOfFreedomAndNoncentralityOfADesign) {
  const TDesign one = OneGroupDesign(.5, 25);
  EXPECT_EQ(one.df, 24);
  EXPECT_EQ(one.delta, 2.5);
  const TDesign two = TwoGroupsDesign(.5, 10, 40);
  EXPECT_EQ(two.df, 48);
  EXPECT_EQ(two.delta, .5 * std::sqrt(8.0));
  const TDesign equal = EqualGroupsDesign(-.5, 32);
  EXPECT_EQ(equal.df, 62);
  EXPECT_EQ(equal.delta, -2);
}

TEST_F(TTestsTest, MultipliesGroupSizesBeyondThirtyTwoBits) {
  EXPECT_EQ(TwoGroupsDesign(1, 150000, 150000).delta, std::sqrt(75000.0));
  EXPECT_EQ(TwoGroupsDesign(1, 150000, 150000).df, 299998);
  EXPECT_EQ(TwoGroupsDesign(1, 46341, 46341).delta, EqualGroupsDesign(1, 46341).delta);
}

// --- Critical values.

TEST_F(TTestsTest, GivesTheLowerTailQuantileByTheForm) {
  // Fisher and Yates (1963), table III.
  EXPECT_NEAR(CriticalT(24, .05, H0TwoTailed), -2.064, 5e-4);
  EXPECT_NEAR(CriticalT(24, .05, H0AtMost), -1.711, 5e-4);
  EXPECT_NEAR(CriticalT(24, .05, H0AtLeast), -1.711, 5e-4);
  EXPECT_NEAR(CriticalT(1, .05, H0TwoTailed), -12.706, 5e-4);
  EXPECT_NEAR(CriticalT(10, .01, H0TwoTailed), -3.169, 5e-4);
  EXPECT_EQ(CriticalT(30, .25, H0TwoTailed), CriticalT(30, .125, H0AtMost));
}

TEST_F(TTestsTest, SolvesTheCentralDistributionForTheTailProbability) {
  for (const std::int32_t df : {1, 2, 3, 7, 50, 501, 5000}) {
    for (const double alpha : {.0001, .01, .05, .25}) {
      const double crit = CriticalT(df, alpha, H0AtMost);
      EXPECT_NEAR(NoncentralTCdf(crit, df, 0), alpha, 1e-9) << df << ' ' << alpha;
    }
  }
}

TEST_F(TTestsTest, KeepsCriticalValuesBitForBit) {
  CriticalTCache cache;
  for (int pass = 0; pass < 3; ++pass) {
    // 70 and 6 share an entry of the cache.
    for (const std::int32_t df : {6, 70, 6, 1, 65, 4999}) {
      for (const double alpha : {.05, .0001, .05}) {
        for (const std::int16_t form : kForms) {
          ASSERT_EQ(cache.Find(df, alpha, form), CriticalT(df, alpha, form));
        }
      }
    }
  }
}

// --- Power.

TEST_F(TTestsTest, CountsBothTailsInATwoTailedPower) {
  const std::int32_t df = 9;
  const double delta = .2;
  const double crit = CriticalT(df, .1, H0TwoTailed);
  const double wrongSide = NoncentralTCdf(crit, df, delta);
  const double rightSide = 1 - NoncentralTCdf(-crit, df, delta);
  EXPECT_GT(wrongSide, .03);
  EXPECT_NEAR(TTestPower(crit, df, delta, H0TwoTailed), wrongSide + rightSide, 1e-15);
}

TEST_F(TTestsTest, TakesTheTailThatTheFormRejectsIn) {
  const std::int32_t df = 9;
  const double crit = CriticalT(df, .05, H0AtMost);
  EXPECT_EQ(TTestPower(crit, df, 1.5, H0AtMost), 1 - NoncentralTCdf(-crit, df, 1.5));
  EXPECT_EQ(TTestPower(crit, df, -1.5, H0AtLeast), NoncentralTCdf(crit, df, -1.5));
  EXPECT_THAT(Shown(), IsEmpty());
}

TEST_F(TTestsTest, RefusesATrueNullItself) {
  EXPECT_EQ(TTestPower(-2, 24, 0, H0TwoTailed), NumericFailure);
  // Mu above Mu0 under the null ">=": true, though the effect is not zero.
  EXPECT_EQ(TTestPower(-2, 24, 1.5, H0AtLeast), NumericFailure);
  EXPECT_EQ(TTestPower(-2, 24, -1.5, H0AtMost), NumericFailure);
  EXPECT_THAT(Shown(), ElementsAre(Said::NullHypothesisTrue, Said::NullHypothesisTrue,
                                   Said::NullHypothesisTrue));
}

TEST_F(TTestsTest, ComputesThePowerOfAnEffectTooSmallToSearchFor) {
  EXPECT_NEAR(PowerOf(OneGroupDesign(.0001, 25), .05, H0TwoTailed), .05, 1e-6);
  EXPECT_THAT(Shown(), IsEmpty());
}

TEST_F(TTestsTest, GivesAnUnknownFormThePowerZero) {
  EXPECT_EQ(TTestPower(-2, 24, 1.5, 5), 0.0);
  EXPECT_EQ(TTestPower(-2, 24, 1.5, -1), 0.0);
  // The form "= 0" is checked as two-tailed, and has no power here.
  EXPECT_EQ(TTestPower(-2, 24, 1.5, H0Zero), 0.0);
  EXPECT_EQ(TTestPower(-2, 24, 0, H0Zero), NumericFailure);
}

TEST_F(TTestsTest, MakesAFailedCriticalValueAFailedPower) {
  for (const std::int16_t form : kForms) {
    EXPECT_EQ(TTestPower(NumericFailure, 24, form == H0AtLeast ? -1.5 : 1.5, form), NumericFailure);
  }
  EXPECT_EQ(ShownCriticalT(NumericFailure), NumericFailure);
  EXPECT_EQ(ShownCriticalTOfOneMean(NumericFailure, H0TwoTailed), NumericFailure);
}

TEST_F(TTestsTest, SumsTheTailsToThirteenDigits) {
  for (const std::int32_t df : {1, 2, 3, 4, 6, 8, 12, 25, 60, 126, 499, 998, 4998, 12560}) {
    for (const double alpha : {.0001, .01, .05, .25}) {
      const double crit = CriticalT(df, alpha, H0TwoTailed);
      for (double delta = -16.05; delta < 16; delta += .1) {
        const double sum = NoncentralTCdf(crit, df, delta) + 1 - NoncentralTCdf(-crit, df, delta);
        ASSERT_NEAR(TTestPower(crit, df, delta, H0TwoTailed), sum, 1e-13 * sum)
            << df << ' ' << alpha << ' ' << delta;
      }
    }
  }
}

TEST_F(TTestsTest, GivesTheSamePowerThroughTheCache) {
  for (const double es : {.1, .5, 1.3}) {
    const TDesign design = EqualGroupsDesign(es, 40);
    EXPECT_EQ(TTestPower(design, .05, H0AtMost, criticals), PowerOf(design, .05, H0AtMost));
  }
}

struct PowerRow {
  std::string family;
  double mean1, mean2, sigma1, sigma2, r;
  std::int64_t n1, n2;
  double alpha;
  std::int16_t form;
  double power;
};

std::vector<PowerRow> PowerRows() {
  std::ifstream file(TestDataDir() + "/t_test_power.csv");
  std::vector<PowerRow> rows;
  std::string line;
  while (std::getline(file, line)) {
    if (line.empty() || line[0] == '#' || line.starts_with("family")) {
      continue;
    }
    PowerRow row;
    std::istringstream fields(line);
    std::getline(fields, row.family, ',');
    char comma = 0;
    fields >> row.mean1 >> comma >> row.mean2 >> comma >> row.sigma1 >> comma >> row.sigma2 >>
        comma >> row.r >> comma >> row.n1 >> comma >> row.n2 >> comma >> row.alpha >> comma >>
        row.form >> comma >> row.power;
    EXPECT_FALSE(fields.fail()) << line;
    rows.push_back(row);
  }
  return rows;
}

TDesign DesignOf(const PowerRow& row) {
  if (row.family == "T1") {
    return OneGroupDesign(OneMeanEffect(row.mean1, row.mean2, row.sigma1), row.n1);
  }
  if (row.family == "T2") {
    return TwoGroupsDesign(TwoMeansEffect(row.mean1, row.mean2, row.sigma1), row.n1, row.n2);
  }
  const double sigmaDiff = PairedSigmaDiff(row.sigma1, row.sigma2, row.r);
  return OneGroupDesign(PairedMeansEffect(row.mean1, row.mean2, sigmaDiff), row.n1);
}

TEST_F(TTestsTest, AgreesWithQuadratureOverTheGrid) {
  const std::vector<PowerRow> rows = PowerRows();
  ASSERT_THAT(rows, SizeIs(2592));
  double largest = 0;
  for (const PowerRow& row : rows) {
    const double power = PowerOf(DesignOf(row), row.alpha, row.form);
    largest = std::max(largest, std::fabs(power - row.power));
    EXPECT_NEAR(power, row.power, 1e-6)
        << row.family << ' ' << row.mean1 << ' ' << row.mean2 << ' ' << row.sigma1 << ' '
        << row.sigma2 << ' ' << row.r << ' ' << row.n1 << ' ' << row.n2 << ' ' << row.alpha
        << " form " << row.form;
  }
  RecordProperty("largest_difference", std::to_string(largest * 1e9) + "e-9");
  EXPECT_THAT(Shown(), IsEmpty());
}

// --- Required sizes.

TSizeRequest Asked(double es, double alpha, double goal, std::int16_t form) {
  return {.es = es, .alpha = alpha, .powerGoal = goal, .form = form, .sizeLimit = kLimit};
}

TEST_F(TTestsTest, StartsFromTheNormalEstimate) {
  // (1.28155 + 1.95996)^2 = 10.507 at goal .9 and alpha .05.
  EXPECT_EQ(OneGroupStart(.5, .05, .9, H0TwoTailed), 42);
  EXPECT_EQ(OneGroupStart(-.5, .05, .9, H0TwoTailed), 42);
  EXPECT_EQ(OneGroupStart(.5, .1, .9, H0AtMost), 26);
  EXPECT_EQ(OneGroupStart(40, .05, .9, H0TwoTailed), 2);
}

TEST_F(TTestsTest, DoublesTheWholePartForEqualGroups) {
  EXPECT_EQ(EqualGroupsStart(1, .05, .9, H0TwoTailed), 20);  // d^2 = 10.5
  const double es = std::sqrt(10.507 / 10.7);
  EXPECT_EQ(EqualGroupsStart(es, .05, .9, H0TwoTailed), 20);  // not 21
  EXPECT_EQ(EqualGroupsStart(40, .05, .9, H0TwoTailed), 0);
}

TEST_F(TTestsTest, FindsSixtyFourAGroupForHalfASigma) {
  const SearchResult result =
      TwoGroupsRequiredN(Asked(.5, .05, .8, H0TwoTailed), NToVaryBoth, 0, criticals);
  EXPECT_EQ(result.requiredSize, 64);
  EXPECT_NEAR(result.actualPower, .801460, 1e-6);
  EXPECT_EQ(result.status, SearchOk);
}

TEST_F(TTestsTest, SettlesThePowerOfEffectsThatOverflowTheDistribution) {
  // The largest effect of the dialogs is 2e42.
  for (const double delta : {1e10, 1e15, 1e16, 1e35, 1e40, 2e45}) {
    for (const std::int64_t n : {2, 3, 25, 26, 1000, 150000}) {
      const TDesign up = {static_cast<std::int32_t>(n - 1), delta};
      const TDesign down = {up.df, -delta};
      EXPECT_NEAR(TTestPower(up, .0001, H0TwoTailed, criticals), 1, 1e-9) << n;
      EXPECT_NEAR(TTestPower(down, .05, H0TwoTailed, criticals), 1, 1e-9) << n;
      EXPECT_NEAR(TTestPower(up, .05, H0AtMost, criticals), 1, 1e-9) << n;
      EXPECT_NEAR(TTestPower(down, .05, H0AtLeast, criticals), 1, 1e-9) << n;
    }
  }
}

TEST_F(TTestsTest, FindsTwoForAnEffectPastAllNeed) {
  for (const double es : {50., 1e6, 2e40}) {
    const SearchResult one = OneGroupRequiredN(Asked(es, .05, .9, H0TwoTailed), criticals);
    EXPECT_EQ(one.requiredSize, 2) << es;
    EXPECT_GT(one.actualPower, .9);
    EXPECT_EQ(
        TwoGroupsRequiredN(Asked(es, .05, .9, H0AtMost), NToVaryBoth, 0, criticals).requiredSize,
        2);
    EXPECT_EQ(
        TwoGroupsRequiredN(Asked(es, .05, .9, H0AtMost), NToVaryN1, 2, criticals).requiredSize, 2);
  }
  const double sigmaDiff = PairedSigmaDiff(10, 10, .99989);
  const double es = PairedMeansEffect(8, 0, sigmaDiff);
  EXPECT_EQ(OneGroupRequiredN(Asked(es, .05, .9, H0TwoTailed), criticals).requiredSize, 2);
}

TEST_F(TTestsTest, RefusesEffectsThatAreNullOrNearlySo) {
  ExpectMissing(OneGroupRequiredN(Asked(0, .05, .9, H0TwoTailed), criticals), SearchNullTrue);
  ExpectMissing(OneGroupRequiredN(Asked(.5, .05, .9, H0AtLeast), criticals), SearchNullTrue);
  ExpectMissing(OneGroupRequiredN(Asked(.0005, .05, .9, H0TwoTailed), criticals), SearchNullTrue);
  for (const std::int16_t vary : {NToVaryBoth, NToVaryN1, NToVaryN2}) {
    ExpectMissing(TwoGroupsRequiredN(Asked(0, .05, .9, H0TwoTailed), vary, 25, criticals),
                  SearchNullTrue);
  }
  EXPECT_THAT(Shown(), ElementsAre(Said::NullHypothesisTrue, Said::NullHypothesisTrue,
                                   Said::NullHypothesisNearlyTrue, Said::NullHypothesisTrue,
                                   Said::NullHypothesisTrue, Said::NullHypothesisTrue));
  EXPECT_EQ(ToleranceIn(2), .001);
}

TEST_F(TTestsTest, SaysThatAnEffectNeedsMoreThanTheLimit) {
  // An effect equal to the tolerance is searched, and its estimate is already too large.
  ExpectMissing(OneGroupRequiredN(Asked(.001, .05, .9, H0TwoTailed), criticals), SearchTooLarge);
  ExpectMissing(TwoGroupsRequiredN(Asked(.001, .05, .9, H0TwoTailed), NToVaryBoth, 0, criticals),
                SearchTooLarge);
  EXPECT_THAT(Shown(), ElementsAre(Said::SearchTooLarge, Said::SearchTooLarge));
  EXPECT_EQ(SizeIn(0), 150000);
}

TEST_F(TTestsTest, RefusesInSilenceAChoiceThatNothingServes) {
  ExpectMissing(TwoGroupsRequiredN(Asked(.5, .05, .9, H0TwoTailed), 3, 25, criticals),
                SearchNullTrue);
  ExpectMissing(TwoGroupsRequiredN(Asked(0, .05, .9, H0TwoTailed), 3, 25, criticals),
                SearchNullTrue);
  EXPECT_THAT(Shown(), IsEmpty());
}

TEST_F(TTestsTest, SeeksEitherGroupAgainstTheOther) {
  const TSizeRequest request = Asked(.5, .05, .8, H0TwoTailed);
  const SearchResult n1 = TwoGroupsRequiredN(request, NToVaryN1, 50, criticals);
  const SearchResult n2 = TwoGroupsRequiredN(request, NToVaryN2, 50, criticals);
  EXPECT_EQ(n1.requiredSize, n2.requiredSize);
  EXPECT_GT(PowerOf(TwoGroupsDesign(.5, n1.requiredSize, 50), .05, H0TwoTailed), .8);
  EXPECT_LE(PowerOf(TwoGroupsDesign(.5, n1.requiredSize - 1, 50), .05, H0TwoTailed), .8);
}

TEST_F(TTestsTest, FailsAFixedGroupThatNoOtherGroupCanHelp) {
  const TSizeRequest request = Asked(.2, .05, .9, H0TwoTailed);
  ExpectMissing(TwoGroupsRequiredN(request, NToVaryN1, 20, criticals), SearchTooLarge);
  EXPECT_THAT(Shown(), ElementsAre(Said::SearchTooLarge));
}

TEST_F(TTestsTest, StaysInTheBracketOnAFlatStretchOfAFixedGroup) {
  const TSizeRequest request = Asked(.2, .0001, .8, H0TwoTailed);
  EXPECT_EQ(TwoGroupsRequiredN(request, NToVaryN2, 896, criticals).requiredSize, 1505);
  // The member's own row does so too, once its bracket lies within the limit.
  const SearchRequest search{.effect = .2, .powerGoal = .8, .start = 1, .sizeLimit = kLimit};
  const auto powerAt = [&](std::int64_t n) {
    return TTestPower(TwoGroupsDesign(.2, n, 896), .0001, H0TwoTailed, criticals);
  };
  const SearchResult result = RequiredSizeSearch(SearchMember::TTest, search, powerAt, observer);
  EXPECT_EQ(result.requiredSize, 1505);
}

TEST_F(TTestsTest, CrossesAFlatStartOfAFixedGroup) {
  // Between 2 and 4 the power hardly moves: the first secant step points beyond the limit.
  const SearchResult result =
      TwoGroupsRequiredN(Asked(.02, .0001, .8, H0TwoTailed), NToVaryN1, 150000, criticals);
  EXPECT_EQ(result.status, SearchOk);
  EXPECT_GT(PowerOf(TwoGroupsDesign(.02, result.requiredSize, 150000), .0001, H0TwoTailed), .8);
  EXPECT_LE(PowerOf(TwoGroupsDesign(.02, result.requiredSize - 1, 150000), .0001, H0TwoTailed), .8);
}

TEST_F(TTestsTest, NeedsFewTrialsBesideAFixedGroup) {
  int trials = 0;
  observer.stop = [&] { return ++trials > 1000; };
  // The last design of each row needs the other group many times as large.
  for (const double es : {.05, .2, .8, 3.}) {
    for (const double goal : {.65, .8, .999}) {
      const std::int64_t equal =
          TwoGroupsRequiredN(Asked(es, .0001, goal, H0TwoTailed), NToVaryBoth, 0, criticals)
              .requiredSize;
      for (const std::int64_t fixedN : {equal * 2, equal + 1, equal - equal / 3}) {
        trials = 0;
        TSizeRequest request = Asked(es, .0001, goal, H0TwoTailed);
        observer.showsBar = true;
        EXPECT_EQ(TwoGroupsRequiredN(request, NToVaryN1, fixedN, criticals).status, SearchOk);
        EXPECT_LE(trials, 10) << es << ' ' << goal << ' ' << fixedN;
      }
    }
  }
}

TEST_F(TTestsTest, TracksTheCriticalValueOfEachTrial) {
  // The size moves the degrees of freedom and with them the critical value: a normal critical value
  // would be content with 63 a group.
  const TDesign design = EqualGroupsDesign(.5, 63);
  EXPECT_LE(PowerOf(design, .05, H0TwoTailed), .8);
}

TEST_F(TTestsTest, ShowsItsBarAndObeysACancellation) {
  observer.stop = [] { return true; };
  TSizeRequest request = Asked(.5, .05, .8, H0TwoTailed);
  observer.showsBar = true;
  ExpectMissing(TwoGroupsRequiredN(request, NToVaryN1, 50, criticals), SearchCancelled);
  EXPECT_THAT(Shown(), ElementsAre(Said::CancelledAtRequest));
  EXPECT_FALSE(observer.barOpen);
}

// The designs of a grid, and the size of each beside the power one below it.
class RequiredNGridTest : public TTestsTest {
 protected:
  template <class DesignAt>
  void Check(
      const SearchResult& result, DesignAt designAt, double alpha, double goal, std::int16_t form) {
    ++designs;
    ASSERT_EQ(result.status, SearchOk);
    const std::int64_t n = result.requiredSize;
    EXPECT_EQ(result.actualPower, PowerOf(designAt(n), alpha, form)) << n;
    EXPECT_GT(result.actualPower, goal);
    if (n > 2) {
      EXPECT_LE(PowerOf(designAt(n - 1), alpha, form), goal) << n;
    }
  }

  int designs = 0;
};

TEST_F(RequiredNGridTest, EndsAtTheSmallestSizeAboveTheGoal) {
  for (const double size : {.06, .15, .3, .5, .8, 1.2, 3.}) {
    for (const double alpha : {.0001, .005, .05, .25}) {
      for (const double goal : {.1, .65, .8, .95, .999}) {
        for (const std::int16_t form : kForms) {
          SCOPED_TRACE(testing::Message() << size << ' ' << alpha << ' ' << goal << ' ' << form);
          const double es = form == H0AtLeast ? -size : size;
          const TSizeRequest request = Asked(es, alpha, goal, form);
          const auto one = [&](std::int64_t n) { return OneGroupDesign(es, n); };
          const auto equal = [&](std::int64_t n) { return EqualGroupsDesign(es, n); };
          Check(OneGroupRequiredN(request, criticals), one, alpha, goal, form);
          const SearchResult both = TwoGroupsRequiredN(request, NToVaryBoth, 0, criticals);
          Check(both, equal, alpha, goal, form);
          // A fixed group somewhat above the equal one can always be met by the other.
          const std::int64_t fixedN = both.requiredSize + 1 + both.requiredSize / 8;
          const auto fixed = [&](std::int64_t n) { return TwoGroupsDesign(es, n, fixedN); };
          Check(TwoGroupsRequiredN(request, NToVaryN1, fixedN, criticals), fixed, alpha, goal,
                form);
        }
      }
    }
  }
  EXPECT_EQ(designs, 1260);
  EXPECT_THAT(Shown(), IsEmpty());
}

// --- What the tables show.

TEST_F(TTestsTest, ShowsTheCriticalValueOfALowerTailTestOfOneMeanAlone) {
  const double crit = CriticalT(24, .05, H0AtLeast);
  EXPECT_NEAR(ShownCriticalTOfOneMean(crit, H0AtLeast), -1.7109, 5e-5);
  EXPECT_NEAR(ShownCriticalTOfOneMean(crit, H0AtMost), 1.7109, 5e-5);
  EXPECT_EQ(ShownCriticalTOfOneMean(crit, H0TwoTailed), -crit);
  EXPECT_NEAR(ShownCriticalT(crit), 1.7109, 5e-5);
}

TEST_F(TTestsTest, ShowsTheCriticalValueOfEqualGroupsBesideARequiredN) {
  for (const std::int16_t form : kForms) {
    EXPECT_EQ(ShownCriticalTOfRequiredN(40, .05, form), -CriticalT(78, .05, form));
  }
}

// --- Published cases.

using Json = nlohmann::json;

std::int16_t FormOf(const Json& inputs) { return inputs["H0Type"].get<std::int16_t>(); }

double EffectOf(const std::string& family, const Json& in) {
  const auto number = [&](const char* key) { return in.at(key).get<double>(); };
  if (family == "T1") {
    return OneMeanEffect(number("Mu"), number("Mu0"), number("Sigma"));
  }
  if (family == "T2") {
    return TwoMeansEffect(number("Mu1"), number("Mu2"), number("Sigma"));
  }
  return PairedMeansEffect(
      number("Mu1"), number("Mu2"),
      PairedSigmaDiff(number("Sigma1"), number("Sigma2"), number("BetweenGroupR")));
}

TDesign DesignOf(const std::string& family, const Json& in) {
  const double es = EffectOf(family, in);
  return family == "T2" ? TwoGroupsDesign(es, in.at("SampleSizeN1"), in.at("SampleSizeN2"))
                        : OneGroupDesign(es, in.at("SampleSize"));
}

// Compares with what the case expects: its published value, or the value recomputed by the exact
// formula where the publication used another.
void ExpectPublished(const Json& published, const char* key, double value) {
  if (!published.at("expected").contains(key)) {
    return;
  }
  const bool different = published.at("relation") == "different_formula";
  const Json& expected = published.at(different ? "recomputed" : "expected");
  EXPECT_NEAR(value, expected.at(key).get<double>(),
              published.at("tolerance").at(key).get<double>())
      << published.at("id") << ' ' << published.at("source");
}

TEST_F(TTestsTest, AgreesWithPublishedCases) {
  std::ifstream file(TestDataDir() + "/published_t_tests.json");
  const Json cases = Json::parse(file);
  ASSERT_THAT(cases, SizeIs(35));
  for (const Json& published : cases) {
    const std::string family = published.at("family");
    const Json& in = published.at("inputs");
    if (published.at("mode") == "power") {
      ExpectPublished(published, "power",
                      PowerOf(DesignOf(family, in), in.at("Alpha"), FormOf(in)));
      continue;
    }
    const TSizeRequest request =
        Asked(EffectOf(family, in), in.at("Alpha"), in.at("PowerGoal"), FormOf(in));
    const SearchResult result = family == "T2"
                                    ? TwoGroupsRequiredN(request, NToVaryBoth, 0, criticals)
                                    : OneGroupRequiredN(request, criticals);
    EXPECT_EQ(result.status, SearchOk);
    ExpectPublished(published, family == "T2" ? "N_per_group" : "N",
                    static_cast<double>(result.requiredSize));
    ExpectPublished(published, "power", result.actualPower);
  }
}

}  // namespace
}  // namespace poweranalysis
