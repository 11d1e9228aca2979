#pragma once

#include <array>
#include <span>

#include "settings/PowerSettings.h"

// Summary tables: one column of values with row titles and up to three heading lines. One operation
// builds all of them; the code of a table selects its headings and row titles.
namespace poweranalysis {

// The parameter by whose value a heading or a title is chosen.
enum class Selector { None, H0Type, ModelType, EffectToTest, Algorithm, Continuity };

// A row title, or the alternatives by the selector's value; 0 ends the alternatives.
struct TitleRow {
  std::array<TextId, 3> titles{};
  int indent = 0;
  Selector selector = Selector::None;
};

// Code of a table: family in the upper part, mode in the low part.
struct TableDefinition {
  int code;
  Family family;
  std::array<TextId, 3> headings;
  Selector selector;              // of the third heading; None: the list above is all
  std::array<TextId, 4> byValue;  // third heading by the selector's value
  std::span<const TitleRow> rows;
};

std::span<const TableDefinition> TableDefinitions();
const TableDefinition* FindTableDefinition(int code);

// The headings and the row titles that a code shows for the Committed record of its family.
std::vector<TextId> TableHeadings(const TableDefinition& table, PowerSettings& params);
struct TitleEntry {
  TextId id;
  int indent;
};
std::vector<TitleEntry> TableTitles(const TableDefinition& table, PowerSettings& params);

// The greatest length plus indent over the entries, in characters; 0 for an empty list.
int MeasureTitles(std::span<const TitleEntry> titles);

// Builds the table of a code and hands it to the host. `values` holds one double a row; any of
// exactly -9999.0 becomes the host's missing value, in place. `sheetSlot` receives the handle of
// the sheet. Without memory, or for an unknown code, there is no table and no message.
void ShowSummaryTable(std::span<double> values, int code, int* sheetSlot, PowerSettings& params);

}  // namespace poweranalysis
