#pragma once

#include <string>

#include "exporters/Exporters.h"

namespace poweranalysis {

// The modes and their tasks.
std::string ListTasks();
// The fields of a family, by its row in the list of tests.
std::string DescribeFamily(int row, ExportFormat format);

}  // namespace poweranalysis
