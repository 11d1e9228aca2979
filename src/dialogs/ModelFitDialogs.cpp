#include "dialogs/DialogRows.h"
#include "dialogs/FamilyDialogs.h"

namespace poweranalysis {

namespace {

constexpr const char* kPowerFields[] = {"R",     "R0",         "DegreesOfFreedom",
                                        "Alpha", "SampleSize", "H0Type"};
constexpr const char* kSizeFields[] = {"R",     "R0",        "DegreesOfFreedom",
                                       "Alpha", "PowerGoal", "H0Type"};
constexpr const char* kPowerRanges[] = {"RStart", "REnd",    "AlphaStart", "AlphaEnd", "NStart",
                                        "NEnd",   "DfStart", "DfEnd",      "NInterval"};
constexpr const char* kSizeRanges[] = {"RStart",   "REnd",       "AlphaStart",
                                       "AlphaEnd", "PowerStart", "PowerEnd",
                                       "DfStart",  "DfEnd",      "NInterval"};

constexpr const char* kInterval[] = {"ObservedChiSquare", "DegreesOfFreedom", "P", "Groups",
                                     "SampleSize",        "Confidence"};

constexpr IntervalDialogTable kIntervalDialogs[] = {
    {Family::SEM, kInterval, nullptr, {text::HintModelFitNoGroup, "Groups", 0}},
};

constexpr ParameterDialogTable kParameterDialogs[] = {
    {Family::SEM, ModePower, kPowerFields},
    {Family::SEM, ModeSampleSize, kSizeFields},
};

constexpr PlotAxis kRmseaAxis = {"RStart", "REnd", "NInterval", false};
constexpr PlotAxis kDfAxis = {"DfStart", "DfEnd", "NInterval", true};
constexpr PlotTexts kRmseaLabel = Only(text::PlotPopulationRMSEARR0FixedAt, {"R0"});
constexpr PlotTexts kDfLabel = Only(text::RowDegreesOfFreedomDf);

constexpr PlotRow kPowerPlots[] = {
    {Along("SampleSize"), chart::PowerVsN, PowerVsSize, NAxis,
     Only(text::PlotPowerVsNRR0DfAlpha, {"R", "R0", "DegreesOfFreedom", "Alpha"}), GroupNLabel,
     PowerLabel},
    {Along("Alpha"), chart::PowerVsAlpha, PowerVsAlpha, AlphaAxis,
     Only(text::PlotPowerVsAlphaRR0NDf, {"R", "R0", "SampleSize", "DegreesOfFreedom"}), AlphaLabel,
     PowerLabel},
    {Along("R"), chart::PowerVsRmsea, PowerVsRmse, kRmseaAxis,
     Only(text::PlotPowerVsRMSEARNDf, {"SampleSize", "DegreesOfFreedom"}), kRmseaLabel, PowerLabel},
    {Along("DegreesOfFreedom"), chart::PowerVsDf, PowerVsDf, kDfAxis,
     Only(text::PlotPowerVsDfRR0NAlpha, {"R", "R0", "SampleSize", "Alpha"}), kDfLabel, PowerLabel},
};

constexpr PlotRow kSizePlots[] = {
    {Along("PowerGoal"), chart::NVsPower, SizeVsPower, PowerAxis,
     Only(text::PlotNVsPowerRR0DfAlpha, {"R", "R0", "DegreesOfFreedom", "Alpha"}), GoalLabel,
     RequiredNLabel},
    {Along("Alpha"), chart::NVsAlpha, SizeVsAlpha, AlphaAxis,
     Only(text::PlotNVsAlphaRR0PowerGoalDf, {"R", "R0", "PowerGoal", "DegreesOfFreedom"}),
     AlphaLabel, RequiredNLabel},
    {Along("R"), chart::NVsRmsea, SizeVsRmse, kRmseaAxis,
     Only(text::PlotNVsRMSEARPowerGoalDf, {"PowerGoal", "DegreesOfFreedom"}), kRmseaLabel,
     RequiredNLabel},
    {Along("DegreesOfFreedom"), chart::NVsDf, SizeVsDf, kDfAxis,
     Only(text::PlotNVsDfRR0PowerGoalAlpha, {"R", "R0", "PowerGoal", "Alpha"}), kDfLabel,
     RequiredNLabel},
};

// Exact fit has two forms: its own test and that of an R0 of 0.
constexpr PlotTexts kTitle =
    Only(text::TitleWithDetail,
         {text::HeadingStructuralEquationModeling,
          {"H0Type",
           {text::H0RmseaZero, text::H0RmseaAtMost, text::H0RmseaAtLeast, text::H0RmseaZero}}});

constexpr ResultsDialogTable kResultsDialogs[] = {
    {Family::SEM, ModePower, text::CaptionCalculatePower, kPowerRanges, kPowerPlots, kTitle},
    {Family::SEM, ModeSampleSize, text::CaptionCalculateN, kSizeRanges, kSizePlots, kTitle},
};

}  // namespace

FamilyDialogs ModelFitDialogs() { return {kParameterDialogs, kResultsDialogs, kIntervalDialogs}; }

}  // namespace poweranalysis
