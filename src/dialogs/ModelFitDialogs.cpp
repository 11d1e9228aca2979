#include "dialogs/DialogRows.h"
#include "dialogs/FamilyDialogs.h"
#include "procedures/ModelFit.h"

namespace poweranalysis {

namespace {

constexpr const char* kPowerFields[] = {"R",     "R0",         "DegreesOfFreedom",
                                        "Alpha", "SampleSize", "H0Type"};
constexpr const char* kSizeFields[] = {"R",     "R0",        "DegreesOfFreedom",
                                       "Alpha", "PowerGoal", "H0Type"};
constexpr const char* kPowerRanges[] = {"RStart", "REnd",    "AlphaStart", "AlphaEnd", "NStart",
                                        "NEnd",   "DfStart", "DfEnd",      "NInterval"};
constexpr const char* kSizeRanges[] = {"RStart",   "REnd",       "AlphaStart",
                                       "AlphaEnd", "PowerStart", "PowerEnd",
                                       "DfStart",  "DfEnd",      "NInterval"};

constexpr ParameterDialogTable kParameterDialogs[] = {
    {Family::SEM, ModePower, kPowerFields},
    {Family::SEM, ModeSampleSize, kSizeFields},
};

struct ModelFit {
  SEMParams record;
  ModelFitCriticalCache criticals{};
};

ModelFit DescribeSEM(const PowerSettings& block) { return {block.SEM.Committed}; }

double PowerAt(ProcedureObserver& observer, ModelFit& design, std::int64_t n) {
  const SEMParams& p = design.record;
  return TrialPower(observer, [&](Refusal& refusal) {
    int err = 0;
    return ModelFitPower({n, p.DegreesOfFreedom, p.Alpha, p.R0, p.H0Type}, p.R, err, refusal,
                         design.criticals);
  });
}

double SEMPower(ProcedureObserver& observer, ModelFit& design) {
  return PowerAt(observer, design, design.record.SampleSize);
}

SearchResult SEMRequiredN(ProcedureObserver& observer, ModelFit& design) {
  const SEMParams& p = design.record;
  return ModelFitRequiredN({p.R, p.R0, p.Alpha, p.PowerGoal, p.DegreesOfFreedom, p.H0Type},
                           observer);
}

constexpr PlotAxis kRmseaAxis = {"RStart", "REnd", "NInterval", false};
constexpr PlotAxis kDfAxis = {"DfStart", "DfEnd", "NInterval", true};
constexpr PlotTexts kRmseaLabel = Only(text::PlotPopulationRMSEARR0FixedAt, {"R0"});
constexpr PlotTexts kDfLabel = Only(text::RowDegreesOfFreedomDf);

template <auto vary>
constexpr PlotRow PowerPlot(const PlotWords& words) {
  return Plot<DescribeSEM, SEMPower, vary>(words);
}
template <auto vary>
constexpr PlotRow SizePlot(const PlotWords& words) {
  return Plot<DescribeSEM, SizeOf<SEMRequiredN, ModelFit>, vary>(words);
}

constexpr PlotRow kPowerPlots[] = {
    PowerPlot<&SEMParams::SampleSize>(
        {text::PlotPowerVsN, PowerVsSize, NAxis,
         Only(text::PlotPowerVsNRR0DfAlpha, {"R", "R0", "DegreesOfFreedom", "Alpha"}), GroupNLabel,
         PowerLabel, true}),
    PowerPlot<&SEMParams::Alpha>(
        {text::PlotPowerVsAlpha, PowerVsAlpha, AlphaAxis,
         Only(text::PlotPowerVsAlphaRR0NDf, {"R", "R0", "SampleSize", "DegreesOfFreedom"}),
         AlphaLabel, PowerLabel, true}),
    PowerPlot<&SEMParams::R>({text::ButtonPowerVsRMSEA, PowerVsRmse, kRmseaAxis,
                              Only(text::PlotPowerVsRMSEARNDf, {"SampleSize", "DegreesOfFreedom"}),
                              kRmseaLabel, PowerLabel, false}),
    PowerPlot<&SEMParams::DegreesOfFreedom>(
        {text::ButtonPowerVsDf, PowerVsDf, kDfAxis,
         Only(text::PlotPowerVsDfRR0NAlpha, {"R", "R0", "SampleSize", "Alpha"}), kDfLabel,
         PowerLabel, true}),
};

constexpr PlotRow kSizePlots[] = {
    SizePlot<&SEMParams::PowerGoal>(
        {text::PlotNVsPower, SizeVsPower, PowerAxis,
         Only(text::PlotNVsPowerRR0DfAlpha, {"R", "R0", "DegreesOfFreedom", "Alpha"}), GoalLabel,
         RequiredNLabel, true}),
    SizePlot<&SEMParams::Alpha>(
        {text::PlotNVsAlpha, SizeVsAlpha, AlphaAxis,
         Only(text::PlotNVsAlphaRR0PowerGoalDf, {"R", "R0", "PowerGoal", "DegreesOfFreedom"}),
         AlphaLabel, RequiredNLabel, true}),
    SizePlot<&SEMParams::R>(
        {text::ButtonNVsRMSEA, SizeVsRmse, kRmseaAxis,
         Only(text::PlotNVsRMSEARPowerGoalDf, {"PowerGoal", "DegreesOfFreedom"}), kRmseaLabel,
         RequiredNLabel, false}),
    SizePlot<&SEMParams::DegreesOfFreedom>(
        {text::ButtonNVsDf, SizeVsDf, kDfAxis,
         Only(text::PlotNVsDfRR0PowerGoalAlpha, {"R", "R0", "PowerGoal", "Alpha"}), kDfLabel,
         RequiredNLabel, true}),
};

double RmseaEffectOf(const RecordView& record) {
  const auto& p = *static_cast<const SEMParams*>(record.record());
  return p.R - p.R0;
}

// Exact fit has two forms: the test of its own and that of an R0 of 0.
constexpr PlotTexts kTitle =
    Only(text::TitleWithDetail,
         {text::HeadingStructuralEquationModeling,
          {"H0Type",
           {text::H0RmseaZero, text::H0RmseaAtMost, text::H0RmseaAtLeast, text::H0RmseaZero}}});

constexpr ResultsDialogTable kResultsDialogs[] = {
    {Family::SEM,
     ModePower,
     769,
     text::CaptionCalculatePower,
     kPowerRanges,
     {RmseaEffectOf, ModelFitTolerance, false},
     CalculatePower<DescribeSEM, SEMPower>,
     kPowerPlots,
     kTitle},
    {Family::SEM,
     ModeSampleSize,
     770,
     text::CaptionCalculateN,
     kSizeRanges,
     {RmseaEffectOf, ModelFitTolerance, true},
     CalculateSize<DescribeSEM, SEMRequiredN>,
     kSizePlots,
     kTitle},
};

}  // namespace

FamilyDialogs ModelFitDialogs() { return {kParameterDialogs, kResultsDialogs}; }

}  // namespace poweranalysis
