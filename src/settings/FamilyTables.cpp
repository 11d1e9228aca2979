#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <iterator>
#include <limits>

#include "host/Utf8.h"
#include "settings/PowerSettings.h"

namespace poweranalysis {

namespace {

// What an unkeyed field's Lower and Upper hold. Kept: a number, which no check reads.
constexpr double kNoBound = -9999;

constexpr FieldType TypeOf(i16) { return FieldType::Int16; }
constexpr FieldType TypeOf(i32) { return FieldType::Int32; }
constexpr FieldType TypeOf(f64) { return FieldType::Real; }

// Where a field's usual meaning would not say what a family counts.
struct FieldMeaning {
  std::string_view family;
  std::string_view field;
  TextId meaning;
};
constexpr FieldMeaning kMeanings[] = {
    {"R", "Algorithm", text::MeaningAlgorithmOfCorrelation},
    {"Z2R", "Algorithm", text::MeaningAlgorithmOfFisherZ},
    {"R2", "Algorithm", text::MeaningAlgorithmOfR2},
    {"P1", "Algorithm", text::MeaningAlgorithmOfProportion},
    {"PC", "SampleSize", text::MeaningSampleSizePerGroup},
    {"SA1", "SampleSize", text::MeaningSampleSizePerGroup},
    {"SA2", "SampleSize", text::MeaningSampleSizePerGroup},
    {"SA3", "SampleSize", text::MeaningSampleSizePerGroup},
    {"T3", "SampleSize", text::MeaningSampleSizePairs},
    {"QMAC", "SampleSize", text::MeaningSampleSizePairs},
    {"R", "SampleSize", text::MeaningSampleSizePairs},
    {"R2", "SampleSize", text::MeaningSampleSizeInAll},
    {"SEM", "SampleSize", text::MeaningSampleSizeInAll},
    {"AV1", "N", text::MeaningNOfGroup},
    {"AV2", "N", text::MeaningNOfCell},
    {"QMAC", "Delta", text::MeaningDeltaOfPairs},
    {"V1", "DegreesOfFreedom", text::MeaningDegreesOfFreedomOfVariance},
    {"SEM", "DegreesOfFreedom", text::MeaningDegreesOfFreedomOfModel},
    {"V2", "Df1", text::MeaningDf1OfVariance},
    {"V2", "Df2", text::MeaningDf2OfVariance},
    {"R2", "TotalNumberOfVars", text::MeaningTotalNumberOfVarsOfRegression},
};

constexpr TextId MeaningOf(std::string_view family, std::string_view field, TextId usual) {
  for (const FieldMeaning& row : kMeanings) {
    if (row.family == family && row.field == field) {
      return row.meaning;
    }
  }
  return usual;
}

// A type in parentheses would be none.
// NOLINTBEGIN(bugprone-macro-parentheses)
#define POWERANALYSIS_KEYED_ROW(type, field, factory, lower, upper, form, place) \
  {#field,                                                                       \
   TypeOf(type{}),                                                               \
   offsetof(Record, field),                                                      \
   factory,                                                                      \
   lower,                                                                        \
   upper,                                                                        \
   RangeForm::form,                                                              \
   place,                                                                        \
   text::Key##field,                                                             \
   text::Label##field,                                                           \
   MeaningOf(kFamily, #field, text::Meaning##field)},
#define POWERANALYSIS_UNKEYED_ROW(type, field, factory) \
  {#field,                                              \
   TypeOf(type{}),                                      \
   offsetof(Record, field),                             \
   factory,                                             \
   kNoBound,                                            \
   kNoBound,                                            \
   RangeForm::Closed,                                   \
   -1,                                                  \
   text::None,                                          \
   text::None,                                          \
   text::None},
// NOLINTEND(bugprone-macro-parentheses)

template <class Record>
struct Fields;

#define POWERANALYSIS_FIELD_TABLE(family, section, cells)                                     \
  template <>                                                                                 \
  struct Fields<family##Params> {                                                             \
    using Record = family##Params;                                                            \
    static constexpr std::string_view kFamily = #family;                                      \
    static constexpr Field kRows[] = {                                                        \
        POWERANALYSIS_##family##_FIELDS(POWERANALYSIS_KEYED_ROW, POWERANALYSIS_UNKEYED_ROW)}; \
  };
POWERANALYSIS_FAMILIES(POWERANALYSIS_FIELD_TABLE)

constexpr FamilyTable kFamilies[] = {
#define POWERANALYSIS_FAMILY_ROW(family, section, cells) \
  {Family::family, #family, section, sizeof(family##Params), Fields<family##Params>::kRows},
    POWERANALYSIS_FAMILIES(POWERANALYSIS_FAMILY_ROW)
#undef POWERANALYSIS_FAMILY_ROW
};

}  // namespace

const Field* FamilyTable::Find(std::string_view name) const {
  const auto field = std::find_if(fields.begin(), fields.end(),
                                  [name](const Field& row) { return name == row.name; });
  return field == fields.end() ? nullptr : &*field;
}

std::span<const FamilyTable> FamilyTables() { return kFamilies; }

const FamilyTable& TableOf(Family family) { return kFamilies[static_cast<std::size_t>(family)]; }

const FamilyTable* FindFamily(std::string_view code) {
  const auto* family =
      std::find_if(std::begin(kFamilies), std::end(kFamilies),
                   [code](const FamilyTable& row) { return SameInAnyCase(code, row.code); });
  return family == std::end(kFamilies) ? nullptr : family;
}

void* RecordView::address(const Field& field) const {
  return static_cast<std::byte*>(record_) + field.offset;
}

namespace {

template <class T>
double Load(const void* address) {
  T value;
  std::memcpy(&value, address, sizeof value);
  return static_cast<double>(value);
}

// Held to 32 bits, and nothing for what is not a number.
std::int32_t WholeOf(double value) {
  constexpr double kLowest = std::numeric_limits<std::int32_t>::min();
  constexpr double kHighest = std::numeric_limits<std::int32_t>::max();
  return std::isnan(value) ? 0 : static_cast<std::int32_t>(std::clamp(value, kLowest, kHighest));
}

template <class T>
void Store(void* address, double value) {
  // Narrowed through the wider whole number, as a value read from a file is.
  const auto narrowed = static_cast<T>(WholeOf(value));
  std::memcpy(address, &narrowed, sizeof narrowed);
}

template <>
void Store<f64>(void* address, double value) {
  std::memcpy(address, &value, sizeof value);
}

}  // namespace

double RecordView::Get(const Field& field) const {
  switch (field.type) {
    case FieldType::Int16:
      return Load<i16>(address(field));
    case FieldType::Int32:
      return Load<i32>(address(field));
    default:
      return Load<f64>(address(field));
  }
}

void RecordView::Set(const Field& field, double value) const {
  switch (field.type) {
    case FieldType::Int16:
      return Store<i16>(address(field), value);
    case FieldType::Int32:
      return Store<i32>(address(field), value);
    default:
      return Store<f64>(address(field), value);
  }
}

void RecordView::CopyFrom(const RecordView& other) const {
  std::memcpy(record_, other.record_, table_->recordSize);
}

}  // namespace poweranalysis
