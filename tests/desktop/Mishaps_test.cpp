#include <QAccessible>
#include <QDialog>
#include <QDialogButtonBox>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QMenu>
#include <QMenuBar>
#include <QRadioButton>
#include <QScreen>
#include <QTabWidget>
#include <QTreeWidget>
#include <algorithm>
#include <functional>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include "WindowTest.h"
#include "desktop/KeptWork.h"
#include "desktop/WorkbookIo.h"
#include "frame/TaskCatalogue.h"

using namespace poweranalysis;
using poweranalysis::testing::TemporaryFolder;

// What must not happen: a window that computes what nobody asked for, or loses work.
class MishapsTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() { PrepareApplication(); }
  void aBoxThatCannotBeReadIsNotCountedAsZero_data();
  void aBoxThatCannotBeReadIsNotCountedAsZero();
  void aLoneCommaIsAskedAboutAndMendedByYes();
  void aLoneCommaStaysOnNo();
  void aCommaInAWholeNumberIsNotTakenForAPoint();
  void calculateAndChartsWaitForReadableRanges();
  void settingsAreNotSavedOfABoxThatCannotBeRead();
  void aCalculatorWaitsForItsInputsButNotForItsUnknown();
  void aBoxThatCannotBeReadLetsOneLeaveAndRestore();
  void textSetByAssistiveTechnologyIsTaken();
  void togglesOfAssistiveTechnologyAreTaken();
  void aRowSelectedByAssistiveTechnologyIsTaken();
  void aClickOnAToggleIsOneCommand();
  void aDeletedStudyComesBackWithItsCharts();
  void whatIsDrawnAfterADeletionGoesIntoNoOtherStudy();
  void typingIsUndoneBeforeADeletion();
  void workThatWasLeftStaysOnEscape();
  void workThatWasLeftIsOfferedWhoeverHasTheNumberOfItsProcess();
  void workOfARunningWindowIsNotOffered();
  void workThatWasLeftOpensUnderItsName();
  void workThatWasLeftGetsNoNameWhenItsFileIsNewer();
  void eachOfSeveralIsOpenedKeptOrDeleted();
  void aLockWithoutAWorkbookIsSweptUnlessItIsHeld();
  void anExportOfAnUnknownExtensionIsRefused();
  void anExportWithoutExtensionGetsThatOfItsKind();
  void theFirstWindowFitsItsScreen();
  void onASmallScreenEveryDialogShowsItsButtons();
};

namespace {

// The box that asks or tells something; its text, and the button pressed.
QString AnswerQuestion(WindowDriver& driver, QMessageBox::StandardButton button) {
  WindowDriver::Settle();
  QMessageBox* box = driver.window().openMessage();
  if (box == nullptr || box->button(button) == nullptr) {
    return {};
  }
  const QString text = box->text();
  QTest::mouseClick(box->button(button), Qt::LeftButton);
  WindowDriver::Settle();
  return text;
}

// Acts on the modal dialog that opens next.
template <class Dialog>
void Meanwhile(const std::function<void(Dialog&)>& act) {
  QTimer::singleShot(0, [act] {
    auto* dialog = qobject_cast<Dialog*>(QApplication::activeModalWidget());
    QVERIFY(dialog != nullptr);
    act(*dialog);
  });
}

void TriggerMenu(MainWindow& window, const QString& caption) {
  for (QAction* menu : window.menuBar()->actions()) {
    Q_EMIT menu->menu()->aboutToShow();
    for (QAction* action : menu->menu()->actions()) {
      if (action->text().remove(QLatin1Char('&')) == caption) {
        action->trigger();
        return;
      }
    }
  }
  QFAIL(qPrintable(caption));
}

// A window with a study of a table, a report and a chart.
void ComputeOneMean(WindowDriver& driver) {
  driver.ChooseTask(ModePower, 0);
  driver.Do({{control::Accept, {}}, {control::Accept, {}}, {control::PowerVsN, {}}});
}

// The file of a window that ended without closing, with the study of a table and a report.
QString LeaveWork(const TemporaryFolder& folder, const std::string& name) {
  WindowDriver driver;
  driver.ChooseTask(ModePower, 0);
  driver.Do({{control::Accept, {}}, {control::Accept, {}}});
  driver.window().book().Rename(0, QString::fromStdString(name));
  const QString place = QString::fromStdString(folder.File("autosave"));
  QDir().mkpath(place);
  const QString path = place + QLatin1Char('/') + QString::fromStdString(name) + ".pawb";
  if (!SaveStudies(path, driver.studies()).isEmpty()) {
    qFatal("no work was left");
  }
  driver.window().book().SetSaved();
  return path;
}

QAccessibleInterface& Spoken(QWidget* widget) {
  return *QAccessible::queryAccessibleInterface(widget);
}

}  // namespace

