#include <cmath>

#include "dialogs/DialogRows.h"
#include "dialogs/FamilyDialogs.h"
#include "procedures/OneProportion.h"
#include "procedures/TwoProportions.h"

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

bool EtaSuffices(WindowHandle parent, PowerSettings& block) {
  const QMACParams& p = block.QMAC.Working;
  return McNemarParameterCheck(parent, p.Delta, p.Eta) == 0;
}

constexpr ParameterDialogTable kParameterDialogs[] = {
    {Family::P1, ModePower, kP1PowerFields},
    {Family::P1, ModeSampleSize, kP1SizeFields},
    {Family::P2, ModePower, kP2PowerFields},
    {Family::P2, ModeSampleSize, kP2SizeFields},
    {Family::QMAC, ModePower, kQMACPowerFields, EtaSuffices},
    {Family::QMAC, ModeSampleSize, kQMACSizeFields, EtaSuffices},
};

// --- One proportion.

struct OneProportion {
  P1Params record;
};

OneProportion DescribeP1(const PowerSettings& block) { return {block.P1.Committed}; }

OneProportionTest TestOf(const P1Params& p) { return {p.Pi, p.Pi0, p.Alpha, p.H0Type}; }

// A point of a plot checks the null hypothesis itself and follows the algorithm of the record.
double P1Power(WindowHandle parent, OneProportion& design) {
  constexpr std::int16_t kCheckNull = 1;
  const P1Params& p = design.record;
  int err = 0;
  return OneProportionPower(parent, p.SampleSize, TestOf(p), err, p.Algorithm, kCheckNull);
}

std::int64_t P1Size(WindowHandle parent, OneProportion& design) {
  const P1Params& p = design.record;
  int err = 0;
  return OneProportionRequiredN(parent, p.PowerGoal, TestOf(p), err, p.Algorithm);
}

// Both tests at one size: the exact one with the type I error rate that it really has, and the
// normal one.
void AddPowers(WindowHandle parent, const P1Params& p, std::int64_t n, Computed& computed) {
  constexpr std::int16_t kChecked = 0;  // the dialog has done so
  int err = 0;
  const OneProportionTest test = TestOf(p);
  OneProportionTest underNull = test;
  underNull.pi = test.pi0;
  computed.power[0] = OneProportionPower(parent, n, test, err, ProportionExact, kChecked);
  computed.actualAlpha = OneProportionPower(parent, n, underNull, err, ProportionExact, kChecked);
  computed.normalPower = OneProportionPower(parent, n, test, err, ProportionNormal, kChecked);
}

CalculationOutcome CalculateP1Power(WindowHandle parent, const PowerSettings& block) {
  const P1Params& p = block.P1.Committed;
  CalculationOutcome outcome;
  outcome.good = true;
  AddPowers(parent, p, p.SampleSize, outcome.computed);
  return outcome;
}

CalculationOutcome CalculateP1Size(WindowHandle parent, const PowerSettings& block) {
  OneProportion design = DescribeP1(block);
  CalculationOutcome outcome;
  const std::int64_t n = P1Size(parent, design);
  outcome.good = n != SizeFailure;
  outcome.computed.size[0] = n;
  if (outcome.good) {
    AddPowers(parent, design.record, n, outcome.computed);
  }
  return outcome;
}

// --- Two proportions.

struct TwoProportions {
  P2Params record;
};

TwoProportions DescribeP2(const PowerSettings& block) { return {block.P2.Committed}; }

TwoProportionTest TestOf(const P2Params& p) {
  return {p.Pi1, p.Pi2, p.Alpha, p.H0Type, p.Continuity};
}

double P2Power(WindowHandle parent, TwoProportions& design) {
  const P2Params& p = design.record;
  int err = 0;
  return TwoProportionPower(TestOf(p), p.SampleSizeN1, p.SampleSizeN2, err, parent);
}

// The groups that a search finds, and the power at them; `err` as TwoProportionRequiredN.
struct FoundGroups {
  GroupSizes groups;
  double power = NumericFailure;
  bool found = false;
  int err = 0;
};

FoundGroups P2Groups(WindowHandle parent, const P2Params& p) {
  FoundGroups result;
  result.groups = {p.SampleSizeN1, p.SampleSizeN2};
  result.found = TwoProportionRequiredN({TestOf(p), p.PowerGoal, p.NToVary, p.Ratio, parent},
                                        result.groups, result.power, result.err) != SizeFailure;
  return result;
}

// The size that the label of the axis names: of the group that is sought, and of group 2 where
// group 1 follows from it.
std::int64_t P2Size(WindowHandle parent, TwoProportions& design) {
  const FoundGroups result = P2Groups(parent, design.record);
  const bool second = design.record.NToVary == NToVaryN2 || design.record.NToVary == NToVaryRatio;
  return !result.found ? SizeFailure : second ? result.groups.n2 : result.groups.n1;
}

