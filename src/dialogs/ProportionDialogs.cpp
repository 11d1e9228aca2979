#include "dialogs/DialogRows.h"
#include "dialogs/FamilyDialogs.h"

namespace poweranalysis {

namespace {

// --- Fields.

constexpr const char* kP1PowerFields[] = {"Pi",         "Pi0",    "Alpha",
                                          "SampleSize", "H0Type", "Algorithm"};
constexpr const char* kP1SizeFields[] = {"Pi", "Pi0", "Alpha", "PowerGoal", "H0Type", "Algorithm"};
constexpr const char* kP2PowerFields[] = {"Pi1",    "Pi2",          "Alpha",        "Continuity",
                                          "EqualN", "SampleSizeN1", "SampleSizeN2", "H0Type"};
constexpr const char* kP2SizeFields[] = {"Pi1",        "Pi2",     "Alpha",        "PowerGoal",
                                         "Continuity", "EqualN",  "SampleSizeN1", "SampleSizeN2",
                                         "H0Type",     "NToVary", "Ratio"};
constexpr const char* kQMACPowerFields[] = {"Delta", "Eta", "Alpha", "SampleSize", "H0Type"};
constexpr const char* kQMACSizeFields[] = {"Delta", "Eta", "Alpha", "PowerGoal", "H0Type"};

constexpr const char* kP1PowerRanges[] = {"PiStart", "PiEnd", "AlphaStart", "AlphaEnd",
                                          "NStart",  "NEnd",  "NInterval",  "Algorithm"};
constexpr const char* kP1SizeRanges[] = {"PiStart",    "PiEnd",    "AlphaStart", "AlphaEnd",
                                         "PowerStart", "PowerEnd", "NInterval",  "Algorithm"};
constexpr const char* kP2PowerRanges[] = {"PiStart", "PiEnd", "AlphaStart", "AlphaEnd",
                                          "NStart",  "NEnd",  "NInterval"};
constexpr const char* kP2SizeRanges[] = {"PiStart",   "PiEnd",      "AlphaStart",
                                         "AlphaEnd",  "PowerStart", "PowerEnd",
                                         "NInterval", "NToVary",    "Ratio"};
constexpr const char* kQMACPowerRanges[] = {"DeltaStart", "DeltaEnd",   "EtaStart",
                                            "EtaEnd",     "AlphaStart", "AlphaEnd",
                                            "NStart",     "NEnd",       "NInterval"};
constexpr const char* kQMACSizeRanges[] = {"DeltaStart", "DeltaEnd",   "EtaStart",
                                           "EtaEnd",     "AlphaStart", "AlphaEnd",
                                           "PowerStart", "PowerEnd",   "NInterval"};

constexpr const char* kP1Interval[] = {"PObserved", "SampleSize", "Confidence", "XObserved"};

// The count follows from the proportion when it is computed.
constexpr IntervalDialogTable kIntervalDialogs[] = {{Family::P1, kP1Interval, "XObserved"}};

constexpr ParameterDialogTable kParameterDialogs[] = {
    {Family::P1, ModePower, kP1PowerFields},     {Family::P1, ModeSampleSize, kP1SizeFields},
    {Family::P2, ModePower, kP2PowerFields},     {Family::P2, ModeSampleSize, kP2SizeFields},
    {Family::QMAC, ModePower, kQMACPowerFields}, {Family::QMAC, ModeSampleSize, kQMACSizeFields},
};

// --- Plots.

constexpr PlotAxis kPiAxis = {"PiStart", "PiEnd", "NInterval", false};
constexpr PlotAxis kDeltaAxis = {"DeltaStart", "DeltaEnd", "NInterval", false};
constexpr PlotAxis kEtaAxis = {"EtaStart", "EtaEnd", "NInterval", false};

constexpr Slot kAlgorithm = {"Algorithm", {text::CaptionExact, text::RadioNormalApproximation}};
constexpr Slot kCorrection = {
    "Continuity", {text::CaptionNoContinuityCorrection, text::CaptionCorrectedForContinuity}};

constexpr PlotTexts kP1PowerLabel = Only(text::PlotPower, {kAlgorithm});
constexpr PlotTexts kP1SizeLabel = Only(text::PlotSampleSize, {kAlgorithm});
constexpr PlotTexts kPiLabel = Only(text::RowPopulationProportionPi);

constexpr PlotRow kP1PowerPlots[] = {
    {Along("SampleSize"), chart::PowerVsN, PowerVsSize, NAxis,
     Only(text::PlotPiPi0Alpha, {text::PlotPowerVsN, "Pi", "Pi0", "Alpha"}), GroupNLabel,
     kP1PowerLabel},
    {Along("Alpha"), chart::PowerVsAlpha, PowerVsAlpha, AlphaAxis,
     Only(text::PlotPiPi0N, {text::PlotPowerVsAlpha, "Pi", "Pi0", "SampleSize"}), AlphaLabel,
     kP1PowerLabel},
    {Along("Pi"), chart::PowerVsPi, PowerVsPi, kPiAxis,
     Only(text::PlotPi0NAlpha, {text::PlotPowerVsPi, "Pi0", "SampleSize", "Alpha"}), kPiLabel,
     kP1PowerLabel},
};

constexpr PlotRow kP1SizePlots[] = {
    {Along("PowerGoal"), chart::NVsPower, SizeVsPower, PowerAxis,
     Only(text::PlotPiPi0Alpha, {text::PlotNVsPower, "Pi", "Pi0", "Alpha"}), GoalLabel,
     kP1SizeLabel},
    {Along("Alpha"), chart::NVsAlpha, SizeVsAlpha, AlphaAxis,
     Only(text::PlotPiPi0PowerGoal, {text::PlotNVsAlpha, "Pi", "Pi0", "PowerGoal"}), AlphaLabel,
     kP1SizeLabel},
    {Along("Pi"), chart::NVsPi, SizeVsPi, kPiAxis,
     Only(text::PlotAlphaPi0Power, {text::PlotNVsPi, "Alpha", "Pi0", "PowerGoal"}), kPiLabel,
     kP1SizeLabel},
};

constexpr PlotTexts kP2PowerLabel = Only(text::PlotPower, {kCorrection});
constexpr PlotTexts P2VsSize(TextId caption) {
  return Only(text::PlotPi1Pi2Alpha2, {caption, "Pi1", "Pi2", "Alpha"});
}

constexpr PlotRow kP2PowerPlots[] = {
    {AlongSizes, chart::PowerVsN, PowerVsSize, NAxis, P2VsSize(text::PlotPowerVsN),
     Only(text::PlotSampleSizeForEachGroupN1N2), kP2PowerLabel},
    {Along("SampleSizeN1"), chart::PowerVsN1, PowerVsSize, NAxis, P2VsSize(text::ButtonPowerVsN1),
     Only(text::PlotSampleSizeN1N2FixedAt, {"SampleSizeN2"}), kP2PowerLabel},
    {Along("SampleSizeN2"), chart::PowerVsN2, PowerVsSize, NAxis, P2VsSize(text::ButtonPowerVsN2),
     Only(text::PlotSampleSizeN2N1FixedAt, {"SampleSizeN1"}), kP2PowerLabel},
    {Along("Pi1"), chart::PowerVsPi1, PowerVsPi, kPiAxis,
     Only(text::PlotN1N2Alpha, {text::PlotPowerVsPi1, "SampleSizeN1", "SampleSizeN2", "Alpha"}),
     Only(text::PlotPopulationProportionPi1Pi2FixedAt, {"Pi2"}), kP2PowerLabel},
    {Along("Alpha"), chart::PowerVsAlpha, PowerVsAlpha, AlphaAxis,
     Only(text::PlotPi1Pi2N1N2,
          {text::PlotPowerVsAlpha, "Pi1", "Pi2", "SampleSizeN1", "SampleSizeN2"}),
     AlphaLabel, kP2PowerLabel},
};

constexpr PlotTexts kP2SizeLabel = {"NToVary",
                                    {{{text::PlotSampleSizeForEachGroupN1N2, {}},
                                      {text::PlotSampleSizeN1N2FixedAt, {"SampleSizeN2"}},
                                      {text::PlotSampleSizeN2N1FixedAt, {"SampleSizeN1"}},
                                      {text::PlotSampleSizeN2RatioN1N2FixedAt, {"Ratio"}}}}};

constexpr PlotRow kP2SizePlots[] = {
    {Along("PowerGoal"), chart::NVsPower, SizeVsPower, PowerAxis,
     Only(text::PlotPi1Pi2Alpha, {text::PlotNVsPower, "Pi1", "Pi2", "Alpha"}),
     Only(text::PlotPowerGoal2, {kCorrection}), kP2SizeLabel},
    {Along("Pi1"), chart::NVsPi1, SizeVsPi, kPiAxis,
     Only(text::PlotPi2Alpha, {text::PlotNVsPi1, "Pi2", "Alpha"}),
     Only(text::PlotPopulationProportionPi1, {kCorrection}), kP2SizeLabel},
    {Along("Alpha"), chart::NVsAlpha, SizeVsAlpha, AlphaAxis,
     Only(text::PlotPi1Pi2, {text::PlotNVsAlpha, "Pi1", "Pi2"}),
     Only(text::PlotTypeIErrorRateAlpha, {kCorrection}), kP2SizeLabel},
};

constexpr PlotTexts kDeltaLabel = Only(text::PlotPopulationProportionDeltaEtaFixedAt, {"Eta"});
constexpr PlotTexts kEtaLabel = Only(text::PlotPopulationEtaDeltaFixedAt, {"Delta"});

constexpr PlotRow kQMACPowerPlots[] = {
    {Along("SampleSize"), chart::PowerVsN, PowerVsSize, NAxis,
     Only(text::PlotDeltaEtaAlpha2, {text::PlotPowerVsN, "Delta", "Eta", "Alpha"}), GroupNLabel,
     PowerLabel},
    {Along("Delta"), chart::PowerVsDelta, PowerVsEffect, kDeltaAxis,
     Only(text::PlotNAlphaEta, {text::PlotPowerVsDelta, "SampleSize", "Alpha", "Eta"}), kDeltaLabel,
     PowerLabel},
    {Along("Eta"), chart::PowerVsEta, PowerVsEta, kEtaAxis,
     Only(text::PlotNAlphaDelta, {text::PlotPowerVsEta, "SampleSize", "Alpha", "Delta"}), kEtaLabel,
     PowerLabel},
    {Along("Alpha"), chart::PowerVsAlpha, PowerVsAlpha, AlphaAxis,
     Only(text::PlotDeltaEtaN, {text::PlotPowerVsAlpha, "Delta", "Eta", "SampleSize"}), AlphaLabel,
     PowerLabel},
};

constexpr PlotRow kQMACSizePlots[] = {
    {Along("PowerGoal"), chart::NVsPower, SizeVsPower, PowerAxis,
     Only(text::PlotDeltaEtaAlpha, {text::PlotNVsPower, "Delta", "Eta", "Alpha"}), GoalLabel,
     RequiredNLabel},
    {Along("Delta"), chart::NVsDelta, SizeVsDelta, kDeltaAxis,
     Only(text::PlotAlphaEtaPower, {text::PlotNVsDelta, "Alpha", "Eta", "PowerGoal"}), kDeltaLabel,
     RequiredNLabel},
    {Along("Eta"), chart::NVsEta, SizeVsEta, kEtaAxis,
     Only(text::PlotAlphaDeltaPower, {text::PlotNVsEta, "Alpha", "Delta", "PowerGoal"}), kEtaLabel,
     RequiredNLabel},
    {Along("Alpha"), chart::NVsAlpha, SizeVsAlpha, AlphaAxis,
     Only(text::PlotDeltaEtaPower, {text::PlotNVsAlpha, "Delta", "Eta", "PowerGoal"}), AlphaLabel,
     RequiredNLabel},
};

// --- Results dialogs.

// Kept: the plot of one proportion ends with the first point that fails.
constexpr FailedPointRule kWithTheFailure = FailedPointRule::KeepAndStop;

constexpr ResultsDialogTable kResultsDialogs[] = {
    {Family::P1,
     ModePower,
     text::CaptionCalculatePower,
     kP1PowerRanges,
     kP1PowerPlots,
     {},
     kWithTheFailure},
    {Family::P1,
     ModeSampleSize,
     text::CaptionCalculateN,
     kP1SizeRanges,
     kP1SizePlots,
     {},
     kWithTheFailure},
    {Family::P2, ModePower, text::CaptionCalculatePower, kP2PowerRanges, kP2PowerPlots},
    {Family::P2, ModeSampleSize, text::CaptionCalculateN, kP2SizeRanges, kP2SizePlots},
    {Family::QMAC, ModePower, text::CaptionCalculatePower, kQMACPowerRanges, kQMACPowerPlots},
    {Family::QMAC, ModeSampleSize, text::CaptionCalculateN, kQMACSizeRanges, kQMACSizePlots},
};

}  // namespace

FamilyDialogs ProportionDialogs() { return {kParameterDialogs, kResultsDialogs, kIntervalDialogs}; }

}  // namespace poweranalysis
