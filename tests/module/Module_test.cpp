// The shared library as a host loads it: opened at run time, its factory looked up by name, the
// stages driven through the analysis that it gives.
#include <dlfcn.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "host/HeadlessHost.h"

namespace poweranalysis {
namespace {

// Of the dialogs below, as a host knows them.
constexpr int kModes = 101;
constexpr int kTasks = 102;
constexpr int kAccept = 1;
constexpr int kCancel = 2;
constexpr int kMu1 = 21023;
constexpr int kPowerGoal = 114;

class Module : public ::testing::Test {
 protected:
  void SetUp() override {
    library_ = dlopen(MODULE_LIBRARY, RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(library_, nullptr) << dlerror();
    const auto factory = reinterpret_cast<Factory>(dlsym(library_, "Zlv6NewAnalysis"));
    ASSERT_NE(factory, nullptr);
    analysis_ = factory();
    ASSERT_NE(analysis_, nullptr);
  }
  void TearDown() override { delete analysis_; }

  using Factory = CAnalysisSupport* (*)();

  void* library_ = nullptr;
  CAnalysisSupport* analysis_ = nullptr;
  HeadlessHost host_;
};

TEST_F(Module, TellsItsNumberAndName) {
  host_.Start(*analysis_);
  EXPECT_EQ(analysis_->GetAnalysisID(), 4900);
  EXPECT_EQ(analysis_->GetAnalysisName(), "PowerAnalysis");
  EXPECT_NE(analysis_->GetLibInstance(), nullptr);
}

TEST_F(Module, FillsItsAttributesAndItsFourStages) {
  EXPECT_THAT(std::vector<int>(analysis_->attributes().begin(), analysis_->attributes().end()),
              ::testing::ElementsAre(112, 121, 116, 127, 23, 7, 7, 7));
  ASSERT_EQ(analysis_->sequence().size(), 4u);
  EXPECT_EQ(analysis_->sequence()[0].stage, 100);
  EXPECT_EQ(analysis_->sequence()[1].stage, 101);
  EXPECT_EQ(analysis_->sequence()[2].stage, 102);
  EXPECT_EQ(analysis_->sequence()[3].stage, 103);
  EXPECT_EQ(analysis_->sequence()[3].next, 0);
}

TEST_F(Module, DrivesTheFourStagesToARequiredSize) {
  EXPECT_EQ(host_.Start(*analysis_), -1);
  EXPECT_EQ(analysis_->currentStage(), 101);
  host_.Select(kModes, 1);
  host_.Select(kTasks, 1);
  host_.Press(kAccept);
  EXPECT_EQ(analysis_->currentStage(), 102);
  ASSERT_NE(host_.dialog(), nullptr);
  EXPECT_EQ(host_.dialog()->resource(), 6117);
  host_.Type(kMu1, "5");
  host_.Type(kPowerGoal, "0.8");
  host_.Press(kAccept);
  EXPECT_EQ(analysis_->currentStage(), 103);
  host_.Press(kAccept);
  ASSERT_FALSE(host_.workbook().items.empty());
  const auto& table = std::get<SummaryTable>(host_.workbook().items.front());
  EXPECT_EQ(table.rows.back().title, "Required N (per group)");
  EXPECT_EQ(table.rows.back().values[0], 64);
}

TEST_F(Module, CancelOfTheStartupEndsTheAnalysis) {
  host_.Start(*analysis_);
  host_.Press(kCancel);
  EXPECT_EQ(host_.dialog(), nullptr);
  ASSERT_EQ(host_.calls.exits.size(), 1u);
  EXPECT_EQ(host_.calls.exits[0].stage, 0);
  EXPECT_EQ(host_.calls.exits[0].kind, 1);
}

TEST_F(Module, OkOfTheStartupMovesOnByTheTable) {
  host_.Start(*analysis_);
  host_.Press(kAccept);
  ASSERT_EQ(host_.calls.exits.size(), 1u);
  EXPECT_EQ(host_.calls.exits[0].stage, 1);
  EXPECT_EQ(host_.calls.exits[0].kind, 2);
  EXPECT_EQ(host_.calls.exits[0].flag, 0);
  EXPECT_EQ(host_.dialog()->resource(), 6102);
}

TEST_F(Module, ExportsTheListInsertion) {
  using Insert = int (*)(const void*, std::int16_t, const char*);
  const auto insert = reinterpret_cast<Insert>(dlsym(library_, "GraphListInsertItem"));
  ASSERT_NE(insert, nullptr);
  EXPECT_EQ(insert(nullptr, 1, "text"), 0);
}

TEST_F(Module, HidesWhatItDoesNotExport) {
  EXPECT_EQ(dlsym(library_, "_ZN13poweranalysis9NormalCdfEd"), nullptr);
  EXPECT_EQ(dlsym(library_, "_ZN13poweranalysis8LoadTextB5cxx11Ei"), nullptr);
  EXPECT_NE(dlsym(library_, "_ZN13poweranalysis14CPowerAnalysisC1EPNS_12CAnalysisDocE"), nullptr)
      << "the class is exported with the constructor that takes a document";
}

}  // namespace
}  // namespace poweranalysis
