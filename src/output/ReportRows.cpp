#include "output/Reports.h"

// The paragraphs of every family's reports, in the order of emission.
namespace poweranalysis {

namespace {

constexpr unsigned kPower = static_cast<unsigned>(ReportKind::Power);
constexpr unsigned kSize = static_cast<unsigned>(ReportKind::Size);
constexpr unsigned kBoth = kPower | kSize;

using namespace quantity;  // NOLINT(google-build-using-namespace)

constexpr Quantity kGoal = Percent("PowerGoal");
constexpr ChosenText kModel = {"ModelType", {text::FixedEffects, text::RandomEffects}};

template <class... Slots>
constexpr ReportRow Row(unsigned reports, ChosenText text, Slots... slots) {
  ReportRow row{reports, text};
  ((row.slots[static_cast<std::size_t>(row.slotCount++)] = Slot(slots)), ...);
  return row;
}

constexpr ReportRow When(const char* field, int value, ReportRow row) {
  row.when = {field, value, value};
  return row;
}

constexpr ReportRow Unless(const char* field, int value, ReportRow row) {
  row.when = {field, value, value, true};
  return row;
}

constexpr ReportRow kTails = Row(kBoth, TailSentence);

constexpr ReportRow kT1[] = {
    Row(kPower, text::ReportT1PowerTitle),
    Row(kSize, text::ReportT1SizeTitle),
    Row(kBoth, text::ReportT1Goal, "Mu0"),
    Row(kBoth, text::ReportT1Test, "Alpha"),
    kTails,
    Row(kBoth, text::ReportT1Assumption, "Mu"),
    Row(kBoth, text::ReportT1Assumption2, "Sigma"),
    Row(kPower, text::ReportT1PowerResult, "SampleSize", Power()),
    Row(kSize, text::ReportT1SizeResult, kGoal, Size(), Size(), Power()),
};

constexpr ReportRow kT2[] = {
    Row(kPower, text::ReportT2PowerTitle),
    Row(kSize, text::ReportT2SizeTitle),
    Row(kBoth, text::ReportT2Goal),
    Row(kBoth, text::ReportT2Test, "Alpha"),
    kTails,
    Row(kBoth, text::ReportT2Assumption, Difference("Mu1", "Mu2")),
    Row(kBoth, text::ReportT2Assumption2, "Sigma"),
    Row(kPower, text::ReportT2PowerResult, "SampleSizeN1", "SampleSizeN2", Power()),
    When("NToVary", 0, Row(kSize, text::ReportT2SizeResultNToVary0, kGoal, Size())),
    When("NToVary", 0, Row(kSize, text::ReportT2SizeResultNToVary02, Size(), Power())),
    When("NToVary",
         1,
         Row(kSize,
             text::ReportT2SizeResultNToVary1,
             kGoal,
             "SampleSizeN2",
             Size(),
             Size(),
             "SampleSizeN2",
             Power())),
    When("NToVary",
         2,
         Row(kSize,
             text::ReportT2SizeResultNToVary2,
             kGoal,
             "SampleSizeN1",
             Size(),
             "SampleSizeN1",
             Size(),
             Power())),
};

constexpr ReportRow kT3[] = {
    Row(kPower, text::ReportT3PowerTitle),
    Row(kSize, text::ReportT3SizeTitle),
    Row(kBoth, text::ReportT3Goal),
    Row(kBoth, text::ReportT3Test, "Alpha"),
    kTails,
    Row(kBoth, text::ReportT3Assumption, Difference("Mu1", "Mu2")),
    Row(kBoth, text::ReportT3Assumption2, "Sigma1"),
    Row(kBoth, text::ReportT3Assumption3, "Sigma2", "BetweenGroupR"),
    Row(kPower, text::ReportT3PowerResult, "SampleSize", Power()),
    Row(kSize, text::ReportT3SizeResult, kGoal, Size()),
    Row(kSize, text::ReportT3SizeResult2, Size(), Power()),
};

constexpr ReportRow kPC[] = {
    Row(kPower, text::ReportPCPowerTitle),
    Row(kSize, text::ReportPCSizeTitle),
    Row(kBoth, text::ReportPCGoal, "NumberOfGroups"),
    Row(kBoth, text::ReportPCTest, "Alpha"),
    Row(kBoth, text::ReportPCAssumption, "StandardizedEffect"),
    Row(kPower, text::ReportPCPowerResult, "SampleSize", Power()),
    Row(kSize, text::ReportPCSizeResult, kGoal, Size()),
    Row(kSize, text::ReportPCSizeResult2, Size(), Power()),
};

constexpr ReportRow kAV1[] = {
    Row(kPower, text::ReportAV1PowerTitle, kModel),
    Row(kSize, text::ReportAV1SizeTitle, kModel),
    Row(kBoth, text::ReportAV1Goal, "NumberOfGroups"),
    Row(kBoth, text::ReportAV1Test, kModel, "Alpha"),
    Row(kBoth, text::ReportAV1Assumption, "RMSSE"),
    Row(kPower, text::ReportAV1PowerResult, "N", Power()),
    Row(kSize, text::ReportAV1SizeResult, kGoal, Size()),
    Row(kSize, text::ReportAV1SizeResult2, Size(), Power()),
};

constexpr ReportRow kAV2[] = {
    Row(kPower, text::ReportAV2PowerTitle, "Rows", "Columns"),
    Row(kSize, text::ReportAV2SizeTitle, "Rows", "Columns"),
    Row(kBoth, text::ReportAV2Goal, "Rows", "Columns"),
    Row(kBoth, text::ReportAV2Test, "Alpha", "Sigma"),
    Row(kBoth, text::ReportAV2Assumption, EffectVariance("RMSSE_Row", "Sigma"), "RMSSE_Row"),
    Row(kBoth, text::ReportAV2Assumption2, EffectVariance("RMSSE_Col", "Sigma"), "RMSSE_Col"),
    Row(kBoth, text::ReportAV2Assumption3, "RMSSE_Int"),
    Row(kPower, text::ReportAV2PowerResult, "N"),
    Row(kPower, text::ReportAV2PowerResult2, Power(0)),
    Row(kPower, text::ReportAV2PowerResult3, Power(1)),
    Row(kPower, text::ReportAV2PowerResult4, Power(2)),
    Row(kSize, text::ReportAV2SizeResult, kGoal),
    Row(kSize, text::ReportAV2SizeResult2, Size(0), Power(0)),
    Row(kSize, text::ReportAV2SizeResult3, Size(1), Power(1)),
    Row(kSize, text::ReportAV2SizeResult4, Size(2), Power(2)),
};

constexpr ReportRow kV1[] = {
    Row(kPower, text::ReportV1PowerTitle),
    Row(kSize, text::ReportV1SizeTitle),
    Row(kBoth, text::ReportV1Goal, "NullHypothesizedVariance"),
    Row(kBoth, text::ReportV1Test, "Alpha"),
    kTails,
    Row(kBoth, text::ReportV1Assumption, "PopulationVariance"),
    Row(kPower, text::ReportV1PowerResult, "DegreesOfFreedom", Power()),
    Row(kSize, text::ReportV1SizeResult, kGoal, Size()),
    Row(kSize, text::ReportV1SizeResult2, Size(), Power()),
};

constexpr ReportRow kV2[] = {
    Row(kPower, text::ReportV2PowerTitle),
    Row(kSize, text::ReportV2SizeTitle),
    Row(kBoth, text::ReportV2Goal),
    Row(kBoth, text::ReportV2Test, "Alpha"),
    kTails,
    Row(kPower, text::ReportV2PowerAssumption, "Var1", "Var2"),
    Row(kSize, text::ReportV2SizeAssumption, "Ratio"),
    Row(kPower, text::ReportV2PowerResult, "Df1", "Df2", Power()),
    When("DfToVary", 0, Row(kSize, text::ReportV2SizeResultDfToVary0, kGoal, Size())),
    When("DfToVary", 0, Row(kSize, text::ReportV2SizeResultDfToVary02, Size(), Power())),
    When("DfToVary",
         1,
         Row(kSize,
             text::ReportV2SizeResultDfToVary1,
             kGoal,
             "Df2",
             Size(),
             Size(),
             "Df2",
             Power())),
    When("DfToVary",
         2,
         Row(kSize,
             text::ReportV2SizeResultDfToVary2,
             kGoal,
             "Df1",
             Size(1),
             "Df1",
             Size(1),
             Power())),
};

constexpr ReportRow kR[] = {
    Row(kPower, text::ReportRPowerTitle),
    Row(kSize, text::ReportRSizeTitle),
    Row(kBoth, text::ReportRGoal),
    Row(kBoth, text::ReportRTest, "Alpha"),
    kTails,
    Row(kBoth, text::ReportRAssumption, "Rho"),
    Row(kPower, text::ReportRPowerResult, "SampleSize", Power()),
    Row(kSize, text::ReportRSizeResult, kGoal, Size()),
    Row(kSize, text::ReportRSizeResult2, Size(), Power()),
};

constexpr ReportRow kZ2R[] = {
    Row(kPower, text::ReportZ2RPowerTitle),
    Row(kSize, text::ReportZ2RSizeTitle),
    Row(kBoth, text::ReportZ2RGoal),
    Row(kBoth, text::ReportZ2RTest, "Alpha"),
    kTails,
    Row(kBoth, text::ReportZ2RAssumption, "Rho1", "Rho2"),
    Row(kPower, text::ReportZ2RPowerResult, "SampleSizeN1", "SampleSizeN2", Power()),
    When("NToVary", 0, Row(kSize, text::ReportZ2RSizeResultNToVary0, kGoal, Size())),
    When("NToVary", 0, Row(kSize, text::ReportZ2RSizeResultNToVary02, Size(), Power())),
    When("NToVary",
         1,
         Row(kSize,
             text::ReportZ2RSizeResultNToVary1,
             kGoal,
             "SampleSizeN2",
             Size(),
             Size(),
             "SampleSizeN2",
             Power())),
    When("NToVary",
         2,
         Row(kSize,
             text::ReportZ2RSizeResultNToVary2,
             kGoal,
             "SampleSizeN1",
             Size(1),
             "SampleSizeN1",
             Size(1),
             Power())),
};

constexpr ReportRow kR2[] = {
    Row(kPower, text::ReportR2PowerTitle),
    Row(kSize, text::ReportR2SizeTitle),
    Row(kBoth, text::ReportR2Goal, "R2Null"),
    When("H0Type", 3, Row(kBoth, text::ReportR2StandardTest, "Alpha")),
    Unless("H0Type", 3, Row(kBoth, text::ReportR2ExactTest, "Alpha")),
    kTails,
    Row(kBoth, text::ReportR2Test, "PopulationR2"),
    Row(kBoth, text::ReportR2Assumption, "TotalNumberOfVars"),
    Row(kPower, text::ReportR2PowerResult, "SampleSize", Power()),
    Row(kSize, text::ReportR2SizeResult, kGoal, Size(), Size(), Power()),
};

constexpr ReportRow kP1[] = {
    Row(kPower, text::ReportP1PowerTitle),
    Row(kSize, text::ReportP1SizeTitle),
    Row(kBoth, text::ReportP1Goal),
    Row(kBoth, text::ReportP1Test, "Alpha"),
    kTails,
    Row(kBoth, text::ReportP1Assumption, "Pi", "Pi0"),
    Row(kPower, text::ReportP1PowerResult, "SampleSize", Power()),
    Row(kSize, text::ReportP1SizeResult, kGoal, Size()),
    Row(kSize, text::ReportP1SizeResult2, Size(), Power()),
};

constexpr ReportRow kP2[] = {
    Row(kPower, text::ReportP2PowerTitle),
    Row(kSize, text::ReportP2SizeTitle),
    Row(kBoth, text::ReportP2Goal),
    Row(kBoth, text::ReportP2Test, "Alpha"),
    kTails,
    Row(kBoth, text::ReportP2Assumption, "Pi1", "Pi2"),
    Row(kPower, text::ReportP2PowerResult, "SampleSizeN1", "SampleSizeN2", Power()),
    When("NToVary", 0, Row(kSize, text::ReportP2SizeResultNToVary0, kGoal, Size())),
    When("NToVary", 0, Row(kSize, text::ReportP2SizeResultNToVary02, Size(), Power())),
    When("NToVary",
         1,
         Row(kSize,
             text::ReportP2SizeResultNToVary1,
             kGoal,
             "SampleSizeN2",
             Size(),
             Size(),
             "SampleSizeN2",
             Power())),
    When("NToVary",
         2,
         Row(kSize,
             text::ReportP2SizeResultNToVary2,
             kGoal,
             "SampleSizeN1",
             Size(1),
             "SampleSizeN1",
             Size(1),
             Power())),
    When("NToVary",
         3,
         Row(kSize,
             text::ReportP2SizeResultNToVary3,
             kGoal,
             "Ratio",
             Size(),
             Size(1),
             Size(),
             Size(1),
             Power())),
};

constexpr ReportRow kQMAC[] = {
    Row(kPower, text::ReportQMACPowerTitle),
    Row(kSize, text::ReportQMACSizeTitle),
    Row(kBoth, text::ReportQMACGoal),
    Row(kBoth, text::ReportQMACTest, "Alpha"),
    kTails,
    Row(kBoth, text::ReportQMACAssumption),
    Row(kBoth, text::ReportQMACAssumption2, "Eta", "Delta"),
    Row(kPower, text::ReportQMACPowerResult, "SampleSize", Power()),
    Row(kSize, text::ReportQMACSizeResult, kGoal, Size(), Size(), Power()),
};

constexpr ReportRow kSA1[] = {
    Row(kPower, text::ReportSA1PowerTitle),
    Row(kSize, text::ReportSA1SizeTitle),
    Row(kBoth, text::ReportSA1Goal),
    Row(kBoth, text::ReportSA1Test, "Alpha"),
    kTails,
    Row(kBoth, text::ReportSA1Assumption, "Pi1", "Pi2"),
    Row(kPower, text::ReportSA1PowerResult, "SampleSize", Power()),
    Row(kSize, text::ReportSA1SizeResult, kGoal, Size()),
    Row(kSize, text::ReportSA1SizeResult2, Size(), Power()),
};

constexpr ReportRow kSA2[] = {
    Row(kPower, text::ReportSA2PowerTitle),
    Row(kSize, text::ReportSA2SizeTitle),
    Row(kBoth, text::ReportSA2Goal),
    Row(kBoth, text::ReportSA2Test, "Alpha"),
    kTails,
    Row(kBoth, text::ReportSA2Assumption, "Lambda1", "Lambda2"),
    Row(kBoth, text::ReportSA2Assumption2, "T0", "T"),
    Row(kPower, text::ReportSA2PowerResult, "SampleSize", Power()),
    Row(kSize, text::ReportSA2SizeResult, kGoal, Size()),
    Row(kSize, text::ReportSA2SizeResult2, Size(), Power()),
};

constexpr ReportRow kSA3[] = {
    Row(kPower, text::ReportSA3PowerTitle),
    Row(kSize, text::ReportSA3SizeTitle),
    Row(kBoth, text::ReportSA3Goal),
    Row(kBoth, text::ReportSA3Test, "Alpha"),
    kTails,
    Row(kBoth, text::ReportSA3Assumption, "Lambda1", "Lambda2"),
    Row(kBoth, text::ReportSA3Assumption2, "D", "T0", "T"),
    Row(kPower, text::ReportSA3PowerResult, "SampleSize", Power()),
    Row(kSize, text::ReportSA3SizeResult, kGoal, Size()),
    Row(kSize, text::ReportSA3SizeResult2, Size(), Power()),
};

constexpr ReportRow kSEM[] = {
    Row(kPower, text::ReportSEMPowerTitle),
    Row(kSize, text::ReportSEMSizeTitle),
    Row(kBoth, text::ReportSEMGoal),
    Row(kBoth, text::ReportSEMTest, "Alpha"),
    kTails,
    Row(kBoth, text::ReportSEMAssumption, "R", "R0", "DegreesOfFreedom"),
    Row(kPower, text::ReportSEMPowerResult, "SampleSize", Power()),
    Row(kSize, text::ReportSEMSizeResult, kGoal, Size()),
    Row(kSize, text::ReportSEMSizeResult2, Size(), Power()),
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
