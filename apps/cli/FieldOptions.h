#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "automation/Names.h"
#include "settings/Choices.h"

// Options of the command line, made from the field tables.
namespace poweranalysis {

// A value for a field, as given. Names of choices count in any case. A value outside the field's
// range passes: refusing it is the dialogs'. Throws UsageError, which names `option`, the text and
// the range, for what is not a number, and for a fraction where a whole number is wanted.
double ParseFieldValue(const FamilyTable& family,
                       const Field& field,
                       const std::string& option,
                       std::string_view text);

// The field of this name in any case; throws UsageError with the nearest name.
const Field& FindField(const FamilyTable& family, std::string_view name);

// "1 <= Df <= 5000", and the names of the choices where it has any.
std::string AllowedValues(const FamilyTable& family, const Field& field);

}  // namespace poweranalysis
