#include "host/AnalysisSupport.h"

#include <algorithm>
#include <utility>

namespace poweranalysis {

CAnalysisDialog::CAnalysisDialog(CAnalysisSupport& analysis, int resource)
    : analysis_(analysis), resource_(resource) {}

void CAnalysisDialog::ExitDialog(int stage, int kind, int flag) {
  analysis_.RequestExit({stage, kind, flag, this});
}

long CAnalysisDialog::CommonHandler(const DialogEvent&) { return 0; }

CAnalysisSupport::~CAnalysisSupport() = default;

std::optional<PendingExit> CAnalysisSupport::TakePendingExit() {
  return std::exchange(pendingExit_, std::nullopt);
}

void CAnalysisSupport::SetSequenceTable(const SequenceRow* table, int rows) {
  sequence_ = {table, static_cast<std::size_t>(rows)};
}

const SequenceRow* CAnalysisSupport::FindStage(int stage) const {
  const auto row = std::find_if(sequence_.begin(), sequence_.end(),
                                [stage](const SequenceRow& r) { return r.stage == stage; });
  return row == sequence_.end() ? nullptr : &*row;
}

int CAnalysisSupport::RunStage(int stage) {
  const SequenceRow* row = FindStage(stage);
  if (row == nullptr) {
    currentStage_ = 0;
    return StageNothing;
  }
  currentStage_ = stage;
  return (this->*row->run)();
}

int CAnalysisSupport::StartSequence() {
  if (sequence_.empty()) {
    return StageNothing;
  }
  int result = RunStage(sequence_.front().stage);
  // A stage without a dialog that has done its work hands on to the next.
  while (result > 0) {
    result = RunStage(FindStage(currentStage_)->next);
  }
  return result;
}

int CAnalysisSupport::ForwardSequence(int stage, int kind) {
  constexpr int kNextByTable = 1;
  if (stage == kNextByTable && kind == ExitForward) {
    const SequenceRow* row = FindStage(currentStage_);
    return row == nullptr ? StageNothing : RunStage(row->next);
  }
  return RunStage(stage);
}

}  // namespace poweranalysis