// --- Boxes that cannot be read.

void MishapsTest::aBoxThatCannotBeReadIsNotCountedAsZero_data() {
  QTest::addColumn<QString>("text");
  QTest::addColumn<QString>("words");
  QTest::newRow("letters") << "abc" << QStringLiteral("\u201cabc\u201d is not a number.");
  QTest::newRow("nothing") << ""
                           << "is empty.";
  QTest::newRow("blanks") << "  "
                          << "is empty.";
  QTest::newRow("two commas") << "1,234,5"
                              << QStringLiteral("\u201c1,234,5\u201d is not a number.");
  QTest::newRow("nan") << "nan" << QStringLiteral("\u201cnan\u201d is not a number.");
}

void MishapsTest::aBoxThatCannotBeReadIsNotCountedAsZero() {
  QFETCH(QString, text);
  QFETCH(QString, words);
  WindowDriver driver;
  driver.ChooseTask(ModeSampleSize, 1);
  driver.Type(control::Mu1, QStringLiteral("x"));
  driver.Find<QLineEdit>(control::Mu1)->clear();
  driver.Type(control::Mu1, text);
  driver.Click(control::Accept);
  QCOMPARE(driver.resource(), ComputeDialog(ModeSampleSize, 1)->resource);
  const QString message = driver.TakeMessage();
  QVERIFY2(message.startsWith(driver.Find<QLineEdit>(control::Mu1)->accessibleName()),
           qPrintable(message));
  QVERIFY2(message.contains(words), qPrintable(message));
  const FormModel::Control& box = *driver.form().model().Find(control::Mu1);
  const QString range = QStringLiteral(" from %1 to %2.").arg(*box.lower).arg(*box.upper);
  QVERIFY2(message.endsWith(range), qPrintable(message + range));
  QCOMPARE(driver.Text(control::Mu1), text);
  QCOMPARE(driver.window().focusWidget(), driver.form().WidgetOf(control::Mu1));
}

void MishapsTest::aLoneCommaIsAskedAboutAndMendedByYes() {
  WindowDriver driver;
  driver.ChooseTask(ModeSampleSize, 1);
  driver.Type(control::Mu1, QStringLiteral("12,5"));
  driver.Click(control::Accept);
  const QString question = AnswerQuestion(driver, QMessageBox::Yes);
  QVERIFY2(question.contains(QStringLiteral("\u201c12,5\u201d is not a number")),
           qPrintable(question));
  QVERIFY2(question.endsWith(QStringLiteral("Did you mean 12.5?")), qPrintable(question));
  QCOMPARE(Block()->T2.Committed.Mu1, 12.5);
  QCOMPARE(driver.resource(), ResultDialog(ModeSampleSize, 1)->resource);
}

void MishapsTest::aLoneCommaStaysOnNo() {
  WindowDriver driver;
  driver.ChooseTask(ModeSampleSize, 1);
  driver.Type(control::Mu1, QStringLiteral("1,234"));
  driver.Click(control::Accept);
  QVERIFY(!AnswerQuestion(driver, QMessageBox::No).isEmpty());
  QCOMPARE(driver.Text(control::Mu1), QStringLiteral("1,234"));
  QCOMPARE(driver.resource(), ComputeDialog(ModeSampleSize, 1)->resource);
}

void MishapsTest::aCommaInAWholeNumberIsNotTakenForAPoint() {
  for (const char* text : {"1,234", "12.5"}) {
    WindowDriver driver;
    driver.ChooseTask(ModePower, 0);
    driver.Type(control::SampleSize, QLatin1String(text));
    driver.Click(control::Accept);
    QCOMPARE(driver.resource(), ComputeDialog(ModePower, 0)->resource);
    const QString message = driver.TakeMessage();
    QVERIFY2(message.contains(QStringLiteral("\u201c%1\u201d is not a").arg(QLatin1String(text))),
             qPrintable(message));
    QVERIFY2(!message.contains(QStringLiteral("Did you mean")), qPrintable(message));
  }
}

