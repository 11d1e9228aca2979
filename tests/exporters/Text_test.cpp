#include <gtest/gtest.h>

#include "exporters/Samples.h"

namespace poweranalysis {

namespace {

TEST(ExportText, AlignsTitlesIndentsAndNumbersAtTheirPoints) {
  Study study = SampleStudy();
  study.workbook.items.resize(1);
  EXPECT_EQ(
      "Power Calculation\n"
      "A <Test>\n"
      "H0:  \"x\" = y\n"
      "\n"
      "                          Value\n"
      "Mean (Mu)             -2.5\n"
      "Count             150000\n"
      "\n"
      "  P\u00B2:\n"
      "    Lower, Limit       0.3\n"
      "    Tiny               1.5e-07\n"
      "Power                  0.160504\n",
      ExportText(study));
}

TEST(ExportText, WidensAColumnToItsTitle) {
  Study study;
  SummaryTable table;
  table.headings = {"H"};
  table.columns = {"A long title", "B"};
  table.rows = {{"Row", 0, {1, 2}}};
  study.workbook.items.emplace_back(table);
  EXPECT_EQ("H\n\n     A long title  B\nRow             1  2\n", ExportText(study));
}

TEST(ExportText, WrapsParagraphsAtTheGivenWidth) {
  Study study;
  study.workbook.items.emplace_back(
      Report{{"\r\nFive words of this  text", "\r\nextraordinarilylongwords stand alone"}});
  TextStyle style;
  style.columns = 20;
  EXPECT_EQ("Five words of this\ntext\n\nextraordinarilylongwords\nstand alone\n",
            ExportText(study, style));
}

TEST(ExportText, FillsALineToItsLastColumn) {
  Study study;
  study.workbook.items.emplace_back(Report{{"twelve chars and eight"}});
  TextStyle style;
  style.columns = 22;
  EXPECT_EQ("twelve chars and eight\n", ExportText(study, style));
  style.columns = 21;
  EXPECT_EQ("twelve chars and\neight\n", ExportText(study, style));
}

TEST(ExportText, WrapsAtTwentyColumnsAtTheNarrowest) {
  Study study;
  study.workbook.items.emplace_back(Report{{"Twenty columns wide.", "\r\nTwenty-one is too far"}});
  for (const int columns : {20, 19, 1, 0, -5}) {
    TextStyle style;
    style.columns = columns;
    EXPECT_EQ("Twenty columns wide.\n\nTwenty-one is too\nfar\n", ExportText(study, style))
        << columns;
  }
}

TEST(ExportText, MeasuresCharactersAndNotBytes) {
  Study study;
  study.workbook.items.emplace_back(Report{
      {"\u00E4\u00E4\u00E4\u00E4\u00E4\u00E4\u00E4\u00E4\u00E4\u00E4 \u00E4\u00E4\u00E4\u00E4"
       "\u00E4\u00E4\u00E4\u00E4\u00E4"}});
  TextStyle style;
  style.columns = 20;
  EXPECT_EQ(std::string::npos, ExportText(study, style).find("\n\u00E4"));
}

TEST(ExportText, PrintsHeadingsInBoldWhenAsked) {
  TextStyle style;
  style.emphasis = true;
  EXPECT_EQ(0U, ExportText(SampleStudy(), style).find("\x1b[1mPower Calculation\x1b[0m\n"));
  EXPECT_EQ(std::string::npos, ExportText(SampleStudy()).find('\x1b'));
}

TEST(ExportText, DrawsOnlyTheChartsThatItIsAskedFor) {
  EXPECT_EQ(std::string::npos, ExportText(SampleStudy()).find("Third & last"));
  TextStyle style;
  style.charts = {"power-vs-n"};
  EXPECT_NE(std::string::npos, ExportText(SampleStudy(), style).find("Third & last"));
  style.charts = {"power-vs-es"};
  EXPECT_EQ(ExportText(SampleStudy()), ExportText(SampleStudy(), style));
}

TEST(ExportText, IsEmptyForAStudyWithoutResults) { EXPECT_EQ("", ExportText(Study())); }

}  // namespace

}  // namespace poweranalysis
