#include "cli/CommandLine.h"

#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>

#include "cli/Calc.h"
#include "cli/ChartFiles.h"
#include "cli/Errors.h"
#include "cli/Output.h"
#include "host/ChartLayout.h"
#include "host/ConfigFolder.h"
#include "module/PowerAnalysisModule.h"

// The one source that knows the library which reads arguments. Only the options of the family that
// is asked for are built, and their help texts only when help is asked for.
namespace poweranalysis {

namespace {

constexpr const char* kProgram = "poweranalysis";
constexpr const char* kWorkedExample =
    "poweranalysis size t2 --mu1 5 --mu2 0 --sigma 10 --power-goal 0.8";

struct SubCommand {
  const char* name;
  int mode;  // -1: no calculation
  CommandKind kind;
  const char* help;
  const char* example;
};

const std::array<SubCommand, 7> kSubCommands = {{
    {ModeWord(ModePower), ModePower, CommandKind::Run, "Power of a test of given size",
     "poweranalysis power t2 --mu1 5 --mu2 0 --sigma 10 --sample-size-n1 64 --sample-size-n2 64"},
    {ModeWord(ModeSampleSize), ModeSampleSize, CommandKind::Run,
     "Sample size that a power goal requires", kWorkedExample},
    {ModeWord(ModeInterval), ModeInterval, CommandKind::Run,
     "Confidence intervals from an observed statistic",
     "poweranalysis interval av1 --f-observed 4 --number-of-groups 3 --n 20"},
    {ModeWord(ModeDistribution), ModeDistribution, CommandKind::Run,
     "Probability calculators: one unknown of a distribution",
     "poweranalysis calc t --unknown p --t 2 --df 4 --delta 1"},
    {"list", -1, CommandKind::List, "Modes and tasks, with the names of the families",
     "poweranalysis list"},
    {"describe", -1, CommandKind::Describe,
     "Fields of a family: option, range, default, label and meaning", "poweranalysis describe t2"},
    {"macro", -1, CommandKind::Macro, "Run a macro: a Python script of the dialogs",
     "poweranalysis macro run study.py"},
}};

// Options of every calculation; each takes a value but for the flags.
struct GeneralOption {
  const char* names;
  const char* value;  // how help names the value; null: a flag
  const char* help;   // "{}" stands for the extensions of chart files
  enum { All, Tests, Charted, Gridded, Calculators } of = All;
};

constexpr std::array<GeneralOption, 14> kGeneralOptions = {{
    {"--unknown", "NAME", "What to compute", GeneralOption::Calculators},
    {"--one-minus-p", nullptr, "The probability is 1 - p, given and answered",
     GeneralOption::Calculators},
    {"--means", "LIST", "Expected cell means: 10,12,15 or, in rows, \"1,2;3,4\"",
     GeneralOption::Gridded},
    {"--weights", "LIST", "Weights of the means of a contrast: 1,1,-2", GeneralOption::Gridded},
    {"--means-file", "FILE",
     "A sheet of cell means with the standard deviation in its last row, in place of --means",
     GeneralOption::Gridded},
    {"--set", "FIELD=VALUE", "Set a field by its own name, in any case; may be repeated"},
    {"--settings", "FILE", "Open a settings file before the options are applied",
     GeneralOption::Tests},
    {"--save-settings", "FILE", "Save the settings of the run to a file", GeneralOption::Tests},
    {"--save-defaults", nullptr, "Make the settings of the run the defaults of later runs",
     GeneralOption::Tests},
    {"--format", "NAME", "text (default), json, csv, markdown, html, xlsx or odt"},
    {"--csv-full", nullptr, "CSV with the headings before the table and the charts behind it"},
    {"-o,--output", "FILE", "Write to a file instead of standard output"},
    {"--chart", "NAME[=FILE]",
     "Draw a chart: to a file ({}), or without one into the output; all=FOLDER draws every chart; "
     "may "
     "be repeated",
     GeneralOption::Charted},
    {"--config", "FOLDER", "Folder of the default settings, in place of the user's own"},
}};

bool IsHelp(const std::string& argument) { return argument == "--help" || argument == "-h"; }
bool IsOption(const std::string& argument) { return argument.size() > 1 && argument[0] == '-'; }

bool IsFlag(const std::string& argument) {
  return IsHelp(argument) || argument == "--save-defaults" || argument == "--one-minus-p" ||
         argument == "--csv-full" || argument == "--version";
}

// The modes from whose lists a command takes its family; `describe` knows the tests first, since a
// calculator may go by the code of one.
std::vector<int> ModesOf(const SubCommand& command) {
  switch (command.kind) {
    case CommandKind::Run:
      return {command.mode};
    case CommandKind::Describe:
      return {ModePower, ModeDistribution};
    default:
      return {};
  }
}

bool IsForCalculators(const SubCommand& command) { return command.mode == ModeDistribution; }

// What messages and help call the argument of the command.
const char* FamilyNoun(const SubCommand& command) {
  return IsForCalculators(command) ? "calculator" : "family";
}

std::string Capitals(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(), [](char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
  });
  return text;
}

struct Task {
  int mode;
  int row;  // -1: there is none with that name
};

// The task of a name; no row when there is none.
Task LookUpTask(const SubCommand& command, const std::string& name) {
  for (const int mode : ModesOf(command)) {
    if (const int row = FindTask(mode, name); row >= 0) {
      return {mode, row};
    }
  }
  return {-1, -1};
}

std::vector<std::string> FamilyNames(const SubCommand& command) {
  std::vector<std::string> names;
  for (const int mode : ModesOf(command)) {
    for (const TaskRow& task : Tasks(mode)) {
      names.push_back(LowerCase(task.family));
      names.emplace_back(task.readableName);
    }
  }
  return names;
}

// The shorter of a family's names; a calculator's code may be that of a test.
std::string ShortName(const TaskRow& task, int mode) {
  return mode == ModeDistribution ? task.readableName : LowerCase(task.family);
}

bool HasValueBehind(const std::string& option) {
  const bool joined = option.find('=') != std::string::npos;
  const bool shortWithValue = option[1] != '-' && option.size() > 2;
  return !joined && !IsFlag(option) && !shortWithValue;
}

// Takes the family out of the arguments: the options that there are depend on it. It is the first
// word that is neither an option nor the value of one; when there is none, a value that names a
// family, as after an option that does not exist. Nothing when there is no such word.
std::optional<std::string> TakeFamily(std::vector<std::string>& arguments,
                                      const SubCommand& command) {
  const auto take = [&arguments](std::size_t i) {
    std::string family = arguments[i];
    arguments.erase(arguments.begin() + static_cast<std::ptrdiff_t>(i));
    return family;
  };
  std::optional<std::size_t> value;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    if (!IsOption(arguments[i])) {
      return take(i);
    }
    // An unknown may go by the name of a calculator.
    const bool namesUnknown = arguments[i] == "--unknown";
    if (HasValueBehind(arguments[i]) && ++i < arguments.size() && !namesUnknown &&
        LookUpTask(command, arguments[i]).row >= 0) {
      value = i;
    }
  }
  return value ? std::optional(take(*value)) : std::nullopt;
}

