#include "automation/Session.h"

#include <algorithm>
#include <cmath>

#include "automation/Errors.h"
#include "dialogs/Controls.h"
#include "frame/DefineTask.h"
#include "host/NumberText.h"

namespace poweranalysis {

namespace {

// What a user would type for an entry.
std::string TypedText(const ControlSpec& control, const Entry& entry) {
  if (const auto* text = std::get_if<std::string>(&entry)) {
    return *text;
  }
  if (const auto* whole = std::get_if<std::int64_t>(&entry)) {
    return std::to_string(*whole);
  }
  const double real = std::get<double>(entry);
  // Written out whole: a control for whole numbers would read no more of it.
  return FormatShortest(control.kind == ControlKind::IntEdit ? std::trunc(real) : real);
}

const ControlSpec& FindNamed(const std::vector<const ControlSpec*>& controls,
                             const std::string& what,
                             std::string_view name) {
  const auto found = std::find_if(controls.begin(), controls.end(),
                                  [name](const ControlSpec* row) { return row->name == name; });
  if (found == controls.end()) {
    ThrowUnknown(what, name, NamesOf(controls));
  }
  return **found;
}

}  // namespace

double NumberOf(const Entry& entry, std::string_view what) {
  if (const auto* whole = std::get_if<std::int64_t>(&entry)) {
    return static_cast<double>(*whole);
  }
  if (const auto* real = std::get_if<double>(&entry)) {
    return *real;
  }
  throw AutomationError(Quoted(what) + " takes a number");
}

bool Session::OpenTask(int mode, int row) {
  if (!driver_.StartAnalysis()) {
    return false;
  }
  driver_.Select(ControlModes, mode);
  driver_.Select(ControlTasks, row);
  Press(ControlAccept);
  return driver_.OpenDialog() != 0;
}

const DialogSpec& Session::Spec() {
  const std::uint64_t open = driver_.OpenDialog();
  if (open != dialog_) {
    spec_ = driver_.Spec();
    dialog_ = open;
  }
  return spec_;
}

std::vector<const ControlSpec*> Session::ControlsOf(std::string_view field) {
  std::vector<const ControlSpec*> controls = FieldControls(Spec());
  controls.erase(std::remove_if(controls.begin(), controls.end(),
                                [field](const ControlSpec* row) { return row->name != field; }),
                 controls.end());
  return controls;
}

std::vector<const ControlSpec*> Session::FindField(std::string_view field) {
  std::vector<const ControlSpec*> controls = ControlsOf(field);
  if (controls.empty()) {
    ThrowUnknown("The dialog shows no field", field, NamesOf(FieldControls(Spec())));
  }
  return controls;
}

const ControlSpec& Session::FindButton(std::string_view name) {
  return FindNamed(ButtonControls(Spec()), "The dialog has no button", name);
}

const ControlSpec& Session::FindChart(std::string_view name) {
  return FindNamed(ChartControls(Spec()), "The dialog has no chart", name);
}

void Session::Put(const ControlSpec& control, const Entry& entry) {
  switch (control.kind) {
    case ControlKind::Radio:
      // 0 does nothing: it does not say which other button to choose.
      if (NumberOf(entry, control.name) != 0) {
        driver_.Press(control.number);
      }
      return;
    case ControlKind::CheckBox:
      if ((NumberOf(entry, control.name) != 0) != driver_.Checked(control.number)) {
        driver_.Press(control.number);
      }
      return;
    default:
      driver_.Type(control.number, TypedText(control, entry));
  }
}

Session::Outcome Session::PutValue(const std::vector<const ControlSpec*>& controls, double value) {
  const ControlSpec& first = *controls.front();
  if (first.kind == ControlKind::Radio) {
    const auto button =
        std::find_if(controls.begin(), controls.end(),
                     [value](const ControlSpec* row) { return row->value == value; });
    if (button == controls.end()) {
      return Outcome::NoButton;
    }
    driver_.Press((*button)->number);
    return Outcome::Put;
  }
  if (first.kind == ControlKind::CheckBox) {
    if (value != 0 && value != 1) {
      return Outcome::NoButton;
    }
    if (driver_.Checked(first.number) == (value != 0)) {
      return Outcome::Shown;
    }
  }
  Put(first, value);
  return Outcome::Put;
}

void Session::Press(int control) {
  items_ = driver_.ItemCount();
  messages_ = driver_.MessageCount();
  if (cancelled_ == nullptr || !cancelled_()) {
    driver_.Press(control);
  }
}

std::vector<Chart> Session::Draw(std::string_view chart) {
  Press(FindChart(chart).number);
  return NewItems<Chart>();
}

}  // namespace poweranalysis
