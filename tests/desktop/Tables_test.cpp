#include <QFont>
#include <QTest>

#include "desktop/StudyDocument.h"
#include "desktop/SummaryTableModel.h"

using namespace poweranalysis;

class TablesTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void everyAnswerIsBold();
  void numbersShowByWhatTheyAre();
};

namespace {

SummaryTable Table() {
  SummaryTable table;
  table.columns = {"Value"};
  table.rows = {{"Given", 0, {1234567.891}, CellKind::Input},
                {"First", 0, {35}, CellKind::Computed, true},
                {"Between", 0, {0.9999999}, CellKind::Probability},
                {"Last", 0, {63}, CellKind::Computed, true},
                {"Behind", 0, {1234567.891}}};
  return table;
}

}  // namespace

void TablesTest::everyAnswerIsBold() {
  SummaryTableModel model;
  model.Show(Table());
  const QList<bool> bold = {false, true, false, true, false};
  for (int row = 0; row < model.rowCount(); ++row) {
    for (int column = 0; column < 2; ++column) {
      const QVariant font = model.index(row, column).data(Qt::FontRole);
      QCOMPARE(font.isValid() && font.value<QFont>().bold(), bold[row]);
    }
  }
  const QString html = TableHtml(Table(), 6);
  QVERIFY(html.contains(QStringLiteral("<b>First</b>")));
  QVERIFY(html.contains(QStringLiteral("<b>35</b>")));
  QVERIFY(html.contains(QStringLiteral("<b>63</b>")));
  QVERIFY(!html.contains(QStringLiteral("<b>Given</b>")));
}

void TablesTest::numbersShowByWhatTheyAre() {
  SummaryTableModel model;
  model.Show(Table());
  QCOMPARE(model.index(0, 1).data().toString(), QStringLiteral("1234567.891"));
  QCOMPARE(model.index(2, 1).data().toString(), QStringLiteral(">0.999999"));
  QCOMPARE(model.index(4, 1).data().toString(), QStringLiteral("1.23457e+06"));
  model.SetDigits(3);
  QCOMPARE(model.index(0, 1).data().toString(), QStringLiteral("1234567.891"));
  QCOMPARE(model.index(2, 1).data().toString(), QStringLiteral(">0.999"));
}

QTEST_MAIN(TablesTest)
#include "Tables_test.moc"
