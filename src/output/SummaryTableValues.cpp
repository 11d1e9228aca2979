#include "output/Computed.h"

// The values of every summary table, in the order of its rows.
namespace poweranalysis {

namespace {

constexpr ValueRow Field(const char* name) { return {ValueKind::Field, name, 0}; }
constexpr ValueRow Of(ValueKind kind, int index = 0) { return {kind, nullptr, index}; }
constexpr ValueRow kEffect = Of(ValueKind::Effect);
constexpr ValueRow kSpread = Of(ValueKind::Spread);
constexpr ValueRow kErrorDf = Of(ValueKind::ErrorDf);
constexpr ValueRow kCritical = Of(ValueKind::Critical);
constexpr ValueRow kPower = Of(ValueKind::Power);
constexpr ValueRow kSize = Of(ValueKind::Size);
constexpr ValueRow kSecondSize = Of(ValueKind::Size, 1);
constexpr ValueRow kBlank = Of(ValueKind::Blank);

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

constexpr ValueRow kPCPower[] = {Field("NumberOfGroups"),      Field("SampleSize"),
                                 Field("StandardizedEffect"),  Field("Alpha"),
                                 Field("SumOfSquaredWeights"), kPower};
constexpr ValueRow kPCSize[] = {Field("NumberOfGroups"),
                                Field("StandardizedEffect"),
                                Field("Alpha"),
                                Field("SumOfSquaredWeights"),
                                Field("PowerGoal"),
                                kPower,
                                kSize};
constexpr ValueRow kAV1Power[] = {Field("NumberOfGroups"),
                                  Field("N"),
                                  Field("RMSSE"),
                                  Of(ValueKind::Noncentrality),
                                  Field("Alpha"),
                                  Of(ValueKind::EffectDf),
                                  kErrorDf,
                                  kCritical,
                                  kPower};
// The noncentrality is that of the N of the record, not of the required one.
constexpr ValueRow kAV1Size[] = {Field("NumberOfGroups"),
                                 Field("RMSSE"),
                                 Of(ValueKind::Noncentrality),
                                 Field("Alpha"),
                                 Field("PowerGoal"),
                                 kPower,
                                 kSize};
constexpr ValueRow kV1Power[] = {Field("DegreesOfFreedom"), Field("PopulationVariance"),
                                 Field("NullHypothesizedVariance"), Field("Alpha"), kPower};
// Kept: the two variances in the other order than in the power table.
constexpr ValueRow kV1Size[] = {Field("NullHypothesizedVariance"),
                                Field("PopulationVariance"),
                                Field("Alpha"),
                                Field("PowerGoal"),
                                kPower,
                                kSize};
constexpr ValueRow kV2Power[] = {Field("Df1"),  Field("Df2"),   Field("Var1"),
                                 Field("Var2"), Field("Alpha"), kPower};
// The second size is the required or the fixed Df2.
constexpr ValueRow kV2Size[] = {Field("Ratio"), Field("Alpha"), Field("PowerGoal"),
                                kPower,         kSize,          kSecondSize};
constexpr ValueRow kRPower[] = {Field("SampleSize"), Field("Rho0"), Field("Rho"), Field("Alpha"),
                                kPower};
constexpr ValueRow kRSize[] = {Field("Rho"), Field("Alpha"), Field("PowerGoal"), kPower, kSize};
constexpr ValueRow kR2Power[] = {Field("TotalNumberOfVars"), Field("SampleSize"), Field("R2Null"),
                                 Field("PopulationR2"),      Field("Alpha"),      kPower};
constexpr ValueRow kR2Size[] = {Field("TotalNumberOfVars"),
                                Field("R2Null"),
                                Field("PopulationR2"),
                                Field("Alpha"),
                                Field("PowerGoal"),
                                kPower,
                                kSize};
constexpr ValueRow kZ2RPower[] = {Field("Rho1"),         Field("Rho2"),  Field("SampleSizeN1"),
                                  Field("SampleSizeN2"), Field("Alpha"), kPower};
constexpr ValueRow kZ2RSize[] = {Field("Rho1"), Field("Rho2"), Field("Alpha"), Field("PowerGoal"),
                                 kPower,        kSize,         kSecondSize};
constexpr ValueRow kP1Power[] = {Field("SampleSize"),
                                 Field("Pi0"),
                                 Field("Pi"),
                                 Field("Alpha"),
                                 Of(ValueKind::ActualAlpha),
                                 Of(ValueKind::NormalPower),
                                 kPower};
constexpr ValueRow kP1Size[] = {Field("Pi0"),
                                Field("Pi"),
                                Field("Alpha"),
                                Of(ValueKind::ActualAlpha),
                                Field("PowerGoal"),
                                Of(ValueKind::NormalPower),
                                kPower,
                                kSize};
constexpr ValueRow kP2Power[] = {Field("Pi1"),          Field("Pi2"),   Field("SampleSizeN1"),
                                 Field("SampleSizeN2"), Field("Alpha"), kPower};
constexpr ValueRow kP2Size[] = {Field("Pi1"), Field("Pi2"), Field("Alpha"), Field("PowerGoal"),
                                kPower,       kSize,        kSecondSize};
constexpr ValueRow kQMACPower[] = {Field("Delta"), Field("Eta"), Field("SampleSize"),
                                   Field("Alpha"), kPower};
constexpr ValueRow kQMACSize[] = {Field("Delta"),     Field("Eta"), Field("Alpha"),
                                  Field("PowerGoal"), kPower,       kSize};
constexpr ValueRow kSA1Power[] = {Field("Pi1"), Field("Pi2"), Field("SampleSize"), Field("Alpha"),
                                  kPower};
constexpr ValueRow kSA1Size[] = {
    Field("Pi1"), Field("Pi2"),          Field("Alpha"), Field("PowerGoal"),
    kPower,       Of(ValueKind::Events), kSize};
constexpr ValueRow kSA2Power[] = {Field("Lambda1"),
                                  Field("Lambda2"),
                                  Field("SampleSize"),
                                  Field("T0"),
                                  Field("T"),
                                  Field("Alpha"),
                                  kPower};
constexpr ValueRow kSA2Size[] = {Field("Lambda1"), Field("Lambda2"),   Field("Alpha"), Field("T0"),
                                 Field("T"),       Field("PowerGoal"), kPower,         kSize};
constexpr ValueRow kSA3Power[] = {
    Field("Lambda1"), Field("Lambda2"), Field("D"),     Field("SampleSize"),
    Field("T0"),      Field("T"),       Field("Alpha"), kPower};
// Kept: the dropout rate stands third in the power table and sixth here.
constexpr ValueRow kSA3Size[] = {Field("Lambda1"),   Field("Lambda2"), Field("Alpha"),
                                 Field("T0"),        Field("T"),       Field("D"),
                                 Field("PowerGoal"), kPower,           kSize};
constexpr ValueRow kSEMPower[] = {Field("R"),          Field("R0"),    Field("DegreesOfFreedom"),
                                  Field("SampleSize"), Field("Alpha"), kPower};
// Kept: the degrees of freedom behind alpha, unlike in the power table.
constexpr ValueRow kSEMSize[] = {
    Field("R"),         Field("R0"), Field("Alpha"), Field("DegreesOfFreedom"),
    Field("PowerGoal"), kPower,      kSize};
constexpr ValueRow kAV2Power[] = {Field("Rows"),
                                  Field("Columns"),
                                  Field("N"),
                                  Field("Alpha"),
                                  kBlank,
                                  kBlank,
                                  Field("RMSSE_Row"),
                                  Of(ValueKind::EffectDf, 0),
                                  kErrorDf,
                                  Of(ValueKind::Critical, 0),
                                  Of(ValueKind::Power, 0),
                                  kBlank,
                                  kBlank,
                                  Field("RMSSE_Col"),
                                  Of(ValueKind::EffectDf, 1),
                                  kErrorDf,
                                  Of(ValueKind::Critical, 1),
                                  Of(ValueKind::Power, 1),
                                  kBlank,
                                  kBlank,
                                  Field("RMSSE_Int"),
                                  Of(ValueKind::EffectDf, 2),
                                  kErrorDf,
                                  Of(ValueKind::Critical, 2),
                                  Of(ValueKind::Power, 2)};
constexpr ValueRow kAV2Size[] = {
    Field("Rows"), Field("Columns"),   Field("Alpha"),          Field("PowerGoal"),     kBlank,
    kBlank,        Field("RMSSE_Row"), Of(ValueKind::Power, 0), Of(ValueKind::Size, 0), kBlank,
    kBlank,        Field("RMSSE_Col"), Of(ValueKind::Power, 1), Of(ValueKind::Size, 1), kBlank,
    kBlank,        Field("RMSSE_Int"), Of(ValueKind::Power, 2), Of(ValueKind::Size, 2)};

struct TableRows {
  int code;
  std::span<const ValueRow> rows;
};

constexpr TableRows kTables[] = {
    {0, kT1Power},    {1, kT1Size},     {16, kT2Power},   {17, kT2Size},    {32, kT3Power},
    {33, kT3Size},    {48, kPCPower},   {49, kPCSize},    {80, kAV1Power},  {81, kAV1Size},
    {112, kV1Power},  {113, kV1Size},   {128, kV2Power},  {129, kV2Size},   {144, kRPower},
    {145, kRSize},    {160, kR2Power},  {161, kR2Size},   {176, kZ2RPower}, {177, kZ2RSize},
    {193, kP1Power},  {194, kP1Size},   {209, kP2Power},  {210, kP2Size},   {225, kQMACPower},
    {226, kQMACSize}, {241, kSA1Power}, {242, kSA1Size},  {257, kSA2Power}, {258, kSA2Size},
    {513, kSA3Power}, {514, kSA3Size},  {769, kSEMPower}, {770, kSEMSize},  {1025, kAV2Power},
    {1026, kAV2Size},
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
    case ValueKind::Noncentrality:
      return computed.noncentrality;
    case ValueKind::EffectDf:
      return computed.effectDf[index];
    case ValueKind::ErrorDf:
      return computed.errorDf;
    case ValueKind::ActualAlpha:
      return computed.actualAlpha;
    case ValueKind::NormalPower:
      return computed.normalPower;
    case ValueKind::Events:
      return computed.events;
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
