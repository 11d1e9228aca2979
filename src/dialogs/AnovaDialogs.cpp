#include "dialogs/DialogRows.h"
#include "dialogs/FamilyDialogs.h"

namespace poweranalysis {

namespace {

// --- Fields.

constexpr const char* kPCPowerFields[] = {
    "StandardizedEffect", "SumOfSquaredWeights", "Sigma", "Alpha", "NumberOfGroups", "SampleSize"};
constexpr const char* kPCSizeFields[] = {
    "StandardizedEffect", "SumOfSquaredWeights", "Sigma", "Alpha", "PowerGoal", "NumberOfGroups"};
constexpr const char* kAV1PowerFields[] = {"RMSSE", "Sigma",     "Alpha",    "NumberOfGroups",
                                           "N",     "ModelType", "Algorithm"};
constexpr const char* kAV1SizeFields[] = {"RMSSE",          "Sigma",     "Alpha",    "PowerGoal",
                                          "NumberOfGroups", "ModelType", "Algorithm"};
constexpr const char* kAV2PowerFields[] = {
    "RMSSE_Row", "RMSSE_Col", "RMSSE_Int", "Sigma", "Alpha", "Rows", "Columns", "N", "Algorithm"};
constexpr const char* kAV2SizeFields[] = {"RMSSE_Row", "RMSSE_Col", "RMSSE_Int",
                                          "Sigma",     "Alpha",     "PowerGoal",
                                          "Rows",      "Columns",   "Algorithm"};

constexpr const char* kPCPowerRanges[] = {"EsStart", "EsEnd", "AlphaStart", "AlphaEnd",
                                          "NStart",  "NEnd",  "NInterval"};
constexpr const char* kPCSizeRanges[] = {"EsStart",    "EsEnd",    "AlphaStart", "AlphaEnd",
                                         "PowerStart", "PowerEnd", "NInterval"};
constexpr const char* kPowerRanges[] = {"StartRMSSE", "EndRMSSE", "AlphaStart", "AlphaEnd",
                                        "NStart",     "NEnd",     "NInterval"};
constexpr const char* kSizeRanges[] = {"StartRMSSE", "EndRMSSE", "AlphaStart", "AlphaEnd",
                                       "PowerStart", "PowerEnd", "NInterval"};

constexpr ParameterDialogTable kParameterDialogs[] = {
    {Family::PC, ModePower, kPCPowerFields},   {Family::PC, ModeSampleSize, kPCSizeFields},
    {Family::AV1, ModePower, kAV1PowerFields}, {Family::AV1, ModeSampleSize, kAV1SizeFields},
    {Family::AV2, ModePower, kAV2PowerFields}, {Family::AV2, ModeSampleSize, kAV2SizeFields},
};

constexpr const char* kPCInterval[] = {"TObserved", "SampleSize", "NumberOfGroups",
                                       "SumOfSquaredWeights", "Confidence"};
constexpr const char* kAV1Interval[] = {"FObserved",  "N",         "NumberOfGroups", "Alpha",
                                        "Confidence", "PowerGoal", "ModelType",      "Algorithm"};
constexpr const char* kAV2Interval[] = {"FObserved",  "Rows",         "Columns",
                                        "N",          "EffectToTest", "Alpha",
                                        "Confidence", "PowerGoal",    "Algorithm"};

constexpr IntervalDialogTable kIntervalDialogs[] = {
    {Family::PC, kPCInterval},
    {Family::AV1, kAV1Interval},
    {Family::AV2, kAV2Interval},
};

// --- Plots.

constexpr PlotTexts kRmsseLabel = Only(text::RowRMSSE);

constexpr PlotRow kPCPowerPlots[] = {
    {Along("SampleSize"), chart::PowerVsN, PowerVsSize, NAxis,
     Only(text::PlotPowerVsNEsAlphaGroups, {"StandardizedEffect", "Alpha", "NumberOfGroups"}),
     GroupNLabel, PowerLabel},
    {Along("StandardizedEffect"), chart::PowerVsEs, PowerVsEffect, EsAxis,
     Only(text::PlotPowerVsEsNAlphaGroups, {"SampleSize", "Alpha", "NumberOfGroups"}), EsLabel,
     PowerLabel},
    {Along("Alpha"), chart::PowerVsAlpha, PowerVsAlpha, AlphaAxis,
     Only(text::PlotPowerVsAlphaEsNGroups, {"StandardizedEffect", "SampleSize", "NumberOfGroups"}),
     AlphaLabel, PowerLabel},
};

constexpr PlotRow kPCSizePlots[] = {
    {Along("PowerGoal"), chart::NVsPower, SizeVsPower, PowerAxis,
     Only(text::PlotNVsPowerEsAlphaGroupsSSWeights,
          {"StandardizedEffect", "Alpha", "NumberOfGroups", "SumOfSquaredWeights"}),
     GoalLabel, RequiredNLabel},
    {Along("StandardizedEffect"), chart::NVsEs, SizeVsEffect, EsAxis,
     Only(text::PlotNVsEsAlphaGroupsSSWeights, {"Alpha", "NumberOfGroups", "SumOfSquaredWeights"}),
     EsLabel, RequiredNLabel},
    {Along("Alpha"), chart::NVsAlpha, SizeVsAlpha, AlphaAxis,
     Only(text::PlotNVsAlphaEsGroupsSSWeights,
          {"StandardizedEffect", "NumberOfGroups", "SumOfSquaredWeights"}),
     AlphaLabel, RequiredNLabel},
};

constexpr PlotRow kAV1PowerPlots[] = {
    {Along("N"), chart::PowerVsN, PowerVsSize, NAxis,
     Only(text::PlotPowerVsNRMSSEGroupsAlpha, {"RMSSE", "NumberOfGroups", "Alpha"}), GroupNLabel,
     PowerLabel},
    {Along("RMSSE"), chart::PowerVsRMSSE, PowerVsRmse, RmsseAxis,
     Only(text::PlotPowerVsRMSSEAlphaGroupsN, {"Alpha", "NumberOfGroups", "N"}), kRmsseLabel,
     PowerLabel},
    {Along("Alpha"), chart::PowerVsAlpha, PowerVsAlpha, AlphaAxis,
     Only(text::PlotPowerVsAlphaRMSSEGroupsN, {"RMSSE", "NumberOfGroups", "N"}), AlphaLabel,
     PowerLabel},
};

constexpr PlotRow kAV1SizePlots[] = {
    {Along("RMSSE"), chart::NVsRMSSE, SizeVsRmse, RmsseAxis,
     Only(text::PlotNVsRMSSEAlphaGroupsPower, {"Alpha", "NumberOfGroups", "PowerGoal"}),
     kRmsseLabel, RequiredNLabel},
    {Along("Alpha"), chart::NVsAlpha, SizeVsAlpha, AlphaAxis,
     Only(text::PlotNVsAlphaRMSSEGroupsPower, {"RMSSE", "NumberOfGroups", "PowerGoal"}), AlphaLabel,
     RequiredNLabel},
    {Along("PowerGoal"), chart::NVsPower, SizeVsPower, PowerAxis,
     Only(text::PlotNVsPowerRMSSEGroupsAlpha, {"RMSSE", "NumberOfGroups", "Alpha"}), GoalLabel,
     RequiredNLabel},
};

constexpr std::size_t kEffects = 3;

// What the texts of the two-way plots call an effect.
struct EffectWords {
  const char* rmsse;
  TextId rmsseLabel;
  TextId powerVsN, powerVsRmsse, powerVsAlpha;
  TextId sizeVsPower, sizeVsRmsse, sizeVsAlpha;
};

constexpr EffectWords kEffectWords[kEffects] = {
    {"RMSSE_Row", text::PlotRowEffectRMSSE, text::PlotRowEffectPowerVsNRMSSEAlpha,
     text::PlotRowEffectPowerVsRowEffectRMSSENAlpha, text::PlotRowEffectPowerVsAlphaNRMSSE,
     text::PlotNVsRowEffectPowerRMSSEAlpha, text::PlotNVsRowEffectRMSSEPowerAlpha,
     text::PlotNVsRowEffectAlphaRowEffectPowerAlpha},
    {"RMSSE_Col", text::PlotColumnEffectRMSSE, text::PlotColumnEffectPowerVsNRMSSEAlpha,
     text::PlotColumnEffectPowerVsColumnEffectRMSSENAlpha, text::PlotColumnEffectPowerVsAlphaNRMSSE,
     text::PlotNVsColumnEffectPowerRMSSEAlpha, text::PlotNVsColumnEffectRMSSEPowerAlpha,
     text::PlotNVsColumnEffectAlphaColumnEffectPowerAlpha},
    {"RMSSE_Int", text::PlotInteractionEffectRMSSE, text::PlotInteractionEffectPowerVsNRMSSEAlpha,
     text::PlotInteractionEffectPowerVsInteractionEffectRMSSENAlpha,
     text::PlotInteractionEffectPowerVsAlphaNRMSSE, text::PlotNVsInteractionEffectPowerRMSSEAlpha,
     text::PlotNVsInteractionEffectRMSSEPowerAlpha,
     text::PlotNVsInteractionEffectAlphaInteractionEffectPowerAlpha},
};

// The plots of one effect, in the order of their buttons.
constexpr std::array<PlotRow, kEffects> TwoWayPowerPlots(std::size_t effect) {
  const EffectWords& words = kEffectWords[effect];
  return {{
      {Along("N"), chart::PowerVsN, PowerVsSize, NAxis,
       Only(words.powerVsN, {words.rmsse, "Alpha"}), GroupNLabel, PowerLabel, effect},
      {Along(words.rmsse), chart::PowerVsRMSSE, PowerVsRmse, RmsseAxis,
       Only(words.powerVsRmsse, {"N", "Alpha"}), Only(words.rmsseLabel), PowerLabel, effect},
      {Along("Alpha"), chart::PowerVsAlpha, PowerVsAlpha, AlphaAxis,
       Only(words.powerVsAlpha, {"N", words.rmsse}), AlphaLabel, PowerLabel, effect},
  }};
}

constexpr std::array<PlotRow, kEffects> TwoWaySizePlots(std::size_t effect) {
  const EffectWords& words = kEffectWords[effect];
  return {{
      {Along("PowerGoal"), chart::NVsPower, SizeVsPower, PowerAxis,
       Only(words.sizeVsPower, {words.rmsse, "Alpha"}), GoalLabel, RequiredNLabel, effect},
      {Along(words.rmsse), chart::NVsRMSSE, SizeVsRmse, RmsseAxis,
       Only(words.sizeVsRmsse, {"PowerGoal", "Alpha"}), Only(words.rmsseLabel), RequiredNLabel,
       effect},
      {Along("Alpha"), chart::NVsAlpha, SizeVsAlpha, AlphaAxis,
       Only(words.sizeVsAlpha, {"PowerGoal", "Alpha"}), AlphaLabel, RequiredNLabel, effect},
  }};
}

// Three buttons, each of which draws the row, the column and the interaction effect.
constexpr std::array<PlotRow, kEffects * kEffects> ByButton(
    const std::array<PlotRow, kEffects>& row,
    const std::array<PlotRow, kEffects>& column,
    const std::array<PlotRow, kEffects>& interaction) {
  return {{row[0], column[0], interaction[0], row[1], column[1], interaction[1], row[2], column[2],
           interaction[2]}};
}

constexpr auto kAV2PowerPlots =
    ByButton(TwoWayPowerPlots(0), TwoWayPowerPlots(1), TwoWayPowerPlots(2));
constexpr auto kAV2SizePlots = ByButton(TwoWaySizePlots(0), TwoWaySizePlots(1), TwoWaySizePlots(2));

// --- Results dialogs.

constexpr PlotTexts kPCTitle = Only(text::PlotPlannedContrastH0Psi0);
constexpr PlotTexts kAV2Title = Only(text::Plot2WayXANOVA, {"Rows", "Columns"});

constexpr ResultsDialogTable kResultsDialogs[] = {
    {Family::PC, ModePower, text::CaptionCalculatePower, kPCPowerRanges, kPCPowerPlots, kPCTitle},
    {Family::PC, ModeSampleSize, text::CaptionCalculateN, kPCSizeRanges, kPCSizePlots, kPCTitle},
    {Family::AV1, ModePower, text::CaptionCalculatePower, kPowerRanges, kAV1PowerPlots},
    {Family::AV1, ModeSampleSize, text::CaptionCalculateN, kSizeRanges, kAV1SizePlots},
    {Family::AV2, ModePower, text::CaptionCalculatePower, kPowerRanges, kAV2PowerPlots, kAV2Title},
    {Family::AV2, ModeSampleSize, text::CaptionCalculateN, kSizeRanges, kAV2SizePlots, kAV2Title},
};

}  // namespace

FamilyDialogs AnovaDialogs() { return {kParameterDialogs, kResultsDialogs, kIntervalDialogs}; }

}  // namespace poweranalysis
