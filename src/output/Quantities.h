#pragma once

#include <span>
#include <string>

#include "families/Computed.h"
#include "host/Workbook.h"
#include "output/ChosenText.h"

// The vocabulary of what is shown: summary tables, reports and charts name the same quantities.
namespace poweranalysis {

enum class QuantityKind {
  None,  // of a heading: nothing to show
  // Inputs, from the record.
  Field,
  FieldLessOne,
  Percent,         // of a field, times 100
  Difference,      // of two fields
  EffectVariance,  // square of an effect times square of sigma
  // What was computed.
  Effect,
  Spread,
  Noncentrality,
  EffectDf,
  ErrorDf,
  Critical,
  ActualAlpha,
  NormalPower,
  Events,
  Power,
  Size,
  // Of interval tables. The index of a limit is its Limit.
  PValue,
  LowerLimit,
  UpperLimit,
};

struct Quantity {
  QuantityKind kind = QuantityKind::None;
  const char* field = nullptr;  // of the record
  const char* other = nullptr;  // the second of two fields
  int index = 0;                // of several values
};

namespace quantity {

inline constexpr Quantity kNothing = {};
constexpr Quantity Input(const char* field) { return {QuantityKind::Field, field}; }
constexpr Quantity LessOne(const char* field) { return {QuantityKind::FieldLessOne, field}; }
constexpr Quantity Percent(const char* field) { return {QuantityKind::Percent, field}; }
constexpr Quantity Difference(const char* field, const char* other) {
  return {QuantityKind::Difference, field, other};
}
constexpr Quantity EffectVariance(const char* effect, const char* sigma) {
  return {QuantityKind::EffectVariance, effect, sigma};
}

// Of several values: the number of the effect or of the group.
constexpr Quantity Of(QuantityKind kind, int index = 0) { return {kind, nullptr, nullptr, index}; }
inline constexpr Quantity kEffect = Of(QuantityKind::Effect);
inline constexpr Quantity kSpread = Of(QuantityKind::Spread);
inline constexpr Quantity kNoncentrality = Of(QuantityKind::Noncentrality);
inline constexpr Quantity kErrorDf = Of(QuantityKind::ErrorDf);
inline constexpr Quantity kActualAlpha = Of(QuantityKind::ActualAlpha);
inline constexpr Quantity kNormalPower = Of(QuantityKind::NormalPower);
inline constexpr Quantity kEvents = Of(QuantityKind::Events);
inline constexpr Quantity kPValue = Of(QuantityKind::PValue);
constexpr Quantity EffectDf(int effect = 0) { return Of(QuantityKind::EffectDf, effect); }
constexpr Quantity Critical(int effect = 0) { return Of(QuantityKind::Critical, effect); }
constexpr Quantity Power(int effect = 0) { return Of(QuantityKind::Power, effect); }
constexpr Quantity Size(int effectOrGroup = 0) { return Of(QuantityKind::Size, effectOrGroup); }
constexpr Quantity Lower(Limit limit) {
  return Of(QuantityKind::LowerLimit, static_cast<int>(limit));
}
constexpr Quantity Upper(Limit limit) {
  return Of(QuantityKind::UpperLimit, static_cast<int>(limit));
}

}  // namespace quantity

// How the number of a quantity shows.
CellKind CellKindOf(const Quantity& quantity);

// The quantity of a design and of what was computed for it; NumericFailure for one that has not
// been computed.
double ValueOf(const Quantity& quantity, const RecordView& record, const Computed& computed);

// --- Quantities in texts.

// What fills a slot of a text: a quantity, or a word.
struct Slot {
  constexpr Slot() = default;
  constexpr Slot(Quantity shown) : quantity(shown) {}                      // NOLINT
  constexpr Slot(const char* field) : quantity(quantity::Input(field)) {}  // NOLINT
  constexpr Slot(ChosenText chosen) : word(chosen) {}                      // NOLINT
  constexpr Slot(TextId only) : word(only) {}                              // NOLINT
  constexpr Slot(const char* byField, std::array<TextId, 4> choices) : word(byField, choices) {}

  Quantity quantity;
  ChosenText word;
};

// "80.00%": "%-5.2f%%" of the power times 100, or five dashes for a failed power.
std::string FormatPowerText(double power);
// The size, or five dashes for a failed size.
std::string FormatSizeText(std::int64_t size);

// The text with its slots filled. The conversion of a slot decides how a quantity shows: %ld whole,
// %g and %f real, %s a power as a percentage, a size, or the word.
std::string FillText(TextId id,
                     std::span<const Slot> slots,
                     const RecordView& record,
                     const Computed& computed);

}  // namespace poweranalysis
