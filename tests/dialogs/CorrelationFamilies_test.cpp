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

// --- One correlation.

TEST_F(OneCorrelation, HasItsControls) {
  OpenParameters({ModePower, "R"});
  EXPECT_EQ(OpenResource(), 6123);
  ExpectControls({"Rho", "Rho0", "Alpha", "SampleSize", "H0Type=two-sided", "H0Type=upper",
                  "H0Type=lower", ControlSaveAs, ControlSaveAsDefault});
  EXPECT_EQ(TextOf("Rho"), "0.2");
  EXPECT_EQ(TextOf("Rho0"), "0");
  EXPECT_EQ(TextOf("SampleSize"), "100");
  Press(ControlAccept);
  EXPECT_EQ(OpenResource(), 6191);
  ExpectControls({"RhoStart", "RhoEnd", "AlphaStart", "AlphaEnd", "Algorithm=exact",
                  "Algorithm=refined", "Algorithm=crude", "NStart", "NEnd", "NInterval",
                  ControlAccept, "power-vs-n", "power-vs-rho", "power-vs-alpha"});
  EXPECT_EQ(CaptionOf("Algorithm=exact"), "Exact");
  EXPECT_EQ(CaptionOf("Algorithm=refined"), "Fisher Z Refined");
  EXPECT_EQ(CaptionOf("Algorithm=crude"), "Fisher Z Crude");
  EXPECT_TRUE(IsChecked("Algorithm=refined"));
  OpenParameters({ModeSampleSize, "R"});
  EXPECT_EQ(OpenResource(), 6195);
  ExpectControls({"Rho", "Rho0", "PowerGoal", "Alpha", "H0Type=two-sided", "H0Type=upper",
                  "H0Type=lower", ControlSaveAs, ControlSaveAsDefault});
  EXPECT_EQ(Find("SampleSize"), nullptr);
  Press(ControlAccept);
  EXPECT_EQ(OpenResource(), 6197);
  ExpectControls({"RhoStart", "RhoEnd", "PowerStart", "PowerEnd", "AlphaStart", "AlphaEnd",
                  "Algorithm=exact", "Algorithm=refined", "Algorithm=crude", "NInterval",
                  ControlAccept, "n-vs-power", "n-vs-rho", "n-vs-alpha"});
}

