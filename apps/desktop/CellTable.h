#pragma once

#include <QWidget>
#include <string>
#include <vector>

class QGridLayout;
class QLabel;
class QLineEdit;

namespace poweranalysis {

// The cells of a page as a table. Tab, Enter and the arrow keys go from cell to cell as in a
// spreadsheet. The clipboard belongs to the table as a whole, but for letters that the user has
// selected in one cell.
class CellTable : public QWidget {
  Q_OBJECT

 public:
  CellTable(const std::vector<std::string>& rowTitles,
            const std::vector<std::string>& columnTitles);

  void Add(int row, int column, QLineEdit& cell);
  // Titles stand where a cell does that is shown.
  void ShowTitles();

 Q_SIGNALS:
  void PasteWanted();
  void CopyWanted();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  struct Place {
    int row = 0;
    int column = 0;
    QLineEdit* cell = nullptr;
  };

  bool TakesKey(const Place& place, int key);
  bool TakesClipboardKey(QLineEdit& cell, class QKeyEvent& event);
  bool GoTo(int row, int column);
  void GoOn(const Place& place);
  const Place* Find(const QObject* cell) const;

  QGridLayout* grid_;
  std::vector<QLabel*> rowTitles_;
  std::vector<QLabel*> columnTitles_;
  std::vector<Place> places_;
  const QLineEdit* entered_ = nullptr;  // whose text is selected because the focus came to it
};

}  // namespace poweranalysis
