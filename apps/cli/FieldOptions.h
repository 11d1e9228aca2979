#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "settings/Choices.h"

// Options of the command line, made from the field tables.
namespace poweranalysis {

// The option of a field, without its dashes: "SampleSizeN1" is "sample-size-n1". A word begins at a
// capital after a small letter or a digit, at the last capital of a run that goes on in small
// letters, and at an underscore.
std::string OptionName(std::string_view field);

// A shorter option for the same field; empty when there is none. "H0Type" is also "h0".
std::string OptionAlias(std::string_view field);

// A value for a field, as given. Names of choices count in any case. A value outside the field's
// range passes: refusing it is the dialogs'. Throws UsageError, which names `option`, the text and
// the range, for what is not a number, and for a fraction where a whole number is wanted.
double ParseFieldValue(const FamilyTable& family,
                       const Field& field,
                       const std::string& option,
                       std::string_view text);

// The field of this name in any case; throws UsageError with the nearest name.
const Field& FindField(const FamilyTable& family, std::string_view name);

// The candidate that takes the fewest edits (insert, delete, replace, swap of neighbours) to become
// `word`, in any case; the first of equals, and empty when there are none.
std::string Nearest(std::string_view word, const std::vector<std::string>& candidates);

// "1 <= Df <= 5000", and the names of the choices where it has any.
std::string AllowedValues(const FamilyTable& family, const Field& field);

std::string LowerCase(std::string_view text);

}  // namespace poweranalysis
