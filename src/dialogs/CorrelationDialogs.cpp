#include "dialogs/DialogRows.h"
#include "dialogs/FamilyDialogs.h"
#include "procedures/Correlations.h"
#include "procedures/SquaredCorrelation.h"
#include "procedures/TTests.h"

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

constexpr ParameterDialogTable kParameterDialogs[] = {
    {Family::R, ModePower, kRPowerFields},     {Family::R, ModeSampleSize, kRSizeFields},
    {Family::Z2R, ModePower, kZ2RPowerFields}, {Family::Z2R, ModeSampleSize, kZ2RSizeFields},
    {Family::R2, ModePower, kR2PowerFields},   {Family::R2, ModeSampleSize, kR2SizeFields},
};

// --- One correlation.

struct OneCorrelation {
  RParams record;
  CorrelationCriticalCache criticals{};
};

OneCorrelation DescribeR(const PowerSettings& block) { return {block.R.Committed}; }

double RPower(ProcedureObserver& observer, OneCorrelation& design) {
  const RParams& p = design.record;
  return TrialPower(observer, [&](Refusal& refusal) {
    int status = 0;
    return CorrelationPower({p.SampleSize, p.Alpha, p.Rho0, p.Algorithm, p.H0Type}, p.Rho, status,
                            refusal, design.criticals);
  });
}

// A search that went on with the refined approximation has an answer, and has said so.
SearchResult RRequiredN(ProcedureObserver& observer, OneCorrelation& design) {
  const RParams& p = design.record;
  SearchResult found =
      CorrelationRequiredN({p.Rho, p.Rho0, p.Alpha, p.PowerGoal, p.Algorithm, p.H0Type}, observer);
  if (found.status == CorrelationSwitched) {
    found.status = SearchOk;
  }
  return found;
}

// --- Two correlations.

struct TwoCorrelations {
  Z2RParams record;
};

TwoCorrelations DescribeZ2R(const PowerSettings& block) { return {block.Z2R.Committed}; }

double Z2RPower(ProcedureObserver& observer, TwoCorrelations& design) {
  const Z2RParams& p = design.record;
  return TrialPower(observer, [&](Refusal& refusal) {
    return TwoCorrelationsPower(p.Rho1, p.Rho2, p.SampleSizeN1, p.SampleSizeN2, p.Alpha, p.H0Type,
                                p.Algorithm, refusal);
  });
}

SearchResult Z2RRequiredN(ProcedureObserver& observer, TwoCorrelations& design) {
  const Z2RParams& p = design.record;
  return TwoCorrelationsRequiredN({p.Rho1, p.Rho2, p.Alpha, p.PowerGoal, p.SampleSizeN1,
                                   p.SampleSizeN2, p.H0Type, p.Algorithm, p.NToVary},
                                  observer);
}

// A plot leaves out a point that the fixed group is too small for, without a word.
SearchResult Z2RPlottedN(ProcedureObserver& observer, TwoCorrelations& design) {
  SearchResult found = Z2RRequiredN(observer, design);
  if (found.refusal.text == Said::IncreaseN1 || found.refusal.text == Said::IncreaseN2) {
    found.refusal = {};
  }
  return found;
}

void VaryBothN(TwoCorrelations& design, double x) {
  Vary<&Z2RParams::SampleSizeN1>(design, x);
  design.record.SampleSizeN2 = design.record.SampleSizeN1;
}

// The table shows both groups, the fixed one as it is.
CalculationOutcome CalculateZ2RSize(ProcedureObserver& observer, const PowerSettings& block) {
  const Z2RParams& p = block.Z2R.Committed;
  CalculationOutcome outcome = CalculateSize<DescribeZ2R, Z2RRequiredN>(observer, block);
  auto& sizes = outcome.computed.size;
  const std::int64_t found = sizes[0];
  sizes[0] = p.NToVary == NToVaryN2 ? p.SampleSizeN1 : found;
  sizes[1] = p.NToVary == NToVaryN1 ? p.SampleSizeN2 : found;
  return outcome;
}

// --- Squared multiple correlation.

struct SquaredCorrelation {
  R2Params record;
  SquaredCorrelationCriticalCache criticals{};
};

SquaredCorrelation DescribeR2(const PowerSettings& block) { return {block.R2.Committed}; }

