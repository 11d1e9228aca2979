#include "output/SummaryTables.h"

// The rows of every summary table, one per line, and the tables by family and mode.
namespace poweranalysis {

namespace {

using namespace quantity;  // NOLINT(google-build-using-namespace)
using enum Family;

// --- Titles that a setting chooses.

constexpr ChosenText kPowerByAlgorithm = {
    "Algorithm", {text::RowPowerExact, text::RowPowerRefinedFisherZ, text::RowPowerCrudeFisherZ}};
constexpr ChosenText kRequiredNByAlgorithm = {
    "Algorithm",
    {text::RowRequiredNExact, text::RowRequiredNRefinedFisherZ, text::RowRequiredNCrudeFisherZ}};
constexpr ChosenText kPValueByForm = {
    "H0Type",
    {text::Row2SidedPvalueForObservedR, text::Row1SidedPvalueForObservedR,
     text::Row1SidedPvalueForObservedR}};
constexpr ChosenText kLimitsByAlgorithm = {
    "Algorithm",
    {text::RowConfidenceLimitsExactHeading, text::RowConfidenceLimitsRefinedFisherZHeading,
     text::RowConfidenceLimitsCrudeFisherZHeading}};
constexpr ChosenText kPowerBySpeed = {
    "Algorithm", {text::RowPowerSpeedAlgorithm, text::RowPowerAccuracyAlgorithm}};
constexpr ChosenText kRequiredNBySpeed = {
    "Algorithm", {text::RowRequiredNSpeedAlgorithm, text::RowRequiredNAccuracyAlgorithm}};
constexpr ChosenText kRequiredN1ByAlgorithm = {
    "Algorithm",
    {text::RowRequiredN1Exact, text::RowRequiredN1RefinedFisherZ, text::RowRequiredN1CrudeFisherZ}};
constexpr ChosenText kRequiredN2ByAlgorithm = {
    "Algorithm",
    {text::RowRequiredN2Exact, text::RowRequiredN2RefinedFisherZ, text::RowRequiredN2CrudeFisherZ}};
constexpr ChosenText kPowerByCorrection = {
    "Continuity", {text::RowPowerUncorrected, text::RowPowerContinuityCorr}};
constexpr ChosenText kDataOfEffect = {
    "EffectToTest",
    {text::RowDataForRowEffect, text::RowDataForColumnEffect, text::RowDataForInteractionEffect}};
constexpr ChosenText kSecondDf = {"DfToVary",
                                  {text::RowRequiredDf2Varied, text::RowFixedDf2SpecifiedByUser}};

// A settings file may hold a third value, which no search serves: both rows are left out then.
constexpr Condition kDfVaries = {"DfToVary", 0, 1};

// Effects of the two-way analysis of variance.
constexpr int kRow = 0;
constexpr int kColumn = 1;
constexpr int kInteraction = 2;

// --- Rows: quantity, title, indent, condition.

// clang-format off
constexpr TableRowDefinition kT1Power[] = {
    {Input("Mu0"),        text::RowNullHypothesizedMeanMu0},
    {Input("Mu"),         text::RowTruePopulationMeanMu},
    {Input("Sigma"),      text::RowPopulationSDSigma},
    {kEffect,             text::StandardizedEffectEs},
    {Input("SampleSize"), text::GroupSampleSizeN},
    {Input("Alpha"),      text::TypeIErrorRateAlpha},
    {Critical(),          text::RowCriticalValueOfT},
    {Power(),             text::RowPower},
};

// Kept: the required size of one mean shows no critical value, unlike its two neighbours.
constexpr TableRowDefinition kT1Size[] = {
    {Input("Mu0"),       text::RowNullHypothesizedMeanMu0},
    {Input("Mu"),        text::RowTruePopulationMeanMu},
    {Input("Sigma"),     text::RowPopulationSDSigma},
    {kEffect,            text::StandardizedEffectEs},
    {Input("Alpha"),     text::TypeIErrorRateAlpha},
    {Input("PowerGoal"), text::PowerGoal},
    {Power(),            text::RowActualPowerForRequiredN},
    {Size(),             text::RequiredSampleSizeN},
};

constexpr TableRowDefinition kT1Interval[] = {
    {Input("TObserved"),  text::RowObservedTStatistic},
    {Input("SampleSize"), text::GroupSampleSizeN},
    {Input("Confidence"), text::RowConfidenceLevel},
    {kNothing,            text::BlankRow},
    {kNothing,            text::RowConfidenceLimitsHeading},
    {kNothing,            text::RowDeltaHeading, 2},
    {Lower(Limit::Delta), text::RowLowerLimit, 4},
    {Upper(Limit::Delta), text::RowUpperLimit, 4},
    {kNothing,            text::BlankRow},
    {kNothing,            text::RowStandardizedEffectHeading, 2},
    {Lower(Limit::Es),    text::RowLowerLimit, 4},
    {Upper(Limit::Es),    text::RowUpperLimit, 4},
};

constexpr TableRowDefinition kT2Power[] = {
    {Input("Mu1"),          text::RowPopulationMeanMu1},
    {Input("Mu2"),          text::RowPopulationMeanMu2},
    {Input("Sigma"),        text::RowPopulationSDSigma},
    {kEffect,               text::StandardizedEffectEs},
    {Input("SampleSizeN1"), text::RowSampleSizeN1},
    {Input("SampleSizeN2"), text::RowSampleSizeN2},
    {Input("Alpha"),        text::TypeIErrorRateAlpha},
    {Critical(),            text::RowCriticalValueOfT},
    {Power(),               text::RowPower},
};

constexpr TableRowDefinition kT2Size[] = {
    {Input("Mu1"),       text::RowPopulationMeanMu1},
    {Input("Mu2"),       text::RowPopulationMeanMu2},
    {Input("Sigma"),     text::RowPopulationSDSigma},
    {kEffect,            text::StandardizedEffectEs},
    {Input("Alpha"),     text::TypeIErrorRateAlpha},
    {Critical(),         text::RowCriticalValueOfT},
    {Input("PowerGoal"), text::PowerGoal},
    {Power(),            text::RowActualPowerForRequiredN},
    {Size(),             text::RowRequiredNPerGroup},
};

constexpr TableRowDefinition kT2Interval[] = {
    {Input("TObserved"),    text::RowObservedTStatistic},
    {Input("SampleSizeN1"), text::RowSampleSizeN1},
    {Input("SampleSizeN2"), text::RowSampleSizeN2},
    {Input("Confidence"),   text::RowConfidenceLevel},
    {kNothing,              text::BlankRow},
    {kNothing,              text::RowConfidenceLimitsHeading},
    {kNothing,              text::RowDeltaHeading, 2},
    {Lower(Limit::Delta),   text::RowLowerLimit, 4},
    {Upper(Limit::Delta),   text::RowUpperLimit, 4},
    {kNothing,              text::BlankRow},
    {kNothing,              text::RowStandardizedEffectHeading, 2},
    {Lower(Limit::Es),      text::RowLowerLimit, 4},
    {Upper(Limit::Es),      text::RowUpperLimit, 4},
};

constexpr TableRowDefinition kT3Power[] = {
    {Input("Mu1"),           text::RowPopulationMeanMu1},
    {Input("Mu2"),           text::RowPopulationMeanMu2},
    {Input("Sigma1"),        text::RowGroup1SDSigma1},
    {Input("Sigma2"),        text::RowGroup2SDSigma2},
    {Input("BetweenGroupR"), text::RowBetweenGroupCorrelation},
    {kSpread,                text::StandErrorOfMeanDiff},
    {kEffect,                text::StandardizedEffectEs},
    {Input("SampleSize"),    text::GroupSampleSizeN},
    {Input("Alpha"),         text::TypeIErrorRateAlpha},
    {Critical(),             text::RowCriticalValueOfT},
    {Power(),                text::RowPower},
};

constexpr TableRowDefinition kT3Size[] = {
    {Input("Mu1"),           text::RowPopulationMeanMu1},
    {Input("Mu2"),           text::RowPopulationMeanMu2},
    {Input("Sigma1"),        text::RowGroup1SDSigma1},
    {Input("Sigma2"),        text::RowGroup2SDSigma2},
    {Input("BetweenGroupR"), text::RowBetweenGroupCorrelation},
    {kSpread,                text::StandErrorOfMeanDiff},
    {kEffect,                text::StandardizedEffectEs},
    {Input("Alpha"),         text::TypeIErrorRateAlpha},
    {Critical(),             text::RowCriticalValueOfT},
    {Input("PowerGoal"),     text::PowerGoal},
    {Power(),                text::RowActualPowerForRequiredN},
    {Size(),                 text::RequiredSampleSizeN},
};

constexpr TableRowDefinition kT3Interval[] = {
    {Input("TObserved"),  text::RowObservedTStatistic},
    {Input("SampleSize"), text::GroupSampleSizeN},
    {Input("Confidence"), text::RowConfidenceLevel},
    {kNothing,            text::BlankRow},
    {kNothing,            text::RowConfidenceLimitsHeading},
    {kNothing,            text::RowDeltaHeading, 2},
    {Lower(Limit::Delta), text::RowLowerLimit, 4},
    {Upper(Limit::Delta), text::RowUpperLimit, 4},
    {kNothing,            text::BlankRow},
    {kNothing,            text::RowStandardizedEffectHeading, 2},
    {Lower(Limit::Es),    text::RowLowerLimit, 4},
    {Upper(Limit::Es),    text::RowUpperLimit, 4},
};

constexpr TableRowDefinition kPCPower[] = {
    {Input("NumberOfGroups"),      text::RowNumberOfGroups},
    {Input("SampleSize"),          text::GroupSampleSizeN},
    {Input("StandardizedEffect"),  text::StandardizedEffectEs},
    {Input("Alpha"),               text::TypeIErrorRateAlpha},
    {Input("SumOfSquaredWeights"), text::SSWeights},
    {Power(),                      text::RowPower},
};

constexpr TableRowDefinition kPCSize[] = {
    {Input("NumberOfGroups"),      text::RowNumberOfGroups},
    {Input("StandardizedEffect"),  text::StandardizedEffectEs},
    {Input("Alpha"),               text::TypeIErrorRateAlpha},
    {Input("SumOfSquaredWeights"), text::SSWeights},
    {Input("PowerGoal"),           text::PowerGoal},
    {Power(),                      text::RowActualPowerForRequiredN},
    {Size(),                       text::RequiredSampleSizeN},
};

constexpr TableRowDefinition kPCInterval[] = {
    {Input("TObserved"),           text::RowObservedTStatistic},
    {Input("SampleSize"),          text::GroupSampleSizeN},
    {Input("NumberOfGroups"),      text::RowNumberOfGroups},
    {Input("Confidence"),          text::RowConfidenceLevel},
    {Input("SumOfSquaredWeights"), text::SSWeights},
    {kNothing,                     text::BlankRow},
    {kNothing,                     text::RowConfidenceLimitsHeading},
    {kNothing,                     text::RowStandardizedEffectHeading, 2},
    {Lower(Limit::Es),             text::RowLowerLimit, 4},
    {Upper(Limit::Es),             text::RowUpperLimit, 4},
};

constexpr TableRowDefinition kAV1Power[] = {
    {Input("NumberOfGroups"), text::RowNumberOfGroups},
    {Input("N"),              text::GroupSampleSizeN},
    {Input("RMSSE"),          text::RowRMSSE},
    {kNoncentrality,          text::RowNoncentralityParameterDelta},
    {Input("Alpha"),          text::TypeIErrorRateAlpha},
    {EffectDf(),              text::RowEffectDf},
    {kErrorDf,                text::RowErrorDf},
    {Critical(),              text::RowCriticalValueOfF},
    {Power(),                 text::RowPower},
};

// The noncentrality is that of the N of the record, not of the required one.
constexpr TableRowDefinition kAV1Size[] = {
    {Input("NumberOfGroups"), text::RowNumberOfGroups},
    {Input("RMSSE"),          text::RowRMSSE},
    {kNoncentrality,          text::RowNoncentralityParameterDelta},
    {Input("Alpha"),          text::TypeIErrorRateAlpha},
    {Input("PowerGoal"),      text::PowerGoal},
    {Power(),                 text::RowActualPowerForRequiredN},
    {Size(),                  text::RequiredSampleSizeN},
};

constexpr TableRowDefinition kAV1Interval[] = {
    {Input("FObserved"),      text::RowObservedFStatistic},
    {EffectDf(),              text::RowEffectDf},
    {kErrorDf,                text::RowErrorDf},
    {Input("Alpha"),          text::TypeIErrorRateAlpha},
    {Input("N"),              text::GroupSampleSizeN},
    {Input("NumberOfGroups"), text::RowNumberOfGroups},
    {Input("Confidence"),     text::RowConfidenceLevel},
    {Input("PowerGoal"),      text::PowerGoal},
    {kNothing,                text::BlankRow},
    {kNothing,                text::RowConfidenceLimitsHeading},
    {kNothing,                text::RowDeltaHeading, 2},
    {Lower(Limit::Delta),     text::RowLowerLimit, 4},
    {Upper(Limit::Delta),     text::RowUpperLimit, 4},
    {kNothing,                text::BlankRow},
    {kNothing,                text::RowRMSSEHeading, 2},
    {Lower(Limit::Rmsse),     text::RowLowerLimit, 4},
    {Upper(Limit::Rmsse),     text::RowUpperLimit, 4},
    {kNothing,                text::BlankRow},
    {kNothing,                text::RowPowerHeading, 2},
    {Lower(Limit::Power),     text::RowLowerLimit, 4},
    {Upper(Limit::Power),     text::RowUpperLimit, 4},
    {kNothing,                text::BlankRow},
    {kNothing,                text::RowRequiredNHeading, 2},
    {Lower(Limit::RequiredN), text::RowLowerLimit, 4},
    {Upper(Limit::RequiredN), text::RowUpperLimit, 4},
};

constexpr TableRowDefinition kV1Power[] = {
    {Input("DegreesOfFreedom"),         text::RowDegreesOfFreedomDf},
    {Input("PopulationVariance"),       text::RowPopulationVarianceVar},
    {Input("NullHypothesizedVariance"), text::RowVarianceUnderH0Var0},
    {Input("Alpha"),                    text::TypeIErrorRateAlpha},
    {Power(),                           text::RowPower},
};

// Kept: the two variances in the other order than in the power table.
constexpr TableRowDefinition kV1Size[] = {
    {Input("NullHypothesizedVariance"), text::RowVarianceUnderH0Var0},
    {Input("PopulationVariance"),       text::RowPopulationVarianceVar},
    {Input("Alpha"),                    text::TypeIErrorRateAlpha},
    {Input("PowerGoal"),                text::PowerGoal},
    {Power(),                           text::RowActualPowerForRequiredDf},
    {Size(),                            text::RowRequiredDegreesOfFreedomDf},
};

constexpr TableRowDefinition kV2Power[] = {
    {Input("Df1"),   text::RowGroup1DfDf1},
    {Input("Df2"),   text::RowGroup2DfDf2},
    {Input("Var1"),  text::RowGroup1VarianceVar1},
    {Input("Var2"),  text::RowGroup2VarianceVar2},
    {Input("Alpha"), text::TypeIErrorRateAlpha},
    {Power(),        text::RowPower},
};

// The second size is the required or the fixed Df2.
constexpr TableRowDefinition kV2Size[] = {
    {Input("Ratio"),     text::RowVarianceRatioVar1Var2},
    {Input("Alpha"),     text::TypeIErrorRateAlpha},
    {Input("PowerGoal"), text::PowerGoal},
    {Power(),            text::RowActualPowerForRequiredDf},
    {Size(),             text::RowRequiredDf1Varied, 0, kDfVaries},
    {Size(1),            kSecondDf, 0, kDfVaries},
};

constexpr TableRowDefinition kRPower[] = {
    {Input("SampleSize"), text::GroupSampleSizeN},
    {Input("Rho0"),       text::RowNullHypothesizedCorrelationRho0},
    {Input("Rho"),        text::RowPopulationCorrelationRho},
    {Input("Alpha"),      text::TypeIErrorRateAlpha},
    {Power(),             kPowerByAlgorithm},
};

constexpr TableRowDefinition kRSize[] = {
    {Input("Rho"),       text::RowPopulationCorrelationRho},
    {Input("Alpha"),     text::TypeIErrorRateAlpha},
    {Input("PowerGoal"), text::PowerGoal},
    {Power(),            text::RowActualPowerForRequiredN},
    {Size(),             kRequiredNByAlgorithm},
};

constexpr TableRowDefinition kRInterval[] = {
    {Input("RObserved"),  text::RowObservedCorrelationR},
    {Input("Rho0"),       text::RowNullHypothesizedCorrelationRho0},
    {kPValue,             kPValueByForm},
    {Input("SampleSize"), text::GroupSampleSizeN},
    {Input("Confidence"), text::RowConfidenceLevel},
    {kNothing,            text::BlankRow},
    {kNothing,            kLimitsByAlgorithm},
    {kNothing,            text::RowRhoHeading, 2},
    {Lower(Limit::Rho),   text::RowLowerLimit, 4},
    {Upper(Limit::Rho),   text::RowUpperLimit, 4},
};

constexpr TableRowDefinition kR2Power[] = {
    {Input("TotalNumberOfVars"), text::RowIndependentVarsK},
    {Input("SampleSize"),        text::GroupSampleSizeN},
    {Input("R2Null"),            text::RowC2NullP2},
    {Input("PopulationR2"),      text::RowP2},
    {Input("Alpha"),             text::TypeIErrorRateAlpha},
    {Power(),                    kPowerBySpeed},
};

constexpr TableRowDefinition kR2Size[] = {
    {Input("TotalNumberOfVars"), text::RowIndependentVarsK},
    {Input("R2Null"),            text::RowC2NullP2},
    {Input("PopulationR2"),      text::RowP2},
    {Input("Alpha"),             text::TypeIErrorRateAlpha},
    {Input("PowerGoal"),         text::PowerGoal},
    {Power(),                    text::RowActualPowerForRequiredN},
    {Size(),                     kRequiredNBySpeed},
};

constexpr TableRowDefinition kR2Interval[] = {
    {Input("R2Observed"),          text::RowObservedRSquareR2},
    {Input("R2Null"),              text::RowC2NullP2},
    {kPValue,                      text::RowPvalueForObservedR2},
    {Input("SampleSize"),          text::RowSampleSizeN},
    {LessOne("TotalNumberOfVars"), text::RowIndependentVarsK},
    {Input("Confidence"),          text::RowConfidenceLevel},
    {kNothing,                     text::BlankRow},
    {kNothing,                     text::RowConfidenceLimitsHeading},
    {kNothing,                     text::RowP2Heading, 2},
    {Lower(Limit::P2),             text::RowLowerLimit, 4},
    {Upper(Limit::P2),             text::RowUpperLimit, 4},
    {Lower(Limit::P2Bound),        text::RowLowerBound, 4},
    {kNothing,                     text::BlankRow},
    {kNothing,                     text::RowPowerHeading, 2},
    {Lower(Limit::Power),          text::RowLowerLimit, 4},
    {Upper(Limit::Power),          text::RowUpperLimit, 4},
    {kNothing,                     text::BlankRow},
    {kNothing,                     text::RowRequiredNHeading, 2},
    {Lower(Limit::RequiredN),      text::RowLowerLimit, 4},
    {Upper(Limit::RequiredN),      text::RowUpperLimit, 4},
};

constexpr TableRowDefinition kZ2RPower[] = {
    {Input("Rho1"),         text::RowPopulationCorrelationRho1},
    {Input("Rho2"),         text::RowPopulationCorrelationRho2},
    {Input("SampleSizeN1"), text::RowSampleSizeN1},
    {Input("SampleSizeN2"), text::RowSampleSizeN2},
    {Input("Alpha"),        text::TypeIErrorRateAlpha},
    {Power(),               kPowerByAlgorithm},
};

constexpr TableRowDefinition kZ2RSize[] = {
    {Input("Rho1"),      text::RowPopulationCorrelationRho1},
    {Input("Rho2"),      text::RowPopulationCorrelationRho2},
    {Input("Alpha"),     text::TypeIErrorRateAlpha},
    {Input("PowerGoal"), text::PowerGoal},
    {Power(),            text::RowActualPowerForRequiredN},
    {Size(),             kRequiredN1ByAlgorithm},
    {Size(1),            kRequiredN2ByAlgorithm},
};

constexpr TableRowDefinition kP1Power[] = {
    {Input("SampleSize"), text::GroupSampleSizeN},
    {Input("Pi0"),        text::RowNullProportionPi0},
    {Input("Pi"),         text::RowPopulationProportionPi},
    {Input("Alpha"),      text::RowAlphaNominal},
    {kActualAlpha,        text::RowActualAlphaExact},
    {kNormalPower,        text::RowPowerNormalApproximation},
    {Power(),             text::RowPowerExact},
};

constexpr TableRowDefinition kP1Size[] = {
    {Input("Pi0"),       text::RowNullProportionPi0},
    {Input("Pi"),        text::RowPopulationProportionPi},
    {Input("Alpha"),     text::RowAlphaNominal},
    {kActualAlpha,       text::RowActualAlphaExact},
    {Input("PowerGoal"), text::PowerGoal},
    {kNormalPower,       text::RowActualPowerNormalApprox},
    {Power(),            text::RowActualPowerExact},
    {Size(),             text::RequiredSampleSizeN},
};

constexpr TableRowDefinition kP1Interval[] = {
    {Input("PObserved"),          text::RowSampleProportionP},
    {Input("SampleSize"),         text::GroupSampleSizeN},
    {Input("Confidence"),         text::RowConfidenceLevel},
    {kNothing,                    text::BlankRow},
    {kNothing,                    text::RowConfidenceLimitsHeading},
    {kNothing,                    text::RowPiExactHeading, 2},
    {Lower(Limit::PiExact),       text::RowLowerLimit, 4},
    {Upper(Limit::PiExact),       text::RowUpperLimit, 4},
    {kNothing,                    text::BlankRow},
    {kNothing,                    text::RowPiApproximateHeading, 2},
    {Lower(Limit::PiApproximate), text::RowLowerLimit, 4},
    {Upper(Limit::PiApproximate), text::RowUpperLimit, 4},
    {kNothing,                    text::BlankRow},
    {kNothing,                    text::RowPiCrudeHeading, 2},
    {Lower(Limit::PiCrude),       text::RowLowerLimit, 4},
    {Upper(Limit::PiCrude),       text::RowUpperLimit, 4},
};

constexpr TableRowDefinition kP2Power[] = {
    {Input("Pi1"),          text::RowPopulationProportionPi1},
    {Input("Pi2"),          text::RowPopulationProportionPi2},
    {Input("SampleSizeN1"), text::RowSampleSizeN1},
    {Input("SampleSizeN2"), text::RowSampleSizeN2},
    {Input("Alpha"),        text::TypeIErrorRateAlpha},
    {Power(),               kPowerByCorrection},
};

constexpr TableRowDefinition kP2Size[] = {
    {Input("Pi1"),       text::RowPopulationProportionPi1},
    {Input("Pi2"),       text::RowPopulationProportionPi2},
    {Input("Alpha"),     text::TypeIErrorRateAlpha},
    {Input("PowerGoal"), text::PowerGoal},
    {Power(),            kPowerByCorrection},
    {Size(),             text::RowSampleSizeN1},
    {Size(1),            text::RowSampleSizeN2},
};

constexpr TableRowDefinition kQMACPower[] = {
    {Input("Delta"),      text::RowDelta},
    {Input("Eta"),        text::RowEta},
    {Input("SampleSize"), text::GroupSampleSizeN},
    {Input("Alpha"),      text::TypeIErrorRateAlpha},
    {Power(),             text::RowPower},
};

constexpr TableRowDefinition kQMACSize[] = {
    {Input("Delta"),     text::RowDelta},
    {Input("Eta"),       text::RowEta},
    {Input("Alpha"),     text::TypeIErrorRateAlpha},
    {Input("PowerGoal"), text::PowerGoal},
    {Power(),            text::RowActualPowerForRequiredN},
    {Size(),             text::RequiredSampleSizeN},
};

constexpr TableRowDefinition kSA1Power[] = {
    {Input("Pi1"),        text::RowGroup1SurvivalRatePi1},
    {Input("Pi2"),        text::RowGroup2SurvivalRatePi2},
    {Input("SampleSize"), text::RowSampleSizePerGroupN},
    {Input("Alpha"),      text::TypeIErrorRateAlpha},
    {Power(),             text::RowPower},
};

constexpr TableRowDefinition kSA1Size[] = {
    {Input("Pi1"),       text::RowGroup1SurvivalRatePi1},
    {Input("Pi2"),       text::RowGroup2SurvivalRatePi2},
    {Input("Alpha"),     text::TypeIErrorRateAlpha},
    {Input("PowerGoal"), text::PowerGoal},
    {Power(),            text::RowActualPowerForRequiredN},
    {kEvents,            text::RowTotalObservedEvents},
    {Size(),             text::RowSampleSizePerGroupN},
};

constexpr TableRowDefinition kSA2Power[] = {
    {Input("Lambda1"),    text::RowLambda1},
    {Input("Lambda2"),    text::RowLambda2},
    {Input("SampleSize"), text::RowSampleSizeN},
    {Input("T0"),         text::RowAccrualPeriodT0},
    {Input("T"),          text::RowMaxFollowUpTimeT},
    {Input("Alpha"),      text::TypeIErrorRateAlpha},
    {Power(),             text::RowPower},
};

constexpr TableRowDefinition kSA2Size[] = {
    {Input("Lambda1"),   text::RowLambda1},
    {Input("Lambda2"),   text::RowLambda2},
    {Input("Alpha"),     text::TypeIErrorRateAlpha},
    {Input("T0"),        text::RowAccrualPeriodT0},
    {Input("T"),         text::RowMaxFollowUpTimeT},
    {Input("PowerGoal"), text::PowerGoal},
    {Power(),            text::RowActualPowerForRequiredN},
    {Size(),             text::RowSampleSizeN},
};

constexpr TableRowDefinition kSA3Power[] = {
    {Input("Lambda1"),    text::RowLambda1},
    {Input("Lambda2"),    text::RowLambda2},
    {Input("D"),          text::RowDropoutRateD},
    {Input("SampleSize"), text::RowSampleSizeN},
    {Input("T0"),         text::RowAccrualPeriodT0},
    {Input("T"),          text::RowMaxFollowUpTimeT},
    {Input("Alpha"),      text::TypeIErrorRateAlpha},
    {Power(),             text::RowPower},
};

// Kept: the dropout rate stands third in the power table and sixth here.
constexpr TableRowDefinition kSA3Size[] = {
    {Input("Lambda1"),   text::RowLambda1},
    {Input("Lambda2"),   text::RowLambda2},
    {Input("Alpha"),     text::TypeIErrorRateAlpha},
    {Input("T0"),        text::RowAccrualPeriodT0},
    {Input("T"),         text::RowMaxFollowUpTimeT},
    {Input("D"),         text::RowDropoutRateD},
    {Input("PowerGoal"), text::PowerGoal},
    {Power(),            text::RowActualPowerForRequiredN},
    {Size(),             text::RowSampleSizeN},
};

constexpr TableRowDefinition kSEMPower[] = {
    {Input("R"),                text::RowPopulationRMSEAR},
    {Input("R0"),               text::RowNullHypothesizedRMSEAR0},
    {Input("DegreesOfFreedom"), text::RowDegreesOfFreedomDf},
    {Input("SampleSize"),       text::GroupSampleSizeN},
    {Input("Alpha"),            text::TypeIErrorRateAlpha},
    {Power(),                   text::RowPower},
};

// Kept: the degrees of freedom after alpha, unlike in the power table.
constexpr TableRowDefinition kSEMSize[] = {
    {Input("R"),                text::RowPopulationRMSEAR},
    {Input("R0"),               text::RowNullHypothesizedRMSEAR0},
    {Input("Alpha"),            text::TypeIErrorRateAlpha},
    {Input("DegreesOfFreedom"), text::RowDegreesOfFreedomDf},
    {Input("PowerGoal"),        text::PowerGoal},
    {Power(),                   text::RowActualPowerForRequiredN},
    {Size(),                    text::RequiredSampleSizeN},
};

constexpr TableRowDefinition kSEMInterval[] = {
    {Input("ObservedChiSquare"), text::RowChiSquareStatistic},
    {Input("DegreesOfFreedom"),  text::RowDegreesOfFreedomDf},
    {Input("P"),                 text::RowNumberOfVariablesP},
    {Input("Groups"),            text::RowNumberOfGroupsK},
    {Input("SampleSize"),        text::RowTotalN},
    {Input("Confidence"),        text::RowConfidenceLevel},
    {kNothing,                   text::BlankRow},
    {kNothing,                   text::RowConfidenceLimitsHeading},
    {kNothing,                   text::RowRMSEAHeading, 2},
    {Lower(Limit::Rmsea),        text::RowLowerLimit, 4},
    {Upper(Limit::Rmsea),        text::RowUpperLimit, 4},
    {kNothing,                   text::BlankRow},
    {kNothing,                   text::RowGamma1Heading, 2},
    {Lower(Limit::Gamma1),       text::RowLowerLimit, 4},
    {Upper(Limit::Gamma1),       text::RowUpperLimit, 4},
    {kNothing,                   text::BlankRow},
    {kNothing,                   text::RowGamma2Heading, 2},
    {Lower(Limit::Gamma2),       text::RowLowerLimit, 4},
    {Upper(Limit::Gamma2),       text::RowUpperLimit, 4},
};

constexpr TableRowDefinition kAV2Power[] = {
    {Input("Rows"),          text::RowNumberOfRows},
    {Input("Columns"),       text::RowNumberOfColumns},
    {Input("N"),             text::GroupSampleSizeN},
    {Input("Alpha"),         text::TypeIErrorRateAlpha},
    {kNothing,               text::BlankRow},
    {kNothing,               text::RowEffect},
    {Input("RMSSE_Row"),     text::RowRMSSE, 2},
    {EffectDf(kRow),         text::RowEffectDf, 2},
    {kErrorDf,               text::RowErrorDf, 2},
    {Critical(kRow),         text::RowCriticalValueOfF, 2},
    {Power(kRow),            text::RowPower, 2},
    {kNothing,               text::BlankRow},
    {kNothing,               text::ColumnEffect},
    {Input("RMSSE_Col"),     text::RowRMSSE, 2},
    {EffectDf(kColumn),      text::RowEffectDf, 2},
    {kErrorDf,               text::RowErrorDf, 2},
    {Critical(kColumn),      text::RowCriticalValueOfF, 2},
    {Power(kColumn),         text::RowPower, 2},
    {kNothing,               text::BlankRow},
    {kNothing,               text::InteractionEffect},
    {Input("RMSSE_Int"),     text::RowRMSSE, 2},
    {EffectDf(kInteraction), text::RowEffectDf, 2},
    {kErrorDf,               text::RowErrorDf, 2},
    {Critical(kInteraction), text::RowCriticalValueOfF, 2},
    {Power(kInteraction),    text::RowPower, 2},
};

constexpr TableRowDefinition kAV2Size[] = {
    {Input("Rows"),       text::RowNumberOfRows},
    {Input("Columns"),    text::RowNumberOfColumns},
    {Input("Alpha"),      text::TypeIErrorRateAlpha},
    {Input("PowerGoal"),  text::PowerGoal},
    {kNothing,            text::BlankRow},
    {kNothing,            text::RowEffect},
    {Input("RMSSE_Row"),  text::RowRMSSE, 2},
    {Power(kRow),         text::RowActualPowerForRequiredN, 2},
    {Size(kRow),          text::RequiredSampleSizeN, 2},
    {kNothing,            text::BlankRow},
    {kNothing,            text::ColumnEffect},
    {Input("RMSSE_Col"),  text::RowRMSSE, 2},
    {Power(kColumn),      text::RowActualPowerForRequiredN, 2},
    {Size(kColumn),       text::RequiredSampleSizeN, 2},
    {kNothing,            text::BlankRow},
    {kNothing,            text::InteractionEffect},
    {Input("RMSSE_Int"),  text::RowRMSSE, 2},
    {Power(kInteraction), text::RowActualPowerForRequiredN, 2},
    {Size(kInteraction),  text::RequiredSampleSizeN, 2},
};

// Kept: no blank row between the limits of Delta and those of RMSSE.
constexpr TableRowDefinition kAV2Interval[] = {
    {Input("Rows"),           text::RowNumberOfRows},
    {Input("Columns"),        text::RowNumberOfColumns},
    {Input("N"),              text::GroupSampleSizeN},
    {Input("Alpha"),          text::TypeIErrorRateAlpha},
    {Input("Confidence"),     text::RowConfidenceLevel},
    {Input("PowerGoal"),      text::PowerGoal},
    {kNothing,                text::BlankRow},
    {kNothing,                kDataOfEffect},
    {Input("FObserved"),      text::RowObservedFStatistic, 2},
    {EffectDf(),              text::RowEffectDf, 2},
    {kErrorDf,                text::RowErrorDf, 2},
    {kNothing,                text::BlankRow},
    {kNothing,                text::RowConfidenceLimitsHeading},
    {kNothing,                text::RowDeltaHeading, 2},
    {Lower(Limit::Delta),     text::RowLowerLimit, 4},
    {Upper(Limit::Delta),     text::RowUpperLimit, 4},
    {kNothing,                text::RowRMSSEHeading, 2},
    {Lower(Limit::Rmsse),     text::RowLowerLimit, 4},
    {Upper(Limit::Rmsse),     text::RowUpperLimit, 4},
    {kNothing,                text::BlankRow},
    {kNothing,                text::RowPowerHeading, 2},
    {Lower(Limit::Power),     text::RowLowerLimit, 4},
    {Upper(Limit::Power),     text::RowUpperLimit, 4},
    {kNothing,                text::BlankRow},
    {kNothing,                text::RowRequiredNHeading, 2},
    {Lower(Limit::RequiredN), text::RowLowerLimit, 4},
    {Upper(Limit::RequiredN), text::RowUpperLimit, 4},
};

// clang-format on

// --- Headings that a setting chooses.

constexpr ChosenText kFormOfMean = {"H0Type",
                                    {text::H0MuEqual, text::H0MuAtMost, text::H0MuAtLeast}};
constexpr ChosenText kFormOfMeans = {
    "H0Type", {text::H0MeansEqual, text::H0MeansAtMost, text::H0MeansAtLeast}};
constexpr ChosenText kModel = {"ModelType", {text::FixedEffects, text::RandomEffects}};
constexpr ChosenText kFormOfVariance = {"H0Type",
                                        {text::H0VarEqual, text::H0VarAtMost, text::H0VarAtLeast}};
constexpr ChosenText kFormOfVariances = {
    "H0Type", {text::H0VariancesEqual, text::H0VariancesAtMost, text::H0VariancesAtLeast}};
constexpr ChosenText kFormOfRho = {"H0Type",
                                   {text::H0RhoZero, text::H0RhoAtMost, text::H0RhoAtLeast}};
constexpr ChosenText kFormOfP2 = {
    "H0Type", {text::H0P2Equal, text::H0P2AtMost, text::H0P2AtLeast, text::H0P2Zero}};
constexpr ChosenText kFormOfRhos = {"H0Type",
                                    {text::H0RhosEqual, text::H0RhosAtMost, text::H0RhosAtLeast}};
constexpr ChosenText kFormOfPi = {"H0Type", {text::H0PiEqual, text::H0PiAtMost, text::H0PiAtLeast}};
constexpr ChosenText kFormOfPis = {"H0Type",
                                   {text::H0PisEqual, text::H0PisAtMost, text::H0PisAtLeast}};
constexpr ChosenText kFormOfDelta = {
    "H0Type", {text::H0DeltaZero, text::H0DeltaAtMost, text::H0DeltaAtLeast}};
constexpr ChosenText kFormOfRates = {"H0Type", {text::H0PisEqual, text::H0PisAtMost}};
constexpr ChosenText kFormOfLambdas = {"H0Type", {text::H0LambdasEqual, text::H0LambdasAtMost}};
constexpr ChosenText kFormOfRmsea = {
    "H0Type", {text::H0RmseaZero, text::H0RmseaAtMost, text::H0RmseaAtLeast}};
constexpr ChosenText kEffectToTest = {
    "EffectToTest", {text::RowEffect, text::ColumnEffect, text::InteractionEffect}};

constexpr ColumnTitle kInset = {2};
constexpr ColumnTitle kWide = {0, 12};

// --- Tables: code, family, mode, headings, rows, the title over the values.

// clang-format off
constexpr TableDefinition kTables[] = {
    {0, T1, ModePower, {text::OneMeanTTest, kFormOfMean}, kT1Power, kInset},
    {1, T1, ModeSampleSize, {text::OneMeanTTest, kFormOfMean}, kT1Size, kInset},
    {2, T1, ModeInterval, {text::OneMeanTTest}, kT1Interval},
    {16, T2, ModePower, {text::HeadingTwoMeansTTestIndSamples, kFormOfMeans}, kT2Power, kInset},
    {17, T2, ModeSampleSize, {text::HeadingTwoMeansTTestIndSamples, kFormOfMeans}, kT2Size, kInset},
    {18, T2, ModeInterval, {text::HeadingTwoMeansTTestIndSamples}, kT2Interval},
    {32, T3, ModePower, {text::HeadingDependentSampleTTest, kFormOfMeans}, kT3Power, kInset},
    {33, T3, ModeSampleSize, {text::HeadingDependentSampleTTest, kFormOfMeans}, kT3Size},
    {34, T3, ModeInterval, {text::HeadingTTest2, text::HeadingDepSamples}, kT3Interval},
    {48, PC, ModePower, {text::HeadingPlannedContrast}, kPCPower, kWide},
    {49, PC, ModeSampleSize, {text::HeadingPlannedContrast}, kPCSize, kWide},
    {50, PC, ModeInterval, {text::HeadingPlannedContrast}, kPCInterval},
    {80, AV1, ModePower, {text::HeadingANOVA1Way, kModel}, kAV1Power, kInset},
    {81, AV1, ModeSampleSize, {text::HeadingANOVA1Way, kModel}, kAV1Size},
    {82, AV1, ModeInterval, {text::HeadingSeveralMeansANOVA1Way, kModel}, kAV1Interval},
    {112, V1, ModePower, {text::HeadingOneVarianceChiSquareTest, kFormOfVariance}, kV1Power},
    {113, V1, ModeSampleSize, {text::HeadingOneVarianceChiSquareTest, kFormOfVariance}, kV1Size},
    {128, V2, ModePower, {text::HeadingTwoVariancesFTest, kFormOfVariances}, kV2Power},
    {129, V2, ModeSampleSize, {text::HeadingTwoVariancesFTest, kFormOfVariances}, kV2Size},
    {144, R, ModePower, {text::HeadingOneCorrelationTTest, kFormOfRho}, kRPower},
    {145, R, ModeSampleSize, {text::HeadingOneCorrelationTTest, kFormOfRho}, kRSize},
    {146, R, ModeInterval, {text::HeadingOneCorrelation, text::HeadingTTest}, kRInterval},
    {160, R2, ModePower, {text::HeadingSquaredMultipleCorrelation, kFormOfP2}, kR2Power},
    {161, R2, ModeSampleSize, {text::HeadingSquaredMultipleCorrelation, kFormOfP2}, kR2Size},
    {162, R2, ModeInterval, {text::HeadingSquaredMultipleCorrelation}, kR2Interval},
    {176, Z2R, ModePower, {text::HeadingTwoCorrelationsZTest, kFormOfRhos}, kZ2RPower},
    {177, Z2R, ModeSampleSize, {text::HeadingTwoCorrelationsZTest, kFormOfRhos}, kZ2RSize},
    {193, P1, ModePower, {text::HeadingOneProportionZChiSquareTest, kFormOfPi}, kP1Power},
    {194, P1, ModeSampleSize, {text::HeadingOneProportionZChiSquareTest, kFormOfPi}, kP1Size},
    {195, P1, ModeInterval, {text::HeadingOneProportion, text::HeadingZOrChiSquareTest},
     kP1Interval},
    {209, P2, ModePower, {text::HeadingTwoProportionsZTest, kFormOfPis}, kP2Power},
    {210, P2, ModeSampleSize, {text::HeadingTwoProportionsZTest, kFormOfPis}, kP2Size},
    {225, QMAC, ModePower, {text::HeadingTwoProportionsPairedSample, kFormOfDelta}, kQMACPower},
    {226, QMAC, ModeSampleSize, {text::HeadingTwoProportionsPairedSample, kFormOfDelta}, kQMACSize},
    {241, SA1, ModePower, {text::HeadingSurvivalLogRankTest, kFormOfRates}, kSA1Power},
    {242, SA1, ModeSampleSize, {text::HeadingSurvivalLogRankTest, kFormOfRates}, kSA1Size},
    {257, SA2, ModePower, {text::HeadingSurvivalExponentialAccrual, kFormOfLambdas}, kSA2Power},
    {258, SA2, ModeSampleSize, {text::HeadingSurvivalExponentialAccrual, kFormOfLambdas}, kSA2Size},
    {513, SA3, ModePower, {text::HeadingSurvivalExpAccrualDropouts, kFormOfLambdas}, kSA3Power},
    {514, SA3, ModeSampleSize, {text::HeadingSurvivalExpAccrualDropouts, kFormOfLambdas}, kSA3Size},
    {769, SEM, ModePower, {text::HeadingStructuralEquationModeling, kFormOfRmsea}, kSEMPower},
    {770, SEM, ModeSampleSize, {text::HeadingStructuralEquationModeling, kFormOfRmsea}, kSEMSize},
    {771, SEM, ModeInterval, {text::HeadingStructuralEquationModeling}, kSEMInterval},
    {1025, AV2, ModePower, {text::HeadingANOVA2Way}, kAV2Power},
    {1026, AV2, ModeSampleSize, {text::HeadingANOVA2Way}, kAV2Size},
    {1027, AV2, ModeInterval, {text::HeadingANOVA2Way, kEffectToTest}, kAV2Interval},
};
// clang-format on

}  // namespace

std::span<const TableDefinition> TableDefinitions() { return kTables; }

}  // namespace poweranalysis
