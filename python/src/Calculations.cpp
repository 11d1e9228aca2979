#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include <algorithm>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "Bindings.h"
#include "DirectAnswer.h"
#include "PythonHost.h"
#include "StudyObject.h"
#include "automation/CalculatorNames.h"
#include "automation/Errors.h"
#include "host/ConfigFolder.h"
#include "host/NumberText.h"
#include "host/SvgPainter.h"
#include "module/PowerAnalysisModule.h"
#include "output/SummaryTables.h"

// A calculation asked for by name: the dialogs are driven as the command line drives them.
namespace poweranalysis {

namespace py = pybind11;

namespace {

using Values = std::vector<std::pair<std::string, py::object>>;

// --- Names.

const Field& FieldOfKeyword(const FamilyTable& family, const std::string& keyword) {
  std::vector<std::string> names;
  for (const Field& field : family.fields) {
    if (IsNameOf(keyword, field.name)) {
      return field;
    }
    names.emplace_back(field.name);
  }
  throw py::type_error("there is no argument '" + keyword + "' for " + family.code +
                       "; the nearest is '" + Nearest(keyword, names) + "'");
}

// A number of a calculator goes by its field's name and by the letter that formulas use.
const Field& FieldOfCalculator(const CalculatorTable& calculator, const std::string& keyword) {
  std::vector<std::string> names;
  for (const char* shown : calculator.fields) {
    const Field& field = *TableOf(calculator.family).Find(shown);
    const std::vector<std::string> shorter = ShorterOptions(calculator, field);
    const auto same = [&keyword](const std::string& name) { return SameName(keyword, name); };
    if (IsNameOf(keyword, field.name) || std::any_of(shorter.begin(), shorter.end(), same)) {
      return field;
    }
    names.emplace_back(field.name);
    names.insert(names.end(), shorter.begin(), shorter.end());
  }
  throw py::type_error("there is no argument '" + keyword +
                       "' for this calculator; the nearest is '" + Nearest(keyword, names) + "'");
}

// `what` is a row of the mode's list: "family" or "calculator".
int RowOfTask(int mode, const std::string& name, const char* what) {
  const int row = FindTask(mode, name);
  if (row >= 0) {
    return row;
  }
  std::vector<std::string> names;
  for (const TaskRow& task : Tasks(mode)) {
    if (SameName(task.readableName, name)) {
      return FindTask(mode, task.readableName);
    }
    names.emplace_back(task.family);
    names.emplace_back(task.readableName);
  }
  throw py::type_error(std::string("there is no ") + what + " '" + name + "'; the nearest is '" +
                       Nearest(name, names) + "'");
}

// --- Values.

// What was given, as it would be typed.
std::string TextOf(const std::string& keyword, const py::object& value) {
  if (py::isinstance<py::str>(value)) {
    return value.cast<std::string>();
  }
  const double number = PyFloat_AsDouble(value.ptr());
  if (PyErr_Occurred() != nullptr) {
    PyErr_Clear();
    throw py::type_error(keyword + " must be a number or the name of a choice, not " +
                         py::repr(value).cast<std::string>());
  }
  return FormatShortest(number);
}

// `find` gives the field of a keyword.
template <class Find>
std::vector<FieldValue> ValuesOf(const FamilyTable& family, const Values& given, Find find) {
  std::vector<FieldValue> values;
  for (const auto& [keyword, value] : given) {
    const Field& field = find(keyword);
    const auto same = [&field](const FieldValue& other) { return other.field == &field; };
    if (std::any_of(values.begin(), values.end(), same)) {
      throw py::type_error(keyword + ": " + field.name + " was given twice");
    }
    try {
      values.push_back({&field, ParseFieldValue(family, field, keyword, TextOf(keyword, value))});
    } catch (const UsageError& error) {
      throw py::value_error(error.what());
    }
  }
  std::sort(values.begin(), values.end(),
            [](const FieldValue& a, const FieldValue& b) { return a.field < b.field; });
  return values;
}

struct Files {
  std::optional<std::string> settings;
  std::optional<std::string> saveSettings;
  bool saveDefaults = false;
  std::optional<std::string> config;
};

TaskRequest RequestOf(int mode,
                      const std::string& family,
                      const Values& given,
                      const std::vector<std::string>& charts,
                      const Files& files) {
  TaskRequest request;
  request.mode = mode;
  request.row = RowOfTask(mode, family, "family");
  request.family = &FamilyOfTask(mode, request.row);
  request.values =
      ValuesOf(*request.family, given, [&request](const std::string& keyword) -> const Field& {
        return FieldOfKeyword(*request.family, keyword);
      });
  for (const std::string& chart : charts) {
    request.charts.push_back(LowerCase(chart));
  }
  request.settings = files.settings;
  request.saveSettings = files.saveSettings;
  request.saveDefaults = files.saveDefaults;
  request.configFolder = files.config.value_or(UserConfigFolder("poweranalysis"));
  return request;
}

TaskRequest CalculatorRequest(const std::string& name,
                              const Values& given,
                              const std::string& unknown,
                              bool oneMinusP,
                              const std::optional<std::string>& config) {
  TaskRequest request;
  request.mode = ModeDistribution;
  request.row = RowOfTask(request.mode, name, "calculator");
  request.family = &FamilyOfTask(request.mode, request.row);
  const CalculatorTable& calculator =
      *FindCalculator(Tasks(request.mode)[static_cast<std::size_t>(request.row)].family);
  request.unknown = FindUnknown(calculator, unknown);
  request.oneMinusP = oneMinusP;
  request.values =
      ValuesOf(*request.family, given, [&calculator](const std::string& keyword) -> const Field& {
        return FieldOfCalculator(calculator, keyword);
      });
  const CalculatorUnknown& solved = calculator.unknowns[*request.unknown];
  if (IsGiven(solved, request.values)) {
    throw py::type_error(std::string(solved.name) +
                         " is the unknown; choose another by unknown=, " + "from " +
                         UnknownNames(calculator));
  }
  request.configFolder = config.value_or(UserConfigFolder("poweranalysis"));
  return request;
}

TaskOutcome RunWithoutLock(const TaskRequest& request) {
  const py::gil_scoped_release release;
  const ModuleStateScope own;
  PythonHost host;
  return RunTask(request, host, NewAnalysis);
}

StudyObject StudyOf(const TaskRequest& request) {
  TaskOutcome outcome = RunWithoutLock(request);
  if (PyErr_Occurred() != nullptr) {
    throw py::error_already_set();
  }
  return {std::move(outcome.study), std::move(outcome.errors), std::move(outcome.notes)};
}

StudyObject Run(int mode,
                const std::string& family,
                const Values& given,
                const std::vector<std::string>& charts,
                const std::optional<std::string>& settings,
                const std::optional<std::string>& saveSettings,
                bool saveDefaults,
                const std::optional<std::string>& config) {
  const TaskRequest request =
      RequestOf(mode, family, given, charts, {settings, saveSettings, saveDefaults, config});
  try {
    std::optional<StudyObject> direct = DirectAnswer(request, StudyOf);
    return direct ? *std::move(direct) : StudyOf(request);
  } catch (const UsageError& error) {
    throw py::type_error(error.what());
  }
}

StudyObject Calculate(const std::string& calculator,
                      const Values& given,
                      const std::string& unknown,
                      bool oneMinusP,
                      const std::optional<std::string>& config) {
  try {
    return StudyOf(CalculatorRequest(calculator, given, unknown, oneMinusP, config));
  } catch (const UsageError& error) {
    throw py::type_error(error.what());
  }
}

// --- What is known of the families.

py::list ListFamilies() {
  py::list families;
  for (const TaskRow& task : Tasks(ModePower)) {
    families.append(py::make_tuple(task.family, task.readableName, LoadText(task.name)));
  }
  return families;
}

// (readable name, title, names of the unknowns) of each calculator.
py::list ListCalculators() {
  py::list calculators;
  for (const TaskRow& task : Tasks(ModeDistribution)) {
    py::list unknowns;
    for (const CalculatorUnknown& unknown : FindCalculator(task.family)->unknowns) {
      unknowns.append(unknown.name);
    }
    calculators.append(py::make_tuple(task.readableName, LoadText(task.name), unknowns));
  }
  return calculators;
}

// --- A study.

py::object NumberOrNone(double value) {
  return IsMissing(value) ? py::object(py::none()) : py::object(py::float_(value + 0.0));
}

// (name, value, counts, of) of each answer; None for what is missing.
py::list AnswersOf(const StudyObject& object) {
  const auto text = [](const std::string& given) {
    return given.empty() ? py::object(py::none()) : py::object(py::str(given));
  };
  py::list answers;
  for (const Answer& answer : object.study.answers) {
    answers.append(py::make_tuple(answer.name, NumberOrNone(answer.value), text(answer.counts),
                                  text(answer.of)));
  }
  return answers;
}

// (name, lower, upper) of each interval; None for what is missing.
py::list LimitsOf(const StudyObject& object) {
  py::list limits;
  for (const NamedLimits& pair : object.study.limits) {
    limits.append(py::make_tuple(pair.name, NumberOrNone(pair.lower), NumberOrNone(pair.upper)));
  }
  return limits;
}

py::object PValueOf(const StudyObject& object) {
  return object.study.pValue ? NumberOrNone(*object.study.pValue) : py::none();
}

py::list MessagesOf(const StudyObject& object) {
  py::list messages;
  for (const Message& message : object.study.messages) {
    messages.append(py::make_tuple(message.id, message.text, message.count));
  }
  return messages;
}

std::string ExportTo(StudyObject& object, const std::string& format) {
  const auto found = FindExportFormat(format);
  if (!found || IsDocument(*found)) {
    throw py::value_error("there is no text format '" + format + "'");
  }
  const Study& study = object.Whole();
  TextStyle style;
  for (const Chart* chart : ChartsOf(study)) {
    style.charts.push_back(chart->name);
  }
  return Export(study, *found, style);
}

// The table alone, as text or as HTML; nothing without a table.
std::string TableText(const StudyObject& object) {
  const SummaryTable* table = SummaryOf(object.study);
  return table == nullptr ? std::string() : TextOf(*table);
}

std::string TableHtml(const StudyObject& object) {
  const SummaryTable* table = SummaryOf(object.study);
  return table == nullptr ? std::string() : HtmlOf(*table);
}

std::string SvgOf(const StudyObject& object, std::size_t index, bool dark) {
  return PaintSvg(LayOutChart(*ChartsOf(object.study).at(index)),
                  dark ? DarkTheme() : LightTheme());
}

}  // namespace

StudyObject StudyOf(WorkbookItem item) {
  StudyObject object;
  if (const auto* table = std::get_if<SummaryTable>(&item)) {
    object.study.code = table->code;
  }
  object.study.workbook.items.push_back(std::move(item));
  return object;
}

void BindCalculations(py::module_& module) {
  module.def("run", Run);
  module.def("calculate", Calculate);
  module.def("families", ListFamilies);
  module.def("calculators", ListCalculators);
  module.def("user_config_folder", [] { return UserConfigFolder("poweranalysis"); });
  py::class_<StudyObject>(module, "Study")
      .def_property_readonly("status", [](const StudyObject& self) { return self.study.status; })
      .def_property_readonly("answers", AnswersOf)
      .def_property_readonly("limits", LimitsOf)
      .def_property_readonly("p_value", PValueOf)
      .def_property_readonly("messages", MessagesOf)
      .def_readonly("errors", &StudyObject::errors)
      .def_readonly("notes", &StudyObject::notes)
      .def("export", ExportTo)
      .def("table_text", TableText)
      .def("table_html", TableHtml)
      .def("full_csv", [](const StudyObject& self) { return ExportFullCsv(self.study); })
      .def("html_body", [](const StudyObject& self) { return HtmlBodyOf(self.study); })
      .def("svg", SvgOf);
}

}  // namespace poweranalysis
