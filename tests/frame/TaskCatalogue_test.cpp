#include "frame/TaskCatalogue.h"

#include <gtest/gtest.h>

#include <map>
#include <set>
#include <string>

#include "support/DataTable.h"
#include "support/TestData.h"

namespace poweranalysis {
namespace {

using testing::ReadTable;

std::string DataFile(const char* name) { return TestDataDir() + "/" + name; }

int Value(std::span<const Enumerator> enumeration, std::string_view name) {
  for (const Enumerator& e : enumeration) {
    if (name == e.name) {
      return e.value;
    }
  }
  return -1;
}

TEST(TaskCatalogue, HasTheFourModes) {
  const auto rows = ReadTable(DataFile("modes.tsv"));
  ASSERT_EQ(rows.size(), 4u);
  ASSERT_EQ(Modes().size(), 4u);
  for (const auto& row : rows) {
    const ModeRow& mode = Modes()[static_cast<std::size_t>(std::stoi(row[0]))];
    EXPECT_EQ(LoadText(mode.name), row[1]);
    EXPECT_EQ(mode.icon, std::stoi(row[2]));
    EXPECT_EQ(LoadText(mode.help), row[3]);
    EXPECT_EQ(mode.enumerator, row[4]);
  }
}

TEST(TaskCatalogue, EveryModeHasItsWord) {
  const char* const words[] = {"power", "size", "interval", "calc"};
  for (int mode = 0; mode < ModeCount; ++mode) {
    EXPECT_STREQ(ModeWord(mode), words[mode]);
  }
  for (const int other : {-1, 4, 99}) {
    EXPECT_STREQ(ModeWord(other), "");
  }
}

TEST(TaskCatalogue, HasTheTasksOfEveryMode) {
  const auto rows = ReadTable(DataFile("tasks.tsv"));
  ASSERT_EQ(rows.size(), 34u);
  for (const auto& row : rows) {
    const TaskRow& task = Tasks(std::stoi(row[0]))[static_cast<std::size_t>(std::stoi(row[1]))];
    EXPECT_EQ(task.family, row[2]);
    EXPECT_EQ(LoadText(task.name), row[3]) << row[6];
    EXPECT_EQ(task.icon, std::stoi(row[4])) << row[6];
    EXPECT_EQ(LoadText(task.help), row[5]) << row[6];
    EXPECT_EQ(task.enumerator, row[6]);
  }
  EXPECT_EQ(Tasks(ModePower).size(), 18u);
  EXPECT_EQ(Tasks(ModeInterval).size(), 10u);
  EXPECT_EQ(Tasks(ModeDistribution).size(), 6u);
}

TEST(TaskCatalogue, PowerAndSampleSizeShareOneList) {
  EXPECT_EQ(Tasks(ModePower).data(), Tasks(ModeSampleSize).data());
  EXPECT_EQ(Tasks(ModePower).size(), Tasks(ModeSampleSize).size());
  EXPECT_NE(Tasks(ModePower).data(), Tasks(ModeInterval).data());
}

TEST(TaskCatalogue, AModeThatIsNoneHasNoTasks) {
  for (const int mode : {-1, 4, 65535}) {
    EXPECT_TRUE(Tasks(mode).empty()) << mode;
    EXPECT_EQ(ComputeDialog(mode, 0), nullptr) << mode;
    EXPECT_EQ(ResultDialog(mode, 0), nullptr) << mode;
  }
}

TEST(TaskCatalogue, OpensTheEightyEightDialogs) {
  const auto rows = ReadTable(DataFile("dialogs.tsv"));
  ASSERT_EQ(rows.size(), 88u);
  for (const auto& row : rows) {
    const int mode = std::stoi(row[0]);
    const int task = std::stoi(row[1]);
    const bool result = row[2] == "results";
    const DialogRow* dialog = result ? ResultDialog(mode, task) : ComputeDialog(mode, task);
    ASSERT_NE(dialog, nullptr) << row[3];
    EXPECT_EQ(dialog->className, row[3]);
    EXPECT_EQ(dialog->resource, std::stoi(row[4])) << row[3];
    EXPECT_EQ(LoadText(dialog->title), row[5]) << row[3];

    const CatalogueDialog found = FindDialog(dialog->resource);
    EXPECT_EQ(found.dialog, dialog) << row[3];
    EXPECT_EQ(found.mode, mode) << row[3];
    EXPECT_EQ(found.row, task) << row[3];
    EXPECT_EQ(found.result, result) << row[3];
  }
}

TEST(TaskCatalogue, TheStartupDialogIsApart) {
  EXPECT_STREQ(StartupDialog().className, "CDefineTask");
  EXPECT_EQ(StartupDialog().resource, 6100);
  EXPECT_EQ(LoadText(StartupDialog().title), "Power Analysis and Interval Estimation");
  EXPECT_EQ(FindDialog(6100).dialog, nullptr);
  EXPECT_EQ(FindDialog(0).dialog, nullptr);
}

TEST(TaskCatalogue, ResourcesAndClassesAreUnique) {
  std::set<int> resources = {StartupDialog().resource};
  std::set<std::string> classes = {StartupDialog().className};
  for (const auto& row : ReadTable(DataFile("dialogs.tsv"))) {
    const CatalogueDialog found = FindDialog(std::stoi(row[4]));
    EXPECT_TRUE(resources.insert(found.dialog->resource).second) << row[4];
    EXPECT_TRUE(classes.insert(found.dialog->className).second) << row[3];
  }
  EXPECT_EQ(resources.size(), 89u);
}

TEST(TaskCatalogue, OutOfRangeRowsOpenNothing) {
  EXPECT_EQ(ComputeDialog(ModePower, 18), nullptr);
  EXPECT_EQ(ResultDialog(ModePower, 18), nullptr);
  EXPECT_EQ(ComputeDialog(ModeSampleSize, 18), nullptr);
  EXPECT_EQ(ComputeDialog(ModeInterval, 10), nullptr);
  EXPECT_EQ(ComputeDialog(ModeDistribution, 6), nullptr);
  for (int mode = 0; mode < ModeCount; ++mode) {
    EXPECT_EQ(ComputeDialog(mode, -1), nullptr) << mode;
    EXPECT_EQ(ComputeDialog(mode, 65535), nullptr) << mode;
    EXPECT_EQ(ResultDialog(mode, -1), nullptr) << mode;
  }
}

TEST(TaskCatalogue, IntervalsAndCalculatorsHaveNoResultsStage) {
  for (int row = 0; row < 10; ++row) {
    EXPECT_EQ(ResultDialog(ModeInterval, row), nullptr);
    EXPECT_EQ(ResultDialog(ModeDistribution, row), nullptr);
  }
}

// Names and numbers that look like slips and stay.
TEST(TaskCatalogue, TheFirstPowerDialogAloneIsShortened) {
  EXPECT_STREQ(ComputeDialog(ModePower, 0)->className, "CT1PowParamsDialog");
  EXPECT_STREQ(ComputeDialog(ModePower, 1)->className, "CT2PowParametersDialog");
  EXPECT_STREQ(ComputeDialog(ModeSampleSize, 0)->className, "CT1SSParametersDialog");
}

TEST(TaskCatalogue, TheCorrelationCalculatorBearsAParameterDialogsTitle) {
  const DialogRow* dialog = ComputeDialog(ModeDistribution, 4);
  EXPECT_STREQ(dialog->className, "CRDistributionDialog");
  EXPECT_EQ(dialog->resource, 6189);
  EXPECT_EQ(LoadText(dialog->title), "Pearson Correlation: Power Calc. Parameters");
}

TEST(TaskCatalogue, ThePowerDialogOfOneCorrelationStandsApart) {
  EXPECT_EQ(ComputeDialog(ModePower, 8)->resource, 6123);
  EXPECT_EQ(ResultDialog(ModePower, 8)->resource, 6191);
}

TEST(TaskCatalogue, TheFirstTitleHasASmallT) {
  EXPECT_EQ(LoadText(ComputeDialog(ModePower, 0)->title), "1-Sample t-test: Power Calc. Params.");
  EXPECT_EQ(LoadText(ResultDialog(ModePower, 0)->title),
            "1 Sample t-Test: Power Calculation Results");
}

TEST(TaskCatalogue, TheLastTaskOpensTheModelFit) {
  EXPECT_STREQ(ComputeDialog(ModeSampleSize, 17)->className, "CSEMSSParametersDialog");
  EXPECT_EQ(ComputeDialog(ModeSampleSize, 17)->resource, 6220);
  EXPECT_EQ(ResultDialog(ModeSampleSize, 17)->resource, 6222);
}

TEST(TaskCatalogue, SomeTasksShareTheirIcons) {
  const auto tasks = Tasks(ModePower);
  EXPECT_EQ(tasks[3].icon, 677);
  EXPECT_EQ(tasks[4].icon, 677);
  for (const std::size_t row : {14u, 15u, 16u}) {
    EXPECT_EQ(tasks[row].icon, 687);
  }
}

TEST(TaskCatalogue, TheHelpOfTheProportionsRepeatsTheirListText) {
  EXPECT_EQ(LoadText(Tasks(ModePower)[11].help), "One Proportion, Z, Chi-Square Test");
  EXPECT_EQ(LoadText(Tasks(ModePower)[12].help), "Two Proportions, Z-Test");
  EXPECT_EQ(LoadText(Tasks(ModeInterval)[8].help), "One Proportion, Z, Chi-Square Test");
  EXPECT_EQ(Tasks(ModePower)[17].help, 12918);
  EXPECT_EQ(Tasks(ModeInterval)[9].help, 12918);
}

TEST(AnalysisTypes, HoldsThirtyFiveNamesOnceEach) {
  std::set<std::string> names;
  for (const Enumerator& e : AnalysisTypes()) {
    EXPECT_TRUE(names.insert(e.name).second) << e.name;
  }
  EXPECT_EQ(names.size(), 35u);
  EXPECT_EQ(AnalysisItems().size(), 4u);
  for (const auto& row : ReadTable(DataFile("tasks.tsv"))) {
    EXPECT_EQ(Value(AnalysisTypes(), row[6]), std::stoi(row[1])) << row[6];
  }
  for (const auto& row : ReadTable(DataFile("modes.tsv"))) {
    EXPECT_EQ(Value(AnalysisItems(), row[4]), std::stoi(row[0])) << row[4];
  }
}

TEST(AnalysisTypes, KeepsTheMisspelledNameBesideTheRightOne) {
  EXPECT_EQ(Value(AnalysisTypes(), "scPowTwoMeansTTestIndependentSamples"), 1);
  EXPECT_EQ(Value(AnalysisTypes(), "scPowTwoMeansTTestIndpendentSamples"), 1);
}

TEST(AnalysisTypes, HasTwoNamesInTheirMisspelledFormAlone) {
  EXPECT_EQ(Value(AnalysisTypes(), "scPowIntervalTwoMeansTTestIndpendentSamples"), 1);
  EXPECT_EQ(Value(AnalysisTypes(), "scPowIntervalTwoMeansTTestIndependentSamples"), -1);
  EXPECT_EQ(Value(AnalysisTypes(), "scPowDistributionNonCentralChiSuare"), 2);
  EXPECT_EQ(Value(AnalysisTypes(), "scPowDistributionNonCentralChiSquare"), -1);
}

TEST(AnalysisTypes, UsesTheSameNumberInSeveralModes) {
  EXPECT_EQ(Value(AnalysisTypes(), "scPowIntervalOneCorrelationTTest"), 6);
  EXPECT_EQ(Value(AnalysisTypes(), "scPowOneVarianceChiSquareTest"), 6);
}

TEST(FindTask, TakesCodesAndReadableNamesInAnyCase) {
  EXPECT_EQ(FindTask(ModePower, "t1"), 0);
  EXPECT_EQ(FindTask(ModeSampleSize, "T2"), 1);
  EXPECT_EQ(FindTask(ModePower, "one-mean"), 0);
  EXPECT_EQ(FindTask(ModePower, "Two-Means"), 1);
  EXPECT_EQ(FindTask(ModePower, "paired-means"), 2);
  EXPECT_EQ(FindTask(ModePower, "sem"), 17);
  EXPECT_EQ(FindTask(ModeInterval, "r"), 6);
  EXPECT_EQ(FindTask(ModeInterval, "v1"), -1);
  EXPECT_EQ(FindTask(ModePower, ""), -1);
  EXPECT_EQ(FindTask(ModePower, "t"), -1);
  EXPECT_EQ(FindTask(7, "t1"), -1);
}

TEST(FindTask, NoNameStandsForTwoTasksOfAMode) {
  for (int mode = 0; mode < ModeCount; ++mode) {
    int row = 0;
    for (const TaskRow& task : Tasks(mode)) {
      EXPECT_EQ(FindTask(mode, task.family), row) << task.family;
      EXPECT_EQ(FindTask(mode, task.readableName), row) << task.readableName;
      ++row;
    }
  }
}

}  // namespace
}  // namespace poweranalysis
