#include "dialogs/FamilyDialogs.h"

#include "dialogs/DialogRows.h"
#include "procedures/Variances.h"

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

// Kept: the range of DfToVary holds a 2 that no button offers and no search serves; only a settings
// file can bring it.
bool DfToVaryIsServed(WindowHandle parent, PowerSettings& block) {
  const Field& field = *TableOf(Family::V2).Find("DfToVary");
  KeyEntry entry = FillKeys(block, Family::V2).entries[static_cast<std::size_t>(field.place)];
  i16 last = DfToVaryDf1;
  entry.upper = &last;
  return CheckRanges(parent, std::span<const KeyEntry>(&entry, 1)) != 0;
}

constexpr ParameterDialogTable kParameterDialogs[] = {
    {Family::V1, ModePower, kV1PowerFields},
    {Family::V1, ModeSampleSize, kV1SizeFields},
    {Family::V2, ModePower, kV2PowerFields},
    {Family::V2, ModeSampleSize, kV2SizeFields, DfToVaryIsServed},
};

// --- Designs.

struct V1Design {
  V1Params record;
  std::int64_t sizeLimit = 0;
  CriticalChiSquareCache criticals{};
};

V1Design DescribeV1(const PowerSettings& block) {
  return {block.V1.Committed, block.V1.Upper.DegreesOfFreedom};
}

double V1Power(ProcedureObserver& observer, V1Design& design) {
  const V1Params& p = design.record;
  return TrialPower(observer, [&](Refusal& refusal) {
    int err = 0;
    return ChiSquareVariancePower(p.Alpha, p.DegreesOfFreedom, p.PopulationVariance,
                                  p.NullHypothesizedVariance, p.H0Type, err, refusal,
                                  design.criticals);
  });
}

SearchResult V1RequiredDf(ProcedureObserver& observer, V1Design& design) {
  const V1Params& p = design.record;
  return OneVarianceRequiredDf({p.PopulationVariance, p.NullHypothesizedVariance, p.Alpha,
                                p.PowerGoal, p.H0Type, design.sizeLimit},
                               design.criticals, observer);
}

// The tests of two variances know them by their ratio alone.
struct V2Design {
  V2Params record;
  std::int64_t sizeLimit = 0;
  CriticalFCache criticals{};
};

V2Design DescribeV2Power(const PowerSettings& block) {
  V2Design design{block.V2.Committed, block.V2.Upper.Df1};
  design.record.Ratio = design.record.Var1 / design.record.Var2;
  return design;
}

V2Design DescribeV2Size(const PowerSettings& block) {
  return {block.V2.Committed, block.V2.Upper.Df1};
}

double V2Power(ProcedureObserver& observer, V2Design& design) {
  const V2Params& p = design.record;
  return TrialPower(observer, [&](Refusal& refusal) {
    int err = 0;
    return TwoVariancePower(p.Ratio, p.Alpha, p.Df1, p.Df2, p.H0Type, err, p.Algorithm, refusal,
                            design.criticals);
  });
}

SearchResult V2RequiredDf(ProcedureObserver& observer, V2Design& design) {
  const V2Params& p = design.record;
  return TwoVariancesRequiredDf(
      {p.Ratio, p.Alpha, p.PowerGoal, p.H0Type, p.DfToVary, p.Df2, p.Algorithm, design.sizeLimit},
      design.criticals, observer);
}

void VaryBothDf(V2Design& design, double x) {
  Vary<&V2Params::Df1>(design, x);
  design.record.Df2 = design.record.Df1;
}

// --- Calculations.

CalculationOutcome CalculateV2Size(ProcedureObserver& observer, const PowerSettings& block) {
  const V2Params& p = block.V2.Committed;
  CalculationOutcome outcome = CalculateSize<DescribeV2Size, V2RequiredDf>(observer, block);
  outcome.computed.size[1] = p.DfToVary == DfToVaryBoth ? outcome.computed.size[0] : p.Df2;
  return outcome;
}

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

