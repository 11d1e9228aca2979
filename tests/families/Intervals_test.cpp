#include <cmath>
#include <set>
#include <string>

#include "families/Families.h"
#include "intervals/Correlations.h"
#include "intervals/IntervalsTest.h"
#include "intervals/Means.h"
#include "intervals/ModelFit.h"
#include "intervals/OneProportion.h"

namespace poweranalysis {
namespace {

template <class Params>
Outcome Asked(Family family, Params record, ProcedureObserver& observer) {
  return IntervalOf(RowOf(family), RecordView(TableOf(family), &record), observer);
}

template <class Params>
Outcome AskedOfBuiltIn(Family family) {
  SilentProcedureObserver observer;
  return Asked(family, BuiltIn<Params>(family), observer);
}

TEST(IntervalsOfFamilies, TenFamiliesHaveOne) {
  std::set<std::string> codes;
  for (const FamilyRow& row : FamilyRows()) {
    if (row.interval != nullptr) {
      codes.insert(TableOf(row.family).code);
    }
  }
  EXPECT_EQ(codes,
            (std::set<std::string>{"AV1", "AV2", "P1", "PC", "R", "R2", "SEM", "T1", "T2", "T3"}));
}

TEST(IntervalsOfFamilies, AFamilyWithoutAnIntervalSaysSo) {
  EXPECT_FALSE(AskedOfBuiltIn<V1Params>(Family::V1).good);
  EXPECT_FALSE(AskedOfBuiltIn<P2Params>(Family::P2).good);
}

TEST(IntervalsOfFamilies, EachFamilyHasItsOwnLimits) {
  SilentProcedureObserver silent;
  const auto limitsOf = [](const Outcome& outcome, Limit limit) {
    EXPECT_TRUE(outcome.good);
    return PairOf(outcome.computed.limits, limit);
  };
  EXPECT_EQ(limitsOf(AskedOfBuiltIn<T1Params>(Family::T1), Limit::Es),
            OneMeanInterval(BuiltIn<T1Params>(Family::T1), silent).effect);
  EXPECT_EQ(limitsOf(AskedOfBuiltIn<T2Params>(Family::T2), Limit::Es),
            TwoMeansInterval(BuiltIn<T2Params>(Family::T2), silent).effect);
  EXPECT_EQ(limitsOf(AskedOfBuiltIn<T3Params>(Family::T3), Limit::Delta),
            PairedMeansInterval(BuiltIn<T3Params>(Family::T3), silent).delta);
  EXPECT_EQ(limitsOf(AskedOfBuiltIn<PCParams>(Family::PC), Limit::Es),
            ContrastInterval(BuiltIn<PCParams>(Family::PC), silent).effect);
  EXPECT_EQ(limitsOf(AskedOfBuiltIn<AV1Params>(Family::AV1), Limit::Rmsse),
            OneWayInterval(BuiltIn<AV1Params>(Family::AV1), 150000, silent).rmsse);
  EXPECT_EQ(limitsOf(AskedOfBuiltIn<AV2Params>(Family::AV2), Limit::RequiredN),
            TwoWayInterval(BuiltIn<AV2Params>(Family::AV2), 150000, silent).size);
  EXPECT_EQ(limitsOf(AskedOfBuiltIn<RParams>(Family::R), Limit::Rho),
            CorrelationInterval(BuiltIn<RParams>(Family::R), silent).rho);
  EXPECT_EQ(limitsOf(AskedOfBuiltIn<R2Params>(Family::R2), Limit::P2Bound),
            SquaredCorrelationInterval(BuiltIn<R2Params>(Family::R2), silent).oneSided);
  EXPECT_EQ(limitsOf(AskedOfBuiltIn<P1Params>(Family::P1), Limit::PiCrude),
            OneProportionInterval(BuiltIn<P1Params>(Family::P1)).crude);
  auto fit = BuiltIn<SEMParams>(Family::SEM);
  fit.ObservedChiSquare = 50;
  EXPECT_EQ(limitsOf(Asked(Family::SEM, fit, silent), Limit::Gamma2), ModelFitInterval(fit).gamma2);
}

TEST(IntervalsOfFamilies, TheDegreesOfFreedomOfAnFAreShown) {
  const Outcome outcome = AskedOfBuiltIn<AV1Params>(Family::AV1);
  EXPECT_EQ(outcome.computed.effectDf[0], 2);
  EXPECT_EQ(outcome.computed.errorDf, 27);
}

TEST(IntervalsOfFamilies, ARefusedSizeIsHeardAndTheRestStands) {
  auto record = BuiltIn<AV1Params>(Family::AV1);
  record.FObserved = 4.2;
  record.N = 20000;
  RecordingObserver observer;
  const Outcome outcome = Asked(Family::AV1, record, observer);
  ASSERT_EQ(observer.remarks.size(), 1u);
  EXPECT_EQ(observer.remarks[0].text, Said::NullHypothesisNearlyTrue);
  EXPECT_TRUE(outcome.good);
  EXPECT_FALSE(outcome.refusal);
  EXPECT_NE(outcome.computed.limits.size.lower, NumericFailure);
}

TEST(IntervalsOfFamilies, ASearchForASizeEndsAtTheLimitOfItsField) {
  // A power goal that an RMSSE of just over .01 does not reach with 150000 in each of two groups.
  auto record = BuiltIn<AV1Params>(Family::AV1);
  record.NumberOfGroups = 2;
  record.N = 150000;
  record.FObserved = 31;
  record.Alpha = .0001;
  record.PowerGoal = .999;
  RecordingObserver observer;
  const Outcome outcome = Asked(Family::AV1, record, observer);
  ASSERT_GT(outcome.computed.limits.rmsse.lower, .01);
  ASSERT_FALSE(observer.remarks.empty());
  EXPECT_EQ(observer.remarks.back().text, Said::SearchTooLarge);
  EXPECT_EQ(std::get<std::int64_t>(observer.remarks.back().numbers[0]), 150000);
}

TEST(IntervalsOfFamilies, OneProportionAloneIsPreparedToAWholeCount) {
  for (const FamilyRow& row : FamilyRows()) {
    EXPECT_EQ(row.prepareInterval != nullptr, row.family == Family::P1);
  }
  auto record = BuiltIn<P1Params>(Family::P1);
  record.PObserved = .5;
  record.SampleSize = 5;
  RowOf(Family::P1).prepareInterval(RecordView(TableOf(Family::P1), &record));
  EXPECT_EQ(record.PObserved, .6);
  EXPECT_EQ(record.XObserved, 3);
  EXPECT_EQ(record.SampleSize, 5);
}

TEST(IntervalsOfFamilies, PowersAndSizesHaveNoLimits) {
  SilentProcedureObserver observer;
  const std::unique_ptr<FamilySession> session = RowOf(Family::T1).open(Question::Power);
  auto record = BuiltIn<T1Params>(Family::T1);
  session->Take(RecordView(TableOf(Family::T1), &record));
  const IntervalLimits limits = session->Compute(observer).computed.limits;
  EXPECT_EQ(limits.effect, kNoLimits);
  EXPECT_EQ(limits.pValue, NumericFailure);
}

}  // namespace
}  // namespace poweranalysis
