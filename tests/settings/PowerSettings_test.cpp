#include "settings/PowerSettings.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "support/TestSettings.h"

namespace poweranalysis {
namespace {

using testing::SettingsTest;
using testing::WriteWhole;

using PowerSettingsTest = SettingsTest;

TEST_F(PowerSettingsTest, StartsWithFactoryInEveryChangeableInstance) {
  for (const FamilyTable& family : FamilyTables()) {
    for (const Field& field : family.fields) {
      for (const Instance instance :
           {Instance::Factory, Instance::Working, Instance::Committed, Instance::Defaults}) {
        EXPECT_EQ(View(family.family, instance).Get(field), field.factory)
            << family.code << field.name;
      }
      EXPECT_EQ(View(family.family, Instance::Lower).Get(field), field.lower) << field.name;
      EXPECT_EQ(View(family.family, Instance::Upper).Get(field), field.upper) << field.name;
    }
  }
  EXPECT_TRUE(host.messages().empty());
}

TEST_F(PowerSettingsTest, NamesTheTwoFilesBare) {
  EXPECT_EQ(block.DefaultFile, "POWER.INI");
  EXPECT_EQ(block.CurrentFile, "NEW.INI");
  EXPECT_EQ(block.FileNamed, 0);
}

TEST_F(PowerSettingsTest, LeavesModeAndSelectionAlone) {
  block.Mode = 2;
  block.Selection = {1, 2, 3, 4};
  LoadAllDefaults(block);
  EXPECT_EQ(block.Mode, 2);
  EXPECT_EQ(block.Selection[3], 4);
}

TEST_F(PowerSettingsTest, ASecondLoadForgetsTheFileNameAndTheValues) {
  block.FileNamed = 1;
  block.CurrentFile = "x.ini";
  SetWorking(Family::T1, "Alpha", 0.2);
  LoadAllDefaults(block);
  EXPECT_EQ(block.FileNamed, 0);
  EXPECT_EQ(block.CurrentFile, "NEW.INI");
  EXPECT_EQ(Working(Family::T1, "Alpha"), 0.05);
}

TEST_F(PowerSettingsTest, TheDefaultFileReachesThreeInstancesOfEveryFamily) {
  std::string content;
  for (const FamilyTable& family : FamilyTables()) {
    if (family.section != 0) {
      content += "[" + LoadText(family.section) + "]\nAlpha=0.123\n";
    }
  }
  WriteWhole(folder.File("POWER.INI"), content);
  LoadAllDefaults(block);
  for (const FamilyTable& family : FamilyTables()) {
    if (family.section == 0) {
      continue;
    }
    for (const Instance instance : {Instance::Working, Instance::Committed, Instance::Defaults}) {
      EXPECT_EQ(Get(family.family, instance, "Alpha"), 0.123) << family.code;
    }
    EXPECT_EQ(Get(family.family, Instance::Factory, "Alpha"), 0.05) << family.code;
    EXPECT_EQ(Get(family.family, Instance::Lower, "Alpha"), 0.0001) << family.code;
  }
}

// A file is read without a range check.
TEST_F(PowerSettingsTest, TheDefaultFileIsNotChecked) {
  WriteWhole(folder.File("POWER.INI"),
             "[POWER_ANALYSIS_ONE_SAMPLE_TTEST]\nAlpha=0.9\nSampleSize=-3\n");
  LoadAllDefaults(block);
  EXPECT_EQ(Working(Family::T1, "Alpha"), 0.9);
  EXPECT_EQ(Working(Family::T1, "SampleSize"), -3);
  EXPECT_TRUE(host.messages().empty());
  EXPECT_EQ(Check(Family::T1), 0);
}

TEST_F(PowerSettingsTest, WithoutAHostTheBuiltInValuesStand) {
  WriteWhole(folder.File("POWER.INI"), "[POWER_ANALYSIS_ONE_SAMPLE_TTEST]\nAlpha=0.2\n");
  Module().analysis = nullptr;
  LoadAllDefaults(block);
  EXPECT_EQ(Working(Family::T1, "Alpha"), 0.05);
}

// One less than the sample size at the start, and nothing ties the two.
TEST_F(PowerSettingsTest, TheDegreesOfFreedomAreTheirOwn) {
  EXPECT_EQ(Working(Family::T1, "DegreesOfFreedom"), 24);
  EXPECT_EQ(Working(Family::T1, "SampleSize"), 25);
  WriteWhole(folder.File("POWER.INI"), "[POWER_ANALYSIS_ONE_SAMPLE_TTEST]\nSampleSize=50\n");
  LoadAllDefaults(block);
  EXPECT_EQ(Working(Family::T1, "SampleSize"), 50);
  EXPECT_EQ(Working(Family::T1, "DegreesOfFreedom"), 24);
}

// --- Grids.

TEST_F(PowerSettingsTest, TheBuiltInCellsOfAOneWayGridGiveTheBuiltInEffect) {
  const AV1Params& record = block.AV1.Factory;
  double sum = 0;
  for (int i = 0; i < record.NumberOfGroups; ++i) {
    sum += record.GridMeans[static_cast<std::size_t>(i)] *
           record.GridMeans[static_cast<std::size_t>(i)];
  }
  EXPECT_DOUBLE_EQ(std::sqrt(sum / (record.NumberOfGroups - 1)) / record.Sigma, record.RMSSE);
}

TEST_F(PowerSettingsTest, TheBuiltInCellsOfAContrastGiveTheBuiltInEffect) {
  const PCParams& record = block.PC.Factory;
  double contrast = 0;
  double squares = 0;
  for (std::size_t i = 0; i < record.GridMeans.size(); ++i) {
    contrast += record.GridMeans[i] * record.GridWeights[i];
    squares += record.GridWeights[i] * record.GridWeights[i];
  }
  EXPECT_DOUBLE_EQ(contrast / record.Sigma, record.StandardizedEffect);
  EXPECT_DOUBLE_EQ(squares, record.SumOfSquaredWeights);
}

TEST_F(PowerSettingsTest, TheBuiltInCellsOfATwoWayGridGiveTheBuiltInEffects) {
  const AV2Params& record = block.AV2.Factory;
  std::array<double, 3> rowMean{};
  std::array<double, 3> columnMean{};
  for (std::size_t i = 0; i < 3; ++i) {
    for (std::size_t j = 0; j < 3; ++j) {
      rowMean[i] += record.GridMeans[i][j] / 3;
      columnMean[j] += record.GridMeans[i][j] / 3;
    }
  }
  double rows = 0;
  double columns = 0;
  double interaction = 0;
  for (std::size_t i = 0; i < 3; ++i) {
    rows += rowMean[i] * rowMean[i];
    columns += columnMean[i] * columnMean[i];
    for (std::size_t j = 0; j < 3; ++j) {
      const double rest = record.GridMeans[i][j] - rowMean[i] - columnMean[j];
      interaction += rest * rest;
    }
  }
  EXPECT_NEAR(std::sqrt(rows / 2), record.RMSSE_Row, 1e-15);
  EXPECT_NEAR(std::sqrt(columns / 2), record.RMSSE_Col, 1e-15);
  EXPECT_NEAR(std::sqrt(interaction / 4), record.RMSSE_Int, 1e-15);
}

TEST_F(PowerSettingsTest, TheScratchGridStartsAsTheBuiltInRecord) {
  EXPECT_EQ(block.AV1.GridScratch.GridMeans, block.AV1.Factory.GridMeans);
  EXPECT_EQ(block.AV1.GridScratch.RMSSE, 0.25);
  EXPECT_EQ(block.PC.GridScratch.GridWeights, block.PC.Factory.GridWeights);
  EXPECT_EQ(block.AV2.GridScratch.GridMeans, block.AV2.Factory.GridMeans);
  EXPECT_EQ(View(Family::AV1, Instance::GridScratch).record(), &block.AV1.GridScratch);
  EXPECT_EQ(View(Family::T1, Instance::GridScratch).record(), nullptr);
}

// --- Views.

TEST_F(PowerSettingsTest, ACopyTakesTheWholeRecord) {
  block.T1.Working.Delta = 2.5;
  block.T1.Working.Alpha = 0.1;
  View(Family::T1, Instance::Committed).CopyFrom(View(Family::T1, Instance::Working));
  EXPECT_EQ(block.T1.Committed.Delta, 2.5);
  EXPECT_EQ(block.T1.Committed.Alpha, 0.1);
  block.PC.Working.GridWeights[7] = 4;
  View(Family::PC, Instance::GridScratch).CopyFrom(View(Family::PC, Instance::Working));
  EXPECT_EQ(block.PC.GridScratch.GridWeights[7], 4);
}

// As a value of a file: widened to a long, then cut to the field.
TEST_F(PowerSettingsTest, ShortFieldsAreNarrowed) {
  SetWorking(Family::T1, "H0Type", 65537);
  EXPECT_EQ(Working(Family::T1, "H0Type"), 1);
  SetWorking(Family::T1, "H0Type", -1);
  EXPECT_EQ(Working(Family::T1, "H0Type"), -1);
}

TEST_F(PowerSettingsTest, WholeFieldsCutTowardZeroAndStayInThirtyTwoBits) {
  SetWorking(Family::T1, "SampleSize", 12.9);
  EXPECT_EQ(Working(Family::T1, "SampleSize"), 12);
  SetWorking(Family::T1, "SampleSize", -12.9);
  EXPECT_EQ(Working(Family::T1, "SampleSize"), -12);
  SetWorking(Family::T1, "SampleSize", 1e300);
  EXPECT_EQ(Working(Family::T1, "SampleSize"), 2147483647);
  SetWorking(Family::T1, "SampleSize", -std::numeric_limits<double>::infinity());
  EXPECT_EQ(Working(Family::T1, "SampleSize"), -2147483648.0);
  SetWorking(Family::T1, "SampleSize", std::numeric_limits<double>::quiet_NaN());
  EXPECT_EQ(Working(Family::T1, "SampleSize"), 0);
}

TEST_F(PowerSettingsTest, RealFieldsKeepEveryBit) {
  for (const double value : {0.1, -0.0, 5e-324, 1.7976931348623157e308}) {
    SetWorking(Family::T1, "Mu", value);
    EXPECT_EQ(Working(Family::T1, "Mu"), value);
    EXPECT_EQ(std::signbit(Working(Family::T1, "Mu")), std::signbit(value));
  }
}

TEST_F(PowerSettingsTest, TheBlockIsThatOfTheModule) {
  EXPECT_EQ(Block(), &block);
  Module().settings = nullptr;
  EXPECT_EQ(Block(), nullptr);
}

}  // namespace
}  // namespace poweranalysis
