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
std::string Percent(double power) {
  char text[32];
  std::snprintf(text, sizeof text, "%-5.2f%%", power * 100);
  return text;
}

const std::string kTails[] = {
    "\r\nThe test is two-tailed, which means that either a positive or negative deviation from the "
    "hypothesized value could be declared significant.  ",
    "\r\nThe test is one-tailed, so that only a positive deviation from the hypothesized value "
    "could be declared significant.  ",
    "\r\nThe test is one-tailed, so that only a negative deviation from the hypothesized value "
    "could be declared significant.  "};

// --- One variance.

TEST_F(OneVariance, HasItsControls) {
  OpenParameters(ModePower, "V1");
  EXPECT_EQ(OpenResource(), 6151);
  ExpectControls({21040, 21026, 111, 21005, 1210, 1211, 1212, 116, 13402});
  EXPECT_EQ(form().Find(1213), nullptr) << "the fourth form has no button";
  EXPECT_EQ(TextOf(21040), "2");
  EXPECT_EQ(TextOf(21026), "1");
  EXPECT_EQ(TextOf(21005), "10");
  for (const int form_ : {0, 1, 2}) {
    host_.Press(1210 + form_);
    EXPECT_EQ(block().V1.Working.H0Type, form_);
  }
  host_.Press(1210);
  host_.Press(1);
  EXPECT_EQ(OpenResource(), 6153);
  ExpectControls({21077, 21076, 138, 139, 21013, 21011, 21012, 1, 203, 204, 205});
  Leave();
  OpenParameters(ModeSampleSize, "V1");
  EXPECT_EQ(OpenResource(), 6155);
  ExpectControls({21040, 21026, 114, 111, 1210, 1211, 1212, 116, 13402});
  EXPECT_EQ(form().Find(21005), nullptr);
  host_.Press(1);
  EXPECT_EQ(OpenResource(), 6157);
  ExpectControls({403, 406, 21077, 21076, 138, 139, 21012, 1, 603, 604, 605});
}

TEST_F(OneVariance, ShowsItsPowerTableByForm) {
  const char* const headings[] = {"H0: Var =  Var0", "H0: Var <= Var0", "H0: Var >= Var0"};
  for (const int form_ : {0, 1, 2}) {
    OpenResultsWith(ModePower, "V1", {{21040, form_ == 2 ? "0.5" : "2"}}, {1210 + form_});
    ASSERT_EQ(host_.Press(1), 1);
    EXPECT_EQ(LastTable().code, 112);
    EXPECT_THAT(Headings(),
                ElementsAre("Power Calculation", "One Variance, Chi-Square Test", headings[form_]));
    EXPECT_THAT(RowTitles(),
                ElementsAre("Degrees of Freedom (Df)", "Population Variance (Var)",
                            "Variance under H0 (Var0)", "Type I Error Rate (Alpha)", "Power"));
    const double r = form_ == 2 ? 2 : 0.5;
    EXPECT_THAT(RowValues(), ElementsAre("10", form_ == 2 ? "0.5" : "2", "1", "0.05",
                                         Shown(PowerOfOne(form_, 10, r))));
    Leave();
  }
  OpenResults(ModePower, "V1");
  host_.Press(1211);
  Leave();
  OpenResultsWith(ModePower, "V1", {{21040, "2"}}, {1210});
  host_.Press(1);
  EXPECT_NEAR(Row("Power"), 0.421063299, 1e-6);
  Leave();
  OpenResultsWith(ModePower, "V1", {}, {1211});
  host_.Press(1);
  EXPECT_NEAR(Row("Power"), 0.517598774, 1e-6);
}

TEST_F(OneVariance, ShowsItsSizeTableWithTheNullVarianceFirst) {
  OpenResultsWith(ModeSampleSize, "V1", {{21026, "3"}});
  ASSERT_EQ(host_.Press(1), 1);
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
    OpenResultsWith(ModePower, "V1", {{21040, var}}, {1210 + form_});
    host_.Press(1);
    EXPECT_THAT(Paragraphs(),
                ElementsAre("\r\nPower Analysis -- Chi-Square Test on One Variance", goal, test,
                            kTails[form_], assumption,
                            "\r\nWith the proposed degrees of freedom set at 10, the study will "
                            "have a power of " +
                                Percent(Row("Power")) + "."));
    Leave();
    OpenResultsWith(ModeSampleSize, "V1", {{21040, var}}, {1210 + form_});
    host_.Press(1);
    const std::string df = Shown(Row("Required Degrees of Freedom (Df)"));
    EXPECT_THAT(Paragraphs(),
                ElementsAre("\r\nSample Size Analysis -- Chi-Square Test on One Variance", goal,
                            test, kTails[form_], assumption,
                            "\r\nTo achieve the requested power of 90.00%, at least " + df +
                                " degrees of freedom are required. ",
                            "With " + df + " degrees of freedom, the actual power is " +
                                Percent(Row("Actual Power for Required Df")) + "."));
    Leave();
  }
}

