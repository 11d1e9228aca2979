#include "automation/MacroRecorder.h"

#include <gmock/gmock.h>

#include <map>
#include <regex>
#include <set>
#include <sstream>

#include "AutomationRun.h"
#include "dialogs/Grids.h"
#include "support/ControlName.h"
#include "support/TemporaryFolder.h"

namespace poweranalysis {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;
using testing::ReadWhole;
using testing::TemporaryFolder;

// --- Named constants.

class Constants : public AutomationRun {
 protected:
  void SetUp() override { application_.StartAnalysis(); }
  // The number that a choice is recorded with; -1 when it stays a plain number.
  int Recorded(int mode, int control, int row) {
    Block()->Mode = static_cast<std::int16_t>(mode);
    COleAConstant value(row, COleAConstant::Int);
    PostRecordControlValue(control, &value);
    return value.constant().value_or(-1);
  }
};

TEST_F(Constants, AreNumberedInOneRunThroughTheModes) {
  EXPECT_EQ(Recorded(0, ControlTasks, 0), 28954);
  EXPECT_EQ(Recorded(0, ControlTasks, 3), 28957);
  EXPECT_EQ(Recorded(1, ControlTasks, 3), 28957);
  EXPECT_EQ(Recorded(2, ControlTasks, 3), 28975);
  EXPECT_EQ(Recorded(3, ControlTasks, 0), 28982);
  for (int mode = 0; mode < 4; ++mode) {
    EXPECT_EQ(Recorded(mode, ControlModes, 2), 28990);
  }
}

TEST_F(Constants, ReplaceNothingElse) {
  EXPECT_EQ(Recorded(0, 111, 3), -1);
  EXPECT_EQ(Recorded(4, ControlTasks, 3), -1);
  EXPECT_EQ(Recorded(-1, ControlTasks, 3), -1);
}

TEST_F(Constants, ReplaceNothingWithoutAWholeNumber) {
  COleAConstant none;
  PostRecordControlValue(ControlModes, &none);
  EXPECT_FALSE(none.constant());
  COleAConstant named(28957, COleAConstant::Named);
  PostRecordControlValue(ControlTasks, &named);
  EXPECT_EQ(named.constant(), 28957);
}

TEST(ConstantNames, AreThoseOfTheCatalogue) {
  EXPECT_STREQ(ConstantName(28954), "scPowOneMeanTTest");
  EXPECT_STREQ(ConstantName(28957), "scPowSeveralMeansPlannedContrast");
  EXPECT_STREQ(ConstantName(28971), "scPowStructuralEquationModeling");
  EXPECT_STREQ(ConstantName(28973), "scPowIntervalTwoMeansTTestIndpendentSamples");
  EXPECT_STREQ(ConstantName(28984), "scPowDistributionNonCentralChiSuare");
  EXPECT_STREQ(ConstantName(28991), "scPowProbabilityDistribution");
  EXPECT_EQ(ConstantName(28953), nullptr);
  EXPECT_EQ(ConstantName(28992), nullptr);
}

TEST(ConstantNames, TheMisspelledSecondNameHasNoNumber) {
  std::set<std::string> names;
  for (int number = 28954; number <= 28991; ++number) {
    EXPECT_TRUE(names.insert(ConstantName(number)).second) << number;
  }
  EXPECT_EQ(names.size(), 38u);
  EXPECT_EQ(names.count("scPowTwoMeansTTestIndpendentSamples"), 0u);
  EXPECT_EQ(names.count("scPowTwoMeansTTestIndependentSamples"), 1u);
}

// --- Recording.

// A user at a host that tells a recorder of each action.
class Recording : public AutomationRun {
 protected:
  void Start() {
    recorder_.AnalysisStarted();
    driver_.StartAnalysis();
  }
  void Type(const ControlName& name, const std::string& text) {
    const int control = ControlOf(name);
    host_.form()->Type(control, text);
    recorder_.Typed(driver_.OpenDialog(), driver_.Spec(), control, text, driver_.Number(control));
    host_.Press(control);
  }
  void Press(const ControlName& name) {
    const int control = ControlOf(name);
    recorder_.Pressed(driver_.OpenDialog(), driver_.Spec(), control);
    driver_.Press(control);
  }
  void Select(int list, int row) {
    recorder_.Selected(driver_.OpenDialog(), driver_.Spec(), list, row);
    driver_.Select(list, row);
  }
  // The script without its first lines, which are always the same.
  std::string Lines() {
    const std::string head = "import poweranalysis\n\napp = poweranalysis.Application()\n";
    const std::string script = recorder_.Script();
    EXPECT_EQ(script.substr(0, head.size()), head);
    return script.substr(head.size());
  }
  void StartTask(int mode, const char* family) {
    Start();
    if (const FamilyTable* table = FindFamily(family)) {
      family_ = table->family;
    }
    Select(ControlModes, mode);
    Select(ControlTasks, FindTask(mode, family));
    Press(ControlAccept);
  }

