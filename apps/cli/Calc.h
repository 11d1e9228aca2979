#pragma once

#include <string>

#include "automation/CalculatorNames.h"
#include "automation/TaskRun.h"

// The probability calculators of the command line.
namespace poweranalysis {

// Throws UsageError when a value was given for the unknown itself, which the calculator would
// forget.
void CheckUnknown(const CalculatorTable& calculator, const TaskRequest& request);

// The end of a calculator's help: names of the unknowns, and an example of `command`.
std::string CalculatorFooter(const CalculatorTable& calculator, const std::string& command);

}  // namespace poweranalysis
