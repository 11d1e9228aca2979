#include "automation/GivenMeans.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

#include "automation/Errors.h"
#include "frame/TaskCatalogue.h"
#include "host/NumberText.h"
#include "host/Workbook.h"

namespace poweranalysis {

namespace {

constexpr const char* kMeans = "means";
constexpr const char* kWeights = "weights";
constexpr const char* kFile = "means-file";

std::vector<std::string_view> Split(std::string_view text, char mark) {
  std::vector<std::string_view> parts;
  for (std::size_t end = text.find(mark); end != text.npos; end = text.find(mark)) {
    parts.push_back(text.substr(0, end));
    text.remove_prefix(end + 1);
  }
  parts.push_back(text);
  return parts;
}

std::string_view WithoutBlanks(std::string_view text) {
  const std::size_t first = text.find_first_not_of(' ');
  return first == text.npos ? std::string_view()
                            : text.substr(first, text.find_last_not_of(' ') - first + 1);
}

std::vector<FieldValue>::iterator FindValue(std::vector<FieldValue>& values,
                                            std::string_view name) {
  return std::find_if(values.begin(), values.end(),
                      [name](const FieldValue& value) { return value.field->name == name; });
}

// The measures of the grid that are fields under their own or another name.
bool IsFilled(const GridRow& grid, std::string_view field) {
  return field == "StandardizedEffect" ||
         std::any_of(grid.measures.begin(), grid.measures.end(),
                     [field](const GridMeasure& measure) { return field == measure.name; });
}

void RefuseFilled(const GridRow& grid, const std::vector<FieldValue>& values) {
  for (const FieldValue& value : values) {
    if (IsFilled(grid, value.field->name)) {
      throw UsageError(kMeans, fmt::format("{} follows from the cell means and cannot be given "
                                           "beside them",
                                           value.field->name));
    }
  }
}

// The groups of a contrast with their weights, a row each.
std::vector<double> WithWeights(const std::vector<double>& means,
                                const std::vector<double>& weights) {
  if (weights.size() != means.size()) {
    throw UsageError(
        kWeights, fmt::format("there are {} weights for {} means", weights.size(), means.size()));
  }
  std::vector<double> cells;
  for (std::size_t i = 0; i < means.size(); ++i) {
    cells.insert(cells.end(), {means[i], weights[i]});
  }
  return cells;
}

GridEntries OfGroups(const GivenMeans& means, const GridRow& grid) {
  if (means.rows.size() != 1) {
    throw UsageError(kMeans, "the groups have one row of means");
  }
  const std::vector<double>& row = means.rows.front();
  GridEntries entries{
      &grid, {static_cast<std::int32_t>(row.size()), grid.capacity.columns}, row, {}};
  if (grid.capacity.columns > 1) {
    entries.cells = WithWeights(row, means.weights);
  }
  return entries;
}

GridEntries OfTable(const GivenMeans& means, const GridRow& grid) {
  const std::size_t columns = means.rows.empty() ? 0 : means.rows.front().size();
  GridEntries entries{
      &grid,
      {static_cast<std::int32_t>(means.rows.size()), static_cast<std::int32_t>(columns)},
      {},
      {}};
  for (const std::vector<double>& row : means.rows) {
    if (row.size() != columns) {
      throw UsageError(kMeans, fmt::format("rows of {} and of {} means do not make a table",
                                           columns, row.size()));
    }
    entries.cells.insert(entries.cells.end(), row.begin(), row.end());
  }
  return entries;
}

[[noreturn]] void RefuseShape(const GridRow& grid, const Sheet& sheet) {
  throw UsageError(
      kFile,
      fmt::format("a sheet of {} rows and {} columns is not one of {} to {} rows of cells{}{} "
                  "and the standard deviation in its last row",
                  sheet.rows, sheet.columns, grid.fileLeast.rows, grid.fileMost.rows,
                  grid.sheet.headings > 0 ? ", below a row of headings," : "",
                  grid.sheet.blanks > 0 ? ", a blank row" : ""));
}

GridEntries OfSheet(const Sheet& sheet, const GridRow& grid) {
  const std::int32_t others = grid.sheet.headings + grid.sheet.blanks + 1;
  const GridSize found{static_cast<std::int32_t>(sheet.rows) - others,
                       static_cast<std::int32_t>(sheet.columns)};
  const bool headed = grid.sheet.headings == 0 || sheet.cells.empty() || IsMissing(sheet.At(0, 0));
  if (!found.Holds(grid.fileLeast) || !grid.fileMost.Holds(found) || !headed) {
    RefuseShape(grid, sheet);
  }
  const std::int32_t columns = grid.columnsField == nullptr ? grid.capacity.columns : found.columns;
  GridEntries entries{&grid, {found.rows, columns}, {}, sheet.At(sheet.rows - 1, 0)};
  for (std::int32_t row = 0; row < found.rows; ++row) {
    const std::int32_t sheetRow = grid.sheet.headings + row;
    for (std::int32_t column = 0; column < columns; ++column) {
      entries.cells.push_back(
          sheet.At(static_cast<std::size_t>(sheetRow), static_cast<std::size_t>(column)));
      if (IsMissing(entries.cells.back())) {
        throw UsageError(kFile,
                         fmt::format("the cell {} is not a number", grid.NameOfCell(row, column)));
      }
    }
  }
  return entries;
}

void TakeSigma(GridEntries& entries, std::vector<FieldValue>& values) {
  if (const auto sigma = FindValue(values, "Sigma"); sigma != values.end()) {
    entries.sigma = sigma->value;
    values.erase(sigma);
  }
  if (entries.sigma && !(*entries.sigma > 0)) {
    throw UsageError("sigma", "the standard deviation of cell means is above 0");
  }
}

// One of the counts joins the values, unless it is there and says the same.
void AddCount(const Field& field, std::int32_t count, std::vector<FieldValue>& values) {
  if (count < field.lower) {
    throw UsageError(kMeans, fmt::format("{} is not a number of groups: at least {} are wanted",
                                         count, field.lower));
  }
  const auto given = FindValue(values, field.name);
  if (given == values.end()) {
    values.push_back({&field, static_cast<double>(count)});
  } else if (given->value != count) {
    throw UsageError(kMeans, fmt::format("{} is {}, and the means have {}", field.name,
                                         FormatShortest(given->value), count));
  }
}

void CheckCells(const GridEntries& entries) {
  if (!entries.grid->capacity.Holds(entries.size)) {
    throw UsageError(kMeans, LoadText(entries.grid->tooLarge));
  }
  if (!std::all_of(entries.cells.begin(), entries.cells.end(),
                   [](double cell) { return std::isfinite(cell); })) {
    throw UsageError(kMeans, "every mean and every weight is a number");
  }
}

}  // namespace

const GridRow* GridOfTask(int mode, Family family) {
  const GridRow* grid = FindGrid(family);
  const bool onPage = mode == ModePower || mode == ModeSampleSize ||
                      (mode == ModeInterval && grid != nullptr && grid->onIntervalPage);
  return onPage ? grid : nullptr;
}

GridEntries EntriesOf(const GivenMeans& means,
                      const GridRow& grid,
                      const FamilyTable& family,
                      std::vector<FieldValue>& values) {
  if (!means.weights.empty() && (means.sheet || grid.family != Family::PC)) {
    throw UsageError(kWeights, "weights go with the means of a contrast");
  }
  RefuseFilled(grid, values);
  GridEntries entries = means.sheet                    ? OfSheet(*means.sheet, grid)
                        : grid.columnsField == nullptr ? OfGroups(means, grid)
                                                       : OfTable(means, grid);
  CheckCells(entries);
  TakeSigma(entries, values);
  AddCount(*family.Find(grid.rowsField), entries.size.rows, values);
  if (grid.columnsField != nullptr) {
    AddCount(*family.Find(grid.columnsField), entries.size.columns, values);
  }
  return entries;
}

std::vector<std::vector<double>> ParseMeans(const char* argument, std::string_view text) {
  std::vector<std::vector<double>> rows;
  for (const std::string_view line : Split(text, ';')) {
    rows.emplace_back();
    for (const std::string_view part : Split(line, ',')) {
      const std::optional<double> value = ReadNumber(WithoutBlanks(part));
      if (!value || !std::isfinite(*value)) {
        throw UsageError(argument, fmt::format("'{}' is not a number", part));
      }
      rows.back().push_back(*value);
    }
  }
  return rows;
}

}  // namespace poweranalysis
