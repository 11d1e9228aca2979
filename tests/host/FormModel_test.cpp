#include "host/FormModel.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <utility>

namespace poweranalysis {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr int kEdit = 10;
constexpr int kRadio = 20;  // and the two after it
constexpr int kCheck = 30;
constexpr int kList = 40;
constexpr int kAbsent = 99;

DialogSpec FormSpec() {
  const auto control = [](int number, ControlKind kind) {
    ControlSpec spec;
    spec.number = number;
    spec.kind = kind;
    return spec;
  };
  DialogSpec spec;
  spec.frame = {control(kCheck, ControlKind::CheckBox)};
  spec.pages = {
      {1,
       "first",
       {control(kEdit, ControlKind::RealEdit), control(kRadio, ControlKind::Radio),
        control(kRadio + 1, ControlKind::Radio), control(kRadio + 2, ControlKind::Radio)}},
      {2, "second", {control(kList, ControlKind::List)}}};
  return spec;
}

class FormModelTest : public ::testing::Test {
 protected:
  FormModelTest() { form.AddDlgTabs(FormSpec()); }

  // The number of a typed text, or NaN when it is none.
  double Typed(std::string_view text) {
    form.Type(kEdit, text);
    double value = std::numeric_limits<double>::quiet_NaN();
    form.GetDlgItemDouble(kEdit, value);
    return value;
  }
  bool IsNumber(std::string_view text) {
    form.Type(kEdit, text);
    double value = 0;
    return form.GetDlgItemDouble(kEdit, value) == 0;
  }

