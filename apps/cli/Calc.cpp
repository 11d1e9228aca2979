#include "cli/Calc.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>

#include "cli/Errors.h"
#include "cli/FieldOptions.h"
#include "cli/Terminal.h"
#include "frame/DefineTask.h"
#include "host/NumberText.h"
#include "module/PowerAnalysisModule.h"

namespace poweranalysis {

namespace {

constexpr const char* kOneMinusP = "OneMinusP";
constexpr const char* kProbability = "CumP";
constexpr const char* kActual = "ActualValue";
constexpr const char* kAlgorithm = "Algorithm";

std::string Plain(std::string caption) {
  caption.erase(std::remove(caption.begin(), caption.end(), '&'), caption.end());
  if (!caption.empty() && caption.back() == ':') {
    caption.pop_back();
  }
  return caption;
}

}  // namespace

// --- Options.

const FamilyTable& FamilyOfTask(int mode, int row) {
  const TaskRow& task = Tasks(mode)[static_cast<std::size_t>(row)];
  return mode == ModeDistribution ? TableOf(FindCalculator(task.family)->family)
                                  : *FindFamily(task.family);
}

bool ShowsField(const CalculatorTable& calculator, const Field& field) {
  return std::any_of(calculator.fields.begin(), calculator.fields.end(),
                     [&field](const char* shown) { return field.name == std::string_view(shown); });
}

std::vector<std::string> ShorterOptions(const CalculatorTable& calculator, const Field& field) {
  std::vector<std::string> shorter;
  for (const CalculatorUnknown& unknown : calculator.unknowns) {
    if (field.name == std::string_view(unknown.field)) {
      shorter.emplace_back(unknown.name);
    }
  }
  constexpr struct {
    std::string_view field;
    const char* letter;
  } kLetters[] = {{"DegreesOfFreedom", "df"}, {"SampleSize", "n"}, {"TotalNumberOfVars", "k"}};
  for (const auto& row : kLetters) {
    if (row.field == field.name) {
      shorter.emplace_back(row.letter);
    }
  }
  return shorter;
}

std::string UnknownNames(const CalculatorTable& calculator) {
  std::string names;
  for (const CalculatorUnknown& unknown : calculator.unknowns) {
    names += (names.empty() ? "" : ", ") + std::string(unknown.name);
  }
  return names;
}

std::size_t FindUnknown(const CalculatorTable& calculator, const std::string& name) {
  const std::string wanted = LowerCase(name);
  for (std::size_t i = 0; i < calculator.unknowns.size(); ++i) {
    const CalculatorUnknown& unknown = calculator.unknowns[i];
    if (wanted == unknown.name || wanted == LowerCase(unknown.field) ||
        wanted == OptionName(unknown.field)) {
      return i;
    }
  }
  throw UsageError(
      fmt::format("--unknown: there is no '{}'; choose from {}", name, UnknownNames(calculator)));
}

void CheckUnknown(const CalculatorTable& calculator, const RunRequest& request) {
  const CalculatorUnknown& unknown =
      calculator.unknowns[request.unknown.value_or(UnknownProbability)];
  for (const FieldValue& value : request.values) {
    if (value.field->name == std::string_view(unknown.field)) {
      throw UsageError(fmt::format("--{}: this is the unknown{}; choose another by --unknown ({})",
                                   unknown.name, request.unknown ? "" : " when none is named",
                                   UnknownNames(calculator)));
    }
  }
}

std::string CalculatorFooter(const CalculatorTable& calculator, const std::string& command) {
  std::string example = command + " --unknown p";
  for (const char* name : calculator.fields) {
    const Field& field = *TableOf(calculator.family).Find(name);
    const std::vector<std::string> shorter = ShorterOptions(calculator, field);
    if (name != std::string_view(kProbability) && name != std::string_view(kAlgorithm)) {
      example += fmt::format(" --{} {}", shorter.empty() ? OptionName(name) : shorter.front(),
                             FormatShortest(field.factory));
    }
  }
  return fmt::format("Unknowns: {}\n\nExample:\n  {}", UnknownNames(calculator), example);
}

// --- Running.

namespace {

// A number of the dialog with its name.
struct Shown {
  std::string title;
  double value;
};

class CalculatorRun {
 public:
  CalculatorRun(const RunRequest& request, HeadlessHost& host)
      : request_(request),
        host_(host),
        task_(Tasks(request.mode)[static_cast<std::size_t>(request.row)]),
        rows_(*FindCalculator(task_.family)),
        unknown_(rows_.unknowns[request.unknown.value_or(UnknownProbability)]) {}