TEST_F(OneVariance, DrawsItsPlots) {
  OpenResults(ModePower, "V1");
  ExpectPlots(
      "One Variance: Power Calculation", "One Variance, Chi-Square Test (H0: Var =  Var0 1)",
      {{203, "Power vs. Df", 22, "Power vs. Df (Population Variance = 2, Alpha = 0.05)",
        "Degrees of Freedom (Df)", "Power"},
       {204, "Power vs. Variance", 23, "Power vs. Population Variance (Alpha = 0.05, Df = 10)",
        "Population Variance (Var)", "Power"},
       {205, "Power vs. Alpha", 15, "Power vs. Alpha (Population Variance = 2, Df = 10)",
        "Type I Error Rate (Alpha)", "Power"}});
  Leave();
  OpenResultsWith(ModeSampleSize, "V1", {{21026, "0.75"}}, {1211});
  ExpectPlots(
      "One Variance: Sample Size Calculation",
      "One Variance, Chi-Square Test (H0: Var <= Var0 0.75)",
      {{603, "Df vs. Variance", 11, "Df vs. Population Variance (Power = 0.9, Alpha = 0.05)",
        "Population Variance (Var)", "Required Degrees of Freedom (Df)"},
       {604, "Df vs. Alpha", 3, "Df vs. Alpha (Population Variance = 2, Alpha = 0.05)",
        "Type I Error Rate (Alpha)", "Required Degrees of Freedom (Df)"},
       {605, "Df vs. Power", 2, "Df vs. Power (Population Variance = 2, Alpha = 0.05)",
        "Power Goal", "Required Degrees of Freedom (Df)"}});
}

TEST_F(OneVariance, APlotAgreesWithTheDistribution) {
  OpenResults(ModePower, "V1");
  host_.Press(203);
  const Chart df = LastChart();
  ASSERT_THAT(df.x, SizeIs(20));
  for (std::size_t i = 0; i < df.x.size(); ++i) {
    EXPECT_NEAR(df.y[i], PowerOfOne(0, static_cast<int>(df.x[i]), 0.5), 1e-6);
  }
  host_.Press(204);
  EXPECT_NEAR(LastChart().y[0], PowerOfOne(0, 10, 1 / 1.15), 1e-6);
  host_.Press(205);
  EXPECT_NEAR(LastChart().y[0], PowerOfOne(0, 10, 0.5, 0.01), 1e-6);
}

TEST_F(OneVariance, EqualVariancesLeadBackToTheParameters) {
  for (const int mode : {ModePower, ModeSampleSize}) {
    host_.ClearMessages();
    OpenResultsWith(mode, "V1", {{21040, "1"}});
    host_.Type(21012, "5");
    ExpectRefused(1, {12873}, mode == ModePower ? 6151 : 6155);
    EXPECT_EQ(block().V1.Committed.DfIntervals, 19);
    Leave();
  }
}

TEST_F(OneVariance, ASmallerVarianceIsATrueNullOfTheUpperTail) {
  OpenResultsWith(ModePower, "V1", {{21040, "0.5"}}, {1211});
  ExpectRefused(1, {12873}, 6151);
}

TEST_F(OneVariance, NearlyEqualVariancesStopTheSearchAlone) {
  OpenResultsWith(ModeSampleSize, "V1", {{21040, "1.0199"}});
  ExpectRefused(1, {12874}, 6155);
  EXPECT_THAT(host_.messages()[0].text, HasSubstr("within a tolerance of 0.02 of"));
  EXPECT_EQ(host_.messageCalls(), 1);
  Leave();
  host_.ClearMessages();
  OpenResultsWith(ModePower, "V1", {{21040, "1.0199"}});
  EXPECT_EQ(host_.Press(1), 1);
  EXPECT_THAT(host_.messages(), IsEmpty());
}

