#pragma once

#include <string>
#include <string_view>

#include "automation/Names.h"
#include "settings/Choices.h"

// Values of fields as they are given by name: to an option, a keyword or a cell.
namespace poweranalysis {

// A value for a field of the family's record.
struct FieldValue {
  const Field* field;
  double value;
};

// A value for a field, as given. Names of choices count in any case. A value outside the field's
// range passes: refusing it is the dialogs'. Throws UsageError, which names `option`, the text and
// what would be taken, for what is neither a number nor a choice, and for a fraction where a whole
// number is wanted.
double ParseFieldValue(const FamilyTable& family,
                       const Field& field,
                       const std::string& option,
                       std::string_view text);

// The field of this name in any case; throws UsageError, of the argument "set", with the nearest
// name.
const Field& FindField(const FamilyTable& family, std::string_view name);

// Puts a value into a record past the dialogs, held to what the field's type can hold: for a field
// that no dialog shows, and for a value that none of a field's buttons stands for, so that the
// range check sees it.
void Store(const RecordView& record, const FieldValue& value);

// "1 <= Df <= 5000", and the names of the choices where it has any.
std::string AllowedValues(const FamilyTable& family, const Field& field);

}  // namespace poweranalysis
