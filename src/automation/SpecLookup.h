#pragma once

#include <functional>
#include <string>
#include <vector>

#include "host/DialogSpec.h"

namespace poweranalysis {

// The control of a number, on the frame or a page; null when the dialog has none.
const ControlSpec* FindControlSpec(const DialogSpec& spec, int number);

// The controls of the pages that show a field, in their order.
std::vector<const ControlSpec*> FieldControls(const DialogSpec& spec);

// A box for a number.
bool IsEdit(const ControlSpec& control);

// The box of a calculator's unknown; null on any other dialog. The three radio buttons of the
// unknown stand for the statistic, which comes first on the page, the probability, and the
// parameter of the distribution, the one other real number.
const ControlSpec* UnknownBox(const DialogSpec& spec, const std::function<bool(int)>& isChecked);

// The buttons of the frame and of the pages.
std::vector<const ControlSpec*> ButtonControls(const DialogSpec& spec);

// The buttons that draw charts.
std::vector<const ControlSpec*> ChartControls(const DialogSpec& spec);

std::vector<std::string> NamesOf(const std::vector<const ControlSpec*>& controls);

}  // namespace poweranalysis
