#include <QAction>
#include <QClipboard>
#include <QFile>
#include <functional>
#include <map>

#include "WindowTest.h"
#include "desktop/StudyExport.h"
#include "desktop/WorkbookIo.h"
#include "dialogs/Controls.h"
#include "frame/TaskCatalogue.h"

using namespace poweranalysis;
using poweranalysis::testing::TemporaryFolder;

// What Compute of a calculator puts into the workbook.
class CalculatorsTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() { PrepareApplication(); }
  void computeMakesAStudyOfTableAndStatement();
  void everyComputationIsAStudyOfItsOwn();
  void whatIsRefusedOrFailsLeavesNoStudy();
  void whatHasNoSolutionIsAStudyWithItsMessage();
  void theOptionsThatLeaveOutReportsLeaveOutTheStatement();
  void aStudyHoldsTheNumbersOfItsCalculatorAlone();
  void aStudyIsExportedInEveryFormat();
  void aStudyIsCopiedDeletedAndMadeAnew();
  void aSavedStudyOpensWithItsAnswerMarked();
};

namespace {

// Rows of the list of calculators.
constexpr int kT = 0;
constexpr int kChiSquare = 2;
constexpr int kR2 = 3;

int Unknown(std::size_t place) { return ControlUnknown + static_cast<int>(place); }

// P(t <= 2) with 4 degrees of freedom and Delta 1.
void ComputeT(WindowDriver& driver) {
  driver.ChooseTask(ModeDistribution, kT);
  driver.Do({{ControlOfField("TObserved"), "2"},
             {ControlOfField("DegreesOfFreedom"), "4"},
             {ControlOfField("Delta"), "1"},
             {control::Accept, {}}});
}

constexpr const char* kStatement = "P(t <= 2) = 0.76456745; Df = 4, Delta = 1";

QString TableText(const Study& study) {
  return QString::fromStdString(CsvOf(*SummaryOf(study))).section(QLatin1Char('\n'), 1);
}

void TriggerAction(MainWindow& window, const QString& caption) {
  for (QAction* action : window.findChildren<QAction*>()) {
    if (action->text().remove(QLatin1Char('&')) == caption) {
      action->trigger();
      return;
    }
  }
  QFAIL(qPrintable(caption));
}

}  // namespace

void CalculatorsTest::computeMakesAStudyOfTableAndStatement() {
  WindowDriver driver;
  ComputeT(driver);
  QCOMPARE(driver.studies().size(), std::size_t{1});
  const StudyRecord& record = driver.studies().front();
  QCOMPARE(record.name,
           QStringLiteral("Noncentral t Distribution \u2013 Probability Distributions"));
  QCOMPARE(record.study.family, std::string("T"));
  QCOMPARE(record.study.mode, std::string("calc"));
  QCOMPARE(record.study.workbook.items.size(), std::size_t{2});
  QVERIFY(TableText(record.study).startsWith("Observed T,2\nDf,4\nDelta,1\nCum. p,0.764567"));
  QCOMPARE(ParagraphsOf(record.study), std::vector<std::string>{kStatement});
  QCOMPARE(record.study.answers.size(), std::size_t{1});
  QCOMPARE(record.study.answers.front().name, std::string("CumP"));
  QVERIFY(SummaryOf(record.study)->rows.back().answer);
  driver.window().book().SetSaved();
}

void CalculatorsTest::everyComputationIsAStudyOfItsOwn() {
  WindowDriver driver;
  ComputeT(driver);
  driver.Click(ControlOfField("OneMinusP"));
  driver.Click(Unknown(0));
  QCOMPARE(driver.studies().size(), std::size_t{1});
  driver.Click(control::Accept);
  QCOMPARE(driver.studies().size(), std::size_t{2});
  QCOMPARE(driver.studies()[0].study.workbook.items.size(), std::size_t{2});
  QCOMPARE(ParagraphsOf(driver.studies()[0].study), std::vector<std::string>{kStatement});
  QVERIFY(ParagraphsOf(driver.studies()[1].study).front().starts_with("P(t > "));
  QCOMPARE(driver.studies()[1].study.answers.front().name, std::string("TObserved"));
  driver.window().book().SetSaved();
}

void CalculatorsTest::whatIsRefusedOrFailsLeavesNoStudy() {
  WindowDriver driver;
  driver.ChooseTask(ModeDistribution, kChiSquare);
  driver.Type(ControlOfField("DegreesOfFreedom"), QStringLiteral("0"));
  driver.Click(control::Accept);
  QVERIFY(!driver.TakeMessage().isEmpty());
  QVERIFY(driver.studies().empty());
  driver.Do({{ControlOfField("DegreesOfFreedom"), "1"},
             {Unknown(0), {}},
             {ControlOfField("CumP"), "0.04"},
             {control::Accept, {}}});
  QCOMPARE(driver.Text(ControlOfField("ObservedChiSquare")), QStringLiteral("--Error--"));
  QVERIFY(driver.studies().empty());
}