TEST_F(OneVariance, OneDegreeOfFreedomCanDo) {
  OpenResultsWith(ModeSampleSize, "V1", {{21040, "1000000"}}, {1211});
  ASSERT_EQ(host_.Press(1), 1);
  EXPECT_EQ(Row("Required Degrees of Freedom (Df)"), 1);
  EXPECT_NEAR(Row("Actual Power for Required Df"), PowerOfOne(1, 1, 1e-6), 1e-12);
  EXPECT_GT(Row("Actual Power for Required Df"), 0.9);
}

// The limit is a number of the search's own; the message shows the bound.
TEST_F(OneVariance, ATooLargeSizeShowsTheBoundThatDidNotStopIt) {
  block().V1.Upper.DegreesOfFreedom = 777;
  OpenResultsWith(ModeSampleSize, "V1", {{21040, "1.021"}, {111, "0.0001"}, {114, "0.999"}},
                  {1211});
  ExpectRefused(1, {12381}, 6157);
  EXPECT_THAT(host_.messages()[0].text, HasSubstr("(greater than 777)"));
  EXPECT_THAT(host_.messages()[0].text, HasSubstr("extremely large N"));
  Leave();
  OpenResultsWith(ModeSampleSize, "V1", {{21040, "1.05"}});
  EXPECT_EQ(host_.Press(1), 1);
  EXPECT_GT(Row("Required Degrees of Freedom (Df)"), 777);
}

TEST_F(OneVariance, ItsSearchNamesDegreesOfFreedomInTheBar) {
  OpenResults(ModeSampleSize, "V1");
  host_.calls.progress.clear();
  host_.Press(1);
  ASSERT_FALSE(host_.calls.progress.empty());
  EXPECT_EQ(host_.calls.progress.front(), "d_pbar Searching for required DF");
}

TEST_F(OneVariance, TheFourthFormHasNoPowerAndNoHeading) {
  OpenParameters(ModePower, "V1");
  block().V1.Working.H0Type = 3;
  host_.Press(1);
  EXPECT_EQ(OpenResource(), 6153);
  EXPECT_EQ(host_.Press(1), 1);
  EXPECT_THAT(Headings(), ElementsAre("Power Calculation", "One Variance, Chi-Square Test"));
  EXPECT_EQ(RowValues().back(), "-");
  EXPECT_THAT(Paragraphs(), SizeIs(5)) << "no sentence on tails";
  EXPECT_THAT(Paragraphs().back(), HasSubstr("power of -----."));
  Leave();
  host_.TakeWorkbook();
  OpenParameters(ModeSampleSize, "V1");
  block().V1.Working.H0Type = 3;
  host_.Press(1);
  EXPECT_EQ(host_.Press(1), 0);
  EXPECT_THAT(host_.workbook().items, IsEmpty());
  EXPECT_EQ(OpenResource(), 6157);
  host_.Press(603);
  EXPECT_THAT(Items<Chart>(), IsEmpty());
}

TEST_F(OneVariance, AVariancePlotAcrossTheNullKeepsTheRefusedPoint) {
  OpenResults(ModePower, "V1");
  host_.Type(21077, "0.5");
  host_.Type(21076, "1.5");
  host_.Type(21012, "4");
  EXPECT_EQ(host_.Press(204), 1);
  ASSERT_THAT(LastChart().y, SizeIs(4));
  EXPECT_EQ(LastChart().y[2], -9999);
  EXPECT_EQ(LastChart().x[3], 1.25f);
  EXPECT_THAT(MessageIds(), ElementsAre(12873));
  EXPECT_EQ(host_.messageCalls(), 1);
}

TEST_F(OneVariance, NegativeVariancesAreFailedPoints) {
  OpenResults(ModePower, "V1");
  host_.Type(21077, "-2");
  host_.Type(21076, "2");
  host_.Type(21012, "4");
  EXPECT_EQ(host_.Press(204), 1);
  EXPECT_EQ(LastChart().y[0], -9999);
  EXPECT_EQ(LastChart().y[1], -9999);
}

TEST_F(OneVariance, ATrueNullEndsAPlotThatFixesTheVariance) {
  OpenResultsWith(ModePower, "V1", {{21040, "1"}});
  for (const int control : {203, 205}) {
    host_.ClearMessages();
    ExpectRefused(control, {12873}, 6153);
  }
  EXPECT_EQ(host_.Press(204), 1);
}

