#pragma once

#include <memory>

#include "frame/PowerAnalysis.h"

namespace poweranalysis {

// The dialog of a catalogue row; null for a task that has no dialog yet.
std::unique_ptr<CAnalysisDialog> CreateTaskDialog(CPowerAnalysis& analysis,
                                                  const CatalogueDialog& entry);

}  // namespace poweranalysis
