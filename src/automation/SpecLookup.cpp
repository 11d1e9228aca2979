#include "automation/SpecLookup.h"

#include <algorithm>
#include <array>

namespace poweranalysis {

namespace {

template <class Wanted>
std::vector<const ControlSpec*> Select(const DialogSpec& spec, Wanted wanted) {
  std::vector<const ControlSpec*> found;
  const auto look = [&](const std::vector<ControlSpec>& controls) {
    for (const ControlSpec& control : controls) {
      if (wanted(control)) {
        found.push_back(&control);
      }
    }
  };
  look(spec.frame);
  for (const PageSpec& page : spec.pages) {
    look(page.controls);
  }
  return found;
}

}  // namespace

const ControlSpec* FindControlSpec(const DialogSpec& spec, int number) {
  const auto found =
      Select(spec, [number](const ControlSpec& control) { return control.number == number; });
  return found.empty() ? nullptr : found.front();
}

std::vector<const ControlSpec*> FieldControls(const DialogSpec& spec) {
  return Select(spec, [](const ControlSpec& control) {
    return control.kind == ControlKind::IntEdit || control.kind == ControlKind::RealEdit ||
           control.kind == ControlKind::Radio || control.kind == ControlKind::CheckBox;
  });
}

bool IsEdit(const ControlSpec& control) {
  return control.kind == ControlKind::IntEdit || control.kind == ControlKind::RealEdit;
}

const ControlSpec* UnknownBox(const DialogSpec& spec, const std::function<bool(int)>& isChecked) {
  constexpr std::size_t kProbability = 1;
  constexpr std::size_t kParameter = 2;
  std::array<const ControlSpec*, 3> boxes{};
  const ControlSpec* chosen = nullptr;
  for (const ControlSpec* control : FieldControls(spec)) {
    if (control->name == "WhatToCompute") {
      chosen = isChecked(control->number) ? control : chosen;
    } else if (control->name == "CumP") {
      boxes[kProbability] = control;
    } else if (IsEdit(*control) && boxes.front() == nullptr) {
      boxes.front() = control;
    } else if (control->kind == ControlKind::RealEdit && boxes[kParameter] == nullptr) {
      boxes[kParameter] = control;
    }
  }
  return chosen == nullptr ? nullptr : boxes.at(static_cast<std::size_t>(chosen->value));
}

std::vector<const ControlSpec*> ButtonControls(const DialogSpec& spec) {
  return Select(spec,
                [](const ControlSpec& control) { return control.kind == ControlKind::Button; });
}

std::vector<const ControlSpec*> ChartControls(const DialogSpec& spec) {
  return Select(spec, [](const ControlSpec& control) { return control.chart; });
}

std::vector<std::string> NamesOf(const std::vector<const ControlSpec*>& controls) {
  std::vector<std::string> names(controls.size());
  std::transform(controls.begin(), controls.end(), names.begin(),
                 [](const ControlSpec* control) { return control->name; });
  return names;
}

}  // namespace poweranalysis
