#pragma once

#include <pybind11/pybind11.h>

#include <optional>
#include <string>
#include <vector>

#include "cli/CommandLine.h"
#include "exporters/Exporters.h"

namespace poweranalysis {

// A calculation with all that came out of it, as Python holds it.
struct StudyObject {
  Study study;
  std::vector<std::string> errors;  // beyond the messages of the system
  std::vector<std::string> notes;
  // While it is there, the study has its answers alone: a run of it makes the rest.
  std::optional<RunRequest> request = std::nullopt;
};

// One item of a workbook as a study of its own, for export.
StudyObject StudyOf(WorkbookItem item);

}  // namespace poweranalysis
