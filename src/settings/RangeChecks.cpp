#include <array>
#include <cmath>
#include <cstring>

#include "settings/PowerSettings.h"

namespace poweranalysis {

namespace {

template <class T>
T At(const void* address) {
  T value;
  std::memcpy(&value, address, sizeof value);
  return value;
}

bool IncludesLower(RangeForm form) {
  return form == RangeForm::ClosedBelow || form == RangeForm::Closed;
}

bool IncludesUpper(RangeForm form) {
  return form == RangeForm::ClosedAbove || form == RangeForm::Closed;
}

bool KnownForm(RangeForm form) { return form >= RangeForm::Open && form <= RangeForm::Closed; }

// Each comparison must hold, so that a NaN fails every form.
template <class T>
bool Inside(T lower, T value, T upper, RangeForm form) {
  const bool aboveLower = IncludesLower(form) ? lower <= value : lower < value;
  const bool belowUpper = IncludesUpper(form) ? value <= upper : value < upper;
  return KnownForm(form) && aboveLower && belowUpper;
}

std::string LeftText(RangeForm form) {
  return LoadText(IncludesLower(form) ? text::LessOrEqual : text::Less);
}

std::string RightText(RangeForm form) {
  return LoadText(IncludesUpper(form) ? text::LessOrEqual : text::Less);
}

template <class T>
bool CheckEntry(WindowHandle parent, const KeyEntry& entry, TextId message) {
  const T lower = At<T>(entry.lower);
  const T value = At<T>(entry.working);
  const T upper = At<T>(entry.upper);
  const RangeForm form = entry.field->form;
  if (Inside(lower, value, upper, form)) {
    return true;
  }
  const std::string label = LoadText(entry.field->label);
  ShowMessage(MessagePlain, parent, message,
              {label, lower, LeftText(form), label, RightText(form), upper, value});
  return false;
}

bool CheckEntry(WindowHandle parent, const KeyEntry& entry) {
  switch (entry.field->type) {
    case FieldType::Int16:
      return CheckEntry<i16>(parent, entry, text::RangeInt16);
    case FieldType::Int32:
      return CheckEntry<i32>(parent, entry, text::RangeInt32);
    case FieldType::Real:
      return CheckEntry<f64>(parent, entry, text::RangeReal);
  }
  return true;
}

}  // namespace

int CheckRanges(WindowHandle parent, std::span<const KeyEntry> entries) {
  for (const KeyEntry& entry : entries) {
    if (!CheckEntry(parent, entry)) {
      return 0;
    }
  }
  return 1;
}

int CheckRanges(WindowHandle parent, const KeyTable& keys) {
  return CheckRanges(parent, std::span<const KeyEntry>(keys.entries));
}

bool WithinRange(const Field& field, double value) {
  return Inside(field.lower, value, field.upper, field.form);
}

std::string RangeText(const Field& field) {
  const std::string label = LoadText(field.label);
  return FormatText("%g %s %s %s %g", {field.lower, LeftText(field.form),
                                       label.empty() ? std::string(field.name) : label,
                                       RightText(field.form), field.upper});
}

}  // namespace poweranalysis