void VaryBothN(TwoProportions& design, double x) {
  Vary<&P2Params::SampleSizeN1>(design, x);
  design.record.SampleSizeN2 = design.record.SampleSizeN1;
}

CalculationOutcome CalculateP2Size(WindowHandle parent, const PowerSettings& block) {
  const FoundGroups result = P2Groups(parent, block.P2.Committed);
  CalculationOutcome outcome;
  outcome.good = result.found;
  outcome.computed.power[0] = result.power;
  outcome.computed.size[0] = result.groups.n1;
  outcome.computed.size[1] = result.groups.n2;
  if (!result.found && result.err == 0) {
    ShowMessage(MessageStopIcon, parent, text::SelectedGroupNotFound);
  }
  return outcome;
}

// --- McNemar's test.

struct PairedProportions {
  QMACParams record;
};

PairedProportions DescribeQMAC(const PowerSettings& block) { return {block.QMAC.Committed}; }

McNemarTest TestOf(const QMACParams& p) { return {p.Delta, p.Eta, p.Alpha, p.H0Type}; }

double QMACPower(WindowHandle parent, PairedProportions& design) {
  const QMACParams& p = design.record;
  int err = 0;
  return McNemarPower(parent, TestOf(p), p.SampleSize, err);
}

SearchResult QMACRequiredN(WindowHandle parent, PairedProportions& design, bool) {
  const QMACParams& p = design.record;
  int err = 0;
  const double n = McNemarRequiredN(parent, TestOf(p), p.PowerGoal, err);
  SearchResult found;
  found.status = SearchNullTrue;
  if (n != NumericFailure) {
    found = {static_cast<std::int64_t>(n), McNemarPower(parent, TestOf(p), n, err), SearchOk};
  }
  return found;
}

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

// Kept: the plot of one proportion ends with the first point that fails.
template <auto vary>
constexpr PlotRow P1PowerPlot(const PlotWords& words) {
  return Plot<DescribeP1, P1Power, vary>(words, FailedPointRule::KeepAndStop);
}
template <auto vary>
constexpr PlotRow P1SizePlot(const PlotWords& words) {
  return Plot<DescribeP1, P1Size, vary>(words, FailedPointRule::KeepAndStop);
}
template <auto vary>
constexpr PlotRow P2PowerPlot(const PlotWords& words) {
  return Plot<DescribeP2, P2Power, vary>(words);
}
template <auto vary>
constexpr PlotRow P2SizePlot(const PlotWords& words) {
  return Plot<DescribeP2, P2Size, vary>(words);
}
template <auto vary>
constexpr PlotRow QMACPowerPlot(const PlotWords& words) {
  return Plot<DescribeQMAC, QMACPower, vary>(words);
}
template <auto vary>
constexpr PlotRow QMACSizePlot(const PlotWords& words) {
  return Plot<DescribeQMAC, SizeOf<QMACRequiredN, PairedProportions>, vary>(words);
}

constexpr PlotRow kP1PowerPlots[] = {
    P1PowerPlot<&P1Params::SampleSize>(
        {text::PlotPowerVsN, PowerVsSize, NAxis,
         Only(text::PlotPiPi0Alpha, {text::PlotPowerVsN, "Pi", "Pi0", "Alpha"}), GroupNLabel,
         kP1PowerLabel, true}),
    P1PowerPlot<&P1Params::Alpha>(
        {text::PlotPowerVsAlpha, PowerVsAlpha, AlphaAxis,
         Only(text::PlotPiPi0N, {text::PlotPowerVsAlpha, "Pi", "Pi0", "SampleSize"}), AlphaLabel,
         kP1PowerLabel, true}),
    P1PowerPlot<&P1Params::Pi>(
        {text::PlotPowerVsPi, PowerVsPi, kPiAxis,
         Only(text::PlotPi0NAlpha, {text::PlotPowerVsPi, "Pi0", "SampleSize", "Alpha"}), kPiLabel,
         kP1PowerLabel, false}),
};

constexpr PlotRow kP1SizePlots[] = {
    P1SizePlot<&P1Params::PowerGoal>(
        {text::PlotNVsPower, SizeVsPower, PowerAxis,
         Only(text::PlotPiPi0Alpha, {text::PlotNVsPower, "Pi", "Pi0", "Alpha"}), GoalLabel,
         kP1SizeLabel, true}),
    P1SizePlot<&P1Params::Alpha>(
        {text::PlotNVsAlpha, SizeVsAlpha, AlphaAxis,
         Only(text::PlotPiPi0PowerGoal, {text::PlotNVsAlpha, "Pi", "Pi0", "PowerGoal"}), AlphaLabel,
         kP1SizeLabel, true}),
    P1SizePlot<&P1Params::Pi>(
        {text::PlotNVsPi, SizeVsPi, kPiAxis,
         Only(text::PlotAlphaPi0Power, {text::PlotNVsPi, "Alpha", "Pi0", "PowerGoal"}), kPiLabel,
         kP1SizeLabel, false}),
};

