#include <cmath>

#include "dialogs/FamilyRun.h"
#include "distributions/NoncentralChiSquare.h"
#include "distributions/NoncentralF.h"

namespace poweranalysis {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::SizeIs;

class OneVariance : public FamilyRun {};
class TwoVariances : public FamilyRun {};

// Powers from the distributions alone.
double PowerOfOne(int form, int df, double r, double alpha = 0.05) {
  int failure = 0;
  const auto q = [&](double p) { return NoncentralChiSquareQuantile(0, df, p, failure); };
  const auto cdf = [&](double x) {
    double density = 0;
    return NoncentralChiSquareCdf(x, df, 0, density, failure);
  };
  if (form == 0) {
    return 1 - cdf(q(1 - alpha / 2) * r) + cdf(q(alpha / 2) * r);
  }
  return form == 1 ? 1 - cdf(q(1 - alpha) * r) : cdf(q(alpha) * r);
}
double PowerOfTwo(int form, int df1, int df2, double ratio, double alpha = 0.05) {
  int failure = 0;
  const auto q = [&](double p) { return NoncentralFQuantile(0, df1, df2, p, failure, 0); };
  const auto cdf = [&](double x) { return NoncentralFCdfInt(x, df1, df2, 0, failure, 0); };
  if (form == 0) {
    return cdf(q(alpha / 2) / ratio) + 1 - cdf(q(1 - alpha / 2) / ratio);
  }
  return 1 - cdf(q(1 - alpha) / ratio);
}

// --- One variance.

TEST_F(OneVariance, HasItsControls) {
  OpenParameters({ModePower, "V1"});
  EXPECT_EQ(OpenResource(), 6151);
  ExpectControls({"PopulationVariance", "NullHypothesizedVariance", "Alpha", "DegreesOfFreedom",
                  "H0Type=two-sided", "H0Type=upper", "H0Type=lower", ControlSaveAs,
                  ControlSaveAsDefault});
  EXPECT_EQ(Find("H0Type=3"), nullptr) << "the fourth form has no button";
  EXPECT_EQ(TextOf("PopulationVariance"), "2");
  EXPECT_EQ(TextOf("NullHypothesizedVariance"), "1");
  EXPECT_EQ(TextOf("DegreesOfFreedom"), "10");
  for (const int form_ : {0, 1, 2}) {
    Press(H0(form_));
    EXPECT_EQ(block().V1.Working.H0Type, form_);
  }
  Press("H0Type=two-sided");
  Press(ControlAccept);
  EXPECT_EQ(OpenResource(), 6153);
  ExpectControls({"VarStart", "VarEnd", "AlphaStart", "AlphaEnd", "DfStart", "DfEnd", "DfIntervals",
                  ControlAccept, "power-vs-df", "power-vs-variance", "power-vs-alpha"});
  OpenParameters({ModeSampleSize, "V1"});
  EXPECT_EQ(OpenResource(), 6155);
  ExpectControls({"PopulationVariance", "NullHypothesizedVariance", "PowerGoal", "Alpha",
                  "H0Type=two-sided", "H0Type=upper", "H0Type=lower", ControlSaveAs,
                  ControlSaveAsDefault});
  EXPECT_EQ(Find("DegreesOfFreedom"), nullptr);
  Press(ControlAccept);
  EXPECT_EQ(OpenResource(), 6157);
  ExpectControls({"PowerStart", "PowerEnd", "VarStart", "VarEnd", "AlphaStart", "AlphaEnd",
                  "DfIntervals", ControlAccept, "df-vs-variance", "df-vs-alpha", "df-vs-power"});
}

TEST_F(OneVariance, ShowsItsPowerTableByForm) {
  const char* const headings[] = {"H0: Var =  Var0", "H0: Var <= Var0", "H0: Var >= Var0"};
  for (const int form_ : {0, 1, 2}) {
    OpenResults({ModePower, "V1", {{"PopulationVariance", form_ == 2 ? "0.5" : "2"}}, {H0(form_)}});
    ASSERT_EQ(Press(ControlAccept), 1);
    EXPECT_EQ(LastTable().code, 112);
    EXPECT_THAT(Headings(),
                ElementsAre("Power Calculation", "One Variance, Chi-Square Test", headings[form_]));
    EXPECT_THAT(RowTitles(),
                ElementsAre("Degrees of Freedom (Df)", "Population Variance (Var)",
                            "Variance under H0 (Var0)", "Type I Error Rate (Alpha)", "Power"));
    const double r = form_ == 2 ? 2 : 0.5;
    EXPECT_THAT(RowValues(), ElementsAre("10", form_ == 2 ? "0.5" : "2", "1", "0.05",
                                         Shown(PowerOfOne(form_, 10, r))));
  }
  OpenResults({ModePower, "V1"});
  Press("H0Type=upper");
  OpenResults({ModePower, "V1", {{"PopulationVariance", "2"}}, {"H0Type=two-sided"}});
  Press(ControlAccept);
  EXPECT_NEAR(Row("Power"), 0.421063299, 1e-6);
  OpenResults({ModePower, "V1", {}, {"H0Type=upper"}});
  Press(ControlAccept);
  EXPECT_NEAR(Row("Power"), 0.517598774, 1e-6);
}

TEST_F(OneVariance, ShowsItsSizeTableWithTheNullVarianceFirst) {
  OpenResults({ModeSampleSize, "V1", {{"NullHypothesizedVariance", "3"}}});
  ASSERT_EQ(Press(ControlAccept), 1);
  EXPECT_EQ(LastTable().code, 113);
  EXPECT_THAT(Headings(), ElementsAre("Sample Size Calculation", "One Variance, Chi-Square Test",
                                      "H0: Var =  Var0"));
  EXPECT_THAT(RowTitles(),
              ElementsAre("Variance under H0 (Var0)", "Population Variance (Var)",
                          "Type I Error Rate (Alpha)", "Power Goal", "Actual Power for Required Df",
                          "Required Degrees of Freedom (Df)"));
  const int df = static_cast<int>(Row("Required Degrees of Freedom (Df)"));
  EXPECT_THAT(RowValues(), ElementsAre("3", "2", "0.05", "0.9", Shown(PowerOfOne(0, df, 1.5)),
                                       std::to_string(df)));
  EXPECT_GT(PowerOfOne(0, df, 1.5), 0.9);
  EXPECT_LE(PowerOfOne(0, df - 1, 1.5), 0.9);
}

TEST_F(OneVariance, WritesItsReports) {
  for (const int form_ : {0, 1, 2}) {
    const std::string var = form_ == 2 ? "0.5" : "2";
    const std::string goal =
        "\r\nOne goal of the proposed study is to compare the variance of a population to a "
        "hypothesized value of 1.";
    const std::string test =
        "\r\nA chi-square test will be performed, with the Type I Error rate (alpha) set at 0.05. ";
    const std::string assumption =
        "\r\nAssume that, in the sampled population, the actual variance is " + var + ".";
    OpenResults({ModePower, "V1", {{"PopulationVariance", var}}, {H0(form_)}});
    Press(ControlAccept);
    EXPECT_THAT(Paragraphs(),
                ElementsAre("\r\nPower Analysis -- Chi-Square Test on One Variance", goal, test,
                            kTails[form_], assumption,
                            "\r\nWith the proposed degrees of freedom set at 10, the study will "
                            "have a power of " +
                                Percent(Row("Power")) + "."));
    OpenResults({ModeSampleSize, "V1", {{"PopulationVariance", var}}, {H0(form_)}});
    Press(ControlAccept);
    const std::string df = Shown(Row("Required Degrees of Freedom (Df)"));
    EXPECT_THAT(Paragraphs(),
                ElementsAre("\r\nSample Size Analysis -- Chi-Square Test on One Variance", goal,
                            test, kTails[form_], assumption,
                            "\r\nTo achieve the requested power of 90.00%, at least " + df +
                                " degrees of freedom are required. ",
                            "With " + df + " degrees of freedom, the actual power is " +
                                Percent(Row("Actual Power for Required Df")) + "."));
  }
}

TEST_F(OneVariance, DrawsItsPlots) {
  ExpectPlots({ModePower, "V1"}, {}, "One Variance: Power Calculation",
              "One Variance, Chi-Square Test (H0: Var =  Var0 1)",
              {{"power-vs-df", 22, "Power vs. Df (Population Variance = 2, Alpha = 0.05)",
                "Degrees of Freedom (Df)", "Power"},
               {"power-vs-variance", 23, "Power vs. Population Variance (Alpha = 0.05, Df = 10)",
                "Population Variance (Var)", "Power"},
               {"power-vs-alpha", 15, "Power vs. Alpha (Population Variance = 2, Df = 10)",
                "Type I Error Rate (Alpha)", "Power"}});
  ExpectPlots({ModeSampleSize, "V1", {{"NullHypothesizedVariance", "0.75"}}, {"H0Type=upper"}}, {},
              "One Variance: Sample Size Calculation",
              "One Variance, Chi-Square Test (H0: Var <= Var0 0.75)",
              {{"df-vs-variance", 11, "Df vs. Population Variance (Power = 0.9, Alpha = 0.05)",
                "Population Variance (Var)", "Required Degrees of Freedom (Df)"},
               {"df-vs-alpha", 3, "Df vs. Alpha (Population Variance = 2, Alpha = 0.05)",
                "Type I Error Rate (Alpha)", "Required Degrees of Freedom (Df)"},
               {"df-vs-power", 2, "Df vs. Power (Population Variance = 2, Alpha = 0.05)",
                "Power Goal", "Required Degrees of Freedom (Df)"}});
}

TEST_F(OneVariance, APlotAgreesWithTheDistribution) {
  OpenResults({ModePower, "V1"});
  Press("power-vs-df");
  const Chart df = LastChart();
  ASSERT_THAT(df.x, SizeIs(20));
  for (std::size_t i = 0; i < df.x.size(); ++i) {
    EXPECT_NEAR(df.y[i], PowerOfOne(0, static_cast<int>(df.x[i]), 0.5), 1e-6);
  }
  Press("power-vs-variance");
  EXPECT_NEAR(LastChart().y[0], PowerOfOne(0, 10, 1 / 1.15), 1e-6);
  Press("power-vs-alpha");
  EXPECT_NEAR(LastChart().y[0], PowerOfOne(0, 10, 0.5, 0.01), 1e-6);
}

TEST_F(OneVariance, EqualVariancesLeadBackToTheParameters) {
  for (const int mode : {ModePower, ModeSampleSize}) {
    host_.ClearMessages();
    OpenResults({mode, "V1", {{"PopulationVariance", "1"}}});
    Type("DfIntervals", "5");
    ExpectRefused(ControlAccept, {text::NullHypothesisTrue}, parameters_);
    EXPECT_EQ(block().V1.Committed.DfIntervals, 19);
  }
}

TEST_F(OneVariance, ASmallerVarianceIsATrueNullOfTheUpperTail) {
  OpenResults({ModePower, "V1", {{"PopulationVariance", "0.5"}}, {"H0Type=upper"}});
  ExpectRefused(ControlAccept, {text::NullHypothesisTrue}, parameters_);
}

TEST_F(OneVariance, NearlyEqualVariancesStopTheSearchAlone) {
  OpenResults({ModeSampleSize, "V1", {{"PopulationVariance", "1.0199"}}});
  ExpectRefused(ControlAccept, {text::NullHypothesisNearlyTrue}, parameters_);
  EXPECT_THAT(host_.messages()[0].text, HasSubstr("within a tolerance of 0.02 of"));
  EXPECT_EQ(host_.messageCalls(), 1);
  host_.ClearMessages();
  OpenResults({ModePower, "V1", {{"PopulationVariance", "1.0199"}}});
  EXPECT_EQ(Press(ControlAccept), 1);
  EXPECT_THAT(host_.messages(), IsEmpty());
}

TEST_F(OneVariance, OneDegreeOfFreedomCanDo) {
  OpenResults({ModeSampleSize, "V1", {{"PopulationVariance", "1000000"}}, {"H0Type=upper"}});
  ASSERT_EQ(Press(ControlAccept), 1);
  EXPECT_EQ(Row("Required Degrees of Freedom (Df)"), 1);
  EXPECT_NEAR(Row("Actual Power for Required Df"), PowerOfOne(1, 1, 1e-6), 1e-12);
  EXPECT_GT(Row("Actual Power for Required Df"), 0.9);
}

// The limit is a number of the search's own; the message shows the bound.
TEST_F(OneVariance, ATooLargeSizeShowsTheBoundThatDidNotStopIt) {
  block().V1.Upper.DegreesOfFreedom = 777;
  OpenResults({ModeSampleSize,
               "V1",
               {{"PopulationVariance", "1.021"}, {"Alpha", "0.0001"}, {"PowerGoal", "0.999"}},
               {"H0Type=upper"}});
  ExpectRefused(ControlAccept, {text::SearchTooLarge}, results_);
  EXPECT_THAT(host_.messages()[0].text, HasSubstr("(greater than 777)"));
  EXPECT_THAT(host_.messages()[0].text, HasSubstr("extremely large N"));
  OpenResults({ModeSampleSize, "V1", {{"PopulationVariance", "1.05"}}});
  EXPECT_EQ(Press(ControlAccept), 1);
  EXPECT_GT(Row("Required Degrees of Freedom (Df)"), 777);
}

TEST_F(OneVariance, ItsSearchNamesDegreesOfFreedomInTheBar) {
  OpenResults({ModeSampleSize, "V1"});
  host_.calls.progress.clear();
  Press(ControlAccept);
  ASSERT_FALSE(host_.calls.progress.empty());
  EXPECT_EQ(host_.calls.progress.front(), "d_pbar Searching for required DF");
}

TEST_F(OneVariance, TheFourthFormHasNoPowerAndNoHeading) {
  OpenParameters({ModePower, "V1"});
  block().V1.Working.H0Type = 3;
  Press(ControlAccept);
  EXPECT_EQ(OpenResource(), 6153);
  EXPECT_EQ(Press(ControlAccept), 1);
  EXPECT_THAT(Headings(), ElementsAre("Power Calculation", "One Variance, Chi-Square Test"));
  EXPECT_EQ(RowValues().back(), "-");
  EXPECT_THAT(Paragraphs(), SizeIs(5)) << "no sentence on tails";
  EXPECT_THAT(Paragraphs().back(), HasSubstr("power of -----."));
  host_.TakeWorkbook();
  OpenParameters({ModeSampleSize, "V1"});
  block().V1.Working.H0Type = 3;
  Press(ControlAccept);
  EXPECT_EQ(Press(ControlAccept), 0);
  EXPECT_THAT(host_.workbook().items, IsEmpty());
  EXPECT_EQ(OpenResource(), 6157);
  Press("df-vs-variance");
  EXPECT_THAT(Items<Chart>(), IsEmpty());
}

TEST_F(OneVariance, AVariancePlotAcrossTheNullKeepsTheRefusedPoint) {
  OpenResults({ModePower, "V1"});
  Type("VarStart", "0.5");
  Type("VarEnd", "1.5");
  Type("DfIntervals", "4");
  EXPECT_EQ(Press("power-vs-variance"), 1);
  ASSERT_THAT(LastChart().y, SizeIs(4));
  EXPECT_EQ(LastChart().y[2], -9999);
  EXPECT_EQ(LastChart().x[3], 1.25f);
  EXPECT_THAT(MessageIds(), ElementsAre(text::NullHypothesisTrue));
  EXPECT_EQ(host_.messageCalls(), 1);
}

TEST_F(OneVariance, NegativeVariancesAreFailedPoints) {
  OpenResults({ModePower, "V1"});
  Type("VarStart", "-2");
  Type("VarEnd", "2");
  Type("DfIntervals", "4");
  EXPECT_EQ(Press("power-vs-variance"), 1);
  EXPECT_EQ(LastChart().y[0], -9999);
  EXPECT_EQ(LastChart().y[1], -9999);
}

TEST_F(OneVariance, ATrueNullEndsAPlotThatFixesTheVariance) {
  OpenResults({ModePower, "V1", {{"PopulationVariance", "1"}}});
  for (const char* control : {"power-vs-df", "power-vs-alpha"}) {
    host_.ClearMessages();
    ExpectRefused(control, {text::NullHypothesisTrue}, results_);
  }
  EXPECT_EQ(Press("power-vs-variance"), 1);
}

TEST_F(OneVariance, WithoutVariancesTheNullIsTrue) {
  OpenResults({ModePower, "V1", {{"PopulationVariance", "0"}, {"NullHypothesizedVariance", "0"}}});
  ExpectRefused(ControlAccept, {text::NullHypothesisTrue}, parameters_);
}

TEST_F(OneVariance, AZeroVarianceHasFullPower) {
  for (const auto& [var, var0] : {std::pair{"0", "1"}, {"2", "0"}}) {
    OpenResults(
        {ModePower, "V1", {{"PopulationVariance", var}, {"NullHypothesizedVariance", var0}}});
    EXPECT_EQ(Press(ControlAccept), 1);
    EXPECT_EQ(Row("Power"), 1);
    EXPECT_THAT(Paragraphs().back(), HasSubstr("power of 100.00%."));
  }
}

TEST_F(OneVariance, ALetterInItsDegreesStoresZeroAndOkNamesThem) {
  OpenParameters({ModePower, "V1"});
  Type("DegreesOfFreedom", "x");
  EXPECT_EQ(block().V1.Working.DegreesOfFreedom, 0);
  ExpectRefused(ControlAccept, {text::RangeInt32}, parameters_);
  EXPECT_THAT(host_.messages()[0].text, HasSubstr("1 <= Df <= 150000"));
}

// --- Two variances.

TEST_F(TwoVariances, HasItsControls) {
  OpenParameters({ModePower, "V2"});
  EXPECT_EQ(OpenResource(), 6161);
  ExpectControls({"Var1", "Var2", "Alpha", "Df1", "Df2", "H0Type=two-sided", "H0Type=upper",
                  "H0Type=lower", ControlSaveAs, ControlSaveAsDefault});
  EXPECT_EQ(Find("DfToVary=equal"), nullptr);
  EXPECT_EQ(Find("PowerGoal"), nullptr);
  Press(ControlAccept);
  EXPECT_EQ(OpenResource(), 6163);
  ExpectControls({"RatioStart", "RatioEnd", "AlphaStart", "AlphaEnd", "DfStart", "DfEnd",
                  "DfIntervals", ControlAccept, "power-vs-alpha", "power-vs-df", "power-vs-df1",
                  "power-vs-df2", "power-vs-ratio"});
  OpenParameters({ModeSampleSize, "V2"});
  EXPECT_EQ(OpenResource(), 6165);
  ExpectControls({"Ratio", "PowerGoal", "Alpha", "DfToVary=equal", "DfToVary=df1", "Df2",
                  "H0Type=two-sided", "H0Type=upper", "H0Type=lower", ControlSaveAs,
                  ControlSaveAsDefault});
  EXPECT_EQ(Find("DfToVary=2"), nullptr) << "the dialog offers no such choice";
  EXPECT_EQ(Find("Var1"), nullptr);
  EXPECT_EQ(Find("Df1"), nullptr);
  EXPECT_TRUE(IsChecked("DfToVary=equal"));
  EXPECT_EQ(Press("DfToVary=df1"), 1);
  EXPECT_EQ(block().V2.Working.DfToVary, 1);
  EXPECT_THAT(CaptionOf("DfToVary=df1"), HasSubstr("Vary Df1 (Fixed Df2)"));
  Press(ControlAccept);
  EXPECT_EQ(OpenResource(), 6167);
  ExpectControls({"RatioStart", "RatioEnd", "PowerStart", "PowerEnd", "AlphaStart", "AlphaEnd",
                  "DfIntervals", ControlAccept, "df-vs-alpha", "df-vs-power", "df-vs-ratio"});
}

TEST_F(TwoVariances, ShowsItsPowerTable) {
  OpenResults({ModePower, "V2", {{"Df1", "15"}, {"Df2", "25"}}});
  ASSERT_EQ(Press(ControlAccept), 1);
  EXPECT_EQ(LastTable().code, 128);
  EXPECT_THAT(Headings(),
              ElementsAre("Power Calculation", "Two Variances, F-Test", "H0: Var1 =  Var2"));
  EXPECT_THAT(RowTitles(),
              ElementsAre("Group 1 Df (Df1)", "Group 2 Df (Df2)", "Group 1 Variance (Var1)",
                          "Group 2 Variance (Var2)", "Type I Error Rate (Alpha)", "Power"));
  EXPECT_THAT(RowValues(),
              ElementsAre("15", "25", "2", "1", "0.05", Shown(PowerOfTwo(0, 15, 25, 2))));
}

TEST_F(TwoVariances, ShowsItsSizeTableByWhatIsVaried) {
  OpenResults({ModeSampleSize, "V2"});
  ASSERT_EQ(Press(ControlAccept), 1);
  EXPECT_EQ(LastTable().code, 129);
  EXPECT_THAT(Headings(),
              ElementsAre("Sample Size Calculation", "Two Variances, F-Test", "H0: Var1 =  Var2"));
  EXPECT_THAT(RowTitles(), ElementsAre("Variance Ratio (Var1/Var2)", "Type I Error Rate (Alpha)",
                                       "Power Goal", "Actual Power for Required Df",
                                       "Required Df1 (Varied)", "Required Df2 (Varied)"));
  const int equal = static_cast<int>(Row("Required Df1 (Varied)"));
  EXPECT_THAT(RowValues(), ElementsAre("2", "0.05", "0.9", Shown(PowerOfTwo(0, equal, equal, 2)),
                                       std::to_string(equal), std::to_string(equal)));
  EXPECT_GT(PowerOfTwo(0, equal, equal, 2), 0.9);
  EXPECT_LE(PowerOfTwo(0, equal - 1, equal - 1, 2), 0.9);
  OpenResults({ModeSampleSize, "V2", {{"Df2", "200"}}, {"DfToVary=df1", "H0Type=upper"}});
  ASSERT_EQ(Press(ControlAccept), 1);
  EXPECT_EQ(Headings()[2], "H0: Var1 <= Var2");
  EXPECT_EQ(RowTitles()[5], "Fixed Df2 (Specified by User)");
  const int df1 = static_cast<int>(Row("Required Df1 (Varied)"));
  EXPECT_THAT(RowValues(), ElementsAre("2", "0.05", "0.9", Shown(PowerOfTwo(1, df1, 200, 2)),
                                       std::to_string(df1), "200"));
  EXPECT_LE(PowerOfTwo(1, df1 - 1, 200, 2), 0.9);
}

TEST_F(TwoVariances, ARatioBelowOneKeepsItsOwnPower) {
  OpenResults({ModeSampleSize, "V2", {{"Ratio", "0.5"}}});
  ASSERT_EQ(Press(ControlAccept), 1);
  const int df = static_cast<int>(Row("Required Df1 (Varied)"));
  EXPECT_NEAR(Row("Actual Power for Required Df"), PowerOfTwo(0, df, df, 0.5), 1e-9);
}

TEST_F(TwoVariances, WritesItsReports) {
  const std::string goal =
      "\r\nOne goal of the proposed study is to compare the variances of two populations. ";
  const std::string test =
      "\r\nAn F-test will be performed, with the Type I Error rate (alpha) set at 0.05. ";
  OpenResults({ModePower, "V2", {{"Df1", "15"}, {"Df2", "25"}, {"Var1", "3"}}, {"H0Type=upper"}});
  Press(ControlAccept);
  EXPECT_THAT(
      Paragraphs(),
      ElementsAre("\r\nPower Analysis -- F-Test for Comparing Two Variances", goal, test, kTails[1],
                  "\r\nAssume that, in the sampled populations, the actual variances are 3 "
                  "in Group 1 and 1 in Group 2. ",
                  "\r\nWith the proposed degrees of freedom set at 15 in Group 1 and 25 in "
                  "Group 2, the study will have a power of " +
                      Percent(Row("Power")) + ". "));
  OpenResults({ModeSampleSize, "V2", {}, {"H0Type=two-sided"}});
  Press(ControlAccept);
  const std::string title = "\r\nSample Size Analysis -- F-Test for Comparing Two Variances";
  const std::string ratio =
      "\r\nAssume that, in the sampled population, the ratio of Variance 1 to Variance 2 "
      "(Var1/Var2) is 2.";
  std::string df = Shown(Row("Required Df1 (Varied)"));
  EXPECT_THAT(Paragraphs(),
              ElementsAre(title, goal, test, kTails[0], ratio,
                          "\r\nTo achieve the requested power of 90.00%, with the restriction that "
                          "degrees of freedom for the two groups are equal, at least Df = " +
                              df + " degrees of freedom are required in both groups. ",
                          "\r\n\r\nWith Df = " + df + " in each group, the actual power is " +
                              Percent(Row("Actual Power for Required Df")) + ". "));
  OpenResults({ModeSampleSize, "V2", {{"Df2", "200"}}, {"DfToVary=df1"}});
  Press(ControlAccept);
  df = Shown(Row("Required Df1 (Varied)"));
  EXPECT_THAT(
      Paragraphs(),
      ElementsAre(title, goal, test, kTails[0], ratio,
                  "\r\nTo achieve the requested power of 90.00%, with Df2 fixed at 200, at least "
                  "Df1 = " +
                      df + " degrees of freedom are required in group 1.  \r\n\r\nWith Df1 = " +
                      df + " and Df2 = 200, the actual power is " +
                      Percent(Row("Actual Power for Required Df")) + ". "));
}

TEST_F(TwoVariances, DrawsItsPlots) {
  ExpectPlots({ModePower, "V2", {{"Df1", "15"}, {"Df2", "25"}}}, {},
              "Two Variances: Power Calculation", "Two Variances, F-Test (H0: Var1 =  Var2)",
              {{"power-vs-alpha", 15, "Power vs. Alpha (Var1 = 2, Var2 = 1, Df1 = 15, Df2 = 25)",
                "Type I Error Rate (Alpha)", "Power"},
               {"power-vs-df", 22, "Power vs. Df (Var1 = 2, Var2 = 1, Alpha = 0.05)",
                "Degrees of Freedom (Df1 = Df2)", "Power"},
               {"power-vs-df1", 22, "Power vs. Df (Var1 = 2, Var2 = 1, Alpha = 0.05)",
                "Degrees of Freedom (Df1) (Df2 = 25)", "Power"},
               {"power-vs-df2", 22, "Power vs. Df (Var1 = 2, Var2 = 1, Alpha = 0.05)",
                "Degrees of Freedom (Df2) (Df1 = 15)", "Power"},
               {"power-vs-ratio", 24, "Power vs. Variance Ratio (Df1 = 15, Df2 = 25, Alpha = 0.05)",
                "Variance Ratio ( Var1/Var2 )", "Power"}});
  ExpectPlots({ModeSampleSize, "V2"}, {}, "Two Variances: Sample Size Calculation",
              "Two Variances, F-Test (H0: Var1 =  Var2)",
              {{"df-vs-alpha", 3, "Df vs. Alpha (Var1/Var2 = 2, Power = 0.9)",
                "Type I Error Rate (Alpha)", "Degrees of Freedom (Df1 = Df2)"},
               {"df-vs-power", 2, "Df vs. Power (Var1/Var2 = 2, Alpha = 0.05)", "Power Goal",
                "Degrees of Freedom (Df1 = Df2)"},
               {"df-vs-ratio", 12, "Df vs. Variance Ratio (Alpha = 0.05, Power = 0.9)",
                "Population Variance Ratio (Var1/Var2)", "Degrees of Freedom (Df1 = Df2)"}});
  OpenResults({ModeSampleSize, "V2", {{"Df2", "200"}}, {"DfToVary=df1"}});
  for (const char* control : {"df-vs-alpha", "df-vs-power", "df-vs-ratio"}) {
    ASSERT_EQ(Press(control), 1);
    EXPECT_EQ(LastChart().yLabel, "Degrees of Freedom (Df1) (Df2 = 200)");
  }
}

TEST_F(TwoVariances, EachPowerPlotVariesWhatItNames) {
  OpenResults({ModePower, "V2", {{"Df1", "15"}, {"Df2", "25"}}});
  Press("power-vs-df");
  EXPECT_NEAR(LastChart().y[0], PowerOfTwo(0, 5, 5, 2), 1e-6);
  Press("power-vs-df1");
  EXPECT_NEAR(LastChart().y[0], PowerOfTwo(0, 5, 25, 2), 1e-6);
  Press("power-vs-df2");
  EXPECT_NEAR(LastChart().y[0], PowerOfTwo(0, 15, 5, 2), 1e-6);
  Press("power-vs-ratio");
  EXPECT_NEAR(LastChart().y[0], PowerOfTwo(0, 15, 25, 1.5), 1e-6);
  Press("power-vs-alpha");
  EXPECT_NEAR(LastChart().y[0], PowerOfTwo(0, 15, 25, 2, 0.01), 1e-6);
}

TEST_F(TwoVariances, EqualVariancesLeadBackToTheParameters) {
  OpenResults({ModePower, "V2", {{"Var1", "1"}}});
  ExpectRefused(ControlAccept, {text::NullHypothesisTrue}, parameters_);
  host_.ClearMessages();
  OpenResults({ModeSampleSize, "V2", {{"Ratio", "1"}}});
  ExpectRefused(ControlAccept, {text::NullHypothesisTrue}, parameters_);
  host_.ClearMessages();
  OpenResults({ModeSampleSize, "V2", {{"Ratio", "1.0009"}}});
  ExpectRefused(ControlAccept, {text::NullHypothesisNearlyTrue}, parameters_);
  EXPECT_THAT(host_.messages()[0].text, HasSubstr("within a tolerance of 0.001 of"));
  host_.ClearMessages();
  OpenResults({ModePower, "V2", {{"Var1", "1.0009"}}});
  EXPECT_EQ(Press(ControlAccept), 1);
  EXPECT_THAT(host_.messages(), IsEmpty());
}

// The power procedure checks the ratio itself, which is never below 0.
TEST_F(TwoVariances, TheLowerTailIsAlwaysShownAsATrueNull) {
  OpenResults({ModePower, "V2", {{"Var1", "1"}, {"Var2", "4"}}, {"H0Type=lower"}});
  EXPECT_EQ(Press(ControlAccept), 1);
  EXPECT_THAT(MessageIds(), ElementsAre(text::NullHypothesisTrue));
  EXPECT_EQ(host_.messageCalls(), 1);
  EXPECT_EQ(OpenResource(), results_) << "the dialog's own check has passed";
  EXPECT_EQ(Headings()[2], "H0: Var1 >= Var2");
  EXPECT_THAT(RowValues(), ElementsAre("20", "20", "1", "4", "0.05", "-"));
  EXPECT_THAT(Paragraphs(), SizeIs(6));
  EXPECT_EQ(Paragraphs()[3], kTails[2]);
  EXPECT_THAT(Paragraphs().back(), HasSubstr("power of -----. "));
  host_.ClearMessages();
  host_.TakeWorkbook();
  OpenResults({ModePower, "V2", {{"Var1", "4"}, {"Var2", "1"}}, {"H0Type=lower"}});
  ExpectRefused(ControlAccept, {text::NullHypothesisTrue}, parameters_);
}

TEST_F(TwoVariances, ASearchInTheLowerTailClimbsToTheLimit) {
  block().V2.Upper.Df1 = 200;
  OpenResults({ModeSampleSize, "V2", {{"Ratio", "0.5"}}, {"H0Type=lower"}});
  ExpectRefused(ControlAccept, {text::NullHypothesisTrue, text::SearchTooLarge}, results_);
  EXPECT_GT(host_.messages()[0].count, 10);
  EXPECT_THAT(host_.messages()[1].text, HasSubstr("(greater than 200)"));
}

TEST_F(TwoVariances, ASizeInTheUpperTailNeedsARatioAboveOne) {
  OpenResults({ModeSampleSize, "V2", {{"Ratio", "0.5"}}, {"H0Type=upper"}});
  ExpectRefused(ControlAccept, {text::NullHypothesisTrue}, parameters_);
}

TEST_F(TwoVariances, VaryingTheSecondGroupIsRefused) {
  OpenParameters({ModeSampleSize, "V2"});
  block().V2.Working.DfToVary = 2;
  ExpectRefused(ControlAccept, {12851}, parameters_);
  EXPECT_EQ(host_.messages()[0].text,
            "The current value for Df To Vary is outside the permissible range.\r\nThe appropriate "
            "range is 0 <= Df To Vary <= 1.\r\n Current value is 2.");
  OpenResults({ModeSampleSize, "V2"});
  block().V2.Working.DfToVary = 2;
  for (const ControlName& control : std::initializer_list<ControlName>{
           1, "df-vs-alpha", "df-vs-power", "df-vs-ratio", ControlChangeParams}) {
    host_.ClearMessages();
    ExpectRefused(control, {12851}, results_);
  }
  EXPECT_EQ(block().V2.Committed.DfToVary, 0);
}

TEST_F(TwoVariances, ARangeBeforeItIsNamedFirst) {
  OpenParameters({ModeSampleSize, "V2"});
  block().V2.Working.DfToVary = 2;
  Type("Alpha", "0.9");
  ExpectRefused(ControlAccept, {text::RangeReal}, parameters_);
}

TEST_F(TwoVariances, PowerDoesNotAskWhatIsVaried) {
  OpenParameters({ModePower, "V2"});
  block().V2.Working.DfToVary = 2;
  Press(ControlAccept);
  EXPECT_EQ(Press(ControlAccept), 1);
  EXPECT_THAT(host_.messages(), IsEmpty());
}

TEST_F(TwoVariances, OneDegreeOfFreedomCanDo) {
  OpenResults({ModeSampleSize, "V2", {{"Ratio", "1e12"}}, {"H0Type=upper"}});
  ASSERT_EQ(Press(ControlAccept), 1);
  EXPECT_EQ(Row("Required Df1 (Varied)"), 1);
}

TEST_F(TwoVariances, ARatioPlotHasAPowerAtEqualVariances) {
  OpenResults({ModePower, "V2"});
  Type("RatioStart", "0.5");
  Type("RatioEnd", "1.5");
  Type("DfIntervals", "4");
  ASSERT_EQ(Press("power-vs-ratio"), 1);
  EXPECT_THAT(host_.messages(), IsEmpty());
  ASSERT_THAT(LastChart().y, SizeIs(5));
  EXPECT_NEAR(LastChart().y[2], 0.05, 1e-6);
}

TEST_F(TwoVariances, ASizePlotRefusesThePointOfEqualVariances) {
  OpenResults({ModeSampleSize, "V2"});
  Type("RatioStart", "0.5");
  Type("RatioEnd", "1.5");
  Type("DfIntervals", "4");
  ASSERT_EQ(Press("df-vs-ratio"), 1);
  EXPECT_THAT(MessageIds(), ElementsAre(text::NullHypothesisTrue));
  ASSERT_THAT(LastChart().y, SizeIs(4));
  EXPECT_EQ(LastChart().y[2], -9999);
}

TEST_F(TwoVariances, APlotInTheLowerTailSpeaksAtEachPointAndIsNotDrawn) {
  OpenResults({ModePower, "V2", {{"Var1", "1"}, {"Var2", "4"}}, {"H0Type=lower"}});
  EXPECT_EQ(Press("power-vs-alpha"), 0);
  EXPECT_THAT(MessageIds(), ElementsAre(text::NullHypothesisTrue));
  EXPECT_EQ(host_.messageCalls(), 20);
  EXPECT_THAT(Items<Chart>(), IsEmpty());
}

// The ratio 0 passes the dialog's own check and is the null of the power procedure.
TEST_F(TwoVariances, WithoutAFirstVarianceThePowerIsBlank) {
  OpenResults({ModePower, "V2", {{"Var1", "0"}, {"Var2", "1"}}});
  EXPECT_EQ(Press(ControlAccept), 1);
  EXPECT_THAT(MessageIds(), ElementsAre(text::NullHypothesisTrue));
  EXPECT_EQ(host_.messageCalls(), 1);
  EXPECT_EQ(RowValues().back(), "-");
}

TEST_F(TwoVariances, WithoutASecondVarianceThePowerIsFull) {
  OpenResults({ModePower, "V2", {{"Var1", "2"}, {"Var2", "0"}}});
  EXPECT_EQ(Press(ControlAccept), 1);
  EXPECT_THAT(host_.messages(), IsEmpty());
  EXPECT_EQ(Row("Power"), 1);
  EXPECT_EQ(Press("power-vs-alpha"), 1);
}

TEST_F(TwoVariances, WithoutAnyVarianceTheNullIsTrue) {
  OpenResults({ModePower, "V2", {{"Var1", "0"}, {"Var2", "0"}}});
  ExpectRefused(ControlAccept, {text::NullHypothesisTrue}, parameters_);
}

TEST_F(TwoVariances, ShowTheirInputsInTheFrame) {
  OpenResults({ModePower, "V2"});
  EXPECT_EQ(TextOf(ControlSummary),
            "Power Calculation\nGroup 1 Df (Df1): 20\nGroup 2 Df (Df2): 20\nGroup 1 Variance "
            "(Var1): 2\nGroup 2 Variance (Var2): 1\nType I Error Rate (Alpha): 0.05");
  OpenResults({ModeSampleSize, "V2"});
  EXPECT_EQ(TextOf(ControlSummary),
            "Sample Size Calculation\nVariance Ratio (Var1/Var2): 2\nType I Error Rate (Alpha): "
            "0.05\nPower Goal: 0.9");
}

}  // namespace
}  // namespace poweranalysis
