#include "output/Reports.h"

namespace poweranalysis {

namespace {

// Reports are written only at the highest level of output detail.
constexpr int kReportLevel = 4;

}  // namespace

int EmitReportParagraph(const std::string& text) {
  Host* host = ModuleHost();
  if (host == nullptr || (!host->IsResultsToReportWindow() && !host->IsResultsToWord())) {
    return 1;
  }
  if (host->GetSupplementaryLevel() < kReportLevel) {
    return 1;
  }
  Module().ReportBuffer.text = text;
  host->type(Module().ReportBuffer.text);
  return 0;
}

void EmitReport(Family family, ReportKind kind, const Computed& numbers, PowerSettings& params) {
  const RecordView record = ViewOf(params, family, Instance::Committed);
  for (const ReportRow& row : ReportRows(family)) {
    if ((row.reports & static_cast<unsigned>(kind)) == 0 || !row.when.Holds(record)) {
      continue;
    }
    const TextId id = row.text.In(record);
    if (id != text::None) {
      EmitReportParagraph(FillText(id, row.slots, record, numbers));
    }
  }
}

}  // namespace poweranalysis
