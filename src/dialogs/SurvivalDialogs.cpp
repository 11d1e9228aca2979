#include "dialogs/DialogRows.h"
#include "dialogs/FamilyDialogs.h"
#include "dialogs/Speaker.h"
#include "procedures/Survival.h"

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

// The follow-up may not end before the accrual, and a rate of 0 has no logarithm. One message.
template <auto family>
bool PeriodsAndRatesPass(WindowHandle parent, PowerSettings& block) {
  const auto& p = (block.*family).Working;
  const bool followed = p.T >= p.T0;
  const bool positive = p.Lambda1 > 0 && p.Lambda2 > 0;
  if (!followed || !positive) {
    Speak(parent, {followed ? Said::LambdaNotPositive : Said::FollowUpBeforeAccrual});
  }
  return followed && positive;
}

constexpr auto kSA2Check = PeriodsAndRatesPass<&PowerSettings::SA2>;
constexpr auto kSA3Check = PeriodsAndRatesPass<&PowerSettings::SA3>;

constexpr ParameterDialogTable kParameterDialogs[] = {
    {Family::SA1, ModePower, kSA1PowerFields},
    {Family::SA1, ModeSampleSize, kSA1SizeFields},
    {Family::SA2, ModePower, kSA2PowerFields, kSA2Check},
    {Family::SA2, ModeSampleSize, kSA2SizeFields, kSA2Check},
    {Family::SA3, ModePower, kSA3PowerFields, kSA3Check},
    {Family::SA3, ModeSampleSize, kSA3SizeFields, kSA3Check},
};

// --- Log-rank test.

struct LogRank {
  SA1Params record;
};

LogRank DescribeSA1(const PowerSettings& block) { return {block.SA1.Committed}; }

LogRankTest TestOf(const SA1Params& p) { return {p.Pi1, p.Pi2, p.Alpha, p.H0Type}; }

double SA1Power(ProcedureObserver&, LogRank& design) {
  int err = 0;
  std::int64_t events = 0;
  return LogRankPower(design.record.SampleSize, TestOf(design.record), err, events);
}

std::int64_t SA1Size(ProcedureObserver& observer, LogRank& design) {
  int err = 0;
  std::int64_t events = 0;
  Refusal refusal;
  const std::int64_t n =
      LogRankRequiredN(TestOf(design.record), design.record.PowerGoal, events, err, refusal);
  observer.Tell(refusal);
  return n;
}

// The events shown go with the power at the required size.
CalculationOutcome CalculateSA1Size(ProcedureObserver& observer, const PowerSettings& block) {
  LogRank design = DescribeSA1(block);
  CalculationOutcome outcome;
  Computed& computed = outcome.computed;
  computed.size[0] = SA1Size(observer, design);
  outcome.good = computed.size[0] != SizeFailure;
  if (outcome.good) {
    int err = 0;
    std::int64_t events = 0;
    computed.power[0] = LogRankPower(computed.size[0], TestOf(design.record), err, events);
    computed.events = static_cast<double>(events);
  }
  return outcome;
}

// --- Exponential survival, with and without dropouts.

struct ExponentialSurvival {
  SA3Params record;
};

// Without dropouts the record is that of the other with a rate of 0.
ExponentialSurvival DescribeSA2(const PowerSettings& block) {
  const SA2Params& p = block.SA2.Committed;
  ExponentialSurvival design{};
  SA3Params& record = design.record;
  record.SampleSize = p.SampleSize;
  record.T0 = p.T0;
  record.T = p.T;
  record.D = 0;
  record.Alpha = p.Alpha;
  record.Lambda1 = p.Lambda1;
  record.Lambda2 = p.Lambda2;
  record.PowerGoal = p.PowerGoal;
  record.H0Type = p.H0Type;
  return design;
}

ExponentialSurvival DescribeSA3(const PowerSettings& block) { return {block.SA3.Committed}; }

ExponentialSurvivalTest TestOf(const SA3Params& p) {
  return {p.Lambda1, p.Lambda2, p.D, p.T, p.T0, p.Alpha, p.H0Type};
}

double ExponentialPower(ProcedureObserver& observer, ExponentialSurvival& design) {
  return TrialPower(observer, [&](Refusal& refusal) {
    return ExponentialSurvivalPower(design.record.SampleSize, TestOf(design.record), refusal);
  });
}

