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
#include "frame/TaskCatalogue.h"
#include "host/RunningHost.h"

namespace poweranalysis {

// How results are routed, as the user chose it.
struct OutputOptions {
  bool report = true;  // paragraphs go to the workbook
  int level = 4;       // level of detail; reports come at the highest
  int digits = 6;      // of the cells of tables
};
inline constexpr int LowestLevel = 1;
inline constexpr int HighestLevel = 4;

// The host with a window. It gives each dialog a form of widgets, keeps the event loop alive during
// a search, and puts what comes out into the workbook. The window listens to its signals; nothing
// here knows a family.
class DesktopHost : public QObject, public RunningHost {
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
  void EndAnalysis() override;
  // Refused while a command runs.
  long Send(const DialogEvent& event) override;

  // The widgets of the dialog on top; null when none is open.
  DesktopForm* widgets() const;
  bool frozen() const { return frozen_; }

  OutputOptions options;
  bool automation = false;  // a script drives the dialogs
  // How long a command may run before the window comes to life beside it: shorter ones would only
  // flicker.
  int patienceMilliseconds = 60;
  FileChooser chooseFile;

 Q_SIGNALS:
  // Another dialog is on top: it was opened, or the modal one above it has ended.
  void DialogShown();
  void DialogClosed();
  // The first poll of a running command: dialogs are to be disabled until it ends.
  void Frozen(bool frozen);
  void Refused();
  void ProgressMoved(const poweranalysis::ProgressState& progress);
  // The messages of a finished command, repeats joined.
  void MessagesReady(const std::vector<poweranalysis::Message>& messages);
  void OptionsWanted();
  // The user pressed a button that takes values while boxes could not be read.
  void BoxesUnreadable(int button, const std::vector<poweranalysis::UnreadableBox>& boxes);
  void CommandDone();
  // Why a file is no sheet of cell means.
  void SheetUnreadable(const QString& path, const QString& reason);
  // Before a dialog answers what the user did in it, for the recording of macros.
  void Doing(const poweranalysis::DialogEvent& event);

 public:
  // --- Host.
  bool lookbr() override;
  bool IsOleAutomation() const override { return automation; }
  void EnableStartupMenus(int) override {}
  void RGBAttrType(int) override {}
  std::optional<std::string> DoFileSaveAsDlg(const std::string& title,
                                             const std::string& startName,
                                             const std::string& extension) override;
  std::optional<std::string> DoFileOpenDlg(const std::string& title,
                                           const std::string& extension) override;
  std::optional<std::string> GetClipboardText() override;
  bool SetClipboardText(const std::string& text) override;
  std::optional<Sheet> OpenSheet(const std::string& path) override;
  void NextScrSetOptions(int) override {}
  int looka4(SummaryTable table) override;
  void type(const std::string& paragraph) override;
  int NewGeneralMultipleChart(Chart chart) override;
  void LockResults() override {}
  void UnlockResults() override {}
  void RestoreResults() override {}
  bool IsResultsToReportWindow() const override { return options.report; }
  bool IsResultsToWord() const override { return false; }
  int GetSupplementaryLevel() const override { return options.level; }

 protected:
  std::shared_ptr<FormView> MakeView(const std::shared_ptr<FormModel>& form) override;
  void DialogOnTop(bool opened) override;
  void NothingOpened(int stage) override;
  void ProgressChanged(BarChange change) override;
  void CommandEnded() override;

 private:
  bool RefusesUnreadable(const DialogEvent& event);
  // What the dialog shows in its own boxes becomes a study like any other.
  void KeepResultsInPlace();
  // A study for what comes next, when it does not belong in the open one.
  void PrepareStudy(bool forTable);
  // The catalogue's row of the dialog that results come from.
  CatalogueDialog Entry() const;

  StudyBook& book_;
  Factory factory_;
  std::unique_ptr<CAnalysisSupport> analysis_;
  bool frozen_ = false;
  bool freshStudy_ = true;
  bool sentOutput_ = false;
  QElapsedTimer sinceStart_;  // of the running command
  QElapsedTimer sincePump_;
};

}  // namespace poweranalysis
