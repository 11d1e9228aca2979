#include "host/Workbook.h"

#include <cmath>
#include <cstring>

namespace poweranalysis {

namespace {

// The bit pattern is a distinct NaN, so that a computed NaN is not taken for it.
constexpr std::uint64_t kMissingBits = 0xFFFFFFFDFFFFFFFFULL;

}  // namespace

double MissingValue() {
  double value = 0;
  std::memcpy(&value, &kMissingBits, sizeof value);
  return value;
}

bool IsMissing(double value) {
  std::uint64_t bits = 0;
  std::memcpy(&bits, &value, sizeof bits);
  return bits == kMissingBits;
}

}  // namespace poweranalysis
