#include "automation/TaskRun.h"

#include <fmt/format.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstring>

#include "automation/CalculatorRun.h"
#include "automation/Errors.h"
#include "automation/Session.h"
#include "dialogs/Controls.h"
#include "frame/DefineTask.h"
#include "host/NumberText.h"
#include "output/Answers.h"
#include "output/SummaryTables.h"
#include "settings/SettingsRemarks.h"

namespace poweranalysis {

namespace {

// A bare name means a file of the working folder here, as in every command; to the host it would be
// one of the configuration folder.
std::string AsPath(const std::string& file) {
  return file.find('/') == std::string::npos ? "./" + file : file;
}

bool OnResults(const HeadlessHost& host) {
  return host.dialog() != nullptr && FindDialog(host.dialog()->resource()).result;
}

// One request from the first dialog to the last chart.
class TaskRun {
 public:
  TaskRun(const TaskRequest& request, HeadlessHost& host, const HeadlessDriver::Factory& factory)
      : request_(request),
        host_(host),
        driver_(host, factory),
        session_(driver_, [&host] { return IsCancelled(host); }) {}

  TaskOutcome Run();

 private:
  RecordView Working() const {
    return ViewOf(*Block(), request_.family->family, Instance::Working);
  }
  bool OpenSettings();
  // Puts the values into the controls of the open dialog; those put leave the list.
  void PutValues(std::vector<FieldValue>& values);
  bool PutValue(const FieldValue& value);
  bool Taken() const;
  void SaveSettings();
  void SaveDefaults();
  void CheckWrite(const std::string& what);
  std::vector<std::string> WantedCharts();
  void Draw(const std::vector<std::string>& charts);
  void RefuseCharts() const;
  // Takes the cell means out of the request.
  void PlanMeans(std::vector<FieldValue>& values);
  // Types them into the grid, and OK; false when the page does not open it. Without any it is true.
  bool EnterMeans();
  // The proportion that an observed number of successes is, in its place: what the page asks for.
  void PutSuccesses(std::vector<FieldValue>& values);
  void Store(const std::vector<FieldValue>& values);
  // From the page of an interval to its table.
  void Estimate(std::vector<FieldValue> values);
  // From the page of parameters to the last chart.
  void Calculate(std::vector<FieldValue> values);
  void KeepSettings();
  void Steps();
  void Finish();

