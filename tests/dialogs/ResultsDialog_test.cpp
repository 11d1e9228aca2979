#include <gmock/gmock.h>

#include <cmath>

#include "dialogs/FamilyRun.h"
#include "dialogs/ResultsDialog.h"
#include "output/Reports.h"
#include "output/SummaryTables.h"
#include "procedures/TTests.h"
#include "support/TemporaryFolder.h"

namespace poweranalysis {
namespace {

using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::SizeIs;
using ::testing::StartsWith;

using ResultsDialog = FamilyRun;

TEST_F(ResultsDialog, ShowsWhatFollowsFromTheInputsInItsFrame) {
  OpenResults({ModePower, "AV1"});
  EXPECT_THAT(TextOf(ControlSummary), HasSubstr("\nNoncentrality Parameter (Delta): 1.25\n"));
  EXPECT_THAT(TextOf(ControlSummary), Not(HasSubstr("Critical")));
}

TEST_F(ResultsDialog, ShowsTheSpreadOfPairedDifferencesInItsFrame) {
  OpenResults({ModePower, "T3"});
  EXPECT_THAT(TextOf(ControlSummary), HasSubstr("\nStand. Error of Mean Diff.: "));
  EXPECT_THAT(TextOf(ControlSummary), HasSubstr("\nStandardized Effect (Es): "));
}

TEST_F(ResultsDialog, NamesTheBlocksOfItsFrame) {
  OpenResults({ModeSampleSize, "AV2"});
  EXPECT_THAT(
      TextOf(ControlSummary),
      HasSubstr("\nRow Effect\nRMSSE: 0.25\nColumn Effect\nRMSSE: 0.25\nInteraction Effect"));
}

TEST_F(ResultsDialog, ShowsTheInputsInItsFrame) {
  OpenResults({ModeSampleSize, "T1"});
  EXPECT_EQ(
      TextOf(ControlSummary),
      "Sample Size Calculation\nNull Hypothesized Mean (Mu0): 0\nTrue Population Mean (Mu): 2\n"
      "Population S.D. (Sigma): 10\nStandardized Effect (Es): 0.2\nType I Error Rate (Alpha): "
      "0.05\nPower Goal: 0.9");
}

TEST_F(ResultsDialog, ShowsTheInputsOfAnOpenedFileInItsFrame) {
  const testing::TemporaryFolder folder;
  const std::string file = folder.File("seven.ini");
  OpenParameters({ModePower, "T1"});
  Type("Mu", "7");
  host_.saveAnswers = {file};
  Press(ControlSaveAs);
  Type("Mu", "2");
  Press(ControlAccept);
  ASSERT_THAT(TextOf(ControlSummary), HasSubstr("(Mu): 2\n"));
  host_.openAnswers = {file};
  Press(ControlOpen);
  EXPECT_THAT(TextOf(ControlSummary), HasSubstr("(Mu): 7\n"));
  EXPECT_THAT(TextOf(ControlSummary), HasSubstr("\nStandardized Effect (Es): 0.7\n"));
  Press(ControlAccept);
  EXPECT_EQ(Row("True Population Mean (Mu)"), 7) << "what the frame shows is what is calculated";
  EXPECT_THAT(TextOf(ControlSummary), HasSubstr("(Mu): 7\n"));
}

TEST_F(ResultsDialog, ShowsWhatSavingAsDefaultReadBackInItsFrame) {
  // A settings file cannot hold this field, so that what is read back is built in.
  const testing::TemporaryFolder folder;
  host_.configFolder = folder.path();
  OpenParameters({ModePower, "R2"});
  block().R2.Working.PopulationR2 = 0.4;
  Press(ControlAccept);
  ASSERT_THAT(TextOf(ControlSummary), HasSubstr("\nP²: 0.4"));
  Press(ControlSaveAsDefault);
  ASSERT_EQ(block().R2.Working.PopulationR2, 0.2);
  EXPECT_THAT(TextOf(ControlSummary), HasSubstr("\nP²: 0.2"));
}

TEST_F(ResultsDialog, ShowsWhatAScriptHasSetInItsFrame) {
  OpenResults({ModePower, "T1"});
  block().T1.Working.Mu = 7;
  EXPECT_EQ(Press(ControlRefresh), 1);
  EXPECT_THAT(TextOf(ControlSummary), HasSubstr("(Mu): 7\n"));
  block().T1.Working.Mu = 9;
  EXPECT_EQ(Press(ControlAccept), 1);
  EXPECT_THAT(TextOf(ControlSummary), HasSubstr("(Mu): 9\n"));
  block().T1.Working.Mu = 11;
  EXPECT_EQ(Press("power-vs-n"), 1);
  EXPECT_THAT(TextOf(ControlSummary), HasSubstr("(Mu): 11\n"));
}

TEST_F(ResultsDialog, HasTheControlsOfOneMean) {
  OpenResults({ModeSampleSize, "T1"});
  EXPECT_EQ(OpenResource(), 6109);
  EXPECT_EQ(form().spec().pages[0].resource, 6110);
  EXPECT_EQ(TextOf("EsStart"), "0.3");
  EXPECT_EQ(TextOf("EsEnd"), "0.9");
  EXPECT_EQ(TextOf("AlphaStart"), "0.01");
  EXPECT_EQ(TextOf("AlphaEnd"), "0.25");
  EXPECT_EQ(TextOf("PowerStart"), "0.65");
  EXPECT_EQ(TextOf("PowerEnd"), "0.95");
  EXPECT_EQ(TextOf("NInterval"), "10");
  EXPECT_EQ(CaptionOf("n-vs-es"), "N vs. Es");
  EXPECT_EQ(CaptionOf("n-vs-alpha"), "N vs. Alpha");
  EXPECT_EQ(CaptionOf("n-vs-power"), "N vs. Power");
  EXPECT_EQ(CaptionOf(ControlAccept), "Calculate N");
  OpenResults({ModePower, "T1"});
  EXPECT_EQ(CaptionOf(ControlAccept), "Calculate Power");
  EXPECT_EQ(CaptionOf("power-vs-n"), "Power vs. N");
  EXPECT_EQ(CaptionOf("power-vs-es"), "Power vs. Es");
  EXPECT_EQ(CaptionOf("power-vs-alpha"), "Power vs. Alpha");
  EXPECT_EQ(Find("PowerStart"), nullptr);
  EXPECT_EQ(TextOf("NStart"), "10");
  EXPECT_EQ(TextOf("NEnd"), "100");
}

TEST_F(ResultsDialog, CalculatesTheRequiredSizeOfTwoMeans) {
  OpenResults({ModeSampleSize, "T2", {{"Mu1", "5"}, {"PowerGoal", "0.8"}}});
  EXPECT_EQ(Press(ControlAccept), 1);
  EXPECT_EQ(Row("Required N (per group)"), 64);
  EXPECT_NEAR(Row("Actual Power for Required N"), 0.8014596, 1e-6);
  EXPECT_EQ(Items<SummaryTable>().back().code, 17);
  EXPECT_THAT(
      Items<SummaryTable>().back().headings,
      ElementsAre("Sample Size Calculation", "Two Means, t-Test, Ind. Samples", "H0:  Mu1 = Mu2"));
  ASSERT_THAT(Items<Report>(), SizeIs(1));
  EXPECT_THAT(Items<Report>()[0].paragraphs.back(),
              "With N = 64 in each group, the actual power is 80.15%.");
  EXPECT_THAT(host_.messages(), IsEmpty());
}

TEST_F(ResultsDialog, WritesTheReportOfOneMeanInItsOrder) {
  OpenResults({ModeSampleSize, "T1"});
  Press(ControlAccept);
  const std::vector<Report> reports = Items<Report>();
  ASSERT_THAT(reports, SizeIs(1));
  EXPECT_THAT(
      reports[0].paragraphs,
      ElementsAre(
          "\r\nSample Size Analysis -- The 1 Sample t-Test  ",
          "\r\nOne goal of the proposed study is to compare the population mean to a hypothesized "
          "value "
          "of 0.  ",
          "\r\nA 1 Sample t-Test will be performed, with the Type I Error rate (alpha) set at "
          "0.05. ",
          "\r\nThe test is two-tailed, which means that either a positive or negative deviation "
          "from "
          "the hypothesized value could be declared significant.  ",
          "\r\nAssume that, in the sampled population, the actual population mean is 2, ",
          "and that the population standard deviation (Sigma) is 10. ",
          StartsWith(
              "\r\nTo achieve the requested power of 90.00%, a sample size of at least N = 265 "
              "observations is required. With N = 265, the actual power is 90.")));
}

TEST_F(ResultsDialog, ReportsAFixedGroupWithTheVariedSizeAsANumber) {
  OpenResults({ModeSampleSize,
               "T2",
               {{"Mu1", "5"}, {"PowerGoal", "0.8"}, {"SampleSizeN2", "100"}},
               {"NToVary=n1"}});
  Press(ControlAccept);
  const double n = Row("Required N (per group)");
  EXPECT_GT(n, 30);
  EXPECT_LT(n, 64);
  const std::string size = std::to_string(static_cast<int>(n));
  EXPECT_THAT(
      Items<Report>()[0].paragraphs.back(),
      StartsWith("\r\nTo achieve the requested power of 80.00%, with N2 fixed at 100, a sample "
                 "size of at least N1 = " +
                 size + " observations is required in group 1.  With N1 = " + size +
                 " and N2 = 100, the actual power is "));
  // The critical value takes the degrees of freedom of equal groups all the same.
  const auto equalGroups = static_cast<std::int32_t>(2 * n - 2);
  EXPECT_EQ(Row("Critical Value of t"), -CriticalT(equalGroups, 0.05, H0TwoTailed));
}

TEST_F(ResultsDialog, BackDiscardsRangeEditsAndChangeParamsKeepsThem) {
  OpenResults({ModePower, "T1"});
  Type("NStart", "20");
  Press(ControlBack);
  EXPECT_EQ(OpenResource(), parameters_);
  EXPECT_EQ(block().T1.Working.NStart, 10);
  Press(ControlAccept);
  EXPECT_EQ(TextOf("NStart"), "10");
  Type("NStart", "20");
  host_.calls.exits.clear();
  Press(ControlChangeParams);
  ASSERT_THAT(host_.calls.exits, SizeIs(1));
  EXPECT_EQ(host_.calls.exits[0].stage, 102);
  EXPECT_EQ(host_.calls.exits[0].kind, 1);
  EXPECT_EQ(block().T1.Committed.NStart, 20);
}

TEST_F(ResultsDialog, ACalculationCommitsTheRangesSoThatBackKeepsThem) {
  OpenResults({ModePower, "T1"});
  Type("NStart", "20");
  Press(ControlAccept);
  Press(ControlBack);
  EXPECT_EQ(block().T1.Working.NStart, 20);
}

TEST_F(ResultsDialog, AChartCommitsTheRangesItWasDrawnWith) {
  OpenResults({ModePower, "T1"});
  Type("NStart", "20");
  Type("NEnd", "30");
  EXPECT_EQ(Press("power-vs-n"), 1);
  const std::vector<Chart> charts = Items<Chart>();
  ASSERT_THAT(charts, SizeIs(1));
  EXPECT_EQ(charts[0].x.front(), 20);
  EXPECT_EQ(charts[0].x.back(), 30);
  Press(ControlBack);
  EXPECT_EQ(block().T1.Working.NStart, 20);
}

TEST_F(ResultsDialog, ChangeParamsStaysWhenACheckFails) {
  OpenResults({ModePower, "T1"});
  Type("NInterval", "3");
  EXPECT_EQ(Press(ControlChangeParams), 0);
  EXPECT_EQ(OpenResource(), results_);
  EXPECT_THAT(MessageIds(), ElementsAre(text::RangeInt32));
}

TEST_F(ResultsDialog, CalculateStaysWhenACheckFails) {
  OpenResults({ModePower, "T1"});
  Type("NInterval", "3");
  EXPECT_EQ(Press(ControlAccept), 0);
  EXPECT_EQ(OpenResource(), results_);
  EXPECT_THAT(host_.workbook().items, IsEmpty());
  EXPECT_EQ(host_.calls.restoreResults, 1);
}

TEST_F(ResultsDialog, ATrueNullLeadsBackToTheParametersAndCommitsNothing) {
  OpenResults({ModePower, "T1", {{"Mu", "0"}}});
  Type("NStart", "20");
  Press(ControlAccept);
  EXPECT_EQ(OpenResource(), parameters_);
  EXPECT_THAT(MessageIds(), ElementsAre(text::NullHypothesisTrue));
  EXPECT_THAT(host_.workbook().items, IsEmpty());
  EXPECT_EQ(block().T1.Committed.NStart, 10) << "the copy comes after the check";
  EXPECT_EQ(TextOf("Mu"), "0") << "the user's values are kept";
}

TEST_F(ResultsDialog, AnEffectInTheDirectionOfTheNullIsATrueNull) {
  OpenResults({ModePower, "T1", {}, {"H0Type=lower"}});
  Press(ControlAccept);
  EXPECT_THAT(MessageIds(), ElementsAre(text::NullHypothesisTrue));
}

TEST_F(ResultsDialog, ASearchRefusesAnEffectThatPowerAccepts) {
  OpenResults({ModeSampleSize, "T1", {{"Mu", "0.005"}}});
  Press(ControlAccept);
  ASSERT_THAT(host_.messages(), SizeIs(1));
  EXPECT_EQ(host_.messages()[0].id, text::NullHypothesisNearlyTrue);
  EXPECT_THAT(host_.messages()[0].text, HasSubstr("within a tolerance of 0.001 of being true"));
  EXPECT_EQ(host_.messages()[0].count, 1);
  EXPECT_EQ(OpenResource(), parameters_);
  Press(ControlBack);
  host_.ClearMessages();
  OpenResults({ModePower, "T1", {{"Mu", "0.005"}}});
  EXPECT_EQ(Press(ControlAccept), 1);
  EXPECT_THAT(host_.messages(), IsEmpty());
}

TEST_F(ResultsDialog, ATooLargeSizeSendsNothingAndStays) {
  OpenResults({ModeSampleSize, "T1", {{"Mu", "0.011"}}});
  EXPECT_EQ(Press(ControlAccept), 0);
  ASSERT_THAT(MessageIds(), ElementsAre(text::SearchTooLarge));
  EXPECT_THAT(host_.messages()[0].text, HasSubstr("(greater than 150000)"));
  EXPECT_THAT(host_.workbook().items, IsEmpty());
  EXPECT_EQ(OpenResource(), 6109);
}

TEST_F(ResultsDialog, ACancelledSearchSaysSoAndSendsNothing) {
  OpenResults({ModeSampleSize, "T1"});
  host_.cancelled = [] { return true; };
  EXPECT_EQ(Press(ControlAccept), 0);
  EXPECT_THAT(MessageIds(), ElementsAre(text::CancelledAtRequest));
  EXPECT_FALSE(host_.IsProgressBarOpen());
  EXPECT_THAT(host_.workbook().items, IsEmpty());
  EXPECT_EQ(OpenResource(), results_);
}

TEST_F(ResultsDialog, ACancelledChartIsNotDrawn) {
  OpenResults({ModeSampleSize, "T1"});
  int polls = 0;
  host_.cancelled = [&polls] { return ++polls > 3; };
  EXPECT_EQ(Press("n-vs-es"), 0);
  EXPECT_THAT(Items<Chart>(), IsEmpty());
  EXPECT_FALSE(host_.IsProgressBarOpen());
}

TEST_F(ResultsDialog, ReportsNeedTheHighestLevelOfDetailAndATarget) {
  OpenResults({ModePower, "T1"});
  host_.supplementaryLevel = 3;
  Press(ControlAccept);
  EXPECT_THAT(Items<Report>(), IsEmpty());
  EXPECT_THAT(Items<SummaryTable>(), SizeIs(1));
  host_.supplementaryLevel = 4;
  host_.resultsToReportWindow = false;
  Press(ControlAccept);
  EXPECT_THAT(Items<Report>(), IsEmpty());
  host_.resultsToWord = true;
  Press(ControlAccept);
  EXPECT_THAT(Items<Report>(), SizeIs(1));
}

TEST_F(ResultsDialog, GivesTheOutputBackBeforeTheReportAndAtTheEnd) {
  OpenResults({ModePower, "T1"});
  Press(ControlAccept);
  EXPECT_EQ(host_.calls.restoreResults, 2);
}

TEST_F(ResultsDialog, SkipsTheReportWhenTheWindowHasGone) {
  OpenResults({ModePower, "T1"});
  host_.form()->DestroyWindow();
  EXPECT_EQ(Press(ControlAccept), 0);
  EXPECT_THAT(Items<SummaryTable>(), SizeIs(1));
  EXPECT_THAT(Items<Report>(), IsEmpty());
}

TEST_F(ResultsDialog, TheLowerTailTestOfOneMeanAloneShowsANegativeCriticalValue) {
  OpenResults({ModePower, "T1", {{"Mu", "-2"}}, {"H0Type=lower"}});
  Press(ControlAccept);
  EXPECT_NEAR(Row("Critical Value of t"), -1.7108821, 1e-6);
  OpenResults({ModePower, "T2", {{"Mu1", "-2"}}, {"H0Type=lower"}});
  Press(ControlAccept);
  EXPECT_NEAR(Row("Critical Value of t"), 1.6772242, 1e-6);
}

TEST_F(ResultsDialog, PairedMeansShowTheDeviationOfDifferencesAsAStandardError) {
  OpenResults({ModePower, "T3"});
  Press(ControlAccept);
  EXPECT_NEAR(Row("Stand. Error of Mean Diff."), std::sqrt(180.0), 1e-12);
  EXPECT_NEAR(Row("Standardized Effect (Es)"), 8 / std::sqrt(180.0), 1e-12);
}

TEST_F(ResultsDialog, ValuesOfATableStandInTheOrderOfItsTitles) {
  // Each input row shows the field that its title names.
  struct Case {
    int mode;
    const char* family;
    std::map<std::string, double> values;
  };
  const Case cases[] = {
      {ModePower,
       "T1",
       {{"Null Hypothesized Mean (Mu0)", 0},
        {"True Population Mean (Mu)", 2},
        {"Population S.D. (Sigma)", 10},
        {"Group Sample Size (N)", 25}}},
      {ModePower,
       "T2",
       {{"Population Mean Mu1", 2},
        {"Population Mean Mu2", 0},
        {"Sample Size N1", 25},
        {"Sample Size N2", 25},
        {"Type I Error Rate (Alpha)", 0.05}}},
      {ModeSampleSize, "T2", {{"Power Goal", 0.9}, {"Population S.D. (Sigma)", 10}}},
      {ModePower,
       "T3",
       {{"Between-group Correlation", 0.1},
        {"Group 1 S.D. (Sigma1)", 10},
        {"Group Sample Size (N)", 25},
        {"Population Mean Mu1", 8}}},
      {ModeSampleSize, "T3", {{"Power Goal", 0.9}, {"Type I Error Rate (Alpha)", 0.05}}},
  };
  for (const Case& c : cases) {
    OpenResults({c.mode, c.family});
    ASSERT_EQ(Press(ControlAccept), 1) << c.family;
    for (const auto& [title, value] : c.values) {
      EXPECT_EQ(Row(title), value) << c.family << ' ' << title;
    }
  }
}

TEST_F(ResultsDialog, DrawsEveryPlotWithItsTitles) {
  ExpectPlots(
      {ModePower, "T1"}, {}, "1 Sample t-Test: Power Calculation",
      "One Mean, t-Test (H0:  Mu = Mu0)",
      {{"power-vs-n", 14, "Power vs. N (Es = 0.2, Alpha = 0.05)", "Group Sample Size (N)", "Power"},
       {"power-vs-es", 0, "Power vs. Es (N = 25, Alpha = 0.05)", "Standardized Effect (Es)",
        "Power"},
       {"power-vs-alpha", 15, "Power vs. Alpha (Es = 0.2, N = 25)", "Type I Error Rate (Alpha)",
        "Power"}});
  ExpectPlots({ModeSampleSize, "T1"}, {}, "1 Sample t-Test: Sample Size Calculation",
              "One Mean, t-Test (H0:  Mu = Mu0)",
              {{"n-vs-es", 1, "Sample Size vs. Es (Alpha = 0.05, Power Goal = 0.9)",
                "Standardized Effect (Es)", "Required Sample Size (N)"},
               {"n-vs-alpha", 3, "Sample Size vs. Alpha (Es = 0.2, Power Goal = 0.9)",
                "Type I Error Rate (Alpha)", "Required Sample Size (N)"},
               {"n-vs-power", 2, "Sample Size vs. Power (Es = 0.2, Alpha = 0.05)", "Power Goal",
                "Required Sample Size (N)"}});
  ExpectPlots({ModePower, "T2"}, {}, "Independent Sample t-Test: Power Calc.",
              "Two Means, t-Test, Ind. Samples (H0:  Mu1 = Mu2)",
              {{"power-vs-n", 14, "Power vs. N (Es = 0.2, Alpha = 0.05, N1 = N2 = N)",
                "Group Sample Size (N)", "Power"},
               {"power-vs-n1", 14, "Power vs. N1 (Es = 0.2, Alpha = 0.05, N2 = 25)",
                "Sample Size N1", "Power"},
               {"power-vs-n2", 14, "Power vs. N2 (Es = 0.2, Alpha = 0.05, N1 = 25)",
                "Sample Size N2", "Power"},
               {"power-vs-es", 0, "Power vs. Es (N1 = 25, N2 = 25, Alpha = 0.05)",
                "Standardized Effect (Es)", "Power"},
               {"power-vs-alpha", 15, "Power vs. Alpha (Es = 0.2, N1 = 25, N2 = 25)",
                "Type I Error Rate (Alpha)", "Power"}});
  ExpectPlots({ModeSampleSize, "T2"}, {}, "Ind. Sample t-Test: Sample Size Calculation",
              "Two Means, t-Test, Ind. Samples (H0:  Mu1 = Mu2)",
              {{"n-vs-es", 1, "N vs. Es (Alpha = 0.05, Power = 0.9)", "Standardized Effect (Es)",
                "Required Sample Size (N1 = N2)"},
               {"n-vs-alpha", 3, "N vs. Alpha (Es = 0.2, Power = 0.9)", "Type I Error Rate (Alpha)",
                "Required Sample Size (N1 = N2)"},
               {"n-vs-power", 2, "N vs. Power (Alpha = 0.05, Es = 0.2)", "Power Goal",
                "Required Sample Size (N1 = N2)"}});
  ExpectPlots({ModePower, "T3"}, {}, "Dependent Sample t-Test: Power Calculation",
              "Two Means, t-Test, Dep. Samples (H0:  Mu1 = Mu2)",
              {{"power-vs-n", 14, "Power vs. N (Es = 0.596285, Alpha = 0.05)",
                "Group Sample Size (N)", "Power"}});
  ExpectPlots({ModeSampleSize, "T3"}, {}, "Dep. Sample t-Test: Sample Size Calculation",
              "Two Means, t-Test, Dep. Samples (H0:  Mu1 = Mu2)",
              {{"n-vs-es", 1, "N vs. Es (Alpha = 0.05, Power Goal = 0.9)",
                "Standardized Effect (Es)", "Required Sample Size (N)"},
               {"n-vs-power", 2, "N vs. Power (Alpha = 0.05, Standardized Effect = 0.596285)",
                "Power Goal", "Required Sample Size (N)"}});
}

TEST_F(ResultsDialog, ASizePlotOfOneGroupNamesTheFixedOne) {
  OpenParameters({ModeSampleSize, "T2"});
  Press("NToVary=n2");
  Type("SampleSizeN1", "500");
  Press(ControlAccept);
  ASSERT_EQ(Press("n-vs-es"), 1);
  const Chart chart = Items<Chart>().back();
  EXPECT_EQ(chart.titles[2], "Required N2 vs. Standardized Effect Size (N1 = 500)");
  EXPECT_EQ(chart.yLabel, "Required Sample Size N2 (N1 = 500)");
}

// The power of a point is the power of the same design on its own.
TEST_F(ResultsDialog, APlotAgreesWithTheCalculationAtEachPoint) {
  OpenResults({ModePower, "T2"});
  Press("power-vs-n");
  const Chart chart = Items<Chart>().back();
  for (std::size_t i = 0; i < chart.x.size(); ++i) {
    block().T2.Committed.SampleSizeN1 = static_cast<i32>(chart.x[i]);
    block().T2.Committed.SampleSizeN2 = static_cast<i32>(chart.x[i]);
    Press(ControlBack);
    Press(ControlAccept);
    Press(ControlAccept);
    EXPECT_EQ(chart.y[i], static_cast<float>(Row("Power")));
  }
}

TEST_F(ResultsDialog, APlotAgainstTheEffectIsDrawnThoughTheEffectOfTheRecordIsNull) {
  OpenResults({ModePower, "T1", {{"Mu", "0"}}});
  EXPECT_EQ(Press("power-vs-es"), 1) << "the effect is what this plot varies";
  EXPECT_EQ(Press("power-vs-n"), 0);
  EXPECT_THAT(MessageIds(), ElementsAre(text::NullHypothesisTrue));
  EXPECT_EQ(OpenResource(), 6105) << "a refused chart stays";
}

TEST_F(ResultsDialog, APowerPlotAcrossZeroSkipsTheRefusedPoint) {
  OpenResults({ModePower, "T1"});
  // Steps that are exact in binary, so that a point falls on zero.
  Type("EsStart", "-0.5");
  Type("EsEnd", "0.5");
  Type("NInterval", "8");
  EXPECT_EQ(Press("power-vs-es"), 1);
  const Chart chart = Items<Chart>().back();
  EXPECT_EQ(host_.messageCalls(), 1);
  EXPECT_THAT(MessageIds(), ElementsAre(text::NullHypothesisTrue));
  ASSERT_THAT(chart.y, SizeIs(8));
  EXPECT_EQ(chart.y[4], -9999)
      << "the failed point stays in the block and the last good one falls off";
}

TEST_F(ResultsDialog, ASizePlotEndsBeforeTheFirstFailedPoint) {
  OpenResults({ModeSampleSize, "T1"});
  Type("EsStart", "-0.5");
  Type("EsEnd", "0.5");
  Type("NInterval", "8");
  EXPECT_EQ(Press("n-vs-es"), 1);
  const Chart chart = Items<Chart>().back();
  EXPECT_THAT(chart.y, SizeIs(4));
  EXPECT_THAT(MessageIds(), ElementsAre(text::NullHypothesisTrue));
}

TEST_F(ResultsDialog, APowerThatFailsWithoutAWordIsToldByItsName) {
  // The log-rank test has no power where nobody in one group survives.
  OpenParameters({ModePower, "SA1"});
  block().SA1.Working.Pi1 = 0;
  Press(ControlAccept);
  EXPECT_EQ(Press(ControlAccept), 1);
  ASSERT_THAT(host_.messages(), SizeIs(1));
  EXPECT_EQ(host_.messages()[0].text, "Power could not be computed with these parameters.");
  EXPECT_THAT(Items<SummaryTable>(), SizeIs(1)) << "the inputs are shown all the same";
}

TEST_F(ResultsDialog, ASizeThatFailsWithoutAWordIsToldByItsName) {
  OpenParameters({ModeSampleSize, "SA1"});
  block().SA1.Working.Pi1 = 0;
  Press(ControlAccept);
  EXPECT_EQ(Press(ControlAccept), 0);
  ASSERT_THAT(host_.messages(), SizeIs(1));
  EXPECT_THAT(host_.messages()[0].text, EndsWith(" could not be computed with these parameters."));
  EXPECT_THAT(host_.workbook().items, IsEmpty());
}

TEST_F(ResultsDialog, TwoPowersThatFailWithoutAWordAreToldOnce) {
  // Without a rejection region the test of one proportion has neither its exact nor its normal
  // power.
  OpenParameters({ModePower, "P1"});
  block().P1.Working.H0Type = H0Zero;
  Press(ControlAccept);
  EXPECT_EQ(Press(ControlAccept), 1);
  EXPECT_TRUE(IsMissing(Row("Power (Exact)")));
  EXPECT_TRUE(IsMissing(Row("Power (Normal Approximation)")));
  ASSERT_THAT(host_.messages(), SizeIs(1));
  EXPECT_THAT(host_.messages()[0].text, EndsWith(" could not be computed with these parameters."));
  EXPECT_EQ(host_.messages()[0].count, 1);
}

TEST_F(ResultsDialog, TheTwoPowersOfOneProportionAreThereTogether) {
  OpenParameters({ModePower, "P1"});
  for (const double pi : {0.0, 1e-300, 0.6, 1 - 1e-12, 1.0}) {
    for (const double null : {0.0, 1e-12, 0.5, 1.0}) {
      for (const i32 n : {2, 50, 150000}) {
        if (pi == null) {
          continue;
        }
        P1Params& working = block().P1.Working;
        working.Pi = pi;
        working.Pi0 = null;
        working.SampleSize = n;
        Press(ControlAccept);
        ASSERT_EQ(Press(ControlAccept), 1);
        EXPECT_FALSE(IsMissing(Row("Power (Exact)"))) << pi << ' ' << null << ' ' << n;
        EXPECT_FALSE(IsMissing(Row("Power (Normal Approximation)")))
            << pi << ' ' << null << ' ' << n;
      }
    }
  }
  EXPECT_THAT(host_.messages(), IsEmpty());
}

TEST_F(ResultsDialog, AFailureThatWasToldIsNotToldAgain) {
  OpenResults({ModeSampleSize, "T1", {{"Mu", "0.011"}}});
  Press(ControlAccept);
  EXPECT_THAT(MessageIds(), ElementsAre(text::SearchTooLarge));
}

TEST_F(ResultsDialog, NoMemoryForATableOrAChartIsSilent) {
  OpenResults({ModePower, "T1"});
  host_.failAllocation = 1;
  Press(ControlAccept);
  EXPECT_THAT(Items<SummaryTable>(), IsEmpty());
  for (int failing = 1; failing <= 2; ++failing) {
    host_.failAllocation = failing;
    EXPECT_EQ(Press("power-vs-n"), 0);
  }
  EXPECT_THAT(Items<Chart>(), IsEmpty());
  EXPECT_THAT(host_.messages(), IsEmpty());
  host_.failAllocation = 0;
  EXPECT_EQ(host_.calls.allocMem - 3, host_.calls.freeMem + 1) << "all but the block are freed";
}

}  // namespace
}  // namespace poweranalysis
