#include "output/SummaryTables.h"

#include <algorithm>
#include <iterator>
#include <optional>

#include "output/GridTables.h"

#include "host/Utf8.h"

namespace poweranalysis {

namespace {

int WidthOf(std::string_view text) { return static_cast<int>(CountCharacters(text)); }

// The first line over a table: what was calculated.
TextId ModeHeading(int mode) {
  constexpr TextId kHeadings[] = {text::PowerCalculation, text::SampleSizeCalculation,
                                  text::HeadingIntervalEstimation};
  return kHeadings[mode];
}

std::vector<std::string> LoadTexts(const std::vector<TextId>& ids) {
  std::vector<std::string> texts;
  texts.reserve(ids.size());
  for (const TextId id : ids) {
    texts.push_back(LoadText(id));
  }
  return texts;
}

// The text of a blank row is one control character, which shows as nothing.
std::string RowTitle(TextId id) { return id == text::BlankRow ? std::string() : LoadText(id); }

// A table without rows.
SummaryTable TableFrame(const TableDefinition& definition, PowerSettings& params) {
  constexpr int kOptions = 9216;
  constexpr std::uint8_t kNumberFormat = 4;
  SummaryTable table;
  table.code = definition.code;
  table.headings = LoadTexts(TableHeadings(definition, params));
  for (const std::string& heading : table.headings) {
    table.headingWidth = std::max(table.headingWidth, WidthOf(heading));
  }
  table.columns = {LoadText(text::Value)};
  table.columnTitleIndent = definition.value.indent;
  table.columnTitleWidth = definition.value.width;
  table.options = kOptions;
  table.columnFormats = {kNumberFormat};
  return table;
}

// The widths follow all titles, also those of rows that have got no value.
void FillTitles(SummaryTable& table, const std::vector<ShownRow>& rows) {
  constexpr int kSpace = 2;
  table.rowTitleWidth = MeasureTitles(rows);
  table.rowDisplayWidth = table.rowTitleWidth + kSpace;
  table.columnDisplayWidth = table.cellWidth + kSpace;
  for (const ShownRow& row : rows) {
    table.rows.push_back({RowTitle(row.title), row.indent, {}});
  }
}

// Is this what a table of the mode was asked for?
bool IsSought(QuantityKind kind, int mode) {
  switch (mode) {
    case ModePower:
      return kind == QuantityKind::Power;
    case ModeSampleSize:
      return kind == QuantityKind::Size;
    default:
      return kind == QuantityKind::LowerLimit || kind == QuantityKind::UpperLimit;
  }
}

template <class Matches>
const TableDefinition* FindWhere(Matches matches) {
  const std::span<const TableDefinition> tables = TableDefinitions();
  const auto found = std::find_if(tables.begin(), tables.end(), matches);
  return found == tables.end() ? nullptr : &*found;
}

}  // namespace

const TableDefinition* FindTable(Family family, int mode) {
  return FindWhere(
      [&](const TableDefinition& table) { return table.family == family && table.mode == mode; });
}

const TableDefinition* FindTableDefinition(int code) {
  return FindWhere([&](const TableDefinition& table) { return table.code == code; });
}

std::vector<TextId> TableHeadings(const TableDefinition& table, const RecordView& record) {
  std::vector<TextId> headings = {ModeHeading(table.mode)};
  for (const ChosenText& heading : table.headings) {
    const TextId id = heading.In(record);
    if (id != text::None) {
      headings.push_back(id);
    }
  }
  return headings;
}

std::vector<TextId> TableHeadings(const TableDefinition& table, PowerSettings& params) {
  return TableHeadings(table, ViewOf(params, table.family, Instance::Committed));
}

std::vector<ShownRow> ShownRows(const TableDefinition& table, const RecordView& record) {
  std::vector<ShownRow> rows;
  rows.reserve(table.rows.size());
  for (const TableRowDefinition& row : table.rows) {
    if (row.when.Holds(record)) {
      rows.push_back({row.title.In(record), row.indent, row.quantity});
    }
  }
  return rows;
}

std::vector<ShownRow> ShownRows(const TableDefinition& table, PowerSettings& params) {
  return ShownRows(table, ViewOf(params, table.family, Instance::Committed));
}

int MeasureTitles(std::span<const ShownRow> rows) {
  int widest = 0;
  for (const ShownRow& row : rows) {
    widest = std::max(widest, WidthOf(RowTitle(row.title)) + row.indent);
  }
  return widest;
}

std::vector<double> TableValues(std::span<const ShownRow> rows,
                                const RecordView& record,
                                const Computed& computed) {
  std::vector<double> values;
  values.reserve(rows.size());
  for (const ShownRow& row : rows) {
    values.push_back(ValueOf(row.quantity, record, computed));
  }
  return values;
}

void MarkRows(SummaryTable& table) {
  const TableDefinition* definition = FindTableDefinition(table.code);
  if (definition == nullptr) {
    return;
  }
  // The one size that is not sought.
  const std::string fixed = LoadText(text::RowFixedDf2SpecifiedByUser);
  for (std::size_t i = 0; i < std::min(definition->rows.size(), table.rows.size()); ++i) {
    const Quantity& quantity = definition->rows[i].quantity;
    TableRow& row = table.rows[i];
    row.kind = row.title == fixed ? CellKind::Input : CellKindOf(quantity);
    row.answer = IsSought(quantity.kind, definition->mode) && row.title != fixed;
  }
}

namespace {

// The frame of a code, with a row for each title; nothing for an unknown code.
std::optional<SummaryTable> EmptyTable(int code, PowerSettings& params) {
  if (std::optional<SummaryTable> grid = GridTable(code, params)) {
    return grid;
  }
  const TableDefinition* definition = FindTableDefinition(code);
  if (definition == nullptr) {
    return std::nullopt;
  }
  SummaryTable table = TableFrame(*definition, params);
  FillTitles(table, ShownRows(*definition, params));
  return table;
}

// Puts the values into the rows, as many as each row has columns, until they end. Rows that get none
// are not shown.
void FillCells(SummaryTable& table, std::span<const double> cells) {
  const std::size_t columns = table.columns.size();
  table.rows.resize(std::min(table.rows.size(), cells.size() / columns));
  for (TableRow& row : table.rows) {
    row.values.assign(cells.begin(), cells.begin() + static_cast<std::ptrdiff_t>(columns));
    cells = cells.subspan(columns);
  }
}

}  // namespace

void ShowSummaryTable(std::span<double> values, int code, int* sheetSlot, PowerSettings& params) {
  Host* host = ModuleHost();
  std::optional<SummaryTable> table = host == nullptr ? std::nullopt : EmptyTable(code, params);
  if (!table) {
    return;
  }
  const std::size_t shown = std::min(table->rows.size() * table->columns.size(), values.size());
  const auto end = values.begin() + static_cast<std::ptrdiff_t>(shown);
  std::replace(values.begin(), end, NumericFailure, MissingValue());
  // The sheet's own copy of the cells.
  HostArray<double> cells(*host, shown);
  if (!cells) {
    return;
  }
  // A negative zero is a zero like the other.
  std::transform(values.begin(), end, cells.data(), [](double value) { return value + 0.0; });
  FillCells(*table, {cells.data(), shown});
  MarkRows(*table);
  const int sheet = SetTableOptions(*host, std::move(*table));
  if (sheetSlot != nullptr) {
    *sheetSlot = sheet;
  }
}

}  // namespace poweranalysis
