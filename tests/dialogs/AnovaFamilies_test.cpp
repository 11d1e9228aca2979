#include <cmath>

#include "dialogs/Controls.h"
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
std::string Percent(double power) {
  char text[32];
  std::snprintf(text, sizeof text, "%-5.2f%%", power * 100);
  return text;
}

// --- Planned contrast.

TEST_F(PlannedContrast, HasItsControlsAndNoHypothesis) {
  OpenParameters(ModePower, "PC");
  EXPECT_EQ(OpenResource(), 6171);
  ExpectControls({21068, 21070, 111, 21027, 104, 119, 116, 13402});
  EXPECT_EQ(form().Find(1210), nullptr);
  EXPECT_EQ(TextOf(21068), "0.25");
  EXPECT_EQ(TextOf(21070), "6");
  EXPECT_EQ(TextOf(21027), "3");
  EXPECT_EQ(TextOf(104), "10");
  host_.Press(1);
  EXPECT_EQ(OpenResource(), 6173);
  ExpectControls({136, 137, 138, 139, 129, 130, 140, 1, 203, 204, 205});
  Leave();
  OpenParameters(ModeSampleSize, "PC");
  EXPECT_EQ(OpenResource(), 6310);
  ExpectControls({21068, 21070, 111, 114, 21027, 119, 116, 13402});
  EXPECT_EQ(form().Find(104), nullptr);
  host_.Press(1);
  EXPECT_EQ(OpenResource(), 6176);
  ExpectControls({136, 137, 403, 406, 138, 139, 140, 1, 603, 604, 605});
  EXPECT_EQ(form().Find(129), nullptr);
}

TEST_F(PlannedContrast, ShowsItsPowerTable) {
  OpenResults(ModePower, "PC");
  ASSERT_EQ(host_.Press(1), 1);
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
  OpenResults(ModeSampleSize, "PC");
  ASSERT_EQ(host_.Press(1), 1);
  EXPECT_EQ(LastTable().code, 49);
  EXPECT_THAT(Headings(), ElementsAre("Sample Size Calculation", "Planned Contrast"));
  EXPECT_THAT(RowTitles(), ElementsAre("Number of Groups", "Standardized Effect (Es)",
                                       "Type I Error Rate (Alpha)", "SS Weights", "Power Goal",
                                       "Actual Power for Required N", "Required Sample Size (N)"));
  EXPECT_THAT(RowValues(), ElementsAre("3", "0.25", "0.05", "6", "0.9", "0.900182", "1010"));
}

TEST_F(PlannedContrast, WritesItsReports) {
  OpenResults(ModePower, "PC");
  host_.Press(1);
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
  Leave();
  OpenResults(ModeSampleSize, "PC");
  host_.Press(1);
  EXPECT_THAT(Paragraphs(),
              ElementsAre("\r\nSample Size Analysis -- Planned Contrast", goal, test, assumption,
                          "\r\nTo achieve the requested power of 90.00%, a sample size of at least "
                          "N = 1010 observations per group is required. ",
                          "\r\nWith N = 1010 observations per group, the actual power is 90.02%."));
}

TEST_F(PlannedContrast, WritesNoReportBelowTheHighestDetail) {
  OpenResults(ModePower, "PC");
  host_.supplementaryLevel = 3;
  host_.Press(1);
  EXPECT_THAT(Items<Report>(), IsEmpty());
  EXPECT_THAT(Items<SummaryTable>(), SizeIs(1));
}

