#include "cli/Calc.h"

#include <fmt/format.h>

#include <algorithm>
#include <limits>
#include <memory>
#include <optional>
#include <utility>

#include "cli/Errors.h"
#include "cli/FieldOptions.h"
#include "cli/Terminal.h"
#include "frame/DefineTask.h"
#include "host/NumberText.h"
#include "module/PowerAnalysisModule.h"

namespace poweranalysis {

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
    if (name != std::string_view(ProbabilityField) && name != std::string_view(AlgorithmField)) {
      example += fmt::format(" --{} {}", shorter.empty() ? OptionName(name) : shorter.front(),
                             FormatShortest(field.factory));
    }
  }
  return fmt::format("Unknowns: {}\n\nExample:\n  {}", UnknownNames(calculator), example);
}

// --- Running.

namespace {

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
  bool OneMinusP() const { return Working().Get(*Find(OneMinusPField)) != 0; }
  RecordView Working() const { return ViewOf(*Block(), rows_.family, Instance::Working); }
  const Field* Find(const char* name) const { return TableOf(rows_.family).Find(name); }

  const RunRequest& request_;
  HeadlessHost& host_;
  const TaskRow& task_;
  const CalculatorTable& rows_;
  const CalculatorUnknown& unknown_;
  std::unique_ptr<CPowerAnalysis> analysis_;
  RunOutcome outcome_;
  bool nearest_ = false;  // what was asked for does not exist
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
    host_.Press(ControlOfField(OneMinusPField));
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
  std::optional<ResultsInPlace> results = host_.dialog()->TakeResults();
  if (!results) {
    return;
  }
  nearest_ = results->nearest;
  outcome_.study.answers = std::move(results->answers);
  Workbook& workbook = outcome_.study.workbook;
  workbook.items.emplace_back(std::move(results->table));
  workbook.items.emplace_back(std::move(results->report));
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
  FinishStudy(outcome_, nearest_);
  return std::move(outcome_);
}

}  // namespace

RunOutcome RunCalculator(const RunRequest& request, HeadlessHost& host) {
  return CalculatorRun(request, host).Run();
}

}  // namespace poweranalysis
