#include <QAbstractItemView>
#include <QClipboard>
#include <QComboBox>
#include <QDockWidget>
#include <QElapsedTimer>
#include <QFile>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QMimeData>
#include <QTabBar>
#include <QTextBrowser>
#include <QToolTip>
#include <QTreeWidget>
#include <atomic>
#include <functional>
#include <map>
#include <set>

#include "WindowTest.h"
#include "automation/Application.h"
#include "desktop/DesktopDriver.h"
#include "desktop/MacroHost.h"
#include "desktop/OptionsDialog.h"
#include "desktop/StudyExport.h"
#include "desktop/SummaryTableModel.h"
#include "desktop/WorkbookIo.h"
#include "dialogs/Controls.h"
#include "frame/TaskCatalogue.h"
#include "host/NumberText.h"

using namespace poweranalysis;
using poweranalysis::testing::TemporaryFolder;

class WindowTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() { PrepareApplication(); }
  void opensTheStartupChooser();
  void powerOfOneMeanIsThatOfTheHeadlessRunDigitForDigit();
  void sizeOfTwoMeansIsThatOfTheHeadlessRunDigitForDigit();
  void aWholeAnalysisIsDoneByKeyboardAlone();
  void backForgetsAndChangeParamsKeepsTheRanges();
  void aWrongValueIsMarkedWhileTypedAndRefusedOnOk();
  void textThatIsNoNumberIsKeptAndReported();
  void aTrueNullHypothesisLeadsBackToTheParameters();
  void settingsAreSavedAndOpenedAgain();
  void aSettingsFileThatCannotBeWrittenIsToldAndForgotten();
  void keysOfASettingsFileThatCannotBeReadAreTold();
  void saveAsDefaultShowsWhatIsInForce();
  void saveAsDefaultLivesOnAndRestoreDefaultsBringsItBack();
  void cancelOfTheStartupEndsAndNewAnalysisReopens();
  void everyFamilyComputesItsDefaults_data();
  void everyFamilyComputesItsDefaults();
  void everyPageFitsInLargeLetters();
  void everyCalculatorComputesItsDefaults_data();
  void everyCalculatorComputesItsDefaults();
  void aCalculatorTurnsItsProbabilityRoundAndShowsWhatItsUnknownNeeds();
  void anAnswerIsNotMarkedAsAWrongInput();
  void theNoteCallsTheSizeByItsName();
  void cancelStopsASearchAndASecondCommandIsRefusedMeanwhile();
  void aCancelledCommandLeavesTheNextOnesAlone();
  void aTableIsCopiedAsTextAndHtml();
  void digitsFollowTheOptionAndToolTipsHaveAll();
  void reportsFollowTheRoutingAndTheLevel();
  void theNoteTellsThePowerBesideTheRequiredSize();
  void aChartReadsOutItsPointsAndZooms();
  void aWorkbookOpensAgainAsItWas();
  void aDamagedFileIsRefusedAndNothingIsLost();
  void unsavedWorkIsKeptAside();
  void unsavedChangesAreAskedAbout();
  void aRecordedSessionIsAScript();
  void repeatsOfAMessageJoinIntoOneBox();
  void undoBringsBackWhatWasTyped();
  void exportsWriteFilesOfTheirKinds();
  void placesAndOptionsAreRemembered();
  void theWindowIsReadyAndAChartOfAHundredPointsDrawnAtOnce();
  void aScriptOnAnotherThreadDrivesTheDialogs();
  void aRecordedMacroGivesTheSameDigitsAgain();
  void aMacroThatLoopsForEverIsStopped();
  void everyControlHasANameAndADescription();
};

namespace {

// Widgets that a user meets: those that take the focus or show a value. What Qt builds into others
// (the edit inside a spin box, the buttons of a scroll bar) has its parent's name.
bool NeedsName(const QWidget& widget) {
  const QByteArray kind = widget.metaObject()->className();
  const bool takesFocus = (widget.focusPolicy() & Qt::TabFocus) != 0;
  const bool internal = qobject_cast<QTabBar*>(widget.parentWidget()) != nullptr ||
                        widget.objectName().startsWith(QLatin1String("qt_")) || kind == "QTabBar" ||
                        kind == "QHeaderView" || kind == "QScrollBar" || kind == "QMenuBar";
  return takesFocus && !internal;
}

void CheckNames(QWidget& root, const char* where) {
  int checked = 0;
  for (QWidget* widget : root.findChildren<QWidget*>()) {
    if (NeedsName(*widget)) {
      ++checked;
      const QString place =
          QStringLiteral("%1: %2 %3")
              .arg(QLatin1String(where), QLatin1String(widget->metaObject()->className()),
                   widget->objectName());
      QVERIFY2(!widget->accessibleName().isEmpty(), qPrintable(place));
      QVERIFY2(!widget->accessibleDescription().isEmpty(), qPrintable(place));
    }
  }
  QVERIFY(checked > 3);
}

}  // namespace

void WindowTest::opensTheStartupChooser() {
  WindowDriver driver;
  QCOMPARE(driver.resource(), 6100);
  QCOMPARE(driver.Find<QListWidget>(control::Modes)->count(), 4);
  QCOMPARE(driver.Find<QListWidget>(control::Tasks)->count(), 18);
  QVERIFY(!driver.Find<QListWidget>(control::Tasks)->item(0)->icon().isNull());
  driver.ClickRow(control::Modes, 2);
  QCOMPARE(driver.Find<QListWidget>(control::Tasks)->count(), 10);
}

