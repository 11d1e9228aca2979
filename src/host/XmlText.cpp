#include "host/XmlText.h"

#include "host/Utf8.h"

namespace poweranalysis {

namespace {

bool IsXmlCharacter(std::string_view character) {
  const char first = character.front();
  const bool allowedControl = first == '\t' || first == '\n' || first == '\r';
  const bool control = static_cast<unsigned char>(first) < 0x20U && !allowedControl;
  return Utf8Length(character) != 0 && !control && character != "\uFFFE" && character != "\uFFFF";
}

}  // namespace

std::string XmlCharacters(std::string_view text) {
  std::string out;
  out.reserve(text.size());
  while (!text.empty()) {
    const std::string_view character = FirstCharacter(text);
    out += IsXmlCharacter(character) ? character : "\uFFFD";
    text.remove_prefix(character.size());
  }
  return out;
}

std::string MarksEscaped(std::string_view text) {
  std::string out;
  for (const char c : text) {
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

std::string XmlEscaped(std::string_view text) { return MarksEscaped(XmlCharacters(text)); }

}  // namespace poweranalysis