void MishapsTest::calculateAndChartsWaitForReadableRanges() {
  for (const int button : {control::Accept, control::PowerVsN, control::ChangeParams}) {
    WindowDriver driver;
    driver.ChooseTask(ModePower, 0);
    driver.Click(control::Accept);
    driver.Type(control::NStart, QStringLiteral("x"));
    driver.Click(button);
    QVERIFY(driver.studies().empty());
    QCOMPARE(driver.resource(), ResultDialog(ModePower, 0)->resource);
    QVERIFY(driver.TakeMessage().contains(QStringLiteral("\u201cx\u201d is not a number.")));
    driver.Type(control::NStart, QStringLiteral("5"));
    driver.Click(button);
    QVERIFY(driver.TakeMessage().isEmpty());
  }
}

void MishapsTest::settingsAreNotSavedOfABoxThatCannotBeRead() {
  TemporaryFolder folder;
  WindowDriver driver(folder.File("config"));
  const std::string file = folder.File("study.ini");
  driver.window().host().chooseFile = [&file](const DesktopHost::FileQuestion&) {
    return std::optional<std::string>(file);
  };
  driver.ChooseTask(ModePower, 0);
  driver.Type(control::Mu, QStringLiteral("x"));
  for (const int button : {ControlSave, ControlSaveAs, ControlSaveAsDefault}) {
    driver.form().Click(button);
    QVERIFY(driver.TakeMessage().contains(QStringLiteral("\u201cx\u201d is not a number.")));
  }
  QVERIFY(!QFile::exists(QString::fromStdString(file)));
}

void MishapsTest::aCalculatorWaitsForItsInputsButNotForItsUnknown() {
  WindowDriver driver;
  driver.ChooseTask(ModeDistribution, 0);
  std::vector<int> boxes;
  for (const ControlSpec& control : driver.form().spec().pages.front().controls) {
    if (control.kind == ControlKind::IntEdit || control.kind == ControlKind::RealEdit) {
      boxes.push_back(control.number);
    }
  }
  int refused = 0;
  int computed = 0;
  for (const int box : boxes) {
    if (!driver.form().WidgetOf(box)->isVisible()) {
      continue;
    }
    const QString before = driver.Text(box);
    driver.Type(box, QStringLiteral("x"));
    driver.Click(control::Accept);
    driver.TakeMessage().contains(QStringLiteral("is not a")) ? ++refused : ++computed;
    driver.Type(box, before);
  }
  QCOMPARE(computed, 1);
  QVERIFY(refused >= 2);
}

void MishapsTest::aBoxThatCannotBeReadLetsOneLeaveAndRestore() {
  WindowDriver driver;
  driver.ChooseTask(ModePower, 0);
  driver.Type(control::Mu, QStringLiteral("x"));
  driver.Click(control::RestoreDefaults);
  QVERIFY(driver.TakeMessage().isEmpty());
  QVERIFY(driver.Text(control::Mu) != QStringLiteral("x"));
  driver.Type(control::Mu, QStringLiteral("x"));
  driver.Click(control::Back);
  QVERIFY(driver.TakeMessage().isEmpty());
  QCOMPARE(driver.resource(), 6100);
}

// --- Assistive technology.

void MishapsTest::textSetByAssistiveTechnologyIsTaken() {
  WindowDriver driver;
  driver.ChooseTask(ModePower, 0);
  QWidget* mu = driver.form().WidgetOf(control::Mu);
  Spoken(mu).setText(QAccessible::Value, QStringLiteral("0.375"));
  QCOMPARE(Block()->T1.Working.Mu, 0.375);
  QAccessibleEditableTextInterface* text = Spoken(mu).editableTextInterface();
  text->replaceText(0, 5, QStringLiteral("0.625"));
  QCOMPARE(Block()->T1.Working.Mu, 0.625);
  driver.Click(control::Accept);
  QCOMPARE(Block()->T1.Committed.Mu, 0.625);
}

void MishapsTest::togglesOfAssistiveTechnologyAreTaken() {
  WindowDriver driver;
  driver.ChooseTask(ModePower, 0);
  QCOMPARE(Block()->T1.Working.H0Type, 0);
  QWidget* upper = driver.form().WidgetOf(control::UpperTail);
  QAccessibleActionInterface* action = Spoken(upper).actionInterface();
  QVERIFY(action != nullptr);
  action->doAction(QAccessibleActionInterface::toggleAction());
  QCOMPARE(Block()->T1.Working.H0Type, 1);
  QVERIFY(driver.form().model().IsDlgButtonChecked(control::UpperTail));

  driver.window().NewAnalysis();
  driver.ChooseTask(ModeDistribution, 5);
  constexpr int kOneMinusP = 22070;
  const bool before = driver.form().model().IsDlgButtonChecked(kOneMinusP);
  Spoken(driver.form().WidgetOf(kOneMinusP))
      .actionInterface()
      ->doAction(QAccessibleActionInterface::toggleAction());
  QCOMPARE(driver.form().model().IsDlgButtonChecked(kOneMinusP), !before);
  QCOMPARE(driver.Find<QAbstractButton>(kOneMinusP)->isChecked(), !before);
}

