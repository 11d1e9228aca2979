#include <cmath>

#include "dialogs/FamilyRun.h"
#include "distributions/Correlation.h"
#include "distributions/Normal.h"

namespace poweranalysis {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::SizeIs;

class OneCorrelation : public FamilyRun {};
class TwoCorrelations : public FamilyRun {};

// Power of the test of one correlation, from the distribution alone.
double PowerOfOne(int form, double rho, double rho0, int n, int algorithm, double alpha = 0.05) {
  const auto a = static_cast<std::int16_t>(algorithm);
  const auto q = [&](double p) { return CorrelationQuantile(rho0, n, p, a); };
  const auto cdf = [&](double r) { return CorrelationCdf(rho, n, r, a); };
  if (form == 0) {
    return 1 - (cdf(q(1 - alpha / 2)) - cdf(q(alpha / 2)));
  }
  return form == 1 ? 1 - cdf(q(1 - alpha)) : cdf(q(alpha));
}
// Crude power of the test of two correlations.
double CrudePowerOfTwo(int form, double rho1, double rho2, int n1, int n2, double alpha = 0.05) {
  const double mean =
      (std::atanh(rho1) - std::atanh(rho2)) / std::sqrt(1.0 / (n1 - 3) + 1.0 / (n2 - 3));
  if (form == 0) {
    return 1 - (NormalCdf(NormalQuantile(1 - alpha / 2) - mean) -
                NormalCdf(NormalQuantile(alpha / 2) - mean));
  }
  return form == 1 ? 1 - NormalCdf(NormalQuantile(1 - alpha) - mean)
                   : NormalCdf(NormalQuantile(alpha) - mean);
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

// --- One correlation.

TEST_F(OneCorrelation, HasItsControls) {
  OpenParameters(ModePower, "R");
  EXPECT_EQ(OpenResource(), 6123);
  ExpectControls({21057, 21058, 111, 104, 1210, 1211, 1212, 116, 13402});
  EXPECT_EQ(TextOf(21057), "0.2");
  EXPECT_EQ(TextOf(21058), "0");
  EXPECT_EQ(TextOf(104), "100");
  host_.Press(1);
  EXPECT_EQ(OpenResource(), 6191);
  ExpectControls({21062, 21061, 138, 139, 22020, 22021, 22022, 129, 130, 140, 1, 203, 204, 205});
  EXPECT_EQ(form().Find(22020)->spec.caption, "Exact");
  EXPECT_EQ(form().Find(22021)->spec.caption, "Fisher Z Refined");
  EXPECT_EQ(form().Find(22022)->spec.caption, "Fisher Z Crude");
  EXPECT_TRUE(form().IsDlgButtonChecked(22021));
  Leave();
  OpenParameters(ModeSampleSize, "R");
  EXPECT_EQ(OpenResource(), 6195);
  ExpectControls({21057, 21058, 114, 111, 1210, 1211, 1212, 116, 13402});
  EXPECT_EQ(form().Find(104), nullptr);
  host_.Press(1);
  EXPECT_EQ(OpenResource(), 6197);
  ExpectControls({21062, 21061, 403, 406, 138, 139, 22020, 22021, 22022, 140, 1, 603, 604, 605});
}

TEST_F(OneCorrelation, ShowsItsPowerTableByAlgorithmAndForm) {
  const char* const titles[] = {"Power (Exact)", "Power (Refined Fisher Z)",
                                "Power (Crude Fisher Z)"};
  const char* const headings[] = {"H0:  Rho =  0", "H0:  Rho <= 0", "H0:  Rho >= 0"};
  for (const int algorithm : {0, 1, 2}) {
    for (const int form_ : {0, 1, 2}) {
      const double rho = form_ == 2 ? -0.2 : 0.2;
      OpenResultsWith(ModePower, "R", {{21057, form_ == 2 ? "-0.2" : "0.2"}, {21058, "0.1"}},
                      {1210 + form_});
      if (form_ == 1) {
        EXPECT_EQ(block().R.Committed.Rho0, 0.1);
      }
      EXPECT_EQ(host_.Press(22020 + algorithm), 1);
      ASSERT_EQ(host_.Press(1), 1);
      EXPECT_EQ(LastTable().code, 144);
      EXPECT_THAT(Headings(),
                  ElementsAre("Power Calculation", "One Correlation, t-Test", headings[form_]));
      EXPECT_THAT(RowTitles(),
                  ElementsAre("Group Sample Size (N)", "Null Hypothesized Correlation (Rho0)",
                              "Population Correlation (Rho)", "Type I Error Rate (Alpha)",
                              titles[algorithm]));
      EXPECT_THAT(RowValues(), ElementsAre("100", "0.1", form_ == 2 ? "-0.2" : "0.2", "0.05",
                                           Shown(PowerOfOne(form_, rho, 0.1, 100, algorithm))));
      Leave();
    }
  }
}

TEST_F(OneCorrelation, ShowsItsSizeTableWithoutTheNullValue) {
  struct Case {
    int form;
    const char* rho;
    const char* power;
    const char* size;
  };
  // A first estimate that passes is returned as it is: 212 and 259 are one more than the least.
  for (const Case& c : {Case{1, "0.2", "0.90199", "212"}, Case{0, "0.2", "0.90038", "258"},
                        Case{2, "-0.2", "0.90077", "211"}}) {
    OpenResultsWith(ModeSampleSize, "R", {{21057, c.rho}}, {1210 + c.form});
    ASSERT_EQ(host_.Press(1), 1);
    EXPECT_EQ(LastTable().code, 145);
    EXPECT_THAT(Headings(), ElementsAre("Sample Size Calculation", "One Correlation, t-Test",
                                        c.form == 0   ? "H0:  Rho =  0"
                                        : c.form == 1 ? "H0:  Rho <= 0"
                                                      : "H0:  Rho >= 0"));
    EXPECT_THAT(
        RowTitles(),
        ElementsAre("Population Correlation (Rho)", "Type I Error Rate (Alpha)", "Power Goal",
                    "Actual Power for Required N", "Required N (Refined Fisher Z)"));
    const std::vector<std::string> values = RowValues();
    EXPECT_EQ(values[0], c.rho);
    EXPECT_EQ(values[1], "0.05");
    EXPECT_EQ(values[2], "0.9");
    EXPECT_NEAR(std::stod(values[3]), std::stod(c.power), 6e-6);
    EXPECT_EQ(values[4], c.size);
    Leave();
  }
  OpenResultsWith(ModeSampleSize, "R", {{21057, "-0.2"}}, {1210});
  host_.Press(1);
  EXPECT_EQ(RowValues()[4], "259");
}

TEST_F(OneCorrelation, WritesItsReportsOnZeroWhateverTheNullValue) {
  const std::string goal =
      "\r\nOne goal of the proposed study is to test whether the correlation coefficient between "
      "two variables in a particular population differs from a hypothesized value of zero.";
  const std::string test =
      "\r\nA t-test will be performed, with the Type I Error rate (alpha) set at 0.05. ";
  const std::string assumption =
      "\r\nAssume that, in the sampled population, the actual correlation is 0.4.";
  OpenResultsWith(ModePower, "R", {{21057, "0.4"}, {21058, "0.1"}}, {1211});
  host_.Press(1);
  EXPECT_THAT(Paragraphs(),
              ElementsAre("\r\nPower Analysis -- t-Test for Zero Correlation", goal, test,
                          kTails[1], assumption,
                          "\r\nWith a sample size of 100, the study will have a power of " +
                              Percent(Row("Power (Refined Fisher Z)")) + "."));
  Leave();
  OpenResultsWith(ModeSampleSize, "R", {{21057, "0.4"}, {21058, "0.1"}}, {1210});
  host_.Press(1);
  const std::string n = Shown(Row("Required N (Refined Fisher Z)"));
  EXPECT_THAT(Paragraphs(), ElementsAre("\r\nSample Size Analysis -- t-Test for Zero Correlation",
                                        goal, test, kTails[0], assumption,
                                        "\r\nTo achieve the requested power of 90.00%, at least " +
                                            n + " paired observations are required. ",
                                        "With N = " + n + ", the actual power is " +
                                            Percent(Row("Actual Power for Required N")) + "."));
}

TEST_F(OneCorrelation, DrawsItsPlots) {
  for (const int algorithm : {1, 2}) {
    const std::string name =
        std::string("(Algorithm: Fisher Z ") + (algorithm == 1 ? "Refined)" : "Crude)");
    const std::string power = "Power " + name;
    const std::string size = "Required Sample Size (N) " + name;
    OpenResults(ModePower, "R");
    host_.Press(22020 + algorithm);
    ExpectPlots("t-Test for Zero Correlation: Power Calc.",
                "One Correlation, t-Test (H0:  Rho =  0)",
                {{203, "Power vs. N", 14, "Power vs. N (Rho = 0.2,  Alpha = 0.05)",
                  "Group Sample Size (N)", power.c_str()},
                 {204, "Power vs. Rho", 19, "Power vs. Rho (Alpha = 0.05,  N = 100)",
                  "Population Correlation (Rho)", power.c_str()},
                 {205, "Power vs. Alpha", 15, "Power vs. Alpha (Rho = 0.2,  N = 100)",
                  "Type I Error Rate (Alpha)", power.c_str()}});
    Leave();
    OpenResultsWith(ModeSampleSize, "R", {}, {1211});
    host_.Press(22020 + algorithm);
    ExpectPlots("t-Test for Zero Correlation: Sample Size Calc.",
                "One Correlation, t-Test (H0:  Rho <= 0)",
                {{603, "N vs. Power", 2, "N vs. Power (Alpha = 0.05, Population Rho = 0.2)",
                  "Power Goal", size.c_str()},
                 {604, "N vs. Rho", 7, "N vs. Rho (Power = 0.9, Alpha = 0.05)",
                  "Population Correlation (Rho)", size.c_str()},
                 {605, "N vs. Alpha", 3, "N vs. Alpha (Power = 0.9, Population Rho = 0.2)",
                  "Type I Error Rate (Alpha)", size.c_str()}});
    Leave();
    OpenParameters(ModeSampleSize, "R");
    host_.Press(1210);
    host_.Press(1);
    host_.Press(208);
    Leave();
  }
}

TEST_F(OneCorrelation, ThePointsOfAPlotAreThoseOfTheDistribution) {
  OpenResultsWith(ModePower, "R", {{21058, "0.1"}});
  host_.Press(22022);
  host_.Press(203);
  EXPECT_NEAR(LastChart().y[0], PowerOfOne(0, 0.2, 0.1, 100, 2), 1e-6);
  EXPECT_NEAR(LastChart().y[10], PowerOfOne(0, 0.2, 0.1, 200, 2), 1e-6);
  host_.Press(204);
  EXPECT_NEAR(LastChart().y[1], PowerOfOne(0, 0.27, 0.1, 100, 2), 1e-6);
  host_.Press(205);
  EXPECT_NEAR(LastChart().y[0], PowerOfOne(0, 0.2, 0.1, 100, 2, 0.01), 1e-6);
}

TEST_F(OneCorrelation, EqualCorrelationsLeadBackToTheParameters) {
  for (const int mode : {ModePower, ModeSampleSize}) {
    host_.ClearMessages();
    OpenResultsWith(mode, "R", {{21058, "0.2"}});
    host_.Type(140, "20");
    ExpectRefused(1, {12873}, mode == ModePower ? 6123 : 6195);
    EXPECT_EQ(block().R.Committed.NInterval, 10);
    Leave();
  }
}

TEST_F(OneCorrelation, NearlyEqualCorrelationsStopTheSearchAlone) {
  OpenResultsWith(ModeSampleSize, "R", {{21057, "0.0009"}});
  ExpectRefused(1, {12874}, 6195);
  EXPECT_THAT(host_.messages()[0].text, HasSubstr("within a tolerance of 0.001 of"));
  EXPECT_EQ(host_.messageCalls(), 1);
  Leave();
  host_.ClearMessages();
  OpenResultsWith(ModePower, "R", {{21057, "0.0009"}});
  EXPECT_EQ(host_.Press(1), 1);
  EXPECT_THAT(host_.messages(), IsEmpty());
}

TEST_F(OneCorrelation, TheCrudeFormNeedsMoreThanThree) {
  OpenResultsWith(ModePower, "R", {{104, "3"}, {21057, "0.5"}});
  host_.Press(22022);
  EXPECT_EQ(host_.Press(1), 1);
  EXPECT_EQ(RowValues().back(), "-");
  EXPECT_THAT(Paragraphs().back(), HasSubstr("power of -----."));
  host_.Press(22021);
  EXPECT_EQ(host_.Press(1), 1);
  EXPECT_NE(RowValues().back(), "-");
}

TEST_F(OneCorrelation, ALongExactSearchSwitchesToTheRefinedForm) {
  OpenResultsWith(ModeSampleSize, "R", {{21057, "0.05"}}, {1211});
  host_.Press(22021);
  ASSERT_EQ(host_.Press(1), 1);
  const std::vector<std::string> refined = RowValues();
  EXPECT_GT(std::stod(refined[4]), 1000);
  EXPECT_THAT(host_.messages(), IsEmpty());
  host_.Press(22020);
  ASSERT_EQ(host_.Press(1), 1);
  ASSERT_THAT(MessageIds(), ElementsAre(12875));
  EXPECT_EQ(host_.messages()[0].text,
            "Switching from exact algorithm to a refined approximation to avoid excessive "
            "computing time.\rThe change should not affect the accuracy of the result.");
  EXPECT_EQ(RowValues(), refined);
  EXPECT_EQ(RowTitles().back(), "Required N (Exact)") << "the title follows the record";
  EXPECT_EQ(block().R.Committed.Algorithm, 0);
  EXPECT_THAT(Paragraphs(), SizeIs(7));
}

TEST_F(OneCorrelation, AnExactSearchOfAFewStaysExact) {
  OpenResultsWith(ModeSampleSize, "R", {{21057, "0.6"}}, {1211});
  host_.Press(22020);
  ASSERT_EQ(host_.Press(1), 1);
  EXPECT_THAT(host_.messages(), IsEmpty());
  const int n = static_cast<int>(Row("Required N (Exact)"));
  EXPECT_NEAR(Row("Actual Power for Required N"), PowerOfOne(1, 0.6, 0, n, 0), 1e-6);
}

TEST_F(OneCorrelation, ATooLargeSizeEndsAtTheCap) {
  OpenResultsWith(ModeSampleSize, "R", {{21057, "0.005"}}, {1210});
  ExpectRefused(1, {12381}, 6197);
  EXPECT_THAT(host_.messages()[0].text, HasSubstr("(greater than 150000)"));
}

TEST_F(OneCorrelation, AFirstEstimateIsNotCapped) {
  OpenResultsWith(ModeSampleSize, "R", {{21057, "-0.005"}});
  ASSERT_EQ(host_.Press(1), 1);
  EXPECT_EQ(Row("Required N (Refined Fisher Z)"), 420293);
}

TEST_F(OneCorrelation, ACancelledSearchIsSilent) {
  OpenResultsWith(ModeSampleSize, "R", {});
  host_.cancelled = [] { return true; };
  ExpectRefused(1, {}, 6197);
}

TEST_F(OneCorrelation, TheAlgorithmIsForgottenByBackAndKeptByACalculation) {
  OpenResults(ModePower, "R");
  host_.Press(22022);
  host_.Press(2);
  EXPECT_EQ(block().R.Working.Algorithm, 1);
  host_.Press(1);
  host_.Press(22022);
  host_.Press(1);
  host_.Press(2);
  EXPECT_EQ(block().R.Working.Algorithm, 2);
}

TEST_F(OneCorrelation, APlotFromTwoKeepsItsFailedPoints) {
  OpenResults(ModePower, "R");
  host_.Type(129, "2");
  host_.Type(130, "6");
  host_.Type(140, "4");
  ASSERT_EQ(host_.Press(203), 1);
  ASSERT_THAT(LastChart().y, SizeIs(4));
  EXPECT_EQ(LastChart().y[0], -9999);
  EXPECT_NE(LastChart().y[1], -9999);
  EXPECT_THAT(host_.messages(), IsEmpty());
}

TEST_F(OneCorrelation, ACorrelationPlotAcrossTheNullKeepsTheRefusedPoint) {
  for (const int mode : {ModePower, ModeSampleSize}) {
    host_.ClearMessages();
    OpenResults(mode, "R");
    host_.Type(21062, "-0.5");
    host_.Type(21061, "0.5");
    host_.Type(140, "4");
    ASSERT_EQ(host_.Press(mode == ModePower ? 204 : 604), 1);
    ASSERT_THAT(LastChart().y, SizeIs(4));
    EXPECT_EQ(LastChart().y[2], -9999);
    EXPECT_THAT(MessageIds(), ElementsAre(12873));
    EXPECT_EQ(host_.messageCalls(), 1);
    Leave();
  }
}

TEST_F(OneCorrelation, ATrueNullEndsAPlotThatFixesTheCorrelation) {
  OpenResultsWith(ModePower, "R", {{21057, "0"}});
  for (const int control : {203, 205}) {
    host_.ClearMessages();
    ExpectRefused(control, {12873}, 6191);
  }
  EXPECT_EQ(host_.Press(204), 1);
}

TEST_F(OneCorrelation, SaveAsDefaultLeavesTheDefaultsOfThisRun) {
  host_.configFolder = ::testing::TempDir();
  OpenParameters(ModePower, "R");
  host_.Type(111, "0.1");
  host_.Press(13402);
  host_.Press(118);
  EXPECT_EQ(block().R.Working.Alpha, 0.05);
  Leave();
  OpenParameters(ModePower, "Z2R");
  host_.Type(111, "0.1");
  host_.Press(13402);
  host_.Press(118);
  EXPECT_EQ(block().Z2R.Working.Alpha, 0.1);
  std::remove((host_.configFolder + "/POWER.INI").c_str());
}

// --- Two correlations.

TEST_F(TwoCorrelations, HasItsControls) {
  OpenParameters(ModePower, "Z2R");
  EXPECT_EQ(OpenResource(), 6201);
  ExpectControls({21059, 21060, 111, 21064, 21065, 1210, 1211, 1212, 116, 13402});
  host_.Press(1);
  EXPECT_EQ(OpenResource(), 6203);
  ExpectControls({21062, 21061, 138, 139, 129, 130, 140, 22021, 22022, 1, 203, 204, 205, 206, 207});
  EXPECT_EQ(form().Find(22030), nullptr);
  EXPECT_EQ(form().Find(22020), nullptr) << "there is no exact distribution";
  Leave();
  OpenParameters(ModeSampleSize, "Z2R");
  EXPECT_EQ(OpenResource(), 6205);
  ExpectControls({21059, 21060, 114, 111, 21064, 21065, 1210, 1211, 1212, 116, 13402});
  host_.Press(1);
  EXPECT_EQ(OpenResource(), 6207);
  ExpectControls(
      {21062, 21061, 403, 406, 138, 139, 140, 22030, 22031, 22032, 22021, 22022, 1, 603, 604, 605});
  EXPECT_TRUE(form().IsDlgButtonChecked(22030));
  for (const int varied : {2, 1, 0}) {
    EXPECT_EQ(host_.Press(22030 + varied), 1);
    EXPECT_EQ(block().Z2R.Working.NToVary, varied);
  }
}

TEST_F(TwoCorrelations, ShowsItsPowerTable) {
  const char* const headings[] = {"H0:  Rho1 = Rho2", "H0:  Rho1 <= Rho2", "H0:  Rho1 >= Rho2"};
  for (const int form_ : {0, 1, 2}) {
    const char* const rho1 = form_ == 2 ? "-0.4" : "0.4";
    OpenResultsWith(ModePower, "Z2R", {{21059, rho1}, {21064, "50"}, {21065, "80"}},
                    {1210 + form_});
    host_.Press(22022);
    ASSERT_EQ(host_.Press(1), 1);
    EXPECT_EQ(LastTable().code, 176);
    EXPECT_THAT(Headings(),
                ElementsAre("Power Calculation", "Two Correlations, Z-Test", headings[form_]));
    EXPECT_THAT(
        RowTitles(),
        ElementsAre("Population Correlation Rho1", "Population Correlation Rho2", "Sample Size N1",
                    "Sample Size N2", "Type I Error Rate (Alpha)", "Power (Crude Fisher Z)"));
    EXPECT_THAT(RowValues(),
                ElementsAre(rho1, "0", "50", "80", "0.05",
                            Shown(CrudePowerOfTwo(form_, std::stod(rho1), 0, 50, 80))));
    Leave();
  }
}

TEST_F(TwoCorrelations, ShowsItsSizeTableByTheGroupVaried) {
  OpenResultsWith(ModeSampleSize, "Z2R", {{21064, "200"}, {21065, "150"}});
  host_.Press(22022);
  ASSERT_EQ(host_.Press(1), 1);
  EXPECT_EQ(LastTable().code, 177);
  EXPECT_THAT(Headings(), ElementsAre("Sample Size Calculation", "Two Correlations, Z-Test",
                                      "H0:  Rho1 = Rho2"));
  EXPECT_THAT(RowTitles(),
              ElementsAre("Population Correlation Rho1", "Population Correlation Rho2",
                          "Type I Error Rate (Alpha)", "Power Goal", "Actual Power for Required N",
                          "Required N1 (Crude Fisher Z)", "Required N2 (Crude Fisher Z)"));
  const int n = static_cast<int>(LastTable().rows[5].values[0]);
  EXPECT_THAT(RowValues(),
              ElementsAre("0.4", "0", "0.05", "0.9", Shown(CrudePowerOfTwo(0, 0.4, 0, n, n)),
                          std::to_string(n), std::to_string(n)));
  host_.Press(22031);
  ASSERT_EQ(host_.Press(1), 1);
  const int n1 = static_cast<int>(LastTable().rows[5].values[0]);
  EXPECT_EQ(RowValues()[6], "150");
  EXPECT_EQ(RowValues()[4], Shown(CrudePowerOfTwo(0, 0.4, 0, n1, 150)));
  EXPECT_GT(CrudePowerOfTwo(0, 0.4, 0, n1, 150), 0.9);
  host_.Press(22032);
  ASSERT_EQ(host_.Press(1), 1);
  const int n2 = static_cast<int>(LastTable().rows[6].values[0]);
  EXPECT_EQ(RowValues()[5], "200");
  EXPECT_EQ(RowValues()[4], Shown(CrudePowerOfTwo(0, 0.4, 0, 200, n2)));
  EXPECT_GT(CrudePowerOfTwo(0, 0.4, 0, 200, n2), 0.9);
}

TEST_F(TwoCorrelations, WritesItsReports) {
  const std::string goal =
      "\r\nOne goal of the proposed study is to compare the correlations from two populations, to "
      "test whether they are equal.";
  const std::string test =
      "\r\nA 2 Sample Fisher Z-Test will be performed on two independent samples, with the Type I "
      "Error rate (alpha) set at 0.05.  ";
  const std::string assumption =
      "\r\nAssume that the actual correlation in Population 1 is 0.4, and that the corresponding "
      "correlation in Population 2 is 0.  ";
  OpenResultsWith(ModePower, "Z2R", {{21064, "50"}, {21065, "80"}}, {1211});
  host_.Press(1);
  EXPECT_THAT(
      Paragraphs(),
      ElementsAre("\r\nPower Analysis -- The Fisher Z-Test for Comparing 2 Independent "
                  "Correlations",
                  goal, test, kTails[1], assumption,
                  "\r\nWith the proposed sample sizes of N1 = 50 observations in Group 1, and N2 = "
                  "80 observations in Group 2, the study will have a power of " +
                      Percent(Row("Power (Refined Fisher Z)")) + "."));
  Leave();
  OpenResultsWith(ModeSampleSize, "Z2R", {{21064, "200"}, {21065, "150"}}, {1210});
  const std::string title =
      "\r\nSample Size Analysis -- The Fisher Z-Test for Comparing 2 Independent Correlations";
  host_.Press(1);
  const auto power = [&] { return Percent(Row("Actual Power for Required N")) + "."; };
  const auto n1 = [&] { return Shown(Row("Required N1 (Refined Fisher Z)")); };
  const auto n2 = [&] { return Shown(Row("Required N2 (Refined Fisher Z)")); };
  EXPECT_THAT(
      Paragraphs(),
      ElementsAre(title, goal, test, kTails[0], assumption,
                  "\r\nTo achieve the requested power of 90.00%, with the restriction that sample "
                  "sizes for the two groups are equal, sample sizes of at least N = " +
                      n1() + " observations are required in both groups. ",
                  "With N = " + n1() + " in each group, the actual power is " + power()));
  host_.TakeWorkbook();
  host_.Press(22031);
  host_.Press(1);
  EXPECT_THAT(
      Paragraphs(),
      ElementsAre(title, goal, test, kTails[0], assumption,
                  "\r\nTo achieve the requested power of 90.00%, with N2 fixed at 150, a sample "
                  "size of at least N1 = " +
                      n1() + " observations is required in group 1.  With N1 = " + n1() +
                      " and N2 = 150, the actual power is " + power()));
  host_.TakeWorkbook();
  host_.Press(22032);
  host_.Press(1);
  EXPECT_THAT(
      Paragraphs(),
      ElementsAre(title, goal, test, kTails[0], assumption,
                  "\r\nTo achieve the requested power of 90.00%, with N1 fixed at 200, a sample "
                  "size of at least N2 = " +
                      n2() + " observations is required in group 2.  With N1 = 200 and N2 = " +
                      n2() + ", the actual power is " + power()));
}

TEST_F(TwoCorrelations, DrawsItsPowerPlots) {
  OpenResultsWith(ModePower, "Z2R", {{21064, "50"}, {21065, "80"}});
  const std::string power = "Power (Algorithm: Fisher Z Refined)";
  ExpectPlots(
      "Two Correlations: Power Calculation", "Two Correlations, Z-Test (H0:  Rho1 = Rho2)",
      {{203, "Power vs. N", 14, "Power vs. N (Rho1 = 0.4,  Rho2= 0, Alpha = 0.05)",
        "Sample Size for Each Group (N1 = N2)", power.c_str()},
       {204, "Power vs. N1", 14, "Power vs. N1 (Rho1 = 0.4,  Rho2= 0, Alpha = 0.05)",
        "Sample Size N1 (N2 fixed at 80)", power.c_str()},
       {205, "Power vs. N2", 14, "Power vs. N2 (Rho1 = 0.4,  Rho2= 0, Alpha = 0.05)",
        "Sample Size N2 (N1 fixed at 50)", power.c_str()},
       {206, "Power vs. Rho", 19, "Power vs. Rho (N1 = 50, N2 = 80)",
        "Population Correlation Rho1 (Rho2 Fixed at 0)", power.c_str()},
       {207, "Power vs. Alpha", 15, "Power vs. Alpha (Rho1 = 0.4,  Rho2 = 0, N1 = 50, N2 = 80)",
        "Type I Error Rate (Alpha)", power.c_str()}});
}

TEST_F(TwoCorrelations, DrawsItsSizePlotsByTheGroupVaried) {
  struct Case {
    std::array<const char*, 3> titles;
    const char* yLabel;
  };
  const Case cases[] = {
      {{"N vs. Power Goal (Alpha = 0.05, Rho1 = 0.4, Rho2 = 0)",
        "N vs. Rho1 (Power = 0.9, Alpha = 0.05, Rho2 = 0)",
        "N vs. Alpha (Power = 0.9, Rho1 = 0.4, Rho2 = 0)"},
       "Sample Size (N1 = N2)"},
      {{"N1 vs. Power Goal (Alpha = 0.05, Rho1 = 0.4, Rho2 = 0)",
        "N1 vs. Rho1 (Power = 0.9, Rho1 = 0.4, Rho2 = 0)",
        "N1 vs. Alpha (Power = 0.9, Rho1 = 0.4, Rho2 = 0)"},
       "Sample Size N1 (N2 = 250)"},
      {{"N2 vs. Power Goal (Alpha = 0.05, Rho1 = 0.4, Rho2 = 0)",
        "N2 vs. Rho1 (Power = 0.9, Rho1 = 0.4, Rho2 = 0)",
        "N2 vs. Alpha (Power = 0.9, Rho1 = 0.4, Rho2 = 0)"},
       "Sample Size N2 (N1 = 300)"},
  };
  OpenResultsWith(ModeSampleSize, "Z2R", {{21064, "300"}, {21065, "250"}});
  for (const int varied : {0, 1, 2}) {
    host_.Press(22030 + varied);
    const Case& c = cases[varied];
    ExpectPlots(
        "Two Correlations: Sample Size Calculation", "Two Correlations, Z-Test (H0:  Rho1 = Rho2)",
        {{603, "N vs. Power", 2, c.titles[0], "Power Goal", c.yLabel},
         {604, "N vs. Rho", 7, c.titles[1], "Group 1 Population Correlation (Rho1)", c.yLabel},
         {605, "N vs. Alpha", 3, c.titles[2], "Type I Error Rate (Alpha)", c.yLabel}});
  }
}

TEST_F(TwoCorrelations, EachPowerPlotVariesWhatItNames) {
  OpenResultsWith(ModePower, "Z2R", {{21064, "50"}, {21065, "80"}});
  host_.Press(22022);
  host_.Press(203);
  EXPECT_NEAR(LastChart().y[0], CrudePowerOfTwo(0, 0.4, 0, 100, 100), 1e-6);
  host_.Press(204);
  EXPECT_NEAR(LastChart().y[0], CrudePowerOfTwo(0, 0.4, 0, 100, 80), 1e-6);
  host_.Press(205);
  EXPECT_NEAR(LastChart().y[0], CrudePowerOfTwo(0, 0.4, 0, 50, 100), 1e-6);
  host_.Press(206);
  EXPECT_NEAR(LastChart().y[0], CrudePowerOfTwo(0, 0.2, 0, 50, 80), 1e-6);
  host_.Press(207);
  EXPECT_NEAR(LastChart().y[0], CrudePowerOfTwo(0, 0.4, 0, 50, 80, 0.01), 1e-6);
}

TEST_F(TwoCorrelations, ASizePlotAgreesWithTheCalculation) {
  OpenResultsWith(ModeSampleSize, "Z2R", {{21064, "300"}, {21065, "250"}});
  host_.Type(403, "0.9");
  for (const int varied : {0, 1, 2}) {
    host_.Press(22030 + varied);
    host_.Press(603);
    const float first = LastChart().y[0];
    ASSERT_EQ(host_.Press(1), 1);
    const std::size_t row = varied == 2 ? 6 : 5;
    EXPECT_EQ(first, static_cast<float>(LastTable().rows[row].values[0]));
  }
}

TEST_F(TwoCorrelations, EqualCorrelationsLeadBackToTheParameters) {
  for (const int mode : {ModePower, ModeSampleSize}) {
    host_.ClearMessages();
    OpenResultsWith(mode, "Z2R", {{21059, "0"}});
    ExpectRefused(1, {12873}, mode == ModePower ? 6201 : 6205);
    Leave();
  }
}

// Power is checked on the correlations, the search on their Fisher z.
TEST_F(TwoCorrelations, TheSearchChecksTheDifferenceOfTheirZ) {
  OpenResultsWith(ModeSampleSize, "Z2R", {{21059, "0.5"}, {21060, "0.4995"}});
  ExpectRefused(1, {12874}, 6205);
  EXPECT_THAT(host_.messages()[0].text, HasSubstr("within a tolerance of 0.001 of"));
  EXPECT_EQ(host_.messageCalls(), 1);
  Leave();
  host_.ClearMessages();
  OpenResultsWith(ModePower, "Z2R", {{21059, "0.5"}, {21060, "0.4995"}});
  EXPECT_EQ(host_.Press(1), 1);
  EXPECT_THAT(host_.messages(), IsEmpty());
  Leave();
  OpenResultsWith(ModeSampleSize, "Z2R", {{21059, "0.9"}, {21060, "0.8995"}});
  EXPECT_EQ(host_.Press(1), 1);
  EXPECT_THAT(host_.messages(), IsEmpty());
  EXPECT_GT(Row("Required N1 (Refined Fisher Z)"), 1000000);
}

TEST_F(TwoCorrelations, AOneTailedEffectTheWrongWayIsATrueNull) {
  OpenResultsWith(ModePower, "Z2R", {{21059, "-0.4"}}, {1211});
  ExpectRefused(1, {12873}, 6201);
  Leave();
  host_.ClearMessages();
  OpenResultsWith(ModeSampleSize, "Z2R", {{21059, "0.4"}}, {1212});
  ExpectRefused(1, {12873}, 6205);
}

TEST_F(TwoCorrelations, AFixedGroupTooSmallCannotBeMadeUp) {
  OpenResultsWith(ModeSampleSize, "Z2R", {{21064, "12"}, {21065, "10"}});
  host_.Press(22031);
  ExpectRefused(1, {13199}, 6207);
  EXPECT_EQ(host_.messages()[0].text, "This problem cannot be solved without increasing N2.");
  host_.ClearMessages();
  host_.Press(22032);
  ExpectRefused(1, {13200}, 6207);
  EXPECT_EQ(host_.messages()[0].text, "This problem cannot be solved without increasing N1.");
  host_.ClearMessages();
  EXPECT_EQ(host_.Press(605), 0);
  EXPECT_THAT(Items<Chart>(), IsEmpty());
  EXPECT_THAT(MessageIds(), IsEmpty()) << "a plot leaves such points out without a word";
}

TEST_F(TwoCorrelations, ThereIsNoExactDistribution) {
  OpenParameters(ModePower, "Z2R");
  block().Z2R.Working.Algorithm = 0;
  host_.Press(1);
  EXPECT_EQ(host_.Press(1), 1);
  EXPECT_EQ(RowTitles().back(), "Power (Exact)");
  EXPECT_EQ(RowValues().back(), "-");
  EXPECT_THAT(Paragraphs().back(), HasSubstr("power of -----."));
  Leave();
  host_.TakeWorkbook();
  OpenParameters(ModeSampleSize, "Z2R");
  block().Z2R.Working.Algorithm = 0;
  host_.Press(1);
  EXPECT_EQ(host_.Press(1), 0);
  EXPECT_THAT(host_.workbook().items, IsEmpty());
  EXPECT_EQ(OpenResource(), 6207);
}

TEST_F(TwoCorrelations, TheGroupVariedIsNeitherCheckedNorSaved) {
  OpenResults(ModeSampleSize, "Z2R");
  host_.Press(22031);
  host_.Press(208);
  EXPECT_EQ(block().Z2R.Committed.NToVary, 1);
  EXPECT_FALSE(TableOf(Family::Z2R).Find("NToVary")->keyed());
}

TEST_F(TwoCorrelations, ACorrelationPlotAcrossTheOtherKeepsTheRefusedPoint) {
  for (const int mode : {ModePower, ModeSampleSize}) {
    host_.ClearMessages();
    OpenResults(mode, "Z2R");
    host_.Type(21062, "-0.5");
    host_.Type(21061, "0.5");
    host_.Type(140, "4");
    ASSERT_EQ(host_.Press(mode == ModePower ? 206 : 604), 1);
    ASSERT_THAT(LastChart().y, SizeIs(4));
    EXPECT_EQ(LastChart().y[2], -9999);
    EXPECT_THAT(MessageIds(), ElementsAre(12873));
    Leave();
  }
}

}  // namespace
}  // namespace poweranalysis
