#include "procedures/SettledPower.h"

#include <gmock/gmock.h>

#include <cmath>

#include "procedures/ProceduresTest.h"

namespace poweranalysis {
namespace {

using testing::SizeIs;

constexpr double kGoal = .9;
constexpr std::int64_t kLimit = 150000;

class SettledPowerTest : public ProceduresTest {
 protected:
  // Flat at both ends, so that the search of a two-way analysis walks down from far above.
  static double Steep(std::int64_t n) {
    return .5 + .5 * std::tanh((static_cast<double>(n) - 2000.4) / 50);
  }
  static SearchRequest Asked(double goal) {
    return {.effect = .5, .powerGoal = goal, .sizeLimit = kLimit};
  }
};

TEST_F(SettledPowerTest, EndsAWalkWhereItWouldEndWithFewEvaluations) {
  Script plain(Steep);
  const SearchResult walked =
      RequiredSizeSearch(SearchMember::TwoWayAnova, Asked(kGoal), plain, observer);
  EXPECT_GT(plain.trials.size(), 1000U);

  Script script(Steep);
  const auto powerAt = [&](std::int64_t n) { return script(n); };
  const SearchResult settled = RequiredSizeSearch(
      SearchMember::TwoWayAnova, Asked(kGoal), SettledPower(powerAt, kGoal, 2, kLimit), observer);
  EXPECT_EQ(settled.requiredSize, walked.requiredSize);
  EXPECT_EQ(settled.actualPower, walked.actualPower);
  EXPECT_EQ(settled.status, walked.status);
  EXPECT_LT(script.trials.size(), 70U);
}

TEST_F(SettledPowerTest, LeavesAShortSearchAlone) {
  const auto slow = [](std::int64_t n) { return 1 - std::exp(-static_cast<double>(n) / 300); };
  Script plain(slow);
  const SearchResult walked =
      RequiredSizeSearch(SearchMember::TwoWayAnova, Asked(kGoal), plain, observer);
  Script script(slow);
  const auto powerAt = [&](std::int64_t n) { return script(n); };
  const SearchResult settled = RequiredSizeSearch(
      SearchMember::TwoWayAnova, Asked(kGoal), SettledPower(powerAt, kGoal, 2, kLimit), observer);
  EXPECT_EQ(script.trials, plain.trials);
  EXPECT_EQ(settled.requiredSize, walked.requiredSize);
}

TEST_F(SettledPowerTest, GivesUpWhereTheLimitFallsShort) {
  Script script([](std::int64_t) { return NumericFailure; });
  const auto powerAt = [&](std::int64_t n) { return script(n); };
  const SearchResult result = RequiredSizeSearch(SearchMember::TwoWayAnova, Asked(kGoal),
                                                 SettledPower(powerAt, kGoal, 2, kLimit), observer);
  EXPECT_EQ(result.status, SearchTooLarge);
  // The patient ones, the limit, and the limit again where the search meets it.
  EXPECT_THAT(script.trials, SizeIs(42));
  EXPECT_EQ(script.trials.back(), kLimit);
}

TEST_F(SettledPowerTest, KeepsThePowerOfTheLimit) {
  Script script(Steep);
  const auto powerAt = [&](std::int64_t n) { return script(n); };
  SettledPower power(powerAt, kGoal, 2, 5000);
  for (std::int64_t n = 3000; n < 3100; ++n) {
    power(n);
  }
  EXPECT_EQ(power(5000), Steep(5000));
  EXPECT_LE(power(1000), kGoal);
  EXPECT_GT(power(4000), kGoal);
}

}  // namespace
}  // namespace poweranalysis