  RunOutcome Run();

 private:
  bool Open();
  void FillIn();
  void Put(const FieldValue& value);
  void Tell();
  bool NoSolution() const;
  bool OneMinusP() const { return Working().Get(*Find(kOneMinusP)) != 0; }
  bool HasActual() const {
    return Find(kActual) != nullptr && &unknown_ == &rows_.unknowns[UnknownStatistic];
  }
  RecordView Working() const { return ViewOf(*Block(), rows_.family, Instance::Working); }
  const Field* Find(const char* name) const { return TableOf(rows_.family).Find(name); }
  Shown ShownOf(const char* name) const;
  std::string AlgorithmHeading() const;
  std::string Statement() const;
  bool IsUnknown(const char* name) const { return name == std::string_view(unknown_.field); }
  CellKind CellKindOf(const char* name) const;

  const RunRequest& request_;
  HeadlessHost& host_;
  const TaskRow& task_;
  const CalculatorTable& rows_;
  const CalculatorUnknown& unknown_;
  std::unique_ptr<CPowerAnalysis> analysis_;
  RunOutcome outcome_;
};

bool CalculatorRun::Open() {
  analysis_.reset(Zlv6NewAnalysis());
  if (analysis_ == nullptr) {
    return false;
  }
  host_.Start(*analysis_);
  host_.Select(ControlModes, request_.mode);
  host_.Select(ControlTasks, request_.row);
  host_.Press(ControlAccept);
  return host_.dialog() != nullptr;
}

void CalculatorRun::FillIn() {
  if (request_.oneMinusP != OneMinusP()) {
    host_.Press(ControlOfField(kOneMinusP));
  }
  host_.Press(ControlUnknown + static_cast<int>(&unknown_ - rows_.unknowns.data()));
  std::for_each(request_.values.begin(), request_.values.end(),
                [this](const FieldValue& value) { Put(value); });
}

void CalculatorRun::Put(const FieldValue& value) {
  const RadioGroup* radios = RadiosOf(value.field->name, rows_.family);
  if (radios == nullptr) {
    host_.Type(ControlOfField(value.field->name), FormatShortest(value.value));
  } else if (radios->HasButton(value.value)) {
    host_.Press(radios->base + static_cast<int>(value.value));
  } else {
    // A value that none of the buttons stands for, for the range check to see.
    Working().Set(*value.field, std::clamp<double>(value.value, std::numeric_limits<i16>::min(),
                                                   std::numeric_limits<i16>::max()));
  }
}

Shown CalculatorRun::ShownOf(const char* name) const {
  const HeadlessForm& form = *host_.form();
  const double value = dynamic_cast<const CCalculatorDialog&>(*host_.dialog()).Shown(name);
  const bool probability = name == std::string_view(kProbability);
  if (probability || name == std::string_view(kActual)) {
    return {
        Plain(form.GetDlgItemText(probability ? ControlProbabilityLabel : ControlActualValueLabel)),
        value};
  }
  return {Plain(form.Find(ControlOfField(name))->spec.caption), value};
}

std::string CalculatorRun::AlgorithmHeading() const {
  const Field* field = Find(kAlgorithm);
  const RadioGroup* radios = RadiosOf(kAlgorithm, rows_.family);
  if (radios == nullptr || field == nullptr || !ShowsField(rows_, *field)) {
    return {};
  }
  const Choice* chosen = FindChoice(radios->choices, Working().Get(*field));
  return chosen == nullptr ? std::string()
                           : fmt::format("{}: {}", Plain(LoadText(radios->caption)),
                                         Plain(LoadText(chosen->caption)));
}

// With the decimals of the dialog, but never so few that nothing is left of a small number.
std::string StatementNumber(double value) {
  constexpr int kDecimals = 8;
  constexpr double kSmall = 1e-4;
  return value != 0 && std::fabs(value) < kSmall ? FormatGeneral(value)
                                                 : FormatDecimals(value, kDecimals);
}

// "P(t <= 2) = 0.76456745; Df = 4, Delta = 1".
std::string CalculatorRun::Statement() const {
  const auto text = StatementNumber;
  const CalculatorUnknown& statistic = rows_.unknowns[UnknownStatistic];
  std::string given;
  for (const char* name : rows_.fields) {
    if (RadiosOf(name, rows_.family) == nullptr && name != std::string_view(kProbability) &&
        name != std::string_view(statistic.field)) {
      const Shown shown = ShownOf(name);
      given += fmt::format("{} {} = {}", given.empty() ? ";" : ",", shown.title, text(shown.value));
    }
  }
  return fmt::format("P({} {} {}) = {}{}", Plain(LoadText(statistic.caption)),
                     OneMinusP() ? ">" : "<=", text(ShownOf(statistic.field).value),
                     text(ShownOf(HasActual() ? kActual : kProbability).value), given);
}

CellKind CalculatorRun::CellKindOf(const char* name) const {
  const bool probability =
      name == std::string_view(kProbability) || name == std::string_view(kActual);
  return probability       ? CellKind::Probability
         : IsUnknown(name) ? CellKind::Computed
                           : CellKind::Input;
}

void CalculatorRun::Tell() {
  const std::string text = host_.form()->GetDlgItemText(ControlOfField(unknown_.field));
  if (text.empty()) {
    return;  // refused, in a message
  }
  if (text == LoadText(text::CaptionError)) {
    outcome_.errors.push_back(
        fmt::format("{} no value of {} could be computed", text, unknown_.name));
    return;
  }
  SummaryTable table;
  table.headings = {LoadText(task_.name)};
  if (const std::string algorithm = AlgorithmHeading(); !algorithm.empty()) {
    table.headings.push_back(algorithm);
  }
  table.columns = {LoadText(text::Value)};
  const auto add = [&table, this](const char* name) {
    const Shown shown = ShownOf(name);
    table.rows.push_back({shown.title, 0, {shown.value}, CellKindOf(name), IsUnknown(name)});
  };
  for (const char* name : rows_.fields) {
    if (name != std::string_view(unknown_.field) && RadiosOf(name, rows_.family) == nullptr) {
      add(name);
    }
  }
  if (HasActual()) {
    add(kActual);
  }
  add(unknown_.field);
  outcome_.study.answers = {{unknown_.field, ShownOf(unknown_.field).value, {}, {}}};
  Workbook& workbook = outcome_.study.workbook;
  workbook.items.emplace_back(std::move(table));
  workbook.items.emplace_back(Report{{Statement()}});
}

// What was asked for does not exist; the dialog shows the nearest value that does.
bool CalculatorRun::NoSolution() const {
  const std::vector<Message>& messages = outcome_.study.messages;
  return std::any_of(messages.begin(), messages.end(), [](const Message& message) {
    return message.id == text::NoDeltaForF || message.id == text::NoDeltaForChiSquare ||
           message.id == text::NoP2ForR2;
  });
}

RunOutcome CalculatorRun::Run() {
  Study& study = outcome_.study;
  study.family = task_.family;
  study.mode = ModeWord(ModeDistribution);
  if (Open()) {
    FillIn();
    // Whatever the box holds afterwards is the answer; a refusal may leave it as it is.
    host_.form()->SetDlgItemText(ControlOfField(unknown_.field), "");
    if (!Interrupted()) {
      host_.Press(ControlAccept);
    }
    study.messages = host_.messages();
    if (!Interrupted()) {
      Tell();
    }
  } else {
    outcome_.errors.emplace_back("the calculator could not be opened");
  }
  FinishStudy(outcome_, NoSolution());
  return std::move(outcome_);
}

}  // namespace

RunOutcome RunCalculator(const RunRequest& request, HeadlessHost& host) {
  return CalculatorRun(request, host).Run();
}

}  // namespace poweranalysis