  FormModel form;
};

TEST_F(FormModelTest, HoldsControlsOfFrameAndPages) {
  for (const int control : {kEdit, kRadio, kCheck, kList}) {
    EXPECT_NE(form.Find(control), nullptr) << control;
  }
  EXPECT_EQ(form.Find(kAbsent), nullptr);
  EXPECT_EQ(form.spec().pages.size(), 2u);
}

TEST_F(FormModelTest, ReadsTypedNumbers) {
  EXPECT_EQ(Typed("12"), 12);
  EXPECT_EQ(Typed(" 0.5\t"), 0.5);
  EXPECT_EQ(Typed("+3"), 3);
  EXPECT_EQ(Typed("-1e-3"), -1e-3);
  EXPECT_EQ(Typed(".5"), 0.5);
  EXPECT_EQ(Typed("5."), 5);
  EXPECT_EQ(Typed("1E5"), 1e5);
}

TEST_F(FormModelTest, TextsThatAreNoNumberGiveNone) {
  for (const char* text :
       {"", " ", "abc", "1,5", "1 2", "12x", "--1", "+-1", "+", "-", "e5", "0x10", "1e", "++1"}) {
    EXPECT_FALSE(IsNumber(text)) << text;
    EXPECT_EQ(form.GetDlgItemLong(kEdit), 0) << text;
  }
}

// A number too large for a double is not read as none, which would be stored as 0 and pass for a
// value.
TEST_F(FormModelTest, NumbersTooLargeAreInfiniteAndTooSmallAreZero) {
  EXPECT_EQ(Typed("1e400"), std::numeric_limits<double>::infinity());
  EXPECT_EQ(Typed("-1e400"), -std::numeric_limits<double>::infinity());
  EXPECT_EQ(Typed("1e-400"), 0);
  EXPECT_EQ(Typed("1" + std::string(400, '0')), std::numeric_limits<double>::infinity());
  EXPECT_EQ(Typed("0." + std::string(400, '0') + "1"), 0);
}

TEST_F(FormModelTest, WholeNumbersCutTowardZeroAndStayInThirtyTwoBits) {
  const auto whole = [&](std::string_view text) {
    form.Type(kEdit, text);
    return form.GetDlgItemLong(kEdit);
  };
  EXPECT_EQ(whole("12.9"), 12);
  EXPECT_EQ(whole("-12.9"), -12);
  EXPECT_EQ(whole("1e3"), 1000);
  EXPECT_EQ(whole("2147483647"), 2147483647);
  EXPECT_EQ(whole("2147483648"), 2147483647);
  EXPECT_EQ(whole("-1e300"), -2147483647 - 1);
  EXPECT_EQ(whole("nan"), 0);
}

TEST_F(FormModelTest, ANumberKeepsItsFullValueUntilItIsTypedIn) {
  form.SetDlgItemDouble(kEdit, 1.0 / 3, 4, 5);
  EXPECT_EQ(form.GetDlgItemText(kEdit), "0.33333");
  double value = 0;
  EXPECT_EQ(form.GetDlgItemDouble(kEdit, value), 0);
  EXPECT_EQ(value, 1.0 / 3);
  form.Type(kEdit, "0.33333");
  EXPECT_EQ(form.GetDlgItemDouble(kEdit, value), 0);
  EXPECT_EQ(value, 0.33333);
}

TEST_F(FormModelTest, AWholeNumberReadsAsRealAndWhole) {
  form.SetDlgItemLong(kEdit, 150000);
  EXPECT_EQ(form.GetDlgItemText(kEdit), "150000");
  EXPECT_EQ(form.GetDlgItemLong(kEdit), 150000);
  double value = 0;
  EXPECT_EQ(form.GetDlgItemDouble(kEdit, value), 0);
  EXPECT_EQ(value, 150000);
}

TEST_F(FormModelTest, OneRadioOfAGroupIsChecked) {
  form.CheckRadioButton(kRadio, kRadio + 2, kRadio + 1);
  EXPECT_FALSE(form.IsDlgButtonChecked(kRadio));
  EXPECT_TRUE(form.IsDlgButtonChecked(kRadio + 1));
  form.CheckRadioButton(kRadio, kRadio + 2, kRadio + 2);
  EXPECT_FALSE(form.IsDlgButtonChecked(kRadio + 1));
  EXPECT_TRUE(form.IsDlgButtonChecked(kRadio + 2));
  form.CheckRadioButton(kRadio, kRadio + 2, kAbsent);
  EXPECT_FALSE(form.IsDlgButtonChecked(kRadio + 2));
}

TEST_F(FormModelTest, RangesAreHintsAndRefuseNothing) {
  form.SetRealEditRange(kEdit, 0, 1, 3);
  EXPECT_EQ(form.Find(kEdit)->lower, 0);
  EXPECT_EQ(form.Find(kEdit)->upper, 1);
  EXPECT_EQ(Typed("50"), 50);
  form.SetIntEditRange(kEdit, 2, 150000);
  EXPECT_EQ(form.Find(kEdit)->upper, 150000);
}

TEST_F(FormModelTest, AListHoldsRowsAndOneSelection) {
  form.AddListRow(kList, "a", 1);
  form.AddListRow(kList, "b", 2);
  EXPECT_EQ(form.SelectedListRow(kList), -1);
  form.SelectListRow(kList, 1);
  EXPECT_EQ(form.SelectedListRow(kList), 1);
  form.SelectListRow(kList, 2);
  EXPECT_EQ(form.SelectedListRow(kList), -1);
  form.SelectListRow(kList, 0);
  form.SelectListRow(kList, -7);
  EXPECT_EQ(form.SelectedListRow(kList), -1);
  form.ResetListContent(kList);
  EXPECT_TRUE(form.Find(kList)->rows.empty());
  EXPECT_TRUE(form.Find(kList)->icons.empty());
  EXPECT_EQ(form.Find(kList)->resets, 1);
}

TEST_F(FormModelTest, OperationsOnAnAbsentControlDoNothing) {
  form.SetDlgItemText(kAbsent, "x");
  form.SetDlgItemLong(kAbsent, 1);
  form.SetDlgItemDouble(kAbsent, 1, 4, 5);
  form.CheckDlgButton(kAbsent, true);
  form.SetIntEditRange(kAbsent, 0, 1);
  form.SetRealEditRange(kAbsent, 0, 1, 3);
  form.AddListRow(kAbsent, "x", 1);
  form.SelectListRow(kAbsent, 0);
  form.ResetListContent(kAbsent);
  form.SetHelpTextAttrib(kAbsent);
  form.ShowControl(kAbsent, false);
  double value = 7;
  EXPECT_NE(form.GetDlgItemDouble(kAbsent, value), 0);
  EXPECT_EQ(value, 7);
  EXPECT_EQ(form.GetDlgItemLong(kAbsent), 0);
  EXPECT_EQ(form.GetDlgItemText(kAbsent), "");
  EXPECT_EQ(form.SelectedListRow(kAbsent), -1);
  EXPECT_FALSE(form.IsDlgButtonChecked(kAbsent));
  EXPECT_EQ(form.Find(kAbsent), nullptr);
}

TEST_F(FormModelTest, ItsWindowCanGo) {
  EXPECT_TRUE(form.IsWindow());
  form.DestroyWindow();
  EXPECT_FALSE(form.IsWindow());
}

// --- What the form tells whoever shows it.

class RecordingView : public FormView {
 public:
  void Built() override { log.emplace_back("built"); }
  void TextChanged(int control) override { log.push_back("text " + std::to_string(control)); }
  void ChecksChanged() override { log.emplace_back("checks"); }
  void ListChanged(int list) override { log.push_back("list " + std::to_string(list)); }
  void LookChanged(int control) override { log.push_back("look " + std::to_string(control)); }
  void EnabledChanged() override { log.emplace_back("enabled"); }