void WindowTest::powerOfOneMeanIsThatOfTheHeadlessRunDigitForDigit() {
  const std::vector<Action> actions = {{control::Mu, "0.35"},    {control::SampleSize, "41"},
                                       {control::UpperTail, {}}, {control::Accept, {}},
                                       {control::Accept, {}},    {control::PowerVsN, {}}};
  WindowDriver driver;
  driver.ChooseTask(ModePower, 0);
  QCOMPARE(driver.resource(), 6102);
  driver.Do(actions);
  QCOMPARE(driver.resource(), 6105);
  QCOMPARE(driver.studies().size(), std::size_t{1});
  const Study& study = driver.studies()[0].study;
  QCOMPARE(study.workbook.items.size(), std::size_t{3});
  QCOMPARE(study.family, std::string("T1"));
  QVERIFY(HasAnswer(study));
  QCOMPARE(ExportJson(study), HeadlessJson(ModePower, 0, actions, study));
}

void WindowTest::sizeOfTwoMeansIsThatOfTheHeadlessRunDigitForDigit() {
  const std::vector<Action> actions = {{control::Mu1, "5"},    {control::Mu2, "0"},
                                       {control::Sigma, "10"}, {control::PowerGoal, "0.8"},
                                       {control::Accept, {}},  {control::Accept, {}},
                                       {control::NVsPower, {}}};
  WindowDriver driver;
  driver.ChooseTask(ModeSampleSize, 1);
  driver.Do(actions);
  const Study& study = driver.studies()[0].study;
  QCOMPARE(ExportJson(study), HeadlessJson(ModeSampleSize, 1, actions, study));
  QCOMPARE(SummaryOf(study)->rows.back().values.front(), 64.0);
}

void WindowTest::aWholeAnalysisIsDoneByKeyboardAlone() {
  WindowDriver driver;
  QVERIFY(QTest::qWaitForWindowActive(&driver.window()));
  const auto key = [](Qt::Key code) {
    QVERIFY(QApplication::focusWidget() != nullptr);
    QTest::keyClick(QApplication::focusWidget(), code);
    WindowDriver::Settle();
  };
  key(Qt::Key_Home);  // power
  key(Qt::Key_Tab);
  key(Qt::Key_Home);  // one mean
  key(Qt::Key_Return);
  QCOMPARE(driver.resource(), 6102);
  key(Qt::Key_Tab);  // from Mu0 to Mu
  QCOMPARE(driver.form().ControlOf(QApplication::focusWidget()), control::Mu);
  QTest::keyClicks(QApplication::focusWidget(), QStringLiteral("0.5"));
  key(Qt::Key_Return);  // OK
  QCOMPARE(driver.resource(), 6105);
  key(Qt::Key_Return);  // Calculate
  QCOMPARE(driver.studies().size(), std::size_t{1});
  QVERIFY(HasAnswer(driver.studies()[0].study));
  key(Qt::Key_Escape);
  QCOMPARE(driver.resource(), 6102);
  QCOMPARE(driver.Text(control::Mu), QStringLiteral("0.5"));
}

void WindowTest::backForgetsAndChangeParamsKeepsTheRanges() {
  WindowDriver driver;
  driver.ChooseTask(ModePower, 0);
  driver.Click(control::Accept);
  const QString before = driver.Text(control::NStart);
  driver.Type(control::NStart, QStringLiteral("17"));
  driver.Click(control::Back);
  QCOMPARE(driver.resource(), 6102);
  driver.Click(control::Accept);
  QCOMPARE(driver.Text(control::NStart), before);
  driver.Type(control::NStart, QStringLiteral("17"));
  driver.Click(control::ChangeParams);
  QCOMPARE(driver.resource(), 6102);
  driver.Click(control::Accept);
  QCOMPARE(driver.Text(control::NStart), QStringLiteral("17"));
}

void WindowTest::aWrongValueIsMarkedWhileTypedAndRefusedOnOk() {
  WindowDriver driver;
  driver.ChooseTask(ModePower, 0);
  auto* alpha = driver.Find<QLineEdit>(control::Alpha);
  const QString help = alpha->toolTip();
  driver.Type(control::Alpha, QStringLiteral("1.5"));
  QCOMPARE(alpha->text(), QStringLiteral("1.5"));
  QVERIFY(alpha->toolTip().contains(QStringLiteral("Above the highest value")));
  QVERIFY(alpha->actions().front()->isVisible());
  driver.Click(control::Accept);
  QCOMPARE(driver.resource(), 6102);
  QVERIFY(driver.TakeMessage().contains(QStringLiteral("Alpha")));
  driver.Type(control::Alpha, QStringLiteral("0.01"));
  QCOMPARE(alpha->toolTip(), help);
  QVERIFY(!alpha->actions().front()->isVisible());
  driver.Click(control::Accept);
  QCOMPARE(driver.resource(), 6105);
  QVERIFY(driver.TakeMessage().isEmpty());
}

void WindowTest::textThatIsNoNumberIsKeptAndReported() {
  WindowDriver driver;
  driver.ChooseTask(ModePower, 0);
  driver.Type(control::Alpha, QStringLiteral("x"));
  QCOMPARE(driver.Text(control::Alpha), QStringLiteral("x"));
  QVERIFY(
      driver.Find<QLineEdit>(control::Alpha)->toolTip().contains(QStringLiteral("not a number")));
  QCOMPARE(Block()->T1.Working.Alpha, 0.0);
  driver.Click(control::Accept);
  QVERIFY(driver.TakeMessage().contains(QStringLiteral("Alpha")));
  QCOMPARE(driver.Text(control::Alpha), QStringLiteral("x"));
}

void WindowTest::aTrueNullHypothesisLeadsBackToTheParameters() {
  WindowDriver driver;
  driver.ChooseTask(ModePower, 0);
  driver.Type(control::Mu, driver.Text(control::Mu0));
  driver.Click(control::Accept);
  driver.Click(control::Accept);
  QCOMPARE(driver.resource(), 6102);
  QVERIFY(!driver.TakeMessage().isEmpty());
  QVERIFY(driver.studies().empty());
}

