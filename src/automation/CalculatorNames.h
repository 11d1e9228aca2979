#pragma once

#include <optional>
#include <string>
#include <vector>

#include "automation/FieldValues.h"
#include "calculators/CalculatorDialog.h"

// What can be named of a task's record, and of a calculator in particular.
namespace poweranalysis {

// The record of a task: that of its test family or of its calculator.
const FamilyTable& FamilyOfTask(int mode, int row);

// Whether the calculator shows the field, so that a value can be given for it.
bool ShowsField(const CalculatorTable& calculator, const Field& field);

// Short names of a field beside its own: that of the unknown ("p" for CumP), and the letters that
// formulas use ("df", "n").
std::vector<std::string> ShorterOptions(const CalculatorTable& calculator, const Field& field);

// "t, p, delta"
std::string UnknownNames(const CalculatorTable& calculator);

// The unknown of this name, or of its field's, in any case; throws UsageError, of the argument
// "unknown".
std::size_t FindUnknown(const CalculatorTable& calculator, const std::string& name);

// Whether a value was given for the unknown itself, which the calculator would forget.
bool IsGiven(const CalculatorUnknown& unknown, const std::vector<FieldValue>& values);

}  // namespace poweranalysis
