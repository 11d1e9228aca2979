#include "dialogs/IntervalDialog.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <utility>

#include "dialogs/DialogRun.h"
#include "frame/Texts.h"

namespace poweranalysis {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

Design Interval(const char* family,
                std::vector<std::pair<ControlName, std::string>> typed = {},
                std::vector<ControlName> pressed = {}) {
  return {ModeInterval, family, std::move(typed), std::move(pressed)};
}

class IntervalDialogTest : public DialogRun {
 protected:
  // Opens the dialog in a new analysis, enters the design and computes.
  long Compute(const Design& design) {
    Parameters(design);
    return Press(ControlAccept);
  }
  std::vector<std::string> EditsOf(const char* family) {
    Parameters(Interval(family));
    std::vector<std::string> names;
    for (const ControlSpec& control : form().spec().pages.front().controls) {
      if (names.empty() || names.back() != control.name) {
        names.push_back(control.name);
      }
    }
    return names;
  }
};

// --- Pages.

TEST_F(IntervalDialogTest, PagesShowTheirFieldsInTabOrder) {
  EXPECT_THAT(EditsOf("T1"), ElementsAre("TObserved", "SampleSize", "Confidence"));
  EXPECT_THAT(EditsOf("T2"),
              ElementsAre("TObserved", "SampleSizeN1", "SampleSizeN2", "Confidence"));
  EXPECT_THAT(EditsOf("T3"), ElementsAre("TObserved", "SampleSize", "Confidence"));
  EXPECT_THAT(EditsOf("PC"), ElementsAre("TObserved", "SampleSize", "NumberOfGroups",
                                         "SumOfSquaredWeights", "Confidence", "Grid"));
  EXPECT_THAT(EditsOf("AV1"), ElementsAre("FObserved", "N", "NumberOfGroups", "Alpha", "Confidence",
                                          "PowerGoal", "ModelType", "Algorithm"));
  EXPECT_THAT(EditsOf("AV2"), ElementsAre("FObserved", "Rows", "Columns", "N", "EffectToTest",
                                          "Alpha", "Confidence", "PowerGoal", "Algorithm"));
  EXPECT_THAT(EditsOf("R"),
              ElementsAre("RObserved", "SampleSize", "Confidence", "Algorithm", "Rho0", "H0Type"));
  EXPECT_THAT(EditsOf("R2"),
              ElementsAre("R2Observed", "R2Null", "SampleSize", "TotalNumberOfVars", "H0Type",
                          "Alpha", "Confidence", "PowerGoal", "Algorithm", "Hint"));
  EXPECT_THAT(EditsOf("P1"), ElementsAre("PObserved", "SampleSize", "Confidence", "XObserved"));
  EXPECT_THAT(EditsOf("SEM"), ElementsAre("ObservedChiSquare", "DegreesOfFreedom", "P", "Groups",
                                          "SampleSize", "Confidence", "Hint"));
}

TEST_F(IntervalDialogTest, EveryTaskOfTheModeHasItsDialogAndTable) {
  for (const TaskRow& task : Tasks(ModeInterval)) {
    SCOPED_TRACE(task.family);
    EXPECT_EQ(1, Compute(Interval(task.family)));
    ASSERT_THAT(Items<SummaryTable>(), SizeIs(1));
    EXPECT_EQ(LastTable().code, FindTable(FindFamily(task.family)->family, ModeInterval)->code);
    EXPECT_EQ(Headings().front(), "Interval Estimation");
    EXPECT_THAT(Items<Report>(), IsEmpty());
  }
}

TEST_F(IntervalDialogTest, TheObservedFOfOneWayHasAControlOfItsOwn) {
  Parameters(Interval("AV1"));
  EXPECT_NE(form().Find(4801), nullptr);
  Parameters(Interval("AV2"));
  EXPECT_EQ(form().Find(4801), nullptr);
  EXPECT_NE(form().Find(21079), nullptr);
}

// --- Compute.

TEST_F(IntervalDialogTest, ComputeShowsTheLimitsOfAnObservedT) {
  Compute(Interval("T2", {{"TObserved", "2.4"},
                          {"SampleSizeN1", "30"},
                          {"SampleSizeN2", "30"},
                          {"Confidence", "0.95"}}));
  EXPECT_THAT(RowTitles(),
              ElementsAre("Observed t-Statistic", "Sample Size N1", "Sample Size N2",
                          "Confidence Level", "", "Confidence Limits:", "Delta:", "Lower Limit",
                          "Upper Limit", "", "Standardized Effect:", "Lower Limit", "Upper Limit"));
  // The noncentrality of a t of 58 df with .975 and with .025 below 2.4, by scipy.
  EXPECT_NEAR(LastTable().rows[7].values.front(), 0.38231449, 1e-6);
  EXPECT_NEAR(LastTable().rows[8].values.front(), 4.39797286, 1e-6);
  EXPECT_TRUE(IsMissing(LastTable().rows[6].values.front()));
}

TEST_F(IntervalDialogTest, ARefusedCheckCopiesAndSendsNothing) {
  const double before = block().T1.Committed.TObserved;
  EXPECT_EQ(0, Compute(Interval("T1", {{"TObserved", "3"}, {"Confidence", "1"}})));
  EXPECT_THAT(MessageIds(), SizeIs(1));
  EXPECT_THAT(host_.workbook().items, IsEmpty());
  EXPECT_EQ(block().T1.Committed.TObserved, before);
  EXPECT_EQ(OpenResource(), parameters_);
}

TEST_F(IntervalDialogTest, ASecondComputeSendsASecondTable) {
  Compute(Interval("T1", {{"TObserved", "3"}}));
  Press(ControlAccept);
  EXPECT_THAT(Items<SummaryTable>(), SizeIs(2));
  EXPECT_EQ(OpenResource(), parameters_) << "the dialog stays open";
}

TEST_F(IntervalDialogTest, BackKeepsWhatWasComputedAndForgetsTheRest) {
  Compute(Interval("T1", {{"TObserved", "3"}}));
  Type("TObserved", "4");
  Press(ControlBack);
  EXPECT_EQ(block().T1.Working.TObserved, 3);
  EXPECT_NE(form().Find(ControlTasks), nullptr) << "back to the startup";
}

TEST_F(IntervalDialogTest, RestoreDefaultsShowsThem) {
  Parameters(Interval("T1", {{"TObserved", "3"}}));
  Press(ControlRestoreDefaults);
  EXPECT_EQ(block().T1.Working.TObserved, block().T1.Defaults.TObserved);
  EXPECT_THAT(host_.workbook().items, IsEmpty());
}

TEST_F(IntervalDialogTest, ComputeGivesTheOutputBackOnceWhetherItWorkedOrNot) {
  Parameters(Interval("T1"));
  const int before = host_.calls.restoreResults;
  Press(ControlAccept);
  EXPECT_EQ(host_.calls.restoreResults, before + 1);
  Type("Confidence", "2");
  Press(ControlAccept);
  EXPECT_EQ(host_.calls.restoreResults, before + 2);
}

// --- One proportion: the observed proportion is tied to a whole count.

TEST_F(IntervalDialogTest, ComputeRoundsTheProportionToACountAndShowsBoth) {
  Compute(Interval("P1", {{"PObserved", "0.334"}, {"SampleSize", "10"}}));
  EXPECT_EQ(block().P1.Working.PObserved, 0.3);
  EXPECT_EQ(block().P1.Working.XObserved, 3);
  EXPECT_EQ(block().P1.Committed.PObserved, 0.3);
  EXPECT_EQ(TextOf("PObserved"), "0.3");
  EXPECT_EQ(TextOf("XObserved"), "3");
  EXPECT_TRUE(Find("XObserved")->spec.readOnly);
}

TEST_F(IntervalDialogTest, BeforeComputeTheProportionIsKeptAsTyped) {
  Parameters(Interval("P1", {{"PObserved", "0.334"}, {"SampleSize", "10"}}));
  EXPECT_EQ(block().P1.Working.PObserved, 0.334);
}

// --- The observed F of one-way is checked at every change.

TEST_F(IntervalDialogTest, AnObservedFOutsideIsRefusedAtOnceAndTheLastOneCounts) {
  Parameters(Interval("AV1", {{"FObserved", "150"}}));
  Type("FObserved", "1500");
  EXPECT_THAT(MessageIds(), ElementsAre(text::InvalidValueEntered));
  EXPECT_EQ(TextOf("FObserved"), "1500") << "the text stays";
  EXPECT_EQ(block().AV1.Working.FObserved, 150);
  EXPECT_EQ(1, Press(ControlAccept));
  EXPECT_EQ(Row("Observed F-Statistic"), 150);
}

TEST_F(IntervalDialogTest, AnObservedFAtTheEndsPassesWithFifteenUnits) {
  Parameters(Interval("AV1"));
  const auto stored = [this](const std::string& text) {
    Type("FObserved", "5");
    Type("FObserved", text);
    return block().AV1.Working.FObserved != 5;
  };
  EXPECT_TRUE(stored("0"));
  EXPECT_TRUE(stored("-0"));
  EXPECT_TRUE(stored("1000"));
  EXPECT_TRUE(stored("-5e-323"));
  EXPECT_TRUE(stored("1000.0000000000015"));
  EXPECT_FALSE(stored("1000.000000000003"));
  EXPECT_FALSE(stored("-1e-300"));
  EXPECT_TRUE(stored("abc")) << "counts as 0";
}

TEST_F(IntervalDialogTest, TheOtherObservedFIsCheckedByItsRangeAlone) {
  Parameters(Interval("AV2", {{"FObserved", "1500"}}));
  EXPECT_THAT(host_.messages(), IsEmpty());
  EXPECT_EQ(block().AV2.Working.FObserved, 1500);
}

// --- Hints and choices.

TEST_F(IntervalDialogTest, TheHintStandsWhileTheHypothesisHasTwoTails) {
  Parameters(Interval("R2"));
  EXPECT_TRUE(form().Find(ControlHint)->visible);
  Press("H0Type=upper");
  EXPECT_FALSE(form().Find(ControlHint)->visible);
  Press("H0Type=two-sided");
  EXPECT_TRUE(form().Find(ControlHint)->visible);
}

TEST_F(IntervalDialogTest, TheHintStandsWhileThereIsNoGroup) {
  Parameters(Interval("SEM"));
  EXPECT_FALSE(form().Find(ControlHint)->visible);
  Type("Groups", "0");
  EXPECT_TRUE(form().Find(ControlHint)->visible);
}

TEST_F(IntervalDialogTest, TheEffectOfTwoWayIsChosenByRadioButtons) {
  Compute(Interval("AV2", {}, {"EffectToTest=column"}));
  EXPECT_EQ(Headings().back(), "Column Effect");
  EXPECT_EQ(RowTitles()[7], "Data for Column Effect");
}

// --- Without a block.

TEST_F(IntervalDialogTest, WithoutABlockItCanStillBeClosed) {
  Parameters(Interval("T1"));
  PowerSettingsHead* const block = std::exchange(Module().settings, nullptr);
  EXPECT_EQ(0, Press(ControlAccept));
  EXPECT_THAT(host_.workbook().items, IsEmpty());
  EXPECT_EQ(1, Press(ControlBack));
  Module().settings = block;
}

}  // namespace
}  // namespace poweranalysis
