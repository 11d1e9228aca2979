// The dialogs, tables, reports and charts of one proportion, two proportions and paired
// proportions. Values of powers and sizes come from SciPy's binomial and normal distributions.
#include "dialogs/FamilyRun.h"

namespace poweranalysis {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::SizeIs;
using ::testing::StartsWith;

using OneProportionFamily = FamilyRun;
using TwoProportionsFamily = FamilyRun;
using McNemarFamily = FamilyRun;

constexpr const char* kExact = "Algorithm=0";
constexpr const char* kNormal = "Algorithm=1";
constexpr const char* kContinuity = "Continuity";
constexpr const char* kEqualN = "EqualN";

Design P1Power(const char* pi, int form) {
  return {ModePower,
          "P1",
          {{"Pi", pi}, {"Pi0", "0.5"}, {"SampleSize", "80"}, {"Alpha", "0.04"}},
          {H0(form)}};
}
Design P1Size(const char* pi, int form) {
  return {ModeSampleSize,
          "P1",
          {{"Pi", pi}, {"Pi0", "0.5"}, {"PowerGoal", "0.83"}, {"Alpha", "0.04"}},
          {H0(form)}};
}
Design P2Power(const char* pi1, const char* pi2, int form) {
  return {ModePower,
          "P2",
          {{"Pi1", pi1},
           {"Pi2", pi2},
           {"SampleSizeN1", "70"},
           {"SampleSizeN2", "90"},
           {"Alpha", "0.04"}},
          {H0(form)}};
}
Design P2Size(int form) {
  return {ModeSampleSize,
          "P2",
          {{"Pi1", "0.62"},
           {"Pi2", "0.41"},
           {"SampleSizeN1", "120"},
           {"SampleSizeN2", "90"},
           {"Alpha", "0.04"},
           {"PowerGoal", "0.83"}},
          {H0(form)}};
}
Design QmacPower(int form) {
  return {ModePower,
          "QMAC",
          {{"Delta", "0.12"}, {"Eta", "0.45"}, {"SampleSize", "130"}, {"Alpha", "0.04"}},
          {H0(form)}};
}
Design QmacSize(int form) {
  return {ModeSampleSize,
          "QMAC",
          {{"Delta", "0.12"}, {"Eta", "0.45"}, {"PowerGoal", "0.83"}, {"Alpha", "0.04"}},
          {H0(form)}};
}

// --- One proportion

TEST_F(OneProportionFamily, PagesHaveTheirFields) {
  const std::vector<ControlName> forms = {"H0Type=two-sided", "H0Type=upper", "H0Type=lower"};
  const std::vector<ControlName> ranges = {"PiStart", "PiEnd", "AlphaStart", "AlphaEnd",
                                           "NInterval"};
  const std::vector<ControlName> algorithms = {kExact, kNormal};
  ExpectPage({ModePower, "P1", false, 6211, {"Pi", "Pi0", "Alpha", "SampleSize"}, forms});
  EXPECT_EQ(Find("H0Type=3"), nullptr) << "the fourth form is for files alone";
  ExpectPage({ModeSampleSize, "P1", false, 6216, {"Pi", "Pi0", "PowerGoal", "Alpha"}, forms});
  ExpectPage({ModePower,
              "P1",
              true,
              6213,
              ranges,
              algorithms,
              {},
              {"power-vs-n", "power-vs-alpha", "power-vs-pi"}});
  ExpectControls({"NStart", "NEnd"}, {ControlKind::IntEdit});
  ExpectPage({ModeSampleSize,
              "P1",
              true,
              6241,
              ranges,
              algorithms,
              {},
              {"n-vs-power", "n-vs-alpha", "n-vs-pi"}});
  ExpectControls({"PowerStart", "PowerEnd"}, {ControlKind::RealEdit});
  Press(kNormal);
  EXPECT_EQ(block().P1.Working.Algorithm, 1);
}

// The table shows actual alpha and the normal power before the exact power, which is computed
// first.
TEST_F(OneProportionFamily, PowerTableStandsInItsOrder) {
  const auto headings = [](const char* form) {
    return std::vector<std::string>{"Power Calculation", "One Proportion, Z, Chi-Square Test",
                                    form};
  };
  const auto rows = [](double pi, double actual, double normal, double exact) {
    return Rows{{"Group Sample Size (N)", 80},
                {"Null Proportion (Pi0)", 0.5},
                {"Population Proportion (Pi)", pi},
                {"Alpha (Nominal)", 0.04},
                {"Actual Alpha (Exact)", actual},
                {"Power (Normal Approximation)", normal},
                {"Power (Exact)", exact}};
  };
  ExpectTables({
      {P1Power("0.65", 0),
       {},
       193,
       headings("H0:  Pi = Pi0"),
       rows(0.65, 0.0329926184, 0.7453508202, 0.7235282587)},
      {P1Power("0.65", 1),
       {kNormal},
       193,
       headings("H0:  Pi <= Pi0"),
       rows(0.65, 0.0464559411, 0.8358702649, 0.8540286200)},
      {P1Power("0.35", 2),
       {},
       193,
       headings("H0:  Pi >= Pi0"),
       rows(0.35, 0.0464559411, 0.8358702649, 0.8540286200)},
  });
}

TEST_F(OneProportionFamily, SizeTableFollowsTheAlgorithmAndShowsBothPowers) {
  const auto headings = [](const char* form) {
    return std::vector<std::string>{"Sample Size Calculation", "One Proportion, Z, Chi-Square Test",
                                    form};
  };
  const auto rows = [](double pi, double actual, double normal, double exact, double n) {
    return Rows{{"Null Proportion (Pi0)", 0.5},
                {"Population Proportion (Pi)", pi},
                {"Alpha (Nominal)", 0.04},
                {"Actual Alpha (Exact)", actual},
                {"Power Goal", 0.83},
                {"Actual Power (Normal Approx.)", normal},
                {"Actual Power (Exact)", exact},
                {"Required Sample Size (N)", n}};
  };
  ExpectTables({
      {P1Size("0.65", 0),
       {},
       194,
       headings("H0:  Pi = Pi0"),
       rows(0.65, 0.0417293212, 0.8275196436, 0.8338137129, 97)},
      {P1Size("0.65", 0),
       {kNormal},
       194,
       headings("H0:  Pi = Pi0"),
       rows(0.65, 0.0333600288, 0.8315563189, 0.8137162188, 98)},
      {P1Size("0.65", 1),
       {},
       194,
       headings("H0:  Pi <= Pi0"),
       rows(0.65, 0.0443912126, 0.8269657854, 0.8406947107, 78)},
      {P1Size("0.35", 2),
       {},
       194,
       headings("H0:  Pi >= Pi0"),
       rows(0.35, 0.0443912126, 0.8269657854, 0.8406947107, 78)},
  });
}

TEST_F(OneProportionFamily, ReportsQuoteTheExactPower) {
  Calculate(P1Power("0.65", 0), {kNormal});
  EXPECT_THAT(
      Paragraphs(),
      ElementsAre(
          "\r\nPower Analysis -- Chi-square Test on One Proportion",
          "\r\nOne goal of the proposed study is to test whether the proportion of events "
          "occurring in a population differs from a hypothesized value.",
          "\r\nA Chi-square test will be performed, with the Type I Error rate (alpha) set "
          "at 0.04. ",
          kTwoTailed,
          "\r\nAssume that, in the sampled population, the actual proportion Pi = 0.65, and "
          "the null hypothesized proportion Pi0 = 0.5. ",
          "\r\nWith a sample size of 80, the study will have a power of 72.35%."));
  Calculate(P1Size("0.35", 2));
  ASSERT_THAT(Paragraphs(), SizeIs(7));
  EXPECT_EQ(Paragraphs()[0], "\r\nSample Size Analysis -- Chi-square Test on One Proportion");
  EXPECT_EQ(Paragraphs()[3], kNegative);
  EXPECT_EQ(
      Paragraphs()[5],
      "\r\nTo achieve the requested power of 83.00%, at least 78 observations are required. ");
  EXPECT_EQ(Paragraphs()[6], "With N = 78, the actual power is 84.07%.");
  ExpectReportOnlyAtTheHighestLevel(P1Power("0.65", 1));
}

TEST_F(OneProportionFamily, ATrueNullIsRefused) {
  ExpectRefusedEffect(P1Power("0.5", 0), text::NullHypothesisTrue,
                      {"power-vs-n", "power-vs-alpha"});
  ExpectRefusedEffect(P1Power("0.4", 1), text::NullHypothesisTrue,
                      {"power-vs-n", "power-vs-alpha"});
  ExpectRefusedEffect(P1Size("0.6", 2), text::NullHypothesisTrue, {"n-vs-power", "n-vs-alpha"});
  ExpectRefusedEffect(P1Size("0.50005", 0), text::NullHypothesisNearlyTrue,
                      {"n-vs-power", "n-vs-alpha"});
  EXPECT_THAT(host_.messages()[0].text, HasSubstr("within a tolerance of 0.0001 of being true"));
  Calculate(P1Power("0.50005", 0));
  EXPECT_NEAR(Row("Power (Exact)"), Row("Actual Alpha (Exact)"), 1e-3);
}

TEST_F(OneProportionFamily, ASmallGapIsSearchedDownToTheToleranceAlone) {
  Results(With(P1Size("0.5005", 0), "PowerGoal", "0.65"), {kNormal});
  EXPECT_EQ(Press(ControlAccept), 1) << "a gap under .001 has no message of its own";
  EXPECT_THAT(host_.messages(), IsEmpty());
  EXPECT_GT(LastValue(), 5e6);
}

TEST_F(OneProportionFamily, AFailedPointEndsThePlotButIsKept) {
  for (const auto& [mode, button] :
       {std::pair{ModePower, "power-vs-pi"}, {ModeSampleSize, "n-vs-pi"}}) {
    Results({mode, "P1"});
    Type("PiStart", "0.25");
    Type("PiEnd", "0.75");
    Type("NInterval", "8");
    ASSERT_EQ(Press(button), 1) << "the points before it are drawn";
    const Chart chart = Items<Chart>().back();
    EXPECT_THAT(chart.x, ElementsAre(0.25F, 0.3125F, 0.375F, 0.4375F));
    EXPECT_THAT(chart.y, ::testing::Each(::testing::Gt(0.F)));
    EXPECT_GE(chart.xAxis.max, 0.5F) << "the failed point's place stretches the axis";
    EXPECT_LT(chart.xAxis.max, 0.6F) << "nothing after it was computed";
    EXPECT_THAT(MessageIds(), ElementsAre(text::NullHypothesisTrue));
    EXPECT_EQ(host_.messageCalls(), 1);
    EXPECT_EQ(OpenResource(), results_);
  }
}

TEST_F(OneProportionFamily, APlotThatFailsAtItsFirstPointIsSilentlyEmpty) {
  Results({ModePower, "P1"});
  Type("PiStart", "0.5");
  Type("PiEnd", "0.75");
  Type("NInterval", "4");
  Press("power-vs-pi");
  EXPECT_THAT(Items<Chart>(), IsEmpty());
  EXPECT_THAT(MessageIds(), ElementsAre(text::NullHypothesisTrue));
}

TEST_F(OneProportionFamily, DrawsItsPlots) {
  const std::string power = "Single Proportion: Power Calc.";
  const std::string size = "Single Proportion: Sample Size Calculation";
  const std::string family = "One Proportion, Z, Chi-Square Test ";
  const std::string exact = "Power (Exact)";
  const std::string normal = "Power (Normal Approximation)";
  ExpectPlots(P1Power("0.65", 0), {}, power, family + "(H0:  Pi = Pi0)",
              {{"power-vs-n", 14, "Power vs. N (Pi = 0.65, Pi0 = 0.5, Alpha = 0.04)",
                "Group Sample Size (N)", exact, "SampleSize", exact}});
  ExpectPlots(P1Power("0.65", 1), {kNormal}, power, family + "(H0:  Pi <= Pi0)",
              {{"power-vs-n", 14, "Power vs. N (Pi = 0.65, Pi0 = 0.5, Alpha = 0.04)",
                "Group Sample Size (N)", normal, "SampleSize", normal}});
  ExpectPlots(P1Power("0.35", 2), {}, power, family + "(H0:  Pi >= Pi0)",
              {{"power-vs-alpha", 15, "Power vs. Alpha (Pi = 0.35, Pi0 = 0.5, N = 80)",
                "Type I Error Rate (Alpha)", exact, "Alpha", exact}});
  ExpectPlots(P1Power("0.65", 0), {kNormal}, power, family + "(H0:  Pi = Pi0)",
              {{"power-vs-pi", 17, "Power vs. Pi (Pi0 = 0.5, N = 80, Alpha = 0.04)",
                "Population Proportion (Pi)", normal, "Pi", normal}});
  ExpectPlots(P1Size("0.65", 0), {}, size, family + "(H0:  Pi = Pi0)",
              {{"n-vs-power", 2, "N vs. Power (Pi = 0.65, Pi0 = 0.5, Alpha = 0.04)", "Power Goal",
                "Sample Size (Exact)", "PowerGoal"}});
  ExpectPlots(P1Size("0.65", 0), {kNormal}, size, family + "(H0:  Pi = Pi0)",
              {{"n-vs-alpha", 3, "N vs. Alpha (Pi = 0.65, Pi0 = 0.5, Power Goal = 0.83)",
                "Type I Error Rate (Alpha)", "Sample Size (Normal Approximation)", "Alpha"}});
  ExpectPlots(P1Size("0.65", 1), {}, size, family + "(H0:  Pi <= Pi0)",
              {{"n-vs-pi", 5, "N vs. Pi (Alpha = 0.04,  Pi0 = 0.5, Power = 0.83)",
                "Population Proportion (Pi)", "Sample Size (Exact)", "Pi"}});
}

TEST_F(OneProportionFamily, AFormFromAFileHasNoHeadingAndNoPower) {
  Parameters(P1Power("0.65", 0));
  block().P1.Working.H0Type = 3;
  Press(ControlAccept);
  Press(ControlAccept);
  ASSERT_THAT(Items<SummaryTable>(), SizeIs(1));
  EXPECT_THAT(Headings(), ElementsAre("Power Calculation", "One Proportion, Z, Chi-Square Test"));
  EXPECT_TRUE(IsMissing(Row("Power (Exact)")));
  EXPECT_TRUE(IsMissing(Row("Power (Normal Approximation)")));
  EXPECT_THAT(Paragraphs(), SizeIs(5)) << "no tail sentence";
  EXPECT_THAT(Paragraphs().back(), HasSubstr("a power of -----."));
  Parameters(P1Size("0.65", 0));
  block().P1.Working.H0Type = 3;
  Press(ControlAccept);
  Press(ControlAccept);
  EXPECT_THAT(Items<SummaryTable>(), IsEmpty()) << "a failed size sends nothing";
}

// --- Two proportions

TEST_F(TwoProportionsFamily, PagesHaveTheirFields) {
  const std::vector<ControlName> forms = {"H0Type=two-sided", "H0Type=upper", "H0Type=lower"};
  const std::vector<ControlName> checks = {kContinuity, kEqualN};
  const std::vector<ControlName> ranges = {"PiStart", "PiEnd", "AlphaStart", "AlphaEnd",
                                           "NInterval"};
  ExpectPage({ModePower,
              "P2",
              false,
              6243,
              {"Pi1", "Pi2", "Alpha", "SampleSizeN1", "SampleSizeN2"},
              forms,
              checks,
              {}});
  ExpectPage({ModeSampleSize,
              "P2",
              false,
              6247,
              {"Pi1", "Pi2", "PowerGoal", "Alpha", "SampleSizeN1", "SampleSizeN2"},
              forms,
              checks,
              {}});
  ExpectPage({ModePower,
              "P2",
              true,
              6245,
              ranges,
              {},
              {},
              {"power-vs-n", "power-vs-n1", "power-vs-n2", "power-vs-pi1", "power-vs-alpha"}});
  ExpectControls({"NStart", "NEnd"}, {ControlKind::IntEdit});
  ExpectPage(
      {ModeSampleSize,
       "P2",
       true,
       6249,
       ranges,
       {RadioOf("NToVary", 0), RadioOf("NToVary", 1), RadioOf("NToVary", 2), RadioOf("NToVary", 3)},
       {},
       {"n-vs-power", "n-vs-pi1", "n-vs-alpha"}});
  ExpectControls({"PowerStart", "PowerEnd", "Ratio"}, {ControlKind::RealEdit});
}

TEST_F(TwoProportionsFamily, ChecksAndRadiosStoreTheirValues) {
  Parameters({ModeSampleSize, "P2"});
  EXPECT_FALSE(IsChecked(kContinuity));
  EXPECT_TRUE(IsChecked(kEqualN));
  Click(kContinuity);
  Click(kEqualN);
  EXPECT_EQ(block().P2.Working.Continuity, 1);
  EXPECT_EQ(block().P2.Working.EqualN, 0);
  EXPECT_TRUE(IsChecked(kContinuity));
  EXPECT_FALSE(IsChecked(kEqualN));
  EXPECT_EQ(block().P2.Working.SampleSizeN2, 100);
  Click(kContinuity);
  EXPECT_EQ(block().P2.Working.Continuity, 0);
  Press(ControlAccept);
  for (int value = 3; value >= 0; --value) {
    Press(RadioOf("NToVary", value));
    EXPECT_EQ(block().P2.Working.NToVary, value);
  }
  Type("Ratio", "2.5");
  EXPECT_EQ(block().P2.Working.Ratio, 2.5);
}

TEST_F(TwoProportionsFamily, EqualNChangesNoNumberAndCopiesNoSize) {
  Calculate(Pressing(P2Power("0.62", "0.41", 0), {kEqualN}));
  EXPECT_NEAR(LastValue(), 0.7243411394, 1e-6);
  EXPECT_EQ(Row("Sample Size N2"), 90);
}

TEST_F(TwoProportionsFamily, PowerTableStandsInItsOrder) {
  const auto headings = [](const char* form) {
    return std::vector<std::string>{"Power Calculation", "Two Proportions, Z-Test", form};
  };
  const auto rows = [](double pi1, double pi2, const char* title, double power) {
    return Rows{{"Population Proportion Pi1", pi1},
                {"Population Proportion Pi2", pi2},
                {"Sample Size N1", 70},
                {"Sample Size N2", 90},
                {"Type I Error Rate (Alpha)", 0.04},
                {title, power}};
  };
  const char* plain = "Power (Uncorrected)";
  ExpectTables({
      {P2Power("0.62", "0.41", 0),
       {},
       209,
       headings("H0:  Pi1 = Pi2"),
       rows(0.62, 0.41, plain, 0.7243411394)},
      {Pressing(P2Power("0.62", "0.41", 0), {kContinuity}),
       {},
       209,
       headings("H0:  Pi1 = Pi2"),
       rows(0.62, 0.41, "Power (Continuity Corr.)", 0.6673383780)},
      {P2Power("0.62", "0.41", 1),
       {},
       209,
       headings("H0:  Pi1 <= Pi2"),
       rows(0.62, 0.41, plain, 0.8175741774)},
      {P2Power("0.41", "0.62", 2),
       {},
       209,
       headings("H0:  Pi1 >= Pi2"),
       rows(0.41, 0.62, plain, 0.8179254320)},
  });
}

TEST_F(TwoProportionsFamily, SizeTableFollowsTheGroupToVary) {
  const auto headings = [](const char* form) {
    return std::vector<std::string>{"Sample Size Calculation", "Two Proportions, Z-Test", form};
  };
  const auto rows = [](const char* title, double power, double n1, double n2) {
    return Rows{{"Population Proportion Pi1", 0.62},
                {"Population Proportion Pi2", 0.41},
                {"Type I Error Rate (Alpha)", 0.04},
                {"Power Goal", 0.83},
                {title, power},
                {"Sample Size N1", n1},
                {"Sample Size N2", n2}};
  };
  const char* plain = "Power (Uncorrected)";
  ExpectTables({
      {P2Size(0), {}, 210, headings("H0:  Pi1 = Pi2"), rows(plain, 0.8336327662, 102, 102)},
      {Pressing(P2Size(0), {kContinuity}),
       {},
       210,
       headings("H0:  Pi1 = Pi2"),
       rows("Power (Continuity Corr.)", 0.8324292101, 111, 111)},
      {P2Size(1), {}, 210, headings("H0:  Pi1 <= Pi2"), rows(plain, 0.8317973476, 82, 82)},
      {P2Size(0),
       {RadioOf("NToVary", 1)},
       210,
       headings("H0:  Pi1 = Pi2"),
       rows(plain, 0.8301372835, 115, 90)},
      {P2Size(0),
       {RadioOf("NToVary", 2)},
       210,
       headings("H0:  Pi1 = Pi2"),
       rows(plain, 0.8324340763, 120, 88)},
  });
  Results(P2Size(0), {RadioOf("NToVary", 3)});
  Type("Ratio", "2");
  ASSERT_EQ(Press(ControlAccept), 1);
  EXPECT_EQ(Row("Sample Size N1"), 152);
  EXPECT_EQ(Row("Sample Size N2"), 76);
  EXPECT_NEAR(Row(plain), 0.8329880510, 1e-6);
}

TEST_F(TwoProportionsFamily, ReportsStandInTheirOrder) {
  const std::string goal =
      "\r\nOne goal of the proposed study is to compare the proportions from two populations, to "
      "test whether they are equal. ";
  const std::string test =
      "\r\nA 2 Sample Z-Test will be performed on two independent samples, with the Type I Error "
      "rate (alpha) set at 0.04.  ";
  const std::string assume =
      "\r\nAssume that, in the sampled population, the actual proportions for the two groups are "
      "0.62 and 0.41. ";
  Calculate(P2Power("0.62", "0.41", 1));
  EXPECT_THAT(
      Paragraphs(),
      ElementsAre(
          "\r\nPower Analysis -- The 2 Sample Independent Sample Z-Test on Proportions", goal, test,
          kPositive, assume,
          "\r\nWith the proposed sample sizes of N1 = 70 observations in Group 1, and N2 = 90 "
          "observations in Group 2, the study will have a power of 81.76%."));
  Calculate(P2Size(0));
  EXPECT_THAT(
      Paragraphs(),
      ElementsAre(
          "\r\nSample Size Analysis -- The 2 Sample Independent Sample Z-Test on Proportions", goal,
          test, kTwoTailed, assume,
          "\r\nTo achieve the requested power of 83.00%, with the restriction that sample sizes "
          "for "
          "the two groups are equal, sample sizes of at least N = 102 observations are required in "
          "both groups. ",
          "With N = 102 in each group, the actual power is 83.36%."));
  ExpectReportOnlyAtTheHighestLevel(P2Size(0));
}

TEST_F(TwoProportionsFamily, SizeStatementFollowsTheGroupToVary) {
  Calculate(P2Size(0), {RadioOf("NToVary", 1)});
  ASSERT_THAT(Paragraphs(), SizeIs(6));
  EXPECT_EQ(
      Paragraphs()[5],
      "\r\nTo achieve the requested power of 83.00%, with N2 fixed at 90, a sample size of at "
      "least N1 = 115 observations is required in group 1.  With N1 = 115 and N2 = 90, the "
      "actual power is 83.01%.");
  Calculate(P2Size(0), {RadioOf("NToVary", 2)});
  ASSERT_THAT(Paragraphs(), SizeIs(6));
  EXPECT_EQ(Paragraphs()[5],
            "\r\nTo achieve the requested power of 83.00%, with N1 fixed at 120, a sample size of "
            "at least N2 = 88 observations is required in group 2.  With N1 = 120 and N2 = 88, the "
            "actual power is 83.24%.");
  Results(P2Size(0), {RadioOf("NToVary", 3)});
  Type("Ratio", "2");
  Press(ControlAccept);
  ASSERT_THAT(Paragraphs(), SizeIs(6));
  EXPECT_EQ(
      Paragraphs()[5],
      "\r\nTo achieve the requested power of 83.00%, with the ratio of N1/N2 fixed at 2, a "
      "sample sizes of at least N1 = 152 and N2 = 76 observations are required. With N1 = 152 "
      "and N2 = 76, the actual power is 83.30%.");
}

TEST_F(TwoProportionsFamily, AFixedGroupThatIsTooSmallIsSaidOnceAndStays) {
  for (const int vary : {1, 2}) {
    Results(With(With(P2Size(0), "SampleSizeN1", "20"), "SampleSizeN2", "20"),
            {RadioOf("NToVary", vary)});
    EXPECT_EQ(Press(ControlAccept), 0);
    ASSERT_THAT(MessageIds(), ElementsAre(12954));
    EXPECT_EQ(host_.messages()[0].text, "Satisfactory N for selected group not found.");
    EXPECT_EQ(host_.messageCalls(), 1);
    EXPECT_THAT(host_.workbook().items, IsEmpty());
    EXPECT_EQ(OpenResource(), results_);
  }
}

TEST_F(TwoProportionsFamily, ATrueNullIsRefused) {
  ExpectRefusedEffect(P2Power("0.5", "0.5", 0), text::NullHypothesisTrue,
                      {"power-vs-n", "power-vs-n1", "power-vs-n2", "power-vs-alpha"});
  ExpectRefusedEffect(P2Power("0.41", "0.62", 1), text::NullHypothesisTrue, {"power-vs-n"});
  ExpectRefusedEffect(P2Power("0.62", "0.41", 2), text::NullHypothesisTrue, {"power-vs-n"});
  ExpectRefusedEffect(With(With(P2Size(0), "Pi1", "0.5"), "Pi2", "0.49995"),
                      text::NullHypothesisNearlyTrue, {"n-vs-power", "n-vs-alpha"});
  EXPECT_THAT(host_.messages()[0].text, HasSubstr("within a tolerance of 0.0001 of being true"));
}

TEST_F(TwoProportionsFamily, DrawsItsPowerPlots) {
  const std::string power = "Comparing 2 Proportions: Power Calculation";
  const std::string family = "Two Proportions, Z-Test (H0:  Pi1 = Pi2)";
  const std::string slots = " (Pi1 = 0.62,  Pi2= 0.41, Alpha = 0.04)";
  const Design design = P2Power("0.62", "0.41", 0);
  const Design corrected = Pressing(design, {kContinuity});
  const std::string y = "Power (No Continuity Correction)";
  const std::string yCorrected = "Power (Corrected for Continuity)";
  ExpectPlots(design, {}, power, family,
              {{"power-vs-n", 14, "Power vs. N" + slots, "Sample Size for Each Group (N1 = N2)", y,
                "SampleSizeN1", "", "SampleSizeN2"},
               {"power-vs-n1", 14, "Power vs. N1" + slots, "Sample Size N1 (N2 fixed at 90)", y,
                "SampleSizeN1"},
               {"power-vs-n2", 14, "Power vs. N2" + slots, "Sample Size N2 (N1 fixed at 70)", y,
                "SampleSizeN2"},
               {"power-vs-pi1", 17, "Power vs. Pi1 (N1 = 70, N2 = 90, Alpha = 0.04)",
                "Population Proportion Pi1 (Pi2 Fixed at 0.41)", y, "Pi1"},
               {"power-vs-alpha", 15, "Power vs. Alpha (Pi1 = 0.62,  Pi2 = 0.41, N1 = 70, N2 = 90)",
                "Type I Error Rate (Alpha)", y, "Alpha"}});
  ExpectPlots(corrected, {}, power, family,
              {{"power-vs-alpha", 15, "Power vs. Alpha (Pi1 = 0.62,  Pi2 = 0.41, N1 = 70, N2 = 90)",
                "Type I Error Rate (Alpha)", yCorrected, "Alpha"}});
}

TEST_F(TwoProportionsFamily, DrawsItsSizePlots) {
  const std::string size = "Comparing 2 Proportions: Sample Size Calc.";
  const std::string family = "Two Proportions, Z-Test (H0:  Pi1 = Pi2)";
  const std::string none = "No Continuity Correction";
  const Design design = P2Size(0);
  ExpectPlots(design, {}, size, family,
              {{"n-vs-power", 2, "N vs. Power (Pi1 = 0.62,  Pi2 = 0.41, Alpha = 0.04)",
                "Power Goal (" + none + ")", "Sample Size for Each Group (N1 = N2)", "PowerGoal",
                "Sample Size N1"},
               {"n-vs-pi1", 5, "N vs. Pi1 (Pi2= 0.41, Alpha = 0.04)",
                "Population Proportion Pi1 (" + none + ")", "Sample Size for Each Group (N1 = N2)",
                "Pi1", "Sample Size N1"},
               {"n-vs-alpha", 3, "N vs. Alpha (Pi1 = 0.62,  Pi2 = 0.41)",
                "Type I Error Rate (Alpha) (" + none + ")", "Sample Size for Each Group (N1 = N2)",
                "Alpha", "Sample Size N1"}});
  ExpectPlots(Pressing(design, {kContinuity}), {RadioOf("NToVary", 1)}, size, family,
              {{"n-vs-alpha", 3, "N vs. Alpha (Pi1 = 0.62,  Pi2 = 0.41)",
                "Type I Error Rate (Alpha) (Corrected for Continuity)",
                "Sample Size N1 (N2 fixed at 90)", "Alpha", "Sample Size N1"}});
  ExpectPlots(design, {RadioOf("NToVary", 2)}, size, family,
              {{"n-vs-power", 2, "N vs. Power (Pi1 = 0.62,  Pi2 = 0.41, Alpha = 0.04)",
                "Power Goal (" + none + ")", "Sample Size N2 (N1 fixed at 120)", "PowerGoal",
                "Sample Size N2"}});
}

TEST_F(TwoProportionsFamily, ThePlotOfAFixedRatioShowsTheGroupItNames) {
  Results(P2Size(0), {RadioOf("NToVary", 3)});
  Type("Ratio", "2");
  Type("PowerStart", "0.83");
  Type("PowerEnd", "0.9");
  ASSERT_EQ(Press("n-vs-power"), 1);
  const Chart chart = Items<Chart>().back();
  EXPECT_EQ(chart.yLabel, "Sample Size N2 (Ratio N1/N2 fixed at 2)");
  EXPECT_EQ(chart.y.front(), 76);
}

TEST_F(TwoProportionsFamily, APlotAcrossTheNullGoesOnPastTheFailedPoint) {
  Results({ModePower, "P2"});
  Type("PiStart", "0.25");
  Type("PiEnd", "0.75");
  Type("NInterval", "4");
  ASSERT_EQ(Press("power-vs-pi1"), 1);
  const Chart chart = Items<Chart>().back();
  ASSERT_THAT(chart.y, SizeIs(4));
  EXPECT_EQ(chart.y[2], -9999);
  EXPECT_GT(chart.y[3], 0);
  EXPECT_THAT(MessageIds(), ElementsAre(text::NullHypothesisTrue));
}

TEST_F(TwoProportionsFamily, TheFrameShowsTheInputs) {
  Results(P2Power("0.62", "0.41", 0));
  for (const char* line :
       {"Population Proportion Pi1: 0.62", "Population Proportion Pi2: 0.41", "Sample Size N1: 70",
        "Sample Size N2: 90", "Type I Error Rate (Alpha): 0.04"}) {
    EXPECT_THAT(TextOf(ControlSummary), HasSubstr(line));
  }
}

// --- Paired proportions

TEST_F(McNemarFamily, PagesHaveTheirFields) {
  const std::vector<ControlName> forms = {"H0Type=two-sided", "H0Type=upper", "H0Type=lower"};
  const std::vector<ControlName> ranges = {"DeltaStart", "DeltaEnd", "EtaStart", "EtaEnd",
                                           "AlphaStart", "AlphaEnd", "NInterval"};
  ExpectPage({ModePower, "QMAC", false, 6251, {"Delta", "Eta", "Alpha", "SampleSize"}, forms});
  ExpectPage({ModeSampleSize, "QMAC", false, 6255, {"Delta", "Eta", "PowerGoal", "Alpha"}, forms});
  ExpectPage({ModePower,
              "QMAC",
              true,
              6253,
              ranges,
              {},
              {},
              {"power-vs-n", "power-vs-delta", "power-vs-eta", "power-vs-alpha"}});
  ExpectControls({"NStart", "NEnd"}, {ControlKind::IntEdit});
  ExpectPage({ModeSampleSize,
              "QMAC",
              true,
              6257,
              ranges,
              {},
              {},
              {"n-vs-power", "n-vs-delta", "n-vs-eta", "n-vs-alpha"}});
  ExpectControls({"PowerStart", "PowerEnd"}, {ControlKind::RealEdit});
}

TEST_F(McNemarFamily, TablesStandInTheirOrder) {
  const auto power = [](double value) {
    return Rows{{"Delta", 0.12},
                {"Eta", 0.45},
                {"Group Sample Size (N)", 130},
                {"Type I Error Rate (Alpha)", 0.04},
                {"Power", value}};
  };
  const auto size = [](double value, double n) {
    return Rows{{"Delta", 0.12},
                {"Eta", 0.45},
                {"Type I Error Rate (Alpha)", 0.04},
                {"Power Goal", 0.83},
                {"Actual Power for Required N", value},
                {"Required Sample Size (N)", n}};
  };
  const std::string family = "Two Proportions, Paired Sample";
  ExpectTables({
      {QmacPower(0), {}, 225, {"Power Calculation", family, "H0:  Delta = 0"}, power(0.4941773283)},
      {QmacPower(1),
       {},
       225,
       {"Power Calculation", family, "H0:  Delta <= 0"},
       power(0.6172291609)},
      {QmacSize(0),
       {},
       226,
       {"Sample Size Calculation", family, "H0:  Delta = 0"},
       size(0.8311535557, 278)},
      {QmacSize(1),
       {},
       226,
       {"Sample Size Calculation", family, "H0:  Delta <= 0"},
       size(0.8305700363, 224)},
  });
}

TEST_F(McNemarFamily, AnchorsOfTheDefaults) {
  Calculate({ModePower, "QMAC"});
  EXPECT_NEAR(LastValue(), 0.3485244, 1e-6);
  Calculate({ModePower, "QMAC", {}, {"H0Type=upper"}});
  EXPECT_NEAR(LastValue(), 0.4738968, 1e-6);
  Calculate({ModeSampleSize, "QMAC"});
  EXPECT_EQ(LastValue(), 412);
}

TEST_F(McNemarFamily, ReportsStandInTheirOrder) {
  Calculate(QmacPower(1));
  EXPECT_THAT(
      Paragraphs(),
      ElementsAre(
          "\r\nPower Analysis -- McNemar's Test on Paired Proportions  ",
          "\r\nOne goal of the proposed study is to test whether the proportion of times an "
          "event occurs is different in the conditions represented by the paired "
          "measurements.  ",
          "\r\nA McNemar test for equality of paired-sample proportions will be performed, "
          "with the Type I Error rate (alpha) set at 0.04. ",
          kPositive, "\r\nAssume that, in the sampled population, the proportion of discordant ",
          "pairs (Eta) is 0.45, and the difference in paired proportions (Delta) is 0.12.",
          "\r\nWith the proposed sample size of N = 130 paired observations, the study will "
          "have a power of 61.72%."));
  Calculate(QmacSize(0));
  EXPECT_EQ(Paragraphs()[0], "\r\nSample Size Analysis -- McNemar's Test on Paired Proportions  ");
  EXPECT_EQ(
      Paragraphs().back(),
      "\r\nTo achieve the requested power of 83.00%, a sample size of at least N = 278 paired "
      "observations is required. With N = 278, the actual power is 83.12%.");
  ExpectReportOnlyAtTheHighestLevel(QmacSize(0));
}

TEST_F(McNemarFamily, EtaMustExceedDelta) {
  const std::string text =
      "Eta should exceed the absolute value of Delta by at least .0001.\rPlease check parameters.";
  for (const int mode : {ModePower, ModeSampleSize}) {
    ExpectRefusedParameters({mode, "QMAC", {{"Delta", "0.4"}, {"Eta", "0.4"}}, {}}, 12876, text);
    ExpectRefusedParameters({mode, "QMAC", {{"Delta", "0.3"}, {"Eta", "0.2"}}, {}}, 12876, text);
    // In doubles .1001 - .1 falls short of .0001.
    ExpectRefusedParameters({mode, "QMAC", {{"Delta", "0.1"}, {"Eta", "0.1001"}}, {}}, 12876, text);
  }
  Calculate({ModePower, "QMAC", {{"Delta", "0.1"}, {"Eta", "0.1002"}}, {}});
  EXPECT_GT(LastValue(), 0);
}

TEST_F(McNemarFamily, EtaIsCheckedAtCalculateToo) {
  Results({ModePower, "QMAC"});
  block().QMAC.Working.Eta = 0.05;
  EXPECT_EQ(Press(ControlAccept), 0);
  EXPECT_THAT(MessageIds(), ElementsAre(12876));
  EXPECT_THAT(host_.workbook().items, IsEmpty());
}

TEST_F(McNemarFamily, ATrueNullIsRefused) {
  ExpectRefusedEffect(With(QmacPower(0), "Delta", "0"), text::NullHypothesisTrue,
                      {"power-vs-n", "power-vs-eta", "power-vs-alpha"});
  ExpectRefusedEffect(QmacPower(2), text::NullHypothesisTrue, {"power-vs-n"});
  ExpectRefusedEffect(With(QmacSize(0), "Delta", "0.00005"), text::NullHypothesisNearlyTrue,
                      {"n-vs-power", "n-vs-eta", "n-vs-alpha"});
}

TEST_F(McNemarFamily, ATinyDeltaGivesAnEnormousSize) {
  Calculate({ModeSampleSize,
             "QMAC",
             {{"Delta", "0.0001"}, {"Eta", "1"}, {"Alpha", "0.0001"}, {"PowerGoal", "0.999"}},
             {}});
  EXPECT_GT(LastValue(), 4e9) << "no cap, and wider than 32 bits";
  EXPECT_THAT(Paragraphs().back(), HasSubstr(std::to_string(static_cast<long>(LastValue()))));
}

TEST_F(McNemarFamily, DrawsItsPlots) {
  const std::string power = "McNemar's Test: Power Calculation";
  const std::string size = "McNemar's Test: Sample Size Calculation";
  const std::string family = "Two Proportions, Paired Sample (H0:  Delta = 0)";
  const std::string n = "Required Sample Size (N)";
  ExpectPlots(QmacPower(0), {}, power, family,
              {{"power-vs-n", 14, "Power vs. N (Delta = 0.12,  Eta= 0.45, Alpha = 0.04)",
                "Group Sample Size (N)", "Power", "SampleSize"},
               {"power-vs-delta", 0, "Power vs. Delta (N = 130, Alpha = 0.04, Eta = 0.45)",
                "Population Proportion Delta (Eta Fixed at 0.45)", "Power", "Delta"},
               {"power-vs-eta", 18, "Power vs. Eta (N = 130, Alpha = 0.04, Delta = 0.12)",
                "Population Eta (Delta Fixed at 0.12)", "Power", "Eta"},
               {"power-vs-alpha", 15, "Power vs. Alpha (Delta = 0.12,  Eta = 0.45, N = 130)",
                "Type I Error Rate (Alpha)", "Power", "Alpha"}});
  ExpectPlots(QmacSize(0), {}, size, family,
              {{"n-vs-power", 2, "N vs. Power (Delta = 0.12,  Eta = 0.45, Alpha = 0.04)",
                "Power Goal", n, "PowerGoal"},
               {"n-vs-delta", 13, "N vs. Delta (Alpha = 0.04, Eta = 0.45, Power = 0.83)",
                "Population Proportion Delta (Eta Fixed at 0.45)", n, "Delta"},
               {"n-vs-eta", 6, "N vs. Eta (Alpha = 0.04, Delta = 0.12, Power = 0.83)",
                "Population Eta (Delta Fixed at 0.12)", n, "Eta"},
               {"n-vs-alpha", 3, "N vs. Alpha (Delta = 0.12,  Eta = 0.45, Power = 0.83)",
                "Type I Error Rate (Alpha)", n, "Alpha"}});
}

TEST_F(OneProportionFamily, AReversedRangeGivesTheSamePlot) {
  Results({ModePower, "P1"});
  ASSERT_EQ(Press("power-vs-pi"), 1);
  Type("PiStart", "0.75");
  Type("PiEnd", "0.55");
  ASSERT_EQ(Press("power-vs-pi"), 1);
  const std::vector<Chart> charts = Items<Chart>();
  ASSERT_THAT(charts, SizeIs(2));
  EXPECT_EQ(charts[0].x, charts[1].x);
  EXPECT_EQ(charts[0].y, charts[1].y);
}

TEST_F(TwoProportionsFamily, AFormFromAFileHasNoHeadingNoTailsAndNoPower) {
  Parameters(P2Power("0.62", "0.41", 0));
  block().P2.Working.H0Type = 3;
  Press(ControlAccept);
  Press(ControlAccept);
  EXPECT_THAT(Headings(), ElementsAre("Power Calculation", "Two Proportions, Z-Test"));
  EXPECT_TRUE(IsMissing(LastValue()));
  EXPECT_THAT(Paragraphs(), SizeIs(5));
  EXPECT_THAT(Paragraphs().back(), HasSubstr("a power of -----."));
  Parameters(P2Size(0));
  block().P2.Working.H0Type = 3;
  Press(ControlAccept);
  Press(ControlAccept);
  EXPECT_THAT(host_.workbook().items, IsEmpty());
}

TEST_F(TwoProportionsFamily, AnEffectTooLargeForTheSearchIsNotFound) {
  // Even one observation a group reaches the goal, which the search does not accept as a bracket.
  Results({ModeSampleSize,
           "P2",
           {{"Pi1", "1"}, {"Pi2", "0"}, {"Alpha", "0.25"}, {"PowerGoal", "0.65"}},
           {}});
  EXPECT_EQ(Press(ControlAccept), 0);
  EXPECT_THAT(MessageIds(), ElementsAre(12954));
  EXPECT_THAT(host_.workbook().items, IsEmpty());
}

TEST_F(TwoProportionsFamily, APlotWithoutAGoodPointIsSilent) {
  Results(With(P2Size(0), "SampleSizeN2", "20"), {RadioOf("NToVary", 1)});
  EXPECT_EQ(Press("n-vs-power"), 0);
  EXPECT_THAT(host_.workbook().items, IsEmpty());
  EXPECT_THAT(host_.messages(), IsEmpty());
  EXPECT_EQ(OpenResource(), results_);
}

TEST_F(TwoProportionsFamily, RestoreDefaultsTurnsTheCheckBoxesBack) {
  Parameters({ModePower, "P2", {}, {kContinuity, kEqualN}});
  EXPECT_TRUE(IsChecked(kContinuity));
  Press(ControlRestoreDefaults);
  EXPECT_FALSE(IsChecked(kContinuity));
  EXPECT_TRUE(IsChecked(kEqualN));
  EXPECT_EQ(block().P2.Working.Continuity, 0);
}

TEST_F(TwoProportionsFamily, TheBoundsOfTheRatioAreOutside) {
  for (const char* ratio : {"0.01", "100"}) {
    Results({ModeSampleSize, "P2", {}, {}}, {RadioOf("NToVary", 3)});
    Type("Ratio", ratio);
    EXPECT_EQ(Press(ControlAccept), 0);
    ASSERT_THAT(MessageIds(), ElementsAre(text::RangeReal));
    EXPECT_THAT(host_.messages()[0].text, HasSubstr("0.01 < Ratio < 100"));
  }
}

TEST_F(McNemarFamily, APlotBeyondEtaSaysSoOnceForAllItsPoints) {
  Results({ModePower, "QMAC"});
  Type("DeltaStart", "0.25");
  Type("DeltaEnd", "0.5");
  Type("NInterval", "8");
  ASSERT_EQ(Press("power-vs-delta"), 1);
  const Chart chart = Items<Chart>().back();
  EXPECT_THAT(chart.x, ElementsAre(0.25F, 0.28125F, 0.3125F, 0.34375F, 0.375F));
  EXPECT_THAT(chart.y, ::testing::Each(::testing::Gt(0.F)));
  EXPECT_GE(chart.xAxis.max, 0.5F) << "failed points stretch the axis";
  ASSERT_THAT(MessageIds(), ElementsAre(12876));
  EXPECT_EQ(host_.messages()[0].count, 4);
}

TEST_F(McNemarFamily, TheFrameShowsTheInputs) {
  Results(QmacSize(0));
  for (const char* line : {"Delta: 0.12", "Eta: 0.45", "Power Goal: 0.83"}) {
    EXPECT_THAT(TextOf(ControlSummary), HasSubstr(line));
  }
}

}  // namespace
}  // namespace poweranalysis
