// The dialogs, tables, reports and charts of the squared multiple correlation. Values of powers
// come from the exact distribution as a negative binomial mixture of beta distributions, in SciPy.
#include "dialogs/FamilyRun.h"

namespace poweranalysis {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::SizeIs;

using SquaredCorrelationFamily = FamilyRun;

constexpr const char* kFaster = "Algorithm=0";
constexpr const char* kMoreAccurate = "Algorithm=1";

Design PowerOf(const char* rho2, const char* null, int form) {
  return {ModePower,
          "R2",
          {{"PopulationR2", rho2},
           {"R2Null", null},
           {"TotalNumberOfVars", "4"},
           {"SampleSize", "60"},
           {"Alpha", "0.04"}},
          {H0(form)}};
}
Design SizeOf(const char* rho2, const char* null, int form) {
  return {ModeSampleSize,
          "R2",
          {{"PopulationR2", rho2},
           {"R2Null", null},
           {"TotalNumberOfVars", "4"},
           {"PowerGoal", "0.83"},
           {"Alpha", "0.04"}},
          {H0(form)}};
}

TEST_F(SquaredCorrelationFamily, PagesHaveTheirFields) {
  const std::vector<ControlName> forms = {"H0Type=two-sided", "H0Type=upper", "H0Type=lower",
                                          "H0Type=zero"};
  const std::vector<ControlName> ranges = {"R2Start", "R2End", "AlphaStart", "AlphaEnd",
                                           "NInterval"};
  ExpectPage({ModePower,
              "R2",
              false,
              6193,
              {"PopulationR2", "R2Null", "Alpha", "TotalNumberOfVars", "SampleSize"},
              forms,
              {},
              {}});
  ExpectPage({ModeSampleSize,
              "R2",
              false,
              6139,
              {"PopulationR2", "R2Null", "PowerGoal", "Alpha", "TotalNumberOfVars"},
              forms,
              {},
              {}});
  ExpectPage({ModePower,
              "R2",
              true,
              6137,
              ranges,
              {kFaster, kMoreAccurate},
              {},
              {"power-vs-n", "power-vs-p2", "power-vs-alpha"}});
  ExpectControls({"NStart", "NEnd"}, {ControlKind::IntEdit});
  ExpectPage({ModeSampleSize,
              "R2",
              true,
              6141,
              ranges,
              {kFaster, kMoreAccurate},
              {},
              {"n-vs-p2", "n-vs-alpha", "n-vs-power"}});
  ExpectControls({"PowerStart", "PowerEnd"}, {ControlKind::RealEdit});
}

TEST_F(SquaredCorrelationFamily, RadiosStoreTheFourForms) {
  Parameters({ModePower, "R2"});
  for (int form = 3; form >= 0; --form) {
    Press(H0(form));
    EXPECT_EQ(block().R2.Working.H0Type, form);
    EXPECT_TRUE(this->IsChecked(H0(form)));
  }
}

TEST_F(SquaredCorrelationFamily, RadiosStoreTheAlgorithm) {
  Results({ModePower, "R2"});
  EXPECT_TRUE(IsChecked(kFaster));
  Press(kMoreAccurate);
  EXPECT_EQ(block().R2.Working.Algorithm, 1);
  Press(kFaster);
  EXPECT_EQ(block().R2.Working.Algorithm, 0);
}

TEST_F(SquaredCorrelationFamily, PowerTableStandsInItsOrder) {
  const auto rows = [](double null, double rho2, double power) {
    return Rows{{"Independent Vars. (k)", 4},
                {"Group Sample Size (N)", 60},
                {"C² (Null P²)", null},
                {"P²", rho2},
                {"Type I Error Rate (Alpha)", 0.04},
                {"Power (Accuracy Algorithm)", power}};
  };
  const auto headings = [](const char* form) {
    return std::vector<std::string>{"Power Calculation", "Squared Multiple Correlation", form};
  };
  const std::vector<ControlName> exact = {kMoreAccurate};
  ExpectTables({
      {PowerOf("0.3", "0.1", 0), exact, 160, headings("H0:  P² =  C²"),
       rows(0.1, 0.3, 0.5136851909)},
      {PowerOf("0.3", "0.1", 1), exact, 160, headings("H0:  P² <= C²"),
       rows(0.1, 0.3, 0.6334199511)},
      {PowerOf("0.05", "0.3", 2), exact, 160, headings("H0:  P² >= C²"),
       rows(0.3, 0.05, 0.8450197968)},
      {PowerOf("0.3", "0", 3), exact, 160, headings("H0:  P² =  0"), rows(0, 0.3, 0.9789437673)},
      // The label says zero; the null of the record is used all the same.
      {PowerOf("0.3", "0.1", 3), exact, 160, headings("H0:  P² =  0"),
       rows(0.1, 0.3, 0.6334199511)},
      // A null of zero is tested in the upper tail; the record and what follows it stay two-sided.
      {PowerOf("0.3", "0", 0), exact, 160, headings("H0:  P² =  C²"), rows(0, 0.3, 0.9789437673)},
      {PowerOf("0.3", "0", 1), exact, 160, headings("H0:  P² <= C²"), rows(0, 0.3, 0.9789437673)},
  });
}

TEST_F(SquaredCorrelationFamily, SizeTableStandsInItsOrder) {
  Calculate(SizeOf("0.3", "0.1", 1), {kMoreAccurate});
  const SummaryTable table = LastTable();
  EXPECT_EQ(table.code, 161);
  EXPECT_THAT(table.headings, ElementsAre("Sample Size Calculation", "Squared Multiple Correlation",
                                          "H0:  P² <= C²"));
  std::vector<std::string> titles;
  for (const TableRow& row : table.rows) {
    titles.push_back(row.title);
  }
  EXPECT_THAT(
      titles,
      ElementsAre("Independent Vars. (k)", "C² (Null P²)", "P²", "Type I Error Rate (Alpha)",
                  "Power Goal", "Actual Power for Required N", "Required N (Accuracy Algorithm)"));
  EXPECT_EQ(Row("Independent Vars. (k)"), 4);
  EXPECT_EQ(Row("C² (Null P²)"), 0.1);
  EXPECT_EQ(Row("P²"), 0.3);
  EXPECT_EQ(Row("Power Goal"), 0.83);
  EXPECT_EQ(LastValue(), 96);
}

TEST_F(SquaredCorrelationFamily, RowTitlesFollowTheAlgorithm) {
  Calculate(PowerOf("0.3", "0.1", 1));
  EXPECT_EQ(LastTable().rows.back().title, "Power (Speed Algorithm)");
  EXPECT_NEAR(LastValue(), 0.63342, 2e-3) << "the approximation is near the exact power";
  EXPECT_NE(LastValue(), 0.6334199510877974);
  Calculate(SizeOf("0.3", "0.1", 1));
  EXPECT_EQ(LastTable().rows.back().title, "Required N (Speed Algorithm)");
  EXPECT_NEAR(LastValue(), 96, 1);
}

TEST_F(SquaredCorrelationFamily, PowerReportOfTheFTestHasNoTailSentence) {
  Calculate(PowerOf("0.3", "0", 3), {kMoreAccurate});
  EXPECT_THAT(
      Paragraphs(),
      ElementsAre(
          "\r\nPower Analysis -- The Squared Multiple Correlation",
          "\r\nOne goal of the proposed study is to compare the population squared multiple "
          "correlation to a hypothesized value of 0.  ",
          "\r\nA standard F-test will be performed, with the Type I Error rate (alpha) set "
          "at 0.04. ",
          "\r\nAssume that, in the sampled population, the actual population squared "
          "multiple correlation is 0.3, ",
          "and that the number of predictor variables is 4. ",
          "\r\nWith the proposed sample size of N = 60 observations, the study will have a "
          "power of 97.89%."));
}

TEST_F(SquaredCorrelationFamily, PowerReportOfOtherFormsNamesAnExactTestAndItsTails) {
  const std::string tails[] = {kTwoTailed, kPositive, kNegative};
  for (int form = 0; form <= 2; ++form) {
    Calculate(form == 2 ? PowerOf("0.05", "0.3", 2) : PowerOf("0.3", "0", form));
    ASSERT_THAT(Paragraphs(), SizeIs(7)) << form;
    EXPECT_EQ(Paragraphs()[2],
              "\r\nAn exact test will be performed, with the Type I Error rate (alpha) set at "
              "0.04. ")
        << "a null of zero does not make it the F-test";
    EXPECT_EQ(Paragraphs()[3], tails[form]);
  }
}

TEST_F(SquaredCorrelationFamily, SizeReportStandsInItsOrder) {
  Calculate(SizeOf("0.3", "0.1", 1), {kMoreAccurate});
  EXPECT_THAT(
      Paragraphs(),
      ElementsAre(
          "\r\nSample Size Analysis -- The Squared Multiple Correlation",
          "\r\nOne goal of the proposed study is to compare the population squared multiple "
          "correlation to a hypothesized value of 0.1.  ",
          "\r\nAn exact test will be performed, with the Type I Error rate (alpha) set at "
          "0.04. ",
          kPositive,
          "\r\nAssume that, in the sampled population, the actual population squared "
          "multiple correlation is 0.3, ",
          "and that the number of predictor variables is 4. ",
          ::testing::StartsWith(
              "\r\nTo achieve the requested power of 83.00%, a sample size of at least N = "
              "96 observations is required. With N = 96, the actual power is 8")));
  ExpectReportOnlyAtTheHighestLevel(SizeOf("0.3", "0.1", 1));
}

TEST_F(SquaredCorrelationFamily, AnEffectUnderTheWideToleranceStopsTheSearchAlone) {
  ExpectRefusedEffect({ModeSampleSize, "R2", {{"PopulationR2", "0.24"}, {"R2Null", "0.2"}}, {}},
                      text::NullHypothesisNearlyTrue, {"n-vs-alpha", "n-vs-power"});
  EXPECT_THAT(host_.messages()[0].text, HasSubstr("within a tolerance of 0.05 of being true"));
  Calculate({ModePower, "R2", {{"PopulationR2", "0.24"}, {"R2Null", "0.2"}}, {}});
  EXPECT_GT(LastValue(), 0);
  EXPECT_THAT(host_.messages(), IsEmpty());
}

TEST_F(SquaredCorrelationFamily, AnEffectOfTheToleranceItselfIsSearched) {
  // .25 - .1875 is exact in binary, and above .05.
  Calculate({ModeSampleSize, "R2", {{"PopulationR2", "0.25"}, {"R2Null", "0.1875"}}, {}});
  EXPECT_GT(LastValue(), 100);
}

TEST_F(SquaredCorrelationFamily, ATrueNullIsRefusedInEveryForm) {
  for (int form = 0; form <= 3; ++form) {
    const std::vector<std::pair<ControlName, std::string>> typed = {{"PopulationR2", "0.2"},
                                                                    {"R2Null", "0.2"}};
    ExpectRefusedEffect({ModePower, "R2", typed, {H0(form)}}, text::NullHypothesisTrue,
                        {"power-vs-n", "power-vs-alpha"});
    ExpectRefusedEffect({ModeSampleSize, "R2", typed, {H0(form)}}, text::NullHypothesisTrue,
                        {"n-vs-alpha", "n-vs-power"});
  }
  ExpectRefusedEffect(PowerOf("0.1", "0.3", 1), text::NullHypothesisTrue, {"power-vs-n"});
  ExpectRefusedEffect(PowerOf("0.3", "0.1", 2), text::NullHypothesisTrue, {"power-vs-n"});
}

TEST_F(SquaredCorrelationFamily, MoreVariablesThanObservationsGiveABlankPowerAndNoWordOfTheTest) {
  Calculate({ModePower, "R2", {{"TotalNumberOfVars", "10"}, {"SampleSize", "10"}}, {}});
  EXPECT_TRUE(IsMissing(LastValue()));
  EXPECT_THAT(MessagesOfTheTest(), IsEmpty());
  EXPECT_THAT(Paragraphs().back(), HasSubstr("the study will have a power of -----."));
}

TEST_F(SquaredCorrelationFamily, ASizeThatPassesAtOnceIsTheSmallest) {
  Calculate({ModeSampleSize, "R2", {{"PopulationR2", "0.999"}}, {}}, {kMoreAccurate});
  EXPECT_EQ(LastValue(), 5) << "two above the number of variables";
}

TEST_F(SquaredCorrelationFamily, AGoalOutOfReachEndsWithoutAWordOfTheSearch) {
  // The upper tail's power falls with N when the null stands above the truth.
  Results({ModeSampleSize, "R2", {{"PopulationR2", "0.2"}, {"R2Null", "0.5"}}, {"H0Type=zero"}});
  Press(ControlAccept);
  EXPECT_THAT(host_.workbook().items, IsEmpty());
  EXPECT_THAT(MessagesOfTheTest(), IsEmpty());
  EXPECT_FALSE(host_.IsProgressBarOpen());
}

TEST_F(SquaredCorrelationFamily, ACancelledSearchIsSilent) {
  Results({ModeSampleSize, "R2"});
  host_.cancelled = [] { return true; };
  EXPECT_EQ(Press(ControlAccept), 0);
  EXPECT_THAT(host_.workbook().items, IsEmpty());
  EXPECT_THAT(host_.messages(), IsEmpty());
  EXPECT_FALSE(host_.IsProgressBarOpen());
  EXPECT_EQ(OpenResource(), results_);
}

TEST_F(SquaredCorrelationFamily, DrawsItsPlots) {
  const std::string power = "Multiple R²: Power Calculation";
  const std::string size = "Multiple R²: Sample Size Calculation";
  const std::string p2 = "Population Squared Multiple Correlation (P²)";
  const std::string family = "Squared Multiple Correlation ";
  const Design powerDesign = PowerOf("0.3", "0.1", 0);
  const Design sizeDesign = SizeOf("0.3", "0.1", 1);
  ExpectPlots(powerDesign, {}, power, family + "(H0: P² =  0.1)",
              {{"power-vs-n", 14, "Power vs. N (Rho2 = 0.3,  Alpha = 0.04, k = 4)",
                "Group Sample Size (N)", "Power", "SampleSize"},
               {"power-vs-p2", 20, "Power vs. P² (Alpha = 0.04,  N = 60, k = 4)", p2, "Power",
                "PopulationR2"}});
  ExpectPlots(PowerOf("0.3", "0", 3), {}, power, family + "(H0:  P² =   0)",
              {{"power-vs-alpha", 15, "Power vs. Alpha (Rho2 = 0.3,  N = 60, k = 4)",
                "Type I Error Rate (Alpha)", "Power", "Alpha"}});
  ExpectPlots(PowerOf("0.05", "0.3", 2), {}, power, family + "(H0: P² >=  0.3)",
              {{"power-vs-alpha", 15, "Power vs. Alpha (Rho2 = 0.05,  N = 60, k = 4)",
                "Type I Error Rate (Alpha)", "Power", "Alpha"}});
  ExpectPlots(With(sizeDesign, "R2Null", "0"), {}, size, family + "(H0: P² <=  0)",
              {{"n-vs-p2", 8, "N vs. P² (Power = 0.83,  Alpha = 0.04, k = 4)", p2,
                "Required Sample Size (N)", "PopulationR2"}});
  ExpectPlots(sizeDesign, {}, size, family + "(H0: P² <=  0.1)",
              {{"n-vs-alpha", 3, "N vs. Alpha (P² = 0.3,  Power = 0.83, k = 4)",
                "Type I Error Rate (Alpha)", "Required Sample Size (N)", "Alpha"}});
  ExpectPlots(sizeDesign, {kMoreAccurate}, size, family + "(H0: P² <=  0.1)",
              {{"n-vs-power", 2, "N vs. Power (P² = 0.3,  Alpha = 0.04, k = 4)", "Power Goal",
                "Required Sample Size (N)", "PowerGoal"}});
}

TEST_F(SquaredCorrelationFamily, APlotAcrossTheNullGoesOnPastTheFailedPoint) {
  Results({ModePower, "R2", {{"R2Null", "0.25"}}, {}});
  Type("R2Start", "0.125");
  Type("R2End", "0.375");
  Type("NInterval", "4");
  ASSERT_EQ(Press("power-vs-p2"), 1);
  const Chart chart = Items<Chart>().back();
  EXPECT_THAT(chart.x, ElementsAre(0.125F, 0.1875F, 0.25F, 0.3125F));
  EXPECT_EQ(chart.y[2], -9999) << "kept in the block while the last good point falls off";
  EXPECT_GT(chart.y[3], 0);
  EXPECT_THAT(MessageIds(), ElementsAre(text::NullHypothesisTrue));
}

TEST_F(SquaredCorrelationFamily, TheFrameShowsTheInputs) {
  Results(SizeOf("0.3", "0.1", 1));
  for (const char* line : {"Independent Vars. (k): 4", "C² (Null P²): 0.1", "P²: 0.3",
                           "Type I Error Rate (Alpha): 0.04", "Power Goal: 0.83"}) {
    EXPECT_THAT(TextOf(ControlSummary), HasSubstr(line));
  }
}

TEST_F(SquaredCorrelationFamily, TheRangeMessageOfTheNamelessFieldHasAnEmptyLabel) {
  Parameters({ModePower, "R2", {{"PopulationR2", "1"}}, {}});
  EXPECT_EQ(Press(ControlAccept), 0);
  ASSERT_THAT(MessageIds(), ElementsAre(text::RangeReal));
  EXPECT_EQ(
      host_.messages()[0].text,
      "The current value for  is outside the permissible range.\r\nThe appropriate range is 0 "
      "<=  < 1.\r\n Current value is 1.");
  EXPECT_EQ(CaptionOf("PopulationR2"), "Population squared multiple correlation")
      << "on the page it has a name";
}

TEST_F(SquaredCorrelationFamily, APlotAgainstNFailsInSilenceWhereVariablesOutnumberObservations) {
  Results({ModePower, "R2", {{"TotalNumberOfVars", "5"}}, {}});
  Type("NStart", "4");
  Type("NEnd", "9");
  Type("NInterval", "5");
  ASSERT_EQ(Press("power-vs-n"), 1);
  const Chart chart = Items<Chart>().back();
  // Points at 4 and 5 failed; the last two good ones fall off the block.
  EXPECT_THAT(chart.x, ElementsAre(4, 5, 6, 7));
  EXPECT_EQ(chart.y[0], -9999);
  EXPECT_EQ(chart.y[1], -9999);
  EXPECT_GT(chart.y[2], 0);
  EXPECT_THAT(host_.messages(), IsEmpty());
}

}  // namespace
}  // namespace poweranalysis