TEST_F(OneVariance, WithoutVariancesTheNullIsTrue) {
  OpenResultsWith(ModePower, "V1", {{21040, "0"}, {21026, "0"}});
  ExpectRefused(1, {12873}, 6151);
}

TEST_F(OneVariance, AZeroVarianceHasFullPower) {
  for (const auto& [var, var0] : {std::pair{"0", "1"}, {"2", "0"}}) {
    OpenResultsWith(ModePower, "V1", {{21040, var}, {21026, var0}});
    EXPECT_EQ(host_.Press(1), 1);
    EXPECT_EQ(Row("Power"), 1);
    EXPECT_THAT(Paragraphs().back(), HasSubstr("power of 100.00%."));
    Leave();
  }
}

TEST_F(OneVariance, ALetterInItsDegreesStoresZeroAndOkNamesThem) {
  OpenParameters(ModePower, "V1");
  host_.Type(21005, "x");
  EXPECT_EQ(block().V1.Working.DegreesOfFreedom, 0);
  ExpectRefused(1, {12852}, 6151);
  EXPECT_THAT(host_.messages()[0].text, HasSubstr("1 <= Df <= 150000"));
}

// --- Two variances.

TEST_F(TwoVariances, HasItsControls) {
  OpenParameters(ModePower, "V2");
  EXPECT_EQ(OpenResource(), 6161);
  ExpectControls({21074, 21075, 111, 21009, 21010, 1210, 1211, 1212, 116, 13402});
  EXPECT_EQ(form().Find(22040), nullptr);
  EXPECT_EQ(form().Find(114), nullptr);
  host_.Press(1);
  EXPECT_EQ(OpenResource(), 6163);
  ExpectControls({21056, 21055, 138, 139, 21013, 21011, 21012, 1, 203, 204, 205, 206, 207});
  Leave();
  OpenParameters(ModeSampleSize, "V2");
  EXPECT_EQ(OpenResource(), 6165);
  ExpectControls({21054, 114, 111, 22040, 22041, 21010, 1210, 1211, 1212, 116, 13402});
  EXPECT_EQ(form().Find(22042), nullptr) << "the dialog offers no such choice";
  EXPECT_EQ(form().Find(21074), nullptr);
  EXPECT_EQ(form().Find(21009), nullptr);
  EXPECT_TRUE(form().IsDlgButtonChecked(22040));
  EXPECT_EQ(host_.Press(22041), 1);
  EXPECT_EQ(block().V2.Working.DfToVary, 1);
  EXPECT_THAT(form().Find(22041)->spec.caption, HasSubstr("Vary Df1 (Fixed Df2)"));
  host_.Press(1);
  EXPECT_EQ(OpenResource(), 6167);
  ExpectControls({21056, 21055, 403, 406, 138, 139, 21012, 1, 603, 604, 605});
}

TEST_F(TwoVariances, ShowsItsPowerTable) {
  OpenResultsWith(ModePower, "V2", {{21009, "15"}, {21010, "25"}});
  ASSERT_EQ(host_.Press(1), 1);
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
  OpenResults(ModeSampleSize, "V2");
  ASSERT_EQ(host_.Press(1), 1);
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
  Leave();
  OpenResultsWith(ModeSampleSize, "V2", {{21010, "200"}}, {22041, 1211});
  ASSERT_EQ(host_.Press(1), 1);
  EXPECT_EQ(Headings()[2], "H0: Var1 <= Var2");
  EXPECT_EQ(RowTitles()[5], "Fixed Df2 (Specified by User)");
  const int df1 = static_cast<int>(Row("Required Df1 (Varied)"));
  EXPECT_THAT(RowValues(), ElementsAre("2", "0.05", "0.9", Shown(PowerOfTwo(1, df1, 200, 2)),
                                       std::to_string(df1), "200"));
  EXPECT_LE(PowerOfTwo(1, df1 - 1, 200, 2), 0.9);
}

TEST_F(TwoVariances, ARatioBelowOneKeepsItsOwnPower) {
  OpenResultsWith(ModeSampleSize, "V2", {{21054, "0.5"}});
  ASSERT_EQ(host_.Press(1), 1);
  const int df = static_cast<int>(Row("Required Df1 (Varied)"));
  EXPECT_NEAR(Row("Actual Power for Required Df"), PowerOfTwo(0, df, df, 0.5), 1e-9);
}

