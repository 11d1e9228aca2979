#pragma once

#include <array>
#include <cstdint>

namespace poweranalysis {

// What a calculation computed: all that tables, reports and every other face show beyond the
// inputs. Quantities that a family does not have stay failed. Of several powers, sizes or critical
// values there is one per effect or one per group.
struct Computed {
  static constexpr double kFailed = -9999.0;
  using PerEffect = std::array<double, 3>;

  PerEffect power{};                   // one, or one per effect
  std::array<std::int64_t, 3> size{};  // one, one per effect, or one per group

  double effect = kFailed;  // standardized effect
  double spread = kFailed;  // standard deviation of paired differences
  double noncentrality = kFailed;
  PerEffect effectDf = {kFailed, kFailed, kFailed};
  double errorDf = kFailed;
  PerEffect critical = {kFailed, kFailed, kFailed};
  double actualAlpha = kFailed;  // of an exact test on counts
  double normalPower = kFailed;  // power by the normal approximation, beside an exact one
  double events = kFailed;       // to be observed in a survival study
};

}  // namespace poweranalysis
