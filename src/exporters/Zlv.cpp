#include "exporters/Exporters.h"
#include "host/Sheet.h"

namespace poweranalysis {

namespace {

// The tables of cell means, by the code that they were sent with.
constexpr int kOneWayGrid = 83;
constexpr int kTwoWayGrid = 1028;
constexpr int kContrastGrid = 51;

// A sheet of a contrast keeps the blank row before the standard deviation; the others have none.
bool KeepsBlankRow(int code) { return code == kContrastGrid; }

}  // namespace

bool IsCellMeans(const SummaryTable& table) {
  return table.code == kOneWayGrid || table.code == kTwoWayGrid || table.code == kContrastGrid;
}

std::string ZlvOf(const SummaryTable& table) {
  if (!IsCellMeans(table) || table.rows.size() < 2) {
    return {};
  }
  Sheet sheet;
  sheet.columns = table.columns.size();
  const std::size_t blank = table.rows.size() - 2;
  for (std::size_t i = 0; i < table.rows.size(); ++i) {
    if (i != blank || KeepsBlankRow(table.code)) {
      const std::vector<double>& values = table.rows[i].values;
      sheet.cells.insert(sheet.cells.end(), values.begin(), values.end());
      ++sheet.rows;
    }
  }
  // The table shows the standard deviation in its last column, the sheet has it in the first.
  std::swap(sheet.cells[(sheet.rows - 1) * sheet.columns], sheet.cells.back());
  return FormatSheet(sheet);
}

}  // namespace poweranalysis
