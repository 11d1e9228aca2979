#include "macros/Interpreter.h"

#include <pybind11/embed.h>

#include <memory>
#include <utility>

#include "host/DialogDriver.h"

namespace poweranalysis {

namespace py = pybind11;

namespace {

constexpr const char* kDriverCapsule = "poweranalysis.DialogDriver";

// The text of Scope.py.
constexpr const char* kScope =
#include "Scope.inc"
    ;

class Config {
 public:
  Config() { PyConfig_InitIsolatedConfig(&config_); }
  Config(const Config&) = delete;
  Config& operator=(const Config&) = delete;
  ~Config() { PyConfig_Clear(&config_); }

  PyStatus Start() {
    config_.write_bytecode = 0;
    // Where the interpreter of the system lies, whatever else the search path of programs names.
    PyStatus status = PyConfig_SetString(&config_, &config_.program_name, L"/usr/bin/python3");
    if (PyStatus_Exception(status) == 0) {
      status = PyConfig_SetString(&config_, &config_.executable, L"/usr/bin/python3");
    }
    if (PyStatus_Exception(status) == 0) {
      status = PyConfig_SetString(&config_, &config_.home, L"/usr");
    }
    return PyStatus_Exception(status) != 0 ? status : Py_InitializeFromConfig(&config_);
  }

 private:
  PyConfig config_;
};

std::string Initialize() {
  PyPreConfig before;
  PyPreConfig_InitIsolatedConfig(&before);
  before.utf8_mode = 1;
  PyStatus status = Py_PreInitialize(&before);
  if (PyStatus_Exception(status) == 0) {
    status = Config().Start();
  }
  if (PyStatus_Exception(status) != 0) {
    return status.err_msg == nullptr ? "Python could not be started" : status.err_msg;
  }
  // The bindings note which thread state they were first used with; one of a script's thread would
  // be gone by the next.
  py::detail::get_internals();
  // Gives the lock away: scripts run on other threads.
  PyEval_SaveThread();
  return {};
}

// The names of kScope; never freed, as the interpreter.
py::dict& Scope() {
  static auto* const scope = [] {
    auto names = std::make_unique<py::dict>();
    py::exec(kScope, *names);
    return names.release();
  }();
  return *scope;
}

ScriptOutcome Described(const std::string& file, const py::error_already_set& error) {
  const auto orNone = [](const py::object& object) {
    return object ? object : py::object(py::none());
  };
  const py::object text =
      Scope()["describe"](file, orNone(error.type()), orNone(error.value()), orNone(error.trace()));
  if (text.is_none()) {
    return {true, {}};
  }
  return {false, text.cast<std::string>()};
}

}  // namespace

std::string StartInterpreter() {
  static const std::string fault = Initialize();
  return fault;
}

ScriptRun::ScriptRun(Surroundings surroundings) : surroundings_(std::move(surroundings)) {}

// While it lives, an interrupt comes out in the calling thread; what came too late is taken back.
class ScriptRun::InterruptibleSpan {
 public:
  explicit InterruptibleSpan(ScriptRun& run) : run_(run) {
    run_.thread_ = PyThread_get_thread_ident();
    if (run_.interrupted_) {
      PyThreadState_SetAsyncExc(run_.thread_, PyExc_KeyboardInterrupt);
    }
  }
  InterruptibleSpan(const InterruptibleSpan&) = delete;
  InterruptibleSpan& operator=(const InterruptibleSpan&) = delete;
  ~InterruptibleSpan() {
    PyThreadState_SetAsyncExc(run_.thread_, nullptr);
    run_.thread_ = 0;
  }

 private:
  ScriptRun& run_;
};

void ScriptRun::Interrupt() {
  const py::gil_scoped_acquire lock;
  interrupted_ = true;
  if (thread_ != 0) {
    PyThreadState_SetAsyncExc(thread_, PyExc_KeyboardInterrupt);
  }
}

ScriptOutcome ScriptRun::RunPrepared() {
  const auto write = [taker = surroundings_.write](const py::bytes& utf8) {
    const std::string text = utf8;
    const py::gil_scoped_release release;
    taker(text);
  };
  py::dict& scope = Scope();
  try {
    scope["prepare"](surroundings_.file, surroundings_.packageFolder,
                     py::capsule(surroundings_.driver, kDriverCapsule), py::cpp_function(write));
    const InterruptibleSpan span(*this);
    scope["run"](surroundings_.file);
    return {true, {}};
  } catch (const py::error_already_set& error) {
    return Described(surroundings_.file, error);
  }
}

ScriptOutcome ScriptRun::Run() {
  const py::gil_scoped_acquire lock;
  ScriptOutcome outcome;
  try {
    outcome = RunPrepared();
    Scope()["restore"]();
  } catch (const std::exception& fault) {
    outcome = {false, fault.what()};
  }
  return outcome;
}

}  // namespace poweranalysis
