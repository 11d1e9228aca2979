#include "Bindings.h"

PYBIND11_MODULE(_core, module) {
  module.doc() = "What the package is made of; use the names of poweranalysis itself.";
  module.attr("__version__") = POWERANALYSIS_VERSION;
  poweranalysis::BindDistributions(module);
  poweranalysis::BindCalculations(module);
  poweranalysis::BindAutomation(module);
}
