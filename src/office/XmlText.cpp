#include "office/XmlText.h"

#include <array>
#include <cstdint>

namespace poweranalysis {

namespace {

struct Character {
  std::uint32_t code;
  std::size_t length;  // 0: no character
};

// The character at the start of a text that is not empty. RFC 3629, section 3: the shortest form
// alone, no surrogates, nothing beyond U+10FFFF.
Character FirstCharacter(std::string_view text) {
  const auto first = static_cast<unsigned char>(text.front());
  if (first < 0x80U) {
    return {first, 1};
  }
  const std::size_t length = first >= 0xF0U ? 4 : first >= 0xE0U ? 3 : 2;
  if (first < 0xC2U || first > 0xF4U || text.size() < length) {
    return {0, 0};
  }
  std::uint32_t code = first & (0x7FU >> length);
  for (std::size_t i = 1; i < length; ++i) {
    const auto next = static_cast<unsigned char>(text[i]);
    if ((next & 0xC0U) != 0x80U) {
      return {0, 0};
    }
    code = (code << 6U) | (next & 0x3FU);
  }
  constexpr std::array<std::uint32_t, 5> kLeast = {0, 0, 0x80U, 0x800U, 0x10000U};
  const bool surrogate = code >= 0xD800U && code <= 0xDFFFU;
  const bool good = code >= kLeast[length] && code <= 0x10FFFFU && !surrogate;
  return {code, good ? length : 0};
}

bool IsXmlCharacter(std::uint32_t code) {
  const bool allowedControl = code == '\t' || code == '\n' || code == '\r';
  return (code >= 0x20U || allowedControl) && code != 0xFFFEU && code != 0xFFFFU;
}

}  // namespace

std::string XmlCharacters(std::string_view text) {
  std::string out;
  out.reserve(text.size());
  while (!text.empty()) {
    const Character character = FirstCharacter(text);
    if (character.length != 0 && IsXmlCharacter(character.code)) {
      out += text.substr(0, character.length);
    } else {
      out += "\xEF\xBF\xBD";
    }
    text.remove_prefix(character.length == 0 ? 1 : character.length);
  }
  return out;
}

std::string XmlEscaped(std::string_view text) {
  std::string out;
  for (const char c : XmlCharacters(text)) {
    switch (c) {
      case '&':
        out += "&amp;";
        break;
      case '<':
        out += "&lt;";
        break;
      case '>':
        out += "&gt;";
        break;
      case '"':
        out += "&quot;";
        break;
      default:
        out += c;
    }
  }
  return out;
}

}  // namespace poweranalysis
