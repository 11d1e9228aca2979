#pragma once

#include <string>
#include <vector>

#include "exporters/WorkbookFile.h"

namespace poweranalysis {

// An OpenDocument text: each study with its tables, reports, charts (as pictures), messages and
// notes. The same studies give the same bytes. Returns the bytes of the file.
std::string ExportOdt(const std::vector<WorkbookStudy>& studies);

}  // namespace poweranalysis
