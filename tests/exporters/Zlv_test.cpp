#include <gtest/gtest.h>

#include "exporters/Exporters.h"
#include "host/Workbook.h"

namespace poweranalysis {
namespace {

SummaryTable CellMeans(int code,
                       std::vector<std::string> columns,
                       const std::vector<std::vector<double>>& rows) {
  SummaryTable table;
  table.code = code;
  table.headings = {"Cell Means"};
  table.columns = std::move(columns);
  for (const std::vector<double>& values : rows) {
    TableRow row;
    row.title = "Row " + std::to_string(table.rows.size() + 1);
    row.values = values;
    table.rows.push_back(std::move(row));
  }
  return table;
}

const double kNone = MissingValue();

TEST(Zlv, HasOneWayMeansUnderAHeaderAndSigmaRightBelow) {
  EXPECT_EQ("ZLV 1 4 1\n\n1\n2\n0.5\n",
            ZlvOf(CellMeans(83, {"Value"}, {{kNone}, {1}, {2}, {kNone}, {0.5}})));
}

TEST(Zlv, HasTwoWayMeansAndSigmaInTheFirstColumn) {
  EXPECT_EQ("ZLV 1 3 2\n1\t2\n3\t4\n0.5\t\n",
            ZlvOf(CellMeans(1028, {"B1", "B2"}, {{1, 2}, {3, 4}, {kNone, kNone}, {kNone, 0.5}})));
}

TEST(Zlv, KeepsTheBlankRowOfAContrast) {
  EXPECT_EQ("ZLV 1 4 2\n10\t1\n12\t-1\n\t\n3\t\n",
            ZlvOf(CellMeans(51, {"Contrast", "Weight"},
                            {{10, 1}, {12, -1}, {kNone, kNone}, {kNone, 3}})));
}

TEST(Zlv, IsOfferedForCellMeansAlone) {
  EXPECT_EQ("", ZlvOf(CellMeans(16, {"Value"}, {{1}, {2}, {3}})));
  EXPECT_FALSE(IsCellMeans(CellMeans(16, {"Value"}, {{1}})));
}

TEST(ColumnTitles, StandInTwoLinesInTextAndInOneElsewhere) {
  const SummaryTable table = CellMeans(51, {"Contrast\n Mean   ", "Weight"}, {{10, 1}, {12.5, -1}});
  EXPECT_EQ(
      "Cell Means\n\n"
      "       Contrast  Weight\n"
      "        Mean\n"
      "Row 1      10         1\n"
      "Row 2      12.5      -1\n",
      TextOf(table));
  EXPECT_EQ("Title,Contrast Mean,Weight\nRow 1,10,1\nRow 2,12.5,-1\n", CsvOf(table));
  EXPECT_NE(std::string::npos, MarkdownOf(table).find("|   | Contrast Mean | Weight |\n"));
  EXPECT_NE(std::string::npos, HtmlOf(table).find(">Contrast Mean<"));
}

}  // namespace
}  // namespace poweranalysis
