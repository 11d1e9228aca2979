#include <QApplication>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QMenu>
#include <QMessageBox>
#include <QPrintDialog>
#include <QPrinter>
#include <QSettings>
#include <QStatusBar>
#include <QTimer>

#include "desktop/MainWindow.h"
#include "desktop/RecoveryDialog.h"
#include "desktop/ResultPages.h"
#include "desktop/StudyExport.h"
#include "desktop/WorkbookIo.h"

// Files of the window: the workbook, what a crash left, exports and paper.
namespace poweranalysis {

namespace {

constexpr int kMostRecent = 8;
const char* const kRecentKey = "files/recent";
const char* const kExtension = ".pawb";

QString WorkbookFilter() {
  return QObject::tr("Workbooks (*%1);;All files (*)").arg(QLatin1String(kExtension));
}

// "html" of "Web page (*.html)".
QString ExtensionOf(const QString& filter) {
  const qsizetype from = filter.indexOf(QStringLiteral("*.")) + 2;
  return filter.mid(from, filter.indexOf(QLatin1Char(')'), from) - from);
}

// Asks for a file to write. A name without an extension gets that of the chosen kind before the
// question whether to replace a file.
QString AskForFile(QWidget* parent,
                   const QString& title,
                   const QString& start,
                   const QString& filters) {
  QFileDialog dialog(parent, title, start, filters);
  dialog.setAcceptMode(QFileDialog::AcceptSave);
  const auto choose = [&dialog](const QString& filter) {
    dialog.setDefaultSuffix(ExtensionOf(filter));
  };
  QObject::connect(&dialog, &QFileDialog::filterSelected, &dialog, choose);
  choose(dialog.selectedNameFilter());
  dialog.selectFile(start);
  return dialog.exec() == QDialog::Accepted ? dialog.selectedFiles().value(0) : QString();
}

// A file name out of a study's name.
QString FileNameOf(const QString& name) {
  QString plain;
  for (const QChar letter : name) {
    if (letter.isLetterOrNumber()) {
      plain += letter;
    } else if (!plain.endsWith(QLatin1Char('-'))) {
      plain += QLatin1Char('-');
    }
  }
  return plain;
}

}  // namespace

void MainWindow::Complain(const QString& fault) {
  constexpr int kNoTextNumber = 0;
  QueueMessages({{kNoTextNumber, fault.toStdString(), 1}});
}

void MainWindow::SetFile(const QString& path) {
  file_ = path;
  if (!path.isEmpty()) {
    Remember(path);
  }
  UpdateTitle();
}

bool MainWindow::MayDiscard() {
  if (!book_.changed()) {
    return true;
  }
  QMessageBox box(QMessageBox::Question, QStringLiteral("PowerAnalysis"),
                  tr("The workbook has changes that are not saved."),
                  QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel, this);
  box.setObjectName(QStringLiteral("unsaved"));
  box.setDefaultButton(QMessageBox::Save);
  switch (box.exec()) {
    case QMessageBox::Save:
      return Save();
    case QMessageBox::Discard:
      return true;
    default:
      return false;
  }
}

void MainWindow::NewFile() {
  if (!RefuseWhileBusy() && MayDiscard()) {
    book_.Replace({});
    SetFile({});
    RemoveAutosave();
  }
}

bool MainWindow::OpenFile(const QString& path) {
  if (RefuseWhileBusy() || !MayDiscard()) {
    return false;
  }
  LoadedStudies loaded = LoadStudies(path);
  if (!loaded.fault.isEmpty()) {
    Complain(loaded.fault);
    return false;
  }
  book_.Replace(std::move(loaded.studies));
  // A file of a newer version is not overwritten: it gets its own name first.
  SetFile(loaded.newer ? QString() : path);
  RemoveAutosave();
  if (!loaded.notes.isEmpty()) {
    Complain(loaded.notes);
  }
  return true;
}

void MainWindow::OpenByChooser() {
  const QString path = QFileDialog::getOpenFileName(
      this, tr("Open a workbook"), QFileInfo(file_).absolutePath(), WorkbookFilter());
  if (!path.isEmpty()) {
    OpenFile(path);
  }
}

bool MainWindow::SaveTo(const QString& path) {
  const QString fault = SaveStudies(path, book_.studies());
  if (!fault.isEmpty()) {
    Complain(fault);
    return false;
  }
  book_.SetSaved();
  SetFile(path);
  RemoveAutosave();
  statusBar()->showMessage(tr("Saved %1").arg(path), 5000);
  return true;
}

bool MainWindow::Save() { return file_.isEmpty() ? SaveAs() : SaveTo(file_); }

bool MainWindow::SaveAs() {
  const QString start = file_.isEmpty() ? tr("study") + QLatin1String(kExtension) : file_;
  const QString path = AskForFile(this, tr("Save the workbook"), start, WorkbookFilter());
  return !path.isEmpty() && SaveTo(path);
}

// --- Recent files.

void MainWindow::Remember(const QString& path) {
  if (settings_ == nullptr) {
    return;
  }
  QStringList recent = settings_->value(QLatin1String(kRecentKey)).toStringList();
  const QString whole = QFileInfo(path).absoluteFilePath();
  recent.removeAll(whole);
  recent.prepend(whole);
  settings_->setValue(QLatin1String(kRecentKey), QStringList(recent.mid(0, kMostRecent)));
}

void MainWindow::FillRecentMenu() {
  recentMenu_->clear();
  const QStringList recent = settings_ == nullptr
                                 ? QStringList()
                                 : settings_->value(QLatin1String(kRecentKey)).toStringList();
  for (const QString& path : recent) {
    QAction* action =
        recentMenu_->addAction(QString(path).replace(QLatin1Char('&'), QStringLiteral("&&")));
    connect(action, &QAction::triggered, this, [this, path] { OpenFile(path); });
  }
  if (recent.isEmpty()) {
    recentMenu_->addAction(tr("(none)"))->setEnabled(false);
  }
}

// --- Autosave: a file for each running window, left behind only by a crash.

bool MainWindow::Autosave() {
  if (!book_.changed()) {
    return true;
  }
  const QString fault = kept_.Keep(book_.studies(), file_);
  if (!fault.isEmpty()) {
    statusBar()->showMessage(fault);
  }
  return fault.isEmpty();
}

void MainWindow::RemoveAutosave() {
  autosaveTimer_->stop();
  kept_.Remove();
}

bool MainWindow::OfferRecovery() {
  std::vector<LeftWork> works = FindLeftWork(kept_.folder());
  if (works.empty()) {
    return false;
  }
  RecoveryDialog dialog(works, this);
  dialog.exec();
  for (std::size_t i = 0; i < works.size(); ++i) {
    const RecoveryDialog::Choice choice = dialog.ChoiceOf(i);
    if (choice == RecoveryDialog::Delete ||
        (choice == RecoveryDialog::Open && OpenLeftWork(works[i]))) {
      works[i].Delete();
    }
  }
  return true;
}

// What was left may go only once it is kept again.
bool MainWindow::OpenLeftWork(const LeftWork& work) {
  if (RefuseWhileBusy() || !MayDiscard()) {
    return false;
  }
  LoadedStudies loaded = LoadStudies(work.path);
  if (!loaded.fault.isEmpty()) {
    Complain(loaded.fault);
    return false;
  }
  book_.Replace(std::move(loaded.studies));
  SetFile(loaded.newer || work.IsOvertaken() ? QString() : work.file);
  book_.SetChanged();
  if (!loaded.notes.isEmpty()) {
    Complain(loaded.notes);
  }
  return Autosave();
}

// --- Exports and paper.

void MainWindow::ExportStudy() {
  const int study = ChosenStudy();
  if (study < 0) {
    statusBar()->showMessage(tr("There is no study to export yet."), 5000);
    return;
  }
  const StudyRecord& record = book_.studies()[static_cast<std::size_t>(study)];
  const std::vector<ExportKind<StudyRecord>> kinds = ExportsOf(record);
  const QString path =
      AskForFile(this, tr("Export the study"), FileNameOf(record.name), FileFilter(kinds));
  if (!path.isEmpty()) {
    const QString fault = WriteByExtension(kinds, record, path, host_->options.digits);
    if (!fault.isEmpty()) {
      Complain(fault);
    }
  }
}

void MainWindow::ExportChart() {
  const Chart* chart = pages_->ShownChart();
  if (chart == nullptr) {
    statusBar()->showMessage(tr("Choose a chart in the workbook first."), 5000);
    return;
  }
  const QString path = AskForFile(this, tr("Export the chart"), QString::fromStdString(chart->name),
                                  FileFilter(ChartExports()));
  if (!path.isEmpty()) {
    const QString fault = WriteByExtension(ChartExports(), *chart, path, host_->options.digits);
    if (!fault.isEmpty()) {
      Complain(fault);
    }
  }
}

void MainWindow::Print() {
  const int study = ChosenStudy();
  if (study < 0) {
    statusBar()->showMessage(tr("There is no study to print yet."), 5000);
    return;
  }
  QPrinter printer(QPrinter::HighResolution);
  QPrintDialog dialog(&printer, this);
  if (dialog.exec() == QDialog::Accepted) {
    PrintStudy(book_.studies()[static_cast<std::size_t>(study)], printer, host_->options.digits);
  }
}

}  // namespace poweranalysis
