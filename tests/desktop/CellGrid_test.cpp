#include <QClipboard>

#include "WindowTest.h"
#include "desktop/StudyExport.h"
#include "dialogs/Controls.h"
#include "dialogs/Grids.h"
#include "frame/TaskCatalogue.h"

using namespace poweranalysis;

// The tables of cell means, by keyboard and clipboard.
class CellGridTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() { PrepareApplication(); }
  void theTableShowsTheRowsAndColumnsOfThePage();
  void arrowsTabAndEnterGoFromCellToCell();
  void aTypedCellMovesTheMeasuresAtOnce();
  void aStandardDeviationBelowOneCanBeTyped();
  void aStandardDeviationIsSentBeforeTheButtonThatUsesIt();
  void anUnreadableCellRefusesOkButNotPaste();
  void anUnreadableStandardDeviationIsNotReplacedUnseen();
  void pasteAnywhereFillsTheTable();
  void copyTakesTheTableUnlessLettersAreSelected();
  void escapeGoesBackToThePage();
  void okPutsTheMeasureIntoThePage();
  void createMakesAStudyOfItsOwn();
  void createdCellsAreExportedAsTheSheetThatTheGridOpens();
  void undoTakesTypingBackInACell();
};

namespace {

const int kSigma = ControlOfField("Sigma");

// The grid of a family above its page.
class GridDriver : public WindowDriver {
 public:
  explicit GridDriver(Family family, int mode = ModePower) : grid_(*FindGrid(family)) {
    ChooseTask(mode, FindTask(mode, TableOf(family).code));
    Click(ControlGrid);
    window().activateWindow();
    Settle();
  }
  ~GridDriver() { window().book().SetSaved(); }

  int At(int row, int column = 0) const { return grid_.ControlOfCell(row, column); }
  QLineEdit* Cell(int row, int column = 0) { return Find<QLineEdit>(At(row, column)); }
  bool IsOpen() const { return resource() == grid_.resource; }
  void Key(int key, Qt::KeyboardModifiers modifiers = {}) {
    QTest::keyClick(window().focusWidget(), static_cast<Qt::Key>(key), modifiers);
    Settle();
  }
  QWidget* Focused() { return window().focusWidget(); }

 private:
  const GridRow& grid_;
};

}  // namespace

void CellGridTest::theTableShowsTheRowsAndColumnsOfThePage() {
  GridDriver driver(Family::AV2);
  QVERIFY(driver.IsOpen());
  const auto rows = static_cast<int>(Block()->AV2.GridScratch.Rows);
  const auto columns = static_cast<int>(Block()->AV2.GridScratch.Columns);
  QVERIFY(driver.Cell(rows - 1, columns - 1)->isVisible());
  QVERIFY(!driver.Cell(rows, 0)->isVisible());
  QVERIFY(!driver.Cell(0, columns)->isVisible());
  QVERIFY(!driver.Cell(0, 0)->accessibleName().isEmpty());
}

void CellGridTest::arrowsTabAndEnterGoFromCellToCell() {
  GridDriver driver(Family::PC);
  driver.Cell(0, 0)->setFocus();
  driver.Key(Qt::Key_Down);
  QCOMPARE(driver.Focused(), driver.Cell(1, 0));
  driver.Key(Qt::Key_Right);
  QCOMPARE(driver.Focused(), driver.Cell(1, 1));
  driver.Key(Qt::Key_Up);
  QCOMPARE(driver.Focused(), driver.Cell(0, 1));
  driver.Key(Qt::Key_Left);
  QCOMPARE(driver.Focused(), driver.Cell(0, 0));
  driver.Key(Qt::Key_Tab);
  QCOMPARE(driver.Focused(), driver.Cell(0, 1));
  driver.Key(Qt::Key_Return);
  QCOMPARE(driver.Focused(), driver.Cell(1, 1));
  QVERIFY(driver.IsOpen());
}

void CellGridTest::aTypedCellMovesTheMeasuresAtOnce() {
  GridDriver driver(Family::AV1);
  const QString before = driver.Text(ControlGridMeasures);
  driver.Type(driver.At(0), QStringLiteral("42"));
  QVERIFY(driver.Text(ControlGridMeasures) != before);
}

void CellGridTest::aStandardDeviationBelowOneCanBeTyped() {
  GridDriver driver(Family::AV1);
  driver.Type(kSigma, QStringLiteral("0.5"));
  QCOMPARE(driver.Text(kSigma), QStringLiteral("0.5"));
  driver.Key(Qt::Key_Tab);
  QCOMPARE(Block()->AV1.GridScratch.Sigma, .5);
  driver.Type(kSigma, QStringLiteral("0"));
  driver.Key(Qt::Key_Tab);
  QCOMPARE(driver.Text(kSigma), QStringLiteral("0.1"));
}

void CellGridTest::aStandardDeviationIsSentBeforeTheButtonThatUsesIt() {
  GridDriver driver(Family::AV1);
  driver.Type(kSigma, QStringLiteral("0.25"));
  driver.Key(Qt::Key_Return);
  QVERIFY(!driver.IsOpen());
  QCOMPARE(Block()->AV1.Working.Sigma, .25);
}

