#pragma once

#include <string>
#include <vector>

#include "host/Answer.h"
#include "host/Workbook.h"

namespace poweranalysis {

// One calculation with everything that came out of it: what every face exports.
struct Study {
  std::string family;  // its code: "T2"
  std::string mode;    // "power" or "size"
  int code = 0;        // of the summary table, also when there is none
  std::vector<Answer> answers;
  Workbook workbook;
  std::vector<Message> messages;
  int status = 0;  // as the exit status of the command line: 0 is an answer
};

// The summary table, or null when the calculation sent none.
const SummaryTable* SummaryOf(const Study& study);
std::vector<const Report*> ReportsOf(const Study& study);
std::vector<const Chart*> ChartsOf(const Study& study);

// The report as it reads: a text that begins with a line break or with a deep indent opens a
// paragraph, any other goes on with the one before it, a blank between. No blanks stand at the
// ends.
std::vector<std::string> ParagraphsOf(const Study& study);
std::vector<std::string> ParagraphsOf(const Report& report);

// The text of a message, and how often it came in a row: "... (6 times)".
std::string ShownMessage(const Message& message);

// The title of a row as it shows: a separator row has none.
std::string ShownTitle(const TableRow& row);
// The title of a column on one line.
std::string ColumnTitleLine(const std::string& title);

// Whether one of the numbers that were asked for is there.
bool HasAnswer(const Study& study);
// The only answer; null when there are several or none.
const Answer* OnlyAnswer(const Study& study);

}  // namespace poweranalysis