TEST_F(PlannedContrast, DrawsItsPlots) {
  OpenResults(ModePower, "PC");
  ExpectPlots("Planned Contrast: Power Calculation", "Planned Contrast (H0: Psi = 0)",
              {{203, "Power vs. N", 14, "Power vs. N (Es = 0.25, Alpha = 0.05, Groups = 3)",
                "Group Sample Size (N)", "Power"},
               {204, "Power vs. Es", 0, "Power vs. Es (N = 10, Alpha = 0.05, Groups = 3)",
                "Standardized Effect (Es)", "Power"},
               {205, "Power vs. Alpha", 15, "Power vs. Alpha (Es = 0.25, N = 10, Groups = 3)",
                "Type I Error Rate (Alpha)", "Power"}});
  Leave();
  OpenResults(ModeSampleSize, "PC");
  ExpectPlots(
      "Planned Contrast: Sample Size Calc.", "Planned Contrast (H0: Psi = 0)",
      {{603, "N vs. Power", 2, "N vs. Power (Es = 0.25, Alpha = 0.05, Groups = 3, SS Weights = 6)",
        "Power Goal", "Required Sample Size (N)"},
       {604, "N vs. Es", 1, "N vs. Es (Alpha = 0.05, Groups = 3, SS Weights = 6)",
        "Standardized Effect (Es)", "Required Sample Size (N)"},
       {605, "N vs. Alpha", 3, "N vs. Alpha (Es = 0.25, Groups = 3, SS Weights = 6)",
        "Type I Error Rate (Alpha)", "Required Sample Size (N)"}});
}

TEST_F(PlannedContrast, APlotAgreesWithTheCalculation) {
  OpenResults(ModePower, "PC");
  host_.Press(203);
  const Chart n = LastChart();
  ASSERT_THAT(n.x, SizeIs(11));
  EXPECT_EQ(n.x[0], 10);
  EXPECT_EQ(n.x[10], 100);
  host_.Press(1);
  EXPECT_EQ(n.y[0], static_cast<float>(Row("Power")));
  EXPECT_NEAR(n.y[10], PowerOfF(1, 297, 0.0625 * 100 / 6), 1e-6);
  Leave();
  OpenResultsWith(ModeSampleSize, "PC", {{21068, "1"}});
  host_.Type(403, "0.9");
  host_.Press(603);
  const Chart sizes = LastChart();
  host_.Press(1);
  EXPECT_EQ(sizes.y[0], static_cast<float>(Row("Required Sample Size (N)")));
}

TEST_F(PlannedContrast, ANullEffectLeadsBackToTheParameters) {
  for (const int mode : {ModePower, ModeSampleSize}) {
    host_.ClearMessages();
    OpenResultsWith(mode, "PC", {{21068, "0"}});
    host_.Type(140, "20");
    ExpectRefused(1, {12873}, mode == ModePower ? 6171 : 6310);
    EXPECT_EQ(block().PC.Committed.NInterval, 10);
    EXPECT_EQ(TextOf(21068), "0");
    Leave();
  }
}

TEST_F(PlannedContrast, ATinyEffectStopsTheSearchAlone) {
  OpenResultsWith(ModeSampleSize, "PC", {{21068, "-0.0099"}});
  ExpectRefused(1, {12874}, 6310);
  EXPECT_THAT(host_.messages()[0].text, HasSubstr("within a tolerance of 0.01 of"));
  EXPECT_EQ(host_.messageCalls(), 1);
  Leave();
  host_.ClearMessages();
  OpenResultsWith(ModePower, "PC", {{21068, "-0.0099"}});
  EXPECT_EQ(host_.Press(1), 1);
  EXPECT_THAT(host_.messages(), IsEmpty());
}

TEST_F(PlannedContrast, AnEffectOfTheToleranceIsSearched) {
  OpenResultsWith(ModeSampleSize, "PC", {{21068, "0.01"}, {21070, "0.01"}});
  EXPECT_EQ(host_.Press(1), 1);
  EXPECT_THAT(host_.messages(), IsEmpty());
}

// The candidate 1010 lies above the limit and is taken all the same.
TEST_F(PlannedContrast, ASizeFoundBeyondTheLimitIsShown) {
  block().PC.Upper.SampleSize = 1009;
  OpenResults(ModeSampleSize, "PC");
  EXPECT_EQ(host_.Press(1), 1);
  EXPECT_THAT(host_.messages(), IsEmpty());
  EXPECT_EQ(Row("Required Sample Size (N)"), 1010);
  EXPECT_NEAR(Row("Actual Power for Required N"), 0.900182, 1e-6);
  EXPECT_THAT(Paragraphs().back(), HasSubstr("With N = 1010 observations"));
}

