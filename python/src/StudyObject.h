#pragma once

#include <pybind11/pybind11.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "exporters/Exporters.h"

namespace poweranalysis {

// A calculation with all that came out of it, as Python holds it.
struct StudyObject {
  Study study;
  std::vector<std::string> errors;  // beyond the messages of the system
  std::vector<std::string> notes;
  // Makes the whole study where it has only its answers so far.
  std::function<Study()> rest = nullptr;

  // The study with its table, report and charts. Call it with the interpreter's lock.
  const Study& Whole() {
    if (const std::function<Study()> make = rest) {
      Study whole = make();
      // Another thread may have been as far while this one computed.
      if (rest) {
        study = std::move(whole);
        rest = nullptr;
      }
    }
    return study;
  }
};

// One item of a workbook as a separate study, for export.
StudyObject StudyOf(WorkbookItem item);

}  // namespace poweranalysis
