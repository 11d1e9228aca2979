#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <variant>
#include <vector>

// What results are made of. A calculation hands the host a summary table, report paragraphs and
// charts; the host keeps them in its workbook. All of it is plain data: drawing, printing and
// exporting belong to whoever shows it.
namespace poweranalysis {

// The missing-data double of the host: the only special value of a table cell.
double MissingValue();
bool IsMissing(double value);

// What the numbers of a row are, which decides how they show.
enum class CellKind { Computed, Input, Probability };

struct TableRow {
  std::string title;
  int indent = 0;              // in characters
  std::vector<double> values;  // one for each column
  CellKind kind = CellKind::Computed;
  bool answer = false;  // what was asked for
};

struct SummaryTable {
  int code = 0;  // test family and mode, see output/SummaryTables
  std::vector<std::string> headings;
  std::vector<std::string> columns;  // titles; a line feed parts the lines of one
  std::vector<TableRow> rows;

  // Layout hints of the table operation, in characters.
  int cellWidth = 8;
  int columnTitleWidth = 10;
  int columnTitleIndent = 0;
  int rowTitleWidth = 0;
  int rowDisplayWidth = 0;
  int columnDisplayWidth = 0;
  int headingWidth = 0;
  int options = 0;
  std::vector<std::uint8_t> columnFormats;
};

struct Axis {
  float min = 0;
  float max = 0;
  float step = 0;
};

struct Chart {
  std::string name;  // of the plot, in kebab case: "power-vs-n"
  int kind = 0;      // clamp rule, see output/Charts
  std::array<std::string, 3> titles;
  std::string xLabel;
  std::string yLabel;
  std::vector<float> x;  // the data block as plotted; a failed point holds FailedPoint
  std::vector<float> y;
  Axis xAxis;
  Axis yAxis;
  std::vector<float> tickPositions;  // of the Y axis
  std::vector<std::string> tickLabels;
  int decimals = 0;  // of the tick labels
  int labelWidth = 0;
};

// The results of one analysis in the order in which they were sent. Consecutive paragraphs belong
// to one report.
struct Report {
  std::vector<std::string> paragraphs;
};

using WorkbookItem = std::variant<SummaryTable, Report, Chart>;

struct Workbook {
  std::vector<WorkbookItem> items;
};

// Adds a paragraph to the report at the end; false when what was sent last is not a report.
bool ContinueReport(Workbook& workbook, const std::string& paragraph);

// A message shown to the user. Consecutive repeats of one text are one entry with a count.
struct Message {
  int id = 0;  // number of the text
  std::string text;
  int count = 1;
};

// Adds a message, or counts it where it repeats the last; whether it is another.
bool AddMessage(std::vector<Message>& messages, int id, const std::string& text);
// The messages with all repeats of one text joined, each where it came first.
std::vector<Message> JoinRepeats(const std::vector<Message>& messages);

}  // namespace poweranalysis
