#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "dialogs/Controls.h"
#include "dialogs/DialogRun.h"
#include "frame/PowerAnalysis.h"

// A small dialog on top of those of the families, as one that a button of theirs opens.
namespace poweranalysis {
namespace {

using ::testing::HasSubstr;

constexpr int kSetMean = 50;
constexpr double kMean = 12.25;

class MeanDialog : public CPowerAnalysisModalDialog {
 public:
  explicit MeanDialog(CAnalysisSupport& analysis) : CPowerAnalysisModalDialog(analysis, 1) {}

  DialogSpec Spec() const override { return {}; }

 protected:
  long EventHandler(const DialogEvent& event) override {
    if (event.control == kSetMean) {
      Block()->T1.Working.Mu = kMean;
    }
    if (event.control == ControlBack) {
      ExitDialog(0, ExitBack, 0);
    }
    return 1;
  }
};

class ModalDialogsTest : public DialogRun {
 protected:
  // Opens it inside the handler of the dialog that is open.
  void OpenMeanDialog() {
    host_.onMessage = [this](const Message&) {
      host_.CreateAnalysisDialog(std::make_unique<MeanDialog>(*analysis_));
    };
    const double alpha = block().T1.Working.Alpha;
    block().T1.Working.Alpha = 7;
    Press(ControlAccept);
    block().T1.Working.Alpha = alpha;
    host_.onMessage = nullptr;
    ASSERT_EQ(OpenResource(), 1);
  }
};

TEST_F(ModalDialogsTest, LeaveTheirResultInTheParametersBelow) {
  OpenParameters({ModePower, "T1"});
  const std::uint64_t number = host_.dialogNumber();
  const int stage = analysis_->currentStage();
  const FormModel* below = host_.form();
  OpenMeanDialog();
  EXPECT_FALSE(below->IsEnabled());
  EXPECT_NE(below->GetDlgItemText(NumberOf("Mu")), "12.25");
  Press(kSetMean);
  Press(ControlBack);
  EXPECT_EQ(host_.form(), below);
  EXPECT_TRUE(below->IsEnabled());
  EXPECT_EQ(host_.dialogNumber(), number);
  EXPECT_EQ(analysis_->currentStage(), stage);
  EXPECT_EQ(TextOf("Mu"), "12.25");
}

TEST_F(ModalDialogsTest, LetTheResultsBelowGoOn) {
  OpenResults({ModePower, "T1"});
  const int results = OpenResource();
  OpenMeanDialog();
  Press(kSetMean);
  Press(ControlBack);
  EXPECT_EQ(OpenResource(), results);
  Press(ControlAccept);
  ASSERT_EQ(Items<SummaryTable>().size(), 1u);
  EXPECT_THAT(TextOf(ControlSummary), HasSubstr(": 12.25"));
}

TEST_F(ModalDialogsTest, CloseWithTheAnalysis) {
  OpenResults({ModeSampleSize, "T1"});
  OpenMeanDialog();
  host_.EndAnalysis();
  EXPECT_EQ(host_.dialog(), nullptr);
}

}  // namespace
}  // namespace poweranalysis
