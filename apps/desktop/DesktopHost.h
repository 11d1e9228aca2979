#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QString>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "desktop/DesktopForm.h"
#include "desktop/StudyBook.h"
#include "host/HeadlessHost.h"

namespace poweranalysis {

// How results are routed, as the user chose it.
struct OutputOptions {
  bool report = true;  // paragraphs go to the workbook
  int level = 4;       // level of detail; reports come at the highest
  int digits = 6;      // of the cells of tables
};
inline constexpr int LowestLevel = 1;
inline constexpr int HighestLevel = 4;

// The host with a window. It runs an analysis from dialog to dialog, keeps the event loop alive
// during a search, and puts what comes out into the workbook. The window listens to its signals;
// nothing here knows a family.
class DesktopHost : public QObject, public Host {
  Q_OBJECT

 public:
  using Factory = std::function<std::unique_ptr<CAnalysisSupport>()>;
  struct FileQuestion {
    bool save = false;
    std::string title;
    std::string startName;
    std::string extension;
  };
  using FileChooser = std::function<std::optional<std::string>(const FileQuestion&)>;

  DesktopHost(StudyBook& book, Factory factory, QObject* parent = nullptr);
  ~DesktopHost() override;

  // Ends the running analysis, if there is one, and opens the startup dialog of a new one.
  bool StartAnalysis();
  void EndAnalysis();
  // Sends an event to the open dialog, then follows its exit. Refused while a command runs.
  long Send(const DialogEvent& event);
  long Press(int control) { return Send({MessageCommand, control, Notification::Command}); }

  DesktopForm* form() const { return form_.get(); }
  CAnalysisDialog* dialog() const { return dialog_.get(); }
  std::uint64_t dialogNumber() const { return form_ == nullptr ? 0 : dialogNumber_; }
  bool busy() const { return busy_; }
  bool frozen() const { return frozen_; }
  // The user's break: the running command stops at its next poll. It does not affect later
  // commands.
  void Cancel() { wasCancelled_ = true; }
  const ProgressState& progress() const { return progress_; }
  int messageCount() const { return messageCount_; }

  OutputOptions options;
  bool automation = false;  // a script drives the dialogs
  // How long a command may run before the window comes to life beside it: shorter ones would only
  // flicker.
  int patienceMilliseconds = 60;
  FileChooser chooseFile;
  void SetConfigFolder(const std::string& folder) { services_.configFolder = folder; }
  const std::string& configFolder() const { return services_.configFolder; }

 Q_SIGNALS:
  void DialogOpened();
  void DialogClosed();
  void TaskUnavailable(const QString& task);
  // The first poll of a running command: dialogs are to be disabled until it ends.
  void Frozen(bool frozen);
  void Refused();
  void ProgressChanged(const poweranalysis::ProgressState& progress);
  // The messages of a finished command, repeats joined.
  void MessagesReady(const std::vector<poweranalysis::Message>& messages);
  void OptionsWanted();
  // The user pressed a button that takes values while boxes could not be read.
  void BoxesUnreadable(int button, const std::vector<poweranalysis::UnreadableBox>& boxes);
  void CommandDone();
  // Before a dialog answers what the user did in it, for the recording of macros.
  void Doing(const poweranalysis::DialogEvent& event);

 public:
  // --- Host.
  int AllocMem(void** block, std::size_t bytes) override;
  int GetMem(void** block, std::size_t bytes) override;
  void FreeMem(void* block) override;
  void DspMessageBox(unsigned flags,
                     WindowHandle parent,
                     int textId,
                     const std::string& text) override;
  void d_pbar(const std::string& title) override;
  void dstart(int count) override;
  void termom(int position) override;
  void dstop() override;
  bool IsProgressBarOpen() const override { return progress_.open; }
  bool lookbr() override;
  bool IsExternallyCancelled() const override { return wasCancelled_; }
  bool pcancel() const override { return wasCancelled_; }
  bool WasCanceled() const override { return wasCancelled_; }
  bool CreateAnalysisDialog(std::unique_ptr<CAnalysisDialog> dialog) override;
  bool IsOleAutomation() const override { return automation; }
  void EnableStartupMenus(int) override {}
  void RGBAttrType(int) override {}
  std::optional<std::string> DoFileSaveAsDlg(const std::string& title,
                                             const std::string& startName,
                                             const std::string& extension) override;
  std::optional<std::string> DoFileOpenDlg(const std::string& title,
                                           const std::string& extension) override;
  std::optional<KeywordValue> GetInitKeywordPrivate(KeywordKind kind,
                                                    const std::string& file,
                                                    const std::string& section,
                                                    const std::string& key) override;
  KeywordSection GetInitSection(const std::string& file, const std::string& section) override;
  int BeginInitKeywords(const std::string& file) override;
  int PutInitKeywordPrivate(const std::string& file,
                            const std::string& section,
                            const std::string& key,
                            const KeywordValue& factory,
                            const KeywordValue& value) override;
  int EndInitKeywords(const std::string& file) override;
  std::string InitKeywordsError() const override;
  void NextScrSetOptions(int) override {}
  int looka4(SummaryTable table) override;
  void type(const std::string& paragraph) override;
  int NewGeneralMultipleChart(Chart chart) override;
  void LockResults() override {}
  void UnlockResults() override {}
  void RestoreResults() override;
  bool IsResultsToReportWindow() const override { return options.report; }
  bool IsResultsToWord() const override { return false; }
  int GetSupplementaryLevel() const override { return options.level; }

 private:
  // The widget may be inside one of its own signals when its dialog closes.
  struct LaterDeleter {
    void operator()(DesktopForm* form) const { form->deleteLater(); }
  };
  using FormPointer = std::unique_ptr<DesktopForm, LaterDeleter>;

  bool RefusesUnreadable(const DialogEvent& event);
  void FollowExit();
  void OpenNext();
  void ReopenStartup();
  void Finish();
  // What the dialog shows in its own boxes becomes a study like any other.
  void KeepResultsInPlace();
  // A study for what comes next, when it does not belong in the open one.
  void PrepareStudy(bool forTable);

  StudyBook& book_;
  Factory factory_;
  HeadlessHost services_;  // memory and keyword files need no window
  std::unique_ptr<CAnalysisSupport> analysis_;
  std::unique_ptr<CAnalysisDialog> dialog_;
  FormPointer form_;
  std::unique_ptr<CAnalysisDialog> nextDialog_;  // created while another's handler runs
  FormPointer nextForm_;
  std::uint64_t dialogNumber_ = 0;
  bool busy_ = false;
  bool frozen_ = false;
  bool wasCancelled_ = false;
  bool freshStudy_ = true;
  bool sentOutput_ = false;
  std::vector<Message> messages_;  // of the running command, in their order
  int messageCount_ = 0;
  ProgressState progress_;
  QElapsedTimer sinceStart_;  // of the running command
  QElapsedTimer sincePump_;
};

}  // namespace poweranalysis
