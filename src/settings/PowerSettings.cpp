#include "settings/PowerSettings.h"

#include <array>
#include <cstring>
#include <type_traits>

#include "settings/SettingsRemarks.h"

namespace poweranalysis {

PowerSettings* Block() { return static_cast<PowerSettings*>(Module().settings); }

namespace {

template <class Set>
void* RecordOf(Set& set, Instance instance) {
  switch (instance) {
    case Instance::Committed:
      return &set.Committed;
    case Instance::Defaults:
      return &set.Defaults;
    case Instance::Factory:
      return &set.Factory;
    case Instance::Working:
      return &set.Working;
    case Instance::Lower:
      return &set.Lower;
    case Instance::Upper:
      return &set.Upper;
    default:
      if constexpr (requires { set.GridScratch; }) {
        return &set.GridScratch;
      }
      return nullptr;
  }
}

// Built-in cells that give the built-in effect measures.

void SetBuiltInCells(AV1Params& record) {
  // RMSSE .25 at sigma 1.
  record.GridMeans = {-0.25, 0, 0.25};
  record.GridDeviations = {-0.25, 0, 0.25};
}

void SetBuiltInCells(PCParams& record) {
  // Sum of squared weights 6, Psi and Es .25 at sigma 1.
  record.GridMeans = {0.25, 0, 0};
  record.GridWeights = {1, 1, -2};
}

void SetBuiltInCells(AV2Params& record) {
  // Row and column effects (-.25, 0, .25) and an interaction whose RMSSE are .25 each.
  constexpr std::array<double, 3> kEffect = {-0.25, 0, 0.25};
  constexpr double kInteraction[3][3] = {{0.25, -0.25, 0}, {-0.25, 0.25, 0}, {0, 0, 0}};
  for (std::size_t i = 0; i < kEffect.size(); ++i) {
    for (std::size_t j = 0; j < kEffect.size(); ++j) {
      record.GridMeans[i][j] = kEffect[i] + kEffect[j] + kInteraction[i][j];
    }
  }
}

template <class Record>
void SetBuiltInCells(Record&) {}

enum class Column { Factory, Lower, Upper };

void FillFrom(const RecordView& record, Column column) {
  for (const Field& field : record.table().fields) {
    record.Set(field, column == Column::Factory ? field.factory
                      : column == Column::Lower ? field.lower
                                                : field.upper);
  }
}

template <class Set>
void FillSet(Set& set, Family family) {
  const FamilyTable& table = TableOf(family);
  set = {};
  FillFrom({table, &set.Factory}, Column::Factory);
  SetBuiltInCells(set.Factory);
  FillFrom({table, &set.Lower}, Column::Lower);
  FillFrom({table, &set.Upper}, Column::Upper);
  set.Working = set.Factory;
  set.Committed = set.Factory;
  set.Defaults = set.Factory;
  if constexpr (requires { set.GridScratch; }) {
    set.GridScratch = set.Factory;
  }
}

}  // namespace

RecordView ViewOf(PowerSettings& block, Family family, Instance instance) {
  const FamilyTable& table = TableOf(family);
  switch (family) {
#define POWERANALYSIS_VIEW(name, section, cells) \
  case Family::name:                             \
    return {table, RecordOf(block.name, instance)};
    POWERANALYSIS_FAMILIES(POWERANALYSIS_VIEW)
#undef POWERANALYSIS_VIEW
  }
  return {table, nullptr};
}

void LoadAllDefaults(PowerSettings& block) {
#define POWERANALYSIS_FILL(name, section, cells) FillSet(block.name, Family::name);
  POWERANALYSIS_FAMILIES(POWERANALYSIS_FILL)
#undef POWERANALYSIS_FILL

  block.CurrentFile = LoadText(text::NewSettingsFile);
  block.DefaultFile = LoadText(text::DefaultSettingsFile);
  block.FileNamed = 0;

#define POWERANALYSIS_READ(family) Family::family,
  constexpr Family kReadingOrder[] = {POWERANALYSIS_READING_ORDER(POWERANALYSIS_READ)};
#undef POWERANALYSIS_READ
  for (const Family family : kReadingOrder) {
    ReadSettings(FillKeys(block, family), block.DefaultFile);
    const RecordView working = ViewOf(block, family, Instance::Working);
    ViewOf(block, family, Instance::Committed).CopyFrom(working);
    ViewOf(block, family, Instance::Defaults).CopyFrom(working);
  }
  ShowRemarks(nullptr, RemarksOnDefaults(block));
}

KeyTable FillKeys(PowerSettings& block, Family family) {
  const FamilyTable& table = TableOf(family);
  const RecordView factory = ViewOf(block, family, Instance::Factory);
  const RecordView working = ViewOf(block, family, Instance::Working);
  const RecordView lower = ViewOf(block, family, Instance::Lower);
  const RecordView upper = ViewOf(block, family, Instance::Upper);

  KeyTable keys{&table, {}};
  keys.entries.resize(table.fields.size());
  std::size_t keyed = 0;
  for (const Field& field : table.fields) {
    if (field.keyed()) {
      keys.entries[static_cast<std::size_t>(field.place)] = {
          &field, factory.address(field), working.address(field), lower.address(field),
          upper.address(field)};
      ++keyed;
    }
  }
  keys.entries.resize(keyed);
  return keys;
}

}  // namespace poweranalysis
