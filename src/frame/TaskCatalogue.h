#pragma once

#include <array>
#include <span>
#include <string_view>

#include "frame/Texts.h"

// What the program offers: four modes, and in each a list of tasks. The number of a row is the
// task's number everywhere else.
namespace poweranalysis {

enum Mode : int {
  ModePower = 0,
  ModeSampleSize = 1,
  ModeInterval = 2,
  ModeDistribution = 3,
  ModeCount = 4,
};

struct ModeRow {
  TextId name;
  int icon;
  TextId help;
  const char* enumerator;
  const char* word;  // for commands and results: "power"
};

struct DialogRow {
  const char* className = nullptr;
  int resource = 0;
  TextId title = text::None;
};

struct TaskRow {
  const char* family;        // code of the family, or of the calculator
  const char* readableName;  // for commands: "one-mean"
  TextId name;
  int icon;
  TextId help;
  const char* enumerator;
  // Modes 0 and 1: parameters and results of the power task, then of the sample size task.
  // Modes 2 and 3: the one dialog.
  std::array<DialogRow, 4> dialogs;
};

std::span<const ModeRow> Modes();
// Its word; empty for a number that is not a mode's.
const char* ModeWord(int mode);
// The list of a mode, empty for a number that is not a mode's. Modes 0 and 1 share one.
std::span<const TaskRow> Tasks(int mode);

// What a stage opens for a mode and row; null when it opens nothing.
const DialogRow* ComputeDialog(int mode, int row);
const DialogRow* ResultDialog(int mode, int row);

// The dialog of the startup itself.
const DialogRow& StartupDialog();

// Every dialog of the catalogue, in the order of modes and rows, and what it belongs to.
struct CatalogueDialog {
  const DialogRow* dialog;
  int mode;
  int row;
  bool result;
};
// The entry of a resource number; `dialog` is null when there is none.
CatalogueDialog FindDialog(int resource);

struct Enumerator {
  const char* name;
  int value;
};
// PowAnalysisType: the tasks of all modes in one enumeration. PowAnalysisItem: the modes.
std::span<const Enumerator> AnalysisTypes();
std::span<const Enumerator> AnalysisItems();

// The row of a family's code or readable name in any case, or -1.
int FindTask(int mode, std::string_view familyOrName);

}  // namespace poweranalysis
