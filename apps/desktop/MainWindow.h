#pragma once

#include <QMainWindow>
#include <QPalette>
#include <QPointer>
#include <deque>
#include <functional>
#include <memory>
#include <optional>

#include "automation/MacroRecorder.h"
#include "desktop/DesktopHost.h"
#include "desktop/KeptWork.h"
#include "desktop/StudyBook.h"

class QActionGroup;
class QDialog;
class QDockWidget;
class QLabel;
class QMessageBox;
class QPlainTextEdit;
class QProgressBar;
class QPushButton;
class QSettings;
class QTimer;
class QTreeWidget;
class QTreeWidgetItem;
class QUndoStack;

namespace poweranalysis {

class MacroHost;
class ResultPages;

enum class Theme { System, Light, Dark };

// The window: the tree of results, the page of the chosen one, and the dialogs beside them.
class MainWindow : public QMainWindow {
  Q_OBJECT

 public:
  // Settings and autosaved work live in the folder; without one nothing is remembered.
  explicit MainWindow(const QString& configFolder);
  ~MainWindow() override;

  DesktopHost& host() { return *host_; }
  StudyBook& book() { return book_; }
  ResultPages& pages() { return *pages_; }
  MacroHost& macros() { return *macros_; }
  QTreeWidget& tree() { return *tree_; }
  QDockWidget& dialogDock() { return *dialogDock_; }
  QMessageBox* openMessage() const { return messageBox_; }

  // Opens the startup chooser.
  void NewAnalysis();
  // Offers what a crash left behind; false when there is nothing.
  bool OfferRecovery();
  bool OpenFile(const QString& path);
  bool SaveTo(const QString& path);
  void SetTheme(Theme theme);
  void SetTextPercent(int percent);
  int textPercent() const { return textPercent_; }
  void SetOptions(const OutputOptions& options);
  void SelectStudy(int study);
  void SelectItem(int study, int item);
  void StartRecording();
  bool recording() const { return recording_; }
  // What was recorded so far, as a script.
  std::string recordedScript() const { return recorder_.Script(); }
  QString file() const { return file_; }
  const QString& autosaveFile() const { return kept_.path(); }

 protected:
  void closeEvent(QCloseEvent* event) override;

 private:
  void BuildDocks();
  void BuildStatusBar();
  void BuildMenus();
  void BuildFileMenu();
  void BuildEditMenu();
  void BuildAnalysisMenu();
  void BuildMacroMenu();
  void BuildViewMenu();
  void BuildHelpMenu();
  void ConnectHost();
  void ConnectBook();
  void Restore();

  // --- Dialogs.
  void ShowDialog();
  void HideDialog();
  void Freeze(bool frozen);
  void ShowProgress(const ProgressState& progress);
  void QueueMessages(const std::vector<Message>& messages);
  void ShowNextMessage();
  void RefuseUnreadable(int button, const std::vector<UnreadableBox>& boxes);
  void CommandDone();
  void ShowOptions();
  std::optional<std::string> ChooseFile(const DesktopHost::FileQuestion& question);

  // --- Tree and pages.
  void RebuildTree();
  void AddStudyItem(int study);
  void AddResultItem(int study, int item);
  void ShowChosen();
  int ChosenStudy() const;

  // --- Files.
  void NewFile();
  void OpenByChooser();
  bool Save();
  bool SaveAs();
  bool MayDiscard();
  void SetFile(const QString& path);
  void Remember(const QString& path);
  void FillRecentMenu();
  bool Autosave();
  void RemoveAutosave();
  bool OpenLeftWork(const LeftWork& work);
  void ExportStudy();
  void ExportChart();
  void Print();
  void Complain(const QString& fault);
  bool RefuseWhileBusy();

  // --- Others.
  void Copy();
  void DeleteStudy();
  void NameUndo(QAction& undo, QAction& redo) const;
  void UndoRedo(bool undo);
  void FitScreen();
  void ShowHelp();
  void ShowAbout();
  void StopRecording();
  void Record(const DialogEvent& event);
  struct MacroDialog {
    QDialog* dialog = nullptr;
    QPlainTextEdit* output = nullptr;
    QPushButton* stop = nullptr;
  };
  MacroDialog ShowMacroDialog(const QString& path);
  void RunInside(const QString& path, const MacroDialog& shown);
  void RunBeside(const QString& path, const MacroDialog& shown);
  void RunMacro();
  void EditMacro();
  void UpdateTitle();
  void ShareWidth();

  QString folder_;
  std::unique_ptr<QSettings> settings_;
  StudyBook book_;
  KeptWork kept_;
  QUndoStack* removals_;  // of studies
  DesktopHost* host_;
  MacroHost* macros_ = nullptr;
  ResultPages* pages_;
  QTreeWidget* tree_ = nullptr;
  QDockWidget* treeDock_ = nullptr;
  QDockWidget* dialogDock_ = nullptr;
  QWidget* progressStrip_ = nullptr;
  QLabel* progressTitle_ = nullptr;
  QProgressBar* progressBar_ = nullptr;
  QPushButton* cancel_ = nullptr;
  QMenu* recentMenu_ = nullptr;
  QActionGroup* themes_ = nullptr;
  QTimer* autosaveTimer_ = nullptr;
  QMessageBox* messageBox_ = nullptr;
  QPointer<QWidget> focusBefore_;  // where the keyboard was before a search
  // A message, or a question with what its Yes does.
  struct Waiting {
    Message message;
    std::function<void()> yes;
  };
  std::deque<Waiting> waiting_;
  QString file_;
  QPalette systemPalette_;
  double basePoints_ = 9;
  int textPercent_ = 100;
  bool closeWhenDone_ = false;
  bool widthsOpen_ = true;  // docks have no width that the user gave
  bool recording_ = false;
  MacroRecorder recorder_;
  QAction* record_ = nullptr;
  QAction* stopRecording_ = nullptr;
  std::optional<std::pair<int, int>> newest_;  // what the running command sent first
};

}  // namespace poweranalysis