TEST_F(TwoVariances, WritesItsReports) {
  const std::string goal =
      "\r\nOne goal of the proposed study is to compare the variances of two populations. ";
  const std::string test =
      "\r\nAn F-test will be performed, with the Type I Error rate (alpha) set at 0.05. ";
  OpenResultsWith(ModePower, "V2", {{21009, "15"}, {21010, "25"}, {21074, "3"}}, {1211});
  host_.Press(1);
  EXPECT_THAT(
      Paragraphs(),
      ElementsAre("\r\nPower Analysis -- F-Test for Comparing Two Variances", goal, test, kTails[1],
                  "\r\nAssume that, in the sampled populations, the actual variances are 3 "
                  "in Group 1 and 1 in Group 2. ",
                  "\r\nWith the proposed degrees of freedom set at 15 in Group 1 and 25 in "
                  "Group 2, the study will have a power of " +
                      Percent(Row("Power")) + ". "));
  Leave();
  OpenResultsWith(ModeSampleSize, "V2", {}, {1210});
  host_.Press(1);
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
  Leave();
  OpenResultsWith(ModeSampleSize, "V2", {{21010, "200"}}, {22041});
  host_.Press(1);
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
  OpenResultsWith(ModePower, "V2", {{21009, "15"}, {21010, "25"}});
  ExpectPlots(
      "Two Variances: Power Calculation", "Two Variances, F-Test (H0: Var1 =  Var2)",
      {{203, "Power vs. Alpha", 15, "Power vs. Alpha (Var1 = 2, Var2 = 1, Df1 = 15, Df2 = 25)",
        "Type I Error Rate (Alpha)", "Power"},
       {204, "Power vs. Df", 22, "Power vs. Df (Var1 = 2, Var2 = 1, Alpha = 0.05)",
        "Degrees of Freedom (Df1 = Df2)", "Power"},
       {205, "Power vs. Df1", 22, "Power vs. Df (Var1 = 2, Var2 = 1, Alpha = 0.05)",
        "Degrees of Freedom (Df1) (Df2 = 25)", "Power"},
       {206, "Power vs. Df2", 22, "Power vs. Df (Var1 = 2, Var2 = 1, Alpha = 0.05)",
        "Degrees of Freedom (Df2) (Df1 = 15)", "Power"},
       {207, "Power vs. Ratio", 24, "Power vs. Variance Ratio (Df1 = 15, Df2 = 25, Alpha = 0.05)",
        "Variance Ratio ( Var1/Var2 )", "Power"}});
  Leave();
  OpenResults(ModeSampleSize, "V2");
  ExpectPlots("Two Variances: Sample Size Calculation", "Two Variances, F-Test (H0: Var1 =  Var2)",
              {{603, "Df vs. Alpha", 3, "Df vs. Alpha (Var1/Var2 = 2, Power = 0.9)",
                "Type I Error Rate (Alpha)", "Degrees of Freedom (Df1 = Df2)"},
               {604, "Df vs. Power", 2, "Df vs. Power (Var1/Var2 = 2, Alpha = 0.05)", "Power Goal",
                "Degrees of Freedom (Df1 = Df2)"},
               {605, "Df vs. Ratio", 12, "Df vs. Variance Ratio (Alpha = 0.05, Power = 0.9)",
                "Population Variance Ratio (Var1/Var2)", "Degrees of Freedom (Df1 = Df2)"}});
  Leave();
  OpenResultsWith(ModeSampleSize, "V2", {{21010, "200"}}, {22041});
  for (const int control : {603, 604, 605}) {
    ASSERT_EQ(host_.Press(control), 1);
    EXPECT_EQ(LastChart().yLabel, "Degrees of Freedom (Df1) (Df2 = 200)");
  }
}

