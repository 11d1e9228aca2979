#pragma once

#include <QObject>
#include <QTextDocument>
#include <QTextObjectInterface>
#include <vector>

#include "desktop/StudyBook.h"

namespace poweranalysis {

// Charts inside a text document, drawn and never turned into pictures, so that they stay sharp in a
// file and on paper.
class ChartObject : public QObject, public QTextObjectInterface {
  Q_OBJECT
  Q_INTERFACES(QTextObjectInterface)

 public:
  static constexpr int kType = QTextFormat::UserObject + 1;
  static constexpr int kIndex = QTextFormat::UserProperty + 1;

  explicit ChartObject(QObject* parent) : QObject(parent) {}
  void Insert(QTextCursor& cursor, const Chart& chart);
  void SetDark(bool dark) { dark_ = dark; }

  QSizeF intrinsicSize(QTextDocument* document, int position, const QTextFormat& format) override;
  void drawObject(QPainter* painter,
                  const QRectF& rect,
                  QTextDocument* document,
                  int position,
                  const QTextFormat& format) override;

 private:
  std::vector<Chart> charts_;
  bool dark_ = false;
};

struct DocumentStyle {
  int digits = 6;
  bool dark = false;
};

// Fills a document with a study as it reads: headings, tables, reports, charts, note and messages.
void FillDocument(QTextDocument& document, const StudyRecord& record, const DocumentStyle& style);
// A report alone.
void FillReport(QTextDocument& document, const Report& report);

// Tables and paragraphs as HTML, for the clipboard and for documents.
QString TableHtml(const SummaryTable& table, int digits);

}  // namespace poweranalysis
