#include "cli/PaintModule.h"

#include <dlfcn.h>
#include <unistd.h>

#include <array>
#include <climits>

#include "cli/cairo/CairoPainter.h"

namespace poweranalysis {

namespace {

using Paint = decltype(&PowerAnalysisPaint);

// The folder of the running program, with a slash at its end; empty when it cannot be told.
std::string ProgramFolder() {
  std::array<char, PATH_MAX> path{};
  const ssize_t length = ::readlink("/proc/self/exe", path.data(), path.size());
  if (length <= 0) {
    return {};
  }
  const std::string program(path.data(), static_cast<std::size_t>(length));
  return program.substr(0, program.rfind('/') + 1);
}

// The painter beside the program as built, or as installed; null with the reason in `error`.
Paint OpenPainter(std::string& error) {
  for (const char* folder : {"../lib/", "../lib/poweranalysis/", ""}) {
    const std::string path = ProgramFolder() + folder + PaintModule;
    if (void* module = ::dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL)) {
      if (void* paint = ::dlsym(module, PaintFunction)) {
        return reinterpret_cast<Paint>(paint);
      }
    }
    if (const char* reason = ::dlerror(); reason != nullptr && ::access(path.c_str(), F_OK) == 0) {
      error = reason;
    }
  }
  if (error.empty()) {
    error = "the painter of PNG and PDF (" + std::string(PaintModule) + ") is not installed";
  }
  return nullptr;
}

Picture PaintBy(const DisplayList& list, int format) {
  constexpr std::size_t kErrorSize = 200;
  Picture picture;
  const Paint paint = OpenPainter(picture.error);
  if (paint == nullptr) {
    return picture;
  }
  const auto append = [](void* context, const char* bytes, std::size_t count) {
    static_cast<std::string*>(context)->append(bytes, count);
  };
  std::array<char, kErrorSize> error{};
  if (paint(&list, format, append, &picture.bytes, error.data(), error.size()) != 0) {
    picture.error = error.data();
  }
  return picture;
}

}  // namespace

Picture PaintAsPng(const DisplayList& list) { return PaintBy(list, PaintPng); }
Picture PaintAsPdf(const DisplayList& list) { return PaintBy(list, PaintPdf); }

}  // namespace poweranalysis
