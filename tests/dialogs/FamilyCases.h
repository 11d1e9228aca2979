#pragma once

#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "dialogs/DialogRun.h"

// A family's dialogs driven by control numbers alone, as a window or a script drives them.
namespace poweranalysis {

// What a user enters on the parameter page: texts under edit controls, then buttons.
struct Design {
  int mode;
  const char* family;
  std::vector<std::pair<int, std::string>> typed;
  std::vector<int> pressed;
};

// The same design with one more entry.
inline Design With(Design design, int control, const std::string& text) {
  design.typed.emplace_back(control, text);
  return design;
}
inline Design Pressing(Design design, std::vector<int> buttons) {
  design.pressed.insert(design.pressed.end(), buttons.begin(), buttons.end());
  return design;
}

using Rows = std::vector<std::pair<std::string, double>>;

struct TableCase {
  Design design;
  std::vector<int> onResults;  // buttons of the results page pressed before Calculate
  int code;
  std::vector<std::string> headings;
  Rows rows;
};

struct ChartCase {
  Design design;
  std::vector<int> onResults;
  int button;
  int kind;
  std::string title1;
  std::string title2;
  std::string title3;
  std::string xLabel;
  std::string yLabel;
  int varied;            // control of the parameter page that the X axis stands for
  std::string row = "";  // of the table, that the Y axis stands for; the last row by default
  int alsoVaried = 0;    // a second control that follows X
};

// The buttons and fields of a dialog and the kind of each.
struct PageCase {
  int mode;
  const char* family;
  bool results;
  int frame;
  std::vector<int> edits;
  std::vector<int> radios;
  std::vector<int> checks;
  std::vector<int> buttons;
};

class FamilyCases : public DialogRun {
 protected:
  // A new analysis with factory values and an empty workbook.
  void Fresh() {
    // Results, parameters, startup: a dialog must not outlive its analysis.
    for (int i = 0; i < 3 && host_.dialog() != nullptr; ++i) {
      host_.Press(2);
    }
    analysis_.reset();
    analysis_.reset(Zlv6NewAnalysis());
    host_.cancelled = nullptr;
    host_.TakeWorkbook();
    host_.ClearMessages();
    host_.Start(*analysis_);
  }

  // As the user does it: a check box turns over before its command is sent.
  void PressOrTurn(int button) {
    const auto* control = form().Find(button);
    ASSERT_NE(control, nullptr) << button;
    if (control->spec.kind == ControlKind::CheckBox) {
      host_.form()->CheckDlgButton(button, !control->checked);
    }
    host_.Press(button);
  }

  void Parameters(const Design& design) {
    Fresh();
    OpenParameters(design.mode, design.family);
    for (const auto& [control, text] : design.typed) {
      ASSERT_NE(form().Find(control), nullptr) << design.family << ' ' << control;
      host_.Type(control, text);
    }
    for (const int button : design.pressed) {
      PressOrTurn(button);
    }
    parameters_ = OpenResource();
  }
  void Results(const Design& design, const std::vector<int>& buttons = {}) {
    Parameters(design);
    host_.Press(1);
    ASSERT_NE(OpenResource(), parameters_) << design.family << " stays at its parameters";
    results_ = OpenResource();
    for (const int button : buttons) {
      PressOrTurn(button);
    }
  }
  void Calculate(const Design& design, const std::vector<int>& buttons = {}) {
    Results(design, buttons);
    EXPECT_EQ(host_.Press(1), 1) << design.family;
    EXPECT_EQ(OpenResource(), results_) << "a calculation stays";
  }
  static SummaryTable NoTable() {
    SummaryTable table;
    table.rows = {{"", 0, {NAN}}};
    return table;
  }
  SummaryTable LastTable() {
    const std::vector<SummaryTable> tables = Items<SummaryTable>();
    EXPECT_FALSE(tables.empty()) << "no table was sent";
    return tables.empty() ? NoTable() : tables.back();
  }
  double Value(const std::string& title) {
    for (const TableRow& row : LastTable().rows) {
      if (row.title == title) {
        return row.values.front();
      }
    }
    ADD_FAILURE() << "no row " << title;
    return NAN;
  }
  double LastValue() { return LastTable().rows.back().values.front(); }
  std::vector<std::string> Paragraphs() {
    const std::vector<Report> reports = Items<Report>();
    return reports.empty() ? std::vector<std::string>{} : reports.back().paragraphs;
  }
  std::vector<std::string> Headings() { return LastTable().headings; }

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

  void ExpectCharts(const std::vector<ChartCase>& cases) {
    for (const ChartCase& c : cases) {
      SCOPED_TRACE(std::string(c.design.family) + " " + std::to_string(c.button) + " " + c.title3);
      Results(c.design, c.onResults);
      ASSERT_EQ(host_.Press(c.button), 1);
      EXPECT_EQ(OpenResource(), results_) << "a chart stays";
      ASSERT_THAT(Items<Chart>(), ::testing::SizeIs(1));
      const Chart chart = Items<Chart>().back();
      EXPECT_EQ(chart.kind, c.kind);
      EXPECT_THAT(chart.titles, ::testing::ElementsAre(c.title1, c.title2, c.title3));
      EXPECT_EQ(chart.xLabel, c.xLabel);
      EXPECT_EQ(chart.yLabel, c.yLabel);
      EXPECT_EQ(chart.name, form().Find(c.button)->spec.name);
      ExpectPointsOfTheTable(c, chart);
    }
  }

