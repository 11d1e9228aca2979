#pragma once

#include "dialogs/IntervalDialog.h"
#include "dialogs/ParameterDialog.h"
#include "dialogs/ResultsDialog.h"

namespace poweranalysis {

// The parameter, results and interval dialogs of a group of families, as rows.
struct FamilyDialogs {
  std::span<const ParameterDialogTable> parameters;
  std::span<const ResultsDialogTable> results;
  std::span<const IntervalDialogTable> intervals{};
};

FamilyDialogs TTestDialogs();        // T1, T2, T3
FamilyDialogs AnovaDialogs();        // PC, AV1, AV2
FamilyDialogs VarianceDialogs();     // V1, V2
FamilyDialogs CorrelationDialogs();  // R, Z2R, R2
FamilyDialogs ProportionDialogs();   // P1, P2, QMAC
FamilyDialogs SurvivalDialogs();     // SA1, SA2, SA3
FamilyDialogs ModelFitDialogs();     // SEM

}  // namespace poweranalysis
