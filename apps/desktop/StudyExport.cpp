#include "desktop/StudyExport.h"

#include <QBuffer>
#include <QFile>
#include <QImage>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>

#include "desktop/ChartPainter.h"
#include "desktop/Strings.h"
#include "desktop/StudyDocument.h"
#include "desktop/WorkbookIo.h"
#include "exporters/Exporters.h"
#include "host/AtomicFile.h"
#include "host/SvgPainter.h"
#include "office/Odt.h"
#include "office/Xlsx.h"

namespace poweranalysis {

namespace {

constexpr int kPixelsInInch = 96;
constexpr int kPrintResolution = 1200;

QByteArray Bytes(const std::string& text) {
  return QByteArray(text.data(), static_cast<qsizetype>(text.size()));
}

// Bytes made in memory by a writer of PDF.
template <class Paint>
QString WritePdf(const QString& path, const QString& title, Paint paint) {
  QByteArray bytes;
  QBuffer buffer(&bytes);
  buffer.open(QIODevice::WriteOnly);
  {
    QPdfWriter writer(&buffer);
    writer.setTitle(title);
    writer.setCreator(QStringLiteral("PowerAnalysis"));
    paint(writer);
  }
  return WriteFile(path, bytes);
}

QString WriteStudyPdf(const StudyRecord& record, const QString& path, int digits) {
  return WritePdf(path, record.name,
                  [&](QPdfWriter& writer) { PrintStudy(record, writer, digits); });
}

QString WriteChartPdf(const Chart& chart, const QString& path, int) {
  const DisplayList list = LayOutChart(chart);
  return WritePdf(path, ToText(list.title), [&](QPdfWriter& writer) {
    constexpr double kPointsInInch = 72;
    writer.setResolution(kPrintResolution);
    writer.setPageSize(QPageSize(QSizeF(list.width, list.height) * kPointsInInch / kPixelsInInch,
                                 QPageSize::Point));
    writer.setPageMargins(QMarginsF());
    QPainter painter(&writer);
    painter.scale(static_cast<double>(kPrintResolution) / kPixelsInInch,
                  static_cast<double>(kPrintResolution) / kPixelsInInch);
    PaintChart(painter, list);
  });
}

QString WriteChartPng(const Chart& chart, const QString& path, int) {
  constexpr int kScale = 2;  // sharp on dense screens
  const DisplayList list = LayOutChart(chart);
  QImage image(QSize(static_cast<int>(list.width), static_cast<int>(list.height)) * kScale,
               QImage::Format_RGB32);
  image.fill(Qt::white);
  QPainter painter(&image);
  painter.scale(kScale, kScale);
  PaintChart(painter, list);
  painter.end();
  QByteArray bytes;
  QBuffer buffer(&bytes);
  buffer.open(QIODevice::WriteOnly);
  image.save(&buffer, "PNG");
  return WriteFile(path, bytes);
}

QString WriteChartSvg(const Chart& chart, const QString& path, int) {
  return WriteFile(path, Bytes(PaintSvg(LayOutChart(chart))));
}

QString WriteChartCsv(const Chart& chart, const QString& path, int) {
  return WriteFile(path, Bytes(CsvOf(chart)));
}

ExportKind<StudyRecord> TextKind(const QString& name,
                                 const QString& extension,
                                 std::string (*make)(const Study&)) {
  return {name, extension, [make](const StudyRecord& record, const QString& path, int) {
            return WriteFile(path, Bytes(make(record.study)));
          }};
}

QString WriteXlsx(const StudyRecord& record, const QString& path, int) {
  std::string error;
  const std::string bytes = ExportXlsx({ToFileStudy(record)}, error);
  return bytes.empty() ? ToText(error) : WriteFile(path, Bytes(bytes));
}

QString WriteOdt(const StudyRecord& record, const QString& path, int) {
  return WriteFile(path, Bytes(ExportOdt({ToFileStudy(record)})));
}

}  // namespace

QString UnknownExtension(const QString& path, const QStringList& known) {
  return QObject::tr(
             "%1 was not written: the extension of its name decides the format, and it has none of "
             "%2.")
      .arg(path, known.join(QStringLiteral(", ")));
}

QString WriteFile(const QString& path, const QByteArray& bytes) {
  const std::string problem = SaveFile(QFile::encodeName(path).toStdString(),
                                       {bytes.constData(), static_cast<std::size_t>(bytes.size())});
  return problem.empty() ? QString()
                         : QObject::tr("%1 could not be written: %2.").arg(path, ToText(problem));
}

void PrintStudy(const StudyRecord& record, QPagedPaintDevice& device, int digits) {
  QTextDocument document;
  QFont font(QStringLiteral("DejaVu Sans"));
  constexpr double kPrintedPoints = 9.5;
  font.setPointSizeF(kPrintedPoints);
  document.setDefaultFont(font);
  FillDocument(document, record, {digits, false});
  document.print(&device);
}

const std::vector<ExportKind<StudyRecord>>& StudyExports() {
  static const std::vector<ExportKind<StudyRecord>> kinds = {
      TextKind(QObject::tr("Web page"), QStringLiteral("html"), ExportHtml),
      TextKind(QStringLiteral("Markdown"), QStringLiteral("md"), ExportMarkdown),
      {QStringLiteral("PDF"), QStringLiteral("pdf"), WriteStudyPdf},
      {QObject::tr("Spreadsheet"), QStringLiteral("xlsx"), WriteXlsx},
      {QObject::tr("Text document"), QStringLiteral("odt"), WriteOdt},
      TextKind(QStringLiteral("JSON"), QStringLiteral("json"), ExportJson),
      TextKind(QObject::tr("Table as CSV"), QStringLiteral("csv"), ExportCsv),
      TextKind(QObject::tr("Text"), QStringLiteral("txt"),
               [](const Study& study) { return ExportText(study); }),
  };
  return kinds;
}

std::vector<ExportKind<StudyRecord>> ExportsOf(const StudyRecord& record) {
  std::vector<ExportKind<StudyRecord>> kinds = StudyExports();
  const SummaryTable* table = SummaryOf(record.study);
  if (table != nullptr && IsCellMeans(*table)) {
    kinds.push_back(TextKind(QObject::tr("Sheet of cell means"), QStringLiteral("ZLV"),
                             [](const Study& study) { return ZlvOf(*SummaryOf(study)); }));
  }
  return kinds;
}

const std::vector<ExportKind<Chart>>& ChartExports() {
  static const std::vector<ExportKind<Chart>> kinds = {
      {QStringLiteral("SVG"), QStringLiteral("svg"), WriteChartSvg},
      {QStringLiteral("PDF"), QStringLiteral("pdf"), WriteChartPdf},
      {QStringLiteral("PNG"), QStringLiteral("png"), WriteChartPng},
      {QObject::tr("Data as CSV"), QStringLiteral("csv"), WriteChartCsv},
  };
  return kinds;
}

}  // namespace poweranalysis