void CalculatorsTest::whatHasNoSolutionIsAStudyWithItsMessage() {
  WindowDriver driver;
  driver.ChooseTask(ModeDistribution, kChiSquare);
  driver.Do({{Unknown(2), {}},
             {ControlOfField("ObservedChiSquare"), "2"},
             {ControlOfField("DegreesOfFreedom"), "4"},
             {ControlOfField("CumP"), "0.95"},
             {control::Accept, {}}});
  QVERIFY(driver.TakeMessage().startsWith(QStringLiteral("There exists no non-negative Delta")));
  QCOMPARE(driver.studies().size(), std::size_t{1});
  const Study& study = driver.studies().front().study;
  QCOMPARE(study.messages.size(), std::size_t{1});
  QCOMPARE(study.answers.front().value, 0.0);
  driver.window().book().SetSaved();
}

void CalculatorsTest::theOptionsThatLeaveOutReportsLeaveOutTheStatement() {
  for (const OutputOptions& options : {OutputOptions{false, 4, 6}, OutputOptions{true, 3, 6}}) {
    WindowDriver driver;
    driver.window().SetOptions(options);
    ComputeT(driver);
    QCOMPARE(driver.studies().size(), std::size_t{1});
    QCOMPARE(driver.studies().front().study.workbook.items.size(), std::size_t{1});
    QVERIFY(SummaryOf(driver.studies().front().study) != nullptr);
    driver.window().book().SetSaved();
  }
}

// Its code is that of a family, whose own fields and committed values are not what was computed.
void CalculatorsTest::aStudyHoldsTheNumbersOfItsCalculatorAlone() {
  WindowDriver driver;
  driver.ChooseTask(ModeDistribution, kR2);
  driver.Do({{ControlOfField("R2Observed"), "0.375"}, {control::Accept, {}}});
  std::map<std::string, double> inputs;
  for (const WorkbookInput& input : driver.studies().front().inputs) {
    inputs[input.field] = input.value;
  }
  QCOMPARE(inputs["R2Observed"], 0.375);
  QCOMPARE(inputs["CumP"], driver.studies().front().study.answers.front().value);
  QCOMPARE(inputs["WhatToCompute"], 1.0);
  QCOMPARE(inputs.count("PowerGoal"), std::size_t{0});
  driver.window().book().SetSaved();
}

void CalculatorsTest::aStudyIsExportedInEveryFormat() {
  TemporaryFolder folder;
  WindowDriver driver;
  ComputeT(driver);
  const auto written = [&folder](const std::string& name) {
    QFile file(QString::fromStdString(folder.File(name)));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
  };
  for (const auto& kind : StudyExports()) {
    const std::string name = "study." + kind.extension.toStdString();
    const QString path = QString::fromStdString(folder.File(name));
    QCOMPARE(kind.write(driver.studies().front(), path, 6), QString());
    QVERIFY(!written(name).isEmpty());
  }
  QVERIFY(written("study.txt").contains(kStatement));
  QVERIFY(written("study.md").contains("0.764567"));
  QVERIFY(written("study.html").contains("Noncentral t Distribution"));
  QVERIFY(written("study.csv").contains("Observed T,2"));
  QVERIFY(written("study.json").contains("\"mode\": \"calc\""));
  driver.window().book().SetSaved();
}

void CalculatorsTest::aStudyIsCopiedDeletedAndMadeAnew() {
  WindowDriver driver;
  ComputeT(driver);
  driver.window().SelectItem(0, 0);
  driver.Settle();
  driver.window().pages().Copy();
  QVERIFY(QApplication::clipboard()->text().contains(QStringLiteral("Observed T\t2\n")));
  const std::string before = ExportJson(driver.studies().front().study);
  driver.window().SelectStudy(0);
  TriggerAction(driver.window(), QStringLiteral("Delete Study"));
  QVERIFY(driver.studies().empty());
  driver.Click(control::Accept);
  QCOMPARE(driver.studies().size(), std::size_t{1});
  QCOMPARE(ExportJson(driver.studies().front().study), before);
  driver.window().book().SetSaved();
}

void CalculatorsTest::aSavedStudyOpensWithItsAnswerMarked() {
  TemporaryFolder folder;
  const QString file = QString::fromStdString(folder.File("calculator.pawb"));
  WindowDriver driver;
  ComputeT(driver);
  QVERIFY(driver.window().SaveTo(file));
  const LoadedStudies loaded = LoadStudies(file);
  QCOMPARE(loaded.studies.size(), std::size_t{1});
  const std::vector<TableRow>& rows = SummaryOf(loaded.studies.front().study)->rows;
  QVERIFY(rows.back().answer);
  QVERIFY(rows.back().kind == CellKind::Probability);
  QVERIFY(rows.front().kind == CellKind::Input);
}

QTEST_MAIN(CalculatorsTest)
#include "Calculators_test.moc"