double R2Power(ProcedureObserver& observer, SquaredCorrelation& design) {
  const R2Params& p = design.record;
  return TrialPower(observer, [&](Refusal& refusal) {
    int err = 0;
    return SquaredCorrelationPower(
        {p.SampleSize, p.TotalNumberOfVars, p.Alpha, p.R2Null, p.Algorithm, p.H0Type},
        p.PopulationR2, err, refusal, design.criticals, observer);
  });
}

SearchResult R2RequiredN(ProcedureObserver& observer, SquaredCorrelation& design) {
  const R2Params& p = design.record;
  return SquaredCorrelationRequiredN(
      {p.PopulationR2, p.R2Null, p.Alpha, p.PowerGoal, p.TotalNumberOfVars, p.Algorithm, p.H0Type},
      observer);
}

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

template <auto vary>
constexpr PlotRow RPowerPlot(const PlotWords& words) {
  return Plot<DescribeR, RPower, vary>(words);
}
template <auto vary>
constexpr PlotRow RSizePlot(const PlotWords& words) {
  return Plot<DescribeR, SizeOf<RRequiredN, OneCorrelation>, vary>(words);
}
template <auto vary>
constexpr PlotRow Z2RPowerPlot(const PlotWords& words) {
  return Plot<DescribeZ2R, Z2RPower, vary>(words);
}
template <auto vary>
constexpr PlotRow Z2RSizePlot(const PlotWords& words) {
  return Plot<DescribeZ2R, SizeOf<Z2RPlottedN, TwoCorrelations>, vary>(words);
}
template <auto vary>
constexpr PlotRow R2PowerPlot(const PlotWords& words) {
  return Plot<DescribeR2, R2Power, vary>(words);
}
template <auto vary>
constexpr PlotRow R2SizePlot(const PlotWords& words) {
  return Plot<DescribeR2, SizeOf<R2RequiredN, SquaredCorrelation>, vary>(words);
}

constexpr PlotRow kRPowerPlots[] = {
    RPowerPlot<&RParams::SampleSize>(
        {text::PlotPowerVsN, PowerVsSize, NAxis,
         Only(text::PlotRhoAlpha, {text::PlotPowerVsN, "Rho", "Alpha"}), GroupNLabel,
         kAlgorithmPowerLabel, true}),
    RPowerPlot<&RParams::Rho>(
        {text::PlotPowerVsRho, PowerVsRho, kRhoAxis,
         Only(text::PlotAlphaN, {text::PlotPowerVsRho, "Alpha", "SampleSize"}), kRhoLabel,
         kAlgorithmPowerLabel, false}),
    RPowerPlot<&RParams::Alpha>(
        {text::PlotPowerVsAlpha, PowerVsAlpha, AlphaAxis,
         Only(text::PlotRhoN, {text::PlotPowerVsAlpha, "Rho", "SampleSize"}), AlphaLabel,
         kAlgorithmPowerLabel, true}),
};

constexpr PlotRow kRSizePlots[] = {
    RSizePlot<&RParams::PowerGoal>({text::PlotNVsPower, SizeVsPower, PowerAxis,
                                    Only(text::PlotNVsPowerAlphaPopulationRho, {"Alpha", "Rho"}),
                                    GoalLabel, kAlgorithmSizeLabel, true}),
    RSizePlot<&RParams::Rho>({text::ButtonNVsRho, SizeVsRho, kRhoAxis,
                              Only(text::PlotNVsRhoPowerAlpha, {"PowerGoal", "Alpha"}), kRhoLabel,
                              kAlgorithmSizeLabel, false}),
    RSizePlot<&RParams::Alpha>({text::PlotNVsAlpha, SizeVsAlpha, AlphaAxis,
                                Only(text::PlotNVsAlphaPowerPopulationRho, {"PowerGoal", "Rho"}),
                                AlphaLabel, kAlgorithmSizeLabel, true}),
};

// The title of a plot of power along a size, by the name of its button.
constexpr PlotTexts Z2RVsSize(TextId caption) {
  return Only(text::PlotRho1Rho2Alpha, {caption, "Rho1", "Rho2", "Alpha"});
}

