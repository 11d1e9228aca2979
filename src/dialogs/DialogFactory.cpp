#include "dialogs/DialogFactory.h"

#include "dialogs/FamilyDialogs.h"

namespace poweranalysis {

namespace {

constexpr FamilyDialogs (*kGroups[])() = {TTestDialogs,       AnovaDialogs,      VarianceDialogs,
                                          CorrelationDialogs, ProportionDialogs, SurvivalDialogs,
                                          ModelFitDialogs};

template <class Row>
int ModeOf(const Row& row) {
  return row.mode;
}
int ModeOf(const IntervalDialogTable& /*row*/) { return ModeInterval; }

// The row of a family and mode among those that `rows` takes from the groups; null when there is
// none.
template <class Row>
const Row* Find(std::span<const Row> FamilyDialogs::*rows, Family family, int mode) {
  for (const auto group : kGroups) {
    const std::span<const Row> candidates = group().*rows;
    for (const Row& row : candidates) {
      if (row.family == family && ModeOf(row) == mode) {
        return &row;
      }
    }
  }
  return nullptr;
}

}  // namespace

std::unique_ptr<CAnalysisDialog> CreateTaskDialog(CPowerAnalysis& analysis,
                                                  const CatalogueDialog& entry) {
  if (entry.mode == ModeDistribution) {
    return nullptr;
  }
  const TaskRow& task = Tasks(entry.mode)[static_cast<std::size_t>(entry.row)];
  const FamilyTable* family = FindFamily(task.family);
  if (family == nullptr) {
    return nullptr;
  }
  if (entry.mode == ModeInterval) {
    const IntervalDialogTable* rows = Find(&FamilyDialogs::intervals, family->family, entry.mode);
    return rows == nullptr ? nullptr : std::make_unique<CIntervalDialog>(analysis, entry, *rows);
  }
  if (entry.result) {
    const ResultsDialogTable* rows = Find(&FamilyDialogs::results, family->family, entry.mode);
    return rows == nullptr ? nullptr : std::make_unique<CResultsDialog>(analysis, entry, *rows);
  }
  const ParameterDialogTable* rows = Find(&FamilyDialogs::parameters, family->family, entry.mode);
  return rows == nullptr ? nullptr : std::make_unique<CParameterDialog>(analysis, entry, *rows);
}

int ChartControl(Family family, int mode, std::string_view chart) {
  const ResultsDialogTable* rows = Find(&FamilyDialogs::results, family, mode);
  if (rows == nullptr) {
    return 0;
  }
  for (const ChartButton& button : ChartButtons(*rows)) {
    if (button.chart.name == chart) {
      return button.control;
    }
  }
  return 0;
}

}  // namespace poweranalysis
