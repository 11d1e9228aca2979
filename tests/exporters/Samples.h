#pragma once

#include <limits>

#include "exporters/Exporters.h"

// Studies made by hand for the tests of the exporters.
namespace poweranalysis {

inline Chart SampleChart() {
  Chart chart;
  chart.name = "power-vs-n";
  chart.kind = 14;
  chart.titles = {"First: Calculation", "Second (H0:  A < B)", "Third & last"};
  chart.xLabel = "Group Sample Size (N)";
  chart.yLabel = "Power";
  chart.x = {10, 20, 30};
  chart.y = {0.3F, -9999.0F, 0.7F};
  chart.xAxis = {5, 35, 5};
  chart.yAxis = {0.2F, 0.8F, 0.1F};
  return chart;
}

inline Study SampleStudy() {
  Study study;
  study.family = "T1";
  study.mode = "power";
  study.code = 0;
  SummaryTable table;
  table.headings = {"Power Calculation", "A <Test>", "H0:  \"x\" = y"};
  table.columns = {"Value"};
  table.rows = {{"Mean (Mu)", 0, {-2.5}},           {"Count", 0, {150000}},
                {"\x01", 0, {MissingValue()}},      {"P\u00B2:", 2, {MissingValue()}},
                {"Lower, Limit", 4, {0.1 + 0.2}},   {"Tiny", 4, {1.5e-7}},
                {"Power", 0, {0.16050415233243398}}};
  study.workbook.items.emplace_back(table);
  study.workbook.items.emplace_back(Report{{"\r\nTitle -- here  ", "\r\nOne goal of %g. ",
                                            "goes on  at length.", "\r\nSecond line\r\nof two"}});
  study.workbook.items.emplace_back(SampleChart());
  study.messages = {{12345, "First.\r\nSecond <b>.", 2}};
  return study;
}

}  // namespace poweranalysis
