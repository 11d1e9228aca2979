#include "automation/HeadlessDriver.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/SmallAnalysis.h"

namespace poweranalysis {
namespace {

using ::testing::ElementsAre;
using testing::SmallAnalysis;
namespace small = testing::small;

class HeadlessDriverTest : public ::testing::Test {
 protected:
  std::unique_ptr<CAnalysisSupport> NewAnalysis() {
    auto analysis = std::make_unique<SmallAnalysis>();
    log_ = analysis->log;
    return analysis;
  }

  std::shared_ptr<std::vector<std::string>> log_;
  HeadlessHost host_;
  HeadlessDriver driver_{host_, [this] { return NewAnalysis(); }};
};

TEST_F(HeadlessDriverTest, ADialogKeepsItsNumberWhileAnotherLiesOnTopOfIt) {
  driver_.StartAnalysis();
  const std::uint64_t number = driver_.OpenDialog();
  driver_.Press(small::OpenModal);
  const std::uint64_t modal = driver_.OpenDialog();
  EXPECT_NE(modal, number);
  driver_.Press(small::Back);
  EXPECT_EQ(driver_.OpenDialog(), number);
  driver_.Press(small::OpenModal);
  EXPECT_NE(driver_.OpenDialog(), modal);
  EXPECT_NE(driver_.OpenDialog(), number);
}

TEST_F(HeadlessDriverTest, NoTwoDialogsOfTwoAnalysesHaveOneNumber) {
  EXPECT_EQ(driver_.OpenDialog(), 0u);
  driver_.StartAnalysis();
  const std::uint64_t first = driver_.OpenDialog();
  driver_.StartAnalysis();
  EXPECT_NE(driver_.OpenDialog(), first);
}

TEST_F(HeadlessDriverTest, ClosesEveryDialogHoweverDeepBeforeItsAnalysisGoes) {
  driver_.StartAnalysis();
  driver_.Press(small::Forward);
  for (int depth = 0; depth < 4; ++depth) {
    driver_.Press(small::OpenModal);
  }
  const auto log = log_;
  log->clear();
  driver_.StartAnalysis();
  EXPECT_THAT(*log, ElementsAre("903 gone", "902 gone", "901 gone", "900 gone", "102 gone"));
  EXPECT_EQ(host_.dialog()->resource(), small::FirstStage);
}

}  // namespace
}  // namespace poweranalysis
