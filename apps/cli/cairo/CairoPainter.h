#pragma once

#include <cstddef>

#include "host/ChartLayout.h"

extern "C" {

// Takes the next bytes of a picture.
using PowerAnalysisSink = void (*)(void* context, const char* bytes, std::size_t count);

// Draws a display list as PNG (0) or PDF (1). 0, or nonzero with the reason in `error`.
int PowerAnalysisPaint(const poweranalysis::DisplayList* list,
                       int format,
                       PowerAnalysisSink sink,
                       void* context,
                       char* error,
                       std::size_t errorSize);
}

namespace poweranalysis {

inline constexpr const char* PaintFunction = "PowerAnalysisPaint";
inline constexpr const char* PaintModule = "poweranalysis-cairo.so";
inline constexpr int PaintPng = 0;
inline constexpr int PaintPdf = 1;

}  // namespace poweranalysis
