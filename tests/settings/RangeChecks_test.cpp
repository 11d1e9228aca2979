#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "support/TestSettings.h"

namespace poweranalysis {
namespace {

using testing::SettingsTest;

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

class CheckRangesTest : public SettingsTest {
 protected:
  // Checks a family with one field changed, and puts the field back.
  int CheckWith(Family family, const char* field, double value) {
    const double before = Working(family, field);
    SetWorking(family, field, value);
    host.ClearMessages();
    const int result = Check(family);
    EXPECT_EQ(host.messages().size(), result == 1 ? 0u : 1u) << field << " " << value;
    SetWorking(family, field, before);
    return result;
  }
};

TEST_F(CheckRangesTest, TheBuiltInValuesOfEveryFamilyPass) {
  for (const FamilyTable& family : FamilyTables()) {
    EXPECT_EQ(Check(family.family), 1) << family.code;
  }
  EXPECT_TRUE(host.messages().empty());
}

TEST_F(CheckRangesTest, EveryFieldMeetsBothItsBoundsByItsForm) {
  for (const FamilyTable& family : FamilyTables()) {
    for (const Field& field : family.fields) {
      if (!field.keyed()) {
        continue;
      }
      const int form = static_cast<int>(field.form);
      const bool real = field.type == FieldType::Real;
      const double below = real ? std::nextafter(field.lower, -kInfinity) : field.lower - 1;
      const double above = real ? std::nextafter(field.upper, kInfinity) : field.upper + 1;
      EXPECT_EQ(CheckWith(family.family, field.name, below), 0) << family.code << field.name;
      EXPECT_EQ(CheckWith(family.family, field.name, above), 0) << family.code << field.name;
      EXPECT_EQ(CheckWith(family.family, field.name, field.lower), form == 1 || form == 3 ? 1 : 0)
          << family.code << field.name;
      EXPECT_EQ(CheckWith(family.family, field.name, field.upper), form >= 2 ? 1 : 0)
          << family.code << field.name;
      if (real) {
        EXPECT_EQ(CheckWith(family.family, field.name, kNan), 0) << family.code << field.name;
        EXPECT_EQ(CheckWith(family.family, field.name, kInfinity), 0) << family.code << field.name;
        EXPECT_EQ(CheckWith(family.family, field.name, -kInfinity), 0) << family.code << field.name;
      }
    }
  }
}

// --- Messages, whole.

TEST_F(CheckRangesTest, AWholeFieldNamesItsRangeAndValue) {
  SetWorking(Family::T1, "SampleSize", 1);
  EXPECT_EQ(Check(Family::T1), 0);
  EXPECT_EQ(MessageIds(), std::vector<int>{12852});
  EXPECT_EQ(LastMessage(),
            "The current value for Sample Size (N) is outside the permissible range.\r\n"
            "The appropriate range is 2 <= Sample Size (N) <= 150000.\r\n Current value is 1.");
}

TEST_F(CheckRangesTest, ARealFieldNamesItsRangeAndValue) {
  SetWorking(Family::T1, "Alpha", 0.5);
  EXPECT_EQ(Check(Family::T1), 0);
  EXPECT_EQ(MessageIds(), std::vector<int>{12853});
  EXPECT_EQ(LastMessage(),
            "The current value for Alpha is outside the permissible range.\r\n"
            "The appropriate range is 0.0001 <= Alpha <= 0.25.\r\n Current value is 0.5.");
}

TEST_F(CheckRangesTest, AShortFieldNamesItsRangeAndValue) {
  SetWorking(Family::T1, "H0Type", 3);
  EXPECT_EQ(Check(Family::T1), 0);
  EXPECT_EQ(MessageIds(), std::vector<int>{12851});
  EXPECT_EQ(LastMessage(),
            "The current value for Type of Hypothesis is outside the permissible range.\r\n"
            "The appropriate range is 0 <= Type of Hypothesis <= 2.\r\n Current value is 3.");
}

TEST_F(CheckRangesTest, AnOpenRangeSaysSo) {
  SetWorking(Family::T3, "BetweenGroupR", 0.9999);
  Check(Family::T3);
  EXPECT_EQ(LastMessage(),
            "The current value for R is outside the permissible range.\r\n"
            "The appropriate range is -0.9999 < R < 0.9999.\r\n Current value is 0.9999.");
}

TEST_F(CheckRangesTest, TheMarkOfALabelIsNotShown) {
  SetWorking(Family::T1, "Sigma", 1e-10);
  Check(Family::T1);
  EXPECT_EQ(
      LastMessage(),
      "The current value for PopulationSigma is outside the permissible range.\r\n"
      "The appropriate range is 1e-10 < PopulationSigma <= 1e+30.\r\n Current value is 1e-10.");
}

TEST_F(CheckRangesTest, TheFieldWithoutALabelIsReportedWithoutOne) {
  SetWorking(Family::R2, "PopulationR2", 1);
  Check(Family::R2);
  EXPECT_EQ(LastMessage(),
            "The current value for  is outside the permissible range.\r\n"
            "The appropriate range is 0 <=  < 1.\r\n Current value is 1.");
}

TEST_F(CheckRangesTest, NumbersThatAreNoneAreNamed) {
  SetWorking(Family::T1, "Mu", kNan);
  EXPECT_EQ(Check(Family::T1), 0);
  EXPECT_NE(LastMessage().find("Current value is nan."), std::string::npos);
}

TEST_F(CheckRangesTest, WideRangesArePrintedInSixDigits) {
  SetWorking(Family::AV1, "RMSSE", 0);
  Check(Family::AV1);
  EXPECT_NE(LastMessage().find("0 < RMSSE <= 1e+30"), std::string::npos);
}

// --- Order.

TEST_F(CheckRangesTest, ReportsTheFirstBadFieldInKeyOrderAlone) {
  SetWorking(Family::T1, "SampleSize", 1);
  SetWorking(Family::T1, "TObserved", 9999);
  EXPECT_EQ(Check(Family::T1), 0);
  ASSERT_EQ(host.messageCalls(), 1);
  EXPECT_NE(LastMessage().find("Sample Size (N)"), std::string::npos);

  SetWorking(Family::T1, "SampleSize", 2);
  host.ClearMessages();
  EXPECT_EQ(Check(Family::T1), 0);
  ASSERT_EQ(host.messageCalls(), 1);
  EXPECT_NE(LastMessage().find("Observed T"), std::string::npos);
}

TEST_F(CheckRangesTest, TheIndependentTestChecksTheObservedTFirst) {
  SetWorking(Family::T2, "SampleSizeN1", 1);
  SetWorking(Family::T2, "TObserved", 9999);
  EXPECT_EQ(Check(Family::T2), 0);
  ASSERT_EQ(host.messageCalls(), 1);
  EXPECT_NE(LastMessage().find("Observed T"), std::string::npos);
}

TEST_F(CheckRangesTest, AFailedCheckChangesNothing) {
  SetWorking(Family::T1, "Alpha", 0.5);
  Check(Family::T1);
  EXPECT_EQ(Working(Family::T1, "Alpha"), 0.5);
  EXPECT_EQ(block.T1.Committed.Alpha, 0.05);
}

TEST_F(CheckRangesTest, StartAndEndOfAChartAreNotComparedWithEachOther) {
  SetWorking(Family::T1, "NStart", 100);
  SetWorking(Family::T1, "NEnd", 50);
  EXPECT_EQ(Check(Family::T1), 1);
}

TEST_F(CheckRangesTest, UnkeyedFieldsAreNotChecked) {
  block.T1.Working.Delta = 1e300;
  block.Z2R.Working.NToVary = 99;
  EXPECT_EQ(Check(Family::T1), 1);
  EXPECT_EQ(Check(Family::Z2R), 1);
}

// --- Rows by hand.

TEST_F(CheckRangesTest, AnEmptyTablePasses) {
  EXPECT_EQ(CheckRanges(nullptr, std::span<const KeyEntry>()), 1);
}

TEST_F(CheckRangesTest, AFormAboveThreeFails) {
  Field field = *TableOf(Family::T1).Find("Alpha");
  field.form = static_cast<RangeForm>(4);
  const KeyEntry entry = {&field, &block.T1.Factory.Alpha, &block.T1.Working.Alpha,
                          &block.T1.Lower.Alpha, &block.T1.Upper.Alpha};
  EXPECT_EQ(CheckRanges(nullptr, std::span<const KeyEntry>(&entry, 1)), 0);
  EXPECT_EQ(host.messageCalls(), 1);
}

TEST_F(CheckRangesTest, AnUnknownTypePassesUnchecked) {
  Field field = *TableOf(Family::T1).Find("Alpha");
  field.type = static_cast<FieldType>(2);
  block.T1.Working.Alpha = 99;
  const KeyEntry entry = {&field, &block.T1.Factory.Alpha, &block.T1.Working.Alpha,
                          &block.T1.Lower.Alpha, &block.T1.Upper.Alpha};
  EXPECT_EQ(CheckRanges(nullptr, std::span<const KeyEntry>(&entry, 1)), 1);
  EXPECT_TRUE(host.messages().empty());
}

// --- Bounds that look like slips and stay.

TEST_F(CheckRangesTest, TwoFieldsArePinnedByTheirBounds) {
  EXPECT_EQ(CheckWith(Family::P2, "Algorithm", 0), 0);
  EXPECT_NE(LastMessage().find("1 <= Algorithm <= 1"), std::string::npos);
  EXPECT_EQ(CheckWith(Family::P2, "Algorithm", 1), 1);
  EXPECT_EQ(CheckWith(Family::QMAC, "OneMinusP", 1), 0);
  EXPECT_EQ(CheckWith(Family::QMAC, "OneMinusP", 0), 1);
}

TEST_F(CheckRangesTest, TheContrastStartsItsAlphaHigher) {
  EXPECT_EQ(CheckWith(Family::PC, "AlphaStart", 0.005), 0);
  EXPECT_EQ(CheckWith(Family::AV1, "AlphaStart", 0.005), 1);
}

TEST_F(CheckRangesTest, CumulativeProbabilitiesDifferInTheirEnds) {
  EXPECT_EQ(CheckWith(Family::P1, "CumP", 0), 1);
  EXPECT_EQ(CheckWith(Family::P2, "CumP", 1), 1);
  EXPECT_EQ(CheckWith(Family::T1, "CumP", 0.0001), 0);
  EXPECT_EQ(CheckWith(Family::R, "CumP", 0.0001), 1);
}

TEST_F(CheckRangesTest, TheIndependentTestHasAHigherPowerGoal) {
  EXPECT_EQ(CheckWith(Family::T2, "PowerGoal", 0.9995), 1);
  EXPECT_EQ(CheckWith(Family::T1, "PowerGoal", 0.9995), 0);
}

TEST_F(CheckRangesTest, TwoCorrelationsStartOneLater) {
  EXPECT_EQ(CheckWith(Family::Z2R, "NStart", 140001), 1);
  EXPECT_EQ(CheckWith(Family::Z2R, "NStart", 2), 0);
  EXPECT_EQ(CheckWith(Family::R, "NStart", 140001), 0);
}

TEST_F(CheckRangesTest, ACorrelationExcludesWhatItsObservationIncludes) {
  EXPECT_EQ(CheckWith(Family::R, "Rho", 0.9999), 0);
  EXPECT_EQ(CheckWith(Family::R, "RObserved", 0.9999), 1);
}

TEST_F(CheckRangesTest, AStandardDeviationExcludesItsLowerBound) {
  EXPECT_EQ(CheckWith(Family::T1, "Sigma", 1e-10), 0);
  EXPECT_EQ(CheckWith(Family::T1, "Sigma", 1e30), 1);
}

TEST_F(CheckRangesTest, AnObservedFMayExceedWhatItsDialogTakes) {
  EXPECT_EQ(CheckWith(Family::AV1, "FObserved", 5000), 1);
}

TEST_F(CheckRangesTest, FiveFamiliesReachAFourthForm) {
  for (const Family family : {Family::V1, Family::R2, Family::P1, Family::P2, Family::SEM}) {
    EXPECT_EQ(CheckWith(family, "H0Type", 3), 1) << TableOf(family).code;
    EXPECT_EQ(CheckWith(family, "H0Type", 4), 0) << TableOf(family).code;
  }
  for (const Family family : {Family::T1, Family::T2, Family::T3, Family::V2, Family::R,
                              Family::Z2R, Family::QMAC, Family::SA1, Family::SA2, Family::SA3}) {
    EXPECT_EQ(CheckWith(family, "H0Type", 3), 0) << TableOf(family).code;
  }
}

// --- Ranges as words.

TEST(RangeText, WordsTheRangeAsTheMessageDoes) {
  EXPECT_EQ(RangeText(*TableOf(Family::T1).Find("Alpha")), "0.0001 <= Alpha <= 0.25");
  EXPECT_EQ(RangeText(*TableOf(Family::T1).Find("SampleSize")), "2 <= Sample Size (N) <= 150000");
  EXPECT_EQ(RangeText(*TableOf(Family::Z2R).Find("NStart")), "3 <= Start N <= 140001");
  EXPECT_EQ(RangeText(*TableOf(Family::R2).Find("PopulationR2")), "0 <= PopulationR2 < 1")
      << "it has no label";
}

TEST(WithinRange, GoesByTheFormOfTheRange) {
  const Field& sigma = *TableOf(Family::T1).Find("Sigma");
  EXPECT_FALSE(WithinRange(sigma, 1e-10));
  EXPECT_TRUE(WithinRange(sigma, 1e30));
  EXPECT_FALSE(WithinRange(sigma, kNan));
  EXPECT_FALSE(WithinRange(sigma, kInfinity));
}

}  // namespace
}  // namespace poweranalysis
