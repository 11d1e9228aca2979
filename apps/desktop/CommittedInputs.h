#pragma once

#include <string>
#include <vector>

#include "exporters/WorkbookFile.h"

namespace poweranalysis {

// The fields of a family as last committed, in the order of its record; none without a block.
std::vector<WorkbookInput> CommittedInputs(const std::string& family);

}  // namespace poweranalysis
