#include "dialogs/DialogRows.h"
#include "dialogs/FamilyDialogs.h"
#include "procedures/Anova.h"

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

// --- Planned contrast.

struct ContrastStudy {
  PCParams record;
  std::int64_t sizeLimit = 0;
  CriticalTCache criticals{};
};

ContrastStudy DescribePC(const PowerSettings& block) {
  return {block.PC.Committed, block.PC.Upper.SampleSize};
}

double PowerAt(ProcedureObserver& observer, ContrastStudy& study, std::int64_t n) {
  const PCParams& p = study.record;
  return TrialPower(observer, [&](Refusal& refusal) {
    return ContrastPower(p.NumberOfGroups, n, p.Alpha, p.StandardizedEffect, p.SumOfSquaredWeights,
                         refusal, study.criticals);
  });
}

double PCPower(ProcedureObserver& observer, ContrastStudy& study) {
  return PowerAt(observer, study, study.record.SampleSize);
}

// A search that passed the limit on its way may still have come to a size: the size decides.
SearchResult PCRequiredN(ProcedureObserver& observer, ContrastStudy& study) {
  const PCParams& p = study.record;
  SearchResult found = ContrastRequiredN({p.StandardizedEffect, p.SumOfSquaredWeights,
                                          p.NumberOfGroups, p.Alpha, p.PowerGoal, study.sizeLimit},
                                         study.criticals, observer);
  if (found.requiredSize != SizeFailure) {
    found.status = SearchOk;
    found.actualPower = PowerAt(observer, study, found.requiredSize);
  }
  return found;
}

// --- One-way analysis of variance.

struct OneWayStudy {
  AV1Params record;
  double committedAlpha = 0;
  std::int64_t sizeLimit = 0;
  CriticalFCache criticals{};
};

OneWayStudy DescribeAV1(const PowerSettings& block) {
  return {block.AV1.Committed, block.AV1.Committed.Alpha, block.AV1.Upper.N};
}

OneWayTest TestOf(const AV1Params& p) {
  return {p.NumberOfGroups, p.RMSSE, p.Alpha, p.ModelType, p.Algorithm};
}

double OneWayPowerOf(OneWayStudy& study, double& critical) {
  int err = 0;
  return OneWayPower(TestOf(study.record), study.record.N, err, critical, study.criticals);
}

double AV1Power(ProcedureObserver&, OneWayStudy& study) {
  double critical = NumericFailure;
  return OneWayPowerOf(study, critical);
}

SearchResult AV1RequiredN(ProcedureObserver& observer, OneWayStudy& study) {
  const AV1Params& p = study.record;
  return OneWayRequiredN({TestOf(p), study.committedAlpha, p.PowerGoal, study.sizeLimit},
                         study.criticals, observer);
}

FDesign OneWayDesignOf(const AV1Params& p) { return OneWayDesign(p.NumberOfGroups, p.N, p.RMSSE); }

CalculationOutcome CalculateAV1Power(ProcedureObserver&, const PowerSettings& block) {
  OneWayStudy study = DescribeAV1(block);
  const FDesign design = OneWayDesignOf(study.record);
  CalculationOutcome outcome;
  outcome.good = true;
  Computed& computed = outcome.computed;
  computed.noncentrality = design.delta;
  computed.effectDf[0] = static_cast<double>(design.df1);
  computed.errorDf = static_cast<double>(design.df2);
  computed.power[0] = OneWayPowerOf(study, computed.critical[0]);
  return outcome;
}

CalculationOutcome CalculateAV1Size(ProcedureObserver& observer, const PowerSettings& block) {
  CalculationOutcome outcome = CalculateSize<DescribeAV1, AV1RequiredN>(observer, block);
  outcome.computed.noncentrality = OneWayDesignOf(block.AV1.Committed).delta;
  return outcome;
}

// --- Two-way analysis of variance: three tests on one error term, each on its own.