void WindowTest::settingsAreSavedAndOpenedAgain() {
  TemporaryFolder folder;
  WindowDriver driver(folder.File("config"));
  const std::string file = folder.File("study.ini");
  driver.window().host().chooseFile = [&file](const DesktopHost::FileQuestion&) {
    return std::optional<std::string>(file);
  };
  driver.ChooseTask(ModePower, 0);
  driver.Type(control::Mu, QStringLiteral("0.123456789012345"));
  driver.Click(ControlSaveAs);
  QVERIFY(QFile::exists(QString::fromStdString(file)));
  driver.Type(control::Mu, QStringLiteral("3"));
  driver.Click(ControlOpen);
  QCOMPARE(Block()->T1.Working.Mu, 0.123456789012345);
  QCOMPARE(driver.Text(control::Mu), QStringLiteral("0.12346"));
  QVERIFY(driver.TakeMessage().isEmpty());
}

void WindowTest::aSettingsFileThatCannotBeWrittenIsToldAndForgotten() {
  TemporaryFolder folder;
  WindowDriver driver(folder.File("config"));
  const std::string file = folder.File("missing/study.ini");
  driver.window().host().chooseFile = [&file](const DesktopHost::FileQuestion&) {
    return std::optional<std::string>(file);
  };
  driver.ChooseTask(ModePower, 0);
  driver.Type(control::Mu, QStringLiteral("5"));
  driver.Click(ControlSaveAs);
  const QString told = driver.TakeMessage();
  QVERIFY(told.contains(QStringLiteral("The settings were not saved.")));
  QVERIFY(told.contains(QString::fromStdString(file)));
  QVERIFY(driver.TakeMessage().isEmpty());
  QCOMPARE(Block()->FileNamed, i16{0});
  QCOMPARE(driver.Text(control::Mu), QStringLiteral("5"));
}

void WindowTest::keysOfASettingsFileThatCannotBeReadAreTold() {
  TemporaryFolder folder;
  WindowDriver driver(folder.File("config"));
  const std::string file = folder.File("study.ini");
  poweranalysis::testing::WriteWhole(
      file, "[POWER_ANALYSIS_ONE_SAMPLE_TTEST]\nMu=9,5\nSampleSize=1e2\nSigma=+4\n");
  driver.window().host().chooseFile = [&file](const DesktopHost::FileQuestion&) {
    return std::optional<std::string>(file);
  };
  driver.ChooseTask(ModePower, 0);
  driver.Click(ControlOpen);
  QCOMPARE(driver.TakeMessage(),
           QStringLiteral("'study.ini', line 2: Mu=9,5 is not a number; the built-in value 2 "
                          "stands."));
  QCOMPARE(driver.Text(control::SampleSize), QStringLiteral("100"));
  QCOMPARE(driver.Text(control::Sigma), QStringLiteral("4"));
}

void WindowTest::saveAsDefaultShowsWhatIsInForce() {
  TemporaryFolder folder;
  WindowDriver driver(folder.File("config"));
  driver.ChooseTask(ModePower, FindTask(ModePower, "R2"));
  const int box = ControlOfField("PopulationR2");
  driver.Type(box, QStringLiteral("0.4"));
  driver.Click(ControlSaveAsDefault);
  QVERIFY(driver.TakeMessage().contains(QStringLiteral("PopulationR2=0.4")));
  QCOMPARE(driver.Text(box), QStringLiteral("0.2"));
  QCOMPARE(Block()->R2.Working.PopulationR2, 0.2);
}

void WindowTest::saveAsDefaultLivesOnAndRestoreDefaultsBringsItBack() {
  TemporaryFolder folder;
  {
    WindowDriver driver(folder.File("config"));
    driver.ChooseTask(ModePower, 0);
    driver.Type(control::Mu, QStringLiteral("0.75"));
    driver.Click(ControlSaveAsDefault);
    driver.Type(control::Mu, QStringLiteral("9"));
    driver.Click(control::RestoreDefaults);
    QCOMPARE(driver.Text(control::Mu), QStringLiteral("0.75"));
  }
  WindowDriver again(folder.File("config"));
  again.ChooseTask(ModePower, 0);
  QCOMPARE(again.Text(control::Mu), QStringLiteral("0.75"));
}

void WindowTest::cancelOfTheStartupEndsAndNewAnalysisReopens() {
  WindowDriver driver;
  driver.Click(control::Back);
  QCOMPARE(driver.resource(), 0);
  QVERIFY(!driver.window().dialogDock().isVisible());
  driver.window().NewAnalysis();
  QCOMPARE(driver.resource(), 6100);
  QVERIFY(driver.window().dialogDock().isVisible());
}

namespace {

std::vector<ControlSpec> Shown(const DialogSpec& spec) {
  std::vector<ControlSpec> controls = spec.frame;
  for (const PageSpec& page : spec.pages) {
    controls.insert(controls.end(), page.controls.begin(), page.controls.end());
  }
  return controls;
}

// What runs out of a page to the right cannot be scrolled to.
void CheckWidths(DesktopForm& form) {
  for (const ControlSpec& control : Shown(form.spec())) {
    const QWidget* widget = form.WidgetOf(control.number);
    if (widget != nullptr && widget->isVisible()) {
      const QWidget* page = widget->parentWidget();
      QVERIFY2(widget->geometry().right() <= page->width(), control.name.c_str());
      QVERIFY2(widget->width() >= widget->minimumSizeHint().width(), control.name.c_str());
    }
  }
}

// The Tab key goes down the page; behind it come the buttons of the frame, OK first.
void CheckOrder(DesktopForm& form) {
  std::set<int> frame;
  for (const ControlSpec& control : form.spec().frame) {
    frame.insert(control.number);
  }
  QWidget* first = QApplication::focusWidget();
  QVERIFY(form.ControlOf(first) != 0);
  int last = 0;
  int visited = 0;
  for (QWidget* widget = first; widget != first || visited == 0;
       widget = widget->nextInFocusChain()) {
    const int control = form.ControlOf(widget);
    if (control != 0 && frame.count(control) == 0 && widget->isVisible()) {
      const int top = widget->mapTo(&form, QPoint()).y();
      QVERIFY2(top >= last, qPrintable(widget->accessibleName()));
      last = top;
      ++visited;
    }
  }
  QVERIFY(visited >= 5);
}

void AddTasks(std::initializer_list<int> modes) {
  QTest::addColumn<int>("mode");
  QTest::addColumn<int>("row");
  for (const int mode : modes) {
    int row = 0;
    for (const TaskRow& task : Tasks(mode)) {
      QTest::addRow("%s %s", Modes()[static_cast<std::size_t>(mode)].enumerator, task.family)
          << mode << row++;
    }
  }
}

}  // namespace

