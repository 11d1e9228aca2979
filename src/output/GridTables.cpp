#include "output/GridTables.h"

#include <algorithm>

#include "families/Computed.h"
#include "frame/FormatText.h"
#include "frame/Texts.h"

namespace poweranalysis {

namespace {

constexpr double kBlank = NumericFailure;

// How wide a grid's columns and titles are, in characters.
struct Widths {
  int cell = 8;
  int columnTitle = 10;
  int rowTitle = 0;  // 0: as the longest title
};

SummaryTable Frame(int code, std::string heading, std::vector<std::string> columns, Widths widths) {
  constexpr int kOptions = 9472;
  constexpr int kSpace = 2;
  constexpr std::uint8_t kNumberFormat = 4;
  SummaryTable table;
  table.code = code;
  table.headingWidth = static_cast<int>(heading.size());
  table.headings = {std::move(heading)};
  table.columnFormats.assign(columns.size(), kNumberFormat);
  table.columns = std::move(columns);
  table.cellWidth = widths.cell;
  table.columnDisplayWidth = widths.cell + kSpace;
  table.columnTitleWidth = widths.columnTitle;
  table.rowTitleWidth = widths.rowTitle;
  table.options = kOptions;
  return table;
}

void AddRow(SummaryTable& table, std::string title) {
  TableRow row;
  row.title = std::move(title);
  row.kind = CellKind::Input;
  table.rows.push_back(std::move(row));
}

// "  Group 1", "A1", ..., a blank row, and the standard deviation.
void AddRows(SummaryTable& table, TextId title, int count, TextId sigma) {
  constexpr int kSpace = 2;
  for (int i = 1; i <= count; ++i) {
    AddRow(table, FormatResource(title, {i}));
  }
  AddRow(table, {});
  AddRow(table, LoadText(sigma));
  if (table.rowTitleWidth == 0) {
    for (const TableRow& row : table.rows) {
      table.rowTitleWidth = std::max(table.rowTitleWidth, static_cast<int>(row.title.size()));
    }
  }
  table.rowDisplayWidth = table.rowTitleWidth + kSpace;
}

// --- The three shapes.

SummaryTable OneWayTable(const AV1Params& grid) {
  constexpr std::uint8_t kFirstColumnFormat = 3;
  constexpr Widths kWidths{8, 12, 0};
  SummaryTable table =
      Frame(OneWayGridTable, LoadText(text::OneWayCellMeans), {LoadText(text::Value)}, kWidths);
  table.columnFormats[0] = kFirstColumnFormat;
  AddRow(table, LoadText(text::GroupMeans));
  AddRows(table, text::GroupNumber, grid.NumberOfGroups, text::OneWaySigmaWithin);
  return table;
}

SummaryTable TwoWayTable(const AV2Params& grid) {
  constexpr Widths kWidths{12, 14, 0};
  std::vector<std::string> columns;
  for (int i = 1; i <= grid.Columns; ++i) {
    columns.push_back(FormatResource(text::GridColumnName, {i}));
  }
  SummaryTable table =
      Frame(TwoWayGridTable, FormatResource(text::TwoWayCellMeans, {grid.Rows, grid.Columns}),
            std::move(columns), kWidths);
  AddRows(table, text::GridRowName, grid.Rows, text::GridSigmaWithin);
  return table;
}

SummaryTable ContrastTable(const PCParams& grid) {
  constexpr Widths kWidths{8, 12, 15};
  SummaryTable table = Frame(ContrastGridTable, LoadText(text::PlannedContrastCellMeans),
                             {LoadText(text::ContrastColumn) + "\n" + LoadText(text::MeanColumn),
                              LoadText(text::WeightColumn)},
                             kWidths);
  AddRows(table, text::GroupNumber, grid.NumberOfGroups, text::OneWaySigmaWithin);
  return table;
}

std::vector<double> OneWayValues(const AV1Params& grid) {
  std::vector<double> values = {kBlank};
  const auto means = grid.GridMeans.begin();
  values.insert(values.end(), means, means + grid.NumberOfGroups);
  values.insert(values.end(), {kBlank, grid.Sigma});
  return values;
}

std::vector<double> TwoWayValues(const AV2Params& grid) {
  std::vector<double> values;
  for (std::size_t row = 0; row < static_cast<std::size_t>(grid.Rows); ++row) {
    const auto means = grid.GridMeans[row].begin();
    values.insert(values.end(), means, means + grid.Columns);
  }
  const auto columns = static_cast<std::size_t>(grid.Columns);
  values.insert(values.end(), 2 * columns, kBlank);
  values.back() = grid.Sigma;
  return values;
}

std::vector<double> ContrastValues(const PCParams& grid) {
  std::vector<double> values;
  for (std::size_t i = 0; i < static_cast<std::size_t>(grid.NumberOfGroups); ++i) {
    values.insert(values.end(), {grid.GridMeans[i], grid.GridWeights[i]});
  }
  values.insert(values.end(), {kBlank, kBlank, kBlank, grid.Sigma});
  return values;
}

}  // namespace

std::optional<SummaryTable> GridTable(int code, const PowerSettings& params) {
  switch (code) {
    case OneWayGridTable:
      return OneWayTable(params.AV1.GridScratch);
    case TwoWayGridTable:
      return TwoWayTable(params.AV2.GridScratch);
    case ContrastGridTable:
      return ContrastTable(params.PC.GridScratch);
    default:
      return std::nullopt;
  }
}

std::vector<double> GridTableValues(int code, const PowerSettings& params) {
  switch (code) {
    case OneWayGridTable:
      return OneWayValues(params.AV1.GridScratch);
    case TwoWayGridTable:
      return TwoWayValues(params.AV2.GridScratch);
    case ContrastGridTable:
      return ContrastValues(params.PC.GridScratch);
    default:
      return {};
  }
}

}  // namespace poweranalysis
