// Any bytes: a workbook is refused with a reason, or is one that every exporter takes and that is
// written and read back as it is.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "exporters/Exporters.h"
#include "exporters/WorkbookFile.h"

namespace {

using poweranalysis::ExportFormat;
using poweranalysis::LoadedWorkbook;

void Require(bool condition) {
  if (!condition) {
    std::abort();
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  const LoadedWorkbook loaded = poweranalysis::ParseWorkbook(text);
  Require(loaded.error.empty() || loaded.studies.empty());
  if (!loaded.error.empty()) {
    return 0;
  }
  const std::string written = poweranalysis::WorkbookText(loaded.studies);
  const LoadedWorkbook again = poweranalysis::ParseWorkbook(written);
  Require(again.error.empty() && !again.newer);
  Require(poweranalysis::WorkbookText(again.studies) == written);
  for (std::size_t i = 0; i < loaded.studies.size(); ++i) {
    for (const ExportFormat format : {ExportFormat::Text, ExportFormat::Json, ExportFormat::Csv,
                                      ExportFormat::Markdown, ExportFormat::Html}) {
      Require(poweranalysis::Export(loaded.studies[i].study, format) ==
              poweranalysis::Export(again.studies[i].study, format));
    }
  }
  return 0;
}
