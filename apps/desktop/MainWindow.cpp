#include "desktop/MainWindow.h"

#include <QActionGroup>
#include <QApplication>
#include <QCloseEvent>
#include <QDir>
#include <QDockWidget>
#include <QFileDialog>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QScreen>
#include <QSettings>
#include <QStatusBar>
#include <QTextBrowser>
#include <QTimer>
#include <QTreeWidget>
#include <QUndoStack>
#include <algorithm>

#include "desktop/ChartView.h"
#include "desktop/Icons.h"
#include "desktop/MacroHost.h"
#include "desktop/OptionsDialog.h"
#include "desktop/ResultPages.h"
#include "desktop/Strings.h"
#include "desktop/Themes.h"
#include "desktop/WorkbookIo.h"
#include "module/PowerAnalysisModule.h"

// The linker would drop the resources of a static library that nothing refers to.
static void KeepResources() { Q_INIT_RESOURCE(desktop); }

namespace poweranalysis {

namespace {

constexpr int kStateVersion = 1;
constexpr int kStudyRole = Qt::UserRole;
constexpr int kItemRole = Qt::UserRole + 1;
constexpr int kWholeStudy = -1;
constexpr int kAutosaveMilliseconds = 1000;

// A study shows its day, what is in it the time; the tool tip shows both.
QString TimeText(const QDateTime& when, const char* format = "yyyy-MM-dd HH:mm:ss") {
  return QLocale::c().toString(when, QString::fromLatin1(format));
}

std::unique_ptr<CAnalysisSupport> NewAnalysisObject() {
  return std::unique_ptr<CAnalysisSupport>(Zlv6NewAnalysis());
}

}  // namespace

MainWindow::MainWindow(const QString& configFolder)
    : folder_(configFolder),
      kept_(configFolder.isEmpty() ? QString() : configFolder + QStringLiteral("/autosave")),
      removals_(new QUndoStack(this)),
      host_(new DesktopHost(book_, NewAnalysisObject, this)),
      pages_(new ResultPages),
      systemPalette_(QApplication::palette()) {
  KeepResources();
  setObjectName(QStringLiteral("window"));
  setAccessibleName(QStringLiteral("PowerAnalysis"));
  if (!folder_.isEmpty()) {
    QDir().mkpath(folder_);
    settings_ =
        std::make_unique<QSettings>(folder_ + QStringLiteral("/desktop.ini"), QSettings::IniFormat);
  }
  basePoints_ = QApplication::font().pointSizeF();
  host_->configFolder = FromText(folder_);
  host_->chooseFile = [this](const DesktopHost::FileQuestion& question) {
    std::optional<std::string> path = ChooseFile(question);
    if (recording_) {
      recorder_.FileChosen(path);
    }
    return path;
  };
  setCentralWidget(pages_);
  setDockNestingEnabled(true);
  macros_ = new MacroHost(*this);
  connect(
      macros_, &MacroHost::Finished, this,
      [this] {
        if (std::exchange(closeWhenDone_, false)) {
          QTimer::singleShot(0, this, &MainWindow::close);
        }
      },
      Qt::QueuedConnection);
  BuildDocks();
  BuildStatusBar();
  BuildMenus();
  ConnectHost();
  ConnectBook();
  autosaveTimer_ = new QTimer(this);
  autosaveTimer_->setSingleShot(true);
  connect(autosaveTimer_, &QTimer::timeout, this, &MainWindow::Autosave);
  Restore();
  UpdateTitle();
}

MainWindow::~MainWindow() {
  // The dialogs go before the docks that they stand in.
  delete std::exchange(macros_, nullptr);  // a running macro needs the window to its end
  host_->disconnect(this);
  host_->EndAnalysis();
}

// --- Building.

void MainWindow::BuildDocks() {
  tree_ = new QTreeWidget;
  tree_->setObjectName(QStringLiteral("tree"));
  tree_->setAccessibleName(tr("Workbook"));
  tree_->setAccessibleDescription(tr("Studies with their tables, reports and charts"));
  tree_->setHeaderLabels({tr("Name"), tr("Time")});
  tree_->header()->setStretchLastSection(false);
  tree_->header()->setSectionResizeMode(0, QHeaderView::Stretch);
  tree_->header()->setSectionResizeMode(1, QHeaderView::ResizeToContents);
  tree_->setMinimumWidth(200);
  tree_->setUniformRowHeights(true);
  tree_->setEditTriggers(QAbstractItemView::EditKeyPressed);
  treeDock_ = new QDockWidget(tr("Workbook"), this);
  treeDock_->setObjectName(QStringLiteral("workbookDock"));
  treeDock_->setAccessibleName(tr("Workbook"));
  treeDock_->setWidget(tree_);
  addDockWidget(Qt::LeftDockWidgetArea, treeDock_);

  dialogDock_ = new QDockWidget(tr("Dialog"), this);
  dialogDock_->setObjectName(QStringLiteral("dialogDock"));
  dialogDock_->setAccessibleName(tr("Dialog"));
  addDockWidget(Qt::RightDockWidgetArea, dialogDock_);
  dialogDock_->hide();
}

void MainWindow::BuildStatusBar() {
  progressStrip_ = new QWidget;
  auto* row = new QHBoxLayout(progressStrip_);
  row->setContentsMargins(0, 0, 0, 0);
  progressTitle_ = new QLabel;
  progressTitle_->setAccessibleName(tr("Running"));
  progressBar_ = new QProgressBar;
  progressBar_->setAccessibleName(tr("Progress"));
  progressBar_->setAccessibleDescription(tr("How far the running calculation is"));
  progressBar_->setMaximumWidth(220);
  cancel_ = new QPushButton(tr("Cancel"));
  cancel_->setObjectName(QStringLiteral("cancelProgress"));
  cancel_->setAccessibleName(tr("Cancel"));
  cancel_->setAccessibleDescription(tr("Stop the running calculation"));
  cancel_->setToolTip(tr("Stop the running calculation"));
  row->addWidget(progressTitle_);
  row->addWidget(progressBar_);
  row->addWidget(cancel_);
  connect(cancel_, &QPushButton::clicked, this, [this] { host_->Cancel(); });
  statusBar()->addPermanentWidget(progressStrip_);
  progressStrip_->hide();
}

void MainWindow::ConnectHost() {
  connect(host_, &DesktopHost::DialogShown, this, &MainWindow::ShowDialog);
  connect(host_, &DesktopHost::DialogClosed, this, &MainWindow::HideDialog);
  connect(host_, &DesktopHost::Frozen, this, &MainWindow::Freeze);
  connect(host_, &DesktopHost::SheetUnreadable, this,
          [this](const QString& path, const QString& reason) {
            statusBar()->showMessage(tr("%1 was not read: %2.").arg(path, reason));
          });
  connect(host_, &DesktopHost::Refused, this, [this] {
    statusBar()->showMessage(tr("A calculation is running. Wait for it, or cancel it."), 5000);
  });
  connect(host_, &DesktopHost::ProgressMoved, this, &MainWindow::ShowProgress);
  connect(host_, &DesktopHost::MessagesReady, this, &MainWindow::QueueMessages);
  connect(host_, &DesktopHost::BoxesUnreadable, this, &MainWindow::RefuseUnreadable);
  // Only once the command has returned: a dialog box inside it would run its own loop.
  connect(host_, &DesktopHost::OptionsWanted, this, &MainWindow::ShowOptions, Qt::QueuedConnection);
  connect(host_, &DesktopHost::Doing, this, &MainWindow::Record);
  connect(host_, &DesktopHost::CommandDone, this, &MainWindow::CommandDone);
}

void MainWindow::ConnectBook() {
  connect(&book_, &StudyBook::Reset, this, &MainWindow::RebuildTree);
  connect(&book_, &StudyBook::StudyAdded, this, &MainWindow::AddStudyItem);
  connect(&book_, &StudyBook::ItemAdded, this, [this](int study, int item) {
    AddResultItem(study, item);
    if (!newest_) {
      newest_ = {study, item};
    }
  });
  connect(&book_, &StudyBook::ChangedState, this, [this](bool changed) {
    UpdateTitle();
    if (changed) {
      autosaveTimer_->start(kAutosaveMilliseconds);
    }
  });
  const auto saveSoon = [this] { autosaveTimer_->start(kAutosaveMilliseconds); };
  connect(&book_, &StudyBook::ItemAdded, this, saveSoon);
  connect(&book_, &StudyBook::StudyChanged, this, saveSoon);
  connect(&book_, &StudyBook::Reset, this, saveSoon);
  connect(&book_, &StudyBook::Replaced, removals_, &QUndoStack::clear);
  connect(tree_, &QTreeWidget::currentItemChanged, this, &MainWindow::ShowChosen);
  connect(tree_, &QTreeWidget::itemChanged, this, [this](QTreeWidgetItem* item, int column) {
    if (column == 0 && item->data(0, kItemRole).toInt() == kWholeStudy) {
      book_.Rename(item->data(0, kStudyRole).toUInt(), item->text(0));
    }
  });
}

void MainWindow::Restore() {
  FitScreen();
  pages_->SetDark(IsDark(systemPalette_));
  if (settings_ == nullptr) {
    return;
  }
  OutputOptions options;
  options.report = settings_->value(QStringLiteral("output/report"), options.report).toBool();
  options.level =
      qBound(LowestLevel, settings_->value(QStringLiteral("output/level"), options.level).toInt(),
             HighestLevel);
  options.digits =
      qBound(2, settings_->value(QStringLiteral("output/digits"), options.digits).toInt(), 15);
  host_->options = options;
  pages_->SetDigits(options.digits);
  SetTextPercent(settings_->value(QStringLiteral("view/text"), 100).toInt());
  const int theme = settings_->value(QStringLiteral("view/theme"), 0).toInt();
  if (theme == 1 || theme == 2) {
    SetTheme(static_cast<Theme>(theme));
  }
  restoreGeometry(settings_->value(QStringLiteral("window/geometry")).toByteArray());
  widthsOpen_ =
      !restoreState(settings_->value(QStringLiteral("window/state")).toByteArray(), kStateVersion);
  dialogDock_->hide();
}

// The first window: no larger than the screen has room for with a title bar above it, or OK would
// lie below its edge.
void MainWindow::FitScreen() {
  constexpr QSize kWished(1360, 820);
  constexpr QSize kFrame(8, 44);
  const QScreen* screen = QGuiApplication::primaryScreen();
  resize(screen == nullptr ? kWished : kWished.boundedTo(screen->availableSize() - kFrame));
}

// --- Dialogs.

void MainWindow::NewAnalysis() {
  if (!RefuseWhileBusy()) {
    if (recording_) {
      recorder_.AnalysisStarted();
    }
    host_->StartAnalysis();
  }
}

void MainWindow::ShowDialog() {
  DesktopForm* form = host_->widgets();
  dialogDock_->setWindowTitle(form->accessibleName());
  dialogDock_->setAccessibleName(form->accessibleName());
  dialogDock_->setWidget(form);
  form->show();
  dialogDock_->show();
  dialogDock_->raise();
  if (std::exchange(widthsOpen_, false)) {
    ShareWidth();
  }
  form->TakeFocus();
}

void MainWindow::HideDialog() { dialogDock_->hide(); }

void MainWindow::Freeze(bool frozen) {
  ShowProgress(host_->progress());
  if (frozen) {
    focusBefore_ = QApplication::focusWidget();
  }
  if (DesktopForm* form = host_->widgets()) {
    form->setEnabled(!frozen);
  }
  if (frozen) {
    cancel_->setFocus();
  } else if (focusBefore_ != nullptr) {
    focusBefore_->setFocus();
  }
}

void MainWindow::ShowProgress(const ProgressState& progress) {
  progressStrip_->setVisible(progress.open && host_->frozen());
  progressTitle_->setText(ToText(progress.title));
  // A search does not know how far it has to go.
  progressBar_->setRange(0, progress.count > 0 ? progress.count : 0);
  progressBar_->setValue(progress.position);
}

void MainWindow::QueueMessages(const std::vector<Message>& messages) {
  for (const Message& message : messages) {
    waiting_.push_back({message, {}});
  }
  ShowNextMessage();
}

// The boxes that nobody can read, in words. Where each may have a comma for a point, one press
// mends them and goes on.
void MainWindow::RefuseUnreadable(int button, const std::vector<UnreadableBox>& boxes) {
  constexpr int kNoTextNumber = 0;
  QStringList lines;
  bool proposed = true;
  for (const UnreadableBox& box : boxes) {
    lines += box.proposal.isEmpty()
                 ? box.words
                 : box.words + QLatin1Char(' ') + tr("Did you mean %1?").arg(box.proposal);
    proposed = proposed && !box.proposal.isEmpty();
  }
  host_->widgets()->FocusBox(boxes.front().control);
  Waiting waiting{{kNoTextNumber, FromText(lines.join(QStringLiteral("\n\n"))), 1}, {}};
  if (proposed) {
    waiting.yes = [this, button, boxes, dialog = host_->dialogNumber()] {
      if (host_->dialogNumber() != dialog) {
        return;
      }
      for (const UnreadableBox& box : boxes) {
        host_->widgets()->Type(box.control, box.proposal);
      }
      host_->widgets()->Click(button);
    };
  }
  waiting_.push_back(std::move(waiting));
  ShowNextMessage();
}

void MainWindow::ShowNextMessage() {
  if (messageBox_ != nullptr || waiting_.empty()) {
    return;
  }
  const auto [message, yes] = waiting_.front();
  waiting_.pop_front();
  messageBox_ = new QMessageBox(this);
  messageBox_->setObjectName(QStringLiteral("message"));
  messageBox_->setWindowTitle(QStringLiteral("PowerAnalysis"));
  messageBox_->setIcon(yes ? QMessageBox::Question : QMessageBox::Information);
  messageBox_->setTextFormat(Qt::PlainText);
  QString text = ToText(message.text);
  if (message.count > 1) {
    text += QLatin1Char('\n') + tr("(%1 times)").arg(message.count);
  }
  messageBox_->setText(text);
  messageBox_->setAccessibleName(tr("Message"));
  messageBox_->setAccessibleDescription(text);
  messageBox_->setStandardButtons(yes ? QMessageBox::Yes | QMessageBox::No
                                      : QMessageBox::StandardButtons(QMessageBox::Ok));
  for (QAbstractButton* button : messageBox_->buttons()) {
    button->setAccessibleName(SpokenName(button->text()));
  }
  messageBox_->setAttribute(Qt::WA_DeleteOnClose);
  connect(messageBox_, &QMessageBox::finished, this, [this, yes = yes](int answer) {
    messageBox_ = nullptr;
    if (answer == QMessageBox::Yes) {
      yes();
    }
    ShowNextMessage();
  });
  messageBox_->open();
}

void MainWindow::CommandDone() {
  if (newest_) {
    const auto [study, item] = *newest_;
    newest_.reset();
    SelectItem(study, item);
  }
  if (closeWhenDone_) {
    closeWhenDone_ = false;
    QTimer::singleShot(0, this, &MainWindow::close);
  }
}

void MainWindow::ShowOptions() {
  OptionsDialog dialog(host_->options, this);
  if (dialog.exec() == QDialog::Accepted) {
    SetOptions(dialog.options());
  }
}

void MainWindow::SetOptions(const OutputOptions& options) {
  host_->options = options;
  pages_->SetDigits(options.digits);
  if (settings_ != nullptr) {
    settings_->setValue(QStringLiteral("output/report"), options.report);
    settings_->setValue(QStringLiteral("output/level"), options.level);
    settings_->setValue(QStringLiteral("output/digits"), options.digits);
  }
  ShowChosen();
}

std::optional<std::string> MainWindow::ChooseFile(const DesktopHost::FileQuestion& question) {
  const QString title = ToText(question.title);
  const QString extension = ToText(question.extension);
  const QString bare = extension.startsWith(QLatin1Char('.')) ? extension.mid(1) : extension;
  // A sheet of cell means may come from other programs, too.
  const QString names =
      bare == QLatin1String("ZLV")
          ? tr("Cell means (*.ZLV *.zlv *.csv *.tsv *.txt *.xlsx *.ods);;All files (*)")
          : tr("Settings (*.%1 *.%2);;All files (*)").arg(bare, bare.toLower());
  const QString start = QDir::home().filePath(ToText(question.startName));
  QString path = question.save ? QFileDialog::getSaveFileName(this, title, start, names)
                               : QFileDialog::getOpenFileName(this, title, QDir::homePath(), names);
  if (path.isEmpty()) {
    return std::nullopt;
  }
  if (question.save && QFileInfo(path).suffix().isEmpty()) {
    path += QLatin1Char('.') + bare.toLower();
  }
  return FromText(path);
}

// --- Tree and pages.

void MainWindow::AddStudyItem(int study) {
  const StudyRecord& record = book_.studies()[static_cast<std::size_t>(study)];
  const QSignalBlocker quiet(tree_);
  auto* item = new QTreeWidgetItem({record.name, TimeText(record.when, "yyyy-MM-dd")});
  item->setData(0, kStudyRole, study);
  item->setData(0, kItemRole, kWholeStudy);
  item->setIcon(0, IconOf(QStringLiteral("study")));
  item->setToolTip(0, record.name);
  item->setToolTip(1, TimeText(record.when));
  item->setFlags(item->flags() | Qt::ItemIsEditable);
  tree_->addTopLevelItem(item);
  item->setExpanded(true);
}

void MainWindow::AddResultItem(int study, int item) {
  constexpr const char* kIcons[] = {"table", "report", "chart"};
  const StudyRecord& record = book_.studies()[static_cast<std::size_t>(study)];
  const auto place = static_cast<std::size_t>(item);
  const WorkbookItem& result = record.study.workbook.items[place];
  const QSignalBlocker quiet(tree_);
  auto* leaf = new QTreeWidgetItem({NameOf(result), TimeText(record.times[place], "HH:mm:ss")});
  leaf->setData(0, kStudyRole, study);
  leaf->setData(0, kItemRole, item);
  leaf->setIcon(0, IconOf(QString::fromLatin1(kIcons[result.index()])));
  leaf->setToolTip(1, TimeText(record.times[place]));
  tree_->topLevelItem(study)->addChild(leaf);
}

void MainWindow::RebuildTree() {
  {
    const QSignalBlocker quiet(tree_);
    tree_->clear();
  }
  for (std::size_t study = 0; study < book_.studies().size(); ++study) {
    AddStudyItem(static_cast<int>(study));
    const StudyRecord& record = book_.studies()[study];
    for (std::size_t item = 0; item < record.study.workbook.items.size(); ++item) {
      AddResultItem(static_cast<int>(study), static_cast<int>(item));
    }
  }
  newest_.reset();
  if (book_.empty()) {
    pages_->ShowWelcome();
  } else {
    SelectStudy(static_cast<int>(book_.studies().size()) - 1);
  }
}

void MainWindow::SelectStudy(int study) {
  tree_->setCurrentItem(tree_->topLevelItem(study));
  ShowChosen();
}

void MainWindow::SelectItem(int study, int item) {
  if (QTreeWidgetItem* top = tree_->topLevelItem(study)) {
    tree_->setCurrentItem(top->child(item));
    ShowChosen();
  }
}

int MainWindow::ChosenStudy() const {
  const QTreeWidgetItem* chosen = tree_->currentItem();
  return chosen == nullptr ? static_cast<int>(book_.studies().size()) - 1
                           : chosen->data(0, kStudyRole).toInt();
}

void MainWindow::ShowChosen() {
  const QTreeWidgetItem* chosen = tree_->currentItem();
  if (chosen == nullptr) {
    return;
  }
  const auto study = static_cast<std::size_t>(chosen->data(0, kStudyRole).toInt());
  const int item = chosen->data(0, kItemRole).toInt();
  if (study >= book_.studies().size()) {
    return;
  }
  const StudyRecord& record = book_.studies()[study];
  if (item == kWholeStudy) {
    pages_->ShowStudy(record);
  } else if (static_cast<std::size_t>(item) < record.study.workbook.items.size()) {
    pages_->ShowItem(record, static_cast<std::size_t>(item));
  }
}

// --- View.

void MainWindow::SetTheme(Theme theme) {
  const QPalette palette = theme == Theme::Dark    ? DarkPalette()
                           : theme == Theme::Light ? LightPalette()
                                                   : systemPalette_;
  UsePalette(palette);
  pages_->SetDark(IsDark(palette));
  ShowChosen();
  for (QAction* action : themes_->actions()) {
    action->setChecked(action->data().toInt() == static_cast<int>(theme));
  }
  if (settings_ != nullptr) {
    settings_->setValue(QStringLiteral("view/theme"), static_cast<int>(theme));
  }
}

void MainWindow::SetTextPercent(int percent) {
  constexpr int kLeast = 50;
  constexpr int kMost = 300;
  textPercent_ = qBound(kLeast, percent, kMost);
  QFont font = QApplication::font();
  font.setPointSizeF(basePoints_ * textPercent_ / 100);
  QApplication::setFont(font);
  setFont(font);
  // A dock paints its title in a font kept from the start unless its own differs from that of its
  // class.
  font.setStyleStrategy(QFont::PreferAntialias);
  treeDock_->setFont(font);
  dialogDock_->setFont(font);
  constexpr int kRoomForTimes = 150;
  tree_->setColumnHidden(1, textPercent_ >= kRoomForTimes);
  widthsOpen_ = true;
  pages_->SetTextScale(textPercent_ / 100.0);
  if (settings_ != nullptr) {
    settings_->setValue(QStringLiteral("view/text"), textPercent_);
  }
}

// Larger letters want more of the window for the dialogs.
void MainWindow::ShareWidth() {
  constexpr int kTree = 290;
  constexpr int kDialog = 500;
  const double scale = textPercent_ / 100.0;
  resizeDocks({treeDock_, dialogDock_},
              {static_cast<int>(kTree * std::min(scale, 1.2)),
               static_cast<int>(kDialog * std::min(scale, 1.3))},
              Qt::Horizontal);
}

void MainWindow::UpdateTitle() {
  const QString name = file_.isEmpty() ? tr("Untitled workbook") : QFileInfo(file_).fileName();
  setWindowTitle(QStringLiteral("%1[*] \u2013 PowerAnalysis").arg(name));
  setWindowModified(book_.changed());
}

// --- Edit.

void MainWindow::Copy() {
  QWidget* focused = QApplication::focusWidget();
  if (auto* line = qobject_cast<QLineEdit*>(focused)) {
    line->copy();
  } else if (auto* browser = qobject_cast<QTextBrowser*>(focused);
             browser != nullptr && browser->textCursor().hasSelection()) {
    browser->copy();
  } else {
    pages_->Copy();
  }
}

namespace {

// The field whose typing an undo or redo would concern; null for none.
QLineEdit* LineWithPast(bool undo) {
  auto* line = qobject_cast<QLineEdit*>(QApplication::focusWidget());
  return line != nullptr && (undo ? line->isUndoAvailable() : line->isRedoAvailable()) ? line
                                                                                       : nullptr;
}

// Takes a study out of the book, and brings it back as it was.
class StudyRemoval : public QUndoCommand {
 public:
  StudyRemoval(MainWindow& window, std::size_t study) : window_(window), study_(study) {}

