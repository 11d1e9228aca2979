#include "dialogs/DialogRows.h"
#include "dialogs/FamilyDialogs.h"

namespace poweranalysis {

namespace {

// --- Fields.

constexpr const char* kRPowerFields[] = {"Rho",        "Rho0",   "Alpha",
                                         "SampleSize", "H0Type", "Algorithm"};
constexpr const char* kRSizeFields[] = {"Rho", "Rho0", "Alpha", "PowerGoal", "H0Type", "Algorithm"};
constexpr const char* kZ2RPowerFields[] = {"Rho1",         "Rho2",   "Alpha",    "SampleSizeN1",
                                           "SampleSizeN2", "H0Type", "Algorithm"};
constexpr const char* kZ2RSizeFields[] = {"Rho1",      "Rho2",         "Alpha",
                                          "PowerGoal", "SampleSizeN1", "SampleSizeN2",
                                          "H0Type",    "NToVary",      "Algorithm"};
constexpr const char* kR2PowerFields[] = {"PopulationR2", "R2Null", "Alpha",    "TotalNumberOfVars",
                                          "SampleSize",   "H0Type", "Algorithm"};
constexpr const char* kR2SizeFields[] = {"PopulationR2",      "R2Null", "Alpha",    "PowerGoal",
                                         "TotalNumberOfVars", "H0Type", "Algorithm"};

constexpr const char* kRPowerRanges[] = {"RhoStart", "RhoEnd", "AlphaStart", "AlphaEnd",
                                         "NStart",   "NEnd",   "NInterval",  "Algorithm"};
constexpr const char* kRSizeRanges[] = {"RhoStart",   "RhoEnd",   "AlphaStart", "AlphaEnd",
                                        "PowerStart", "PowerEnd", "NInterval",  "Algorithm"};
constexpr const char* kZ2RSizeRanges[] = {"RhoStart",  "RhoEnd",     "AlphaStart",
                                          "AlphaEnd",  "PowerStart", "PowerEnd",
                                          "NInterval", "NToVary",    "Algorithm"};
constexpr const char* kR2PowerRanges[] = {"R2Start", "R2End", "AlphaStart", "AlphaEnd",
                                          "NStart",  "NEnd",  "NInterval",  "Algorithm"};
constexpr const char* kR2SizeRanges[] = {"R2Start",    "R2End",    "AlphaStart", "AlphaEnd",
                                         "PowerStart", "PowerEnd", "NInterval",  "Algorithm"};

constexpr const char* kRInterval[] = {"RObserved", "SampleSize", "Confidence",
                                      "Algorithm", "Rho0",       "H0Type"};
constexpr const char* kR2Interval[] = {"R2Observed",        "R2Null",    "SampleSize",
                                       "TotalNumberOfVars", "H0Type",    "Alpha",
                                       "Confidence",        "PowerGoal", "Algorithm"};

// Limits on power and size come with a one-tailed hypothesis alone, and it is the other that is
// built in.
constexpr IntervalDialogTable kIntervalDialogs[] = {
    {Family::R, kRInterval},
    {Family::R2, kR2Interval, nullptr, {text::HintSquaredCorrelationTwoTailed, "H0Type", 0}},
};

constexpr ParameterDialogTable kParameterDialogs[] = {
    {Family::R, ModePower, kRPowerFields},     {Family::R, ModeSampleSize, kRSizeFields},
    {Family::Z2R, ModePower, kZ2RPowerFields}, {Family::Z2R, ModeSampleSize, kZ2RSizeFields},
    {Family::R2, ModePower, kR2PowerFields},   {Family::R2, ModeSampleSize, kR2SizeFields},
};

// --- Plots.

constexpr PlotAxis kRhoAxis = {"RhoStart", "RhoEnd", "NInterval", false};
constexpr PlotAxis kR2Axis = {"R2Start", "R2End", "NInterval", false};

constexpr Slot kAlgorithm = {"Algorithm",
                             {text::CaptionAlgorithmExact, text::CaptionAlgorithmFisherZRefined,
                              text::CaptionAlgorithmFisherZCrude}};
constexpr PlotTexts kAlgorithmPowerLabel = Only(text::PlotPower, {kAlgorithm});
constexpr PlotTexts kAlgorithmSizeLabel = Only(text::PlotRequiredSampleSizeN, {kAlgorithm});
constexpr PlotTexts kRhoLabel = Only(text::RowPopulationCorrelationRho);
constexpr PlotTexts kR2Label = Only(text::PlotPopulationSquaredMultipleCorrelationP2);

constexpr PlotRow kRPowerPlots[] = {
    {Along("SampleSize"), chart::PowerVsN, PowerVsSize, NAxis,
     Only(text::PlotRhoAlpha, {text::PlotPowerVsN, "Rho", "Alpha"}), GroupNLabel,
     kAlgorithmPowerLabel},
    {Along("Rho"), chart::PowerVsRho, PowerVsRho, kRhoAxis,
     Only(text::PlotAlphaN, {text::PlotPowerVsRho, "Alpha", "SampleSize"}), kRhoLabel,
     kAlgorithmPowerLabel},
    {Along("Alpha"), chart::PowerVsAlpha, PowerVsAlpha, AlphaAxis,
     Only(text::PlotRhoN, {text::PlotPowerVsAlpha, "Rho", "SampleSize"}), AlphaLabel,
     kAlgorithmPowerLabel},
};

constexpr PlotRow kRSizePlots[] = {
    {Along("PowerGoal"), chart::NVsPower, SizeVsPower, PowerAxis,
     Only(text::PlotNVsPowerAlphaPopulationRho, {"Alpha", "Rho"}), GoalLabel, kAlgorithmSizeLabel},
    {Along("Rho"), chart::NVsRho, SizeVsRho, kRhoAxis,
     Only(text::PlotNVsRhoPowerAlpha, {"PowerGoal", "Alpha"}), kRhoLabel, kAlgorithmSizeLabel},
    {Along("Alpha"), chart::NVsAlpha, SizeVsAlpha, AlphaAxis,
     Only(text::PlotNVsAlphaPowerPopulationRho, {"PowerGoal", "Rho"}), AlphaLabel,
     kAlgorithmSizeLabel},
};

// The title of a plot of power along a size, by the name of its button.
constexpr PlotTexts Z2RVsSize(TextId caption) {
  return Only(text::PlotRho1Rho2Alpha, {caption, "Rho1", "Rho2", "Alpha"});
}

constexpr PlotRow kZ2RPowerPlots[] = {
    {AlongSizes, chart::PowerVsN, PowerVsSize, NAxis, Z2RVsSize(text::PlotPowerVsN),
     Only(text::PlotSampleSizeForEachGroupN1N2), kAlgorithmPowerLabel},
    {Along("SampleSizeN1"), chart::PowerVsN1, PowerVsSize, NAxis, Z2RVsSize(text::ButtonPowerVsN1),
     Only(text::PlotSampleSizeN1N2FixedAt, {"SampleSizeN2"}), kAlgorithmPowerLabel},
    {Along("SampleSizeN2"), chart::PowerVsN2, PowerVsSize, NAxis, Z2RVsSize(text::ButtonPowerVsN2),
     Only(text::PlotSampleSizeN2N1FixedAt, {"SampleSizeN1"}), kAlgorithmPowerLabel},
    {Along("Rho1"), chart::PowerVsRho, PowerVsRho, kRhoAxis,
     Only(text::PlotN1N2, {text::PlotPowerVsRho, "SampleSizeN1", "SampleSizeN2"}),
     Only(text::PlotPopulationCorrelationRho1Rho2FixedAt, {"Rho2"}), kAlgorithmPowerLabel},
    {Along("Alpha"), chart::PowerVsAlpha, PowerVsAlpha, AlphaAxis,
     Only(text::PlotRho1Rho2N1N2,
          {text::PlotPowerVsAlpha, "Rho1", "Rho2", "SampleSizeN1", "SampleSizeN2"}),
     AlphaLabel, kAlgorithmPowerLabel},
};

constexpr PlotTexts kZ2RSizeLabel = {"NToVary",
                                     {{{text::PlotSampleSizeN1N2, {}},
                                       {text::PlotSampleSizeN1N22, {"SampleSizeN2"}},
                                       {text::PlotSampleSizeN2N1, {"SampleSizeN1"}}}}};
constexpr std::array<Slot, 6> kAlphaAndRhos = {"Alpha", "Rho1", "Rho2"};
constexpr std::array<Slot, 6> kGoalAndRhos = {"PowerGoal", "Rho1", "Rho2"};

constexpr PlotRow kZ2RSizePlots[] = {
    {Along("PowerGoal"),
     chart::NVsPower,
     SizeVsPower,
     PowerAxis,
     {"NToVary",
      {{{text::PlotNVsPowerGoalAlphaRho1Rho2, kAlphaAndRhos},
        {text::PlotN1VsPowerGoalAlphaRho1Rho2, kAlphaAndRhos},
        {text::PlotN2VsPowerGoalAlphaRho1Rho2, kAlphaAndRhos}}}},
     GoalLabel,
     kZ2RSizeLabel},
    {Along("Rho1"),
     chart::NVsRho,
     SizeVsRho,
     kRhoAxis,
     {"NToVary",
      {{{text::PlotNVsRho1PowerAlphaRho2, {"PowerGoal", "Alpha", "Rho2"}},
        {text::PlotN1VsRho1PowerRho1Rho2, kGoalAndRhos},
        {text::PlotN2VsRho1PowerRho1Rho2, kGoalAndRhos}}}},
     Only(text::PlotGroup1PopulationCorrelationRho1),
     kZ2RSizeLabel},
    {Along("Alpha"),
     chart::NVsAlpha,
     SizeVsAlpha,
     AlphaAxis,
     {"NToVary",
      {{{text::PlotNVsAlphaPowerRho1Rho2, kGoalAndRhos},
        {text::PlotN1VsAlphaPowerRho1Rho2, kGoalAndRhos},
        {text::PlotN2VsAlphaPowerRho1Rho2, kGoalAndRhos}}}},
     AlphaLabel,
     kZ2RSizeLabel},
};

constexpr PlotRow kR2PowerPlots[] = {
    {Along("SampleSize"), chart::PowerVsN, PowerVsSize, NAxis,
     Only(text::PlotPowerVsNRho2AlphaK, {"PopulationR2", "Alpha", "TotalNumberOfVars"}),
     GroupNLabel, PowerLabel},
    {Along("PopulationR2"), chart::PowerVsP2, PowerVsSquaredRho, kR2Axis,
     Only(text::PlotPowerVsP2AlphaNK, {"Alpha", "SampleSize", "TotalNumberOfVars"}), kR2Label,
     PowerLabel},
    {Along("Alpha"), chart::PowerVsAlpha, PowerVsAlpha, AlphaAxis,
     Only(text::PlotPowerVsAlphaRho2NK, {"PopulationR2", "SampleSize", "TotalNumberOfVars"}),
     AlphaLabel, PowerLabel},
};

constexpr PlotRow kR2SizePlots[] = {
    {Along("PopulationR2"), chart::NVsP2, SizeVsSquaredRho, kR2Axis,
     Only(text::PlotNVsP2PowerAlphaK, {"PowerGoal", "Alpha", "TotalNumberOfVars"}), kR2Label,
     RequiredNLabel},
    {Along("Alpha"), chart::NVsAlpha, SizeVsAlpha, AlphaAxis,
     Only(text::PlotNVsAlphaP2PowerK, {"PopulationR2", "PowerGoal", "TotalNumberOfVars"}),
     AlphaLabel, RequiredNLabel},
    {Along("PowerGoal"), chart::NVsPower, SizeVsPower, PowerAxis,
     Only(text::PlotNVsPowerP2AlphaK, {"PopulationR2", "Alpha", "TotalNumberOfVars"}), GoalLabel,
     RequiredNLabel},
};

// --- Results dialogs.

constexpr Slot kR2Hypothesis = {
    "H0Type",
    {text::CaptionH0P2, text::CaptionH0P2AtMost, text::CaptionH0P2AtLeast, text::CaptionH0P22}};
constexpr PlotTexts kR2Title =
    Only(text::PlotSquaredMultipleCorrelation, {kR2Hypothesis, "R2Null"});

constexpr ResultsDialogTable kResultsDialogs[] = {
    {Family::R, ModePower, text::CaptionCalculatePower, kRPowerRanges, kRPowerPlots},
    {Family::R, ModeSampleSize, text::CaptionCalculateN, kRSizeRanges, kRSizePlots},
    {Family::Z2R, ModePower, text::CaptionCalculatePower, kRPowerRanges, kZ2RPowerPlots},
    {Family::Z2R, ModeSampleSize, text::CaptionCalculateN, kZ2RSizeRanges, kZ2RSizePlots},
    {Family::R2, ModePower, text::CaptionCalculatePower, kR2PowerRanges, kR2PowerPlots, kR2Title},
    {Family::R2, ModeSampleSize, text::CaptionCalculateN, kR2SizeRanges, kR2SizePlots, kR2Title},
};

}  // namespace

FamilyDialogs CorrelationDialogs() {
  return {kParameterDialogs, kResultsDialogs, kIntervalDialogs};
}

}  // namespace poweranalysis
