#include <gtest/gtest.h>

#include "exporters/Samples.h"

namespace poweranalysis {

namespace {

bool Has(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

TEST(ExportFormats, AreFoundByName) {
  EXPECT_EQ(ExportFormat::Json, FindExportFormat("json"));
  EXPECT_EQ(ExportFormat::Text, FindExportFormat("text"));
  EXPECT_EQ(std::nullopt, FindExportFormat("xml"));
  EXPECT_EQ("text, json, csv, markdown, html, xlsx, odt", ExportFormatNames());
}

TEST(ExportFormats, EachHasItsOwnWriter) {
  const Study study = SampleStudy();
  EXPECT_EQ(ExportText(study), Export(study, ExportFormat::Text));
  EXPECT_EQ(ExportJson(study), Export(study, ExportFormat::Json));
  EXPECT_EQ(ExportCsv(study), Export(study, ExportFormat::Csv));
  EXPECT_EQ(ExportMarkdown(study), Export(study, ExportFormat::Markdown));
  EXPECT_EQ(ExportHtml(study), Export(study, ExportFormat::Html));
  EXPECT_FALSE(IsDocument(ExportFormat::Html));
  EXPECT_TRUE(IsDocument(ExportFormat::Xlsx));
  EXPECT_EQ("", Export(study, ExportFormat::Odt)) << "documents are not text";
}

TEST(ExportCsv, HoldsAllDigitsQuotesAndEmptyCells) {
  EXPECT_EQ(
      "Title,Value\n"
      "Mean (Mu),-2.5\n"
      "Count,150000\n"
      ",\n"
      "  P\u00B2:,\n"
      "\"    Lower, Limit\",0.30000000000000004\n"
      "    Tiny,1.5e-07\n"
      "Power,0.16050415233243398\n",
      ExportCsv(SampleStudy()));
}

TEST(ExportFullCsv, PutsHeadingsBeforeTheTableAndChartsBehindIt) {
  EXPECT_EQ(
      "Heading,Power Calculation\n"
      "Heading,A <Test>\n"
      "Heading,\"H0:  \"\"x\"\" = y\"\n" +
          ExportCsv(SampleStudy()) +
          "\n"
          "Chart,power-vs-n\n"
          "Group Sample Size (N),Power\n"
          "10,0.3\n"
          "20,\n"
          "30,0.7\n",
      ExportFullCsv(SampleStudy()));
}

TEST(ExportCsv, DoublesQuotes) {
  Study study;
  SummaryTable table;
  table.columns = {"say \"x\""};
  study.workbook.items.emplace_back(table);
  EXPECT_EQ("Title,\"say \"\"x\"\"\"\n", ExportCsv(study));
}

TEST(ExportMarkdown, HoldsTableReportPointsAndMessages) {
  EXPECT_EQ(
      "## Power Calculation\n"
      "\n"
      "A \\<Test\\>  \n"
      "H0:  \"x\" = y  \n"
      "\n"
      "|   | Value |\n"
      "|:--|--:|\n"
      "| Mean (Mu) | -2.5 |\n"
      "| Count | 150000 |\n"
      "|  |  |\n"
      "| &nbsp;&nbsp;P\u00B2: |  |\n"
      "| &nbsp;&nbsp;&nbsp;&nbsp;Lower, Limit | 0.3 |\n"
      "| &nbsp;&nbsp;&nbsp;&nbsp;Tiny | 1.5e-07 |\n"
      "| Power | 0.160504 |\n"
      "\n"
      "Title -- here\n"
      "\n"
      "One goal of %g. goes on  at length.\n"
      "\n"
      "Second line\n"
      "\n"
      "of two\n"
      "\n"
      "### Third & last\n"
      "\n"
      "| Group Sample Size (N) | Power |\n"
      "|--:|--:|\n"
      "| 10 | 0.3 |\n"
      "| 20 |  |\n"
      "| 30 | 0.7 |\n"
      "\n"
      "> First.  Second \\<b\\>. (2 times)\n",
      ExportMarkdown(SampleStudy()));
}

TEST(ExportHtml, EscapesTextsAndCarriesAllDigits) {
  const std::string html = ExportHtml(SampleStudy());
  EXPECT_EQ(0U, html.find("<!DOCTYPE html>\n"));
  EXPECT_TRUE(Has(
      html, "<caption>Power Calculation<br>A &lt;Test&gt;<br>H0:  &quot;x&quot; = y</caption>"));
  EXPECT_TRUE(Has(html, "<td data-value=\"0.16050415233243398\">0.160504</td>"));
  EXPECT_TRUE(Has(html, "<th scope=\"row\" style=\"padding-left: 4ch\">Tiny</th>"));
  EXPECT_TRUE(Has(html, "<tr><th scope=\"row\"></th><td></td></tr>"));
  EXPECT_TRUE(Has(html, "<p>Title -- here</p>"));
  EXPECT_TRUE(Has(html, "<p role=\"alert\">First.\nSecond &lt;b&gt;. (2 times)</p>"));
}

TEST(Items, StandInTheStudysDocumentAsTheyStandAlone) {
  const Study study = SampleStudy();
  const SummaryTable& table = *SummaryOf(study);
  const Report& report = *ReportsOf(study).front();
  const Chart& chart = *ChartsOf(study).front();
  EXPECT_TRUE(Has(ExportHtml(study), HtmlOf(table) + HtmlOf(report) + HtmlOf(chart)));
  EXPECT_TRUE(Has(ExportHtml(study), "<body>\n" + HtmlBodyOf(study) + "</body>"));
  EXPECT_EQ(0U, HtmlOf(table).find("<table>"));
  EXPECT_EQ(0U, HtmlOf(chart).find("<figure>\n<svg "));
  EXPECT_TRUE(Has(ExportMarkdown(study),
                  MarkdownOf(table) + "\n" + MarkdownOf(report) + "\n" + MarkdownOf(chart)));
  EXPECT_EQ(ExportText(study, {80, false, {"power-vs-n"}}),
            TextOf(table) + "\n" + TextOf(report) + "\n" + TextOf(chart));
  EXPECT_TRUE(Has(ExportFullCsv(study), CsvOf(table) + "\nChart,power-vs-n\n" + CsvOf(chart)));
}

SummaryTable TableOfKinds() {
  SummaryTable table;
  table.headings = {"H"};
  table.columns = {"Value"};
  table.rows = {{"In", 0, {1234567.891}, CellKind::Input},
                {"Out", 0, {1234567.891}},
                {"Power", 2, {0.9999999}, CellKind::Probability, true}};
  return table;
}

TEST(Tables, ShowNumbersByWhatTheyAre) {
  const SummaryTable table = TableOfKinds();
  EXPECT_TRUE(Has(TextOf(table), "1234567.891\n"));
  EXPECT_TRUE(Has(TextOf(table), "1.23457e+06\n"));
  EXPECT_TRUE(Has(TextOf(table), ">0.999999\n"));
  EXPECT_TRUE(Has(MarkdownOf(table), "| In | 1234567.891 |"));
  EXPECT_TRUE(Has(MarkdownOf(table), "| >0.999999 |"));
  EXPECT_TRUE(Has(HtmlOf(table), "<td data-value=\"1234567.891\">1234567.891</td>"));
  EXPECT_TRUE(Has(HtmlOf(table), "<td data-value=\"0.9999999\">&gt;0.999999</td>"));
}

TEST(Tables, MarkEveryAnswerInHtml) {
  EXPECT_TRUE(Has(HtmlOf(TableOfKinds()), "<tr class=\"answer\"><th scope=\"row\" style"));
  EXPECT_TRUE(Has(HtmlOf(TableOfKinds()), "<tr><th scope=\"row\">Out</th>"));
}

TEST(ExportMarkdown, ShowsNoPlottedPowerBelowOneAsOne) {
  Chart chart = SampleChart();
  chart.y = {0.9999998F, 1, 25};
  EXPECT_TRUE(Has(MarkdownOf(chart), "| 10 | >0.999999 |\n| 20 | 1 |\n| 30 | 25 |\n"));
}

TEST(ExportHtml, DrawsChartsInTheDocument) {
  const std::string html = ExportHtml(SampleStudy());
  EXPECT_TRUE(Has(html, "<figure>\n<svg "));
  EXPECT_FALSE(Has(html, "<?xml"));
}

TEST(ShortestDouble, IsTheDecimalThatReadsBackAsTheSingle) {
  EXPECT_EQ(0.3, ShortestDouble(0.3F));
  EXPECT_EQ(16777216.0, ShortestDouble(16777216.0F));
  EXPECT_EQ(-1.5, ShortestDouble(-1.5F));
}

}  // namespace

}  // namespace poweranalysis
