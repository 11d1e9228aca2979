#include "output/GridTables.h"

#include <gtest/gtest.h>

#include "host/NumberText.h"
#include "output/SummaryTables.h"
#include "support/TestSettings.h"

namespace poweranalysis {
namespace {

using testing::SettingsTest;

class GridTableTest : public SettingsTest {
 protected:
  const SummaryTable& Show(int code) {
    std::vector<double> values = GridTableValues(code, block);
    ShowSummaryTable(values, code, nullptr, block);
    return std::get<SummaryTable>(host.workbook().items.back());
  }
  // "title: 1 2", a missing cell as "_".
  static std::vector<std::string> Lines(const SummaryTable& table) {
    std::vector<std::string> lines;
    for (const TableRow& row : table.rows) {
      std::string line = row.title + ":";
      for (const double value : row.values) {
        line += " " + (IsMissing(value) ? std::string("_") : FormatShortest(value));
      }
      lines.push_back(std::move(line));
    }
    return lines;
  }
};

using Texts = std::vector<std::string>;

TEST_F(GridTableTest, ShowsOneWayCellMeans) {
  AV1Params& grid = block.AV1.GridScratch;
  grid.NumberOfGroups = 3;
  grid.GridMeans = {1, 2.5, -9999.0};
  grid.Sigma = 4;
  const SummaryTable& table = Show(OneWayGridTable);
  EXPECT_EQ(Texts{"1-Way ANOVA Cell Means"}, table.headings);
  EXPECT_EQ(Texts{"Value"}, table.columns);
  EXPECT_EQ((Texts{"Group Means:: _", "  Group 1: 1", "  Group 2: 2.5", "  Group 3: _", ": _",
                   "Sigma (Within): 4"}),
            Lines(table));
  EXPECT_EQ(83, table.code);
  EXPECT_EQ(9472, table.options);
  EXPECT_EQ(std::vector<std::uint8_t>{3}, table.columnFormats);
  EXPECT_EQ(12, table.columnTitleWidth);
  EXPECT_EQ(8, table.cellWidth);
  EXPECT_EQ(14, table.rowTitleWidth);
  EXPECT_EQ(16, table.rowDisplayWidth);
  EXPECT_EQ(CellKind::Input, table.rows[1].kind);
}

TEST_F(GridTableTest, ShowsTwoWayCellMeansOfTheGridsOwnSize) {
  block.AV2.Committed.Rows = 8;
  AV2Params& grid = block.AV2.GridScratch;
  grid.Rows = 2;
  grid.Columns = 3;
  grid.GridMeans[0] = {1, 2, 3};
  grid.GridMeans[1] = {4, 5, 6};
  grid.Sigma = 7;
  const SummaryTable& table = Show(TwoWayGridTable);
  EXPECT_EQ(Texts{"2-Way (2 X 3) ANOVA Cell Means"}, table.headings);
  EXPECT_EQ((Texts{"B1", "B2", "B3"}), table.columns);
  EXPECT_EQ((Texts{"A1: 1 2 3", "A2: 4 5 6", ": _ _ _", "Sigma (Within): _ _ 7"}), Lines(table));
  EXPECT_EQ(12, table.cellWidth);
  EXPECT_EQ(14, table.columnDisplayWidth);
  EXPECT_EQ(14, table.columnTitleWidth);
  EXPECT_EQ((std::vector<std::uint8_t>{4, 4, 4}), table.columnFormats);
  EXPECT_EQ(9472, table.options);
}

TEST_F(GridTableTest, ShowsMeansAndWeightsOfAContrast) {
  PCParams& grid = block.PC.GridScratch;
  grid.NumberOfGroups = 2;
  grid.GridMeans = {10, 12};
  grid.GridWeights = {1, -1};
  grid.Sigma = 3;
  const SummaryTable& table = Show(ContrastGridTable);
  EXPECT_EQ(Texts{"Planned Contrast Cell Means"}, table.headings);
  EXPECT_EQ((Texts{"Contrast\n Mean   ", "Weight"}), table.columns);
  EXPECT_EQ((Texts{"  Group 1: 10 1", "  Group 2: 12 -1", ": _ _", "Sigma (Within): _ 3"}),
            Lines(table));
  EXPECT_EQ(15, table.rowTitleWidth);
  EXPECT_EQ(17, table.rowDisplayWidth);
  EXPECT_EQ(10, table.columnDisplayWidth);
  EXPECT_EQ(9472, table.options);
}

TEST_F(GridTableTest, ShowsTheLargestContrast) {
  block.PC.GridScratch.NumberOfGroups = 8;
  EXPECT_EQ(10U, Show(ContrastGridTable).rows.size());
}

TEST_F(GridTableTest, ShowsNothingWithoutMemory) {
  host.failAllocation = 1;
  std::vector<double> values = GridTableValues(OneWayGridTable, block);
  ShowSummaryTable(values, OneWayGridTable, nullptr, block);
  EXPECT_TRUE(host.workbook().items.empty());
}

}  // namespace
}  // namespace poweranalysis
