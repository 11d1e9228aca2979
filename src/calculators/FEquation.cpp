#include "calculators/Equations.h"
#include "distributions/NoncentralF.h"
#include "distributions/UpperTails.h"

namespace poweranalysis {

CalculatorAnswer SolveForF(const PowerSettings& block, double p) {
  const FCalcParams& in = block.FCalc.Working;
  int failure = 0;
  const double f = NoncentralFQuantile(in.Delta, in.Df1, in.Df2, p, failure, FExact);
  return failure == 0 ? GoodAnswer(f) : CalculatorAnswer();
}

CalculatorAnswer SolveForFProbability(const PowerSettings& block, double /*p*/) {
  const FCalcParams& in = block.FCalc.Working;
  int failure = 0;
  const double p = NoncentralFCdfInt(in.FObserved, in.Df1, in.Df2, in.Delta, failure, FExact);
  if (failure != 0 || p == NumericFailure) {
    return {};
  }
  return ProbabilityAnswer(
      p, [&in] { return NoncentralFUpper(in.FObserved, in.Df1, in.Df2, in.Delta); });
}

CalculatorAnswer SolveForFDelta(const PowerSettings& block, double p) {
  const FCalcParams& in = block.FCalc.Working;
  int failure = 0;
  const double delta = NoncentralFDelta(in.FObserved, in.Df1, in.Df2, p, failure, FExact);
  if (delta == NumericFailure) {
    return {};
  }
  CalculatorAnswer answer = GoodAnswer(delta);
  if (delta == 0) {
    const double central = NoncentralFCdfInt(in.FObserved, in.Df1, in.Df2, 0, failure, FExact);
    // Kept: the central probability itself still has its delta, unlike that of r².
    if (p > central) {
      answer.noSolution = text::NoDeltaForF;
      answer.nearestProbability = central;
    }
  }
  return answer;
}

}  // namespace poweranalysis
