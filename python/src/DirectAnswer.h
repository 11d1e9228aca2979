#pragma once

#include <optional>

#include "StudyObject.h"
#include "automation/TaskRun.h"

namespace poweranalysis {

// The answers of a request straight from the table of families, without dialogs, table or report:
// those are made by `run` when they are asked for, from the same inputs. Nothing where the dialogs would
// have anything to say, where there is no answer, and where more than numbers was asked for.
//
// Call it with the interpreter's lock; it gives the lock away while it computes.
std::optional<StudyObject> DirectAnswer(const TaskRequest& request,
                                        StudyObject (*run)(const TaskRequest&));

}  // namespace poweranalysis