constexpr PlotRow kZ2RPowerPlots[] = {
    Z2RPowerPlot<VaryBothN>({text::PlotPowerVsN, PowerVsSize, NAxis, Z2RVsSize(text::PlotPowerVsN),
                             Only(text::PlotSampleSizeForEachGroupN1N2), kAlgorithmPowerLabel,
                             true}),
    Z2RPowerPlot<&Z2RParams::SampleSizeN1>(
        {text::ButtonPowerVsN1, PowerVsSize, NAxis, Z2RVsSize(text::ButtonPowerVsN1),
         Only(text::PlotSampleSizeN1N2FixedAt, {"SampleSizeN2"}), kAlgorithmPowerLabel, true}),
    Z2RPowerPlot<&Z2RParams::SampleSizeN2>(
        {text::ButtonPowerVsN2, PowerVsSize, NAxis, Z2RVsSize(text::ButtonPowerVsN2),
         Only(text::PlotSampleSizeN2N1FixedAt, {"SampleSizeN1"}), kAlgorithmPowerLabel, true}),
    Z2RPowerPlot<&Z2RParams::Rho1>(
        {text::PlotPowerVsRho, PowerVsRho, kRhoAxis,
         Only(text::PlotN1N2, {text::PlotPowerVsRho, "SampleSizeN1", "SampleSizeN2"}),
         Only(text::PlotPopulationCorrelationRho1Rho2FixedAt, {"Rho2"}), kAlgorithmPowerLabel,
         false}),
    Z2RPowerPlot<&Z2RParams::Alpha>(
        {text::PlotPowerVsAlpha, PowerVsAlpha, AlphaAxis,
         Only(text::PlotRho1Rho2N1N2,
              {text::PlotPowerVsAlpha, "Rho1", "Rho2", "SampleSizeN1", "SampleSizeN2"}),
         AlphaLabel, kAlgorithmPowerLabel, true}),
};

constexpr PlotTexts kZ2RSizeLabel = {"NToVary",
                                     {{{text::PlotSampleSizeN1N2, {}},
                                       {text::PlotSampleSizeN1N22, {"SampleSizeN2"}},
                                       {text::PlotSampleSizeN2N1, {"SampleSizeN1"}}}}};
constexpr std::array<Slot, 6> kAlphaAndRhos = {"Alpha", "Rho1", "Rho2"};
constexpr std::array<Slot, 6> kGoalAndRhos = {"PowerGoal", "Rho1", "Rho2"};

constexpr PlotRow kZ2RSizePlots[] = {
    Z2RSizePlot<&Z2RParams::PowerGoal>({text::PlotNVsPower,
                                        SizeVsPower,
                                        PowerAxis,
                                        {"NToVary",
                                         {{{text::PlotNVsPowerGoalAlphaRho1Rho2, kAlphaAndRhos},
                                           {text::PlotN1VsPowerGoalAlphaRho1Rho2, kAlphaAndRhos},
                                           {text::PlotN2VsPowerGoalAlphaRho1Rho2, kAlphaAndRhos}}}},
                                        GoalLabel,
                                        kZ2RSizeLabel,
                                        true}),
    Z2RSizePlot<&Z2RParams::Rho1>(
        {text::ButtonNVsRho,
         SizeVsRho,
         kRhoAxis,
         {"NToVary",
          {{{text::PlotNVsRho1PowerAlphaRho2, {"PowerGoal", "Alpha", "Rho2"}},
            {text::PlotN1VsRho1PowerRho1Rho2, kGoalAndRhos},
            {text::PlotN2VsRho1PowerRho1Rho2, kGoalAndRhos}}}},
         Only(text::PlotGroup1PopulationCorrelationRho1),
         kZ2RSizeLabel,
         false}),
    Z2RSizePlot<&Z2RParams::Alpha>({text::PlotNVsAlpha,
                                    SizeVsAlpha,
                                    AlphaAxis,
                                    {"NToVary",
                                     {{{text::PlotNVsAlphaPowerRho1Rho2, kGoalAndRhos},
                                       {text::PlotN1VsAlphaPowerRho1Rho2, kGoalAndRhos},
                                       {text::PlotN2VsAlphaPowerRho1Rho2, kGoalAndRhos}}}},
                                    AlphaLabel,
                                    kZ2RSizeLabel,
                                    true}),
};

constexpr PlotRow kR2PowerPlots[] = {
    R2PowerPlot<&R2Params::SampleSize>(
        {text::PlotPowerVsN, PowerVsSize, NAxis,
         Only(text::PlotPowerVsNRho2AlphaK, {"PopulationR2", "Alpha", "TotalNumberOfVars"}),
         GroupNLabel, PowerLabel, true}),
    R2PowerPlot<&R2Params::PopulationR2>(
        {text::ButtonPowerVsP2, PowerVsSquaredRho, kR2Axis,
         Only(text::PlotPowerVsP2AlphaNK, {"Alpha", "SampleSize", "TotalNumberOfVars"}), kR2Label,
         PowerLabel, false}),
    R2PowerPlot<&R2Params::Alpha>(
        {text::PlotPowerVsAlpha, PowerVsAlpha, AlphaAxis,
         Only(text::PlotPowerVsAlphaRho2NK, {"PopulationR2", "SampleSize", "TotalNumberOfVars"}),
         AlphaLabel, PowerLabel, true}),
};

