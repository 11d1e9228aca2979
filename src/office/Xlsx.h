#pragma once

#include <string>
#include <vector>

#include "exporters/WorkbookFile.h"

namespace poweranalysis {

// An XLSX workbook with a sheet for each study: headings, the table with indented row titles and
// full digits, the report, messages and notes, and each chart as its data with a chart drawn from
// them. The same studies give the same bytes. Returns the bytes of the file; empty, with the reason
// in `error`, when it could not be made.
std::string ExportXlsx(const std::vector<WorkbookStudy>& studies, std::string& error);

}  // namespace poweranalysis
