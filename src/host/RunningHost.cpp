#include "host/RunningHost.h"

#include <algorithm>
#include <utility>

namespace poweranalysis {

// A command is over when its scope ends, by whatever way.
class RunningHost::Busy {
 public:
  explicit Busy(bool& busy) : busy_(busy) { busy_ = true; }
  Busy(const Busy&) = delete;
  Busy& operator=(const Busy&) = delete;
  ~Busy() { busy_ = false; }

 private:
  bool& busy_;
};

RunningHost::~RunningHost() { CloseDownTo(0); }

// --- Running an analysis.

int RunningHost::Start(CAnalysisSupport& analysis) {
  RunningHost::EndAnalysis();
  analysis_ = &analysis;
  analysis.AttachHost(this);
  return static_cast<int>(Run([&analysis] { return analysis.StartSequence(); }));
}

void RunningHost::EndAnalysis() {
  CloseDownTo(0);
  analysis_ = nullptr;
}

const RunningHost::OpenDialog& RunningHost::Top() const {
  static const OpenDialog none;
  return stack_.empty() ? none : stack_.back();
}

bool RunningHost::IsOpen(std::uint64_t number) const {
  return std::any_of(stack_.begin(), stack_.end(),
                     [number](const OpenDialog& open) { return open.number == number; });
}

CAnalysisDialog* RunningHost::stageDialog() const {
  return stack_.empty() ? nullptr : stack_.front().dialog.get();
}

long RunningHost::Send(const DialogEvent& event) {
  if (stack_.empty() || busy_) {
    return 0;
  }
  return Run([this, &event] { return dialog()->CallEventHandler(event); });
}

long RunningHost::Type(int control, std::string_view text) {
  if (form() == nullptr) {
    return 0;
  }
  form()->Type(control, text);
  return Press(control);
}

long RunningHost::Select(int list, int row) {
  if (form() == nullptr) {
    return 0;
  }
  form()->SelectListRow(list, row);
  return Send({MessageCommand, list, Notification::SelectionChange});
}

long RunningHost::Run(const std::function<long()>& command) {
  long result = 0;
  {
    const Busy scope(busy_);
    wasCancelled_ = false;
    result = command();
    FollowExits();
  }
  CommandEnded();
  return result;
}

// --- The stack of dialogs.

std::shared_ptr<FormView> RunningHost::MakeView(const std::shared_ptr<FormModel>& /*form*/) {
  return nullptr;
}

bool RunningHost::CreateAnalysisDialog(std::unique_ptr<CAnalysisDialog> dialog) {
  if (dialog == nullptr) {
    return false;
  }
  OpenDialog created;
  created.number = ++opened_;
  created.form = std::make_shared<FormModel>();
  created.view = MakeView(created.form);
  created.dialog = std::move(dialog);
  created.dialog->AttachForm(created.form.get());
  CAnalysisDialog& started = *created.dialog;
  created_.push_back(std::move(created));
  started.CallEventHandler({MessageStart, 0, Notification::Command});
  return true;
}

void RunningHost::FollowExits() {
  while (analysis_ != nullptr) {
    OpenCreated();
    const std::optional<PendingExit> exit = analysis_->TakePendingExit();
    if (!exit) {
      return;
    }
    Exiting(*exit);
    Close(*exit);
  }
}

// A modal dialog lies on top of what is open; any other takes its place.
void RunningHost::OpenCreated() {
  for (OpenDialog& created : std::exchange(created_, {})) {
    if (!created.dialog->IsModal()) {
      CloseDownTo(0);
    } else if (!stack_.empty()) {
      stack_.back().form->Enable(false);
    }
    stack_.push_back(std::move(created));
    DialogOnTop(true);
  }
}

// A dialog that leaves takes with it those on top of it. Behind a modal one no stage follows.
void RunningHost::Close(const PendingExit& exit) {
  auto leaving = std::find_if(stack_.begin(), stack_.end(), [&exit](const OpenDialog& open) {
    return open.dialog.get() == exit.dialog;
  });
  if (leaving == stack_.end() && !stack_.empty()) {
    --leaving;
  }
  const bool modal = leaving != stack_.end() && leaving->dialog->IsModal();
  CloseDownTo(static_cast<std::size_t>(leaving - stack_.begin()));
  if (modal) {
    Uncover();
    return;
  }
  analysis_->ForwardSequence(exit.stage, exit.kind);
  if (created_.empty()) {
    NothingOpened(exit.stage);
  }
}

// The dialog below shows what the modal one has left behind.
void RunningHost::Uncover() {
  if (stack_.empty()) {
    NothingOpened(0);
    return;
  }
  stack_.back().form->Enable(true);
  DialogOnTop(false);
  dialog()->CallEventHandler({MessageCommand, CommandRefresh, Notification::Command});
}

// The top goes first: it may refer to what lies below.
void RunningHost::CloseDownTo(std::size_t count) {
  if (count == 0) {
    created_.clear();
  }
  while (stack_.size() > count) {
    stack_.pop_back();
  }
}

// --- Messages.

void RunningHost::DspMessageBox(unsigned /*flags*/,
                                WindowHandle /*parent*/,
                                int textId,
                                const std::string& text) {
  ++messageCalls_;
  if (AddMessage(messages_, textId, text)) {
    MessageShown(messages_.back());
  }
}

void RunningHost::ClearMessages() {
  messages_.clear();
  messageCalls_ = 0;
}

std::vector<Message> RunningHost::TakeMessages() { return std::exchange(messages_, {}); }

// --- Progress.

void RunningHost::d_pbar(const std::string& title) {
  progress_.title = title;
  ProgressChanged(BarChange::Titled);
}

void RunningHost::dstart(int count) {
  progress_.count = count;
  progress_.position = 0;
  progress_.open = true;
  ProgressChanged(BarChange::Opened);
}

void RunningHost::termom(int position) {
  progress_.position = position;
  ProgressChanged(BarChange::Moved);
}

void RunningHost::dstop() {
  progress_.open = false;
  ProgressChanged(BarChange::Closed);
}

}  // namespace poweranalysis
