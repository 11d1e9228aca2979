#pragma once

#include <algorithm>
#include <set>

#include "dialogs/DialogRun.h"
#include "dialogs/FamilyDialogs.h"

// What the tests of the families' dialogs expect of pages, tables, reports and charts.
namespace poweranalysis {

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
inline std::string NameOf(const Design& design) {
  return std::string(design.family) + (design.mode == ModePower ? " power" : " size");
}
inline Design DesignOf(const ResultsDialogTable& table) {
  return {table.mode, TableOf(table.family).code};
}

using Rows = std::vector<std::pair<std::string, double>>;

struct TableCase {
  Design design;
  std::vector<ControlName> onResults;  // pressed before Calculate
  int code;
  std::vector<std::string> headings;
  Rows rows;
};

// What a chart button draws.
struct ExpectedPlot {
  ControlName button;
  int kind;
  std::string title;  // third line
  std::string xLabel;
  std::string yLabel;
  std::string varied = "";  // the field that the X axis stands for; unknown: points are not held
  std::string row = "";     // of the table, that the Y axis stands for; the last row by default
  std::string alsoVaried = "";  // a second field that follows X
};

// The fields and buttons of a dialog by kind.
struct PageCase {
  int mode;
  const char* family;
  bool results;
  int frame;
  std::vector<ControlName> edits = {};
  std::vector<ControlName> radios = {};
  std::vector<ControlName> checks = {};
  std::vector<ControlName> buttons = {};
};

// The sentences on tails by form.
inline const std::string kTails[] = {
    "\r\nThe test is two-tailed, which means that either a positive or negative deviation from the "
    "hypothesized value could be declared significant.  ",
    "\r\nThe test is one-tailed, so that only a positive deviation from the hypothesized value "
    "could be declared significant.  ",
    "\r\nThe test is one-tailed, so that only a negative deviation from the hypothesized value "
    "could be declared significant.  "};
inline const std::string& kTwoTailed = kTails[0];
inline const std::string& kPositive = kTails[1];
inline const std::string& kNegative = kTails[2];

class FamilyRun : public DialogRun {
 protected:
  void ExpectTables(const std::vector<TableCase>& cases) {
    for (const TableCase& c : cases) {
      SCOPED_TRACE(std::string(c.design.family) + " " + std::to_string(c.code) + " " +
                   (c.headings.size() > 2 ? c.headings[2] : ""));
      Calculate(c.design, c.onResults);
      ASSERT_THAT(Items<SummaryTable>(), ::testing::SizeIs(1));
      EXPECT_THAT(host_.messages(), ::testing::IsEmpty());
      const SummaryTable table = LastTable();
      EXPECT_EQ(table.code, c.code);
      EXPECT_EQ(table.headings, c.headings);
      ASSERT_EQ(table.rows.size(), c.rows.size());
      for (std::size_t i = 0; i < c.rows.size(); ++i) {
        EXPECT_EQ(table.rows[i].title, c.rows[i].first);
        EXPECT_EQ(table.rows[i].indent, 0);
        EXPECT_NEAR(table.rows[i].values.front(), c.rows[i].second,
                    2e-6 * std::fmax(1, std::fabs(c.rows[i].second)))
            << c.rows[i].first;
      }
    }
  }

  // Draws each plot of a design once and reads it.
  void ExpectPlots(const Design& design,
                   const std::vector<ControlName>& onResults,
                   const std::string& title1,
                   const std::string& title2,
                   const std::vector<ExpectedPlot>& plots) {
    for (const ExpectedPlot& plot : plots) {
      SCOPED_TRACE(NameOf(design) + ": " + plot.button.text);
      Results(design, onResults);
      ASSERT_EQ(Press(plot.button), 1);
      EXPECT_EQ(OpenResource(), results_) << "a chart stays";
      ASSERT_THAT(Items<Chart>(), ::testing::SizeIs(1));
      const Chart chart = LastChart();
      EXPECT_EQ(chart.kind, plot.kind);
      EXPECT_THAT(chart.titles, ::testing::ElementsAre(title1, title2, plot.title));
      EXPECT_EQ(chart.xLabel, plot.xLabel);
      EXPECT_EQ(chart.yLabel, plot.yLabel);
      EXPECT_EQ(chart.name, plot.button.text);
      EXPECT_EQ(Find(plot.button)->spec.name, plot.button.text);
      if (!plot.varied.empty()) {
        ExpectPointsOfTheTable(design, onResults, plot, chart);
      }
    }
  }

  // The first and the last point are what a calculation at that place gives.
  void ExpectPointsOfTheTable(const Design& design,
                              const std::vector<ControlName>& onResults,
                              const ExpectedPlot& plot,
                              const Chart& chart) {
    ASSERT_GE(chart.x.size(), 2U);
    for (const std::size_t i : {std::size_t{0}, chart.x.size() - 1}) {
      Design there = With(design, plot.varied, NumberText(chart.x[i]));
      if (!plot.alsoVaried.empty()) {
        there = With(there, plot.alsoVaried, NumberText(chart.x[i]));
      }
      Calculate(there, onResults);
      const double value = plot.row.empty() ? LastValue() : Row(plot.row);
      const double slack = design.mode == ModePower ? 1e-5 : std::fmax(1, value * 1e-3);
      EXPECT_NEAR(chart.y[i], value, slack) << "at " << chart.x[i];
    }
  }

