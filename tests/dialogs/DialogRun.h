#pragma once

#include <gmock/gmock.h>

#include <cmath>
#include <cstdio>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "host/HeadlessHost.h"
#include "module/PowerAnalysisModule.h"
#include "support/ControlName.h"

namespace poweranalysis {

// A number as the tests write it: six digits, "-" for a cell left blank.
inline std::string Shown(double value) {
  if (IsMissing(value)) {
    return "-";
  }
  char text[32];
  std::snprintf(text, sizeof text, "%.6g", value);
  return text;
}

// A power as a report writes it.
inline std::string Percent(double power) {
  char text[32];
  std::snprintf(text, sizeof text, "%-5.2f%%", power * 100);
  return text;
}

// What a user enters on the parameter page: texts into edit controls, then buttons.
struct Design {
  int mode;
  const char* family;
  std::vector<std::pair<ControlName, std::string>> typed = {};
  std::vector<ControlName> pressed = {};
};

// The same design with one more entry.
inline Design With(Design design, const ControlName& control, const std::string& text) {
  design.typed.emplace_back(control, text);
  return design;
}
inline Design Pressing(Design design, const std::vector<ControlName>& buttons) {
  design.pressed.insert(design.pressed.end(), buttons.begin(), buttons.end());
  return design;
}

// Drives an analysis through its real dialogs without a window, by the names of their controls.
class DialogRun : public ::testing::Test {
 protected:
  void SetUp() override { Fresh(); }

  // A new analysis with factory values and an empty workbook.
  void Fresh() {
    Leave();
    host_.Press(ControlCancel);  // a dialog must not outlive its analysis
    analysis_.reset();
    analysis_.reset(Zlv6NewAnalysis());
    host_.cancelled = nullptr;
    Forget();
    host_.Start(*analysis_);
  }
  // Goes back to the startup dialog.
  void Leave() {
    while (OpenResource() != 0 && form().Find(ControlTasks) == nullptr) {
      host_.Press(ControlBack);
    }
  }
  void Forget() {
    host_.TakeWorkbook();
    host_.ClearMessages();
  }

  // --- Controls.
  int NumberOf(const ControlName& control) const {
    const int number = poweranalysis::NumberOf(control, family_);
    EXPECT_NE(number, 0) << "no control " << control;
    return number;
  }
  const HeadlessForm::Control* Find(const ControlName& control) {
    return form().Find(NumberOf(control));
  }
  std::string CaptionOf(const ControlName& control) {
    const HeadlessForm::Control* found = Find(control);
    EXPECT_NE(found, nullptr) << control << " is not on the open dialog";
    return found == nullptr ? "" : found->spec.caption;
  }
  std::string TextOf(const ControlName& control) {
    return form().GetDlgItemText(NumberOf(control));
  }
  bool IsChecked(const ControlName& control) {
    return form().IsDlgButtonChecked(NumberOf(control));
  }
  long Press(const ControlName& control) { return host_.Press(NumberOf(control)); }
  long Type(const ControlName& control, const std::string& text) {
    return host_.Type(NumberOf(control), text);
  }
  // As the user does it: a check box turns over before its command is sent.
  long Click(const ControlName& button) {
    const HeadlessForm::Control* control = Find(button);
    EXPECT_NE(control, nullptr) << button << " is not on the open dialog";
    if (control != nullptr && control->spec.kind == ControlKind::CheckBox) {
      host_.form()->CheckDlgButton(control->spec.number, !control->checked);
    }
    return Press(button);
  }

  // --- Dialogs, within the analysis as it is.
  // Picks a task in the startup dialog and enters a design on its parameter page.
  void OpenParameters(const Design& design) {
    Leave();
    const FamilyTable* family = FindFamily(design.family);
    family_ = family == nullptr ? family_ : family->family;
    host_.Select(ControlModes, design.mode);
    host_.Select(ControlTasks, FindTask(design.mode, design.family));
    host_.Press(ControlOk);
    parameters_ = OpenResource();
    for (const auto& [control, text] : design.typed) {
      EXPECT_NE(Find(control), nullptr) << design.family << " has no " << control;
      Type(control, text);
    }
    for (const ControlName& button : design.pressed) {
      Click(button);
    }
  }
  void OpenResults(const Design& design, const std::vector<ControlName>& buttons = {}) {
    OpenParameters(design);
    Press(ControlAccept);
    ASSERT_NE(OpenResource(), parameters_) << design.family << " stays at its parameters";
    results_ = OpenResource();
    for (const ControlName& button : buttons) {
      Click(button);
    }
  }
  // The same in a new analysis.
  void Parameters(const Design& design) {
    Fresh();
    OpenParameters(design);
  }
  void Results(const Design& design, const std::vector<ControlName>& buttons = {}) {
    Fresh();
    OpenResults(design, buttons);
  }
  void Calculate(const Design& design, const std::vector<ControlName>& buttons = {}) {
    Results(design, buttons);
    EXPECT_EQ(Press(ControlAccept), 1) << design.family;
    EXPECT_EQ(OpenResource(), results_) << "a calculation stays";
  }

  // --- What there is to see.
  PowerSettings& block() { return *Block(); }
  const FormModel& form() { return *host_.form(); }
  int OpenResource() { return host_.dialog() == nullptr ? 0 : host_.dialog()->resource(); }
  template <class Item>
  std::vector<Item> Items() {
    std::vector<Item> items;
    for (const WorkbookItem& item : host_.workbook().items) {
      if (const Item* found = std::get_if<Item>(&item)) {
        items.push_back(*found);
      }
    }
    return items;
  }
  // The last that was sent, or `none`.
  template <class Item>
  Item Last(Item none) {
    const std::vector<Item> items = Items<Item>();
    EXPECT_FALSE(items.empty()) << "nothing was sent";
    return items.empty() ? none : items.back();
  }
  SummaryTable LastTable() {
    SummaryTable none;
    none.rows = {{"", 0, {NAN}}};
    return Last(none);
  }
  Chart LastChart() { return Last(Chart{}); }
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
  // The value of a row of the last table.
  double Row(const std::string& title) {
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
  std::vector<int> MessageIds() {
    std::vector<int> ids;
    for (const Message& message : host_.messages()) {
      ids.push_back(message.id);
    }
    return ids;
  }

  HeadlessHost host_;
  std::unique_ptr<CPowerAnalysis> analysis_;
  Family family_ = Family::T1;  // whose dialogs were opened last
  int parameters_ = 0;          // their resources
  int results_ = 0;
};

}  // namespace poweranalysis
