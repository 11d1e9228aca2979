#pragma once

#include "automation/TaskRun.h"

namespace poweranalysis {

// A computation as a session with the calculator's dialog: choose the calculator and the unknown,
// fill in the boxes, Compute.
TaskOutcome RunCalculator(const TaskRequest& request,
                          HeadlessHost& host,
                          const HeadlessDriver::Factory& factory);

}  // namespace poweranalysis
