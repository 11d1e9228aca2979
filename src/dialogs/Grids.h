#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "dialogs/Controls.h"
#include "settings/PowerSettings.h"

// What the grids of cell means differ in, as rows; one dialog serves all.
namespace poweranalysis {

// Rows and columns of cells. The grid of a contrast has a column of means and one of weights.
struct GridSize {
  std::int32_t rows = 0;
  std::int32_t columns = 0;

  bool operator==(const GridSize&) const = default;
  std::size_t count() const {
    return static_cast<std::size_t>(rows) * static_cast<std::size_t>(columns);
  }
  bool Holds(GridSize size) const { return size.rows <= rows && size.columns <= columns; }
};

// A number that follows from the cells: a box that is only read.
struct GridMeasure {
  const char* name;
  TextId caption;
};

// How the sheet of a grid lies in its file: lines of headings, the cells, blank lines, and the
// standard deviation in the first column.
struct GridSheet {
  std::int32_t headings = 0;
  std::int32_t blanks = 0;
};

struct GridRow {
  Family family;
  const char* className;
  int resource;
  TextId title;
  int tableCode;             // of the table that Create sends
  const char* rowsField;     // the counts, as fields of the record
  const char* columnsField;  // null where the columns are fixed
  GridSize capacity;
  GridSize pasteLeast;  // what is pasted...
  GridSize pasteMost;
  GridSize pasteScan;  // ... and beyond what a text is not read on
  GridSize fileLeast;  // what is opened
  GridSize fileMost;
  GridSheet sheet;
  bool storesFewer;     // the means of a sheet with too few groups are stored all the same
  bool copies;          // whether Copy changes the clipboard
  bool onIntervalPage;  // the interval page has the button, too
  TextId tooLarge;      // says the capacity, for a page with larger counts
  std::span<const GridMeasure> measures;

  // The cells of the scratch record, those of a row side by side.
  double& (*cell)(PowerSettings& block, std::int32_t row, std::int32_t column);
  // Whether the cells came from the clipboard or a file, and are kept once when the grid opens.
  i16& (*loaded)(PowerSettings& block);
  // Takes all of the page over but the cells.
  void (*takePage)(PowerSettings& block);
  // Measures the cells, puts what tests use into the scratch record, and gives what is shown.
  std::vector<double> (*measure)(PowerSettings& block);

  // Numbers and names for scripts.
  int ControlOfCell(std::int32_t row, std::int32_t column) const;
  std::string NameOfCell(std::int32_t row, std::int32_t column) const;
  std::string RowTitle(std::int32_t row) const;
  std::string ColumnTitle(std::int32_t column) const;

  RecordView Scratch() const { return ViewOf(*Block(), family, Instance::GridScratch); }
  GridSize SizeOf(const RecordView& record) const;
  void SetSize(const RecordView& record, GridSize size) const;
};

std::span<const GridRow> Grids();
// The grid of a family; null where it has none.
const GridRow* FindGrid(Family family);

}  // namespace poweranalysis
