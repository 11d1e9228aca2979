#pragma once

#include <QString>
#include <vector>

#include "host/Workbook.h"

namespace poweranalysis {

// The power at the required size N of a table, at N - 1 and at N + 1: a note of the workbook beside
// the system's table. Each comes from a power task of the same family, run without a window with
// the fields as committed. Empty when the power at N is not, to the last bit, a value of the table:
// then the task is another one than the table's, and a note could mislead.
std::vector<QString> NeighbourNote(int task, const SummaryTable& table, int digits);

}  // namespace poweranalysis
