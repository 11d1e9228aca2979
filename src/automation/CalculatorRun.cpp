#include "automation/CalculatorRun.h"

#include <fmt/format.h>

#include <optional>
#include <utility>

#include "automation/Session.h"
#include "calculators/CalculatorDialog.h"
#include "dialogs/Controls.h"
#include "frame/DefineTask.h"

namespace poweranalysis {

namespace {

class CalculatorRun {
 public:
  CalculatorRun(const TaskRequest& request,
                HeadlessHost& host,
                const HeadlessDriver::Factory& factory)
      : request_(request),
        host_(host),
        driver_(host, factory),
        session_(driver_, [&host] { return IsCancelled(host); }),
        task_(Tasks(request.mode)[static_cast<std::size_t>(request.row)]),
        rows_(*FindCalculator(task_.family)),
        unknown_(rows_.unknowns[request.unknown.value_or(UnknownProbability)]) {}

  TaskOutcome Run();

 private:
  void FillIn();
  Session::Outcome Put(const char* field, double value);
  void Tell();

  const TaskRequest& request_;
  HeadlessHost& host_;
  HeadlessDriver driver_;
  Session session_;
  const TaskRow& task_;
  const CalculatorTable& rows_;
  const CalculatorUnknown& unknown_;
  TaskOutcome outcome_;
  bool nearest_ = false;  // what was asked for does not exist
};

void CalculatorRun::FillIn() {
  Put(OneMinusPField, request_.oneMinusP ? 1 : 0);
  Put(SelectorField, static_cast<double>(&unknown_ - rows_.unknowns.data()));
  for (const FieldValue& value : request_.values) {
    if (Put(value.field->name, value.value) == Session::Outcome::NoButton) {
      Store(ViewOf(*Block(), rows_.family, Instance::Working), value);
    }
  }
}

Session::Outcome CalculatorRun::Put(const char* field, double value) {
  return session_.PutValue(session_.FindField(field), value);
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

TaskOutcome CalculatorRun::Run() {
  Study& study = outcome_.study;
  study.family = task_.family;
  study.mode = ModeWord(ModeDistribution);
  if (session_.OpenTask(request_.mode, request_.row)) {
    FillIn();
    // Whatever the box holds afterwards is the answer; a refusal may leave it as it is.
    host_.form()->SetDlgItemText(ControlOfField(unknown_.field), "");
    session_.Press(ControlAccept);
    study.messages = host_.messages();
    if (!IsCancelled(host_)) {
      Tell();
    }
  } else {
    outcome_.errors.emplace_back("the calculator could not be opened");
  }
  FinishStudy(outcome_, host_, nearest_);
  return std::move(outcome_);
}

}  // namespace

TaskOutcome RunCalculator(const TaskRequest& request,
                          HeadlessHost& host,
                          const HeadlessDriver::Factory& factory) {
  return CalculatorRun(request, host, factory).Run();
}

}  // namespace poweranalysis