void WindowTest::everyFamilyComputesItsDefaults_data() { AddTasks({ModePower, ModeSampleSize}); }

void WindowTest::everyFamilyComputesItsDefaults() {
  QFETCH(int, mode);
  QFETCH(int, row);
  WindowDriver driver;
  driver.ChooseTask(mode, row);
  QCOMPARE(driver.resource(), ComputeDialog(mode, row)->resource);
  CheckNames(driver.window(), "parameters");
  CheckWidths(driver.form());
  CheckOrder(driver.form());
  driver.Click(control::Accept);
  QVERIFY2(driver.TakeMessage().isEmpty(), "parameters");
  QCOMPARE(driver.resource(), ResultDialog(mode, row)->resource);
  CheckNames(driver.window(), "results");
  CheckWidths(driver.form());
  CheckOrder(driver.form());
  driver.Click(control::Accept);
  QVERIFY2(driver.TakeMessage().isEmpty(), "results");
  QCOMPARE(driver.studies().size(), std::size_t{1});
  const Study& study = driver.studies()[0].study;
  QVERIFY(HasAnswer(study));
  QCOMPARE(study.workbook.items.size(), std::size_t{2});
  QVERIFY(std::holds_alternative<Report>(study.workbook.items[1]));
  std::size_t charts = 0;
  for (const ControlSpec& button : Shown(driver.form().spec())) {
    if (button.kind == ControlKind::Button && button.name.find("-vs-") != std::string::npos) {
      driver.Click(button.number);
      const QString message = driver.TakeMessage();
      QVERIFY2(message.isEmpty(), qPrintable(QString::fromStdString(button.name) + message));
      QVERIFY2(ChartsOf(driver.studies()[0].study).size() > charts, button.name.c_str());
      charts = ChartsOf(driver.studies()[0].study).size();
      QVERIFY(driver.window().pages().chartView()->isVisible());
    }
  }
  QVERIFY(charts >= 3);
  std::set<QString> names;
  for (const WorkbookItem& item : study.workbook.items) {
    QVERIFY2(names.insert(NameOf(item)).second, qPrintable(NameOf(item)));
  }
  driver.window().book().SetSaved();
}

void WindowTest::everyPageFitsInLargeLetters() {
  constexpr int kDouble = 200;
  WindowDriver driver;
  driver.window().SetTextPercent(kDouble);
  for (const int mode : {ModePower, ModeSampleSize, ModeDistribution}) {
    for (std::size_t row = 0; row < Tasks(mode).size(); ++row) {
      driver.window().NewAnalysis();
      driver.ChooseTask(mode, static_cast<int>(row));
      CheckWidths(driver.form());
      if (mode != ModeDistribution) {
        driver.Click(control::Accept);
        CheckWidths(driver.form());
      }
    }
  }
  driver.window().SetTextPercent(100);
}

void WindowTest::everyCalculatorComputesItsDefaults_data() { AddTasks({ModeDistribution}); }

void WindowTest::everyCalculatorComputesItsDefaults() {
  QFETCH(int, mode);
  QFETCH(int, row);
  WindowDriver driver;
  driver.ChooseTask(mode, row);
  QCOMPARE(driver.resource(), ComputeDialog(mode, row)->resource);
  QVERIFY(driver.TakeMessage().isEmpty());
  CheckNames(driver.window(), "calculator");
  CheckWidths(driver.form());
  CheckOrder(driver.form());
  int probability = 0;
  for (const ControlSpec& box : Shown(driver.form().spec())) {
    probability = box.name == "CumP" ? box.number : probability;
  }
  driver.Click(control::Accept);
  QVERIFY(driver.TakeMessage().isEmpty());
  bool number = false;
  const double p = driver.Text(probability).toDouble(&number);
  QVERIFY2(number && p > 0 && p < 1, qPrintable(driver.Text(probability)));
  // What it computed is a study; then it leads back to the startup.
  QCOMPARE(driver.studies().size(), std::size_t{1});
  QVERIFY(SummaryOf(driver.studies().front().study) != nullptr);
  QCOMPARE(ReportsOf(driver.studies().front().study).size(), std::size_t{1});
  driver.Click(control::Back);
  QCOMPARE(driver.resource(), 6100);
}

