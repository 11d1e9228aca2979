#pragma once

#include <vector>

#include "host/DialogSpec.h"

namespace poweranalysis {

// The control of a number, on the frame or a page; null when the dialog has none.
const ControlSpec* FindControlSpec(const DialogSpec& spec, int number);

// The controls of the pages that show a field, in their order.
std::vector<const ControlSpec*> FieldControls(const DialogSpec& spec);

// The buttons of the frame and of the pages.
std::vector<const ControlSpec*> ButtonControls(const DialogSpec& spec);

}  // namespace poweranalysis
