#pragma once

#include <string>

#include "exporters/Exporters.h"

namespace poweranalysis {

// The modes and their tasks.
std::string ListTasks();
// The fields of a family or a calculator, by its mode and row.
std::string DescribeFamily(int mode, int row, ExportFormat format);

}  // namespace poweranalysis
