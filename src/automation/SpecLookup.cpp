#include "automation/SpecLookup.h"

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

std::vector<const ControlSpec*> ButtonControls(const DialogSpec& spec) {
  return Select(spec,
                [](const ControlSpec& control) { return control.kind == ControlKind::Button; });
}

}  // namespace poweranalysis
