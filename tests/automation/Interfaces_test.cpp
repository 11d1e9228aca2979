#include "automation/Interfaces.h"

#include <gmock/gmock.h>
#include <strings.h>

#include <algorithm>
#include <cstring>
#include <fstream>
#include <map>
#include <set>
#include <sstream>

#include "AutomationRun.h"
#include "automation/SpecLookup.h"
#include "dialogs/DialogFactory.h"
#include "settings/Choices.h"
#include "support/TestData.h"

namespace poweranalysis {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

std::vector<std::string> MemberNames(std::span<const Member> members) {
  std::vector<std::string> names;
  for (const Member& member : members) {
    names.emplace_back(member.name);
  }
  return names;
}

int CountMembers(MemberKind kind, MemberType type) {
  int count = 0;
  for (const Interface& interface : Interfaces().subspan(1)) {
    for (const Member& member : interface.members) {
      count += member.kind == kind && member.type == type ? 1 : 0;
    }
  }
  return count;
}

const Member& MemberOf(const char* interface, const char* member) {
  const Interface* found = FindInterface(interface);
  EXPECT_NE(found, nullptr) << interface;
  const Member* row = found->Find(member);
  EXPECT_NE(row, nullptr) << interface << "." << member;
  return *row;
}

TEST(Interfaces, AreNinetyOneWithAllTheirMembers) {
  EXPECT_EQ(Interfaces().size(), 91u);
  EXPECT_EQ(CountMembers(MemberKind::Property, MemberType::Real), 390);
  EXPECT_EQ(CountMembers(MemberKind::Property, MemberType::Int), 304);
  EXPECT_EQ(CountMembers(MemberKind::ReadOnly, MemberType::Object), 166);
  EXPECT_EQ(CountMembers(MemberKind::Method, MemberType::None), 92);
  EXPECT_EQ(CountMembers(MemberKind::Property, MemberType::AnalysisType), 1);
  EXPECT_EQ(CountMembers(MemberKind::Property, MemberType::AnalysisItem), 1);
}

TEST(Interfaces, AGraphPressesTheButtonOfItsChart) {
  const std::map<std::string, std::string> members = {
      {"PowT2_P_ResultsDialog.GraphOfPowerVsN2", "power-vs-n2"},
      {"PowP1_P_ResultsDialog.GraphOfPowerVsProportion", "power-vs-pi"},
      {"PowP1_P_ResultsDialog.GraphOfPowerVsAlpha", "power-vs-alpha"},
      {"PowV2_S_ResultsDialog.GraphOfSampleSizeVsRatio", "df-vs-ratio"},
      {"PowSEM_S_ResultsDialog.GraphOfSampleSizeVsR", "n-vs-rmsea"}};
  int graphs = 0;
  for (const Interface& interface : Interfaces().subspan(1)) {
    std::set<int> controls;
    for (const Member& member : interface.members) {
      if (member.binding != Binding::Graph) {
        continue;
      }
      ++graphs;
      EXPECT_NE(member.control, 0) << interface.name << '.' << member.name;
      EXPECT_TRUE(controls.insert(member.control).second) << interface.name << '.' << member.name;
      const auto known = members.find(std::string(interface.name) + "." + member.name);
      if (known != members.end()) {
        const int mode = FindDialog(interface.dialog->resource).mode;
        EXPECT_EQ(member.control, ChartControl(interface.record->family, mode, known->second))
            << known->first;
      }
    }
  }
  EXPECT_EQ(graphs, 120);
}

// The unknown of a calculator is chosen among its boxes, not among choices of a field.
TEST(Interfaces, AFlagStandsForAChoiceOfItsFamily) {
  int flags = 0;
  for (const Interface& interface : Interfaces().subspan(1)) {
    for (const Member& member : interface.members) {
      if (member.binding != Binding::Flag || std::string_view(member.field) == "WhatToCompute") {
        continue;
      }
      ++flags;
      const auto choices = ChoicesOf(interface.record->family, member.field);
      EXPECT_NE(FindChoice(choices, member.value), nullptr) << interface.name << '.' << member.name;
    }
  }
  EXPECT_GT(flags, 100);
}

TEST(Interfaces, HaveNamesThatDiffer) {
  std::set<std::string> names;
  for (const Interface& interface : Interfaces()) {
    EXPECT_TRUE(names.insert(interface.name).second) << interface.name;
    std::set<std::string> members;
    for (const Member& member : interface.members) {
      EXPECT_TRUE(members.insert(member.name).second) << interface.name << "." << member.name;
    }
  }
}

TEST(Interfaces, TheBaseHasItsMembersInDispatchOrder) {
  EXPECT_STREQ(BaseInterface().name, "ZlvAnalysisDialog");
  EXPECT_THAT(
      MemberNames(BaseInterface().members),
      ElementsAre("Name", "Application", "Parent", "OK", "Cancel", "ResultsSelection",
                  "ResultsSelectionOption", "ResultsVariables", "ResultsOption", "ResultsCodes",
                  "ResultsSaveFileName", "ResultsValues", "ResultsOutputFields"));
  for (std::size_t i = 0; i < BaseInterface().members.size(); ++i) {
    EXPECT_EQ(BaseInterface().members[i].id, static_cast<int>(i));
  }
}

TEST(Interfaces, AreNamedAfterTheirDialogClass) {
  for (const Interface& interface : Interfaces().subspan(1)) {
    const std::string name = interface.name;
    EXPECT_EQ(name.substr(0, 3), "Pow");
    if (name == "PowStartup") {
      EXPECT_EQ(interface.className, "CDefineTask");
    } else {
      EXPECT_EQ(interface.className, "C" + name.substr(3));
    }
  }
}

TEST(Interfaces, KeepTheShortenedNameOfTheFirstDialog) {
  EXPECT_EQ(FindInterface("PowT1PowParamsDialog")->className, ComputeDialog(0, 0)->className);
  EXPECT_STREQ(ComputeDialog(0, 1)->className, "CT2PowParametersDialog");
  EXPECT_EQ(FindInterface("PowT1PowParametersDialog"), nullptr);
}

TEST(Interfaces, EveryDialogOfTheCatalogueHasOne) {
  int dialogs = 0;
  for (int mode = 0; mode < ModeCount; ++mode) {
    for (int row = 0; row < static_cast<int>(Tasks(mode).size()); ++row) {
      for (const DialogRow* dialog : {ComputeDialog(mode, row), ResultDialog(mode, row)}) {
        if (dialog != nullptr) {
          ++dialogs;
          const Interface* interface = InterfaceOfClass(dialog->className);
          ASSERT_NE(interface, nullptr) << dialog->className;
          EXPECT_EQ(interface->dialog, dialog);
          EXPECT_NE(interface->record, nullptr);
        }
      }
    }
  }
  // With the base, the startup and the one-way grid.
  EXPECT_EQ(dialogs + 3, 91);
}

TEST(Interfaces, TheOtherGridsHaveNone) {
  EXPECT_EQ(InterfaceOfClass("CTwowayAnovaGrid"), nullptr);
  EXPECT_EQ(InterfaceOfClass("CPC_Grid_Dialog"), nullptr);
  EXPECT_THAT(FindInterface("PowOnewayAnovaGrid")->members, IsEmpty());
}

TEST(Interfaces, OnlyParameterAndIntervalDialogsSaveSettings) {
  int saving = 0;
  for (const Interface& interface : Interfaces()) {
    const bool saves = interface.Find("SaveSettingsAs") != nullptr;
    EXPECT_EQ(saves, interface.Find("SaveAsDefault") != nullptr);
    EXPECT_EQ(saves,
              interface.kind == DialogKind::Parameters || interface.kind == DialogKind::Interval)
        << interface.name;
    saving += saves ? 1 : 0;
  }
  EXPECT_EQ(saving, 46);
}

const char* TypeName(const Member& member) {
  switch (member.type) {
    case MemberType::Real:
      return "double";
    case MemberType::Int:
      return "int";
    case MemberType::Object:
      return "object";
    default:
      return "method";
  }
}

TEST(Interfaces, EveryMemberStandsForItsControl) {
  std::ifstream file(TestDataDir() + "/Members.tsv");
  std::string line;
  std::getline(file, line);
  std::size_t rows = 0;
  while (std::getline(file, line)) {
    ++rows;
    line += "\t";
    std::vector<std::string> cells;
    std::istringstream cellsIn(line);
    for (std::string cell; std::getline(cellsIn, cell, '\t');) {
      cells.push_back(cell);
    }
    ASSERT_EQ(cells.size(), 6u) << line;
    const Member& member = MemberOf(cells[0].c_str(), cells[1].c_str());
    EXPECT_EQ(TypeName(member), cells[2]) << line;
    EXPECT_EQ(std::to_string(member.control), cells[3]) << line;
    EXPECT_EQ(member.field, cells[4]) << line;
    EXPECT_EQ(member.value < 0 ? "" : std::to_string(member.value), cells[5]) << line;
  }
  EXPECT_EQ(rows, 952u);
}

TEST(Interfaces, EveryFieldIsAFieldOfTheRecord) {
  for (const Interface& interface : Interfaces().subspan(1)) {
    for (const Member& member : interface.members) {
      // The t calculator keeps its unknown in three flags.
      const bool unknownOfT = interface.className == "CTDistributionDialog" &&
                              std::string(member.field) == "WhatToCompute";
      if (*member.field != '\0' && !unknownOfT) {
        EXPECT_NE(interface.record->Find(member.field), nullptr)
            << interface.name << "." << member.name << " " << member.field;
      }
    }
  }
}

TEST(Interfaces, NoControlShowsTwoFieldsOfOneDialog) {
  for (const Interface& interface : Interfaces().subspan(1)) {
    std::map<int, std::pair<std::string, int>> shown;
    for (const Member& member : interface.members) {
      EXPECT_NE(member.control, 0) << interface.name << "." << member.name;
      const std::pair<std::string, int> meaning = {member.field, member.value};
      const auto [at, isNew] = shown.insert({member.control, meaning});
      EXPECT_TRUE(isNew || at->second == meaning) << interface.name << "." << member.name;
    }
  }
}

TEST(Interfaces, IrregularNamesStay) {
  for (const auto& [interface, member] : std::vector<std::pair<const char*, const char*>>{
           {"PowRIntParametersDialog", "ExactAlgorithmn"},
           {"PowPCIntParametersDialog", "SumofSquaresWeights"},
           {"PowPCPowParametersDialog", "SumOfSquareWeights"},
           {"PowSEMIntParametersDialog", "Chisquare"},
           {"PowTDistributionDialog", "DegreeOfFreedom"},
           {"PowT1_P_ResultsDialog", "StartStandardEffects"},
           {"PowPC_P_ResultsDialog", "StartOfStandardEffects"},
           {"PowP2_P_ResultsDialog", "StartProportion"},
           {"PowP1_P_ResultsDialog", "StartOfProportion"},
           {"PowR2DistributionDialog", "Compute1MinusCumulativeP"},
           {"PowRDistributionDialog", "Check1MinusCumulativeP"}}) {
    EXPECT_NE(FindInterface(interface)->Find(member), nullptr) << interface << "." << member;
  }
  EXPECT_EQ(FindInterface("PowRIntParametersDialog")->Find("ExactAlgorithm"), nullptr);
}

TEST(Interfaces, IrregularTypesStay) {
  for (const auto& [interface, member] : std::vector<std::pair<const char*, const char*>>{
           {"PowT2IntParametersDialog", "SampleSize1"},
           {"PowT2IntParametersDialog", "SampleSize2"},
           {"PowTDistributionDialog", "DegreeOfFreedom"},
           {"PowP1_P_ResultsDialog", "ExactAlgorithm"},
           {"PowP1_S_ResultsDialog", "ApproximateAlgorithm"},
           {"PowSA2PowParametersDialog", "ActualPeriod"},
           {"PowSA3SSParametersDialog", "AccrualPeriod"},
           {"PowSA3PowParametersDialog", "MaximumFollowupPeriod"}}) {
    EXPECT_EQ(MemberOf(interface, member).type, MemberType::Real) << interface << "." << member;
  }
  EXPECT_EQ(MemberOf("PowX2DistributionDialog", "DegreeOfFreedom").type, MemberType::Int);
}

TEST(Interfaces, OneMeanCallsItsMeansByNumber) {
  EXPECT_EQ(MemberOf("PowT1PowParamsDialog", "Mean1").control, 108);
  EXPECT_STREQ(MemberOf("PowT1PowParamsDialog", "Mean1").field, "Mu0");
  EXPECT_EQ(MemberOf("PowT1PowParamsDialog", "Mean2").control, 112);
  EXPECT_STREQ(MemberOf("PowT1PowParamsDialog", "Mean2").field, "Mu");
}

TEST(Interfaces, TheStartupChoosesTaskAndMode) {
  EXPECT_EQ(MemberOf("PowStartup", "AnalysisType").control, 102);
  EXPECT_EQ(MemberOf("PowStartup", "AnalysisType").type, MemberType::AnalysisType);
  EXPECT_EQ(MemberOf("PowStartup", "AnalysisItem").control, 101);
  EXPECT_EQ(MemberOf("PowStartup", "AnalysisItem").type, MemberType::AnalysisItem);
}

TEST(Interfaces, AControlWithTwoNamesIsCalledByThePlainerOne) {
  const Interface& survival = *FindInterface("PowSA2PowParametersDialog");
  EXPECT_EQ(survival.Find("ActualPeriod")->control, survival.Find("AccrualPeriod")->control);
  EXPECT_STREQ(survival.FindControl(21072)->name, "AccrualPeriod");
  EXPECT_EQ(survival.FindControl(4711), nullptr);
}

TEST(Interfaces, HelpTitlesNameModeFamilyAndKindOfDialog) {
  EXPECT_EQ(FindInterface("PowStartup")->helpTitle, "Basic Statistics startup dialog");
  EXPECT_EQ(FindInterface("PowT1_P_ResultsDialog")->helpTitle,
            "Power analysis, 1-sample t-test; results dialog");
  EXPECT_EQ(FindInterface("PowT1PowParamsDialog")->helpTitle,
            "Power analysis, 1-sample t-test; specifications dialog");
  EXPECT_EQ(FindInterface("PowT2_S_ResultsDialog")->helpTitle,
            "Sample size calculation, Two Means, t-Test, Ind. Samples; results dialog");
  std::set<std::string> titles;
  for (const Interface& interface : Interfaces()) {
    if (!interface.helpTitle.empty()) {
      EXPECT_TRUE(titles.insert(interface.helpTitle).second) << interface.helpTitle;
    }
  }
  EXPECT_EQ(titles.size(), 89u);
}

TEST(Interfaces, MembersAreExplainedByTheirField) {
  const Interface& interface = *FindInterface("PowT1PowParamsDialog");
  EXPECT_EQ(MemberHelp(interface, *interface.Find("Alpha")), LoadText(text::MeaningAlpha));
  EXPECT_EQ(MemberHelp(interface, *interface.Find("OK")), "");
}

// --- The table against the dialogs.

ControlKind KindOf(const Member& member) {
  switch (member.binding) {
    case Binding::Flag:
      return ControlKind::Radio;
    case Binding::Check:
      return ControlKind::CheckBox;
    case Binding::List:
      return ControlKind::List;
    default:
      return ControlKind::Button;
  }
}

class InterfacesOfDialogs : public AutomationRun {
 protected:
  void ExpectMembersOnTheOpenDialog() {
    const Interface& interface = application_.Dialog()->interface();
    const DialogSpec spec = driver_.Spec();
    for (const Member& member : interface.members) {
      const std::string name = std::string(interface.name) + "." + member.name;
      const ControlSpec* control = FindControlSpec(spec, member.control);
      ASSERT_NE(control, nullptr) << name;
      if (member.binding == Binding::Edit) {
        const Field& field = *interface.record->Find(member.field);
        EXPECT_EQ(control->kind,
                  field.type == FieldType::Real ? ControlKind::RealEdit : ControlKind::IntEdit)
            << name;
      } else {
        EXPECT_EQ(control->kind, KindOf(member)) << name;
      }
      if (*member.field != '\0') {
        EXPECT_EQ(control->name, member.field) << name;
      }
      if (member.binding == Binding::Flag) {
        EXPECT_EQ(control->value, member.value) << name;
      }
    }
  }
};

TEST_F(InterfacesOfDialogs, EveryMemberOfEveryFamilyLandsOnItsControl) {
  for (const int mode : {ModePower, ModeSampleSize}) {
    for (const TaskRow& task : Tasks(mode)) {
      const char* family = task.family;
      const auto parameters = Parameters(mode, family);
      EXPECT_EQ(parameters->interface().kind, DialogKind::Parameters);
      ExpectMembersOnTheOpenDialog();
      ASSERT_EQ(parameters->OK(), 1);
      EXPECT_EQ(application_.Dialog()->interface().kind, DialogKind::Results);
      ExpectMembersOnTheOpenDialog();
    }
  }
}

TEST_F(InterfacesOfDialogs, EveryMemberOfTheCalculatorsLandsOnItsControl) {
  for (const TaskRow& task : Tasks(ModeDistribution)) {
    EXPECT_EQ(Parameters(ModeDistribution, task.family)->interface().kind, DialogKind::Calculator);
    ExpectMembersOnTheOpenDialog();
  }
}

TEST_F(InterfacesOfDialogs, EveryMemberOfTheStartupLandsOnItsControl) {
  application_.StartAnalysis();
  ExpectMembersOnTheOpenDialog();
}

// The caption of a chart button and the name of its property say the same, "Power vs. N1" and
// GraphOfPowerVsN1, or the same in other words.
TEST_F(InterfacesOfDialogs, EveryChartPropertyPressesTheButtonOfItsName) {
  const std::multimap<std::string, std::string> kOtherWords = {
      {"SampleSize", "N"},   {"SampleSize", "Df"}, {"SampleSize1", "N1"},    {"SampleSize2", "N2"},
      {"Rho", "P\u00b2"},    {"Proportion", "Pi"}, {"Proportion", "Pi1"},    {"Proportion", "Pi2"},
      {"Lambda", "Lambda2"}, {"R", "RMSEA"},       {"StandardEffects", "Es"}};
  const auto same = [&kOtherWords](const std::string& word, const std::string& caption) {
    const auto [first, last] = kOtherWords.equal_range(word);
    return strcasecmp(word.c_str(), caption.c_str()) == 0 ||
           std::any_of(first, last, [&](const auto& other) { return other.second == caption; });
  };
  for (const int mode : {ModePower, ModeSampleSize}) {
    for (const TaskRow& task : Tasks(mode)) {
      const auto results = Results(mode, task.family);
      const DialogSpec spec = driver_.Spec();
      for (const Member& member : results->interface().members) {
        if (member.binding != Binding::Graph) {
          continue;
        }
        std::string caption = FindControlSpec(spec, member.control)->caption;
        caption.erase(std::remove(caption.begin(), caption.end(), '&'), caption.end());
        const std::size_t vs = caption.find(" vs. ");
        ASSERT_NE(vs, std::string::npos) << caption;
        const std::string name = std::string(member.name).substr(std::strlen("GraphOf"));
        const std::size_t by = name.find("Vs");
        EXPECT_TRUE(same(name.substr(0, by), caption.substr(0, vs)) &&
                    same(name.substr(by + 2), caption.substr(vs + 5)))
            << results->interface().name << " " << name << " presses " << caption;
      }
    }
  }
}

}  // namespace
}  // namespace poweranalysis