constexpr PlotTexts kP2PowerLabel = Only(text::PlotPower, {kCorrection});
constexpr PlotTexts P2VsSize(TextId caption) {
  return Only(text::PlotPi1Pi2Alpha2, {caption, "Pi1", "Pi2", "Alpha"});
}

constexpr PlotRow kP2PowerPlots[] = {
    P2PowerPlot<VaryBothN>({text::PlotPowerVsN, PowerVsSize, NAxis, P2VsSize(text::PlotPowerVsN),
                            Only(text::PlotSampleSizeForEachGroupN1N2), kP2PowerLabel, true}),
    P2PowerPlot<&P2Params::SampleSizeN1>(
        {text::ButtonPowerVsN1, PowerVsSize, NAxis, P2VsSize(text::ButtonPowerVsN1),
         Only(text::PlotSampleSizeN1N2FixedAt, {"SampleSizeN2"}), kP2PowerLabel, true}),
    P2PowerPlot<&P2Params::SampleSizeN2>(
        {text::ButtonPowerVsN2, PowerVsSize, NAxis, P2VsSize(text::ButtonPowerVsN2),
         Only(text::PlotSampleSizeN2N1FixedAt, {"SampleSizeN1"}), kP2PowerLabel, true}),
    P2PowerPlot<&P2Params::Pi1>(
        {text::PlotPowerVsPi1, PowerVsPi, kPiAxis,
         Only(text::PlotN1N2Alpha, {text::PlotPowerVsPi1, "SampleSizeN1", "SampleSizeN2", "Alpha"}),
         Only(text::PlotPopulationProportionPi1Pi2FixedAt, {"Pi2"}), kP2PowerLabel, false}),
    P2PowerPlot<&P2Params::Alpha>(
        {text::PlotPowerVsAlpha, PowerVsAlpha, AlphaAxis,
         Only(text::PlotPi1Pi2N1N2,
              {text::PlotPowerVsAlpha, "Pi1", "Pi2", "SampleSizeN1", "SampleSizeN2"}),
         AlphaLabel, kP2PowerLabel, true}),
};

constexpr PlotTexts kP2SizeLabel = {"NToVary",
                                    {{{text::PlotSampleSizeForEachGroupN1N2, {}},
                                      {text::PlotSampleSizeN1N2FixedAt, {"SampleSizeN2"}},
                                      {text::PlotSampleSizeN2N1FixedAt, {"SampleSizeN1"}},
                                      {text::PlotSampleSizeN2RatioN1N2FixedAt, {"Ratio"}}}}};

constexpr PlotRow kP2SizePlots[] = {
    P2SizePlot<&P2Params::PowerGoal>(
        {text::PlotNVsPower, SizeVsPower, PowerAxis,
         Only(text::PlotPi1Pi2Alpha, {text::PlotNVsPower, "Pi1", "Pi2", "Alpha"}),
         Only(text::PlotPowerGoal2, {kCorrection}), kP2SizeLabel, true}),
    P2SizePlot<&P2Params::Pi1>({text::PlotNVsPi1, SizeVsPi, kPiAxis,
                                Only(text::PlotPi2Alpha, {text::PlotNVsPi1, "Pi2", "Alpha"}),
                                Only(text::PlotPopulationProportionPi1, {kCorrection}),
                                kP2SizeLabel, false}),
    P2SizePlot<&P2Params::Alpha>({text::PlotNVsAlpha, SizeVsAlpha, AlphaAxis,
                                  Only(text::PlotPi1Pi2, {text::PlotNVsAlpha, "Pi1", "Pi2"}),
                                  Only(text::PlotTypeIErrorRateAlpha, {kCorrection}), kP2SizeLabel,
                                  true}),
};

constexpr PlotTexts kDeltaLabel = Only(text::PlotPopulationProportionDeltaEtaFixedAt, {"Eta"});
constexpr PlotTexts kEtaLabel = Only(text::PlotPopulationEtaDeltaFixedAt, {"Delta"});