constexpr std::size_t kEffects = 3;
constexpr f64 AV2Params::*kRmsse[kEffects] = {&AV2Params::RMSSE_Row, &AV2Params::RMSSE_Col,
                                              &AV2Params::RMSSE_Int};

struct TwoWayStudy {
  AV2Params record;
  std::int64_t sizeLimit = 0;
  CriticalFCache criticals{};
};

TwoWayStudy DescribeAV2(const PowerSettings& block) {
  return {block.AV2.Committed, block.AV2.Upper.N};
}

double TwoWayPowerOf(ProcedureObserver& observer,
                     TwoWayStudy& study,
                     std::size_t effect,
                     double& critical) {
  const AV2Params& p = study.record;
  return TrialPower(observer, [&](Refusal& refusal) {
    int err = 0;
    return TwoWayPower(p.Alpha, p.Rows, p.Columns, p.N, p.*kRmsse[effect], p.Algorithm,
                       static_cast<std::int16_t>(effect), critical, err, refusal, study.criticals);
  });
}

SearchResult TwoWayRequiredNOf(ProcedureObserver& observer,
                               TwoWayStudy& study,
                               std::size_t effect) {
  const AV2Params& p = study.record;
  return TwoWayRequiredN({p.Rows, p.Columns, p.*kRmsse[effect], p.Alpha, p.PowerGoal, p.Algorithm,
                          static_cast<std::int16_t>(effect), study.sizeLimit},
                         study.criticals, observer);
}

template <std::size_t effect>
double AV2Power(ProcedureObserver& observer, TwoWayStudy& study) {
  double critical = NumericFailure;
  return TwoWayPowerOf(observer, study, effect, critical);
}

template <std::size_t effect>
std::int64_t AV2Size(ProcedureObserver& observer, TwoWayStudy& study) {
  const SearchResult found = TwoWayRequiredNOf(observer, study, effect);
  observer.Tell(found.refusal);
  return found.status == SearchOk ? found.requiredSize : SizeFailure;
}

// An effect that is refused says so and leaves its rows blank; the others go on.
bool EffectRefused(ProcedureObserver& observer,
                   const TwoWayStudy& study,
                   std::size_t effect,
                   bool search) {
  Refusal refusal;
  NullHypothesisCheck(study.record.*kRmsse[effect], H0AtMost,
                      PolicyOf(SearchMember::TwoWayAnova).nullTolerance, search ? 1 : 0, refusal);
  observer.Tell(refusal);
  return static_cast<bool>(refusal);
}

CalculationOutcome CalculateAV2Power(ProcedureObserver& observer, const PowerSettings& block) {
  TwoWayStudy study = DescribeAV2(block);
  const AV2Params& p = study.record;
  CalculationOutcome outcome;
  outcome.good = true;
  Computed& computed = outcome.computed;
  for (std::size_t effect = 0; effect < kEffects; ++effect) {
    const auto selector = static_cast<std::int16_t>(effect);
    computed.effectDf[effect] =
        static_cast<double>(ShownTwoWayEffectDf(p.Rows, p.Columns, selector));
    computed.errorDf = static_cast<double>(TwoWayDesign(p.Rows, p.Columns, p.N, 0, selector).df2);
    computed.power[effect] = NumericFailure;
    if (!EffectRefused(observer, study, effect, false)) {
      computed.power[effect] = TwoWayPowerOf(observer, study, effect, computed.critical[effect]);
    }
  }
  return outcome;
}

CalculationOutcome CalculateAV2Size(ProcedureObserver& observer, const PowerSettings& block) {
  TwoWayStudy study = DescribeAV2(block);
  CalculationOutcome outcome;
  outcome.good = true;
  Computed& computed = outcome.computed;
  for (std::size_t effect = 0; effect < kEffects; ++effect) {
    computed.power[effect] = NumericFailure;
    computed.size[effect] = SizeFailure;
    if (EffectRefused(observer, study, effect, true)) {
      continue;
    }
    // A search that passed the limit still tells its last power, which is none to show: the rows of
    // a failed effect stay blank.
    const SearchResult found = TwoWayRequiredNOf(observer, study, effect);
    observer.Tell(found.refusal);
    if (found.status == SearchOk) {
      computed.power[effect] = found.actualPower;
      computed.size[effect] = found.requiredSize;
    }
  }
  return outcome;
}

