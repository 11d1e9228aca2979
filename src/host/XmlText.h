#pragma once

#include <string>
#include <string_view>

namespace poweranalysis {

// The text with U+FFFD for what XML 1.0 cannot hold: control characters other than tab and line
// breaks, the two last characters of the basic plane, and bytes that are not UTF-8.
std::string XmlCharacters(std::string_view text);

// The text with the marks of XML and HTML written as references.
std::string MarksEscaped(std::string_view text);

// Both: any text, fit to be an attribute or content of XML.
std::string XmlEscaped(std::string_view text);

}  // namespace poweranalysis