  std::vector<std::string> log;
};

class FormViewTest : public ::testing::Test {
 protected:
  FormViewTest() {
    form.SetView(&view);
    form.AddDlgTabs(FormSpec());
  }

  std::vector<std::string> TakeLog() { return std::exchange(view.log, {}); }

  RecordingView view;
  FormModel form;
};

TEST_F(FormViewTest, IsToldOfEachChangeOnce) {
  EXPECT_THAT(TakeLog(), ElementsAre("built"));
  form.SetDlgItemText(kEdit, "a");
  form.Type(kEdit, "1");
  form.SetDlgItemLong(kEdit, 2);
  form.SetDlgItemDouble(kEdit, 2.5, 4, 5);
  form.SetIntEditRange(kEdit, 0, 1);
  form.SetRealEditRange(kEdit, 0, 1, 0);
  EXPECT_THAT(TakeLog(),
              ElementsAre("text 10", "text 10", "text 10", "text 10", "text 10", "text 10"));
  form.CheckRadioButton(kRadio, kRadio, kRadio);
  form.CheckDlgButton(kCheck, true);
  EXPECT_THAT(TakeLog(), ElementsAre("checks", "checks"));
  form.AddListRow(kList, "row", 0);
  form.SelectListRow(kList, 0);
  form.ResetListContent(kList);
  EXPECT_THAT(TakeLog(), ElementsAre("list 40", "list 40", "list 40"));
  form.SetHelpTextAttrib(kEdit);
  form.ShowControl(kEdit, false);
  EXPECT_THAT(TakeLog(), ElementsAre("look 10", "look 10"));
  form.Enable(false);
  EXPECT_THAT(TakeLog(), ElementsAre("enabled"));
}

TEST_F(FormViewTest, IsNotToldOfAControlThatTheFormLacks) {
  TakeLog();
  form.SetDlgItemText(kAbsent, "a");
  form.SetDlgItemLong(kAbsent, 1);
  form.SetDlgItemDouble(kAbsent, 1, 4, 5);
  form.SetIntEditRange(kAbsent, 0, 1);
  form.CheckDlgButton(kAbsent, true);
  form.AddListRow(kAbsent, "row", 0);
  form.SelectListRow(kAbsent, 0);
  form.ResetListContent(kAbsent);
  form.SetHelpTextAttrib(kAbsent);
  form.ShowControl(kAbsent, false);
  EXPECT_THAT(TakeLog(), IsEmpty());
}

TEST_F(FormViewTest, IsToldNothingOnceItHasGone) {
  TakeLog();
  form.SetView(nullptr);
  form.Type(kEdit, "1");
  EXPECT_THAT(TakeLog(), IsEmpty());
}

}  // namespace
}  // namespace poweranalysis
