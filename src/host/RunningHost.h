#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "host/AnalysisSupport.h"
#include "host/LocalHost.h"

namespace poweranalysis {

struct ProgressState {
  std::string title;
  int count = 0;
  int position = 0;
  bool open = false;
};

// What has just become of the progress bar.
enum class BarChange { Titled, Opened, Moved, Closed };

// The life of dialogs, which is the same whether or not a window shows them: an analysis runs from
// dialog to dialog; a modal dialog lies on top of the one that made it; messages are joined; a
// break ends the command that it came in, and no other. A host says where results go, and what it
// does besides at the points below.
class RunningHost : public LocalHost {
 public:
  ~RunningHost() override;

  // --- Running an analysis.
  // Attaches the host and runs the sequence to its first dialog. The analysis must live until it is
  // ended or another is started.
  int Start(CAnalysisSupport& analysis);
  // Closes all dialogs, modal ones too, without running a stage.
  virtual void EndAnalysis();
  // The dialog on top and its form; null when none is open.
  CAnalysisDialog* dialog() const { return Top().dialog.get(); }
  FormModel* form() const { return Top().form.get(); }
  // Its number, another for each dialog that was ever opened; 0 when none is open.
  std::uint64_t dialogNumber() const { return Top().number; }
  // Whether the dialog of a number has not closed, be it on top or not.
  bool IsOpen(std::uint64_t number) const;
  // The dialog that the running stage opened, below all modal ones.
  CAnalysisDialog* stageDialog() const;

  // --- As the user does.
  // Sends an event to the dialog on top, then follows its exit, if it asked for one. Nothing is
  // taken while another command runs.
  virtual long Send(const DialogEvent& event);
  long Press(int control) { return Send({MessageCommand, control, Notification::Command}); }
  // Puts a text into an edit control as typed, and sends its command.
  long Type(int control, std::string_view text);
  // Selects a row of a list, and sends the change.
  long Select(int list, int row);
  // The break: the running command stops at its next poll. It does not affect later commands.
  void Cancel() { wasCancelled_ = true; }
  bool busy() const { return busy_; }

  // --- What was shown.
  const std::vector<Message>& messages() const { return messages_; }
  int messageCalls() const { return messageCalls_; }  // repeats counted one by one
  void ClearMessages();
  const ProgressState& progress() const { return progress_; }

  // --- Host.
  void DspMessageBox(unsigned flags,
                     WindowHandle parent,
                     int textId,
                     const std::string& text) override;
  void d_pbar(const std::string& title) override;
  void dstart(int count) override;
  void termom(int position) override;
  void dstop() override;
  bool IsProgressBarOpen() const override { return progress_.open; }
  bool lookbr() override { return wasCancelled_; }
  bool IsExternallyCancelled() const override { return wasCancelled_; }
  bool pcancel() const override { return wasCancelled_; }
  bool WasCanceled() const override { return wasCancelled_; }
  bool CreateAnalysisDialog(std::unique_ptr<CAnalysisDialog> dialog) override;

 protected:
  // The view of a new form; it may outlive the dialog. None by default.
  virtual std::shared_ptr<FormView> MakeView(const std::shared_ptr<FormModel>& form);
  // The view of the dialog on top; null when there is none.
  FormView* view() const { return Top().view.get(); }
  // Another dialog is on top: it was opened, or the modal one above it has ended.
  virtual void DialogOnTop(bool /*opened*/) {}
  // A dialog asked for this, and is about to close.
  virtual void Exiting(const PendingExit& /*exit*/) {}
  // The stage that a dialog named has opened none; 0: it named the end.
  virtual void NothingOpened(int /*stage*/) {}
  virtual void MessageShown(const Message& /*message*/) {}
  virtual void ProgressChanged(BarChange /*change*/) {}
  // A command and all exits that it led to are over, and the next may come.
  virtual void CommandEnded() {}
  std::vector<Message> TakeMessages();

 private:
  struct OpenDialog {
    std::uint64_t number = 0;
    std::shared_ptr<FormModel> form;
    std::shared_ptr<FormView> view;
    std::unique_ptr<CAnalysisDialog> dialog;
  };
  class Busy;

  const OpenDialog& Top() const;
  long Run(const std::function<long()>& command);
  void FollowExits();
  void OpenCreated();
  void Close(const PendingExit& exit);
  void Uncover();
  void CloseDownTo(std::size_t count);

  CAnalysisSupport* analysis_ = nullptr;
  std::vector<OpenDialog> stack_;    // the top is the last
  std::vector<OpenDialog> created_;  // while a handler runs: opened once it has returned
  std::uint64_t opened_ = 0;
  std::vector<Message> messages_;
  int messageCalls_ = 0;
  ProgressState progress_;
  bool busy_ = false;
  bool wasCancelled_ = false;
};

}  // namespace poweranalysis
