#include "desktop/StudyDocument.h"

#include <QAbstractTextDocumentLayout>
#include <QLocale>
#include <QPaintDevice>
#include <QPainter>
#include <QTextCursor>

#include "desktop/ChartPainter.h"
#include "desktop/Strings.h"
#include "exporters/Study.h"
#include "host/NumberText.h"

namespace poweranalysis {

namespace {

constexpr double kPixelsInInch = 96;
constexpr ChartSize kChartSize = {620, 430};

QString Escaped(const std::string& text) { return ToText(text).toHtmlEscaped(); }

QString ReportHtml(const Report& report) {
  QString html;
  bool first = true;
  for (const std::string& paragraph : ParagraphsOf(report)) {
    html += first ? QStringLiteral("<h3>%1</h3>").arg(Escaped(paragraph))
                  : QStringLiteral("<p style=\"margin-bottom:8px\">%1</p>").arg(Escaped(paragraph));
    first = false;
  }
  return html;
}

QString HeadingHtml(const StudyRecord& record) {
  return QStringLiteral("<h2>%1</h2><p><i>%2</i></p>")
      .arg(record.name.toHtmlEscaped(),
           QLocale::c().toString(record.when, QStringLiteral("yyyy-MM-dd HH:mm:ss")));
}

QString NoteHtml(const std::vector<QString>& note) {
  if (note.empty()) {
    return {};
  }
  QString html = QStringLiteral("<p><b>%1</b></p><ul>").arg(QObject::tr("Note"));
  for (const QString& line : note) {
    html += QStringLiteral("<li>%1</li>").arg(line.toHtmlEscaped());
  }
  return html + QStringLiteral("</ul>");
}

QString MessagesHtml(const std::vector<Message>& messages) {
  QString html;
  for (const Message& message : messages) {
    html += QStringLiteral("<p><b>%1</b> %2</p>")
                .arg(QObject::tr("Message:"), Escaped(ShownMessage(message)));
  }
  return html;
}

}  // namespace

void ChartObject::Insert(QTextCursor& cursor, const Chart& chart) {
  QTextCharFormat format;
  format.setObjectType(kType);
  format.setProperty(kIndex, static_cast<int>(charts_.size()));
  charts_.push_back(chart);
  cursor.insertText(QString(QChar::ObjectReplacementCharacter), format);
}

QSizeF ChartObject::intrinsicSize(QTextDocument* document, int, const QTextFormat&) {
  const QPaintDevice* device = document->documentLayout()->paintDevice();
  const double scale = device == nullptr ? 1 : device->logicalDpiY() / kPixelsInInch;
  QSizeF size(kChartSize.width * scale, kChartSize.height * scale);
  const double room = document->textWidth() - 2 * document->documentMargin();
  if (room > 0 && size.width() > room) {
    size *= room / size.width();
  }
  return size;
}

void ChartObject::drawObject(
    QPainter* painter, const QRectF& rect, QTextDocument*, int, const QTextFormat& format) {
  const DisplayList list =
      LayOutChart(charts_[static_cast<std::size_t>(format.intProperty(kIndex))], kChartSize);
  painter->save();
  painter->translate(rect.topLeft());
  painter->scale(rect.width() / list.width, rect.height() / list.height);
  PaintChart(*painter, list, dark_ ? DarkTheme() : LightTheme());
  painter->restore();
}

QString TableHtml(const SummaryTable& table, int digits) {
  QString html;
  for (const std::string& heading : table.headings) {
    html += QStringLiteral("<div>%1</div>").arg(Escaped(heading));
  }
  html += QStringLiteral("<table cellpadding=\"3\" cellspacing=\"0\"><tr><th></th>");
  for (const std::string& column : table.columns) {
    html += QStringLiteral("<th align=\"right\">%1</th>").arg(Escaped(ColumnTitleLine(column)));
  }
  html += QStringLiteral("</tr>");
  for (const TableRow& row : table.rows) {
    const QString cell = row.answer ? QStringLiteral("<b>%1</b>") : QStringLiteral("%1");
    html +=
        QStringLiteral("<tr><td>%1%2</td>")
            .arg(QStringLiteral("&nbsp;").repeated(row.indent), cell.arg(Escaped(ShownTitle(row))));
    for (const double value : row.values) {
      html += QStringLiteral("<td align=\"right\">%1</td>")
                  .arg(cell.arg(Escaped(FormatCell(row.kind, value, digits))));
    }
    html += QStringLiteral("</tr>");
  }
  return html + QStringLiteral("</table>");
}

void FillReport(QTextDocument& document, const Report& report) {
  document.setHtml(ReportHtml(report));
}

void FillDocument(QTextDocument& document, const StudyRecord& record, const DocumentStyle& style) {
  document.clear();
  auto* charts = new ChartObject(&document);
  charts->SetDark(style.dark);
  document.documentLayout()->registerHandler(ChartObject::kType, charts);
  QTextCursor cursor(&document);
  cursor.insertHtml(HeadingHtml(record));
  bool noteWritten = false;
  for (const WorkbookItem& item : record.study.workbook.items) {
    cursor.insertBlock(QTextBlockFormat(), QTextCharFormat());
    if (const auto* table = std::get_if<SummaryTable>(&item)) {
      cursor.insertHtml(TableHtml(*table, style.digits) + NoteHtml(record.note));
      noteWritten = true;
    } else if (const auto* report = std::get_if<Report>(&item)) {
      cursor.insertHtml(ReportHtml(*report));
    } else {
      charts->Insert(cursor, std::get<Chart>(item));
    }
  }
  cursor.insertBlock(QTextBlockFormat(), QTextCharFormat());
  if (!noteWritten) {
    cursor.insertHtml(NoteHtml(record.note));
  }
  cursor.insertHtml(MessagesHtml(record.study.messages));
}

}  // namespace poweranalysis
