#include <gtest/gtest.h>

#include <map>

#include "output/SummaryTables.h"
#include "support/TestSettings.h"

// The values of the interval tables, row by row.
namespace poweranalysis {
namespace {

using testing::SettingsTest;

constexpr double kBlank = -9999;

class IntervalTables : public SettingsTest {
 protected:
  void Set(Family family, const std::map<std::string, double>& inputs) {
    for (const auto& [field, value] : inputs) {
      SetCommitted(family, field.c_str(), value);
    }
  }
  // Of the Committed record of the family.
  std::vector<double> Values(Family family, const Computed& computed) {
    const TableDefinition* table = FindTable(family, ModeInterval);
    return TableValues(ShownRows(*table, block), View(family, Instance::Committed), computed);
  }
};

// Limits that can be told apart.
Computed Numbered() {
  Computed computed;
  IntervalLimits& limits = computed.limits;
  limits.delta = {101, 102};
  limits.effect = {103, 104};
  limits.rmsse = {105, 106};
  limits.power = {.107, .108};
  limits.size = {109, 110};
  limits.rho = {111, 112};
  limits.rho2 = {113, 114};
  limits.oneSided = {115, kBlank};
  limits.exact = {116, 117};
  limits.approximate = {118, 119};
  limits.crude = {120, 121};
  limits.rmsea = {122, 123};
  limits.gamma1 = {124, 125};
  limits.gamma2 = {126, 127};
  limits.pValue = .128;
  computed.effectDf[0] = 129;
  computed.errorDf = 130;
  return computed;
}

TEST_F(IntervalTables, OneMeanAndPairedMeans) {
  for (const Family family : {Family::T1, Family::T3}) {
    Set(family, {{"TObserved", 2.5}, {"SampleSize", 30}, {"Confidence", .8}});
    EXPECT_EQ(Values(family, Numbered()),
              (std::vector<double>{2.5, 30, .8, kBlank, kBlank, kBlank, 101, 102, kBlank, kBlank,
                                   103, 104}));
  }
}

TEST_F(IntervalTables, TwoMeans) {
  Set(Family::T2,
      {{"TObserved", 2.5}, {"SampleSizeN1", 30}, {"SampleSizeN2", 40}, {"Confidence", .8}});
  EXPECT_EQ(Values(Family::T2, Numbered()),
            (std::vector<double>{2.5, 30, 40, .8, kBlank, kBlank, kBlank, 101, 102, kBlank, kBlank,
                                 103, 104}));
}

TEST_F(IntervalTables, PlannedContrast) {
  Set(Family::PC, {{"TObserved", 2.5},
                   {"SampleSize", 30},
                   {"NumberOfGroups", 4},
                   {"Confidence", .8},
                   {"SumOfSquaredWeights", 12}});
  EXPECT_EQ(Values(Family::PC, Numbered()),
            (std::vector<double>{2.5, 30, 4, .8, 12, kBlank, kBlank, kBlank, 103, 104}));
}

TEST_F(IntervalTables, OneWayAnalysisOfVariance) {
  Set(Family::AV1, {{"FObserved", 2.5},
                    {"Alpha", .01},
                    {"N", 30},
                    {"NumberOfGroups", 4},
                    {"Confidence", .8},
                    {"PowerGoal", .7}});
  EXPECT_EQ(Values(Family::AV1, Numbered()),
            (std::vector<double>{2.5,    129,    130,  .01,    30,     4,      .8,  .7,  kBlank,
                                 kBlank, kBlank, 101,  102,    kBlank, kBlank, 105, 106, kBlank,
                                 kBlank, .107,   .108, kBlank, kBlank, 109,    110}));
}

TEST_F(IntervalTables, TwoWayAnalysisOfVariance) {
  Set(Family::AV2, {{"FObserved", 2.5},
                    {"Alpha", .01},
                    {"N", 30},
                    {"Rows", 4},
                    {"Columns", 5},
                    {"Confidence", .8},
                    {"PowerGoal", .7}});
  EXPECT_EQ(
      Values(Family::AV2, Numbered()),
      (std::vector<double>{4,   5,      30,     .01,    .8,     .7,     kBlank, kBlank, 2.5,
                           129, 130,    kBlank, kBlank, kBlank, 101,    102,    kBlank, 105,
                           106, kBlank, kBlank, .107,   .108,   kBlank, kBlank, 109,    110}));
}

TEST_F(IntervalTables, OneCorrelation) {
  Set(Family::R, {{"RObserved", .4}, {"Rho0", .1}, {"SampleSize", 30}, {"Confidence", .8}});
  EXPECT_EQ(Values(Family::R, Numbered()),
            (std::vector<double>{.4, .1, .128, 30, .8, kBlank, kBlank, kBlank, 111, 112}));
}

TEST_F(IntervalTables, SquaredMultipleCorrelationShowsThePredictorsAlone) {
  Set(Family::R2, {{"R2Observed", .4},
                   {"R2Null", .1},
                   {"SampleSize", 30},
                   {"TotalNumberOfVars", 6},
                   {"Confidence", .8}});
  EXPECT_EQ(
      Values(Family::R2, Numbered()),
      (std::vector<double>{.4,  .1,  .128,   30,     5,    .8,   kBlank, kBlank, kBlank, 113,
                           114, 115, kBlank, kBlank, .107, .108, kBlank, kBlank, 109,    110}));
}

TEST_F(IntervalTables, OneProportion) {
  Set(Family::P1, {{"PObserved", .4}, {"SampleSize", 30}, {"Confidence", .8}});
  EXPECT_EQ(Values(Family::P1, Numbered()),
            (std::vector<double>{.4, 30, .8, kBlank, kBlank, kBlank, 116, 117, kBlank, kBlank, 118,
                                 119, kBlank, kBlank, 120, 121}));
}

TEST_F(IntervalTables, ModelFit) {
  Set(Family::SEM, {{"ObservedChiSquare", 44},
                    {"DegreesOfFreedom", 24},
                    {"P", 9},
                    {"Groups", 2},
                    {"SampleSize", 301},
                    {"Confidence", .8}});
  EXPECT_EQ(Values(Family::SEM, Numbered()),
            (std::vector<double>{44, 24, 9, 2, 301, .8, kBlank, kBlank, kBlank, 122, 123, kBlank,
                                 kBlank, 124, 125, kBlank, kBlank, 126, 127}));
}

TEST_F(IntervalTables, ALimitThatIsNotThereIsBlank) {
  std::vector<double> values = Values(Family::T1, Computed());
  int sheet = 0;
  ShowSummaryTable(values, 2, &sheet, block);
  const auto& table = std::get<SummaryTable>(host.workbook().items.back());
  for (std::size_t i = 3; i < table.rows.size(); ++i) {
    EXPECT_TRUE(IsMissing(table.rows[i].values[0])) << i;
  }
}

TEST_F(IntervalTables, AQuotientOfTheFailureValueIsANumber) {
  Computed computed;
  computed.limits.effect.lower = -9999.0 / 5;
  std::vector<double> values = Values(Family::T1, computed);
  ShowSummaryTable(values, 2, nullptr, block);
  EXPECT_EQ(std::get<SummaryTable>(host.workbook().items.back()).rows[10].values[0], -1999.8);
}

TEST_F(IntervalTables, TheLimitsAreWhatWasAskedFor) {
  for (const TableDefinition& definition : TableDefinitions()) {
    if (definition.mode != ModeInterval) {
      continue;
    }
    std::vector<double> values(definition.rows.size(), 1.5);
    ShowSummaryTable(values, definition.code, nullptr, block);
    for (const TableRow& row : std::get<SummaryTable>(host.workbook().items.back()).rows) {
      EXPECT_EQ(row.answer, row.indent == 4) << definition.code << ' ' << row.title;
    }
  }
}

TEST_F(IntervalTables, LimitsOfAPowerAndPValuesAreShownAsProbabilities) {
  using namespace quantity;
  EXPECT_EQ(CellKindOf(Lower(Limit::Power)), CellKind::Probability);
  EXPECT_EQ(CellKindOf(Upper(Limit::Power)), CellKind::Probability);
  EXPECT_EQ(CellKindOf(kPValue), CellKind::Probability);
  EXPECT_EQ(CellKindOf(Lower(Limit::RequiredN)), CellKind::Computed);
  EXPECT_EQ(CellKindOf(Power()), CellKind::Probability);
  EXPECT_EQ(CellKindOf(Input("Alpha")), CellKind::Input);
}

}  // namespace
}  // namespace poweranalysis
