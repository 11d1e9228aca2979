#include "calculators/CalculatorDialog.h"

#include <gmock/gmock.h>

#include <set>

#include "calculators/CalculatorRun.h"

namespace poweranalysis {
namespace {

using Calculator = CalculatorRun;

const char* const kCodes[] = {"T", "F", "X2", "R2", "R", "Binomial"};
constexpr const char* kError = "--Error--";

// --- The tables.

TEST(CalculatorTables, StandInTheOrderOfTheCatalogue) {
  ASSERT_EQ(Calculators().size(), Tasks(ModeDistribution).size());
  for (std::size_t i = 0; i < Calculators().size(); ++i) {
    EXPECT_STREQ(Calculators()[i].calculator, Tasks(ModeDistribution)[i].family);
  }
  EXPECT_EQ(FindCalculator("T1"), nullptr);
}

TEST(CalculatorTables, ShowFieldsOfTheirRecordsThatHaveControls) {
  for (const CalculatorTable& calculator : Calculators()) {
    const FamilyTable& table = TableOf(calculator.family);
    std::set<std::string> shown;
    for (const char* name : calculator.fields) {
      EXPECT_TRUE(shown.insert(name).second) << calculator.calculator << " " << name;
      EXPECT_NE(table.Find(name), nullptr) << calculator.calculator << " " << name;
      EXPECT_TRUE(ControlOfField(name) != 0 || RadiosOf(name, calculator.family) != nullptr)
          << calculator.calculator << " " << name;
    }
    EXPECT_NE(table.Find("OneMinusP"), nullptr);
  }
}

TEST(CalculatorTables, NameThreeUnknownsOfWhichTheSecondIsTheProbability) {
  for (const CalculatorTable& calculator : Calculators()) {
    const FamilyTable& table = TableOf(calculator.family);
    std::set<std::string> names;
    for (const CalculatorUnknown& unknown : calculator.unknowns) {
      EXPECT_NE(table.Find(unknown.field), nullptr) << calculator.calculator;
      EXPECT_NE(table.Find(unknown.flag == nullptr ? "WhatToCompute" : unknown.flag), nullptr);
      EXPECT_NE(unknown.compute, nullptr);
      EXPECT_TRUE(names.insert(unknown.name).second) << unknown.name;
    }
    EXPECT_STREQ(calculator.unknowns[UnknownProbability].field, "CumP");
  }
}

// --- Opening.

TEST_F(Calculator, EachOpensOnItsOwnResourceWithItsOwnTitle) {
  const struct {
    const char* code;
    int resource;
    const char* title;
  } kDialogs[] = {{"T", 6113, "Noncentral t Probability Calculator"},
                  {"F", 6149, "Noncentral F Probability Calculator"},
                  {"X2", 6147, "Noncentral Chi-Square Prob. Calculator"},
                  {"R2", 6145, "Multiple R² Probability Calculator"},
                  {"R", 6189, "Pearson Correlation: Power Calc. Parameters"},
                  {"Binomial", 6209, "Binomial Distribution Probability Calculator"}};
  for (const auto& dialog : kDialogs) {
    Open(dialog.code);
    EXPECT_EQ(OpenResource(), dialog.resource);
    EXPECT_EQ(form().spec().title, dialog.title);
    EXPECT_EQ(form().spec().pages.size(), 1u) << "settings files are not for calculators";
    Press(ControlBack);
  }
}

TEST_F(Calculator, TheProbabilityIsTheUnknownWhenOneOpens) {
  for (const char* code : kCodes) {
    Open(code);
    EXPECT_FALSE(IsChecked("WhatToCompute=0")) << code;
    EXPECT_TRUE(IsChecked("WhatToCompute=1")) << code;
    EXPECT_FALSE(IsChecked("WhatToCompute=2")) << code;
    EXPECT_FALSE(IsChecked("OneMinusP")) << code;
    EXPECT_EQ(TextOf(ControlProbabilityLabel), "Cum. p:") << code;
    EXPECT_EQ(TextOf("WhatToCompute=1"), "&p") << code;
    Press(ControlBack);
  }
}

TEST_F(Calculator, ButtonsAreCaptionedAsTheDistributionWritesItsNumbers) {
  const struct {
    const char* code;
    const char* statistic;
    const char* parameter;
  } kCaptions[] = {
      {"T", "&t", "&Delta"},          {"F", "&F", "&Delta"}, {"X2", "Ch&i-square", "&Delta"},
      {"R2", "&R ²", "P ² (Rh&o ²)"}, {"R", "&r", "rh&o"},   {"Binomial", "&X", "P&i"}};
  for (const auto& row : kCaptions) {
    Open(row.code);
    EXPECT_EQ(CaptionOf("WhatToCompute=0"), row.statistic);
    EXPECT_EQ(CaptionOf("WhatToCompute=2"), row.parameter);
    EXPECT_EQ(CaptionOf("OneMinusP"), "(&1 - Cumulative p)");
    EXPECT_EQ(CaptionOf(ControlAccept), "&Compute");
    Press(ControlBack);
  }
}

TEST_F(Calculator, OnlyThoseOfCorrelationsLetTheUserChooseTheAlgorithm) {
  for (const char* code : {"T", "F", "X2", "Binomial"}) {
    Open(code);
    EXPECT_EQ(Find("Algorithm=0"), nullptr) << code;
    Press(ControlBack);
  }
  Open("R2");
  EXPECT_EQ(CaptionOf("Algorithm=speed"), "Faster");
  EXPECT_EQ(CaptionOf("Algorithm=accuracy"), "More Accurate");
  EXPECT_EQ(Find("Algorithm=speed")->spec.group, "Comp&uting Algorithm");
  EXPECT_EQ(Find("Algorithm=2"), nullptr);
  Press(ControlBack);
  Open("R");
  EXPECT_EQ(CaptionOf("Algorithm=exact"), "Exact");
  EXPECT_EQ(CaptionOf("Algorithm=refined"), "Fisher Z Refined");
  EXPECT_EQ(CaptionOf("Algorithm=crude"), "Fisher Z Crude");
  EXPECT_EQ(Find("Algorithm=exact")->spec.group, "Comp&utational Algorithm");
  Press("Algorithm=crude");
  EXPECT_EQ(Get("Algorithm"), 2);
}

TEST_F(Calculator, EditLimitsAreTheBoundsOfCheckedFieldsAlone) {
  Open("T");
  EXPECT_EQ(Find("TObserved")->lower, -5000);
  EXPECT_EQ(Find("DegreesOfFreedom")->upper, 149999);
  EXPECT_FALSE(Find("Delta")->lower.has_value()) << "Delta has no bounds";
}

TEST_F(Calculator, EveryBoxHasAName) {
  for (const char* code : kCodes) {
    Open(code);
    for (const ControlSpec& control : form().spec().pages.front().controls) {
      EXPECT_FALSE(control.caption.empty()) << code << " " << control.name;
      EXPECT_TRUE(control.kind == ControlKind::StaticText || !control.help.empty())
          << code << " " << control.name;
      EXPECT_EQ(control.help.find("-9999"), std::string::npos) << control.help;
    }
    Press(ControlBack);
  }
}

// --- Edits, radio buttons, the check box.

TEST_F(Calculator, AnEditStoresAtOnceAndComputesNothing) {
  Open("T");
  const std::string p = Box("CumP");
  Type("TObserved", "2.5");
  Type("DegreesOfFreedom", "7");
  EXPECT_EQ(Get("TObserved"), 2.5);
  EXPECT_EQ(Get("DegreesOfFreedom"), 7);
  EXPECT_EQ(Box("CumP"), p);
  EXPECT_EQ(Get("CumP"), 0.95);
}

TEST_F(Calculator, AnUnreadableTextStoresZero) {
  Open("T");
  Type("TObserved", "two");
  EXPECT_EQ(Get("TObserved"), 0);
  Click("OneMinusP");
  Type("CumP", "many");
  EXPECT_EQ(Get("CumP"), 0);
}

TEST_F(Calculator, AnEditOfTheProbabilityIsComplementedOnTheWayIn) {
  Open("F");
  Type("CumP", "0.25");
  EXPECT_EQ(Get("CumP"), 0.25);
  Click("OneMinusP");
  Type("CumP", "0.125");
  EXPECT_EQ(Get("CumP"), 0.875);
}

TEST_F(Calculator, ARadioButtonSetsTheSelectorAndNothingElse) {
  for (const char* code : kCodes) {
    Open(code);
    for (const std::size_t unknown : {0u, 2u, 1u}) {
      const std::string statistic = Box(rows_->unknowns[0].field);
      const std::string p = Box("CumP");
      const std::string parameter = Box(rows_->unknowns[2].field);
      Choose(unknown);
      EXPECT_EQ(Box(rows_->unknowns[0].field), statistic);
      EXPECT_EQ(Box("CumP"), p);
      EXPECT_EQ(Box(rows_->unknowns[2].field), parameter);
      for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_EQ(IsChecked(RadioOf("WhatToCompute", static_cast<int>(i))), i == unknown);
        if (const char* flag = rows_->unknowns[i].flag) {
          EXPECT_EQ(Get(flag), i == unknown ? 1 : 0);
        }
      }
      if (rows_->unknowns[0].flag == nullptr) {
        EXPECT_EQ(Get("WhatToCompute"), static_cast<double>(unknown)) << code;
      }
    }
    EXPECT_TRUE(host_.messages().empty());
    Press(ControlBack);
  }
}

TEST_F(Calculator, TheCheckBoxReplacesLabelAndButtonAndComplementsTheProbability) {
  for (const char* code : kCodes) {
    Open(code);
    Click("OneMinusP");
    EXPECT_EQ(Get("OneMinusP"), 1) << code;
    EXPECT_EQ(TextOf(ControlProbabilityLabel), "1 - Cum. p:");
    EXPECT_EQ(TextOf("WhatToCompute=1"), "1 - &p");
    EXPECT_EQ(Box("CumP"), "0.05");
    EXPECT_EQ(Get("CumP"), 0.95) << "what is stored stays the cumulative probability";
    Click("OneMinusP");
    EXPECT_EQ(Get("OneMinusP"), 0);
    EXPECT_EQ(TextOf(ControlProbabilityLabel), "Cum. p:");
    EXPECT_EQ(TextOf("WhatToCompute=1"), "&p");
    EXPECT_EQ(Box("CumP"), "0.95");
    Press(ControlBack);
  }
}

TEST_F(Calculator, TheCheckBoxTwiceReturnsTheSameText) {
  Open("T");
  for (const char* t : {"-3", "-0.5", "0", "0.1", "1", "2.2", "30"}) {
    Fill(std::string("DegreesOfFreedom=9 TObserved=") + t);
    Compute();
    const std::string p = Box("CumP");
    const double stored = Get("CumP");
    Click("OneMinusP");
    Click("OneMinusP");
    EXPECT_EQ(Box("CumP"), p);
    EXPECT_EQ(Get("CumP"), stored);
  }
}

TEST_F(Calculator, ABoxThatHoldsAFailureIsNotComplemented) {
  Open("T");
  host_.form()->SetDlgItemText(ControlOfField("CumP"), kError);
  Click("OneMinusP");
  EXPECT_EQ(Box("CumP"), kError);
  Click("OneMinusP");
  EXPECT_EQ(Box("CumP"), kError);
  Type("CumP", "-9999");
  Click("OneMinusP");
  EXPECT_EQ(Number("CumP"), NumericFailure);
  Type("CumP", "-9999");
  EXPECT_EQ(Get("CumP"), NumericFailure);
}

// --- Compute.

TEST_F(Calculator, BothComputeCommandsCompute) {
  for (const int command : {1, 815}) {
    Open("T");
    Fill("TObserved=2 DegreesOfFreedom=4 Delta=1");
    Press(command);
    EXPECT_EQ(Box("CumP"), "0.76456745") << command;
    Press(ControlBack);
  }
}

TEST_F(Calculator, AnAnswerShowsAtLeastTwoAndAtMostEightDecimals) {
  Open("T");
  Fill("TObserved=0 DegreesOfFreedom=4 Delta=0");
  Compute();
  EXPECT_EQ(Box("CumP"), "0.50");
  Fill("TObserved=1");
  Compute();
  EXPECT_EQ(Box("CumP"), "0.81304952");
}

TEST_F(Calculator, TheAnswerIsComplementedOnTheWayOut) {
  Open("T");
  Fill("TObserved=2 DegreesOfFreedom=4 Delta=1");
  Compute();
  const double p = Get("CumP");
  Click("OneMinusP");
  Compute();
  EXPECT_EQ(Get("CumP"), p);
  EXPECT_EQ(Box("CumP"), "0.23543255");
  EXPECT_EQ(Number("CumP"), 1 - p);
}

TEST_F(Calculator, TheProbabilityIsComplementedOnTheWayIn) {
  Open("T");
  Choose(UnknownStatistic);
  Fill("CumP=0.975 DegreesOfFreedom=10");
  Compute();
  const std::string t = Box("TObserved");
  Click("OneMinusP");
  Type("CumP", "0.025");
  Compute();
  EXPECT_EQ(Box("TObserved"), t);
  EXPECT_EQ(t.substr(0, 5), "2.228");
}

TEST_F(Calculator, AnUpperTailThatIsNoneShowsWithoutASign) {
  Open("F");
  Click("OneMinusP");
  Fill("FObserved=1e30 Df1=3 Df2=100");
  Compute();
  EXPECT_EQ(Box("CumP"), "0.00");
  EXPECT_LE(Get("CumP"), 1);
}

TEST_F(Calculator, AnAnswerIsTakenBackWithAllItsDigits) {
  Open("X2");
  Fill("ObservedChiSquare=45 DegreesOfFreedom=4");
  Click("OneMinusP");
  Compute();
  EXPECT_EQ(Box("CumP"), "0.00") << "a box shows eight decimals";
  ASSERT_GT(Get("CumP"), 0.9999) << "beyond what may be entered";
  Choose(UnknownStatistic);
  Compute();
  EXPECT_THAT(host_.messages(), ::testing::IsEmpty());
  EXPECT_NEAR(Number("ObservedChiSquare"), 45, 0.05);
  Type("CumP", "0.000000004");
  Compute();
  ASSERT_EQ(host_.messages().size(), 1u) << "an entry is held to its range";
  EXPECT_EQ(MessageIds().back(), text::RangeReal);
}

TEST_F(Calculator, ACountBeyondTheRangeIsTakenBackAsAnAnswer) {
  Open("Binomial");
  Fill("SampleSize=200 Pi=0.5 CumP=0.9");
  Choose(UnknownStatistic);
  Compute();
  ASSERT_GT(Get("XObserved"), 50);
  const double actual = Get("ActualValue");
  Choose(UnknownProbability);
  Compute();
  EXPECT_THAT(host_.messages(), ::testing::IsEmpty());
  EXPECT_NEAR(Get("CumP"), actual, 1e-12);
}

TEST_F(Calculator, AStaleAnswerCannotFailTheRangeCheck) {
  Open("T");
  Fill("TObserved=4000 DegreesOfFreedom=4");
  Compute();
  EXPECT_GT(Get("CumP"), 0.9999) << "outside the range of the field";
  Compute();
  EXPECT_TRUE(host_.messages().empty());
  EXPECT_GT(Get("CumP"), 0.9999);
}

TEST_F(Calculator, ARefusalEmptiesTheUnknownsBoxAndChangesNothingElse) {
  Open("T");
  Fill("TObserved=2 DegreesOfFreedom=0 Delta=1 CumP=0.5");
  Compute();
  EXPECT_EQ(MessageIds(), std::vector<int>{text::RangeInt32});
  EXPECT_EQ(
      LastMessage(),
      "The current value for Df is outside the permissible range.\r\nThe appropriate range is "
      "1 <= Df <= 149999.\r\n Current value is 0.");
  EXPECT_EQ(Box("CumP"), "");
  EXPECT_EQ(Get("CumP"), 0.95) << "the default stays";
  EXPECT_EQ(Box("TObserved"), "2");
  EXPECT_EQ(Box("DegreesOfFreedom"), "0");
  EXPECT_EQ(Box("Delta"), "1");
  Type("DegreesOfFreedom", "4");
  Compute();
  EXPECT_EQ(Box("CumP"), "0.76456745");
}

TEST_F(Calculator, TheUnknownTakesTheDefaultOfTheRunBeforeTheCheck) {
  Open("T");
  Set("TObserved", 7, Instance::Defaults);
  Choose(UnknownStatistic);
  Fill("TObserved=2 DegreesOfFreedom=0");
  Compute();
  EXPECT_EQ(Get("TObserved"), 7);
}

TEST_F(Calculator, ComputeReadsTheBoxesOnceMore) {
  Open("T");
  // As when a change never reached the dialog.
  host_.form()->Type(ControlOfField("TObserved"), "2");
  host_.form()->Type(ControlOfField("DegreesOfFreedom"), "4");
  host_.form()->Type(ControlOfField("Delta"), "1");
  Compute();
  EXPECT_EQ(Box("CumP"), "0.76456745");
}

TEST_F(Calculator, TheCheckIsThatOfTheWholeRecord) {
  Open("T");
  Set("Sigma", 0);
  Compute();
  EXPECT_EQ(MessageIds(), std::vector<int>{text::RangeReal});
}

TEST_F(Calculator, AFailureShowsInTheBoxAloneAndKeepsWhatIsStored) {
  Open("X2");
  // For one degree of freedom and a small p the search starts, and stays, at 0.
  Choose(UnknownStatistic);
  Fill("ObservedChiSquare=7 DegreesOfFreedom=1 CumP=0.04 Delta=0");
  Compute();
  EXPECT_EQ(Box("ObservedChiSquare"), kError);
  EXPECT_EQ(Get("ObservedChiSquare"), 1) << "its default";
  EXPECT_EQ(Get("CumP"), 0.04);
  EXPECT_TRUE(host_.messages().empty());
}

TEST_F(Calculator, TheAnswerStaysAndFeedsTheNextComputation) {
  Open("T");
  Fill("TObserved=2 DegreesOfFreedom=4 Delta=1");
  Compute();
  const double p = Get("CumP");
  Choose(UnknownParameter);
  Type("Delta", "77");
  Compute();
  EXPECT_EQ(Get("CumP"), p);
  EXPECT_NEAR(Get("Delta"), 1, 1e-8);
  Choose(UnknownStatistic);
  Compute();
  EXPECT_NEAR(Get("TObserved"), 2, 1e-7);
}

TEST_F(Calculator, NothingIsEverCommitted) {
  for (const char* code : kCodes) {
    Open(code);
    const double committed = Get("CumP", Instance::Committed);
    Fill("CumP=0.4");
    for (const std::size_t unknown : {0u, 1u, 2u}) {
      Choose(unknown);
      Compute();
    }
    EXPECT_EQ(Get("CumP", Instance::Committed), committed) << code;
    Press(ControlBack);
  }
}

TEST_F(Calculator, NoneSendsAnythingToTheResults) {
  for (const char* code : kCodes) {
    Open(code);
    Compute();
    EXPECT_TRUE(host_.workbook().items.empty()) << code;
    Press(ControlBack);
  }
}

// --- Other commands.

TEST_F(Calculator, BackForgetsEverythingAndLeadsToTheStartup) {
  for (const int back : {2, 123}) {
    Open("R");
    Fill("RObserved=0.3 SampleSize=50 Algorithm=2");
    Choose(UnknownParameter);
    Compute();
    const PendingExit expected{101, ExitBack, 0};
    Press(back);
    ASSERT_FALSE(host_.calls.exits.empty());
    EXPECT_EQ(host_.calls.exits.back().stage, expected.stage);
    EXPECT_EQ(host_.calls.exits.back().kind, expected.kind);
    EXPECT_EQ(host_.calls.exits.back().flag, expected.flag);
    EXPECT_EQ(OpenResource(), 6100);
    for (const Field& field : TableOf(Family::R).fields) {
      EXPECT_EQ(Get(field.name), Get(field.name, Instance::Committed)) << field.name;
    }
  }
}

TEST_F(Calculator, TheSettingsCommandsOfOtherDialogsDoNothing) {
  Open("T");
  for (const int command : {ControlSave, ControlSaveAs, ControlOpen, ControlSaveAsDefault}) {
    EXPECT_EQ(Press(command), 0);
  }
  EXPECT_TRUE(host_.calls.saveDialogs.empty());
  EXPECT_TRUE(host_.calls.openDialogs.empty());
  EXPECT_EQ(host_.calls.keywordsWritten, 0);
}

TEST_F(Calculator, RestoreDefaultsShowsTheDefaultsOfTheRun) {
  Open("T");
  Set("TObserved", 1.5, Instance::Defaults);
  Fill("TObserved=2 DegreesOfFreedom=4");
  Press(ControlRestoreDefaults);
  EXPECT_EQ(Box("TObserved"), "1.50");
  EXPECT_EQ(Box("DegreesOfFreedom"), "24");
}

TEST_F(Calculator, TheHostMayAskForTheValuesAgain) {
  Open("T");
  Fill("TObserved=2 DegreesOfFreedom=4 Delta=1");
  Compute();
  host_.form()->SetDlgItemText(ControlOfField("TObserved"), "");
  Press(ControlRefresh);
  EXPECT_EQ(Box("TObserved"), "2.00");
  EXPECT_EQ(Box("CumP"), "0.76456745");
  EXPECT_EQ(host_.calls.restoreResults, 1);
}

TEST_F(Calculator, AnUnknownCommandIsNotAnswered) {
  Open("T");
  EXPECT_EQ(Press(4711), 0);
  EXPECT_EQ(Press("WhatToCompute=3"), 0);
}

TEST_F(Calculator, ASelectorThatNoButtonStandsForIsRefused) {
  Open("R");
  Set("WhatToCompute", 7);
  Compute();
  EXPECT_EQ(MessageIds(), std::vector<int>{12851});
  Set("WhatToCompute", 1);
  host_.ClearMessages();
  Set("Algorithm", 3);
  Compute();
  EXPECT_EQ(MessageIds(), std::vector<int>{12851});
}

TEST_F(Calculator, WithoutABlockItOpensAndCloses) {
  Open("T");
  PowerSettingsHead* settings = Module().settings;
  Module().settings = nullptr;
  EXPECT_EQ(Press(ControlAccept), 0);
  EXPECT_EQ(Press("OneMinusP"), 0);
  Type("TObserved", "3");
  Module().settings = settings;
  EXPECT_EQ(Get("TObserved"), 1);
}

}  // namespace
}  // namespace poweranalysis