TEST_F(PlannedContrast, ATooLargeSizeSendsNothingAndStays) {
  block().PC.Upper.SampleSize = 500;
  OpenResults(ModeSampleSize, "PC");
  ExpectRefused(1, {12381}, 6176);
  EXPECT_THAT(host_.messages()[0].text, HasSubstr("(greater than 500)"));
  EXPECT_FALSE(host_.IsProgressBarOpen());
}

TEST_F(PlannedContrast, AHugeEffectNeedsThreeAGroup) {
  OpenResultsWith(ModeSampleSize, "PC", {{21068, "8"}});
  ASSERT_EQ(host_.Press(1), 1);
  EXPECT_EQ(Row("Required Sample Size (N)"), 3);
}

TEST_F(PlannedContrast, TheSmallestDesignHasAPower) {
  OpenResultsWith(ModePower, "PC", {{104, "2"}, {21027, "2"}, {21068, "3"}});
  ASSERT_EQ(host_.Press(1), 1);
  EXPECT_NEAR(Row("Power"), PowerOfF(1, 2, 9 * 2 / 6.0), 1e-6);
}

TEST_F(PlannedContrast, ItsFirstAlphaOfAPlotStartsAtAHundredth) {
  OpenResults(ModePower, "PC");
  host_.Type(138, "0.005");
  ExpectRefused(205, {12853}, 6173);
  EXPECT_THAT(host_.messages()[0].text, HasSubstr("0.01 <= Start Alpha <= 0.2499"));
}

TEST_F(PlannedContrast, APowerPlotAcrossZeroKeepsTheRefusedPoint) {
  OpenResults(ModePower, "PC");
  host_.Type(136, "-0.5");
  host_.Type(137, "0.5");
  host_.Type(140, "8");
  EXPECT_EQ(host_.Press(204), 1);
  ASSERT_THAT(LastChart().y, SizeIs(8));
  EXPECT_EQ(LastChart().y[4], -9999);
  EXPECT_EQ(LastChart().y[3], LastChart().y[5]);
  EXPECT_THAT(MessageIds(), ElementsAre(12873));
}

TEST_F(PlannedContrast, ASizePlotAcrossZeroGoesOn) {
  OpenResults(ModeSampleSize, "PC");
  host_.Type(136, "-0.5");
  host_.Type(137, "0.5");
  host_.Type(140, "8");
  EXPECT_EQ(host_.Press(604), 1);
  ASSERT_THAT(LastChart().y, SizeIs(8));
  EXPECT_EQ(LastChart().y[4], -9999);
  EXPECT_GT(LastChart().y[7], 0);
}

TEST_F(PlannedContrast, ATrueNullEndsAPlotThatFixesTheEffect) {
  OpenResultsWith(ModePower, "PC", {{21068, "0"}});
  for (const int control : {203, 205}) {
    host_.ClearMessages();
    ExpectRefused(control, {12873}, 6173);
  }
  EXPECT_EQ(host_.Press(204), 1);
}

// --- One-way analysis of variance.

TEST_F(OneWayAnova, HasItsControls) {
  OpenParameters(ModePower, "AV1");
  EXPECT_EQ(OpenResource(), 6178);
  ExpectControls({21048, 111, 21027, 21025, 22000, 22001, 119, 116, 13402});
  EXPECT_TRUE(form().IsDlgButtonChecked(22000));
  EXPECT_EQ(form().Find(22000)->spec.caption, "Fixed Effects");
  EXPECT_EQ(form().Find(22001)->spec.caption, "Random Effects");
  EXPECT_EQ(host_.Press(22001), 1);
  EXPECT_EQ(block().AV1.Working.ModelType, 1);
  host_.Press(1);
  EXPECT_EQ(OpenResource(), 6180);
  ExpectControls({21069, 21014, 138, 139, 129, 130, 140, 1, 203, 204, 205});
  Leave();
  OpenParameters(ModeSampleSize, "AV1");
  EXPECT_EQ(OpenResource(), 6183);
  ExpectControls({114, 21048, 111, 21027, 22000, 22001, 119, 116, 13402});
  EXPECT_EQ(form().Find(21025), nullptr);
  host_.Press(1);
  EXPECT_EQ(OpenResource(), 6185);
  ExpectControls({21069, 21014, 403, 406, 138, 139, 140, 1, 603, 604, 605});
}

