#pragma once

#include <cstdint>
#include <memory>

#include "frame/PowerAnalysis.h"

extern "C" {

// The exported factory: a new analysis with its stage table, or null when there is no memory. The
// host attaches itself (AttachHost) before it runs the first stage.
POWERANALYSIS_EXPORT poweranalysis::CPowerAnalysis* Zlv6NewAnalysis();

// Kept for hosts that look the name up: puts nothing into any list and gives 0.
POWERANALYSIS_EXPORT int GraphListInsertItem(poweranalysis::WindowHandle window,
                                             std::int16_t number,
                                             const char* text);
}

namespace poweranalysis {

// What faces that link the module hand to whoever drives its dialogs.
inline std::unique_ptr<CAnalysisSupport> NewAnalysis() {
  return std::unique_ptr<CAnalysisSupport>(Zlv6NewAnalysis());
}

}  // namespace poweranalysis
