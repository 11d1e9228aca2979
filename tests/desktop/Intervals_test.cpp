#include <QLabel>

#include "WindowTest.h"
#include "dialogs/Controls.h"
#include "frame/TaskCatalogue.h"

using namespace poweranalysis;

// The interval dialogs in the window.
class IntervalsTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() { PrepareApplication(); }
  void everyIntervalDialogComputesItsDefaults_data();
  void everyIntervalDialogComputesItsDefaults();
  void aSecondComputeIsASecondStudy();
  void aRefusedFIsMarkedWithTheValueThatCounts();
  void theObservedCountIsShownAndNotTyped();
  void theHintOfAStructuralModelFollowsItsGroups();
};

namespace {

constexpr int kObservedF = 4801;
constexpr int kObservedCount = 21078;

void OpenInterval(WindowDriver& driver, const char* family) {
  driver.ChooseTask(ModeInterval, FindTask(ModeInterval, family));
}

}  // namespace

void IntervalsTest::everyIntervalDialogComputesItsDefaults_data() {
  QTest::addColumn<int>("row");
  for (std::size_t row = 0; row < Tasks(ModeInterval).size(); ++row) {
    QTest::newRow(Tasks(ModeInterval)[row].family) << static_cast<int>(row);
  }
}

void IntervalsTest::everyIntervalDialogComputesItsDefaults() {
  QFETCH(int, row);
  WindowDriver driver;
  driver.ChooseTask(ModeInterval, row);
  QCOMPARE(driver.resource(), ComputeDialog(ModeInterval, row)->resource);
  driver.Click(control::Accept);
  driver.TakeMessage();
  QCOMPARE(driver.studies().size(), std::size_t{1});
  const StudyRecord& record = driver.studies().front();
  QCOMPARE(record.study.mode, std::string("interval"));
  QVERIFY(!record.inputs.empty());
  const std::string expected =
      HeadlessJson(ModeInterval, row, {{control::Accept, {}}}, record.study);
  QCOMPARE(QString::fromStdString(ExportJson(record.study)), QString::fromStdString(expected));
  driver.window().book().SetSaved();
}

void IntervalsTest::aSecondComputeIsASecondStudy() {
  WindowDriver driver;
  OpenInterval(driver, "T1");
  driver.Click(control::Accept);
  driver.Click(control::Accept);
  QCOMPARE(driver.studies().size(), std::size_t{2});
  driver.window().book().SetSaved();
}

void IntervalsTest::aRefusedFIsMarkedWithTheValueThatCounts() {
  WindowDriver driver;
  OpenInterval(driver, "AV1");
  driver.Type(kObservedF, QStringLiteral("150"));
  QVERIFY(driver.Find<QLineEdit>(kObservedF)->styleSheet().isEmpty());
  driver.Type(kObservedF, QStringLiteral("1500"));
  QVERIFY(!driver.TakeMessage().isEmpty());
  QLineEdit* box = driver.Find<QLineEdit>(kObservedF);
  QCOMPARE(box->text(), QStringLiteral("1500"));
  QVERIFY(!box->styleSheet().isEmpty());
  QVERIFY2(box->toolTip().contains(QStringLiteral("150 counts")), qPrintable(box->toolTip()));
  driver.Type(kObservedF, QStringLiteral("12"));
  QVERIFY(box->styleSheet().isEmpty());
}

void IntervalsTest::theObservedCountIsShownAndNotTyped() {
  WindowDriver driver;
  OpenInterval(driver, "P1");
  const QString before = driver.Text(kObservedCount);
  driver.Type(kObservedCount, QStringLiteral("7"));
  QCOMPARE(driver.Text(kObservedCount), before);
  QVERIFY(driver.Find<QLineEdit>(kObservedCount)->isReadOnly());
  QVERIFY(driver.form().UnreadableBoxes().empty());
}

void IntervalsTest::theHintOfAStructuralModelFollowsItsGroups() {
  WindowDriver driver;
  OpenInterval(driver, "SEM");
  QWidget* hint = driver.form().WidgetOf(ControlHint);
  QVERIFY(hint != nullptr);
  QVERIFY(!hint->isVisible());
  driver.Type(ControlOfField("Groups"), QStringLiteral("0"));
  QVERIFY(hint->isVisible());
  QVERIFY(!qobject_cast<QLabel*>(hint)->text().isEmpty());
  driver.Type(ControlOfField("Groups"), QStringLiteral("2"));
  QVERIFY(!hint->isVisible());
}

QTEST_MAIN(IntervalsTest)
#include "Intervals_test.moc"
