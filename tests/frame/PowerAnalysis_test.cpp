#include "frame/PowerAnalysis.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>

#include "support/TestAnalysis.h"

namespace poweranalysis {
namespace {

using testing::FrameTest;
using testing::Log;
using testing::RecordingDialog;
using testing::TestParts;

using PowerAnalysisTest = FrameTest;

TEST_F(PowerAnalysisTest, NamesItself) {
  EXPECT_EQ(analysis->GetAnalysisID(), 4900);
  EXPECT_EQ(analysis->GetAnalysisName(), "PowerAnalysis");
  EXPECT_NE(analysis->GetLibInstance(), nullptr);
}

TEST_F(PowerAnalysisTest, FillsTheAttributeTable) {
  const std::array<std::uint8_t, 8> expected = {112, 121, 116, 127, 23, 7, 7, 7};
  ASSERT_EQ(analysis->attributes().size(), expected.size());
  EXPECT_TRUE(std::equal(expected.begin(), expected.end(), analysis->attributes().begin()));
}

TEST_F(PowerAnalysisTest, HasFourStagesThatFollowEachOther) {
  const auto rows = analysis->sequence();
  ASSERT_EQ(rows.size(), 4u);
  constexpr int kStages[][2] = {{100, 101}, {101, 102}, {102, 103}, {103, 0}};
  for (std::size_t i = 0; i < rows.size(); ++i) {
    EXPECT_EQ(rows[i].stage, kStages[i][0]);
    EXPECT_EQ(rows[i].next, kStages[i][1]);
  }
}

// --- Init.

TEST_F(PowerAnalysisTest, InitAllocatesAndLoadsTheBlock) {
  EXPECT_EQ(Module().settings, nullptr);
  EXPECT_EQ(analysis->Init(), 1);
  ASSERT_NE(Module().settings, nullptr);
  EXPECT_EQ(Log().loaded, 1);
  EXPECT_EQ(head().Mode, 0);
  for (const std::int16_t row : head().Selection) {
    EXPECT_EQ(row, 0);
  }
}

TEST_F(PowerAnalysisTest, InitClearsTheProgressFlag) {
  Module().ProgressOpen = 1;
  analysis->Init();
  EXPECT_EQ(Module().ProgressOpen, 0);
}

TEST_F(PowerAnalysisTest, InitializeAfterFileChangedIsInit) {
  EXPECT_EQ(analysis->InitializeAfterFileChanged(), 1);
  EXPECT_NE(Module().settings, nullptr);
  EXPECT_EQ(Log().loaded, 1);
}

TEST_F(PowerAnalysisTest, InitializeDoesNothing) {
  analysis->Initialize();
  EXPECT_EQ(Module().settings, nullptr);
  EXPECT_EQ(Log().constructed, 0);
  analysis->Init();
  PowerSettingsHead* block = Module().settings;
  analysis->Initialize();
  EXPECT_EQ(Module().settings, block);
  EXPECT_EQ(Log().loaded, 1);
}

TEST_F(PowerAnalysisTest, WithoutMemoryInitIsSilentAndTheStartupStillOpens) {
  host.failAllocation = 1;
  EXPECT_EQ(analysis->Init(), 1);
  EXPECT_EQ(Module().settings, nullptr);
  EXPECT_EQ(Log().constructed, 0);
  EXPECT_TRUE(host.messages().empty());

  host.failAllocation = 1;
  Start();
  ASSERT_NE(host.dialog(), nullptr);
  EXPECT_EQ(host.dialog()->resource(), 6100);
  EXPECT_TRUE(host.messages().empty());
}

TEST_F(PowerAnalysisTest, WithoutABlockTheLaterStagesOpenNothing) {
  host.failAllocation = 1;
  analysis->Init();
  EXPECT_EQ(analysis->Compute(), StageNothing);
  EXPECT_EQ(analysis->Result(), StageNothing);
  EXPECT_TRUE(Log().dialogs.empty());
}

TEST_F(PowerAnalysisTest, ASecondInitMakesAFreshBlock) {
  analysis->Init();
  Choose(2, 5);
  analysis->Init();
  EXPECT_EQ(head().Mode, 0);
  EXPECT_EQ(head().Selection[2], 0);
  EXPECT_EQ(Log().constructed, 2);
  EXPECT_EQ(Log().destroyed, 1);
  EXPECT_EQ(host.calls.freeMem, 1);
}

TEST_F(PowerAnalysisTest, ASecondAnalysisTakesOverFromTheFirst) {
  analysis->Init();
  HeadlessHost otherHost;
  auto other = std::make_unique<CPowerAnalysis>(nullptr, TestParts());
  other->AttachHost(&otherHost);
  other->Init();
  EXPECT_EQ(Log().destroyed, 1);
  EXPECT_EQ(host.calls.freeMem, 1);
  PowerSettingsHead* block = Module().settings;
  analysis.reset();
  EXPECT_EQ(Module().settings, block);
  EXPECT_EQ(ModuleHost(), &otherHost);
  other.reset();
  EXPECT_EQ(Module().settings, nullptr);
  EXPECT_EQ(otherHost.calls.freeMem, 1);
}

TEST_F(PowerAnalysisTest, ASecondDestructionFreesNothing) {
  analysis->Init();
  analysis->FreeSettings();
  EXPECT_EQ(Module().settings, nullptr);
  EXPECT_EQ(host.calls.freeMem, 1);
  analysis->FreeSettings();
  analysis.reset();
  EXPECT_EQ(host.calls.freeMem, 1);
  EXPECT_EQ(Log().destroyed, 1);
}

TEST_F(PowerAnalysisTest, DestructionWithoutInitFreesNothing) {
  analysis.reset();
  EXPECT_EQ(host.calls.freeMem, 0);
  EXPECT_EQ(Module().analysis, nullptr);
}

// --- Stages.

TEST_F(PowerAnalysisTest, StartAnalysisOpensTheStartupDialog) {
  analysis->Init();
  EXPECT_EQ(analysis->StartAnalysis(), -1);
  host.Start(*analysis);
  ASSERT_NE(host.dialog(), nullptr);
  EXPECT_EQ(host.dialog()->resource(), 6100);
}

TEST_F(PowerAnalysisTest, EveryModeAndRowOpensItsOwnDialog) {
  analysis->Init();
  constexpr int kRows[] = {18, 18, 10, 6};
  for (int mode = 0; mode < 4; ++mode) {
    for (int row = 0; row < kRows[mode]; ++row) {
      Choose(mode, row);
      Log().dialogs.clear();
      EXPECT_EQ(analysis->Compute(), -1) << mode << " " << row;
      EXPECT_EQ(analysis->Result(), mode < 2 ? -1 : 0) << mode << " " << row;
      ASSERT_EQ(Log().dialogs.size(), mode < 2 ? 2u : 1u);
      EXPECT_EQ(Log().dialogs[0].dialog, ComputeDialog(mode, row));
      EXPECT_EQ(Log().dialogs[0].mode, mode);
      EXPECT_EQ(Log().dialogs[0].row, row);
      EXPECT_FALSE(Log().dialogs[0].result);
      if (mode < 2) {
        EXPECT_EQ(Log().dialogs[1].dialog, ResultDialog(mode, row));
        EXPECT_TRUE(Log().dialogs[1].result);
      }
    }
  }
}

struct OutOfRange {
  int mode;
  int row;
};

TEST_F(PowerAnalysisTest, RowsOutOfRangeOpenNothing) {
  analysis->Init();
  constexpr OutOfRange kCases[] = {{0, 18}, {1, 18}, {0, 32767}, {2, 10}, {3, 6},
                                   {0, -1}, {1, -1}, {2, -1},    {3, -1}, {0, -32768}};
  for (const OutOfRange& c : kCases) {
    Choose(c.mode, c.row);
    EXPECT_EQ(analysis->Compute(), 0) << c.mode << " " << c.row;
    EXPECT_EQ(analysis->Result(), 0) << c.mode << " " << c.row;
  }
  EXPECT_TRUE(Log().dialogs.empty());
}

TEST_F(PowerAnalysisTest, AModeOutOfRangeIsTestedBeforeItsRowIsRead) {
  analysis->Init();
  for (const int mode : {4, -1, 32767, -32768}) {
    head().Mode = static_cast<std::int16_t>(mode);
    EXPECT_EQ(analysis->Compute(), 0) << mode;
    EXPECT_EQ(analysis->Result(), 0) << mode;
  }
  EXPECT_TRUE(Log().dialogs.empty());
}

TEST_F(PowerAnalysisTest, AFailedCreationIsNothingAndNoMessage) {
  analysis->Init();
  host.failDialog = true;
  EXPECT_EQ(analysis->StartAnalysis(), 0);
  EXPECT_EQ(analysis->Compute(), 0);
  EXPECT_EQ(analysis->Result(), 0);
  EXPECT_TRUE(host.messages().empty());
}

TEST_F(PowerAnalysisTest, ANullDialogIsAFailedCreation) {
  analysis->Init();
  Log().refuseDialogs = true;
  EXPECT_EQ(analysis->Compute(), 0);
  EXPECT_EQ(Log().dialogs.size(), 1u);
  EXPECT_TRUE(host.messages().empty());
}

// --- The road of one request.

TEST_F(PowerAnalysisTest, WalksForwardByTheTableAndByNumberAndBack) {
  Start();
  EXPECT_EQ(analysis->currentStage(), 101);
  host.Press(1);  // OK of the startup
  EXPECT_EQ(analysis->currentStage(), 102);
  EXPECT_EQ(host.dialog()->resource(), 6102);
  host.Press(RecordingDialog::kForward);
  EXPECT_EQ(analysis->currentStage(), 103);
  EXPECT_EQ(host.dialog()->resource(), 6105);
  host.Press(RecordingDialog::kBack);
  EXPECT_EQ(analysis->currentStage(), 101);
  EXPECT_EQ(host.dialog()->resource(), 6100);
  EXPECT_EQ(Log().dialogsDestroyed, 2);
}

TEST_F(PowerAnalysisTest, TheStartupSaysWhatItsExitsAre) {
  Start();
  EXPECT_EQ(host.Press(1), 0);
  ASSERT_EQ(host.calls.exits.size(), 1u);
  EXPECT_EQ(host.calls.exits[0].stage, 1);
  EXPECT_EQ(host.calls.exits[0].kind, 2);
  EXPECT_EQ(host.calls.exits[0].flag, 0);
  host.Press(RecordingDialog::kBack);
  EXPECT_EQ(host.Press(2), 1);
  EXPECT_EQ(host.calls.exits.back().stage, 0);
  EXPECT_EQ(host.calls.exits.back().kind, 1);
  EXPECT_EQ(host.calls.exits.back().flag, 0);
  EXPECT_EQ(host.dialog(), nullptr);
  EXPECT_EQ(analysis->currentStage(), 0);
}

TEST_F(PowerAnalysisTest, AStageWithNothingToShowEndsTheSequence) {
  Start();
  Choose(0, 18);
  host.Press(1);
  EXPECT_EQ(host.dialog(), nullptr);
  EXPECT_EQ(host.Press(1), 0);
}

TEST_F(PowerAnalysisTest, ADialogIsStartedBeforeItSeesCommands) {
  Start();
  host.Press(1);
  ASSERT_EQ(Log().events.size(), 1u);
  EXPECT_EQ(Log().events[0].message, 272);
  EXPECT_EQ(host.Press(99), 7);
  EXPECT_EQ(Log().events.back().message, 273);
  EXPECT_EQ(Log().events.back().control, 99);
}

}  // namespace
}  // namespace poweranalysis
