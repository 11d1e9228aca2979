#include "office/Document.h"

#include <exception>

#include "cli/office/DocumentWriter.h"

namespace poweranalysis {

namespace {

std::string WrittenDocument(const Study& study, ExportFormat format, std::string& error) {
  try {
    return ExportDocument({DocumentStudy(study)}, format, error);
  } catch (const std::exception& exception) {
    error = exception.what();
    return {};
  }
}

}  // namespace

}  // namespace poweranalysis

extern "C" __attribute__((visibility("default"))) int PowerAnalysisWriteDocument(
    const poweranalysis::Study* study,
    poweranalysis::ExportFormat format,
    PowerAnalysisSink sink,
    void* context,
    char* error,
    std::size_t errorSize) {
  std::string reason;
  const std::string bytes = poweranalysis::WrittenDocument(*study, format, reason);
  if (reason.empty()) {
    sink(context, bytes.data(), bytes.size());
    return 0;
  }
  return poweranalysis::FailBecause(reason.c_str(), error, errorSize);
}
