#include "output/Computed.h"

// The values of every summary table, in the order of its rows.
namespace poweranalysis {

namespace {

constexpr ValueRow Field(const char* name) { return {ValueKind::Field, name, 0}; }
constexpr ValueRow kEffect = {ValueKind::Effect, nullptr, 0};
constexpr ValueRow kSpread = {ValueKind::Spread, nullptr, 0};
constexpr ValueRow kCritical = {ValueKind::Critical, nullptr, 0};
constexpr ValueRow kPower = {ValueKind::Power, nullptr, 0};
constexpr ValueRow kSize = {ValueKind::Size, nullptr, 0};

constexpr ValueRow kT1Power[] = {Field("Mu0"),        Field("Mu"),    Field("Sigma"), kEffect,
                                 Field("SampleSize"), Field("Alpha"), kCritical,      kPower};
// Kept: the required size of one mean shows no critical value, unlike its two neighbours.
constexpr ValueRow kT1Size[] = {Field("Mu0"),   Field("Mu"),        Field("Sigma"), kEffect,
                                Field("Alpha"), Field("PowerGoal"), kPower,         kSize};
constexpr ValueRow kT2Power[] = {
    Field("Mu1"),          Field("Mu2"),   Field("Sigma"), kEffect, Field("SampleSizeN1"),
    Field("SampleSizeN2"), Field("Alpha"), kCritical,      kPower};
constexpr ValueRow kT2Size[] = {Field("Mu1"),   Field("Mu2"), Field("Sigma"),     kEffect,
                                Field("Alpha"), kCritical,    Field("PowerGoal"), kPower,
                                kSize};
constexpr ValueRow kT3Power[] = {
    Field("Mu1"),           Field("Mu2"), Field("Sigma1"), Field("Sigma2"),
    Field("BetweenGroupR"), kSpread,      kEffect,         Field("SampleSize"),
    Field("Alpha"),         kCritical,    kPower};
constexpr ValueRow kT3Size[] = {
    Field("Mu1"), Field("Mu2"), Field("Sigma1"), Field("Sigma2"), Field("BetweenGroupR"),
    kSpread,      kEffect,      Field("Alpha"),  kCritical,       Field("PowerGoal"),
    kPower,       kSize};

struct TableRows {
  int code;
  std::span<const ValueRow> rows;
};

constexpr TableRows kTables[] = {
    {0, kT1Power}, {1, kT1Size}, {16, kT2Power}, {17, kT2Size}, {32, kT3Power}, {33, kT3Size},
};

}  // namespace

std::span<const ValueRow> TableValueRows(int code) {
  for (const TableRows& table : kTables) {
    if (table.code == code) {
      return table.rows;
    }
  }
  return {};
}

namespace {

double ValueOf(const ValueRow& row, const RecordView& record, const Computed& computed) {
  const auto index = static_cast<std::size_t>(row.index);
  switch (row.kind) {
    case ValueKind::Field:
      return record.Get(*record.table().Find(row.field));
    case ValueKind::Effect:
      return computed.effect;
    case ValueKind::Spread:
      return computed.spread;
    case ValueKind::Critical:
      return computed.critical[index];
    case ValueKind::Power:
      return computed.power[index];
    case ValueKind::Size:
      return static_cast<double>(computed.size[index]);
    default:
      return Computed::kFailed;
  }
}

}  // namespace

std::vector<double> TableValues(std::span<const ValueRow> rows,
                                const RecordView& record,
                                const Computed& computed) {
  std::vector<double> values;
  values.reserve(rows.size());
  for (const ValueRow& row : rows) {
    values.push_back(ValueOf(row, record, computed));
  }
  return values;
}

}  // namespace poweranalysis
