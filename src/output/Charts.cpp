#include "output/Charts.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <utility>
#include <vector>

#include "families/Computed.h"
#include "frame/NearlyEqual.h"
#include "frame/Services.h"
#include "host/ChartLayout.h"
#include "host/NumberText.h"
#include "host/Utf8.h"

namespace poweranalysis {

namespace {

constexpr auto kNone = std::nullopt;

// One row per kind, in the order of ChartKind.
constexpr std::array<ChartClamps, ClampedChartKinds> kClamps = {{
    // yTop   yBottom xBottom  xTop
    {1.0F, 0.0F, kNone, kNone},   // power vs. effect
    {kNone, 0.0F, kNone, kNone},  // size vs. effect
    {kNone, 0.0F, 0.0F, 1.0F},    // size vs. power
    {kNone, 0.0F, 0.0F, 1.0F},    // size vs. alpha
    {kNone, 0.0F, 0.0F, kNone},   // size vs. RMSSE or RMSEA
    {kNone, 0.0F, 0.0F, 1.0F},    // size vs. pi
    {kNone, 0.0F, 0.0F, 2.0F},    // size vs. eta
    {kNone, 0.0F, -1.0F, 1.0F},   // size vs. rho
    {kNone, 0.0F, 0.0F, 1.0F},    // size vs. squared rho
    {kNone, 0.0F, 0.0F, kNone},   // size vs. lambda2
    {kNone, 0.0F, 0.0F, kNone},   // size vs. df
    {kNone, 0.0F, 0.0F, kNone},   // df vs. variance
    {kNone, 0.0F, 0.0F, kNone},   // df vs. variance ratio
    {kNone, 0.0F, -1.0F, 1.0F},   // size vs. delta
    {1.0F, 0.0F, 0.0F, kNone},    // power vs. size
    {1.0F, 0.0F, 0.0F, 1.0F},     // power vs. alpha
    {1.0F, 0.0F, 0.0F, kNone},    // power vs. RMSSE or RMSEA
    {1.0F, 0.0F, 0.0F, 1.0F},     // power vs. pi
    {1.0F, 0.0F, 0.0F, 2.0F},     // power vs. eta
    {1.0F, 0.0F, -1.0F, 1.0F},    // power vs. rho
    {1.0F, 0.0F, 0.0F, 1.0F},     // power vs. squared rho
    {1.0F, 0.0F, 0.0F, kNone},    // power vs. lambda2
    {1.0F, 0.0F, 0.0F, kNone},    // power vs. df
    {1.0F, 0.0F, 0.0F, kNone},    // power vs. variance
    {1.0F, 0.0F, 0.0F, kNone},    // power vs. variance ratio
}};

static_assert(FailedPoint == static_cast<float>(NumericFailure),
              "a failed point is plotted as such");

// The only missing float is a NaN, so the finite numbers hold all that is valid.
bool IsGoodValue(float value) { return std::isfinite(value) && !NearlyEqual(value, FailedPoint); }

struct Limits {
  double min = 1e30;
  double max = -1e30;

