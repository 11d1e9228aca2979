#pragma once

#include <array>
#include <cstdint>
#include <span>

#include "output/Reports.h"

namespace poweranalysis {

// What a calculation computed: all that tables and reports show beyond the inputs. Quantities that
// a family does not have stay failed. Of several powers, sizes or critical values there is one an
// effect or one a group.
struct Computed : ReportNumbers {
  static constexpr double kFailed = -9999.0;
  using PerEffect = std::array<double, 3>;

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

// What a row of a summary table shows.
enum class ValueKind {
  Field,
  Effect,
  Spread,
  Noncentrality,
  EffectDf,
  ErrorDf,
  Critical,
  ActualAlpha,
  NormalPower,
  Events,
  Power,
  Size,
  Blank
};

struct ValueRow {
  ValueKind kind;
  const char* field = nullptr;  // of the Committed record
  int index = 0;                // of several values
};

// The values of a table in row order; empty for a code without them.
std::span<const ValueRow> TableValueRows(int code);

// The inputs and results that a table shows, as the doubles of its rows.
std::vector<double> TableValues(std::span<const ValueRow> rows,
                                const RecordView& record,
                                const Computed& computed);

}  // namespace poweranalysis
