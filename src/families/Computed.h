#pragma once

#include <array>
#include <cstdint>

#include "distributions/Common.h"
#include "intervals/IntervalLimits.h"

namespace poweranalysis {

// What a calculation computed: all that tables, reports and every other face show beyond the
// inputs. Quantities that a family does not have stay failed. Of several powers, sizes or critical
// values there is one per effect or one per group.
struct Computed {
  using PerEffect = std::array<double, 3>;

  PerEffect power{};                   // one, or one per effect
  std::array<std::int64_t, 3> size{};  // one, one per effect, or one per group

  double effect = NumericFailure;  // standardized effect
  double spread = NumericFailure;  // standard deviation of paired differences
  double noncentrality = NumericFailure;
  PerEffect effectDf = {NumericFailure, NumericFailure, NumericFailure};
  double errorDf = NumericFailure;
  PerEffect critical = {NumericFailure, NumericFailure, NumericFailure};
  double actualAlpha = NumericFailure;  // of an exact test on counts
  double normalPower = NumericFailure;  // power by the normal approximation, beside an exact one
  double events = NumericFailure;       // to be observed in a survival study

  IntervalLimits limits;  // of an interval estimation
};

}  // namespace poweranalysis
