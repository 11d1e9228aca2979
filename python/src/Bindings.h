#pragma once

#include <pybind11/pybind11.h>

// The parts of the extension module, each of which adds its names to it.
namespace poweranalysis {

void BindDistributions(pybind11::module_& module);
void BindCalculations(pybind11::module_& module);
void BindAutomation(pybind11::module_& module);

}  // namespace poweranalysis
