#include "output/Charts.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

#include "host/ChartLayout.h"
#include "host/HeadlessHost.h"
#include "support/TestSettings.h"

namespace poweranalysis {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

// --- ScaleAxis. The expected limits come from an independent transcription of the rule.

struct ScaleCase {
  double min;
  double max;
  double scaledMin;
  double scaledMax;
  double step;
};

class ScaledAxis : public ::testing::TestWithParam<ScaleCase> {};

TEST_P(ScaledAxis, HasTidyLimitsAroundTheData) {
  const ScaleCase& c = GetParam();
  for (const std::int16_t fine : {std::int16_t{0}, std::int16_t{1}}) {
    double min = c.min;
    double max = c.max;
    double step = 0;
    ASSERT_TRUE(ScaleAxis(min, max, step, fine));
    EXPECT_NEAR(min, c.scaledMin, 1e-9 * std::max(1.0, std::abs(c.scaledMin)));
    EXPECT_NEAR(max, c.scaledMax, 1e-9 * std::max(1.0, std::abs(c.scaledMax)));
    EXPECT_NEAR(step, c.step, 1e-12 * c.step + 1e-15);
  }
}

INSTANTIATE_TEST_SUITE_P(
    Limits,
    ScaledAxis,
    ::testing::Values(ScaleCase{0.05, 0.95, 0, 1, 0.1},
                      ScaleCase{5, 100, 0, 110, 10},
                      ScaleCase{64, 64, 63.98, 64.02, 0.02},  // equal ends: a range of one
                      ScaleCase{-3, -1, -3.5, -0.5, 0.5},     // mirrored
                      ScaleCase{1, 3, 0.5, 3.5, 0.5},         // and its mirror image
                      ScaleCase{-0.5, 0.5, -0.6, 0.6, 0.1},   // shifted before rounding
                      ScaleCase{-0.3, 0.7, -0.4, 0.8, 0.1},
                      ScaleCase{-1, 0, -1, 0.1, 0.1},
                      ScaleCase{0, 1, 0, 1.1, 0.1},
                      ScaleCase{8, 395, 0, 500, 100},
                      ScaleCase{0.001, 0.25, 0, 0.3, 0.05},
                      ScaleCase{0.1, 0.15, 0.08, 0.18, 0.02},
                      ScaleCase{2, 150000, 0, 200000, 50000},
                      ScaleCase{10, 11.5, 9.5, 12, 0.5},
                      ScaleCase{12, 6000, 0, 7000, 1000}));

TEST(ScaleAxis, RefusesLimitsThatCannotBeCounted) {
  const double cases[][2] = {{1e30, 1e30},
                             {0, std::numeric_limits<double>::infinity()},
                             {std::numeric_limits<double>::quiet_NaN(), 1},
                             {-1.7e308, 1.7e308}};
  for (const auto& limits : cases) {
    double min = limits[0];
    double max = limits[1];
    double step = 42;
    EXPECT_FALSE(ScaleAxis(min, max, step, 1));
    EXPECT_EQ(step, 42);
  }
}

// --- BuildChart.

class Charts : public testing::SettingsTest {
 protected:
  static ChartRequest Request(int kind, const std::vector<float>& x, const std::vector<float>& y) {
    ChartRequest request;
    request.kind = kind;
    request.name = "power-vs-n";
    request.titles = {"one", "two", "three"};
    request.xLabel = "x";
    request.yLabel = "y";
    request.x = x;
    request.y = y;
    return request;
  }
  bool Build(int kind, const std::vector<float>& x, const std::vector<float>& y) {
    return BuildChart(host, Request(kind, x, y));
  }
  Chart Built() { return std::get<Chart>(host.workbook().items.back()); }
};

constexpr float kFailed = -9999.0F;

TEST_F(Charts, HandOnTitlesLabelsAndPoints) {
  ASSERT_TRUE(Build(PowerVsSize, {10, 20, 30}, {0.2F, 0.5F, 0.8F}));
  const Chart chart = Built();
  EXPECT_EQ(chart.kind, 14);
  EXPECT_THAT(chart.titles, ElementsAre("one", "two", "three"));
  EXPECT_EQ(chart.xLabel, "x");
  EXPECT_EQ(chart.yLabel, "y");
  EXPECT_THAT(chart.x, ElementsAre(10, 20, 30));
  EXPECT_THAT(chart.y, ElementsAre(0.2F, 0.5F, 0.8F));
}

TEST_F(Charts, WithoutAValidPointAreNotMadeAndSayNothing) {
  EXPECT_FALSE(Build(PowerVsSize, {}, {}));
  EXPECT_FALSE(Build(PowerVsSize, {10, 20}, {kFailed, kFailed}));
  EXPECT_FALSE(Build(PowerVsSize, {10, 20}, {std::nanf(""), INFINITY}));
  EXPECT_THAT(host.workbook().items, IsEmpty());
  EXPECT_THAT(host.messages(), IsEmpty());
}

// The failed points are not squeezed out of the block: the last good ones fall off its end.
TEST_F(Charts, KeepAFailedPointInTheDataAndLoseTheLastGoodOne) {
  std::vector<float> x;
  std::vector<float> y;
  for (int i = 0; i < 10; ++i) {
    x.push_back(static_cast<float>(10 + i));
    y.push_back(0.1F * static_cast<float>(i));
  }
  y[0] = kFailed;
  ASSERT_TRUE(Build(PowerVsSize, x, y));
  const Chart chart = Built();
  ASSERT_THAT(chart.x, SizeIs(9));
  EXPECT_EQ(chart.x.front(), 10);
  EXPECT_EQ(chart.x.back(), 18);
  EXPECT_EQ(chart.y.front(), kFailed);
}

TEST_F(Charts, StretchTheXAxisAloneByAPointWhoseYFailed) {
  ASSERT_TRUE(Build(ClampedChartKinds, {10, 20, 100}, {1, 2, kFailed}));
  const Chart wide = Built();
  EXPECT_GE(wide.xAxis.max, 100);
  EXPECT_LE(wide.yAxis.max, 3);
}

TEST_F(Charts, IgnoreAValueWithinFifteenStepsOfTheFailureMark) {
  float nearly = kFailed;
  for (int i = 0; i < 15; ++i) {
    nearly = std::nextafterf(nearly, 0);
  }
  ASSERT_TRUE(Build(ClampedChartKinds, {1, 2, 3}, {1, 2, nearly}));
  EXPECT_GT(Built().yAxis.min, -100);
  ASSERT_TRUE(Build(ClampedChartKinds, {1, 2, 3}, {1, 2, std::nextafterf(nearly, 0)}));
  EXPECT_LT(Built().yAxis.min, -9000);
}

TEST_F(Charts, OfPowerEndHalfAStepAboveOne) {
  ASSERT_TRUE(Build(PowerVsSize, {10, 20, 30}, {1, 1, 1}));
  const Axis y = Built().yAxis;
  EXPECT_FLOAT_EQ(y.max, 1 + y.step / 2);
}

TEST_F(Charts, OfSizesEndHalfAStepBelowZero) {
  ASSERT_TRUE(Build(SizeVsAlpha, {0.01F, 0.2F}, {1, 90}));
  const Chart chart = Built();
  EXPECT_FLOAT_EQ(chart.yAxis.min, -chart.yAxis.step / 2);
}

TEST_F(Charts, OfAKindBeyondTheTableAreNotClamped) {
  for (const int kind : {25, 40, 64}) {
    const ChartClamps clamps = ClampsOf(kind);
    EXPECT_FALSE(clamps.yTop || clamps.yBottom || clamps.xBottom || clamps.xTop) << kind;
  }
}

struct ClampCase {
  int kind;
  std::optional<float> yTop;
  std::optional<float> xBottom;
  std::optional<float> xTop;
};

TEST_F(Charts, ClampEachKindToWhatItsQuantitiesCanBe) {
  const std::optional<float> none;
  const ClampCase cases[] = {
      {0, 1.F, none, none},  {1, none, none, none}, {2, none, 0.F, 1.F},   {3, none, 0.F, 1.F},
      {4, none, 0.F, none},  {5, none, 0.F, 1.F},   {6, none, 0.F, 2.F},   {7, none, -1.F, 1.F},
      {8, none, 0.F, 1.F},   {9, none, 0.F, none},  {10, none, 0.F, none}, {11, none, 0.F, none},
      {12, none, 0.F, none}, {13, none, -1.F, 1.F}, {14, 1.F, 0.F, none},  {15, 1.F, 0.F, 1.F},
      {16, 1.F, 0.F, none},  {17, 1.F, 0.F, 1.F},   {18, 1.F, 0.F, 2.F},   {19, 1.F, -1.F, 1.F},
      {20, 1.F, 0.F, 1.F},   {21, 1.F, 0.F, none},  {22, 1.F, 0.F, none},  {23, 1.F, 0.F, none},
      {24, 1.F, 0.F, none}};
  for (const ClampCase& c : cases) {
    const ChartClamps clamps = ClampsOf(c.kind);
    EXPECT_EQ(clamps.yTop, c.yTop) << c.kind;
    EXPECT_EQ(clamps.yBottom, std::optional<float>(0.F)) << c.kind;
    EXPECT_EQ(clamps.xBottom, c.xBottom) << c.kind;
    EXPECT_EQ(clamps.xTop, c.xTop) << c.kind;
  }
}

TEST_F(Charts, CountTheTicksOfTheYAxisFromItsMinimum) {
  ASSERT_TRUE(Build(ClampedChartKinds, {1, 2, 3}, {5, 50, 100}));
  const Chart chart = Built();
  const auto ticks =
      static_cast<std::size_t>((chart.yAxis.max - chart.yAxis.min) / chart.yAxis.step) + 2;
  ASSERT_THAT(chart.tickPositions, SizeIs(ticks));
  EXPECT_THAT(chart.tickLabels, SizeIs(ticks));
  for (std::size_t i = 0; i < ticks; ++i) {
    EXPECT_FLOAT_EQ(chart.tickPositions[i],
                    static_cast<float>(i) * chart.yAxis.step + chart.yAxis.min);
  }
}

// One decimal is passed on as none, with no width either.
TEST_F(Charts, PassExactlyOneDecimalAsNone) {
  ASSERT_TRUE(Build(ClampedChartKinds, {1, 2, 3}, {0.05F, 0.5F, 0.95F}));
  EXPECT_FLOAT_EQ(Built().yAxis.step, 0.1F);
  EXPECT_EQ(Built().decimals, 0);
  EXPECT_EQ(Built().labelWidth, 0);
  ASSERT_TRUE(Build(ClampedChartKinds, {1, 2, 3}, {0.1F, 0.12F, 0.15F}));
  EXPECT_FLOAT_EQ(Built().yAxis.step, 0.02F);
  EXPECT_EQ(Built().decimals, 2);
}

TEST_F(Charts, AreDroppedInSilenceWithoutMemoryOrByARefusingHost) {
  host.failAllocation = 1;
  EXPECT_FALSE(Build(PowerVsSize, {10, 20}, {0.2F, 0.3F}));
  host.failAllocation = 0;
  host.failChart = true;
  EXPECT_FALSE(Build(PowerVsSize, {10, 20}, {0.2F, 0.3F}));
  EXPECT_THAT(host.messages(), IsEmpty());
}

// --- Grids and point loops.

TEST(PlotGrids, CountOnePointMoreThanSteps) {
  const PlotGrid grid = WholeGrid(10, 100, 10);
  EXPECT_EQ(grid.count, 11);
  EXPECT_EQ(grid.step, 9);
}

TEST(PlotGrids, OfAReversedRangeAreTheSame) {
  const PlotGrid forward = WholeGrid(10, 100, 10);
  const PlotGrid backward = WholeGrid(100, 10, 10);
  EXPECT_EQ(forward.low, backward.low);
  EXPECT_EQ(forward.high, backward.high);
  EXPECT_EQ(forward.step, backward.step);
  const PlotGrid real = RealGrid(0.9, 0.1, 4);
  EXPECT_EQ(real.low, 0.1);
  EXPECT_EQ(real.high, 0.9);
}

TEST(PlotGrids, OfFewerIntegersThanStepsTakeEachOnce) {
  const PlotGrid grid = WholeGrid(10, 14, 10);
  EXPECT_EQ(grid.step, 1);
  EXPECT_EQ(grid.count, 5);
  EXPECT_EQ(WholeGrid(5, 24, 19).count, 20) << "a step of exactly one";
}

TEST(PlotGrids, OfRealsHaveNoFloorOnTheStep) {
  const PlotGrid grid = RealGrid(0.1, 0.2, 10);
  EXPECT_NEAR(grid.step, 0.01, 1e-15);
  EXPECT_EQ(grid.count, 11);
}

class Plots : public Charts {
 protected:
  std::vector<double> Run(const PlotGrid& grid,
                          const PlotFunction& function,
                          FailedPointRule rule) {
    ChartRequest request;
    request.name = "n-vs-es";
    outcome_ = DrawPlot(host, grid, function, rule, request);
    if (outcome_ != PlotOutcome::Drawn) {
      return {};
    }
    const Chart chart = Built();
    return {chart.y.begin(), chart.y.end()};
  }
  PlotOutcome outcome_ = PlotOutcome::Dropped;
};

TEST_F(Plots, TruncateTheStepsOfAWholeAxisToIntegers) {
  std::vector<double> asked;
  Run(
      WholeGrid(10, 25, 10),
      [&](double x) {
        asked.push_back(x);
        return x;
      },
      FailedPointRule::GoOn);
  EXPECT_THAT(asked, ElementsAre(10, 11, 13, 14, 16, 17, 19, 20, 22, 23, 25));
}

TEST_F(Plots, GoOnPastAFailedPointOrStopByTheirRule) {
  const auto failsAtThree = [](double x) { return x == 3 ? -9999.0 : x; };
  const PlotGrid grid = WholeGrid(1, 6, 5);
  EXPECT_THAT(Run(grid, failsAtThree, FailedPointRule::GoOn), ElementsAre(1, 2, -9999, 4, 5));
  EXPECT_THAT(Run(grid, failsAtThree, FailedPointRule::DropAndStop), ElementsAre(1, 2));
  // The failed point is kept as the last, and the block holds as many points as are valid.
  EXPECT_THAT(Run(grid, failsAtThree, FailedPointRule::KeepAndStop), ElementsAre(1, 2));
}

TEST_F(Plots, StoreTheirPointsInSinglePrecision) {
  Run(
      RealGrid(0.01, 0.05, 4), [](double x) { return x; }, FailedPointRule::GoOn);
  EXPECT_EQ(Built().x.front(), 0.01F);
  EXPECT_NE(static_cast<double>(Built().x.front()), 0.01);
}

TEST_F(Plots, ShowTheirProgressAndCloseTheBar) {
  Run(
      WholeGrid(1, 6, 5), [](double x) { return x; }, FailedPointRule::GoOn);
  EXPECT_THAT(host.calls.progress, ElementsAre("d_pbar Computing Plot Data", "dstart 6", "dstop"));
  EXPECT_FALSE(host.IsProgressBarOpen());
}

TEST_F(Plots, DrawNothingWhenCancelled) {
  int polls = 0;
  host.cancelled = [&polls] { return ++polls == 3; };
  int computed = 0;
  Run(
      WholeGrid(1, 6, 5),
      [&computed](double x) {
        ++computed;
        return x;
      },
      FailedPointRule::GoOn);
  EXPECT_EQ(outcome_, PlotOutcome::Cancelled);
  EXPECT_EQ(computed, 2);
  EXPECT_FALSE(host.IsProgressBarOpen());
  EXPECT_THAT(host.workbook().items, IsEmpty());
}

}  // namespace
}  // namespace poweranalysis
