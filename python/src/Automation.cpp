#include "automation/Application.h"

#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include <cmath>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "Bindings.h"
#include "PythonHost.h"
#include "StudyObject.h"
#include "automation/HeadlessDriver.h"
#include "automation/Interfaces.h"
#include "host/ConfigFolder.h"
#include "module/PowerAnalysisModule.h"

// The object model. The Python classes are made from the interface table; here stand the calls that
// they make.
namespace poweranalysis {

namespace py = pybind11;

namespace {

constexpr const char* kDriverCapsule = "poweranalysis.DialogDriver";

// Set by a program that the interpreter runs inside of, for its scripts to drive its own dialogs.
DialogDriver* hostProgram = nullptr;

// --- One application with its host.

class OwnedApplication {
 public:
  explicit OwnedApplication(const std::optional<std::string>& config)
      : hosted_(hostProgram != nullptr) {
    if (hosted_) {
      application_ = std::make_unique<Application>(*hostProgram);
      return;
    }
    host_.configFolder = config.value_or(UserConfigFolder("poweranalysis"));
    driver_ = std::make_unique<HeadlessDriver>(host_, NewAnalysis);
    application_ = std::make_unique<Application>(*driver_);
  }
  OwnedApplication(const OwnedApplication&) = delete;
  OwnedApplication& operator=(const OwnedApplication&) = delete;
  ~OwnedApplication() {
    const ModuleStateScope own(state_);
    application_.reset();
    driver_.reset();
  }

  // Runs a command on the application, without the interpreter's lock. One at a time: a second one,
  // of another thread, is refused.
  template <class Command>
  auto Do(Command command) {
    if (busy_) {
      throw AutomationError("Another command of this application is running");
    }
    busy_ = true;
    struct Idle {
      bool& busy;
      ~Idle() { busy = false; }
    } const idle{busy_};
    host_.BeginCommand();
    auto result = WithoutLock(std::move(command));
    if (PyErr_Occurred() != nullptr) {
      throw py::error_already_set();
    }
    return result;
  }

  const HeadlessHost& host() const { return host_; }
  bool hosted() const { return hosted_; }

 private:
  template <class Command>
  auto WithoutLock(Command command) {
    const py::gil_scoped_release release;
    if (hosted_) {
      return command(*application_);
    }
    const ModuleStateScope own(state_);
    return command(*application_);
  }

