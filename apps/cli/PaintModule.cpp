#include "cli/PaintModule.h"

#include <array>

#include "cli/LoadedModule.h"
#include "cli/cairo/CairoPainter.h"

namespace poweranalysis {

namespace {

using Paint = decltype(&PowerAnalysisPaint);

Picture PaintBy(const DisplayList& list, int format) {
  Picture picture;
  const auto paint = reinterpret_cast<Paint>(
      FunctionOfModule(PaintModule, PaintFunction, "the painter of PNG and PDF", picture.error));
  if (paint == nullptr) {
    return picture;
  }
  std::array<char, ModuleErrorSize> error{};
  if (paint(&list, format, AppendBytes, &picture.bytes, error.data(), error.size()) != 0) {
    picture.error = error.data();
  }
  return picture;
}

}  // namespace

Picture PaintAsPng(const DisplayList& list) { return PaintBy(list, PaintPng); }
Picture PaintAsPdf(const DisplayList& list) { return PaintBy(list, PaintPdf); }

}  // namespace poweranalysis
