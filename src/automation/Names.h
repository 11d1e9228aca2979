#pragma once

#include <string>
#include <string_view>
#include <vector>

// How names are spelled, compared and corrected: the one vocabulary of options, keywords, members
// and fields.
namespace poweranalysis {

// In lower case, by ASCII letters.
std::string LowerCase(std::string_view text);

// The option of a field, without its dashes: "SampleSizeN1" is "sample-size-n1". A word begins at a
// capital after a small letter or a digit, at the last capital of a run that goes on in small
// letters, and at an underscore.
std::string OptionName(std::string_view field);

// A shorter option for the same field; empty when there is none. "H0Type" is also "h0".
std::string OptionAlias(std::string_view field);

// Are the two one name in different spellings, as "sample-size-n1", "sample_size_n1" and
// "SampleSizeN1" are?
bool SameName(std::string_view a, std::string_view b);

// Is it the name of a field, its option or its shorter option, in any spelling?
bool IsNameOf(std::string_view name, std::string_view field);

// The candidate that takes the fewest edits (insert, delete, replace, swap of neighbours) to become
// `word`, in any case; the first of equals, and empty when there are none.
std::string Nearest(std::string_view word, const std::vector<std::string>& candidates);

}  // namespace poweranalysis
