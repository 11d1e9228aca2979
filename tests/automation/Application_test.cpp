#include "automation/Application.h"

#include <gmock/gmock.h>

#include <cmath>

#include "AutomationRun.h"
#include "support/ControlName.h"
#include "support/TemporaryFolder.h"

namespace poweranalysis {
namespace {

using ::testing::HasSubstr;
using testing::ReadWhole;
using testing::TemporaryFolder;

const Value kNone;

double RealOf(const Value& value) { return std::get<double>(value); }
std::int64_t IntOf(const Value& value) { return std::get<std::int64_t>(value); }
bool IsNone(const Value& value) { return std::holds_alternative<std::monostate>(value); }

template <class Error, class Action>
std::string MessageOf(Action action) {
  try {
    action();
  } catch (const Error& error) {
    EXPECT_EQ(error.code(), 0x80004005u);
    return error.what();
  }
  ADD_FAILURE() << "nothing was raised";
  return {};
}

class Objects : public AutomationRun {
 protected:
  T1Params& t1() { return Block()->T1.Working; }
};

// --- The application.

TEST_F(Objects, AnAnalysisStartsWithTheStartupObject) {
  const auto startup = application_.StartAnalysis();
  EXPECT_STREQ(startup->interface().name, "PowStartup");
  EXPECT_EQ(application_.Dialog(), startup);
  EXPECT_EQ(IntOf(startup->Get("AnalysisItem")), 0);
  EXPECT_EQ(IntOf(startup->Get("AnalysisType")), 0);
}

TEST_F(Objects, ThereIsNoDialogBeforeAndAfter) {
  EXPECT_EQ(application_.Dialog(), nullptr);
  application_.StartAnalysis()->Cancel();
  EXPECT_EQ(application_.Dialog(), nullptr);
}

TEST_F(Objects, ANewAnalysisClosesTheDialogOfTheOld) {
  const auto results = Results(ModePower, "T2");
  const auto startup = application_.StartAnalysis();
  EXPECT_FALSE(results->IsOpen());
  EXPECT_TRUE(startup->IsOpen());
  EXPECT_EQ(OpenInterface(), "PowStartup");
}

TEST_F(Objects, AStartupThatDoesNotOpenRaises) {
  host_.failDialog = true;
  EXPECT_THROW(application_.StartAnalysis(), AutomationError);
}

TEST_F(Objects, EachOpeningOfADialogIsAnObjectOfItsOwn) {
  const auto first = Parameters(ModePower, "T1");
  first->OK();
  application_.Dialog()->Cancel();
  const auto second = application_.Dialog();
  EXPECT_STREQ(second->interface().name, first->interface().name);
  EXPECT_NE(second, first);
  EXPECT_FALSE(first->IsOpen());
  EXPECT_TRUE(second->IsOpen());
}

TEST_F(Objects, ADialogUnderAnotherSaysSoAndWorksAgainAfterwards) {
  const auto page = Parameters(ModePower, "AV1");
  page->PressButton("Grid");
  const auto grid = application_.Dialog();
  ASSERT_NE(grid, page);
  EXPECT_TRUE(page->IsOpen());
  try {
    page->GetField("N");
    ADD_FAILURE() << "a covered dialog answered";
  } catch (const DialogClosed&) {
    ADD_FAILURE() << "a covered dialog is not closed";
  } catch (const AutomationError& error) {
    EXPECT_NE(std::string(error.what()).find("another dialog is open above it"), std::string::npos);
  }
  grid->SetField("Mean1", 1.5);
  EXPECT_EQ(grid->OK(), 1);
  EXPECT_FALSE(grid->IsOpen());
  EXPECT_EQ(application_.Dialog(), page);
  EXPECT_NO_THROW(page->GetField("N"));
}

TEST_F(Objects, AreCountedWhileTheyLive) {
  const int before = DialogObject::LockCount();
  {
    const auto startup = application_.StartAnalysis();
    EXPECT_EQ(DialogObject::LockCount(), before + 1);
    startup->Cancel();
    application_.Dialog();
    EXPECT_EQ(DialogObject::LockCount(), before + 1);
  }
  EXPECT_EQ(DialogObject::LockCount(), before);
}

// --- The startup.

TEST_F(Objects, TheTaskIsChosenByTheNameOfItsConstant) {
  const auto startup = application_.StartAnalysis();
  startup->Put("AnalysisItem", std::string("scPowSampleSizeCalculation"));
  startup->Put("AnalysisType", std::string("scPowTwoMeansTTestDependentSamples"));
  EXPECT_EQ(Block()->Mode, 1);
  EXPECT_EQ(Block()->Selection[1], 2);
  EXPECT_EQ(startup->OK(), 1);
  EXPECT_EQ(OpenInterface(), "PowT3SSParametersDialog");
}

TEST_F(Objects, BothSpellingsOfTheIndependentTTestStay) {
  const auto startup = application_.StartAnalysis();
  for (const char* name :
       {"scPowTwoMeansTTestIndependentSamples", "scPowTwoMeansTTestIndpendentSamples"}) {
    startup->Put("AnalysisType", std::int64_t{0});
    startup->Put("AnalysisType", std::string(name));
    EXPECT_EQ(IntOf(startup->Get("AnalysisType")), 1) << name;
  }
  EXPECT_EQ(AnalysisTypes().size(), 35u);
}

TEST_F(Objects, TheIntervalOfTheIndependentTTestIsKnownMisspelledAlone) {
  const auto startup = application_.StartAnalysis();
  startup->Put("AnalysisItem", std::string("scPowIntervalEstimation"));
  startup->Put("AnalysisType", std::string("scPowIntervalTwoMeansTTestIndpendentSamples"));
  EXPECT_EQ(IntOf(startup->Get("AnalysisType")), 1);
  const std::string message = MessageOf<UnknownMember>([&] {
    startup->Put("AnalysisType", std::string("scPowIntervalTwoMeansTTestIndependentSamples"));
  });
  EXPECT_THAT(message, HasSubstr("'scPowIntervalTwoMeansTTestIndpendentSamples'"));
}

TEST_F(Objects, TheChiSquareCalculatorKeepsItsSpelling) {
  const auto startup = application_.StartAnalysis();
  startup->Put("AnalysisItem", std::string("scPowProbabilityDistribution"));
  startup->Put("AnalysisType", std::string("scPowDistributionNonCentralChiSuare"));
  EXPECT_EQ(IntOf(startup->Get("AnalysisType")), 2);
}

TEST_F(Objects, OneNumberMeansAnotherTaskInAnotherMode) {
  const auto startup = application_.StartAnalysis();
  startup->Put("AnalysisType", std::string("scPowIntervalOneCorrelationTTest"));
  EXPECT_EQ(IntOf(startup->Get("AnalysisType")), 6);
  EXPECT_STREQ(Tasks(ModePower)[6].enumerator, "scPowOneVarianceChiSquareTest");
}

TEST_F(Objects, ATaskThatTheListLacksRaisesNothingAndOpensNothing) {
  const auto startup = application_.StartAnalysis();
  startup->Put("AnalysisType", std::int64_t{99});
  EXPECT_EQ(startup->OK(), 0);
  EXPECT_EQ(application_.Dialog(), nullptr);
}

// --- Puts and gets.

TEST_F(Objects, APutIsTyping) {
  const auto dialog = Parameters(ModePower, "T1");
  dialog->Put("Alpha", 0.01);
  EXPECT_EQ(t1().Alpha, 0.01);
  EXPECT_EQ(Block()->T1.Committed.Alpha, 0.05);
  dialog->Put("Mean2", std::int64_t{7});
  EXPECT_EQ(t1().Mu, 7);
  dialog->Put("SampleSize", std::int64_t{40});
  EXPECT_EQ(t1().SampleSize, 40);
}

TEST_F(Objects, AGetGivesTheDoubleThatWasPut) {
  const auto dialog = Parameters(ModePower, "T1");
  for (const double value : {0.1 + 0.2, 1.0 / 3, -2.5e-17, 1e30}) {
    dialog->Put("Mean1", value);
    EXPECT_EQ(RealOf(dialog->Get("Mean1")), value);
    EXPECT_EQ(t1().Mu0, value);
  }
}

TEST_F(Objects, AGetReadsTheFullPrecisionBehindAShownNumber) {
  Parameters(ModePower, "T1");
  Block()->T1.Working.Mu0 = 1.0 / 3;
  host_.Press(ControlRefresh);
  EXPECT_EQ(driver_.Text(108), "0.33333");
  EXPECT_EQ(RealOf(application_.Dialog()->Get("Mean1")), 1.0 / 3);
}

TEST_F(Objects, AWholeNumberIsRoundedTowardZero) {
  const auto dialog = Parameters(ModePower, "T1");
  dialog->Put("SampleSize", 9.9);
  EXPECT_EQ(t1().SampleSize, 9);
  EXPECT_EQ(IntOf(dialog->Get("SampleSize")), 9);
  dialog->Put("SampleSize", -9.9);
  EXPECT_EQ(IntOf(dialog->Get("SampleSize")), -9);
  dialog->Put("SampleSize", 1e12);
  EXPECT_EQ(IntOf(dialog->Get("SampleSize")), 2147483647);
  dialog->Put("SampleSize", std::nan(""));
  EXPECT_EQ(IntOf(dialog->Get("SampleSize")), 0);
}

TEST_F(Objects, ALetterStoresZero) {
  const auto dialog = Parameters(ModePower, "T1");
  dialog->Put("Alpha", std::string("x"));
  EXPECT_EQ(t1().Alpha, 0);
  EXPECT_EQ(RealOf(dialog->Get("Alpha")), 0);
  EXPECT_EQ(dialog->OK(), 0);
}

TEST_F(Objects, AFlagIsOneForTheChosenButton) {
  const auto dialog = Parameters(ModePower, "T1");
  EXPECT_EQ(IntOf(dialog->Get("TwoTailedEqual")), 1);
  dialog->Put("OneTailedHigh", std::int64_t{1});
  EXPECT_EQ(t1().H0Type, 2);
  EXPECT_EQ(IntOf(dialog->Get("TwoTailedEqual")), 0);
  EXPECT_EQ(IntOf(dialog->Get("OneTailedHigh")), 1);
  dialog->Put("OneTailedLow", std::int64_t{-5});
  EXPECT_EQ(t1().H0Type, 1);
}

TEST_F(Objects, TakingAFlagBackChangesNothing) {
  const auto dialog = Parameters(ModePower, "T1");
  dialog->Put("TwoTailedEqual", std::int64_t{0});
  dialog->Put("OneTailedHigh", std::int64_t{0});
  EXPECT_EQ(t1().H0Type, 0);
  EXPECT_EQ(IntOf(dialog->Get("TwoTailedEqual")), 1);
}

TEST_F(Objects, AFlagTakesNumbersAlone) {
  const auto dialog = Parameters(ModePower, "T1");
  EXPECT_THROW(dialog->Put("OneTailedHigh", std::string("yes")), AutomationError);
  EXPECT_THROW(dialog->Put("Alpha", kNone), AutomationError);
}

// --- OK and Cancel.

TEST_F(Objects, APutOutOfRangeRaisesNothingUntilOkRefuses) {
  const auto dialog = Parameters(ModePower, "T1");
  dialog->Put("Alpha", 7.0);
  EXPECT_TRUE(host_.messages().empty());
  EXPECT_EQ(dialog->OK(), 0);
  EXPECT_TRUE(dialog->IsOpen());
  EXPECT_EQ(host_.messages().size(), 1u);
  dialog->Put("Alpha", 0.05);
  EXPECT_EQ(dialog->OK(), 1);
  EXPECT_FALSE(dialog->IsOpen());
}

TEST_F(Objects, OkOfResultsIsOneWhenATableWasSent) {
  const auto results = Results(ModePower, "T1");
  EXPECT_EQ(results->OK(), 1);
  EXPECT_TRUE(results->IsOpen());
  results->Put("EndOfAlpha", 3.0);
  EXPECT_EQ(results->OK(), 0);
}

TEST_F(Objects, OkOfResultsIsZeroUnderATrueNullHypothesis) {
  const auto parameters = Parameters(ModePower, "T1");
  parameters->Put("Mean1", 5.0);
  parameters->Put("Mean2", 5.0);
  ASSERT_EQ(parameters->OK(), 1);
  const auto results = application_.Dialog();
  EXPECT_EQ(results->OK(), 0);
  EXPECT_FALSE(results->IsOpen());
  EXPECT_EQ(OpenInterface(), "PowT1PowParamsDialog");
}

TEST_F(Objects, CancelGoesBackADialog) {
  Results(ModeSampleSize, "T2")->Call("Cancel");
  EXPECT_EQ(OpenInterface(), "PowT2SSParametersDialog");
  application_.Dialog()->Cancel();
  EXPECT_EQ(OpenInterface(), "PowStartup");
}

TEST_F(Objects, ACallOnAClosedDialogRaises) {
  const auto dialog = Parameters(ModePower, "T1");
  dialog->OK();
  EXPECT_THROW(dialog->Get("Alpha"), DialogClosed);
  EXPECT_THROW(dialog->Get("Name"), DialogClosed);
  EXPECT_THROW(dialog->Put("Alpha", 0.05), DialogClosed);
  EXPECT_THROW(dialog->OK(), DialogClosed);
  EXPECT_THROW(dialog->Cancel(), DialogClosed);
  EXPECT_THROW(dialog->SaveAsDefault(), DialogClosed);
  EXPECT_THROW(dialog->SaveSettingsAs(), DialogClosed);
  EXPECT_THROW(dialog->Call("OK"), DialogClosed);
  EXPECT_THROW(dialog->SetField("Alpha", 0.05), DialogClosed);
  EXPECT_THROW(dialog->GetField("Alpha"), DialogClosed);
  EXPECT_THROW(dialog->PressButton("RestoreDefaults"), DialogClosed);
  EXPECT_THAT(MessageOf<DialogClosed>([&] { dialog->Get("Alpha"); }),
              HasSubstr("PowT1PowParamsDialog"));
}

// --- Results.

TEST_F(Objects, SummaryGivesTheTable) {
  const Value value = Results(ModePower, "T2")->Get("Summary");
  const auto& table = std::get<SummaryTable>(value);
  EXPECT_EQ(table.code, 16);
  EXPECT_EQ(std::get<SummaryTable>(host_.workbook().items.front()).rows.back().values,
            table.rows.back().values);
}

TEST_F(Objects, SummaryGivesNoneWhenTheDialogRefuses) {
  const auto results = Results(ModePower, "T2");
  results->Put("StartOfSampleSize", std::int64_t{1});
  EXPECT_TRUE(IsNone(results->Get("Summary")));
  EXPECT_TRUE(host_.workbook().items.empty());
}

TEST_F(Objects, AGraphGivesItsChart) {
  const auto results = Results(ModePower, "T2");
  EXPECT_EQ(std::get<Chart>(results->Get("GraphOfPowerVsN2")).name, "power-vs-n2");
  EXPECT_EQ(std::get<Chart>(results->Get("GraphOfPowerVsAlpha")).name, "power-vs-alpha");
}

TEST_F(Objects, AGraphGivesNoneWhenItCouldNotBeDrawn) {
  const auto results = Results(ModePower, "T1");
  host_.failChart = true;
  EXPECT_TRUE(IsNone(results->Get("GraphOfPowerVsN")));
}

// --- Settings.

TEST_F(Objects, SaveSettingsAsTakesAPathOrAsks) {
  TemporaryFolder folder;
  const auto dialog = Parameters(ModePower, "T1");
  dialog->Put("Alpha", 0.125);
  dialog->SaveSettingsAs(folder.File("given.ini"));
  EXPECT_THAT(ReadWhole(folder.File("given.ini")), HasSubstr("0.125"));
  host_.saveAnswers.push_back(folder.File("asked.ini"));
  dialog->Call("SaveSettingsAs");
  EXPECT_EQ(ReadWhole(folder.File("asked.ini")), ReadWhole(folder.File("given.ini")));
  dialog->Call("SaveSettingsAs", folder.File("called.ini"));
  EXPECT_EQ(ReadWhole(folder.File("called.ini")), ReadWhole(folder.File("given.ini")));
}

TEST_F(Objects, APathAnswersOnlyItsOwnPress) {
  TemporaryFolder folder;
  const auto dialog = Parameters(ModePower, "T1");
  host_.saveAnswers.push_back(folder.File("later.ini"));
  dialog->SaveSettingsAs(folder.File("now.ini"));
  ASSERT_EQ(host_.saveAnswers.size(), 1u);
  EXPECT_EQ(host_.saveAnswers.front(), folder.File("later.ini"));
}

TEST_F(Objects, ResultsDialogsDoNotSaveByName) {
  const auto results = Results(ModePower, "T1");
  EXPECT_THROW(results->SaveSettingsAs("x"), UnknownMember);
  EXPECT_THROW(results->SaveAsDefault(), UnknownMember);
  TemporaryFolder folder;
  results->PressButton("SaveSettingsAs", folder.File("results.ini"));
  EXPECT_THAT(ReadWhole(folder.File("results.ini")), HasSubstr("="));
}

TEST_F(Objects, SaveAsDefaultWritesTheDefaultFile) {
  TemporaryFolder folder;
  host_.configFolder = folder.path();
  const auto dialog = Parameters(ModePower, "T1");
  dialog->Put("Alpha", 0.0625);
  dialog->SaveAsDefault();
  EXPECT_THAT(ReadWhole(folder.File("POWER.INI")), HasSubstr("0.0625"));
}

// --- Members of all dialogs.

TEST_F(Objects, KnowTheirNameAndTheirApplication) {
  const auto dialog = Parameters(ModePower, "T1");
  EXPECT_EQ(std::get<std::string>(dialog->Get("Name")), driver_.Spec().title);
  EXPECT_EQ(std::get<Application*>(dialog->Get("Application")), &application_);
  EXPECT_EQ(std::get<Application*>(dialog->Get("Parent")), &application_);
  EXPECT_THROW(dialog->Put("Name", std::string("x")), AutomationError);
}

TEST_F(Objects, StoreWhatCanOnlyBePut) {
  const auto dialog = Parameters(ModePower, "T1");
  const T1Params before = t1();
  for (const char* member :
       {"ResultsSelection", "ResultsSelectionOption", "ResultsVariables", "ResultsOption",
        "ResultsCodes", "ResultsSaveFileName", "ResultsValues", "ResultsOutputFields"}) {
    dialog->Put(member, std::int64_t{3});
    EXPECT_THAT(MessageOf<AutomationError>([&] { dialog->Get(member); }),
                HasSubstr("can be set and not read"));
  }
  EXPECT_EQ(t1().Alpha, before.Alpha);
  EXPECT_TRUE(host_.messages().empty());
}

TEST_F(Objects, AnUnknownMemberNamesTheNearest) {
  const auto dialog = Parameters(ModePower, "T1");
  EXPECT_EQ(MessageOf<UnknownMember>([&] { dialog->Put("alfa", 0.05); }),
            "PowT1PowParamsDialog has no member 'alfa'; did you mean 'Alpha'?");
  EXPECT_THAT(MessageOf<UnknownMember>([&] { dialog->Get("SampelSize"); }),
              HasSubstr("'SampleSize'"));
  EXPECT_THAT(MessageOf<UnknownMember>([&] { dialog->Call("Cancle"); }), HasSubstr("'Cancel'"));
}

TEST_F(Objects, AMemberIsUsedAsItsKindAllows) {
  const auto dialog = Parameters(ModePower, "T1");
  EXPECT_THROW(dialog->Get("OK"), AutomationError);
  EXPECT_THROW(dialog->Put("SaveAsDefault", std::int64_t{1}), AutomationError);
  EXPECT_THROW(dialog->Call("Alpha"), AutomationError);
  EXPECT_THROW(dialog->Call("SaveAsDefault", std::string("path")), AutomationError);
  EXPECT_THROW(dialog->Call("SaveSettingsAs", std::int64_t{1}), AutomationError);
  dialog->OK();
  EXPECT_THROW(application_.Dialog()->Put("Summary", std::int64_t{1}), AutomationError);
}

// --- Beyond the interface.

TEST_F(Objects, FieldsWithoutAPropertyAreReachedByName) {
  const auto dialog = Parameters(ModeSampleSize, "T2");
  EXPECT_EQ(dialog->interface().Find("NToVary"), nullptr);
  EXPECT_EQ(IntOf(dialog->GetField("NToVary")), 0);
  dialog->SetField("NToVary", std::int64_t{2});
  EXPECT_EQ(IntOf(dialog->GetField("NToVary")), 2);
  EXPECT_EQ(Block()->T2.Working.NToVary, 2);
  EXPECT_THROW(dialog->SetField("NToVary", std::int64_t{9}), AutomationError);
  dialog->SetField("SampleSizeN1", std::int64_t{33});
  EXPECT_EQ(IntOf(dialog->GetField("SampleSizeN1")), 33);
  dialog->SetField("Sigma", 2.5);
  EXPECT_EQ(RealOf(dialog->GetField("Sigma")), 2.5);
  EXPECT_THAT(MessageOf<UnknownMember>([&] { dialog->GetField("NtoVary2"); }),
              HasSubstr("'NToVary'"));
}

TEST_F(Objects, ButtonsWithoutAMemberArePressedByName) {
  const auto dialog = Parameters(ModePower, "T1");
  dialog->Put("Alpha", 0.2);
  dialog->PressButton("RestoreDefaults");
  EXPECT_EQ(RealOf(dialog->Get("Alpha")), 0.05);
  dialog->OK();
  application_.Dialog()->PressButton("ChangeParams");
  EXPECT_EQ(OpenInterface(), "PowT1PowParamsDialog");
  EXPECT_THAT(
      MessageOf<UnknownMember>([&] { application_.Dialog()->PressButton("RestoreDefault"); }),
      HasSubstr("'RestoreDefaults'"));
}

TEST_F(Objects, SettingsAreOpenedFromAPath) {
  TemporaryFolder folder;
  auto dialog = Parameters(ModePower, "T1");
  dialog->Put("Mean2", 4.5);
  dialog->SaveSettingsAs(folder.File("saved.ini"));
  dialog->Put("Mean2", 1.0);
  dialog->PressButton("Open", folder.File("saved.ini"));
  EXPECT_EQ(RealOf(dialog->Get("Mean2")), 4.5);
}

// --- Calculators.

class Calculators : public AutomationRun {
 protected:
  std::shared_ptr<DialogObject> Open(const char* calculator) {
    return Parameters(ModeDistribution, calculator);
  }
  std::string LastMessage() {
    return host_.messages().empty() ? std::string() : host_.messages().back().text;
  }
};

TEST_F(Calculators, OkComputesAndTheAnswerIsRead) {
  struct {
    const char* calculator;
    const char* flag;
    const char* box;
    std::vector<std::pair<const char*, double>> inputs;
    double answer;
  } const kCases[] = {
      {"T",
       "ComputeT",
       "ObservedT",
       {{"DegreeOfFreedom", 10}, {"Delta", 0}, {"PLEVEL", .975}},
       2.2281388},
      {"T",
       "ComputeDelta",
       "Delta",
       {{"DegreeOfFreedom", 10}, {"ObservedT", 2}, {"PLEVEL", .5}},
       1.94784},
      {"F",
       "ComputeF",
       "ObservedF",
       {{"DegreeOfFreedom1", 2}, {"DegreeOfFreedom2", 10}, {"Delta", 0}, {"PLEVEL", .95}},
       4.10282},
      {"X2",
       "ComputePLevel",
       "PVALUE",
       {{"ObservedChiSquare", 3}, {"DegreeOfFreedom", 2}, {"LAMBDA", 0}},
       0.77686984},
      {"X2",
       "ComputeDelta",
       "LAMBDA",
       {{"ObservedChiSquare", 20}, {"DegreeOfFreedom", 10}, {"PLEVEL", .801701997}},
       5},
      {"R",
       "ComputeR",
       "ObservedR",
       {{"RHO", 0}, {"N", 20}, {"PLEVEL", .975}, {"Exact", 1}},
       0.4438},
      {"R2",
       "ComputePLevel",
       "PLEVEL",
       {{"ObservedRSquare", .5}, {"RhoSquare", 0}, {"SampleSize", 10}, {"IndependentVariables", 2}},
       0.9778},
      {"Binomial",
       "ComputeX",
       "ObservedX",
       {{"PopulationProbability", .5}, {"SampleSize", 10}, {"RequestedValuePLevel", .3}},
       4},
      {"Binomial",
       "ComputePi",
       "PopulationProbability",
       {{"ObservedX", 5}, {"SampleSize", 10}, {"RequestedValuePLevel", .623046875}},
       0.5},
  };
  for (const auto& row : kCases) {
    const auto dialog = Open(row.calculator);
    dialog->Put(row.flag, std::int64_t{1});
    for (const auto& [member, value] : row.inputs) {
      dialog->Put(member, value);
    }
    EXPECT_EQ(dialog->OK(), 1) << row.calculator << LastMessage();
    const Value answer = dialog->Get(row.box);
    const double number = std::holds_alternative<double>(answer)
                              ? RealOf(answer)
                              : static_cast<double>(IntOf(answer));
    EXPECT_NEAR(number, row.answer, 1e-4) << row.calculator << " " << row.flag;
  }
  EXPECT_EQ(host_.messageCalls(), 0);
}

TEST_F(Calculators, OkIsOneBesideAWarning) {
  const auto dialog = Open("T");
  dialog->Put("Delta", 6000.0);
  EXPECT_EQ(dialog->OK(), 1);
  EXPECT_THAT(LastMessage(), HasSubstr("greater than 5000"));
}

TEST_F(Calculators, OkIsOneWhereThereIsNoSolutionAndTheNearestIsShown) {
  const auto dialog = Open("F");
  dialog->Put("ComputeDelta", std::int64_t{1});
  dialog->Put("ObservedF", 1.0);
  dialog->Put("PLEVEL", 0.99);
  for (int time = 1; time <= 2; ++time) {
    EXPECT_EQ(dialog->OK(), 1) << time;
    EXPECT_EQ(RealOf(dialog->Get("Delta")), 0);
  }
  EXPECT_THAT(LastMessage(), HasSubstr("There exists no non-negative Delta"));
}

TEST_F(Calculators, OkIsZeroForARefusedRange) {
  const auto dialog = Open("T");
  EXPECT_EQ(dialog->OK(), 1);
  dialog->Put("DegreeOfFreedom", 0.0);
  EXPECT_EQ(dialog->OK(), 0);
  EXPECT_THAT(LastMessage(), HasSubstr("outside the permissible range"));
  EXPECT_TRUE(dialog->IsOpen());
}

TEST_F(Calculators, OkIsZeroForFewerObservationsThanVariables) {
  const auto dialog = Open("R2");
  dialog->Put("SampleSize", std::int64_t{10});
  dialog->Put("IndependentVariables", std::int64_t{4});
  EXPECT_EQ(dialog->OK(), 1);
  dialog->Put("SampleSize", std::int64_t{3});
  // The answer of before still stands in its box.
  EXPECT_EQ(dialog->OK(), 0);
  dialog->Put("SampleSize", std::int64_t{5});
  EXPECT_EQ(dialog->OK(), 1);
}

TEST_F(Calculators, OkIsZeroForAnErrorAndOnlyForTheUnknowns) {
  const auto dialog = Open("X2");
  dialog->Put("ComputeChiSquare", std::int64_t{1});
  dialog->Put("DegreeOfFreedom", std::int64_t{1});
  dialog->Put("LAMBDA", 0.0);
  dialog->Put("PLEVEL", 0.01);
  EXPECT_EQ(dialog->OK(), 0);
  EXPECT_EQ(host_.messageCalls(), 0);
  // The error of a former unknown stays in its box and reads as 0.
  dialog->Put("ComputePLevel", std::int64_t{1});
  EXPECT_EQ(dialog->OK(), 1);
  EXPECT_EQ(RealOf(dialog->Get("PLEVEL")), 0);
}

// --- Members over dialogs of another make: one dialog with the controls that a test gives it.

class OneDialog : public DialogDriver {
 public:
  explicit OneDialog(DialogSpec spec) : spec_(std::move(spec)) { form_.AddDlgTabs(spec_); }

