#pragma once

#include "cli/ModuleInterface.h"
#include "host/ChartLayout.h"

namespace poweranalysis {

enum class PaintFormat { Png, Pdf };

inline constexpr MakerModule PaintModule = {"poweranalysis-cairo.so", "PowerAnalysisPaint",
                                            "the painter of PNG and PDF"};

}  // namespace poweranalysis

extern "C" int PowerAnalysisPaint(const poweranalysis::DisplayList* list,
                                  poweranalysis::PaintFormat format,
                                  PowerAnalysisSink sink,
                                  void* context,
                                  char* error,
                                  std::size_t errorSize);