  bool hosted_;
  bool busy_ = false;
  ModuleState state_;
  PythonHost host_;
  std::unique_ptr<HeadlessDriver> driver_;
  std::unique_ptr<Application> application_;
};

using ApplicationPointer = std::shared_ptr<OwnedApplication>;

struct DialogHandle {
  ApplicationPointer application;
  std::shared_ptr<DialogObject> dialog;
};

// --- Values.

Value ToValue(const py::object& object) {
  if (PyLong_Check(object.ptr())) {
    return object.cast<std::int64_t>();
  }
  if (PyFloat_Check(object.ptr())) {
    return object.cast<double>();
  }
  if (PyUnicode_Check(object.ptr())) {
    return object.cast<std::string>();
  }
  if (PyIndex_Check(object.ptr())) {
    return py::reinterpret_steal<py::object>(PyNumber_Index(object.ptr())).cast<std::int64_t>();
  }
  throw py::type_error("a number or a text is wanted, not " + py::repr(object).cast<std::string>());
}

struct ToPython {
  py::object operator()(std::monostate) const { return py::none(); }
  py::object operator()(std::int64_t value) const { return py::int_(value); }
  py::object operator()(double value) const { return py::float_(value); }
  py::object operator()(const std::string& value) const { return py::str(value); }
  // The wrapper of the class knows its application.
  py::object operator()(Application*) const { return py::none(); }
  py::object operator()(SummaryTable& table) const { return py::cast(StudyOf(std::move(table))); }
  py::object operator()(Chart& chart) const { return py::cast(StudyOf(std::move(chart))); }
  py::object operator()(std::vector<Chart>& charts) const {
    py::list list;
    for (Chart& chart : charts) {
      list.append(py::cast(StudyOf(std::move(chart))));
    }
    return list;
  }
};

py::object Get(DialogHandle& self, const std::string& member) {
  Value value = self.application->Do([&](Application&) { return self.dialog->Get(member); });
  return std::visit(ToPython(), value);
}

void Put(DialogHandle& self, const std::string& member, const py::object& given) {
  const Value value = ToValue(given);
  self.application->Do([&](Application&) {
    self.dialog->Put(member, value);
    return 0;
  });
}

py::object Invoke(DialogHandle& self,
                  const std::string& member,
                  const std::optional<std::string>& path) {
  const Value argument = path ? Value(*path) : Value();
  Value value =
      self.application->Do([&](Application&) { return self.dialog->Call(member, argument); });
  return std::visit(ToPython(), value);
}

py::object GetField(DialogHandle& self, const std::string& field) {
  Value value = self.application->Do([&](Application&) { return self.dialog->GetField(field); });
  return std::visit(ToPython(), value);
}

void SetField(DialogHandle& self, const std::string& field, const py::object& given) {
  const Value value = ToValue(given);
  self.application->Do([&](Application&) {
    self.dialog->SetField(field, value);
    return 0;
  });
}

void PressButton(DialogHandle& self,
                 const std::string& button,
                 const std::optional<std::string>& path) {
  self.application->Do([&](Application&) {
    self.dialog->PressButton(button, path);
    return 0;
  });
}

// --- The application.

py::object Wrapped(const ApplicationPointer& owner, std::shared_ptr<DialogObject> dialog) {
  return dialog == nullptr ? py::object(py::none())
                           : py::cast(DialogHandle{owner, std::move(dialog)});
}

py::object StartAnalysis(const ApplicationPointer& owner) {
  return Wrapped(owner,
                 owner->Do([](Application& application) { return application.StartAnalysis(); }));
}

py::object OpenDialog(const ApplicationPointer& owner) {
  return Wrapped(owner, owner->Do([](Application& application) { return application.Dialog(); }));
}

// The items of the workbook from `first` on: ("table", study), ("report", paragraphs) or ("chart",
// study).
py::list ItemsFrom(OwnedApplication& owner, std::size_t first) {
  std::vector<WorkbookItem> items = owner.Do([&](Application& application) {
    std::vector<WorkbookItem> found;
    for (std::size_t i = first; i < application.driver().ItemCount(); ++i) {
      found.push_back(application.driver().Item(i));
    }
    return found;
  });
  py::list list;
  for (WorkbookItem& item : items) {
    const char* const kinds[] = {"table", "report", "chart"};
    const char* kind = kinds[item.index()];
    list.append(py::make_tuple(kind, StudyOf(std::move(item))));
  }
  return list;
}

py::list MessagesFrom(OwnedApplication& owner, std::size_t first) {
  py::list list;
  const std::vector<Message>& messages = owner.host().messages();
  for (std::size_t i = first; i < messages.size(); ++i) {
    list.append(py::make_tuple(messages[i].id, messages[i].text, messages[i].count));
  }
  return list;
}

// --- The table.

const char* KindName(MemberKind kind) {
  constexpr const char* kNames[] = {"property", "put", "get", "method"};
  return kNames[static_cast<int>(kind)];
}

const char* TypeName(const Member& member) {
  if (member.binding == Binding::Summary) {
    return "table";
  }
  if (member.binding == Binding::Graph) {
    return "chart";
  }
  constexpr const char* kNames[] = {
      "none",           "double", "int", "text", "variant", "application", "PowAnalysisType",
      "PowAnalysisItem"};
  return kNames[static_cast<int>(member.type)];
}

// (class of the dialog, title, [(member, kind, type, takes a path)]) of an interface; None when
// there is none with the name.
py::object DescribeInterface(const std::string& name) {
  const Interface* interface = FindInterface(name);
  if (interface == nullptr) {
    return py::none();
  }
  py::list members;
  for (const Member& member : interface->members) {
    const bool path = member.name == std::string("SaveSettingsAs");
    members.append(py::make_tuple(member.name, KindName(member.kind), TypeName(member), path));
  }
  return py::make_tuple(interface->className, interface->helpTitle, members);
}

py::list InterfaceNames() {
  py::list names;
  for (const Interface& interface : Interfaces()) {
    names.append(interface.name);
  }
  return names;
}

std::string HelpOfMember(const std::string& interfaceName, const std::string& memberName) {
  const Interface* interface = FindInterface(interfaceName);
  const Member* member = interface == nullptr ? nullptr : interface->Find(memberName);
  return member == nullptr ? std::string() : MemberHelp(*interface, *member);
}

py::list NamesOf(std::span<const Enumerator> enumerators) {
  py::list names;
  for (const Enumerator& enumerator : enumerators) {
    names.append(py::make_tuple(enumerator.name, enumerator.value));
  }
  return names;
}

void UseDriver(const py::object& capsule) {
  hostProgram =
      capsule.is_none()
          ? nullptr
          : static_cast<DialogDriver*>(PyCapsule_GetPointer(capsule.ptr(), kDriverCapsule));
  if (PyErr_Occurred() != nullptr) {
    throw py::error_already_set();
  }
}

// Lives as long as the process: a static of the program is destroyed when the interpreter is gone, and
// then no Python object may be released any more.
template <class Error>
const py::object& NewErrorClass(py::module_& module, const char* name, py::handle base) {
  return *new py::exception<Error>(module, name, base);
}

void Raise(const py::object& errorClass, const std::exception& exception) {
  PyErr_SetString(errorClass.ptr(), exception.what());
}

void BindErrors(py::module_& module) {
  static const py::object& error =
      NewErrorClass<AutomationError>(module, "AutomationError", PyExc_Exception);
  error.attr("code") = AutomationFailure;
  error.attr("__module__") = "poweranalysis";
  static const py::object& closed = NewErrorClass<DialogClosed>(module, "DialogClosed", error);
  closed.attr("__module__") = "poweranalysis";
  // Python's own protocols (hasattr) know it as a missing attribute.
  static const py::object& unknown = NewErrorClass<UnknownMember>(
      module, "UnknownMember",
      py::make_tuple(error, py::reinterpret_borrow<py::object>(PyExc_AttributeError)));
  unknown.attr("__module__") = "poweranalysis";
  py::register_exception_translator([](std::exception_ptr raised) {
    try {
      if (raised) {
        std::rethrow_exception(raised);
      }
    } catch (const DialogClosed& exception) {
      Raise(closed, exception);
    } catch (const UnknownMember& exception) {
      Raise(unknown, exception);
    } catch (const AutomationError& exception) {
      Raise(error, exception);
    }
  });
}

}  // namespace

void BindAutomation(py::module_& module) {
  BindErrors(module);
  module.def("interface_names", InterfaceNames);
  module.def("interface", DescribeInterface);
  module.def("member_help", HelpOfMember);
  module.def("analysis_types", [] { return NamesOf(AnalysisTypes()); });
  module.def("analysis_items", [] { return NamesOf(AnalysisItems()); });
  module.def("lock_count", DialogObject::LockCount);
  module.def("use_driver", UseDriver);

  py::class_<OwnedApplication, ApplicationPointer>(module, "Session")
      .def(py::init<const std::optional<std::string>&>())
      .def_property_readonly("hosted", &OwnedApplication::hosted)
      .def("start_analysis", StartAnalysis)
      .def("dialog", OpenDialog)
      .def("items", ItemsFrom)
      .def("messages", MessagesFrom);
  py::class_<DialogHandle>(module, "Dialog")
      .def_property_readonly("interface",
                             [](const DialogHandle& self) { return self.dialog->interface().name; })
      .def("is_same", [](const DialogHandle& self,
                         const DialogHandle& other) { return self.dialog == other.dialog; })
      .def("is_open",
           [](DialogHandle& self) {
             return self.application->Do([&](Application&) { return self.dialog->IsOpen(); });
           })
      .def("get", Get)
      .def("put", Put)
      .def("call", Invoke)
      .def("get_field", GetField)
      .def("set_field", SetField)
      .def("press", PressButton);
}

}  // namespace poweranalysis