TEST_F(OneWayAnova, ShowsItsPowerTable) {
  OpenResults(ModePower, "AV1");
  ASSERT_EQ(host_.Press(1), 1);
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
  OpenResultsWith(ModePower, "AV1", {}, {22001});
  ASSERT_EQ(host_.Press(1), 1);
  EXPECT_EQ(Headings()[2], "Random Effects");
  int failure = 0;
  const double power =
      1 - NoncentralFCdfInt(CriticalF(2, 27) / (10 * 0.0625 + 1), 2, 27, 0, failure, 0);
  EXPECT_THAT(RowValues(), ElementsAre("3", "10", "0.25", "1.25", "0.05", "2", "27",
                                       Shown(CriticalF(2, 27)), Shown(power)));
}

TEST_F(OneWayAnova, ShowsItsSizeTableWithTheDeltaOfTheRecord) {
  OpenResults(ModeSampleSize, "AV1");
  ASSERT_EQ(host_.Press(1), 1);
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
    OpenResultsWith(ModePower, "AV1", {}, {22000 + model});
    host_.Press(1);
    EXPECT_THAT(Paragraphs(),
                ElementsAre("\r\nPower Analysis -- The 1-Way " + name + " Analysis of Variance",
                            goal, test, assumption,
                            "\r\nWith the proposed sample sizes of N = 10 observations per group, "
                            "the study will have a power of " +
                                Percent(Row("Power")) + "."));
    Leave();
    OpenResultsWith(ModeSampleSize, "AV1", {}, {22000 + model});
    host_.Press(1);
    const std::string n = Shown(Row("Required Sample Size (N)"));
    EXPECT_THAT(
        Paragraphs(),
        ElementsAre("\r\nSample Size Analysis -- The 1-Way " + name + " Analysis of Variance", goal,
                    test, assumption,
                    "\r\nTo achieve the requested power of 90.00%, a sample size of at least N = " +
                        n + " observations per group is required. ",
                    "\r\nWith N = " + n + " observations per group, the actual power is " +
                        Percent(Row("Actual Power for Required N")) + "."));
    Leave();
  }
}

TEST_F(OneWayAnova, DrawsItsPlots) {
  OpenResults(ModePower, "AV1");
  ExpectPlots("1-Way ANOVA: Power Calculation", "Several Means, ANOVA, 1-Way (Fixed Effects)",
              {{203, "Power vs. N", 14, "Power vs. N (RMSSE = 0.25, Groups = 3, Alpha = 0.05)",
                "Group Sample Size (N)", "Power"},
               {204, "Power vs. RMSSE", 16, "Power vs. RMSSE (Alpha = 0.05, Groups = 3, N = 10)",
                "RMSSE", "Power"},
               {205, "Power vs. Alpha", 15, "Power vs. Alpha (RMSSE = 0.25, Groups = 3, N = 10)",
                "Type I Error Rate (Alpha)", "Power"}});
  Leave();
  OpenResultsWith(ModeSampleSize, "AV1", {}, {22001});
  ExpectPlots("1-Way ANOVA: Sample Size Calculation",
              "Several Means, ANOVA, 1-Way (Random Effects)",
              {{603, "N vs. RMSSE", 4, "N vs. RMSSE (Alpha = 0.05, Groups = 3, Power = 0.9)",
                "RMSSE", "Required Sample Size (N)"},
               {604, "N vs. Alpha", 3, "N vs. Alpha (RMSSE = 0.25, Groups = 3, Power = 0.9)",
                "Type I Error Rate (Alpha)", "Required Sample Size (N)"},
               {605, "N vs. Power", 2, "N vs. Power (RMSSE = 0.25, Groups = 3, Alpha = 0.05)",
                "Power Goal", "Required Sample Size (N)"}});
}