void WindowTest::aCalculatorTurnsItsProbabilityRoundAndShowsWhatItsUnknownNeeds() {
  WindowDriver driver;
  driver.ChooseTask(ModeDistribution, 5);
  std::map<std::string, std::vector<int>> numbers;
  for (const ControlSpec& box : Shown(driver.form().spec())) {
    numbers[box.name].push_back(box.number);
  }
  const int actual = numbers["ActualValue"].front();
  QVERIFY(!driver.form().WidgetOf(actual)->isVisible());
  driver.Click(numbers["WhatToCompute"][0]);  // X
  QVERIFY(driver.form().WidgetOf(actual)->isVisible());
  auto* label = driver.Find<QLabel>(numbers["CumPLabel"].front());
  QCOMPARE(label->text(), QStringLiteral("Requested Value:"));
  QCOMPARE(label->buddy(), driver.form().WidgetOf(numbers["CumP"].front()));
  driver.Type(numbers["CumP"].front(), QStringLiteral("0.9"));
  driver.Click(control::Accept);
  QVERIFY(driver.Text(actual).toDouble() >= 0.9);
  const double requested = driver.Text(numbers["CumP"].front()).toDouble();
  driver.Click(numbers["OneMinusP"].front());
  QCOMPARE(driver.Text(numbers["CumP"].front()).toDouble(), 1 - requested);
  driver.Click(numbers["WhatToCompute"][1]);  // p
  QVERIFY(!driver.form().WidgetOf(actual)->isVisible());
  QCOMPARE(label->text(), QStringLiteral("1 - Cum. p:"));
}

void WindowTest::anAnswerIsNotMarkedAsAWrongInput() {
  WindowDriver driver;
  driver.ChooseTask(ModeDistribution, 3);
  std::map<std::string, std::vector<int>> numbers;
  for (const ControlSpec& box : Shown(driver.form().spec())) {
    numbers[box.name].push_back(box.number);
  }
  const int p = numbers["CumP"].front();
  const auto marked = [&] { return driver.Find<QLineEdit>(p)->actions().front()->isVisible(); };
  driver.Click(control::Accept);
  QVERIFY(driver.Text(p).toDouble() > *driver.form().model().Find(p)->upper);
  QVERIFY(!marked());
  driver.Click(numbers["WhatToCompute"][0]);  // now it is an input
  QVERIFY(marked());
}

void WindowTest::theNoteCallsTheSizeByItsName() {
  const std::pair<int, const char*> sizes[] = {{5, "Power at N = 63 (Interaction Effect): "},
                                               {6, "Power at Df = 43: "}};
  for (const auto& [row, line] : sizes) {
    WindowDriver driver;
    driver.ChooseTask(ModeSampleSize, row);
    driver.Click(control::Accept);
    driver.Click(control::Accept);
    const std::vector<QString>& note = driver.studies()[0].note;
    QCOMPARE(note.size(), std::size_t{3});
    QVERIFY2(note[1].startsWith(QLatin1String(line)), qPrintable(note[1]));
    driver.window().book().SetSaved();
  }
}

void WindowTest::cancelStopsASearchAndASecondCommandIsRefusedMeanwhile() {
  // A search tells that it was cancelled; a chart ends without a word.
  const std::pair<int, QString> commands[] = {
      {control::Accept, QStringLiteral("Calculation cancelled at user request.")},
      {control::NVsPower, QString()}};
  for (const auto& [command, message] : commands) {
    WindowDriver driver;
    driver.ChooseTask(ModeSampleSize, 1);
    driver.Click(control::Accept);
    driver.window().host().patienceMilliseconds = 0;
    bool frozen = false;
    bool refused = false;
    connect(&driver.window().host(), &DesktopHost::Refused, [&refused] { refused = true; });
    // Comes to its turn only if the search keeps the event loop alive.
    QTimer::singleShot(0, [&] {
      frozen = driver.window().host().frozen() && !driver.form().isEnabled();
      driver.window().host().Press(control::NVsPower);
      auto* cancel = driver.window().findChild<QPushButton*>(QStringLiteral("cancelProgress"));
      QTest::mouseClick(cancel, Qt::LeftButton);
    });
    driver.Find<QAbstractButton>(command)->click();
    WindowDriver::Settle();
    QVERIFY(frozen);
    QVERIFY(refused);
    QVERIFY(driver.form().isEnabled());
    QCOMPARE(driver.TakeMessage(), message);
    QVERIFY(driver.studies().empty());
  }
}

void WindowTest::aCancelledCommandLeavesTheNextOnesAlone() {
  WindowDriver driver;
  driver.ChooseTask(ModeSampleSize, FindTask(ModeSampleSize, "T2"));
  driver.Click(control::Accept);
  driver.window().host().patienceMilliseconds = 0;
  QTimer::singleShot(0, [&] { driver.window().host().Cancel(); });
  driver.Find<QAbstractButton>(control::Accept)->click();
  QVERIFY(!driver.TakeMessage().isEmpty());
  QVERIFY(driver.studies().empty());
  driver.Click(control::Back);
  driver.Click(control::Back);
  // The search for this size opens no bar.
  driver.ChooseTask(ModeSampleSize, FindTask(ModeSampleSize, "R"));
  driver.Click(control::Accept);
  for (const std::size_t studies : {1, 2}) {
    driver.Click(control::Accept);
    QCOMPARE(driver.TakeMessage(), QString());
    QVERIFY(!driver.studies().empty());
    QCOMPARE(driver.studies().size(), studies);
    QVERIFY(HasAnswer(driver.studies().back().study));
    // A click that comes when the work has ended already.
    driver.window().host().Cancel();
  }
}

void WindowTest::aTableIsCopiedAsTextAndHtml() {
  WindowDriver driver;
  driver.ChooseTask(ModePower, 0);
  driver.Click(control::Accept);
  driver.Click(control::Accept);
  driver.window().SelectItem(0, 0);
  driver.window().pages().Copy();
  const QMimeData* data = QApplication::clipboard()->mimeData();
  const SummaryTable& table = *SummaryOf(driver.studies()[0].study);
  const QStringList lines = data->text().split(QLatin1Char('\n'), Qt::SkipEmptyParts);
  QCOMPARE(lines.size(), static_cast<qsizetype>(table.rows.size()) + 1);
  QCOMPARE(lines.back().count(QLatin1Char('\t')), 1);
  QVERIFY(data->html().contains(QStringLiteral("<table>")));
}