Task FindFamilyTask(const SubCommand& command, const std::optional<std::string>& name) {
  if (!name) {
    throw UsageError(fmt::format("{}: a {} is missing; see '{} list'. Example: {}", command.name,
                                 FamilyNoun(command), kProgram, command.example));
  }
  const Task task = LookUpTask(command, *name);
  if (task.row < 0) {
    throw UsageError(fmt::format("there is no {} '{}'; the nearest is '{}'. See '{} list'.",
                                 FamilyNoun(command), *name, Nearest(*name, FamilyNames(command)),
                                 kProgram));
  }
  return task;
}

// "--name=" gives an empty value, which the library would not see: it becomes two arguments.
std::vector<std::string> SplitEmptyValues(const std::vector<std::string>& arguments) {
  std::vector<std::string> split;
  for (const std::string& argument : arguments) {
    const bool emptyValue = argument.rfind("--", 0) == 0 && argument.back() == '=' &&
                            argument.find('=') == argument.size() - 1;
    split.push_back(emptyValue ? argument.substr(0, argument.size() - 1) : argument);
    if (emptyValue) {
      split.emplace_back();
    }
  }
  return split;
}

// --- Options of one family.

// A help text in lines that stand beside the names of the options.
std::string HelpLines(const std::string& text) {
  constexpr std::size_t kColumns = 50;
  const auto fits = [](const std::string& line) { return line.size() <= kColumns; };
  return fmt::format("{}", fmt::join(WrapText(text, fits), "\n"));
}

