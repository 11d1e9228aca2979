#include "intervals/OneProportion.h"

#include "distributions/Binomial.h"
#include "intervals/IntervalsTest.h"

namespace poweranalysis {
namespace {

IntervalLimits Of(double p, i32 n, double confidence = .95) {
  auto record = BuiltIn<P1Params>(Family::P1);
  record.PObserved = p;
  record.SampleSize = n;
  record.Confidence = confidence;
  return OneProportionInterval(record);
}

TEST(ProportionIntervals, TheExactLimitsHaveTheirTailsInTheBinomialDistribution) {
  const LimitPair exact = Of(.4, 50).exact;
  int failure = 0;
  EXPECT_NEAR(BinomialCdf(50, exact.lower, 19, failure), .975, 1e-9);
  EXPECT_NEAR(BinomialCdf(50, exact.upper, 20, failure), .025, 1e-9);
}

TEST(ProportionIntervals, TheBuiltInDesignHasItsLimits) {
  const IntervalLimits limits = Of(.5, 100);
  ExpectNear(limits.approximate, .399021128, .600978872, 1e-9);
  ExpectNear(limits.crude, .402001800, .597998200, 1e-9);
}

TEST(ProportionIntervals, NoneObservedHasALowerLimitOfZero) {
  const IntervalLimits limits = Of(0, 20);
  EXPECT_EQ(limits.exact.lower, 0);
  EXPECT_EQ(limits.approximate.lower, 0);
  EXPECT_EQ(limits.crude, (LimitPair{0, 0}));
  EXPECT_GT(limits.exact.upper, 0);
  EXPECT_GT(limits.approximate.upper, 0);
}

TEST(ProportionIntervals, AllObservedHaveAnUpperLimitOfOne) {
  const IntervalLimits limits = Of(1, 20);
  EXPECT_EQ(limits.exact.upper, 1);
  EXPECT_EQ(limits.approximate.upper, 1);
  EXPECT_EQ(limits.crude, (LimitPair{1, 1}));
  EXPECT_LT(limits.exact.lower, 1);
  EXPECT_LT(limits.approximate.lower, 1);
}

TEST(ProportionIntervals, TheCrudeLowerLimitStopsAtZeroAndTheUpperOneGoesBeyondOne) {
  EXPECT_NEAR(Of(.95, 20).crude.upper, 1.04552, 5e-6);
  EXPECT_EQ(Of(.05, 20).crude.lower, 0);
  ExpectNear(Of(.95, 20).approximate, .7306, .9974, 5e-5);
  EXPECT_NEAR(Of(.95, 20).crude.lower, .8545, 5e-5);
}

TEST(ProportionIntervals, AProportionMovesToAWholeCountAndATieGoesUp) {
  struct Move {
    double observed;
    i32 n;
    double tied;
    i32 count;
  };
  for (const Move& move : {Move{.5, 5, .6, 3}, Move{.42, 10, .4, 4}, Move{.47, 10, .5, 5},
                           Move{0, 7, 0, 0}, Move{1, 7, 1, 7}, Move{.4, 300, .4, 120}}) {
    auto record = BuiltIn<P1Params>(Family::P1);
    record.PObserved = move.observed;
    record.SampleSize = move.n;
    TieProportionToCount(record);
    EXPECT_EQ(record.PObserved, move.tied);
    EXPECT_EQ(record.XObserved, move.count);
    const P1Params once = record;
    TieProportionToCount(record);
    EXPECT_EQ(record.PObserved, once.PObserved);
    EXPECT_EQ(record.XObserved, once.XObserved);
  }
}

TEST(ProportionIntervals, TheLimitsAreThoseOfTheCount) {
  const IntervalLimits observed = Of(.5, 5);
  const IntervalLimits tied = Of(.6, 5);
  EXPECT_EQ(observed.exact, tied.exact);
  EXPECT_EQ(observed.approximate, tied.approximate);
  EXPECT_EQ(observed.crude, tied.crude);
}

TEST(ProportionIntervals, AnEndOfTheSearchWithAStatusIsMissingAtTheLargestSize) {
  EXPECT_EQ(Of(1 / 150000.0, 150000).exact.lower, NumericFailure);
  EXPECT_NE(Of(1 / 150000.0, 150000).exact.upper, NumericFailure);
  EXPECT_NE(Of(.5, 150000).exact.lower, NumericFailure);
  EXPECT_NE(Of(1 / 150000.0, 150000).approximate.upper, NumericFailure);
}

TEST(ProportionIntervals, TwoObservationsHaveAllLimits) {
  for (const double p : {0.0, .5, 1.0}) {
    const IntervalLimits limits = Of(p, 2);
    for (const LimitPair& pair : {limits.exact, limits.approximate, limits.crude}) {
      EXPECT_NE(pair.lower, NumericFailure);
      EXPECT_NE(pair.upper, NumericFailure);
    }
  }
}

TEST(ProportionIntervals, WhatTheTestsChooseHasNoInfluence) {
  auto record = BuiltIn<P1Params>(Family::P1);
  const IntervalLimits before = OneProportionInterval(record);
  record.Algorithm = 1;
  record.WhatToCompute = 2;
  record.H0Type = 2;
  const IntervalLimits after = OneProportionInterval(record);
  EXPECT_EQ(before.exact, after.exact);
  EXPECT_EQ(before.approximate, after.approximate);
  EXPECT_EQ(before.crude, after.crude);
}

}  // namespace
}  // namespace poweranalysis
