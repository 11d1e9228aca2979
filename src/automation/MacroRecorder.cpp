#include "automation/MacroRecorder.h"

#include <algorithm>
#include <cmath>

#include "automation/SpecLookup.h"
#include "dialogs/Controls.h"
#include "dialogs/DialogFactory.h"
#include "dialogs/Grids.h"
#include "frame/DefineTask.h"
#include "host/NumberText.h"

namespace poweranalysis {

// --- Named constants.

namespace {

// First constant of each run: the tasks of power and sample size, of intervals, of the calculators,
// and the modes.
constexpr int kTestConstants = 28954;
constexpr int kIntervalConstants = 28972;
constexpr int kCalculatorConstants = 28982;
constexpr int kModeConstants = 28988;

// 0 for a mode that does not exist.
int FirstTaskConstant(int mode) {
  switch (mode) {
    case ModePower:
    case ModeSampleSize:
      return kTestConstants;
    case ModeInterval:
      return kIntervalConstants;
    case ModeDistribution:
      return kCalculatorConstants;
    default:
      return 0;
  }
}

}  // namespace

void PostRecordControlValue(int control, COleAConstant* value) {
  int first = 0;
  if (control == ControlTasks && Module().settings != nullptr) {
    first = FirstTaskConstant(Module().settings->Mode);
  } else if (control == ControlModes) {
    first = kModeConstants;
  }
  if (first == 0) {
    return;
  }
  if (const std::optional<int> row = value->getintvalue()) {
    *value = COleAConstant(first + *row, COleAConstant::Named);
  }
}

const char* ConstantName(int constant) {
  const auto in = [constant](int first, std::size_t count) {
    return constant >= first && constant < first + static_cast<int>(count);
  };
  for (const int mode : {ModePower, ModeInterval, ModeDistribution}) {
    const std::span<const TaskRow> tasks = Tasks(mode);
    const int first = FirstTaskConstant(mode);
    if (in(first, tasks.size())) {
      return tasks[static_cast<std::size_t>(constant - first)].enumerator;
    }
  }
  return in(kModeConstants, Modes().size())
             ? Modes()[static_cast<std::size_t>(constant - kModeConstants)].enumerator
             : nullptr;
}

// --- Texts of the script.

namespace {

constexpr const char* kStart =
    "import poweranalysis\n"
    "\n"
    "app = poweranalysis.Application()\n";

std::string PythonText(std::string_view text) {
  constexpr char kDigits[] = "0123456789abcdef";
  std::string quoted = "\"";
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (c == '"' || c == '\\') {
      quoted += '\\';
      quoted += c;
    } else if (byte < 0x20 || byte == 0x7f) {
      quoted += "\\x";
      quoted += kDigits[byte / 16];
      quoted += kDigits[byte % 16];
    } else {
      quoted += c;
    }
  }
  return quoted + "\"";
}

// The shortest text that reads back as the number, which Python reads as well.
std::string PythonNumber(double value) { return FormatShortest(value); }

std::string PythonValue(const ControlSpec& control,
                        std::string_view text,
                        std::optional<double> number) {
  if (!number || !std::isfinite(*number)) {
    return PythonText(text);
  }
  return PythonNumber(control.kind == ControlKind::IntEdit ? std::trunc(*number) : *number);
}

std::string PythonConstant(int list, int row) {
  COleAConstant value(row, COleAConstant::Int);
  PostRecordControlValue(list, &value);
  const char* name = value.constant() ? ConstantName(*value.constant()) : nullptr;
  if (name == nullptr) {
    return std::to_string(row);
  }
  const char* enumeration = list == ControlModes ? "PowAnalysisItem" : "PowAnalysisType";
  return std::string("poweranalysis.") + enumeration + "." + name;
}

// A grid has a name of its own: the page below it goes on under the one that it has.
const char* VariableOf(const Interface& interface) {
  const bool ofGrid = std::any_of(Grids().begin(), Grids().end(), [&interface](const GridRow& row) {
    return InterfaceOfClass(row.className) == &interface;
  });
  if (ofGrid || &interface == &BaseInterface()) {
    return "grid";
  }
  switch (interface.kind) {
    case DialogKind::Startup:
      return "startup";
    case DialogKind::Results:
      return "results";
    default:
      return "dialog";
  }
}

const Interface& InterfaceOf(const DialogSpec& spec) {
  const Interface* interface = InterfaceOfClass(spec.className);
  return interface == nullptr ? BaseInterface() : *interface;
}

}  // namespace

// --- Lines.

void MacroRecorder::Do(const std::string& text, std::size_t arguments) {
  lines_.push_back({text, dialog_, {}, arguments});
}

// Edits of one field in a row are one edit.
void MacroRecorder::SetValue(const std::string& subject,
                             const std::string& left,
                             const std::string& value) {
  if (!lines_.empty() && lines_.back().dialog == dialog_ && lines_.back().subject == subject) {
    lines_.pop_back();
  }
  lines_.push_back({left + value, dialog_, subject, 0});
}

