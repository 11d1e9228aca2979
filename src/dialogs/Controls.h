#pragma once

#include <span>
#include <string_view>

#include "host/AnalysisSupport.h"
#include "host/DialogSpec.h"
#include "settings/Choices.h"

// Numbers of controls: a field has one number in all dialogs.
namespace poweranalysis {

// Buttons of the frames.
inline constexpr int ControlAccept = 1;  // OK, Compute or Calculate
inline constexpr int ControlAcceptToo = 120;
inline constexpr int ControlBack = 2;
inline constexpr int ControlBackToo = 123;
inline constexpr int ControlRestoreDefaults = 118;
inline constexpr int ControlRestoreDefaultsToo = 12400;
inline constexpr int ControlOutputOptions = 10710;
inline constexpr int ControlRefresh = CommandRefresh;
inline constexpr int ControlChangeParams = 208;
inline constexpr int ControlSummary = 201;

// First chart button of a power and of a sample size results dialog.
inline constexpr int ControlPowerCharts = 203;
inline constexpr int ControlSizeCharts = 603;

inline constexpr int SettingsPage = 6104;

// The button of the cell means, and a remark on the page of an interval.
inline constexpr int ControlGrid = 22090;
inline constexpr int ControlHint = 22091;

// Grids of cell means: their buttons, the first cell, the first weight of a contrast and the first
// measure.
inline constexpr int ControlGridCreate = 9015;
inline constexpr int ControlGridOpen = 9018;
inline constexpr int ControlGridPaste = 9305;
inline constexpr int ControlGridCopy = 9412;
inline constexpr int ControlGridCells = 23000;
inline constexpr int ControlGridWeights = 23100;
inline constexpr int ControlGridMeasures = 23200;

// Calculators: the second Compute command, the radio button of the first unknown, and the
// box and labels about the probability.
inline constexpr int ControlCompute = 815;
inline constexpr int ControlUnknown = 22060;
inline constexpr int ControlActualValue = 22080;
inline constexpr int ControlProbabilityLabel = 22081;
inline constexpr int ControlActualValueLabel = 22082;

// The number of a field's edit control or check box; 0 for a field that radio buttons show, and for
// a name that is not a field's.
int ControlOfField(std::string_view field);
// The same in the dialogs of a family: the observed F of the one-way analysis of variance has a
// control of its own.
int ControlOfField(Family family, std::string_view field);
// Is the field a check box, 1 when checked?
bool IsCheckBox(std::string_view field);

// A field that radio buttons show: the button of a value has the number `base` + value.
struct RadioGroup {
  const char* field;
  int base;
  TextId caption;  // of the group
  std::span<const Choice> choices;

  int last() const { return base + choices.back().value; }
  bool HasButton(double value) const { return FindChoice(choices, value) != nullptr; }
};
// The number of the button of value 0; 0 for a field that has no buttons in any family.
int RadioBaseOf(std::string_view field);
// The radio buttons of a field in a family's dialogs; null when it has none.
const RadioGroup* RadiosOf(std::string_view field, Family family);

// The controls that a page shows for a field: one edit or check box, or the radio buttons of its
// group.
std::vector<ControlSpec> ControlsOfField(const FamilyTable& family,
                                         const Field& field,
                                         TextId groupCaption);

ControlSpec ButtonSpec(int number, std::string name, TextId caption);
// The page "Settings I/O", the same in every dialog.
PageSpec SettingsPageSpec();
// The page with the fields stands one number above its frame.
int PageOfFrame(int frame);

}  // namespace poweranalysis
