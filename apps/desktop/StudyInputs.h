#pragma once

#include <vector>

#include "exporters/WorkbookFile.h"
#include "frame/TaskCatalogue.h"

namespace poweranalysis {

// What a study of this dialog is made from, in the order of its record: the fields of the family as
// last committed, of a calculator its own as they stand. None without a block.
std::vector<WorkbookInput> InputsOf(const CatalogueDialog& entry);

}  // namespace poweranalysis
