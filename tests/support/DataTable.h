#pragma once

#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

// Tables of expected values beside the tests: lines of cells between tabs, comments after '#'.
namespace poweranalysis::testing {

// The escapes of the data files: \r, \n and \x01.
inline std::string Unescaped(std::string_view text) {
  std::string out;
  for (std::size_t at = 0; at < text.size(); ++at) {
    if (text[at] != '\\' || at + 1 == text.size()) {
      out += text[at];
      continue;
    }
    const char letter = text[++at];
    if (letter == 'x') {
      out += static_cast<char>(std::stoi(std::string(text.substr(at + 1, 2)), nullptr, 16));
      at += 2;
    } else {
      out += letter == 'r' ? '\r' : letter == 'n' ? '\n' : letter;
    }
  }
  return out;
}

inline std::vector<std::string> SplitAt(std::string_view text, char separator) {
  std::vector<std::string> cells;
  for (std::size_t at = 0;;) {
    const std::size_t end = text.find(separator, at);
    cells.push_back(Unescaped(text.substr(at, end - at)));
    if (end == std::string_view::npos) {
      return cells;
    }
    at = end + 1;
  }
}

using DataRow = std::vector<std::string>;

inline std::vector<DataRow> ReadTable(const std::string& path) {
  std::ifstream in(path);
  if (!in) {
    throw std::runtime_error("cannot read " + path);
  }
  std::vector<DataRow> rows;
  for (std::string line; std::getline(in, line);) {
    if (!line.empty() && line.front() != '#') {
      rows.push_back(SplitAt(line, '\t'));
    }
  }
  return rows;
}

}  // namespace poweranalysis::testing
