#pragma once

#include <QPainter>

#include "host/ChartLayout.h"

namespace poweranalysis {

// Draws a laid-out chart: the same list that other painters write as SVG, PNG and PDF.
void PaintChart(QPainter& painter, const DisplayList& list, const ChartTheme& theme = LightTheme());

}  // namespace poweranalysis