SearchResult ExponentialRequiredN(ProcedureObserver&, ExponentialSurvival& design) {
  const ExponentialSurvivalTest test = TestOf(design.record);
  int err = 0;
  SearchResult found;
  found.requiredSize =
      ExponentialSurvivalRequiredN(test, design.record.PowerGoal, err, found.refusal);
  found.status = found.requiredSize == SizeFailure ? SearchNullTrue : SearchOk;
  if (found.status == SearchOk) {
    found.actualPower = ExponentialSurvivalPower(found.requiredSize, test, found.refusal);
  }
  return found;
}

// --- Plots.

constexpr PlotAxis kPi2Axis = {"Pi2Start", "Pi2End", "NInterval", false};
constexpr PlotAxis kLambda2Axis = {"Lambda2Start", "Lambda2End", "NInterval", false};

constexpr PlotTexts kGroupNLabel = Only(text::RowSampleSizePerGroupN);
constexpr PlotTexts kPi2Label = Only(text::PlotPopulationProportionPi2Pi1FixedAt, {"Pi1"});

template <auto vary>
constexpr PlotRow SA1PowerPlot(const PlotWords& words) {
  return Plot<DescribeSA1, SA1Power, vary>(words);
}
template <auto vary>
constexpr PlotRow SA1SizePlot(const PlotWords& words) {
  return Plot<DescribeSA1, SA1Size, vary>(words);
}

constexpr PlotRow kSA1PowerPlots[] = {
    SA1PowerPlot<&SA1Params::SampleSize>(
        {text::PlotPowerVsN, PowerVsSize, NAxis,
         Only(text::PlotPi1Pi2Alpha3, {text::PlotPowerVsN, "Pi1", "Pi2", "Alpha"}), kGroupNLabel,
         PowerLabel, true}),
    SA1PowerPlot<&SA1Params::Alpha>(
        {text::PlotPowerVsAlpha, PowerVsAlpha, AlphaAxis,
         Only(text::PlotPi1Pi2N, {text::PlotPowerVsAlpha, "Pi1", "Pi2", "SampleSize"}), AlphaLabel,
         PowerLabel, true}),
    SA1PowerPlot<&SA1Params::Pi2>(
        {text::PlotPowerVsPi2, PowerVsPi, kPi2Axis,
         Only(text::PlotNAlpha, {text::PlotPowerVsPi2, "SampleSize", "Alpha"}), kPi2Label,
         PowerLabel, false}),
};