TEST_F(OneWayAnova, APlotAgreesWithTheDistribution) {
  OpenResults(ModePower, "AV1");
  host_.Press(203);
  const Chart n = LastChart();
  ASSERT_THAT(n.x, SizeIs(20));
  for (std::size_t i = 0; i < n.x.size(); ++i) {
    const int size = static_cast<int>(n.x[i]);
    EXPECT_EQ(size, static_cast<int>(i) + 5);
    EXPECT_EQ(n.y[i], static_cast<float>(PowerOfF(2, 3 * (size - 1), 0.125 * size)));
  }
  Leave();
  OpenResultsWith(ModePower, "AV1", {}, {22001});
  host_.Press(205);
  const Chart alpha = LastChart();
  int failure = 0;
  EXPECT_NEAR(alpha.y[0],
              1 - NoncentralFCdfInt(CriticalF(2, 27, 0.01) / 1.625, 2, 27, 0, failure, 0), 1e-6);
}

TEST_F(OneWayAnova, AReversedRangeGivesTheSamePlot) {
  OpenResults(ModePower, "AV1");
  host_.Press(203);
  const Chart forward = LastChart();
  host_.Type(129, "24");
  host_.Type(130, "5");
  host_.Press(203);
  EXPECT_EQ(LastChart().x, forward.x);
  EXPECT_EQ(LastChart().y, forward.y);
}

TEST_F(OneWayAnova, AnEffectOfZeroIsStoppedByItsRange) {
  OpenParameters(ModePower, "AV1");
  host_.Type(21048, "0");
  host_.Press(1);
  EXPECT_EQ(OpenResource(), 6178);
  ASSERT_THAT(MessageIds(), ElementsAre(12853));
  EXPECT_THAT(host_.messages()[0].text, HasSubstr("0 < RMSSE <= 1e+30"));
}

TEST_F(OneWayAnova, OnlyTheSearchChecksTheNullHypothesis) {
  OpenResultsWith(ModePower, "AV1", {{21048, "0.005"}});
  EXPECT_EQ(host_.Press(1), 1);
  EXPECT_EQ(host_.Press(203), 1);
  EXPECT_THAT(host_.messages(), IsEmpty());
  Leave();
  OpenResultsWith(ModeSampleSize, "AV1", {{21048, "0.005"}});
  host_.TakeWorkbook();
  ExpectRefused(1, {12874}, 6183);
  EXPECT_THAT(host_.messages()[0].text, HasSubstr("within a tolerance of 0.01 of"));
}

TEST_F(OneWayAnova, ATooLargeSizeSendsNothing) {
  block().AV1.Upper.N = 50;
  OpenResults(ModeSampleSize, "AV1");
  ExpectRefused(1, {12381}, 6185);
  EXPECT_THAT(host_.messages()[0].text, HasSubstr("(greater than 50)"));
}

TEST_F(OneWayAnova, APointBeyondTheLimitIsAFailedPoint) {
  block().AV1.Upper.N = 50;
  OpenResults(ModeSampleSize, "AV1");
  EXPECT_EQ(host_.Press(603), 1);
  EXPECT_EQ(LastChart().y.front(), -9999);
}

TEST_F(OneWayAnova, ACancelledSearchLeavesNothing) {
  OpenResults(ModeSampleSize, "AV1");
  host_.cancelled = [] { return true; };
  ExpectRefused(1, {12865}, 6185);
  EXPECT_FALSE(host_.IsProgressBarOpen());
}

TEST_F(OneWayAnova, TheApproximationHasNoPowerAtTwoErrorDegrees) {
  OpenParameters(ModePower, "AV1");
  host_.Type(21027, "2");
  host_.Type(21025, "2");
  block().AV1.Working.Algorithm = 1;
  host_.Press(1);
  EXPECT_EQ(host_.Press(1), 1);
  EXPECT_EQ(RowValues().back(), "-");
  EXPECT_THAT(Paragraphs().back(), HasSubstr("power of -----."));
}