  bool StartAnalysis() override { return true; }
  std::uint64_t OpenDialog() const override { return 1; }
  DialogSpec Spec() const override { return spec_; }
  void Type(int control, const std::string& text) override { form_.Type(control, text); }
  void Press(int control) override {
    pressed.push_back(control);
    const FormModel::Control& found = *form_.Find(control);
    if (found.spec.kind == ControlKind::Radio) {
      form_.CheckRadioButton(control / 10 * 10, control / 10 * 10 + 9, control);
    } else if (found.spec.kind == ControlKind::CheckBox) {
      form_.CheckDlgButton(control, !found.checked);
    }
    items.insert(items.end(), answer.begin(), answer.end());
  }
  void PressWithFile(int control, const std::string&) override { Press(control); }
  void Select(int list, int row) override { form_.SelectListRow(list, row); }
  std::string Text(int control) const override { return form_.GetDlgItemText(control); }
  std::optional<double> Number(int control) const override {
    double value = 0;
    return form_.GetDlgItemDouble(control, value) == 0 ? std::optional<double>(value)
                                                       : std::nullopt;
  }
  bool Checked(int control) const override { return form_.IsDlgButtonChecked(control); }
  int SelectedRow(int list) const override { return form_.SelectedListRow(list); }
  std::size_t ItemCount() const override { return items.size(); }
  WorkbookItem Item(std::size_t index) const override { return items[index]; }
  int MessageCount() const override { return 0; }