  // The first and the last point are what a calculation at that place gives.
  void ExpectPointsOfTheTable(const ChartCase& c, const Chart& chart) {
    ASSERT_GE(chart.x.size(), 2U);
    for (const std::size_t i : {std::size_t{0}, chart.x.size() - 1}) {
      Design there = With(c.design, c.varied, NumberText(chart.x[i]));
      if (c.alsoVaried != 0) {
        there = With(there, c.alsoVaried, NumberText(chart.x[i]));
      }
      Calculate(there, c.onResults);
      const double value = c.row.empty() ? LastValue() : Value(c.row);
      const double slack = c.design.mode == ModePower ? 1e-5 : std::fmax(1, value * 1e-3);
      EXPECT_NEAR(chart.y[i], value, slack) << "at " << chart.x[i];
    }
  }

  void ExpectPage(const PageCase& c) {
    SCOPED_TRACE(std::string(c.family) + " " + std::to_string(c.frame));
    const Design design{c.mode, c.family, {}, {}};
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
    for (const int button : c.buttons) {
      if (const auto* control = form().Find(button)) {
        EXPECT_TRUE(captions.insert(control->spec.caption).second) << control->spec.caption;
      }
    }
    if (c.results) {
      const int next = c.buttons.back() + 1;
      EXPECT_EQ(form().Find(next), next == 208 ? form().Find(208) : nullptr) << "no more charts";
    }
  }

  void ExpectControls(const std::vector<int>& numbers, const std::set<ControlKind>& kinds) {
    for (const int number : numbers) {
      const auto* control = form().Find(number);
      ASSERT_NE(control, nullptr) << number;
      EXPECT_TRUE(kinds.count(control->spec.kind)) << number << ' ' << control->spec.name;
      EXPECT_FALSE(control->spec.caption.empty()) << number;
    }
  }

  // Calculate is refused with this message, leads back to the parameters, commits nothing and sends
  // nothing; the same design's charts that hold the effect fixed say so and stay.
  void ExpectRefusedEffect(const Design& design, int message, const std::vector<int>& charts) {
    SCOPED_TRACE(std::string(design.family) + (design.mode == ModePower ? " power" : " size"));
    Results(design);
    host_.Type(140, "7");
    host_.Press(1);
    EXPECT_EQ(OpenResource(), parameters_);
    EXPECT_THAT(MessageIds(), ::testing::ElementsAre(message));
    EXPECT_EQ(host_.messageCalls(), 1);
    EXPECT_THAT(host_.workbook().items, ::testing::IsEmpty());
    host_.Press(1);
    EXPECT_EQ(TextOf(140), "10") << "the range edit was not committed";
    for (const int chart : charts) {
      Results(design);
      EXPECT_EQ(host_.Press(chart), 0) << chart;
      EXPECT_THAT(MessageIds(), ::testing::ElementsAre(message)) << chart;
      EXPECT_EQ(OpenResource(), results_) << "a refused chart stays";
      EXPECT_THAT(host_.workbook().items, ::testing::IsEmpty());
    }
  }

  // OK at the parameters is refused with this message, and nothing is committed.
  void ExpectRefusedParameters(const Design& design, int message, const std::string& text) {
    SCOPED_TRACE(std::string(design.family) + (design.mode == ModePower ? " power" : " size"));
    Parameters(With(design, 111, "0.07"));
    EXPECT_EQ(host_.Press(1), 0);
    EXPECT_EQ(OpenResource(), parameters_);
    ASSERT_THAT(MessageIds(), ::testing::ElementsAre(message));
    EXPECT_EQ(host_.messages()[0].text, text);
    host_.Press(2);
    OpenParameters(design.mode, design.family);
    EXPECT_EQ(TextOf(111), "0.05") << "nothing was committed";
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
    host_.Press(1);
    EXPECT_THAT(Items<Report>(), ::testing::IsEmpty());
    EXPECT_THAT(Items<SummaryTable>(), ::testing::SizeIs(1));
    host_.supplementaryLevel = 4;
    host_.Press(1);
    EXPECT_THAT(Items<Report>(), ::testing::SizeIs(1));
  }

  static std::string NumberText(double value) {
    char text[40];
    std::snprintf(text, sizeof text, "%.7g", value);
    return text;
  }

  int parameters_ = 0;
  int results_ = 0;
};

inline const std::string kTwoTailed =
    "\r\nThe test is two-tailed, which means that either a positive or negative deviation from the "
    "hypothesized value could be declared significant.  ";
inline const std::string kPositive =
    "\r\nThe test is one-tailed, so that only a positive deviation from the hypothesized value "
    "could be declared significant.  ";
inline const std::string kNegative =
    "\r\nThe test is one-tailed, so that only a negative deviation from the hypothesized value "
    "could be declared significant.  ";

}  // namespace poweranalysis
