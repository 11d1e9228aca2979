#include "settings/Choices.h"

#include <algorithm>
#include <iterator>

namespace poweranalysis {

namespace {

using enum Family;

// --- Lists: value, word, caption.

// clang-format off
constexpr Choice kOneMean[] = {
    {0, "two-sided", text::Caption2TailedMuMu0},
    {1, "upper",     text::Caption1TailedMuAtMostMu0},
    {2, "lower",     text::Caption1TailedMuAtLeastMu0},
};
constexpr Choice kTwoMeans[] = {
    {0, "two-sided", text::Radio2TailedMeans},
    {1, "upper",     text::Radio1TailedMeansAtMost},
    {2, "lower",     text::Radio1TailedMeansAtLeast},
};
constexpr Choice kOneVariance[] = {
    {0, "two-sided", text::Radio2TailedVariance},
    {1, "upper",     text::Radio1TailedVarianceAtMost},
    {2, "lower",     text::Radio1TailedVarianceAtLeast},
};
constexpr Choice kTwoVariances[] = {
    {0, "two-sided", text::Radio2TailedVariances},
    {1, "upper",     text::Radio1TailedVariancesAtMost},
    {2, "lower",     text::Radio1TailedVariancesAtLeast},
};
constexpr Choice kOneCorrelation[] = {
    {0, "two-sided", text::Radio2TailedCorrelation},
    {1, "upper",     text::Radio1TailedCorrelationAtMost},
    {2, "lower",     text::Radio1TailedCorrelationAtLeast},
};
constexpr Choice kTwoCorrelations[] = {
    {0, "two-sided", text::Radio2TailedCorrelations},
    {1, "upper",     text::Radio1TailedCorrelationsAtMost},
    {2, "lower",     text::Radio1TailedCorrelationsAtLeast},
};
constexpr Choice kSquaredCorrelation[] = {
    {0, "two-sided", text::Radio2TailedSquaredCorrelation},
    {1, "upper",     text::Radio1TailedSquaredCorrelationAtMost},
    {2, "lower",     text::Radio1TailedSquaredCorrelationAtLeast},
    {3, "zero",      text::Radio1TailedSquaredCorrelationZero},
};
constexpr Choice kOneProportion[] = {
    {0, "two-sided", text::Radio2TailedProportion},
    {1, "upper",     text::Radio1TailedProportionAtMost},
    {2, "lower",     text::Radio1TailedProportionAtLeast},
};
constexpr Choice kTwoProportions[] = {
    {0, "two-sided", text::Radio2TailedProportions},
    {1, "upper",     text::Radio1TailedProportionsAtMost},
    {2, "lower",     text::Radio1TailedProportionsAtLeast},
};
constexpr Choice kPairedProportions[] = {
    {0, "two-sided", text::Radio2TailedDelta},
    {1, "upper",     text::Radio1TailedDeltaAtMost},
    {2, "lower",     text::Radio1TailedDeltaAtLeast},
};
// The bounds reach to 2, but a survival test has two forms.
constexpr Choice kSurvivalRates[] = {
    {0, "two-sided", text::Radio2TailedProportions},
    {1, "upper",     text::Radio1TailedProportionsAtMost},
};
constexpr Choice kSurvivalParameters[] = {
    {0, "two-sided", text::Radio2TailedLambda},
    {1, "upper",     text::Radio1TailedLambdaAtMost},
};
// Kept: the caption of the first names a null hypothesis of zero; with another R0 the test is
// two-sided, as the word says.
constexpr Choice kModelFit[] = {
    {0, "two-sided", text::Radio1TailedRmseaZero},
    {1, "upper",     text::Radio1TailedRmseaAtMost},
    {2, "lower",     text::Radio1TailedRmseaAtLeast},
};

constexpr Choice kGroupToVary[] = {
    {0, "equal", text::RadioEqualN},
    {1, "n1",    text::RadioVaryN1},
    {2, "n2",    text::RadioVaryN2},
};
constexpr Choice kGroupToVaryOrRatio[] = {
    {0, "equal", text::RadioEqualN},
    {1, "n1",    text::RadioVaryN1},
    {2, "n2",    text::RadioVaryN2},
    {3, "ratio", text::RadioFixedRatio},
};
constexpr Choice kDfToVary[] = {
    {0, "equal", text::RadioEqualDf},
    {1, "df1",   text::CaptionVaryDf1FixedDf2},
};
constexpr Choice kEffectsModel[] = {
    {0, "fixed",  text::FixedEffects},
    {1, "random", text::RandomEffects},
};
constexpr Choice kEffectToTest[] = {
    {0, "row",         text::RowEffect},
    {1, "column",      text::ColumnEffect},
    {2, "interaction", text::InteractionEffect},
};

constexpr Choice kFAlgorithms[] = {
    {0, "exact", text::CaptionExact},
    {1, "tiku",  text::RadioTiku},
};
constexpr Choice kCorrelationAlgorithms[] = {
    {0, "exact",   text::CaptionExact},
    {1, "refined", text::CaptionFisherZRefined},
    {2, "crude",   text::CaptionFisherZCrude},
};
// There is no exact distribution of a difference of correlations.
constexpr Choice kFisherZAlgorithms[] = {
    {1, "refined", text::CaptionFisherZRefined},
    {2, "crude",   text::CaptionFisherZCrude},
};
constexpr Choice kSquaredCorrelationAlgorithms[] = {
    {0, "speed",    text::CaptionFaster},
    {1, "accuracy", text::CaptionMoreAccurate},
};
constexpr Choice kProportionAlgorithms[] = {
    {0, "exact",  text::CaptionExact},
    {1, "normal", text::RadioNormalApproximation},
};

constexpr Choice kNoYes[] = {
    {0, "no"},
    {1, "yes"},
};

// --- Fields: family, field, caption of the group, choices.

constexpr ChoiceRow kRows[] = {
    {T1,   "H0Type",       text::GroupHypothesis,              kOneMean},
    {T2,   "H0Type",       text::GroupHypothesis,              kTwoMeans},
    {T2,   "NToVary",      text::GroupGroupToVary,             kGroupToVary},
    {T3,   "H0Type",       text::GroupHypothesis,              kTwoMeans},
    {AV1,  "ModelType",    text::GroupEffectsModel,            kEffectsModel},
    {AV1,  "Algorithm",    text::GroupFDistribution,           kFAlgorithms},
    {AV2,  "EffectToTest", text::GroupEffectToTest,            kEffectToTest},
    {AV2,  "Algorithm",    text::GroupFDistribution,           kFAlgorithms},
    {V1,   "H0Type",       text::GroupHypothesis,              kOneVariance},
    {V2,   "H0Type",       text::GroupHypothesis,              kTwoVariances},
    {V2,   "DfToVary",     text::GroupDfToVary,                kDfToVary},
    {V2,   "Algorithm",    text::GroupFDistribution,           kFAlgorithms},
    {R,    "H0Type",       text::GroupHypothesis,              kOneCorrelation},
    {R,    "Algorithm",    text::ButtonCompUtationalAlgorithm, kCorrelationAlgorithms},
    {Z2R,  "H0Type",       text::GroupHypothesis,              kTwoCorrelations},
    {Z2R,  "Algorithm",    text::ButtonCompUtationalAlgorithm, kFisherZAlgorithms},
    {Z2R,  "NToVary",      text::GroupGroupToVary,             kGroupToVary},
    {R2,   "H0Type",       text::GroupHypothesis,              kSquaredCorrelation},
    {R2,   "Algorithm",    text::ButtonCompUtingAlgorithm,     kSquaredCorrelationAlgorithms},
    {P1,   "H0Type",       text::GroupHypothesis,              kOneProportion},
    {P1,   "Algorithm",    text::ButtonCompUtingAlgorithm,     kProportionAlgorithms},
    {P2,   "H0Type",       text::GroupHypothesis,              kTwoProportions},
    {P2,   "NToVary",      text::GroupGroupToVary,             kGroupToVaryOrRatio},
    {P2,   "Continuity",   text::None,                         kNoYes},
    {P2,   "EqualN",       text::None,                         kNoYes},
    {QMAC, "H0Type",       text::GroupHypothesis,              kPairedProportions},
    {SA1,  "H0Type",       text::GroupHypothesis,              kSurvivalRates},
    {SA2,  "H0Type",       text::GroupHypothesis,              kSurvivalParameters},
    {SA3,  "H0Type",       text::GroupHypothesis,              kSurvivalParameters},
    {SEM,  "H0Type",       text::GroupHypothesis,              kModelFit},
};
// clang-format on

}  // namespace

std::span<const ChoiceRow> ChoiceRows() { return kRows; }

std::span<const Choice> ChoicesOf(Family family, std::string_view field) {
  const auto* row = std::find_if(std::begin(kRows), std::end(kRows), [&](const ChoiceRow& choices) {
    return choices.family == family && field == choices.field;
  });
  return row == std::end(kRows) ? std::span<const Choice>() : row->choices;
}

const Choice* FindChoice(std::span<const Choice> choices, double value) {
  const auto choice = std::find_if(choices.begin(), choices.end(),
                                   [value](const Choice& row) { return row.value == value; });
  return choice == choices.end() ? nullptr : &*choice;
}

}  // namespace poweranalysis
