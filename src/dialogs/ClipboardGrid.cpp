#include "dialogs/ClipboardGrid.h"

#include <algorithm>

#include "host/KeywordFile.h"
#include "host/NumberText.h"

namespace poweranalysis {

namespace {

constexpr std::string_view kOfNumbers = "0123456789+-.";

// The number that a run of digits, signs and points is: none for "+-" and "1-2".
std::optional<double> NumberOf(std::string_view run) {
  const bool digits = run.find_first_of("0123456789") != std::string_view::npos;
  return digits ? ParseReal(run) : std::nullopt;
}

// Takes the next run of a line; empty at its end.
std::string_view TakeRun(std::string_view& line) {
  line.remove_prefix(std::min(line.find_first_of(kOfNumbers), line.size()));
  const std::string_view run = line.substr(0, line.find_first_not_of(kOfNumbers));
  line.remove_prefix(run.size());
  return run;
}

// Takes the next line.
std::string_view TakeLine(std::string_view& text) {
  const std::string_view line = text.substr(0, text.find('\n'));
  text.remove_prefix(std::min(text.size(), line.size() + 1));
  return line;
}

}  // namespace

std::optional<ClipboardGrid> ParseGridText(std::string_view text,
                                           std::span<double> values,
                                           std::int32_t maxRows,
                                           std::int32_t maxColumns) {
  text = text.substr(0, ClipboardGridLimit);
  // The zero byte that ends a text of the clipboard is no line.
  text = text.substr(0, text.find('\0'));
  ClipboardGrid grid;
  std::size_t next = 0;
  while (!text.empty()) {
    std::string_view line = TakeLine(text);
    if (++grid.rows > maxRows) {
      return std::nullopt;
    }
    grid.columns = 0;
    for (std::string_view run = TakeRun(line); !run.empty(); run = TakeRun(line)) {
      const std::optional<double> number = NumberOf(run);
      if (!number) {
        continue;
      }
      if (++grid.columns > maxColumns) {
        return std::nullopt;
      }
      values[next++] = *number;
    }
  }
  return grid;
}

std::string FormatGridText(ClipboardGrid shape,
                           std::int32_t stride,
                           std::span<const double> values) {
  std::string text;
  for (std::int32_t row = 0; row < shape.rows; ++row) {
    for (std::int32_t column = 0; column < shape.columns; ++column) {
      text += column > 0 ? "\t" : "";
      const std::int32_t place = row * stride + column;
      text += FormatGeneral(values[static_cast<std::size_t>(place)]);
    }
    text += "\r\n";
  }
  return text;
}

int ParseClipboardGrid(Host& host,
                       std::int32_t& rowsOut,
                       std::int32_t& columnsOut,
                       std::span<double> values,
                       std::int32_t maxRows,
                       std::int32_t maxColumns) {
  rowsOut = 0;
  columnsOut = 0;
  const std::string text = host.GetClipboardText().value_or(std::string());
  const std::size_t size = std::min(text.size(), ClipboardGridLimit);
  // The clipboard is not held while its text is read.
  HostArray<char> copy(host, size);
  if (!copy) {
    return 1;
  }
  std::copy_n(text.begin(), size, copy.data());
  const auto grid = ParseGridText({copy.data(), size}, values, maxRows, maxColumns);
  if (!grid) {
    return 1;
  }
  rowsOut = grid->rows;
  columnsOut = grid->columns;
  return 0;
}

int FormatClipboardGrid(Host& host,
                        std::int32_t rows,
                        std::int32_t columns,
                        std::int32_t stride,
                        std::span<const double> values) {
  constexpr std::int32_t kWidest = 17;
  constexpr std::int32_t kLineEnd = 2;
  const std::int32_t bytes = (columns * kWidest + kLineEnd) * rows + 1;
  const HostArray<char> memory(host, static_cast<std::size_t>(bytes));
  if (!memory) {
    return 1;
  }
  return host.SetClipboardText(FormatGridText({rows, columns}, stride, values)) ? 0 : 1;
}

}  // namespace poweranalysis
