#include "automation/Interfaces.h"

#include <algorithm>
#include <cctype>
#include <deque>
#include <iterator>
#include <vector>

#include "automation/InterfaceRows.h"
#include "dialogs/Controls.h"
#include "dialogs/DialogFactory.h"

namespace poweranalysis {

namespace {

constexpr Member kBaseMembers[] = {
    {"Name", MemberKind::ReadOnly, MemberType::Text, Binding::Name, 0, "", -1, 0},
    {"Application", MemberKind::ReadOnly, MemberType::Object, Binding::Host, 0, "", -1, 1},
    {"Parent", MemberKind::ReadOnly, MemberType::Object, Binding::Host, 0, "", -1, 2},
    {"OK", MemberKind::Method, MemberType::Int, Binding::Button, ControlAccept, "", -1, 3},
    {"Cancel", MemberKind::Method, MemberType::None, Binding::Button, ControlBack, "", -1, 4},
    {"ResultsSelection", MemberKind::PutOnly, MemberType::Variant, Binding::Stored, 0, "", -1, 5},
    {"ResultsSelectionOption", MemberKind::PutOnly, MemberType::Variant, Binding::Stored, 0, "", -1,
     6},
    {"ResultsVariables", MemberKind::PutOnly, MemberType::Variant, Binding::Stored, 0, "", -1, 7},
    {"ResultsOption", MemberKind::PutOnly, MemberType::Int, Binding::Stored, 0, "", -1, 8},
    {"ResultsCodes", MemberKind::PutOnly, MemberType::Variant, Binding::Stored, 0, "", -1, 9},
    {"ResultsSaveFileName", MemberKind::PutOnly, MemberType::Text, Binding::Stored, 0, "", -1, 10},
    {"ResultsValues", MemberKind::PutOnly, MemberType::Variant, Binding::Stored, 0, "", -1, 11},
    {"ResultsOutputFields", MemberKind::PutOnly, MemberType::Variant, Binding::Stored, 0, "", -1,
     12},
};

// --- Controls.

// The actual value of the binomial calculator is a box without a field.
int EditControlOf(std::string_view field) {
  return field == "ActualValue" ? ControlActualValue : ControlOfField(field);
}

// --- Interfaces.

constexpr std::string_view kPrefix = "Pow";
constexpr const char* kStartupInterface = "PowStartup";

// The class that an interface is named after: "CT1PowParamsDialog" for PowT1PowParamsDialog.
std::string ClassOf(std::string_view interface) {
  return interface == kStartupInterface ? StartupDialog().className
                                        : "C" + std::string(interface.substr(kPrefix.size()));
}

CatalogueDialog FindClass(std::string_view className) {
  for (int mode = 0; mode < ModeCount; ++mode) {
    for (int row = 0; row < static_cast<int>(Tasks(mode).size()); ++row) {
      for (const bool result : {false, true}) {
        const DialogRow* dialog = result ? ResultDialog(mode, row) : ComputeDialog(mode, row);
        if (dialog != nullptr && dialog->className == className) {
          return {dialog, mode, row, result};
        }
      }
    }
  }
  return {nullptr, 0, 0, false};
}

// The calculators that have no family of the same name.
struct CalculatorRecord {
  std::string_view calculator;
  Family family;
};
constexpr CalculatorRecord kCalculatorRecords[] = {{"T", Family::T1},
                                                   {"F", Family::FCalc},
                                                   {"X2", Family::X2Calc},
                                                   {"Binomial", Family::BinomialCalc}};

const FamilyTable* RecordOf(const TaskRow& task) {
  for (const CalculatorRecord& row : kCalculatorRecords) {
    if (row.calculator == task.family) {
      return &TableOf(row.family);
    }
  }
  return FindFamily(task.family);
}

DialogKind KindOf(const CatalogueDialog& entry) {
  switch (entry.mode) {
    case ModeInterval:
      return DialogKind::Interval;
    case ModeDistribution:
      return DialogKind::Calculator;
    default:
      return entry.result ? DialogKind::Results : DialogKind::Parameters;
  }
}

// How help words a task.
std::string FamilyWording(const TaskRow& task) {
  return std::string_view(task.family) == "T1" ? "1-sample t-test" : LoadText(task.name);
}

// "Sample size calculation" for a mode of the list: in a sentence only the first letter is large.
std::string ModeWording(int mode) {
  std::string wording = LoadText(Modes()[static_cast<std::size_t>(mode)].name);
  for (std::size_t i = 1; i < wording.size(); ++i) {
    wording[i] = static_cast<char>(std::tolower(static_cast<unsigned char>(wording[i])));
  }
  return wording;
}

// "Power analysis, 1-sample t-test; results dialog": mode, family and kind of dialog.
std::string HelpTitleOf(const CatalogueDialog& entry) {
  const TaskRow& task = Tasks(entry.mode)[static_cast<std::size_t>(entry.row)];
  const std::string title = FormatResource(
      entry.result ? text::HelpTitleResults : text::HelpTitleSpecifications, {FamilyWording(task)});
  return entry.mode == ModePower ? title : ModeWording(entry.mode) + title.substr(title.find(','));
}

struct Table {
  std::vector<Interface> interfaces;
  std::deque<std::vector<Member>> members;
};

Interface NewInterface(const char* name) {
  Interface made{name, ClassOf(name), DialogKind::Grid, nullptr, nullptr, {}, {}};
  if (made.className == StartupDialog().className) {
    made.kind = DialogKind::Startup;
    made.dialog = &StartupDialog();
    made.helpTitle = LoadText(text::StartupHelpTitle);
    return made;
  }
  const CatalogueDialog entry = FindClass(made.className);
  if (entry.dialog != nullptr) {
    made.kind = KindOf(entry);
    made.dialog = entry.dialog;
    made.record = RecordOf(Tasks(entry.mode)[static_cast<std::size_t>(entry.row)]);
    made.helpTitle = HelpTitleOf(entry);
  }
  return made;
}

// The button of a chart on a results dialog.
int ChartControlOf(const Interface& interface, std::string_view chart) {
  const int mode = FindDialog(interface.dialog->resource).mode;
  return ChartControl(interface.record->family, mode, chart);
}

Member NewMember(const MemberRow& row, int id, const Interface& interface) {
  const auto member = [&](MemberKind kind, Binding binding, int control) {
    return Member{row.name, kind, row.type, binding, control, row.field, row.value, id};
  };
  switch (row.kind) {
    case RowKind::Edit:
      return member(MemberKind::Property, Binding::Edit,
                    row.control != 0 ? row.control : EditControlOf(row.field));
    case RowKind::Flag:
      return member(MemberKind::Property, Binding::Flag, RadioBaseOf(row.field) + row.value);
    case RowKind::Check:
      return member(MemberKind::Property, Binding::Check, EditControlOf(row.field));
    case RowKind::List:
      return member(MemberKind::Property, Binding::List, row.control);
    case RowKind::Graph:
      return member(MemberKind::ReadOnly, Binding::Graph, ChartControlOf(interface, row.chart));
    case RowKind::Summary:
      return member(MemberKind::ReadOnly, Binding::Summary, row.control);
    default:
      return member(MemberKind::Method, Binding::Button, row.control);
  }
}

Table MakeTable() {
  Table table;
  Interface base{"ZlvAnalysisDialog", {}, DialogKind::Base, nullptr, nullptr, {}, kBaseMembers};
  table.interfaces.push_back(base);
  for (const MemberRow& row : InterfaceRows()) {
    if (row.kind == RowKind::Dialog) {
      table.interfaces.push_back(NewInterface(row.name));
      table.members.emplace_back();
    } else {
      std::vector<Member>& members = table.members.back();
      const std::size_t id = std::size(kBaseMembers) + members.size();
      members.push_back(NewMember(row, static_cast<int>(id), table.interfaces.back()));
    }
  }
  for (std::size_t i = 0; i < table.members.size(); ++i) {
    table.interfaces[i + 1].members = table.members[i];
  }
  return table;
}

const Member* FindIn(std::span<const Member> members, std::string_view name) {
  const auto found = std::find_if(members.begin(), members.end(),
                                  [name](const Member& member) { return name == member.name; });
  return found == members.end() ? nullptr : &*found;
}

}  // namespace

std::span<const Interface> Interfaces() {
  static const Table table = MakeTable();
  return table.interfaces;
}

const Interface& BaseInterface() { return Interfaces().front(); }

const Interface* FindInterface(std::string_view name) {
  const std::span<const Interface> all = Interfaces();
  const auto found = std::find_if(all.begin(), all.end(),
                                  [name](const Interface& row) { return name == row.name; });
  return found == all.end() ? nullptr : &*found;
}

const Interface* InterfaceOfClass(std::string_view className) {
  const std::span<const Interface> all = Interfaces().subspan(1);
  const auto found = std::find_if(all.begin(), all.end(), [className](const Interface& row) {
    return className == row.className;
  });
  return found == all.end() ? nullptr : &*found;
}

const Member* Interface::Find(std::string_view member) const {
  const Member* own = FindIn(members, member);
  return own != nullptr ? own : FindIn(kBaseMembers, member);
}

const Member* Interface::FindControl(int control) const {
  // Of several names for one control the last is the plainer one.
  const auto found =
      std::find_if(members.rbegin(), members.rend(),
                   [control](const Member& member) { return member.control == control; });
  return found == members.rend() ? nullptr : &*found;
}

std::string MemberHelp(const Interface& interface, const Member& member) {
  if (interface.record == nullptr) {
    return {};
  }
  const Field* field = interface.record->Find(member.field);
  return field == nullptr || field->meaning == text::None ? std::string()
                                                          : LoadText(field->meaning);
}

}  // namespace poweranalysis
