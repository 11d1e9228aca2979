#include "module/PowerAnalysisModule.h"

#include <new>

#include "calculators/CalculatorDialog.h"
#include "dialogs/DialogFactory.h"
#include "settings/PowerSettings.h"

namespace poweranalysis {

namespace {

const AnalysisParts kParts = {
    sizeof(PowerSettings),
    [](void* zeroedMemory) -> PowerSettingsHead* { return new (zeroedMemory) PowerSettings(); },
    [](PowerSettingsHead& settings) { LoadAllDefaults(static_cast<PowerSettings&>(settings)); },
    [](PowerSettingsHead& settings) { static_cast<PowerSettings&>(settings).~PowerSettings(); },
    [](CPowerAnalysis& analysis, const CatalogueDialog& entry) {
      return entry.mode == ModeDistribution ? CreateCalculator(analysis, entry)
                                            : CreateTaskDialog(analysis, entry);
    },
};

}  // namespace

CPowerAnalysis::CPowerAnalysis(CAnalysisDoc* document) : CPowerAnalysis(document, kParts) {}

}  // namespace poweranalysis

extern "C" {

poweranalysis::CPowerAnalysis* Zlv6NewAnalysis() {
  return new (std::nothrow) poweranalysis::CPowerAnalysis(nullptr);
}

int GraphListInsertItem(poweranalysis::WindowHandle, std::int16_t, const char*) { return 0; }
}