  int ControlOf(const ControlName& name) const {
    const int number = NumberOf(name, family_);
    EXPECT_NE(number, 0) << "no control " << name;
    return number;
  }
  // As the desktop does, which tells what the check box has become.
  void Check(const ControlName& name) {
    const int control = ControlOf(name);
    const bool checked = !driver_.Checked(control);
    recorder_.Pressed(driver_.OpenDialog(), driver_.Spec(), control, checked);
    driver_.Press(control);
  }

  MacroRecorder recorder_;
  Family family_ = Family::T1;
};

// Does what the lines of a script say, to an application of its own.
class Replay {
 public:
  void Run(const std::string& script) {
    std::istringstream lines(script.substr(script.find("Application()") + 13));
    for (std::string line; std::getline(lines, line);) {
      if (!line.empty()) {
        RunLine(line);
      }
    }
  }
  HeadlessHost& host() { return host_; }
  DialogObject& Object(const std::string& name) { return *objects_.at(name); }

 private:
  void RunLine(const std::string& line) {
    static const std::regex open(R"((\w+) = app\.(StartAnalysis\(\)|Dialog)  # (\w+))");
    static const std::regex put(R"((\w+)\.(\w+) = (.+))");
    static const std::regex setField(R"re((\w+)\.SetField\("(\w+)", (.+)\))re");
    static const std::regex press(R"re((\w+)\.PressButton\("(\w+)"(?:, "(.*)")?\))re");
    static const std::regex call(R"re((\w+)\.(\w+)\((?:"(.*)")?\))re");
    static const std::regex get(R"((\w+)\.(\w+))");
    std::smatch m;
    if (std::regex_match(line, m, open)) {
      objects_[m[1]] = m[2] == "Dialog" ? application_.Dialog() : application_.StartAnalysis();
      ASSERT_NE(objects_[m[1]], nullptr) << line;
      ASSERT_EQ(objects_[m[1]]->interface().name, m[3].str());
    } else if (std::regex_match(line, m, setField)) {
      objects_[m[1]]->SetField(m[2].str(), ValueOf(m[3]));
    } else if (std::regex_match(line, m, press)) {
      objects_[m[1]]->PressButton(m[2].str(),
                                  m[3].matched ? std::optional<std::string>(m[3]) : std::nullopt);
    } else if (std::regex_match(line, m, call)) {
      objects_[m[1]]->Call(m[2].str(), m[3].matched ? Value(m[3].str()) : Value());
    } else if (std::regex_match(line, m, put)) {
      objects_[m[1]]->Put(m[2].str(), ValueOf(m[3]));
    } else if (std::regex_match(line, m, get)) {
      objects_[m[1]]->Get(m[2].str());
    } else {
      ADD_FAILURE() << "no line of a script: " << line;
    }
  }
  static Value ValueOf(const std::string& text) {
    static const std::regex constant(R"(poweranalysis\.PowAnalysis(?:Type|Item)\.(\w+))");
    std::smatch m;
    if (std::regex_match(text, m, constant)) {
      return m[1].str();
    }
    return text.front() == '"' ? Value(text.substr(1, text.size() - 2)) : Value(std::stod(text));
  }

