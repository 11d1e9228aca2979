#pragma once

#include <string>
#include <vector>

#include "host/Study.h"

// The texts of a study as every exporter words them.
namespace poweranalysis {

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

}  // namespace poweranalysis
