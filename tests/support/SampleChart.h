#pragma once

#include <string>

#include "host/Workbook.h"

namespace poweranalysis::testing {

// Five points of a power curve on tidy axes.
inline Chart SampleChart() {
  Chart chart;
  chart.name = "power-vs-n";
  chart.kind = 14;
  chart.titles = {"1 Sample t-Test: Power Calculation", "One Mean, t-Test (H0:  Mu = Mu0)",
                  "Power vs. N (Es = 0.5, Alpha = 0.05)"};
  chart.xLabel = "Sample Size (N)";
  chart.yLabel = "Power";
  chart.x = {20, 40, 60, 80, 100};
  chart.y = {0.25F, 0.5F, 0.7F, 0.8F, 0.9F};
  chart.xAxis = {0, 110, 10};
  chart.yAxis = {0, 1, 0.1F};
  for (int i = 0; i <= 10; ++i) {
    chart.tickPositions.push_back(static_cast<float>(i) * 0.1F);
    chart.tickLabels.push_back(i < 10 ? "  0." + std::to_string(i) : "  1.0");
  }
  return chart;
}

}  // namespace poweranalysis::testing
