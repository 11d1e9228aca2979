#include "desktop/CellTable.h"

#include <QFocusEvent>
#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QScrollArea>
#include <algorithm>

#include "desktop/Strings.h"

namespace poweranalysis {

namespace {

std::vector<QLabel*> Labels(const std::vector<std::string>& titles) {
  std::vector<QLabel*> labels;
  for (const std::string& title : titles) {
    labels.push_back(new QLabel(ToText(title)));
  }
  return labels;
}

// At the end of the text in the direction of the key the key leaves the cell.
bool LeavesAtLeft(const QLineEdit& cell) {
  return cell.cursorPosition() == 0 || cell.selectedText() == cell.text();
}
bool LeavesAtRight(const QLineEdit& cell) {
  return cell.cursorPosition() == cell.text().size() || cell.selectedText() == cell.text();
}

}  // namespace

CellTable::CellTable(const std::vector<std::string>& rowTitles,
                     const std::vector<std::string>& columnTitles)
    : grid_(new QGridLayout(this)),
      rowTitles_(Labels(rowTitles)),
      columnTitles_(Labels(columnTitles)) {
  constexpr int kSpace = 4;
  grid_->setContentsMargins(0, 0, 0, 0);
  grid_->setSpacing(kSpace);
  for (std::size_t row = 0; row < rowTitles_.size(); ++row) {
    grid_->addWidget(rowTitles_[row], static_cast<int>(row) + 1, 0);
  }
  for (std::size_t column = 0; column < columnTitles_.size(); ++column) {
    grid_->addWidget(columnTitles_[column], 0, static_cast<int>(column) + 1, Qt::AlignHCenter);
  }
}

void CellTable::Add(int row, int column, QLineEdit& cell) {
  constexpr int kLetters = 8;
  cell.setMinimumWidth(fontMetrics().averageCharWidth() * kLetters);
  cell.installEventFilter(this);
  grid_->addWidget(&cell, row + 1, column + 1);
  places_.push_back({row, column, &cell});
}

void CellTable::ShowTitles() {
  const auto isShown = [this](auto belongs) {
    return std::any_of(places_.begin(), places_.end(), [&](const Place& place) {
      return belongs(place) && !place.cell->isHidden();
    });
  };
  for (std::size_t i = 0; i < rowTitles_.size(); ++i) {
    rowTitles_[i]->setVisible(
        isShown([i](const Place& place) { return place.row == static_cast<int>(i); }));
  }
  for (std::size_t i = 0; i < columnTitles_.size(); ++i) {
    columnTitles_[i]->setVisible(
        isShown([i](const Place& place) { return place.column == static_cast<int>(i); }));
  }
}

const CellTable::Place* CellTable::Find(const QObject* cell) const {
  const auto found = std::find_if(places_.begin(), places_.end(),
                                  [cell](const Place& place) { return place.cell == cell; });
  return found == places_.end() ? nullptr : &*found;
}

bool CellTable::eventFilter(QObject* watched, QEvent* event) {
  const Place* place = Find(watched);
  if (place == nullptr) {
    return false;
  }
  switch (event->type()) {
    case QEvent::FocusIn: {
      const Qt::FocusReason reason = static_cast<QFocusEvent*>(event)->reason();
      const bool byKey = reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason;
      entered_ = byKey || reason == Qt::OtherFocusReason ? place->cell : nullptr;
      return false;
    }
    case QEvent::MouseButtonPress:
      entered_ = nullptr;
      return false;
    case QEvent::KeyPress: {
      auto& key = static_cast<QKeyEvent&>(*event);
      return TakesClipboardKey(*place->cell, key) ||
             ((key.modifiers() & ~Qt::KeypadModifier) == 0 && TakesKey(*place, key.key()));
    }
    default:
      return false;
  }
}

bool CellTable::TakesClipboardKey(QLineEdit& cell, QKeyEvent& event) {
  if (event.matches(QKeySequence::Paste)) {
    Q_EMIT PasteWanted();
    return true;
  }
  if (event.matches(QKeySequence::Copy)) {
    if (cell.hasSelectedText() && entered_ != &cell) {
      return false;
    }
    Q_EMIT CopyWanted();
    return true;
  }
  const bool isModifier = event.key() == Qt::Key_Control || event.key() == Qt::Key_Shift ||
                          event.key() == Qt::Key_Alt || event.key() == Qt::Key_Meta;
  entered_ = isModifier ? entered_ : nullptr;
  return false;
}

bool CellTable::TakesKey(const Place& place, int key) {
  switch (key) {
    case Qt::Key_Up:
      GoTo(place.row - 1, place.column);
      return true;
    case Qt::Key_Down:
      GoTo(place.row + 1, place.column);
      return true;
    case Qt::Key_Left:
      return LeavesAtLeft(*place.cell) && GoTo(place.row, place.column - 1);
    case Qt::Key_Right:
      return LeavesAtRight(*place.cell) && GoTo(place.row, place.column + 1);
    case Qt::Key_Return:
    case Qt::Key_Enter:
      GoOn(place);
      return true;
    default:
      return false;
  }
}

// Down the column, then from the top of the next; from the last cell to what stands behind the
// table.
void CellTable::GoOn(const Place& place) {
  if (!GoTo(place.row + 1, place.column) && !GoTo(0, place.column + 1)) {
    place.cell->setFocus();
    focusNextChild();
  }
}

bool CellTable::GoTo(int row, int column) {
  for (const Place& place : places_) {
    if (place.row == row && place.column == column && !place.cell->isHidden()) {
      place.cell->setFocus(Qt::TabFocusReason);
      place.cell->selectAll();
      for (QWidget* above = parentWidget(); above != nullptr; above = above->parentWidget()) {
        if (auto* scroll = qobject_cast<QScrollArea*>(above)) {
          scroll->ensureWidgetVisible(place.cell);
        }
      }
      return true;
    }
  }
  return false;
}

}  // namespace poweranalysis
