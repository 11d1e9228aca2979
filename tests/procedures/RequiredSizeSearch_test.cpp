#include "procedures/RequiredSizeSearch.h"

#include <gmock/gmock.h>

#include <cmath>
#include <limits>
#include <map>

#include "procedures/ProceduresTest.h"

namespace poweranalysis {
namespace {

using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::Ge;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::Pair;
using Member = SearchMember;

constexpr std::int64_t kLimit = 150000;
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

// A proper effect and a goal that is exact in binary.
SearchRequest From(double start) {
  return {.effect = .5, .powerGoal = .75, .start = start, .sizeLimit = kLimit};
}

double TableOr(const std::map<std::int64_t, double>& table, std::int64_t size, double otherwise) {
  const auto entry = table.find(size);
  return entry == table.end() ? otherwise : entry->second;
}

void ExpectMissing(const SearchResult& result, int status) {
  EXPECT_EQ(result.requiredSize, SizeFailure);
  EXPECT_EQ(result.actualPower, NumericFailure);
  EXPECT_EQ(result.status, status);
}

// --- NullHypothesisCheck.

class NullHypothesisCheckTest : public ProceduresTest {
 protected:
  std::int16_t NullHypothesisCheck(double effect,
                                   std::int16_t form,
                                   double tolerance,
                                   TrueNull trueNull) {
    return HeardOf([&](Refusal& refusal) {
      return poweranalysis::NullHypothesisCheck(effect, form, tolerance, trueNull, refusal);
    });
  }
};

TEST_F(NullHypothesisCheckTest, RefusesByTheFormOfTheHypothesis) {
  struct Row {
    double effect;
    std::int16_t form;
    int expected;
  };
  constexpr Row kRows[] = {
      {0.0, 0, 1},  {-0.0, 0, 1}, {1e-300, 0, 0}, {-2.0, 0, 0}, {0.0, 3, 1},
      {-2.0, 3, 0}, {0.0, 1, 1},  {-2.0, 1, 1},   {2.0, 1, 0},  {0.0, 2, 1},
      {2.0, 2, 1},  {-2.0, 2, 0}, {kNaN, 1, 1},   {kNaN, 2, 1}, {kNaN, 0, 0},
  };
  for (const Row& row : kRows) {
    observer.remarks.clear();
    EXPECT_EQ(NullHypothesisCheck(row.effect, row.form, .001, TrueNull::Exactly), row.expected)
        << row.effect << " form " << row.form;
    EXPECT_EQ(observer.remarks.size(), static_cast<std::size_t>(row.expected));
  }
}

TEST_F(NullHypothesisCheckTest, ClearsAnEarlierRefusal) {
  Refusal refusal{Said::NullHypothesisNearlyTrue, {.001}};
  EXPECT_EQ(
      poweranalysis::NullHypothesisCheck(.5, H0TwoTailed, .001, TrueNull::WithinTolerance, refusal),
      0);
  EXPECT_FALSE(refusal);
  EXPECT_EQ(refusal, Refusal());
}

TEST_F(NullHypothesisCheckTest, NamesTheToleranceOfAnEffectNearlyNull) {
  EXPECT_EQ(NullHypothesisCheck(.0005, H0TwoTailed, .001, TrueNull::WithinTolerance), 2);
  EXPECT_EQ(NullHypothesisCheck(-.0005, H0AtLeast, .001, TrueNull::WithinTolerance), 2);
  EXPECT_THAT(Shown(), ElementsAre(Said::NullHypothesisNearlyTrue, Said::NullHypothesisNearlyTrue));
  EXPECT_EQ(ToleranceIn(0), .001);
}

TEST_F(NullHypothesisCheckTest, LetsAnEffectEqualToTheTolerancePass) {
  EXPECT_EQ(NullHypothesisCheck(.001, H0TwoTailed, .001, TrueNull::WithinTolerance), 0);
  EXPECT_EQ(NullHypothesisCheck(-.001, H0TwoTailed, .001, TrueNull::WithinTolerance), 0);
  EXPECT_THAT(Shown(), IsEmpty());
}

TEST_F(NullHypothesisCheckTest, LooksAtTheToleranceOnlyWhenAsked) {
  EXPECT_EQ(NullHypothesisCheck(.0005, H0TwoTailed, .001, TrueNull::Exactly), 0);
  EXPECT_THAT(Shown(), IsEmpty());
}

TEST_F(NullHypothesisCheckTest, SpeaksOnceOfANullThatIsTrueAndWithinTheTolerance) {
  EXPECT_EQ(NullHypothesisCheck(0, H0TwoTailed, .001, TrueNull::WithinTolerance), 1);
  EXPECT_THAT(Shown(), ElementsAre(Said::NullHypothesisTrue));
}

TEST_F(NullHypothesisCheckTest, LetsAnUnknownFormPassTheFirstTest) {
  EXPECT_EQ(NullHypothesisCheck(0, 7, .001, TrueNull::Exactly), 0);
  EXPECT_EQ(NullHypothesisCheck(0, -1, .001, TrueNull::Exactly), 0);
  EXPECT_THAT(Shown(), IsEmpty());
  EXPECT_EQ(NullHypothesisCheck(0, 7, .001, TrueNull::WithinTolerance), 2);
}

// --- The secant search.

class RequiredSizeSearchTest : public ProceduresTest {
 protected:
  template <class PowerAt>
  SearchResult RequiredSizeSearch(SearchMember member,
                                  const SearchRequest& request,
                                  PowerAt&& powerAt) {
    return Heard(poweranalysis::RequiredSizeSearch(member, request, powerAt, observer));
  }
};

TEST_F(RequiredSizeSearchTest, RemembersEarlierSlopesInItsStep) {
  const std::map<std::int64_t, double> powers = {
      {10, .5},       {12, .5625},  {18, .625},   {19, .6875}, {20, .703125},
      {21, .7109375}, {22, .71875}, {23, .71875}, {24, .8125}, {30, .875}};
  Script power([&](std::int64_t n) { return powers.at(n); });
  const SearchResult result = RequiredSizeSearch(Member::TTest, From(9), power);
  // 2 * .1875 / .0625 = 6, then 6 * .125 / .0625 = 12: a plain secant would take 12 - 6 again.
  EXPECT_THAT(power.trials, ElementsAre(10, 12, 18, 30, 24, 19, 22, 23));
  EXPECT_EQ(result.requiredSize, 24);
  EXPECT_EQ(result.actualPower, .8125);
  EXPECT_EQ(result.status, SearchOk);
}

TEST_F(RequiredSizeSearchTest, MovesByOneWhenTheStepIsZero) {
  const std::map<std::int64_t, double> powers = {
      {10, .5}, {12, .734375}, {13, .7421875}, {14, .78125}};
  Script power([&](std::int64_t n) { return powers.at(n); });
  EXPECT_EQ(RequiredSizeSearch(Member::TTest, From(9), power).requiredSize, 14);
  // A step of 0 is not replaced by 1: the next one is 0 again.
  EXPECT_THAT(power.trials, ElementsAre(10, 12, 13, 14));
}

TEST_F(RequiredSizeSearchTest, CountsAPowerEqualToTheGoalAsShort) {
  Script power([](std::int64_t n) { return n < 10 ? .5 : n == 10 ? .75 : .8125; });
  for (const double start : {2., 8., 9., 10., 30.}) {
    const SearchResult result = RequiredSizeSearch(Member::TTest, From(start), power);
    EXPECT_EQ(result.requiredSize, 11) << start;
    EXPECT_EQ(result.actualPower, .8125);
  }
}

TEST_F(RequiredSizeSearchTest, EndsAtTheSmallestSizeFromAnyStart) {
  const auto curve = [](std::int64_t n) { return 1 - 1 / (1 + static_cast<double>(n) / 40); };
  for (const Member member : {Member::TTest, Member::PlannedContrast, Member::OneWayAnova,
                              Member::TwoWayAnova, Member::OneVariance, Member::TwoVariances}) {
    for (double start = 0; start < 400; start += 7) {
      const SearchResult result = RequiredSizeSearch(member, From(start), curve);
      // curve(120) is .75 exactly.
      ASSERT_EQ(result.requiredSize, 121) << static_cast<int>(member) << " from " << start;
      EXPECT_EQ(result.actualPower, curve(121));
    }
  }
}

TEST_F(RequiredSizeSearchTest, TakesStepsOfOneAboveThePowerOfPoint999) {
  Script power = StepAt(97, .5, .9995);
  EXPECT_EQ(RequiredSizeSearch(Member::TTest, From(99), power).requiredSize, 97);
  EXPECT_THAT(power.trials, ElementsAre(100, 98, 97, 96));
}

TEST_F(RequiredSizeSearchTest, TakesAStepOfOneWhenTwoPowersAgree) {
  Script power([](std::int64_t n) { return n < 20 ? .5 : .875; });
  EXPECT_EQ(RequiredSizeSearch(Member::TTest, From(9), power).requiredSize, 20);
  EXPECT_THAT(power.trials, ElementsAre(10, 12, 13, 14, 15, 16, 17, 18, 19, 20));
}

TEST_F(RequiredSizeSearchTest, BracketsBelowAMillionWhateverTheLimit) {
  Script power([](std::int64_t n) { return n < 500002 ? .5 : n < 700000 ? .5 + 0x1p-20 : .875; });
  SearchRequest request = From(499999);
  request.sizeLimit = 5000000;
  RequiredSizeSearch(Member::TTest, request, power);
  ASSERT_GE(power.trials.size(), 3U);
  EXPECT_EQ(power.trials[2], 999999);
}

TEST_F(RequiredSizeSearchTest, CountsNaNPowersAsShort) {
  Script power([](std::int64_t n) { return n < 30 ? kNaN : .875; });
  const SearchResult result = RequiredSizeSearch(Member::TTest, From(9), power);
  EXPECT_EQ(result.requiredSize, 30);
  SearchRequest request = From(9);
  request.sizeLimit = 50;
  Script never([](std::int64_t) { return kNaN; });
  ExpectMissing(RequiredSizeSearch(Member::TTest, request, never), SearchTooLarge);
  EXPECT_EQ(never.trials.back(), 50);
}

TEST_F(RequiredSizeSearchTest, ClimbsToTheLimitOnFailedPowers) {
  SearchRequest request = From(9);
  request.sizeLimit = 50;
  Script power([](std::int64_t) { return NumericFailure; });
  ExpectMissing(RequiredSizeSearch(Member::TTest, request, power), SearchTooLarge);
  EXPECT_EQ(power.trials.size(), 40U);  // 10, 12, 13, ... 50
  EXPECT_THAT(Shown(), ElementsAre(Said::SearchTooLarge));
}

TEST_F(RequiredSizeSearchTest, SurvivesStepsBeyondAnyInteger) {
  Script power(
      [](std::int64_t n) { return n < 40000 ? .5 + 1e-14 * static_cast<double>(n) : .875; });
  for (const Member member : {Member::OneWayAnova, Member::TwoWayAnova, Member::TwoVariances}) {
    EXPECT_EQ(RequiredSizeSearch(member, From(9), power).requiredSize, 40000);
  }
}

TEST_F(RequiredSizeSearchTest, GivesUpOnAPowerThatCycles) {
  std::int64_t trials = 0;
  // Short far above the bracket, enough at the limit, short just below it.
  const auto power = [&](std::int64_t n) {
    ++trials;
    return n == kLimit ? .875 : .5;
  };
  ExpectMissing(RequiredSizeSearch(Member::TwoVariances, From(8e7), power), SearchTooLarge);
  EXPECT_LE(trials, 2000002);
  EXPECT_THAT(Shown(), ElementsAre(Said::SearchTooLarge));
}

TEST_F(RequiredSizeSearchTest, RefusesATrueNullBeforeAnythingElse) {
  Script power = StepAt(20, .5, .875);
  SearchRequest request = From(9);
  request.effect = 0;
  observer.showsBar = true;
  ExpectMissing(RequiredSizeSearch(Member::TTest, request, power), SearchNullTrue);
  EXPECT_THAT(Shown(), ElementsAre(Said::NullHypothesisTrue));
  EXPECT_THAT(power.trials, IsEmpty());
  EXPECT_THAT(observer.bars, IsEmpty());
}

TEST_F(RequiredSizeSearchTest, ChecksTheNullByTheMembersRow) {
  struct Row {
    Member member;
    double tolerance;
    bool directed;  // the check is of the null "<=", whatever the request says
  };
  const Row rows[] = {
      {Member::TTest, .001, false},      {Member::PlannedContrast, .01, false},
      {Member::OneWayAnova, .01, true},  {Member::TwoWayAnova, .01, true},
      {Member::OneVariance, .02, false}, {Member::TwoVariances, .001, false},
  };
  for (const Row& row : rows) {
    Script power = StepAt(20, .5, .875);
    SearchRequest request = From(9);
    request.effect = row.tolerance;
    EXPECT_EQ(RequiredSizeSearch(row.member, request, power).status, SearchOk);

    observer.remarks.clear();
    power.trials.clear();
    request.effect = row.tolerance * .99;
    EXPECT_NE(RequiredSizeSearch(row.member, request, power).status, SearchOk);
    ASSERT_THAT(Shown(), ElementsAre(Said::NullHypothesisNearlyTrue));
    EXPECT_EQ(ToleranceIn(0), row.tolerance);
    EXPECT_THAT(power.trials, IsEmpty());

    observer.remarks.clear();
    request.effect = -.5;
    EXPECT_EQ(RequiredSizeSearch(row.member, request, power).status,
              row.directed ? SearchNullTrue : SearchOk);
    EXPECT_EQ(Shown().size(), row.directed ? 1U : 0U);
  }
}

TEST_F(RequiredSizeSearchTest, ChecksAContrastTwoTailedWhateverTheForm) {
  Script power = StepAt(20, .5, .875);
  SearchRequest request = From(9);
  request.effect = -.5;
  request.form = H0AtMost;
  EXPECT_EQ(RequiredSizeSearch(Member::PlannedContrast, request, power).requiredSize, 20);
  EXPECT_EQ(RequiredSizeSearch(Member::TTest, request, power).status, SearchNullTrue);
}

TEST_F(RequiredSizeSearchTest, GivesTheNullChecksOwnResultForTwoVariances) {
  Script power = StepAt(20, .5, .875);
  SearchRequest request = From(9);
  request.effect = 0;
  ExpectMissing(RequiredSizeSearch(Member::TwoVariances, request, power), 1);
  request.effect = .0005;
  ExpectMissing(RequiredSizeSearch(Member::TwoVariances, request, power), 2);
  // Neither "too large" nor "cancelled" is said.
  EXPECT_THAT(Shown(), ElementsAre(Said::NullHypothesisTrue, Said::NullHypothesisNearlyTrue));
}

TEST_F(RequiredSizeSearchTest, SpeaksOfATrueNullAndNotOfTheVarianceRatio) {
  Script power = StepAt(20, .5, .875);
  SearchRequest request = From(9);
  request.effect = .019;
  ExpectMissing(RequiredSizeSearch(Member::OneVariance, request, power), SearchNullTrue);
  EXPECT_THAT(Shown(), ElementsAre(Said::NullHypothesisNearlyTrue));
}

// --- Goals.

TEST_F(RequiredSizeSearchTest, RefusesInSilenceAGoalOutsideTheWindowOfTheAnovas) {
  for (const Member member : {Member::OneWayAnova, Member::TwoWayAnova}) {
    for (const double goal : {.0099, .9991, 1.5, kNaN}) {
      Script power = StepAt(20, 0, 2);
      SearchRequest request = From(9);
      request.powerGoal = goal;
      observer.showsBar = true;
      ExpectMissing(RequiredSizeSearch(member, request, power), SearchGoalOutOfRange);
      EXPECT_THAT(power.trials, IsEmpty());
      EXPECT_THAT(observer.bars, IsEmpty());
    }
    observer.showsBar = false;
    for (const double goal : {.01, .999}) {
      Script power = StepAt(20, 0, 2);
      SearchRequest request = From(9);
      request.powerGoal = goal;
      EXPECT_EQ(RequiredSizeSearch(member, request, power).requiredSize, 20);
    }
  }
  EXPECT_THAT(Shown(), IsEmpty());
}

TEST_F(RequiredSizeSearchTest, HasNoGoalWindowElsewhere) {
  SearchRequest request = From(9);
  request.powerGoal = .9995;
  for (const Member member :
       {Member::TTest, Member::PlannedContrast, Member::OneVariance, Member::TwoVariances}) {
    EXPECT_EQ(RequiredSizeSearch(member, request, StepAt(20, 0, 2)).requiredSize, 20);
  }
}

// --- First trials.

TEST_F(RequiredSizeSearchTest, TurnsTheStartIntoTheFirstTrialByTheMembersRow) {
  struct Row {
    Member member;
    double start;
    std::vector<std::int64_t> first;
  };
  const Row rows[] = {
      {Member::TTest, 9, {10}},
      {Member::TTest, 0, {2}},
      {Member::TTest, -5, {2}},
      {Member::PlannedContrast, 9, {9}},
      {Member::PlannedContrast, 1, {3}},
      {Member::PlannedContrast, 0, {3}},
      {Member::PlannedContrast, 2, {2}},
      {Member::OneWayAnova, 9, {9}},
      {Member::OneWayAnova, 0, {2}},
      {Member::OneWayAnova, 200000, {200000}},
      {Member::OneWayAnova, kNaN, {2}},
      {Member::OneWayAnova, kInfinity, {2}},
      {Member::TwoWayAnova, 9, {5}},
      {Member::TwoWayAnova, 700000, {5}},
      {Member::OneVariance, 9, {1, 9}},
      {Member::OneVariance, 1, {1, 1}},
      {Member::OneVariance, 0, {1, 2}},
      {Member::TwoVariances, 9, {1, 9}},
      {Member::TwoVariances, 1, {1, 2}},
      {Member::TwoVariances, -3, {1, 2}},
      {Member::TwoVariances, 8e7, {1, 80000000}},
  };
  for (const Row& row : rows) {
    Script power = StepAt(300, .5, .875);
    RequiredSizeSearch(row.member, From(row.start), power);
    power.trials.resize(row.first.size());
    EXPECT_EQ(power.trials, row.first) << static_cast<int>(row.member) << " from " << row.start;
  }
}

TEST_F(RequiredSizeSearchTest, FailsBeforeAnyPowerWhenTheFirstTrialIsAboveTheLimit) {
  for (const double start : {150000., 1e35, kInfinity}) {
    observer.remarks.clear();
    Script power = StepAt(20, .5, .875);
    SearchRequest request = From(start);
    observer.showsBar = true;
    ExpectMissing(RequiredSizeSearch(Member::TTest, request, power), SearchTooLarge);
    EXPECT_THAT(power.trials, IsEmpty());
    EXPECT_THAT(Shown(), ElementsAre(Said::SearchTooLarge));
    EXPECT_FALSE(observer.remarks[0].barOpen);
  }
  Script power = StepAt(20, .5, .875);
  EXPECT_EQ(RequiredSizeSearch(Member::PlannedContrast, From(150000), power).requiredSize, 20);
  observer.remarks.clear();
  power.trials.clear();
  ExpectMissing(RequiredSizeSearch(Member::PlannedContrast, From(150001), power), SearchTooLarge);
  ExpectMissing(RequiredSizeSearch(Member::PlannedContrast, From(1e35), power), SearchTooLarge);
  EXPECT_THAT(power.trials, IsEmpty());
  EXPECT_THAT(Shown(), ElementsAre(Said::SearchTooLarge, Said::SearchTooLarge));
}

TEST_F(RequiredSizeSearchTest, ClosesInFromAFirstTrialBeyondTheBracket) {
  EXPECT_EQ(
      RequiredSizeSearch(Member::TwoVariances, From(8e7), StepAt(149000, .5, .875)).requiredSize,
      149000);
  ExpectMissing(RequiredSizeSearch(Member::TwoVariances, From(8e7), StepAt(100000000, .5, .875)),
                SearchTooLarge);
}

TEST_F(RequiredSizeSearchTest, TakesTheSmallestDesignStrictlyForOneVarianceOnly) {
  Script power = Script([](std::int64_t n) { return n == 1 ? .75 : .875; });
  SearchResult result = RequiredSizeSearch(Member::OneVariance, From(5), power);
  EXPECT_EQ(result.requiredSize, 2);
  result = RequiredSizeSearch(Member::TwoVariances, From(5), power);
  EXPECT_EQ(result.requiredSize, 1);
  EXPECT_EQ(result.actualPower, .75);

  power = Script([](std::int64_t) { return .875; });
  for (const Member member : {Member::OneVariance, Member::TwoVariances}) {
    power.trials.clear();
    SearchRequest request = From(5);
    observer.showsBar = true;
    result = RequiredSizeSearch(member, request, power);
    EXPECT_EQ(result.requiredSize, 1);
    EXPECT_EQ(result.actualPower, .875);
    EXPECT_THAT(power.trials, ElementsAre(1));
    EXPECT_FALSE(observer.barOpen);
  }
}

TEST_F(RequiredSizeSearchTest, StopsAtTwo) {
  for (const Member member :
       {Member::TTest, Member::OneWayAnova, Member::TwoWayAnova, Member::PlannedContrast}) {
    for (const double start : {2., 5.}) {
      const SearchResult result = RequiredSizeSearch(
          member, From(start), [](std::int64_t n) { return n < 3 ? .8125 : .875; });
      // Kept: a contrast reaches 2 only as its first trial.
      const bool three = member == Member::PlannedContrast && start > 2;
      EXPECT_EQ(result.requiredSize, three ? 3 : 2);
      EXPECT_EQ(result.actualPower, three ? .875 : .8125);
    }
  }
}

TEST_F(RequiredSizeSearchTest, NeverEvaluatesAContrastBelowTwo) {
  for (const double start : {-2., 0., 1.}) {
    Script power([](std::int64_t) { return .875; });
    const SearchResult result = RequiredSizeSearch(Member::PlannedContrast, From(start), power);
    EXPECT_EQ(result.requiredSize, 3);
    EXPECT_THAT(power.trials, ElementsAre(3));
  }
  EXPECT_THAT(Shown(), IsEmpty());
}

// --- The limit.

TEST_F(RequiredSizeSearchTest, FailsATTestOnACandidateAboveTheLimit) {
  SearchRequest request = From(9);
  request.sizeLimit = 17;
  Script power([](std::int64_t n) { return n < 18 ? .5 + static_cast<double>(n) / 64 : .875; });
  request.powerGoal = .859375;
  ExpectMissing(RequiredSizeSearch(Member::TTest, request, power), SearchTooLarge);
  EXPECT_THAT(power.trials, Each(testing::Le(17)));
  ASSERT_THAT(Shown(), ElementsAre(Said::SearchTooLarge));
  EXPECT_EQ(SizeIn(0), 17);
}

TEST_F(RequiredSizeSearchTest, KeepsATTestWithinABracketThatTheLimitCannotCut) {
  // 200 is enough; the slope from 198 on makes the step leap over the limit in both directions.
  const std::map<std::int64_t, double> flat = {{200, .875}, {198, .875 - 0x1p-23}, {2, .5}};
  Script power([&](std::int64_t n) { return TableOr(flat, n, n < 150 ? .5 : .8125); });
  const SearchResult result = RequiredSizeSearch(Member::TTest, From(199), power);
  EXPECT_EQ(result.status, SearchOk);
  EXPECT_EQ(result.requiredSize, 150);
  EXPECT_THAT(power.trials, Contains(2));
  EXPECT_THAT(Shown(), IsEmpty());
}

TEST_F(RequiredSizeSearchTest, MarksAContrastThatOnlyPassedTheLimitOnItsWay) {
  SearchRequest request = From(89);
  request.sizeLimit = 100;
  Script power([](std::int64_t n) { return n < 90 ? .5 : n < 95 ? .5 + 0x1p-10 : .875; });
  const SearchResult result = RequiredSizeSearch(Member::PlannedContrast, request, power);
  EXPECT_EQ(result.requiredSize, 95);
  EXPECT_EQ(result.actualPower, .875);
  EXPECT_EQ(result.status, SearchTooLarge);
  EXPECT_THAT(power.trials, Contains(345));  // 90 + 255, above the limit and tried all the same
  EXPECT_THAT(Shown(), IsEmpty());
}

TEST_F(RequiredSizeSearchTest, FailsAContrastOnAShortTrialAboveTheLimit) {
  SearchRequest request = From(89);
  request.sizeLimit = 100;
  Script power = StepAt(300, .5, .875);
  ExpectMissing(RequiredSizeSearch(Member::PlannedContrast, request, power), SearchTooLarge);
  EXPECT_EQ(power.trials.back(), 101);
  EXPECT_THAT(Shown(), ElementsAre(Said::SearchTooLarge));
}

TEST_F(RequiredSizeSearchTest, CutsTheOthersToTheLimitAndFailsThere) {
  struct Row {
    Member member;
    std::int64_t size;
    double power;
  };
  const Row rows[] = {
      {Member::OneWayAnova, 400, .5},
      {Member::TwoWayAnova, SizeFailure, .5},
      {Member::TwoVariances, SizeFailure, NumericFailure},
  };
  for (const Row& row : rows) {
    observer.remarks.clear();
    SearchRequest request = From(10);
    request.sizeLimit = 400;
    Script power([](std::int64_t) { return .5; });
    const SearchResult result = RequiredSizeSearch(row.member, request, power);
    EXPECT_EQ(result.requiredSize, row.size);
    EXPECT_EQ(result.actualPower, row.power);
    EXPECT_EQ(result.status, SearchTooLarge);
    EXPECT_EQ(power.trials.back(), 400);
    EXPECT_THAT(Shown(), ElementsAre(Said::SearchTooLarge));
    EXPECT_EQ(SizeIn(0), 400);
    // The limit itself may be the answer.
    EXPECT_EQ(RequiredSizeSearch(row.member, request, StepAt(400, .5, .875)).requiredSize, 400);
  }
}

TEST_F(RequiredSizeSearchTest, LimitsOneVarianceByItsOwnNumberAndTellsTheRequests) {
  SearchRequest request = From(10);
  request.sizeLimit = 777;
  Script power([](std::int64_t) { return .5; });
  ExpectMissing(RequiredSizeSearch(Member::OneVariance, request, power), SearchTooLarge);
  EXPECT_EQ(power.trials.back(), 150000);
  ASSERT_THAT(Shown(), ElementsAre(Said::SearchTooLarge));
  // The words speak of N, though the size is degrees of freedom.
  EXPECT_EQ(SizeIn(0), 777);
  EXPECT_EQ(RequiredSizeSearch(Member::OneVariance, request, StepAt(9000, .5, .875)).requiredSize,
            9000);
}

// --- Progress and cancellation.

TEST_F(RequiredSizeSearchTest, KeepsTheTitleOfItsBarAndCountsTheTrials) {
  SearchRequest request = From(9);
  observer.showsBar = true;
  Script power = StepAt(15, .5, .875);
  EXPECT_EQ(RequiredSizeSearch(Member::TTest, request, power).requiredSize, 15);
  EXPECT_THAT(observer.bars, ElementsAre(Pair(Said::SearchingForN, 10)));
  EXPECT_FALSE(observer.barOpen);
  EXPECT_THAT(power.trials, ElementsAre(10, 12, 13, 14, 15));
  EXPECT_THAT(observer.positions, ElementsAre(1, 2, 3, 4));
}

TEST_F(RequiredSizeSearchTest, NamesTheBarAfterTheSizeThatTheMemberSeeks) {
  struct Row {
    Member member;
    std::vector<std::pair<Said, std::int32_t>> bars;
  };
  const std::vector<std::pair<Said, std::int32_t>> n = {{Said::SearchingForN, 10}};
  const std::vector<std::pair<Said, std::int32_t>> df = {{Said::SearchingForDf, 10}};
  const Row rows[] = {
      {Member::TTest, n},
      {Member::PlannedContrast, n},
      {Member::OneWayAnova, n},
      {Member::TwoWayAnova, {}},
      {Member::OneVariance, df},
      // Kept: named after N.
      {Member::TwoVariances, n},
  };
  for (const Row& row : rows) {
    observer.bars.clear();
    SearchRequest request = From(9);
    observer.showsBar = true;
    RequiredSizeSearch(row.member, request, StepAt(15, .5, .875));
    EXPECT_EQ(observer.bars, row.bars);
    EXPECT_FALSE(observer.barOpen);
  }
}

TEST_F(RequiredSizeSearchTest, StaysWithoutABarAndWithoutPollingUnlessAsked) {
  int polls = 0;
  observer.stop = [&] { return ++polls > 0; };
  EXPECT_EQ(RequiredSizeSearch(Member::TTest, From(9), StepAt(15, .5, .875)).requiredSize, 15);
  EXPECT_EQ(polls, 0);
  EXPECT_THAT(observer.bars, IsEmpty());
}

TEST_F(RequiredSizeSearchTest, CannotCancelTheTwoWayMember) {
  observer.stop = [] { return true; };
  SearchRequest request = From(9);
  observer.showsBar = true;
  EXPECT_EQ(RequiredSizeSearch(Member::TwoWayAnova, request, StepAt(15, .5, .875)).requiredSize,
            15);
}

TEST_F(RequiredSizeSearchTest, EndsOnACancellationAndLeavesNoBarOpen) {
  observer.stop = [] { return true; };
  for (const Member member :
       {Member::TTest, Member::PlannedContrast, Member::OneVariance, Member::TwoVariances}) {
    observer.remarks.clear();
    SearchRequest request = From(9);
    observer.showsBar = true;
    Script power = StepAt(15, .5, .875);
    ExpectMissing(RequiredSizeSearch(member, request, power), SearchCancelled);
    ASSERT_THAT(Shown(), ElementsAre(Said::CancelledAtRequest));
    EXPECT_FALSE(observer.remarks[0].barOpen);
    EXPECT_FALSE(observer.barOpen);
  }
}

TEST_F(RequiredSizeSearchTest, PollsFromTheSecondPowerOn) {
  observer.stop = [] { return true; };
  SearchRequest request = From(9);
  observer.showsBar = true;
  Script power = StepAt(15, .5, .875);
  RequiredSizeSearch(Member::TTest, request, power);
  EXPECT_THAT(power.trials, ElementsAre(10, 12));
}

TEST_F(RequiredSizeSearchTest, LeavesTheResultsOfACancelledOneWaySearchUntouched) {
  observer.stop = [] { return true; };
  SearchRequest request = From(9);
  observer.showsBar = true;
  SearchResult result{77, .625, SearchOk};
  poweranalysis::RequiredSizeSearch(PolicyOf(Member::OneWayAnova), request, StepAt(15, .5, .875),
                                    observer, result);
  Heard(result);
  EXPECT_EQ(result.requiredSize, 77);
  EXPECT_EQ(result.actualPower, .625);
  EXPECT_EQ(result.status, SearchCancelled);
  EXPECT_THAT(Shown(), ElementsAre(Said::CancelledAtRequest));
}

TEST_F(RequiredSizeSearchTest, NeverShowsTheTextsThatNoPathUses) {
  for (const Member member : {Member::TTest, Member::PlannedContrast, Member::OneWayAnova,
                              Member::TwoWayAnova, Member::OneVariance, Member::TwoVariances}) {
    for (const double effect : {0., .0001, .5}) {
      SearchRequest request = From(9);
      request.effect = effect;
      request.sizeLimit = 400;
      RequiredSizeSearch(member, request, [](std::int64_t) { return .5; });
    }
  }
  EXPECT_THAT(Shown(), Not(IsEmpty()));
  for (const int unused : {12857, 12864, 12867}) {
    EXPECT_THAT(Shown(), Not(Contains(static_cast<Said>(unused))));
  }
}

// --- Bracket, then bisect.

class BracketBisectSearchTest : public ProceduresTest {
 protected:
  template <class PowerAt>
  SearchResult BracketBisectSearch(const BracketBisectRequest& request, PowerAt&& powerAt) {
    return Heard(poweranalysis::BracketBisectSearch(request, powerAt, observer));
  }
};

BracketBisectRequest Predictors(std::int64_t k) {
  return {.effect = .2, .powerGoal = .75, .predictors = k};
}

TEST_F(BracketBisectSearchTest, ReturnsTheLowSizeWhoseOwnPowerReachesTheGoal) {
  Script power([](std::int64_t) { return .75; });
  const SearchResult result = BracketBisectSearch(Predictors(3), power);
  EXPECT_EQ(result.requiredSize, 5);
  EXPECT_EQ(result.actualPower, .75);
  EXPECT_EQ(result.status, SearchOk);
  EXPECT_THAT(power.trials, ElementsAre(5));
}

TEST_F(BracketBisectSearchTest, DoublesTheStrideAndHalvesTheWidth) {
  Script power = StepAt(60, .5, .875);
  const SearchResult result = BracketBisectSearch(Predictors(3), power);
  // 15 - 5 = 10, doubled to 20 and 40; then widths 20, 10, 5, 2, 1 and 0.
  EXPECT_THAT(power.trials, ElementsAre(5, 15, 35, 75, 55, 65, 60, 58, 59, 60, 59));
  EXPECT_EQ(result.requiredSize, 60);
  EXPECT_EQ(result.actualPower, .875);
}

TEST_F(BracketBisectSearchTest, StridesByTenAtLeast) {
  Script power = StepAt(20, .5, .875);
  EXPECT_EQ(BracketBisectSearch(Predictors(2), power).requiredSize, 20);
  EXPECT_EQ(power.trials[1], 10);
  EXPECT_EQ(power.trials[2], 30);
}

TEST_F(BracketBisectSearchTest, EndsAboveTheGoalCloseToTheSmallestSize) {
  for (std::int64_t k = 2; k < 40; k += 3) {
    for (std::int64_t answer = k + 2; answer < 400; answer += 7) {
      const SearchResult result = BracketBisectSearch(Predictors(k), StepAt(answer, .5, .875));
      ASSERT_GE(result.requiredSize, answer) << k;
      ASSERT_LE(result.requiredSize, answer + 6) << k;
      EXPECT_EQ(result.actualPower, .875);
    }
  }
}

TEST_F(BracketBisectSearchTest, CanEndAboveTheSmallestSizeByTheRemaindersItDrops) {
  Script power = StepAt(87, .5, .875);
  EXPECT_EQ(BracketBisectSearch(Predictors(8), power).requiredSize, 88);
  EXPECT_THAT(power.trials, ElementsAre(10, 40, 100, 70, 85, 93, 90, 89, 89, 88));
}

TEST_F(BracketBisectSearchTest, AcceptsTheGoalItselfEverywhereButInTheBisection) {
  // Exactly the goal from 60 on: the bracket closes on 75, the bisection never moves below it.
  Script power = StepAt(60, .5, .75);
  const SearchResult result = BracketBisectSearch(Predictors(3), power);
  EXPECT_EQ(result.requiredSize, 74);
  EXPECT_EQ(result.actualPower, .75);
}

TEST_F(BracketBisectSearchTest, GivesThePowerOfTheLastTrialAsItStands) {
  // At 75 the power is the goal when bracketing, and short when it is tried again.
  int asked = 0;
  const auto power = [&](std::int64_t n) {
    if (n == 75) {
      return ++asked == 1 ? .75 : .625;
    }
    return .5;
  };
  const SearchResult result = BracketBisectSearch(Predictors(3), power);
  EXPECT_EQ(result.requiredSize, 75);
  EXPECT_EQ(result.actualPower, .625);
  EXPECT_EQ(result.status, SearchOk);
}

TEST_F(BracketBisectSearchTest, RefusesAnEffectWithinItsWideTolerance) {
  BracketBisectRequest request = Predictors(3);
  Script power = StepAt(60, .5, .875);
  request.effect = .049;
  ExpectMissing(BracketBisectSearch(request, power), 1);
  EXPECT_THAT(Shown(), ElementsAre(Said::NullHypothesisNearlyTrue));
  EXPECT_EQ(ToleranceIn(0), .05);
  request.effect = -.2;
  request.form = H0AtMost;
  ExpectMissing(BracketBisectSearch(request, power), 1);
  EXPECT_THAT(Shown(), ElementsAre(Said::NullHypothesisNearlyTrue, Said::NullHypothesisTrue));
  EXPECT_THAT(power.trials, IsEmpty());
  request.form = H0Zero;
  EXPECT_EQ(BracketBisectSearch(request, power).requiredSize, 60);
}

TEST_F(BracketBisectSearchTest, GivesUpInSilenceOnAGoalOutOfReach) {
  for (const double never : {0., kNaN, NumericFailure}) {
    Script power([=](std::int64_t) { return never; });
    BracketBisectRequest request = Predictors(3);
    observer.showsBar = true;
    ExpectMissing(BracketBisectSearch(request, power), 1);
    EXPECT_LE(power.trials.back(), BracketBisect::LargestSize);
    EXPECT_FALSE(observer.barOpen);
  }
  EXPECT_THAT(Shown(), IsEmpty());
}

TEST_F(BracketBisectSearchTest, ShowsTwoBarsAndCountsOn) {
  BracketBisectRequest request = Predictors(3);
  observer.showsBar = true;
  BracketBisectSearch(request, StepAt(60, .5, .875));
  EXPECT_THAT(observer.bars,
              ElementsAre(Pair(Said::SearchingForUpperBound, 20), Pair(Said::SearchingForN, 20)));
  EXPECT_FALSE(observer.barOpen);
  EXPECT_THAT(observer.positions, ElementsAre(1, 2, 3, 4, 5, 6, 7, 8));
}

TEST_F(BracketBisectSearchTest, CanBeCancelledInSilenceEvenWithoutABar) {
  for (const int poll : {1, 3}) {  // while bracketing, while bisecting
    for (const bool bar : {false, true}) {
      int polls = 0;
      RecordingObserver stopping;
      stopping.stop = [&] { return ++polls >= poll; };
      stopping.showsBar = bar;
      ExpectMissing(
          poweranalysis::BracketBisectSearch(Predictors(3), StepAt(60, .5, .875), stopping),
          SearchCancelled);
      EXPECT_EQ(polls, poll);
      EXPECT_FALSE(stopping.barOpen);
      EXPECT_THAT(stopping.remarks, IsEmpty());
    }
  }
  EXPECT_THAT(Shown(), IsEmpty());
}

}  // namespace
}  // namespace poweranalysis
