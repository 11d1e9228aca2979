#include "automation/Names.h"

#include <gtest/gtest.h>

namespace poweranalysis {
namespace {

TEST(OptionName, BeginsAWordAtEachCapitalButInsideARun) {
  EXPECT_EQ(OptionName("SampleSizeN1"), "sample-size-n1");
  EXPECT_EQ(OptionName("H0Type"), "h0-type");
  EXPECT_EQ(OptionName("RMSSE_Row"), "rmsse-row");
  EXPECT_EQ(OptionName("StartRMSSE"), "start-rmsse");
  EXPECT_EQ(OptionName("CumP"), "cum-p");
}

TEST(SameName, ForgivesCaseDashesAndUnderscores) {
  EXPECT_TRUE(SameName("sample-size-n1", "SampleSizeN1"));
  EXPECT_TRUE(SameName("sample_size_n1", "sample-size-n1"));
  EXPECT_FALSE(SameName("sample-size-n2", "SampleSizeN1"));
  EXPECT_FALSE(SameName("", "N"));
}

TEST(IsNameOf, KnowsTheShorterOption) {
  EXPECT_TRUE(IsNameOf("h0", "H0Type"));
  EXPECT_TRUE(IsNameOf("h0_type", "H0Type"));
  EXPECT_FALSE(IsNameOf("", "Alpha")) << "a field without a shorter option";
}

TEST(Nearest, ForgivesCaseAndSlips) {
  const std::vector<std::string> names = {"Mean1", "Sigma", "SampleSize", "PowerGoal"};
  EXPECT_EQ(Nearest("sigma", names), "Sigma");
  EXPECT_EQ(Nearest("SampelSize", names), "SampleSize");
  EXPECT_EQ(Nearest("Powergaol", names), "PowerGoal");
  EXPECT_EQ(Nearest("x", {}), "");
}

TEST(Nearest, ASwapOfNeighboursIsOneEdit) { EXPECT_EQ(Nearest("ba", {"cd", "ab"}), "ab"); }

TEST(Nearest, ASwapIsNearerThanTwoOtherEdits) {
  EXPECT_EQ(Nearest("abdc", {"abxy", "abcd"}), "abcd");
}

TEST(Nearest, TheFirstOfEqualsWins) { EXPECT_EQ(Nearest("b", {"a", "c"}), "a"); }

}  // namespace
}  // namespace poweranalysis
