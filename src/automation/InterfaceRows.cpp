#include "automation/InterfaceRows.h"

#include <iterator>

#include "dialogs/Controls.h"
#include "frame/DefineTask.h"

namespace poweranalysis {

namespace {

using Type = MemberType;

constexpr MemberRow Dialog(const char* interface) { return {RowKind::Dialog, interface}; }
// A property over an edit control; without a field it is called as its field is.
constexpr MemberRow Real(const char* name, const char* field = nullptr, int control = 0) {
  return {RowKind::Edit, name, field == nullptr ? name : field, control, -1, Type::Real};
}
constexpr MemberRow Int(const char* name, const char* field = nullptr) {
  return {RowKind::Edit, name, field == nullptr ? name : field, 0, -1, Type::Int};
}
// A flag that is 1 when the field has a value.
constexpr MemberRow Flag(const char* name, const char* field, int value) {
  return {RowKind::Flag, name, field, 0, value, Type::Int};
}
constexpr MemberRow RealFlag(const char* name, const char* field, int value) {
  return {RowKind::Flag, name, field, 0, value, Type::Real};
}
constexpr MemberRow Check(const char* name, const char* field) {
  return {RowKind::Check, name, field, 0, -1, Type::Int};
}
constexpr MemberRow List(const char* name, int control, Type type) {
  return {RowKind::List, name, "", control, -1, type};
}
constexpr MemberRow Graph(const char* name) {
  return {RowKind::Graph, name, "", 0, -1, Type::Object};
}
constexpr MemberRow Method(const char* name, int control) {
  return {RowKind::Button, name, "", control, -1, Type::None};
}

// What stands in many interfaces.
constexpr MemberRow kAlpha = Real("Alpha");
constexpr MemberRow kPowerGoal = Real("PowerGoal");
constexpr MemberRow kConfidence = Real("ConfidenceLevel", "Confidence");
constexpr MemberRow kSampleSize = Int("SampleSize");
constexpr MemberRow kTwoTailedEqual = Flag("TwoTailedEqual", "H0Type", 0);
constexpr MemberRow kOneTailedLow = Flag("OneTailedLow", "H0Type", 1);
constexpr MemberRow kOneTailedHigh = Flag("OneTailedHigh", "H0Type", 2);
constexpr MemberRow kStartOfAlpha = Real("StartOfAlpha", "AlphaStart");
constexpr MemberRow kEndOfAlpha = Real("EndOfAlpha", "AlphaEnd");
constexpr MemberRow kStartOfPower = Real("StartOfPower", "PowerStart");
constexpr MemberRow kEndOfPower = Real("EndOfPower", "PowerEnd");
constexpr MemberRow kStartOfSampleSize = Int("StartOfSampleSize", "NStart");
constexpr MemberRow kEndOfSampleSize = Int("EndOfSampleSize", "NEnd");
constexpr MemberRow kNumberOfSteps = Int("NumberOfSteps", "NInterval");
constexpr MemberRow kSummary = {RowKind::Summary, "Summary", "", ControlAccept, -1, Type::Object};
constexpr MemberRow kSaveSettingsAs = Method("SaveSettingsAs", ControlSaveAs);
constexpr MemberRow kSaveAsDefault = Method("SaveAsDefault", ControlSaveAsDefault);

// The observed F of the one-way interval dialog has a control of its own.
constexpr int kObservedFOfOneWay = 4801;

// Irregular names and types are part of the vocabulary and stay as they are.
// Kept: "ExactAlgorithmn", "Chisquare", "DegreeOfFreedom" beside "DegreesOfFreedom",
// "StartProportion" beside "StartOfProportion", "SumofSquaresWeights" beside "SumOfSquareWeights";
// sizes, periods and flags of type double.
// clang-format off
constexpr MemberRow kRows[] = {
    Dialog("PowStartup"),
    List("AnalysisType", ControlTasks, Type::AnalysisType),
    List("AnalysisItem", ControlModes, Type::AnalysisItem),
    Dialog("PowOnewayAnovaGrid"),
    Dialog("PowT1PowParamsDialog"),
    Real("Mean1", "Mu0"), Real("Mean2", "Mu"), Real("Sigma"), kAlpha, kTwoTailedEqual,
    kOneTailedLow, kOneTailedHigh, kSampleSize, kSaveSettingsAs, kSaveAsDefault,
    Dialog("PowT1_P_ResultsDialog"),
    Real("StartStandardEffects", "EsStart"), Real("EndStandardEffects", "EsEnd"), kStartOfAlpha,
    kEndOfAlpha, kStartOfSampleSize, kEndOfSampleSize, kNumberOfSteps, kSummary,
    Graph("GraphOfPowerVsN"), Graph("GraphOfPowerVsEs"), Graph("GraphOfPowerVsAlpha"),
    Dialog("PowT2PowParametersDialog"),
    Real("Mean1", "Mu1"), Real("Mean2", "Mu2"), Real("Sigma"), kAlpha,
    Int("SampleSize1", "SampleSizeN1"), Int("SampleSize2", "SampleSizeN2"), kTwoTailedEqual,
    kOneTailedLow, kOneTailedHigh, kSaveSettingsAs, kSaveAsDefault,
    Dialog("PowT2_P_ResultsDialog"),
    Real("StartStandardEffects", "EsStart"), Real("EndStandardEffects", "EsEnd"), kStartOfAlpha,
    kEndOfAlpha, kStartOfSampleSize, kEndOfSampleSize, kNumberOfSteps, kSummary,
    Graph("GraphOfPowerVsN"), Graph("GraphOfPowerVsN1"), Graph("GraphOfPowerVsN2"),
    Graph("GraphOfPowerVsEs"), Graph("GraphOfPowerVsAlpha"),
    Dialog("PowT3PowParametersDialog"),
    Real("Mean1", "Mu1"), Real("Mean2", "Mu2"), Real("Sigma1"), Real("Sigma2"),
    Real("RValue", "BetweenGroupR"), kAlpha, kTwoTailedEqual, kOneTailedLow, kOneTailedHigh,
    kSampleSize, kSaveSettingsAs, kSaveAsDefault,
    Dialog("PowR2PowParametersDialog"),
    Real("PopulationSquaredCorrelation", "PopulationR2"), Real("CSquare", "R2Null"), kAlpha,
    Int("Predictors", "TotalNumberOfVars"), kTwoTailedEqual, kOneTailedLow, kOneTailedHigh,
    Flag("OneTailedZero", "H0Type", 3), kSampleSize, kSaveSettingsAs, kSaveAsDefault,
    Dialog("PowAV1PowParametersDialog"),
    Real("RMSSE"), kAlpha, Int("NumberOfGroups"), Int("SampleSizePerGroup", "N"),
    Flag("FixedEffectsModel", "ModelType", 0), Flag("RandomEffectsModel", "ModelType", 1),
    kSaveSettingsAs, kSaveAsDefault,
    Dialog("PowPCPowParametersDialog"),
    Real("StandardizedEffect"), Real("SumOfSquareWeights", "SumOfSquaredWeights"), kAlpha,
    Int("NumberOfGroups"), Int("SampleSizePerGroup", "SampleSize"), kSaveSettingsAs,
    kSaveAsDefault,
    Dialog("PowV1PowParametersDialog"),
    Real("PopulationVariance"), Real("HypothesizedVariance", "NullHypothesizedVariance"), kAlpha,
    Int("DegreesOfFreedom"), kTwoTailedEqual, kOneTailedLow, kOneTailedHigh, kSaveSettingsAs,
    kSaveAsDefault,
    Dialog("PowV2PowParametersDialog"),
    Real("Variance1", "Var1"), Real("Variance2", "Var2"), kAlpha,
    Int("DegreesOfFreedom1", "Df1"), Int("DegreesOfFreedom2", "Df2"), kTwoTailedEqual,
    kOneTailedLow, kOneTailedHigh, kSaveSettingsAs, kSaveAsDefault,
    Dialog("PowRPowParametersDialog"),
    Real("Correlation", "Rho"), kAlpha, kTwoTailedEqual, kOneTailedLow, kOneTailedHigh,
    kSampleSize, kSaveSettingsAs, kSaveAsDefault,
    Dialog("PowZ2RPowParametersDialog"),
    Real("Correlation1", "Rho1"), Real("Correlation2", "Rho2"), kAlpha,
    Int("SampleSize1", "SampleSizeN1"), Int("SampleSize2", "SampleSizeN2"), kTwoTailedEqual,
    kOneTailedLow, kOneTailedHigh, kSaveSettingsAs, kSaveAsDefault,
    Dialog("PowP1PowParametersDialog"),
    Real("PopulationProportion", "Pi"), Real("HypothesizedProportion", "Pi0"), kAlpha,
    kTwoTailedEqual, kOneTailedLow, kOneTailedHigh, kSampleSize, kSaveSettingsAs, kSaveAsDefault,
    Dialog("PowP2PowParametersDialog"),
    Real("Proportion1", "Pi1"), Real("Proportion2", "Pi2"), kAlpha,
    Check("ContinuityCorrectionCalculation", "Continuity"),
    Check("EqualSampleSizeCalculation", "EqualN"), Int("SampleSize1", "SampleSizeN1"),
    Int("SampleSize2", "SampleSizeN2"), kTwoTailedEqual, kOneTailedLow, kOneTailedHigh,
    kSaveSettingsAs, kSaveAsDefault,
    Dialog("PowQMACPowParametersDialog"),
    Real("Delta"), Real("Eta"), kAlpha, kTwoTailedEqual, kOneTailedLow, kOneTailedHigh,
    kSampleSize, kSaveSettingsAs, kSaveAsDefault,
    Dialog("PowSA1PowParametersDialog"),
    Real("SurvivalRateOfGroup1", "Pi1"), Real("SurvivalRateOfGroup2", "Pi2"), kAlpha,
    kTwoTailedEqual, kOneTailedLow, kSampleSize, kSaveSettingsAs, kSaveAsDefault,
    Dialog("PowSA2PowParametersDialog"),
    Real("Lambda1"), Real("Lambda2"), Real("ActualPeriod", "T0"), Real("AccrualPeriod", "T0"),
    Real("MaximumFollowupPeriod", "T"), kAlpha, kTwoTailedEqual, kOneTailedLow, kSampleSize,
    kSaveSettingsAs, kSaveAsDefault,
    Dialog("PowSA3PowParametersDialog"),
    Real("Lambda1"), Real("Lambda2"), Real("ActualPeriod", "T0"), Real("AccrualPeriod", "T0"),
    Real("MaximumFollowupPeriod", "T"), Real("DropOutRate", "D"), kAlpha, kTwoTailedEqual,
    kOneTailedLow, kSampleSize, kSaveSettingsAs, kSaveAsDefault,
    Dialog("PowSEMPowParametersDialog"),
    Real("RMSEA", "R"), Real("NullRMSEA", "R0"), kAlpha, Int("DegreesOfFreedom"),
    Flag("OneTailedZero", "H0Type", 0), kOneTailedLow, kOneTailedHigh, kSampleSize,
    kSaveSettingsAs, kSaveAsDefault,
    Dialog("PowAV2PowParametersDialog"),
    Real("RMSSEOfRowEffects", "RMSSE_Row"), Real("RMSSEOfColumnEffects", "RMSSE_Col"),
    Real("RMSSEOfInteractionEffects", "RMSSE_Int"), kAlpha, Int("NumberOfRows", "Rows"),
    Int("NumberOfColumns", "Columns"), Int("SampleSize", "N"), kSaveSettingsAs, kSaveAsDefault,
    Dialog("PowT1SSParametersDialog"),
    Real("Mean1", "Mu0"), Real("Mean2", "Mu"), Real("Sigma"), kPowerGoal, kAlpha,
    kTwoTailedEqual, kOneTailedLow, kOneTailedHigh, kSaveSettingsAs, kSaveAsDefault,
    Dialog("PowT2SSParametersDialog"),
    Real("Mean1", "Mu1"), Real("Mean2", "Mu2"), kPowerGoal, Real("Sigma"), kAlpha,
    kTwoTailedEqual, kOneTailedLow, kOneTailedHigh, kSaveSettingsAs, kSaveAsDefault,
    Dialog("PowT3SSParametersDialog"),
    Real("Mean1", "Mu1"), Real("Mean2", "Mu2"), Real("Sigma1"), Real("Sigma2"),
    Real("RValue", "BetweenGroupR"), kPowerGoal, kAlpha, kTwoTailedEqual, kOneTailedLow,
    kOneTailedHigh, kSaveSettingsAs, kSaveAsDefault,
    Dialog("PowR2SSParametersDialog"),
    Real("PopulationSquaredCorrelation", "PopulationR2"), Real("CSquare", "R2Null"), kPowerGoal,
    kAlpha, Int("Predictors", "TotalNumberOfVars"), kTwoTailedEqual, kOneTailedLow,
    kOneTailedHigh, Flag("OneTailedZero", "H0Type", 3), kSaveSettingsAs, kSaveAsDefault,
    Dialog("PowAV1SSParametersDialog"),
    kPowerGoal, Real("RMSSE"), kAlpha, Int("NumberOfGroups"),
    Flag("FixedEffectsModel", "ModelType", 0), Flag("RandomEffectsModel", "ModelType", 1),
    kSaveSettingsAs, kSaveAsDefault,
    Dialog("PowV1SSParametersDialog"),
    Real("PopulationVariance"), Real("HypothesizedVariance", "NullHypothesizedVariance"),
    kPowerGoal, kAlpha, kTwoTailedEqual, kOneTailedLow, kOneTailedHigh, kSaveSettingsAs,
    kSaveAsDefault,
    Dialog("PowV2SSParametersDialog"),
    Real("Ratio"), kPowerGoal, kAlpha, Flag("EqualDf", "DfToVary", 0),
    Flag("VaryDf1FixedDf2", "DfToVary", 1), Int("Df2Value", "Df2"), kTwoTailedEqual,
    kOneTailedLow, kOneTailedHigh, kSaveSettingsAs, kSaveAsDefault,
    Dialog("PowZ2RSSParametersDialog"),
    Real("Correlation1", "Rho1"), Real("Correlation2", "Rho2"), kPowerGoal, kAlpha,
    Int("SampleSize1", "SampleSizeN1"), Int("SampleSize2", "SampleSizeN2"), kTwoTailedEqual,
    kOneTailedLow, kOneTailedHigh, kSaveSettingsAs, kSaveAsDefault,
    Dialog("PowP1SSParametersDialog"),
    Real("PopulationProportion", "Pi"), Real("HypothesizedProportion", "Pi0"), kPowerGoal,
    kAlpha, kTwoTailedEqual, kOneTailedLow, kOneTailedHigh, kSaveSettingsAs, kSaveAsDefault,
    Dialog("PowRSSParametersDialog"),
    Real("Correlation", "Rho"), kPowerGoal, kAlpha, kTwoTailedEqual, kOneTailedLow,
    kOneTailedHigh, kSaveSettingsAs, kSaveAsDefault,
    Dialog("PowP2SSParametersDialog"),
    Real("Proportion1", "Pi1"), Real("Proportion2", "Pi2"), kPowerGoal, kAlpha,
    Check("ContinuityCorrectionCalculation", "Continuity"),
    Check("EqualSampleSizeCalculation", "EqualN"), Int("SampleSize1", "SampleSizeN1"),
    Int("SampleSize2", "SampleSizeN2"), kTwoTailedEqual, kOneTailedLow, kOneTailedHigh,
    kSaveSettingsAs, kSaveAsDefault,
    Dialog("PowQMACSSParametersDialog"),
    Real("Delta"), Real("Eta"), kPowerGoal, kAlpha, kTwoTailedEqual, kOneTailedLow,
    kOneTailedHigh, kSaveSettingsAs, kSaveAsDefault,
    Dialog("PowSA1SSParametersDialog"),
    Real("SurvivalRateOfGroup1", "Pi1"), Real("SurvivalRateOfGroup2", "Pi2"), kPowerGoal, kAlpha,
    kTwoTailedEqual, kOneTailedLow, kSaveSettingsAs, kSaveAsDefault,
    Dialog("PowSA2SSParametersDialog"),
    Real("Lambda1"), Real("Lambda2"), Real("ActualPeriod", "T0"), Real("AccrualPeriod", "T0"),
    Real("MaximumFollowupPeriod", "T"), kPowerGoal, kAlpha, kTwoTailedEqual, kOneTailedLow,
    kSaveSettingsAs, kSaveAsDefault,
    Dialog("PowSA3SSParametersDialog"),
    Real("Lambda1"), Real("Lambda2"), Real("ActualPeriod", "T0"), Real("AccrualPeriod", "T0"),
    Real("MaximumFollowupPeriod", "T"), Real("DropOutRate", "D"), kPowerGoal, kAlpha,
    kTwoTailedEqual, kOneTailedLow, kSaveSettingsAs, kSaveAsDefault,
    Dialog("PowSEMSSParametersDialog"),
    Real("RMSEA", "R"), Real("NullRMSEA", "R0"), kPowerGoal, kAlpha, Int("DegreesOfFreedom"),
    Flag("OneTailedZero", "H0Type", 0), kOneTailedLow, kOneTailedHigh, kSaveSettingsAs,
    kSaveAsDefault,
    Dialog("PowAV2SSParametersDialog"),
    Real("RMSSEOfRowEffects", "RMSSE_Row"), Real("RMSSEOfColumnEffects", "RMSSE_Col"),
    Real("RMSSEOfInteractionEffects", "RMSSE_Int"), kPowerGoal, kAlpha,
    Int("NumberOfRows", "Rows"), Int("NumberOfColumns", "Columns"), kSaveSettingsAs,
    kSaveAsDefault,
    Dialog("PowPCSSParametersDialog"),
    Real("StandardizedEffect"), Real("SumOfSquareWeights", "SumOfSquaredWeights"), kAlpha,
    kPowerGoal, Int("NumberOfGroups"), kSaveSettingsAs, kSaveAsDefault,
    Dialog("PowT1IntParametersDialog"),
    Real("ObservedTValue", "TObserved"), kConfidence, kSampleSize, kSummary, kSaveSettingsAs,
    kSaveAsDefault,
    Dialog("PowT2IntParametersDialog"),
    Real("ObservedTValue", "TObserved"), Real("SampleSize1", "SampleSizeN1"),
    Real("SampleSize2", "SampleSizeN2"), kConfidence, kSummary, kSaveSettingsAs, kSaveAsDefault,
    Dialog("PowT3IntParametersDialog"),
    Real("ObservedTValue", "TObserved"), kConfidence, kSampleSize, kSummary, kSaveSettingsAs,
    kSaveAsDefault,
    Dialog("PowR2IntParametersDialog"),
    Real("ObservedRSquare", "R2Observed"), Real("CSquare", "R2Null"), kAlpha, kConfidence,
    kPowerGoal, Int("NumberOfPredictors", "TotalNumberOfVars"),
    Flag("FasterAlgorithm", "Algorithm", 0), Flag("MoreAccurateAlgorithm", "Algorithm", 1),
    Flag("TwoTailedEqualHypothesis", "H0Type", 0), Flag("OneTailedLowHypothesis", "H0Type", 1),
    Flag("OneTailedHighHypothesis", "H0Type", 2), Flag("OneTailedZeroHypothesis", "H0Type", 3),
    kSampleSize, kSummary, kSaveSettingsAs, kSaveAsDefault,
    Dialog("PowAV1IntParametersDialog"),
    Real("ObservedFValue", "FObserved", kObservedFOfOneWay), kAlpha, kConfidence, kPowerGoal,
    Int("NumberOfGroups"), Int("SampleSizePerGroup", "N"), kSummary, kSaveSettingsAs,
    kSaveAsDefault,
    Dialog("PowRIntParametersDialog"),
    Real("ObservedR", "RObserved"), kConfidence, Flag("ExactAlgorithmn", "Algorithm", 0),
    Flag("FisherZRefinedAlgorithm", "Algorithm", 1),
    Flag("FisherZCrudeAlgorithm", "Algorithm", 2), kSampleSize, kSummary, kSaveSettingsAs,
    kSaveAsDefault,
    Dialog("PowP1IntParametersDialog"),
    Real("ObservedProportion", "PObserved"), kConfidence, kSampleSize, kSummary, kSaveSettingsAs,
    kSaveAsDefault,
    Dialog("PowSEMIntParametersDialog"),
    Real("Chisquare", "ObservedChiSquare"), kConfidence, Int("DegreesOfFreedom"),
    Int("ManifestVariables", "P"), Int("NumberOfGroups", "Groups"), kSampleSize, kSummary,
    kSaveSettingsAs, kSaveAsDefault,
    Dialog("PowAV2IntParametersDialog"),
    Real("ObservedFValue", "FObserved"), kAlpha, kConfidence, kPowerGoal,
    Int("NumberOfRows", "Rows"), Int("NumberOfColumns", "Columns"),
    Flag("RowEffectToTest", "EffectToTest", 0), Flag("ColumnEffectToTest", "EffectToTest", 1),
    Flag("InteractionEffectToTest", "EffectToTest", 2), Int("SampleSize", "N"), kSummary,
    kSaveSettingsAs, kSaveAsDefault,
    Dialog("PowPCIntParametersDialog"),
    Real("ObservedTValue", "TObserved"), Real("SumofSquaresWeights", "SumOfSquaredWeights"),
    kConfidence, Int("NumberOfGroups"), kSampleSize, kSummary, kSaveSettingsAs, kSaveAsDefault,
    Dialog("PowTDistributionDialog"),
    Real("ObservedT", "TObserved"), Real("DegreeOfFreedom", "DegreesOfFreedom"), Real("Delta"),
    Real("PLEVEL", "CumP"), Real("PVALUE", "CumP"), Check("Check1MinusCumulativeP", "OneMinusP"),
    Flag("ComputeT", "WhatToCompute", 0), Flag("ComputePLevel", "WhatToCompute", 1),
    Flag("ComputeDelta", "WhatToCompute", 2), Flag("ComputePValue", "WhatToCompute", 1),
    Dialog("PowR2DistributionDialog"),
    Real("ObservedRSquare", "R2Observed"), Real("RhoSquare", "PopulationR2"),
    Real("PLEVEL", "CumP"), Real("PVALUE", "CumP"),
    Check("Compute1MinusCumulativeP", "OneMinusP"),
    Int("IndependentVariables", "TotalNumberOfVars"), kSampleSize,
    Flag("MoreAccurate", "Algorithm", 1), Flag("Faster", "Algorithm", 0),
    Flag("ComputeRSquare", "WhatToCompute", 0), Flag("ComputePLevel", "WhatToCompute", 1),
    Flag("ComputeRhoSquare", "WhatToCompute", 2), Flag("ComputePValue", "WhatToCompute", 1),
    Dialog("PowX2DistributionDialog"),
    Real("ObservedChiSquare"), Real("LAMBDA", "Delta"), Real("PLEVEL", "CumP"),
    Real("PVALUE", "CumP"), Check("Check1MinusCumulativeP", "OneMinusP"),
    Int("DegreeOfFreedom", "DegreesOfFreedom"), Flag("ComputeChiSquare", "WhatToCompute", 0),
    Flag("ComputePValue", "WhatToCompute", 1), Flag("ComputeDelta", "WhatToCompute", 2),
    Flag("ComputePLevel", "WhatToCompute", 1),
    Dialog("PowFDistributionDialog"),
    Real("ObservedF", "FObserved"), Real("Delta"), Real("PLEVEL", "CumP"),
    Real("PVALUE", "CumP"), Check("Check1MinusCumulativeP", "OneMinusP"),
    Int("DegreeOfFreedom1", "Df1"), Int("DegreeOfFreedom2", "Df2"),
    Flag("ComputeF", "WhatToCompute", 0), Flag("ComputePLevel", "WhatToCompute", 1),
    Flag("ComputeDelta", "WhatToCompute", 2), Flag("ComputePValue", "WhatToCompute", 1),
    Dialog("PowRDistributionDialog"),
    Real("ObservedR", "RObserved"), Real("RHO", "Rho"), Real("PLEVEL", "CumP"),
    Real("PVALUE", "CumP"), Check("Check1MinusCumulativeP", "OneMinusP"), Int("N", "SampleSize"),
    Flag("Exact", "Algorithm", 0), Flag("FisherZRefined", "Algorithm", 1),
    Flag("FisherZCrude", "Algorithm", 2), Flag("ComputeR", "WhatToCompute", 0),
    Flag("ComputePLevel", "WhatToCompute", 1), Flag("ComputeRho", "WhatToCompute", 2),
    Flag("ComputePValue", "WhatToCompute", 1),
    Dialog("PowBinomialDistributionDialog"),
    Real("PopulationProbability", "Pi"), Real("RequestedValuePLevel", "CumP"),
    Real("ActualPLevel", "ActualValue"), Check("Check1MinusCumulativeProbability", "OneMinusP"),
    kSampleSize, Int("ObservedX", "XObserved"), Flag("ComputeX", "WhatToCompute", 0),
    Flag("ComputePLevel", "WhatToCompute", 1), Flag("ComputePi", "WhatToCompute", 2),
    Flag("ComputePValue", "WhatToCompute", 1),
    Dialog("PowT3_P_ResultsDialog"),
    Real("StartStandardEffects", "EsStart"), Real("EndStandardEffects", "EsEnd"), kStartOfAlpha,
    kEndOfAlpha, kStartOfSampleSize, kEndOfSampleSize, kNumberOfSteps, kSummary,
    Graph("GraphOfPowerVsN"), Graph("GraphOfPowerVsEs"), Graph("GraphOfPowerVsAlpha"),
    Dialog("PowR2_P_ResultsDialog"),
    Real("StartRho", "R2Start"), Real("EndRho", "R2End"), kStartOfAlpha, kEndOfAlpha,
    kStartOfSampleSize, kEndOfSampleSize, kNumberOfSteps,
    Flag("FasterAlgorithm", "Algorithm", 0), Flag("MoreAccurateAlgorithm", "Algorithm", 1),
    kSummary, Graph("GraphOfPowerVsN"), Graph("GraphOfPowerVsRho"), Graph("GraphOfPowerVsAlpha"),
    Dialog("PowAV1_P_ResultsDialog"),
    Real("StartOfRMSSE", "StartRMSSE"), Real("EndOfRMSSE", "EndRMSSE"), kStartOfAlpha,
    kEndOfAlpha, kStartOfSampleSize, kEndOfSampleSize, kNumberOfSteps, kSummary,
    Graph("GraphOfPowerVsN"), Graph("GraphOfPowerVsRMSSE"), Graph("GraphOfPowerVsAlpha"),
    Dialog("PowV1_P_ResultsDialog"),
    Real("StartVariance", "VarStart"), Real("EndVariance", "VarEnd"), kStartOfAlpha, kEndOfAlpha,
    Int("StartDegreeOfFreedom", "DfStart"), Int("EndDegreeOfFreedom", "DfEnd"),
    Int("NumberOfSteps", "DfIntervals"), kSummary, Graph("GraphOfPowerVsDf"),
    Graph("GraphOfPowerVsVariance"), Graph("GraphOfPowerVsAlpha"),
    Dialog("PowV2_P_ResultsDialog"),
    Real("StartRatio", "RatioStart"), Real("EndRatio", "RatioEnd"), kStartOfAlpha, kEndOfAlpha,
    Int("StartDegreeOfFreedom", "DfStart"), Int("EndDegreeOfFreedom", "DfEnd"),
    Int("NumberOfSteps", "DfIntervals"), kSummary, Graph("GraphOfPowerVsAlpha"),
    Graph("GraphOfPowerVsDf"), Graph("GraphOfPowerVsDf1"), Graph("GraphOfPowerVsDf2"),
    Graph("GraphOfPowerVsRatio"),
    Dialog("PowR_P_ResultsDialog"),
    Real("StartRho", "RhoStart"), Real("EndRho", "RhoEnd"), kStartOfAlpha, kEndOfAlpha,
    Flag("ExactAlgorithm", "Algorithm", 0), Flag("FisherZRefinedAlgorithm", "Algorithm", 1),
    Flag("FisherZCrudeAlgorithm", "Algorithm", 2), kStartOfSampleSize, kEndOfSampleSize,
    kNumberOfSteps, kSummary, Graph("GraphOfPowerVsN"), Graph("GraphOfPowerVsRho"),
    Graph("GraphOfPowerVsAlpha"),
    Dialog("PowZ2R_P_ResultsDialog"),
    Real("StartRho", "RhoStart"), Real("EndRho", "RhoEnd"), kStartOfAlpha, kEndOfAlpha,
    kStartOfSampleSize, kEndOfSampleSize, kNumberOfSteps,
    Flag("FisherZRefinedAlgorithm", "Algorithm", 1),
    Flag("FisherZCrudeAlgorithm", "Algorithm", 2), kSummary, Graph("GraphOfPowerVsN"),
    Graph("GraphOfPowerVsN1"), Graph("GraphOfPowerVsN2"), Graph("GraphOfPowerVsRho"),
    Graph("GraphOfPowerVsAlpha"),
    Dialog("PowP1_P_ResultsDialog"),
    Real("StartOfProportion", "PiStart"), Real("EndOfProportion", "PiEnd"),
    RealFlag("ExactAlgorithm", "Algorithm", 0), RealFlag("ApproximateAlgorithm", "Algorithm", 1),
    kStartOfAlpha, kEndOfAlpha, kStartOfSampleSize, kEndOfSampleSize, kNumberOfSteps, kSummary,
    Graph("GraphOfPowerVsN"), Graph("GraphOfPowerVsAlpha"), Graph("GraphOfPowerVsProportion"),
    Dialog("PowP2_P_ResultsDialog"),
    Real("StartProportion", "PiStart"), Real("EndProportion", "PiEnd"), kStartOfAlpha,
    kEndOfAlpha, kStartOfSampleSize, kEndOfSampleSize, kNumberOfSteps, kSummary,
    Graph("GraphOfPowerVsN"), Graph("GraphOfPowerVsSampleSize1"),
    Graph("GraphOfPowerVsSampleSize2"), Graph("GraphOfPowerVsProportion"),
    Graph("GraphOfPowerVsAlpha"),
    Dialog("PowQMAC_P_ResultsDialog"),
    Real("StartDelta", "DeltaStart"), Real("EndDelta", "DeltaEnd"), Real("StartEta", "EtaStart"),
    Real("EndEta", "EtaEnd"), kStartOfAlpha, kEndOfAlpha, kStartOfSampleSize, kEndOfSampleSize,
    kNumberOfSteps, kSummary, Graph("GraphOfPowerVsN"), Graph("GraphOfPowerVsDelta"),
    Graph("GraphOfPowerVsEta"), Graph("GraphOfPowerVsAlpha"),
    Dialog("PowSA1_P_ResultsDialog"),
    Real("StartProportion", "Pi2Start"), Real("EndProportion", "Pi2End"), kStartOfAlpha,
    kEndOfAlpha, kStartOfSampleSize, kEndOfSampleSize, kNumberOfSteps, kSummary,
    Graph("GraphOfPowerVsN"), Graph("GraphOfPowerVsAlpha"), Graph("GraphOfPowerVsProportion"),
    Dialog("PowSA2_P_ResultsDialog"),
    Real("StartLambda", "Lambda2Start"), Real("EndLambda", "Lambda2End"), kStartOfAlpha,
    kEndOfAlpha, kStartOfSampleSize, kEndOfSampleSize, kNumberOfSteps, kSummary,
    Graph("GraphOfPowerVsN"), Graph("GraphOfPowerVsLambda"), Graph("GraphOfPowerVsAlpha"),
    Dialog("PowSA3_P_ResultsDialog"),
    Real("StartLambda", "Lambda2Start"), Real("EndLambda", "Lambda2End"), kStartOfAlpha,
    kEndOfAlpha, kStartOfSampleSize, kEndOfSampleSize, kNumberOfSteps, kSummary,
    Graph("GraphOfPowerVsN"), Graph("GraphOfPowerVsLambda"), Graph("GraphOfPowerVsAlpha"),
    Dialog("PowSEM_P_ResultsDialog"),
    Real("StartR", "RStart"), Real("EndR", "REnd"), kStartOfAlpha, kEndOfAlpha,
    kStartOfSampleSize, kEndOfSampleSize, Int("StartDegreeOfFreedom", "DfStart"),
    Int("EndDegreeOfFreedom", "DfEnd"), kNumberOfSteps, kSummary, Graph("GraphOfPowerVsN"),
    Graph("GraphOfPowerVsAlpha"), Graph("GraphOfPowerVsR"), Graph("GraphOfPowerVsDf"),
    Dialog("PowAV2_P_ResultsDialog"),
    Real("StartOfRMSSE", "StartRMSSE"), Real("EndOfRMSSE", "EndRMSSE"), kStartOfAlpha,
    kEndOfAlpha, kStartOfSampleSize, kEndOfSampleSize, kNumberOfSteps, kSummary,
    Graph("GraphOfPowerVsN"), Graph("GraphOfPowerVsRMSSE"), Graph("GraphOfPowerVsAlpha"),
    Dialog("PowPC_P_ResultsDialog"),
    Real("StartOfStandardEffects", "EsStart"), Real("EndOfStandardEffects", "EsEnd"),
    kStartOfAlpha, kEndOfAlpha, kStartOfSampleSize, kEndOfSampleSize, kNumberOfSteps, kSummary,
    Graph("GraphOfPowerVsN"), Graph("GraphOfPowerVsStandardEffects"),
    Graph("GraphOfPowerVsAlpha"),
    Dialog("PowT1_S_ResultsDialog"),
    Real("StartStandardEffects", "EsStart"), Real("EndStandardEffects", "EsEnd"), kStartOfPower,
    kEndOfPower, kStartOfAlpha, kEndOfAlpha, kNumberOfSteps, kSummary,
    Graph("GraphOfSampleSizeVsEs"), Graph("GraphOfSampleSizeVsAlpha"),
    Graph("GraphOfSampleSizeVsPower"),
    Dialog("PowT2_S_ResultsDialog"),
    Real("StartStandardEffects", "EsStart"), Real("EndStandardEffects", "EsEnd"), kStartOfPower,
    kEndOfPower, kStartOfAlpha, kEndOfAlpha, kNumberOfSteps, kSummary,
    Graph("GraphOfSampleSizeVsEs"), Graph("GraphOfSampleSizeVsAlpha"),
    Graph("GraphOfSampleSizeVsPower"),
    Dialog("PowT3_S_ResultsDialog"),
    Real("StartStandardEffects", "EsStart"), Real("EndStandardEffects", "EsEnd"), kStartOfPower,
    kEndOfPower, kStartOfAlpha, kEndOfAlpha, kNumberOfSteps, kSummary,
    Graph("GraphOfSampleSizeVsEs"), Graph("GraphOfSampleSizeVsAlpha"),
    Graph("GraphOfSampleSizeVsPower"),
    Dialog("PowR2_S_ResultsDialog"),
    Real("StartRho", "R2Start"), Real("EndRho", "R2End"), kStartOfPower, kEndOfPower,
    kStartOfAlpha, kEndOfAlpha, kNumberOfSteps, Flag("FasterAlgorithm", "Algorithm", 0),
    Flag("MoreAccurateAlgorithm", "Algorithm", 1), kSummary, Graph("GraphOfSampleSizeVsRho"),
    Graph("GraphOfSampleSizeVsAlpha"), Graph("GraphOfSampleSizeVsPower"),
    Dialog("PowAV1_S_ResultsDialog"),
    Real("StartOfRMSSE", "StartRMSSE"), Real("EndOfRMSSE", "EndRMSSE"), kStartOfPower,
    kEndOfPower, kStartOfAlpha, kEndOfAlpha, kNumberOfSteps, kSummary,
    Graph("GraphOfSampleSizeVsRMSSE"), Graph("GraphOfSampleSizeVsAlpha"),
    Graph("GraphOfSampleSizeVsPower"),
    Dialog("PowV1_S_ResultsDialog"),
    kStartOfPower, kEndOfPower, Real("StartVariance", "VarStart"), Real("EndVariance", "VarEnd"),
    kStartOfAlpha, kEndOfAlpha, Int("NumberOfSteps", "DfIntervals"), kSummary,
    Graph("GraphOfSampleSizeVsVariance"), Graph("GraphOfSampleSizeVsAlpha"),
    Graph("GraphOfSampleSizeVsPower"),
    Dialog("PowV2_S_ResultsDialog"),
    Real("StartRatio", "RatioStart"), Real("EndRatio", "RatioEnd"), kStartOfPower, kEndOfPower,
    kStartOfAlpha, kEndOfAlpha, Int("NumberOfSteps", "DfIntervals"), kSummary,
    Graph("GraphOfSampleSizeVsAlpha"), Graph("GraphOfSampleSizeVsPower"),
    Graph("GraphOfSampleSizeVsRatio"),
    Dialog("PowR_S_ResultsDialog"),
    Real("StartRho", "RhoStart"), Real("EndRho", "RhoEnd"), kStartOfPower, kEndOfPower,
    kStartOfAlpha, kEndOfAlpha, Flag("ExactAlgorithm", "Algorithm", 0),
    Flag("FisherZRefinedAlgorithm", "Algorithm", 1),
    Flag("FisherZCrudeAlgorithm", "Algorithm", 2), kNumberOfSteps, kSummary,
    Graph("GraphOfSampleSizeVsPower"), Graph("GraphOfSampleSizeVsRho"),
    Graph("GraphOfSampleSizeVsAlpha"),
    Dialog("PowZ2R_S_ResultsDialog"),
    Real("StartRho", "RhoStart"), Real("EndRho", "RhoEnd"), kStartOfPower, kEndOfPower,
    kStartOfAlpha, kEndOfAlpha, kNumberOfSteps, Flag("EqualN", "NToVary", 0),
    Flag("VaryN1", "NToVary", 1), Flag("VaryN2", "NToVary", 2),
    Flag("FisherZRefinedAlgorithm", "Algorithm", 1),
    Flag("FisherZCrudeAlgorithm", "Algorithm", 2), kSummary, Graph("GraphOfSampleSizeVsPower"),
    Graph("GraphOfSampleSizeVsRho"), Graph("GraphOfSampleSizeVsAlpha"),
    Dialog("PowP1_S_ResultsDialog"),
    Real("StartOfProportion", "PiStart"), Real("EndOfProportion", "PiEnd"),
    RealFlag("ExactAlgorithm", "Algorithm", 0), RealFlag("ApproximateAlgorithm", "Algorithm", 1),
    kStartOfPower, kEndOfPower, kStartOfAlpha, kEndOfAlpha, kNumberOfSteps, kSummary,
    Graph("GraphOfSampleSizeVsPower"), Graph("GraphOfSampleSizeVsAlpha"),
    Graph("GraphOfSampleSizeVsProportion"),
    Dialog("PowP2_S_ResultsDialog"),
    Real("StartProportion", "PiStart"), Real("EndProportion", "PiEnd"), kStartOfPower,
    kEndOfPower, kStartOfAlpha, kEndOfAlpha, Real("FixedRatioValue", "Ratio"), kNumberOfSteps,
    Flag("EqualN", "NToVary", 0), Flag("VaryN1", "NToVary", 1), Flag("VaryN2", "NToVary", 2),
    Flag("FixedRatio", "NToVary", 3), kSummary, Graph("GraphOfSampleSizeVsPower"),
    Graph("GraphOfSampleSizeVsProportion"), Graph("GraphOfSampleSizeVsAlpha"),
    Dialog("PowQMAC_S_ResultsDialog"),
    Real("StartDelta", "DeltaStart"), Real("EndDelta", "DeltaEnd"), Real("StartEta", "EtaStart"),
    Real("EndEta", "EtaEnd"), kStartOfPower, kEndOfPower, kStartOfAlpha, kEndOfAlpha,
    kNumberOfSteps, kSummary, Graph("GraphOfSampleSizeVsPower"),
    Graph("GraphOfSampleSizeVsDelta"), Graph("GraphOfSampleSizeVsEta"),
    Graph("GraphOfSampleSizeVsAlpha"),
    Dialog("PowSA1_S_ResultsDialog"),
    Real("StartProportion", "Pi2Start"), Real("EndProportion", "Pi2End"), kStartOfPower,
    kEndOfPower, kStartOfAlpha, kEndOfAlpha, kNumberOfSteps, kSummary,
    Graph("GraphOfSampleSizeVsPower"), Graph("GraphOfSampleSizeVsAlpha"),
    Graph("GraphOfSampleSizeVsProportion"),
    Dialog("PowSA2_S_ResultsDialog"),
    Real("StartLambda", "Lambda2Start"), Real("EndLambda", "Lambda2End"), kStartOfPower,
    kEndOfPower, kStartOfAlpha, kEndOfAlpha, kNumberOfSteps, kSummary,
    Graph("GraphOfSampleSizeVsPower"), Graph("GraphOfSampleSizeVsLambda"),
    Graph("GraphOfSampleSizeVsAlpha"),
    Dialog("PowSA3_S_ResultsDialog"),
    Real("StartLambda", "Lambda2Start"), Real("EndLambda", "Lambda2End"), kStartOfPower,
    kEndOfPower, kStartOfAlpha, kEndOfAlpha, kNumberOfSteps, kSummary,
    Graph("GraphOfSampleSizeVsPower"), Graph("GraphOfSampleSizeVsLambda"),
    Graph("GraphOfSampleSizeVsAlpha"),
    Dialog("PowSEM_S_ResultsDialog"),
    Real("StartR", "RStart"), Real("EndR", "REnd"), kStartOfPower, kEndOfPower, kStartOfAlpha,
    kEndOfAlpha, Int("StartDegreeOfFreedom", "DfStart"), Int("EndDegreeOfFreedom", "DfEnd"),
    kNumberOfSteps, kSummary, Graph("GraphOfSampleSizeVsPower"),
    Graph("GraphOfSampleSizeVsAlpha"), Graph("GraphOfSampleSizeVsR"),
    Graph("GraphOfSampleSizeVsDf"),
    Dialog("PowAV2_S_ResultsDialog"),
    Real("StartOfRMSSE", "StartRMSSE"), Real("EndOfRMSSE", "EndRMSSE"), kStartOfPower,
    kEndOfPower, kStartOfAlpha, kEndOfAlpha, kNumberOfSteps, kSummary,
    Graph("GraphOfSampleSizeVsPower"), Graph("GraphOfSampleSizeVsRMSSE"),
    Graph("GraphOfSampleSizeVsAlpha"),
    Dialog("PowPC_S_ResultsDialog"),
    Real("StartOfStandardEffects", "EsStart"), Real("EndOfStandardEffects", "EsEnd"),
    kStartOfPower, kEndOfPower, kStartOfAlpha, kEndOfAlpha, kNumberOfSteps, kSummary,
    Graph("GraphOfSampleSizeVsPower"), Graph("GraphOfSampleSizeVsEs"),
    Graph("GraphOfSampleSizeVsAlpha"),
};
// clang-format on

constexpr int CountRows(RowKind kind) {
  int count = 0;
  for (const MemberRow& row : kRows) {
    count += row.kind == kind ? 1 : 0;
  }
  return count;
}
constexpr int CountNumbers(Type type) {
  int count = 0;
  for (const MemberRow& row : kRows) {
    const bool shown =
        row.kind == RowKind::Edit || row.kind == RowKind::Flag || row.kind == RowKind::Check;
    count += shown && row.type == type ? 1 : 0;
  }
  return count;
}

// The vocabulary is closed: a row lost or doubled does not compile.
static_assert(CountRows(RowKind::Dialog) == 90);
static_assert(CountNumbers(Type::Real) == 390);
static_assert(CountNumbers(Type::Int) == 304);
static_assert(CountRows(RowKind::Summary) + CountRows(RowKind::Graph) == 166);
static_assert(CountRows(RowKind::Button) == 92);
static_assert(CountRows(RowKind::List) == 2);

}  // namespace

std::span<const MemberRow> InterfaceRows() { return kRows; }

}  // namespace poweranalysis
