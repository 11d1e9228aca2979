#include "output/Quantities.h"

#include <vector>

namespace poweranalysis {

namespace {

constexpr double kPercent = 100;

double FieldValue(const char* field, const RecordView& record) {
  return record.Get(*record.table().Find(field));
}

double InputValue(const Quantity& quantity, const RecordView& record) {
  const double value = FieldValue(quantity.field, record);
  switch (quantity.kind) {
    case QuantityKind::FieldLessOne:
      return value - 1;
    case QuantityKind::Percent:
      return value * kPercent;
    case QuantityKind::Difference:
      return value - FieldValue(quantity.other, record);
    case QuantityKind::EffectVariance: {
      const double sigma = FieldValue(quantity.other, record);
      return value * value * sigma * sigma;
    }
    default:
      return value;
  }
}

double ComputedValue(const Quantity& quantity, const Computed& computed) {
  const auto index = static_cast<std::size_t>(quantity.index);
  switch (quantity.kind) {
    case QuantityKind::Effect:
      return computed.effect;
    case QuantityKind::Spread:
      return computed.spread;
    case QuantityKind::Noncentrality:
      return computed.noncentrality;
    case QuantityKind::EffectDf:
      return computed.effectDf[index];
    case QuantityKind::ErrorDf:
      return computed.errorDf;
    case QuantityKind::Critical:
      return computed.critical[index];
    case QuantityKind::ActualAlpha:
      return computed.actualAlpha;
    case QuantityKind::NormalPower:
      return computed.normalPower;
    case QuantityKind::Events:
      return computed.events;
    case QuantityKind::Power:
      return computed.power[index];
    case QuantityKind::Size:
      return static_cast<double>(computed.size[index]);
    case QuantityKind::PValue:
      return computed.limits.pValue;
    case QuantityKind::LowerLimit:
      return PairOf(computed.limits, static_cast<Limit>(quantity.index)).lower;
    case QuantityKind::UpperLimit:
      return PairOf(computed.limits, static_cast<Limit>(quantity.index)).upper;
    default:
      return NumericFailure;
  }
}

// What a "%s" shows.
std::string WordOf(const Slot& slot, const RecordView& record, const Computed& computed) {
  const auto index = static_cast<std::size_t>(slot.quantity.index);
  switch (slot.quantity.kind) {
    case QuantityKind::Power:
      return FormatPowerText(computed.power[index]);
    case QuantityKind::Size:
      return FormatSizeText(computed.size[index]);
    default:
      return LoadText(slot.word.In(record));
  }
}

}  // namespace

CellKind CellKindOf(const Quantity& quantity) {
  switch (quantity.kind) {
    case QuantityKind::Field:
      return CellKind::Input;
    case QuantityKind::Power:
    case QuantityKind::NormalPower:
    case QuantityKind::ActualAlpha:
    case QuantityKind::PValue:
      return CellKind::Probability;
    case QuantityKind::LowerLimit:
    case QuantityKind::UpperLimit:
      return static_cast<Limit>(quantity.index) == Limit::Power ? CellKind::Probability
                                                                : CellKind::Computed;
    default:
      return CellKind::Computed;
  }
}

double ValueOf(const Quantity& quantity, const RecordView& record, const Computed& computed) {
  return quantity.field != nullptr ? InputValue(quantity, record)
                                   : ComputedValue(quantity, computed);
}

std::string FormatPowerText(double power) {
  return power == NumericFailure ? LoadText(text::FailedNumber)
                                 : FormatText("%-5.2f%%", {power * kPercent});
}

std::string FormatSizeText(std::int64_t size) {
  return size == SizeFailure ? LoadText(text::FailedNumber) : FormatText("%ld", {size});
}

std::string FillText(TextId id,
                     std::span<const Slot> slots,
                     const RecordView& record,
                     const Computed& computed) {
  const std::string format = LoadText(id);
  const std::string conversions = FormatSlots(format);
  std::vector<std::string> words(conversions.size());
  std::vector<FormatArg> args;
  for (std::size_t i = 0; i < conversions.size(); ++i) {
    if (conversions[i] == 's') {
      words[i] = WordOf(slots[i], record, computed);
      args.emplace_back(words[i]);
      continue;
    }
    const double value = ValueOf(slots[i].quantity, record, computed);
    args.push_back(conversions[i] == 'd' ? FormatArg(static_cast<std::int64_t>(value))
                                         : FormatArg(value));
  }
  return FormatText(format, args);
}

}  // namespace poweranalysis
