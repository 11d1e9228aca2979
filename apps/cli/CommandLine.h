#pragma once

#include <optional>
#include <string>
#include <vector>

#include "exporters/Exporters.h"
#include "frame/TaskCatalogue.h"
#include "settings/PowerSettings.h"

namespace poweranalysis {

// A value for a field of the family's record.
struct FieldValue {
  const Field* field;
  double value;
};

// A chart asked for by the name of its plot, or "all".
struct ChartWish {
  std::string name;
  std::string file;  // folder for "all"; empty: part of the output
};

inline constexpr const char* AllCharts = "all";

// A calculation, as the options describe it.
struct RunRequest {
  int mode = ModePower;
  int row = 0;  // of the task list
  const FamilyTable* family = nullptr;
  std::vector<FieldValue> values;  // in the order of the record
  // Of a calculator: the unknown, else the probability, and what the probability stands for.
  std::optional<std::size_t> unknown;
  bool oneMinusP = false;
  std::optional<std::string> settings;
  std::optional<std::string> saveSettings;
  bool saveDefaults = false;
  std::string configFolder;
  std::vector<ChartWish> charts;
  ExportFormat format = ExportFormat::Text;
  bool fullCsv = false;
  std::string output;  // empty: standard output
};

enum class CommandKind { Run, List, Describe, Macro, Text };

struct ParsedCommand {
  CommandKind kind = CommandKind::Text;
  RunRequest run;    // Run and Describe
  std::string text;  // what to print (help, version), or the file of a macro
};

// Reads the arguments after the program's name. Throws UsageError.
ParsedCommand ParseCommandLine(std::vector<std::string> arguments);

// "poweranalysis size", the sub-command of a mode; empty for a mode that has none.
std::string SubCommandOf(int mode);

}  // namespace poweranalysis