  void redo() override { removed_ = window_.book().Take(study_); }
  void undo() override {
    window_.book().Insert(study_, std::move(removed_));
    window_.SelectStudy(static_cast<int>(study_));
  }

 private:
  MainWindow& window_;
  std::size_t study_;
  StudyRecord removed_;
};

}  // namespace

// The keyboard goes to the tree: there, Undo means the study and not typing.
void MainWindow::DeleteStudy() {
  if (ChosenStudy() < 0 || RefuseWhileBusy()) {
    return;
  }
  const auto study = static_cast<std::size_t>(ChosenStudy());
  const QString name = book_.studies()[study].name;
  tree_->setFocus();
  removals_->push(new StudyRemoval(*this, study));
  statusBar()->showMessage(tr("Deleted \u201c%1\u201d. Edit > Undo brings it back.").arg(name));
}

void MainWindow::NameUndo(QAction& undo, QAction& redo) const {
  const bool undoesStudy = LineWithPast(true) == nullptr && removals_->canUndo();
  const bool redoesStudy = LineWithPast(false) == nullptr && removals_->canRedo();
  undo.setText(undoesStudy ? tr("&Undo Delete Study") : tr("&Undo"));
  redo.setText(redoesStudy ? tr("&Redo Delete Study") : tr("&Redo"));
}

void MainWindow::UndoRedo(bool undo) {
  if (QLineEdit* line = LineWithPast(undo)) {
    undo ? line->undo() : line->redo();
  } else if (!RefuseWhileBusy()) {
    undo ? removals_->undo() : removals_->redo();
  }
}

bool MainWindow::RefuseWhileBusy() {
  if (host_->busy()) {
    Q_EMIT host_->Refused();
    return true;
  }
  return false;
}

void MainWindow::closeEvent(QCloseEvent* event) {
  if (macros_->running()) {
    macros_->Stop();
    closeWhenDone_ = true;
    event->ignore();
    return;
  }
  if (host_->busy()) {
    // The search ends at its next poll; the window follows.
    host_->Cancel();
    closeWhenDone_ = true;
    event->ignore();
    return;
  }
  if (!MayDiscard()) {
    event->ignore();
    return;
  }
  RemoveAutosave();
  if (settings_ != nullptr) {
    settings_->setValue(QStringLiteral("window/geometry"), saveGeometry());
    settings_->setValue(QStringLiteral("window/state"), saveState(kStateVersion));
    settings_->sync();
  }
  event->accept();
}

}  // namespace poweranalysis