TEST_F(OneWayAnova, ItsSearchNamesTheSizeInTheBar) {
  OpenResults(ModeSampleSize, "AV1");
  host_.calls.progress.clear();
  host_.Press(1);
  ASSERT_FALSE(host_.calls.progress.empty());
  EXPECT_EQ(host_.calls.progress.front(), "d_pbar Searching for required N");
}

// --- Two-way analysis of variance.

TEST_F(TwoWayAnova, HasItsControls) {
  OpenParameters(ModePower, "AV2");
  EXPECT_EQ(OpenResource(), 6226);
  ExpectControls({21051, 21049, 21050, 111, 21063, 21002, 21025, 119, 116, 13402});
  host_.Press(1);
  EXPECT_EQ(OpenResource(), 6228);
  ExpectControls({21069, 21014, 138, 139, 129, 130, 140, 1, 203, 204, 205});
  Leave();
  OpenParameters(ModeSampleSize, "AV2");
  EXPECT_EQ(OpenResource(), 6230);
  ExpectControls({21051, 21049, 21050, 114, 111, 21063, 21002, 119, 116, 13402});
  EXPECT_EQ(form().Find(21025), nullptr);
  host_.Press(1);
  EXPECT_EQ(OpenResource(), 6232);
  ExpectControls({21069, 21014, 403, 406, 138, 139, 140, 1, 603, 604, 605});
}

TEST_F(TwoWayAnova, ShowsItsPowerTable) {
  OpenResultsWith(ModePower, "AV2", {{21051, "0.3"}, {21049, "0.2"}, {21050, "0.1"}});
  ASSERT_EQ(host_.Press(1), 1);
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
    OpenResultsWith(ModePower, "AV2",
                    {{21063, std::to_string(rows)}, {21002, std::to_string(columns)}});
    ASSERT_EQ(host_.Press(1), 1);
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
    Leave();
  }
}

TEST_F(TwoWayAnova, ShowsItsSizeTable) {
  OpenResultsWith(ModeSampleSize, "AV2", {{21051, "0.3"}, {21049, "0.2"}, {21050, "0.1"}});
  ASSERT_EQ(host_.Press(1), 1);
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
  OpenResultsWith(ModeSampleSize, "AV2", {{21051, "9"}});
  ASSERT_EQ(host_.Press(1), 1);
  EXPECT_EQ(LastTable().rows[8].values[0], 2);
}

TEST_F(TwoWayAnova, ItsSearchShowsNoBarAndCannotBeCancelled) {
  OpenResults(ModeSampleSize, "AV2");
  host_.calls.progress.clear();
  host_.cancelled = [] { return true; };
  EXPECT_EQ(host_.Press(1), 1);
  EXPECT_THAT(host_.calls.progress, IsEmpty());
  EXPECT_THAT(host_.messages(), IsEmpty());
  EXPECT_NE(RowValues().back(), "-");
}

TEST_F(TwoWayAnova, WritesItsPowerReport) {
  OpenResultsWith(ModePower, "AV2",
                  {{21063, "2"}, {21051, "0.3"}, {21049, "0.2"}, {21050, "0.1"}, {119, "2"}});
  host_.Press(1);
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
  OpenResultsWith(ModeSampleSize, "AV2", {{21051, "0.3"}, {21049, "0.2"}});
  host_.Press(1);
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
    OpenResultsWith(mode, "AV2", {{21051, "0"}, {21049, "0"}, {21050, "0"}});
    const int resource = OpenResource();
    EXPECT_EQ(host_.Press(1), 1);
    EXPECT_EQ(OpenResource(), resource) << "the dialog stays open";
    EXPECT_EQ(host_.messageCalls(), 3);
    ASSERT_THAT(host_.messages(), SizeIs(1));
    EXPECT_EQ(host_.messages()[0].id, 12873);
    EXPECT_EQ(host_.messages()[0].count, 3);
    const std::vector<std::string> values = RowValues();
    EXPECT_THAT(std::vector<std::string>(values.begin(), values.begin() + 3),
                mode == ModePower ? ElementsAre("3", "3", "10") : ElementsAre("3", "3", "0.05"));
    EXPECT_EQ(values.back(), "-");
    EXPECT_EQ(values[8 + (mode == ModePower ? 2 : 0)], "-");
    EXPECT_THAT(Paragraphs().back(), HasSubstr("-----"));
    Leave();
  }
}

