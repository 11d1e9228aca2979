#pragma once

#include <string>

#include "host/ChartLayout.h"

namespace poweranalysis {

// A display list as an SVG document: UTF-8, real text, numbers with at most two decimals. The same
// list gives the same bytes.
std::string PaintSvg(const DisplayList& list, const ChartTheme& theme = LightTheme());

// The same as an element of a page, without the declaration that only a separate file may begin
// with.
std::string PaintSvgElement(const DisplayList& list, const ChartTheme& theme = LightTheme());

}  // namespace poweranalysis
