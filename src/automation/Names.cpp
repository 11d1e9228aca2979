#include "automation/Names.h"

#include <algorithm>

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

// Without what spellings differ in.
std::string Plain(std::string_view name) {
  std::string plain = LowerCase(name);
  plain.erase(
      std::remove_if(plain.begin(), plain.end(), [](char c) { return c == '-' || c == '_'; }),
      plain.end());
  return plain;
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

bool SameName(std::string_view a, std::string_view b) { return Plain(a) == Plain(b); }

bool IsNameOf(std::string_view name, std::string_view field) {
  const std::string alias = OptionAlias(field);
  return SameName(name, field) || (!alias.empty() && SameName(name, alias));
}

namespace {

// The least number of characters to put in, take out, change or swap with their neighbour, none
// touched twice: the optimal string alignment distance.
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
