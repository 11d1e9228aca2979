#include <cmath>

#include "dialogs/DialogRows.h"
#include "dialogs/FamilyDialogs.h"
#include "dialogs/Speaker.h"
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
  Refusal refusal;
  McNemarParameterCheck(p.Delta, p.Eta, refusal);
  Speak(parent, refusal);
  return !refusal;
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
double P1Power(ProcedureObserver& observer, OneProportion& design) {
  constexpr std::int16_t kCheckNull = 1;
  const P1Params& p = design.record;
  return TrialPower(observer, [&](Refusal& refusal) {
    int err = 0;
    return OneProportionPower(p.SampleSize, TestOf(p), err, p.Algorithm, kCheckNull, refusal);
  });
}

std::int64_t P1Size(ProcedureObserver& observer, OneProportion& design) {
  const P1Params& p = design.record;
  int err = 0;
  Refusal refusal;
  const std::int64_t n =
      OneProportionRequiredN(p.PowerGoal, TestOf(p), err, p.Algorithm, refusal, observer);
  observer.Tell(refusal);
  return n;
}

// Both tests at one size: the exact one with the type I error rate that it really has, and the
// normal one.
void AddPowers(const P1Params& p, std::int64_t n, Computed& computed) {
  constexpr std::int16_t kChecked = 0;  // the dialog has done so
  int err = 0;
  Refusal none;
  const OneProportionTest test = TestOf(p);
  OneProportionTest underNull = test;
  underNull.pi = test.pi0;
  computed.power[0] = OneProportionPower(n, test, err, ProportionExact, kChecked, none);
  computed.actualAlpha = OneProportionPower(n, underNull, err, ProportionExact, kChecked, none);
  computed.normalPower = OneProportionPower(n, test, err, ProportionNormal, kChecked, none);
}

CalculationOutcome CalculateP1Power(ProcedureObserver&, const PowerSettings& block) {
  const P1Params& p = block.P1.Committed;
  CalculationOutcome outcome;
  outcome.good = true;
  AddPowers(p, p.SampleSize, outcome.computed);
  return outcome;
}

CalculationOutcome CalculateP1Size(ProcedureObserver& observer, const PowerSettings& block) {
  OneProportion design = DescribeP1(block);
  CalculationOutcome outcome;
  const std::int64_t n = P1Size(observer, design);
  outcome.good = n != SizeFailure;
  outcome.computed.size[0] = n;
  if (outcome.good) {
    AddPowers(design.record, n, outcome.computed);
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

double P2Power(ProcedureObserver& observer, TwoProportions& design) {
  const P2Params& p = design.record;
  return TrialPower(observer, [&](Refusal& refusal) {
    int err = 0;
    return TwoProportionPower(TestOf(p), p.SampleSizeN1, p.SampleSizeN2, err, refusal);
  });
}

// The groups that a search finds, and the power at them; the refusal of one that finds none.
struct FoundGroups {
  GroupSizes groups;
  double power = NumericFailure;
  bool found = false;
  Refusal refusal;
};

FoundGroups P2Groups(const P2Params& p) {
  FoundGroups result;
  int err = 0;
  result.groups = {p.SampleSizeN1, p.SampleSizeN2};
  result.found = TwoProportionRequiredN({TestOf(p), p.PowerGoal, p.NToVary, p.Ratio}, result.groups,
                                        result.power, err, result.refusal) != SizeFailure;
  return result;
}

// The size that the label of the axis names: of the group that is sought, and of group 2 where
// group 1 follows from it.
std::int64_t P2Size(ProcedureObserver& observer, TwoProportions& design) {
  const FoundGroups result = P2Groups(design.record);
  // A plot leaves out a point that no group is found for, without a word.
  if (result.refusal.text != Said::SelectedGroupNotFound) {
    observer.Tell(result.refusal);
  }
  const bool second = design.record.NToVary == NToVaryN2 || design.record.NToVary == NToVaryRatio;
  return !result.found ? SizeFailure : second ? result.groups.n2 : result.groups.n1;
}

void VaryBothN(TwoProportions& design, double x) {
  Vary<&P2Params::SampleSizeN1>(design, x);
  design.record.SampleSizeN2 = design.record.SampleSizeN1;
}

CalculationOutcome CalculateP2Size(ProcedureObserver& observer, const PowerSettings& block) {
  const FoundGroups result = P2Groups(block.P2.Committed);
  observer.Tell(result.refusal);
  CalculationOutcome outcome;
  outcome.good = result.found;
  outcome.computed.power[0] = result.power;
  outcome.computed.size[0] = result.groups.n1;
  outcome.computed.size[1] = result.groups.n2;
  return outcome;
}

// --- McNemar's test.

struct PairedProportions {
  QMACParams record;
};

PairedProportions DescribeQMAC(const PowerSettings& block) { return {block.QMAC.Committed}; }

McNemarTest TestOf(const QMACParams& p) { return {p.Delta, p.Eta, p.Alpha, p.H0Type}; }

double QMACPower(ProcedureObserver& observer, PairedProportions& design) {
  const QMACParams& p = design.record;
  return TrialPower(observer, [&](Refusal& refusal) {
    int err = 0;
    return McNemarPower(TestOf(p), p.SampleSize, err, refusal);
  });
}

SearchResult QMACRequiredN(ProcedureObserver&, PairedProportions& design) {
  const QMACParams& p = design.record;
  int err = 0;
  SearchResult found;
  const double n = McNemarRequiredN(TestOf(p), p.PowerGoal, err, found.refusal);
  found.status = SearchNullTrue;
  if (n != NumericFailure) {
    found.requiredSize = static_cast<std::int64_t>(n);
    found.actualPower = McNemarPower(TestOf(p), n, err, found.refusal);
    found.status = SearchOk;
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
