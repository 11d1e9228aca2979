#include "host/RunningHost.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>
#include <utility>

#include "host/HeadlessHost.h"
#include "support/SmallAnalysis.h"

namespace poweranalysis {
namespace {

using ::testing::ElementsAre;
using testing::SmallAnalysis;
namespace small = testing::small;

class RunningHostTest : public ::testing::Test {
 protected:
  RunningHostTest() { host.Start(analysis); }

  int resource() const { return host.dialog() == nullptr ? 0 : host.dialog()->resource(); }
  std::vector<std::string> TakeLog() { return std::exchange(*analysis.log, {}); }

  SmallAnalysis analysis;
  HeadlessHost host;
};

// --- From stage to stage.

TEST_F(RunningHostTest, StartsWithTheFirstDialog) {
  EXPECT_EQ(resource(), small::FirstStage);
  EXPECT_EQ(host.dialogNumber(), 1u);
  EXPECT_THAT(TakeLog(), ElementsAre("101 started"));
}

TEST_F(RunningHostTest, ClosesADialogBeforeItRunsTheStageThatItNamed) {
  TakeLog();
  host.Press(small::Forward);
  EXPECT_EQ(resource(), small::SecondStage);
  EXPECT_EQ(host.dialogNumber(), 2u);
  EXPECT_THAT(TakeLog(), ElementsAre("101 1", "101 gone", "102 started"));
}

TEST_F(RunningHostTest, AnAnalysisThatEndsLeavesNoDialog) {
  host.Press(small::Back);
  EXPECT_EQ(host.dialog(), nullptr);
  EXPECT_EQ(host.form(), nullptr);
  EXPECT_EQ(host.dialogNumber(), 0u);
  EXPECT_EQ(host.stageDialog(), nullptr);
  EXPECT_EQ(host.Press(small::Forward), 0);
}

TEST_F(RunningHostTest, NumbersGoOnFromOneAnalysisToTheNext) {
  host.EndAnalysis();
  EXPECT_EQ(host.dialogNumber(), 0u);
  SmallAnalysis next;
  host.Start(next);
  EXPECT_EQ(host.dialogNumber(), 2u);
  host.EndAnalysis();
}

TEST_F(RunningHostTest, AnAnalysisThatIsStartedTakesThePlaceOfTheOneBefore) {
  host.Press(small::OpenModal);
  TakeLog();
  SmallAnalysis next;
  host.Start(next);
  EXPECT_THAT(TakeLog(), ElementsAre("900 gone", "101 gone"));
  EXPECT_EQ(&host.dialog()->analysis(), &next);
  host.EndAnalysis();
}

// --- Commands.

// As from a callback: the dialog might be gone before its first handler has returned.
TEST_F(RunningHostTest, TakesNoCommandWhileAnotherRuns) {
  long taken = -1;
  analysis.onPoll = [&](int) {
    EXPECT_TRUE(host.busy());
    taken = host.Press(small::Back);
  };
  host.Press(small::Search);
  EXPECT_EQ(taken, 0);
  EXPECT_EQ(resource(), small::FirstStage);
  EXPECT_FALSE(host.busy());
}

TEST_F(RunningHostTest, ACommandThatThrowsDoesNotBlockTheNext) {
  analysis.onPoll = [](int) { throw std::runtime_error("a callback's fault"); };
  EXPECT_THROW(host.Press(small::Search), std::runtime_error);
  host.Press(small::Forward);
  EXPECT_EQ(resource(), small::SecondStage);
}

TEST_F(RunningHostTest, ABreakStopsItsOwnCommandAlone) {
  constexpr int kBreak = 3;
  analysis.onPoll = [&](int at) {
    if (at == kBreak) {
      host.Cancel();
    }
  };
  TakeLog();
  host.Press(small::Search);
  EXPECT_THAT(TakeLog(), ElementsAre("101 23", "searched 3"));
  EXPECT_TRUE(host.WasCanceled());
  analysis.onPoll = nullptr;
  host.Press(small::Search);
  EXPECT_THAT(TakeLog(), ElementsAre("101 23", "searched 10"));
}

TEST_F(RunningHostTest, ABreakThatComesTooLateStopsNothing) {
  host.Cancel();
  TakeLog();
  host.Press(small::Search);
  EXPECT_THAT(TakeLog(), ElementsAre("101 23", "searched 10"));
}

TEST_F(RunningHostTest, AnAnalysisStartsWithoutABreak) {
  host.Cancel();
  SmallAnalysis next;
  host.Start(next);
  EXPECT_FALSE(host.WasCanceled());
  host.EndAnalysis();
}

// --- Modal dialogs.

class ModalDialogs : public RunningHostTest {
 protected:
  ModalDialogs() {
    host.Press(small::Forward);
    host.Type(small::Edit, "12.5");
    below = host.form();
    TakeLog();
    host.Press(small::OpenModal);
  }

