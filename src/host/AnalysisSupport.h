#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "host/Answer.h"
#include "host/FormModel.h"
#include "host/Host.h"

// The host's side of an analysis: the base class that a module derives its analysis from, and the
// dialogs that its stages open.
namespace poweranalysis {

class CAnalysisSupport;

// The host's document that an analysis belongs to, where it has one; never looked into.
class CAnalysisDoc {
 public:
  virtual ~CAnalysisDoc() = default;
};

// Messages of a dialog's event handler.
inline constexpr int MessageStart = 272;
inline constexpr int MessageCommand = 273;
inline constexpr int MessageColour = 25;

// The command by which a host asks a dialog to show its values again.
inline constexpr int CommandRefresh = 133;

// Notifications that come with a command of a list.
enum class Notification { Command = 0, SelectionChange = 1, DoubleClick = 2 };

struct DialogEvent {
  int message = MessageCommand;
  int control = 0;  // low word of the command
  Notification notification = Notification::Command;
};

// Kinds of ExitDialog.
inline constexpr int ExitBack = 1;
inline constexpr int ExitForward = 2;

// What a dialog has computed and shows in its own boxes, without sending it to the host: for faces
// that keep it all the same.
struct ResultsInPlace {
  SummaryTable table;
  Report report;
  std::vector<Answer> answers;
  // What was asked for does not exist; these are the nearest numbers that do.
  bool nearest = false;
};

// A dialog as a model: it answers events through EventHandler and touches its controls through the
// form model that the host gave it. It does not hold any values itself.
class CAnalysisDialog {
 public:
  CAnalysisDialog(CAnalysisSupport& analysis, int resource);
  CAnalysisDialog(const CAnalysisDialog&) = delete;
  CAnalysisDialog& operator=(const CAnalysisDialog&) = delete;
  virtual ~CAnalysisDialog() = default;

  CAnalysisSupport& analysis() const { return analysis_; }
  int resource() const { return resource_; }
  // What the dialog looks like.
  virtual DialogSpec Spec() const = 0;

  // Called by the host: the host's common handler would come first, then the dialog's own.
  long CallEventHandler(const DialogEvent& event) { return EventHandler(event); }

  // The only way that a dialog ends: names the stage to run next (0 ends the analysis, 1 is "the
  // next by the table"), with ExitForward or ExitBack. The host closes the dialog and runs the
  // stage once the handler has returned. Behind a modal dialog no stage runs: the dialog below goes
  // on, and is asked to show its values again.
  void ExitDialog(int stage, int kind, int flag);

  // What the last command computed in place; nothing when it did not, and when it was taken.
  virtual std::optional<ResultsInPlace> TakeResults() { return std::nullopt; }

  // Whether it was opened from inside another dialog, and lies on top of it until it ends.
  virtual bool IsModal() const { return false; }

  void AttachForm(FormModel* form) { form_ = form; }
  FormModel& form() const { return *form_; }
  WindowHandle window() const { return form_; }

 protected:
  virtual long EventHandler(const DialogEvent& event) = 0;
  // The host's common handler, asked first by every handler: nonzero when it took the event.
  virtual long CommonHandler(const DialogEvent& event);

 private:
  CAnalysisSupport& analysis_;
  int resource_;
  FormModel* form_ = nullptr;
};

// A dialog beside which the user goes on; it is deleted when it closes.
class CAnalysisModelessDialog : public CAnalysisDialog {
 public:
  using CAnalysisDialog::CAnalysisDialog;
};

// A dialog opened from inside another.
class CAnalysisModalDialog : public CAnalysisDialog {
 public:
  using CAnalysisDialog::CAnalysisDialog;

  bool IsModal() const override { return true; }
};

// Results of a stage function.
inline constexpr int StageRuns = -1;    // a dialog was created and is running
inline constexpr int StageNothing = 0;  // no dialog came up

struct SequenceRow {
  int stage;
  int (CAnalysisSupport::*run)();
  int next;
};

// An exit that waits until the dialog's handler has returned.
struct PendingExit {
  int stage;
  int kind;
  int flag;
  const CAnalysisDialog* dialog = nullptr;  // that asked for it; null: the one on top
};

// Base class of an analysis. The host attaches itself before it runs the first stage; every service
// of the host is reached through the live object.
class CAnalysisSupport {
 public:
  explicit CAnalysisSupport(CAnalysisDoc* document = nullptr) : document_(document) {}
  CAnalysisSupport(const CAnalysisSupport&) = delete;
  CAnalysisSupport& operator=(const CAnalysisSupport&) = delete;
  virtual ~CAnalysisSupport();

  virtual int InitializeAfterFileChanged() = 0;
  virtual void Initialize() = 0;
  // Runs the stage that a closed dialog named: `kind` ExitForward with stage 1 moves on by the
  // table, stage 0 ends, any other number runs that row. The result is the stage function's.
  virtual int ForwardSequence(int stage, int kind);
  virtual const void* GetLibInstance() const = 0;
  virtual int GetAnalysisID() const = 0;
  virtual std::string GetAnalysisName() const = 0;

  CAnalysisDoc* document() const { return document_; }
  virtual void AttachHost(Host* host) { host_ = host; }
  Host& host() const { return *host_; }
  Host* hostOrNull() const { return host_; }

  // Starts the sequence at its first row and runs on to the first stage that opens a dialog.
  int StartSequence();
  int currentStage() const { return currentStage_; }

  std::span<const std::uint8_t> attributes() const { return attributes_; }
  std::span<const SequenceRow> sequence() const { return sequence_; }

  // Set by a dialog, taken by the host once the handler has returned.
  void RequestExit(PendingExit exit) { pendingExit_ = exit; }
  std::optional<PendingExit> TakePendingExit();

 protected:
  void SetSequenceTable(const SequenceRow* table, int rows);
  std::array<std::uint8_t, 8> attributes_{};

 private:
  int RunStage(int stage);
  const SequenceRow* FindStage(int stage) const;

  CAnalysisDoc* document_;
  Host* host_ = nullptr;
  std::span<const SequenceRow> sequence_;
  int currentStage_ = 0;
  std::optional<PendingExit> pendingExit_;
};

}  // namespace poweranalysis
