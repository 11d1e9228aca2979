#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <sstream>
#include <string>
#include <vector>

#include "support/TestData.h"

namespace poweranalysis::test {

// The one error measure of these tests: relative, and absolute where zero is expected.
inline double ErrorOf(double actual, double expected) {
  const double difference = std::fabs(actual - expected);
  return expected == 0.0 ? difference : difference / std::fabs(expected);
}

struct TruthRow {
  std::string text;
  std::vector<double> inputs;
  double expected = 0.0;
  double tolerance = 0.0;
};

// The rows of data/<name>.csv: inputs, expected value, tolerance.
inline std::vector<TruthRow> ReadTruthTable(const std::string& name) {
  std::ifstream file(TestDataDir() + "/" + name + ".csv");
  EXPECT_TRUE(file.is_open()) << name;
  std::vector<TruthRow> rows;
  std::string line;
  bool header = true;
  while (std::getline(file, line)) {
    if (line.empty() || line[0] == '#') {
      continue;
    }
    if (header) {
      header = false;
      continue;
    }
    TruthRow row;
    row.text = line;
    std::istringstream cells(line);
    std::string cell;
    while (std::getline(cells, cell, ',')) {
      row.inputs.push_back(std::strtod(cell.c_str(), nullptr));
    }
    row.tolerance = row.inputs.back();
    row.inputs.pop_back();
    row.expected = row.inputs.back();
    row.inputs.pop_back();
    rows.push_back(row);
  }
  return rows;
}

// Holds a function to every row; the worst shares of the tolerance go to the log of the test.
inline void ExpectTruth(const std::string& name,
                        const std::function<double(const std::vector<double>&)>& function) {
  const std::vector<TruthRow> rows = ReadTruthTable(name);
  EXPECT_GE(rows.size(), 200U);
  double worst = 0.0;
  double worstShare = 0.0;
  std::string worstRow;
  for (const TruthRow& row : rows) {
    const double actual = function(row.inputs);
    const double error = ErrorOf(actual, row.expected);
    EXPECT_LE(error, row.tolerance)
        << name << ": " << row.text << " gives " << ::testing::PrintToString(actual);
    worst = std::max(worst, error);
    if (row.tolerance > 0.0 && error / row.tolerance > worstShare) {
      worstShare = error / row.tolerance;
      worstRow = row.text;
    }
  }
  std::ostringstream summary;
  summary << worst;
  ::testing::Test::RecordProperty(name + "_worst", summary.str());
  if (std::getenv("TRUTH_VERBOSE") != nullptr) {
    std::printf("%s: worst relative error %g; worst share of tolerance %g at %s\n", name.c_str(),
                worst, worstShare, worstRow.c_str());
  }
}

}  // namespace poweranalysis::test
