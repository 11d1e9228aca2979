#include <algorithm>
#include <cmath>

#include "calculators/Equations.h"

namespace poweranalysis {

namespace {

constexpr const char* kTFields[] = {"TObserved", "DegreesOfFreedom", "Delta", "CumP"};
constexpr const char* kFFields[] = {"FObserved", "Df1", "Df2", "Delta", "CumP"};
constexpr const char* kChiSquareFields[] = {"ObservedChiSquare", "DegreesOfFreedom", "Delta",
                                            "CumP"};
constexpr const char* kR2Fields[] = {"R2Observed",        "PopulationR2", "SampleSize",
                                     "TotalNumberOfVars", "CumP",         "Algorithm"};
constexpr const char* kRFields[] = {"RObserved", "Rho", "SampleSize", "CumP", "Algorithm"};
constexpr const char* kBinomialFields[] = {"XObserved", "SampleSize", "Pi", "CumP"};

// Large noncentralities cost digits; the computation goes on regardless.
// Kept: it is the stored value that is tested, also when Delta is the unknown.
bool WarnOfLargeDelta(WindowHandle parent, const PowerSettings& block) {
  constexpr double kLarge = 5000;
  if (std::fabs(block.T1.Working.Delta) > kLarge) {
    ShowMessage(MessagePlain, parent, text::CalculatorLargeDelta);
  }
  return true;
}

// Kept: as many observations as variables pass, although the message asks for more.
bool EnoughObservations(WindowHandle parent, const PowerSettings& block) {
  const R2Params& in = block.R2.Working;
  if (in.SampleSize >= in.TotalNumberOfVars) {
    return true;
  }
  ShowMessage(MessagePlain, parent, text::SampleSizeTooSmallForPredictors);
  return false;
}

constexpr CalculatorUnknown Probability(CalculatorAnswer (*compute)(const PowerSettings&, double),
                                        const char* flag = nullptr) {
  return {ProbabilityField, "p", flag, text::None, compute};
}

constexpr CalculatorTable kCalculators[] = {
    {"T",
     Family::T1,
     kTFields,
     {{{"TObserved", "t", "ComputeT", text::ButtonT, SolveForT},
       Probability(SolveForTProbability, "ComputeP"),
       {"Delta", "delta", "ComputeDelta", text::ButtonDelta, SolveForTDelta}}},
     WarnOfLargeDelta},
    {"F",
     Family::FCalc,
     kFFields,
     {{{"FObserved", "f", nullptr, text::ButtonF, SolveForF},
       Probability(SolveForFProbability),
       {"Delta", "delta", nullptr, text::ButtonDelta, SolveForFDelta}}}},
    {"X2",
     Family::X2Calc,
     kChiSquareFields,
     {{{"ObservedChiSquare", "chi-square", nullptr, text::ButtonChISquare, SolveForChiSquare},
       Probability(SolveForChiSquareProbability),
       {"Delta", "delta", nullptr, text::ButtonDelta, SolveForChiSquareDelta}}}},
    {"R2",
     Family::R2,
     kR2Fields,
     {{{"R2Observed", "r-square", nullptr, text::ButtonR2, SolveForR2},
       Probability(SolveForR2Probability),
       {"PopulationR2", "rho-square", nullptr, text::ButtonP2RhO2, SolveForRho2}}},
     EnoughObservations},
    {"R",
     Family::R,
     kRFields,
     {{{"RObserved", "r", nullptr, text::ButtonR, SolveForR},
       Probability(SolveForRProbability),
       {"Rho", "rho", nullptr, text::ButtonRhO, SolveForRho}}}},
    {"Binomial",
     Family::BinomialCalc,
     kBinomialFields,
     {{{"XObserved", "x", nullptr, text::ButtonX, SolveForX},
       Probability(SolveForXProbability),
       {"Pi", "pi", nullptr, text::ButtonPI, SolveForPi}}}},
};

}  // namespace

std::span<const CalculatorTable> Calculators() { return kCalculators; }

const CalculatorTable* FindCalculator(std::string_view code) {
  const auto* found =
      std::find_if(std::begin(kCalculators), std::end(kCalculators),
                   [code](const CalculatorTable& row) { return code == row.calculator; });
  return found == std::end(kCalculators) ? nullptr : found;
}

bool HasField(const CalculatorTable& calculator, std::string_view field) {
  const bool shown = std::any_of(calculator.fields.begin(), calculator.fields.end(),
                                 [field](std::string_view name) { return name == field; });
  const bool selects =
      std::any_of(calculator.unknowns.begin(), calculator.unknowns.end(),
                  [field](const CalculatorUnknown& row) {
                    return field == (row.flag == nullptr ? SelectorField : row.flag);
                  });
  return shown || selects || field == OneMinusPField;
}

std::string MeaningOfBox(const Field& field) {
  TextId meaning = field.meaning;
  for (const CalculatorTable& calculator : kCalculators) {
    const Field* other = TableOf(calculator.family).Find(field.name);
    if (meaning == text::None && other != nullptr) {
      meaning = other->meaning;
    }
  }
  return LoadText(meaning);
}

std::string CaptionOfBox(const CalculatorTable& calculator, const Field& field) {
  const std::string label =
      ControlsOfField(TableOf(calculator.family), field, text::None).front().caption;
  const auto* unknown = std::find_if(
      calculator.unknowns.begin(), calculator.unknowns.end(),
      [&field](const CalculatorUnknown& row) { return field.name == std::string_view(row.field); });
  return label.empty() && unknown != calculator.unknowns.end()
             ? WithoutMnemonic(LoadText(unknown->caption))
             : label;
}

TextId ProbabilityLabel(bool requested, bool oneMinusP) {
  return requested   ? text::CaptionRequestedValueBox
         : oneMinusP ? text::Caption1CumPBox
                     : text::CaptionCumPBox;
}

bool ShowsRequested(const CalculatorTable& calculator, std::size_t unknown) {
  return unknown == UnknownStatistic && TableOf(calculator.family).Find(ActualField) != nullptr;
}

std::string WithoutMnemonic(std::string caption) {
  caption.erase(std::remove(caption.begin(), caption.end(), '&'), caption.end());
  return caption;
}

}  // namespace poweranalysis