bool Contains(const std::vector<std::string>& names, const char* name) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

// The headings of the help, and under which of them an option stands.
constexpr std::array<const char*, 3> kGroups = {"Parameters", "Ranges of the charts",
                                                "Other fields, kept in the settings"};

std::size_t GroupOf(const Field& field, const TaskDialogs& dialogs) {
  if (dialogs.parameters.empty() || Contains(dialogs.parameters, field.name)) {
    return 0;
  }
  return Contains(dialogs.ranges, field.name) ? 1 : 2;
}

class FamilyParser {
 public:
  FamilyParser(const SubCommand& command, Task task, bool withHelp);

  // Reads the arguments after the family.
  RunRequest Parse(const std::vector<std::string>& arguments);
  std::string Help() const { return app_.help(); }

 private:
  struct FieldOption {
    const Field* field;
    CLI::Option* option;
  };

  CLI::Option* AddOption(const std::string& names);
  void AddGeneralOptions();
  void AddFieldOption(const Field& field);
  std::string FieldHelp(const Field& field) const;
  std::string Footer() const;
  bool Offers(const Field& field) const;
  // The options of a field, the shorter ones after its own.
  std::vector<std::string> OptionsOf(const Field& field) const;
  // The values of an option; none when it was not given, or does not belong to this family.
  std::vector<std::string> ValuesOf(const char* name) const;
  bool IsGiven(const char* name) const { return !ValuesOf(name).empty(); }
  std::optional<std::string> ValueOf(const char* name) const;
  // The same for a file or folder, whose name cannot be empty.
  std::optional<std::string> PathOf(const char* name) const;
  void RefuseUnknown() const;
  void ReadFields(RunRequest& request) const;
  void ReadCharts(RunRequest& request) const;
  void ReadUnknown(RunRequest& request) const;
  void ReadMeans(RunRequest& request) const;
  bool TakesMeans() const {
    return calculator_ == nullptr && GridOfTask(place_.mode, family_.family) != nullptr;
  }

  const SubCommand& command_;
  Task place_;
  const TaskRow& task_;
  const CalculatorTable* calculator_;  // null for a test
  bool withHelp_;
  const FamilyTable& family_;
  TaskDialogs dialogs_;  // for help alone
  CLI::App app_;
  std::vector<FieldOption> fields_;
};

FamilyParser::FamilyParser(const SubCommand& command, Task task, bool withHelp)
    : command_(command),
      place_(task),
      task_(Tasks(task.mode)[static_cast<std::size_t>(task.row)]),
      calculator_(IsForCalculators(command) ? FindCalculator(task_.family) : nullptr),
      withHelp_(withHelp),
      family_(FamilyOfTask(task.mode, task.row)),
      dialogs_(withHelp && calculator_ == nullptr ? LookAtDialogs(task.mode, task.row, NewAnalysis)
                                                  : TaskDialogs()) {
  app_.name(fmt::format("{} {} {}", kProgram, command.name, ShortName(task_, task.mode)));
  app_.set_help_flag("-h,--help", "Print this help and exit");
  app_.allow_extras();
  // Help shows the groups in the order of their first options.
  const std::size_t groups = withHelp ? kGroups.size() : 1;
  for (std::size_t group = 0; group < groups; ++group) {
    for (const Field& field : family_.fields) {
      if (Offers(field) && (groups == 1 || GroupOf(field, dialogs_) == group)) {
        AddFieldOption(field);
      }
    }
  }
  AddGeneralOptions();
  if (withHelp) {
    app_.description(fmt::format("{}: {}", command.help, LoadText(task_.name)));
    app_.footer(Footer());
  }
}

bool FamilyParser::Offers(const Field& field) const {
  return calculator_ == nullptr || ShowsField(*calculator_, field);
}

std::vector<std::string> FamilyParser::OptionsOf(const Field& field) const {
  std::vector<std::string> options = {OptionName(field.name)};
  std::vector<std::string> shorter = {OptionAlias(field.name)};
  if (calculator_ != nullptr) {
    shorter = ShorterOptions(*calculator_, field);
  }
  std::copy_if(shorter.begin(), shorter.end(), std::back_inserter(options),
               [&](const std::string& name) { return !name.empty() && name != options.front(); });
  return options;
}

std::vector<std::string> FamilyParser::ValuesOf(const char* name) const {
  const CLI::Option* option = app_.get_option_no_throw(name);
  return option == nullptr ? std::vector<std::string>() : option->results();
}