void MacroRecorder::SetField(const ControlSpec& control, const std::string& value) {
  const Member* member = interface_->FindControl(control.number);
  if (member != nullptr) {
    SetValue(control.name, variable_ + "." + member->name + " = ", value);
    return;
  }
  std::string call = variable_ + ".SetField(" + PythonText(control.name) + ", " + value;
  SetValue(control.name, call, ")");
}

void MacroRecorder::PressField(const ControlSpec& control, bool checked) {
  const bool radio = control.kind == ControlKind::Radio;
  if (radio && interface_->FindControl(control.number) == nullptr) {
    SetField(control, std::to_string(control.value));
  } else {
    SetField(control, radio || checked ? "1" : "0");
  }
}

void MacroRecorder::OpenVariable(const Interface& interface, bool started) {
  interface_ = &interface;
  variable_ = VariableOf(interface);
  Do("");
  Do(variable_ + (started ? " = app.StartAnalysis()" : " = app.Dialog") + "  # " + interface.name);
}

// --- Dialogs.

void MacroRecorder::AnalysisStarted() { started_ = true; }

void MacroRecorder::Enter(std::uint64_t dialog, const DialogSpec& spec) {
  if (dialog == dialog_) {
    return;
  }
  // A dialog that opened earlier is there again because the one above it has closed.
  const auto covered = dialog < dialog_ ? known_.find(dialog) : known_.end();
  dialog_ = dialog;
  if (covered != known_.end()) {
    interface_ = covered->second.interface;
    variable_ = covered->second.variable;
    return;
  }
  const bool first = lines_.empty();
  const Interface& interface = InterfaceOf(spec);
  if (interface.kind == DialogKind::Startup) {
    OpenVariable(interface, started_ || first);
    started_ = false;
    modeWritten_ = false;
    taskWritten_ = false;
  } else if (first) {
    CatchUp(interface, spec);
  } else {
    OpenVariable(interface, false);
  }
  known_[dialog] = {interface_, variable_};
}

void MacroRecorder::CatchUp(const Interface& interface, const DialogSpec& spec) {
  OpenVariable(*InterfaceOfClass(StartupDialog().className), true);
  CompleteStartup();
  Do(variable_ + ".OK()");
  const auto grid = std::find_if(Grids().begin(), Grids().end(), [&spec](const GridRow& row) {
    return row.resource == spec.resource;
  });
  if (grid != Grids().end()) {
    CatchUpGrid(*grid, spec);
    return;
  }
  const CatalogueDialog entry = FindDialog(spec.resource);
  if (entry.dialog != nullptr && entry.result) {
    const DialogRow* parameters = ComputeDialog(entry.mode, entry.row);
    auto& analysis = static_cast<CPowerAnalysis&>(*Module().analysis);
    const auto dialog = CreateTaskDialog(analysis, {parameters, entry.mode, entry.row, false});
    OpenVariable(*InterfaceOfClass(parameters->className), false);
    if (dialog != nullptr) {
      WriteFields(dialog->Spec(), Instance::Committed);
    }
    Do(variable_ + ".OK()");
  }
  OpenVariable(interface, false);
  WriteFields(spec, Instance::Working);
}

// The page that the grid opens from, the grid, and what stands in its cells.
void MacroRecorder::CatchUpGrid(const GridRow& grid, const DialogSpec& spec) {
  const int mode = Block()->Mode;
  const int task = Block()->Selection[static_cast<std::size_t>(mode)];
  const DialogRow* page = ComputeDialog(mode, task);
  auto& analysis = static_cast<CPowerAnalysis&>(*Module().analysis);
  const auto dialog = CreateTaskDialog(analysis, {page, mode, task, false});
  OpenVariable(*InterfaceOfClass(page->className), false);
  if (dialog != nullptr) {
    const DialogSpec shown = dialog->Spec();
    WriteFields(shown, Instance::Working);
    WriteCounts(grid, shown);
    if (const ControlSpec* button = FindControlSpec(shown, ControlGrid)) {
      CallButton(*button);
    }
  }
  OpenVariable(InterfaceOf(spec), false);
  const GridSize size = grid.SizeOf(grid.Scratch());
  for (const ControlSpec* control : FieldControls(spec)) {
    if (control->row >= 0 && control->row < size.rows && control->column < size.columns) {
      SetField(*control, PythonNumber(grid.cell(*Block(), control->row, control->column)));
    } else if (control->number == ControlOfField("Sigma")) {
      SetField(*control, PythonNumber(grid.Scratch().Get(*TableOf(grid.family).Find("Sigma"))));
    }
  }
}

