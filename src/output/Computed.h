#pragma once

#include <span>
#include <vector>

#include "families/Computed.h"
#include "settings/PowerSettings.h"

namespace poweranalysis {

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
