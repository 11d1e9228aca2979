#include "output/Reports.h"

// The paragraphs of every family's reports, in the order of emission.
namespace poweranalysis {

namespace {

constexpr unsigned kPower = static_cast<unsigned>(ReportKind::Power);
constexpr unsigned kSize = static_cast<unsigned>(ReportKind::Size);
constexpr unsigned kBoth = kPower | kSize;

constexpr Slot Real(const char* field) { return {SlotKind::Real, field, nullptr, 0}; }
constexpr Slot Whole(const char* field) { return {SlotKind::Whole, field, nullptr, 0}; }
constexpr Slot Difference(const char* field, const char* other) {
  return {SlotKind::Difference, field, other, 0};
}
constexpr Slot kGoal = {SlotKind::GoalPercent, nullptr, nullptr, 0};
constexpr Slot kPowerText = {SlotKind::PowerText, nullptr, nullptr, 0};
constexpr Slot kSizeText = {SlotKind::SizeText, nullptr, nullptr, 0};
constexpr Slot kSizeNumber = {SlotKind::SizeNumber, nullptr, nullptr, 0};
constexpr Slot PowerOf(int effect) { return {SlotKind::PowerText, nullptr, nullptr, effect}; }
constexpr Slot SizeOf(int effectOrGroup) {
  return {SlotKind::SizeText, nullptr, nullptr, effectOrGroup};
}
constexpr Slot VarianceOf(const char* effect) {
  return {SlotKind::EffectVariance, effect, "Sigma", 0};
}
constexpr Slot kModel = {SlotKind::ModelText, "ModelType", nullptr, 0};

template <class... Slots>
constexpr ReportRow Row(unsigned reports, TextId id, Slots... slots) {
  ReportRow row{reports, id, {}, 0, nullptr, 0, false};
  ((row.slots[static_cast<std::size_t>(row.slotCount++)] = slots), ...);
  return row;
}

constexpr ReportRow When(const char* field, int value, ReportRow row) {
  row.whenField = field;
  row.whenValue = value;
  return row;
}

constexpr ReportRow Unless(const char* field, int value, ReportRow row) {
  row = When(field, value, row);
  row.whenOther = true;
  return row;
}

constexpr ReportRow kTails = Row(kBoth, text::None);

constexpr ReportRow kT1[] = {
    Row(kPower, text::ReportT1PowerTitle),
    Row(kSize, text::ReportT1SizeTitle),
    Row(kBoth, text::ReportT1Goal, Real("Mu0")),
    Row(kBoth, text::ReportT1Test, Real("Alpha")),
    kTails,
    Row(kBoth, text::ReportT1Assumption, Real("Mu")),
    Row(kBoth, text::ReportT1Assumption2, Real("Sigma")),
    Row(kPower, text::ReportT1PowerResult, Whole("SampleSize"), kPowerText),
    Row(kSize, text::ReportT1SizeResult, kGoal, kSizeText, kSizeText, kPowerText),
};

constexpr ReportRow kT2[] = {
    Row(kPower, text::ReportT2PowerTitle),
    Row(kSize, text::ReportT2SizeTitle),
    Row(kBoth, text::ReportT2Goal),
    Row(kBoth, text::ReportT2Test, Real("Alpha")),
    kTails,
    Row(kBoth, text::ReportT2Assumption, Difference("Mu1", "Mu2")),
    Row(kBoth, text::ReportT2Assumption2, Real("Sigma")),
    Row(kPower,
        text::ReportT2PowerResult,
        Whole("SampleSizeN1"),
        Whole("SampleSizeN2"),
        kPowerText),
    When("NToVary", 0, Row(kSize, text::ReportT2SizeResultNToVary0, kGoal, kSizeText)),
    When("NToVary", 0, Row(kSize, text::ReportT2SizeResultNToVary02, kSizeText, kPowerText)),
    When("NToVary",
         1,
         Row(kSize,
             text::ReportT2SizeResultNToVary1,
             kGoal,
             Whole("SampleSizeN2"),
             kSizeNumber,
             kSizeText,
             Whole("SampleSizeN2"),
             kPowerText)),
    When("NToVary",
         2,
         Row(kSize,
             text::ReportT2SizeResultNToVary2,
             kGoal,
             Whole("SampleSizeN1"),
             kSizeNumber,
             Whole("SampleSizeN1"),
             kSizeText,
             kPowerText)),
};

constexpr ReportRow kT3[] = {
    Row(kPower, text::ReportT3PowerTitle),
    Row(kSize, text::ReportT3SizeTitle),
    Row(kBoth, text::ReportT3Goal),
    Row(kBoth, text::ReportT3Test, Real("Alpha")),
    kTails,
    Row(kBoth, text::ReportT3Assumption, Difference("Mu1", "Mu2")),
    Row(kBoth, text::ReportT3Assumption2, Real("Sigma1")),
    Row(kBoth, text::ReportT3Assumption3, Real("Sigma2"), Real("BetweenGroupR")),
    Row(kPower, text::ReportT3PowerResult, Whole("SampleSize"), kPowerText),
    Row(kSize, text::ReportT3SizeResult, kGoal, kSizeText),
    Row(kSize, text::ReportT3SizeResult2, kSizeText, kPowerText),
};

constexpr ReportRow kPC[] = {
    Row(kPower, text::ReportPCPowerTitle),
    Row(kSize, text::ReportPCSizeTitle),
    Row(kBoth, text::ReportPCGoal, Whole("NumberOfGroups")),
    Row(kBoth, text::ReportPCTest, Real("Alpha")),
    Row(kBoth, text::ReportPCAssumption, Real("StandardizedEffect")),
    Row(kPower, text::ReportPCPowerResult, Whole("SampleSize"), kPowerText),
    Row(kSize, text::ReportPCSizeResult, kGoal, kSizeText),
    Row(kSize, text::ReportPCSizeResult2, kSizeText, kPowerText),
};

constexpr ReportRow kAV1[] = {
    Row(kPower, text::ReportAV1PowerTitle, kModel),
    Row(kSize, text::ReportAV1SizeTitle, kModel),
    Row(kBoth, text::ReportAV1Goal, Whole("NumberOfGroups")),
    Row(kBoth, text::ReportAV1Test, kModel, Real("Alpha")),
    Row(kBoth, text::ReportAV1Assumption, Real("RMSSE")),
    Row(kPower, text::ReportAV1PowerResult, Whole("N"), kPowerText),
    Row(kSize, text::ReportAV1SizeResult, kGoal, kSizeText),
    Row(kSize, text::ReportAV1SizeResult2, kSizeText, kPowerText),
};

constexpr ReportRow kAV2[] = {
    Row(kPower, text::ReportAV2PowerTitle, Whole("Rows"), Whole("Columns")),
    Row(kSize, text::ReportAV2SizeTitle, Whole("Rows"), Whole("Columns")),
    Row(kBoth, text::ReportAV2Goal, Whole("Rows"), Whole("Columns")),
    Row(kBoth, text::ReportAV2Test, Real("Alpha"), Real("Sigma")),
    Row(kBoth, text::ReportAV2Assumption, VarianceOf("RMSSE_Row"), Real("RMSSE_Row")),
    Row(kBoth, text::ReportAV2Assumption2, VarianceOf("RMSSE_Col"), Real("RMSSE_Col")),
    Row(kBoth, text::ReportAV2Assumption3, Real("RMSSE_Int")),
    Row(kPower, text::ReportAV2PowerResult, Whole("N")),
    Row(kPower, text::ReportAV2PowerResult2, PowerOf(0)),
    Row(kPower, text::ReportAV2PowerResult3, PowerOf(1)),
    Row(kPower, text::ReportAV2PowerResult4, PowerOf(2)),
    Row(kSize, text::ReportAV2SizeResult, kGoal),
    Row(kSize, text::ReportAV2SizeResult2, SizeOf(0), PowerOf(0)),
    Row(kSize, text::ReportAV2SizeResult3, SizeOf(1), PowerOf(1)),
    Row(kSize, text::ReportAV2SizeResult4, SizeOf(2), PowerOf(2)),
};

constexpr ReportRow kV1[] = {
    Row(kPower, text::ReportV1PowerTitle),
    Row(kSize, text::ReportV1SizeTitle),
    Row(kBoth, text::ReportV1Goal, Real("NullHypothesizedVariance")),
    Row(kBoth, text::ReportV1Test, Real("Alpha")),
    kTails,
    Row(kBoth, text::ReportV1Assumption, Real("PopulationVariance")),
    Row(kPower, text::ReportV1PowerResult, Whole("DegreesOfFreedom"), kPowerText),
    Row(kSize, text::ReportV1SizeResult, kGoal, kSizeText),
    Row(kSize, text::ReportV1SizeResult2, kSizeText, kPowerText),
};

constexpr ReportRow kV2[] = {
    Row(kPower, text::ReportV2PowerTitle),
    Row(kSize, text::ReportV2SizeTitle),
    Row(kBoth, text::ReportV2Goal),
    Row(kBoth, text::ReportV2Test, Real("Alpha")),
    kTails,
    Row(kPower, text::ReportV2PowerAssumption, Real("Var1"), Real("Var2")),
    Row(kSize, text::ReportV2SizeAssumption, Real("Ratio")),
    Row(kPower, text::ReportV2PowerResult, Whole("Df1"), Whole("Df2"), kPowerText),
    When("DfToVary", 0, Row(kSize, text::ReportV2SizeResultDfToVary0, kGoal, kSizeText)),
    When("DfToVary", 0, Row(kSize, text::ReportV2SizeResultDfToVary02, kSizeText, kPowerText)),
    When("DfToVary",
         1,
         Row(kSize,
             text::ReportV2SizeResultDfToVary1,
             kGoal,
             Whole("Df2"),
             kSizeText,
             kSizeText,
             Whole("Df2"),
             kPowerText)),
    When("DfToVary",
         2,
         Row(kSize,
             text::ReportV2SizeResultDfToVary2,
             kGoal,
             Whole("Df1"),
             SizeOf(1),
             Whole("Df1"),
             SizeOf(1),
             kPowerText)),
};

constexpr ReportRow kR[] = {
    Row(kPower, text::ReportRPowerTitle),
    Row(kSize, text::ReportRSizeTitle),
    Row(kBoth, text::ReportRGoal),
    Row(kBoth, text::ReportRTest, Real("Alpha")),
    kTails,
    Row(kBoth, text::ReportRAssumption, Real("Rho")),
    Row(kPower, text::ReportRPowerResult, Whole("SampleSize"), kPowerText),
    Row(kSize, text::ReportRSizeResult, kGoal, kSizeText),
    Row(kSize, text::ReportRSizeResult2, kSizeText, kPowerText),
};

constexpr ReportRow kZ2R[] = {
    Row(kPower, text::ReportZ2RPowerTitle),
    Row(kSize, text::ReportZ2RSizeTitle),
    Row(kBoth, text::ReportZ2RGoal),
    Row(kBoth, text::ReportZ2RTest, Real("Alpha")),
    kTails,
    Row(kBoth, text::ReportZ2RAssumption, Real("Rho1"), Real("Rho2")),
    Row(kPower,
        text::ReportZ2RPowerResult,
        Whole("SampleSizeN1"),
        Whole("SampleSizeN2"),
        kPowerText),
    When("NToVary", 0, Row(kSize, text::ReportZ2RSizeResultNToVary0, kGoal, kSizeText)),
    When("NToVary", 0, Row(kSize, text::ReportZ2RSizeResultNToVary02, kSizeText, kPowerText)),
    When("NToVary",
         1,
         Row(kSize,
             text::ReportZ2RSizeResultNToVary1,
             kGoal,
             Whole("SampleSizeN2"),
             kSizeText,
             kSizeText,
             Whole("SampleSizeN2"),
             kPowerText)),
    When("NToVary",
         2,
         Row(kSize,
             text::ReportZ2RSizeResultNToVary2,
             kGoal,
             Whole("SampleSizeN1"),
             SizeOf(1),
             Whole("SampleSizeN1"),
             SizeOf(1),
             kPowerText)),
};

constexpr ReportRow kR2[] = {
    Row(kPower, text::ReportR2PowerTitle),
    Row(kSize, text::ReportR2SizeTitle),
    Row(kBoth, text::ReportR2Goal, Real("R2Null")),
    When("H0Type", 3, Row(kBoth, text::ReportR2StandardTest, Real("Alpha"))),
    Unless("H0Type", 3, Row(kBoth, text::ReportR2ExactTest, Real("Alpha"))),
    kTails,
    Row(kBoth, text::ReportR2Test, Real("PopulationR2")),
    Row(kBoth, text::ReportR2Assumption, Whole("TotalNumberOfVars")),
    Row(kPower, text::ReportR2PowerResult, Whole("SampleSize"), kPowerText),
    Row(kSize, text::ReportR2SizeResult, kGoal, kSizeText, kSizeText, kPowerText),
};

constexpr ReportRow kP1[] = {
    Row(kPower, text::ReportP1PowerTitle),
    Row(kSize, text::ReportP1SizeTitle),
    Row(kBoth, text::ReportP1Goal),
    Row(kBoth, text::ReportP1Test, Real("Alpha")),
    kTails,
    Row(kBoth, text::ReportP1Assumption, Real("Pi"), Real("Pi0")),
    Row(kPower, text::ReportP1PowerResult, Whole("SampleSize"), kPowerText),
    Row(kSize, text::ReportP1SizeResult, kGoal, kSizeText),
    Row(kSize, text::ReportP1SizeResult2, kSizeText, kPowerText),
};

constexpr ReportRow kP2[] = {
    Row(kPower, text::ReportP2PowerTitle),
    Row(kSize, text::ReportP2SizeTitle),
    Row(kBoth, text::ReportP2Goal),
    Row(kBoth, text::ReportP2Test, Real("Alpha")),
    kTails,
    Row(kBoth, text::ReportP2Assumption, Real("Pi1"), Real("Pi2")),
    Row(kPower,
        text::ReportP2PowerResult,
        Whole("SampleSizeN1"),
        Whole("SampleSizeN2"),
        kPowerText),
    When("NToVary", 0, Row(kSize, text::ReportP2SizeResultNToVary0, kGoal, kSizeText)),
    When("NToVary", 0, Row(kSize, text::ReportP2SizeResultNToVary02, kSizeText, kPowerText)),
    When("NToVary",
         1,
         Row(kSize,
             text::ReportP2SizeResultNToVary1,
             kGoal,
             Whole("SampleSizeN2"),
             kSizeText,
             kSizeText,
             Whole("SampleSizeN2"),
             kPowerText)),
    When("NToVary",
         2,
         Row(kSize,
             text::ReportP2SizeResultNToVary2,
             kGoal,
             Whole("SampleSizeN1"),
             SizeOf(1),
             Whole("SampleSizeN1"),
             SizeOf(1),
             kPowerText)),
    When("NToVary",
         3,
         Row(kSize,
             text::ReportP2SizeResultNToVary3,
             kGoal,
             Real("Ratio"),
             kSizeText,
             SizeOf(1),
             kSizeText,
             SizeOf(1),
             kPowerText)),
};

constexpr ReportRow kQMAC[] = {
    Row(kPower, text::ReportQMACPowerTitle),
    Row(kSize, text::ReportQMACSizeTitle),
    Row(kBoth, text::ReportQMACGoal),
    Row(kBoth, text::ReportQMACTest, Real("Alpha")),
    kTails,
    Row(kBoth, text::ReportQMACAssumption),
    Row(kBoth, text::ReportQMACAssumption2, Real("Eta"), Real("Delta")),
    Row(kPower, text::ReportQMACPowerResult, Whole("SampleSize"), kPowerText),
    Row(kSize, text::ReportQMACSizeResult, kGoal, kSizeText, kSizeText, kPowerText),
};

constexpr ReportRow kSA1[] = {
    Row(kPower, text::ReportSA1PowerTitle),
    Row(kSize, text::ReportSA1SizeTitle),
    Row(kBoth, text::ReportSA1Goal),
    Row(kBoth, text::ReportSA1Test, Real("Alpha")),
    kTails,
    Row(kBoth, text::ReportSA1Assumption, Real("Pi1"), Real("Pi2")),
    Row(kPower, text::ReportSA1PowerResult, Whole("SampleSize"), kPowerText),
    Row(kSize, text::ReportSA1SizeResult, kGoal, kSizeText),
    Row(kSize, text::ReportSA1SizeResult2, kSizeText, kPowerText),
};

constexpr ReportRow kSA2[] = {
    Row(kPower, text::ReportSA2PowerTitle),
    Row(kSize, text::ReportSA2SizeTitle),
    Row(kBoth, text::ReportSA2Goal),
    Row(kBoth, text::ReportSA2Test, Real("Alpha")),
    kTails,
    Row(kBoth, text::ReportSA2Assumption, Real("Lambda1"), Real("Lambda2")),
    Row(kBoth, text::ReportSA2Assumption2, Whole("T0"), Whole("T")),
    Row(kPower, text::ReportSA2PowerResult, Whole("SampleSize"), kPowerText),
    Row(kSize, text::ReportSA2SizeResult, kGoal, kSizeText),
    Row(kSize, text::ReportSA2SizeResult2, kSizeText, kPowerText),
};

constexpr ReportRow kSA3[] = {
    Row(kPower, text::ReportSA3PowerTitle),
    Row(kSize, text::ReportSA3SizeTitle),
    Row(kBoth, text::ReportSA3Goal),
    Row(kBoth, text::ReportSA3Test, Real("Alpha")),
    kTails,
    Row(kBoth, text::ReportSA3Assumption, Real("Lambda1"), Real("Lambda2")),
    Row(kBoth, text::ReportSA3Assumption2, Real("D"), Whole("T0"), Whole("T")),
    Row(kPower, text::ReportSA3PowerResult, Whole("SampleSize"), kPowerText),
    Row(kSize, text::ReportSA3SizeResult, kGoal, kSizeText),
    Row(kSize, text::ReportSA3SizeResult2, kSizeText, kPowerText),
};

constexpr ReportRow kSEM[] = {
    Row(kPower, text::ReportSEMPowerTitle),
    Row(kSize, text::ReportSEMSizeTitle),
    Row(kBoth, text::ReportSEMGoal),
    Row(kBoth, text::ReportSEMTest, Real("Alpha")),
    kTails,
    Row(kBoth, text::ReportSEMAssumption, Real("R"), Real("R0"), Whole("DegreesOfFreedom")),
    Row(kPower, text::ReportSEMPowerResult, Whole("SampleSize"), kPowerText),
    Row(kSize, text::ReportSEMSizeResult, kGoal, kSizeText),
    Row(kSize, text::ReportSEMSizeResult2, kSizeText, kPowerText),
};

struct FamilyReport {
  Family family;
  std::span<const ReportRow> rows;
};

constexpr FamilyReport kReports[] = {
    {Family::T1, kT1},   {Family::T2, kT2},     {Family::T3, kT3},   {Family::PC, kPC},
    {Family::AV1, kAV1}, {Family::AV2, kAV2},   {Family::V1, kV1},   {Family::V2, kV2},
    {Family::R, kR},     {Family::Z2R, kZ2R},   {Family::R2, kR2},   {Family::P1, kP1},
    {Family::P2, kP2},   {Family::QMAC, kQMAC}, {Family::SA1, kSA1}, {Family::SA2, kSA2},
    {Family::SA3, kSA3}, {Family::SEM, kSEM},
};

}  // namespace

std::span<const ReportRow> ReportRows(Family family) {
  for (const FamilyReport& report : kReports) {
    if (report.family == family) {
      return report.rows;
    }
  }
  return {};
}

}  // namespace poweranalysis
