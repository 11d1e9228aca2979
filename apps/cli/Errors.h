#pragma once

#include "automation/Errors.h"
#include "automation/TaskRun.h"

namespace poweranalysis {

// Exit statuses of the command line, a part of its contract, beside those of a calculation.
inline constexpr int StatusWrongUse = 2;

}  // namespace poweranalysis
