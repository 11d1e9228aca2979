#include "desktop/SummaryTableModel.h"

#include <QApplication>
#include <QClipboard>
#include <QFont>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMimeData>
#include <algorithm>
#include <set>

#include "desktop/Strings.h"
#include "exporters/Study.h"
#include "host/NumberText.h"

namespace poweranalysis {

void SummaryTableModel::Show(const SummaryTable& table) {
  beginResetModel();
  table_ = table;
  endResetModel();
}

void SummaryTableModel::SetDigits(int digits) {
  beginResetModel();
  digits_ = digits;
  endResetModel();
}

int SummaryTableModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(table_.rows.size());
}

int SummaryTableModel::columnCount(const QModelIndex& parent) const {
  std::size_t columns = table_.columns.size();
  for (const TableRow& row : table_.rows) {
    columns = std::max(columns, row.values.size());
  }
  return parent.isValid() ? 0 : static_cast<int>(columns) + 1;
}

bool SummaryTableModel::IsSeparator(int row) const {
  const TableRow& line = table_.rows[static_cast<std::size_t>(row)];
  return ShownTitle(line).empty() && std::all_of(line.values.begin(), line.values.end(), IsMissing);
}

QString SummaryTableModel::CellText(const QModelIndex& index) const {
  const TableRow& row = table_.rows[static_cast<std::size_t>(index.row())];
  if (index.column() == 0) {
    return QString(row.indent, QLatin1Char(' ')) + ToText(ShownTitle(row));
  }
  const auto column = static_cast<std::size_t>(index.column() - 1);
  return column < row.values.size() ? ToText(FormatCell(row.kind, row.values[column], digits_))
                                    : QString();
}

QString SummaryTableModel::FullText(const QModelIndex& index) const {
  const TableRow& row = table_.rows[static_cast<std::size_t>(index.row())];
  const auto column = static_cast<std::size_t>(index.column() - 1);
  if (index.column() == 0 || column >= row.values.size() || IsMissing(row.values[column])) {
    return CellText(index);
  }
  return ToText(FormatShortest(row.values[column] + 0.0));
}

QVariant SummaryTableModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) {
    return {};
  }
  switch (role) {
    case Qt::DisplayRole:
      return CellText(index);
    case Qt::ToolTipRole:
    case Qt::StatusTipRole:
      return FullText(index);
    case Qt::AccessibleTextRole:
      return IsSeparator(index.row()) ? tr("(separator)") : CellText(index);
    case Qt::TextAlignmentRole:
      return QVariant::fromValue((index.column() == 0 ? Qt::AlignLeft : Qt::AlignRight) |
                                 Qt::AlignVCenter);
    case Qt::FontRole:
      if (table_.rows[static_cast<std::size_t>(index.row())].answer) {
        QFont bold = QApplication::font();
        bold.setBold(true);
        return bold;
      }
      return {};
    default:
      return {};
  }
}

QVariant SummaryTableModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation == Qt::Vertical) {
    return role == Qt::DisplayRole ? QVariant(section + 1) : QVariant();
  }
  if (role == Qt::TextAlignmentRole) {
    return QVariant::fromValue((section == 0 ? Qt::AlignLeft : Qt::AlignRight) | Qt::AlignVCenter);
  }
  if (role != Qt::DisplayRole) {
    return {};
  }
  if (section == 0) {
    return tr("Parameter");
  }
  const auto column = static_cast<std::size_t>(section - 1);
  return column < table_.columns.size() ? ToText(table_.columns[column]) : QString();
}

SummaryTableView::SummaryTableView(QWidget* parent) : QTableView(parent) {
  setSelectionMode(QAbstractItemView::ExtendedSelection);
  setEditTriggers(QAbstractItemView::NoEditTriggers);
  setAlternatingRowColors(true);
  setWordWrap(false);
  setShowGrid(false);
  setTabKeyNavigation(false);
  verticalHeader()->hide();
  horizontalHeader()->setHighlightSections(false);
  horizontalHeader()->setMinimumSectionSize(60);
}

void SummaryTableView::FitColumns() {
  resizeColumnsToContents();
  resizeRowsToContents();
  const int space = fontMetrics().averageCharWidth() * 3;
  for (int column = 0; model() != nullptr && column < model()->columnCount(); ++column) {
    setColumnWidth(column, columnWidth(column) + space);
  }
}

bool SummaryTableView::event(QEvent* event) {
  if (event->type() == QEvent::FontChange) {
    FitColumns();
  }
  return QTableView::event(event);
}

void SummaryTableView::Copy() const {
  if (model() == nullptr) {
    return;
  }
  std::set<int> rows;
  std::set<int> columns;
  const QModelIndexList selected = selectionModel()->selectedIndexes();
  for (const QModelIndex& index : selected) {
    rows.insert(index.row());
    columns.insert(index.column());
  }
  const bool all = selected.size() <= 1;
  if (all) {
    for (int row = 0; row < model()->rowCount(); ++row) {
      rows.insert(row);
    }
    for (int column = 0; column < model()->columnCount(); ++column) {
      columns.insert(column);
    }
  }
  QString text;
  QString html = QStringLiteral("<table>");
  const auto addRow = [&](const char* tag, const auto& cell) {
    QStringList cells;
    html += QStringLiteral("<tr>");
    for (const int column : columns) {
      const QString value = cell(column);
      cells += value;
      html +=
          QStringLiteral("<%1%2>%3</%1>")
              .arg(QLatin1String(tag), column == 0 ? QString() : QStringLiteral(" align=\"right\""),
                   value.toHtmlEscaped());
    }
    html += QStringLiteral("</tr>");
    text += cells.join(QLatin1Char('\t')) + QLatin1Char('\n');
  };
  if (all) {
    addRow("th", [this](int column) {
      return column == 0 ? QString() : model()->headerData(column, Qt::Horizontal).toString();
    });
  }
  for (const int row : rows) {
    addRow("td", [this, row](int column) { return model()->index(row, column).data().toString(); });
  }
  auto* copied = new QMimeData;
  copied->setText(text);
  copied->setHtml(html + QStringLiteral("</table>"));
  QApplication::clipboard()->setMimeData(copied);
}

void SummaryTableView::keyPressEvent(QKeyEvent* event) {
  if (event->matches(QKeySequence::Copy)) {
    Copy();
    event->accept();
    return;
  }
  QTableView::keyPressEvent(event);
}

}  // namespace poweranalysis
