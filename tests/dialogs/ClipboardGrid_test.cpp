#include "dialogs/ClipboardGrid.h"

#include <gtest/gtest.h>

#include <array>
#include <string>
#include <vector>

#include "host/NumberText.h"

namespace poweranalysis {
namespace {

// "2 x 2: 1 2 3 4", or "refused".
std::string Pasted(std::string_view text, std::int32_t maxRows = 8, std::int32_t maxColumns = 8) {
  std::vector<double> values(static_cast<std::size_t>(maxRows * maxColumns), 99);
  const auto grid = ParseGridText(text, values, maxRows, maxColumns);
  if (!grid) {
    return "refused";
  }
  std::string shown = std::to_string(grid->rows) + " x " + std::to_string(grid->columns) + ":";
  for (const double value : values) {
    shown += value == 99 ? "" : " " + FormatShortest(value);
  }
  return shown;
}

TEST(ClipboardGrid, ReadsTwoLinesOfTwoTabbedNumbers) {
  EXPECT_EQ("2 x 2: 1 2 3 4", Pasted("1\t2\n3\t4"));
}

TEST(ClipboardGrid, TakesASignAndABarePoint) {
  EXPECT_EQ("2 x 1: -1.5 2", Pasted("-1.5\r\n+2.\r\n", 12, 1));
  EXPECT_EQ("2 x 1: 5 0.5", Pasted("5.\n.5"));
}

TEST(ClipboardGrid, PartsNumbersAtAnyOtherCharacter) {
  EXPECT_EQ("1 x 4: 1 2 3 4", Pasted("1, 2;3 (4)"));
  EXPECT_EQ("1 x 2: 1 234", Pasted("1,234"));
  EXPECT_EQ("2 x 2: 1 2 7 8", Pasted("Group 1, Group 2\n7\t8"));
}

TEST(ClipboardGrid, HasNoExponents) {
  EXPECT_EQ("1 x 2: 1 5", Pasted("1e5"));
  EXPECT_EQ("refused", Pasted("1e5", 12, 1));
}

TEST(ClipboardGrid, DropsRunsThatAreNotNumbers) {
  EXPECT_EQ("1 x 1: 7", Pasted("+- . 1-2 -- 1.2.3 +-5 7"));
  EXPECT_EQ("1 x 0:", Pasted("+-"));
}

TEST(ClipboardGrid, CountsLinesButNotTheEmptyRestAfterTheLast) {
  EXPECT_EQ("0 x 0:", Pasted(""));
  EXPECT_EQ("1 x 1: 1", Pasted("1\n"));
  EXPECT_EQ("2 x 0: 1", Pasted("1\n\n"));
  EXPECT_EQ("3 x 1: 1 3", Pasted("1\n\n3\n"));
  EXPECT_EQ("1 x 1: 1", Pasted(std::string_view("1\n\0", 3)));
  EXPECT_EQ("1 x 0:", Pasted("  "));
}

TEST(ClipboardGrid, IsOneLineWhereOnlyCarriageReturnsPartIt) {
  EXPECT_EQ("1 x 3: 1 2 3", Pasted("1\r2\r3"));
}

TEST(ClipboardGrid, RefusesMoreRowsOrColumnsThanThereMayBe) {
  EXPECT_EQ("refused", Pasted("1\n2\n3\n4\n5\n6\n7\n8\n9\n10\n11\n12\n13\n", 12, 1));
  EXPECT_EQ("12 x 1: 1 2 3 4 5 6 7 8 9 10 11 12",
            Pasted("1\n2\n3\n4\n5\n6\n7\n8\n9\n10\n11\n12\n", 12, 1));
  EXPECT_EQ("refused", Pasted("1 2 3", 8, 2));
}

TEST(ClipboardGrid, RunsOnThroughRaggedLines) {
  EXPECT_EQ("3 x 2: 1 2 3 4 5", Pasted("1 2\n3\n4 5\n"));
}

TEST(ClipboardGrid, CutsALongTextBeforeReadingIt) {
  std::string text = "1 2\n" + std::string(ClipboardGridLimit - 6, ' ') + "34";
  EXPECT_EQ("2 x 1: 1 2 34", Pasted(text));
  text.insert(4, " ");  // cuts the last digit off
  EXPECT_EQ("2 x 1: 1 2 3", Pasted(text));
}

TEST(ClipboardGrid, WritesSixDigitsWithTabsAndLineEnds) {
  const std::array<double, 8> values{1, 2.5, 99, 99, -0.000012345678, 1234567.5, 99, 99};
  EXPECT_EQ("1\t2.5\r\n-1.23457e-05\t1.23457e+06\r\n", FormatGridText({2, 2}, 4, values));
  EXPECT_EQ("1\r\n2.5\r\n", FormatGridText({2, 1}, 1, values));
}

}  // namespace
}  // namespace poweranalysis
