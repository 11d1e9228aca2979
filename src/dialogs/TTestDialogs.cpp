#include "dialogs/FamilyDialogs.h"

#include <cmath>

#include "dialogs/DialogRows.h"
#include "procedures/TTests.h"

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

// --- Designs. Each family says what its record means; power, search and plots are the same for
// all.

// A t-test as its record describes it.
struct TTest {
  double es = 0;
  double alpha = 0;
  double powerGoal = 0;
  std::int16_t form = 0;
  std::int64_t n1 = 0;  // the size, or that of group 1
  std::int64_t n2 = 0;  // of group 2; 0 for one group
  std::int16_t nToVary = 0;
  std::int64_t sizeLimit = 0;
  CriticalTCache criticals{};
};

TTest DescribeT1(const PowerSettings& block) {
  const T1Params& p = block.T1.Committed;
  return {OneMeanEffect(p.Mu, p.Mu0, p.Sigma),
          p.Alpha,
          p.PowerGoal,
          p.H0Type,
          p.SampleSize,
          0,
          0,
          block.T1.Upper.SampleSize};
}

TTest DescribeT2(const PowerSettings& block) {
  const T2Params& p = block.T2.Committed;
  return {TwoMeansEffect(p.Mu1, p.Mu2, p.Sigma),
          p.Alpha,
          p.PowerGoal,
          p.H0Type,
          p.SampleSizeN1,
          p.SampleSizeN2,
          p.NToVary,
          block.T2.Upper.SampleSizeN1};
}

double T3Effect(const T3Params& p) {
  return PairedMeansEffect(p.Mu1, p.Mu2, PairedSigmaDiff(p.Sigma1, p.Sigma2, p.BetweenGroupR));
}

TTest DescribeT3(const PowerSettings& block) {
  const T3Params& p = block.T3.Committed;
  return {T3Effect(p),  p.Alpha, p.PowerGoal, p.H0Type,
          p.SampleSize, 0,       0,           block.T3.Upper.SampleSize};
}

using Describe = TTest (*)(const PowerSettings&);

TDesign DesignOf(const TTest& test) {
  return test.n2 == 0 ? OneGroupDesign(test.es, test.n1)
                      : TwoGroupsDesign(test.es, test.n1, test.n2);
}

double PowerOf(ProcedureObserver& observer, TTest& test) {
  return TrialPower(observer, [&](Refusal& refusal) {
    return TTestPower(DesignOf(test), test.alpha, test.form, refusal, test.criticals);
  });
}

SearchResult RequiredNOf(ProcedureObserver& observer, TTest& test) {
  const TSizeRequest request = {test.es, test.alpha, test.powerGoal, test.form, test.sizeLimit};
  if (test.n2 == 0) {
    return OneGroupRequiredN(request, test.criticals, observer);
  }
  const std::int64_t fixedN = test.nToVary == NToVaryN1 ? test.n2 : test.n1;
  return TwoGroupsRequiredN(request, test.nToVary, fixedN, test.criticals, observer);
}

std::int64_t SizeOf(ProcedureObserver& observer, TTest& test) {
  const SearchResult found = RequiredNOf(observer, test);
  observer.Tell(found.refusal);
  return found.requiredSize;
}

// --- Calculations.

template <Describe describe>
CalculationOutcome CalculatePower(ProcedureObserver& observer, const PowerSettings& block) {
  TTest test = describe(block);
  CalculationOutcome outcome;
  outcome.good = true;
  const double critical = test.criticals.Find(DesignOf(test).df, test.alpha, test.form);
  outcome.computed.effect = test.es;
  outcome.computed.critical[0] = describe == DescribeT1
                                     ? ShownCriticalTOfOneMean(critical, test.form)
                                     : ShownCriticalT(critical);
  outcome.computed.power[0] = PowerOf(observer, test);
  return outcome;
}

template <Describe describe>
CalculationOutcome CalculateSize(ProcedureObserver& observer, const PowerSettings& block) {
  TTest test = describe(block);
  const SearchResult found = RequiredNOf(observer, test);
  observer.Tell(found.refusal);
  CalculationOutcome outcome;
  outcome.good = found.status == SearchOk;
  outcome.computed.effect = test.es;
  outcome.computed.power[0] = found.actualPower;
  outcome.computed.size[0] = found.requiredSize;
  if (outcome.good) {
    outcome.computed.critical[0] =
        test.n2 == 0 ? ShownCriticalT(test.criticals.Find(
                           OneGroupDesign(test.es, found.requiredSize).df, test.alpha, test.form))
                     : ShownCriticalTOfRequiredN(found.requiredSize, test.alpha, test.form);
  }
  return outcome;
}

// Paired means also show the standard deviation of the differences.
template <CalculationOutcome (*calculate)(ProcedureObserver&, const PowerSettings&)>
CalculationOutcome WithSpread(ProcedureObserver& observer, const PowerSettings& block) {
  const T3Params& p = block.T3.Committed;
  CalculationOutcome outcome = calculate(observer, block);
  outcome.computed.spread = PairedSigmaDiff(p.Sigma1, p.Sigma2, p.BetweenGroupR);
  return outcome;
}

