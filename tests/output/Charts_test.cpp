#include "output/Charts.h"

#include <cmath>
#include <limits>
#include <numeric>
#include <optional>
#include <string>
#include <vector>

#include "host/ChartLayout.h"
#include "support/TestAnalysis.h"

namespace poweranalysis {
namespace {

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
constexpr float kInfinity = std::numeric_limits<float>::infinity();
constexpr int kUnclamped = ClampedChartKinds;
constexpr int kKinds = 25;

// --- ScaleAxis

struct ScaledRow {
  double min;
  double max;
  double scaledMin;
  double scaledMax;
  double step;
};

// From an independent transcription of the rule in Python, with its integers and doubles.
constexpr ScaledRow kScaled[] = {
    {0.05, 0.95, 0, 1, 0.1},       {0, 1, 0, 1.1, 0.1},
    {5, 100, 0, 110, 10},          {8, 395, 0, 500, 100},
    {0.001, 0.25, 0, 0.3, 0.05},   {0.1, 0.15, 0.08, 0.18, 0.02},
    {2, 150000, 0, 200000, 50000}, {100, 100.1, 99.98, 100.12, 0.02},
    {10, 11.5, 9.5, 12, 0.5},      {0.65, 0.999, 0.6, 1.1, 0.1},
    {12, 6000, 0, 7000, 1000},     {10, 19, 9, 20, 1},
};

void ExpectScaled(const ScaledRow& row) {
  for (const std::int16_t fine : {std::int16_t{0}, std::int16_t{1}}) {
    SCOPED_TRACE(::testing::Message() << row.min << " to " << row.max << ", fine " << fine);
    double min = row.min;
    double max = row.max;
    double step = 0;
    ASSERT_TRUE(ScaleAxis(min, max, step, fine));
    const double slack = 1e-12 * std::max(std::abs(row.scaledMin), std::abs(row.scaledMax));
    EXPECT_NEAR(min, row.scaledMin, slack);
    EXPECT_NEAR(max, row.scaledMax, slack);
    EXPECT_NEAR(step, row.step, 1e-12 * row.step);
  }
}

TEST(ScaleAxis, RoundsTheLimitsOutwardsToMultiplesOfATidyStep) {
  for (const ScaledRow& row : kScaled) {
    ExpectScaled(row);
  }
}

TEST(ScaleAxis, TakesEqualEndsAsARangeOfOne) {
  ExpectScaled({64, 64, 63.98, 64.02, 0.02});
  ExpectScaled({1, 1, 0.98, 1.02, 0.02});
  ExpectScaled({0.2, 0.2, 0.18, 0.22, 0.02});
}

TEST(ScaleAxis, MirrorsARangeBelowZero) {
  ExpectScaled({1, 3, 0.5, 3.5, 0.5});
  ExpectScaled({-3, -1, -3.5, -0.5, 0.5});
}

TEST(ScaleAxis, ShiftsARangeAcrossZeroByItsPowerOfTen) {
  ExpectScaled({-0.5, 0.5, -0.6, 0.6, 0.1});
  ExpectScaled({-0.3, 0.7, -0.4, 0.8, 0.1});
  ExpectScaled({-1, 0, -1, 0.1, 0.1});
  ExpectScaled({-30, 30, -40, 40, 10});
}

TEST(ScaleAxis, CountsUnitsBeyondThirtyTwoBits) {
  ExpectScaled({1e8, 1e8, 99999999.98, 100000000.02, 0.02});
}

TEST(ScaleAxis, RefusesLimitsThatCannotBeCountedInUnits) {
  constexpr double kHuge = 1e30;
  constexpr double kDoubleInfinity = std::numeric_limits<double>::infinity();
  constexpr double kDoubleNaN = std::numeric_limits<double>::quiet_NaN();
  // Ninety million million hundredths.
  constexpr double kMost = 9e13;
  const std::vector<std::pair<double, double>> refused = {
      {kHuge, kHuge},  {-kHuge, -kHuge}, {1.01 * kMost, 1.01 * kMost}, {0, kDoubleInfinity},
      {kDoubleNaN, 1}, {0, kDoubleNaN},  {-1.7e308, 1.7e308},          {0, 5e-324}};
  for (const auto& [low, high] : refused) {
    double min = low;
    double max = high;
    double step = 7;
    EXPECT_FALSE(ScaleAxis(min, max, step, 0)) << low << " to " << high;
    EXPECT_TRUE(std::isnan(low) || min == low);
    EXPECT_TRUE(std::isnan(high) || max == high);
    EXPECT_EQ(step, 7);
  }
  double min = 0.99 * kMost;
  double max = min;
  double step = 0;
  EXPECT_TRUE(ScaleAxis(min, max, step, 0));
}

// --- Clamps

struct ClampRow {
  int kind;
  std::optional<float> yTop, yBottom, xBottom, xTop;
};

// What each plotted quantity can be at most and at least.
const ClampRow kBounds[kKinds] = {
    {0, 1, 0, {}, {}},  {1, {}, 0, {}, {}}, {2, {}, 0, 0, 1},   {3, {}, 0, 0, 1},
    {4, {}, 0, 0, {}},  {5, {}, 0, 0, 1},   {6, {}, 0, 0, 2},   {7, {}, 0, -1, 1},
    {8, {}, 0, 0, 1},   {9, {}, 0, 0, {}},  {10, {}, 0, 0, {}}, {11, {}, 0, 0, {}},
    {12, {}, 0, 0, {}}, {13, {}, 0, -1, 1}, {14, 1, 0, 0, {}},  {15, 1, 0, 0, 1},
    {16, 1, 0, 0, {}},  {17, 1, 0, 0, 1},   {18, 1, 0, 0, 2},   {19, 1, 0, -1, 1},
    {20, 1, 0, 0, 1},   {21, 1, 0, 0, {}},  {22, 1, 0, 0, {}},  {23, 1, 0, 0, {}},
    {24, 1, 0, 0, {}},
};

class ChartsTest : public testing::FrameTest {
 protected:
  std::optional<Chart> Build(ChartRequest request,
                             const std::vector<float>& x,
                             const std::vector<float>& y) {
    request.x = x;
    request.y = y;
    const std::size_t before = host.workbook().items.size();
    const bool built = BuildChart(host, request);
    EXPECT_EQ(host.workbook().items.size(), before + (built ? 1 : 0));
    return built ? std::optional(std::get<Chart>(host.workbook().items.back())) : std::nullopt;
  }
  std::optional<Chart> Build(int kind, const std::vector<float>& x, const std::vector<float>& y) {
    ChartRequest request;
    request.kind = kind;
    return Build(request, x, y);
  }
  void ExpectSilence() {
    EXPECT_TRUE(host.workbook().items.empty());
    EXPECT_TRUE(host.messages().empty());
  }
  // Progress and breaks go through the live analysis.
  void StartAnalysis() {
    Start();
    host.calls = {};
  }
  int heldBlocks() const { return host.calls.allocMem - failedBlocks - host.calls.freeMem; }
  int failedBlocks = 0;
};

std::vector<float> UpTo(int count) {
  std::vector<float> values(static_cast<std::size_t>(count));
  std::iota(values.begin(), values.end(), 1.0F);
  return values;
}

TEST_F(ChartsTest, ClampEveryKindToHalfAStepBeyondItsBounds) {
  const std::vector<float> x = {-3, 0, 3};
  const std::vector<float> y = {-2, 0, 3};
  const Chart free = Build(kUnclamped, x, y).value();
  for (const ClampRow& row : kBounds) {
    SCOPED_TRACE(row.kind);
    const Chart chart = Build(row.kind, x, y).value();
    const float halfX = free.xAxis.step / 2;
    const float halfY = free.yAxis.step / 2;
    EXPECT_EQ(chart.yAxis.max, row.yTop ? *row.yTop + halfY : free.yAxis.max);
    EXPECT_EQ(chart.yAxis.min, row.yBottom ? *row.yBottom - halfY : free.yAxis.min);
    EXPECT_EQ(chart.xAxis.min, row.xBottom ? *row.xBottom - halfX : free.xAxis.min);
    EXPECT_EQ(chart.xAxis.max, row.xTop ? *row.xTop + halfX : free.xAxis.max);
    EXPECT_EQ(chart.xAxis.step, free.xAxis.step);
    EXPECT_EQ(chart.yAxis.step, free.yAxis.step);
    EXPECT_EQ(chart.kind, row.kind);
  }
}

TEST_F(ChartsTest, LeaveLimitsWithinTheirBoundsAlone) {
  for (const ClampRow& row : kBounds) {
    SCOPED_TRACE(row.kind);
    const Chart chart = Build(row.kind, {0.3F, 0.6F}, {0.3F, 0.6F}).value();
    const Chart free = Build(kUnclamped, {0.3F, 0.6F}, {0.3F, 0.6F}).value();
    EXPECT_EQ(chart.yAxis.min, free.yAxis.min);
    EXPECT_EQ(chart.yAxis.max, free.yAxis.max);
    EXPECT_EQ(chart.xAxis.min, free.xAxis.min);
    EXPECT_EQ(chart.xAxis.max, free.xAxis.max);
  }
}

TEST_F(ChartsTest, HaveNoClampFromKind25On) {
  for (const int kind : {25, 26, 40, 64}) {
    const ChartClamps clamps = ClampsOf(kind);
    EXPECT_FALSE(clamps.yTop || clamps.yBottom || clamps.xBottom || clamps.xTop) << kind;
    EXPECT_LT(Build(kind, {-3, 3}, {-2, 3}).value().yAxis.min, -2) << kind;
  }
  EXPECT_FALSE(ClampsOf(-1).yTop);
}

TEST_F(ChartsTest, ClampTheTopOfAPowerOfOneToHalfAStepAboveOne) {
  const std::vector<float> ones(10, 1.0F);
  for (const int kind : {0, 14, 15, 16, 17, 18, 19, 20, 21, 22, 23, 24}) {
    const Chart chart = Build(kind, UpTo(10), ones).value();
    EXPECT_EQ(chart.yAxis.step, 0.02F) << kind;
    EXPECT_EQ(chart.yAxis.max, 1 + 0.02F / 2) << kind;
    EXPECT_EQ(chart.yAxis.min, 0.98F) << kind;
  }
}

TEST_F(ChartsTest, AreDroppedWhenAClampTurnsTheYAxisOver) {
  // No power is above 1: the top moves down to 1.05, below the smallest value.
  EXPECT_FALSE(Build(PowerVsSize, {1, 2}, {5, 6}));
  ExpectSilence();
}

// --- Scan and scale

TEST_F(ChartsTest, KeepATenthOfAStepBesideTheData) {
  // 0.001 lies within 0.099 steps of 0.05 above 0.
  const Chart low = Build(kUnclamped, {0.001F, 0.25F}, {1, 2}).value();
  EXPECT_FLOAT_EQ(low.xAxis.min, -0.05F);
  EXPECT_FLOAT_EQ(low.xAxis.max, 0.3F);
  // 0.006 does not.
  EXPECT_EQ(Build(kUnclamped, {0.006F, 0.25F}, {1, 2}).value().xAxis.min, 0);
}

TEST_F(ChartsTest, KeepASeventhOfAStepAboveAndBelowTheData) {
  // 8 lies within 0.149 steps of 100 above 0.
  const Chart chart = Build(kUnclamped, {1, 2}, {8, 395}).value();
  EXPECT_EQ(chart.yAxis.min, -100);
  EXPECT_EQ(chart.yAxis.max, 500);
  EXPECT_EQ(chart.yAxis.step, 100);
  EXPECT_EQ(Build(kUnclamped, {1, 2}, {15, 395}).value().yAxis.min, 0);
}

// Tidy limits stand off from the data, but for those at zero.
TEST_F(ChartsTest, KeepTheSameMarginAtTheUpperEnds) {
  const auto xMax = [&](float x) {
    return Build(kUnclamped, {-0.25F, x}, {1, 2}).value().xAxis.max;
  };
  EXPECT_EQ(xMax(-0.0052F), 0);
  EXPECT_FLOAT_EQ(xMax(-0.0048F), 0.05F);
  const auto yMax = [&](float y) { return Build(kUnclamped, {1, 2}, {-350, y}).value().yAxis.max; };
  EXPECT_EQ(yMax(-15), 0);
  EXPECT_EQ(yMax(-14.8F), 100);
}

TEST_F(ChartsTest, KeepTheSameMarginAtTheLowerEnds) {
  const auto xMin = [&](float x) {
    return Build(kUnclamped, {x, 0.25F}, {1, 2}).value().xAxis.min;
  };
  EXPECT_EQ(xMin(0.0052F), 0);
  EXPECT_FLOAT_EQ(xMin(0.0048F), -0.05F);
  const auto yMin = [&](float y) { return Build(kUnclamped, {1, 2}, {y, 350}).value().yAxis.min; };
  EXPECT_EQ(yMin(15), 0);
  EXPECT_EQ(yMin(14.8F), -100);
}

TEST_F(ChartsTest, CoarsenAStepTooFineToRead) {
  // The tidy limits are 999999.9 and 1000000.6 with a step of 0.1; the larger, by 100000, becomes
  // the step and moves both.
  const Chart chart = Build(kUnclamped, {1, 2}, {1000000.0F, 1000000.5F}).value();
  EXPECT_FLOAT_EQ(chart.yAxis.step, 10.000006F);
  EXPECT_FLOAT_EQ(chart.yAxis.max, 1000010.6F);
  EXPECT_FLOAT_EQ(chart.yAxis.min, 999989.9F);
}

TEST_F(ChartsTest, StretchTheXAxisByAPointWhoseYFailed) {
  std::vector<float> x = UpTo(11);
  std::vector<float> y(11, 0.5F);
  x[10] = 1000;
  y[10] = FailedPoint;
  const Chart chart = Build(kUnclamped, x, y).value();
  EXPECT_GE(chart.xAxis.max, 1000);
  EXPECT_EQ(chart.x.size(), 10U);
  EXPECT_LT(chart.yAxis.max, 1);
  EXPECT_GT(chart.yAxis.min, 0);
}

TEST_F(ChartsTest, IgnoreTheYOfAPointWhoseXFailed) {
  const Chart chart = Build(kUnclamped, {1, 2, FailedPoint}, {0.2F, 0.4F, 500}).value();
  EXPECT_LT(chart.yAxis.max, 1);
  EXPECT_EQ(chart.x.size(), 2U);
}

TEST_F(ChartsTest, CountValuesWithinFifteenUnitsOfTheFailureAsFailed) {
  float near = FailedPoint;
  for (int i = 0; i < 15; ++i) {
    near = std::nextafter(near, 0.0F);
  }
  const float beyond = std::nextafter(near, 0.0F);
  EXPECT_FALSE(Build(kUnclamped, {1}, {near}));
  EXPECT_TRUE(Build(kUnclamped, {1}, {beyond}));
}

TEST_F(ChartsTest, SkipMissingAndInfiniteValues) {
  const Chart chart =
      Build(kUnclamped, {1, 2, 3, 4, kNaN}, {0.2F, kNaN, kInfinity, 0.4F, 0.3F}).value();
  EXPECT_EQ(chart.x.size(), 2U);
  EXPECT_LT(chart.yAxis.max, 1);
}

TEST_F(ChartsTest, AreDroppedInSilenceWhenEveryPointFails) {
  const std::vector<float> fails(10, FailedPoint);
  EXPECT_FALSE(Build(SizeVsEffect, UpTo(10), fails));
  EXPECT_FALSE(Build(SizeVsEffect, {}, {}));
  ExpectSilence();
}

TEST_F(ChartsTest, AreDroppedInSilenceWhenTheLimitsAreAbsurd) {
  EXPECT_FALSE(Build(kUnclamped, {1e20F, 1e20F}, {1, 2}));
  EXPECT_FALSE(Build(kUnclamped, {1, 2}, {1e20F, 1e20F}));
  EXPECT_FALSE(Build(kUnclamped, {1, 2}, {1, 3.4e38F}));
  ExpectSilence();
}

// --- The data block

TEST_F(ChartsTest, HoldTheFrontOfThePointsWhenOneFailed) {
  std::vector<float> y = {FailedPoint, 0.1F, 0.2F, 0.3F, 0.4F, 0.5F, 0.6F, 0.7F, 0.8F, 0.9F};
  const Chart chart = Build(PowerVsSize, UpTo(10), y).value();
  y.pop_back();
  EXPECT_EQ(chart.x, UpTo(9));
  EXPECT_EQ(chart.y, y);  // the failed one and the next eight; the tenth is gone
}

// --- Titles, labels, ticks

TEST_F(ChartsTest, CutTitlesAndLabelsToTheirFields) {
  ChartRequest request;
  request.name = "power-vs-n";
  request.titles = {std::string(130, 'a'), "H0:  Mu = Mu0   ", std::string("end\0\0 ", 6)};
  request.xLabel = std::string(59, 'x') + "\u00B2y";
  request.yLabel = "Power  ";
  const Chart chart = Build(request, {1, 2}, {1, 2}).value();
  EXPECT_EQ(chart.name, "power-vs-n");
  EXPECT_EQ(chart.titles[0], std::string(128, 'a'));
  EXPECT_EQ(chart.titles[1], "H0:  Mu = Mu0");
  EXPECT_EQ(chart.titles[2], "end");
  EXPECT_EQ(chart.xLabel, std::string(59, 'x') + "\u00B2");
  EXPECT_EQ(chart.yLabel, "Power");
}

TEST_F(ChartsTest, NeverReadTheHints) {
  ChartRequest request;
  request.hints = {kNaN, -1e30F, 0, kInfinity, FailedPoint, -1};
  const Chart with = Build(request, {1, 2}, {8, 395}).value();
  const Chart without = Build(kUnclamped, {1, 2}, {8, 395}).value();
  EXPECT_EQ(with.yAxis.min, without.yAxis.min);
  EXPECT_EQ(with.yAxis.max, without.yAxis.max);
  EXPECT_EQ(with.xAxis.step, without.xAxis.step);
  EXPECT_EQ(with.tickLabels, without.tickLabels);
}

TEST_F(ChartsTest, LabelWholeTicksRightAlignedInFive) {
  const Chart chart = Build(kUnclamped, {1, 2}, {-30, 30}).value();
  EXPECT_EQ(chart.tickPositions, (std::vector<float>{-40, -30, -20, -10, 0, 10, 20, 30, 40, 50}));
  EXPECT_EQ(chart.tickLabels,
            (std::vector<std::string>{"  -40", "  -30", "  -20", "  -10", "    0", "   10", "   20",
                                      "   30", "   40", "   50"}));
  EXPECT_EQ(chart.decimals, 0);
  EXPECT_EQ(chart.labelWidth, 3);  // two digits, and the sign of the minimum
}

TEST_F(ChartsTest, LetALongLabelBeLongerThanItsField) {
  const Chart chart = Build(SizeVsEffect, {1, 2}, {2, 150000}).value();
  EXPECT_EQ(chart.yAxis.min, -25000);  // clamped from -50000
  EXPECT_EQ(chart.tickLabels.front(), "-25000");
  EXPECT_EQ(chart.tickLabels[4], "175000");
  EXPECT_EQ(chart.labelWidth, 6);
}

TEST_F(ChartsTest, TellNoLayoutForExactlyOneDecimal) {
  const Chart chart = Build(kUnclamped, {1, 2}, {0.05F, 0.95F}).value();
  EXPECT_EQ(chart.yAxis.step, 0.1F);
  EXPECT_EQ(chart.decimals, 0);
  EXPECT_EQ(chart.labelWidth, 0);
  EXPECT_EQ(chart.tickLabels[3], "  0.3");  // the labels have it
}

TEST_F(ChartsTest, TellTheDecimalsOfAFinerStep) {
  const Chart chart = Build(kUnclamped, {1, 2}, {10.1F, 10.15F}).value();
  EXPECT_EQ(chart.yAxis.step, 0.02F);
  EXPECT_EQ(chart.decimals, 2);
  EXPECT_EQ(chart.labelWidth, 2);
  EXPECT_EQ(chart.tickLabels[0], "10.08");
}

TEST_F(ChartsTest, CountTheDecimalsOfATenthAHundredthAndAThousandthAsOneTwoAndThree) {
  // Each range asks for a step of a tenth of itself, whose float lies above or below the decimal.
  for (const auto& [range, decimals] : {std::pair{0.09F, 2}, {0.009F, 3}, {0.0009F, 4}}) {
    const Chart chart = Build(kUnclamped, {1, 2}, {range / 20, range}).value();
    EXPECT_EQ(chart.decimals, decimals) << chart.yAxis.step;
  }
}

TEST_F(ChartsTest, TruncateTheLabelsOfAClampedAxisWithoutDecimals) {
  // The bottom moves from -5 to -2.5, and the ticks with it.
  const Chart chart = Build(SizeVsEffect, {1, 2}, {0.5F, 20}).value();
  EXPECT_EQ(chart.yAxis.step, 5);
  EXPECT_EQ(chart.yAxis.min, -2.5F);
  EXPECT_EQ(chart.tickPositions[1], 2.5F);
  EXPECT_EQ(chart.tickLabels[0], "   -2");
  EXPECT_EQ(chart.tickLabels[1], "    2");
}

// --- Failures of the host

TEST_F(ChartsTest, AreDroppedInSilenceWhenTheHostRefusesThem) {
  host.failChart = true;
  EXPECT_FALSE(Build(kUnclamped, {1, 2}, {1, 2}));
  EXPECT_EQ(heldBlocks(), 0);
  ExpectSilence();
}

TEST_F(ChartsTest, AreDroppedInSilenceWhenAnyAllocationFails) {
  const auto half = [](double) { return 0.5; };
  constexpr int kAllocations = 4;  // X, Y, the data block, the ticks
  for (int n = 1; n <= kAllocations; ++n) {
    host.failAllocation = n;
    ++failedBlocks;
    EXPECT_EQ(DrawPlot(host, WholeGrid(5, 10, 5), half, FailedPointRule::GoOn, {}),
              PlotOutcome::Dropped)
        << n;
    EXPECT_EQ(host.failAllocation, 0) << n;
    EXPECT_EQ(heldBlocks(), 0) << n;
    EXPECT_FALSE(host.IsProgressBarOpen()) << n;
  }
  ExpectSilence();
  host.failAllocation = kAllocations + 1;
  EXPECT_EQ(DrawPlot(host, WholeGrid(5, 10, 5), half, FailedPointRule::GoOn, {}),
            PlotOutcome::Drawn);
  EXPECT_EQ(host.failAllocation, 1);
}

// --- Grids

TEST(PlotGrid, OfIntegersStepsEvenly) {
  const PlotGrid grid = WholeGrid(5, 100, 19);
  EXPECT_EQ(grid.low, 5);
  EXPECT_EQ(grid.high, 100);
  EXPECT_EQ(grid.step, 5);
  EXPECT_EQ(grid.count, 20);
  EXPECT_TRUE(grid.whole);
}

TEST(PlotGrid, TakesAReversedRangeAsTheSame) {
  const PlotGrid up = WholeGrid(5, 100, 19);
  const PlotGrid down = WholeGrid(100, 5, 19);
  EXPECT_EQ(up.low, down.low);
  EXPECT_EQ(up.high, down.high);
  EXPECT_EQ(up.step, down.step);
  EXPECT_EQ(up.count, down.count);
  const PlotGrid real = RealGrid(0.75, 0.25, 4);
  EXPECT_EQ(real.low, 0.25);
  EXPECT_EQ(real.high, 0.75);
  EXPECT_EQ(real.step, 0.125);
}

TEST(PlotGrid, OfFewIntegersHasOnePointForEach) {
  const PlotGrid grid = WholeGrid(10, 15, 10);
  EXPECT_EQ(grid.step, 1);
  EXPECT_EQ(grid.count, 6);
  EXPECT_EQ(WholeGrid(10, 10, 10).count, 1);
  EXPECT_EQ(WholeGrid(5, 24, 19).count, 20);
}

TEST(PlotGrid, OfRealsHasNoLeastStep) {
  const PlotGrid grid = RealGrid(0.5, 0.5, 4);
  EXPECT_EQ(grid.step, 0);
  EXPECT_EQ(grid.count, 5);
  EXPECT_FALSE(grid.whole);
}

// --- The loop over the points

std::vector<float> Xs(PlotPoints& points) { return {points.x().begin(), points.x().end()}; }
std::vector<float> Ys(PlotPoints& points) { return {points.y().begin(), points.y().end()}; }

TEST_F(ChartsTest, TruncateAFractionalStepToUnevenIntegers) {
  const PlotGrid grid = WholeGrid(5, 100, 10);
  PlotPoints points(host, grid);
  std::vector<double> asked;
  ASSERT_TRUE(RunPlot(
      grid,
      [&](double x) {
        asked.push_back(x);
        return x;
      },
      FailedPointRule::GoOn, points));
  EXPECT_EQ(asked, (std::vector<double>{5, 14, 24, 33, 43, 52, 62, 71, 81, 90, 100}));
}

TEST_F(ChartsTest, StoreXInSinglePrecision) {
  const PlotGrid grid = RealGrid(0.01, 0.05, 4);
  PlotPoints points(host, grid);
  std::vector<double> asked;
  ASSERT_TRUE(RunPlot(
      grid,
      [&](double x) {
        asked.push_back(x);
        return 0.1;
      },
      FailedPointRule::GoOn, points));
  EXPECT_EQ(asked[0], 0.01);
  EXPECT_EQ(points.x()[0], 0.01F);
  EXPECT_EQ(static_cast<double>(points.x()[0]), 0.00999999977648258209228515625);
  EXPECT_EQ(points.y()[0], 0.1F);
}

double FailsAtThree(double x) { return x == 3 ? -9999.0 : x / 10; }

TEST_F(ChartsTest, GoOnPastAFailedPoint) {
  const PlotGrid grid = WholeGrid(1, 5, 4);
  PlotPoints points(host, grid);
  ASSERT_TRUE(RunPlot(grid, FailsAtThree, FailedPointRule::GoOn, points));
  EXPECT_EQ(Ys(points), (std::vector<float>{0.1F, 0.2F, FailedPoint, 0.4F, 0.5F}));
  EXPECT_EQ(points.lowY(), 0.1);
  EXPECT_EQ(points.highY(), 0.5);
}

TEST_F(ChartsTest, StopBeforeAFailedPointInPlotsOfRequiredSizes) {
  const PlotGrid grid = WholeGrid(1, 5, 4);
  PlotPoints points(host, grid);
  ASSERT_TRUE(RunPlot(grid, FailsAtThree, FailedPointRule::DropAndStop, points));
  EXPECT_EQ(Xs(points), (std::vector<float>{1, 2}));
  EXPECT_FALSE(host.IsProgressBarOpen());
}

TEST_F(ChartsTest, StopAtAFailedPointThatIsKept) {
  const PlotGrid grid = WholeGrid(1, 5, 4);
  PlotPoints points(host, grid);
  ASSERT_TRUE(RunPlot(grid, FailsAtThree, FailedPointRule::KeepAndStop, points));
  EXPECT_EQ(Xs(points), (std::vector<float>{1, 2, 3}));
  EXPECT_EQ(points.y()[2], FailedPoint);
}

TEST_F(ChartsTest, DrawWhatAPlotThatStoppedEarlyHas) {
  ChartRequest request;
  request.kind = SizeVsEffect;
  EXPECT_EQ(DrawPlot(host, WholeGrid(1, 5, 4), FailsAtThree, FailedPointRule::DropAndStop, request),
            PlotOutcome::Drawn);
  EXPECT_EQ(std::get<Chart>(host.workbook().items.back()).x, (std::vector<float>{1, 2}));
  // The kept point is no valid one, so the block ends before it.
  EXPECT_EQ(DrawPlot(host, WholeGrid(1, 5, 4), FailsAtThree, FailedPointRule::KeepAndStop, request),
            PlotOutcome::Drawn);
  EXPECT_EQ(std::get<Chart>(host.workbook().items.back()).x, (std::vector<float>{1, 2}));
}

TEST_F(ChartsTest, AreDroppedWhenThePlotStopsAtItsFirstPoint) {
  const auto fails = [](double) { return -9999.0; };
  EXPECT_EQ(DrawPlot(host, WholeGrid(1, 5, 4), fails, FailedPointRule::DropAndStop, {}),
            PlotOutcome::Dropped);
  EXPECT_EQ(heldBlocks(), 0);
  ExpectSilence();
}

TEST_F(ChartsTest, ShowTheirProgressPointByPoint) {
  StartAnalysis();
  std::vector<int> positions;
  host.onProgress = [&](const ProgressState& state) {
    if (state.open) {
      positions.push_back(state.position);
    }
  };
  DrawPlot(host, WholeGrid(1, 3, 4), FailsAtThree, FailedPointRule::GoOn, {});
  EXPECT_EQ(host.calls.progress,
            (std::vector<std::string>{"d_pbar Computing Plot Data", "dstart 3", "dstop"}));
  EXPECT_EQ(positions, (std::vector<int>{0, 1, 2, 3}));
  EXPECT_EQ(Module().ProgressOpen, 0);
}

TEST_F(ChartsTest, AreNotDrawnWhenTheUserCancels) {
  StartAnalysis();
  int polls = 0;
  int computed = 0;
  host.cancelled = [&] { return ++polls == 3; };
  const auto count = [&](double x) {
    ++computed;
    return x;
  };
  EXPECT_EQ(DrawPlot(host, WholeGrid(1, 100, 99), count, FailedPointRule::GoOn, {}),
            PlotOutcome::Cancelled);
  EXPECT_EQ(computed, 2);
  EXPECT_FALSE(host.IsProgressBarOpen());
  EXPECT_EQ(host.calls.progress.back(), "dstop");
  EXPECT_EQ(heldBlocks(), 0);
  ExpectSilence();
}

}  // namespace
}  // namespace poweranalysis
