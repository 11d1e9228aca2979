#include "intervals/Correlations.h"

#include "distributions/Correlation.h"
#include "distributions/MultipleR2.h"
#include "intervals/IntervalsTest.h"
#include "procedures/SquaredCorrelation.h"

namespace poweranalysis {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

class CorrelationIntervals : public ProceduresTest {
 protected:
  IntervalLimits Of(const RParams& record) { return CorrelationInterval(record, observer); }
  IntervalLimits Of(const R2Params& record) { return SquaredCorrelationInterval(record, observer); }

  static RParams Correlation(double r, double rho0, i16 form, i16 algorithm) {
    auto record = BuiltIn<RParams>(Family::R);
    record.RObserved = r;
    record.Rho0 = rho0;
    record.H0Type = form;
    record.Algorithm = algorithm;
    return record;
  }
  static R2Params Squared(double r2, double c2, i16 form) {
    auto record = BuiltIn<R2Params>(Family::R2);
    record.R2Observed = r2;
    record.R2Null = c2;
    record.H0Type = form;
    return record;
  }
  double PowerAt(const R2Params& p, double rho2) {
    int err = 0;
    Refusal refusal;
    return SquaredCorrelationPower(p.SampleSize, p.TotalNumberOfVars, p.Alpha, rho2, p.R2Null,
                                   p.Algorithm, p.H0Type, err, refusal, observer);
  }
  double SizeAt(const R2Params& p, double rho2) {
    return static_cast<double>(
        SquaredCorrelationRequiredN(
            {rho2, p.R2Null, p.Alpha, p.PowerGoal, p.TotalNumberOfVars, p.Algorithm, p.H0Type},
            observer)
            .requiredSize);
  }
};

// --- One correlation.

TEST_F(CorrelationIntervals, TheLimitsSolveTheDistributionOfEachAlgorithm) {
  for (const i16 algorithm : {i16{0}, i16{1}, i16{2}}) {
    const IntervalLimits limits = Of(Correlation(.35, 0, 0, algorithm));
    EXPECT_NEAR(CorrelationCdf(limits.rho.lower, 100, .35, algorithm), .975, 1e-6) << algorithm;
    EXPECT_NEAR(CorrelationCdf(limits.rho.upper, 100, .35, algorithm), .025, 1e-6) << algorithm;
  }
}

TEST_F(CorrelationIntervals, TheTwoSidedPValueOfACorrelationBelowItsNullValueIsAboveOne) {
  EXPECT_NEAR(Of(Correlation(.1, .3, H0TwoTailed, CorrelationFisherZRefined)).pValue, 1.9621, 5e-5);
}

TEST_F(CorrelationIntervals, ThePValueFollowsTheForm) {
  const double c = CorrelationCdf(.1, 100, .35, CorrelationFisherZRefined);
  EXPECT_EQ(Of(Correlation(.35, .1, H0TwoTailed, 1)).pValue, (1 - c) + (1 - c));
  EXPECT_EQ(Of(Correlation(.35, .1, H0AtMost, 1)).pValue, 1 - c);
  EXPECT_EQ(Of(Correlation(.35, .1, H0AtLeast, 1)).pValue, c);
  EXPECT_EQ(Of(Correlation(.35, .1, H0Zero, 1)).pValue, NumericFailure);
}

TEST_F(CorrelationIntervals, ThreeObservationsHaveAPValueAndNoLimits) {
  RParams record = Correlation(.5, 0, 0, CorrelationFisherZCrude);
  record.SampleSize = 3;
  EXPECT_EQ(Of(record).rho, kNoLimits);
  EXPECT_EQ(Of(record).pValue, 1);
  record.Algorithm = CorrelationExact;
  EXPECT_EQ(Of(record).rho, kNoLimits);
  EXPECT_NEAR(Of(record).pValue, 2.0 / 3, 1e-6);
  // The refined moments still have a solution above.
  record.Algorithm = CorrelationFisherZRefined;
  EXPECT_EQ(Of(record).rho.lower, NumericFailure);
  EXPECT_NEAR(CorrelationCdf(Of(record).rho.upper, 3, .5, CorrelationFisherZRefined), .025, 1e-7);
}

TEST_F(CorrelationIntervals, ExtremeCorrelationsHaveLimitsInsideTheUnit) {
  for (const double r : {-.9999, .9999}) {
    const LimitPair rho = Of(Correlation(r, 0, 0, CorrelationFisherZRefined)).rho;
    EXPECT_LT(rho.lower, r);
    EXPECT_GT(rho.upper, r);
    EXPECT_LT(rho.upper, 1);
    EXPECT_GT(rho.lower, -1);
  }
}

TEST_F(CorrelationIntervals, TheExactLimitsOfFiveHundredAreThere) {
  RParams record = Correlation(.3, 0, 0, CorrelationExact);
  record.SampleSize = 500;
  const LimitPair exact = Of(record).rho;
  record.Algorithm = CorrelationFisherZRefined;
  const LimitPair refined = Of(record).rho;
  ExpectNear(exact, refined.lower, refined.upper, 1e-4);
}

TEST_F(CorrelationIntervals, EachSearchHasABarWithItsTitle) {
  observer.showsBar = true;
  Of(Correlation(.35, 0, 0, 1));
  EXPECT_THAT(observer.bars, ElementsAre(Pair(Said::ComputingLowerBound, 10),
                                         Pair(Said::ComputingUpperBound, 10)));
  EXPECT_FALSE(observer.barOpen);
}

TEST_F(CorrelationIntervals, ACancelledLimitIsMissingAndThePValueStands) {
  observer.showsBar = true;
  observer.stop = [] { return true; };
  const IntervalLimits limits = Of(Correlation(.35, 0, 0, 1));
  EXPECT_TRUE(limits.cancelled);
  EXPECT_EQ(limits.rho, kNoLimits);
  EXPECT_NE(limits.pValue, NumericFailure);
  EXPECT_THAT(observer.bars, testing::SizeIs(1));
  EXPECT_FALSE(observer.barOpen);
}

// --- Squared multiple correlation.

TEST_F(CorrelationIntervals, TheLimitsOnP2AreThoseOfTheDistribution) {
  const IntervalLimits limits = Of(Squared(.5, 0, 0));
  double lower = 0;
  double upper = 0;
  double oneSided = 0;
  double p = 0;
  int words[3] = {};
  MultipleR2Interval(3, .5, 100, .9, lower, upper, oneSided, words[0], words[1], words[2], R2Lee,
                     p);
  EXPECT_EQ(limits.rho2, (LimitPair{lower, upper}));
  EXPECT_EQ(limits.oneSided, (LimitPair{oneSided, NumericFailure}));
  EXPECT_EQ(limits.pValue, p);
}

TEST_F(CorrelationIntervals, ALimitOnP2IsShownAsItsSearchLeavesIt) {
  // The search for the upper limit says that it did not settle.
  R2Params record = Squared(.99, 0, 0);
  record.SampleSize = 30;
  record.TotalNumberOfVars = 2;
  record.Confidence = .99;
  double lower = 0;
  double upper = 0;
  double oneSided = 0;
  double p = 0;
  int words[3] = {};
  MultipleR2Interval(2, .99, 30, .99, lower, upper, oneSided, words[0], words[1], words[2], R2Lee,
                     p);
  ASSERT_EQ(words[1], 1);
  EXPECT_EQ(Of(record).rho2, (LimitPair{lower, upper}));
  EXPECT_FALSE(Of(record).cancelled);
}

TEST_F(CorrelationIntervals, TheTwoTailedFormHasNeitherPowerNorSizes) {
  // Though with a null value of zero it is computed as the upper-tailed one elsewhere.
  const IntervalLimits limits = Of(Squared(.5, 0, H0TwoTailed));
  EXPECT_EQ(limits.power, kNoLimits);
  EXPECT_EQ(limits.size, kNoLimits);
}

TEST_F(CorrelationIntervals, AnUpperTailedTestHasItsSizesInTheReverseOrderOfItsLimits) {
  for (const i16 form : {H0AtMost, H0Zero}) {
    const R2Params record = Squared(.5, 0, form);
    const IntervalLimits limits = Of(record);
    EXPECT_EQ(limits.power.lower, PowerAt(record, limits.rho2.lower));
    EXPECT_EQ(limits.power.upper, PowerAt(record, limits.rho2.upper));
    EXPECT_EQ(limits.size.lower, SizeAt(record, limits.rho2.upper));
    EXPECT_EQ(limits.size.upper, SizeAt(record, limits.rho2.lower));
    EXPECT_LT(limits.size.lower, limits.size.upper);
  }
}

TEST_F(CorrelationIntervals, ALowerTailedTestSwapsTheRolesOfItsLimits) {
  const R2Params record = Squared(.3, .7, H0AtLeast);
  const IntervalLimits limits = Of(record);
  ASSERT_LT(limits.rho2.upper, .7);
  EXPECT_EQ(limits.power.lower, PowerAt(record, limits.rho2.upper));
  EXPECT_EQ(limits.power.upper, PowerAt(record, limits.rho2.lower));
  EXPECT_EQ(limits.size.lower, SizeAt(record, limits.rho2.lower));
  EXPECT_EQ(limits.size.upper, SizeAt(record, limits.rho2.upper));
}

TEST_F(CorrelationIntervals, ALimitOnTheWrongSideOfTheNullValueIsNotUsed) {
  const R2Params up = Squared(.5, .5, H0AtMost);
  const IntervalLimits above = Of(up);
  EXPECT_EQ(above.power.lower, NumericFailure);
  EXPECT_EQ(above.size.upper, NumericFailure);
  EXPECT_EQ(above.power.upper, PowerAt(up, above.rho2.upper));
  EXPECT_EQ(above.size.lower, SizeAt(up, above.rho2.upper));
  const R2Params down = Squared(.5, .5, H0AtLeast);
  const IntervalLimits below = Of(down);
  EXPECT_EQ(below.power.lower, NumericFailure);
  EXPECT_EQ(below.size.upper, NumericFailure);
  EXPECT_EQ(below.power.upper, PowerAt(down, below.rho2.lower));
  EXPECT_EQ(below.size.lower, SizeAt(down, below.rho2.lower));
}

TEST_F(CorrelationIntervals, ALimitAtTheNullValueIsNotBeyondIt) {
  // An observed R2 of zero has both limits at zero.
  const IntervalLimits limits = Of(Squared(0, 0, H0Zero));
  EXPECT_EQ(limits.rho2, (LimitPair{0, 0}));
  EXPECT_EQ(limits.power, kNoLimits);
  EXPECT_EQ(limits.size, kNoLimits);
  EXPECT_THAT(Shown(), IsEmpty());
}

TEST_F(CorrelationIntervals, ALimitNearTheNullValueHasAPowerAndNoSize) {
  const IntervalLimits limits = Of(Squared(.2, .06, H0AtMost));
  const IntervalLimits plain = Of(Squared(.2, 0, H0TwoTailed));
  ASSERT_GT(plain.rho2.lower, .06);
  ASSERT_LT(plain.rho2.lower, .11);
  EXPECT_NE(limits.power.lower, NumericFailure);
  EXPECT_EQ(limits.size.upper, NumericFailure);
  EXPECT_NE(limits.size.lower, NumericFailure);
  EXPECT_THAT(Shown(), ElementsAre(Said::NullHypothesisNearlyTrue));
}

TEST_F(CorrelationIntervals, TheFormOfZeroTestsAgainstTheNullValueAsItStands) {
  const R2Params record = Squared(.5, .2, H0Zero);
  const IntervalLimits limits = Of(record);
  EXPECT_EQ(limits.power.upper, PowerAt(record, limits.rho2.upper));
  EXPECT_EQ(limits.size.lower, SizeAt(record, limits.rho2.upper));
}

TEST_F(CorrelationIntervals, TooFewObservationsShowAPValueOfMinusOneAndNoLimits) {
  for (const i16 form : {H0TwoTailed, H0AtMost, H0AtLeast}) {
    for (const i32 n : {2, 5}) {
      R2Params record = Squared(.5, .2, form);
      record.TotalNumberOfVars = 5;
      record.SampleSize = n;
      const IntervalLimits limits = Of(record);
      EXPECT_EQ(limits.pValue, -1);
      EXPECT_EQ(limits.rho2, kNoLimits);
      EXPECT_EQ(limits.oneSided, kNoLimits);
      EXPECT_EQ(limits.power, kNoLimits);
      EXPECT_EQ(limits.size, kNoLimits);
    }
  }
  EXPECT_THAT(Shown(), IsEmpty());
}

TEST_F(CorrelationIntervals, ACancelledSizeIsMissingAndTheNextSearchIsNotBegun) {
  observer.showsBar = true;
  observer.stop = [this] { return observer.barOpen; };
  const IntervalLimits limits = Of(Squared(.3, .1, H0AtMost));
  EXPECT_TRUE(limits.cancelled);
  EXPECT_NE(limits.power.upper, NumericFailure);
  EXPECT_EQ(limits.size, kNoLimits);
  EXPECT_THAT(Shown(), IsEmpty());
  EXPECT_LE(observer.bars.size(), 2u);  // of one search
}

TEST_F(CorrelationIntervals, ACancelledLimitOnP2IsMissingWithAllThatComesAfterIt) {
  R2Params record = Squared(.999, .1, H0AtMost);
  record.SampleSize = 150000;
  record.Algorithm = R2Exact;
  observer.stop = [] { return true; };
  const IntervalLimits limits = Of(record);
  EXPECT_TRUE(limits.cancelled);
  EXPECT_EQ(limits.rho2, kNoLimits);
  EXPECT_EQ(limits.oneSided, kNoLimits);
  EXPECT_EQ(limits.power, kNoLimits);
  EXPECT_EQ(limits.size, kNoLimits);
}

}  // namespace
}  // namespace poweranalysis