  void Feed(double value) {
    min = std::min(min, value);
    max = std::max(max, value);
  }
};

struct DataScan {
  Limits x;
  Limits y;
  std::size_t validCount = 0;
};

DataScan Scan(std::span<const float> x, std::span<const float> y) {
  DataScan scan;
  for (std::size_t i = 0; i < x.size(); ++i) {
    if (!IsGoodValue(x[i])) {
      continue;
    }
    // Kept: a point whose X is good and whose Y failed still stretches the X axis, so that the
    // chart shows the whole range that was asked for.
    scan.x.Feed(x[i]);
    if (IsGoodValue(y[i])) {
      scan.y.Feed(y[i]);
      ++scan.validCount;
    }
  }
  return scan;
}

// --- ScaleAxis, in units of a hundredth of the power of ten above the range.

enum class SignHandling { None, Shifted, Mirrored };

// How much coarser the ticks must be, by their share of the axis in thousandths. The units keep an
// axis below 130 of them, so that no limits ask for coarser ticks; the rule is part of the scale.
int CoarserBy(std::int64_t share, std::int16_t fine) {
  const std::int64_t keep = fine == 0 ? 20 : 36;
  const std::int64_t level1 = fine == 0 ? 10 : 16;
  if (share >= keep) {
    return 0;
  }
  return share >= level1 ? 1 : 2;
}

std::int64_t CoarserTick(std::int64_t tick, int level) {
  switch (tick) {
    case 2:
      return level == 1 ? 5 : 10;
    case 5:
      return level == 1 ? 10 : 20;
    default:
      return level == 1 ? 20 : 50;
  }
}

// An axis of six units and more has three ticks at the least.
std::int64_t FirstTick(std::int64_t span) {
  if (span >= 31) {
    return 10;
  }
  return span >= 16 ? 5 : 2;
}

int ExponentAbove(double range) {
  if (range <= 0) {
    return 0;
  }
  // Just short of 1, so that an exact power of ten keeps its exponent. Kept: below 1 a half is added
  // and the sum cut towards zero.
  const double logarithm = std::log10(range);
  return static_cast<int>(logarithm > 0 ? logarithm + 0.99999 : logarithm + 0.5);
}

SignHandling MakeNonnegative(double& min, double& max, double offset) {
  if (min < 0 && max >= 0) {
    min += offset;
    max += offset;
    return SignHandling::Shifted;
  }
  if (min < 0 && max < 0) {
    min = std::exchange(max, -min);
    min = -min;
    return SignHandling::Mirrored;
  }
  return SignHandling::None;
}

void UndoSigns(SignHandling signs, double& min, double& max, double offset) {
  if (signs == SignHandling::Shifted) {
    min -= offset;
    max -= offset;
  } else if (signs == SignHandling::Mirrored) {
    min = std::exchange(max, -min);
    min = -min;
  }
}

}  // namespace

ChartClamps ClampsOf(int kind) {
  return kind >= 0 && kind < ClampedChartKinds ? kClamps[static_cast<std::size_t>(kind)]
                                               : ChartClamps{};
}

bool ScaleAxis(double& min, double& max, double& step, std::int16_t fine) {
  constexpr double kMostUnits = 9e15;  // beyond it a unit is lost in the rounding of a double
  if (!std::isfinite(min) || !std::isfinite(max) || !std::isfinite(max - min)) {
    return false;
  }
  const int exponent = ExponentAbove(max - min);
  const double offset = std::pow(10.0, exponent);
  const double unit = std::pow(10.0, exponent - 2);
  double low = min;
  double high = max;
  const SignHandling signs = MakeNonnegative(low, high, offset);
  // Written so that a quotient that is not a number is refused too.
  if (!(std::abs(low / unit) <= kMostUnits && std::abs(high / unit) <= kMostUnits)) {
    return false;
  }

  auto a = static_cast<std::int64_t>(low / unit);
  auto b = static_cast<std::int64_t>(high / unit) + 1;
  b = (b - a) / 25 + b;
  a = a - 1 - (b + 1 - a) / 25;

  std::int64_t tick = FirstTick(b + 1 - a);
  const std::int64_t top = b - b % tick + tick;
  const std::int64_t bottom = a - a % tick;
  high = static_cast<double>(top) * unit;
  low = static_cast<double>(bottom) * unit;

  const auto share =
      static_cast<std::int64_t>(static_cast<double>(tick) * unit * 1000 / (high - low));
  if (const int level = CoarserBy(share, fine); level != 0) {
    tick = CoarserTick(tick, level);
    high = static_cast<double>(tick - (top - 1) % tick + top - 1) * unit;
    low = static_cast<double>(bottom - bottom % tick) * unit;
  }

  UndoSigns(signs, low, high, offset);
  min = low;
  max = high;
  step = static_cast<double>(tick) * unit;
  return true;
}

namespace {

struct RoundedAxis {
  double min = 0;
  double max = 0;
  double step = 0;