  void ExpectPage(const PageCase& c) {
    const Design design{c.mode, c.family};
    SCOPED_TRACE(NameOf(design) + " " + std::to_string(c.frame));
    if (c.results) {
      Results(design);
    } else {
      Parameters(design);
    }
    EXPECT_EQ(OpenResource(), c.frame);
    ExpectControls(c.edits, {ControlKind::IntEdit, ControlKind::RealEdit});
    ExpectControls(c.radios, {ControlKind::Radio});
    ExpectControls(c.checks, {ControlKind::CheckBox});
    ExpectControls(c.buttons, {ControlKind::Button});
    std::set<std::string> captions;
    for (const ControlName& button : c.buttons) {
      EXPECT_TRUE(captions.insert(CaptionOf(button)).second) << CaptionOf(button);
    }
    if (c.results) {
      const int next = NumberOf(c.buttons.back()) + 1;
      EXPECT_TRUE(next == ControlChangeParams || Find(next) == nullptr) << "no more charts";
    }
  }

  // The controls are on the open dialog's frame or pages, and of one of these kinds.
  void ExpectControls(const std::vector<ControlName>& names,
                      const std::set<ControlKind>& kinds = {}) {
    for (const ControlName& name : names) {
      const HeadlessForm::Control* control = Find(name);
      ASSERT_NE(control, nullptr) << OpenResource() << " lacks " << name;
      EXPECT_TRUE(kinds.empty() || kinds.count(control->spec.kind) > 0) << name;
      EXPECT_FALSE(control->spec.caption.empty()) << name;
    }
  }

  // A press of the button was refused: nothing was sent, the messages are these, and the dialog of
  // `resource` is open.
  void ExpectRefused(const ControlName& button, const std::vector<int>& messages, int resource) {
    EXPECT_EQ(Press(button), 0) << button;
    EXPECT_EQ(MessageIds(), messages) << button;
    EXPECT_THAT(host_.workbook().items, ::testing::IsEmpty()) << button;
    EXPECT_EQ(OpenResource(), resource) << button;
  }

  // Calculate is refused with this message, leads back to the parameters, commits nothing and sends
  // nothing; the same design's charts that hold the effect fixed say so and stay.
  void ExpectRefusedEffect(const Design& design,
                           int message,
                           const std::vector<ControlName>& charts) {
    SCOPED_TRACE(NameOf(design));
    Results(design);
    Type("NInterval", "7");
    ExpectRefused(ControlAccept, {message}, parameters_);
    EXPECT_EQ(host_.messageCalls(), 1);
    Press(ControlAccept);
    EXPECT_EQ(TextOf("NInterval"), "10") << "the range edit was not committed";
    for (const ControlName& chart : charts) {
      Results(design);
      ExpectRefused(chart, {message}, results_);
    }
  }

  // OK at the parameters is refused with this message, and nothing is committed.
  void ExpectRefusedParameters(const Design& design, int message, const std::string& text) {
    SCOPED_TRACE(NameOf(design));
    Parameters(With(design, "Alpha", "0.07"));
    ExpectRefused(ControlAccept, {message}, parameters_);
    ASSERT_FALSE(host_.messages().empty());
    EXPECT_EQ(host_.messages()[0].text, text);
    OpenParameters({design.mode, design.family});
    EXPECT_EQ(TextOf("Alpha"), "0.05") << "nothing was committed";
  }

  // What the procedures and the checks said; a dialog may add on its own that there is no result.
  std::vector<int> MessagesOfTheTest() {
    constexpr int kFirstOwnText = 30000;
    std::vector<int> ids = MessageIds();
    ids.erase(std::remove_if(ids.begin(), ids.end(), [](int id) { return id >= kFirstOwnText; }),
              ids.end());
    return ids;
  }

  // Levels of detail: nothing at 3, a report at 4.
  void ExpectReportOnlyAtTheHighestLevel(const Design& design) {
    Results(design);
    host_.supplementaryLevel = 3;
    Press(ControlAccept);
    EXPECT_THAT(Items<Report>(), ::testing::IsEmpty());
    EXPECT_THAT(Items<SummaryTable>(), ::testing::SizeIs(1));
    host_.supplementaryLevel = 4;
    Press(ControlAccept);
    EXPECT_THAT(Items<Report>(), ::testing::SizeIs(1));
  }

  static std::string NumberText(double value) {
    char text[40];
    std::snprintf(text, sizeof text, "%.7g", value);
    return text;
  }
};

}  // namespace poweranalysis