void WindowTest::digitsFollowTheOptionAndToolTipsHaveAll() {
  WindowDriver driver;
  driver.ChooseTask(ModePower, 0);
  driver.Click(control::Accept);
  driver.Click(control::Accept);
  OutputOptions options;
  options.digits = 3;
  driver.window().SetOptions(options);
  driver.window().SelectItem(0, 0);
  const QAbstractItemModel* model = driver.window().pages().tableView()->model();
  const QModelIndex answer = model->index(model->rowCount() - 1, 1);
  const double power = SummaryOf(driver.studies()[0].study)->rows.back().values.front();
  QCOMPARE(answer.data().toString(), QString::number(power, 'g', 3));
  QCOMPARE(answer.data(Qt::ToolTipRole).toString().toDouble(), power);
}

void WindowTest::reportsFollowTheRoutingAndTheLevel() {
  WindowDriver driver;
  driver.ChooseTask(ModePower, 0);
  driver.Click(control::Accept);
  for (const OutputOptions& options : {OutputOptions{false, 4, 6}, OutputOptions{true, 3, 6}}) {
    driver.window().SetOptions(options);
    driver.Click(control::Accept);
    QCOMPARE(driver.studies().back().study.workbook.items.size(), std::size_t{1});
  }
  driver.window().SetOptions({true, 4, 6});
  driver.Click(control::Accept);
  QCOMPARE(driver.studies().back().study.workbook.items.size(), std::size_t{2});
  QCOMPARE(driver.studies().size(), std::size_t{3});
}

void WindowTest::theNoteTellsThePowerBesideTheRequiredSize() {
  WindowDriver driver;
  driver.ChooseTask(ModeSampleSize, 1);
  driver.Type(control::Mu1, QStringLiteral("5"));
  driver.Type(control::PowerGoal, QStringLiteral("0.8"));
  driver.Click(control::Accept);
  driver.Click(control::Accept);
  const std::vector<QString> note = driver.studies()[0].note;
  QCOMPARE(note.size(), std::size_t{3});
  // The system's own table says nothing of it.
  const std::string table = ExportJson(driver.studies()[0].study);
  QVERIFY(table.find("N \u2212 1") == std::string::npos);
  for (int i = 0; i < 3; ++i) {
    const std::string size = std::to_string(63 + i);
    const std::vector<Action> actions = {{control::Mu1, "5"},
                                         {control::SampleSizeN1, size},
                                         {control::SampleSizeN2, size},
                                         {control::Accept, {}},
                                         {control::Accept, {}}};
    WindowDriver power;
    power.ChooseTask(ModePower, 1);
    power.Do(actions);
    const double value = SummaryOf(power.studies()[0].study)->rows.back().values.front();
    const QString line =
        QStringLiteral(" = %1: %2")
            .arg(QString::fromStdString(size), QString::fromStdString(FormatCell(value)));
    QVERIFY2(note[static_cast<std::size_t>(i)].endsWith(line),
             qPrintable(note[static_cast<std::size_t>(i)] + line));
  }
}

void WindowTest::aChartReadsOutItsPointsAndZooms() {
  WindowDriver driver;
  driver.ChooseTask(ModePower, 0);
  driver.Click(control::Accept);
  driver.Click(control::PowerVsN);
  ChartView& view = *driver.window().pages().chartView();
  QVERIFY(view.isVisible());
  QVERIFY(view.ReadOut().isEmpty());
  QTest::keyClick(&view, Qt::Key_Right);
  const Chart& chart = *ChartsOf(driver.studies()[0].study).front();
  QVERIFY2(view.ReadOut().contains(QString::fromStdString(chart.yLabel)),
           qPrintable(view.ReadOut()));
  const float width = view.shown().xAxis.max - view.shown().xAxis.min;
  QTest::keyClick(&view, Qt::Key_Plus);
  QVERIFY(view.zoomed());
  QCOMPARE(view.shown().xAxis.max - view.shown().xAxis.min, width / 2);
  QTest::keyClick(&view, Qt::Key_0);
  QVERIFY(!view.zoomed());
  QCOMPARE(view.shown().xAxis.max, chart.xAxis.max);
}

void WindowTest::aWorkbookOpensAgainAsItWas() {
  TemporaryFolder folder;
  const QString file = QString::fromStdString(folder.File("study.pawb"));
  std::string before;
  {
    WindowDriver driver;
    driver.ChooseTask(ModeSampleSize, 1);
    driver.Click(control::Accept);
    driver.Click(control::Accept);
    driver.Click(control::NVsPower);
    driver.window().book().Rename(0, QStringLiteral("My study"));
    QVERIFY(driver.window().book().changed());
    QVERIFY(driver.window().SaveTo(file));
    QVERIFY(!driver.window().book().changed());
    before = ExportJson(driver.studies()[0].study);
  }
  WindowDriver driver;
  QVERIFY(driver.window().OpenFile(file));
  QCOMPARE(driver.studies().size(), std::size_t{1});
  QCOMPARE(driver.studies()[0].name, QStringLiteral("My study"));
  QCOMPARE(driver.studies()[0].note.size(), std::size_t{3});
  QCOMPARE(ExportJson(driver.studies()[0].study), before);
  QCOMPARE(driver.window().tree().topLevelItem(0)->childCount(), 3);
}

void WindowTest::aDamagedFileIsRefusedAndNothingIsLost() {
  TemporaryFolder folder;
  const QString path = QString::fromStdString(folder.File("bad.pawb"));
  QFile file(path);
  QVERIFY(file.open(QIODevice::WriteOnly));
  file.write("{\"schema\": 1, \"studies\": [");
  file.close();
  WindowDriver driver;
  driver.ChooseTask(ModePower, 0);
  driver.Click(control::Accept);
  driver.Click(control::Accept);
  driver.window().book().SetSaved();
  QVERIFY(!driver.window().OpenFile(path));
  QVERIFY(driver.TakeMessage().contains(QStringLiteral("bad.pawb")));
  QCOMPARE(driver.studies().size(), std::size_t{1});
}

