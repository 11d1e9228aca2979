#include <QAction>
#include <QActionGroup>
#include <QApplication>
#include <QDialog>
#include <QDialogButtonBox>
#include <QDockWidget>
#include <QFile>
#include <QMenu>
#include <QMenuBar>
#include <QStatusBar>
#include <QTextBrowser>
#include <QTreeWidget>
#include <QVBoxLayout>

#include "desktop/MainWindow.h"
#include "desktop/Names.h"

// The menus of the window and what is reached only through them.
namespace poweranalysis {

namespace {

QString Resource(const QString& name) {
  QFile file(QStringLiteral(":/") + name);
  return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

template <class Act>
QAction* AddAction(QMenu& menu,
                   const QString& text,
                   const QKeySequence& keys,
                   const QString& help,
                   QObject* context,
                   Act act) {
  QAction* action = menu.addAction(text);
  action->setShortcut(keys);
  action->setStatusTip(help);
  action->setToolTip(help);
  QObject::connect(action, &QAction::triggered, context, act);
  return action;
}

// A page of Markdown in its own window.
void ShowMarkdown(QWidget* parent, const QString& title, const QString& markdown) {
  auto* dialog = new QDialog(parent);
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  dialog->setWindowTitle(title);
  dialog->setAccessibleName(title);
  auto* column = new QVBoxLayout(dialog);
  auto* browser = new QTextBrowser;
  browser->setAccessibleName(title);
  browser->setAccessibleDescription(title);
  browser->setOpenExternalLinks(true);
  browser->setMarkdown(markdown);
  column->addWidget(browser);
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close);
  NameButtons(*buttons);
  QObject::connect(buttons, &QDialogButtonBox::rejected, dialog, &QDialog::close);
  column->addWidget(buttons);
  dialog->resize(760, 620);
  dialog->show();
}

}  // namespace

void MainWindow::BuildMenus() {
  BuildFileMenu();
  BuildEditMenu();
  BuildAnalysisMenu();
  BuildMacroMenu();
  BuildViewMenu();
  BuildHelpMenu();
  menuBar()->setAccessibleName(tr("Menu bar"));
}

void MainWindow::BuildFileMenu() {
  QMenu& menu = *menuBar()->addMenu(tr("&File"));
  AddAction(menu, tr("&New"), QKeySequence::New, tr("Start an empty workbook"), this,
            [this] { NewFile(); });
  AddAction(menu, tr("&Open..."), QKeySequence::Open, tr("Open a workbook"), this,
            [this] { OpenByChooser(); });
  recentMenu_ = menu.addMenu(tr("Open &Recent"));
  connect(recentMenu_, &QMenu::aboutToShow, this, &MainWindow::FillRecentMenu);
  AddAction(menu, tr("Reco&ver Work..."), {},
            tr("Open or delete what was kept of workbooks that were not saved"), this, [this] {
              if (!OfferRecovery()) {
                statusBar()->showMessage(tr("No unsaved work is kept."), 5000);
              }
            });
  menu.addSeparator();
  AddAction(menu, tr("&Save"), QKeySequence::Save, tr("Save the workbook"), this,
            [this] { Save(); });
  AddAction(menu, tr("Save &As..."), QKeySequence::SaveAs, tr("Save the workbook in another file"),
            this, [this] { SaveAs(); });
  menu.addSeparator();
  AddAction(menu, tr("&Export Study..."), QKeySequence(tr("Ctrl+E")),
            tr("Write the chosen study as a document"), this, [this] { ExportStudy(); });
  AddAction(menu, tr("Export &Chart..."), QKeySequence(tr("Ctrl+Shift+E")),
            tr("Write the chosen chart as SVG, PDF or PNG, or its data as CSV"), this,
            [this] { ExportChart(); });
  AddAction(menu, tr("&Print..."), QKeySequence::Print, tr("Print the chosen study"), this,
            [this] { Print(); });
  menu.addSeparator();
  AddAction(menu, tr("&Quit"), QKeySequence(tr("Ctrl+Q")), tr("Leave the program"), this,
            [this] { close(); });
}

void MainWindow::BuildEditMenu() {
  QMenu& menu = *menuBar()->addMenu(tr("&Edit"));
  QAction* undo =
      AddAction(menu, tr("&Undo"), QKeySequence::Undo,
                tr("Undo typing in the field, or bring back the study that was deleted last"), this,
                [this] { UndoRedo(true); });
  QAction* redo = AddAction(menu, tr("&Redo"), QKeySequence::Redo,
                            tr("Redo typing in the field, or delete the study again"), this,
                            [this] { UndoRedo(false); });
  connect(&menu, &QMenu::aboutToShow, this, [this, undo, redo] { NameUndo(*undo, *redo); });
  menu.addSeparator();
  AddAction(menu, tr("&Copy"), QKeySequence::Copy,
            tr("Copy the chosen cells, text or chart; a table as text and as HTML"), this,
            [this] { Copy(); });
  menu.addSeparator();
  AddAction(menu, tr("Re&name Study"), {}, tr("Give the chosen study another name"), this, [this] {
    if (QTreeWidgetItem* item = tree_->currentItem()) {
      tree_->editItem(item->parent() == nullptr ? item : item->parent(), 0);
    }
  });
  AddAction(menu, tr("&Delete Study"), {},
            tr("Take the chosen study and its charts out of the workbook; Undo brings them back"),
            this, [this] { DeleteStudy(); });
}

void MainWindow::BuildAnalysisMenu() {
  QMenu& menu = *menuBar()->addMenu(tr("&Analysis"));
  AddAction(menu, tr("&New Analysis"), QKeySequence(tr("Ctrl+Shift+N")),
            tr("Choose what to compute"), this, [this] { NewAnalysis(); });
  QAction* show = dialogDock_->toggleViewAction();
  show->setText(tr("Show &Dialog"));
  show->setShortcut(QKeySequence(tr("Ctrl+D")));
  menu.addAction(show);
  menu.addSeparator();
  AddAction(menu, tr("&Options..."), {}, tr("Routing, level of detail and digits of the output"),
            this, [this] { ShowOptions(); });
}

void MainWindow::BuildMacroMenu() {
  QMenu& menu = *menuBar()->addMenu(tr("&Macro"));
  record_ = AddAction(menu, tr("&Record"), {}, tr("Write down what is done in the dialogs"), this,
                      [this] { StartRecording(); });
  stopRecording_ = AddAction(menu, tr("&Stop"), {}, tr("Stop recording and keep the macro"), this,
                             [this] { StopRecording(); });
  stopRecording_->setEnabled(false);
  AddAction(menu, tr("R&un..."), {}, tr("Run a macro file"), this, [this] { RunMacro(); });
  AddAction(menu, tr("&Edit..."), {}, tr("Look at a macro file and change it"), this,
            [this] { EditMacro(); });
}

void MainWindow::BuildViewMenu() {
  constexpr int kStep = 10;
  QMenu& menu = *menuBar()->addMenu(tr("&View"));
  AddAction(menu, tr("&Larger Text"), QKeySequence::ZoomIn, tr("Enlarge all text"), this,
            [this] { SetTextPercent(textPercent_ + kStep); });
  AddAction(menu, tr("&Smaller Text"), QKeySequence::ZoomOut, tr("Reduce all text"), this,
            [this] { SetTextPercent(textPercent_ - kStep); });
  AddAction(menu, tr("&Normal Text"), QKeySequence(tr("Ctrl+0")), tr("Text as it was at first"),
            this, [this] { SetTextPercent(100); });
  AddAction(menu, tr("&Double Text"), {}, tr("Text twice as large"), this,
            [this] { SetTextPercent(200); });
  menu.addSeparator();
  themes_ = new QActionGroup(this);
  const std::pair<Theme, QString> themes[] = {{Theme::System, tr("S&ystem Colours")},
                                              {Theme::Light, tr("L&ight")},
                                              {Theme::Dark, tr("D&ark")}};
  for (const auto& [theme, text] : themes) {
    const Theme chosen = theme;
    QAction* action = AddAction(menu, text, {}, tr("Colours of the window"), this,
                                [this, chosen] { SetTheme(chosen); });
    action->setCheckable(true);
    action->setData(static_cast<int>(theme));
    action->setChecked(theme == Theme::System);
    themes_->addAction(action);
  }
  menu.addSeparator();
  menu.addAction(treeDock_->toggleViewAction());
}

void MainWindow::BuildHelpMenu() {
  QMenu& menu = *menuBar()->addMenu(tr("&Help"));
  AddAction(menu, tr("&Contents"), QKeySequence::HelpContents, tr("How to use this program"), this,
            [this] { ShowHelp(); });
  AddAction(menu, tr("&About PowerAnalysis"), {}, tr("Version, licence and citation"), this,
            [this] { ShowAbout(); });
}

void MainWindow::ShowHelp() {
  ShowMarkdown(this, tr("Contents"), Resource(QStringLiteral("help/desktop.md")));
}

void MainWindow::ShowAbout() {
  const QString text =
      tr("# PowerAnalysis %1\n\nPower analysis, required sample size, interval estimation and "
         "noncentral distributions.\n\nThis window uses Qt %2 under the GNU Lesser General Public "
         "License, version 3.\n\n## Citation\n\n```\n%3\n```\n\n## Licence\n\n```\n%4\n```\n")
          .arg(QStringLiteral(POWERANALYSIS_VERSION), QString::fromLatin1(qVersion()),
               Resource(QStringLiteral("help/CITATION.cff")),
               Resource(QStringLiteral("help/LICENSE")));
  ShowMarkdown(this, tr("About PowerAnalysis"), text);
}

}  // namespace poweranalysis
