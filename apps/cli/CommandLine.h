#pragma once

#include <string>
#include <vector>

#include "automation/TaskRun.h"
#include "exporters/Exporters.h"

namespace poweranalysis {

// A chart asked for by the name of its plot, or "all".
struct ChartWish {
  std::string name;
  std::string file;  // folder for "all"; empty: part of the output
};

// A calculation, as the options describe it, and where its results go.
struct RunRequest : TaskRequest {
  std::vector<ChartWish> wishes;  // of the charts, and the file of each
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