TEST_F(TwoWayAnova, ARefusedEffectLeavesTheOthers) {
  OpenResultsWith(ModePower, "AV2", {{21049, "0"}});
  EXPECT_EQ(host_.Press(1), 1);
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
  OpenResultsWith(ModePower, "AV2", {{21051, "0.005"}});
  EXPECT_EQ(host_.Press(1), 1);
  EXPECT_THAT(host_.messages(), IsEmpty());
  EXPECT_NE(RowValues()[10], "-");
  Leave();
  OpenResultsWith(ModeSampleSize, "AV2", {{21051, "0.005"}});
  EXPECT_EQ(host_.Press(1), 1);
  EXPECT_EQ(OpenResource(), 6232);
  EXPECT_THAT(MessageIds(), ElementsAre(12874));
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
  OpenResultsWith(ModeSampleSize, "AV2", {{21049, "0.02"}});
  EXPECT_EQ(host_.Press(1), 1);
  ASSERT_THAT(MessageIds(), ElementsAre(12381));
  EXPECT_EQ(host_.messageCalls(), 1);
  EXPECT_THAT(host_.messages()[0].text, HasSubstr("(greater than 100)"));
  const std::vector<std::string> values = RowValues();
  EXPECT_THAT(std::vector<std::string>(values.begin() + 11, values.begin() + 14),
              ElementsAre("0.02", "-", "-"));
  EXPECT_NE(values[8], "-");
  EXPECT_NE(values[18], "-");
}

TEST_F(TwoWayAnova, CalculationsCommitWhateverTheEffects) {
  OpenResultsWith(ModePower, "AV2", {{21051, "0"}});
  host_.Type(129, "7");
  host_.Press(1);
  EXPECT_EQ(block().AV2.Committed.NStart, 7);
}

struct TripleOfPlots {
  int mode;
  int control;
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
       203,
       "Power vs. N",
       14,
       {"Row Effect Power vs. N (RMSSE = 0.3, Alpha = 0.05)",
        "Column Effect Power vs. N (RMSSE = 0.2, Alpha = 0.05)",
        "Interaction Effect Power vs. N (RMSSE = 0.1, Alpha = 0.05)"},
       n},
      {ModePower,
       204,
       "Power vs. RMSSE",
       16,
       {"Row Effect Power vs. Row Effect RMSSE (N = 10, Alpha = 0.05)",
        "Column Effect Power vs. Column Effect RMSSE (N = 10, Alpha = 0.05)",
        "Interaction Effect Power vs. Interaction Effect RMSSE (N = 10, Alpha = 0.05)"},
       rmsse},
      {ModePower,
       205,
       "Power vs. Alpha",
       15,
       {"Row Effect Power vs. Alpha (N = 10, RMSSE = 0.3)",
        "Column Effect Power vs. Alpha (N = 10, RMSSE = 0.2)",
        "Interaction Effect Power vs. Alpha (N = 10, RMSSE = 0.1)"},
       alpha},
      {ModeSampleSize,
       603,
       "N vs. Power",
       2,
       {"N vs. Row Effect Power (RMSSE = 0.3, Alpha = 0.05)",
        "N vs. Column Effect Power (RMSSE = 0.2, Alpha = 0.05)",
        "N vs. Interaction Effect Power (RMSSE = 0.1, Alpha = 0.05)"},
       goal},
      {ModeSampleSize,
       604,
       "N vs. RMSSE",
       4,
       {"N vs. Row Effect RMSSE (Power = 0.9, Alpha = 0.05)",
        "N vs. Column Effect RMSSE (Power = 0.9, Alpha = 0.05)",
        "N vs. Interaction Effect RMSSE (Power = 0.9, Alpha = 0.05)"},
       rmsse},
      {ModeSampleSize,
       605,
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
    OpenResultsWith(c.mode, "AV2", {{21051, "0.3"}, {21049, "0.2"}, {21050, "0.1"}});
    EXPECT_EQ(form().Find(c.control)->spec.caption, c.caption);
    ASSERT_EQ(host_.Press(c.control), 1);
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
    Leave();
  }
}

