#include "host/Workbook.h"

#include <cmath>
#include <cstring>

namespace poweranalysis {

double MissingValue() {
  // The bit pattern is a NaN of its own, so that a computed NaN is not taken for it.
  constexpr std::uint64_t kBits = 0xFFFFFFFDFFFFFFFFULL;
  double value = 0;
  std::memcpy(&value, &kBits, sizeof value);
  return value;
}

bool IsMissing(double value) {
  const double missing = MissingValue();
  return std::memcmp(&value, &missing, sizeof value) == 0;
}

}  // namespace poweranalysis
