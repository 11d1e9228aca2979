#include "dialogs/DialogFactory.h"

#include "dialogs/TTestDialogs.h"

namespace poweranalysis {

namespace {

// The dialogs of each group of families.
using ParameterGroup = std::span<const ParameterDialogTable> (*)();
using ResultsGroup = std::span<const ResultsDialogTable> (*)();
constexpr ParameterGroup kParameterGroups[] = {TTestParameterDialogs};
constexpr ResultsGroup kResultsGroups[] = {TTestResultsDialogs};

template <class Groups>
auto Find(const Groups& groups, Family family, int mode) -> decltype(groups[0]().data()) {
  for (const auto group : groups) {
    for (const auto& row : group()) {
      if (row.family == family && row.mode == mode) {
        return &row;
      }
    }
  }
  return nullptr;
}

}  // namespace

std::unique_ptr<CAnalysisDialog> CreateTaskDialog(CPowerAnalysis& analysis,
                                                  const CatalogueDialog& entry) {
  if (entry.mode != ModePower && entry.mode != ModeSampleSize) {
    return nullptr;
  }
  const TaskRow& task = Tasks(entry.mode)[static_cast<std::size_t>(entry.row)];
  const FamilyTable* family = FindFamily(task.family);
  if (family == nullptr) {
    return nullptr;
  }
  if (entry.result) {
    const ResultsDialogTable* rows = Find(kResultsGroups, family->family, entry.mode);
    return rows == nullptr ? nullptr : std::make_unique<CResultsDialog>(analysis, entry, *rows);
  }
  const ParameterDialogTable* rows = Find(kParameterGroups, family->family, entry.mode);
  return rows == nullptr ? nullptr : std::make_unique<CParameterDialog>(analysis, entry, *rows);
}

}  // namespace poweranalysis
