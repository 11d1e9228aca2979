#include "families/CellMeans.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

#include "intervals/IntervalsTest.h"

namespace poweranalysis {
namespace {

// --- One-way.

TEST(CellMeans, TheBuiltInCellsHaveTheBuiltInMeasures) {
  auto oneWay = BuiltIn<AV1Params>(Family::AV1);
  oneWay.GridMeans = {-.25, 0, .25};
  EXPECT_DOUBLE_EQ(PutMeasures(oneWay).effect.rmsse, .25);
  EXPECT_DOUBLE_EQ(oneWay.RMSSE, .25);
  auto contrast = BuiltIn<PCParams>(Family::PC);
  contrast.GridMeans = {.25, 0, 0};
  contrast.GridWeights = {1, 1, -2};
  EXPECT_EQ(PutMeasures(contrast).psi, .25);
  EXPECT_EQ(contrast.StandardizedEffect, .25);
  EXPECT_EQ(contrast.SumOfSquaredWeights, 6);
  auto twoWay = BuiltIn<AV2Params>(Family::AV2);
  constexpr double kLevels[] = {-.25, 0, .25};
  constexpr double kInteraction[3][3] = {{1, -1, 0}, {-1, 1, 0}, {0, 0, 0}};
  for (std::size_t i = 0; i < 3; ++i) {
    for (std::size_t j = 0; j < 3; ++j) {
      twoWay.GridMeans[i][j] = kLevels[i] + kLevels[j] + .25 * kInteraction[i][j];
    }
  }
  PutMeasures(twoWay);
  EXPECT_DOUBLE_EQ(twoWay.RMSSE_Row, .25);
  EXPECT_DOUBLE_EQ(twoWay.RMSSE_Col, .25);
  EXPECT_DOUBLE_EQ(twoWay.RMSSE_Int, .25);
}

TEST(CellMeans, MeansOfGroupsHaveDeviationsAndBothMeasures) {
  const std::vector<double> means = {10, 12, 15, 19};
  const OneWayMeasures measures = MeasureOneWay(means, 4);
  EXPECT_EQ(measures.deviations[0], -4);
  EXPECT_EQ(measures.deviations[3], 5);
  EXPECT_EQ(measures.deviations[4], 0);
  // The squares are 16, 4, 1 and 25.
  EXPECT_DOUBLE_EQ(measures.effect.rmsse, std::sqrt(46.0 / 16 / 3));
  EXPECT_DOUBLE_EQ(measures.effect.f, std::sqrt(46.0 / 16 / 4));
}

TEST(CellMeans, EqualMeansHaveNoEffect) {
  const std::vector<double> means(12, 7.5);
  EXPECT_EQ(MeasureOneWay(means, .1).effect.rmsse, 0);
  const std::vector<double> cells(64, 7.5);
  const TwoWayMeasures measures = MeasureTwoWay(cells, 8, 8, 8, .1);
  EXPECT_EQ(measures.row.rmsse, 0);
  EXPECT_EQ(measures.column.rmsse, 0);
  EXPECT_EQ(measures.interaction.rmsse, 0);
}

TEST(CellMeans, SigmaScalesTheMeasuresAlone) {
  const std::vector<double> means = {1, 2, 4};
  const OneWayMeasures one = MeasureOneWay(means, 1);
  const OneWayMeasures ten = MeasureOneWay(means, 10);
  EXPECT_DOUBLE_EQ(ten.effect.rmsse, one.effect.rmsse / 10);
  EXPECT_EQ(ten.deviations, one.deviations);
}

TEST(CellMeans, HugeMeansHaveAnInfiniteMeasure) {
  const std::vector<double> means = {-1e200, 1e200};
  EXPECT_EQ(MeasureOneWay(means, 1).effect.rmsse, std::numeric_limits<double>::infinity());
}

// --- Two-way.

TEST(CellMeans, ATableOfMeansHasThreeEffects) {
  // Rows 2 and 6, columns 3, 4 and 5, interaction +-1 in the outer columns.
  const std::vector<double> cells = {2, 2, 2, 4, 6, 8};
  const TwoWayMeasures measures = MeasureTwoWay(cells, 2, 3, 3, 2);
  EXPECT_DOUBLE_EQ(measures.row.rmsse, std::sqrt(8.0 / 4 / 1));
  EXPECT_DOUBLE_EQ(measures.row.f, std::sqrt(8.0 / 4 / 2));
  EXPECT_DOUBLE_EQ(measures.column.rmsse, std::sqrt(2.0 / 4 / 2));
  EXPECT_DOUBLE_EQ(measures.column.f, std::sqrt(2.0 / 4 / 3));
  EXPECT_DOUBLE_EQ(measures.interaction.rmsse, std::sqrt(4.0 / 4 / 2));
  EXPECT_DOUBLE_EQ(measures.interaction.f, std::sqrt(4.0 / 4 / 6));
  EXPECT_EQ(measures.deviations[0][0], -2);
  EXPECT_EQ(measures.deviations[1][2], 4);
}

TEST(CellMeans, CellsBeyondTheCountsOfATableHaveNoInfluence) {
  const std::vector<double> dense = {1, 2, 5, 9};
  std::vector<double> sparse(64, 1e6);
  sparse[0] = 1;
  sparse[1] = 2;
  sparse[8] = 5;
  sparse[9] = 9;
  const TwoWayMeasures a = MeasureTwoWay(dense, 2, 2, 2, 1);
  const TwoWayMeasures b = MeasureTwoWay(sparse, 2, 2, 8, 1);
  EXPECT_EQ(a.row.rmsse, b.row.rmsse);
  EXPECT_EQ(a.column.rmsse, b.column.rmsse);
  EXPECT_EQ(a.interaction.rmsse, b.interaction.rmsse);
}

// --- Contrast.

TEST(CellMeans, WeightsOfAContrastNeedNotSumToZero) {
  const std::vector<double> means = {1, 2, 3};
  const std::vector<double> weights = {1, 1, 1};
  const ContrastMeasures measures = MeasureContrast(means, weights, 2);
  EXPECT_EQ(measures.psi, 6);
  EXPECT_EQ(measures.es, 3);
  EXPECT_EQ(measures.ssWeights, 3);
}

// --- Records.

TEST(CellMeans, AGridHoldsSoManyGroups) {
  AV1Params oneWay{};
  AV2Params twoWay{};
  PCParams contrast{};
  const auto fits = [&](i32 count) {
    oneWay.NumberOfGroups = contrast.NumberOfGroups = twoWay.Rows = count;
    twoWay.Columns = 2;
    return std::array{FitsGrid(oneWay), FitsGrid(twoWay), FitsGrid(contrast)};
  };
  EXPECT_EQ(fits(0), (std::array{false, false, false}));
  EXPECT_EQ(fits(1), (std::array{false, false, true}));
  EXPECT_EQ(fits(2), (std::array{true, true, true}));
  EXPECT_EQ(fits(8), (std::array{true, true, true}));
  EXPECT_EQ(fits(9), (std::array{true, false, false}));
  EXPECT_EQ(fits(12), (std::array{true, false, false}));
  EXPECT_EQ(fits(13), (std::array{false, false, false}));
  EXPECT_EQ(fits(-1), (std::array{false, false, false}));
  twoWay.Rows = 2;
  twoWay.Columns = 9;
  EXPECT_FALSE(FitsGrid(twoWay));
}

TEST(CellMeans, ARecordThatCannotBeMeasuredStaysAsItIs) {
  for (const i32 count : {0, 1, 13, -4}) {
    auto record = BuiltIn<AV1Params>(Family::AV1);
    record.NumberOfGroups = count;
    EXPECT_EQ(PutMeasures(record).effect.f, 0) << count;
    EXPECT_EQ(record.RMSSE, .25) << count;
  }
  for (const double sigma : {0.0, -1.0, std::numeric_limits<double>::quiet_NaN()}) {
    auto record = BuiltIn<PCParams>(Family::PC);
    record.GridWeights = {2, -2};
    record.Sigma = sigma;
    EXPECT_EQ(PutMeasures(record).ssWeights, 0) << sigma;
    EXPECT_EQ(record.SumOfSquaredWeights, 6) << sigma;
  }
  auto table = BuiltIn<AV2Params>(Family::AV2);
  table.Columns = 9;
  table.GridMeans[0][0] = 5;
  EXPECT_EQ(PutMeasures(table).row.f, 0);
  EXPECT_EQ(table.RMSSE_Row, .25);
}

TEST(CellMeans, DeviationsOfARecordAreKeptBesideItsCells) {
  auto oneWay = BuiltIn<AV1Params>(Family::AV1);
  oneWay.NumberOfGroups = 2;
  oneWay.GridMeans = {3, 5, 100};
  PutMeasures(oneWay);
  EXPECT_EQ(oneWay.GridDeviations[0], -1);
  EXPECT_EQ(oneWay.GridDeviations[1], 1);
  EXPECT_EQ(oneWay.GridDeviations[2], 0);
  auto twoWay = BuiltIn<AV2Params>(Family::AV2);
  twoWay.Rows = twoWay.Columns = 2;
  twoWay.GridMeans[0] = {1, 2};
  twoWay.GridMeans[1] = {3, 6};
  PutMeasures(twoWay);
  EXPECT_EQ(twoWay.GridDeviations[1][1], 3);
}

}  // namespace
}  // namespace poweranalysis
