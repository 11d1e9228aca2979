#include "cli/ChartFiles.h"

#include <fmt/format.h>
#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <map>

#include "automation/Errors.h"
#include "automation/Names.h"
#include "cli/LoadedModule.h"
#include "cli/Output.h"
#include "cli/cairo/CairoPainter.h"
#include "host/SvgPainter.h"

namespace poweranalysis {

namespace {

Made PaintAsSvg(const DisplayList& list) { return {PaintSvg(list), {}}; }
Made PaintAsPng(const DisplayList& list) { return MakeBy(PaintModule, list, PaintFormat::Png); }
Made PaintAsPdf(const DisplayList& list) { return MakeBy(PaintModule, list, PaintFormat::Pdf); }

struct PictureFormat {
  const char* extension;
  Made (*paint)(const DisplayList& list);
};

constexpr std::array<PictureFormat, 3> kFormats = {
    {{".svg", PaintAsSvg}, {".png", PaintAsPng}, {".pdf", PaintAsPdf}}};

const PictureFormat* FormatOf(const std::string& file) {
  const std::string lower = LowerCase(file);
  const auto format = std::find_if(kFormats.begin(), kFormats.end(), [&](const auto& row) {
    const std::string extension = row.extension;
    return lower.size() > extension.size() &&
           lower.compare(lower.size() - extension.size(), extension.size(), extension) == 0;
  });
  return format == kFormats.end() ? nullptr : &*format;
}

// The second and further charts of one button go beside the first: "power-2.svg".
std::string Numbered(const std::string& file, std::size_t index) {
  const std::size_t dot = file.rfind('.');
  return index == 0 ? file
                    : fmt::format("{}-{}{}", file.substr(0, dot), index + 1, file.substr(dot));
}

// The files of one run: what comes of the charts, and which were written.
struct ChartFiles {
  std::vector<std::string> written;
  std::vector<std::string> errors;
};

// The further charts of one button get names that nobody typed.
bool WasWritten(const std::string& file, const ChartFiles& files) {
  return std::any_of(files.written.begin(), files.written.end(),
                     [&file](const std::string& other) { return LeadsToOneFile(file, other); });
}

void WriteChart(const Chart& chart, const std::string& file, ChartFiles& files) {
  if (WasWritten(file, files)) {
    files.errors.push_back(
        fmt::format("cannot write the chart '{}': another chart of this run has the name", file));
    return;
  }
  const Made picture = FormatOf(file)->paint(LayOutChart(chart));
  const std::string error = picture.error.empty() ? WriteFile(file, picture.bytes) : picture.error;
  if (!error.empty()) {
    files.errors.push_back(fmt::format("cannot write the chart '{}': {}", file, error));
    return;
  }
  files.written.push_back(file);
}

void WriteFolder(const Study& study, const std::string& folder, ChartFiles& files) {
  constexpr mode_t kForAll = 0777;
  if (::mkdir(folder.c_str(), kForAll) != 0 && errno != EEXIST) {
    files.errors.push_back(
        fmt::format("cannot make the folder '{}': {}", folder, std::strerror(errno)));
    return;
  }
  std::map<std::string, std::size_t> drawn;
  for (const Chart* chart : ChartsOf(study)) {
    WriteChart(*chart, Numbered(folder + "/" + chart->name + ".svg", drawn[chart->name]++), files);
  }
}

}  // namespace

std::string ChartExtensions() {
  std::string extensions;
  for (const PictureFormat& format : kFormats) {
    extensions += (extensions.empty() ? "" : ", ") + std::string(format.extension);
  }
  return extensions;
}

void CheckChartFile(const std::string& file) {
  if (FormatOf(file) == nullptr) {
    throw UsageError("chart", fmt::format("'{}' must end in one of {}", file, ChartExtensions()));
  }
}

std::vector<std::string> WriteChartFiles(const Study& study, const std::vector<ChartWish>& wishes) {
  ChartFiles files;
  for (const ChartWish& wish : wishes) {
    if (wish.file.empty()) {
      continue;
    }
    if (wish.name == AllCharts) {
      WriteFolder(study, wish.file, files);
      continue;
    }
    std::size_t index = 0;
    for (const Chart* chart : ChartsOf(study)) {
      if (chart->name == wish.name) {
        WriteChart(*chart, Numbered(wish.file, index++), files);
      }
    }
  }
  return files.errors;
}

}  // namespace poweranalysis
