#include "output/SummaryTables.h"

#include <algorithm>

namespace poweranalysis {

namespace {

// The one special value of a table.
constexpr double kFailedNumber = -9999.0;

constexpr const char* FieldOf(Selector selector) {
  switch (selector) {
    case Selector::H0Type:
      return "H0Type";
    case Selector::ModelType:
      return "ModelType";
    case Selector::EffectToTest:
      return "EffectToTest";
    case Selector::Algorithm:
      return "Algorithm";
    case Selector::Continuity:
      return "Continuity";
    default:
      return "";
  }
}

// The selector's value in the record, or -1 for a family that has no such field.
int SelectorValue(Selector selector, Family family, PowerSettings& params) {
  const RecordView record = ViewOf(params, family, Instance::Committed);
  const Field* field = record.table().Find(FieldOf(selector));
  return field == nullptr ? -1 : static_cast<int>(record.Get(*field));
}

template <std::size_t N>
TextId ByValue(const std::array<TextId, N>& alternatives, int value) {
  return value >= 0 && static_cast<std::size_t>(value) < N
             ? alternatives[static_cast<std::size_t>(value)]
             : text::None;
}

int CountCharacters(std::string_view text) {
  // Continuation bytes of UTF-8 do not count.
  return static_cast<int>(std::count_if(text.begin(), text.end(), [](char c) {
    return (static_cast<unsigned char>(c) & 0xC0) != 0x80;
  }));
}

// Code 129 shows which degrees of freedom were varied. The first of its two last rows always says
// Df1; another DfToVary than 0 and 1 leaves both out.
constexpr int kTwoVariancesSampleSize = 129;

void FollowDfToVary(std::vector<TitleEntry>& titles, int dfToVary) {
  if (dfToVary == 1) {
    titles.back().id = text::RowFixedDf2SpecifiedByUser;
  } else if (dfToVary != 0) {
    titles.resize(titles.size() - 2);
  }
}

// "Value" is indented in these tables alone.
int ValueIndent(int code) {
  constexpr int kIndented[] = {0, 1, 16, 17, 32, 80};
  constexpr int kIndent = 2;
  return std::find(std::begin(kIndented), std::end(kIndented), code) != std::end(kIndented)
             ? kIndent
             : 0;
}

int ColumnTitleWidth(int code) {
  constexpr int kWideContrast[] = {48, 49};
  constexpr int kWide = 12;
  constexpr int kNormal = 10;
  return std::find(std::begin(kWideContrast), std::end(kWideContrast), code) !=
                 std::end(kWideContrast)
             ? kWide
             : kNormal;
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

}  // namespace

std::vector<TextId> TableHeadings(const TableDefinition& table, PowerSettings& params) {
  std::vector<TextId> headings;
  for (const TextId id : table.headings) {
    if (id != text::None) {
      headings.push_back(id);
    }
  }
  if (table.selector != Selector::None) {
    const TextId third =
        ByValue(table.byValue, SelectorValue(table.selector, table.family, params));
    if (third != text::None) {
      headings.push_back(third);
    }
  }
  return headings;
}

std::vector<TitleEntry> TableTitles(const TableDefinition& table, PowerSettings& params) {
  std::vector<TitleEntry> titles;
  titles.reserve(table.rows.size());
  for (const TitleRow& row : table.rows) {
    const int value =
        row.selector == Selector::None ? 0 : SelectorValue(row.selector, table.family, params);
    titles.push_back({ByValue(row.titles, value), row.indent});
  }
  if (table.code == kTwoVariancesSampleSize) {
    FollowDfToVary(titles, params.V2.Committed.DfToVary);
  }
  return titles;
}

int MeasureTitles(std::span<const TitleEntry> titles) {
  int widest = 0;
  for (const TitleEntry& title : titles) {
    widest = std::max(widest, CountCharacters(RowTitle(title.id)) + title.indent);
  }
  return widest;
}

void ShowSummaryTable(std::span<double> values, int code, int* sheetSlot, PowerSettings& params) {
  Host* host = ModuleHost();
  const TableDefinition* definition = FindTableDefinition(code);
  if (host == nullptr || definition == nullptr) {
    return;
  }
  constexpr int kOptions = 9216;
  constexpr int kSpace = 2;
  constexpr std::uint8_t kNumberFormat = 4;
  const std::vector<TitleEntry> titles = TableTitles(*definition, params);
  const std::vector<TextId> headings = TableHeadings(*definition, params);
  const std::size_t rows = std::min(titles.size(), values.size());
  std::replace(values.begin(), values.begin() + static_cast<std::ptrdiff_t>(rows), kFailedNumber,
               MissingValue());
  // The sheet's own copy of the cells.
  HostArray<double> cells(*host, rows);
  if (!cells) {
    return;
  }
  std::copy_n(values.begin(), rows, cells.data());

  SummaryTable table;
  table.code = code;
  table.headings = LoadTexts(headings);
  table.columns = {LoadText(text::Value)};
  table.columnTitleIndent = ValueIndent(code);
  table.columnTitleWidth = ColumnTitleWidth(code);
  table.rowTitleWidth = MeasureTitles(titles);
  table.rowDisplayWidth = table.rowTitleWidth + kSpace;
  table.columnDisplayWidth = table.cellWidth + kSpace;
  for (const std::string& heading : table.headings) {
    table.headingWidth = std::max(table.headingWidth, CountCharacters(heading));
  }
  table.options = kOptions;
  table.columnFormats = {kNumberFormat};
  for (std::size_t row = 0; row < rows; ++row) {
    table.rows.push_back({RowTitle(titles[row].id), titles[row].indent, {cells[row]}});
  }
  const int sheet = SetTableOptions(*host, std::move(table));
  if (sheetSlot != nullptr) {
    *sheetSlot = sheet;
  }
}

}  // namespace poweranalysis
