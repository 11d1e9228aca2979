#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "intervals/IntervalLimits.h"
#include "procedures/ProceduresTest.h"
#include "settings/PowerSettings.h"

// Records and what an interval says on its way, for the tests of the intervals.
namespace poweranalysis {

// A record with the built-in values.
template <class Params>
Params BuiltIn(Family family) {
  Params record{};
  const RecordView view(TableOf(family), &record);
  for (const Field& field : view.table().fields) {
    view.Set(field, field.factory);
  }
  return record;
}

inline constexpr LimitPair kNoLimits{};

inline void PrintTo(const LimitPair& pair, std::ostream* out) {
  *out << pair.lower << " to " << pair.upper;
}

inline void ExpectNear(const LimitPair& pair, double lower, double upper, double tolerance) {
  EXPECT_NEAR(pair.lower, lower, tolerance);
  EXPECT_NEAR(pair.upper, upper, tolerance);
}

}  // namespace poweranalysis