  HeadlessHost host_;
  HeadlessDriver driver_{host_, NewAnalysis};
  Application application_{driver_};
  std::map<std::string, std::shared_ptr<DialogObject>> objects_;
};

void ExpectSame(const WorkbookItem& a, const WorkbookItem& b) {
  ASSERT_EQ(a.index(), b.index());
  if (const auto* table = std::get_if<SummaryTable>(&a)) {
    const auto& other = std::get<SummaryTable>(b);
    EXPECT_EQ(table->headings, other.headings);
    ASSERT_EQ(table->rows.size(), other.rows.size());
    for (std::size_t i = 0; i < table->rows.size(); ++i) {
      for (std::size_t k = 0; k < table->rows[i].values.size(); ++k) {
        const double value = table->rows[i].values[k];
        EXPECT_TRUE(value == other.rows[i].values[k] ||
                    (IsMissing(value) && IsMissing(other.rows[i].values[k])))
            << table->rows[i].title;
      }
    }
  } else if (const auto* report = std::get_if<Report>(&a)) {
    EXPECT_EQ(report->paragraphs, std::get<Report>(b).paragraphs);
  } else {
    EXPECT_EQ(std::get<Chart>(a).y, std::get<Chart>(b).y);
    EXPECT_EQ(std::get<Chart>(a).titles, std::get<Chart>(b).titles);
  }
}

void ExpectSameResults(const Workbook& recorded, const std::string& script) {
  Replay replay;
  replay.Run(script);
  const Workbook& replayed = replay.host().workbook();
  ASSERT_EQ(recorded.items.size(), replayed.items.size());
  ASSERT_FALSE(recorded.items.empty());
  for (std::size_t i = 0; i < recorded.items.size(); ++i) {
    ExpectSame(recorded.items[i], replayed.items[i]);
  }
}

TEST_F(Recording, ASessionBecomesAScriptThatGivesTheSameResults) {
  StartTask(ModePower, "T1");
  Type("Alpha", "0.01");
  Type("Mu0", "-1.50");
  Press("H0Type=upper");
  Press(ControlAccept);
  Type("NEnd", "60");
  Press(ControlAccept);
  Press("power-vs-n");
  EXPECT_EQ(Lines(),
            "\n"
            "startup = app.StartAnalysis()  # PowStartup\n"
            "startup.AnalysisItem = poweranalysis.PowAnalysisItem.scPowPowerCalculation\n"
            "startup.AnalysisType = poweranalysis.PowAnalysisType.scPowOneMeanTTest\n"
            "startup.OK()\n"
            "\n"
            "dialog = app.Dialog  # PowT1PowParamsDialog\n"
            "dialog.Alpha = 0.01\n"
            "dialog.Mean1 = -1.5\n"
            "dialog.OneTailedLow = 1\n"
            "dialog.OK()\n"
            "\n"
            "results = app.Dialog  # PowT1_P_ResultsDialog\n"
            "results.EndOfSampleSize = 60\n"
            "results.Summary\n"
            "results.GraphOfPowerVsN\n");
  ExpectSameResults(host_.TakeWorkbook(), recorder_.Script());
}

TEST_F(Recording, AWayThereAndBackGivesTheSameResults) {
  StartTask(ModeSampleSize, "T2");
  Press("NToVary=n1");
  Type("SampleSizeN2", "40");
  Type("Alpha", "7");
  Press(ControlAccept);  // refused: the dialog stays
  Type("Alpha", "0.1");
  Press(ControlAccept);
  Press(ControlAccept);
  Type("PowerEnd", "0.92");
  Press("n-vs-power");
  Press(ControlChangeParams);
  Type("Sigma", "8");
  Press(ControlAccept);
  Press(ControlAccept);
  Press(ControlBack);
  Press(ControlBack);
  Select(ControlTasks, 2);
  Press(ControlAccept);
  Press(ControlAccept);
  Press(ControlAccept);
  const std::string script = recorder_.Script();
  EXPECT_THAT(script, HasSubstr("dialog.SetField(\"NToVary\", 1)\n"));
  EXPECT_THAT(script, HasSubstr("results.PressButton(\"ChangeParams\")\n"));
  EXPECT_THAT(script, HasSubstr("results.Cancel()\n"));
  EXPECT_THAT(script, HasSubstr("startup = app.Dialog  # PowStartup\n"));
  ExpectSameResults(host_.TakeWorkbook(), script);
}

TEST_F(Recording, AFamilyOfManyFieldsGivesTheSameResults) {
  StartTask(ModePower, "AV2");
  Type("Rows", "3");
  Type("Columns", "4");
  Type("N", "12");
  Press(ControlAccept);
  Type("AlphaEnd", "0.2");
  Press(ControlAccept);
  Press("power-vs-n");
  const std::string script = recorder_.Script();
  EXPECT_THAT(script, HasSubstr("dialog = app.Dialog  # PowAV2PowParametersDialog\n"
                                "dialog.NumberOfRows = 3\n"
                                "dialog.NumberOfColumns = 4\n"
                                "dialog.SampleSize = 12\n"
                                "dialog.OK()\n"));
  EXPECT_THAT(script, HasSubstr("results.GraphOfPowerVsN\n"));
  ExpectSameResults(host_.TakeWorkbook(), script);
}

TEST_F(Recording, AGridIsWrittenWithItsCellsAndThePageBelowIsNotOpenedAgain) {
  StartTask(ModePower, "AV2");
  Press(ControlGrid);
  const GridRow& grid = *FindGrid(Family::AV2);
  recorder_.Typed(driver_.OpenDialog(), driver_.Spec(), grid.ControlOfCell(1, 2), "1.5", 1.5);
  host_.Type(grid.ControlOfCell(1, 2), "1.5");
  Press(ControlGridCreate);
  Press(ControlAccept);
  Type("N", "12");
  Press(ControlAccept);
  Press(ControlAccept);
  const std::string script = recorder_.Script();
  EXPECT_THAT(script, HasSubstr("dialog.PressButton(\"Grid\")\n"
                                "\n"
                                "grid = app.Dialog  # ZlvAnalysisDialog\n"
                                "grid.SetField(\"A2B3\", 1.5)\n"
                                "grid.PressButton(\"Create\")\n"
                                "grid.OK()\n"
                                "dialog.SampleSize = 12\n"
                                "dialog.OK()\n"));
  ExpectSameResults(host_.TakeWorkbook(), script);
}

TEST_F(Recording, BegunInsideAGridWritesTheRoadThereFirst) {
  Start();
  Select(ControlModes, ModePower);
  Select(ControlTasks, FindTask(ModePower, "AV1"));
  Press(ControlAccept);
  family_ = Family::AV1;
  Type("NumberOfGroups", "4");
  Press(ControlGrid);
  const GridRow& grid = *FindGrid(Family::AV1);
  host_.Type(grid.ControlOfCell(3, 0), "2.5");
  recorder_.Clear();
  Press(ControlGridCreate);
  Press(ControlAccept);
  Press(ControlAccept);
  Press(ControlAccept);
  ExpectSameResults(host_.TakeWorkbook(), recorder_.Script());
}

TEST_F(Recording, CheckBoxesAreRecordedAsWhatTheyBecome) {
  StartTask(ModePower, "P2");
  const bool continuity = driver_.Checked(ControlOf("Continuity"));
  Check("Continuity");
  Check("EqualN");
  Check("EqualN");
  Type("Pi1", "0.7");
  Press(ControlAccept);
  Press(ControlAccept);
  const std::string script = recorder_.Script();
  EXPECT_THAT(script, HasSubstr(continuity ? "dialog.ContinuityCorrectionCalculation = 0\n"
                                           : "dialog.ContinuityCorrectionCalculation = 1\n"));
  EXPECT_THAT(script, HasSubstr("dialog.EqualSampleSizeCalculation = "));
  ExpectSameResults(host_.TakeWorkbook(), script);
}

TEST_F(Recording, ACalculatorGivesTheSameAnswers) {
  StartTask(ModeDistribution, "F");
  Press("WhatToCompute=2");
  Type("FObserved", "4.1");
  Type("CumP", "0.1");
  Press(ControlAccept);
  const double delta = *driver_.Number(ControlOf("Delta"));
  Press("WhatToCompute=1");
  Check("OneMinusP");
  Press(ControlAccept);
  const double p = *driver_.Number(ControlOf("CumP"));
  EXPECT_EQ(Lines(),
            "\n"
            "startup = app.StartAnalysis()  # PowStartup\n"
            "startup.AnalysisItem = poweranalysis.PowAnalysisItem.scPowProbabilityDistribution\n"
            "startup.AnalysisType = poweranalysis.PowAnalysisType.scPowDistributionNonCentralF\n"
            "startup.OK()\n"
            "\n"
            "dialog = app.Dialog  # PowFDistributionDialog\n"
            "dialog.ComputeDelta = 1\n"
            "dialog.ObservedF = 4.1\n"
            "dialog.PVALUE = 0.1\n"
            "dialog.OK()\n"
            "dialog.ComputePValue = 1\n"
            "dialog.Check1MinusCumulativeP = 1\n"
            "dialog.OK()\n");
  Replay replay;
  replay.Run(recorder_.Script());
  DialogObject& dialog = replay.Object("dialog");
  EXPECT_GT(delta, 0);
  EXPECT_NEAR(p, 0.9, 1e-6);
  EXPECT_EQ(std::get<double>(dialog.Get("Delta")), delta);
  EXPECT_EQ(std::get<double>(dialog.Get("PLEVEL")), p);
}

TEST_F(Recording, EditsOfOneFieldInARowAreOneLine) {
  StartTask(ModePower, "T1");
  for (const char* text : {"0", "0.", "0.2", "0.20"}) {
    Type("Alpha", text);
  }
  Press("H0Type=upper");
  Press("H0Type=lower");
  EXPECT_THAT(Lines(), HasSubstr("PowT1PowParamsDialog\ndialog.Alpha = 0.2\n"
                                 "dialog.OneTailedHigh = 1\n"));
  EXPECT_THAT(Lines(), Not(HasSubstr("OneTailedLow")));
  Type("Alpha", "0.1");
  EXPECT_THAT(Lines(), HasSubstr("dialog.Alpha = 0.2\n"));
  EXPECT_THAT(Lines(), HasSubstr("dialog.Alpha = 0.1\n"));
}

TEST_F(Recording, ValuesAreTheShortestThatReadBack) {
  StartTask(ModePower, "T1");
  Type("Mu0", " 1.0e0 ");
  Type("Mu", "0.10000000000000001");
  Type("SampleSize", "30.9");
  Type("Sigma", "1e30");
  EXPECT_THAT(Lines(), HasSubstr("dialog.Mean1 = 1\ndialog.Mean2 = 0.1\ndialog.SampleSize = 30\n"
                                 "dialog.Sigma = 1e+30\n"));
}

TEST_F(Recording, WhatIsNoNumberIsRecordedAsTyped) {
  StartTask(ModePower, "T1");
  Type("Alpha", "a\"b\\");
  Type("Mu0", "inf");
  EXPECT_THAT(Lines(), HasSubstr("dialog.Alpha = \"a\\\"b\\\\\"\ndialog.Mean1 = \"inf\"\n"));
}

TEST_F(Recording, TheChoiceThatTheStartupCameUpWithIsWrittenDown) {
  Start();
  Block()->Mode = 1;
  Block()->Selection[1] = 2;
  Press(ControlAccept);
  EXPECT_THAT(Lines(), HasSubstr("PowAnalysisItem.scPowSampleSizeCalculation\n"));
  EXPECT_THAT(Lines(), HasSubstr("PowAnalysisType.scPowTwoMeansTTestDependentSamples\n"));
}

TEST_F(Recording, ATaskIsWrittenAfterItsMode) {
  Start();
  Select(ControlTasks, 2);
  Press(ControlAccept);
  EXPECT_THAT(
      Lines(),
      HasSubstr("startup.AnalysisItem = poweranalysis.PowAnalysisItem.scPowPowerCalculation\n"
                "startup.AnalysisType = "
                "poweranalysis.PowAnalysisType.scPowTwoMeansTTestDependentSamples\n"));
}

TEST_F(Recording, AModeChosenLastBringsItsOwnTask) {
  Start();
  Select(ControlTasks, 2);
  Select(ControlModes, 1);
  Press(ControlAccept);
  const std::string lines = Lines();
  EXPECT_THAT(lines, HasSubstr("scPowSampleSizeCalculation\n"
                               "startup.AnalysisType = "
                               "poweranalysis.PowAnalysisType.scPowOneMeanTTest\n"
                               "startup.OK()\n"));
}

TEST_F(Recording, AnAnalysisUnderWayIsWrittenDownFirst) {
  // What was done before is not told to the recorder.
  driver_.StartAnalysis();
  host_.Select(ControlModes, 1);
  host_.Select(ControlTasks, 1);
  host_.Press(ControlAccept);
  host_.Press(ControlOf("NToVary=2"));
  host_.Type(ControlOf("SampleSizeN1"), "37");
  host_.Type(ControlOf("Sigma"), "3.25");
  host_.Press(ControlAccept);
  host_.Type(ControlOf("AlphaEnd"), "0.2");
  Press(ControlAccept);
  Press("n-vs-alpha");
  EXPECT_THAT(Lines(), HasSubstr("dialog.Sigma = 3.25\n"));
  ExpectSameResults(host_.TakeWorkbook(), recorder_.Script());
}

TEST_F(Recording, AParameterDialogUnderWayIsWrittenDownFirst) {
  driver_.StartAnalysis();
  host_.Press(ControlAccept);
  host_.Type(ControlOf("Mu"), "6.5");
  Press("H0Type=upper");
  Press(ControlAccept);
  Press(ControlAccept);
  EXPECT_THAT(Lines(), HasSubstr("dialog.Mean2 = 6.5\n"));
  ExpectSameResults(host_.TakeWorkbook(), recorder_.Script());
}

TEST_F(Recording, AChosenFileIsTheArgumentOfItsPress) {
  TemporaryFolder folder;
  StartTask(ModePower, "T1");
  Press(ControlSaveAs);
  recorder_.FileChosen(folder.File("a.ini"));
  Press(ControlOpen);
  recorder_.FileChosen("C:\\b \"c\".ini");
  Press(ControlSaveAsDefault);
  Press(ControlRestoreDefaults);
  EXPECT_THAT(Lines(), HasSubstr("dialog.SaveSettingsAs(\"" + folder.File("a.ini") + "\")\n"));
  EXPECT_THAT(Lines(), HasSubstr("dialog.PressButton(\"Open\", \"C:\\\\b \\\"c\\\".ini\")\n"));
  EXPECT_THAT(Lines(), HasSubstr("dialog.SaveAsDefault()\n"));
  EXPECT_THAT(Lines(), HasSubstr("dialog.PressButton(\"RestoreDefaults\")\n"));
}

TEST_F(Recording, ACancelledFileChooserLeavesNoLine) {
  StartTask(ModePower, "T1");
  Type("Alpha", "0.1");
  Press(ControlSaveAs);
  recorder_.FileChosen(std::nullopt);
  EXPECT_THAT(Lines(), Not(HasSubstr("SaveSettingsAs")));
  recorder_.FileChosen(std::nullopt);
  EXPECT_THAT(Lines(), HasSubstr("dialog.Alpha = 0.1\n"));
}

TEST_F(Recording, ASecondAnalysisStartsAnew) {
  StartTask(ModePower, "T1");
  StartTask(ModePower, "T3");
  const std::string lines = Lines();
  const std::string start = "startup = app.StartAnalysis()";
  EXPECT_NE(lines.find(start), lines.rfind(start));
}

TEST_F(Recording, OutputOptionsAreTheHostsOwn) {
  StartTask(ModePower, "T1");
  const std::string before = Lines();
  Press(ControlOutputOptions);
  EXPECT_EQ(Lines(), before);
}

TEST_F(Recording, ClearingForgetsAll) {
  StartTask(ModePower, "T1");
  EXPECT_FALSE(recorder_.empty());
  recorder_.Clear();
  EXPECT_TRUE(recorder_.empty());
  EXPECT_EQ(Lines(), "");
}

}  // namespace
}  // namespace poweranalysis
