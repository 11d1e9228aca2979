#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace poweranalysis {

// Length of the well-formed UTF-8 character at the start of `text`; 0 when there is none. Follows
// table 3-7 of The Unicode Standard.
std::size_t Utf8Length(std::string_view text);

// The character at the start of a text that is not empty; a byte that is not UTF-8 stands for one.
std::string_view FirstCharacter(std::string_view text);

// The number of such characters.
std::size_t CountCharacters(std::string_view text);

// The beginning of a text of unknown origin, fit to be shown: at most `longest` characters, "..."
// for what follows them, a question mark for each control character and each byte that is not
// UTF-8.
std::string Excerpt(std::string_view text, std::size_t longest);

// Are the two the same but for the case of ASCII letters? Names are compared so, in any locale.
bool SameInAnyCase(std::string_view a, std::string_view b);

}  // namespace poweranalysis