TEST_F(TwoWayAnova, ThePointsOfAPlotAreThoseOfItsEffect) {
  OpenResultsWith(ModePower, "AV2", {{21063, "2"}, {21050, "0.5"}});
  host_.Press(203);
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
  host_.Press(204);
  const std::vector<Chart> rmsse = Items<Chart>();
  ASSERT_THAT(rmsse, SizeIs(3));
  EXPECT_NEAR(rmsse[0].y[0], PowerOfF(1, 54, 30 * 0.15 * 0.15), 1e-6);
  EXPECT_NEAR(rmsse[1].y[0], PowerOfF(2, 54, 40 * 0.15 * 0.15), 1e-6);
  EXPECT_NEAR(rmsse[2].y[0], PowerOfF(2, 54, 20 * 0.15 * 0.15), 1e-6);
}

TEST_F(TwoWayAnova, ARefusedEffectIsLeftOutOfThePlotsThatFixIt) {
  OpenResultsWith(ModePower, "AV2", {{21051, "0"}});
  for (const int control : {203, 205}) {
    host_.TakeWorkbook();
    host_.ClearMessages();
    EXPECT_EQ(host_.Press(control), 1);
    EXPECT_EQ(OpenResource(), 6228);
    EXPECT_EQ(host_.messageCalls(), 1);
    EXPECT_THAT(MessageIds(), ElementsAre(12873));
    const std::vector<Chart> charts = Items<Chart>();
    ASSERT_THAT(charts, SizeIs(2));
    EXPECT_THAT(charts[0].titles[2], HasSubstr("Column Effect Power"));
    EXPECT_THAT(charts[1].titles[2], HasSubstr("Interaction Effect Power"));
  }
  host_.TakeWorkbook();
  host_.ClearMessages();
  EXPECT_EQ(host_.Press(204), 1);
  EXPECT_THAT(Items<Chart>(), SizeIs(3));
  EXPECT_THAT(host_.messages(), IsEmpty());
  Leave();
  host_.TakeWorkbook();
  OpenResultsWith(ModeSampleSize, "AV2", {{21051, "0.25"}, {21050, "0.002"}});
  EXPECT_EQ(host_.Press(603), 1);
  EXPECT_THAT(Items<Chart>(), SizeIs(2));
  EXPECT_THAT(MessageIds(), ElementsAre(12874));
}

TEST_F(TwoWayAnova, WithoutAnyEffectNoPlotIsDrawn) {
  OpenResultsWith(ModePower, "AV2", {{21051, "0"}, {21049, "0"}, {21050, "0"}});
  EXPECT_EQ(host_.Press(203), 0);
  EXPECT_EQ(host_.messageCalls(), 3);
  EXPECT_THAT(Items<Chart>(), IsEmpty());
  EXPECT_EQ(OpenResource(), 6228);
}

TEST_F(TwoWayAnova, ACancelledPlotEndsTheOthersToo) {
  OpenResults(ModePower, "AV2");
  int polls = 0;
  host_.cancelled = [&polls] { return ++polls > 3; };
  EXPECT_EQ(host_.Press(203), 0);
  EXPECT_THAT(Items<Chart>(), IsEmpty());
  EXPECT_FALSE(host_.IsProgressBarOpen());
}

// Of the two computations of this power, which is 1, the exact one fails.
TEST_F(OneWayAnova, SeeksASizeByTikusApproximationWhereTheExactPowerFails) {
  const std::vector<std::pair<int, std::string>> design = {{ControlOfField("NumberOfGroups"), "3"},
                                                           {ControlOfField("RMSSE"), "320"},
                                                           {ControlOfField("Alpha"), "0.0001"}};
  OpenResultsWith(ModeSampleSize, "AV1", design);
  ASSERT_EQ(host_.Press(ControlAccept), 1);
  EXPECT_EQ(RowValues().back(), "2");
}

}  // namespace
}  // namespace poweranalysis
