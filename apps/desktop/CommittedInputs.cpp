#include "desktop/CommittedInputs.h"

#include "settings/PowerSettings.h"

namespace poweranalysis {

std::vector<WorkbookInput> CommittedInputs(const std::string& family) {
  std::vector<WorkbookInput> inputs;
  const FamilyTable* table = FindFamily(family);
  if (table == nullptr || Block() == nullptr) {
    return inputs;
  }
  const RecordView committed = ViewOf(*Block(), table->family, Instance::Committed);
  for (const Field& field : table->fields) {
    inputs.push_back({field.name, committed.Get(field)});
  }
  return inputs;
}

}  // namespace poweranalysis
