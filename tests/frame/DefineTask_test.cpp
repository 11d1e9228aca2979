#include "frame/DefineTask.h"

#include <gtest/gtest.h>

#include "support/TestAnalysis.h"

namespace poweranalysis {
namespace {

using testing::FrameTest;

class DefineTaskTest : public FrameTest {
 protected:
  const FormModel::Control& Control(int number) { return *host.form()->Find(number); }
  std::string ModeHelp() { return host.form()->GetDlgItemText(ControlModeHelp); }
  std::string TaskHelp() { return host.form()->GetDlgItemText(ControlTaskHelp); }
  long DoubleClick(int list) {
    return host.Send({MessageCommand, list, Notification::DoubleClick});
  }
};

TEST_F(DefineTaskTest, HasItsControlsOnFrameAndPage) {
  Start();
  const DialogSpec& spec = host.form()->spec();
  EXPECT_EQ(spec.className, "CDefineTask");
  EXPECT_EQ(spec.resource, 6100);
  EXPECT_EQ(spec.title, "Power Analysis and Interval Estimation");
  ASSERT_EQ(spec.pages.size(), 1u);
  EXPECT_EQ(spec.pages[0].resource, 6101);
  for (const int control : {101, 102, 103, 105, 1, 2, 10710}) {
    EXPECT_NE(host.form()->Find(control), nullptr) << control;
  }
  EXPECT_EQ(Control(101).spec.kind, ControlKind::List);
  EXPECT_EQ(Control(102).spec.kind, ControlKind::List);
  EXPECT_EQ(Control(103).spec.kind, ControlKind::HelpText);
  EXPECT_EQ(Control(105).spec.kind, ControlKind::HelpText);
}

TEST_F(DefineTaskTest, OpensOnTheFirstTaskOfPower) {
  Start();
  EXPECT_EQ(Control(101).rows,
            (std::vector<std::string>{"Power Calculation", "Sample Size Calculation",
                                      "Interval Estimation", "Probability Distributions"}));
  EXPECT_EQ(Control(101).icons, (std::vector<int>{671, 673, 670, 672}));
  EXPECT_EQ(Control(101).selected, 0);
  EXPECT_EQ(Control(102).rows.size(), 18u);
  EXPECT_EQ(Control(102).rows[0], "One Mean, t-Test");
  EXPECT_EQ(Control(102).icons[0], 674);
  EXPECT_EQ(Control(102).selected, 0);
  EXPECT_EQ(ModeHelp().substr(0, 13), "Compute power");
  EXPECT_EQ(TaskHelp(), "The one sample t-test for comparing a mean against a specified value");
  EXPECT_EQ(host.calls.enableStartupMenus, 1);
  EXPECT_TRUE(Control(103).helpText);
  EXPECT_TRUE(Control(105).helpText);
}

TEST_F(DefineTaskTest, ReopensOnTheModeAndRowThatTheBlockHolds) {
  analysis->Init();
  Choose(2, 9);
  EXPECT_EQ(analysis->StartAnalysis(), StageRuns);
  host.Start(*analysis);  // a fresh start clears the choice
  EXPECT_EQ(Control(101).selected, 0);
  host.Select(101, 2);
  host.Select(102, 9);
  host.Press(1);
  host.Press(testing::RecordingDialog::kBack);
  EXPECT_EQ(Control(101).selected, 2);
  EXPECT_EQ(Control(102).rows.size(), 10u);
  EXPECT_EQ(Control(102).selected, 9);
  EXPECT_EQ(TaskHelp(),
            "Structural Equation Modeling: Path Analysis,\rAnalysis of Covariance "
            "Structures,\rConfirmatory Factor Analysis");
}

TEST_F(DefineTaskTest, ARowIsStoredAtOnce) {
  Start();
  host.Select(102, 5);
  EXPECT_EQ(head().Selection[0], 5);
  EXPECT_EQ(TaskHelp(), "The 2-Way Analysis of Variance -- Fixed Effects");
  EXPECT_EQ(head().Mode, 0);
}

TEST_F(DefineTaskTest, SwitchingBetweenTheSharedListsKeepsTheListAndEachRow) {
  Start();
  host.Select(102, 3);
  const int resets = Control(102).resets;
  host.Select(101, 1);
  EXPECT_EQ(head().Mode, 1);
  EXPECT_EQ(Control(102).resets, resets);
  EXPECT_EQ(Control(102).selected, 0);
  host.Select(102, 7);
  host.Select(101, 0);
  EXPECT_EQ(Control(102).resets, resets);
  EXPECT_EQ(Control(102).selected, 3);
  EXPECT_EQ(head().Selection[0], 3);
  EXPECT_EQ(head().Selection[1], 7);
}

TEST_F(DefineTaskTest, SwitchingToAnotherListRefillsItAndBringsBackItsRow) {
  Start();
  host.Select(102, 12);
  const int resets = Control(102).resets;
  host.Select(101, 2);
  EXPECT_EQ(Control(102).resets, resets + 1);
  EXPECT_EQ(Control(102).rows.size(), 10u);
  EXPECT_EQ(Control(102).selected, 0);
  host.Select(102, 4);
  host.Select(101, 3);
  EXPECT_EQ(Control(102).rows.size(), 6u);
  EXPECT_EQ(Control(102).rows[1], "Noncentral F Distribution");
  EXPECT_EQ(ModeHelp(), "Perform calculations\ron probability distributions");
  host.Select(101, 2);
  EXPECT_EQ(Control(102).selected, 4);
  host.Select(101, 0);
  EXPECT_EQ(Control(102).selected, 12);
}

TEST_F(DefineTaskTest, NoModeSelectedDoesNothing) {
  Start();
  host.Select(101, 2);
  host.Select(101, -1);
  EXPECT_EQ(head().Mode, 2);
  EXPECT_EQ(Control(102).rows.size(), 10u);
}

TEST_F(DefineTaskTest, NoTaskSelectedOpensNothingLater) {
  Start();
  host.Select(102, -1);
  EXPECT_EQ(TaskHelp(), "");
  host.Press(1);
  EXPECT_EQ(host.dialog(), nullptr);
}

TEST_F(DefineTaskTest, ADoubleClickOnEitherListIsOk) {
  for (const int list : {101, 102}) {
    Start();
    host.calls.exits.clear();
    host.Select(101, 3);
    host.Select(102, 2);
    EXPECT_EQ(DoubleClick(list), 0);
    ASSERT_EQ(host.calls.exits.size(), 1u) << list;
    EXPECT_EQ(host.calls.exits[0].stage, 1);
    EXPECT_EQ(host.calls.exits[0].kind, 2);
    ASSERT_NE(host.dialog(), nullptr);
    EXPECT_EQ(host.dialog()->resource(), 6147);
  }
}

TEST_F(DefineTaskTest, WithoutABlockTheListsAreDeadAndCancelWorks) {
  host.failAllocation = 1;
  Start();
  EXPECT_TRUE(Control(101).rows.empty());
  EXPECT_EQ(host.Select(101, 1), 0);
  EXPECT_EQ(host.Select(102, 1), 0);
  EXPECT_EQ(DoubleClick(101), 0);
  EXPECT_EQ(DoubleClick(102), 0);
  EXPECT_TRUE(host.calls.exits.empty());
  EXPECT_EQ(host.Press(2), 1);
  EXPECT_EQ(host.dialog(), nullptr);
}

TEST_F(DefineTaskTest, TheHelpTextsAreColouredAndNothingElse) {
  Start();
  host.Send({MessageColour, 101, Notification::Command});
  host.Send({MessageColour, 1, Notification::Command});
  EXPECT_EQ(host.calls.attrType, 0);
  EXPECT_NE(host.Send({MessageColour, 103, Notification::Command}), 0);
  EXPECT_EQ(host.calls.attrType, 1);
  host.calls.attrType = 0;
  EXPECT_NE(host.Send({MessageColour, 105, Notification::Command}), 0);
  EXPECT_EQ(host.calls.attrType, 1);
}

TEST_F(DefineTaskTest, AMessageThatIsNotACommandPressesNoButton) {
  constexpr int kOtherMessage = 999;
  Start();
  EXPECT_EQ(host.Send({kOtherMessage, ControlOk, Notification::Command}), 0);
  EXPECT_EQ(host.Send({kOtherMessage, ControlCancel, Notification::Command}), 0);
  EXPECT_EQ(host.Send({kOtherMessage, ControlModes, Notification::DoubleClick}), 0);
  EXPECT_TRUE(host.calls.exits.empty());
  EXPECT_EQ(host.dialog()->resource(), 6100);
}

TEST_F(DefineTaskTest, OtherCommandsDoNothing) {
  Start();
  EXPECT_EQ(host.Press(10710), 0);
  EXPECT_EQ(host.Press(103), 0);
  EXPECT_TRUE(host.calls.exits.empty());
}

// A script can put any number into the block.
TEST_F(DefineTaskTest, AModeThatIsNoneLeavesTheListsWithoutSelection) {
  analysis->Init();
  for (const int mode : {4, -1, 32767}) {
    head().Mode = static_cast<std::int16_t>(mode);
    CDefineTask dialog(*analysis);
    FormModel form;
    dialog.AttachForm(&form);
    dialog.CallEventHandler({MessageStart, 0, Notification::Command});
    EXPECT_EQ(form.SelectedListRow(101), -1) << mode;
    EXPECT_EQ(form.Find(101)->rows.size(), 4u) << mode;
    EXPECT_TRUE(form.Find(102)->rows.empty()) << mode;
    dialog.CallEventHandler({MessageCommand, 102, Notification::SelectionChange});
    EXPECT_EQ(head().Mode, mode);
    form.SelectListRow(101, 1);
    dialog.CallEventHandler({MessageCommand, 101, Notification::SelectionChange});
    EXPECT_EQ(head().Mode, 1);
    EXPECT_EQ(form.Find(102)->rows.size(), 18u);
  }
}

TEST_F(DefineTaskTest, TheStartOfAScriptedRunIsNotReportedAsTaken) {
  analysis->Init();
  CDefineTask dialog(*analysis);
  FormModel form;
  dialog.AttachForm(&form);
  EXPECT_EQ(dialog.CallEventHandler({MessageStart, 0, Notification::Command}), 1);
  host.oleAutomation = true;
  EXPECT_EQ(dialog.CallEventHandler({MessageStart, 0, Notification::Command}), 0);
  EXPECT_EQ(form.Find(102)->rows.size(), 18u);
}

TEST(FillTaskList, EmptiesTheListFirstAndKeepsAwayFromTheSelectionWhenAsked) {
  FormModel form;
  ControlSpec list;
  list.number = 102;
  list.kind = ControlKind::List;
  DialogSpec spec;
  spec.frame = {list};
  form.AddDlgTabs(spec);
  const ListRow rows[] = {{text::OneMeanTTest, 674}, {text::PowerCalculation, 671}};
  FillTaskList(form, 102, rows, 1);
  EXPECT_EQ(form.SelectedListRow(102), 1);
  FillTaskList(form, 102, rows, NoSelection);
  EXPECT_EQ(form.SelectedListRow(102), -1);
  EXPECT_EQ(form.Find(102)->rows.size(), 2u);
  EXPECT_EQ(form.Find(102)->resets, 2);
  FillTaskList(form, 102, {}, 0);
  EXPECT_TRUE(form.Find(102)->rows.empty());
}

}  // namespace
}  // namespace poweranalysis
