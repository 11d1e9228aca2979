#include "output/Reports.h"

#include <vector>

namespace poweranalysis {

namespace {

constexpr double kFailedPower = -9999.0;
constexpr std::int64_t kFailedSize = -9999;
// Reports are written at the highest level of output detail alone.
constexpr int kReportLevel = 4;

}  // namespace

int EmitReportParagraph(const std::string& text) {
  Host* host = ModuleHost();
  if (host == nullptr || (!host->IsResultsToReportWindow() && !host->IsResultsToWord())) {
    return 1;
  }
  if (host->GetSupplementaryLevel() < kReportLevel) {
    return 1;
  }
  Module().ReportBuffer.text = text;
  host->type(Module().ReportBuffer.text);
  return 0;
}

std::string FormatPowerText(double power) {
  constexpr double kPercent = 100;
  return power == kFailedPower ? LoadText(text::FailedNumber)
                               : FormatText("%-5.2f%%", {power * kPercent});
}

std::string FormatSizeText(std::int64_t size) {
  return size == kFailedSize ? LoadText(text::FailedNumber) : FormatText("%ld", {size});
}

TextId TailSentence(int h0Type) {
  // Kept: a null hypothesis with "<=" is rejected by a positive deviation, one with ">=" by a
  // negative. Form 3 has no sentence.
  constexpr std::array<TextId, 4> kTails = {text::TailTwoSided, text::TailPositive,
                                            text::TailNegative, text::None};
  return h0Type >= 0 && static_cast<std::size_t>(h0Type) < kTails.size()
             ? kTails[static_cast<std::size_t>(h0Type)]
             : text::None;
}

namespace {

// The values that fill the slots of a report, taken from the Committed record and the results.
class SlotValues {
 public:
  SlotValues(Family family, const Computed& numbers, PowerSettings& params)
      : record_(ViewOf(params, family, Instance::Committed)) {
    for (std::size_t i = 0; i < numbers.power.size(); ++i) {
      powerTexts_[i] = FormatPowerText(numbers.power[i]);
      sizeTexts_[i] = FormatSizeText(numbers.size[i]);
      sizes_[i] = numbers.size[i];
    }
  }

  double Value(const char* field) const { return record_.Get(*record_.table().Find(field)); }

  FormatArg Argument(const Slot& slot) const {
    constexpr double kPercent = 100;
    const auto index = static_cast<std::size_t>(slot.index);
    switch (slot.kind) {
      case SlotKind::Whole:
        return static_cast<std::int64_t>(Value(slot.field));
      case SlotKind::Difference:
        return Value(slot.field) - Value(slot.other);
      case SlotKind::GoalPercent:
        return Value("PowerGoal") * kPercent;
      case SlotKind::PowerText:
        return powerTexts_[index];
      case SlotKind::SizeText:
        return sizeTexts_[index];
      case SlotKind::SizeNumber:
        return sizes_[index];
      case SlotKind::ModelText:
        return RawText(Value(slot.field) == 0 ? text::FixedEffects : text::RandomEffects);
      case SlotKind::EffectVariance:
        return Value(slot.field) * Value(slot.field) * Value(slot.other) * Value(slot.other);
      default:
        return Value(slot.field);
    }
  }

  bool Holds(const ReportRow& row) const {
    return row.whenField == nullptr ||
           (static_cast<int>(Value(row.whenField)) == row.whenValue) != row.whenOther;
  }

 private:
  RecordView record_;
  std::array<std::string, 3> powerTexts_;
  std::array<std::string, 3> sizeTexts_;
  std::array<std::int64_t, 3> sizes_{};
};

void EmitRow(const ReportRow& row, const SlotValues& values) {
  const TextId id =
      row.id != text::None ? row.id : TailSentence(static_cast<int>(values.Value("H0Type")));
  if (id == text::None) {
    return;
  }
  std::vector<FormatArg> args;
  args.reserve(row.slots.size());
  for (int i = 0; i < row.slotCount; ++i) {
    args.push_back(values.Argument(row.slots[static_cast<std::size_t>(i)]));
  }
  EmitReportParagraph(FormatText(LoadText(id), args));
}

}  // namespace

void EmitReport(Family family, ReportKind kind, const Computed& numbers, PowerSettings& params) {
  const SlotValues values(family, numbers, params);
  for (const ReportRow& row : ReportRows(family)) {
    if ((row.reports & static_cast<unsigned>(kind)) != 0 && values.Holds(row)) {
      EmitRow(row, values);
    }
  }
}

}  // namespace poweranalysis