// --- Plots.

constexpr PlotTexts kRmsseLabel = Only(text::RowRMSSE);

template <auto vary>
constexpr PlotRow PCPowerPlot(const PlotWords& words) {
  return Plot<DescribePC, PCPower, vary>(words);
}
template <auto vary>
constexpr PlotRow PCSizePlot(const PlotWords& words) {
  return Plot<DescribePC, SizeOf<PCRequiredN, ContrastStudy>, vary>(words);
}
template <auto vary>
constexpr PlotRow AV1PowerPlot(const PlotWords& words) {
  return Plot<DescribeAV1, AV1Power, vary>(words);
}
template <auto vary>
constexpr PlotRow AV1SizePlot(const PlotWords& words) {
  return Plot<DescribeAV1, SizeOf<AV1RequiredN, OneWayStudy>, vary>(words);
}

constexpr PlotRow kPCPowerPlots[] = {
    PCPowerPlot<&PCParams::SampleSize>(
        {text::PlotPowerVsN, PowerVsSize, NAxis,
         Only(text::PlotPowerVsNEsAlphaGroups, {"StandardizedEffect", "Alpha", "NumberOfGroups"}),
         GroupNLabel, PowerLabel, true}),
    PCPowerPlot<&PCParams::StandardizedEffect>(
        {text::CaptionPowerVsEs, PowerVsEffect, EsAxis,
         Only(text::PlotPowerVsEsNAlphaGroups, {"SampleSize", "Alpha", "NumberOfGroups"}), EsLabel,
         PowerLabel, false}),
    PCPowerPlot<&PCParams::Alpha>({text::PlotPowerVsAlpha, PowerVsAlpha, AlphaAxis,
                                   Only(text::PlotPowerVsAlphaEsNGroups,
                                        {"StandardizedEffect", "SampleSize", "NumberOfGroups"}),
                                   AlphaLabel, PowerLabel, true}),
};

constexpr PlotRow kPCSizePlots[] = {
    PCSizePlot<&PCParams::PowerGoal>(
        {text::PlotNVsPower, SizeVsPower, PowerAxis,
         Only(text::PlotNVsPowerEsAlphaGroupsSSWeights,
              {"StandardizedEffect", "Alpha", "NumberOfGroups", "SumOfSquaredWeights"}),
         GoalLabel, RequiredNLabel, true}),
    PCSizePlot<&PCParams::StandardizedEffect>(
        {text::CaptionNVsEs, SizeVsEffect, EsAxis,
         Only(text::PlotNVsEsAlphaGroupsSSWeights,
              {"Alpha", "NumberOfGroups", "SumOfSquaredWeights"}),
         EsLabel, RequiredNLabel, false}),
    PCSizePlot<&PCParams::Alpha>(
        {text::PlotNVsAlpha, SizeVsAlpha, AlphaAxis,
         Only(text::PlotNVsAlphaEsGroupsSSWeights,
              {"StandardizedEffect", "NumberOfGroups", "SumOfSquaredWeights"}),
         AlphaLabel, RequiredNLabel, true}),
};

