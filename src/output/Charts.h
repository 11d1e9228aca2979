#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>

#include "host/Host.h"

// Plot data and charts: the grid of a plot, the loop over its points, and the builder that scales
// the axes and hands the finished chart to the host. The drawing is the host's.
namespace poweranalysis {

// What is drawn against what. The kind alone decides how the axes are clamped.
enum ChartKind : int {
  PowerVsEffect = 0,
  SizeVsEffect,
  SizeVsPower,
  SizeVsAlpha,
  SizeVsRmse,
  SizeVsPi,
  SizeVsEta,
  SizeVsRho,
  SizeVsSquaredRho,
  SizeVsLambda2,
  SizeVsDf,
  DfVsVariance,
  DfVsVarianceRatio,
  SizeVsDelta,
  PowerVsSize,
  PowerVsAlpha,
  PowerVsRmse,
  PowerVsPi,
  PowerVsEta,
  PowerVsRho,
  PowerVsSquaredRho,
  PowerVsLambda2,
  PowerVsDf,
  PowerVsVariance,
  PowerVsVarianceRatio,
  ClampedChartKinds  // this and every higher number: no clamp
};

// Hard bounds of what a kind of chart plots. A rounded limit beyond a bound moves back to half a
// step beyond it.
struct ChartClamps {
  std::optional<float> yTop;
  std::optional<float> yBottom;
  std::optional<float> xBottom;
  std::optional<float> xTop;
};

// The clamps of a kind; none for a number outside the table.
ChartClamps ClampsOf(int kind);

// Rounds the limits of an axis outwards to multiples of a tidy step.
//
// The data are widened by a twenty-fifth on either side and counted in hundredths of the power of
// ten above their range; the step is the smallest of 2, 5, 10, 20, 50 such units that leaves
// neither too many nor too few ticks. `fine` 1 (the X axis) asks for fewer ticks than 0 (the Y
// axis).
//
// Domain: min <= max; equal ends count as a range of one.
// Fails:  false, with the arguments untouched, when the limits are not finite or lie so far out
//         that they cannot be counted in such units.
bool ScaleAxis(double& min, double& max, double& step, std::int16_t fine);

// What a plot knows about its own grid. The builder works from the data and never reads it.
struct PlotHints {
  float low = 0;
  float high = 0;
  float step = 0;
  float lowY = 0;
  float highY = 0;
  float yStep = 0;
};

struct ChartRequest {
  int kind = ClampedChartKinds;
  std::string name;                   // of the plot, in kebab case
  std::array<std::string, 3> titles;  // the calculation; the family with its hypothesis; the plot
  std::string xLabel;
  std::string yLabel;
  std::span<const float> x;  // a failed point holds FailedPoint
  std::span<const float> y;
  PlotHints hints;
};

// Scales the axes, makes the tick tables and hands the chart to the host. A chart that cannot be
// made (no valid point, no memory, limits that do not fit, a host that refuses) is dropped
// silently: false.
bool BuildChart(Host& host, const ChartRequest& request);

// The values along the X axis of a plot. A reversed range gives the same grid.
struct PlotGrid {
  double low = 0;
  double high = 0;
  double step = 0;
  int intervals = 0;
  int count = 0;       // points
  bool whole = false;  // each point is truncated to an integer
};

// Domain of both: intervals >= 1.
// A whole step of less than 1 would repeat points: the step is then 1.0 and each integer a point. A
// fractional step above 1 gives uneven integers.
PlotGrid WholeGrid(std::int32_t start, std::int32_t end, std::int32_t intervals);
PlotGrid RealGrid(double start, double end, std::int32_t intervals);

void PlotProgressStart(int pointCount);
void PlotProgressStep(int step);  // counted from 1
// Polls for a break; on one, stops the bar and says true.
bool PlotProgressCancelled();

// What a plot does at a point that fails.
enum class FailedPointRule {
  GoOn,         // keep it and go on
  DropAndStop,  // the plot ends with the point before it: required sizes of the t-tests
  KeepAndStop   // the plot ends with it: one proportion
};

// The points of a plot, in the host's memory, single precision. Room for twice the points of the
// grid.
class PlotPoints {
 public:
  PlotPoints(Host& host, const PlotGrid& grid);

  explicit operator bool() const { return static_cast<bool>(x_) && static_cast<bool>(y_); }
  void Add(double x, double y);
  int count() const { return count_; }
  std::span<const float> x() { return {x_.data(), static_cast<std::size_t>(count_)}; }
  std::span<const float> y() { return {y_.data(), static_cast<std::size_t>(count_)}; }
  // Smallest and largest good Y so far; 0 when there is none.
  double lowY() const { return hasY_ ? lowY_ : 0; }
  double highY() const { return hasY_ ? highY_ : 0; }

 private:
  HostArray<float> x_;
  HostArray<float> y_;
  int count_ = 0;
  bool hasY_ = false;
  double lowY_ = 0;
  double highY_ = 0;
};

// Power or size at a point; NumericFailure when it cannot be computed.
using PlotFunction = std::function<double(double)>;

// Computes the points with a progress bar that is polled at each of them. False when the user
// cancelled: nothing is to be drawn then.
bool RunPlot(const PlotGrid& grid,
             const PlotFunction& function,
             FailedPointRule rule,
             PlotPoints& points);

enum class PlotOutcome { Drawn, Dropped, Cancelled };

// A whole plot: memory, points, chart. `request` needs no points and no hints.
PlotOutcome DrawPlot(Host& host,
                     const PlotGrid& grid,
                     const PlotFunction& function,
                     FailedPointRule rule,
                     ChartRequest request);

}  // namespace poweranalysis
