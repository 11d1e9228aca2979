#pragma once

#include <gmock/gmock.h>

#include <cstdio>

#include "dialogs/DialogRun.h"
#include "dialogs/FamilyDialogs.h"
#include "dialogs/ResultsDialog.h"

// What the tests of the families' dialogs share: tables, reports and charts as they are read.
namespace poweranalysis {

// A number as the tests below write it: six digits, "-" for a cell left blank.
inline std::string Shown(double value) {
  if (IsMissing(value)) {
    return "-";
  }
  char text[32];
  std::snprintf(text, sizeof text, "%.6g", value);
  return text;
}

// The results dialogs of all families.
inline std::vector<const ResultsDialogTable*> AllResultsDialogs() {
  std::vector<const ResultsDialogTable*> all;
  for (const FamilyDialogs& dialogs :
       {TTestDialogs(), AnovaDialogs(), VarianceDialogs(), CorrelationDialogs(),
        ProportionDialogs(), SurvivalDialogs(), ModelFitDialogs()}) {
    for (const ResultsDialogTable& table : dialogs.results) {
      all.push_back(&table);
    }
  }
  return all;
}

// What a chart button draws, for the built-in values of a family.
struct ExpectedPlot {
  int control;
  const char* caption;
  int kind;
  const char* title;  // third line
  const char* xLabel;
  const char* yLabel;
};

class FamilyRun : public DialogRun {
 protected:
  SummaryTable LastTable() {
    const std::vector<SummaryTable> tables = Items<SummaryTable>();
    EXPECT_FALSE(tables.empty()) << "no table was sent";
    return tables.empty() ? SummaryTable{} : tables.back();
  }
  std::vector<std::string> Headings() { return LastTable().headings; }
  std::vector<std::string> RowTitles() {
    std::vector<std::string> titles;
    for (const TableRow& row : LastTable().rows) {
      titles.push_back(row.title);
    }
    return titles;
  }
  std::vector<std::string> RowValues() {
    std::vector<std::string> values;
    for (const TableRow& row : LastTable().rows) {
      values.push_back(Shown(row.values.front()));
    }
    return values;
  }
  std::vector<std::string> Paragraphs() {
    const std::vector<Report> reports = Items<Report>();
    return reports.empty() ? std::vector<std::string>{} : reports.back().paragraphs;
  }
  Chart LastChart() {
    const std::vector<Chart> charts = Items<Chart>();
    EXPECT_FALSE(charts.empty()) << "no chart was drawn";
    return charts.empty() ? Chart{} : charts.back();
  }

  // Leaves the open dialogs and goes back to the startup dialog.
  void Leave() {
    while (OpenResource() != 6100 && OpenResource() != 0) {
      host_.Press(2);
    }
  }
  // Opens the results dialog after some values were typed into the parameter dialog.
  void OpenResultsWith(int mode,
                       const char* family,
                       const std::vector<std::pair<int, std::string>>& typed,
                       const std::vector<int>& pressed = {}) {
    OpenParameters(mode, family);
    for (const auto& [control, text] : typed) {
      host_.Type(control, text);
    }
    for (const int control : pressed) {
      host_.Press(control);
    }
    host_.Press(1);
  }

  // Draws each plot of the open results dialog once and reads it.
  void ExpectPlots(const std::string& title1,
                   const std::string& title2,
                   const std::vector<ExpectedPlot>& plots) {
    for (const ExpectedPlot& plot : plots) {
      SCOPED_TRACE(plot.title);
      host_.TakeWorkbook();
      ASSERT_NE(form().Find(plot.control), nullptr);
      EXPECT_EQ(form().Find(plot.control)->spec.caption, plot.caption);
      ASSERT_EQ(host_.Press(plot.control), 1);
      const std::vector<Chart> charts = Items<Chart>();
      ASSERT_EQ(charts.size(), 1u);
      EXPECT_EQ(charts[0].kind, plot.kind);
      EXPECT_THAT(charts[0].titles, ::testing::ElementsAre(title1, title2, plot.title));
      EXPECT_EQ(charts[0].xLabel, plot.xLabel);
      EXPECT_EQ(charts[0].yLabel, plot.yLabel);
    }
  }

  // The controls of these numbers are on the open dialog's frame or pages.
  void ExpectControls(const std::vector<int>& numbers) {
    for (const int number : numbers) {
      EXPECT_NE(form().Find(number), nullptr) << OpenResource() << " lacks control " << number;
    }
  }

  // A press of `control` was refused: nothing was sent, the messages are these, and the dialog of
  // `resource` is open.
  void ExpectRefused(int control, const std::vector<int>& messages, int resource) {
    EXPECT_EQ(host_.Press(control), 0);
    EXPECT_EQ(MessageIds(), messages);
    EXPECT_TRUE(host_.workbook().items.empty());
    EXPECT_EQ(OpenResource(), resource);
  }
};

}  // namespace poweranalysis
