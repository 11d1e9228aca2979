#include "cli/DocumentModule.h"

#include <array>

#include "cli/LoadedModule.h"
#include "cli/office/DocumentWriter.h"

namespace poweranalysis {

std::string DocumentOf(const Study& study, ExportFormat format, std::string& error) {
  using Write = decltype(&PowerAnalysisWriteDocument);
  std::string bytes;
  const auto write = reinterpret_cast<Write>(FunctionOfModule(
      DocumentModule, DocumentFunction, "the writer of XLSX and ODT documents", error));
  std::array<char, ModuleErrorSize> reason{};
  if (write != nullptr &&
      write(&study, format, AppendBytes, &bytes, reason.data(), reason.size()) != 0) {
    error = reason.data();
  }
  return bytes;
}

}  // namespace poweranalysis
