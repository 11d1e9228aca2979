#pragma once

#include <optional>
#include <string>
#include <vector>

#include "host/Answer.h"
#include "host/Workbook.h"

namespace poweranalysis {

// One calculation with everything that came out of it: what a face shows and exports.
struct Study {
  std::string family;  // its code: "T2"
  std::string mode;    // "power", "size", "interval" or "calc"
  int code = 0;        // of the summary table, also when there is none
  std::vector<Answer> answers;
  std::vector<NamedLimits> limits;  // of an interval, in the order of its table
  std::optional<double> pValue;     // of what was observed, where the table of an interval has one
  Workbook workbook;
  std::vector<Message> messages;
  int status = 0;  // as the exit status of the command line: 0 is an answer
};

// The summary table, or null when the calculation sent none.
const SummaryTable* SummaryOf(const Study& study);
std::vector<const Report*> ReportsOf(const Study& study);
std::vector<const Chart*> ChartsOf(const Study& study);

// Whether it estimates intervals, also when no limit came out.
bool IsInterval(const Study& study);
// Whether one of the numbers or limits that were asked for is there.
bool HasAnswer(const Study& study);
// The only answer; null when there are several or none.
const Answer* OnlyAnswer(const Study& study);

}  // namespace poweranalysis