  const TaskRequest& request_;
  HeadlessHost& host_;
  HeadlessDriver driver_;
  Session session_;
  TaskOutcome outcome_;
  std::optional<GridEntries> entries_;
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
  session_.Press(ControlOpen);
  if (!host_.keywordReadError().empty()) {
    outcome_.errors.push_back(fmt::format("cannot read the settings file '{}': {}",
                                          *request_.settings, host_.keywordReadError()));
    return false;
  }
  return Block()->CurrentFile == path;
}

void TaskRun::PutValues(std::vector<FieldValue>& values) {
  const auto put = [this](const FieldValue& value) { return PutValue(value); };
  values.erase(std::remove_if(values.begin(), values.end(), put), values.end());
}

// False when the dialog does not show the field.
bool TaskRun::PutValue(const FieldValue& value) {
  const std::vector<const ControlSpec*> controls = session_.ControlsOf(value.field->name);
  if (controls.empty()) {
    return false;
  }
  if (session_.PutValue(controls, value.value) != Session::Outcome::Put) {
    poweranalysis::Store(Working(), value);
  }
  return true;
}

void TaskRun::CheckWrite(const std::string& what) {
  if (!host_.keywordError().empty()) {
    outcome_.errors.push_back(fmt::format("cannot save {}: {}", what, host_.keywordError()));
  }
}

// Whether the calculation took the inputs: those that it refuses it does not commit.
bool TaskRun::Taken() const {
  const RecordView committed = ViewOf(*Block(), request_.family->family, Instance::Committed);
  const std::span<const Field> fields = request_.family->fields;
  return OnResults(host_) && std::all_of(fields.begin(), fields.end(), [&](const Field& field) {
           return Working().Get(field) == committed.Get(field);
         });
}

// The buttons of the settings page are pressed whether or not the run was cancelled: what was asked
// to be kept is kept.
void TaskRun::SaveSettings() {
  if (!request_.saveSettings) {
    return;
  }
  const std::string path = AsPath(*request_.saveSettings);
  driver_.PressWithFile(ControlSaveAs, path);
  CheckWrite("the settings to '" + *request_.saveSettings + "'");
  if (host_.keywordError().empty() && Block()->CurrentFile != path) {
    outcome_.errors.emplace_back("the settings were not saved");  // a message has said why
  }
}

void TaskRun::SaveDefaults() {
  if (request_.saveDefaults) {
    driver_.Press(ControlSaveAsDefault);
    CheckWrite("the defaults in '" + request_.configFolder + "'");
  }
}

std::vector<std::string> TaskRun::WantedCharts() {
  std::vector<std::string> names = NamesOf(ChartControls(session_.Spec()));
  const auto wants = [this](const std::string& name) {
    return std::any_of(
        request_.charts.begin(), request_.charts.end(),
        [&name](const std::string& chart) { return chart == name || chart == AllCharts; });
  };
  std::vector<std::string> wanted;
  std::copy_if(names.begin(), names.end(), std::back_inserter(wanted), wants);
  names.emplace_back(AllCharts);
  for (const std::string& chart : request_.charts) {
    if (std::find(names.begin(), names.end(), chart) == names.end()) {
      throw UsageError(
          "chart", fmt::format("there is no chart '{}'; the nearest is '{}'. Choose from {}", chart,
                               Nearest(chart, names), fmt::join(names, ", ")));
    }
  }
  return wanted;
}

void TaskRun::Draw(const std::vector<std::string>& charts) {
  for (const std::string& chart : charts) {
    if (!session_.Draw(chart).empty()) {
      continue;
    }
    chartRefused_ = true;
    if (!session_.HasSpoken() && !IsCancelled(host_)) {
      outcome_.errors.push_back(fmt::format("the chart '{}' could not be drawn", chart));
    }
    if (!OnResults(host_)) {
      return;  // refused as a whole, back to the parameters
    }
  }
}

void TaskRun::RefuseCharts() const {
  if (request_.mode == ModeInterval && !request_.charts.empty()) {
    throw UsageError("chart", "an interval has no charts");
  }
}

void TaskRun::PlanMeans(std::vector<FieldValue>& values) {
  if (!request_.means) {
    return;
  }
  const GridRow* grid = GridOfTask(request_.mode, request_.family->family);
  if (grid == nullptr) {
    throw UsageError("means", fmt::format("{} {} takes no cell means", ModeWord(request_.mode),
                                          request_.family->code));
  }
  entries_ = EntriesOf(*request_.means, *grid, *request_.family, values);
}

bool TaskRun::EnterMeans() {
  if (!entries_) {
    return true;
  }
  const GridRow& grid = *entries_->grid;
  session_.Press(ControlGrid);
  if (host_.dialog() == nullptr || host_.dialog()->resource() != grid.resource) {
    return false;
  }
  auto cell = entries_->cells.begin();
  for (std::int32_t row = 0; row < entries_->size.rows; ++row) {
    for (std::int32_t column = 0; column < entries_->size.columns; ++column) {
      session_.Put(*session_.FindField(grid.NameOfCell(row, column)).front(), *cell++);
    }
  }
  if (entries_->sigma) {
    session_.Put(*session_.FindField("Sigma").front(), *entries_->sigma);
  }
  session_.Press(ControlAccept);
  return true;
}

// A count and a proportion that both are given must round to one count, as the page rounds.
void TaskRun::PutSuccesses(std::vector<FieldValue>& values) {
  const auto given = [&values](const char* name) {
    return std::find_if(values.begin(), values.end(), [name](const FieldValue& value) {
      return value.field->name == std::string_view(name);
    });
  };
  const auto count = given("XObserved");
  if (request_.family->family != Family::P1 || count == values.end()) {
    return;
  }
  const double successes = count->value;
  const auto sample = given("SampleSize");
  const double size =
      sample != values.end() ? sample->value : Working().Get(*request_.family->Find("SampleSize"));
  if (successes < 0 || successes > size) {
    throw UsageError("x-observed", fmt::format("{} successes do not fit into a sample of {}",
                                               FormatShortest(successes), FormatShortest(size)));
  }
  const auto proportion = given("PObserved");
  if (proportion != values.end() && std::round(proportion->value * size) != successes) {
    throw UsageError("x-observed", fmt::format("{} successes in {} are not the proportion {}",
                                               FormatShortest(successes), FormatShortest(size),
                                               FormatShortest(proportion->value)));
  }
  count->field = request_.family->Find("PObserved");
  count->value = successes / size;
  if (proportion != values.end()) {
    values.erase(proportion);
  }
}

void TaskRun::Store(const std::vector<FieldValue>& values) {
  for (const FieldValue& value : values) {
    poweranalysis::Store(Working(), value);
  }
}

void TaskRun::KeepSettings() {
  if (saved_) {
    SaveSettings();
    SaveDefaults();
  }
}

void TaskRun::Estimate(std::vector<FieldValue> values) {
  PutSuccesses(values);
  const int spoken = driver_.MessageCount();
  PutValues(values);
  if (driver_.MessageCount() > spoken || !EnterMeans()) {
    return;  // the page refused a value, and shows another
  }
  Store(values);
  session_.Press(ControlAccept);
  saved_ = !session_.NewItems<SummaryTable>().empty();
  KeepSettings();
}

void TaskRun::Steps() {
  RefuseCharts();
  std::vector<FieldValue> values = request_.values;
  PlanMeans(values);
  if (!session_.OpenTask(request_.mode, request_.row)) {
    outcome_.errors.push_back(
        fmt::format("the family {} ({}) is not available yet", request_.family->code,
                    LoadText(Tasks(request_.mode)[static_cast<std::size_t>(request_.row)].name)));
    return;
  }
  if (request_.settings && !OpenSettings()) {
    return;
  }
  if (request_.mode == ModeInterval) {
    Estimate(std::move(values));
  } else {
    Calculate(std::move(values));
  }
}

void TaskRun::Calculate(std::vector<FieldValue> values) {
  PutValues(values);
  if (!EnterMeans()) {
    return;
  }
  session_.Press(ControlAccept);
  if (!OnResults(host_)) {
    return;
  }
  const std::vector<std::string> charts = WantedCharts();
  PutValues(values);
  Store(values);  // no dialog of the task shows their fields
  session_.Press(ControlAccept);
  saved_ = Taken();
  if (saved_) {
    SaveSettings();
  }
  if (OnResults(host_)) {
    Draw(charts);
  }
  // Last, since the dialog goes on with what the file of defaults gives back, which can be less.
  if (saved_) {
    SaveDefaults();
  }
}

// What the table holds of what was asked for.
void TakeNumbers(const SummaryTable& table, Study& study) {
  if (IsInterval(study)) {
    study.limits = LimitsOf(table, *Block());
    study.pValue = PValueOf(table, *Block());
  } else {
    study.answers = AnswersOf(table, *Block());
  }
}

void TaskRun::Finish() {
  Study& study = outcome_.study;
  study.family = request_.family->code;
  study.mode = ModeWord(request_.mode);
  study.code = FindTable(request_.family->family, request_.mode)->code;
  study.workbook = host_.TakeWorkbook();
  if (const SummaryTable* table = SummaryOf(study)) {
    TakeNumbers(*table, study);
  }
  study.messages = host_.messages();
  FinishStudy(outcome_, host_, chartRefused_);
}

TaskOutcome TaskRun::Run() {
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
void TakeRemarks(TaskOutcome& outcome) {
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

bool IsCancelled(const HeadlessHost& host) { return host.cancelled && host.cancelled(); }

void FinishStudy(TaskOutcome& outcome, const HeadlessHost& host, bool refused) {
  TakeRemarks(outcome);
  Study& study = outcome.study;
  if (IsCancelled(host)) {
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

TaskOutcome RunTask(const TaskRequest& request,
                    HeadlessHost& host,
                    const HeadlessDriver::Factory& factory) {
  host.configFolder = request.configFolder;
  return request.mode == ModeDistribution ? RunCalculator(request, host, factory)
                                          : TaskRun(request, host, factory).Run();
}

TaskDialogs LookAtDialogs(int mode, int row, const HeadlessDriver::Factory& factory) {
  HeadlessHost host;
  HeadlessDriver driver(host, factory);
  Session session(driver);
  TaskDialogs dialogs;
  if (!session.OpenTask(mode, row)) {
    return dialogs;
  }
  dialogs.parameters = NamesOf(FieldControls(session.Spec()));
  if (mode == ModeInterval) {
    return dialogs;  // its one dialog
  }
  session.Press(ControlAccept);
  dialogs.ranges = NamesOf(FieldControls(session.Spec()));
  dialogs.charts = NamesOf(ChartControls(session.Spec()));
  return dialogs;
}

bool IsAvailable(int mode, int row, const HeadlessDriver::Factory& factory) {
  HeadlessHost host;
  HeadlessDriver driver(host, factory);
  return Session(driver).OpenTask(mode, row);
}

}  // namespace poweranalysis
