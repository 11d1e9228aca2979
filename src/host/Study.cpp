#include "host/Study.h"

#include <algorithm>

namespace poweranalysis {

namespace {

template <class Item>
std::vector<const Item*> ItemsOf(const Study& study) {
  std::vector<const Item*> items;
  for (const WorkbookItem& item : study.workbook.items) {
    if (const auto* found = std::get_if<Item>(&item)) {
      items.push_back(found);
    }
  }
  return items;
}

}  // namespace

const SummaryTable* SummaryOf(const Study& study) {
  for (const WorkbookItem& item : study.workbook.items) {
    if (const auto* table = std::get_if<SummaryTable>(&item)) {
      return table;
    }
  }
  return nullptr;
}

std::vector<const Report*> ReportsOf(const Study& study) { return ItemsOf<Report>(study); }

std::vector<const Chart*> ChartsOf(const Study& study) { return ItemsOf<Chart>(study); }

bool IsInterval(const Study& study) { return study.mode == "interval"; }

bool HasAnswer(const Study& study) {
  return std::any_of(study.answers.begin(), study.answers.end(),
                     [](const Answer& answer) { return !IsMissing(answer.value); }) ||
         std::any_of(study.limits.begin(), study.limits.end(), [](const NamedLimits& limits) {
           return !IsMissing(limits.lower) || !IsMissing(limits.upper);
         });
}

const Answer* OnlyAnswer(const Study& study) {
  return study.answers.size() == 1 ? &study.answers.front() : nullptr;
}

}  // namespace poweranalysis