void CellGridTest::anUnreadableCellRefusesOkButNotPaste() {
  GridDriver driver(Family::AV1);
  driver.Type(driver.At(1), QStringLiteral("x"));
  for (const int button : {control::Accept, ControlGridCreate, ControlGridCopy}) {
    driver.Click(button);
    QVERIFY(driver.TakeMessage().contains(QStringLiteral("is not a number")));
    QVERIFY(driver.IsOpen());
  }
  QGuiApplication::clipboard()->setText(QStringLiteral("1\n2\n3\n"));
  driver.Click(ControlGridPaste);
  QVERIFY(driver.TakeMessage().isEmpty());
  QCOMPARE(driver.Text(driver.At(1)), QStringLiteral("2"));
}

void CellGridTest::anUnreadableStandardDeviationIsNotReplacedUnseen() {
  GridDriver driver(Family::AV1);
  driver.Type(kSigma, QStringLiteral("x"));
  driver.Click(control::Accept);
  QVERIFY(driver.TakeMessage().contains(QStringLiteral("is not a number")));
  QVERIFY(driver.IsOpen());
  QCOMPARE(driver.Text(kSigma), QStringLiteral("x"));
}

void CellGridTest::pasteAnywhereFillsTheTable() {
  GridDriver driver(Family::AV2);
  QGuiApplication::clipboard()->setText(
      QString::fromUtf8("1\t2\t3\n4\t\xe2\x88\x92"
                        "5\t6\n"));
  driver.Cell(1, 1)->setFocus();
  driver.Key(Qt::Key_V, Qt::ControlModifier);
  QVERIFY(driver.TakeMessage().isEmpty());
  QCOMPARE(driver.Text(driver.At(1, 1)), QStringLiteral("-5"));
  QVERIFY(driver.Cell(1, 2)->isVisible());
  QVERIFY(!driver.Cell(2, 0)->isVisible());
}

void CellGridTest::copyTakesTheTableUnlessLettersAreSelected() {
  GridDriver driver(Family::AV1);
  QGuiApplication::clipboard()->setText(QStringLiteral("7\n8\n"));
  driver.Click(ControlGridPaste);
  QGuiApplication::clipboard()->clear();
  driver.Cell(1)->setFocus(Qt::TabFocusReason);
  driver.Key(Qt::Key_Up);
  driver.Key(Qt::Key_C, Qt::ControlModifier);
  QVERIFY(QGuiApplication::clipboard()->text().contains(QLatin1Char('8')));
  driver.Key(Qt::Key_End);
  driver.Key(Qt::Key_Home, Qt::ShiftModifier);
  driver.Key(Qt::Key_C, Qt::ControlModifier);
  QCOMPARE(QGuiApplication::clipboard()->text(), QStringLiteral("7"));
}

void CellGridTest::escapeGoesBackToThePage() {
  GridDriver driver(Family::AV1);
  driver.Type(driver.At(0), QStringLiteral("99"));
  driver.Key(Qt::Key_Escape);
  QVERIFY(!driver.IsOpen());
  QVERIFY(driver.form().isVisible());
  QCOMPARE(driver.window().focusWidget(), driver.form().WidgetOf(ControlGrid));
}

void CellGridTest::okPutsTheMeasureIntoThePage() {
  GridDriver driver(Family::AV1);
  driver.Type(driver.At(0), QStringLiteral("99"));
  const QString shown = driver.Text(ControlGridMeasures);
  driver.Click(control::Accept);
  QVERIFY(!driver.IsOpen());
  QCOMPARE(driver.Text(ControlOfField("RMSSE")), shown);
}

void CellGridTest::createMakesAStudyOfItsOwn() {
  GridDriver driver(Family::AV1, ModeSampleSize);
  driver.Click(ControlGridCreate);
  QCOMPARE(driver.studies().size(), std::size_t{1});
  const StudyRecord& record = driver.studies().front();
  QVERIFY(IsCellMeans(*SummaryOf(record.study)));
  // No size is in it, and nothing was computed from the fields of the page.
  QVERIFY(record.note.empty());
  QVERIFY(record.inputs.empty());
}

void CellGridTest::createdCellsAreExportedAsTheSheetThatTheGridOpens() {
  const testing::TemporaryFolder folder;
  const QString path = QString::fromStdString(folder.path() + "/cells.zlv");
  GridDriver driver(Family::AV2);
  driver.Type(driver.At(1, 1), QStringLiteral("7.25"));
  driver.Click(ControlGridCreate);
  const StudyRecord& cells = driver.studies().front();
  QCOMPARE(ExportsOf(cells).back().extension, QStringLiteral("ZLV"));
  QCOMPARE(WriteByExtension(ExportsOf(cells), cells, path, 6), QString());
  driver.Type(driver.At(1, 1), QStringLiteral("1"));
  driver.window().host().chooseFile = [&path](const DesktopHost::FileQuestion&) {
    return std::optional<std::string>(path.toStdString());
  };
  driver.Click(ControlGridOpen);
  QCOMPARE(driver.Text(driver.At(1, 1)), QStringLiteral("7.25"));
  driver.Click(control::Accept);
  driver.Click(control::Accept);
  driver.Click(control::Accept);
  driver.TakeMessage();
  const StudyRecord& power = driver.studies().back();
  QCOMPARE(ExportsOf(power).size(), StudyExports().size());
}

void CellGridTest::undoTakesTypingBackInACell() {
  GridDriver driver(Family::AV1);
  const QString before = driver.Text(driver.At(0));
  driver.Type(driver.At(0), QStringLiteral("5"));
  driver.Cell(0)->undo();
  driver.Cell(0)->undo();
  QCOMPARE(driver.Text(driver.At(0)), before);
}

QTEST_MAIN(CellGridTest)
#include "CellGrid_test.moc"