TEST_F(OneCorrelation, ShowsItsPowerTableByAlgorithmAndForm) {
  const char* const titles[] = {"Power (Exact)", "Power (Refined Fisher Z)",
                                "Power (Crude Fisher Z)"};
  const char* const headings[] = {"H0:  Rho =  0", "H0:  Rho <= 0", "H0:  Rho >= 0"};
  for (const int algorithm : {0, 1, 2}) {
    for (const int form_ : {0, 1, 2}) {
      const double rho = form_ == 2 ? -0.2 : 0.2;
      OpenResults(
          {ModePower, "R", {{"Rho", form_ == 2 ? "-0.2" : "0.2"}, {"Rho0", "0.1"}}, {H0(form_)}});
      if (form_ == 1) {
        EXPECT_EQ(block().R.Committed.Rho0, 0.1);
      }
      EXPECT_EQ(Press(RadioOf("Algorithm", algorithm)), ControlAccept);
      ASSERT_EQ(Press(ControlAccept), 1);
      EXPECT_EQ(LastTable().code, 144);
      EXPECT_THAT(Headings(),
                  ElementsAre("Power Calculation", "One Correlation, t-Test", headings[form_]));
      EXPECT_THAT(RowTitles(),
                  ElementsAre("Group Sample Size (N)", "Null Hypothesized Correlation (Rho0)",
                              "Population Correlation (Rho)", "Type I Error Rate (Alpha)",
                              titles[algorithm]));
      EXPECT_THAT(RowValues(), ElementsAre("100", "0.1", form_ == 2 ? "-0.2" : "0.2", "0.05",
                                           Shown(PowerOfOne(form_, rho, 0.1, 100, algorithm))));
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
  for (const Case& c :
       {Case{ControlAccept, "0.2", "0.90199", "212"}, Case{0, "0.2", "0.90038", "258"},
        Case{ControlBack, "-0.2", "0.90077", "211"}}) {
    OpenResults({ModeSampleSize, "R", {{"Rho", c.rho}}, {H0(c.form)}});
    ASSERT_EQ(Press(ControlAccept), 1);
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
  }
  OpenResults({ModeSampleSize, "R", {{"Rho", "-0.2"}}, {"H0Type=two-sided"}});
  Press(ControlAccept);
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
  OpenResults({ModePower, "R", {{"Rho", "0.4"}, {"Rho0", "0.1"}}, {"H0Type=upper"}});
  Press(ControlAccept);
  EXPECT_THAT(Paragraphs(),
              ElementsAre("\r\nPower Analysis -- t-Test for Zero Correlation", goal, test,
                          kTails[1], assumption,
                          "\r\nWith a sample size of 100, the study will have a power of " +
                              Percent(Row("Power (Refined Fisher Z)")) + "."));
  OpenResults({ModeSampleSize, "R", {{"Rho", "0.4"}, {"Rho0", "0.1"}}, {"H0Type=two-sided"}});
  Press(ControlAccept);
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
    ExpectPlots({ModePower, "R"}, {RadioOf("Algorithm", algorithm)},
                "t-Test for Zero Correlation: Power Calc.",
                "One Correlation, t-Test (H0:  Rho =  0)",
                {{"power-vs-n", 14, "Power vs. N (Rho = 0.2,  Alpha = 0.05)",
                  "Group Sample Size (N)", power},
                 {"power-vs-rho", 19, "Power vs. Rho (Alpha = 0.05,  N = 100)",
                  "Population Correlation (Rho)", power},
                 {"power-vs-alpha", 15, "Power vs. Alpha (Rho = 0.2,  N = 100)",
                  "Type I Error Rate (Alpha)", power}});
    ExpectPlots(
        {ModeSampleSize, "R", {}, {"H0Type=upper"}}, {RadioOf("Algorithm", algorithm)},
        "t-Test for Zero Correlation: Sample Size Calc.", "One Correlation, t-Test (H0:  Rho <= 0)",
        {{"n-vs-power", 2, "N vs. Power (Alpha = 0.05, Population Rho = 0.2)", "Power Goal", size},
         {"n-vs-rho", 7, "N vs. Rho (Power = 0.9, Alpha = 0.05)", "Population Correlation (Rho)",
          size},
         {"n-vs-alpha", 3, "N vs. Alpha (Power = 0.9, Population Rho = 0.2)",
          "Type I Error Rate (Alpha)", size}});
    OpenResults({ModeSampleSize, "R", {}, {"H0Type=two-sided"}});
    Press(ControlChangeParams);
  }
}

TEST_F(OneCorrelation, ThePointsOfAPlotAreThoseOfTheDistribution) {
  OpenResults({ModePower, "R", {{"Rho0", "0.1"}}});
  Press("Algorithm=crude");
  Press("power-vs-n");
  EXPECT_NEAR(LastChart().y[0], PowerOfOne(0, 0.2, 0.1, 100, 2), 1e-6);
  EXPECT_NEAR(LastChart().y[10], PowerOfOne(0, 0.2, 0.1, 200, 2), 1e-6);
  Press("power-vs-rho");
  EXPECT_NEAR(LastChart().y[1], PowerOfOne(0, 0.27, 0.1, 100, 2), 1e-6);
  Press("power-vs-alpha");
  EXPECT_NEAR(LastChart().y[0], PowerOfOne(0, 0.2, 0.1, 100, 2, 0.01), 1e-6);
}

TEST_F(OneCorrelation, EqualCorrelationsLeadBackToTheParameters) {
  for (const int mode : {ModePower, ModeSampleSize}) {
    host_.ClearMessages();
    OpenResults({mode, "R", {{"Rho0", "0.2"}}});
    Type("NInterval", "20");
    ExpectRefused(ControlAccept, {text::NullHypothesisTrue}, parameters_);
    EXPECT_EQ(block().R.Committed.NInterval, 10);
  }
}

TEST_F(OneCorrelation, NearlyEqualCorrelationsStopTheSearchAlone) {
  OpenResults({ModeSampleSize, "R", {{"Rho", "0.0009"}}});
  ExpectRefused(ControlAccept, {text::NullHypothesisNearlyTrue}, parameters_);
  EXPECT_THAT(host_.messages()[0].text, HasSubstr("within a tolerance of 0.001 of"));
  EXPECT_EQ(host_.messageCalls(), 1);
  host_.ClearMessages();
  OpenResults({ModePower, "R", {{"Rho", "0.0009"}}});
  EXPECT_EQ(Press(ControlAccept), 1);
  EXPECT_THAT(host_.messages(), IsEmpty());
}

TEST_F(OneCorrelation, TheCrudeFormNeedsMoreThanThree) {
  OpenResults({ModePower, "R", {{"SampleSize", "3"}, {"Rho", "0.5"}}});
  Press("Algorithm=crude");
  EXPECT_EQ(Press(ControlAccept), 1);
  EXPECT_EQ(RowValues().back(), "-");
  EXPECT_THAT(Paragraphs().back(), HasSubstr("power of -----."));
  Press("Algorithm=refined");
  EXPECT_EQ(Press(ControlAccept), 1);
  EXPECT_NE(RowValues().back(), "-");
}

TEST_F(OneCorrelation, ALongExactSearchSwitchesToTheRefinedForm) {
  OpenResults({ModeSampleSize, "R", {{"Rho", "0.05"}}, {"H0Type=upper"}});
  Press("Algorithm=refined");
  ASSERT_EQ(Press(ControlAccept), 1);
  const std::vector<std::string> refined = RowValues();
  EXPECT_GT(std::stod(refined[4]), 1000);
  EXPECT_THAT(host_.messages(), IsEmpty());
  Press("Algorithm=exact");
  ASSERT_EQ(Press(ControlAccept), 1);
  ASSERT_THAT(MessageIds(), ElementsAre(text::SwitchingToRefined));
  EXPECT_EQ(host_.messages()[0].text,
            "Switching from exact algorithm to a refined approximation to avoid excessive "
            "computing time.\rThe change should not affect the accuracy of the result.");
  EXPECT_EQ(RowValues(), refined);
  EXPECT_EQ(RowTitles().back(), "Required N (Exact)") << "the title follows the record";
  EXPECT_EQ(block().R.Committed.Algorithm, 0);
  EXPECT_THAT(Paragraphs(), SizeIs(7));
}

TEST_F(OneCorrelation, AnExactSearchOfAFewStaysExact) {
  OpenResults({ModeSampleSize, "R", {{"Rho", "0.6"}}, {"H0Type=upper"}});
  Press("Algorithm=exact");
  ASSERT_EQ(Press(ControlAccept), 1);
  EXPECT_THAT(host_.messages(), IsEmpty());
  const int n = static_cast<int>(Row("Required N (Exact)"));
  EXPECT_NEAR(Row("Actual Power for Required N"), PowerOfOne(1, 0.6, 0, n, 0), 1e-6);
}

TEST_F(OneCorrelation, ATooLargeSizeEndsAtTheCap) {
  OpenResults({ModeSampleSize, "R", {{"Rho", "0.005"}}, {"H0Type=two-sided"}});
  ExpectRefused(ControlAccept, {text::SearchTooLarge}, results_);
  EXPECT_THAT(host_.messages()[0].text, HasSubstr("(greater than 150000)"));
}

TEST_F(OneCorrelation, AFirstEstimateIsNotCapped) {
  OpenResults({ModeSampleSize, "R", {{"Rho", "-0.005"}}});
  ASSERT_EQ(Press(ControlAccept), 1);
  EXPECT_EQ(Row("Required N (Refined Fisher Z)"), 420293);
}

TEST_F(OneCorrelation, ACancelledSearchIsSilent) {
  OpenResults({ModeSampleSize, "R", {}});
  host_.cancelled = [] { return true; };
  ExpectRefused(ControlAccept, {}, results_);
}

TEST_F(OneCorrelation, TheAlgorithmIsForgottenByBackAndKeptByACalculation) {
  OpenResults({ModePower, "R"});
  Press("Algorithm=crude");
  Press(ControlBack);
  EXPECT_EQ(block().R.Working.Algorithm, 1);
  Press(ControlAccept);
  Press("Algorithm=crude");
  Press(ControlAccept);
  Press(ControlBack);
  EXPECT_EQ(block().R.Working.Algorithm, 2);
}

TEST_F(OneCorrelation, APlotFromTwoKeepsItsFailedPoints) {
  OpenResults({ModePower, "R"});
  Type("NStart", "2");
  Type("NEnd", "6");
  Type("NInterval", "4");
  ASSERT_EQ(Press("power-vs-n"), 1);
  ASSERT_THAT(LastChart().y, SizeIs(4));
  EXPECT_EQ(LastChart().y[0], -9999);
  EXPECT_NE(LastChart().y[1], -9999);
  EXPECT_THAT(host_.messages(), IsEmpty());
}

TEST_F(OneCorrelation, ACorrelationPlotAcrossTheNullKeepsTheRefusedPoint) {
  for (const int mode : {ModePower, ModeSampleSize}) {
    host_.ClearMessages();
    OpenResults({mode, "R"});
    Type("RhoStart", "-0.5");
    Type("RhoEnd", "0.5");
    Type("NInterval", "4");
    ASSERT_EQ(Press(mode == ModePower ? "power-vs-rho" : "n-vs-rho"), 1);
    ASSERT_THAT(LastChart().y, SizeIs(4));
    EXPECT_EQ(LastChart().y[2], -9999);
    EXPECT_THAT(MessageIds(), ElementsAre(text::NullHypothesisTrue));
    EXPECT_EQ(host_.messageCalls(), 1);
  }
}

TEST_F(OneCorrelation, ATrueNullEndsAPlotThatFixesTheCorrelation) {
  OpenResults({ModePower, "R", {{"Rho", "0"}}});
  for (const char* control : {"power-vs-n", "power-vs-alpha"}) {
    host_.ClearMessages();
    ExpectRefused(control, {text::NullHypothesisTrue}, results_);
  }
  EXPECT_EQ(Press("power-vs-rho"), 1);
}

TEST_F(OneCorrelation, SaveAsDefaultLeavesTheDefaultsOfThisRun) {
  host_.configFolder = ::testing::TempDir();
  OpenParameters({ModePower, "R"});
  Type("Alpha", "0.1");
  Press(ControlSaveAsDefault);
  Press(ControlRestoreDefaults);
  EXPECT_EQ(block().R.Working.Alpha, 0.05);
  OpenParameters({ModePower, "Z2R"});
  Type("Alpha", "0.1");
  Press(ControlSaveAsDefault);
  Press(ControlRestoreDefaults);
  EXPECT_EQ(block().Z2R.Working.Alpha, 0.1);
  std::remove((host_.configFolder + "/POWER.INI").c_str());
}

// --- Two correlations.

TEST_F(TwoCorrelations, HasItsControls) {
  OpenParameters({ModePower, "Z2R"});
  EXPECT_EQ(OpenResource(), 6201);
  ExpectControls({"Rho1", "Rho2", "Alpha", "SampleSizeN1", "SampleSizeN2", "H0Type=two-sided",
                  "H0Type=upper", "H0Type=lower", ControlSaveAs, ControlSaveAsDefault});
  Press(ControlAccept);
  EXPECT_EQ(OpenResource(), 6203);
  ExpectControls({"RhoStart", "RhoEnd", "AlphaStart", "AlphaEnd", "NStart", "NEnd", "NInterval",
                  "Algorithm=refined", "Algorithm=crude", ControlAccept, "power-vs-n",
                  "power-vs-n1", "power-vs-n2", "power-vs-rho", "power-vs-alpha"});
  EXPECT_EQ(Find("NToVary=equal"), nullptr);
  EXPECT_EQ(Find("Algorithm=0"), nullptr) << "there is no exact distribution";
  OpenParameters({ModeSampleSize, "Z2R"});
  EXPECT_EQ(OpenResource(), 6205);
  ExpectControls({"Rho1", "Rho2", "PowerGoal", "Alpha", "SampleSizeN1", "SampleSizeN2",
                  "H0Type=two-sided", "H0Type=upper", "H0Type=lower", ControlSaveAs,
                  ControlSaveAsDefault});
  Press(ControlAccept);
  EXPECT_EQ(OpenResource(), 6207);
  ExpectControls({"RhoStart", "RhoEnd", "PowerStart", "PowerEnd", "AlphaStart", "AlphaEnd",
                  "NInterval", "NToVary=equal", "NToVary=n1", "NToVary=n2", "Algorithm=refined",
                  "Algorithm=crude", ControlAccept, "n-vs-power", "n-vs-rho", "n-vs-alpha"});
  EXPECT_TRUE(IsChecked("NToVary=equal"));
  for (const int varied : {2, 1, 0}) {
    EXPECT_EQ(Press(RadioOf("NToVary", varied)), ControlAccept);
    EXPECT_EQ(block().Z2R.Working.NToVary, varied);
  }
}

TEST_F(TwoCorrelations, ShowsItsPowerTable) {
  const char* const headings[] = {"H0:  Rho1 = Rho2", "H0:  Rho1 <= Rho2", "H0:  Rho1 >= Rho2"};
  for (const int form_ : {0, 1, 2}) {
    const char* const rho1 = form_ == 2 ? "-0.4" : "0.4";
    OpenResults({ModePower,
                 "Z2R",
                 {{"Rho1", rho1}, {"SampleSizeN1", "50"}, {"SampleSizeN2", "80"}},
                 {H0(form_)}});
    Press("Algorithm=crude");
    ASSERT_EQ(Press(ControlAccept), 1);
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
  }
}

TEST_F(TwoCorrelations, ShowsItsSizeTableByTheGroupVaried) {
  OpenResults({ModeSampleSize, "Z2R", {{"SampleSizeN1", "200"}, {"SampleSizeN2", "150"}}});
  Press("Algorithm=crude");
  ASSERT_EQ(Press(ControlAccept), 1);
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
  Press("NToVary=n1");
  ASSERT_EQ(Press(ControlAccept), 1);
  const int n1 = static_cast<int>(LastTable().rows[5].values[0]);
  EXPECT_EQ(RowValues()[6], "150");
  EXPECT_EQ(RowValues()[4], Shown(CrudePowerOfTwo(0, 0.4, 0, n1, 150)));
  EXPECT_GT(CrudePowerOfTwo(0, 0.4, 0, n1, 150), 0.9);
  Press("NToVary=n2");
  ASSERT_EQ(Press(ControlAccept), 1);
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
  OpenResults(
      {ModePower, "Z2R", {{"SampleSizeN1", "50"}, {"SampleSizeN2", "80"}}, {"H0Type=upper"}});
  Press(ControlAccept);
  EXPECT_THAT(
      Paragraphs(),
      ElementsAre("\r\nPower Analysis -- The Fisher Z-Test for Comparing 2 Independent "
                  "Correlations",
                  goal, test, kTails[1], assumption,
                  "\r\nWith the proposed sample sizes of N1 = 50 observations in Group 1, and N2 = "
                  "80 observations in Group 2, the study will have a power of " +
                      Percent(Row("Power (Refined Fisher Z)")) + "."));
  OpenResults({ModeSampleSize,
               "Z2R",
               {{"SampleSizeN1", "200"}, {"SampleSizeN2", "150"}},
               {"H0Type=two-sided"}});
  const std::string title =
      "\r\nSample Size Analysis -- The Fisher Z-Test for Comparing 2 Independent Correlations";
  Press(ControlAccept);
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
  Press("NToVary=n1");
  Press(ControlAccept);
  EXPECT_THAT(
      Paragraphs(),
      ElementsAre(title, goal, test, kTails[0], assumption,
                  "\r\nTo achieve the requested power of 90.00%, with N2 fixed at 150, a sample "
                  "size of at least N1 = " +
                      n1() + " observations is required in group 1.  With N1 = " + n1() +
                      " and N2 = 150, the actual power is " + power()));
  host_.TakeWorkbook();
  Press("NToVary=n2");
  Press(ControlAccept);
  EXPECT_THAT(
      Paragraphs(),
      ElementsAre(title, goal, test, kTails[0], assumption,
                  "\r\nTo achieve the requested power of 90.00%, with N1 fixed at 200, a sample "
                  "size of at least N2 = " +
                      n2() + " observations is required in group 2.  With N1 = 200 and N2 = " +
                      n2() + ", the actual power is " + power()));
}

TEST_F(TwoCorrelations, DrawsItsPowerPlots) {
  const std::string power = "Power (Algorithm: Fisher Z Refined)";
  ExpectPlots({ModePower, "Z2R", {{"SampleSizeN1", "50"}, {"SampleSizeN2", "80"}}}, {},
              "Two Correlations: Power Calculation", "Two Correlations, Z-Test (H0:  Rho1 = Rho2)",
              {{"power-vs-n", 14, "Power vs. N (Rho1 = 0.4,  Rho2= 0, Alpha = 0.05)",
                "Sample Size for Each Group (N1 = N2)", power},
               {"power-vs-n1", 14, "Power vs. N1 (Rho1 = 0.4,  Rho2= 0, Alpha = 0.05)",
                "Sample Size N1 (N2 fixed at 80)", power},
               {"power-vs-n2", 14, "Power vs. N2 (Rho1 = 0.4,  Rho2= 0, Alpha = 0.05)",
                "Sample Size N2 (N1 fixed at 50)", power},
               {"power-vs-rho", 19, "Power vs. Rho (N1 = 50, N2 = 80)",
                "Population Correlation Rho1 (Rho2 Fixed at 0)", power},
               {"power-vs-alpha", 15, "Power vs. Alpha (Rho1 = 0.4,  Rho2 = 0, N1 = 50, N2 = 80)",
                "Type I Error Rate (Alpha)", power}});
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
  OpenResults({ModeSampleSize, "Z2R", {{"SampleSizeN1", "300"}, {"SampleSizeN2", "250"}}});
  for (const int varied : {0, 1, 2}) {
    Press(RadioOf("NToVary", varied));
    const Case& c = cases[varied];
    ExpectPlots({ModeSampleSize, "Z2R", {{"SampleSizeN1", "300"}, {"SampleSizeN2", "250"}}},
                {RadioOf("NToVary", varied)}, "Two Correlations: Sample Size Calculation",
                "Two Correlations, Z-Test (H0:  Rho1 = Rho2)",
                {{"n-vs-power", 2, c.titles[0], "Power Goal", c.yLabel},
                 {"n-vs-rho", 7, c.titles[1], "Group 1 Population Correlation (Rho1)", c.yLabel},
                 {"n-vs-alpha", 3, c.titles[2], "Type I Error Rate (Alpha)", c.yLabel}});
  }
}

TEST_F(TwoCorrelations, EachPowerPlotVariesWhatItNames) {
  OpenResults({ModePower, "Z2R", {{"SampleSizeN1", "50"}, {"SampleSizeN2", "80"}}});
  Press("Algorithm=crude");
  Press("power-vs-n");
  EXPECT_NEAR(LastChart().y[0], CrudePowerOfTwo(0, 0.4, 0, 100, 100), 1e-6);
  Press("power-vs-n1");
  EXPECT_NEAR(LastChart().y[0], CrudePowerOfTwo(0, 0.4, 0, 100, 80), 1e-6);
  Press("power-vs-n2");
  EXPECT_NEAR(LastChart().y[0], CrudePowerOfTwo(0, 0.4, 0, 50, 100), 1e-6);
  Press("power-vs-rho");
  EXPECT_NEAR(LastChart().y[0], CrudePowerOfTwo(0, 0.2, 0, 50, 80), 1e-6);
  Press("power-vs-alpha");
  EXPECT_NEAR(LastChart().y[0], CrudePowerOfTwo(0, 0.4, 0, 50, 80, 0.01), 1e-6);
}

TEST_F(TwoCorrelations, ASizePlotAgreesWithTheCalculation) {
  OpenResults({ModeSampleSize, "Z2R", {{"SampleSizeN1", "300"}, {"SampleSizeN2", "250"}}});
  Type("PowerStart", "0.9");
  for (const int varied : {0, 1, 2}) {
    Press(RadioOf("NToVary", varied));
    Press("n-vs-power");
    const float first = LastChart().y[0];
    ASSERT_EQ(Press(ControlAccept), 1);
    const std::size_t row = varied == 2 ? 6 : 5;
    EXPECT_EQ(first, static_cast<float>(LastTable().rows[row].values[0]));
  }
}

TEST_F(TwoCorrelations, EqualCorrelationsLeadBackToTheParameters) {
  for (const int mode : {ModePower, ModeSampleSize}) {
    host_.ClearMessages();
    OpenResults({mode, "Z2R", {{"Rho1", "0"}}});
    ExpectRefused(ControlAccept, {text::NullHypothesisTrue}, parameters_);
  }
}

// Power is checked on the correlations, the search on their Fisher z.
TEST_F(TwoCorrelations, TheSearchChecksTheDifferenceOfTheirZ) {
  OpenResults({ModeSampleSize, "Z2R", {{"Rho1", "0.5"}, {"Rho2", "0.4995"}}});
  ExpectRefused(ControlAccept, {text::NullHypothesisNearlyTrue}, parameters_);
  EXPECT_THAT(host_.messages()[0].text, HasSubstr("within a tolerance of 0.001 of"));
  EXPECT_EQ(host_.messageCalls(), 1);
  host_.ClearMessages();
  OpenResults({ModePower, "Z2R", {{"Rho1", "0.5"}, {"Rho2", "0.4995"}}});
  EXPECT_EQ(Press(ControlAccept), 1);
  EXPECT_THAT(host_.messages(), IsEmpty());
  OpenResults({ModeSampleSize, "Z2R", {{"Rho1", "0.9"}, {"Rho2", "0.8995"}}});
  EXPECT_EQ(Press(ControlAccept), 1);
  EXPECT_THAT(host_.messages(), IsEmpty());
  EXPECT_GT(Row("Required N1 (Refined Fisher Z)"), 1000000);
}

TEST_F(TwoCorrelations, AOneTailedEffectTheWrongWayIsATrueNull) {
  OpenResults({ModePower, "Z2R", {{"Rho1", "-0.4"}}, {"H0Type=upper"}});
  ExpectRefused(ControlAccept, {text::NullHypothesisTrue}, parameters_);
  host_.ClearMessages();
  OpenResults({ModeSampleSize, "Z2R", {{"Rho1", "0.4"}}, {"H0Type=lower"}});
  ExpectRefused(ControlAccept, {text::NullHypothesisTrue}, parameters_);
}

TEST_F(TwoCorrelations, AFixedGroupTooSmallCannotBeMadeUp) {
  OpenResults({ModeSampleSize, "Z2R", {{"SampleSizeN1", "12"}, {"SampleSizeN2", "10"}}});
  Press("NToVary=n1");
  ExpectRefused(ControlAccept, {13199}, results_);
  EXPECT_EQ(host_.messages()[0].text, "This problem cannot be solved without increasing N2.");
  host_.ClearMessages();
  Press("NToVary=n2");
  ExpectRefused(ControlAccept, {13200}, results_);
  EXPECT_EQ(host_.messages()[0].text, "This problem cannot be solved without increasing N1.");
  host_.ClearMessages();
  EXPECT_EQ(Press("n-vs-alpha"), 0);
  EXPECT_THAT(Items<Chart>(), IsEmpty());
  EXPECT_THAT(MessageIds(), IsEmpty()) << "a plot leaves such points out without a word";
}

TEST_F(TwoCorrelations, ThereIsNoExactDistribution) {
  OpenParameters({ModePower, "Z2R"});
  block().Z2R.Working.Algorithm = 0;
  Press(ControlAccept);
  EXPECT_EQ(Press(ControlAccept), 1);
  EXPECT_EQ(RowTitles().back(), "Power (Exact)");
  EXPECT_EQ(RowValues().back(), "-");
  EXPECT_THAT(Paragraphs().back(), HasSubstr("power of -----."));
  host_.TakeWorkbook();
  OpenParameters({ModeSampleSize, "Z2R"});
  block().Z2R.Working.Algorithm = 0;
  Press(ControlAccept);
  EXPECT_EQ(Press(ControlAccept), 0);
  EXPECT_THAT(host_.workbook().items, IsEmpty());
  EXPECT_EQ(OpenResource(), 6207);
}

TEST_F(TwoCorrelations, TheGroupVariedIsNeitherCheckedNorSaved) {
  OpenResults({ModeSampleSize, "Z2R"});
  Press("NToVary=n1");
  Press(ControlChangeParams);
  EXPECT_EQ(block().Z2R.Committed.NToVary, 1);
  EXPECT_FALSE(TableOf(Family::Z2R).Find("NToVary")->keyed());
}

TEST_F(TwoCorrelations, ACorrelationPlotAcrossTheOtherKeepsTheRefusedPoint) {
  for (const int mode : {ModePower, ModeSampleSize}) {
    host_.ClearMessages();
    OpenResults({mode, "Z2R"});
    Type("RhoStart", "-0.5");
    Type("RhoEnd", "0.5");
    Type("NInterval", "4");
    ASSERT_EQ(Press(mode == ModePower ? "power-vs-rho" : "n-vs-rho"), 1);
    ASSERT_THAT(LastChart().y, SizeIs(4));
    EXPECT_EQ(LastChart().y[2], -9999);
    EXPECT_THAT(MessageIds(), ElementsAre(text::NullHypothesisTrue));
  }
}

}  // namespace
}  // namespace poweranalysis
