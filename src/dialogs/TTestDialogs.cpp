#include "dialogs/FamilyDialogs.h"

#include "dialogs/DialogRows.h"

namespace poweranalysis {

namespace {

// --- Fields.

constexpr const char* kT1PowerFields[] = {"Mu0", "Mu", "Sigma", "Alpha", "SampleSize", "H0Type"};
constexpr const char* kT1SizeFields[] = {"Mu0", "Mu", "Sigma", "Alpha", "PowerGoal", "H0Type"};
constexpr const char* kT2PowerFields[] = {"Mu1",          "Mu2",          "Sigma", "Alpha",
                                          "SampleSizeN1", "SampleSizeN2", "H0Type"};
constexpr const char* kT2SizeFields[] = {"Mu1",          "Mu2",       "Sigma",
                                         "Alpha",        "PowerGoal", "SampleSizeN1",
                                         "SampleSizeN2", "H0Type",    "NToVary"};
constexpr const char* kT3PowerFields[] = {"Mu1",           "Mu2",   "Sigma1",     "Sigma2",
                                          "BetweenGroupR", "Alpha", "SampleSize", "H0Type"};
constexpr const char* kT3SizeFields[] = {"Mu1",           "Mu2",   "Sigma1",    "Sigma2",
                                         "BetweenGroupR", "Alpha", "PowerGoal", "H0Type"};

constexpr const char* kPowerRanges[] = {"EsStart", "EsEnd", "AlphaStart", "AlphaEnd",
                                        "NStart",  "NEnd",  "NInterval"};
constexpr const char* kSizeRanges[] = {"EsStart",    "EsEnd",    "AlphaStart", "AlphaEnd",
                                       "PowerStart", "PowerEnd", "NInterval"};

constexpr ParameterDialogTable kParameterDialogs[] = {
    {Family::T1, ModePower, kT1PowerFields}, {Family::T1, ModeSampleSize, kT1SizeFields},
    {Family::T2, ModePower, kT2PowerFields}, {Family::T2, ModeSampleSize, kT2SizeFields},
    {Family::T3, ModePower, kT3PowerFields}, {Family::T3, ModeSampleSize, kT3SizeFields},
};

constexpr const char* kOneSampleInterval[] = {"TObserved", "SampleSize", "Confidence"};
constexpr const char* kTwoSamplesInterval[] = {"TObserved", "SampleSizeN1", "SampleSizeN2",
                                               "Confidence"};

constexpr IntervalDialogTable kIntervalDialogs[] = {
    {Family::T1, kOneSampleInterval},
    {Family::T2, kTwoSamplesInterval},
    {Family::T3, kOneSampleInterval},
};

// --- Plots.

constexpr PlotTexts kT2SizeLabel = {"NToVary",
                                    {{{text::PlotRequiredSampleSizeN1N2, {}},
                                      {text::PlotRequiredSampleSizeN1N22, {"SampleSizeN2"}},
                                      {text::PlotRequiredSampleSizeN2N1, {"SampleSizeN1"}}}}};

// One mean and paired means: the same three power plots.
constexpr PlotRow kOneGroupPowerPlots[] = {
    {Along("SampleSize"), chart::PowerVsN, PowerVsSize, NAxis,
     Only(text::PlotPowerVsNEsAlpha, {EffectSlot, "Alpha"}), GroupNLabel, PowerLabel},
    {AlongEffect, chart::PowerVsEs, PowerVsEffect, EsAxis,
     Only(text::PlotPowerVsEsNAlpha, {"SampleSize", "Alpha"}), EsLabel, PowerLabel},
    {Along("Alpha"), chart::PowerVsAlpha, PowerVsAlpha, AlphaAxis,
     Only(text::PlotPowerVsAlphaEsN, {EffectSlot, "SampleSize"}), AlphaLabel, PowerLabel},
};

constexpr PlotRow kT2PowerPlots[] = {
    {AlongSizes, chart::PowerVsN, PowerVsSize, NAxis,
     Only(text::PlotPowerVsNEsAlphaN1N2N, {EffectSlot, "Alpha"}), GroupNLabel, PowerLabel},
    {Along("SampleSizeN1"), chart::PowerVsN1, PowerVsSize, NAxis,
     Only(text::PlotPowerVsN1EsAlphaN2, {EffectSlot, "Alpha", "SampleSizeN2"}),
     Only(text::RowSampleSizeN1), PowerLabel},
    {Along("SampleSizeN2"), chart::PowerVsN2, PowerVsSize, NAxis,
     Only(text::PlotPowerVsN2EsAlphaN1, {EffectSlot, "Alpha", "SampleSizeN1"}),
     Only(text::RowSampleSizeN2), PowerLabel},
    {AlongEffect, chart::PowerVsEs, PowerVsEffect, EsAxis,
     Only(text::PlotPowerVsEsN1N2Alpha, {"SampleSizeN1", "SampleSizeN2", "Alpha"}), EsLabel,
     PowerLabel},
    {Along("Alpha"), chart::PowerVsAlpha, PowerVsAlpha, AlphaAxis,
     Only(text::PlotPowerVsAlphaEsN1N2, {EffectSlot, "SampleSizeN1", "SampleSizeN2"}), AlphaLabel,
     PowerLabel},
};

struct SizeTitles {
  PlotTexts vsEs;
  PlotTexts vsAlpha;
  PlotTexts vsPower;
};

constexpr std::array<PlotRow, 3> SizePlots(const SizeTitles& titles, const PlotTexts& yLabel) {
  return {{
      {AlongEffect, chart::NVsEs, SizeVsEffect, EsAxis, titles.vsEs, EsLabel, yLabel},
      {Along("Alpha"), chart::NVsAlpha, SizeVsAlpha, AlphaAxis, titles.vsAlpha, AlphaLabel, yLabel},
      {Along("PowerGoal"), chart::NVsPower, SizeVsPower, PowerAxis, titles.vsPower, GoalLabel,
       yLabel},
  }};
}

constexpr std::array<PlotRow, 3> kT1SizePlots =
    SizePlots({Only(text::PlotSampleSizeVsEs, {"Alpha", "PowerGoal"}),
               Only(text::PlotSampleSizeVsAlpha, {EffectSlot, "PowerGoal"}),
               Only(text::PlotSampleSizeVsPower, {EffectSlot, "Alpha"})},
              RequiredNLabel);

constexpr std::array<PlotRow, 3> kT2SizePlots =
    SizePlots({{"NToVary",
                {{{text::PlotNVsEsAlphaPower, {"Alpha", "PowerGoal"}},
                  {text::PlotRequiredN1VsStandardizedEffectSizeN2, {"SampleSizeN2"}},
                  {text::PlotRequiredN2VsStandardizedEffectSizeN1, {"SampleSizeN1"}}}}},
               Only(text::PlotNVsAlphaEsPower, {EffectSlot, "PowerGoal"}),
               Only(text::PlotNVsPowerAlphaEs, {"Alpha", EffectSlot})},
              kT2SizeLabel);

constexpr std::array<PlotRow, 3> kT3SizePlots =
    SizePlots({Only(text::PlotNVsEsAlphaPowerGoal, {"Alpha", "PowerGoal"}),
               Only(text::PlotNVsAlphaEsPower, {EffectSlot, "PowerGoal"}),
               Only(text::PlotNVsPowerAlphaStandardizedEffect, {"Alpha", EffectSlot})},
              RequiredNLabel);

// --- Results dialogs.

// A required size that fails ends the plot with the points before it.
constexpr FailedPointRule kUpToTheFailure = FailedPointRule::DropAndStop;

constexpr ResultsDialogTable kResultsDialogs[] = {
    {Family::T1, ModePower, text::CaptionCalculatePower, kPowerRanges, kOneGroupPowerPlots},
    {Family::T1,
     ModeSampleSize,
     text::CaptionCalculateN,
     kSizeRanges,
     kT1SizePlots,
     {},
     kUpToTheFailure},
    {Family::T2, ModePower, text::CaptionCalculatePower, kPowerRanges, kT2PowerPlots},
    {Family::T2,
     ModeSampleSize,
     text::CaptionCalculateN,
     kSizeRanges,
     kT2SizePlots,
     {},
     kUpToTheFailure},
    {Family::T3, ModePower, text::CaptionCalculatePower, kPowerRanges, kOneGroupPowerPlots},
    {Family::T3,
     ModeSampleSize,
     text::CaptionCalculateN,
     kSizeRanges,
     kT3SizePlots,
     {},
     kUpToTheFailure},
};

}  // namespace

FamilyDialogs TTestDialogs() { return {kParameterDialogs, kResultsDialogs, kIntervalDialogs}; }

}  // namespace poweranalysis
