#include "output/Answers.h"

#include <algorithm>
#include <array>

#include "output/SummaryTables.h"

namespace poweranalysis {

namespace {

// What a required size is: the field that takes it, what it counts, which of the sizes of a table
// it is, and the group that it is of where two were sought.
struct SoughtSize {
  const char* field;
  const char* counts;
  int index = 0;
  const char* group = "";
};

constexpr int kEveryEffect = -1;

struct SizeRow {
  Family family;
  SoughtSize size;
};

constexpr SizeRow kSizes[] = {
    {Family::T1, {"SampleSize", "total"}},          {Family::T3, {"SampleSize", "pairs"}},
    {Family::PC, {"SampleSize", "per group"}},      {Family::AV1, {"N", "per group"}},
    {Family::AV2, {"N", "per cell", kEveryEffect}}, {Family::V1, {"DegreesOfFreedom", "df"}},
    {Family::R, {"SampleSize", "total"}},           {Family::R2, {"SampleSize", "total"}},
    {Family::P1, {"SampleSize", "total"}},          {Family::QMAC, {"SampleSize", "pairs"}},
    {Family::SA1, {"SampleSize", "per group"}},     {Family::SA2, {"SampleSize", "per group"}},
    {Family::SA3, {"SampleSize", "per group"}},     {Family::SEM, {"SampleSize", "total"}},
};

// By the value of NToVary. A value without a row of its own counts as the first.
constexpr SoughtSize kEqualGroups = {"SampleSizeN1", "per group"};
constexpr SoughtSize kFirstGroup = {"SampleSizeN1", "group 1"};
constexpr SoughtSize kSecondGroup = {"SampleSizeN2", "group 2", 1};
constexpr int kNToVaryRatio = 3;

std::vector<SoughtSize> SizesOfGroups(Family family, int nToVary) {
  if (family == Family::P2 && nToVary == kNToVaryRatio) {
    return {{"SampleSizeN1", "group 1", 0, "group 1"}, {"SampleSizeN2", "group 2", 1, "group 2"}};
  }
  constexpr std::array kByValue = {kEqualGroups, kFirstGroup, kSecondGroup};
  const auto choice = static_cast<std::size_t>(nToVary);
  return {choice < kByValue.size() ? kByValue[choice] : kEqualGroups};
}

std::vector<SoughtSize> SoughtSizes(const RecordView& record) {
  const FamilyTable& family = record.table();
  if (const Field* field = family.Find("NToVary")) {
    return SizesOfGroups(family.family, static_cast<int>(record.Get(*field)));
  }
  if (const Field* field = family.Find("DfToVary")) {
    return {{"Df1", record.Get(*field) == 0 ? "df" : "df1"}};
  }
  const auto* row = std::find_if(std::begin(kSizes), std::end(kSizes),
                                 [&](const SizeRow& r) { return r.family == family.family; });
  return row == std::end(kSizes) ? std::vector<SoughtSize>() : std::vector{row->size};
}

constexpr const char* kEffects[] = {"row", "column", "interaction"};

const char* EffectOf(Family family, int index) {
  return family == Family::AV2 ? kEffects[index] : "";
}

// A cell of the table that holds a power or a size, and which of several it is.
struct Cell {
  double value;
  int index;
};

std::vector<Cell> CellsOf(const SummaryTable& table,
                          const std::vector<ShownRow>& rows,
                          QuantityKind kind) {
  std::vector<Cell> cells;
  for (std::size_t i = 0; i < std::min(rows.size(), table.rows.size()); ++i) {
    if (rows[i].quantity.kind == kind && !table.rows[i].values.empty()) {
      cells.push_back({table.rows[i].values.front(), rows[i].quantity.index});
    }
  }
  return cells;
}

std::vector<Answer> Sizes(const std::vector<Cell>& cells, const RecordView& record) {
  std::vector<Answer> answers;
  for (const SoughtSize& size : SoughtSizes(record)) {
    // A table of one size shows it in the same row whichever group it is of.
    const int index = cells.size() > 1 ? size.index : 0;
    for (const Cell& cell : cells) {
      if (size.index == kEveryEffect) {
        answers.push_back(
            {size.field, cell.value, size.counts, EffectOf(record.table().family, cell.index)});
      } else if (cell.index == index) {
        answers.push_back({size.field, cell.value, size.counts, size.group});
      }
    }
  }
  return answers;
}

}  // namespace

std::vector<Answer> AnswersOf(const SummaryTable& table, PowerSettings& params) {
  const TableDefinition* definition = FindTableDefinition(table.code);
  if (definition == nullptr) {
    return {};
  }
  const std::vector<ShownRow> rows = ShownRows(*definition, params);
  const std::vector<Cell> sizes = CellsOf(table, rows, QuantityKind::Size);
  if (!sizes.empty()) {
    return Sizes(sizes, ViewOf(params, definition->family, Instance::Committed));
  }
  std::vector<Answer> answers;
  for (const Cell& cell : CellsOf(table, rows, QuantityKind::Power)) {
    answers.push_back({"Power", cell.value, "", EffectOf(definition->family, cell.index)});
  }
  return answers;
}

}  // namespace poweranalysis
