#include "automation/FieldValues.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <optional>

#include "automation/Errors.h"
#include "host/Utf8.h"

namespace poweranalysis {

namespace {

std::optional<double> ReadValue(std::string_view text) {
  constexpr std::string_view kBlanks = " \t\r\n";
  const std::size_t first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) {
    return std::nullopt;
  }
  text = text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
  if (text.size() > 1 && text.front() == '+' && text[1] != '-') {
    text.remove_prefix(1);
  }
  double value = 0;
  const char* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, value);
  const bool good = error == std::errc{} && stop == end && std::isfinite(value);
  return good ? std::optional(value) : std::nullopt;
}

// The number that a text with one comma may stand for; empty for none.
std::string WithPoint(std::string_view text) {
  std::string other(text);
  const bool lone = std::count(other.begin(), other.end(), ',') == 1;
  std::replace(other.begin(), other.end(), ',', '.');
  return lone && ReadValue(other) ? other : std::string();
}

// Why a text is no value of a field, with what would be.
std::string NotAValue(const FamilyTable& family, const Field& field, std::string_view text) {
  const std::string range = field.keyed() ? RangeText(field) : std::string();
  std::string words;
  for (const Choice& choice : ChoicesOf(family.family, field.name)) {
    words += (words.empty() ? "" : ", ") + std::string(choice.word);
  }
  if (!words.empty()) {
    return fmt::format("'{}' is not one of: {} (or a number{}{})", text, words,
                       range.empty() ? "" : ", ", range);
  }
  // A comma in a whole number would part thousands, if anything.
  const std::string asked = field.type == FieldType::Real ? WithPoint(text) : std::string();
  if (!asked.empty()) {
    return fmt::format("'{}' is not a number; did you mean {}?", text, asked);
  }
  return fmt::format("'{}' is not a number{}", text, range.empty() ? "" : " (" + range + ")");
}

}  // namespace

std::string AllowedValues(const FamilyTable& family, const Field& field) {
  std::string text = field.keyed() ? RangeText(field) : std::string();
  for (const Choice& choice : ChoicesOf(family.family, field.name)) {
    text += fmt::format("{}{} = {}", text.empty() ? "" : ", ", choice.word, choice.value);
  }
  return text;
}

double ParseFieldValue(const FamilyTable& family,
                       const Field& field,
                       const std::string& option,
                       std::string_view text) {
  for (const Choice& choice : ChoicesOf(family.family, field.name)) {
    if (SameInAnyCase(text, choice.word)) {
      return choice.value;
    }
  }
  const std::optional<double> value = ReadValue(text);
  if (!value) {
    throw UsageError(option + ": " + NotAValue(family, field, text));
  }
  if (field.type != FieldType::Real && std::trunc(*value) != *value) {
    const std::string allowed = AllowedValues(family, field);
    const std::string range = allowed.empty() ? "" : " (" + allowed + ")";
    throw UsageError(fmt::format("{}: '{}' is not a whole number{}", option, text, range));
  }
  return *value;
}

const Field& FindField(const FamilyTable& family, std::string_view name) {
  std::vector<std::string> names;
  for (const Field& field : family.fields) {
    if (SameInAnyCase(field.name, name)) {
      return field;
    }
    names.emplace_back(field.name);
  }
  throw UsageError("set", fmt::format("{} has no field '{}'; the nearest is {}", family.code, name,
                                      Nearest(name, names)));
}

void Store(const RecordView& record, const FieldValue& value) {
  double held = value.value;
  if (value.field->type == FieldType::Int16) {
    held =
        std::clamp<double>(held, std::numeric_limits<i16>::min(), std::numeric_limits<i16>::max());
  } else if (value.field->type == FieldType::Int32) {
    held =
        std::clamp<double>(held, std::numeric_limits<i32>::min(), std::numeric_limits<i32>::max());
  }
  record.Set(*value.field, held);
}

}  // namespace poweranalysis
