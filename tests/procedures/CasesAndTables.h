#pragma once

#include <gtest/gtest.h>

#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

#include "support/TestData.h"

// Reading of the published cases and of the tables of numbers in the data folder.
namespace poweranalysis {

inline nlohmann::json PublishedCases(const std::string& name) {
  std::ifstream file(TestDataDir() + "/" + name);
  return nlohmann::json::parse(file);
}

// Compares with what the case expects: its published value, or the value recomputed by the exact
// formula where the publication used another.
inline void ExpectAsPublished(const nlohmann::json& published, const char* key, double value) {
  if (!published.at("expected").contains(key)) {
    return;
  }
  const bool different = published.at("relation") == "different_formula";
  const nlohmann::json& expected = published.at(different ? "recomputed" : "expected");
  EXPECT_NEAR(value, expected.at(key).get<double>(),
              published.at("tolerance").at(key).get<double>())
      << published.at("id") << ' ' << published.at("source");
}

// One row of a table: its first field when that is a word, its numbers, and the line itself.
struct DataRow {
  std::string word;
  std::vector<double> numbers;
  std::string line;
};

// The rows below the comments and the line of headings.
inline std::vector<DataRow> DataRows(const std::string& name) {
  std::ifstream file(TestDataDir() + "/" + name);
  std::vector<DataRow> rows;
  bool headed = false;
  for (std::string line; std::getline(file, line);) {
    if (line.empty() || line[0] == '#') {
      continue;
    }
    if (!headed) {
      headed = true;
      continue;
    }
    DataRow row{.word = {}, .numbers = {}, .line = line};
    std::istringstream fields(line);
    for (std::string field; std::getline(fields, field, ',');) {
      if (std::isalpha(static_cast<unsigned char>(field[0])) != 0) {
        row.word = field;
      } else {
        row.numbers.push_back(std::stod(field));
      }
    }
    rows.push_back(row);
  }
  return rows;
}

}  // namespace poweranalysis