// --- Points of plots: one input of the test is varied, and the critical values of equal degrees of
// freedom are kept from point to point.

using VaryTest = void (*)(TTest& test, double x);

void VaryEffect(TTest& test, double x) { test.es = x; }
void VaryAlpha(TTest& test, double x) { test.alpha = x; }
void VaryGoal(TTest& test, double x) { test.powerGoal = x; }
void VaryN1(TTest& test, double x) { test.n1 = static_cast<std::int64_t>(x); }
void VaryN2(TTest& test, double x) { test.n2 = static_cast<std::int64_t>(x); }
void VaryBothN(TTest& test, double x) {
  test.n1 = static_cast<std::int64_t>(x);
  test.n2 = test.n1;
}

// --- Plots.

constexpr PlotTexts kT2SizeLabel = {"NToVary",
                                    {{{text::PlotRequiredSampleSizeN1N2, {}},
                                      {text::PlotRequiredSampleSizeN1N22, {"SampleSizeN2"}},
                                      {text::PlotRequiredSampleSizeN2N1, {"SampleSizeN1"}}}}};

template <Describe describe, VaryTest vary>
constexpr PlotRow PowerPlot(
    TextId caption, int kind, PlotAxis axis, PlotTexts title, PlotTexts xLabel, bool fixesEffect) {
  return Plot<describe, PowerOf, vary>(
      {caption, kind, axis, title, xLabel, PowerLabel, fixesEffect});
}

// A required size that fails ends the plot with the points before it.
template <Describe describe, VaryTest vary>
constexpr PlotRow SizePlot(TextId caption,
                           int kind,
                           PlotAxis axis,
                           PlotTexts title,
                           PlotTexts xLabel,
                           PlotTexts yLabel,
                           bool fixesEffect) {
  return Plot<describe, SizeOf, vary>({caption, kind, axis, title, xLabel, yLabel, fixesEffect},
                                      FailedPointRule::DropAndStop);
}

// One mean and paired means: the same three power plots.
template <Describe describe>
constexpr std::array<PlotRow, 3> OneGroupPowerPlots() {
  return {{
      PowerPlot<describe, VaryN1>(text::PlotPowerVsN, PowerVsSize, NAxis,
                                  Only(text::PlotPowerVsNEsAlpha, {EffectSlot, "Alpha"}),
                                  GroupNLabel, true),
      PowerPlot<describe, VaryEffect>(text::CaptionPowerVsEs, PowerVsEffect, EsAxis,
                                      Only(text::PlotPowerVsEsNAlpha, {"SampleSize", "Alpha"}),
                                      EsLabel, false),
      PowerPlot<describe, VaryAlpha>(text::PlotPowerVsAlpha, PowerVsAlpha, AlphaAxis,
                                     Only(text::PlotPowerVsAlphaEsN, {EffectSlot, "SampleSize"}),
                                     AlphaLabel, true),
  }};
}

struct SizeTitles {
  PlotTexts vsEs;
  PlotTexts vsAlpha;
  PlotTexts vsPower;
};

template <Describe describe>
constexpr std::array<PlotRow, 3> SizePlots(SizeTitles titles, PlotTexts yLabel) {
  return {{
      SizePlot<describe, VaryEffect>(text::CaptionNVsEs, SizeVsEffect, EsAxis, titles.vsEs, EsLabel,
                                     yLabel, false),
      SizePlot<describe, VaryAlpha>(text::PlotNVsAlpha, SizeVsAlpha, AlphaAxis, titles.vsAlpha,
                                    AlphaLabel, yLabel, true),
      SizePlot<describe, VaryGoal>(text::PlotNVsPower, SizeVsPower, PowerAxis, titles.vsPower,
                                   GoalLabel, yLabel, true),
  }};
}

constexpr std::array<PlotRow, 3> kT1PowerPlots = OneGroupPowerPlots<DescribeT1>();
constexpr std::array<PlotRow, 3> kT3PowerPlots = OneGroupPowerPlots<DescribeT3>();

constexpr PlotRow kT2PowerPlots[] = {
    PowerPlot<DescribeT2, VaryBothN>(text::PlotPowerVsN,
                                     PowerVsSize,
                                     NAxis,
                                     Only(text::PlotPowerVsNEsAlphaN1N2N, {EffectSlot, "Alpha"}),
                                     GroupNLabel,
                                     true),
    PowerPlot<DescribeT2, VaryN1>(
        text::ButtonPowerVsN1,
        PowerVsSize,
        NAxis,
        Only(text::PlotPowerVsN1EsAlphaN2, {EffectSlot, "Alpha", "SampleSizeN2"}),
        Only(text::RowSampleSizeN1),
        true),
    PowerPlot<DescribeT2, VaryN2>(
        text::ButtonPowerVsN2,
        PowerVsSize,
        NAxis,
        Only(text::PlotPowerVsN2EsAlphaN1, {EffectSlot, "Alpha", "SampleSizeN1"}),
        Only(text::RowSampleSizeN2),
        true),
    PowerPlot<DescribeT2, VaryEffect>(
        text::CaptionPowerVsEs,
        PowerVsEffect,
        EsAxis,
        Only(text::PlotPowerVsEsN1N2Alpha, {"SampleSizeN1", "SampleSizeN2", "Alpha"}),
        EsLabel,
        false),
    PowerPlot<DescribeT2, VaryAlpha>(
        text::PlotPowerVsAlpha,
        PowerVsAlpha,
        AlphaAxis,
        Only(text::PlotPowerVsAlphaEsN1N2, {EffectSlot, "SampleSizeN1", "SampleSizeN2"}),
        AlphaLabel,
        true),
};

