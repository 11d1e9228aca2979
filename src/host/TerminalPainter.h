#pragma once

#include <string>

#include "host/Workbook.h"

namespace poweranalysis {

enum class TerminalStyle { Unicode, Ascii };

struct TerminalSize {
  int columns = 80;
  int rows = 24;
};

// A chart in characters: the curve in Braille dots (eight to a character) on a box-drawing frame,
// or in plain ASCII. Every line ends with a line feed and holds no control sequences. Sizes below
// 30 x 12 are taken as that; titles that do not fit wrap into further lines.
std::string PaintTerminal(const Chart& chart,
                          TerminalSize size = {},
                          TerminalStyle style = TerminalStyle::Unicode);

}  // namespace poweranalysis
