#include "cli/Run.h"

#include <fmt/format.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstring>
#include <limits>
#include <memory>

#include "cli/Calc.h"
#include "cli/Errors.h"
#include "cli/FieldOptions.h"
#include "cli/Terminal.h"
#include "frame/DefineTask.h"
#include "host/NumberText.h"
#include "module/PowerAnalysisModule.h"
#include "output/Answers.h"
#include "output/SummaryTables.h"
#include "settings/SettingsRemarks.h"

namespace poweranalysis {

namespace {

constexpr int kAccept = 1;  // OK, and Calculate on a results dialog

std::vector<ControlSpec> ControlsOf(const DialogSpec& spec) {
  std::vector<ControlSpec> controls = spec.frame;
  for (const PageSpec& page : spec.pages) {
    controls.insert(controls.end(), page.controls.begin(), page.controls.end());
  }
  return controls;
}

std::vector<std::string> NamesOf(const std::vector<ControlSpec>& controls) {
  std::vector<std::string> names(controls.size());
  std::transform(controls.begin(), controls.end(), names.begin(),
                 [](const ControlSpec& control) { return control.name; });
  return names;
}

// A bare name means a file of the working folder here, as in every command; to the host it would be
// one of the configuration folder.
std::string AsPath(const std::string& file) {
  return file.find('/') == std::string::npos ? "./" + file : file;
}

std::size_t ChartsIn(const Workbook& workbook) {
  return static_cast<std::size_t>(
      std::count_if(workbook.items.begin(), workbook.items.end(),
                    [](const WorkbookItem& item) { return std::holds_alternative<Chart>(item); }));
}

// The analysis and its host, driven event by event.
class ScriptedRun {
 public:
  ScriptedRun(HeadlessHost& host, int mode, int row) : host_(host), mode_(mode), row_(row) {}

  // To the parameter dialog; false when the task has none.
  bool OpenParameters();
  bool OnResults() const;
  // Puts the values into the controls of the open dialog; those put leave the list.
  void TypeFields(std::vector<FieldValue>& values);
  // For fields that no dialog of the task shows.
  void SetDirectly(const FieldValue& value);
  void Press(int control);
  // The chart buttons of the open dialog.
  std::vector<ControlSpec> ChartButtons() const;

 private:
  bool TypeField(const FieldValue& value);

  HeadlessHost& host_;
  int mode_;
  int row_;
  std::unique_ptr<CPowerAnalysis> analysis_;
};

bool ScriptedRun::OpenParameters() {
  analysis_.reset(Zlv6NewAnalysis());
  if (analysis_ == nullptr) {
    return false;
  }
  host_.Start(*analysis_);
  host_.Select(ControlModes, mode_);
  host_.Select(ControlTasks, row_);
  Press(kAccept);
  return host_.dialog() != nullptr;
}

bool ScriptedRun::OnResults() const {
  return host_.dialog() != nullptr && FindDialog(host_.dialog()->resource()).result;
}

void ScriptedRun::Press(int control) {
  if (!Interrupted()) {
    host_.Press(control);
  }
}

void ScriptedRun::TypeFields(std::vector<FieldValue>& values) {
  const auto typed = [this](const FieldValue& value) { return TypeField(value); };
  values.erase(std::remove_if(values.begin(), values.end(), typed), values.end());
}

bool ScriptedRun::TypeField(const FieldValue& value) {
  bool shown = false;
  for (const ControlSpec& control : ControlsOf(host_.form()->spec())) {
    if (control.name != value.field->name) {
      continue;
    }
    shown = true;
    if (control.kind == ControlKind::IntEdit || control.kind == ControlKind::RealEdit) {
      host_.Type(control.number, FormatShortest(value.value));
      return true;
    }
    if (control.kind == ControlKind::Radio && control.value == value.value) {
      host_.Press(control.number);
      return true;
    }
    if (control.kind == ControlKind::CheckBox && (value.value == 0 || value.value == 1)) {
      host_.form()->CheckDlgButton(control.number, value.value != 0);
      host_.Press(control.number);
      return true;
    }
  }
  if (shown) {
    // A value that none of the buttons stands for, for the range check to see.
    SetDirectly(value);
  }
  return shown;
}

void ScriptedRun::SetDirectly(const FieldValue& value) {
  double held = value.value;
  if (value.field->type == FieldType::Int16) {
    held =
        std::clamp<double>(held, std::numeric_limits<i16>::min(), std::numeric_limits<i16>::max());
  } else if (value.field->type == FieldType::Int32) {
    held =
        std::clamp<double>(held, std::numeric_limits<i32>::min(), std::numeric_limits<i32>::max());
  }
  const FamilyTable* family = FindFamily(Tasks(mode_)[static_cast<std::size_t>(row_)].family);
  ViewOf(*Block(), family->family, Instance::Working).Set(*value.field, held);
}

std::vector<ControlSpec> ScriptedRun::ChartButtons() const {
  std::vector<ControlSpec> buttons;
  if (host_.form() != nullptr) {
    for (const ControlSpec& control : ControlsOf(host_.form()->spec())) {
      if (control.chart) {
        buttons.push_back(control);
      }
    }
  }
  return buttons;
}

// One request from the first dialog to the last chart.
class TaskRun {
 public:
  TaskRun(const RunRequest& request, HeadlessHost& host)
      : request_(request), host_(host), script_(host, request.mode, request.row) {}