constexpr PlotRow kAV1PowerPlots[] = {
    AV1PowerPlot<&AV1Params::N>(
        {text::PlotPowerVsN, PowerVsSize, NAxis,
         Only(text::PlotPowerVsNRMSSEGroupsAlpha, {"RMSSE", "NumberOfGroups", "Alpha"}),
         GroupNLabel, PowerLabel, true}),
    AV1PowerPlot<&AV1Params::RMSSE>(
        {text::ButtonPowerVsRMSSE, PowerVsRmse, RmsseAxis,
         Only(text::PlotPowerVsRMSSEAlphaGroupsN, {"Alpha", "NumberOfGroups", "N"}), kRmsseLabel,
         PowerLabel, false}),
    AV1PowerPlot<&AV1Params::Alpha>(
        {text::PlotPowerVsAlpha, PowerVsAlpha, AlphaAxis,
         Only(text::PlotPowerVsAlphaRMSSEGroupsN, {"RMSSE", "NumberOfGroups", "N"}), AlphaLabel,
         PowerLabel, true}),
};

constexpr PlotRow kAV1SizePlots[] = {
    AV1SizePlot<&AV1Params::RMSSE>(
        {text::ButtonNVsRMSSE, SizeVsRmse, RmsseAxis,
         Only(text::PlotNVsRMSSEAlphaGroupsPower, {"Alpha", "NumberOfGroups", "PowerGoal"}),
         kRmsseLabel, RequiredNLabel, false}),
    AV1SizePlot<&AV1Params::Alpha>(
        {text::PlotNVsAlpha, SizeVsAlpha, AlphaAxis,
         Only(text::PlotNVsAlphaRMSSEGroupsPower, {"RMSSE", "NumberOfGroups", "PowerGoal"}),
         AlphaLabel, RequiredNLabel, true}),
    AV1SizePlot<&AV1Params::PowerGoal>(
        {text::PlotNVsPower, SizeVsPower, PowerAxis,
         Only(text::PlotNVsPowerRMSSEGroupsAlpha, {"RMSSE", "NumberOfGroups", "Alpha"}), GoalLabel,
         RequiredNLabel, true}),
};

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

template <std::size_t effect>
double RmsseOf(const RecordView& record) {
  return static_cast<const AV2Params*>(record.record())->*kRmsse[effect];
}

// The check of one effect's plots.
template <std::size_t effect>
constexpr NullCheckRow CheckOf(bool search) {
  return {RmsseOf<effect>, PolicyOf(SearchMember::TwoWayAnova).nullTolerance, search, H0AtMost};
}

// The plots of one effect, in the order of their buttons.
template <std::size_t effect>
constexpr std::array<PlotRow, kEffects> TwoWayPowerPlots() {
  const EffectWords& words = kEffectWords[effect];
  constexpr NullCheckRow check = CheckOf<effect>(false);
  return {{
      Plot<DescribeAV2, AV2Power<effect>, &AV2Params::N>(
          {text::PlotPowerVsN, PowerVsSize, NAxis, Only(words.powerVsN, {words.rmsse, "Alpha"}),
           GroupNLabel, PowerLabel, true, check}),
      Plot<DescribeAV2, AV2Power<effect>, kRmsse[effect]>(
          {text::ButtonPowerVsRMSSE, PowerVsRmse, RmsseAxis,
           Only(words.powerVsRmsse, {"N", "Alpha"}), Only(words.rmsseLabel), PowerLabel, false,
           check}),
      Plot<DescribeAV2, AV2Power<effect>, &AV2Params::Alpha>(
          {text::PlotPowerVsAlpha, PowerVsAlpha, AlphaAxis,
           Only(words.powerVsAlpha, {"N", words.rmsse}), AlphaLabel, PowerLabel, true, check}),
  }};
}

