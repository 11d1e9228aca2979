#pragma once

#include <string>
#include <vector>

#include "exporters/Exporters.h"
#include "exporters/WorkbookFile.h"

namespace poweranalysis {

// Studies as a document of an office program, XLSX or ODT. Returns the bytes of the file; empty,
// with the reason in `error`, when it could not be made.
std::string ExportDocument(const std::vector<WorkbookStudy>& studies,
                           ExportFormat format,
                           std::string& error);

// One calculation as a study that such a document holds. It has no date, so that the same
// calculation gives the same bytes on any day.
WorkbookStudy DocumentStudy(const Study& study);

}  // namespace poweranalysis
