#include "dialogs/DialogRows.h"
#include "dialogs/FamilyDialogs.h"

namespace poweranalysis {

namespace {

// --- Fields.

constexpr const char* kSA1PowerFields[] = {"Pi1", "Pi2", "Alpha", "SampleSize", "H0Type"};
constexpr const char* kSA1SizeFields[] = {"Pi1", "Pi2", "Alpha", "PowerGoal", "H0Type"};
constexpr const char* kSA2PowerFields[] = {"Lambda1", "Lambda2",    "T0",    "T",
                                           "Alpha",   "SampleSize", "H0Type"};
constexpr const char* kSA2SizeFields[] = {"Lambda1", "Lambda2",   "T0",    "T",
                                          "Alpha",   "PowerGoal", "H0Type"};
constexpr const char* kSA3PowerFields[] = {"Lambda1", "Lambda2", "D",          "T0",
                                           "T",       "Alpha",   "SampleSize", "H0Type"};
constexpr const char* kSA3SizeFields[] = {"Lambda1", "Lambda2", "D",         "T0",
                                          "T",       "Alpha",   "PowerGoal", "H0Type"};

constexpr const char* kSA1PowerRanges[] = {"Pi2Start", "Pi2End", "AlphaStart", "AlphaEnd",
                                           "NStart",   "NEnd",   "NInterval"};
constexpr const char* kSA1SizeRanges[] = {"Pi2Start",   "Pi2End",   "AlphaStart", "AlphaEnd",
                                          "PowerStart", "PowerEnd", "NInterval"};
constexpr const char* kPowerRanges[] = {"Lambda2Start", "Lambda2End", "AlphaStart", "AlphaEnd",
                                        "NStart",       "NEnd",       "NInterval"};
constexpr const char* kSizeRanges[] = {"Lambda2Start", "Lambda2End", "AlphaStart", "AlphaEnd",
                                       "PowerStart",   "PowerEnd",   "NInterval"};

constexpr ParameterDialogTable kParameterDialogs[] = {
    {Family::SA1, ModePower, kSA1PowerFields}, {Family::SA1, ModeSampleSize, kSA1SizeFields},
    {Family::SA2, ModePower, kSA2PowerFields}, {Family::SA2, ModeSampleSize, kSA2SizeFields},
    {Family::SA3, ModePower, kSA3PowerFields}, {Family::SA3, ModeSampleSize, kSA3SizeFields},
};

// --- Plots.

constexpr PlotAxis kPi2Axis = {"Pi2Start", "Pi2End", "NInterval", false};
constexpr PlotAxis kLambda2Axis = {"Lambda2Start", "Lambda2End", "NInterval", false};

constexpr PlotTexts kGroupNLabel = Only(text::RowSampleSizePerGroupN);
constexpr PlotTexts kPi2Label = Only(text::PlotPopulationProportionPi2Pi1FixedAt, {"Pi1"});

constexpr PlotRow kSA1PowerPlots[] = {
    {Along("SampleSize"), chart::PowerVsN, PowerVsSize, NAxis,
     Only(text::PlotPi1Pi2Alpha3, {text::PlotPowerVsN, "Pi1", "Pi2", "Alpha"}), kGroupNLabel,
     PowerLabel},
    {Along("Alpha"), chart::PowerVsAlpha, PowerVsAlpha, AlphaAxis,
     Only(text::PlotPi1Pi2N, {text::PlotPowerVsAlpha, "Pi1", "Pi2", "SampleSize"}), AlphaLabel,
     PowerLabel},
    {Along("Pi2"), chart::PowerVsPi2, PowerVsPi, kPi2Axis,
     Only(text::PlotNAlpha, {text::PlotPowerVsPi2, "SampleSize", "Alpha"}), kPi2Label, PowerLabel},
};

constexpr PlotRow kSA1SizePlots[] = {
    {Along("PowerGoal"), chart::NVsPower, SizeVsPower, PowerAxis,
     Only(text::PlotPi1Pi2Alpha3, {text::PlotNVsPowerGoal, "Pi1", "Pi2", "Alpha"}), GoalLabel,
     RequiredNLabel},
    {Along("Alpha"), chart::NVsAlpha, SizeVsAlpha, AlphaAxis,
     Only(text::PlotPi1Pi2PowerGoal, {text::PlotNVsAlpha, "Pi1", "Pi2", "PowerGoal"}), AlphaLabel,
     RequiredNLabel},
    {Along("Pi2"), chart::NVsPi2, SizeVsPi, kPi2Axis,
     Only(text::PlotPowerGoal, {text::PlotNVsSurvivalRatePi2, "PowerGoal"}), kPi2Label,
     RequiredNLabel},
};

// What the plots of exponential survival say, with or without dropouts.
struct ExponentialWords {
  PlotTexts powerVsN, powerVsLambda2, powerVsAlpha, powerLambda2Label;
  PlotTexts sizeVsPower, sizeVsLambda2, sizeVsAlpha;
};

constexpr ExponentialWords kSA2Words = {
    Only(text::PlotPowerVsNLambda1Lambda2Alpha, {"Lambda1", "Lambda2", "Alpha"}),
    Only(text::PlotPowerVsLambda2N, {"SampleSize"}),
    Only(text::PlotPowerVsAlphaLambda1Lambda2N, {"Lambda1", "Lambda2", "SampleSize"}),
    Only(text::PlotPopulationProportionLambda2Lambda1FixedAt, {"Lambda1"}),
    Only(text::PlotNVsPowerLambda1Lambda2T0TAlpha, {"Lambda1", "Lambda2", "T0", "T", "Alpha"}),
    Only(text::PlotNVsLambda2AlphaPowerGoalT0T, {"Alpha", "PowerGoal", "T0", "T"}),
    Only(text::PlotNVsAlphaLambda1Lambda2T0T, {"Lambda1", "Lambda2", "T0", "T"}),
};

constexpr ExponentialWords kSA3Words = {
    Only(text::PlotPowerVsNLambda1Lambda2AlphaD, {"Lambda1", "Lambda2", "Alpha", "D"}),
    Only(text::PlotPowerVsLambda2NAlphaD, {"SampleSize", "Alpha", "D"}),
    Only(text::PlotPowerVsAlphaLambda1Lambda2ND, {"Lambda1", "Lambda2", "SampleSize", "D"}),
    Only(text::PlotPopulationProportionLambda2Lambda1, {"Lambda1"}),
    Only(text::PlotNVsPowerLambda1Lambda2T0TAlphaD,
         {"Lambda1", "Lambda2", "T0", "T", "Alpha", "D"}),
    Only(text::PlotNVsLambda2AlphaPowerGoalT0TD, {"Alpha", "PowerGoal", "T0", "T", "D"}),
    Only(text::PlotNVsAlphaLambda1Lambda2T0TD, {"Lambda1", "Lambda2", "T0", "T", "D"}),
};

constexpr std::array<PlotRow, 3> ExponentialPowerPlots(const ExponentialWords& words) {
  return {{
      {Along("SampleSize"), chart::PowerVsN, PowerVsSize, NAxis, words.powerVsN, kGroupNLabel,
       PowerLabel},
      {Along("Lambda2"), chart::PowerVsLambda2, PowerVsLambda2, kLambda2Axis, words.powerVsLambda2,
       words.powerLambda2Label, PowerLabel},
      {Along("Alpha"), chart::PowerVsAlpha, PowerVsAlpha, AlphaAxis, words.powerVsAlpha, AlphaLabel,
       PowerLabel},
  }};
}

constexpr std::array<PlotRow, 3> ExponentialSizePlots(const ExponentialWords& words) {
  return {{
      {Along("PowerGoal"), chart::NVsPower, SizeVsPower, PowerAxis, words.sizeVsPower, GoalLabel,
       RequiredNLabel},
      {Along("Lambda2"), chart::NVsLambda2, SizeVsLambda2, kLambda2Axis, words.sizeVsLambda2,
       Only(text::PlotExponentialParameterLambda2Lambda1FixedAt, {"Lambda1"}), RequiredNLabel},
      {Along("Alpha"), chart::NVsAlpha, SizeVsAlpha, AlphaAxis, words.sizeVsAlpha,
       Only(text::PlotTypeIErrorRateAlphaPowerGoal, {"PowerGoal"}), RequiredNLabel},
  }};
}

constexpr auto kSA2PowerPlots = ExponentialPowerPlots(kSA2Words);
constexpr auto kSA3PowerPlots = ExponentialPowerPlots(kSA3Words);
constexpr auto kSA2SizePlots = ExponentialSizePlots(kSA2Words);
constexpr auto kSA3SizePlots = ExponentialSizePlots(kSA3Words);

// --- Results dialogs.

constexpr ResultsDialogTable kResultsDialogs[] = {
    {Family::SA1, ModePower, text::CaptionCalculatePower, kSA1PowerRanges, kSA1PowerPlots},
    {Family::SA1, ModeSampleSize, text::CaptionCalculateN, kSA1SizeRanges, kSA1SizePlots},
    {Family::SA2, ModePower, text::CaptionCalculatePower, kPowerRanges, kSA2PowerPlots},
    {Family::SA2, ModeSampleSize, text::CaptionCalculateN, kSizeRanges, kSA2SizePlots},
    {Family::SA3, ModePower, text::CaptionCalculatePower, kPowerRanges, kSA3PowerPlots},
    {Family::SA3, ModeSampleSize, text::CaptionCalculateN, kSizeRanges, kSA3SizePlots},
};

}  // namespace

FamilyDialogs SurvivalDialogs() { return {kParameterDialogs, kResultsDialogs}; }

}  // namespace poweranalysis