  RunOutcome Run();

 private:
  bool OpenSettings();
  bool Taken() const;
  void SaveSettings();
  void SaveDefaults();
  void CheckWrite(const std::string& what);
  std::vector<ControlSpec> WantedCharts() const;
  void Draw(const std::vector<ControlSpec>& buttons);
  void Steps();
  void Finish();

  const RunRequest& request_;
  HeadlessHost& host_;
  ScriptedRun script_;
  RunOutcome outcome_;
  bool chartRefused_ = false;
  bool saved_ = false;  // as far as it was asked for
};

bool TaskRun::OpenSettings() {
  const std::string path = AsPath(*request_.settings);
  if (::access(path.c_str(), R_OK) != 0) {
    outcome_.errors.push_back(fmt::format("cannot read the settings file '{}': {}",
                                          *request_.settings, std::strerror(errno)));
    return false;
  }
  host_.openAnswers.emplace_back(path);
  script_.Press(ControlOpen);
  if (!host_.keywordReadError().empty()) {
    outcome_.errors.push_back(fmt::format("cannot read the settings file '{}': {}",
                                          *request_.settings, host_.keywordReadError()));
    return false;
  }
  return Block()->CurrentFile == path;
}

void TaskRun::CheckWrite(const std::string& what) {
  if (!host_.keywordError().empty()) {
    outcome_.errors.push_back(fmt::format("cannot save {}: {}", what, host_.keywordError()));
  }
}

// Whether the calculation took the inputs: those that it refuses it does not commit.
bool TaskRun::Taken() const {
  PowerSettings& block = *Block();
  const RecordView working = ViewOf(block, request_.family->family, Instance::Working);
  const RecordView committed = ViewOf(block, request_.family->family, Instance::Committed);
  const std::span<const Field> fields = request_.family->fields;
  return script_.OnResults() && std::all_of(fields.begin(), fields.end(), [&](const Field& field) {
           return working.Get(field) == committed.Get(field);
         });
}

// The buttons of the settings page are pressed whether or not the run was cancelled: what was asked
// to be kept is kept.
void TaskRun::SaveSettings() {
  if (!request_.saveSettings) {
    return;
  }
  const std::string path = AsPath(*request_.saveSettings);
  host_.saveAnswers.emplace_back(path);
  host_.Press(ControlSaveAs);
  CheckWrite("the settings to '" + *request_.saveSettings + "'");
  if (host_.keywordError().empty() && Block()->CurrentFile != path) {
    outcome_.errors.emplace_back("the settings were not saved");  // a message has said why
  }
}

void TaskRun::SaveDefaults() {
  if (request_.saveDefaults) {
    host_.Press(ControlSaveAsDefault);
    CheckWrite("the defaults in '" + request_.configFolder + "'");
  }
}

std::vector<ControlSpec> TaskRun::WantedCharts() const {
  const std::vector<ControlSpec> buttons = script_.ChartButtons();
  std::vector<std::string> names = NamesOf(buttons);
  const auto wants = [this](const std::string& name) {
    return std::any_of(request_.charts.begin(), request_.charts.end(), [&](const ChartWish& wish) {
      return wish.name == name || wish.name == AllCharts;
    });
  };
  std::vector<ControlSpec> wanted;
  std::copy_if(buttons.begin(), buttons.end(), std::back_inserter(wanted),
               [&](const ControlSpec& button) { return wants(button.name); });
  names.emplace_back(AllCharts);
  for (const ChartWish& wish : request_.charts) {
    if (std::find(names.begin(), names.end(), wish.name) == names.end()) {
      throw UsageError(
          fmt::format("--chart: there is no chart '{}'; the nearest is '{}'. Choose from {}",
                      wish.name, Nearest(wish.name, names), fmt::join(names, ", ")));
    }
  }
  return wanted;
}

void TaskRun::Draw(const std::vector<ControlSpec>& buttons) {
  for (const ControlSpec& button : buttons) {
    const std::size_t charts = ChartsIn(host_.workbook());
    // Counted one by one: a repeat of the last message counts as a message too.
    const int messages = host_.messageCalls();
    script_.Press(button.number);
    if (ChartsIn(host_.workbook()) > charts) {
      continue;
    }
    chartRefused_ = true;
    if (host_.messageCalls() == messages && !Interrupted()) {
      outcome_.errors.push_back(fmt::format("the chart '{}' could not be drawn", button.name));
    }
    if (!script_.OnResults()) {
      return;  // refused as a whole, back to the parameters
    }
  }
}

void TaskRun::Steps() {
  if (!script_.OpenParameters()) {
    outcome_.errors.push_back(
        fmt::format("the family {} ({}) is not available yet", request_.family->code,
                    LoadText(Tasks(request_.mode)[static_cast<std::size_t>(request_.row)].name)));
    return;
  }
  if (request_.settings && !OpenSettings()) {
    return;
  }
  std::vector<FieldValue> values = request_.values;
  script_.TypeFields(values);
  script_.Press(kAccept);
  if (!script_.OnResults()) {
    return;
  }
  const std::vector<ControlSpec> charts = WantedCharts();
  script_.TypeFields(values);
  for (const FieldValue& value : values) {
    script_.SetDirectly(value);
  }
  script_.Press(kAccept);
  saved_ = Taken();
  if (saved_) {
    SaveSettings();
  }
  if (script_.OnResults()) {
    Draw(charts);
  }
  // Last, since the dialog goes on with what the file of defaults gives back, which can be less.
  if (saved_) {
    SaveDefaults();
  }
}

void TaskRun::Finish() {
  Study& study = outcome_.study;
  study.family = request_.family->code;
  study.mode = ModeWord(request_.mode);
  study.code = FindTable(request_.family->family, request_.mode)->code;
  study.workbook = host_.TakeWorkbook();
  if (const SummaryTable* table = SummaryOf(study)) {
    study.answers = AnswersOf(*table, *Block());
  }
  study.messages = host_.messages();
  FinishStudy(outcome_, chartRefused_);
}

RunOutcome TaskRun::Run() {
  Steps();
  if (!saved_ && (request_.saveSettings || request_.saveDefaults)) {
    outcome_.errors.emplace_back("the settings were not saved: no calculation has taken them");
  }
  Finish();
  return std::move(outcome_);
}

// Adds each line of a text, as a note is written: without the full stop at its end.
void AddLines(std::string_view text, std::vector<std::string>& notes) {
  constexpr std::string_view kLineEnd = "\r\n";
  while (!text.empty()) {
    const std::string_view line = text.substr(0, text.find(kLineEnd));
    text.remove_prefix(std::min(text.size(), line.size() + kLineEnd.size()));
    notes.emplace_back(line.ends_with('.') ? line.substr(0, line.size() - 1) : line);
  }
}

// What the settings page says about its files goes beside the study and is not part of it: the
// lines become notes. Why a file could not be read or written is among the errors already.
void TakeRemarks(RunOutcome& outcome) {
  std::vector<Message>& messages = outcome.study.messages;
  const auto remarks =
      std::stable_partition(messages.begin(), messages.end(),
                            [](const Message& message) { return !IsSettingsRemark(message.id); });
  for (auto remark = remarks; remark != messages.end(); ++remark) {
    if (remark->id != text::SettingsNotSaved && remark->id != text::SettingsFileNotRead) {
      AddLines(remark->text, outcome.notes);
    }
  }
  messages.erase(remarks, messages.end());
}

}  // namespace

void FinishStudy(RunOutcome& outcome, bool refused) {
  TakeRemarks(outcome);
  Study& study = outcome.study;
  if (Interrupted()) {
    const auto cancelled = [](const Message& message) {
      return message.id == text::CancelledAtRequest;
    };
    if (std::none_of(study.messages.begin(), study.messages.end(), cancelled)) {
      study.messages.push_back({text::CancelledAtRequest, LoadText(text::CancelledAtRequest), 1});
    }
    study.status = StatusCancelled;
    return;
  }
  if (!HasAnswer(study) && study.messages.empty() && outcome.errors.empty()) {
    outcome.errors.emplace_back("the calculation gave no result");
  }
  const bool good = HasAnswer(study) && outcome.errors.empty() && !refused;
  study.status = good ? StatusAnswer : StatusNoAnswer;
}

RunOutcome RunTask(const RunRequest& request, HeadlessHost& host) {
  host.cancelled = [] { return Interrupted(); };
  host.configFolder = request.configFolder;
  if (request.mode == ModeDistribution) {
    return RunCalculator(request, host);
  }
  return TaskRun(request, host).Run();
}

TaskDialogs LookAtDialogs(int mode, int row) {
  HeadlessHost host;
  ScriptedRun script(host, mode, row);
  TaskDialogs dialogs;
  if (!script.OpenParameters()) {
    return dialogs;
  }
  dialogs.parameters = NamesOf(ControlsOf(host.form()->spec()));
  script.Press(kAccept);
  dialogs.ranges = NamesOf(ControlsOf(host.form()->spec()));
  dialogs.charts = NamesOf(script.ChartButtons());
  return dialogs;
}

bool IsAvailable(int mode, int row) {
  HeadlessHost host;
  return ScriptedRun(host, mode, row).OpenParameters();
}

}  // namespace poweranalysis
