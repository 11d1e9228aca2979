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

template <class... Slots>
constexpr ReportRow Row(unsigned reports, TextId id, Slots... slots) {
  ReportRow row{reports, id, {}, 0, nullptr, 0};
  ((row.slots[static_cast<std::size_t>(row.slotCount++)] = slots), ...);
  return row;
}

constexpr ReportRow When(const char* field, int value, ReportRow row) {
  row.whenField = field;
  row.whenValue = value;
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

}  // namespace

std::span<const ReportRow> ReportRows(Family family) {
  switch (family) {
    case Family::T1:
      return kT1;
    case Family::T2:
      return kT2;
    case Family::T3:
      return kT3;
    default:
      return {};
  }
}

}  // namespace poweranalysis
