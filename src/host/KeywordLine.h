#pragma once

#include <cstddef>
#include <string>

namespace poweranalysis {

// A key as it stands in a keyword file, to say where the file is at fault.
struct KeywordLine {
  std::string key;
  std::string text;
  std::size_t line = 0;  // the first line of the file is 1
};

}  // namespace poweranalysis