  FormModel* below = nullptr;  // the form of the dialog that made the modal one
};

TEST_F(ModalDialogs, LieOnTopOfADisabledForm) {
  EXPECT_EQ(resource(), small::ModalResource);
  EXPECT_EQ(host.stageDialog()->resource(), small::SecondStage);
  EXPECT_NE(host.form(), below);
  EXPECT_TRUE(host.form()->IsEnabled());
  EXPECT_FALSE(below->IsEnabled());
  EXPECT_EQ(below->GetDlgItemText(small::Edit), "12.5");
  EXPECT_THAT(TakeLog(), ElementsAre("102 20", "900 started"));
}

TEST_F(ModalDialogs, TakeTheEvents) {
  TakeLog();
  host.Type(small::Edit, "7");
  EXPECT_EQ(host.form()->GetDlgItemText(small::Edit), "7");
  EXPECT_EQ(below->GetDlgItemText(small::Edit), "12.5");
  EXPECT_THAT(TakeLog(), ElementsAre("900 10"));
}

TEST_F(ModalDialogs, EndWithoutAStageAndRefreshTheDialogBelow) {
  for (const int exit : {small::Back, small::Forward, small::Nowhere}) {
    TakeLog();
    host.Press(exit);
    EXPECT_EQ(resource(), small::SecondStage) << exit;
    EXPECT_EQ(analysis.currentStage(), small::SecondStage) << exit;
    EXPECT_EQ(host.form(), below) << exit;
    EXPECT_TRUE(below->IsEnabled()) << exit;
    EXPECT_THAT(TakeLog(), ElementsAre("900 " + std::to_string(exit), "900 gone", "102 133"));
    host.Press(small::OpenModal);
  }
}

TEST_F(ModalDialogs, LeaveTheNumberOfTheDialogBelow) {
  EXPECT_EQ(host.dialogNumber(), 3u);
  host.Press(small::Back);
  EXPECT_EQ(host.dialogNumber(), 2u);
  host.Press(small::OpenModal);
  EXPECT_EQ(host.dialogNumber(), 4u) << "another dialog, although it looks the same";
}

TEST_F(ModalDialogs, LieOnTopOfEachOther) {
  for (int depth = 1; depth < 5; ++depth) {
    host.Press(small::OpenModal);
    EXPECT_EQ(resource(), small::ModalResource + depth);
  }
  TakeLog();
  host.Press(small::Back);
  host.Press(small::Back);
  EXPECT_EQ(resource(), small::ModalResource + 2);
  EXPECT_THAT(TakeLog(),
              ElementsAre("904 2", "904 gone", "903 133", "903 2", "903 gone", "902 133"));
  EXPECT_FALSE(below->IsEnabled());
}

TEST_F(ModalDialogs, CloseWithTheDialogThatLeavesBelowThem) {
  host.Press(small::Back);
  TakeLog();
  host.Press(small::OpenModalAndLeave);
  EXPECT_EQ(host.dialog(), nullptr) << "the table ends here";
  EXPECT_THAT(TakeLog(), ElementsAre("102 21", "900 started", "900 gone", "102 gone"));
}

TEST_F(ModalDialogs, CloseFromTheTopWhenTheAnalysisIsEnded) {
  host.Press(small::OpenModal);
  TakeLog();
  host.EndAnalysis();
  EXPECT_THAT(TakeLog(), ElementsAre("901 gone", "900 gone", "102 gone"));
  EXPECT_EQ(host.dialog(), nullptr);
}

TEST(ModalDialog, ClosesWithItsHost) {
  SmallAnalysis analysis;
  {
    HeadlessHost host;
    host.Start(analysis);
    host.Press(small::OpenModal);
    host.Press(small::OpenModal);
    analysis.log->clear();
  }
  EXPECT_THAT(*analysis.log, ElementsAre("901 gone", "900 gone", "101 gone"));
}

TEST(ModalDialog, OverNothingLeavesNothing) {
  SmallAnalysis analysis;
  analysis.stagesOpenModal = true;
  HeadlessHost host;
  host.Start(analysis);
  EXPECT_EQ(host.dialog()->resource(), small::FirstStage);
  host.Press(small::Forward);
  EXPECT_EQ(host.dialog(), nullptr);
  EXPECT_THAT(*analysis.log, ElementsAre("101 started", "101 1", "101 gone"));
}

}  // namespace
}  // namespace poweranalysis
