#include "office/Xlsx.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <clocale>
#include <random>

#include "host/NumberText.h"
#include "office/Documents.h"

namespace poweranalysis {

namespace {

using testing::HasSubstr;
using testing::Not;

std::string Exported(const std::vector<WorkbookStudy>& studies) {
  std::string error;
  std::string document = ExportXlsx(studies, error);
  EXPECT_EQ("", error);
  return document;
}

std::string SheetOf(const std::vector<WorkbookStudy>& studies) {
  return PartOf(Exported(studies), "xl/worksheets/sheet1.xml");
}

TEST(ExportXlsx, HasASheetForEachStudyUnderANameOfItsOwn) {
  const std::string document = Exported(SampleStudies());
  const std::string book = PartOf(document, "xl/workbook.xml");
  EXPECT_THAT(book, HasSubstr("<sheet name=\"Power &lt;of&gt; a test\""));
  EXPECT_THAT(book, HasSubstr("<sheet name=\"power &lt;of&gt; A test (2)\""));
  EXPECT_NE("", PartOf(document, "xl/worksheets/sheet2.xml"));
}

TEST(ExportXlsx, MakesNamesOfSheetsThatAreAllowed) {
  std::vector<WorkbookStudy> studies(5);
  studies[0].name = "[a]:*?/\\b'";
  studies[1].name = "history";
  studies[3].name = std::string(40, 'x');
  studies[4].name = std::string(40, 'X');
  const std::string book = PartOf(Exported(studies), "xl/workbook.xml");
  for (const char* name : {"a      b", "history (2)", "Study", "xxxxxxxxxxxxxxxxxxxxxxxxxxxxxxx",
                           "XXXXXXXXXXXXXXXXXXXXXXX (2)"}) {
    EXPECT_THAT(book, HasSubstr("<sheet name=\"" + std::string(name) + "\""));
  }
}

TEST(ExportXlsx, WritesEveryDigitOfAValue) {
  const std::string sheet = SheetOf(SampleStudies());
  EXPECT_THAT(sheet, HasSubstr("<v>0.16050415233243398</v>"));
  EXPECT_THAT(sheet, HasSubstr("<c r=\"B5\"><v>0.30000000000000004</v></c>"));
  std::mt19937_64 random(5);
  std::vector<WorkbookStudy> studies = SampleStudies();
  auto& table = std::get<SummaryTable>(studies[0].study.workbook.items.front());
  table.rows.clear();
  for (int i = 0; i < 500; ++i) {
    table.rows.push_back({"Row", 0, {static_cast<double>(random()) * 1e-21}});
  }
  const std::string many = SheetOf(studies);
  for (const TableRow& row : table.rows) {
    EXPECT_THAT(many, HasSubstr("<v>" + FormatShortest(row.values[0]) + "</v>"));
  }
}

TEST(ExportXlsx, IndentsTitlesByStyle) {
  const std::string document = Exported(SampleStudies());
  const std::string styles = PartOf(document, "xl/styles.xml");
  EXPECT_THAT(styles, HasSubstr("indent=\"1\""));
  EXPECT_THAT(styles, HasSubstr("indent=\"2\""));
}

TEST(ExportXlsx, HoldsTheTextsOfTheStudy) {
  const std::string texts = PartOf(Exported(SampleStudies()), "xl/sharedStrings.xml");
  for (const char* text :
       {"A &lt;Test&gt;", "One goal of %g. goes on  at length.", "The table", "Power at N + 1: 0.9",
        "Group Sample Size (N)", "Second &lt;b&gt;.", "2024-05-17T09:30:00"}) {
    EXPECT_THAT(texts, HasSubstr(text));
  }
}

TEST(ExportXlsx, DrawsAChartFromItsDataWithAGapForAFailedPoint) {
  const std::string document = Exported(SampleStudies());
  const std::string chart = PartOf(document, "xl/charts/chart1.xml");
  EXPECT_THAT(chart, HasSubstr("<c:scatterChart>"));
  // To leave gaps is the default, and not written.
  EXPECT_THAT(chart, Not(HasSubstr("dispBlanksAs")));
  EXPECT_THAT(chart, HasSubstr("<c:min val=\"0.2\"/>"));
  EXPECT_THAT(chart, HasSubstr("Group Sample Size (N)"));
  const std::string sheet = PartOf(document, "xl/worksheets/sheet1.xml");
  EXPECT_THAT(sheet, HasSubstr("<v>0.3</v>"));
  EXPECT_THAT(sheet, HasSubstr("<v>0.7</v>"));
  EXPECT_THAT(sheet, Not(HasSubstr("9999")));
}

std::vector<WorkbookStudy> StudyOfChart(const Chart& chart) {
  WorkbookStudy study;
  study.study.workbook.items.emplace_back(chart);
  return {study};
}

TEST(ExportXlsx, ChartsHaveTheStepsAndNumbersOfTheirOwnTicks) {
  Chart chart = SampleChart();
  chart.y = {0.87F, 0.9F, 0.93F};
  chart.yAxis = {0.85F, 0.95F, 0.02F};  // begins half a step before its first tick
  std::string xml = PartOf(Exported(StudyOfChart(chart)), "xl/charts/chart1.xml");
  EXPECT_THAT(xml, HasSubstr("<c:min val=\"0.86\"/>"));
  EXPECT_THAT(xml, HasSubstr("<c:majorUnit val=\"0.02\"/>"));
  EXPECT_THAT(xml, HasSubstr("<c:numFmt formatCode=\"0.00\" sourceLinked=\"0\"/>"));
  // The other axis counts whole numbers.
  EXPECT_THAT(xml, HasSubstr("<c:majorUnit val=\"5\"/>"));
  EXPECT_THAT(xml, HasSubstr("<c:numFmt formatCode=\"0\" sourceLinked=\"0\"/>"));
  chart.y[0] = 0.855F;  // no point is cut off
  xml = PartOf(Exported(StudyOfChart(chart)), "xl/charts/chart1.xml");
  EXPECT_THAT(xml, HasSubstr("<c:min val=\"0.84\"/>"));
}

TEST(ExportXlsx, ColumnTitlesWrapInARowAsHighAsTheyTake) {
  Chart chart = SampleChart();
  chart.yLabel = "Required Sample Size of a Group";
  const std::string document = Exported(StudyOfChart(chart));
  EXPECT_THAT(PartOf(document, "xl/styles.xml"),
              HasSubstr("<alignment horizontal=\"right\" wrapText=\"1\"/>"));
  EXPECT_THAT(PartOf(document, "xl/worksheets/sheet1.xml"), HasSubstr("ht=\"45\""));
}

TEST(ExportXlsx, SaysHowOftenAMessageCame) {
  EXPECT_THAT(PartOf(Exported(SampleStudies()), "xl/sharedStrings.xml"),
              HasSubstr("Second &lt;b&gt;. (2 times)"));
}

TEST(ExportXlsx, GivesTheSameStudiesTheSameBytes) {
  const std::string document = Exported(SampleStudies());
  EXPECT_EQ(document, Exported(SampleStudies()));
  EXPECT_THAT(PartOf(document, "docProps/core.xml"), HasSubstr("2024-05-18T10:00:00Z"));
}

TEST(ExportXlsx, DoesNotAskTheLocale) {
  const std::string document = Exported(SampleStudies());
  if (std::setlocale(LC_ALL, "de_DE.UTF-8") == nullptr) {
    GTEST_SKIP() << "no German locale on this machine";
  }
  const std::string german = Exported(SampleStudies());
  std::setlocale(LC_ALL, "C");
  EXPECT_EQ(document, german);
}

TEST(ExportXlsx, TakesAnyText) {
  std::vector<WorkbookStudy> studies = SampleStudies();
  studies[0].name = "=\xFF\x01";
  studies[0].notes = {std::string(40000, 'x'), "=1+1", ""};
  auto& chart = std::get<Chart>(studies[0].study.workbook.items.back());
  chart.xLabel = "=A1";
  chart.titles = {"=B2", "", ""};
  const std::string document = Exported(studies);
  EXPECT_THAT(PartOf(document, "xl/worksheets/sheet1.xml"), Not(HasSubstr("<f>")));
  EXPECT_THAT(PartOf(document, "xl/charts/chart1.xml"), Not(HasSubstr("<c:f>A1")));
}

TEST(ExportXlsx, TakesNoStudies) { EXPECT_NE("", SheetOf({})); }

TEST(ExportXlsx, SaysWhatDoesNotFitIntoASheet) {
  std::vector<WorkbookStudy> studies = SampleStudies();
  auto& table = std::get<SummaryTable>(studies[0].study.workbook.items.front());
  table.rows = {{"Row", 0, std::vector<double>(20000, 1.0)}};
  std::string error;
  EXPECT_EQ("", ExportXlsx(studies, error));
  EXPECT_NE("", error);
}

}  // namespace

}  // namespace poweranalysis