void MishapsTest::aRowSelectedByAssistiveTechnologyIsTaken() {
  WindowDriver driver;
  QAccessibleInterface* row = Spoken(driver.form().WidgetOf(control::Modes)).child(2);
  QVERIFY(row != nullptr && row->actionInterface() != nullptr);
  row->actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
  QCOMPARE(driver.form().model().SelectedListRow(control::Modes), 2);
  QCOMPARE(driver.Find<QListWidget>(control::Tasks)->count(), 10);
}

void MishapsTest::aClickOnAToggleIsOneCommand() {
  WindowDriver driver;
  driver.ChooseTask(ModePower, 0);
  int commands = 0;
  connect(&driver.window().host(), &DesktopHost::Doing, [&commands] { ++commands; });
  driver.Click(control::UpperTail);
  QCOMPARE(commands, 1);
  driver.Click(control::UpperTail);  // is checked already
  QCOMPARE(commands, 2);
  driver.Click(control::UpperTail - 1);
  QCOMPARE(commands, 3);
  driver.Type(control::Mu, QStringLiteral("7"));
  QCOMPARE(commands, 4);
}

// --- Deleting a study.

void MishapsTest::aDeletedStudyComesBackWithItsCharts() {
  WindowDriver driver;
  ComputeOneMean(driver);
  driver.window().NewAnalysis();
  driver.ChooseTask(ModePower, 1);
  driver.Do({{control::Accept, {}}, {control::Accept, {}}});
  QCOMPARE(driver.studies().size(), std::size_t{2});
  const std::string first = ExportJson(driver.studies()[0].study);
  driver.window().SelectStudy(0);
  TriggerMenu(driver.window(), QStringLiteral("Delete Study"));
  QCOMPARE(driver.studies().size(), std::size_t{1});
  QVERIFY(ExportJson(driver.studies()[0].study) != first);
  TriggerMenu(driver.window(), QStringLiteral("Undo Delete Study"));
  QCOMPARE(driver.studies().size(), std::size_t{2});
  QCOMPARE(ExportJson(driver.studies()[0].study), first);
  QCOMPARE(driver.window().tree().topLevelItem(0)->childCount(), 3);
  QCOMPARE(driver.window().tree().currentItem(), driver.window().tree().topLevelItem(0));
  TriggerMenu(driver.window(), QStringLiteral("Redo Delete Study"));
  QCOMPARE(driver.studies().size(), std::size_t{1});
  driver.window().book().SetSaved();
}

void MishapsTest::whatIsDrawnAfterADeletionGoesIntoNoOtherStudy() {
  WindowDriver driver;
  ComputeOneMean(driver);
  driver.Click(control::Accept);
  QCOMPARE(driver.studies().size(), std::size_t{2});
  const std::size_t items = driver.studies()[0].study.workbook.items.size();
  driver.window().SelectStudy(1);
  TriggerMenu(driver.window(), QStringLiteral("Delete Study"));
  driver.Click(control::PowerVsN);
  QCOMPARE(driver.studies().size(), std::size_t{2});
  QCOMPARE(driver.studies()[0].study.workbook.items.size(), items);
  driver.window().book().SetSaved();
}

void MishapsTest::typingIsUndoneBeforeADeletion() {
  WindowDriver driver;
  ComputeOneMean(driver);
  driver.window().SelectStudy(0);
  TriggerMenu(driver.window(), QStringLiteral("Delete Study"));
  const QString before = driver.Text(control::NStart);
  driver.Type(control::NStart, QStringLiteral("7"));
  TriggerMenu(driver.window(), QStringLiteral("Undo"));
  QVERIFY(driver.studies().empty());
  QCOMPARE(driver.Text(control::NStart), before);
  driver.window().book().SetSaved();
}

// --- Work that a crash left.

