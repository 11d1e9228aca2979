#include "office/Document.h"

#include "office/Odt.h"
#include "office/Xlsx.h"

namespace poweranalysis {

std::string ExportDocument(const std::vector<WorkbookStudy>& studies,
                           ExportFormat format,
                           std::string& error) {
  error.clear();
  if (format == ExportFormat::Xlsx) {
    return ExportXlsx(studies, error);
  }
  std::string bytes = ExportOdt(studies);
  if (bytes.empty()) {
    error = "the document could not be put together";
  }
  return bytes;
}

WorkbookStudy DocumentStudy(const Study& study) {
  WorkbookStudy single;
  single.study = study;
  const SummaryTable* table = SummaryOf(study);
  single.name = table == nullptr || table->headings.empty() ? study.family : table->headings[0];
  if (table != nullptr && table->headings.size() > 1) {
    single.name += ", " + table->headings[1];
  }
  return single;
}

}  // namespace poweranalysis
