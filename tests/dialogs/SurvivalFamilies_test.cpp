// The dialogs, tables, reports and charts of the survival tests. Values of powers and sizes come
// from the closed forms in SciPy's normal distribution.
#include "dialogs/FamilyRun.h"

namespace poweranalysis {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::SizeIs;

using LogRankFamily = FamilyRun;
using ExponentialSurvivalFamilies = FamilyRun;

Design LogRankPowerOf(int form) {
  return {ModePower,
          "SA1",
          {{"Pi1", "0.45"}, {"Pi2", "0.65"}, {"SampleSize", "85"}, {"Alpha", "0.04"}},
          {H0(form)}};
}
Design LogRankSizeOf(int form) {
  return {ModeSampleSize,
          "SA1",
          {{"Pi1", "0.45"}, {"Pi2", "0.65"}, {"PowerGoal", "0.83"}, {"Alpha", "0.04"}},
          {H0(form)}};
}
Design Exponential(int mode, const char* family, int form, const char* dropout = "") {
  Design design{
      mode,
      family,
      {{"Lambda1", "0.4"}, {"Lambda2", "0.65"}, {"T0", "7"}, {"T", "12"}, {"Alpha", "0.04"}},
      {H0(form)}};
  design.typed.emplace_back(mode == ModePower ? 104 : 114, mode == ModePower ? "75" : "0.83");
  if (*dropout != 0) {
    design.typed.emplace_back("D", dropout);
  }
  return design;
}

// --- Log-rank

TEST_F(LogRankFamily, PagesHaveTheirFields) {
  const std::vector<ControlName> ranges = {"Pi2Start", "Pi2End", "AlphaStart", "AlphaEnd",
                                           "NInterval"};
  ExpectPage({ModePower,
              "SA1",
              false,
              6239,
              {"Pi1", "Pi2", "Alpha", "SampleSize"},
              {"H0Type=two-sided", "H0Type=upper"},
              {},
              {}});
  EXPECT_EQ(Find("H0Type=2"), nullptr);
  ExpectPage({ModeSampleSize,
              "SA1",
              false,
              6264,
              {"Pi1", "Pi2", "PowerGoal", "Alpha"},
              {"H0Type=two-sided", "H0Type=upper"},
              {},
              {}});
  ExpectPage({ModePower,
              "SA1",
              true,
              6262,
              ranges,
              {},
              {},
              {"power-vs-n", "power-vs-alpha", "power-vs-pi2"}});
  ExpectControls({"NStart", "NEnd"}, {ControlKind::IntEdit});
  ExpectPage({ModeSampleSize,
              "SA1",
              true,
              6266,
              ranges,
              {},
              {},
              {"n-vs-power", "n-vs-alpha", "n-vs-pi2"}});
  ExpectControls({"PowerStart", "PowerEnd"}, {ControlKind::RealEdit});
}

TEST_F(LogRankFamily, TablesStandInTheirOrder) {
  const auto power = [](double value) {
    return Rows{{"Group 1 Survival Rate (Pi1)", 0.45},
                {"Group 2 Survival Rate (Pi2)", 0.65},
                {"Sample Size per Group (N)", 85},
                {"Type I Error Rate (Alpha)", 0.04},
                {"Power", value}};
  };
  const auto size = [](double value, double events, double n) {
    return Rows{{"Group 1 Survival Rate (Pi1)", 0.45},  {"Group 2 Survival Rate (Pi2)", 0.65},
                {"Type I Error Rate (Alpha)", 0.04},    {"Power Goal", 0.83},
                {"Actual Power for Required N", value}, {"Total Observed Events", events},
                {"Sample Size per Group (N)", n}};
  };
  const std::string family = "Survival - Log-Rank Test";
  ExpectTables({
      {LogRankPowerOf(0),
       {},
       241,
       {"Power Calculation", family, "H0:  Pi1 = Pi2"},
       power(0.7131533076)},
      {LogRankPowerOf(1),
       {},
       241,
       {"Power Calculation", family, "H0:  Pi1 <= Pi2"},
       power(0.8066680583)},
      {LogRankSizeOf(0),
       {},
       242,
       {"Sample Size Calculation", family, "H0:  Pi1 = Pi2"},
       size(0.8322081874, 101, 113)},
      {LogRankSizeOf(1),
       {},
       242,
       {"Sample Size Calculation", family, "H0:  Pi1 <= Pi2"},
       size(0.8305778433, 81, 91)},
  });
}

TEST_F(LogRankFamily, AnchorsOfTheDefaults) {
  Calculate({ModePower, "SA1"});
  EXPECT_NEAR(LastValue(), 0.817720264, 1e-7);
  Calculate({ModeSampleSize, "SA1"});
  EXPECT_EQ(LastValue(), 128);
  EXPECT_EQ(Row("Total Observed Events"), 102);
}

TEST_F(LogRankFamily, ReportsStandInTheirOrder) {
  const std::string goal =
      "\r\nOne goal of the proposed study is to compare two survival curves for equality.";
  const std::string test =
      "\r\nA Log-Rank Test will be performed on two independent samples, with the Type I Error "
      "rate "
      "(alpha) set at 0.04.";
  const std::string assume =
      "\r\nAssume that, in the sampled population, the survival rates for the two groups are 0.45 "
      "and 0.65.";
  Calculate(LogRankPowerOf(0));
  EXPECT_THAT(Paragraphs(),
              ElementsAre("\r\nPower Analysis -- The Log-Rank Test", goal, test, kTwoTailed, assume,
                          "\r\nWith a sample size of 85 per group, the test will have a power of "
                          "71.32%."));
  Calculate(LogRankSizeOf(1));
  EXPECT_THAT(
      Paragraphs(),
      ElementsAre("\r\nSample Size Analysis -- The Log-Rank Test", goal, test, kPositive, assume,
                  "\r\nTo achieve the requested power of 83.00%, with the restriction that sample "
                  "sizes for the two groups are equal, a sample size of at least 91 per group is "
                  "required.",
                  // The sentence says total of a number that is per group.
                  "With a total sample size of 91, actual power is 83.06%."));
  ExpectReportOnlyAtTheHighestLevel(LogRankPowerOf(0));
}

TEST_F(LogRankFamily, TheOneTailedFormRunsAgainstItsLabel) {
  // "Pi1 <= Pi2" is computed exactly where it holds.
  const Design smaller{ModePower, "SA1", {{"Pi1", "0.7"}, {"Pi2", "0.5"}}, {"H0Type=upper"}};
  ExpectRefusedEffect(smaller, text::NullHypothesisTrue, {"power-vs-n", "power-vs-alpha"});
  Calculate({ModePower, "SA1", {{"Pi1", "0.5"}, {"Pi2", "0.7"}}, {"H0Type=upper"}});
  EXPECT_GT(LastValue(), 0.8);
}

TEST_F(LogRankFamily, ATrueNullIsRefused) {
  ExpectRefusedEffect(With(LogRankPowerOf(0), "Pi2", "0.45"), text::NullHypothesisTrue,
                      {"power-vs-n", "power-vs-alpha"});
  ExpectRefusedEffect(With(LogRankSizeOf(0), "Pi2", "0.4505"), text::NullHypothesisNearlyTrue,
                      {"n-vs-power", "n-vs-alpha"});
  EXPECT_THAT(host_.messages()[0].text, HasSubstr("within a tolerance of 0.001 of being true"));
  Calculate(With(LogRankPowerOf(0), "Pi2", "0.4505"));
  EXPECT_THAT(host_.messages(), IsEmpty());
}

TEST_F(LogRankFamily, ARateOfZeroOrOneGivesABlankPowerOrNoTable) {
  for (const char* rate : {"0", "1"}) {
    Calculate(With(LogRankPowerOf(0), "Pi2", rate));
    EXPECT_TRUE(IsMissing(LastValue())) << rate;
    EXPECT_THAT(Paragraphs().back(), HasSubstr("a power of -----."));
    Results(With(LogRankSizeOf(0), "Pi2", rate));
    Press(ControlAccept);
    EXPECT_THAT(host_.workbook().items, IsEmpty()) << rate;
    EXPECT_EQ(OpenResource(), results_);
  }
}

TEST_F(LogRankFamily, AThirdFormHasNoHeadingAndNoPower) {
  Parameters({ModePower, "SA1", {{"Pi1", "0.7"}, {"Pi2", "0.5"}}, {}});
  block().SA1.Working.H0Type = 2;
  Press(ControlAccept);
  Press(ControlAccept);
  ASSERT_THAT(Items<SummaryTable>(), SizeIs(1));
  EXPECT_THAT(Headings(), ElementsAre("Power Calculation", "Survival - Log-Rank Test"));
  EXPECT_TRUE(IsMissing(LastValue()));
}

TEST_F(LogRankFamily, DrawsItsPlots) {
  const std::string power = "Log-Rank Test: Power Calculation";
  const std::string size = "Log-Rank Test: Sample Size Calculation";
  const std::string family = "Survival - Log-Rank Test (H0:  Pi1 = Pi2)";
  const std::string n = "Required Sample Size (N)";
  const std::string pi2 = "Population Proportion Pi2 (Pi1 Fixed at 0.45)";
  ExpectPlots(LogRankPowerOf(0), {}, power, family,
              {{"power-vs-n", 14, "Power vs. N (Pi1 = 0.45, Pi2 = 0.65, Alpha = 0.04)",
                "Sample Size per Group (N)", "Power", "SampleSize"},
               {"power-vs-alpha", 15, "Power vs. Alpha (Pi1 = 0.45, Pi2 = 0.65, N = 85)",
                "Type I Error Rate (Alpha)", "Power", "Alpha"}});
  ExpectPlots(LogRankPowerOf(1), {}, power, "Survival - Log-Rank Test (H0:  Pi1 <= Pi2)",
              {{"power-vs-pi2", 17, "Power vs. Pi2 (N = 85, Alpha = 0.04)", pi2, "Power", "Pi2"}});
  ExpectPlots(LogRankSizeOf(0), {}, size, family,
              {{"n-vs-power", 2, "N vs. Power Goal (Pi1 = 0.45, Pi2 = 0.65, Alpha = 0.04)",
                "Power Goal", n, "PowerGoal"},
               {"n-vs-alpha", 3, "N vs. Alpha (Pi1 = 0.45, Pi2 = 0.65, Power Goal = 0.83)",
                "Type I Error Rate (Alpha)", n, "Alpha"},
               {"n-vs-pi2", 5, "N vs. Survival Rate Pi2 (Power Goal = 0.83)", pi2, n, "Pi2"}});
}

TEST_F(LogRankFamily, APlotAcrossTheNullGoesOnPastTheFailedPoint) {
  Results({ModePower, "SA1"});
  Type("Pi2Start", "0.25");
  Type("Pi2End", "0.75");
  Type("NInterval", "4");
  ASSERT_EQ(Press("power-vs-pi2"), 1);
  const Chart chart = Items<Chart>().back();
  ASSERT_THAT(chart.y, SizeIs(4));
  EXPECT_EQ(chart.y[2], -9999);
  EXPECT_GT(chart.y[3], 0);
}

// --- Exponential survival

TEST_F(ExponentialSurvivalFamilies, PagesHaveTheirFields) {
  const std::vector<ControlName> ranges = {"Lambda2Start", "Lambda2End", "AlphaStart", "AlphaEnd",
                                           "NInterval"};
  const std::vector<ControlName> forms = {"H0Type=two-sided", "H0Type=upper"};
  const std::vector<ControlName> periods = {"Lambda1", "Lambda2", "T0", "T", 111};
  const auto with = [&](std::vector<ControlName> more) {
    more.insert(more.end(), periods.begin(), periods.end());
    return more;
  };
  ExpectPage({ModePower, "SA2", false, 6270, with({"SampleSize"}), forms});
  EXPECT_EQ(Find("H0Type=2"), nullptr);
  EXPECT_EQ(Find("D"), nullptr) << "no dropouts";
  ExpectPage({ModeSampleSize, "SA2", false, 6268, with({"PowerGoal"}), forms});
  ExpectPage({ModePower, "SA3", false, 6276, with({"SampleSize", "D"}), forms});
  ExpectPage({ModeSampleSize, "SA3", false, 6279, with({"PowerGoal", "D"}), forms});
  for (const char* family : {"SA2", "SA3"}) {
    const bool dropouts = family[2] == '3';
    ExpectPage({ModePower,
                family,
                true,
                dropouts ? 6308 : 6272,
                ranges,
                {},
                {},
                {"power-vs-n", "power-vs-lambda2", "power-vs-alpha"}});
    ExpectControls({"NStart", "NEnd"}, {ControlKind::IntEdit});
    ExpectPage({ModeSampleSize,
                family,
                true,
                dropouts ? 6281 : 6274,
                ranges,
                {},
                {},
                {"n-vs-power", "n-vs-lambda2", "n-vs-alpha"}});
    ExpectControls({"PowerStart", "PowerEnd"}, {ControlKind::RealEdit});
  }
}

TEST_F(ExponentialSurvivalFamilies, TablesOfAccrualStandInTheirOrder) {
  const auto power = [](double value) {
    return Rows{{"Lambda1", 0.4},
                {"Lambda2", 0.65},
                {"Sample Size (N)", 75},
                {"Accrual Period (T0)", 7},
                {"Max. Follow-Up Time (T)", 12},
                {"Type I Error Rate (Alpha)", 0.04},
                {"Power", value}};
  };
  const auto size = [](double value, double n) {
    return Rows{{"Lambda1", 0.4},
                {"Lambda2", 0.65},
                {"Type I Error Rate (Alpha)", 0.04},
                {"Accrual Period (T0)", 7},
                {"Max. Follow-Up Time (T)", 12},
                {"Power Goal", 0.83},
                {"Actual Power for Required N", value},
                {"Sample Size (N)", n}};
  };
  const std::string family = "Survival - Exponential, Accrual";
  const std::string equal = "H0:  Lambda1 = Lambda2";
  const std::string lower = "H0:  Lambda2 <= Lambda1";
  ExpectTables({
      {Exponential(ModePower, "SA2", 0),
       {},
       257,
       {"Power Calculation", family, equal},
       power(0.8101792579)},
      {Exponential(ModePower, "SA2", 1),
       {},
       257,
       {"Power Calculation", family, lower},
       power(0.8813217238)},
      {Exponential(ModeSampleSize, "SA2", 0),
       {},
       258,
       {"Sample Size Calculation", family, equal},
       size(0.8303972362, 79)},
      {Exponential(ModeSampleSize, "SA2", 1),
       {},
       258,
       {"Sample Size Calculation", family, lower},
       size(0.8309842923, 64)},
  });
}

TEST_F(ExponentialSurvivalFamilies, TablesOfDropoutsPutTheRateElsewhere) {
  const auto power = [](double value) {
    return Rows{{"Lambda1", 0.4},
                {"Lambda2", 0.65},
                {"Dropout Rate (D)", 0.2},
                {"Sample Size (N)", 75},
                {"Accrual Period (T0)", 7},
                {"Max. Follow-Up Time (T)", 12},
                {"Type I Error Rate (Alpha)", 0.04},
                {"Power", value}};
  };
  const auto size = [](double value, double n) {
    return Rows{{"Lambda1", 0.4},
                {"Lambda2", 0.65},
                {"Type I Error Rate (Alpha)", 0.04},
                {"Accrual Period (T0)", 7},
                {"Max. Follow-Up Time (T)", 12},
                {"Dropout Rate (D)", 0.2},
                {"Power Goal", 0.83},
                {"Actual Power for Required N", value},
                {"Sample Size (N)", n}};
  };
  const std::string family = "Survival - Exp., Accrual/Dropouts";
  const std::string equal = "H0:  Lambda1 = Lambda2";
  const std::string lower = "H0:  Lambda2 <= Lambda1";
  ExpectTables({
      {Exponential(ModePower, "SA3", 0, "0.2"),
       {},
       513,
       {"Power Calculation", family, equal},
       power(0.6723026018)},
      {Exponential(ModePower, "SA3", 1, "0.2"),
       {},
       513,
       {"Power Calculation", family, lower},
       power(0.7731747887)},
      {Exponential(ModeSampleSize, "SA3", 0, "0.2"),
       {},
       514,
       {"Sample Size Calculation", family, equal},
       size(0.8315084182, 109)},
      {Exponential(ModeSampleSize, "SA3", 1, "0.2"),
       {},
       514,
       {"Sample Size Calculation", family, lower},
       size(0.8308067944, 88)},
  });
}

TEST_F(ExponentialSurvivalFamilies, NoDropoutsAreTheTestWithoutThem) {
  Calculate({ModePower, "SA2"});
  const double power = LastValue();
  EXPECT_NEAR(power, 0.613554826, 1e-7);
  Calculate({ModePower, "SA3"});
  EXPECT_EQ(LastValue(), power);
  Calculate({ModeSampleSize, "SA2"});
  EXPECT_EQ(LastValue(), 208);
  EXPECT_NEAR(Row("Actual Power for Required N"), 0.900246, 1e-6);
}

TEST_F(ExponentialSurvivalFamilies, ReportsStandInTheirOrder) {
  const std::string goal =
      "\r\nOne goal of the proposed study is to compare two exponential survival parameters for "
      "equality.  ";
  const std::string test =
      "\r\nA Maximum Likelihood Test will be performed on two independent samples, with the Type I "
      "Error rate (alpha) set at 0.04.";
  const std::string rates =
      "\r\nAssume that, in the sampled populations, the exponential parameters for the two groups "
      "are Lambda1 = 0.4 and Lambda2 = 0.65, ";
  const std::string accrual =
      "that the accrual period is T0 = 7, and the maximum follow-up time is T = 12.";
  const std::string dropouts =
      "the dropout rate is D = 0.2, the accrual period is T0 = 7, and the maximum follow-up time "
      "is "
      "T = 12.";
  Calculate(Exponential(ModePower, "SA2", 0));
  EXPECT_THAT(
      Paragraphs(),
      ElementsAre("\r\nPower Analysis -- Equality of Exponential Survival, Accrual Period with No "
                  "Dropouts",
                  goal, test, kTwoTailed, rates, accrual,
                  "\r\nWith a sample size of 75 per group, the test will have a power of 81.02%."));
  Calculate(Exponential(ModeSampleSize, "SA2", 1));
  EXPECT_THAT(
      Paragraphs(),
      ElementsAre("\r\nSample Size Analysis -- Equality of Exponential Survival, Accrual Period "
                  "with No Dropouts",
                  goal, test, kPositive, rates, accrual,
                  "\r\nTo achieve the requested power of 83.00%, with the restriction that sample "
                  "sizes for the two groups are equal, a sample size of at least 64 per group is "
                  "required.",
                  "\r\nWith a sample size of 64 per group, actual power is 83.10%."));
  Calculate(Exponential(ModePower, "SA3", 0, "0.2"));
  EXPECT_THAT(
      Paragraphs(),
      ElementsAre(
          "\r\nPower Analysis -- Equality of Exponential Survival, Accrual Period with "
          "Dropouts",
          goal, test, kTwoTailed, rates, dropouts,
          "\r\nWith a sample size of 75 per group, the test will have a power of 67.23%. "));
  Calculate(Exponential(ModeSampleSize, "SA3", 0, "0.2"));
  EXPECT_THAT(
      Paragraphs(),
      ElementsAre("\r\nSample Size Analysis -- Equality of Exponential Survival, Accrual Period "
                  "with Dropouts",
                  goal, test, kTwoTailed, rates, dropouts,
                  "\r\nTo achieve the requested power of 83.00%, with the restriction that sample "
                  "sizes for the two groups are equal, a sample size of at least 109 per group is "
                  "required.",
                  "\r\nWith a sample size of 109 per group, actual power is 83.15%."));
  for (const char* family : {"SA2", "SA3"}) {
    ExpectReportOnlyAtTheHighestLevel({ModeSampleSize, family});
  }
}

TEST_F(ExponentialSurvivalFamilies, FollowUpMustLastAsLongAsAccrual) {
  const std::string text = "Followup T must be greater than or equal to accrual period T0";
  for (const char* family : {"SA2", "SA3"}) {
    for (const int mode : {ModePower, ModeSampleSize}) {
      ExpectRefusedParameters({mode, family, {{"T0", "9"}, {"T", "8"}}, {}}, 13182, text);
    }
    Calculate(With(Exponential(ModePower, family, 0), "T", "7"));
    EXPECT_NEAR(LastValue(), 0.6796904890, 1e-6) << "as long is long enough";
  }
}

TEST_F(ExponentialSurvivalFamilies, RatesMustBeAboveZero) {
  for (const char* family : {"SA2", "SA3"}) {
    for (const int mode : {ModePower, ModeSampleSize}) {
      for (const char* rate : {"Lambda1", "Lambda2"}) {
        ExpectRefusedParameters({mode, family, {{rate, "0"}}, {}}, 13201,
                                "Lambda must be greater than 0");
      }
    }
  }
}

TEST_F(ExponentialSurvivalFamilies, PeriodsAndRatesAreCheckedAtCalculateToo) {
  for (const int mode : {ModePower, ModeSampleSize}) {
    Results({mode, "SA2"});
    block().SA2.Working.T = 8;
    EXPECT_EQ(Press(ControlAccept), 0);
    EXPECT_THAT(MessageIds(), ElementsAre(13182));
    EXPECT_THAT(host_.workbook().items, IsEmpty());
    Results({mode, "SA3"});
    block().SA3.Working.Lambda1 = 0;
    EXPECT_EQ(Press(ControlAccept), 0);
    EXPECT_THAT(MessageIds(), ElementsAre(13201));
    EXPECT_THAT(host_.workbook().items, IsEmpty());
  }
}

TEST_F(ExponentialSurvivalFamilies, ATrueNullIsRefused) {
  for (const char* family : {"SA2", "SA3"}) {
    ExpectRefusedEffect({ModePower, family, {{"Lambda2", "0.5"}}, {}}, text::NullHypothesisTrue,
                        {"power-vs-n", "power-vs-alpha"});
    ExpectRefusedEffect({ModePower, family, {{"Lambda2", "0.4"}}, {"H0Type=upper"}},
                        text::NullHypothesisTrue, {"power-vs-n"});
    ExpectRefusedEffect({ModeSampleSize, family, {{"Lambda2", "0.5005"}}, {}},
                        text::NullHypothesisNearlyTrue, {"n-vs-power", "n-vs-alpha"});
    EXPECT_THAT(host_.messages()[0].text, HasSubstr("within a tolerance of 0.001 of being true"));
    Calculate({ModePower, family, {{"Lambda2", "0.4"}}, {}});
    EXPECT_GT(LastValue(), 0.05) << "two-tailed, either rate may be the larger";
  }
}

TEST_F(ExponentialSurvivalFamilies, DrawTheirPlotsWithoutDropouts) {
  const std::string power = "Survival, Exponential, Accrual: Power Calc.";
  const std::string size = "Survival, Exp., Accrual: Sample Size Calc.";
  const std::string family = "Survival - Exponential, Accrual (H0:  Lambda1 = Lambda2)";
  const std::string n = "Required Sample Size (N)";
  const Design powerDesign = Exponential(ModePower, "SA2", 0);
  const Design sizeDesign = Exponential(ModeSampleSize, "SA2", 0);
  ExpectPlots(powerDesign, {}, power, family,
              {{"power-vs-n", 14, "Power vs. N (Lambda1 = 0.4, Lambda2 = 0.65, Alpha = 0.04)",
                "Sample Size per Group (N)", "Power", "SampleSize"},
               {"power-vs-lambda2", 21, "Power vs. Lambda2 (N = 75)",
                "Population Proportion Lambda2 (Lambda1 Fixed at 0.4)", "Power", "Lambda2"},
               {"power-vs-alpha", 15, "Power vs. Alpha (Lambda1 = 0.4, Lambda2 = 0.65, N = 75)",
                "Type I Error Rate (Alpha)", "Power", "Alpha"}});
  ExpectPlots(
      sizeDesign, {}, size, family,
      {{"n-vs-power", 2, "N vs. Power (Lambda1 = 0.4, Lambda2= 0.65, T0 = 7, T = 12, Alpha = 0.04)",
        "Power Goal", n, "PowerGoal"},
       {"n-vs-lambda2", 9, "N vs. Lambda2 (Alpha = 0.04, Power Goal = 0.83, T0 = 7, T = 12)",
        "Exponential Parameter Lambda2 (Lambda1 Fixed at 0.4)", n, "Lambda2"},
       // The bracket of this title is not closed.
       {"n-vs-alpha", 3, "N vs. Alpha (Lambda1 = 0.4, Lambda2 = 0.65, T0 = 7, T = 12",
        "Type I Error Rate (Alpha) (Power Goal = 0.83)", n, "Alpha"}});
}

TEST_F(ExponentialSurvivalFamilies, DrawTheirPlotsWithDropouts) {
  const std::string power = "Survival, Exp., Accrual, Dropouts: Power Calc.";
  const std::string size = "Survival, Exp., Accrual, Dropouts: Sample Size";
  const std::string family = "Survival - Exp., Accrual/Dropouts (H0:  Lambda2 <= Lambda1)";
  const std::string n = "Required Sample Size (N)";
  const Design powerDesign = Exponential(ModePower, "SA3", 1, "0.2");
  const Design sizeDesign = Exponential(ModeSampleSize, "SA3", 1, "0.2");
  ExpectPlots(
      powerDesign, {}, power, family,
      {{"power-vs-n", 14, "Power vs. N (Lambda1 = 0.4, Lambda2= 0.65, Alpha = 0.04, D = 0.2)",
        "Sample Size per Group (N)", "Power", "SampleSize"},
       {"power-vs-lambda2", 21, "Power vs. Lambda2 (N = 75, Alpha = 0.04, D = 0.2)",
        "Population Proportion Lambda2 (Lambda1 = 0.4)", "Power", "Lambda2"},
       {"power-vs-alpha", 15, "Power vs. Alpha (Lambda1 = 0.4, Lambda2 = 0.65, N = 75, D = 0.2)",
        "Type I Error Rate (Alpha)", "Power", "Alpha"}});
  ExpectPlots(
      sizeDesign, {}, size, family,
      {{"n-vs-power", 2,
        "N vs. Power (Lambda1 = 0.4, Lambda2= 0.65, T0 = 7, T = 12, Alpha = 0.04, D = 0.2)",
        "Power Goal", n, "PowerGoal"},
       {"n-vs-lambda2", 9,
        "N vs. Lambda2 (Alpha = 0.04, Power Goal = 0.83, T0 = 7, T = 12, D = 0.2)",
        "Exponential Parameter Lambda2 (Lambda1 Fixed at 0.4)", n, "Lambda2"},
       {"n-vs-alpha", 3, "N vs. Alpha (Lambda1 = 0.4, Lambda2 = 0.65, T0 = 7, T = 12, D = 0.2)",
        "Type I Error Rate (Alpha) (Power Goal = 0.83)", n, "Alpha"}});
}

TEST_F(ExponentialSurvivalFamilies, TheFrameShowsTheInputs) {
  Results(Exponential(ModeSampleSize, "SA3", 0, "0.2"));
  for (const char* line :
       {"Lambda1: 0.4", "Lambda2: 0.65", "Dropout Rate (D): 0.2", "Accrual Period (T0): 7",
        "Max. Follow-Up Time (T): 12", "Power Goal: 0.83"}) {
    EXPECT_THAT(TextOf(ControlSummary), HasSubstr(line));
  }
}

TEST_F(ExponentialSurvivalFamilies, AThirdFormHasNoHeadingAndNoAnswer) {
  for (const int mode : {ModePower, ModeSampleSize}) {
    // Form 2 needs an effect below the null to pass the check.
    Parameters({mode, "SA3", {{"Lambda1", "0.7"}, {"Lambda2", "0.5"}}, {}});
    block().SA3.Working.H0Type = 2;
    Press(ControlAccept);
    Press(ControlAccept);
    if (mode == ModePower) {
      EXPECT_THAT(Headings(),
                  ElementsAre("Power Calculation", "Survival - Exp., Accrual/Dropouts"));
      EXPECT_TRUE(IsMissing(LastValue()));
    } else {
      EXPECT_THAT(host_.workbook().items, IsEmpty());
    }
  }
}

TEST_F(ExponentialSurvivalFamilies, APlotFromARateOfZeroKeepsItsFailedFirstPoint) {
  Results({ModePower, "SA2"});
  Type("Lambda2Start", "0");
  Type("Lambda2End", "1");
  Type("NInterval", "9");
  ASSERT_EQ(Press("power-vs-lambda2"), 1);
  const Chart chart = Items<Chart>().back();
  // Ten points of which the first failed: the block holds it and the next eight.
  ASSERT_THAT(chart.y, SizeIs(9));
  EXPECT_EQ(chart.y[0], -9999);
  EXPECT_GT(chart.y[1], 0);
  EXPECT_NEAR(chart.x[8], 8 / 9.0, 1e-6);
  EXPECT_GT(chart.yAxis.min, -1) << "the failed point is skipped for scaling";
}

TEST_F(LogRankFamily, APlotUpToARateOfOneLeavesItsLastPointOut) {
  Results({ModeSampleSize, "SA1"});
  Type("Pi2Start", "0.75");
  Type("Pi2End", "1");
  Type("NInterval", "4");
  ASSERT_EQ(Press("n-vs-pi2"), 1);
  const Chart chart = Items<Chart>().back();
  EXPECT_THAT(chart.x, ElementsAre(0.75F, 0.8125F, 0.875F, 0.9375F));
  EXPECT_THAT(chart.y, ::testing::Each(::testing::Gt(0.F)));
  EXPECT_THAT(host_.messages(), IsEmpty());
}

TEST_F(LogRankFamily, TheFrameShowsTheInputsWithoutTheEvents) {
  Results(LogRankSizeOf(0));
  for (const char* line : {"Group 1 Survival Rate (Pi1): 0.45", "Group 2 Survival Rate (Pi2): 0.65",
                           "Type I Error Rate (Alpha): 0.04", "Power Goal: 0.83"}) {
    EXPECT_THAT(TextOf(ControlSummary), HasSubstr(line));
  }
  EXPECT_THAT(TextOf(ControlSummary), ::testing::Not(HasSubstr("Events")));
}

}  // namespace
}  // namespace poweranalysis
