#include "DirectAnswer.h"

#include <pybind11/pybind11.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <memory>

#include "PythonHost.h"
#include "families/Families.h"
#include "frame/TaskCatalogue.h"
#include "frame/Texts.h"
#include "host/NumberText.h"
#include "output/Answers.h"
#include "output/SummaryTables.h"

namespace poweranalysis {

namespace py = pybind11;

namespace {

// Watches a computation that is to run without any message.
class DirectObserver final : public ProcedureObserver {
 public:
  void Start(std::int32_t /*count*/) override {}
  bool Advance(std::int32_t /*counter*/) override { return StopRequested(); }
  void Stop() override {}
  // A search can be stopped only under a bar.
  bool Open(Said /*title*/, std::int32_t /*count*/) override { return true; }
  bool StopRequested() override {
    stopped_ = stopped_ || poll_.Interrupted();
    return stopped_;
  }
  void Notice(Said /*text*/, const SlotNumbers& /*numbers*/) override { spoken_ = true; }

  bool Passed() const { return !stopped_ && !spoken_; }

 private:
  SignalPoll poll_;
  bool stopped_ = false;
  bool spoken_ = false;
};

// Its own record, with the built-in values.
class OwnRecord {
 public:
  explicit OwnRecord(const FamilyTable& family)
      : family_(family), bytes_(family.recordSize / sizeof(double) + 1) {
    for (const Field& field : family.fields) {
      view().Set(field, field.factory);
    }
  }
  RecordView view() { return {family_, bytes_.data()}; }

 private:
  const FamilyTable& family_;
  std::vector<double> bytes_;
};

bool AsksForNumbersAlone(const TaskRequest& request) {
  return request.mode != ModeInterval && !request.means && request.charts.empty() &&
         !request.settings && !request.saveSettings && !request.saveDefaults;
}

// The defaults of the user stand in a file, which only the dialogs read.
bool HasDefaults(const TaskRequest& request) {
  const std::string file = request.configFolder + "/" + LoadText(text::DefaultSettingsFile);
  return ::access(file.c_str(), F_OK) == 0;
}

// Sets what was given; false for a value that has no place in its field.
bool Put(const std::vector<FieldValue>& values, const RecordView& record) {
  constexpr double kMostChoices = 2;  // of a field without bounds
  return std::all_of(values.begin(), values.end(), [&](const FieldValue& value) {
    const bool fits = value.field->keyed() ? WithinRange(*value.field, value.value)
                                           : std::fabs(value.value) <= kMostChoices;
    if (fits) {
      record.Set(*value.field, value.value + 0.0);
    }
    return fits;
  });
}

bool IsRefused(const FamilyRow& row, Question question, const RecordView& record) {
  const EffectRow& effect = row.effects.front();
  return !RangesHold(record) || (row.check != nullptr && row.check(record)) ||
         (question == Question::RequiredSize && RuleOf(row, record) == nullptr) ||
         (!row.checksItself && RefusalOf(effect.CheckOf(question), record, question));
}

// A refusal of the computation is left to the dialogs to report.
std::optional<Computed> Compute(const FamilyRow& row, Question question, const RecordView& record) {
  DirectObserver observer;
  const py::gil_scoped_release release;
  const std::unique_ptr<FamilySession> session = row.open(question);
  session->Take(record);
  const Outcome outcome = session->Compute(observer);
  return outcome.good && !outcome.refusal && observer.Passed()
             ? std::optional<Computed>(outcome.computed)
             : std::nullopt;
}

// The request with every field as it was, so that defaults saved since do not come in.
TaskRequest WithAllFields(const TaskRequest& request, const RecordView& record) {
  TaskRequest full = request;
  full.values.clear();
  for (const Field& field : record.table().fields) {
    full.values.push_back({&field, record.Get(field)});
  }
  return full;
}

}  // namespace

std::optional<StudyObject> DirectAnswer(const TaskRequest& request,
                                        StudyObject (*run)(const TaskRequest&)) {
  const FamilyRow* row = FindFamilyRow(request.family->family);
  if (row == nullptr || !AsksForNumbersAlone(request) || HasDefaults(request)) {
    return std::nullopt;
  }
  const Question question =
      request.mode == ModeSampleSize ? Question::RequiredSize : Question::Power;
  OwnRecord record(*request.family);
  if (!Put(request.values, record.view()) || IsRefused(*row, question, record.view())) {
    return std::nullopt;
  }
  const std::optional<Computed> computed = Compute(*row, question, record.view());
  if (PyErr_Occurred() != nullptr) {
    throw py::error_already_set();
  }
  if (!computed) {
    return std::nullopt;
  }
  StudyObject object;
  object.study.answers = AnswersOf(*row, question, record.view(), *computed);
  const auto isMissing = [](const Answer& answer) { return IsMissing(answer.value); };
  if (std::any_of(object.study.answers.begin(), object.study.answers.end(), isMissing)) {
    return std::nullopt;
  }
  object.rest = [whole = WithAllFields(request, record.view()), run] { return run(whole).study; };
  return object;
}

}  // namespace poweranalysis
