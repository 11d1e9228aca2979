#include "dialogs/FamilyDialogs.h"

#include "dialogs/DialogRows.h"

namespace poweranalysis {

namespace {

// --- Fields.

constexpr const char* kV1PowerFields[] = {"PopulationVariance", "NullHypothesizedVariance", "Alpha",
                                          "DegreesOfFreedom", "H0Type"};
constexpr const char* kV1SizeFields[] = {"PopulationVariance", "NullHypothesizedVariance", "Alpha",
                                         "PowerGoal", "H0Type"};
constexpr const char* kV2PowerFields[] = {"Var1", "Var2",   "Alpha",    "Df1",
                                          "Df2",  "H0Type", "Algorithm"};
constexpr const char* kV2SizeFields[] = {"Ratio",  "Alpha",    "PowerGoal", "Df2",
                                         "H0Type", "DfToVary", "Algorithm"};

constexpr const char* kV1PowerRanges[] = {"VarStart", "VarEnd", "AlphaStart", "AlphaEnd",
                                          "DfStart",  "DfEnd",  "DfIntervals"};
constexpr const char* kV1SizeRanges[] = {"VarStart",   "VarEnd",   "AlphaStart", "AlphaEnd",
                                         "PowerStart", "PowerEnd", "DfIntervals"};
constexpr const char* kV2PowerRanges[] = {"RatioStart", "RatioEnd", "AlphaStart", "AlphaEnd",
                                          "DfStart",    "DfEnd",    "DfIntervals"};
constexpr const char* kV2SizeRanges[] = {"RatioStart", "RatioEnd", "AlphaStart", "AlphaEnd",
                                         "PowerStart", "PowerEnd", "DfIntervals"};

constexpr ParameterDialogTable kParameterDialogs[] = {
    {Family::V1, ModePower, kV1PowerFields},
    {Family::V1, ModeSampleSize, kV1SizeFields},
    {Family::V2, ModePower, kV2PowerFields},
    {Family::V2, ModeSampleSize, kV2SizeFields},
};

// --- Plots.

constexpr PlotAxis kVarianceAxis = {"VarStart", "VarEnd", "DfIntervals", false};
constexpr PlotAxis kRatioAxis = {"RatioStart", "RatioEnd", "DfIntervals", false};
constexpr PlotAxis kDfAxis = {"DfStart", "DfEnd", "DfIntervals", true};
constexpr PlotAxis kAlphaAxis = {"AlphaStart", "AlphaEnd", "DfIntervals", false};
constexpr PlotAxis kGoalAxis = {"PowerStart", "PowerEnd", "DfIntervals", false};

constexpr PlotTexts kVarianceLabel = Only(text::RowPopulationVarianceVar);
constexpr PlotTexts kDfLabel = Only(text::RowDegreesOfFreedomDf);
constexpr PlotTexts kRequiredDfLabel = Only(text::RowRequiredDegreesOfFreedomDf);
constexpr PlotTexts kV2DfLabel = {
    "DfToVary",
    {{{text::PlotDegreesOfFreedomDf1Df2, {}}, {text::PlotDegreesOfFreedomDf1Df22, {"Df2"}}}}};

constexpr PlotRow kV1PowerPlots[] = {
    {Along("DegreesOfFreedom"), chart::PowerVsDf, PowerVsDf, kDfAxis,
     Only(text::PlotPowerVsDfPopulationVarianceAlpha, {"PopulationVariance", "Alpha"}), kDfLabel,
     PowerLabel},
    {Along("PopulationVariance"), chart::PowerVsVariance, PowerVsVariance, kVarianceAxis,
     Only(text::PlotPowerVsPopulationVarianceAlphaDf, {"Alpha", "DegreesOfFreedom"}),
     kVarianceLabel, PowerLabel},
    {Along("Alpha"), chart::PowerVsAlpha, PowerVsAlpha, kAlphaAxis,
     Only(text::PlotPowerVsAlphaPopulationVarianceDf, {"PopulationVariance", "DegreesOfFreedom"}),
     AlphaLabel, PowerLabel},
};

constexpr PlotRow kV1SizePlots[] = {
    {Along("PopulationVariance"), chart::DfVsVariance, DfVsVariance, kVarianceAxis,
     Only(text::PlotDfVsPopulationVariancePowerAlpha, {"PowerGoal", "Alpha"}), kVarianceLabel,
     kRequiredDfLabel},
    {Along("Alpha"), chart::DfVsAlpha, SizeVsAlpha, kAlphaAxis,
     Only(text::PlotDfVsAlphaPopulationVarianceAlpha, {"PopulationVariance", "Alpha"}), AlphaLabel,
     kRequiredDfLabel},
    {Along("PowerGoal"), chart::DfVsPower, SizeVsPower, kGoalAxis,
     Only(text::PlotDfVsPowerPopulationVarianceAlpha, {"PopulationVariance", "Alpha"}), GoalLabel,
     kRequiredDfLabel},
};

// One title serves the three plots along degrees of freedom; their axes distinguish them.
constexpr PlotTexts kV2VsDf = Only(text::PlotPowerVsDfVar1Var2Alpha, {"Var1", "Var2", "Alpha"});

constexpr PlotRow kV2PowerPlots[] = {
    {Along("Alpha"), chart::PowerVsAlpha, PowerVsAlpha, kAlphaAxis,
     Only(text::PlotPowerVsAlphaVar1Var2Df1Df2, {"Var1", "Var2", "Df1", "Df2"}), AlphaLabel,
     PowerLabel},
    {AlongSizes, chart::PowerVsDf, PowerVsDf, kDfAxis, kV2VsDf,
     Only(text::PlotDegreesOfFreedomDf1Df2), PowerLabel},
    {Along("Df1"), chart::PowerVsDf1, PowerVsDf, kDfAxis, kV2VsDf,
     Only(text::PlotDegreesOfFreedomDf1Df22, {"Df2"}), PowerLabel},
    {Along("Df2"), chart::PowerVsDf2, PowerVsDf, kDfAxis, kV2VsDf,
     Only(text::PlotDegreesOfFreedomDf2Df1, {"Df1"}), PowerLabel},
    {AlongEffect, chart::PowerVsRatio, PowerVsVarianceRatio, kRatioAxis,
     Only(text::PlotPowerVsVarianceRatioDf1Df2Alpha, {"Df1", "Df2", "Alpha"}),
     Only(text::PlotVarianceRatioVar1Var2), PowerLabel},
};

constexpr PlotRow kV2SizePlots[] = {
    {Along("Alpha"), chart::DfVsAlpha, SizeVsAlpha, kAlphaAxis,
     Only(text::PlotDfVsAlphaVar1Var2Power, {"Ratio", "PowerGoal"}), AlphaLabel, kV2DfLabel},
    {Along("PowerGoal"), chart::DfVsPower, SizeVsPower, kGoalAxis,
     Only(text::PlotDfVsPowerVar1Var2Alpha, {"Ratio", "Alpha"}), GoalLabel, kV2DfLabel},
    {AlongEffect, chart::DfVsRatio, DfVsVarianceRatio, kRatioAxis,
     Only(text::PlotDfVsVarianceRatioAlphaPower, {"Alpha", "PowerGoal"}),
     Only(text::PlotPopulationVarianceRatioVar1Var2), kV2DfLabel},
};

// --- Results dialogs.

constexpr PlotTexts kV1Title =
    Only(text::PlotDetail,
         {text::HeadingOneVarianceChiSquareTest,
          {"H0Type", {text::H0VarEqual, text::H0VarAtMost, text::H0VarAtLeast}},
          "NullHypothesizedVariance"});

constexpr ResultsDialogTable kResultsDialogs[] = {
    {Family::V1, ModePower, text::CaptionCalculatePower, kV1PowerRanges, kV1PowerPlots, kV1Title},
    {Family::V1, ModeSampleSize, text::CaptionCalculateN, kV1SizeRanges, kV1SizePlots, kV1Title},
    {Family::V2, ModePower, text::CaptionCalculatePower, kV2PowerRanges, kV2PowerPlots},
    {Family::V2, ModeSampleSize, text::CaptionCalculateN, kV2SizeRanges, kV2SizePlots},
};

}  // namespace

FamilyDialogs VarianceDialogs() { return {kParameterDialogs, kResultsDialogs}; }

}  // namespace poweranalysis
