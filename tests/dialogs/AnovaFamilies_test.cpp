#include <cmath>

#include "dialogs/FamilyRun.h"
#include "distributions/NoncentralF.h"
#include "distributions/NoncentralT.h"

namespace poweranalysis {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::SizeIs;

class PlannedContrast : public FamilyRun {};
class OneWayAnova : public FamilyRun {};
class TwoWayAnova : public FamilyRun {};

// Power of an F test, from the distribution alone.
double PowerOfF(int df1, int df2, double delta, double alpha = 0.05) {
  int failure = 0;
  const double critical = NoncentralFQuantile(0, df1, df2, 1 - alpha, failure, 0);
  return 1 - NoncentralFCdfInt(critical, df1, df2, delta, failure, 0);
}
double CriticalF(int df1, int df2, double alpha = 0.05) {
  int failure = 0;
  return NoncentralFQuantile(0, df1, df2, 1 - alpha, failure, 0);
}

// --- Planned contrast.

TEST_F(PlannedContrast, HasItsControlsAndNoHypothesis) {
  OpenParameters({ModePower, "PC"});
  EXPECT_EQ(OpenResource(), 6171);
  ExpectControls({"StandardizedEffect", "SumOfSquaredWeights", "Alpha", "NumberOfGroups",
                  "SampleSize", "Sigma", ControlSaveAs, ControlSaveAsDefault});
  EXPECT_EQ(Find("H0Type=0"), nullptr);
  EXPECT_EQ(TextOf("StandardizedEffect"), "0.25");
  EXPECT_EQ(TextOf("SumOfSquaredWeights"), "6");
  EXPECT_EQ(TextOf("NumberOfGroups"), "3");
  EXPECT_EQ(TextOf("SampleSize"), "10");
  Press(ControlAccept);
  EXPECT_EQ(OpenResource(), 6173);
  ExpectControls({"EsStart", "EsEnd", "AlphaStart", "AlphaEnd", "NStart", "NEnd", "NInterval",
                  ControlAccept, "power-vs-n", "power-vs-es", "power-vs-alpha"});
  OpenParameters({ModeSampleSize, "PC"});
  EXPECT_EQ(OpenResource(), 6310);
  ExpectControls({"StandardizedEffect", "SumOfSquaredWeights", "Alpha", "PowerGoal",
                  "NumberOfGroups", "Sigma", ControlSaveAs, ControlSaveAsDefault});
  EXPECT_EQ(Find("SampleSize"), nullptr);
  Press(ControlAccept);
  EXPECT_EQ(OpenResource(), 6176);
  ExpectControls({"EsStart", "EsEnd", "PowerStart", "PowerEnd", "AlphaStart", "AlphaEnd",
                  "NInterval", ControlAccept, "n-vs-power", "n-vs-es", "n-vs-alpha"});
  EXPECT_EQ(Find("NStart"), nullptr);
}

TEST_F(PlannedContrast, ShowsItsPowerTable) {
  OpenResults({ModePower, "PC"});
  ASSERT_EQ(Press(ControlAccept), 1);
  EXPECT_EQ(LastTable().code, 48);
  EXPECT_THAT(Headings(), ElementsAre("Power Calculation", "Planned Contrast"));
  EXPECT_THAT(RowTitles(),
              ElementsAre("Number of Groups", "Group Sample Size (N)", "Standardized Effect (Es)",
                          "Type I Error Rate (Alpha)", "SS Weights", "Power"));
  // A contrast in t is the square root of one in F.
  const double power = PowerOfF(1, 27, 0.25 * 0.25 * 10 / 6);
  EXPECT_THAT(RowValues(), ElementsAre("3", "10", "0.25", "0.05", "6", Shown(Row("Power"))));
  EXPECT_NEAR(Row("Power"), power, 1e-6);
  EXPECT_THAT(host_.messages(), IsEmpty());
}

TEST_F(PlannedContrast, ShowsItsSizeTableWithThePowerAtThatSize) {
  OpenResults({ModeSampleSize, "PC"});
  ASSERT_EQ(Press(ControlAccept), 1);
  EXPECT_EQ(LastTable().code, 49);
  EXPECT_THAT(Headings(), ElementsAre("Sample Size Calculation", "Planned Contrast"));
  EXPECT_THAT(RowTitles(), ElementsAre("Number of Groups", "Standardized Effect (Es)",
                                       "Type I Error Rate (Alpha)", "SS Weights", "Power Goal",
                                       "Actual Power for Required N", "Required Sample Size (N)"));
  EXPECT_THAT(RowValues(), ElementsAre("3", "0.25", "0.05", "6", "0.9", "0.900182", "1010"));
}

TEST_F(PlannedContrast, WritesItsReports) {
  OpenResults({ModePower, "PC"});
  Press(ControlAccept);
  const std::string goal =
      "\r\nOne goal of the proposed study is to compare the means from 3 independent samples, to "
      "test the hypothesis that a specific linear contrast of means is zero. ";
  const std::string test =
      "\r\nA planned contrast test will be performed, with the Type I Error rate (alpha) set at "
      "0.05. ";
  const std::string assumption =
      "\r\nAssume that, in the sampled populations, the standardized effect is 0.25.";
  EXPECT_THAT(Paragraphs(),
              ElementsAre("\r\nPower Analysis -- Planned Contrast", goal, test, assumption,
                          "\r\nWith the proposed sample sizes of N = 10 observations per group, "
                          "the study will have a power of " +
                              Percent(Row("Power")) + "."));
  OpenResults({ModeSampleSize, "PC"});
  Press(ControlAccept);
  EXPECT_THAT(Paragraphs(),
              ElementsAre("\r\nSample Size Analysis -- Planned Contrast", goal, test, assumption,
                          "\r\nTo achieve the requested power of 90.00%, a sample size of at least "
                          "N = 1010 observations per group is required. ",
                          "\r\nWith N = 1010 observations per group, the actual power is 90.02%."));
}

TEST_F(PlannedContrast, WritesNoReportBelowTheHighestDetail) {
  OpenResults({ModePower, "PC"});
  host_.supplementaryLevel = 3;
  Press(ControlAccept);
  EXPECT_THAT(Items<Report>(), IsEmpty());
  EXPECT_THAT(Items<SummaryTable>(), SizeIs(1));
}

TEST_F(PlannedContrast, DrawsItsPlots) {
  ExpectPlots({ModePower, "PC"}, {}, "Planned Contrast: Power Calculation",
              "Planned Contrast (H0: Psi = 0)",
              {{"power-vs-n", 14, "Power vs. N (Es = 0.25, Alpha = 0.05, Groups = 3)",
                "Group Sample Size (N)", "Power"},
               {"power-vs-es", 0, "Power vs. Es (N = 10, Alpha = 0.05, Groups = 3)",
                "Standardized Effect (Es)", "Power"},
               {"power-vs-alpha", 15, "Power vs. Alpha (Es = 0.25, N = 10, Groups = 3)",
                "Type I Error Rate (Alpha)", "Power"}});
  ExpectPlots(
      {ModeSampleSize, "PC"}, {}, "Planned Contrast: Sample Size Calc.",
      "Planned Contrast (H0: Psi = 0)",
      {{"n-vs-power", 2, "N vs. Power (Es = 0.25, Alpha = 0.05, Groups = 3, SS Weights = 6)",
        "Power Goal", "Required Sample Size (N)"},
       {"n-vs-es", 1, "N vs. Es (Alpha = 0.05, Groups = 3, SS Weights = 6)",
        "Standardized Effect (Es)", "Required Sample Size (N)"},
       {"n-vs-alpha", 3, "N vs. Alpha (Es = 0.25, Groups = 3, SS Weights = 6)",
        "Type I Error Rate (Alpha)", "Required Sample Size (N)"}});
}

TEST_F(PlannedContrast, APlotAgreesWithTheCalculation) {
  OpenResults({ModePower, "PC"});
  Press("power-vs-n");
  const Chart n = LastChart();
  ASSERT_THAT(n.x, SizeIs(11));
  EXPECT_EQ(n.x[0], 10);
  EXPECT_EQ(n.x[10], 100);
  Press(ControlAccept);
  EXPECT_EQ(n.y[0], static_cast<float>(Row("Power")));
  EXPECT_NEAR(n.y[10], PowerOfF(1, 297, 0.0625 * 100 / 6), 1e-6);
  OpenResults({ModeSampleSize, "PC", {{"StandardizedEffect", "1"}}});
  Type("PowerStart", "0.9");
  Press("n-vs-power");
  const Chart sizes = LastChart();
  Press(ControlAccept);
  EXPECT_EQ(sizes.y[0], static_cast<float>(Row("Required Sample Size (N)")));
}

TEST_F(PlannedContrast, ANullEffectLeadsBackToTheParameters) {
  for (const int mode : {ModePower, ModeSampleSize}) {
    host_.ClearMessages();
    OpenResults({mode, "PC", {{"StandardizedEffect", "0"}}});
    Type("NInterval", "20");
    ExpectRefused(ControlAccept, {text::NullHypothesisTrue}, parameters_);
    EXPECT_EQ(block().PC.Committed.NInterval, 10);
    EXPECT_EQ(TextOf("StandardizedEffect"), "0");
  }
}

TEST_F(PlannedContrast, ATinyEffectStopsTheSearchAlone) {
  OpenResults({ModeSampleSize, "PC", {{"StandardizedEffect", "-0.0099"}}});
  ExpectRefused(ControlAccept, {text::NullHypothesisNearlyTrue}, parameters_);
  EXPECT_THAT(host_.messages()[0].text, HasSubstr("within a tolerance of 0.01 of"));
  EXPECT_EQ(host_.messageCalls(), 1);
  host_.ClearMessages();
  OpenResults({ModePower, "PC", {{"StandardizedEffect", "-0.0099"}}});
  EXPECT_EQ(Press(ControlAccept), 1);
  EXPECT_THAT(host_.messages(), IsEmpty());
}

TEST_F(PlannedContrast, AnEffectOfTheToleranceIsSearched) {
  OpenResults(
      {ModeSampleSize, "PC", {{"StandardizedEffect", "0.01"}, {"SumOfSquaredWeights", "0.01"}}});
  EXPECT_EQ(Press(ControlAccept), 1);
  EXPECT_THAT(host_.messages(), IsEmpty());
}

// The candidate 1010 lies above the limit and is taken all the same.
TEST_F(PlannedContrast, ASizeFoundBeyondTheLimitIsShown) {
  block().PC.Upper.SampleSize = 1009;
  OpenResults({ModeSampleSize, "PC"});
  EXPECT_EQ(Press(ControlAccept), 1);
  EXPECT_THAT(host_.messages(), IsEmpty());
  EXPECT_EQ(Row("Required Sample Size (N)"), 1010);
  EXPECT_NEAR(Row("Actual Power for Required N"), 0.900182, 1e-6);
  EXPECT_THAT(Paragraphs().back(), HasSubstr("With N = 1010 observations"));
}

TEST_F(PlannedContrast, ATooLargeSizeSendsNothingAndStays) {
  block().PC.Upper.SampleSize = 500;
  OpenResults({ModeSampleSize, "PC"});
  ExpectRefused(ControlAccept, {text::SearchTooLarge}, results_);
  EXPECT_THAT(host_.messages()[0].text, HasSubstr("(greater than 500)"));
  EXPECT_FALSE(host_.IsProgressBarOpen());
}

TEST_F(PlannedContrast, AHugeEffectNeedsThreeAGroup) {
  OpenResults({ModeSampleSize, "PC", {{"StandardizedEffect", "8"}}});
  ASSERT_EQ(Press(ControlAccept), 1);
  EXPECT_EQ(Row("Required Sample Size (N)"), 3);
}

TEST_F(PlannedContrast, TheSmallestDesignHasAPower) {
  OpenResults({ModePower,
               "PC",
               {{"SampleSize", "2"}, {"NumberOfGroups", "2"}, {"StandardizedEffect", "3"}}});
  ASSERT_EQ(Press(ControlAccept), 1);
  EXPECT_NEAR(Row("Power"), PowerOfF(1, 2, 9 * 2 / 6.0), 1e-6);
}

TEST_F(PlannedContrast, ItsFirstAlphaOfAPlotStartsAtAHundredth) {
  OpenResults({ModePower, "PC"});
  Type("AlphaStart", "0.005");
  ExpectRefused("power-vs-alpha", {text::RangeReal}, results_);
  EXPECT_THAT(host_.messages()[0].text, HasSubstr("0.01 <= Start Alpha <= 0.2499"));
}

TEST_F(PlannedContrast, APowerPlotAcrossZeroKeepsTheRefusedPoint) {
  OpenResults({ModePower, "PC"});
  Type("EsStart", "-0.5");
  Type("EsEnd", "0.5");
  Type("NInterval", "8");
  EXPECT_EQ(Press("power-vs-es"), 1);
  ASSERT_THAT(LastChart().y, SizeIs(8));
  EXPECT_EQ(LastChart().y[4], -9999);
  EXPECT_EQ(LastChart().y[3], LastChart().y[5]);
  EXPECT_THAT(MessageIds(), ElementsAre(text::NullHypothesisTrue));
}

TEST_F(PlannedContrast, ASizePlotAcrossZeroGoesOn) {
  OpenResults({ModeSampleSize, "PC"});
  Type("EsStart", "-0.5");
  Type("EsEnd", "0.5");
  Type("NInterval", "8");
  EXPECT_EQ(Press("n-vs-es"), 1);
  ASSERT_THAT(LastChart().y, SizeIs(8));
  EXPECT_EQ(LastChart().y[4], -9999);
  EXPECT_GT(LastChart().y[7], 0);
}

TEST_F(PlannedContrast, ATrueNullEndsAPlotThatFixesTheEffect) {
  OpenResults({ModePower, "PC", {{"StandardizedEffect", "0"}}});
  for (const char* control : {"power-vs-n", "power-vs-alpha"}) {
    host_.ClearMessages();
    ExpectRefused(control, {text::NullHypothesisTrue}, results_);
  }
  EXPECT_EQ(Press("power-vs-es"), 1);
}

// --- One-way analysis of variance.

TEST_F(OneWayAnova, HasItsControls) {
  OpenParameters({ModePower, "AV1"});
  EXPECT_EQ(OpenResource(), 6178);
  ExpectControls({"RMSSE", "Alpha", "NumberOfGroups", "N", "ModelType=fixed", "ModelType=random",
                  "Sigma", ControlSaveAs, ControlSaveAsDefault});
  EXPECT_TRUE(IsChecked("ModelType=fixed"));
  EXPECT_EQ(CaptionOf("ModelType=fixed"), "Fixed Effects");
  EXPECT_EQ(CaptionOf("ModelType=random"), "Random Effects");
  EXPECT_EQ(Press("ModelType=random"), 1);
  EXPECT_EQ(block().AV1.Working.ModelType, 1);
  Press(ControlAccept);
  EXPECT_EQ(OpenResource(), 6180);
  ExpectControls({"StartRMSSE", "EndRMSSE", "AlphaStart", "AlphaEnd", "NStart", "NEnd", "NInterval",
                  ControlAccept, "power-vs-n", "power-vs-rmsse", "power-vs-alpha"});
  OpenParameters({ModeSampleSize, "AV1"});
  EXPECT_EQ(OpenResource(), 6183);
  ExpectControls({"PowerGoal", "RMSSE", "Alpha", "NumberOfGroups", "ModelType=fixed",
                  "ModelType=random", "Sigma", ControlSaveAs, ControlSaveAsDefault});
  EXPECT_EQ(Find("N"), nullptr);
  Press(ControlAccept);
  EXPECT_EQ(OpenResource(), 6185);
  ExpectControls({"StartRMSSE", "EndRMSSE", "PowerStart", "PowerEnd", "AlphaStart", "AlphaEnd",
                  "NInterval", ControlAccept, "n-vs-rmsse", "n-vs-alpha", "n-vs-power"});
}

TEST_F(OneWayAnova, ShowsItsPowerTable) {
  OpenResults({ModePower, "AV1"});
  ASSERT_EQ(Press(ControlAccept), 1);
  EXPECT_EQ(LastTable().code, 80);
  EXPECT_THAT(Headings(), ElementsAre("Power Calculation", "ANOVA, 1-Way", "Fixed Effects"));
  EXPECT_THAT(RowTitles(),
              ElementsAre("Number of Groups", "Group Sample Size (N)", "RMSSE",
                          "Noncentrality Parameter (Delta)", "Type I Error Rate (Alpha)",
                          "Effect Df", "Error Df", "Critical Value of F", "Power"));
  EXPECT_THAT(RowValues(), ElementsAre("3", "10", "0.25", "1.25", "0.05", "2", "27",
                                       Shown(CriticalF(2, 27)), Shown(PowerOfF(2, 27, 1.25))));
}

TEST_F(OneWayAnova, RandomEffectsRescaleTheCriticalValueAndShowItUnscaled) {
  OpenResults({ModePower, "AV1", {}, {"ModelType=random"}});
  ASSERT_EQ(Press(ControlAccept), 1);
  EXPECT_EQ(Headings()[2], "Random Effects");
  int failure = 0;
  const double power =
      1 - NoncentralFCdfInt(CriticalF(2, 27) / (10 * 0.0625 + 1), 2, 27, 0, failure, 0);
  EXPECT_THAT(RowValues(), ElementsAre("3", "10", "0.25", "1.25", "0.05", "2", "27",
                                       Shown(CriticalF(2, 27)), Shown(power)));
}

TEST_F(OneWayAnova, ShowsItsSizeTableWithTheDeltaOfTheRecord) {
  OpenResults({ModeSampleSize, "AV1"});
  ASSERT_EQ(Press(ControlAccept), 1);
  EXPECT_EQ(LastTable().code, 81);
  EXPECT_THAT(Headings(), ElementsAre("Sample Size Calculation", "ANOVA, 1-Way", "Fixed Effects"));
  EXPECT_THAT(RowTitles(),
              ElementsAre("Number of Groups", "RMSSE", "Noncentrality Parameter (Delta)",
                          "Type I Error Rate (Alpha)", "Power Goal", "Actual Power for Required N",
                          "Required Sample Size (N)"));
  const int n = static_cast<int>(Row("Required Sample Size (N)"));
  EXPECT_THAT(RowValues(),
              ElementsAre("3", "0.25", "1.25", "0.05", "0.9",
                          Shown(PowerOfF(2, 3 * (n - 1), 0.125 * n)), std::to_string(n)));
  EXPECT_GT(PowerOfF(2, 3 * (n - 1), 0.125 * n), 0.9);
  EXPECT_LE(PowerOfF(2, 3 * (n - 2), 0.125 * (n - 1)), 0.9);
}

TEST_F(OneWayAnova, WritesItsReportsWithTheModel) {
  for (const int model : {0, 1}) {
    const std::string name = model == 0 ? "Fixed Effects" : "Random Effects";
    const std::string goal =
        "\r\nOne goal of the proposed study is to compare the means from 3 independent samples, to "
        "test whether they are equal.";
    const std::string test = "\r\nA 1-Way " + name +
                             " Analysis of Variance will be performed, with the Type I Error rate "
                             "(alpha) set at 0.05. ";
    const std::string assumption =
        "\r\nAssume that, in the sampled populations, the root mean square standardized effect is "
        "0.25.";
    OpenResults({ModePower, "AV1", {}, {RadioOf("ModelType", model)}});
    Press(ControlAccept);
    EXPECT_THAT(Paragraphs(),
                ElementsAre("\r\nPower Analysis -- The 1-Way " + name + " Analysis of Variance",
                            goal, test, assumption,
                            "\r\nWith the proposed sample sizes of N = 10 observations per group, "
                            "the study will have a power of " +
                                Percent(Row("Power")) + "."));
    OpenResults({ModeSampleSize, "AV1", {}, {RadioOf("ModelType", model)}});
    Press(ControlAccept);
    const std::string n = Shown(Row("Required Sample Size (N)"));
    EXPECT_THAT(
        Paragraphs(),
        ElementsAre("\r\nSample Size Analysis -- The 1-Way " + name + " Analysis of Variance", goal,
                    test, assumption,
                    "\r\nTo achieve the requested power of 90.00%, a sample size of at least N = " +
                        n + " observations per group is required. ",
                    "\r\nWith N = " + n + " observations per group, the actual power is " +
                        Percent(Row("Actual Power for Required N")) + "."));
  }
}

TEST_F(OneWayAnova, DrawsItsPlots) {
  ExpectPlots({ModePower, "AV1"}, {}, "1-Way ANOVA: Power Calculation",
              "Several Means, ANOVA, 1-Way (Fixed Effects)",
              {{"power-vs-n", 14, "Power vs. N (RMSSE = 0.25, Groups = 3, Alpha = 0.05)",
                "Group Sample Size (N)", "Power"},
               {"power-vs-rmsse", 16, "Power vs. RMSSE (Alpha = 0.05, Groups = 3, N = 10)", "RMSSE",
                "Power"},
               {"power-vs-alpha", 15, "Power vs. Alpha (RMSSE = 0.25, Groups = 3, N = 10)",
                "Type I Error Rate (Alpha)", "Power"}});
  ExpectPlots({ModeSampleSize, "AV1", {}, {"ModelType=random"}}, {},
              "1-Way ANOVA: Sample Size Calculation",
              "Several Means, ANOVA, 1-Way (Random Effects)",
              {{"n-vs-rmsse", 4, "N vs. RMSSE (Alpha = 0.05, Groups = 3, Power = 0.9)", "RMSSE",
                "Required Sample Size (N)"},
               {"n-vs-alpha", 3, "N vs. Alpha (RMSSE = 0.25, Groups = 3, Power = 0.9)",
                "Type I Error Rate (Alpha)", "Required Sample Size (N)"},
               {"n-vs-power", 2, "N vs. Power (RMSSE = 0.25, Groups = 3, Alpha = 0.05)",
                "Power Goal", "Required Sample Size (N)"}});
}

TEST_F(OneWayAnova, APlotAgreesWithTheDistribution) {
  OpenResults({ModePower, "AV1"});
  Press("power-vs-n");
  const Chart n = LastChart();
  ASSERT_THAT(n.x, SizeIs(20));
  for (std::size_t i = 0; i < n.x.size(); ++i) {
    const int size = static_cast<int>(n.x[i]);
    EXPECT_EQ(size, static_cast<int>(i) + 5);
    EXPECT_EQ(n.y[i], static_cast<float>(PowerOfF(2, 3 * (size - 1), 0.125 * size)));
  }
  OpenResults({ModePower, "AV1", {}, {"ModelType=random"}});
  Press("power-vs-alpha");
  const Chart alpha = LastChart();
  int failure = 0;
  EXPECT_NEAR(alpha.y[0],
              1 - NoncentralFCdfInt(CriticalF(2, 27, 0.01) / 1.625, 2, 27, 0, failure, 0), 1e-6);
}

TEST_F(OneWayAnova, AReversedRangeGivesTheSamePlot) {
  OpenResults({ModePower, "AV1"});
  Press("power-vs-n");
  const Chart forward = LastChart();
  Type("NStart", "24");
  Type("NEnd", "5");
  Press("power-vs-n");
  EXPECT_EQ(LastChart().x, forward.x);
  EXPECT_EQ(LastChart().y, forward.y);
}

TEST_F(OneWayAnova, AnEffectOfZeroIsStoppedByItsRange) {
  OpenParameters({ModePower, "AV1", {{"RMSSE", "0"}}});
  Press(ControlAccept);
  EXPECT_EQ(OpenResource(), parameters_);
  ASSERT_THAT(MessageIds(), ElementsAre(text::RangeReal));
  EXPECT_THAT(host_.messages()[0].text, HasSubstr("0 < RMSSE <= 1e+30"));
}

TEST_F(OneWayAnova, OnlyTheSearchChecksTheNullHypothesis) {
  OpenResults({ModePower, "AV1", {{"RMSSE", "0.005"}}});
  EXPECT_EQ(Press(ControlAccept), 1);
  EXPECT_EQ(Press("power-vs-n"), 1);
  EXPECT_THAT(host_.messages(), IsEmpty());
  OpenResults({ModeSampleSize, "AV1", {{"RMSSE", "0.005"}}});
  host_.TakeWorkbook();
  ExpectRefused(ControlAccept, {text::NullHypothesisNearlyTrue}, parameters_);
  EXPECT_THAT(host_.messages()[0].text, HasSubstr("within a tolerance of 0.01 of"));
}

TEST_F(OneWayAnova, ATooLargeSizeSendsNothing) {
  block().AV1.Upper.N = 50;
  OpenResults({ModeSampleSize, "AV1"});
  ExpectRefused(ControlAccept, {text::SearchTooLarge}, results_);
  EXPECT_THAT(host_.messages()[0].text, HasSubstr("(greater than 50)"));
}

TEST_F(OneWayAnova, APointBeyondTheLimitIsAFailedPoint) {
  block().AV1.Upper.N = 50;
  OpenResults({ModeSampleSize, "AV1"});
  EXPECT_EQ(Press("n-vs-rmsse"), 1);
  EXPECT_EQ(LastChart().y.front(), -9999);
}

TEST_F(OneWayAnova, ACancelledSearchLeavesNothing) {
  OpenResults({ModeSampleSize, "AV1"});
  host_.cancelled = [] { return true; };
  ExpectRefused(ControlAccept, {text::CancelledAtRequest}, results_);
  EXPECT_FALSE(host_.IsProgressBarOpen());
}

TEST_F(OneWayAnova, TheApproximationHasNoPowerAtTwoErrorDegrees) {
  OpenParameters({ModePower, "AV1"});
  Type("NumberOfGroups", "2");
  Type("N", "2");
  block().AV1.Working.Algorithm = 1;
  Press(ControlAccept);
  EXPECT_EQ(Press(ControlAccept), 1);
  EXPECT_EQ(RowValues().back(), "-");
  EXPECT_THAT(Paragraphs().back(), HasSubstr("power of -----."));
}

TEST_F(OneWayAnova, ItsSearchNamesTheSizeInTheBar) {
  OpenResults({ModeSampleSize, "AV1"});
  host_.calls.progress.clear();
  Press(ControlAccept);
  ASSERT_FALSE(host_.calls.progress.empty());
  EXPECT_EQ(host_.calls.progress.front(), "d_pbar Searching for required N");
}

// --- Two-way analysis of variance.

TEST_F(TwoWayAnova, HasItsControls) {
  OpenParameters({ModePower, "AV2"});
  EXPECT_EQ(OpenResource(), 6226);
  ExpectControls({"RMSSE_Row", "RMSSE_Col", "RMSSE_Int", "Alpha", "Rows", "Columns", "N", "Sigma",
                  ControlSaveAs, ControlSaveAsDefault});
  Press(ControlAccept);
  EXPECT_EQ(OpenResource(), 6228);
  ExpectControls({"StartRMSSE", "EndRMSSE", "AlphaStart", "AlphaEnd", "NStart", "NEnd", "NInterval",
                  ControlAccept, "power-vs-n", "power-vs-rmsse", "power-vs-alpha"});
  OpenParameters({ModeSampleSize, "AV2"});
  EXPECT_EQ(OpenResource(), 6230);
  ExpectControls({"RMSSE_Row", "RMSSE_Col", "RMSSE_Int", "PowerGoal", "Alpha", "Rows", "Columns",
                  "Sigma", ControlSaveAs, ControlSaveAsDefault});
  EXPECT_EQ(Find("N"), nullptr);
  Press(ControlAccept);
  EXPECT_EQ(OpenResource(), 6232);
  ExpectControls({"StartRMSSE", "EndRMSSE", "PowerStart", "PowerEnd", "AlphaStart", "AlphaEnd",
                  "NInterval", ControlAccept, "n-vs-power", "n-vs-rmsse", "n-vs-alpha"});
}

TEST_F(TwoWayAnova, ShowsItsPowerTable) {
  OpenResults(
      {ModePower, "AV2", {{"RMSSE_Row", "0.3"}, {"RMSSE_Col", "0.2"}, {"RMSSE_Int", "0.1"}}});
  ASSERT_EQ(Press(ControlAccept), 1);
  EXPECT_EQ(LastTable().code, 1025);
  EXPECT_THAT(Headings(), ElementsAre("Power Calculation", "ANOVA, 2-Way"));
  const std::vector<std::string> titles = RowTitles();
  ASSERT_THAT(titles, SizeIs(25));
  EXPECT_EQ(titles[5], "Row Effect");
  EXPECT_EQ(titles[12], "Column Effect");
  EXPECT_EQ(titles[19], "Interaction Effect");
  EXPECT_EQ(LastTable().rows[19].indent, 0);
  EXPECT_EQ(LastTable().rows[20].indent, 2);
  EXPECT_EQ(titles[24], "Power");
  const std::string f2 = Shown(CriticalF(2, 81));
  EXPECT_THAT(RowValues(),
              ElementsAre("3", "3", "10", "0.05", "-", "-", "0.3", "2", "81", f2,
                          Shown(PowerOfF(2, 81, 2 * 3 * 10 * 0.09)), "-", "-", "0.2", "2", "81", f2,
                          Shown(PowerOfF(2, 81, 2 * 3 * 10 * 0.04)), "-", "-", "0.1", "4", "81",
                          Shown(CriticalF(4, 81)), Shown(PowerOfF(4, 81, 4 * 10 * 0.01))));
}

// The shown degrees of freedom of the interaction are those of a square design.
TEST_F(TwoWayAnova, AnOblongDesignShowsTheDfOfTheColumnsSquared) {
  for (const auto& [rows, columns] : {std::pair{2, 3}, {3, 2}, {5, 4}}) {
    OpenResults(
        {ModePower, "AV2", {{"Rows", std::to_string(rows)}, {"Columns", std::to_string(columns)}}});
    ASSERT_EQ(Press(ControlAccept), 1);
    const std::vector<TableRow> cells = LastTable().rows;
    const int df = (rows - 1) * (columns - 1);
    const int error = 9 * rows * columns;
    EXPECT_EQ(cells[7].values[0], rows - 1);
    EXPECT_EQ(cells[14].values[0], columns - 1);
    EXPECT_EQ(cells[21].values[0], (columns - 1) * (columns - 1));
    EXPECT_EQ(cells[22].values[0], error);
    EXPECT_EQ(cells[23].values[0], CriticalF(df, error));
    EXPECT_NEAR(cells[24].values[0], PowerOfF(df, error, df * 10 * 0.0625), 1e-12);
    EXPECT_NEAR(cells[10].values[0], PowerOfF(rows - 1, error, (rows - 1) * columns * 10 * 0.0625),
                1e-12);
    EXPECT_NEAR(cells[17].values[0],
                PowerOfF(columns - 1, error, (columns - 1) * rows * 10 * 0.0625), 1e-12);
  }
}

TEST_F(TwoWayAnova, ShowsItsSizeTable) {
  OpenResults(
      {ModeSampleSize, "AV2", {{"RMSSE_Row", "0.3"}, {"RMSSE_Col", "0.2"}, {"RMSSE_Int", "0.1"}}});
  ASSERT_EQ(Press(ControlAccept), 1);
  EXPECT_EQ(LastTable().code, 1026);
  EXPECT_THAT(Headings(), ElementsAre("Sample Size Calculation", "ANOVA, 2-Way"));
  const std::vector<std::string> titles = RowTitles();
  ASSERT_THAT(titles, SizeIs(19));
  EXPECT_EQ(titles[6], "RMSSE");
  EXPECT_EQ(titles[7], "Actual Power for Required N");
  EXPECT_EQ(titles[8], "Required Sample Size (N)");
  const std::vector<std::string> values = RowValues();
  EXPECT_THAT(std::vector<std::string>(values.begin(), values.begin() + 7),
              ElementsAre("3", "3", "0.05", "0.9", "-", "-", "0.3"));
  for (const int effect : {0, 1, 2}) {
    const int df = effect == 2 ? 4 : 2;
    const double rmsse = 0.3 - 0.1 * effect;
    const auto at = static_cast<std::size_t>(4 + 5 * effect);
    const int n = std::stoi(values[at + 4]);
    const double perCell = (effect == 2 ? 4 : 6) * rmsse * rmsse;
    EXPECT_EQ(values[at + 2], Shown(rmsse));
    EXPECT_EQ(values[at + 3], Shown(PowerOfF(df, 9 * (n - 1), perCell * n)));
    EXPECT_GT(PowerOfF(df, 9 * (n - 1), perCell * n), 0.9);
    EXPECT_LE(PowerOfF(df, 9 * (n - 2), perCell * (n - 1)), 0.9);
  }
}

TEST_F(TwoWayAnova, AHugeEffectNeedsTwoACell) {
  OpenResults({ModeSampleSize, "AV2", {{"RMSSE_Row", "9"}}});
  ASSERT_EQ(Press(ControlAccept), 1);
  EXPECT_EQ(LastTable().rows[8].values[0], 2);
}

TEST_F(TwoWayAnova, ItsSearchShowsNoBarAndCannotBeCancelled) {
  OpenResults({ModeSampleSize, "AV2"});
  host_.calls.progress.clear();
  host_.cancelled = [] { return true; };
  EXPECT_EQ(Press(ControlAccept), 1);
  EXPECT_THAT(host_.calls.progress, IsEmpty());
  EXPECT_THAT(host_.messages(), IsEmpty());
  EXPECT_NE(RowValues().back(), "-");
}

TEST_F(TwoWayAnova, WritesItsPowerReport) {
  OpenResults({ModePower,
               "AV2",
               {{"Rows", "2"},
                {"RMSSE_Row", "0.3"},
                {"RMSSE_Col", "0.2"},
                {"RMSSE_Int", "0.1"},
                {"Sigma", "2"}}});
  Press(ControlAccept);
  const std::vector<TableRow> cells = LastTable().rows;
  EXPECT_THAT(
      Paragraphs(),
      ElementsAre(
          "\r\nPower Analysis -- The 2-Way (2 X 3) Analysis of Variance",
          "\r\nA 2-Way Fixed-Effects Analysis of Variance will be performed, with 2 levels of the "
          "row factor, and 3 levels of the column factor.",
          "\r\nThe Type I Error rate (alpha) will be set at 0.05. Assume that the sampled "
          "populations have a common standard deviation of 2.",
          "\r\nAssume that:\r\n             (a) the population row means have a variance of 0.36, "
          "and a root mean square standardized effect of 0.3;",
          "             (b) the population column means have a variance of 0.16, and a root mean "
          "square standardized effect of 0.2; ",
          "             (c) the root mean square interaction effect is 0.1.",
          "\r\nWith the proposed sample sizes of N = 10 observations per group, the study will "
          "have a power of:",
          "             (a) " + Percent(cells[10].values[0]) + " to detect the row effect;",
          "             (b) " + Percent(cells[17].values[0]) + " to detect the column effect;",
          "             (c) " + Percent(cells[24].values[0]) +
              " to detect the interaction effect."));
}

TEST_F(TwoWayAnova, WritesItsSizeReportWithTwoLinesB) {
  OpenResults({ModeSampleSize, "AV2", {{"RMSSE_Row", "0.3"}, {"RMSSE_Col", "0.2"}}});
  Press(ControlAccept);
  const std::vector<TableRow> cells = LastTable().rows;
  const std::vector<std::string> paragraphs = Paragraphs();
  ASSERT_THAT(paragraphs, SizeIs(10));
  EXPECT_EQ(paragraphs[0], "\r\nSample Size Analysis -- The 2-Way (3 X 3) Analysis of Variance");
  EXPECT_EQ(paragraphs[6],
            "\r\nTo achieve the requested power of 90.00%, the required sample size is at least");
  const auto line = [&](const char* start, std::size_t at, const char* end) {
    return std::string(start) + Shown(cells[at + 1].values[0]) + " for the " + end +
           " effect (Actual power is " + Percent(cells[at].values[0]) + " with that N.)";
  };
  EXPECT_EQ(paragraphs[7], line("             (a) N = ", 7, "row") + ";");
  EXPECT_EQ(paragraphs[8], line("             (b) N = ", 12, "column") + ";");
  EXPECT_EQ(paragraphs[9], line("             (b) N = ", 17, "interaction"));
}

TEST_F(TwoWayAnova, WithoutAnyEffectOnlyTheDesignIsShown) {
  for (const int mode : {ModePower, ModeSampleSize}) {
    host_.TakeWorkbook();
    host_.ClearMessages();
    OpenResults({mode, "AV2", {{"RMSSE_Row", "0"}, {"RMSSE_Col", "0"}, {"RMSSE_Int", "0"}}});
    const int resource = OpenResource();
    EXPECT_EQ(Press(ControlAccept), 1);
    EXPECT_EQ(OpenResource(), resource) << "the dialog stays open";
    EXPECT_EQ(host_.messageCalls(), 3);
    ASSERT_THAT(host_.messages(), SizeIs(1));
    EXPECT_EQ(host_.messages()[0].id, text::NullHypothesisTrue);
    EXPECT_EQ(host_.messages()[0].count, 3);
    const std::vector<std::string> values = RowValues();
    EXPECT_THAT(std::vector<std::string>(values.begin(), values.begin() + 3),
                mode == ModePower ? ElementsAre("3", "3", "10") : ElementsAre("3", "3", "0.05"));
    EXPECT_EQ(values.back(), "-");
    EXPECT_EQ(values[8 + (mode == ModePower ? 2 : 0)], "-");
    EXPECT_THAT(Paragraphs().back(), HasSubstr("-----"));
  }
}

TEST_F(TwoWayAnova, ARefusedEffectLeavesTheOthers) {
  OpenResults({ModePower, "AV2", {{"RMSSE_Col", "0"}}});
  EXPECT_EQ(Press(ControlAccept), 1);
  EXPECT_EQ(host_.messageCalls(), 1);
  const std::vector<std::string> values = RowValues();
  const std::string power = Shown(PowerOfF(2, 81, 3.75));
  EXPECT_EQ(values[10], power);
  EXPECT_THAT(std::vector<std::string>(values.begin() + 13, values.begin() + 18),
              ElementsAre("0", "2", "81", "-", "-"));
  EXPECT_NE(values[24], "-");
  const std::vector<std::string> paragraphs = Paragraphs();
  EXPECT_EQ(paragraphs[8], "             (b) ----- to detect the column effect;");
}

TEST_F(TwoWayAnova, ATinyEffectIsSkippedBySizeAndNotByPower) {
  OpenResults({ModePower, "AV2", {{"RMSSE_Row", "0.005"}}});
  EXPECT_EQ(Press(ControlAccept), 1);
  EXPECT_THAT(host_.messages(), IsEmpty());
  EXPECT_NE(RowValues()[10], "-");
  OpenResults({ModeSampleSize, "AV2", {{"RMSSE_Row", "0.005"}}});
  EXPECT_EQ(Press(ControlAccept), 1);
  EXPECT_EQ(OpenResource(), results_);
  EXPECT_THAT(MessageIds(), ElementsAre(text::NullHypothesisNearlyTrue));
  EXPECT_EQ(host_.messageCalls(), 1);
  const std::vector<std::string> values = RowValues();
  EXPECT_THAT(std::vector<std::string>(values.begin() + 6, values.begin() + 9),
              ElementsAre("0.005", "-", "-"));
  EXPECT_NE(values[13], "-");
  EXPECT_EQ(Paragraphs()[7],
            "             (a) N = ----- for the row effect (Actual power is ----- with that N.);");
}

TEST_F(TwoWayAnova, ATooLargeSizeBlanksTheRowsOfItsEffectAlone) {
  block().AV2.Upper.N = 100;
  OpenResults({ModeSampleSize, "AV2", {{"RMSSE_Col", "0.02"}}});
  EXPECT_EQ(Press(ControlAccept), 1);
  ASSERT_THAT(MessageIds(), ElementsAre(text::SearchTooLarge));
  EXPECT_EQ(host_.messageCalls(), 1);
  EXPECT_THAT(host_.messages()[0].text, HasSubstr("(greater than 100)"));
  const std::vector<std::string> values = RowValues();
  EXPECT_THAT(std::vector<std::string>(values.begin() + 11, values.begin() + 14),
              ElementsAre("0.02", "-", "-"));
  EXPECT_NE(values[8], "-");
  EXPECT_NE(values[18], "-");
}

TEST_F(TwoWayAnova, CalculationsCommitWhateverTheEffects) {
  OpenResults({ModePower, "AV2", {{"RMSSE_Row", "0"}}});
  Type("NStart", "7");
  Press(ControlAccept);
  EXPECT_EQ(block().AV2.Committed.NStart, 7);
}

struct TripleOfPlots {
  int mode;
  const char* button;
  const char* caption;
  int kind;
  std::array<const char*, 3> titles;
  std::array<const char*, 3> xLabels;
};

TEST_F(TwoWayAnova, EachButtonDrawsAPlotAnEffect) {
  const std::array<const char*, 3> n = {"Group Sample Size (N)", "Group Sample Size (N)",
                                        "Group Sample Size (N)"};
  const std::array<const char*, 3> alpha = {
      "Type I Error Rate (Alpha)", "Type I Error Rate (Alpha)", "Type I Error Rate (Alpha)"};
  const std::array<const char*, 3> goal = {"Power Goal", "Power Goal", "Power Goal"};
  const std::array<const char*, 3> rmsse = {"Row Effect RMSSE", "Column Effect RMSSE",
                                            "Interaction Effect RMSSE"};
  const TripleOfPlots cases[] = {
      {ModePower,
       "power-vs-n",
       "Power vs. N",
       14,
       {"Row Effect Power vs. N (RMSSE = 0.3, Alpha = 0.05)",
        "Column Effect Power vs. N (RMSSE = 0.2, Alpha = 0.05)",
        "Interaction Effect Power vs. N (RMSSE = 0.1, Alpha = 0.05)"},
       n},
      {ModePower,
       "power-vs-rmsse",
       "Power vs. RMSSE",
       16,
       {"Row Effect Power vs. Row Effect RMSSE (N = 10, Alpha = 0.05)",
        "Column Effect Power vs. Column Effect RMSSE (N = 10, Alpha = 0.05)",
        "Interaction Effect Power vs. Interaction Effect RMSSE (N = 10, Alpha = 0.05)"},
       rmsse},
      {ModePower,
       "power-vs-alpha",
       "Power vs. Alpha",
       15,
       {"Row Effect Power vs. Alpha (N = 10, RMSSE = 0.3)",
        "Column Effect Power vs. Alpha (N = 10, RMSSE = 0.2)",
        "Interaction Effect Power vs. Alpha (N = 10, RMSSE = 0.1)"},
       alpha},
      {ModeSampleSize,
       "n-vs-power",
       "N vs. Power",
       2,
       {"N vs. Row Effect Power (RMSSE = 0.3, Alpha = 0.05)",
        "N vs. Column Effect Power (RMSSE = 0.2, Alpha = 0.05)",
        "N vs. Interaction Effect Power (RMSSE = 0.1, Alpha = 0.05)"},
       goal},
      {ModeSampleSize,
       "n-vs-rmsse",
       "N vs. RMSSE",
       4,
       {"N vs. Row Effect RMSSE (Power = 0.9, Alpha = 0.05)",
        "N vs. Column Effect RMSSE (Power = 0.9, Alpha = 0.05)",
        "N vs. Interaction Effect RMSSE (Power = 0.9, Alpha = 0.05)"},
       rmsse},
      {ModeSampleSize,
       "n-vs-alpha",
       "N vs. Alpha",
       3,
       {"N vs. Row Effect Alpha (Row Effect Power = 0.9, Alpha = 0.05)",
        "N vs. Column Effect Alpha (Column Effect Power = 0.9, Alpha = 0.05)",
        "N vs. Interaction Effect Alpha (Interaction Effect Power = 0.9, Alpha = 0.05)"},
       alpha},
  };
  for (const TripleOfPlots& c : cases) {
    SCOPED_TRACE(c.titles[0]);
    host_.TakeWorkbook();
    OpenResults(
        {c.mode, "AV2", {{"RMSSE_Row", "0.3"}, {"RMSSE_Col", "0.2"}, {"RMSSE_Int", "0.1"}}});
    EXPECT_EQ(CaptionOf(c.button), c.caption);
    ASSERT_EQ(Press(c.button), 1);
    const std::vector<Chart> charts = Items<Chart>();
    ASSERT_THAT(charts, SizeIs(3));
    for (std::size_t effect = 0; effect < 3; ++effect) {
      EXPECT_EQ(charts[effect].kind, c.kind);
      EXPECT_THAT(charts[effect].titles,
                  ElementsAre(c.mode == ModePower ? "2-Way ANOVA: Power Calculation"
                                                  : "2-Way ANOVA: Sample Size Calculation",
                              "2-Way (3 X 3) ANOVA", c.titles[effect]));
      EXPECT_EQ(charts[effect].xLabel, c.xLabels[effect]);
      EXPECT_EQ(charts[effect].yLabel, c.mode == ModePower ? "Power" : "Required Sample Size (N)");
    }
  }
}

TEST_F(TwoWayAnova, ThePointsOfAPlotAreThoseOfItsEffect) {
  OpenResults({ModePower, "AV2", {{"Rows", "2"}, {"RMSSE_Int", "0.5"}}});
  Press("power-vs-n");
  const std::vector<Chart> charts = Items<Chart>();
  ASSERT_THAT(charts, SizeIs(3));
  for (std::size_t i = 0; i < charts[0].x.size(); ++i) {
    const int n = static_cast<int>(charts[0].x[i]);
    const int error = 6 * (n - 1);
    EXPECT_NEAR(charts[0].y[i], PowerOfF(1, error, 3 * n * 0.0625), 1e-6);
    EXPECT_NEAR(charts[1].y[i], PowerOfF(2, error, 4 * n * 0.0625), 1e-6);
    EXPECT_NEAR(charts[2].y[i], PowerOfF(2, error, 2 * n * 0.25), 1e-6);
  }
  host_.TakeWorkbook();
  Press("power-vs-rmsse");
  const std::vector<Chart> rmsse = Items<Chart>();
  ASSERT_THAT(rmsse, SizeIs(3));
  EXPECT_NEAR(rmsse[0].y[0], PowerOfF(1, 54, 30 * 0.15 * 0.15), 1e-6);
  EXPECT_NEAR(rmsse[1].y[0], PowerOfF(2, 54, 40 * 0.15 * 0.15), 1e-6);
  EXPECT_NEAR(rmsse[2].y[0], PowerOfF(2, 54, 20 * 0.15 * 0.15), 1e-6);
}

TEST_F(TwoWayAnova, ARefusedEffectIsLeftOutOfThePlotsThatFixIt) {
  OpenResults({ModePower, "AV2", {{"RMSSE_Row", "0"}}});
  for (const char* control : {"power-vs-n", "power-vs-alpha"}) {
    host_.TakeWorkbook();
    host_.ClearMessages();
    EXPECT_EQ(Press(control), 1);
    EXPECT_EQ(OpenResource(), results_);
    EXPECT_EQ(host_.messageCalls(), 1);
    EXPECT_THAT(MessageIds(), ElementsAre(text::NullHypothesisTrue));
    const std::vector<Chart> charts = Items<Chart>();
    ASSERT_THAT(charts, SizeIs(2));
    EXPECT_THAT(charts[0].titles[2], HasSubstr("Column Effect Power"));
    EXPECT_THAT(charts[1].titles[2], HasSubstr("Interaction Effect Power"));
  }
  host_.TakeWorkbook();
  host_.ClearMessages();
  EXPECT_EQ(Press("power-vs-rmsse"), 1);
  EXPECT_THAT(Items<Chart>(), SizeIs(3));
  EXPECT_THAT(host_.messages(), IsEmpty());
  host_.TakeWorkbook();
  OpenResults({ModeSampleSize, "AV2", {{"RMSSE_Row", "0.25"}, {"RMSSE_Int", "0.002"}}});
  EXPECT_EQ(Press("n-vs-power"), 1);
  EXPECT_THAT(Items<Chart>(), SizeIs(2));
  EXPECT_THAT(MessageIds(), ElementsAre(text::NullHypothesisNearlyTrue));
}

TEST_F(TwoWayAnova, WithoutAnyEffectNoPlotIsDrawn) {
  OpenResults({ModePower, "AV2", {{"RMSSE_Row", "0"}, {"RMSSE_Col", "0"}, {"RMSSE_Int", "0"}}});
  EXPECT_EQ(Press("power-vs-n"), 0);
  EXPECT_EQ(host_.messageCalls(), 3);
  EXPECT_THAT(Items<Chart>(), IsEmpty());
  EXPECT_EQ(OpenResource(), results_);
}

TEST_F(TwoWayAnova, ACancelledPlotEndsTheOthersToo) {
  OpenResults({ModePower, "AV2"});
  int polls = 0;
  host_.cancelled = [&polls] { return ++polls > 3; };
  EXPECT_EQ(Press("power-vs-n"), 0);
  EXPECT_THAT(Items<Chart>(), IsEmpty());
  EXPECT_FALSE(host_.IsProgressBarOpen());
}

// Of the two computations of this power, which is 1, the exact one fails.
TEST_F(OneWayAnova, SeeksASizeByTikusApproximationWhereTheExactPowerFails) {
  const std::vector<std::pair<ControlName, std::string>> design = {
      {ControlOfField("NumberOfGroups"), "3"},
      {ControlOfField("RMSSE"), "320"},
      {ControlOfField("Alpha"), "0.0001"}};
  OpenResults({ModeSampleSize, "AV1", design});
  ASSERT_EQ(Press(ControlAccept), 1);
  EXPECT_EQ(RowValues().back(), "2");
}

}  // namespace
}  // namespace poweranalysis