// An option with one value each time that it is given; how often it may occur is checked after the
// library has run, so that the user gets our wording.
CLI::Option* FamilyParser::AddOption(const std::string& names) {
  constexpr int kAnyNumber = -1;
  return app_.add_option(names)->expected(1, kAnyNumber)->allow_extra_args(false);
}

void FamilyParser::AddGeneralOptions() {
  for (const GeneralOption& row : kGeneralOptions) {
    const bool ofCalculators = row.of == GeneralOption::Calculators;
    if (row.of == GeneralOption::Gridded && !TakesMeans()) {
      continue;
    }
    if (row.of != GeneralOption::All && ofCalculators != (calculator_ != nullptr)) {
      continue;
    }
    CLI::Option* option = row.value == nullptr ? app_.add_flag(row.names) : AddOption(row.names);
    if (row.of == GeneralOption::Charted && command_.mode == ModeInterval) {
      option->group("");  // refused by name, and not offered
    } else if (withHelp_) {
      option->description(HelpLines(fmt::format(fmt::runtime(row.help), ChartExtensions())))
          ->group("General");
      if (row.value != nullptr) {
        option->option_text(row.value);
      }
    }
  }
}

bool StartsWith(std::string_view text, std::string_view start) {
  return text.substr(0, start.size()) == start;
}

void FamilyParser::AddFieldOption(const Field& field) {
  CLI::Option* option = AddOption(fmt::format("--{}", fmt::join(OptionsOf(field), ",--")));
  if (withHelp_) {
    option->description(FieldHelp(field));
    option->option_text(field.type == FieldType::Real ? "NUMBER" : "WHOLE");
    option->group(kGroups[GroupOf(field, dialogs_)]);
  }
  fields_.push_back({&field, option});
}

std::string FamilyParser::FieldHelp(const Field& field) const {
  const std::string allowed = AllowedValues(family_, field);
  return fmt::format(
      "{}\n{}", HelpLines(calculator_ == nullptr ? LoadText(field.meaning) : MeaningOfBox(field)),
      HelpLines(
          fmt::format("({}{}default {})", allowed, allowed.empty() ? "" : "; ", field.factory)));
}

std::string FamilyParser::Footer() const {
  if (calculator_ != nullptr) {
    return CalculatorFooter(*calculator_,
                            fmt::format("{} {} {}", kProgram, command_.name, task_.readableName));
  }
  std::string footer;
  for (const std::string& chart : dialogs_.charts) {
    footer += (footer.empty() ? "Charts: " : ", ") + chart;
  }
  const char* option = command_.mode == ModeInterval ? "--confidence 0.99" : "--alpha 0.01";
  return fmt::format("{}{}Example:\n  {} {} {} {}", footer, footer.empty() ? "" : "\n\n", kProgram,
                     command_.name, LowerCase(task_.family), option);
}

std::optional<std::string> FamilyParser::ValueOf(const char* name) const {
  const std::vector<std::string> values = ValuesOf(name);
  if (values.size() > 1) {
    throw UsageError(fmt::format("{} was given twice", name));
  }
  return values.empty() ? std::nullopt : std::optional(values.front());
}

std::optional<std::string> FamilyParser::PathOf(const char* name) const {
  std::optional<std::string> path = ValueOf(name);
  if (path && path->empty()) {
    throw UsageError(fmt::format("{}: a value is missing", name));
  }
  return path;
}

void FamilyParser::RefuseUnknown() const {
  std::vector<std::string> extras = app_.remaining();
  extras.erase(std::remove(extras.begin(), extras.end(), "--"), extras.end());
  if (extras.empty()) {
    return;
  }
  const auto unknown = std::find_if(extras.begin(), extras.end(), IsOption);
  if (unknown == extras.end()) {
    throw UsageError(fmt::format("'{}' was not expected", extras.front()));
  }
  std::vector<std::string> names;
  for (const CLI::Option* option : app_.get_options()) {
    for (const std::string& name : option->get_lnames()) {
      names.push_back("--" + name);
    }
  }
  const std::string word = unknown->substr(0, unknown->find('='));
  const std::string nearest = Nearest(word, names);
  if (nearest == word) {
    // It came after "--", where nothing is an option.
    throw UsageError(fmt::format("'{}' was not expected", *unknown));
  }
  throw UsageError(
      fmt::format("there is no option '{}'; the nearest is '{}'. See '{} {} {} --help'.", word,
                  nearest, kProgram, command_.name, ShortName(task_, place_.mode)));
}

