#pragma once

#include <cstddef>
#include <nlohmann/json_fwd.hpp>
#include <string>
#include <string_view>

// JSON from files that anyone may have written. Only for the sources that know the JSON library.
namespace poweranalysis {

struct JsonLimits {
  std::size_t values;   // numbers, texts, arrays and objects in all
  std::size_t members;  // of one object
  std::size_t depth;    // of arrays and objects nested in each other
};

// Reads the whole text. Refuses what is not JSON or not UTF-8, numbers beyond a double, an object
// with the same name twice (whose readers would not agree on what it says), and more than the
// limits. Returns the reason with its place, a line and column or a way through the tree; empty
// when `tree` is read. A negative zero keeps its sign.
std::string ReadJsonTree(std::string_view text,
                         const JsonLimits& limits,
                         nlohmann::ordered_json& tree);

}  // namespace poweranalysis
