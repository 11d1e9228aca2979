#pragma once

#include <cstddef>

#include "exporters/Exporters.h"

extern "C" {

// Takes the next bytes of a document.
using PowerAnalysisDocumentSink = void (*)(void* context, const char* bytes, std::size_t count);

// Writes a study as a document of an office program. 0, or nonzero with the reason in `error`.
int PowerAnalysisWriteDocument(const poweranalysis::Study* study,
                               poweranalysis::ExportFormat format,
                               PowerAnalysisDocumentSink sink,
                               void* context,
                               char* error,
                               std::size_t errorSize);
}

namespace poweranalysis {

inline constexpr const char* DocumentFunction = "PowerAnalysisWriteDocument";
inline constexpr const char* DocumentModule = "poweranalysis-office.so";

}  // namespace poweranalysis