void MishapsTest::workThatWasLeftStaysOnEscape() {
  TemporaryFolder folder;
  const QString path = LeaveWork(folder, "1");
  WindowDriver driver(folder.File(""));
  bool asked = false;
  Meanwhile<QDialog>([&asked](QDialog& dialog) {
    asked = true;
    QTest::keyClick(&dialog, Qt::Key_Escape);
  });
  driver.window().OfferRecovery();
  QVERIFY(asked);
  QVERIFY(QFile::exists(path));
  QVERIFY(driver.studies().empty());
}

void MishapsTest::workThatWasLeftIsOfferedWhoeverHasTheNumberOfItsProcess() {
  TemporaryFolder folder;
  LeaveWork(folder, std::to_string(QApplication::applicationPid()));
  WindowDriver driver(folder.File(""));
  bool asked = false;
  QTimer::singleShot(0, [&asked] {
    if (auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget())) {
      asked = true;
      dialog->reject();
    }
  });
  driver.window().OfferRecovery();
  QVERIFY(asked);
}

void MishapsTest::workOfARunningWindowIsNotOffered() {
  TemporaryFolder folder;
  WindowDriver running(folder.File(""));
  ComputeOneMean(running);
  const QString kept = running.window().autosaveFile();
  QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(kept), 5000);
  WindowDriver other(folder.File(""));
  QTimer::singleShot(0, [] {
    if (QWidget* dialog = QApplication::activeModalWidget()) {
      dialog->close();
    }
  });
  QVERIFY(!other.window().OfferRecovery());
  QVERIFY(QFile::exists(kept));
  QVERIFY(other.window().autosaveFile() != kept);
  running.window().book().SetSaved();
  QVERIFY(running.window().close());
  QVERIFY(!QFile::exists(kept));
}

void MishapsTest::workThatWasLeftOpensUnderItsName() {
  TemporaryFolder folder;
  const QString file = QString::fromStdString(folder.File("study.pawb"));
  QString kept;
  {
    WindowDriver crashed(folder.File(""));
    ComputeOneMean(crashed);
    QVERIFY(crashed.window().SaveTo(file));
    crashed.Click(control::Accept);
    kept = crashed.window().autosaveFile();
    QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(kept), 5000);
  }
  QVERIFY(QFile::exists(kept));
  WindowDriver driver(folder.File(""));
  Meanwhile<QDialog>([](QDialog& dialog) { QTest::keyClick(&dialog, Qt::Key_Return); });
  driver.window().OfferRecovery();
  QCOMPARE(driver.window().file(), file);
  QCOMPARE(driver.studies().size(), std::size_t{2});
  QVERIFY(driver.window().book().changed());
  QVERIFY(!QFile::exists(kept));
  QVERIFY(QFile::exists(driver.window().autosaveFile()));
  QCOMPARE(LoadStudies(driver.window().autosaveFile()).studies.size(), std::size_t{2});
  driver.window().book().SetSaved();
}

void MishapsTest::workThatWasLeftGetsNoNameWhenItsFileIsNewer() {
  TemporaryFolder folder;
  const QString file = QString::fromStdString(folder.File("study.pawb"));
  {
    WindowDriver crashed(folder.File(""));
    ComputeOneMean(crashed);
    QVERIFY(crashed.window().SaveTo(file));
    crashed.Click(control::Accept);
    QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(crashed.window().autosaveFile()), 5000);
  }
  QFile newer(file);
  QVERIFY(newer.open(QIODevice::ReadWrite));
  QVERIFY(newer.setFileTime(QDateTime::currentDateTime().addSecs(60),
                            QFileDevice::FileModificationTime));
  newer.close();
  WindowDriver driver(folder.File(""));
  Meanwhile<QDialog>([](QDialog& dialog) { QTest::keyClick(&dialog, Qt::Key_Return); });
  driver.window().OfferRecovery();
  QCOMPARE(driver.studies().size(), std::size_t{2});
  QVERIFY(driver.window().file().isEmpty());
  driver.window().book().SetSaved();
}

void MishapsTest::eachOfSeveralIsOpenedKeptOrDeleted() {
  TemporaryFolder folder;
  const QString works[] = {LeaveWork(folder, "opened"), LeaveWork(folder, "kept"),
                           LeaveWork(folder, "deleted")};
  WindowDriver driver(folder.File(""));
  Meanwhile<QDialog>([](QDialog& dialog) {
    // Three rows, each of three choices; the works come the newest first.
    const QList<QRadioButton*> choices = dialog.findChildren<QRadioButton*>();
    QCOMPARE(choices.size(), 9);
    QVERIFY(!choices[0]->accessibleName().isEmpty());
    choices[2]->click();
    choices[6]->click();
    QVERIFY(choices[4]->isChecked());
    QTest::keyClick(&dialog, Qt::Key_Return);
  });
  driver.window().OfferRecovery();
  QCOMPARE(driver.studies().size(), std::size_t{1});
  QCOMPARE(driver.studies()[0].name, QStringLiteral("opened"));
  QVERIFY(!QFile::exists(works[0]));
  QVERIFY(QFile::exists(works[1]));
  QVERIFY(!QFile::exists(works[2]));
  driver.window().book().SetSaved();
}

