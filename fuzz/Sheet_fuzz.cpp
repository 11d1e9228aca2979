// Any bytes as a sheet: what is read is within the limits, and is the same when it is written and
// read again.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "host/Sheet.h"

namespace {

using namespace poweranalysis;

void Require(bool condition) {
  if (!condition) {
    std::abort();
  }
}

void ReadTwice(std::string_view text, SheetFormat format) {
  const SheetResult result = ParseSheet(text, format);
  const Sheet& sheet = result.sheet;
  Require(sheet.cells.size() == sheet.rows * sheet.columns);
  Require(sheet.rows <= SheetRowLimit && sheet.columns <= SheetColumnLimit);
  Require(result.error.empty() == (sheet.rows > 0 && sheet.columns > 0));
  if (result.error.empty()) {
    const std::string written = FormatSheet(sheet);
    const SheetResult again = ParseSheet(written, format);
    Require(written.size() > SheetFileLimit ||
            (again.error.empty() && FormatSheet(again.sheet) == written));
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  ReadTwice(text, SheetFormat::Tabs);
  ReadTwice(text, SheetFormat::Commas);
  return 0;
}