TEST_F(TwoVariances, EachPowerPlotVariesWhatItNames) {
  OpenResultsWith(ModePower, "V2", {{21009, "15"}, {21010, "25"}});
  host_.Press(204);
  EXPECT_NEAR(LastChart().y[0], PowerOfTwo(0, 5, 5, 2), 1e-6);
  host_.Press(205);
  EXPECT_NEAR(LastChart().y[0], PowerOfTwo(0, 5, 25, 2), 1e-6);
  host_.Press(206);
  EXPECT_NEAR(LastChart().y[0], PowerOfTwo(0, 15, 5, 2), 1e-6);
  host_.Press(207);
  EXPECT_NEAR(LastChart().y[0], PowerOfTwo(0, 15, 25, 1.5), 1e-6);
  host_.Press(203);
  EXPECT_NEAR(LastChart().y[0], PowerOfTwo(0, 15, 25, 2, 0.01), 1e-6);
}

TEST_F(TwoVariances, EqualVariancesLeadBackToTheParameters) {
  OpenResultsWith(ModePower, "V2", {{21074, "1"}});
  ExpectRefused(1, {12873}, 6161);
  Leave();
  host_.ClearMessages();
  OpenResultsWith(ModeSampleSize, "V2", {{21054, "1"}});
  ExpectRefused(1, {12873}, 6165);
  Leave();
  host_.ClearMessages();
  OpenResultsWith(ModeSampleSize, "V2", {{21054, "1.0009"}});
  ExpectRefused(1, {12874}, 6165);
  EXPECT_THAT(host_.messages()[0].text, HasSubstr("within a tolerance of 0.001 of"));
  Leave();
  host_.ClearMessages();
  OpenResultsWith(ModePower, "V2", {{21074, "1.0009"}});
  EXPECT_EQ(host_.Press(1), 1);
  EXPECT_THAT(host_.messages(), IsEmpty());
}

// The power procedure checks the ratio itself, which is never below 0.
TEST_F(TwoVariances, TheLowerTailIsAlwaysShownAsATrueNull) {
  OpenResultsWith(ModePower, "V2", {{21074, "1"}, {21075, "4"}}, {1212});
  EXPECT_EQ(host_.Press(1), 1);
  EXPECT_THAT(MessageIds(), ElementsAre(12873));
  EXPECT_EQ(host_.messageCalls(), 1);
  EXPECT_EQ(OpenResource(), 6163) << "the dialog's own check has passed";
  EXPECT_EQ(Headings()[2], "H0: Var1 >= Var2");
  EXPECT_THAT(RowValues(), ElementsAre("20", "20", "1", "4", "0.05", "-"));
  EXPECT_THAT(Paragraphs(), SizeIs(6));
  EXPECT_EQ(Paragraphs()[3], kTails[2]);
  EXPECT_THAT(Paragraphs().back(), HasSubstr("power of -----. "));
  Leave();
  host_.ClearMessages();
  host_.TakeWorkbook();
  OpenResultsWith(ModePower, "V2", {{21074, "4"}, {21075, "1"}}, {1212});
  ExpectRefused(1, {12873}, 6161);
}

TEST_F(TwoVariances, ASearchInTheLowerTailClimbsToTheLimit) {
  block().V2.Upper.Df1 = 200;
  OpenResultsWith(ModeSampleSize, "V2", {{21054, "0.5"}}, {1212});
  ExpectRefused(1, {12873, 12381}, 6167);
  EXPECT_GT(host_.messages()[0].count, 10);
  EXPECT_THAT(host_.messages()[1].text, HasSubstr("(greater than 200)"));
}

TEST_F(TwoVariances, ASizeInTheUpperTailNeedsARatioAboveOne) {
  OpenResultsWith(ModeSampleSize, "V2", {{21054, "0.5"}}, {1211});
  ExpectRefused(1, {12873}, 6165);
}

TEST_F(TwoVariances, VaryingTheSecondGroupIsRefused) {
  OpenParameters(ModeSampleSize, "V2");
  block().V2.Working.DfToVary = 2;
  ExpectRefused(1, {12851}, 6165);
  EXPECT_EQ(host_.messages()[0].text,
            "The current value for Df To Vary is outside the permissible range.\r\nThe appropriate "
            "range is 0 <= Df To Vary <= 1.\r\n Current value is 2.");
  Leave();
  OpenResults(ModeSampleSize, "V2");
  block().V2.Working.DfToVary = 2;
  for (const int control : {1, 603, 604, 605, 208}) {
    host_.ClearMessages();
    ExpectRefused(control, {12851}, 6167);
  }
  EXPECT_EQ(block().V2.Committed.DfToVary, 0);
}

