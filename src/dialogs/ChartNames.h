#pragma once

#include "frame/Texts.h"

// The charts of the results dialogs by name.
namespace poweranalysis {

// What commands, files and scripts call a chart, and the caption of its button. The name stays
// whatever the caption says.
struct ChartName {
  const char* name;
  TextId caption;
};

namespace chart {

inline constexpr ChartName PowerVsAlpha = {"power-vs-alpha", text::PlotPowerVsAlpha};
inline constexpr ChartName PowerVsDelta = {"power-vs-delta", text::PlotPowerVsDelta};
inline constexpr ChartName PowerVsDf = {"power-vs-df", text::ButtonPowerVsDf};
inline constexpr ChartName PowerVsDf1 = {"power-vs-df1", text::ButtonPowerVsDf1};
inline constexpr ChartName PowerVsDf2 = {"power-vs-df2", text::ButtonPowerVsDf2};
inline constexpr ChartName PowerVsEs = {"power-vs-es", text::CaptionPowerVsEs};
inline constexpr ChartName PowerVsEta = {"power-vs-eta", text::PlotPowerVsEta};
inline constexpr ChartName PowerVsLambda2 = {"power-vs-lambda2", text::ButtonPowerVsLambda2};
inline constexpr ChartName PowerVsN = {"power-vs-n", text::PlotPowerVsN};
inline constexpr ChartName PowerVsN1 = {"power-vs-n1", text::ButtonPowerVsN1};
inline constexpr ChartName PowerVsN2 = {"power-vs-n2", text::ButtonPowerVsN2};
inline constexpr ChartName PowerVsP2 = {"power-vs-p2", text::ButtonPowerVsP2};
inline constexpr ChartName PowerVsPi = {"power-vs-pi", text::PlotPowerVsPi};
inline constexpr ChartName PowerVsPi1 = {"power-vs-pi1", text::PlotPowerVsPi1};
inline constexpr ChartName PowerVsPi2 = {"power-vs-pi2", text::PlotPowerVsPi2};
inline constexpr ChartName PowerVsRatio = {"power-vs-ratio", text::ButtonPowerVsRatio};
inline constexpr ChartName PowerVsRho = {"power-vs-rho", text::PlotPowerVsRho};
inline constexpr ChartName PowerVsRmsea = {"power-vs-rmsea", text::ButtonPowerVsRMSEA};
inline constexpr ChartName PowerVsRMSSE = {"power-vs-rmsse", text::ButtonPowerVsRMSSE};
inline constexpr ChartName PowerVsVariance = {"power-vs-variance", text::ButtonPowerVsVariance};
inline constexpr ChartName DfVsAlpha = {"df-vs-alpha", text::ButtonDfVsAlpha};
inline constexpr ChartName DfVsPower = {"df-vs-power", text::ButtonDfVsPower};
inline constexpr ChartName DfVsRatio = {"df-vs-ratio", text::ButtonDfVsRatio};
inline constexpr ChartName DfVsVariance = {"df-vs-variance", text::ButtonDfVsVariance};
inline constexpr ChartName NVsAlpha = {"n-vs-alpha", text::PlotNVsAlpha};
inline constexpr ChartName NVsDelta = {"n-vs-delta", text::PlotNVsDelta};
inline constexpr ChartName NVsDf = {"n-vs-df", text::ButtonNVsDf};
inline constexpr ChartName NVsEs = {"n-vs-es", text::CaptionNVsEs};
inline constexpr ChartName NVsEta = {"n-vs-eta", text::PlotNVsEta};
inline constexpr ChartName NVsLambda2 = {"n-vs-lambda2", text::ButtonNVsLambda2};
inline constexpr ChartName NVsP2 = {"n-vs-p2", text::ButtonNVsP2};
inline constexpr ChartName NVsPi = {"n-vs-pi", text::PlotNVsPi};
inline constexpr ChartName NVsPi1 = {"n-vs-pi1", text::PlotNVsPi1};
inline constexpr ChartName NVsPi2 = {"n-vs-pi2", text::ButtonNVsPi2};
inline constexpr ChartName NVsPower = {"n-vs-power", text::PlotNVsPower};
inline constexpr ChartName NVsRho = {"n-vs-rho", text::ButtonNVsRho};
inline constexpr ChartName NVsRmsea = {"n-vs-rmsea", text::ButtonNVsRMSEA};
inline constexpr ChartName NVsRMSSE = {"n-vs-rmsse", text::ButtonNVsRMSSE};

}  // namespace chart

}  // namespace poweranalysis