template <std::size_t effect>
constexpr std::array<PlotRow, kEffects> TwoWaySizePlots() {
  const EffectWords& words = kEffectWords[effect];
  constexpr NullCheckRow check = CheckOf<effect>(true);
  return {{
      Plot<DescribeAV2, AV2Size<effect>, &AV2Params::PowerGoal>(
          {text::PlotNVsPower, SizeVsPower, PowerAxis,
           Only(words.sizeVsPower, {words.rmsse, "Alpha"}), GoalLabel, RequiredNLabel, true,
           check}),
      Plot<DescribeAV2, AV2Size<effect>, kRmsse[effect]>(
          {text::ButtonNVsRMSSE, SizeVsRmse, RmsseAxis,
           Only(words.sizeVsRmsse, {"PowerGoal", "Alpha"}), Only(words.rmsseLabel), RequiredNLabel,
           false, check}),
      Plot<DescribeAV2, AV2Size<effect>, &AV2Params::Alpha>(
          {text::PlotNVsAlpha, SizeVsAlpha, AlphaAxis,
           Only(words.sizeVsAlpha, {"PowerGoal", "Alpha"}), AlphaLabel, RequiredNLabel, true,
           check}),
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
    ByButton(TwoWayPowerPlots<0>(), TwoWayPowerPlots<1>(), TwoWayPowerPlots<2>());
constexpr auto kAV2SizePlots =
    ByButton(TwoWaySizePlots<0>(), TwoWaySizePlots<1>(), TwoWaySizePlots<2>());

// --- Results dialogs.

double PCEffectOf(const RecordView& record) {
  return static_cast<const PCParams*>(record.record())->StandardizedEffect;
}

double AV1EffectOf(const RecordView& record) {
  return static_cast<const AV1Params*>(record.record())->RMSSE;
}

void DeriveAV1(const RecordView& record, Computed& derived) {
  derived.noncentrality = OneWayDesignOf(*static_cast<const AV1Params*>(record.record())).delta;
}

constexpr double kPCTolerance = PolicyOf(SearchMember::PlannedContrast).nullTolerance;
constexpr double kAV1Tolerance = PolicyOf(SearchMember::OneWayAnova).nullTolerance;

constexpr PlotTexts kPCTitle = Only(text::PlotPlannedContrastH0Psi0);
constexpr PlotTexts kAV2Title = Only(text::Plot2WayXANOVA, {"Rows", "Columns"});

constexpr ResultsDialogTable kResultsDialogs[] = {
    {Family::PC,
     ModePower,
     48,
     text::CaptionCalculatePower,
     kPCPowerRanges,
     {PCEffectOf, kPCTolerance, false, H0TwoTailed},
     CalculatePower<DescribePC, PCPower>,
     kPCPowerPlots,
     kPCTitle},
    {Family::PC,
     ModeSampleSize,
     49,
     text::CaptionCalculateN,
     kPCSizeRanges,
     {PCEffectOf, kPCTolerance, true, H0TwoTailed},
     CalculateSize<DescribePC, PCRequiredN>,
     kPCSizePlots,
     kPCTitle},
    // The power of one-way tests has no null hypothesis to refuse: without an effect it is alpha.
    {Family::AV1,
     ModePower,
     80,
     text::CaptionCalculatePower,
     kPowerRanges,
     {},
     CalculateAV1Power,
     kAV1PowerPlots,
     {},
     nullptr,
     DeriveAV1},
    {Family::AV1,
     ModeSampleSize,
     81,
     text::CaptionCalculateN,
     kSizeRanges,
     {AV1EffectOf, kAV1Tolerance, true, H0AtMost},
     CalculateAV1Size,
     kAV1SizePlots,
     {},
     nullptr,
     DeriveAV1},
    // The calculations of two-way tests check each effect themselves.
    {Family::AV2,
     ModePower,
     1025,
     text::CaptionCalculatePower,
     kPowerRanges,
     {},
     CalculateAV2Power,
     kAV2PowerPlots,
     kAV2Title},
    {Family::AV2,
     ModeSampleSize,
     1026,
     text::CaptionCalculateN,
     kSizeRanges,
     {},
     CalculateAV2Size,
     kAV2SizePlots,
     kAV2Title},
};

}  // namespace

FamilyDialogs AnovaDialogs() { return {kParameterDialogs, kResultsDialogs}; }

}  // namespace poweranalysis
