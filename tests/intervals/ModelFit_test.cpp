#include "intervals/ModelFit.h"

#include <cmath>

#include "distributions/NoncentralChiSquare.h"
#include "intervals/IntervalsTest.h"

namespace poweranalysis {
namespace {

SEMParams Fit(double chi, i32 df, i32 groups = 1, i32 n = 301) {
  auto record = BuiltIn<SEMParams>(Family::SEM);
  record.ObservedChiSquare = chi;
  record.DegreesOfFreedom = df;
  record.Groups = groups;
  record.SampleSize = n;
  return record;
}

TEST(ModelFitIntervals, RmseaFollowsFromTheNoncentralityAndTheSizeLessTheGroups) {
  const IntervalLimits limits = ModelFitInterval(Fit(85.306, 24));
  int word = 0;
  const double low = NoncentralChiSquareDelta(85.306, 24, 1 - TailBeyond(.9), word);
  const double high = NoncentralChiSquareDelta(85.306, 24, TailBeyond(.9), word);
  EXPECT_DOUBLE_EQ(limits.rmsea.lower, std::sqrt(low / 300 / 24));
  EXPECT_DOUBLE_EQ(limits.rmsea.upper, std::sqrt(high / 300 / 24));
}

TEST(ModelFitIntervals, TheLowerGammasGoWithTheUpperRmsea) {
  const SEMParams record = Fit(85.306, 24);
  const IntervalLimits limits = ModelFitInterval(record);
  const double high = limits.rmsea.upper * limits.rmsea.upper * 24;
  EXPECT_NEAR(limits.gamma1.lower, 6 / (2 * high + 6), 1e-12);
  EXPECT_NEAR(limits.gamma2.lower, 1 - (1 - limits.gamma1.lower) * 21 / 24, 1e-12);
  EXPECT_LT(limits.gamma1.lower, limits.gamma1.upper);
  EXPECT_LT(limits.gamma2.lower, limits.gamma2.upper);
}

TEST(ModelFitIntervals, AChiSquareOfZeroFitsPerfectly) {
  const IntervalLimits limits = ModelFitInterval(Fit(0, 20));
  EXPECT_EQ(limits.rmsea, (LimitPair{0, 0}));
  EXPECT_EQ(limits.gamma1, (LimitPair{1, 1}));
  EXPECT_EQ(limits.gamma2, (LimitPair{1, 1}));
}

TEST(ModelFitIntervals, AChiSquareBelowItsDegreesOfFreedomHasALowerRmseaOfZero) {
  const IntervalLimits limits = ModelFitInterval(Fit(18, 20));
  EXPECT_EQ(limits.rmsea.lower, 0);
  EXPECT_GT(limits.rmsea.upper, 0);
  EXPECT_EQ(limits.gamma1.upper, 1);
  EXPECT_EQ(limits.gamma2.upper, 1);
}

TEST(ModelFitIntervals, SeveralGroupsHaveNoGammas) {
  const IntervalLimits two = ModelFitInterval(Fit(85.306, 24, 2));
  EXPECT_EQ(two.gamma1, kNoLimits);
  EXPECT_EQ(two.gamma2, kNoLimits);
  const IntervalLimits one = ModelFitInterval(Fit(85.306, 24, 1, 300));
  EXPECT_NEAR(two.rmsea.upper, one.rmsea.upper * std::sqrt(2.0), 1e-12);
}

TEST(ModelFitIntervals, NoGroupsAtAllCountAsOneForTheGammas) {
  const IntervalLimits limits = ModelFitInterval(Fit(85.306, 24, 0));
  EXPECT_EQ(limits.rmsea, (LimitPair{0, 0}));
  EXPECT_NE(limits.gamma1.lower, NumericFailure);
  EXPECT_NE(limits.gamma2.upper, NumericFailure);
}

TEST(ModelFitIntervals, NoMoreObservationsThanGroupsHaveNoLimits) {
  for (const i32 n : {2, 10, 11}) {
    const IntervalLimits limits = ModelFitInterval(Fit(85.306, 24, 11, n));
    EXPECT_EQ(limits.rmsea, kNoLimits) << n;
  }
  EXPECT_NE(ModelFitInterval(Fit(85.306, 24, 11, 12)).rmsea.upper, NumericFailure);
  EXPECT_EQ(ModelFitInterval(Fit(85.306, 24, 1, 1)).gamma1, kNoLimits);
}

TEST(ModelFitIntervals, AChiSquareBeyondTheSeriesIsNoPerfectFit) {
  const IntervalLimits limits = ModelFitInterval(Fit(1e30, 20));
  EXPECT_EQ(limits.rmsea, kNoLimits);
  EXPECT_EQ(limits.gamma1, kNoLimits);
  EXPECT_EQ(limits.gamma2, kNoLimits);
}

TEST(ModelFitIntervals, OneVariableHasGammas) {
  SEMParams record = Fit(30, 20);
  record.P = 1;
  const IntervalLimits limits = ModelFitInterval(record);
  EXPECT_GT(limits.gamma1.lower, 0);
  EXPECT_GT(limits.gamma2.lower, limits.gamma1.lower);
}

TEST(ModelFitIntervals, MoreDegreesOfFreedomThanMomentsRaiseTheSecondGammaOverTheFirst) {
  // 6 variables have 21 moments.
  const IntervalLimits limits = ModelFitInterval(Fit(85.306, 40));
  EXPECT_GT(limits.gamma2.lower, limits.gamma1.lower);
  const IntervalLimits fewer = ModelFitInterval(Fit(85.306, 10));
  EXPECT_LT(fewer.gamma2.lower, fewer.gamma1.lower);
}

}  // namespace
}  // namespace poweranalysis