TEST_F(TwoVariances, ARangeBeforeItIsNamedFirst) {
  OpenParameters(ModeSampleSize, "V2");
  block().V2.Working.DfToVary = 2;
  host_.Type(111, "0.9");
  ExpectRefused(1, {12853}, 6165);
}

TEST_F(TwoVariances, PowerDoesNotAskWhatIsVaried) {
  OpenParameters(ModePower, "V2");
  block().V2.Working.DfToVary = 2;
  host_.Press(1);
  EXPECT_EQ(host_.Press(1), 1);
  EXPECT_THAT(host_.messages(), IsEmpty());
}

TEST_F(TwoVariances, OneDegreeOfFreedomCanDo) {
  OpenResultsWith(ModeSampleSize, "V2", {{21054, "1e12"}}, {1211});
  ASSERT_EQ(host_.Press(1), 1);
  EXPECT_EQ(Row("Required Df1 (Varied)"), 1);
}

TEST_F(TwoVariances, ARatioPlotHasAPowerAtEqualVariances) {
  OpenResults(ModePower, "V2");
  host_.Type(21056, "0.5");
  host_.Type(21055, "1.5");
  host_.Type(21012, "4");
  ASSERT_EQ(host_.Press(207), 1);
  EXPECT_THAT(host_.messages(), IsEmpty());
  ASSERT_THAT(LastChart().y, SizeIs(5));
  EXPECT_NEAR(LastChart().y[2], 0.05, 1e-6);
}

TEST_F(TwoVariances, ASizePlotRefusesThePointOfEqualVariances) {
  OpenResults(ModeSampleSize, "V2");
  host_.Type(21056, "0.5");
  host_.Type(21055, "1.5");
  host_.Type(21012, "4");
  ASSERT_EQ(host_.Press(605), 1);
  EXPECT_THAT(MessageIds(), ElementsAre(12873));
  ASSERT_THAT(LastChart().y, SizeIs(4));
  EXPECT_EQ(LastChart().y[2], -9999);
}

TEST_F(TwoVariances, APlotInTheLowerTailSpeaksAtEachPointAndIsNotDrawn) {
  OpenResultsWith(ModePower, "V2", {{21074, "1"}, {21075, "4"}}, {1212});
  EXPECT_EQ(host_.Press(203), 0);
  EXPECT_THAT(MessageIds(), ElementsAre(12873));
  EXPECT_EQ(host_.messageCalls(), 20);
  EXPECT_THAT(Items<Chart>(), IsEmpty());
}

// The ratio 0 passes the dialog's own check and is the null of the power procedure.
TEST_F(TwoVariances, WithoutAFirstVarianceThePowerIsBlank) {
  OpenResultsWith(ModePower, "V2", {{21074, "0"}, {21075, "1"}});
  EXPECT_EQ(host_.Press(1), 1);
  EXPECT_THAT(MessageIds(), ElementsAre(12873));
  EXPECT_EQ(host_.messageCalls(), 1);
  EXPECT_EQ(RowValues().back(), "-");
}

TEST_F(TwoVariances, WithoutASecondVarianceThePowerIsFull) {
  OpenResultsWith(ModePower, "V2", {{21074, "2"}, {21075, "0"}});
  EXPECT_EQ(host_.Press(1), 1);
  EXPECT_THAT(host_.messages(), IsEmpty());
  EXPECT_EQ(Row("Power"), 1);
  EXPECT_EQ(host_.Press(203), 1);
}

TEST_F(TwoVariances, WithoutAnyVarianceTheNullIsTrue) {
  OpenResultsWith(ModePower, "V2", {{21074, "0"}, {21075, "0"}});
  ExpectRefused(1, {12873}, 6161);
}

TEST_F(TwoVariances, ShowTheirInputsInTheFrame) {
  OpenResults(ModePower, "V2");
  EXPECT_EQ(TextOf(201),
            "Power Calculation\nGroup 1 Df (Df1): 20\nGroup 2 Df (Df2): 20\nGroup 1 Variance "
            "(Var1): 2\nGroup 2 Variance (Var2): 1\nType I Error Rate (Alpha): 0.05");
  Leave();
  OpenResults(ModeSampleSize, "V2");
  EXPECT_EQ(TextOf(201),
            "Sample Size Calculation\nVariance Ratio (Var1/Var2): 2\nType I Error Rate (Alpha): "
            "0.05\nPower Goal: 0.9");
}

}  // namespace
}  // namespace poweranalysis