template <auto vary>
constexpr PlotRow V1PowerPlot(const PlotWords& words) {
  return Plot<DescribeV1, V1Power, vary>(words);
}
template <auto vary>
constexpr PlotRow V1SizePlot(const PlotWords& words) {
  return Plot<DescribeV1, SizeOf<V1RequiredDf, V1Design>, vary>(words);
}
template <auto vary>
constexpr PlotRow V2PowerPlot(const PlotWords& words) {
  return Plot<DescribeV2Power, V2Power, vary>(words);
}
template <auto vary>
constexpr PlotRow V2SizePlot(const PlotWords& words) {
  return Plot<DescribeV2Size, SizeOf<V2RequiredDf, V2Design>, vary>(words);
}

constexpr PlotRow kV1PowerPlots[] = {
    V1PowerPlot<&V1Params::DegreesOfFreedom>(
        {text::ButtonPowerVsDf, PowerVsDf, kDfAxis,
         Only(text::PlotPowerVsDfPopulationVarianceAlpha, {"PopulationVariance", "Alpha"}),
         kDfLabel, PowerLabel, true}),
    V1PowerPlot<&V1Params::PopulationVariance>(
        {text::ButtonPowerVsVariance, PowerVsVariance, kVarianceAxis,
         Only(text::PlotPowerVsPopulationVarianceAlphaDf, {"Alpha", "DegreesOfFreedom"}),
         kVarianceLabel, PowerLabel, false}),
    V1PowerPlot<&V1Params::Alpha>({text::PlotPowerVsAlpha, PowerVsAlpha, kAlphaAxis,
                                   Only(text::PlotPowerVsAlphaPopulationVarianceDf,
                                        {"PopulationVariance", "DegreesOfFreedom"}),
                                   AlphaLabel, PowerLabel, true}),
};

constexpr PlotRow kV1SizePlots[] = {
    V1SizePlot<&V1Params::PopulationVariance>(
        {text::ButtonDfVsVariance, DfVsVariance, kVarianceAxis,
         Only(text::PlotDfVsPopulationVariancePowerAlpha, {"PowerGoal", "Alpha"}), kVarianceLabel,
         kRequiredDfLabel, false}),
    V1SizePlot<&V1Params::Alpha>(
        {text::ButtonDfVsAlpha, SizeVsAlpha, kAlphaAxis,
         Only(text::PlotDfVsAlphaPopulationVarianceAlpha, {"PopulationVariance", "Alpha"}),
         AlphaLabel, kRequiredDfLabel, true}),
    V1SizePlot<&V1Params::PowerGoal>(
        {text::ButtonDfVsPower, SizeVsPower, kGoalAxis,
         Only(text::PlotDfVsPowerPopulationVarianceAlpha, {"PopulationVariance", "Alpha"}),
         GoalLabel, kRequiredDfLabel, true}),
};

// One title serves the three plots along degrees of freedom; their axes tell them apart.
constexpr PlotTexts kV2VsDf = Only(text::PlotPowerVsDfVar1Var2Alpha, {"Var1", "Var2", "Alpha"});

constexpr PlotRow kV2PowerPlots[] = {
    V2PowerPlot<&V2Params::Alpha>(
        {text::PlotPowerVsAlpha, PowerVsAlpha, kAlphaAxis,
         Only(text::PlotPowerVsAlphaVar1Var2Df1Df2, {"Var1", "Var2", "Df1", "Df2"}), AlphaLabel,
         PowerLabel, true}),
    V2PowerPlot<VaryBothDf>({text::ButtonPowerVsDf, PowerVsDf, kDfAxis, kV2VsDf,
                             Only(text::PlotDegreesOfFreedomDf1Df2), PowerLabel, true}),
    V2PowerPlot<&V2Params::Df1>({text::ButtonPowerVsDf1, PowerVsDf, kDfAxis, kV2VsDf,
                                 Only(text::PlotDegreesOfFreedomDf1Df22, {"Df2"}), PowerLabel,
                                 true}),
    V2PowerPlot<&V2Params::Df2>({text::ButtonPowerVsDf2, PowerVsDf, kDfAxis, kV2VsDf,
                                 Only(text::PlotDegreesOfFreedomDf2Df1, {"Df1"}), PowerLabel,
                                 true}),
    V2PowerPlot<&V2Params::Ratio>(
        {text::ButtonPowerVsRatio, PowerVsVarianceRatio, kRatioAxis,
         Only(text::PlotPowerVsVarianceRatioDf1Df2Alpha, {"Df1", "Df2", "Alpha"}),
         Only(text::PlotVarianceRatioVar1Var2), PowerLabel, false}),
};

