#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "calculators/CalculatorDialog.h"
#include "cli/CommandLine.h"
#include "cli/Run.h"
#include "host/HeadlessHost.h"

// The probability calculators of the command line.
namespace poweranalysis {

// The record of a task: that of its test family or of its calculator.
const FamilyTable& FamilyOfTask(int mode, int row);

// --- Options.

// Whether the calculator shows the field, so that there is an option for it.
bool ShowsField(const CalculatorTable& calculator, const Field& field);

// Short names of a field's option beside its own: that of the unknown ("p" for CumP), and the
// letters that formulas use ("df", "n").
std::vector<std::string> ShorterOptions(const CalculatorTable& calculator, const Field& field);

// "t, p, delta"
std::string UnknownNames(const CalculatorTable& calculator);

// The unknown of this name, or of its field's, in any case; throws UsageError.
std::size_t FindUnknown(const CalculatorTable& calculator, const std::string& name);

// Throws UsageError when a value was given for the unknown itself, which the calculator would
// forget.
void CheckUnknown(const CalculatorTable& calculator, const RunRequest& request);

// The end of a calculator's help: names of the unknowns, and an example of `command`.
std::string CalculatorFooter(const CalculatorTable& calculator, const std::string& command);

// --- Running.

// A computation as a scripted run of the calculator's dialog: choose the calculator and the
// unknown, fill in the boxes, Compute. The answer is given as a table with the unknown last.
RunOutcome RunCalculator(const RunRequest& request, HeadlessHost& host);

}  // namespace poweranalysis
