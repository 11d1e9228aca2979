#include "intervals/Means.h"

#include <cmath>

#include "distributions/NoncentralF.h"
#include "distributions/NoncentralT.h"
#include "distributions/SolveParameter.h"
#include "intervals/IntervalsTest.h"
#include "procedures/Anova.h"
#include "procedures/FTests.h"

namespace poweranalysis {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

constexpr std::int64_t kLimit = 150000;

class MeansIntervals : public ProceduresTest {
 protected:
  IntervalLimits Of(const T1Params& record) { return OneMeanInterval(record, observer); }
  IntervalLimits Of(const T2Params& record) { return TwoMeansInterval(record, observer); }
  IntervalLimits Of(const T3Params& record) { return PairedMeansInterval(record, observer); }
  IntervalLimits Of(const PCParams& record) { return ContrastInterval(record, observer); }
  IntervalLimits Of(const AV1Params& record) { return OneWayInterval(record, kLimit, observer); }
  IntervalLimits Of(const AV2Params& record) { return TwoWayInterval(record, kLimit, observer); }

  static T1Params OneMean(double t, i32 n) {
    auto record = BuiltIn<T1Params>(Family::T1);
    record.TObserved = t;
    record.SampleSize = n;
    return record;
  }
  static AV1Params OneWay(double f, i32 groups, i32 n) {
    auto record = BuiltIn<AV1Params>(Family::AV1);
    record.FObserved = f;
    record.NumberOfGroups = groups;
    record.N = n;
    return record;
  }
  static AV2Params TwoWay(double f, i32 rows, i32 columns, i16 effect) {
    auto record = BuiltIn<AV2Params>(Family::AV2);
    record.FObserved = f;
    record.Rows = rows;
    record.Columns = columns;
    record.EffectToTest = effect;
    return record;
  }
  static PCParams LongContrast() {
    auto record = BuiltIn<PCParams>(Family::PC);
    record.NumberOfGroups = 200;
    record.SampleSize = 150000;
    return record;
  }
};

// --- From an observed t.

TEST_F(MeansIntervals, TheLowerLimitHasTheGreaterProbability) {
  const IntervalLimits limits = Of(OneMean(2.4, 25));
  EXPECT_NEAR(NoncentralTCdf(2.4, 24, limits.delta.lower), .95, 1e-9);
  EXPECT_NEAR(NoncentralTCdf(2.4, 24, limits.delta.upper), .05, 1e-9);
  EXPECT_EQ(TDeltaLimit(2.4, 24, 1 - TailBeyond(.9)), limits.delta.lower);
}

TEST_F(MeansIntervals, EffectsAreLimitsOnDeltaByTheSizeOfTheDesign) {
  const IntervalLimits one = Of(OneMean(2.4, 25));
  EXPECT_EQ(one.effect.lower, one.delta.lower / 5);
  EXPECT_EQ(one.effect.upper, one.delta.upper / 5);
  auto paired = BuiltIn<T3Params>(Family::T3);
  paired.TObserved = 2.4;
  EXPECT_EQ(Of(paired).effect, one.effect);
  auto two = BuiltIn<T2Params>(Family::T2);
  two.TObserved = 2.4;
  two.SampleSizeN1 = 10;
  two.SampleSizeN2 = 40;
  const IntervalLimits limits = Of(two);
  EXPECT_NEAR(NoncentralTCdf(2.4, 48, limits.delta.upper), .05, 1e-9);
  EXPECT_DOUBLE_EQ(limits.effect.upper, limits.delta.upper / std::sqrt(8.0));
}

TEST_F(MeansIntervals, TheProductOfTheLargestGroupsDoesNotOverflow) {
  auto two = BuiltIn<T2Params>(Family::T2);
  two.TObserved = 1;
  two.SampleSizeN1 = two.SampleSizeN2 = 150000;
  const IntervalLimits limits = Of(two);
  EXPECT_DOUBLE_EQ(limits.effect.upper, limits.delta.upper / std::sqrt(75000.0));
}

TEST_F(MeansIntervals, LimitsAboutATOfZeroAreSymmetric) {
  for (const i32 n : {2, 25, 400}) {
    const IntervalLimits limits = Of(OneMean(0, n));
    EXPECT_NEAR(limits.effect.lower, -limits.effect.upper, 1e-7) << n;
    EXPECT_LT(limits.effect.lower, 0) << n;
  }
}

TEST_F(MeansIntervals, ANegativeTHasTheMirroredLimits) {
  const IntervalLimits above = Of(OneMean(2.4, 25));
  const IntervalLimits below = Of(OneMean(-2.4, 25));
  ExpectNear(below.delta, -above.delta.upper, -above.delta.lower, 1e-7);
}

TEST_F(MeansIntervals, MoreConfidenceHasWiderLimits) {
  LimitPair last;
  for (const double confidence : {.65, .9, .99, .9999}) {
    T1Params record = OneMean(2.4, 25);
    record.Confidence = confidence;
    const LimitPair delta = Of(record).delta;
    EXPECT_NE(delta.lower, NumericFailure);
    if (last.lower != NumericFailure) {
      EXPECT_LT(delta.lower, last.lower) << confidence;
      EXPECT_GT(delta.upper, last.upper) << confidence;
    }
    last = delta;
  }
}

TEST_F(MeansIntervals, AFailedLimitOnDeltaIsDividedAllTheSame) {
  T1Params record = OneMean(5, 4);
  record.Confidence = .9999;
  const IntervalLimits limits = Of(record);
  ASSERT_EQ(limits.delta.lower, NumericFailure);
  EXPECT_EQ(limits.effect.lower, -4999.5);
}

TEST_F(MeansIntervals, ASearchThatEndsWithAStatusHasFailed) {
  const double p = 1 - TailBeyond(.999);
  int status = 0;
  int failure = 0;
  const double start = NoncentralTDeltaStart(5, 2, p);
  const double last = SolveParameter(5, 2, p, start, status, failure, SearchTDelta, 0);
  ASSERT_NE(status, 0);
  ASSERT_EQ(failure, 0);
  ASSERT_NE(last, NumericFailure);
  EXPECT_EQ(TDeltaLimit(5, 2, p), NumericFailure);
}

TEST_F(MeansIntervals, ADeltaThatNoDistributionCanHaveHasFailed) {
  // The search ends where it starts: far in its tail the distribution is wrong there.
  const double p = 1 - TailBeyond(.9999);
  int status = 0;
  int failure = 0;
  const double start = NoncentralTDeltaStart(5000, 1, p);
  const double last = SolveParameter(5000, 1, p, start, status, failure, SearchTDelta, 0);
  ASSERT_EQ(status, 0);
  ASSERT_LT(last, -10000);
  EXPECT_EQ(TDeltaLimit(5000, 1, p), NumericFailure);
  EXPECT_EQ(TDeltaLimit(-5000, 1, 1 - p), NumericFailure);
}

TEST_F(MeansIntervals, TheSearchIsThatOfSolveParameter) {
  for (const i32 df : {1, 7, 24, 30000}) {
    int status = 0;
    int failure = 0;
    const double start = NoncentralTDeltaStart(2, df, .95);
    EXPECT_EQ(TDeltaLimit(2, df, .95),
              SolveParameter(2, df, .95, start, status, failure, SearchTDelta, 0))
        << df;
  }
}

TEST_F(MeansIntervals, AContrastHasLimitsOnItsEffectAlone) {
  auto record = BuiltIn<PCParams>(Family::PC);
  record.TObserved = 2;
  const IntervalLimits limits = Of(record);
  EXPECT_EQ(limits.delta, kNoLimits);
  EXPECT_EQ(limits.power, kNoLimits);
  EXPECT_DOUBLE_EQ(limits.effect.lower, TDeltaLimit(2, 27, .95) * std::sqrt(.6));
  EXPECT_DOUBLE_EQ(limits.effect.upper, TDeltaLimit(2, 27, TailBeyond(.9)) * std::sqrt(.6));
}

TEST_F(MeansIntervals, AContrastWithoutWeightsHasNoLimits) {
  auto record = BuiltIn<PCParams>(Family::PC);
  for (const double ss : {0.0, -1.0}) {
    record.SumOfSquaredWeights = ss;
    EXPECT_EQ(Of(record).effect, kNoLimits) << ss;
  }
}

TEST_F(MeansIntervals, AContrastOfOneObservationAGroupIsRefused) {
  int err = 0;
  EXPECT_EQ(ContrastEsLimit(.9, 2, 6, 1, 3, 0, err), NumericFailure);
  EXPECT_EQ(err, 1);
  EXPECT_NE(ContrastEsLimit(.9, 2, 6, 2, 3, 0, err), NumericFailure);
  EXPECT_EQ(err, 0);
  EXPECT_EQ(ContrastEsLimit(.9, 2, 6, 1'000'000'000, 200, 0, err), NumericFailure);
  EXPECT_EQ(err, 1);
}

TEST_F(MeansIntervals, AFailedLimitOfAContrastIsMultipliedAllTheSame) {
  int err = 0;
  EXPECT_EQ(TDeltaLimit(5, 2, 1 - TailBeyond(.9999)), NumericFailure);
  EXPECT_EQ(ContrastEsLimit(.9999, 5, 1, 2, 2, 0, err), -9999 * std::sqrt(.5));
}

TEST_F(MeansIntervals, OnlyALongSearchOpensABarWithItsTitle) {
  observer.showsBar = true;
  Of(OneMean(2.4, 25));
  EXPECT_THAT(observer.bars, IsEmpty());
  PCParams record = LongContrast();
  record.SampleSize = 26000;  // 5.2 million degrees of freedom
  const IntervalLimits limits = Of(record);
  EXPECT_THAT(observer.bars, ElementsAre(Pair(Said::ComputingLowerBound, 10),
                                         Pair(Said::ComputingUpperBound, 10)));
  EXPECT_FALSE(observer.barOpen);
  // A normal distribution about 1 by now.
  const double scale = std::sqrt(record.SumOfSquaredWeights / record.SampleSize);
  ExpectNear(limits.effect, (1 - 1.6448536) * scale, (1 + 1.6448536) * scale, 1e-7);
}

TEST_F(MeansIntervals, TheLongestLimitsAreThere) {
  const PCParams record = LongContrast();
  const IntervalLimits limits = Of(record);
  const double scale = std::sqrt(6 / 150000.0);
  ExpectNear(limits.effect, (1 - 1.6448536) * scale, (1 + 1.6448536) * scale, 1e-7);
}

TEST_F(MeansIntervals, ACancelledLimitIsMissingAndTheNextIsNotBegun) {
  for (const bool showsBar : {false, true}) {
    RecordingObserver stopping;
    stopping.showsBar = showsBar;
    stopping.stop = [] { return true; };
    const IntervalLimits limits = ContrastInterval(LongContrast(), stopping);
    EXPECT_TRUE(limits.cancelled);
    EXPECT_EQ(limits.effect, kNoLimits);
    EXPECT_EQ(stopping.bars.size(), showsBar ? 1u : 0u);
    EXPECT_FALSE(stopping.barOpen);
  }
}

TEST_F(MeansIntervals, ACancelledLimitOnDeltaIsNotDivided) {
  auto two = BuiltIn<T2Params>(Family::T2);
  two.SampleSizeN1 = two.SampleSizeN2 = 150000;
  observer.stop = [] { return true; };
  const IntervalLimits limits = Of(two);
  EXPECT_TRUE(limits.cancelled);
  EXPECT_EQ(limits.effect, kNoLimits);
}

// --- From an observed F.

TEST_F(MeansIntervals, TheLimitsOnDeltaSolveTheNoncentralF) {
  const IntervalLimits limits = Of(OneWay(4, 3, 10));
  int failure = 0;
  EXPECT_NEAR(NoncentralFCdfInt(4, 2, 27, limits.delta.lower, failure, FExact), .95, 1e-8);
  EXPECT_NEAR(NoncentralFCdfInt(4, 2, 27, limits.delta.upper, failure, FExact), .05, 1e-8);
  EXPECT_EQ(limits.df1, 2);
  EXPECT_EQ(limits.df2, 27);
}

TEST_F(MeansIntervals, RmsseAndPowerFollowFromTheLimitsOnDelta) {
  const IntervalLimits limits = Of(OneWay(4, 3, 10));
  EXPECT_DOUBLE_EQ(limits.rmsse.lower, std::sqrt(limits.delta.lower / 20));
  EXPECT_DOUBLE_EQ(limits.rmsse.upper, std::sqrt(limits.delta.upper / 20));
  CriticalFCache criticals;
  int err = 0;
  double critical = 0;
  EXPECT_EQ(limits.power.upper,
            FTestPower(2, 27, limits.delta.upper, .05, err, FExact, critical, criticals));
  EXPECT_LT(limits.power.lower, limits.power.upper);
}

TEST_F(MeansIntervals, TheUpperRmsseHasTheLowerSize) {
  const IntervalLimits limits = Of(OneWay(4, 3, 10));
  CriticalFCache criticals;
  const auto sizeAt = [&](double rmsse) {
    return OneWayRequiredN({{3, rmsse, .05, FixedEffects, FExact}, .05, .9, kLimit}, criticals,
                           observer)
        .requiredSize;
  };
  EXPECT_EQ(limits.size.lower, static_cast<double>(sizeAt(limits.rmsse.upper)));
  EXPECT_EQ(limits.size.upper, static_cast<double>(sizeAt(limits.rmsse.lower)));
  EXPECT_LT(limits.size.lower, limits.size.upper);
}

TEST_F(MeansIntervals, AnFOfZeroHasNoEffectAndTheAlphaForItsPower) {
  observer.showsBar = true;
  const IntervalLimits limits = Of(OneWay(0, 3, 10));
  EXPECT_EQ(limits.delta, (LimitPair{0, 0}));
  EXPECT_EQ(limits.rmsse, (LimitPair{0, 0}));
  ExpectNear(limits.power, .05, .05, 1e-9);
  EXPECT_EQ(limits.size, kNoLimits);
  EXPECT_THAT(observer.bars, IsEmpty());
  EXPECT_THAT(Shown(), IsEmpty());
}

TEST_F(MeansIntervals, AnFBelowTheUpperLimitsCentralValueHasNoEffectEither) {
  EXPECT_EQ(Of(OneWay(.01, 3, 10)).delta, (LimitPair{0, 0}));
}

TEST_F(MeansIntervals, AModerateFHasALowerLimitOfZeroAndOneSearch) {
  observer.showsBar = true;
  const IntervalLimits limits = Of(OneWay(1.5, 3, 10));
  EXPECT_EQ(limits.delta.lower, 0);
  EXPECT_GT(limits.delta.upper, 0);
  EXPECT_NEAR(limits.power.lower, .05, 1e-9);
  EXPECT_GT(limits.size.lower, 0);
  EXPECT_EQ(limits.size.upper, NumericFailure);
  EXPECT_THAT(observer.bars, testing::SizeIs(1));
}

TEST_F(MeansIntervals, ASearchForDeltaThatStartsAtZeroFailsWithAllThatFollows) {
  // F = df2 / (df2 - 2), with df 1 and 10.
  const IntervalLimits limits = Of(OneWay(1.25, 2, 6));
  EXPECT_EQ(limits.delta, (LimitPair{0, NumericFailure}));
  EXPECT_EQ(limits.rmsse, (LimitPair{0, NumericFailure}));
  EXPECT_EQ(limits.power.upper, NumericFailure);
  EXPECT_EQ(limits.size, kNoLimits);
}

TEST_F(MeansIntervals, AnFBeyondTheDistributionHasNoLimits) {
  for (const auto& [f, groups, n] : {std::tuple{1e30, 3, 10}, std::tuple{1000.0, 1000, 2}}) {
    const IntervalLimits limits = Of(OneWay(f, groups, n));
    EXPECT_EQ(limits.delta, kNoLimits) << f;
    EXPECT_EQ(limits.rmsse, kNoLimits) << f;
    EXPECT_EQ(limits.power, kNoLimits) << f;
    EXPECT_EQ(limits.size, kNoLimits) << f;
  }
}

TEST_F(MeansIntervals, RandomEffectsHaveThePowerOfFixedOnesAndASizeOfTheirOwn) {
  AV1Params record = OneWay(4, 3, 10);
  const IntervalLimits fixed = Of(record);
  record.ModelType = RandomEffects;
  const IntervalLimits random = Of(record);
  EXPECT_EQ(random.delta, fixed.delta);
  EXPECT_EQ(random.power, fixed.power);
  EXPECT_NE(random.size, fixed.size);
  EXPECT_NE(random.size.lower, NumericFailure);
}

TEST_F(MeansIntervals, TikusApproximationAtTwoDegreesOfFreedomEndsWithoutLimits) {
  AV1Params record = OneWay(4, 2, 2);
  record.Algorithm = FTiku;
  const IntervalLimits limits = Of(record);
  EXPECT_EQ(limits.delta, kNoLimits);
  EXPECT_EQ(limits.rmsse, kNoLimits);
}

TEST_F(MeansIntervals, AnAlgorithmThatNobodyHasHasNoLimits) {
  AV1Params record = OneWay(4, 3, 10);
  record.Algorithm = 7;
  const IntervalLimits limits = Of(record);
  EXPECT_EQ(limits.delta, kNoLimits);
  EXPECT_EQ(limits.size, kNoLimits);
}

TEST_F(MeansIntervals, AnRmsseNearZeroIsRefusedAndTheOtherSizeStands) {
  // The lower RMSSE lies between 0 and .01.
  const IntervalLimits limits = Of(OneWay(4.2, 3, 20000));
  ASSERT_GT(limits.rmsse.lower, 0);
  ASSERT_LT(limits.rmsse.lower, .01);
  ASSERT_GT(limits.rmsse.upper, .01);
  EXPECT_THAT(Shown(), ElementsAre(Said::NullHypothesisNearlyTrue));
  EXPECT_GT(limits.size.lower, 0);
  EXPECT_EQ(limits.size.upper, NumericFailure);
}

TEST_F(MeansIntervals, SizesBeyondTheLimitAreRefusedOneByOne) {
  const AV1Params record = OneWay(40, 3, 150000);
  const IntervalLimits limits = OneWayInterval(record, 500, observer);
  EXPECT_THAT(Shown(), ElementsAre(Said::SearchTooLarge, Said::SearchTooLarge));
  EXPECT_EQ(limits.size, kNoLimits);
  EXPECT_NE(limits.power.upper, NumericFailure);
}

TEST_F(MeansIntervals, ACancelledSizeIsMissingAndTheNextSearchIsNotBegun) {
  observer.showsBar = true;
  observer.stop = [] { return true; };
  const IntervalLimits limits = Of(OneWay(4, 3, 10));
  EXPECT_TRUE(limits.cancelled);
  EXPECT_EQ(limits.size, kNoLimits);
  EXPECT_NE(limits.power.upper, NumericFailure);
  EXPECT_THAT(observer.bars, testing::SizeIs(1));
  EXPECT_THAT(Shown(), ElementsAre(Said::CancelledAtRequest));
}

TEST_F(MeansIntervals, EachEffectOfATwoWayDesignHasItsDivisor) {
  // 2 rows, 3 columns and 10 observations in a cell.
  const double df1[] = {1, 2, 2};
  const double divisors[] = {30, 40, 20};
  for (const i16 effect : {i16{0}, i16{1}, i16{2}}) {
    const IntervalLimits limits = Of(TwoWay(6, 2, 3, effect));
    EXPECT_EQ(limits.df1, df1[effect]);
    EXPECT_EQ(limits.df2, 54);
    EXPECT_DOUBLE_EQ(limits.rmsse.upper, std::sqrt(limits.delta.upper / divisors[effect]));
    EXPECT_LT(limits.size.lower, limits.size.upper);
  }
}

TEST_F(MeansIntervals, TheInteractionHasItsOwnDegreesOfFreedomInAnInterval) {
  // Not those of columns squared, which the table of the power shows.
  EXPECT_EQ(Of(TwoWay(2, 2, 4, 2)).df1, 3);
  EXPECT_EQ(ShownTwoWayEffectDf(2, 4, InteractionEffect), 9);
}

TEST_F(MeansIntervals, SizesOfATwoWayDesignAreThoseOfItsSearch) {
  const IntervalLimits limits = Of(TwoWay(6, 2, 3, 1));
  CriticalFCache criticals;
  EXPECT_EQ(
      limits.size.lower,
      static_cast<double>(TwoWayRequiredN({2, 3, limits.rmsse.upper, .05, .9, FExact, 1, kLimit},
                                          criticals, observer)
                              .requiredSize));
  EXPECT_THAT(observer.bars, IsEmpty());
}

TEST_F(MeansIntervals, AnEffectThatNobodyHasHasNoLimits) {
  const IntervalLimits limits = Of(TwoWay(6, 2, 3, 3));
  EXPECT_EQ(limits.delta, kNoLimits);
  EXPECT_EQ(limits.df1, NumericFailure);
}

TEST_F(MeansIntervals, TheLargestTwoWayDesignHasLimits) {
  AV2Params record = TwoWay(4, 1000, 1000, 0);
  record.N = 150000;
  const IntervalLimits limits = Of(record);
  EXPECT_EQ(limits.df2, 149999e6);
  // About 999 F - 999 by now.
  EXPECT_NEAR(limits.delta.lower + limits.delta.upper, 2 * 2997, 100);
}

}  // namespace
}  // namespace poweranalysis