void WindowTest::unsavedWorkIsKeptAside() {
  TemporaryFolder folder;
  WindowDriver driver(folder.File("config"));
  driver.ChooseTask(ModePower, 0);
  driver.Click(control::Accept);
  driver.Click(control::Accept);
  const QString kept = driver.window().autosaveFile();
  QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(kept), 5000);
  const LoadedStudies loaded = LoadStudies(kept);
  QCOMPARE(loaded.studies.size(), std::size_t{1});
  QCOMPARE(ExportJson(loaded.studies[0].study), ExportJson(driver.studies()[0].study));
  driver.window().book().SetSaved();
  driver.window().close();
  QVERIFY(!QFile::exists(kept));
}

void WindowTest::unsavedChangesAreAskedAbout() {
  WindowDriver driver;
  driver.ChooseTask(ModePower, 0);
  driver.Click(control::Accept);
  driver.Click(control::Accept);
  const auto answer = [](QMessageBox::StandardButton button) {
    QTimer::singleShot(0, [button] {
      auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
      QVERIFY(box != nullptr);
      QTest::mouseClick(box->button(button), Qt::LeftButton);
    });
  };
  answer(QMessageBox::Cancel);
  QVERIFY(!driver.window().close());
  QVERIFY(driver.window().isVisible());
  answer(QMessageBox::Discard);
  QVERIFY(driver.window().close());
}

void WindowTest::aRecordedSessionIsAScript() {
  WindowDriver driver;
  driver.window().StartRecording();
  driver.window().NewAnalysis();
  driver.ChooseTask(ModePower, 0);
  driver.Type(control::Mu, QStringLiteral("0.5"));
  driver.Click(control::Accept);
  driver.Click(control::Accept);
  const QString script = QString::fromStdString(driver.window().recordedScript());
  for (const char* part : {"scPowPowerCalculation", "scPowOneMeanTTest", "0.5"}) {
    QVERIFY2(script.contains(QLatin1String(part)), qPrintable(script));
  }
}

void WindowTest::repeatsOfAMessageJoinIntoOneBox() {
  WindowDriver driver;
  driver.ChooseTask(ModePower, 0);
  // What a calculation does that fails at many points.
  DesktopHost& host = driver.window().host();
  std::vector<Message> shown;
  connect(&host, &DesktopHost::MessagesReady,
          [&shown](const std::vector<Message>& messages) { shown = messages; });
  connect(&host, &DesktopHost::Doing, &host, [&host] {
    for (const char* text : {"a", "b", "a", "a"}) {
      host.DspMessageBox(MessagePlain, nullptr, 0, text);
    }
  });
  driver.Click(control::RestoreDefaults);
  QCOMPARE(shown.size(), std::size_t{2});
  QCOMPARE(shown[0].count, 3);
  QCOMPARE(driver.TakeMessage(), QStringLiteral("a\n(3 times)"));
  QCOMPARE(driver.TakeMessage(), QStringLiteral("b"));
  QVERIFY(driver.TakeMessage().isEmpty());
}

void WindowTest::undoBringsBackWhatWasTyped() {
  WindowDriver driver;
  driver.ChooseTask(ModePower, 0);
  const double before = Block()->T1.Working.Alpha;
  driver.Type(control::Alpha, QStringLiteral("7"));
  QCOMPARE(Block()->T1.Working.Alpha, 7.0);
  auto* alpha = driver.Find<QLineEdit>(control::Alpha);
  while (alpha->isUndoAvailable()) {
    alpha->undo();
  }
  QCOMPARE(Block()->T1.Working.Alpha, before);
}

void WindowTest::exportsWriteFilesOfTheirKinds() {
  TemporaryFolder folder;
  WindowDriver driver;
  driver.ChooseTask(ModePower, 0);
  driver.Do({{control::Accept, {}}, {control::Accept, {}}, {control::PowerVsN, {}}});
  const auto start = [&folder](const std::string& name) {
    QFile file(QString::fromStdString(folder.File(name)));
    return file.open(QIODevice::ReadOnly) ? file.read(2000) : QByteArray();
  };
  const StudyRecord& record = driver.studies()[0];
  for (const auto& kind : StudyExports()) {
    const std::string name = "study." + kind.extension.toStdString();
    QCOMPARE(kind.write(record, QString::fromStdString(folder.File(name)), 6), QString());
    QVERIFY(!start(name).isEmpty());
  }
  QVERIFY(start("study.pdf").startsWith("%PDF"));
  QVERIFY(start("study.xlsx").startsWith("PK"));
  QVERIFY(start("study.odt").startsWith("PK"));
  const Chart& chart = *ChartsOf(record.study).front();
  for (const auto& kind : ChartExports()) {
    const std::string name = "chart." + kind.extension.toStdString();
    QCOMPARE(kind.write(chart, QString::fromStdString(folder.File(name)), 6), QString());
  }
  QVERIFY(start("chart.svg").startsWith("<"));
  QVERIFY(start("chart.pdf").startsWith("%PDF"));
  QVERIFY(start("chart.png").startsWith("\x89PNG"));
  QVERIFY(start("chart.csv").contains(','));
  // A folder that is not there is a fault that is told.
  QVERIFY(!ChartExports()[0]
               .write(chart, QString::fromStdString(folder.File("none/chart.svg")), 6)
               .isEmpty());
}

