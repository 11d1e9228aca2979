#pragma once

#include <string>

namespace poweranalysis {

// One number that was asked for.
struct Answer {
  std::string name;    // the field that it is a value of, or "Power"
  double value = 0;    // missing when there is none
  std::string counts;  // what a size counts: "per group"; empty for what counts nothing
  std::string of;      // the effect or the group that it belongs to; empty for the only one
};

// Both limits of one confidence interval; each missing where there is none.
struct NamedLimits {
  std::string name;  // what they are limits of: "RMSSE"
  double lower = 0;
  double upper = 0;
};

}  // namespace poweranalysis
