// The dialogs, tables, reports and charts of model fit. Values of powers and sizes come from
// SciPy's noncentral chi-square distribution.
#include "dialogs/FamilyRun.h"

namespace poweranalysis {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::SizeIs;

using ModelFitFamily = FamilyRun;

Design PowerOf(const char* rmsea, const char* null, int form) {
  return {ModePower,
          "SEM",
          {{"R", rmsea},
           {"R0", null},
           {"DegreesOfFreedom", "25"},
           {"SampleSize", "140"},
           {"Alpha", "0.04"}},
          {H0(form)}};
}
Design SizeOf(const char* rmsea, const char* null, int form) {
  return {ModeSampleSize,
          "SEM",
          {{"R", rmsea},
           {"R0", null},
           {"DegreesOfFreedom", "25"},
           {"PowerGoal", "0.83"},
           {"Alpha", "0.04"}},
          {H0(form)}};
}

TEST_F(ModelFitFamily, PagesHaveTheirFields) {
  const std::vector<ControlName> forms = {"H0Type=two-sided", "H0Type=upper", "H0Type=lower"};
  const std::vector<ControlName> ranges = {"RStart", "REnd", "AlphaStart", "AlphaEnd", "NInterval"};
  ExpectPage({ModePower,
              "SEM",
              false,
              6259,
              {"R", "R0", "Alpha", "DegreesOfFreedom", "SampleSize"},
              forms,
              {},
              {}});
  EXPECT_EQ(Find("H0Type=3"), nullptr) << "the zero form is the first button";
  ExpectPage({ModeSampleSize,
              "SEM",
              false,
              6220,
              {"R", "R0", "PowerGoal", "Alpha", "DegreesOfFreedom"},
              forms,
              {},
              {}});
  ExpectPage({ModePower,
              "SEM",
              true,
              6218,
              ranges,
              {},
              {},
              {"power-vs-n", "power-vs-alpha", "power-vs-rmsea", "power-vs-df"}});
  ExpectControls({"NStart", "NEnd", "DfStart", "DfEnd"}, {ControlKind::IntEdit});
  ExpectPage({ModeSampleSize,
              "SEM",
              true,
              6222,
              ranges,
              {},
              {},
              {"n-vs-power", "n-vs-alpha", "n-vs-rmsea", "n-vs-df"}});
  ExpectControls({"PowerStart", "PowerEnd"}, {ControlKind::RealEdit});
  ExpectControls({"DfStart", "DfEnd"}, {ControlKind::IntEdit});
}

TEST_F(ModelFitFamily, OpensOnTheOneTailedForm) {
  Parameters({ModePower, "SEM"});
  EXPECT_TRUE(IsChecked("H0Type=upper"));
  Press("H0Type=two-sided");
  EXPECT_EQ(block().SEM.Working.H0Type, 0) << "the zero button stores 0, not 3";
}

TEST_F(ModelFitFamily, PowerTableStandsInItsOrder) {
  const auto headings = [](const char* form) {
    return std::vector<std::string>{"Power Calculation", "Structural Equation Modeling", form};
  };
  const auto rows = [](double rmsea, double null, double power) {
    return Rows{{"Population RMSEA (R)", rmsea},     {"Null Hypothesized RMSEA (R0)", null},
                {"Degrees of Freedom (Df)", 25},     {"Group Sample Size (N)", 140},
                {"Type I Error Rate (Alpha)", 0.04}, {"Power", power}};
  };
  ExpectTables({
      // The lower tail is subtracted in the two-sided form.
      {PowerOf("0.09", "0.04", 0), {}, 769, headings("H0:  R = 0"), rows(0.09, 0.04, 0.5592963397)},
      {PowerOf("0.09", "0.04", 1),
       {},
       769,
       headings("H0:  R <= R0"),
       rows(0.09, 0.04, 0.6682939656)},
      {PowerOf("0.02", "0.07", 2),
       {},
       769,
       headings("H0:  R >= R0"),
       rows(0.02, 0.07, 0.4562518141)},
      {PowerOf("0.09", "0", 0), {}, 769, headings("H0:  R = 0"), rows(0.09, 0, 0.8791210575)},
      {PowerOf("0.09", "0", 1), {}, 769, headings("H0:  R <= R0"), rows(0.09, 0, 0.8791210575)},
  });
}

TEST_F(ModelFitFamily, SizeTableHasTheDegreesOfFreedomAfterAlpha) {
  const auto headings = [](const char* form) {
    return std::vector<std::string>{"Sample Size Calculation", "Structural Equation Modeling",
                                    form};
  };
  const auto rows = [](double rmsea, double null, double power, double n) {
    return Rows{{"Population RMSEA (R)", rmsea},
                {"Null Hypothesized RMSEA (R0)", null},
                {"Type I Error Rate (Alpha)", 0.04},
                {"Degrees of Freedom (Df)", 25},
                {"Power Goal", 0.83},
                {"Actual Power for Required N", power},
                {"Required Sample Size (N)", n}};
  };
  ExpectTables({
      {SizeOf("0.09", "0.04", 0),
       {},
       770,
       headings("H0:  R = 0"),
       rows(0.09, 0.04, 0.8300914549, 222)},
      {SizeOf("0.09", "0.04", 1),
       {},
       770,
       headings("H0:  R <= R0"),
       rows(0.09, 0.04, 0.8304639107, 191)},
      {SizeOf("0.02", "0.07", 2),
       {},
       770,
       headings("H0:  R >= R0"),
       rows(0.02, 0.07, 0.8309336244, 253)},
      {SizeOf("0.09", "0", 1), {}, 770, headings("H0:  R <= R0"), rows(0.09, 0, 0.8324823213, 127)},
  });
}

TEST_F(ModelFitFamily, AnchorsOfTheDefaults) {
  Calculate({ModePower, "SEM"});
  EXPECT_NEAR(LastValue(), 0.2411822, 1e-6);
  Calculate({ModePower, "SEM", {}, {"H0Type=two-sided"}});
  EXPECT_NEAR(LastValue(), 0.1538763, 1e-6);
  Calculate({ModeSampleSize, "SEM"});
  EXPECT_EQ(LastValue(), 573);
  EXPECT_NEAR(Row("Actual Power for Required N"), 0.900383, 1e-6);
}

TEST_F(ModelFitFamily, ATwoSidedPowerCanFallBelowZeroAndIsShown) {
  Calculate(With(PowerOf("0.045", "0.05", 0), "SampleSize", "10"));
  EXPECT_NEAR(LastValue(), -0.0014229994, 1e-6);
  EXPECT_FALSE(IsMissing(LastValue()));
}

TEST_F(ModelFitFamily, AFormFromAFileTestsTheStoredNullWithoutAHeadingOrTails) {
  Parameters(PowerOf("0.09", "0.04", 0));
  block().SEM.Working.H0Type = 3;
  Press(ControlAccept);
  Press(ControlAccept);
  EXPECT_THAT(Headings(), ElementsAre("Power Calculation", "Structural Equation Modeling"));
  EXPECT_NEAR(LastValue(), 0.6682939656, 2e-6);
  EXPECT_EQ(Row("Null Hypothesized RMSEA (R0)"), 0.04);
  EXPECT_THAT(Paragraphs(), SizeIs(5)) << "no tail sentence";
  ASSERT_EQ(Press("power-vs-n"), 1);
  EXPECT_EQ(Items<Chart>().back().titles[1], "Structural Equation Modeling (H0:  R = 0)");
  EXPECT_EQ(block().SEM.Committed.H0Type, 3);
}

TEST_F(ModelFitFamily, TheRecordKeepsItsFormWhenTheNullIsZero) {
  Calculate(PowerOf("0.09", "0", 1));
  EXPECT_EQ(block().SEM.Committed.H0Type, 1);
  EXPECT_EQ(Paragraphs()[3], kPositive);
  Calculate(PowerOf("0.09", "0", 0));
  EXPECT_EQ(block().SEM.Committed.H0Type, 0);
  EXPECT_EQ(Paragraphs()[3], kTwoTailed) << "the report follows the record";
}

TEST_F(ModelFitFamily, ReportsStandInTheirOrder) {
  const std::string goal =
      "\r\nOne goal of the proposed study is to test goodness-of-fit of a structural equation "
      "model, using the Steiger-Lind RMSEA as described by Browne and Cudeck.";
  const std::string test =
      "\r\nA significance test will be performed using the noncentral Chi-square distribution, "
      "with "
      "the Type I Error rate (alpha) set at 0.04. ";
  Calculate(PowerOf("0.02", "0.07", 2));
  EXPECT_THAT(
      Paragraphs(),
      ElementsAre("\r\nPower Analysis -- Tests of Fit in Structural Equation Modeling", goal, test,
                  kNegative,
                  "\r\nAssume that, in the sampled population, the actual RMSEA is R = 0.02, and "
                  "the null hypothesized RMSEA is R0 = 0.07, and that the model has 25 degrees of "
                  "freedom. ",
                  "\r\nWith a sample size of 140, the study will have a power of 45.63%."));
  Calculate(SizeOf("0.09", "0.04", 1));
  EXPECT_THAT(
      Paragraphs(),
      ElementsAre("\r\nSample Size Analysis -- Tests of Fit in Structural Equation Modeling", goal,
                  test, kPositive,
                  "\r\nAssume that, in the sampled population, the actual RMSEA is R = 0.09, and "
                  "the null hypothesized RMSEA is R0 = 0.04, and that the model has 25 degrees of "
                  "freedom. ",
                  "\r\nTo achieve the requested power of 83.00%, at least 191 observations are "
                  "required. ",
                  "With N = 191, the actual power is 83.05%."));
  ExpectReportOnlyAtTheHighestLevel(SizeOf("0.09", "0.04", 1));
}

TEST_F(ModelFitFamily, ATrueNullIsRefused) {
  ExpectRefusedEffect(PowerOf("0.05", "0.05", 0), text::NullHypothesisTrue,
                      {"power-vs-n", "power-vs-alpha", "power-vs-df"});
  ExpectRefusedEffect(PowerOf("0.04", "0.05", 1), text::NullHypothesisTrue,
                      {"power-vs-n", "power-vs-alpha", "power-vs-df"});
  ExpectRefusedEffect(SizeOf("0.06", "0.05", 2), text::NullHypothesisTrue,
                      {"n-vs-power", "n-vs-alpha", "n-vs-df"});
  ExpectRefusedEffect(SizeOf("0.0505", "0.05", 1), text::NullHypothesisNearlyTrue,
                      {"n-vs-power", "n-vs-alpha", "n-vs-df"});
  EXPECT_THAT(host_.messages()[0].text, HasSubstr("within a tolerance of 0.001 of being true"));
  Calculate(PowerOf("0.0505", "0.05", 1));
  EXPECT_THAT(host_.messages(), IsEmpty());
}

TEST_F(ModelFitFamily, AGoalOutOfReachEndsWithAMessage) {
  // Two-sided and below the null, the power falls with N.
  Results(SizeOf("0.04", "0.06", 0));
  EXPECT_EQ(Press(ControlAccept), 0);
  ASSERT_THAT(MessageIds(), ElementsAre(text::SearchTooLarge));
  EXPECT_THAT(host_.messages()[0].text, HasSubstr("(greater than 100000000)"));
  EXPECT_THAT(host_.workbook().items, IsEmpty());
}

TEST_F(ModelFitFamily, DrawsItsPlots) {
  const std::string power = "Structural Equation Modeling: Power Calc.";
  const std::string size = "Structural Equation Modeling: Sample Size Calc.";
  const std::string family = "Structural Equation Modeling (H0:  R <= R0)";
  const std::string n = "Required Sample Size (N)";
  const Design powerDesign = PowerOf("0.09", "0.04", 1);
  const Design sizeDesign = SizeOf("0.09", "0.04", 1);
  const std::string rmsea = "Population RMSEA (R) (R0 Fixed at 0.04)";
  const std::string df = "Degrees of Freedom (Df)";
  ExpectPlots(
      powerDesign, {}, power, family,
      {{"power-vs-n", 14, "Power vs. N (R = 0.09,  R0 = 0.04, Df = 25, Alpha = 0.04)",
        "Group Sample Size (N)", "Power", "SampleSize"},
       {"power-vs-alpha", 15, "Power vs. Alpha (R = 0.09, R0 = 0.04, N = 140, Df = 25)",
        "Type I Error Rate (Alpha)", "Power", "Alpha"},
       {"power-vs-rmsea", 16, "Power vs. RMSEA (R) (N = 140, Df = 25)", rmsea, "Power", "R"},
       {"power-vs-df", 22, "Power vs. Df (R = 0.09,  R0 = 0.04, N = 140, Alpha = 0.04)", df,
        "Power", "DegreesOfFreedom"}});
  ExpectPlots(sizeDesign, {}, size, family,
              {{"n-vs-power", 2, "N vs. Power (R = 0.09,  R0 = 0.04, Df = 25, Alpha = 0.04)",
                "Power Goal", n, "PowerGoal"},
               {"n-vs-alpha", 3, "N vs Alpha (R = 0.09, R0 = 0.04, Power Goal = 0.83, Df = 25)",
                "Type I Error Rate (Alpha)", n, "Alpha"},
               {"n-vs-rmsea", 4, "N vs. RMSEA (R) (Power Goal = 0.83, Df = 25)", rmsea, n, "R"},
               {"n-vs-df", 10, "N vs Df (R = 0.09,  R0 = 0.04, Power Goal = 0.83, Alpha = 0.04)",
                df, n, "DegreesOfFreedom"}});
}

TEST_F(ModelFitFamily, APlotAcrossTheNullGoesOnPastTheFailedPoint) {
  Results({ModePower, "SEM", {{"R0", "0.125"}}, {"H0Type=two-sided"}});
  Type("RStart", "0.0625");
  Type("REnd", "0.1875");
  Type("NInterval", "4");
  ASSERT_EQ(Press("power-vs-rmsea"), 1);
  const Chart chart = Items<Chart>().back();
  ASSERT_THAT(chart.y, SizeIs(4));
  EXPECT_EQ(chart.y[2], -9999);
  EXPECT_GT(chart.y[3], 0);
}

TEST_F(ModelFitFamily, ACancelledSearchSendsNothing) {
  Results({ModeSampleSize, "SEM"});
  host_.cancelled = [] { return true; };
  EXPECT_EQ(Press(ControlAccept), 0);
  EXPECT_THAT(host_.workbook().items, IsEmpty());
  EXPECT_FALSE(host_.IsProgressBarOpen());
  EXPECT_EQ(OpenResource(), results_);
}

TEST_F(ModelFitFamily, AWholeAxisTruncatesItsSteps) {
  Results({ModePower, "SEM"});
  ASSERT_EQ(Press("power-vs-df"), 1);
  EXPECT_THAT(Items<Chart>().back().x, ElementsAre(1, 10, 20, 30, 40, 50, 60, 70, 80, 90, 100));
  Type("DfStart", "7");
  Type("DfEnd", "3");
  ASSERT_EQ(Press("power-vs-df"), 1);
  EXPECT_THAT(Items<Chart>().back().x, ElementsAre(3, 4, 5, 6, 7)) << "one point a whole number";
}

TEST_F(ModelFitFamily, TheFrameShowsTheInputs) {
  Results(SizeOf("0.09", "0.04", 1));
  for (const char* line :
       {"Population RMSEA (R): 0.09", "Null Hypothesized RMSEA (R0): 0.04",
        "Type I Error Rate (Alpha): 0.04", "Degrees of Freedom (Df): 25", "Power Goal: 0.83"}) {
    EXPECT_THAT(TextOf(ControlSummary), HasSubstr(line));
  }
}

}  // namespace
}  // namespace poweranalysis
