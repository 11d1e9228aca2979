#include "host/AnalysisSupport.h"

#include <gtest/gtest.h>

#include <vector>

#include "host/HeadlessHost.h"

namespace poweranalysis {
namespace {

// Stages that note their runs and give what they are told.
class SequenceAnalysis : public CAnalysisSupport {
 public:
  int First() { return Run(10); }
  int Second() { return Run(20); }
  int Third() { return Run(30); }
  using Stage = int (CAnalysisSupport::*)();

  void UseTable() { SetSequenceTable(table_, 3); }

  int InitializeAfterFileChanged() override { return 1; }
  void Initialize() override {}
  const void* GetLibInstance() const override { return nullptr; }
  int GetAnalysisID() const override { return 1; }
  std::string GetAnalysisName() const override { return "test"; }

  std::vector<int> runs;
  int results[3] = {1, StageRuns, StageRuns};

 private:
  int Run(int stage) {
    runs.push_back(stage);
    return results[stage / 10 - 1];
  }

  const SequenceRow table_[3] = {{10, static_cast<Stage>(&SequenceAnalysis::First), 20},
                                 {20, static_cast<Stage>(&SequenceAnalysis::Second), 30},
                                 {30, static_cast<Stage>(&SequenceAnalysis::Third), 0}};
};

class SequenceTest : public ::testing::Test {
 protected:
  SequenceTest() { analysis.UseTable(); }
  SequenceAnalysis analysis;
};

TEST_F(SequenceTest, StartsAtTheFirstRowAndStopsAtTheFirstDialog) {
  EXPECT_EQ(analysis.StartSequence(), StageRuns);
  EXPECT_EQ(analysis.runs, (std::vector<int>{10, 20}));
  EXPECT_EQ(analysis.currentStage(), 20);
}

TEST_F(SequenceTest, RunsThroughToTheEndOfTheTable) {
  analysis.results[1] = 1;
  analysis.results[2] = 1;
  EXPECT_EQ(analysis.StartSequence(), StageNothing);
  EXPECT_EQ(analysis.runs, (std::vector<int>{10, 20, 30}));
  EXPECT_EQ(analysis.currentStage(), 0);
}

TEST_F(SequenceTest, AStageWithNothingToShowEndsIt) {
  analysis.results[0] = StageNothing;
  EXPECT_EQ(analysis.StartSequence(), StageNothing);
  EXPECT_EQ(analysis.runs, std::vector<int>{10});
}

TEST_F(SequenceTest, WithoutATableNothingRuns) {
  SequenceAnalysis empty;
  EXPECT_EQ(empty.StartSequence(), StageNothing);
  EXPECT_EQ(empty.ForwardSequence(1, ExitForward), StageNothing);
}

TEST_F(SequenceTest, StageOneForwardMovesOnByTheTable) {
  analysis.StartSequence();
  EXPECT_EQ(analysis.ForwardSequence(1, ExitForward), StageRuns);
  EXPECT_EQ(analysis.currentStage(), 30);
  EXPECT_EQ(analysis.ForwardSequence(1, ExitForward), StageNothing);
  EXPECT_EQ(analysis.currentStage(), 0);
}

TEST_F(SequenceTest, ANumberOfTheTableRunsThatRow) {
  analysis.StartSequence();
  EXPECT_EQ(analysis.ForwardSequence(30, ExitForward), StageRuns);
  EXPECT_EQ(analysis.ForwardSequence(20, ExitBack), StageRuns);
  EXPECT_EQ(analysis.runs, (std::vector<int>{10, 20, 30, 20}));
}

TEST_F(SequenceTest, ANumberThatIsNoneEndsIt) {
  for (const int stage : {0, 1, 99, -1}) {
    analysis.StartSequence();
    EXPECT_EQ(analysis.ForwardSequence(stage, ExitBack), StageNothing) << stage;
    EXPECT_EQ(analysis.currentStage(), 0) << stage;
  }
}

TEST_F(SequenceTest, AnExitWaitsUntilItIsTakenAndIsTakenOnce) {
  EXPECT_FALSE(analysis.TakePendingExit().has_value());
  analysis.RequestExit({103, ExitForward, 0});
  const auto exit = analysis.TakePendingExit();
  ASSERT_TRUE(exit.has_value());
  EXPECT_EQ(exit->stage, 103);
  EXPECT_EQ(exit->kind, 2);
  EXPECT_EQ(exit->flag, 0);
  EXPECT_FALSE(analysis.TakePendingExit().has_value());
}

TEST_F(SequenceTest, TheHostIsThereOnceAttached) {
  EXPECT_EQ(analysis.hostOrNull(), nullptr);
  HeadlessHost host;
  analysis.AttachHost(&host);
  EXPECT_EQ(analysis.hostOrNull(), &host);
  EXPECT_EQ(analysis.document(), nullptr);
}

TEST(Messages, HaveTheirNumbers) {
  EXPECT_EQ(MessageStart, 272);
  EXPECT_EQ(MessageCommand, 273);
  EXPECT_EQ(ExitBack, 1);
  EXPECT_EQ(ExitForward, 2);
  EXPECT_EQ(StageRuns, -1);
  EXPECT_EQ(StageNothing, 0);
}

}  // namespace
}  // namespace poweranalysis
