#pragma once

#include "dialogs/ParameterDialog.h"
#include "dialogs/ResultsDialog.h"

namespace poweranalysis {

// The dialogs of one mean, two means and paired means.
std::span<const ParameterDialogTable> TTestParameterDialogs();
std::span<const ResultsDialogTable> TTestResultsDialogs();

}  // namespace poweranalysis
