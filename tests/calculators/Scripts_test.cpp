#include "automation/AutomationRun.h"

namespace poweranalysis {
namespace {

// The calculators as scripts see them, by the members of their interfaces.
class CalculatorScripts : public AutomationRun {
 protected:
  static double Real(const Value& value) { return std::get<double>(value); }
};

TEST_F(CalculatorScripts, TSolvesForItsThreeUnknowns) {
  const auto dialog = Parameters(ModeDistribution, "T");
  ASSERT_NE(dialog, nullptr);
  ASSERT_STREQ(dialog->interface().name, "PowTDistributionDialog");
  dialog->Put("ObservedT", 2.0);
  dialog->Put("DegreeOfFreedom", 4.0);
  dialog->Put("Delta", 1.0);
  EXPECT_EQ(dialog->OK(), 1);
  EXPECT_NEAR(Real(dialog->Get("PLEVEL")), 0.76457, 6e-6);
  EXPECT_EQ(Real(dialog->Get("PVALUE")), Real(dialog->Get("PLEVEL")));
  dialog->Put("ComputeDelta", std::int64_t{1});
  EXPECT_EQ(dialog->OK(), 1);
  EXPECT_NEAR(Real(dialog->Get("Delta")), 1, 1e-7);
  dialog->Put("Check1MinusCumulativeP", std::int64_t{1});
  EXPECT_NEAR(Real(dialog->Get("PLEVEL")), 1 - 0.76457, 6e-6);
}

TEST_F(CalculatorScripts, EveryMemberOfEveryCalculatorHasItsControl) {
  for (const TaskRow& task : Tasks(ModeDistribution)) {
    const auto dialog = Parameters(ModeDistribution, task.family);
    ASSERT_NE(dialog, nullptr) << task.family;
    for (const Member& member : dialog->interface().members) {
      EXPECT_NO_THROW(dialog->Get(member.name)) << task.family << " " << member.name;
    }
  }
}

TEST_F(CalculatorScripts, ARefusalAndAnErrorAreNoSuccess) {
  const auto dialog = Parameters(ModeDistribution, "X2");
  dialog->Put("DegreeOfFreedom", std::int64_t{0});
  EXPECT_EQ(dialog->OK(), 0);
  dialog->Put("DegreeOfFreedom", std::int64_t{1});
  dialog->Put("ComputeChiSquare", std::int64_t{1});
  dialog->Put("PVALUE", 0.04);
  EXPECT_EQ(dialog->OK(), 0);
}

TEST_F(CalculatorScripts, TheActualValueCanBeRead) {
  const auto dialog = Parameters(ModeDistribution, "Binomial");
  dialog->Put("SampleSize", std::int64_t{20});
  dialog->Put("PopulationProbability", 0.65);
  dialog->Put("RequestedValuePLevel", 0.95);
  dialog->Put("ComputeX", std::int64_t{1});
  EXPECT_EQ(dialog->OK(), 1);
  EXPECT_EQ(std::get<std::int64_t>(dialog->Get("ObservedX")), 16);
  EXPECT_EQ(Real(dialog->Get("ActualPLevel")), 0.9556244);
}

}  // namespace
}  // namespace poweranalysis