void FamilyParser::ReadFields(RunRequest& request) const {
  std::vector<const Field*> given;
  const auto add = [&](const Field& field, const std::string& option, const std::string& text) {
    if (std::find(given.begin(), given.end(), &field) != given.end()) {
      throw UsageError(fmt::format("{}: {} was given twice", option, field.name));
    }
    given.push_back(&field);
    request.values.push_back({&field, ParseFieldValue(family_, field, option, text)});
  };
  for (const FieldOption& row : fields_) {
    for (const std::string& text : row.option->results()) {
      add(*row.field, "--" + OptionName(row.field->name), text);
    }
  }
  for (const std::string& text : ValuesOf("--set")) {
    const std::size_t equals = text.find('=');
    if (equals == std::string::npos) {
      throw UsageError(fmt::format("--set: '{}' is not of the form FIELD=VALUE", text));
    }
    const Field& field = FindField(family_, text.substr(0, equals));
    if (!Offers(field)) {
      throw UsageError(fmt::format("--set: the calculator has no field {}", field.name));
    }
    add(field, "--set " + text.substr(0, equals), text.substr(equals + 1));
  }
  std::sort(request.values.begin(), request.values.end(),
            [](const FieldValue& a, const FieldValue& b) { return a.field < b.field; });
}

void FamilyParser::ReadCharts(RunRequest& request) const {
  for (const std::string& text : ValuesOf("--chart")) {
    const std::size_t equals = text.find('=');
    ChartWish wish;
    wish.name = LowerCase(text.substr(0, equals));
    if (equals != std::string::npos) {
      wish.file = text.substr(equals + 1);
      if (wish.file.empty()) {
        throw UsageError(fmt::format("--chart: a file is missing behind '{}'", text));
      }
      if (wish.name != AllCharts) {
        CheckChartFile(wish.file);
      }
    }
    request.charts.push_back(wish.name);
    request.wishes.push_back(std::move(wish));
  }
}

void RefuseSharedFiles(const RunRequest& request);

void FamilyParser::ReadUnknown(RunRequest& request) const {
  if (calculator_ == nullptr) {
    return;
  }
  request.oneMinusP = IsGiven("--one-minus-p");
  if (const auto name = ValueOf("--unknown")) {
    request.unknown = FindUnknown(*calculator_, *name);
  }
  CheckUnknown(*calculator_, request);
}

void FamilyParser::ReadMeans(RunRequest& request) const {
  const auto means = ValueOf("--means");
  const auto weights = ValueOf("--weights");
  const auto file = PathOf("--means-file");
  if (means && file) {
    throw UsageError("--means-file: the means are given by --means already");
  }
  if (!means && !file) {
    if (weights) {
      throw UsageError("--weights: they go with --means");
    }
    return;
  }
  GivenMeans given;
  if (file) {
    SheetResult read = ReadSheet(*file);
    if (!read.error.empty()) {
      throw UsageError(fmt::format("--means-file: cannot read '{}': {}", *file, read.error));
    }
    given.sheet = std::move(read.sheet);
  } else {
    given.rows = ParseMeans("means", *means);
  }
  if (weights) {
    given.weights = ParseMeans("weights", *weights).front();
  }
  request.means = std::move(given);
}

RunRequest FamilyParser::Parse(const std::vector<std::string>& arguments) {
  std::vector<std::string> reversed = SplitEmptyValues(arguments);
  std::reverse(reversed.begin(), reversed.end());  // as the library wants them
  try {
    app_.parse(std::move(reversed));
  } catch (const CLI::ArgumentMismatch& error) {
    const std::string text = error.what();
    throw UsageError(fmt::format("{}: a value is missing", text.substr(0, text.find(':'))));
  } catch (const CLI::ParseError& error) {
    throw UsageError(error.what());
  }
  RefuseUnknown();
  RunRequest request;
  request.mode = command_.mode;
  request.row = place_.row;
  request.family = &family_;
  ReadFields(request);
  ReadUnknown(request);
  ReadMeans(request);
  ReadCharts(request);
  request.settings = PathOf("--settings");
  request.saveSettings = PathOf("--save-settings");
  request.saveDefaults = IsGiven("--save-defaults");
  request.output = PathOf("--output").value_or("");
  request.configFolder = PathOf("--config").value_or(UserConfigFolder(kProgram));
  const std::string format = ValueOf("--format").value_or("text");
  const auto found = FindExportFormat(LowerCase(format));
  if (!found) {
    throw UsageError(
        fmt::format("--format: there is no '{}'; choose from {}", format, ExportFormatNames()));
  }
  request.format = *found;
  request.fullCsv = IsGiven("--csv-full");
  if (request.fullCsv && request.format != ExportFormat::Csv) {
    throw UsageError("--csv-full: it goes with --format csv");
  }
  RefuseSharedFiles(request);
  return request;
}

