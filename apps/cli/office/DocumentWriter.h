#pragma once

#include "cli/ModuleInterface.h"
#include "exporters/Exporters.h"

namespace poweranalysis {

inline constexpr MakerModule DocumentModule = {"poweranalysis-office.so",
                                               "PowerAnalysisWriteDocument",
                                               "the writer of XLSX and ODT documents"};

}  // namespace poweranalysis

// Writes a study as a document of an office program.
extern "C" int PowerAnalysisWriteDocument(const poweranalysis::Study* study,
                                          poweranalysis::ExportFormat format,
                                          PowerAnalysisSink sink,
                                          void* context,
                                          char* error,
                                          std::size_t errorSize);
