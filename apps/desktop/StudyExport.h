#pragma once

#include <QString>
#include <functional>
#include <vector>

#include "desktop/StudyBook.h"

class QPagedPaintDevice;

namespace poweranalysis {

// One kind of file that a study or a chart can be written as.
template <class Thing>
struct ExportKind {
  QString name;       // for the file chooser
  QString extension;  // "html"
  // Empty, or why it failed.
  std::function<QString(const Thing&, const QString& path, int digits)> write;
};

const std::vector<ExportKind<StudyRecord>>& StudyExports();
// Those that a study can be written as: cell means also as the sheet that the grids open.
std::vector<ExportKind<StudyRecord>> ExportsOf(const StudyRecord& record);
const std::vector<ExportKind<Chart>>& ChartExports();

// Why a path is not written: it ends in none of the extensions.
QString UnknownExtension(const QString& path, const QStringList& known);

// Writes by the extension of the path, and nothing for one that is unknown. Empty, or the fault.
template <class Thing>
QString WriteByExtension(const std::vector<ExportKind<Thing>>& kinds,
                         const Thing& thing,
                         const QString& path,
                         int digits) {
  for (const ExportKind<Thing>& kind : kinds) {
    if (path.endsWith(QLatin1Char('.') + kind.extension, Qt::CaseInsensitive)) {
      return kind.write(thing, path, digits);
    }
  }
  QStringList known;
  for (const ExportKind<Thing>& kind : kinds) {
    known += QLatin1Char('.') + kind.extension;
  }
  return UnknownExtension(path, known);
}

// "HTML (*.html);;Markdown (*.md)"
template <class Thing>
QString FileFilter(const std::vector<ExportKind<Thing>>& kinds) {
  QStringList filters;
  for (const ExportKind<Thing>& kind : kinds) {
    filters += QStringLiteral("%1 (*.%2)").arg(kind.name, kind.extension);
  }
  return filters.join(QStringLiteral(";;"));
}

// Puts a study on pages.
void PrintStudy(const StudyRecord& record, QPagedPaintDevice& device, int digits);

// Writes bytes whole or not at all; empty, or why it failed.
QString WriteFile(const QString& path, const QByteArray& bytes);

}  // namespace poweranalysis