  std::vector<int> pressed;
  std::vector<WorkbookItem> items;
  std::vector<WorkbookItem> answer;  // sent by each press

 private:
  DialogSpec spec_;
  FormModel form_;
};

DialogSpec SpecOf(const char* interface) {
  const Interface& table = *FindInterface(interface);
  DialogSpec spec;
  spec.className = table.className;
  spec.frame.push_back({1, ControlKind::Button, "OK", {}, {}, {}, 0});
  PageSpec page;
  for (const Member& member : table.members) {
    const Field* field = table.record->Find(member.field);
    const bool real = field != nullptr && field->type == FieldType::Real;
    const ControlKind kind = member.binding == Binding::Flag    ? ControlKind::Radio
                             : member.binding == Binding::Check ? ControlKind::CheckBox
                             : member.binding != Binding::Edit  ? ControlKind::Button
                             : real                             ? ControlKind::RealEdit
                                                                : ControlKind::IntEdit;
    page.controls.push_back({member.control, kind, member.field, {}, {}, {}, member.value});
  }
  spec.pages = {page};
  return spec;
}

TEST(ObjectsOfOtherDialogs, ADoubleOverAWholeNumberIsRoundedTowardZero) {
  OneDialog driver(SpecOf("PowT2IntParametersDialog"));
  Application application(driver);
  const auto dialog = application.Dialog();
  dialog->Put("SampleSize1", 9.5);
  EXPECT_EQ(driver.Text(ControlOfField("SampleSizeN1")), "9");
  EXPECT_EQ(RealOf(dialog->Get("SampleSize1")), 9.0);
  dialog->Put("SampleSize2", -9.5);
  EXPECT_EQ(RealOf(dialog->Get("SampleSize2")), -9.0);
}

TEST(ObjectsOfOtherDialogs, OfTwoNamesForAPeriodTheLastPutWins) {
  OneDialog driver(SpecOf("PowSA2PowParametersDialog"));
  Application application(driver);
  const auto dialog = application.Dialog();
  dialog->Put("AccrualPeriod", 3.0);
  dialog->Put("ActualPeriod", 5.9);
  EXPECT_EQ(RealOf(dialog->Get("AccrualPeriod")), 5.0);
}

TEST(ObjectsOfOtherDialogs, FlagsOfTypeDoubleAreFlags) {
  OneDialog driver(SpecOf("PowP1_P_ResultsDialog"));
  Application application(driver);
  const auto dialog = application.Dialog();
  dialog->Put("ApproximateAlgorithm", 1.0);
  EXPECT_EQ(driver.pressed, std::vector<int>{NumberOf("Algorithm=normal", Family::P1)});
  EXPECT_EQ(RealOf(dialog->Get("ApproximateAlgorithm")), 1.0);
  EXPECT_EQ(RealOf(dialog->Get("ExactAlgorithm")), 0.0);
  dialog->Put("ExactAlgorithm", 0.0);
  EXPECT_EQ(driver.pressed.size(), 1u);
}

TEST(ObjectsOfOtherDialogs, ACheckBoxIsPressedOnlyWhenItDiffers) {
  OneDialog driver(SpecOf("PowP2PowParametersDialog"));
  Application application(driver);
  const auto dialog = application.Dialog();
  dialog->Put("ContinuityCorrectionCalculation", std::int64_t{1});
  dialog->Put("ContinuityCorrectionCalculation", std::int64_t{1});
  EXPECT_EQ(driver.pressed, std::vector<int>{ControlOfField("Continuity")});
  EXPECT_EQ(IntOf(dialog->Get("ContinuityCorrectionCalculation")), 1);
  EXPECT_EQ(IntOf(dialog->Get("EqualSampleSizeCalculation")), 0);
  dialog->Put("ContinuityCorrectionCalculation", std::int64_t{0});
  EXPECT_EQ(IntOf(dialog->Get("ContinuityCorrectionCalculation")), 0);
}

TEST(ObjectsOfOtherDialogs, OneButtonCanGiveSeveralCharts) {
  OneDialog driver(SpecOf("PowAV2_P_ResultsDialog"));
  driver.answer.assign(3, Chart());
  Application application(driver);
  const Value value = application.Dialog()->Get("GraphOfPowerVsN");
  EXPECT_EQ(std::get<std::vector<Chart>>(value).size(), 3u);
}

TEST(ObjectsOfOtherDialogs, OkOfAnIntervalIsOneWhenATableWasSent) {
  OneDialog driver(SpecOf("PowT1IntParametersDialog"));
  Application application(driver);
  EXPECT_EQ(application.Dialog()->OK(), 0);
  driver.answer = {SummaryTable()};
  EXPECT_EQ(application.Dialog()->OK(), 1);
  EXPECT_TRUE(std::holds_alternative<SummaryTable>(application.Dialog()->Get("Summary")));
}

TEST(ObjectsOfOtherDialogs, ADialogWithoutAnInterfaceHasTheMembersOfAllDialogs) {
  DialogSpec spec;
  spec.className = "CTwowayAnovaGrid";
  spec.title = "Means";
  OneDialog driver(spec);
  Application application(driver);
  const auto dialog = application.Dialog();
  EXPECT_STREQ(dialog->interface().name, "ZlvAnalysisDialog");
  EXPECT_EQ(std::get<std::string>(dialog->Get("Name")), "Means");
  EXPECT_THROW(dialog->Get("Alpha"), UnknownMember);
}

TEST(ObjectsOfOtherDialogs, AMemberThatTheDialogDoesNotShowRaises) {
  DialogSpec spec;
  spec.className = "CT1PowParamsDialog";
  OneDialog driver(spec);
  Application application(driver);
  EXPECT_THROW(application.Dialog()->Put("Alpha", 0.1), AutomationError);
}

}  // namespace
}  // namespace poweranalysis
