#include "frame/TaskCatalogue.h"

#include <algorithm>
#include <iterator>
#include <vector>

#include "host/Utf8.h"

namespace poweranalysis {

namespace {

constexpr ModeRow kModes[] = {
    {text::PowerCalculation, 671, text::HelpComputePowerToDetectASpecifiedAlternative,
     "scPowPowerCalculation", "power"},
    {text::SampleSizeCalculation, 673, text::HelpEstimateSampleSizesNeededToProduceA,
     "scPowSampleSizeCalculation", "size"},
    {text::HeadingIntervalEstimation, 670,
     text::HelpComputeConfidenceIntervalsOnExperimentalEffects, "scPowIntervalEstimation",
     "interval"},
    {text::TaskProbabilityDistributions, 672,
     text::HelpPerformCalculationsOnProbabilityDistributions, "scPowProbabilityDistribution",
     "calc"},
};

constexpr TaskRow kTests[] = {
    {"T1",
     "one-mean",
     text::OneMeanTTest,
     674,
     text::HelpTheOneSampleTTestForComparingA,
     "scPowOneMeanTTest",
     {{{"CT1PowParamsDialog", 6102, text::CaptionT1PowParamsDialog},
       {"CT1_P_ResultsDialog", 6105, text::CaptionT1_P_ResultsDialog},
       {"CT1SSParametersDialog", 6107, text::CaptionT1SSParametersDialog},
       {"CT1_S_ResultsDialog", 6109, text::CaptionT1_S_ResultsDialog}}}},
    {"T2",
     "two-means",
     text::HeadingTwoMeansTTestIndSamples,
     675,
     text::HelpThe2SampleIndependentSampleTTestForComparing,
     "scPowTwoMeansTTestIndependentSamples",
     {{{"CT2PowParametersDialog", 6115, text::CaptionT2PowParametersDialog},
       {"CT2_P_ResultsDialog", 6119, text::CaptionT2_P_ResultsDialog},
       {"CT2SSParametersDialog", 6117, text::CaptionT2SSParametersDialog},
       {"CT2_S_ResultsDialog", 6121, text::CaptionT2_S_ResultsDialog}}}},
    {"T3",
     "paired-means",
     text::TaskTwoMeansTTestDepSamples,
     676,
     text::HelpTheDependentSampleMatchedSampleTTestFor,
     "scPowTwoMeansTTestDependentSamples",
     {{{"CT3PowParametersDialog", 6127, text::CaptionT3PowParametersDialog},
       {"CT3_P_ResultsDialog", 6129, text::CaptionT3_P_ResultsDialog},
       {"CT3SSParametersDialog", 6131, text::CaptionT3SSParametersDialog},
       {"CT3_S_ResultsDialog", 6133, text::CaptionT3_S_ResultsDialog}}}},
    {"PC",
     "planned-contrast",
     text::TaskSeveralMeansPlannedContrast,
     677,
     text::HelpPlannedContrastsOnMeans,
     "scPowSeveralMeansPlannedContrast",
     {{{"CPCPowParametersDialog", 6171, text::CaptionPCPowParametersDialog},
       {"CPC_P_ResultsDialog", 6173, text::CaptionPC_P_ResultsDialog},
       {"CPCSSParametersDialog", 6310, text::CaptionPCSSParametersDialog},
       {"CPC_S_ResultsDialog", 6176, text::CaptionPC_S_ResultsDialog}}}},
    {"AV1",
     "one-way-anova",
     text::HeadingSeveralMeansANOVA1Way,
     677,
     text::HelpThe1WayAnalysisOfVarianceFixed,
     "scPowSeveralMeansANOVAOneWay",
     {{{"CAV1PowParametersDialog", 6178, text::CaptionAV1PowParametersDialog},
       {"CAV1_P_ResultsDialog", 6180, text::CaptionAV1_P_ResultsDialog},
       {"CAV1SSParametersDialog", 6183, text::CaptionAV1SSParametersDialog},
       {"CAV1_S_ResultsDialog", 6185, text::CaptionAV1_S_ResultsDialog}}}},
    {"AV2",
     "two-way-anova",
     text::TaskSeveralMeansANOVA2Way,
     678,
     text::HelpThe2WayAnalysisOfVarianceFixed,
     "scPowSeveralMeansANOVATwoWay",
     {{{"CAV2PowParametersDialog", 6226, text::CaptionAV2PowParametersDialog},
       {"CAV2_P_ResultsDialog", 6228, text::CaptionAV2_P_ResultsDialog},
       {"CAV2SSParametersDialog", 6230, text::CaptionAV2SSParametersDialog},
       {"CAV2_S_ResultsDialog", 6232, text::CaptionAV2_S_ResultsDialog}}}},
    {"V1",
     "one-variance",
     text::HeadingOneVarianceChiSquareTest,
     679,
     text::HelpTheChiSquareTestForComparingASingle,
     "scPowOneVarianceChiSquareTest",
     {{{"CV1PowParametersDialog", 6151, text::CaptionV1PowParametersDialog},
       {"CV1_P_ResultsDialog", 6153, text::CaptionV1_P_ResultsDialog},
       {"CV1SSParametersDialog", 6155, text::CaptionV1SSParametersDialog},
       {"CV1_S_ResultsDialog", 6157, text::CaptionV1_S_ResultsDialog}}}},
    {"V2",
     "two-variances",
     text::HeadingTwoVariancesFTest,
     680,
     text::HelpTheFTestForComparingTwoVariancesFrom,
     "scPowTwoVariancesFTest",
     {{{"CV2PowParametersDialog", 6161, text::CaptionV2PowParametersDialog},
       {"CV2_P_ResultsDialog", 6163, text::CaptionV2_P_ResultsDialog},
       {"CV2SSParametersDialog", 6165, text::CaptionV2SSParametersDialog},
       {"CV2_S_ResultsDialog", 6167, text::CaptionV2_S_ResultsDialog}}}},
    {"R",
     "one-correlation",
     text::HeadingOneCorrelationTTest,
     681,
     text::HelpTestsOnASingleCorrelationCoefficient,
     "scPowOneCorrelationTTest",
     {{{"CRPowParametersDialog", 6123, text::CaptionRPowParametersDialog},
       {"CR_P_ResultsDialog", 6191, text::CaptionR_P_ResultsDialog},
       {"CRSSParametersDialog", 6195, text::CaptionRSSParametersDialog},
       {"CR_S_ResultsDialog", 6197, text::CaptionR_S_ResultsDialog}}}},
    {"Z2R",
     "two-correlations",
     text::HeadingTwoCorrelationsZTest,
     682,
     text::HelpTheZTestForComparingTwoIndependentCorrelations,
     "scPowTwoCorrelationsZTest",
     {{{"CZ2RPowParametersDialog", 6201, text::CaptionZ2RPowParametersDialog},
       {"CZ2R_P_ResultsDialog", 6203, text::CaptionZ2R_P_ResultsDialog},
       {"CZ2RSSParametersDialog", 6205, text::CaptionZ2RSSParametersDialog},
       {"CZ2R_S_ResultsDialog", 6207, text::CaptionZ2R_S_ResultsDialog}}}},
    {"R2",
     "multiple-correlation",
     text::HeadingSquaredMultipleCorrelation,
     683,
     text::HelpTheSquaredMultipleCorrelationCoefficient,
     "scPowSquaredMultipleCorrelation",
     {{{"CR2PowParametersDialog", 6193, text::CaptionR2PowParametersDialog},
       {"CR2_P_ResultsDialog", 6137, text::CaptionR2_P_ResultsDialog},
       {"CR2SSParametersDialog", 6139, text::CaptionR2SSParametersDialog},
       {"CR2_S_ResultsDialog", 6141, text::CaptionR2_S_ResultsDialog}}}},
    {"P1",
     "one-proportion",
     text::HeadingOneProportionZChiSquareTest,
     684,
     text::HeadingOneProportionZChiSquareTest,
     "scPowOneProportionZChiSquareTest",
     {{{"CP1PowParametersDialog", 6211, text::CaptionP1PowParametersDialog},
       {"CP1_P_ResultsDialog", 6213, text::CaptionP1_P_ResultsDialog},
       {"CP1SSParametersDialog", 6216, text::CaptionP1SSParametersDialog},
       {"CP1_S_ResultsDialog", 6241, text::CaptionP1_S_ResultsDialog}}}},
    {"P2",
     "two-proportions",
     text::HeadingTwoProportionsZTest,
     685,
     text::HeadingTwoProportionsZTest,
     "scPowTwoProportionsZTest",
     {{{"CP2PowParametersDialog", 6243, text::CaptionP2PowParametersDialog},
       {"CP2_P_ResultsDialog", 6245, text::CaptionP2_P_ResultsDialog},
       {"CP2SSParametersDialog", 6247, text::CaptionP2SSParametersDialog},
       {"CP2_S_ResultsDialog", 6249, text::CaptionP2_S_ResultsDialog}}}},
    {"QMAC",
     "mcnemar",
     text::HeadingTwoProportionsPairedSample,
     686,
     text::HelpMcNemarSTestOnTwoCorrelatedProportions,
     "scPowTwoProportionsPairedSample",
     {{{"CQMACPowParametersDialog", 6251, text::CaptionQMACPowParametersDialog},
       {"CQMAC_P_ResultsDialog", 6253, text::CaptionQMAC_P_ResultsDialog},
       {"CQMACSSParametersDialog", 6255, text::CaptionQMACSSParametersDialog},
       {"CQMAC_S_ResultsDialog", 6257, text::CaptionQMAC_S_ResultsDialog}}}},
    {"SA1",
     "log-rank",
     text::HeadingSurvivalLogRankTest,
     687,
     text::HelpSurvivalAnalysisLogRankTestForEquality,
     "scPowSurvivalLogRankTest",
     {{{"CSA1PowParametersDialog", 6239, text::CaptionSA1PowParametersDialog},
       {"CSA1_P_ResultsDialog", 6262, text::CaptionSA1_P_ResultsDialog},
       {"CSA1SSParametersDialog", 6264, text::CaptionSA1SSParametersDialog},
       {"CSA1_S_ResultsDialog", 6266, text::CaptionSA1_S_ResultsDialog}}}},
    {"SA2",
     "exponential-survival",
     text::HeadingSurvivalExponentialAccrual,
     687,
     text::HelpSurvivalAnalysisTestBasedOnExponential,
     "scPowSurvivalExponentialAccrual",
     {{{"CSA2PowParametersDialog", 6270, text::CaptionSA2PowParametersDialog},
       {"CSA2_P_ResultsDialog", 6272, text::CaptionSA2_P_ResultsDialog},
       {"CSA2SSParametersDialog", 6268, text::CaptionSA2SSParametersDialog},
       {"CSA2_S_ResultsDialog", 6274, text::CaptionSA2_S_ResultsDialog}}}},
    {"SA3",
     "exponential-survival-dropouts",
     text::HeadingSurvivalExpAccrualDropouts,
     687,
     text::HelpSurvivalAnalysisExpSurvivalAccrualPeriod,
     "scPowSurvivalExponentialAccrualDropouts",
     {{{"CSA3PowParametersDialog", 6276, text::CaptionSA3PowParametersDialog},
       {"CSA3_P_ResultsDialog", 6308, text::CaptionSA3_P_ResultsDialog},
       {"CSA3SSParametersDialog", 6279, text::CaptionSA3SSParametersDialog},
       {"CSA3_S_ResultsDialog", 6281, text::CaptionSA3_S_ResultsDialog}}}},
    {"SEM",
     "model-fit",
     text::HeadingStructuralEquationModeling,
     189,
     text::HelpStructuralEquationModeling,
     "scPowStructuralEquationModeling",
     {{{"CSEMPowParametersDialog", 6259, text::CaptionSEMPowParametersDialog},
       {"CSEM_P_ResultsDialog", 6218, text::CaptionSEM_P_ResultsDialog},
       {"CSEMSSParametersDialog", 6220, text::CaptionSEMSSParametersDialog},
       {"CSEM_S_ResultsDialog", 6222, text::CaptionSEM_S_ResultsDialog}}}},
};

constexpr TaskRow kIntervals[] = {
    {"T1",
     "one-mean",
     text::OneMeanTTest,
     674,
     text::HelpTheOneSampleTTestForComparingA,
     "scPowIntervalOneMeanTTest",
     {{{"CT1IntParametersDialog", 6111, text::CaptionT1IntParametersDialog}}}},
    {"T2",
     "two-means",
     text::HeadingTwoMeansTTestIndSamples,
     675,
     text::HelpThe2SampleIndependentSampleTTestForComparing,
     "scPowIntervalTwoMeansTTestIndpendentSamples",
     {{{"CT2IntParametersDialog", 6125, text::CaptionT2IntParametersDialog}}}},
    {"T3",
     "paired-means",
     text::TaskTwoMeansTTestDepSamples,
     676,
     text::HelpTheDependentSampleMatchedSampleTTestFor,
     "scPowIntervalTwoMeansTTestDependentSamples",
     {{{"CT3IntParametersDialog", 6135, text::CaptionT3IntParametersDialog}}}},
    {"PC",
     "planned-contrast",
     text::TaskSeveralMeansPlannedContrast,
     677,
     text::HelpPlannedContrastsOnMeans,
     "scPowIntervalSeveralMeansPlannedContrast",
     {{{"CPCIntParametersDialog", 6236, text::CaptionPCIntParametersDialog}}}},
    {"AV1",
     "one-way-anova",
     text::HeadingSeveralMeansANOVA1Way,
     677,
     text::HelpThe1WayAnalysisOfVarianceFixed,
     "scPowIntervalSeveralMeansANOVAOneWay",
     {{{"CAV1IntParametersDialog", 6187, text::CaptionAV1IntParametersDialog}}}},
    {"AV2",
     "two-way-anova",
     text::TaskSeveralMeansANOVA2Way,
     678,
     text::HelpThe2WayAnalysisOfVarianceFixed,
     "scPowIntervalSeveralMeansANOVATwoWay",
     {{{"CAV2IntParametersDialog", 6234, text::CaptionAV2IntParametersDialog}}}},
    {"R",
     "one-correlation",
     text::HeadingOneCorrelationTTest,
     681,
     text::HelpTestsOnASingleCorrelationCoefficient,
     "scPowIntervalOneCorrelationTTest",
     {{{"CRIntParametersDialog", 6199, text::CaptionRIntParametersDialog}}}},
    {"R2",
     "multiple-correlation",
     text::HeadingSquaredMultipleCorrelation,
     683,
     text::HelpTheSquaredMultipleCorrelationCoefficient,
     "scPowIntervalSquaredMultipleCorrelation",
     {{{"CR2IntParametersDialog", 6143, text::CaptionR2IntParametersDialog}}}},
    {"P1",
     "one-proportion",
     text::HeadingOneProportionZChiSquareTest,
     684,
     text::HeadingOneProportionZChiSquareTest,
     "scPowIntervalOneProportionZChiSquareTest",
     {{{"CP1IntParametersDialog", 6307, text::CaptionP1IntParametersDialog}}}},
    {"SEM",
     "model-fit",
     text::HeadingStructuralEquationModeling,
     189,
     text::HelpStructuralEquationModeling,
     "scPowIntervalStructuralEquationModeling",
     {{{"CSEMIntParametersDialog", 6224, text::CaptionSEMIntParametersDialog}}}},
};

constexpr TaskRow kCalculators[] = {
    {"T",
     "t",
     text::TaskNoncentralTDistribution,
     585,
     text::HelpCalculationsForNoncentralTDistribution,
     "scPowDistributionNonCentralT",
     {{{"CTDistributionDialog", 6113, text::CaptionTDistributionDialog}}}},
    {"F",
     "f",
     text::TaskNoncentralFDistribution,
     586,
     text::HelpCalculationsForNoncentralFDistribution,
     "scPowDistributionNonCentralF",
     {{{"CFDistributionDialog", 6149, text::CaptionFDistributionDialog}}}},
    {"X2",
     "chi-square",
     text::TaskNoncentralChiSquareDistribution,
     99,
     text::HelpCalculationsForNoncentralChiSquareDistribution,
     "scPowDistributionNonCentralChiSuare",
     {{{"CX2DistributionDialog", 6147, text::CaptionX2DistributionDialog}}}},
    {"R2",
     "r-square",
     text::HeadingSquaredMultipleCorrelation,
     683,
     text::HelpCalculationsForDistributionOfTheSquaredMultiple,
     "scPowDistributionSquaredMultipleCorrelation",
     {{{"CR2DistributionDialog", 6145, text::CaptionR2DistributionDialog}}}},
    {"R",
     "correlation",
     text::TaskPearsonCorrelation,
     110,
     text::HelpCalculationsForDistributionOfTheCorrelationCoefficient,
     "scPowDistributionPearsonCorrelation",
     {{{"CRDistributionDialog", 6189, text::CaptionRDistributionDialog}}}},
    {"Binomial",
     "binomial",
     text::TaskBinomialDistribution,
     98,
     text::HelpCalculationsForBinomialDistribution,
     "scPowDistributionBinomial",
     {{{"CBinomialDistributionDialog", 6209, text::CaptionBinomialDistributionDialog}}}},
};
constexpr DialogRow kStartup = {"CDefineTask", 6100, text::CaptionDefineTask};

// The second, misspelled name of row 1, which stays beside the right one.
constexpr Enumerator kMisspelled = {"scPowTwoMeansTTestIndpendentSamples", 1};

constexpr std::size_t kTypes =
    std::size(kTests) + 1 + std::size(kIntervals) + std::size(kCalculators);

constexpr std::array<Enumerator, kTypes> MakeAnalysisTypes() {
  std::array<Enumerator, kTypes> types{};
  std::size_t next = 0;
  for (std::size_t row = 0; row < std::size(kTests); ++row) {
    types[next++] = {kTests[row].enumerator, static_cast<int>(row)};
    if (static_cast<int>(row) == kMisspelled.value) {
      types[next++] = kMisspelled;
    }
  }
  for (std::size_t row = 0; row < std::size(kIntervals); ++row) {
    types[next++] = {kIntervals[row].enumerator, static_cast<int>(row)};
  }
  for (std::size_t row = 0; row < std::size(kCalculators); ++row) {
    types[next++] = {kCalculators[row].enumerator, static_cast<int>(row)};
  }
  return types;
}

constexpr std::array<Enumerator, kTypes> kAnalysisTypes = MakeAnalysisTypes();

constexpr std::array<Enumerator, ModeCount> kAnalysisItems = {{
    {kModes[0].enumerator, 0},
    {kModes[1].enumerator, 1},
    {kModes[2].enumerator, 2},
    {kModes[3].enumerator, 3},
}};

const TaskRow* FindRow(int mode, int row) {
  // The mode is tested first, and a negative row (an empty list selection) is out of range.
  const std::span<const TaskRow> tasks = Tasks(mode);
  return row >= 0 && static_cast<std::size_t>(row) < tasks.size()
             ? &tasks[static_cast<std::size_t>(row)]
             : nullptr;
}

}  // namespace

std::span<const ModeRow> Modes() { return kModes; }

const char* ModeWord(int mode) {
  return mode >= 0 && mode < ModeCount ? kModes[static_cast<std::size_t>(mode)].word : "";
}

std::span<const TaskRow> Tasks(int mode) {
  switch (mode) {
    case ModePower:
    case ModeSampleSize:
      return kTests;
    case ModeInterval:
      return kIntervals;
    case ModeDistribution:
      return kCalculators;
    default:
      return {};
  }
}

const DialogRow* ComputeDialog(int mode, int row) {
  const TaskRow* task = FindRow(mode, row);
  return task == nullptr ? nullptr : &task->dialogs[mode == ModeSampleSize ? 2 : 0];
}

const DialogRow* ResultDialog(int mode, int row) {
  if (mode != ModePower && mode != ModeSampleSize) {
    return nullptr;
  }
  const TaskRow* task = FindRow(mode, row);
  return task == nullptr ? nullptr : &task->dialogs[mode == ModeSampleSize ? 3 : 1];
}

const DialogRow& StartupDialog() { return kStartup; }

CatalogueDialog FindDialog(int resource) {
  for (int mode = 0; mode < ModeCount; ++mode) {
    for (int row = 0; row < static_cast<int>(Tasks(mode).size()); ++row) {
      for (const bool result : {false, true}) {
        const DialogRow* dialog = result ? ResultDialog(mode, row) : ComputeDialog(mode, row);
        if (dialog != nullptr && dialog->resource == resource) {
          return {dialog, mode, row, result};
        }
      }
    }
  }
  return {nullptr, 0, 0, false};
}

std::span<const Enumerator> AnalysisTypes() { return kAnalysisTypes; }

std::span<const Enumerator> AnalysisItems() { return kAnalysisItems; }

int FindTask(int mode, std::string_view familyOrName) {
  const std::span<const TaskRow> tasks = Tasks(mode);
  const auto task = std::find_if(tasks.begin(), tasks.end(), [&](const TaskRow& row) {
    return SameInAnyCase(familyOrName, row.family) || SameInAnyCase(familyOrName, row.readableName);
  });
  return task == tasks.end() ? -1 : static_cast<int>(task - tasks.begin());
}

}  // namespace poweranalysis