constexpr PlotRow kQMACPowerPlots[] = {
    QMACPowerPlot<&QMACParams::SampleSize>(
        {text::PlotPowerVsN, PowerVsSize, NAxis,
         Only(text::PlotDeltaEtaAlpha2, {text::PlotPowerVsN, "Delta", "Eta", "Alpha"}), GroupNLabel,
         PowerLabel, true}),
    QMACPowerPlot<&QMACParams::Delta>(
        {text::PlotPowerVsDelta, PowerVsEffect, kDeltaAxis,
         Only(text::PlotNAlphaEta, {text::PlotPowerVsDelta, "SampleSize", "Alpha", "Eta"}),
         kDeltaLabel, PowerLabel, false}),
    QMACPowerPlot<&QMACParams::Eta>(
        {text::PlotPowerVsEta, PowerVsEta, kEtaAxis,
         Only(text::PlotNAlphaDelta, {text::PlotPowerVsEta, "SampleSize", "Alpha", "Delta"}),
         kEtaLabel, PowerLabel, true}),
    QMACPowerPlot<&QMACParams::Alpha>(
        {text::PlotPowerVsAlpha, PowerVsAlpha, AlphaAxis,
         Only(text::PlotDeltaEtaN, {text::PlotPowerVsAlpha, "Delta", "Eta", "SampleSize"}),
         AlphaLabel, PowerLabel, true}),
};

constexpr PlotRow kQMACSizePlots[] = {
    QMACSizePlot<&QMACParams::PowerGoal>(
        {text::PlotNVsPower, SizeVsPower, PowerAxis,
         Only(text::PlotDeltaEtaAlpha, {text::PlotNVsPower, "Delta", "Eta", "Alpha"}), GoalLabel,
         RequiredNLabel, true}),
    QMACSizePlot<&QMACParams::Delta>(
        {text::PlotNVsDelta, SizeVsDelta, kDeltaAxis,
         Only(text::PlotAlphaEtaPower, {text::PlotNVsDelta, "Alpha", "Eta", "PowerGoal"}),
         kDeltaLabel, RequiredNLabel, false}),
    QMACSizePlot<&QMACParams::Eta>(
        {text::PlotNVsEta, SizeVsEta, kEtaAxis,
         Only(text::PlotAlphaDeltaPower, {text::PlotNVsEta, "Alpha", "Delta", "PowerGoal"}),
         kEtaLabel, RequiredNLabel, true}),
    QMACSizePlot<&QMACParams::Alpha>(
        {text::PlotNVsAlpha, SizeVsAlpha, AlphaAxis,
         Only(text::PlotDeltaEtaPower, {text::PlotNVsAlpha, "Delta", "Eta", "PowerGoal"}),
         AlphaLabel, RequiredNLabel, true}),
};

// --- Results dialogs.

double P1EffectOf(const RecordView& record) {
  const auto& p = *static_cast<const P1Params*>(record.record());
  return p.Pi - p.Pi0;
}

double P2EffectOf(const RecordView& record) {
  const auto& p = *static_cast<const P2Params*>(record.record());
  return p.Pi1 - p.Pi2;
}

double QMACEffectOf(const RecordView& record) {
  return static_cast<const QMACParams*>(record.record())->Delta;
}

constexpr ResultsDialogTable kResultsDialogs[] = {
    {Family::P1,
     ModePower,
     193,
     text::CaptionCalculatePower,
     kP1PowerRanges,
     {P1EffectOf, OneProportionTolerance, false},
     CalculateP1Power,
     kP1PowerPlots},
    {Family::P1,
     ModeSampleSize,
     194,
     text::CaptionCalculateN,
     kP1SizeRanges,
     {P1EffectOf, OneProportionTolerance, true},
     CalculateP1Size,
     kP1SizePlots},
    {Family::P2,
     ModePower,
     209,
     text::CaptionCalculatePower,
     kP2PowerRanges,
     {P2EffectOf, TwoProportionTolerance, false},
     CalculatePower<DescribeP2, P2Power>,
     kP2PowerPlots},
    {Family::P2,
     ModeSampleSize,
     210,
     text::CaptionCalculateN,
     kP2SizeRanges,
     {P2EffectOf, TwoProportionTolerance, true},
     CalculateP2Size,
     kP2SizePlots},
    {Family::QMAC,
     ModePower,
     225,
     text::CaptionCalculatePower,
     kQMACPowerRanges,
     {QMACEffectOf, TwoProportionTolerance, false},
     CalculatePower<DescribeQMAC, QMACPower>,
     kQMACPowerPlots,
     {},
     EtaSuffices},
    {Family::QMAC,
     ModeSampleSize,
     226,
     text::CaptionCalculateN,
     kQMACSizeRanges,
     {QMACEffectOf, TwoProportionTolerance, true},
     CalculateSize<DescribeQMAC, QMACRequiredN>,
     kQMACSizePlots,
     {},
     EtaSuffices},
};

}  // namespace

FamilyDialogs ProportionDialogs() { return {kParameterDialogs, kResultsDialogs}; }

}  // namespace poweranalysis