constexpr std::array<PlotRow, 3> kT1SizePlots =
    SizePlots<DescribeT1>({Only(text::PlotSampleSizeVsEs, {"Alpha", "PowerGoal"}),
                           Only(text::PlotSampleSizeVsAlpha, {EffectSlot, "PowerGoal"}),
                           Only(text::PlotSampleSizeVsPower, {EffectSlot, "Alpha"})},
                          RequiredNLabel);

constexpr std::array<PlotRow, 3> kT2SizePlots =
    SizePlots<DescribeT2>({{"NToVary",
                            {{{text::PlotNVsEsAlphaPower, {"Alpha", "PowerGoal"}},
                              {text::PlotRequiredN1VsStandardizedEffectSizeN2, {"SampleSizeN2"}},
                              {text::PlotRequiredN2VsStandardizedEffectSizeN1, {"SampleSizeN1"}}}}},
                           Only(text::PlotNVsAlphaEsPower, {EffectSlot, "PowerGoal"}),
                           Only(text::PlotNVsPowerAlphaEs, {"Alpha", EffectSlot})},
                          kT2SizeLabel);

constexpr std::array<PlotRow, 3> kT3SizePlots =
    SizePlots<DescribeT3>({Only(text::PlotNVsEsAlphaPowerGoal, {"Alpha", "PowerGoal"}),
                           Only(text::PlotNVsAlphaEsPower, {EffectSlot, "PowerGoal"}),
                           Only(text::PlotNVsPowerAlphaStandardizedEffect, {"Alpha", EffectSlot})},
                          RequiredNLabel);

// --- Results dialogs.

double T1EffectOf(const RecordView& record) {
  const auto& p = *static_cast<const T1Params*>(record.record());
  return OneMeanEffect(p.Mu, p.Mu0, p.Sigma);
}

double T2EffectOf(const RecordView& record) {
  const auto& p = *static_cast<const T2Params*>(record.record());
  return TwoMeansEffect(p.Mu1, p.Mu2, p.Sigma);
}

double T3EffectOf(const RecordView& record) {
  return T3Effect(*static_cast<const T3Params*>(record.record()));
}

void DeriveT3(const RecordView& record, Computed& derived) {
  const auto& p = *static_cast<const T3Params*>(record.record());
  derived.spread = PairedSigmaDiff(p.Sigma1, p.Sigma2, p.BetweenGroupR);
}

constexpr double kTolerance = PolicyOf(SearchMember::TTest).nullTolerance;

constexpr ResultsDialogTable kResultsDialogs[] = {
    {Family::T1,
     ModePower,
     0,
     text::CaptionCalculatePower,
     kPowerRanges,
     {T1EffectOf, kTolerance, false},
     CalculatePower<DescribeT1>,
     kT1PowerPlots},
    {Family::T1,
     ModeSampleSize,
     1,
     text::CaptionCalculateN,
     kSizeRanges,
     {T1EffectOf, kTolerance, true},
     CalculateSize<DescribeT1>,
     kT1SizePlots},
    {Family::T2,
     ModePower,
     16,
     text::CaptionCalculatePower,
     kPowerRanges,
     {T2EffectOf, kTolerance, false},
     CalculatePower<DescribeT2>,
     kT2PowerPlots},
    {Family::T2,
     ModeSampleSize,
     17,
     text::CaptionCalculateN,
     kSizeRanges,
     {T2EffectOf, kTolerance, true},
     CalculateSize<DescribeT2>,
     kT2SizePlots},
    {Family::T3,
     ModePower,
     32,
     text::CaptionCalculatePower,
     kPowerRanges,
     {T3EffectOf, kTolerance, false},
     WithSpread<CalculatePower<DescribeT3>>,
     kT3PowerPlots,
     {},
     nullptr,
     DeriveT3},
    {Family::T3,
     ModeSampleSize,
     33,
     text::CaptionCalculateN,
     kSizeRanges,
     {T3EffectOf, kTolerance, true},
     WithSpread<CalculateSize<DescribeT3>>,
     kT3SizePlots,
     {},
     nullptr,
     DeriveT3},
};

}  // namespace

FamilyDialogs TTestDialogs() { return {kParameterDialogs, kResultsDialogs}; }

}  // namespace poweranalysis
