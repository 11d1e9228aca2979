#pragma once

#include <QAbstractTableModel>
#include <QTableView>

#include "host/Workbook.h"

namespace poweranalysis {

// A summary table as rows of titles and values. A missing value is empty; the tool tip has all
// digits.
class SummaryTableModel : public QAbstractTableModel {
  Q_OBJECT

 public:
  explicit SummaryTableModel(QObject* parent = nullptr) : QAbstractTableModel(parent) {}
  void Show(const SummaryTable& table);
  void SetDigits(int digits);
  const SummaryTable& table() const { return table_; }

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
  QVariant headerData(int section,
                      Qt::Orientation orientation,
                      int role = Qt::DisplayRole) const override;

 private:
  QString CellText(const QModelIndex& index) const;
  QString FullText(const QModelIndex& index) const;
  bool IsSeparator(int row) const;

  SummaryTable table_;
  int digits_ = 6;
};

// The view of it: the selection is copied as tab-separated text and as HTML at once.
class SummaryTableView : public QTableView {
  Q_OBJECT

 public:
  explicit SummaryTableView(QWidget* parent = nullptr);
  // All of the table when nothing, or one cell, is selected.
  void Copy() const;
  void FitColumns();

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  bool event(QEvent* event) override;
};

}  // namespace poweranalysis