// Cells that were pasted or opened may have another size than the page: a script cannot paste.
void MacroRecorder::WriteCounts(const GridRow& grid, const DialogSpec& page) {
  for (const char* name : {grid.rowsField, grid.columnsField}) {
    const ControlSpec* control =
        name == nullptr ? nullptr : FindControlSpec(page, ControlOfField(name));
    if (control != nullptr) {
      SetField(*control, PythonNumber(grid.Scratch().Get(*TableOf(grid.family).Find(name))));
    }
  }
}

// Every field of a dialog with the value that the block holds.
void MacroRecorder::WriteFields(const DialogSpec& spec, Instance instance) {
  if (interface_->record == nullptr || Block() == nullptr) {
    return;
  }
  const RecordView record = ViewOf(*Block(), interface_->record->family, instance);
  for (const ControlSpec* control : FieldControls(spec)) {
    const Field* field = record.table().Find(control->name);
    if (field == nullptr) {
      continue;
    }
    const double value = record.Get(*field);
    if (control->kind == ControlKind::CheckBox) {
      PressField(*control, value != 0);
    } else if (control->kind != ControlKind::Radio) {
      SetField(*control, PythonNumber(value));
    } else if (value == control->value) {
      PressField(*control, true);
    }
  }
}

void MacroRecorder::ChooseRow(int list, int row) {
  const Member* member = interface_->FindControl(list);
  if (member == nullptr) {
    return;
  }
  SetValue(member->name, variable_ + "." + member->name + " = ", PythonConstant(list, row));
  if (list == ControlModes) {
    // Another mode shows the row that was chosen in it last.
    modeWritten_ = true;
    taskWritten_ = false;
  } else {
    taskWritten_ = true;
  }
}

// A choice that the startup came up with is written down as if it had been made.
void MacroRecorder::CompleteStartup() {
  const PowerSettingsHead* block = Module().settings;
  if (block == nullptr || block->Mode < 0 || block->Mode >= ModeCount) {
    return;
  }
  const bool taskWritten = taskWritten_;
  if (!modeWritten_ && !taskWritten) {
    ChooseRow(ControlModes, block->Mode);
  }
  if (!taskWritten) {
    ChooseRow(ControlTasks, block->Selection[static_cast<std::size_t>(block->Mode)]);
  }
}

void MacroRecorder::CallButton(const ControlSpec& control) {
  const Member* member = interface_->FindControl(control.number);
  const std::string dot = variable_ + ".";
  if (member != nullptr && member->kind == MemberKind::ReadOnly) {
    Do(dot + member->name);
  } else if (control.number == ControlAccept || control.number == ControlAcceptToo) {
    Do(dot + "OK()");
  } else if (control.number == ControlBack || control.number == ControlBackToo) {
    Do(dot + "Cancel()");
  } else if (member != nullptr) {
    const std::string call = dot + member->name + "(";
    Do(call + ")", call.size());
  } else {
    const std::string call = dot + "PressButton(" + PythonText(control.name);
    Do(call + ")", call.size());
  }
}

// --- Actions.

void MacroRecorder::Typed(std::uint64_t dialog,
                          const DialogSpec& spec,
                          int control,
                          std::string_view text,
                          std::optional<double> number) {
  const ControlSpec* edit = FindControlSpec(spec, control);
  if (edit != nullptr) {
    Enter(dialog, spec);
    SetField(*edit, PythonValue(*edit, text, number));
  }
}

void MacroRecorder::Pressed(std::uint64_t dialog,
                            const DialogSpec& spec,
                            int control,
                            bool checked) {
  const ControlSpec* button = FindControlSpec(spec, control);
  // The output options belong to the host and to no dialog.
  if (button == nullptr || control == ControlOutputOptions) {
    return;
  }
  Enter(dialog, spec);
  if (button->kind == ControlKind::Radio || button->kind == ControlKind::CheckBox) {
    PressField(*button, checked);
    return;
  }
  if (interface_->kind == DialogKind::Startup && control == ControlOk) {
    CompleteStartup();
  }
  CallButton(*button);
}

void MacroRecorder::Selected(std::uint64_t dialog, const DialogSpec& spec, int list, int row) {
  Enter(dialog, spec);
  // A task belongs to the mode in which it was chosen.
  if (list == ControlTasks && !modeWritten_ && Module().settings != nullptr) {
    ChooseRow(ControlModes, Module().settings->Mode);
  }
  ChooseRow(list, row);
}

void MacroRecorder::FileChosen(const std::optional<std::string>& path) {
  if (lines_.empty() || lines_.back().arguments == 0) {
    return;
  }
  Line& line = lines_.back();
  if (!path) {
    lines_.pop_back();
    return;
  }
  const std::string separator = line.text[line.arguments - 1] == '(' ? "" : ", ";
  line.text.insert(line.arguments, separator + PythonText(*path));
  line.arguments = 0;
}

void MacroRecorder::Clear() { *this = MacroRecorder(); }

std::string MacroRecorder::Script() const {
  std::string script = kStart;
  for (const Line& line : lines_) {
    script += line.text + "\n";
  }
  return script;
}

}  // namespace poweranalysis