constexpr PlotRow kSA1SizePlots[] = {
    SA1SizePlot<&SA1Params::PowerGoal>(
        {text::PlotNVsPower, SizeVsPower, PowerAxis,
         Only(text::PlotPi1Pi2Alpha3, {text::PlotNVsPowerGoal, "Pi1", "Pi2", "Alpha"}), GoalLabel,
         RequiredNLabel, true}),
    SA1SizePlot<&SA1Params::Alpha>(
        {text::PlotNVsAlpha, SizeVsAlpha, AlphaAxis,
         Only(text::PlotPi1Pi2PowerGoal, {text::PlotNVsAlpha, "Pi1", "Pi2", "PowerGoal"}),
         AlphaLabel, RequiredNLabel, true}),
    SA1SizePlot<&SA1Params::Pi2>(
        {text::ButtonNVsPi2, SizeVsPi, kPi2Axis,
         Only(text::PlotPowerGoal, {text::PlotNVsSurvivalRatePi2, "PowerGoal"}), kPi2Label,
         RequiredNLabel, false}),
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

template <auto describe>
constexpr std::array<PlotRow, 3> ExponentialPowerPlots(const ExponentialWords& words) {
  return {{
      Plot<describe, ExponentialPower, &SA3Params::SampleSize>(
          {text::PlotPowerVsN, PowerVsSize, NAxis, words.powerVsN, kGroupNLabel, PowerLabel, true}),
      Plot<describe, ExponentialPower, &SA3Params::Lambda2>(
          {text::ButtonPowerVsLambda2, PowerVsLambda2, kLambda2Axis, words.powerVsLambda2,
           words.powerLambda2Label, PowerLabel, false}),
      Plot<describe, ExponentialPower, &SA3Params::Alpha>({text::PlotPowerVsAlpha, PowerVsAlpha,
                                                           AlphaAxis, words.powerVsAlpha,
                                                           AlphaLabel, PowerLabel, true}),
  }};
}

template <auto describe>
constexpr std::array<PlotRow, 3> ExponentialSizePlots(const ExponentialWords& words) {
  constexpr auto size = SizeOf<ExponentialRequiredN, ExponentialSurvival>;
  return {{
      Plot<describe, size, &SA3Params::PowerGoal>({text::PlotNVsPower, SizeVsPower, PowerAxis,
                                                   words.sizeVsPower, GoalLabel, RequiredNLabel,
                                                   true}),
      Plot<describe, size, &SA3Params::Lambda2>(
          {text::ButtonNVsLambda2, SizeVsLambda2, kLambda2Axis, words.sizeVsLambda2,
           Only(text::PlotExponentialParameterLambda2Lambda1FixedAt, {"Lambda1"}), RequiredNLabel,
           false}),
      Plot<describe, size, &SA3Params::Alpha>(
          {text::PlotNVsAlpha, SizeVsAlpha, AlphaAxis, words.sizeVsAlpha,
           Only(text::PlotTypeIErrorRateAlphaPowerGoal, {"PowerGoal"}), RequiredNLabel, true}),
  }};
}

constexpr auto kSA2PowerPlots = ExponentialPowerPlots<DescribeSA2>(kSA2Words);
constexpr auto kSA3PowerPlots = ExponentialPowerPlots<DescribeSA3>(kSA3Words);
constexpr auto kSA2SizePlots = ExponentialSizePlots<DescribeSA2>(kSA2Words);
constexpr auto kSA3SizePlots = ExponentialSizePlots<DescribeSA3>(kSA3Words);

// --- Results dialogs.

// Kept: the effect of the log-rank test is Pi2 - Pi1, against the words of its one-tailed
// hypothesis, which is refused where they hold.
double SA1EffectOf(const RecordView& record) {
  const auto& p = *static_cast<const SA1Params*>(record.record());
  return p.Pi2 - p.Pi1;
}

template <class Params>
double LambdaEffectOf(const RecordView& record) {
  const auto& p = *static_cast<const Params*>(record.record());
  return p.Lambda2 - p.Lambda1;
}

constexpr ResultsDialogTable kResultsDialogs[] = {
    {Family::SA1,
     ModePower,
     241,
     text::CaptionCalculatePower,
     kSA1PowerRanges,
     {SA1EffectOf, SurvivalTolerance, false},
     CalculatePower<DescribeSA1, SA1Power>,
     kSA1PowerPlots},
    {Family::SA1,
     ModeSampleSize,
     242,
     text::CaptionCalculateN,
     kSA1SizeRanges,
     {SA1EffectOf, SurvivalTolerance, true},
     CalculateSA1Size,
     kSA1SizePlots},
    {Family::SA2,
     ModePower,
     257,
     text::CaptionCalculatePower,
     kPowerRanges,
     {LambdaEffectOf<SA2Params>, SurvivalTolerance, false},
     CalculatePower<DescribeSA2, ExponentialPower>,
     kSA2PowerPlots,
     {},
     kSA2Check},
    {Family::SA2,
     ModeSampleSize,
     258,
     text::CaptionCalculateN,
     kSizeRanges,
     {LambdaEffectOf<SA2Params>, SurvivalTolerance, true},
     CalculateSize<DescribeSA2, ExponentialRequiredN>,
     kSA2SizePlots,
     {},
     kSA2Check},
    {Family::SA3,
     ModePower,
     513,
     text::CaptionCalculatePower,
     kPowerRanges,
     {LambdaEffectOf<SA3Params>, SurvivalTolerance, false},
     CalculatePower<DescribeSA3, ExponentialPower>,
     kSA3PowerPlots,
     {},
     kSA3Check},
    {Family::SA3,
     ModeSampleSize,
     514,
     text::CaptionCalculateN,
     kSizeRanges,
     {LambdaEffectOf<SA3Params>, SurvivalTolerance, true},
     CalculateSize<DescribeSA3, ExponentialRequiredN>,
     kSA3SizePlots,
     {},
     kSA3Check},
};

}  // namespace

FamilyDialogs SurvivalDialogs() { return {kParameterDialogs, kResultsDialogs}; }

}  // namespace poweranalysis
