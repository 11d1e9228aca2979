// Any text on the clipboard: its numbers fit where they go, and a grid of numbers that six digits
// show without an exponent is read as it was written.

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "dialogs/ClipboardGrid.h"

namespace {

using namespace poweranalysis;

constexpr std::int32_t kMost = 8;
using Values = std::array<double, kMost * kMost>;

void Require(bool condition) {
  if (!condition) {
    std::abort();
  }
}

bool IsPlain(double value) {
  return value == 0 || (std::abs(value) >= 1e-4 && std::abs(value) < 999999);
}

void WriteAndRead(ClipboardGrid grid, const Values& values) {
  const std::string text = FormatGridText(grid, kMost, values);
  Values again{};
  const auto read = ParseGridText(text, again, kMost, kMost);
  Require(read && read->rows == grid.rows && read->columns == grid.columns);
  Require(FormatGridText(grid, grid.columns, again) == text);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  Values values{};
  const auto grid = ParseGridText(text, values, kMost, kMost);
  Require(!grid || (grid->rows >= 0 && grid->rows <= kMost && grid->columns <= kMost));
  Require(std::all_of(values.begin(), values.end(), [](double v) { return std::isfinite(v); }));
  if (grid && grid->rows > 0 && grid->columns > 0 &&
      std::all_of(values.begin(), values.end(), IsPlain)) {
    WriteAndRead(*grid, values);
  }
  return 0;
}
