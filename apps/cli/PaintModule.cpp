#include "cli/PaintModule.h"

#include <dlfcn.h>
#include <unistd.h>

#include <array>

#include "cli/ProgramFolder.h"
#include "cli/cairo/CairoPainter.h"

namespace poweranalysis {

namespace {

using Paint = decltype(&PowerAnalysisPaint);

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