  Axis ToFloat() const {
    return {static_cast<float>(min), static_cast<float>(max), static_cast<float>(step)};
  }
};

// Leaves at least `share` of a step between the data and the ends of the axis.
void KeepMargin(RoundedAxis& axis, const Limits& data, double share) {
  const double margin = share * axis.step;
  if (axis.max - data.max < margin) {
    axis.max += axis.step;
  }
  if (data.min - axis.min < margin) {
    axis.min -= axis.step;
  }
}

// A step below a hundred-thousandth of the values could not be seen on the labels.
void CoarsenUnreadableStep(RoundedAxis& axis) {
  constexpr double kMostSteps = 100000.0;
  const double magnitude = std::max(std::abs(axis.min), std::abs(axis.max));
  if (magnitude / axis.step > kMostSteps) {
    axis.step = magnitude / kMostSteps;
    axis.max += axis.step;
    axis.min -= axis.step;
  }
}

bool ScaleX(const Limits& data, RoundedAxis& axis) {
  constexpr double kMargin = 0.099;  // a tenth of a step, and a little less for rounding
  axis = {data.min, data.max, 0};
  if (!ScaleAxis(axis.min, axis.max, axis.step, 1)) {
    return false;
  }
  KeepMargin(axis, data, kMargin);
  return true;
}

bool ScaleY(const Limits& data, RoundedAxis& axis) {
  constexpr double kMargin = 0.149;  // deliberate: wider than along X
  axis = {data.min, data.max, 0};
  if (!ScaleAxis(axis.min, axis.max, axis.step, 0)) {
    return false;
  }
  CoarsenUnreadableStep(axis);
  KeepMargin(axis, data, kMargin);
  return true;
}

void ClampTop(Axis& axis, std::optional<float> bound) {
  if (bound && axis.max > *bound) {
    axis.max = *bound + axis.step / 2;
  }
}

void ClampBottom(Axis& axis, std::optional<float> bound) {
  if (bound && axis.min < *bound) {
    axis.min = *bound - axis.step / 2;
  }
}

bool IsDrawable(const Axis& axis) {
  return std::isfinite(axis.min) && std::isfinite(axis.max) && std::isfinite(axis.step) &&
         axis.step > 0;
}

// Digits before the point; none for a value below one.
int WholeDigits(float value) {
  int digits = 0;
  for (float power = 1; power <= value || (std::isfinite(power) && NearlyEqual(power, value));
       power *= 10) {
    ++digits;
  }
  return digits;
}

int LabelWidth(const Axis& y) {
  const int low = WholeDigits(std::abs(y.min));
  const int high = WholeDigits(std::abs(y.max));
  return low == high && y.min < 0 ? low + 1 : std::max(low, high);
}

// In single precision throughout, so that a step of 0.01F counts two decimals.
int LabelDecimals(float step) {
  int decimals = 0;
  for (float power = 1; power > std::abs(step); power /= 10) {
    ++decimals;
  }
  return decimals;
}

std::string TickLabel(float position, int decimals) {
  constexpr int kWidth = 5;                 // deliberate: labels of up to five characters line up
  constexpr float kLargestInteger = 9e18F;  // a larger one is beyond 64 bits
  if (decimals == 0 && std::abs(position) < kLargestInteger) {
    // Kept: without decimals the position is truncated, also where a clamp has moved the first tick
    // to half a step.
    return IntToText(static_cast<std::int64_t>(position), IntTickLabel, kWidth);
  }
  return RealToText(static_cast<double>(position), RealTickLabel, kWidth, decimals);
}

// The first `characters` of an UTF-8 text, without the blanks and NULs at its end.
std::string FixedField(const std::string& text, int characters) {
  std::size_t end = 0;
  for (int taken = 0; taken < characters && end < text.size(); ++taken) {
    end += FirstCharacter(std::string_view(text).substr(end)).size();
  }
  std::string field = text.substr(0, end);
  while (!field.empty() && (field.back() == ' ' || field.back() == '\0')) {
    field.pop_back();
  }
  return field;
}

// The front of the points.
// Kept: failed points are not squeezed out. One in the middle stays in the block and the last good
// points fall off its end.
bool CopyDataBlock(Host& host, const ChartRequest& request, std::size_t count, Chart& chart) {
  HostArray<float> block(host, 2 * count);
  if (!block) {
    return false;
  }
  std::copy_n(request.x.data(), count, block.data());
  std::copy_n(request.y.data(), count, block.data() + count);
  chart.x.assign(block.data(), block.data() + count);
  chart.y.assign(block.data() + count, block.data() + 2 * count);
  return true;
}

void FillTitles(const ChartRequest& request, Chart& chart) {
  // Kept: the texts of a chart are fields of so many characters, and a longer one is cut.
  constexpr int kTitle = 128;
  constexpr int kLabel = 60;
  for (std::size_t i = 0; i < chart.titles.size(); ++i) {
    chart.titles[i] = FixedField(request.titles[i], kTitle);
  }
  chart.xLabel = FixedField(request.xLabel, kLabel);
  chart.yLabel = FixedField(request.yLabel, kLabel);
}

bool FillTicks(Host& host, std::size_t validCount, Chart& chart) {
  const double min = chart.yAxis.min;
  const double max = chart.yAxis.max;
  if (min > max && !NearlyEqual(min, max)) {
    return false;
  }
  const auto tickCount = static_cast<std::size_t>((max - min) / chart.yAxis.step) + 2;
  // The series' own positions stand before the ticks.
  HostArray<float> positions(host, 2 * (tickCount + validCount) + 4);
  if (!positions) {
    return false;
  }
  for (std::size_t i = 0; i < validCount; ++i) {
    positions[i] = static_cast<float>(i + 1);
  }
  const int decimals = LabelDecimals(chart.yAxis.step);
  for (std::size_t i = 0; i < tickCount; ++i) {
    const float position = static_cast<float>(i) * chart.yAxis.step + chart.yAxis.min;
    positions[validCount + i] = position;
    chart.tickLabels.push_back(TickLabel(position, decimals));
  }
  chart.tickPositions.assign(positions.data() + validCount,
                             positions.data() + validCount + tickCount);
  // Kept: exactly one decimal is reported as no layout at all; the labels themselves have it.
  chart.decimals = decimals == 1 ? 0 : decimals;
  chart.labelWidth = decimals == 1 ? 0 : LabelWidth(chart.yAxis);
  return true;
}

bool FillAxes(const DataScan& scan, Chart& chart) {
  RoundedAxis x;
  RoundedAxis y;
  if (!ScaleX(scan.x, x) || !ScaleY(scan.y, y)) {
    return false;
  }
  chart.xAxis = x.ToFloat();
  chart.yAxis = y.ToFloat();
  const ChartClamps clamps = ClampsOf(chart.kind);
  ClampTop(chart.yAxis, clamps.yTop);
  ClampBottom(chart.yAxis, clamps.yBottom);
  ClampBottom(chart.xAxis, clamps.xBottom);
  ClampTop(chart.xAxis, clamps.xTop);
  return IsDrawable(chart.xAxis) && IsDrawable(chart.yAxis);
}

}  // namespace

bool BuildChart(Host& host, const ChartRequest& request) {
  const DataScan scan = Scan(request.x, request.y);
  // Nothing to draw is not an error: the ending is silent on purpose.
  if (scan.validCount == 0) {
    return false;
  }
  Chart chart;
  chart.kind = request.kind;
  chart.name = request.name;
  if (!FillAxes(scan, chart) || !CopyDataBlock(host, request, scan.validCount, chart)) {
    return false;
  }
  FillTitles(request, chart);
  return FillTicks(host, scan.validCount, chart) &&
         host.NewGeneralMultipleChart(std::move(chart)) != 0;
}

PlotGrid WholeGrid(std::int32_t start, std::int32_t end, std::int32_t intervals) {
  PlotGrid grid = RealGrid(start, end, intervals);
  grid.whole = true;
  grid.step = std::max(grid.step, 1.0);
  if (grid.step == 1.0) {
    grid.count = static_cast<int>(grid.high - grid.low) + 1;
  }
  return grid;
}

PlotGrid RealGrid(double start, double end, std::int32_t intervals) {
  PlotGrid grid;
  grid.low = std::min(start, end);
  grid.high = std::max(start, end);
  grid.step = (grid.high - grid.low) / intervals;
  grid.intervals = intervals;
  grid.count = intervals + 1;
  return grid;
}

void PlotProgressStart(int pointCount) {
  ProgressStart(LoadText(text::ComputingPlotData), pointCount);
}

void PlotProgressStep(int step) { ProgressStep(step); }

bool PlotProgressCancelled() {
  if (!BreakRequested()) {
    return false;
  }
  ProgressStop();
  return true;
}

PlotPoints::PlotPoints(Host& host, const PlotGrid& grid)
    : x_(host, 2 * static_cast<std::size_t>(grid.intervals + 1)),
      y_(host, 2 * static_cast<std::size_t>(grid.intervals + 1)) {}

void PlotPoints::Add(double x, double y) {
  const auto i = static_cast<std::size_t>(count_);
  // Kept: X too is single precision, so alpha 0.01 is plotted at 0.00999999978.
  x_[i] = static_cast<float>(x);
  y_[i] = static_cast<float>(y);
  ++count_;
  if (IsGoodValue(y_[i])) {
    lowY_ = hasY_ ? std::min(lowY_, y) : y;
    highY_ = hasY_ ? std::max(highY_, y) : y;
    hasY_ = true;
  }
}

bool RunPlot(const PlotGrid& grid,
             const PlotFunction& function,
             FailedPointRule rule,
             PlotPoints& points) {
  PlotProgressStart(grid.count);
  double current = grid.low;
  for (int i = 0; i < grid.count; ++i) {
    PlotProgressStep(i + 1);
    if (PlotProgressCancelled()) {
      return false;
    }
    const double x = grid.whole ? std::trunc(current) : current;
    const double y = function(x);
    const bool failed = y == NumericFailure;
    if (failed && rule == FailedPointRule::DropAndStop) {
      break;
    }
    points.Add(x, y);
    if (failed && rule == FailedPointRule::KeepAndStop) {
      break;
    }
    current += grid.step;
  }
  ProgressStop();
  return true;
}

PlotOutcome DrawPlot(Host& host,
                     const PlotGrid& grid,
                     const PlotFunction& function,
                     FailedPointRule rule,
                     ChartRequest request) {
  PlotPoints points(host, grid);
  if (!points) {
    return PlotOutcome::Dropped;
  }
  if (!RunPlot(grid, function, rule, points)) {
    return PlotOutcome::Cancelled;
  }
  request.x = points.x();
  request.y = points.y();
  request.hints = {static_cast<float>(grid.low),       static_cast<float>(grid.high),
                   static_cast<float>(grid.step),      static_cast<float>(points.lowY()),
                   static_cast<float>(points.highY()), 0};
  request.hints.yStep =
      static_cast<float>((points.highY() - points.lowY()) / std::max(grid.intervals, 1));
  return BuildChart(host, request) ? PlotOutcome::Drawn : PlotOutcome::Dropped;
}

}  // namespace poweranalysis
