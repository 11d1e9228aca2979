#pragma once

#include <QStackedWidget>

#include "desktop/StudyBook.h"

class QLabel;
class QTextBrowser;
class QToolButton;

namespace poweranalysis {

class ChartView;
class SummaryTableModel;
class SummaryTableView;

// The page of the chosen result: a study as a whole, a table, a report or a chart.
class ResultPages : public QStackedWidget {
  Q_OBJECT

 public:
  explicit ResultPages(QWidget* parent = nullptr);

  void ShowWelcome();
  void ShowStudy(const StudyRecord& record);
  void ShowItem(const StudyRecord& record, std::size_t item);
  void SetDigits(int digits);
  void SetDark(bool dark);
  void SetTextScale(double scale);
  // Copies what is chosen on the page.
  void Copy();
  // The chart on the page; null when another page shows.
  const Chart* ShownChart() const;

  SummaryTableView* tableView() const { return table_; }
  ChartView* chartView() const { return chart_; }
  QTextBrowser* reportView() const { return report_; }
  QTextBrowser* studyView() const { return study_; }

 Q_SIGNALS:
  void ChartExportWanted();

 private:
  QWidget* BuildTablePage();
  QWidget* BuildChartPage();
  void StyleTitle(QLabel& label) const;

  QTextBrowser* study_;
  QTextBrowser* report_;
  QWidget* tablePage_ = nullptr;
  QLabel* tableTitle_ = nullptr;
  QLabel* note_ = nullptr;
  SummaryTableModel* model_ = nullptr;
  SummaryTableView* table_ = nullptr;
  QWidget* chartPage_ = nullptr;
  ChartView* chart_ = nullptr;
  QLabel* readOut_ = nullptr;
  QToolButton* reset_ = nullptr;
  int digits_ = 6;
  bool dark_ = false;
};

}  // namespace poweranalysis
