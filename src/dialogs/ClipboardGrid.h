#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "host/Host.h"

// Grids of cell means on the clipboard.
namespace poweranalysis {

// What is read of the clipboard at most, in bytes; a longer text loses its end.
inline constexpr std::size_t ClipboardGridLimit = 65535;

struct ClipboardGrid {
  std::int32_t rows = 0;
  std::int32_t columns = 0;
};

// Reads the numbers of a text into `values`, which has room for `maxRows` * `maxColumns`.
//
// A line is a row. A number is a run of digits, signs and points, whatever stands between two runs;
// a run that is not a number as a whole is dropped. There are no exponents: "1e5" is 1 and 5. The
// numbers of all lines follow each other in `values`, and the columns are those of the last line.
// What follows the last line feed counts as a line unless it is empty.
//
// Nothing when a row or a column is more than there may be.
std::optional<ClipboardGrid> ParseGridText(std::string_view text,
                                           std::span<double> values,
                                           std::int32_t maxRows,
                                           std::int32_t maxColumns);

// The text of a grid: six significant digits, a tab between columns, carriage return and line feed
// after each row. `stride` is the width of a row in `values`.
std::string FormatGridText(ClipboardGrid shape,
                           std::int32_t stride,
                           std::span<const double> values);

// The same for the text that the host has on its clipboard: 0, or 1 where it is refused or the host
// has no memory for it. Without a text both counts are 0.
int ParseClipboardGrid(Host& host,
                       std::int32_t& rowsOut,
                       std::int32_t& columnsOut,
                       std::span<double> values,
                       std::int32_t maxRows,
                       std::int32_t maxColumns);

// Puts the text of a grid on the host's clipboard: 0, or 1 where the host has no memory for it or no
// clipboard.
int FormatClipboardGrid(Host& host,
                        std::int32_t rows,
                        std::int32_t columns,
                        std::int32_t stride,
                        std::span<const double> values);

}  // namespace poweranalysis
