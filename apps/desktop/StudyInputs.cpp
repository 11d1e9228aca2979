#include "desktop/StudyInputs.h"

#include "calculators/CalculatorDialog.h"
#include "settings/PowerSettings.h"

namespace poweranalysis {

namespace {

std::vector<WorkbookInput> CommittedInputs(const FamilyTable& table) {
  const RecordView committed = ViewOf(*Block(), table.family, Instance::Committed);
  std::vector<WorkbookInput> inputs;
  for (const Field& field : table.fields) {
    inputs.push_back({field.name, committed.Get(field)});
  }
  return inputs;
}

// A calculator works in Working, and most of its record may belong to others.
std::vector<WorkbookInput> CalculatorInputs(const CalculatorTable& calculator) {
  const RecordView working = ViewOf(*Block(), calculator.family, Instance::Working);
  std::vector<WorkbookInput> inputs;
  for (const Field& field : working.table().fields) {
    if (HasField(calculator, field.name)) {
      inputs.push_back({field.name, working.Get(field)});
    }
  }
  return inputs;
}

}  // namespace

std::vector<WorkbookInput> InputsOf(const CatalogueDialog& entry) {
  if (Block() == nullptr) {
    return {};
  }
  const char* code = Tasks(entry.mode)[static_cast<std::size_t>(entry.row)].family;
  if (entry.mode == ModeDistribution) {
    const CalculatorTable* calculator = FindCalculator(code);
    return calculator == nullptr ? std::vector<WorkbookInput>() : CalculatorInputs(*calculator);
  }
  const FamilyTable* table = FindFamily(code);
  return table == nullptr ? std::vector<WorkbookInput>() : CommittedInputs(*table);
}

}  // namespace poweranalysis
