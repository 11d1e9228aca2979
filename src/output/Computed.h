#pragma once

#include <array>
#include <cstdint>
#include <span>

#include "output/Reports.h"

namespace poweranalysis {

// What a calculation computed: all that tables and reports show beyond the inputs. Quantities that
// a family does not have stay failed.
struct Computed : ReportNumbers {
  static constexpr double kFailed = -9999.0;

  double effect = kFailed;  // standardized effect
  double spread = kFailed;  // standard deviation of paired differences
  std::array<double, 3> critical = {kFailed, kFailed, kFailed};
};

// What a row of a summary table shows.
enum class ValueKind { Field, Effect, Spread, Critical, Power, Size, Blank };

struct ValueRow {
  ValueKind kind;
  const char* field = nullptr;  // of the Committed record
  int index = 0;                // of several critical values, powers or sizes
};

// The values of a table in row order; empty for a code without them.
std::span<const ValueRow> TableValueRows(int code);

// The inputs and results that a table shows, as the doubles of its rows.
std::vector<double> TableValues(std::span<const ValueRow> rows,
                                const RecordView& record,
                                const Computed& computed);

}  // namespace poweranalysis