void WindowTest::placesAndOptionsAreRemembered() {
  TemporaryFolder folder;
  {
    WindowDriver driver(folder.File("config"));
    OutputOptions options;
    options.digits = 9;
    driver.window().SetOptions(options);
    driver.window().SetTextPercent(150);
    driver.window().addDockWidget(Qt::LeftDockWidgetArea, &driver.window().dialogDock());
    QVERIFY(driver.window().close());
  }
  WindowDriver again(folder.File("config"));
  QCOMPARE(again.window().host().options.digits, 9);
  QCOMPARE(again.window().textPercent(), 150);
  QCOMPARE(again.window().dockWidgetArea(&again.window().dialogDock()), Qt::LeftDockWidgetArea);
  again.window().SetTextPercent(100);
}

void WindowTest::theWindowIsReadyAndAChartOfAHundredPointsDrawnAtOnce() {
  constexpr qint64 kOneSecond = 1000;
  QElapsedTimer timer;
  timer.start();
  WindowDriver driver;
  QVERIFY(QTest::qWaitForWindowExposed(&driver.window()));
  QVERIFY(timer.elapsed() < kOneSecond);
  driver.ChooseTask(ModePower, 0);
  driver.Click(control::Accept);
  driver.Type(control::NInterval, QStringLiteral("100"));
  timer.restart();
  driver.Click(control::PowerVsEs);
  QVERIFY(timer.elapsed() < kOneSecond);
  QCOMPARE(ChartsOf(driver.studies()[0].study).front()->x.size(), std::size_t{101});
}

void WindowTest::aScriptOnAnotherThreadDrivesTheDialogs() {
  WindowDriver driver;
  DesktopDriver script(driver.window());
  std::atomic<bool> done = false;
  double answer = 0;
  std::thread macro([&] {
    Application application(script);
    const std::shared_ptr<DialogObject> startup = application.StartAnalysis();
    startup->Put("AnalysisItem", std::int64_t{ModeSampleSize});
    startup->Put("AnalysisType", std::int64_t{1});
    startup->OK();
    application.Dialog()->SetField("Mu1", 5.0);
    application.Dialog()->SetField("PowerGoal", 0.8);
    application.Dialog()->OK();
    application.Dialog()->OK();
    const WorkbookItem table = script.Item(script.ItemCount() - 2);
    answer = std::get<SummaryTable>(table).rows.back().values.front();
    done = true;
  });
  QTRY_VERIFY(done);
  macro.join();
  QCOMPARE(answer, 64.0);
  QCOMPARE(driver.studies().size(), std::size_t{1});
}

void WindowTest::aRecordedMacroGivesTheSameDigitsAgain() {
  if (!MacroHost::IsAvailable()) {
    QSKIP("built without an interpreter");
  }
  TemporaryFolder folder;
  WindowDriver driver;
  driver.window().StartRecording();
  driver.window().NewAnalysis();
  driver.ChooseTask(ModePower, 0);
  driver.Do({{control::Mu, "0.35"}, {control::Accept, {}}, {control::Accept, {}}});
  const QString path = QString::fromStdString(folder.File("macro.py"));
  QCOMPARE(WriteFile(path, QByteArray::fromStdString(driver.window().recordedScript())), QString());

  MacroHost& macros = driver.window().macros();
  QString printed;
  QString fault = QStringLiteral("none yet");
  connect(&macros, &MacroHost::Printed, &driver.window(),
          [&printed](const QString& text) { printed += text; });
  connect(&macros, &MacroHost::Finished, &driver.window(),
          [&fault](const QString& text) { fault = text; });
  QVERIFY(macros.Run(path));
  QVERIFY(!macros.Run(path));
  QTRY_VERIFY_WITH_TIMEOUT(!macros.running(), 20000);
  QVERIFY2(fault.isEmpty(), qPrintable(fault + printed));
  QCOMPARE(driver.studies().size(), std::size_t{2});
  QCOMPARE(ExportJson(driver.studies()[1].study), ExportJson(driver.studies()[0].study));
}

void WindowTest::aMacroThatLoopsForEverIsStopped() {
  if (!MacroHost::IsAvailable()) {
    QSKIP("built without an interpreter");
  }
  TemporaryFolder folder;
  WindowDriver driver;
  const QString path = QString::fromStdString(folder.File("loop.py"));
  QCOMPARE(WriteFile(path, "print('on')\nwhile True: pass\n"), QString());
  MacroHost& macros = driver.window().macros();
  QString printed;
  QString fault;
  connect(&macros, &MacroHost::Printed, &driver.window(),
          [&printed](const QString& text) { printed += text; });
  connect(&macros, &MacroHost::Finished, &driver.window(),
          [&fault](const QString& text) { fault = text; });
  QVERIFY(macros.Run(path));
  QTRY_VERIFY_WITH_TIMEOUT(printed.startsWith(QStringLiteral("on")), 20000);
  macros.Stop();
  QTRY_VERIFY_WITH_TIMEOUT(!macros.running(), 5000);
  QVERIFY2(fault.contains(QStringLiteral("stopped")), qPrintable(fault));
}

void WindowTest::everyControlHasANameAndADescription() {
  OptionsDialog options({});
  CheckNames(options, "options");
  for (QComboBox* combo : options.findChildren<QComboBox*>()) {
    QCOMPARE(combo->view()->accessibleName(), combo->accessibleName());
    QCOMPARE(combo->view()->accessibleDescription(), combo->accessibleDescription());
  }
  for (const int mode : {ModePower, ModeSampleSize}) {
    for (const int row : {0, 1, 2}) {
      WindowDriver driver;
      CheckNames(driver.window(), "startup");
      driver.ChooseTask(mode, row);
      CheckNames(driver.window(), "parameters");
      driver.Click(control::Accept);
      CheckNames(driver.window(), "results");
      driver.window().book().SetSaved();
    }
  }
}

QTEST_MAIN(WindowTest)
#include "Window_test.moc"