constexpr PlotRow kR2SizePlots[] = {
    R2SizePlot<&R2Params::PopulationR2>(
        {text::ButtonNVsP2, SizeVsSquaredRho, kR2Axis,
         Only(text::PlotNVsP2PowerAlphaK, {"PowerGoal", "Alpha", "TotalNumberOfVars"}), kR2Label,
         RequiredNLabel, false}),
    R2SizePlot<&R2Params::Alpha>(
        {text::PlotNVsAlpha, SizeVsAlpha, AlphaAxis,
         Only(text::PlotNVsAlphaP2PowerK, {"PopulationR2", "PowerGoal", "TotalNumberOfVars"}),
         AlphaLabel, RequiredNLabel, true}),
    R2SizePlot<&R2Params::PowerGoal>(
        {text::PlotNVsPower, SizeVsPower, PowerAxis,
         Only(text::PlotNVsPowerP2AlphaK, {"PopulationR2", "Alpha", "TotalNumberOfVars"}),
         GoalLabel, RequiredNLabel, true}),
};

// --- Results dialogs.

double REffectOf(const RecordView& record) {
  const auto& p = *static_cast<const RParams*>(record.record());
  return p.Rho - p.Rho0;
}

double Z2REffectOf(const RecordView& record) {
  const auto& p = *static_cast<const Z2RParams*>(record.record());
  return p.Rho1 - p.Rho2;
}

// The search goes by the scale of Fisher's z.
double Z2RSearchEffectOf(const RecordView& record) {
  const auto& p = *static_cast<const Z2RParams*>(record.record());
  return FisherZ(p.Rho1) - FisherZ(p.Rho2);
}

double R2EffectOf(const RecordView& record) {
  const auto& p = *static_cast<const R2Params*>(record.record());
  return p.PopulationR2 - p.R2Null;
}

constexpr Slot kR2Hypothesis = {
    "H0Type",
    {text::CaptionH0P2, text::CaptionH0P2AtMost, text::CaptionH0P2AtLeast, text::CaptionH0P22}};
constexpr PlotTexts kR2Title =
    Only(text::PlotSquaredMultipleCorrelation, {kR2Hypothesis, "R2Null"});

constexpr ResultsDialogTable kResultsDialogs[] = {
    {Family::R,
     ModePower,
     144,
     text::CaptionCalculatePower,
     kRPowerRanges,
     {REffectOf, CorrelationTolerance, false},
     CalculatePower<DescribeR, RPower>,
     kRPowerPlots},
    {Family::R,
     ModeSampleSize,
     145,
     text::CaptionCalculateN,
     kRSizeRanges,
     {REffectOf, CorrelationTolerance, true},
     CalculateSize<DescribeR, RRequiredN>,
     kRSizePlots},
    {Family::Z2R,
     ModePower,
     176,
     text::CaptionCalculatePower,
     kRPowerRanges,
     {Z2REffectOf, CorrelationTolerance, false},
     CalculatePower<DescribeZ2R, Z2RPower>,
     kZ2RPowerPlots},
    {Family::Z2R,
     ModeSampleSize,
     177,
     text::CaptionCalculateN,
     kZ2RSizeRanges,
     {Z2RSearchEffectOf, CorrelationTolerance, true},
     CalculateZ2RSize,
     kZ2RSizePlots},
    {Family::R2,
     ModePower,
     160,
     text::CaptionCalculatePower,
     kR2PowerRanges,
     {R2EffectOf, SquaredCorrelationTolerance, false},
     CalculatePower<DescribeR2, R2Power>,
     kR2PowerPlots,
     kR2Title},
    {Family::R2,
     ModeSampleSize,
     161,
     text::CaptionCalculateN,
     kR2SizeRanges,
     {R2EffectOf, BracketBisectTolerance, true},
     CalculateSize<DescribeR2, R2RequiredN>,
     kR2SizePlots,
     kR2Title},
};

}  // namespace

FamilyDialogs CorrelationDialogs() { return {kParameterDialogs, kResultsDialogs}; }

}  // namespace poweranalysis
