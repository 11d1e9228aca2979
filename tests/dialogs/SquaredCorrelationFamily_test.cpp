// The dialogs, tables, reports and charts of the squared multiple correlation. Values of powers
// come from the exact distribution as a negative binomial mixture of beta distributions, in SciPy.
#include "dialogs/FamilyCases.h"

namespace poweranalysis {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::SizeIs;

using SquaredCorrelationFamily = FamilyCases;

constexpr int kFaster = 22020;
constexpr int kMoreAccurate = 22021;

Design PowerOf(const char* rho2, const char* null, int form) {
  return {ModePower,
          "R2",
          {{21039, rho2}, {21044, null}, {21073, "4"}, {104, "60"}, {111, "0.04"}},
          {1210 + form}};
}
Design SizeOf(const char* rho2, const char* null, int form) {
  return {ModeSampleSize,
          "R2",
          {{21039, rho2}, {21044, null}, {21073, "4"}, {114, "0.83"}, {111, "0.04"}},
          {1210 + form}};
}

TEST_F(SquaredCorrelationFamily, PagesHaveTheirFields) {
  const std::vector<int> forms = {1210, 1211, 1212, 1213};
  const std::vector<int> ranges = {21046, 21043, 138, 139, 140};
  ExpectPage({ModePower, "R2", false, 6193, {21039, 21044, 111, 21073, 104}, forms, {}, {}});
  ExpectPage({ModeSampleSize, "R2", false, 6139, {21039, 21044, 114, 111, 21073}, forms, {}, {}});
  ExpectPage({ModePower, "R2", true, 6137, ranges, {kFaster, kMoreAccurate}, {}, {203, 204, 205}});
  ExpectControls({129, 130}, {ControlKind::IntEdit});
  ExpectPage(
      {ModeSampleSize, "R2", true, 6141, ranges, {kFaster, kMoreAccurate}, {}, {603, 604, 605}});
  ExpectControls({403, 406}, {ControlKind::RealEdit});
}

TEST_F(SquaredCorrelationFamily, RadiosStoreTheFourForms) {
  Parameters({ModePower, "R2", {}, {}});
  for (int form = 3; form >= 0; --form) {
    host_.Press(1210 + form);
    EXPECT_EQ(block().R2.Working.H0Type, form);
    EXPECT_TRUE(this->form().IsDlgButtonChecked(1210 + form));
  }
}

TEST_F(SquaredCorrelationFamily, RadiosStoreTheAlgorithm) {
  Results({ModePower, "R2", {}, {}});
  EXPECT_TRUE(form().IsDlgButtonChecked(kFaster));
  host_.Press(kMoreAccurate);
  EXPECT_EQ(block().R2.Working.Algorithm, 1);
  host_.Press(kFaster);
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
  const std::vector<int> exact = {kMoreAccurate};
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
  EXPECT_EQ(Value("Independent Vars. (k)"), 4);
  EXPECT_EQ(Value("C² (Null P²)"), 0.1);
  EXPECT_EQ(Value("P²"), 0.3);
  EXPECT_EQ(Value("Power Goal"), 0.83);
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
  ExpectRefusedEffect({ModeSampleSize, "R2", {{21039, "0.24"}, {21044, "0.2"}}, {}}, 12874,
                      {604, 605});
  EXPECT_THAT(host_.messages()[0].text, HasSubstr("within a tolerance of 0.05 of being true"));
  Calculate({ModePower, "R2", {{21039, "0.24"}, {21044, "0.2"}}, {}});
  EXPECT_GT(LastValue(), 0);
  EXPECT_THAT(host_.messages(), IsEmpty());
}

TEST_F(SquaredCorrelationFamily, AnEffectOfTheToleranceItselfIsSearched) {
  // .25 - .1875 is exact in binary, and above .05.
  Calculate({ModeSampleSize, "R2", {{21039, "0.25"}, {21044, "0.1875"}}, {}});
  EXPECT_GT(LastValue(), 100);
}

TEST_F(SquaredCorrelationFamily, ATrueNullIsRefusedInEveryForm) {
  for (int form = 0; form <= 3; ++form) {
    const std::vector<std::pair<int, std::string>> typed = {{21039, "0.2"}, {21044, "0.2"}};
    ExpectRefusedEffect({ModePower, "R2", typed, {1210 + form}}, 12873, {203, 205});
    ExpectRefusedEffect({ModeSampleSize, "R2", typed, {1210 + form}}, 12873, {604, 605});
  }
  ExpectRefusedEffect(PowerOf("0.1", "0.3", 1), 12873, {203});
  ExpectRefusedEffect(PowerOf("0.3", "0.1", 2), 12873, {203});
}

TEST_F(SquaredCorrelationFamily, MoreVariablesThanObservationsGiveABlankPowerAndNoWordOfTheTest) {
  Calculate({ModePower, "R2", {{21073, "10"}, {104, "10"}}, {}});
  EXPECT_TRUE(IsMissing(LastValue()));
  EXPECT_THAT(MessagesOfTheTest(), IsEmpty());
  EXPECT_THAT(Paragraphs().back(), HasSubstr("the study will have a power of -----."));
}

TEST_F(SquaredCorrelationFamily, ASizeThatPassesAtOnceIsTheSmallest) {
  Calculate({ModeSampleSize, "R2", {{21039, "0.999"}}, {}}, {kMoreAccurate});
  EXPECT_EQ(LastValue(), 5) << "two above the number of variables";
}

TEST_F(SquaredCorrelationFamily, AGoalOutOfReachEndsWithoutAWordOfTheSearch) {
  // The upper tail's power falls with N when the null stands above the truth.
  Results({ModeSampleSize, "R2", {{21039, "0.2"}, {21044, "0.5"}}, {1213}});
  host_.Press(1);
  EXPECT_THAT(host_.workbook().items, IsEmpty());
  EXPECT_THAT(MessagesOfTheTest(), IsEmpty());
  EXPECT_FALSE(host_.IsProgressBarOpen());
}

TEST_F(SquaredCorrelationFamily, ACancelledSearchIsSilent) {
  Results({ModeSampleSize, "R2", {}, {}});
  host_.cancelled = [] { return true; };
  EXPECT_EQ(host_.Press(1), 0);
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
  ExpectCharts({
      {powerDesign,
       {},
       203,
       14,
       power,
       family + "(H0: P² =  0.1)",
       "Power vs. N (Rho2 = 0.3,  Alpha = 0.04, k = 4)",
       "Group Sample Size (N)",
       "Power",
       104},
      {powerDesign,
       {},
       204,
       20,
       power,
       family + "(H0: P² =  0.1)",
       "Power vs. P² (Alpha = 0.04,  N = 60, k = 4)",
       p2,
       "Power",
       21039},
      {PowerOf("0.3", "0", 3),
       {},
       205,
       15,
       power,
       family + "(H0:  P² =   0)",
       "Power vs. Alpha (Rho2 = 0.3,  N = 60, k = 4)",
       "Type I Error Rate (Alpha)",
       "Power",
       111},
      {PowerOf("0.05", "0.3", 2),
       {},
       205,
       15,
       power,
       family + "(H0: P² >=  0.3)",
       "Power vs. Alpha (Rho2 = 0.05,  N = 60, k = 4)",
       "Type I Error Rate (Alpha)",
       "Power",
       111},
      {With(sizeDesign, 21044, "0"),
       {},
       603,
       8,
       size,
       family + "(H0: P² <=  0)",
       "N vs. P² (Power = 0.83,  Alpha = 0.04, k = 4)",
       p2,
       "Required Sample Size (N)",
       21039},
      {sizeDesign,
       {},
       604,
       3,
       size,
       family + "(H0: P² <=  0.1)",
       "N vs. Alpha (P² = 0.3,  Power = 0.83, k = 4)",
       "Type I Error Rate (Alpha)",
       "Required Sample Size (N)",
       111},
      {sizeDesign,
       {kMoreAccurate},
       605,
       2,
       size,
       family + "(H0: P² <=  0.1)",
       "N vs. Power (P² = 0.3,  Alpha = 0.04, k = 4)",
       "Power Goal",
       "Required Sample Size (N)",
       114},
  });
}

TEST_F(SquaredCorrelationFamily, APlotAcrossTheNullGoesOnPastTheFailedPoint) {
  Results({ModePower, "R2", {{21044, "0.25"}}, {}});
  host_.Type(21046, "0.125");
  host_.Type(21043, "0.375");
  host_.Type(140, "4");
  ASSERT_EQ(host_.Press(204), 1);
  const Chart chart = Items<Chart>().back();
  EXPECT_THAT(chart.x, ElementsAre(0.125F, 0.1875F, 0.25F, 0.3125F));
  EXPECT_EQ(chart.y[2], -9999) << "kept in the block while the last good point falls off";
  EXPECT_GT(chart.y[3], 0);
  EXPECT_THAT(MessageIds(), ElementsAre(12873));
}

TEST_F(SquaredCorrelationFamily, TheFrameShowsTheInputs) {
  Results(SizeOf("0.3", "0.1", 1));
  for (const char* line : {"Independent Vars. (k): 4", "C² (Null P²): 0.1", "P²: 0.3",
                           "Type I Error Rate (Alpha): 0.04", "Power Goal: 0.83"}) {
    EXPECT_THAT(TextOf(201), HasSubstr(line));
  }
}

TEST_F(SquaredCorrelationFamily, TheRangeMessageOfTheNamelessFieldHasAnEmptyLabel) {
  Parameters({ModePower, "R2", {{21039, "1"}}, {}});
  EXPECT_EQ(host_.Press(1), 0);
  ASSERT_THAT(MessageIds(), ElementsAre(12853));
  EXPECT_EQ(
      host_.messages()[0].text,
      "The current value for  is outside the permissible range.\r\nThe appropriate range is 0 "
      "<=  < 1.\r\n Current value is 1.");
  EXPECT_EQ(form().Find(21039)->spec.caption, "Population squared multiple correlation")
      << "on the page it has a name";
}

TEST_F(SquaredCorrelationFamily, APlotAgainstNFailsInSilenceWhereVariablesOutnumberObservations) {
  Results({ModePower, "R2", {{21073, "5"}}, {}});
  host_.Type(129, "4");
  host_.Type(130, "9");
  host_.Type(140, "5");
  ASSERT_EQ(host_.Press(203), 1);
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
