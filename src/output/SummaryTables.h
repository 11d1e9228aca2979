#pragma once

#include <array>
#include <span>
#include <vector>

#include "frame/TaskCatalogue.h"
#include "host/Workbook.h"
#include "output/Quantities.h"

// Summary tables: one column of values with row titles and up to three heading lines. One operation
// builds all of them from the rows of a table.
namespace poweranalysis {

// One row: what it shows, its title, the indent of the title, and when it is shown.
struct TableRowDefinition {
  Quantity quantity;
  ChosenText title;
  int indent = 0;
  Condition when{};
};

// How the title over the values stands.
struct ColumnTitle {
  int indent = 0;
  int width = 10;
};

// The table of a family and mode. Its code goes out with it, for hosts and files.
struct TableDefinition {
  int code;
  Family family;
  int mode;
  std::array<ChosenText, 2> headings;  // below the name of the calculation
  std::span<const TableRowDefinition> rows;
  ColumnTitle value{};
};

std::span<const TableDefinition> TableDefinitions();
// Null where there is none.
const TableDefinition* FindTable(Family family, int mode);
const TableDefinition* FindTableDefinition(int code);

// The headings and the rows that a table shows for a record of its family; for a block, for the
// Committed one.
std::vector<TextId> TableHeadings(const TableDefinition& table, const RecordView& record);
std::vector<TextId> TableHeadings(const TableDefinition& table, PowerSettings& params);
struct ShownRow {
  TextId title;
  int indent = 0;
  Quantity quantity{};
};
std::vector<ShownRow> ShownRows(const TableDefinition& table, const RecordView& record);
std::vector<ShownRow> ShownRows(const TableDefinition& table, PowerSettings& params);

// The greatest length plus indent over the rows, in characters; 0 for an empty list.
int MeasureTitles(std::span<const ShownRow> rows);

// The values of the rows, in their order.
std::vector<double> TableValues(std::span<const ShownRow> rows,
                                const RecordView& record,
                                const Computed& computed);

// What each row of a table shows (an input, a probability) and which hold what was asked for, by
// the code of the table: known also of one that was read from a file. Rows of an unknown code stay.
void MarkRows(SummaryTable& table);

// Builds the table of a code and hands it to the host. `values` holds one double for each column of
// each shown row; any of exactly NumericFailure becomes the host's missing value, in place.
// `sheetSlot` receives the handle of the sheet. Without memory, or for an unknown code, there is no
// table and no message.
void ShowSummaryTable(std::span<double> values, int code, int* sheetSlot, PowerSettings& params);

}  // namespace poweranalysis
