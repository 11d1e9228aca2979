#include "PythonHost.h"

#include <pybind11/eval.h>

namespace poweranalysis {

namespace py = pybind11;

namespace {

// Whether a signal, or another thread, has raised an exception in this one. The latter comes out
// where Python's own code runs, so some is run.
bool Raised() {
  static PyObject* const nothing = py::eval("lambda: None").release().ptr();
  if (PyErr_CheckSignals() != 0) {
    return true;
  }
  PyObject* const result = PyObject_CallNoArgs(nothing);
  Py_XDECREF(result);
  return result == nullptr;
}

}  // namespace

bool SignalPoll::Interrupted() {
  constexpr auto kPace = std::chrono::milliseconds(20);
  const auto now = Clock::now();
  if (!interrupted_ && now >= next_) {
    next_ = now + kPace;
    const py::gil_scoped_acquire lock;
    interrupted_ = Raised();
  }
  return interrupted_;
}

bool PythonHost::lookbr() {
  const bool interrupted = poll_.Interrupted();
  cancelled = [interrupted] { return interrupted; };
  return HeadlessHost::lookbr();
}

}  // namespace poweranalysis
