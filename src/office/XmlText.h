#pragma once

#include <string>
#include <string_view>

namespace poweranalysis {

// The text with U+FFFD for what XML 1.0 cannot hold: control characters other than tab and line
// breaks, the two last characters of the basic plane, and bytes that are not UTF-8.
std::string XmlCharacters(std::string_view text);

// The same, with the marks of XML written as references.
std::string XmlEscaped(std::string_view text);

}  // namespace poweranalysis
