#include "office/Document.h"

#include <pybind11/pybind11.h>

#include "StudyObject.h"

// Documents of office programs, in their own module: their libraries load when the first of them is
// asked for.
namespace poweranalysis {

namespace py = pybind11;

namespace {

py::bytes Document(StudyObject& object, const std::string& format) {
  const auto found = FindExportFormat(format);
  if (!found || !IsDocument(*found)) {
    throw py::value_error("there is no document format '" + format + "'");
  }
  const Study& study = object.Whole();
  std::string error;
  std::string bytes;
  {
    const py::gil_scoped_release release;
    bytes = ExportDocument({DocumentStudy(study)}, *found, error);
  }
  if (!error.empty()) {
    throw std::runtime_error(error);
  }
  return py::bytes(bytes);
}

}  // namespace

}  // namespace poweranalysis

PYBIND11_MODULE(_office, module) {
  module.doc() = "Documents of office programs; use Result.to_xlsx and Result.to_odt.";
  module.def("document", poweranalysis::Document);
}
