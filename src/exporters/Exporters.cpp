#include "exporters/Exporters.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace poweranalysis {

namespace {

struct FormatRow {
  const char* name;
  ExportFormat format;
};

constexpr std::array<FormatRow, 7> kFormats = {{{"text", ExportFormat::Text},
                                                {"json", ExportFormat::Json},
                                                {"csv", ExportFormat::Csv},
                                                {"markdown", ExportFormat::Markdown},
                                                {"html", ExportFormat::Html},
                                                {"xlsx", ExportFormat::Xlsx},
                                                {"odt", ExportFormat::Odt}}};

}  // namespace

std::optional<ExportFormat> FindExportFormat(std::string_view name) {
  const auto row = std::find_if(kFormats.begin(), kFormats.end(),
                                [name](const FormatRow& format) { return name == format.name; });
  return row == kFormats.end() ? std::nullopt : std::optional(row->format);
}

std::string ExportFormatNames() {
  std::string names;
  for (const FormatRow& format : kFormats) {
    names += (names.empty() ? "" : ", ") + std::string(format.name);
  }
  return names;
}

std::string Export(const Study& study, ExportFormat format, const TextStyle& style) {
  switch (format) {
    case ExportFormat::Json:
      return ExportJson(study);
    case ExportFormat::Csv:
      return ExportCsv(study);
    case ExportFormat::Markdown:
      return ExportMarkdown(study);
    case ExportFormat::Html:
      return ExportHtml(study);
    case ExportFormat::Text:
      return ExportText(study, style);
    default:
      return {};
  }
}

double ShortestDouble(float value) {
  constexpr std::size_t kBuffer = 32;
  std::array<char, kBuffer> text{};
  const char* end = std::to_chars(text.data(), text.data() + text.size(), value).ptr;
  double read = 0;
  std::from_chars(text.data(), end, read);
  return read;
}

}  // namespace poweranalysis
