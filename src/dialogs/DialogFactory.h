#pragma once

#include <memory>
#include <string_view>

#include "frame/PowerAnalysis.h"
#include "settings/PowerSettings.h"

namespace poweranalysis {

// The dialog of a catalogue row; null for a task that has no dialog yet.
std::unique_ptr<CAnalysisDialog> CreateTaskDialog(CPowerAnalysis& analysis,
                                                  const CatalogueDialog& entry);

// The number of the button that draws a chart, by the chart's name; 0 for one that the task lacks.
int ChartControl(Family family, int mode, std::string_view chart);

}  // namespace poweranalysis
