#include "host/Workbook.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>

namespace poweranalysis {
namespace {

TEST(MissingValue, HasItsBits) {
  const double missing = MissingValue();
  std::uint64_t bits = 0;
  std::memcpy(&bits, &missing, sizeof bits);
  EXPECT_EQ(bits, 0xFFFFFFFDFFFFFFFFu);
  EXPECT_TRUE(std::isnan(missing));
}

TEST(MissingValue, IsToldFromEveryOtherNumber) {
  EXPECT_TRUE(IsMissing(MissingValue()));
  for (const double value :
       {0.0, -0.0, -9999.0, std::numeric_limits<double>::quiet_NaN(),
        -std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity()}) {
    EXPECT_FALSE(IsMissing(value)) << value;
  }
}

TEST(MissingValue, SurvivesItsWayThroughTables) {
  SummaryTable table;
  table.rows.push_back({"title", 2, {MissingValue(), 1}});
  const Workbook book{{table}};
  const Workbook copy = book;
  EXPECT_TRUE(IsMissing(std::get<SummaryTable>(copy.items[0]).rows[0].values[0]));
  EXPECT_EQ(std::get<SummaryTable>(copy.items[0]).rows[0].values[1], 1);
}

TEST(Workbook, TablesStartWithTheirUsualWidths) {
  const SummaryTable table;
  EXPECT_EQ(table.cellWidth, 8);
  EXPECT_EQ(table.columnTitleWidth, 10);
}

}  // namespace
}  // namespace poweranalysis
