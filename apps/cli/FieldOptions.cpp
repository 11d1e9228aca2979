#include "cli/FieldOptions.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <optional>

#include "cli/Errors.h"

namespace poweranalysis {

namespace {

bool IsUpper(char c) { return c >= 'A' && c <= 'Z'; }
bool IsLower(char c) { return c >= 'a' && c <= 'z'; }
bool IsDigit(char c) { return c >= '0' && c <= '9'; }
char ToLower(char c) { return IsUpper(c) ? static_cast<char>(c - 'A' + 'a') : c; }

bool BeginsWord(std::string_view field, std::size_t i) {
  if (i == 0 || !IsUpper(field[i])) {
    return false;
  }
  const bool lastOfRun = i + 1 < field.size() && IsLower(field[i + 1]);
  return IsLower(field[i - 1]) || IsDigit(field[i - 1]) || (IsUpper(field[i - 1]) && lastOfRun);
}

std::optional<double> ReadNumber(std::string_view text) {
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

}  // namespace

std::string OptionName(std::string_view field) {
  std::string name;
  for (std::size_t i = 0; i < field.size(); ++i) {
    if (field[i] == '_') {
      name += '-';
      continue;
    }
    name += BeginsWord(field, i) && name.back() != '-' ? "-" : "";
    name += ToLower(field[i]);
  }
  return name;
}

std::string OptionAlias(std::string_view field) { return field == "H0Type" ? "h0" : ""; }

std::string LowerCase(std::string_view text) {
  std::string lower(text);
  std::transform(lower.begin(), lower.end(), lower.begin(), ToLower);
  return lower;
}

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
    if (LowerCase(text) == choice.word) {
      return choice.value;
    }
  }
  const std::string allowed = AllowedValues(family, field);
  const std::string range = allowed.empty() ? "" : " (" + allowed + ")";
  const std::optional<double> value = ReadNumber(text);
  if (!value) {
    throw UsageError(fmt::format("{}: '{}' is not a number{}", option, text, range));
  }
  if (field.type != FieldType::Real && std::trunc(*value) != *value) {
    throw UsageError(fmt::format("{}: '{}' is not a whole number{}", option, text, range));
  }
  return *value;
}

const Field& FindField(const FamilyTable& family, std::string_view name) {
  std::vector<std::string> names;
  for (const Field& field : family.fields) {
    if (LowerCase(field.name) == LowerCase(name)) {
      return field;
    }
    names.emplace_back(field.name);
  }
  throw UsageError(fmt::format("--set: {} has no field '{}'; the nearest is {}", family.code, name,
                               Nearest(name, names)));
}

namespace {

// Optimal string alignment distance.
std::size_t Distance(const std::string& a, const std::string& b) {
  std::vector<std::vector<std::size_t>> d(a.size() + 1, std::vector<std::size_t>(b.size() + 1));
  for (std::size_t i = 0; i <= a.size(); ++i) {
    for (std::size_t j = 0; j <= b.size(); ++j) {
      if (i == 0 || j == 0) {
        d[i][j] = i + j;
        continue;
      }
      const std::size_t replaced = d[i - 1][j - 1] + (a[i - 1] == b[j - 1] ? 0 : 1);
      d[i][j] = std::min({replaced, d[i - 1][j] + 1, d[i][j - 1] + 1});
      if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1]) {
        d[i][j] = std::min(d[i][j], d[i - 2][j - 2] + 1);
      }
    }
  }
  return d[a.size()][b.size()];
}

}  // namespace

std::string Nearest(std::string_view word, const std::vector<std::string>& candidates) {
  // Longer words than this are not typing slips; the table of distances stays small.
  constexpr std::size_t kLongest = 64;
  const std::string wanted = LowerCase(word.substr(0, kLongest));
  std::string best;
  std::size_t fewest = static_cast<std::size_t>(-1);
  for (const std::string& candidate : candidates) {
    const std::size_t distance = Distance(wanted, LowerCase(candidate));
    if (distance < fewest) {
      fewest = distance;
      best = candidate;
    }
  }
  return best;
}

}  // namespace poweranalysis