// --- Files that a run writes.

struct Output {
  std::string option;
  std::string file;
};

std::vector<Output> OutputsOf(const RunRequest& request) {
  std::vector<Output> outputs;
  if (!request.output.empty() && request.output != "-") {
    outputs.push_back({"--output", request.output});
  }
  if (request.saveSettings) {
    outputs.push_back({"--save-settings", *request.saveSettings});
  }
  if (request.saveDefaults) {
    outputs.push_back(
        {"--save-defaults", request.configFolder + "/" + LoadText(text::DefaultSettingsFile)});
  }
  for (const ChartWish& chart : request.wishes) {
    if (!chart.file.empty()) {
      outputs.push_back({"--chart " + chart.name, chart.file});
    }
  }
  return outputs;
}

// The later of two would take the place of the earlier. Anything that is not a regular file (a
// pipe, a terminal, /dev/null) takes any number.
void RefuseSharedFiles(const RunRequest& request) {
  const std::vector<Output> outputs = OutputsOf(request);
  for (std::size_t i = 0; i < outputs.size(); ++i) {
    for (std::size_t j = 0; j < i; ++j) {
      if (LeadsToOneFile(outputs[i].file, outputs[j].file)) {
        throw UsageError(fmt::format("{}: '{}' is the file of {} too", outputs[i].option,
                                     outputs[i].file, outputs[j].option));
      }
    }
  }
}

// --- Help that belongs to no family.

std::string ProgramHelp() {
  std::string text =
      "Power analysis, required sample size, confidence intervals and probability "
      "calculators.\n\nUsage: poweranalysis "
      "COMMAND [FAMILY] "
      "[OPTIONS]\n\n"
      "Commands:\n";
  for (const SubCommand& command : kSubCommands) {
    text += fmt::format("  {:<10}{}\n", command.name, command.help);
  }
  return text +
         fmt::format(
             "\nOptions:\n  -h, --help     Print this help and exit\n"
             "  --version      Print the version and exit\n\n"
             "Every command has its own help: poweranalysis size t2 --help\n\nExample:\n  {}\n",
             kWorkedExample);
}

std::string CommandHelp(const SubCommand& command) {
  std::string text = command.help + std::string(".\n\nUsage: ") + kProgram + " " + command.name;
  if (command.kind == CommandKind::List) {
    return text + "\n\nExample:\n  " + command.example + "\n";
  }
  if (command.kind == CommandKind::Macro) {
    return text + " run FILE\n\nExample:\n  " + command.example + "\n";
  }
  text += fmt::format(" {} [OPTIONS]\n", Capitals(FamilyNoun(command)));
  for (const int mode : ModesOf(command)) {
    text += fmt::format("\n{}, by code or by name:\n",
                        mode == ModeDistribution ? "Calculators" : "Families");
    for (const TaskRow& task : Tasks(mode)) {
      text += fmt::format("  {:<9} {:<31}{}\n", LowerCase(task.family), task.readableName,
                          LoadText(task.name));
    }
  }
  if (command.kind == CommandKind::Run) {
    const char* family = IsForCalculators(command) ? "t" : "t2";
    text += fmt::format("\nOptions of a {}: {} {} {} --help\n", FamilyNoun(command), kProgram,
                        command.name, family);
  } else {
    text += "\nOptions:\n  --format NAME  text (default) or json\n";
  }
  return text + "\nExample:\n  " + command.example + "\n";
}

ParsedCommand TextCommand(std::string text) {
  ParsedCommand parsed;
  parsed.text = std::move(text);
  return parsed;
}