constexpr PlotRow kV2SizePlots[] = {
    V2SizePlot<&V2Params::Alpha>({text::ButtonDfVsAlpha, SizeVsAlpha, kAlphaAxis,
                                  Only(text::PlotDfVsAlphaVar1Var2Power, {"Ratio", "PowerGoal"}),
                                  AlphaLabel, kV2DfLabel, true}),
    V2SizePlot<&V2Params::PowerGoal>({text::ButtonDfVsPower, SizeVsPower, kGoalAxis,
                                      Only(text::PlotDfVsPowerVar1Var2Alpha, {"Ratio", "Alpha"}),
                                      GoalLabel, kV2DfLabel, true}),
    V2SizePlot<&V2Params::Ratio>(
        {text::ButtonDfVsRatio, DfVsVarianceRatio, kRatioAxis,
         Only(text::PlotDfVsVarianceRatioAlphaPower, {"Alpha", "PowerGoal"}),
         Only(text::PlotPopulationVarianceRatioVar1Var2), kV2DfLabel, false}),
};

// --- Results dialogs.

double V1EffectOf(const RecordView& record) {
  const auto& p = *static_cast<const V1Params*>(record.record());
  return VarianceEffect(p.PopulationVariance, p.NullHypothesizedVariance);
}

double V2EffectOf(const RecordView& record) {
  const auto& p = *static_cast<const V2Params*>(record.record());
  return VarianceEffect(p.Var1, p.Var2);
}

double V2RatioEffectOf(const RecordView& record) {
  return static_cast<const V2Params*>(record.record())->Ratio - 1;
}

constexpr PlotTexts kV1Title =
    Only(text::PlotDetail,
         {text::HeadingOneVarianceChiSquareTest,
          {"H0Type", {text::H0VarEqual, text::H0VarAtMost, text::H0VarAtLeast}},
          "NullHypothesizedVariance"});

constexpr double kV1Tolerance = PolicyOf(SearchMember::OneVariance).nullTolerance;
constexpr double kV2Tolerance = PolicyOf(SearchMember::TwoVariances).nullTolerance;

constexpr ResultsDialogTable kResultsDialogs[] = {
    {Family::V1,
     ModePower,
     112,
     text::CaptionCalculatePower,
     kV1PowerRanges,
     {V1EffectOf, kV1Tolerance, false},
     CalculatePower<DescribeV1, V1Power>,
     kV1PowerPlots,
     kV1Title},
    {Family::V1,
     ModeSampleSize,
     113,
     text::CaptionCalculateN,
     kV1SizeRanges,
     {V1EffectOf, kV1Tolerance, true},
     CalculateSize<DescribeV1, V1RequiredDf>,
     kV1SizePlots,
     kV1Title},
    {Family::V2,
     ModePower,
     128,
     text::CaptionCalculatePower,
     kV2PowerRanges,
     {V2EffectOf, kV2Tolerance, false},
     CalculatePower<DescribeV2Power, V2Power>,
     kV2PowerPlots},
    {Family::V2,
     ModeSampleSize,
     129,
     text::CaptionCalculateN,
     kV2SizeRanges,
     {V2RatioEffectOf, kV2Tolerance, true},
     CalculateV2Size,
     kV2SizePlots,
     {},
     DfToVaryIsServed},
};

}  // namespace

FamilyDialogs VarianceDialogs() { return {kParameterDialogs, kResultsDialogs}; }

}  // namespace poweranalysis
