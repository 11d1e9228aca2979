#include "host/Sheet.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <fstream>
#include <string>
#include <vector>

#include "host/Workbook.h"

namespace poweranalysis {
namespace {

// Cells as text, row by row: "1 2 | _ 4".
std::string Shown(const SheetResult& result) {
  if (!result.error.empty()) {
    return "error: " + result.error;
  }
  std::string text;
  for (std::size_t row = 0; row < result.sheet.rows; ++row) {
    text += row > 0 ? " |" : "";
    for (std::size_t column = 0; column < result.sheet.columns; ++column) {
      const double cell = result.sheet.At(row, column);
      std::array<char, 40> digits{};
      std::snprintf(digits.data(), digits.size(), "%g", cell);
      text += " " + (IsMissing(cell) ? std::string("_") : std::string(digits.data()));
    }
  }
  return text.empty() ? text : text.substr(1);
}

std::string Tabs(std::string_view text) { return Shown(ParseSheet(text, SheetFormat::Tabs)); }
std::string Commas(std::string_view text) { return Shown(ParseSheet(text, SheetFormat::Commas)); }

constexpr const char* kTooLarge = "error: it is too large for a sheet of cell means";

TEST(Sheet, ReadsLinesOfTabbedCells) {
  EXPECT_EQ("1 2 | 3 4.5", Tabs("1\t2\n3\t4.5\n"));
  EXPECT_EQ("1 2 | 3 4.5", Tabs("1\t2\r\n3\t4.5"));
  EXPECT_EQ("1 | 2", Tabs("1\r2\r"));
}

TEST(Sheet, ReadsCommasAndQuotationMarks) {
  EXPECT_EQ("1 2 | 3 -4", Commas("1,2\n\"3\",\"-4\"\n"));
  EXPECT_EQ("_ 2", Commas("\"a \"\"quoted\"\", word\",2"));
  EXPECT_EQ("_ 2 | 5 _", Commas("\"two\nlines\",2\n5\n"));
}

TEST(Sheet, ReadsSemicolonsWhereATextHasThem) { EXPECT_EQ("1 2 | _ 4", Commas("1;2\n0,5;4\n")); }

TEST(Sheet, MissesWhatIsNotANumber) {
  EXPECT_EQ("_ _ | 1 _", Tabs("Mean\tWeight\n1\tinf\n"));
  EXPECT_EQ("_ | 1e+200", Tabs("1e999\n1e200\n"));
}

TEST(Sheet, FillsShortLinesUp) { EXPECT_EQ("1 _ _ | 2 3 4 | _ _ _", Tabs("1\n2\t3\t4\n\n")); }

TEST(Sheet, ReadsTheMinusOfSpreadsheets) {
  EXPECT_EQ("-1.5", Tabs("\xE2\x88\x92"
                         "1.5\n"));
}

TEST(Sheet, SkipsAByteOrderMark) {
  EXPECT_EQ("1", Commas("\xEF\xBB\xBF"
                        "1\n"));
}

TEST(Sheet, ReadsItsOwnFormWhateverTheExtension) {
  EXPECT_EQ("_ | 1.5 | 2", Tabs("ZLV 1 3 1\n\n1.5\n2\n"));
  EXPECT_EQ("1 2 | 4 _", Commas("ZLV 1 2 2\n1\t2\n4\t\n"));
}

TEST(Sheet, RefusesItsOwnFormThatDoesNotHoldWhatItSays) {
  const std::string refusal =
      "error: it does not hold the rows and columns of numbers that its first line says";
  EXPECT_EQ(refusal, Tabs("ZLV 1 3 1\n1\n2\n"));
  EXPECT_EQ(refusal, Tabs("ZLV 1 1 1\n1\n2\n"));
  EXPECT_EQ(refusal, Tabs("ZLV 1 1 2\n1\n"));
  EXPECT_EQ(refusal, Tabs("ZLV 1 1 1\nMean\n"));
  const std::string head = "error: its first line does not give its rows and columns";
  EXPECT_EQ(head, Tabs("ZLV 1 1\n1\n"));
  EXPECT_EQ(head, Tabs("ZLV 1 0 1\n"));
  EXPECT_EQ(head, Tabs("ZLV 1 1 1 1\n1\n"));
  EXPECT_EQ(head, Tabs("ZLV 1 -1 1\n1\n"));
  EXPECT_EQ(head, Tabs("ZLV 1 999999999999999999999 1\n1\n"));
}

TEST(Sheet, RefusesWhatIsNotAText) {
  EXPECT_EQ("error: it is empty", Tabs(""));
  EXPECT_EQ("error: it is not a text", Tabs(std::string_view("1\0002", 3)));
  EXPECT_EQ("error: it is not a text", Tabs("1\t\xFF\n"));
  EXPECT_EQ("error: it is not a text", Commas("PK\x03\x04\x80\x81"));
}

TEST(Sheet, HoldsItsLimits) {
  EXPECT_EQ(kTooLarge, Tabs(std::string(SheetFileLimit + 1, '1')));
  EXPECT_EQ(kTooLarge, Tabs(std::string(SheetCellLimit + 1, '1')));
  EXPECT_EQ(kTooLarge, Tabs(std::string(SheetColumnLimit, '\t')));
  EXPECT_EQ(kTooLarge, Tabs(std::string(SheetRowLimit + 1, '\n')));
  EXPECT_EQ(SheetRowLimit,
            ParseSheet(std::string(SheetRowLimit, '\n'), SheetFormat::Tabs).sheet.rows);
  EXPECT_EQ(SheetColumnLimit,
            ParseSheet(std::string(SheetColumnLimit - 1, '\t'), SheetFormat::Tabs).sheet.columns);
}

TEST(Sheet, IsWrittenAsItIsRead) {
  const Sheet sheet{3, 2, {0.1, -1e-300, MissingValue(), 12345678.9, 4, MissingValue()}};
  const std::string text = FormatSheet(sheet);
  EXPECT_EQ("ZLV 1 3 2\n0.1\t-1e-300\n\t12345678.9\n4\t\n", text);
  const SheetResult again = ParseSheet(text, SheetFormat::Tabs);
  EXPECT_EQ(text, FormatSheet(again.sheet));
}

TEST(Sheet, IsReadFromAFileByItsExtension) {
  const std::string path = testing::TempDir() + "sheet.CSV";
  std::ofstream(path) << "1,2\n";
  EXPECT_EQ("1 2", Shown(ReadSheet(path)));
  EXPECT_EQ("error: there is no such file", Shown(ReadSheet(path + ".none")));
  EXPECT_EQ("error: it is a folder", Shown(ReadSheet(testing::TempDir())));
  std::ofstream(path) << std::string(SheetFileLimit + 1, '1');
  EXPECT_EQ(kTooLarge, Shown(ReadSheet(path)));
  std::remove(path.c_str());
}

}  // namespace
}  // namespace poweranalysis