const SubCommand& FindSubCommand(const std::string& name) {
  std::vector<std::string> names;
  for (const SubCommand& command : kSubCommands) {
    if (name == command.name) {
      return command;
    }
    names.emplace_back(command.name);
  }
  if (IsOption(name)) {
    throw UsageError(
        fmt::format("there is no option '{}' here; the nearest is '{}'. See '{} --help'.", name,
                    Nearest(name, {"--help", "--version"}), kProgram));
  }
  throw UsageError(fmt::format("there is no command '{}'; the nearest is '{}'. See '{} --help'.",
                               name, Nearest(name, names), kProgram));
}

// The format of `describe`, the one option that it has.
ExportFormat TakeFormat(std::vector<std::string>& arguments, const SubCommand& command) {
  std::string format = "text";
  std::vector<std::string> rest;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    constexpr std::string_view kJoined = "--format=";
    if (StartsWith(arguments[i], kJoined)) {
      format = arguments[i].substr(kJoined.size());
    } else if (arguments[i] == "--format" && i + 1 < arguments.size()) {
      format = arguments[++i];
    } else {
      rest.push_back(arguments[i]);
    }
  }
  arguments = rest;
  const auto found = FindExportFormat(LowerCase(format));
  if (found != ExportFormat::Text && found != ExportFormat::Json) {
    throw UsageError(
        fmt::format("--format: {} gives text or json, not '{}'", command.name, format));
  }
  return *found;
}

ParsedCommand ParseCatalogueCommand(const SubCommand& command, std::vector<std::string> arguments) {
  ParsedCommand parsed;
  parsed.kind = command.kind;
  if (command.kind == CommandKind::Describe) {
    parsed.run.format = TakeFormat(arguments, command);
    const Task task = FindFamilyTask(command, TakeFamily(arguments, command));
    parsed.run.mode = task.mode;
    parsed.run.row = task.row;
    parsed.run.family = &FamilyOfTask(task.mode, task.row);
  }
  if (!arguments.empty()) {
    std::vector<std::string> options = {"--help"};
    if (command.kind == CommandKind::Describe) {
      options.emplace_back("--format");
    }
    throw UsageError(fmt::format("{}: '{}' was not expected; the nearest option is '{}'",
                                 command.name, arguments.front(),
                                 Nearest(arguments.front(), options)));
  }
  return parsed;
}

ParsedCommand ParseMacroCommand(const SubCommand& command,
                                const std::vector<std::string>& arguments) {
  constexpr std::size_t kWords = 2;  // run FILE
  if (arguments.size() != kWords || arguments.front() != "run") {
    throw UsageError(
        fmt::format("{}: wanted is 'run FILE'. Example: {}", command.name, command.example));
  }
  ParsedCommand parsed;
  parsed.kind = CommandKind::Macro;
  parsed.text = arguments.back();
  return parsed;
}

}  // namespace

std::string SubCommandOf(int mode) {
  for (const SubCommand& command : kSubCommands) {
    if (command.mode == mode) {
      return fmt::format("{} {}", kProgram, command.name);
    }
  }
  return {};
}

ParsedCommand ParseCommandLine(std::vector<std::string> arguments) {
  if (arguments.empty()) {
    throw UsageError(fmt::format("a command is missing; see '{} --help'. Example: {}", kProgram,
                                 kWorkedExample));
  }
  if (IsHelp(arguments.front())) {
    return TextCommand(ProgramHelp());
  }
  if (arguments.front() == "--version") {
    return TextCommand(std::string(kProgram) + " " + POWERANALYSIS_VERSION + "\n");
  }
  const SubCommand& command = FindSubCommand(arguments.front());
  arguments.erase(arguments.begin());
  const bool help = std::any_of(arguments.begin(), arguments.end(), IsHelp);
  if (command.kind == CommandKind::Macro && !help) {
    return ParseMacroCommand(command, arguments);
  }
  if (command.kind != CommandKind::Run) {
    return help ? TextCommand(CommandHelp(command))
                : ParseCatalogueCommand(command, std::move(arguments));
  }
  const std::optional<std::string> family = TakeFamily(arguments, command);
  if (help && !family) {
    return TextCommand(CommandHelp(command));
  }
  FamilyParser parser(command, FindFamilyTask(command, family), help);
  if (help) {
    return TextCommand(parser.Help());
  }
  ParsedCommand parsed;
  parsed.kind = CommandKind::Run;
  parsed.run = parser.Parse(arguments);
  return parsed;
}

}  // namespace poweranalysis
