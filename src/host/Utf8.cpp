#include "host/Utf8.h"

#include <algorithm>

namespace poweranalysis {

std::size_t Utf8Length(std::string_view text) {
  const auto byte = [&](std::size_t i) {
    return i < text.size() ? static_cast<unsigned char>(text[i]) : 0U;
  };
  const auto continues = [&](std::size_t i) { return (byte(i) & 0xC0U) == 0x80U; };
  const unsigned first = byte(0);
  if (first < 0x80U) {
    return 1;
  }
  if (first >= 0xC2U && first <= 0xDFU) {
    return continues(1) ? 2 : 0;
  }
  if (first >= 0xE0U && first <= 0xEFU) {
    const bool overlong = first == 0xE0U && byte(1) < 0xA0U;
    const bool surrogate = first == 0xEDU && byte(1) > 0x9FU;
    return continues(1) && continues(2) && !overlong && !surrogate ? 3 : 0;
  }
  if (first >= 0xF0U && first <= 0xF4U) {
    const bool overlong = first == 0xF0U && byte(1) < 0x90U;
    const bool beyond = first == 0xF4U && byte(1) > 0x8FU;
    return continues(1) && continues(2) && continues(3) && !overlong && !beyond ? 4 : 0;
  }
  return 0;
}

std::string_view FirstCharacter(std::string_view text) {
  const std::size_t length = Utf8Length(text);
  return text.substr(0, length == 0 ? 1 : length);
}

std::size_t CountCharacters(std::string_view text) {
  std::size_t count = 0;
  for (; !text.empty(); text.remove_prefix(FirstCharacter(text).size())) {
    ++count;
  }
  return count;
}

std::string Excerpt(std::string_view text, std::size_t longest) {
  constexpr unsigned char kDelete = 0x7F;
  std::string out;
  for (std::size_t taken = 0; taken < longest && !text.empty(); ++taken) {
    const std::size_t length = Utf8Length(text);
    const auto first = static_cast<unsigned char>(text.front());
    const bool shows = length > 0 && first >= ' ' && first != kDelete;
    out += shows ? text.substr(0, length) : "?";
    text.remove_prefix(length == 0 ? 1 : length);
  }
  return text.empty() ? out : out + "...";
}

bool SameInAnyCase(std::string_view a, std::string_view b) {
  const auto lower = [](char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
  };
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [lower](char x, char y) { return lower(x) == lower(y); });
}

}  // namespace poweranalysis