void MishapsTest::aLockWithoutAWorkbookIsSweptUnlessItIsHeld() {
  TemporaryFolder folder;
  const QString work = LeaveWork(folder, "left");
  const auto lockOf = [&folder](const std::string& name) {
    const QString path = QString::fromStdString(folder.File("autosave/" + name + ".lock"));
    QFile file(path);
    return file.open(QIODevice::WriteOnly) ? path : QString();
  };
  const QString ofLeft = lockOf("left");
  const QString alone = lockOf("alone");
  const QString held = lockOf("held");
  const int holder = open(QFile::encodeName(held).constData(), O_RDWR | O_CLOEXEC);
  QCOMPARE(flock(holder, LOCK_EX | LOCK_NB), 0);
  QCOMPARE(FindLeftWork(QFileInfo(work).path()).size(), std::size_t{1});
  QVERIFY(QFile::exists(ofLeft));
  QVERIFY(!QFile::exists(alone));
  QVERIFY(QFile::exists(held));
  close(holder);
}

// --- Exports.

namespace {

// Exports the chosen study through the dialogs, under a name that is typed.
void ExportAs(WindowDriver& driver, const QString& path) {
  Meanwhile<QFileDialog>([path](QFileDialog& dialog) {
    auto* name = dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
    QVERIFY(name != nullptr);
    name->setText(path);
    dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Save)->click();
  });
  TriggerMenu(driver.window(), QStringLiteral("Export Study..."));
}

}  // namespace

void MishapsTest::anExportOfAnUnknownExtensionIsRefused() {
  TemporaryFolder folder;
  WindowDriver driver;
  ComputeOneMean(driver);
  const QString path = QString::fromStdString(folder.File("study.docx"));
  ExportAs(driver, path);
  const QString message = driver.TakeMessage();
  QVERIFY2(message.startsWith(path), qPrintable(message));
  QVERIFY2(message.contains(QStringLiteral(".html, .md, .pdf")), qPrintable(message));
  QVERIFY(!QFile::exists(path));
  driver.window().book().SetSaved();
}

void MishapsTest::anExportWithoutExtensionGetsThatOfItsKind() {
  TemporaryFolder folder;
  WindowDriver driver;
  ComputeOneMean(driver);
  ExportAs(driver, QString::fromStdString(folder.File("study")));
  QCOMPARE(driver.TakeMessage(), QString());
  QVERIFY(QFile::exists(QString::fromStdString(folder.File("study.html"))));
  driver.window().book().SetSaved();
}

// --- Small screens.

void MishapsTest::theFirstWindowFitsItsScreen() {
  WindowDriver driver;
  const QSize screen = QGuiApplication::primaryScreen()->availableSize();
  const QSize window = driver.window().size();
  QVERIFY(window.width() <= std::max(screen.width(), driver.window().minimumSizeHint().width()));
  QVERIFY(window.height() < screen.height());  // there is a title bar above it
}

void MishapsTest::onASmallScreenEveryDialogShowsItsButtons() {
  const QSize room(1366 - 8, 768 - 44);
  for (const int mode : {ModePower, ModeSampleSize, ModeDistribution}) {
    for (std::size_t row = 0; row < Tasks(mode).size(); ++row) {
      WindowDriver driver;
      driver.window().resize(room);
      for (int step = 0; step < (mode == ModeDistribution ? 2 : 3); ++step) {
        if (step == 1) {
          driver.ChooseTask(mode, static_cast<int>(row));
        } else if (step == 2) {
          driver.Click(control::Accept);
        }
        WindowDriver::Settle();
        QCOMPARE(driver.window().size(), room);
        QWidget* ok = driver.form().WidgetOf(control::Accept);
        const QRect place(ok->mapTo(&driver.window(), QPoint()), ok->size());
        QVERIFY(driver.window().rect().contains(place));
        QVERIFY(ok->visibleRegion().boundingRect().size() == ok->size());
      }
    }
  }
}

QTEST_MAIN(MishapsTest)
#include "Mishaps_test.moc"
