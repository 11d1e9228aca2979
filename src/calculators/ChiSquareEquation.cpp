#include "calculators/Equations.h"
#include "distributions/NoncentralChiSquare.h"
#include "distributions/UpperTails.h"

namespace poweranalysis {

CalculatorAnswer SolveForChiSquare(const PowerSettings& block, double p) {
  const X2CalcParams& in = block.X2Calc.Working;
  int status = 0;
  const double x = NoncentralChiSquareQuantile(in.Delta, in.DegreesOfFreedom, p, status);
  // An evaluation that failed within the search shows as the value alone.
  return status == 0 && x != NumericFailure ? GoodAnswer(x) : CalculatorAnswer();
}

CalculatorAnswer SolveForChiSquareProbability(const PowerSettings& block, double /*p*/) {
  const X2CalcParams& in = block.X2Calc.Working;
  double density = 0;
  int failure = 0;  // cleared here: the approximation for a large delta leaves it as it stands
  const double p =
      NoncentralChiSquareCdf(in.ObservedChiSquare, in.DegreesOfFreedom, in.Delta, density, failure);
  if (failure != 0) {
    return {};
  }
  return ProbabilityAnswer(p, [&in] {
    return NoncentralChiSquareUpper(in.ObservedChiSquare, in.DegreesOfFreedom, in.Delta);
  });
}

CalculatorAnswer SolveForChiSquareDelta(const PowerSettings& block, double p) {
  const X2CalcParams& in = block.X2Calc.Working;
  int word = 0;
  const double delta = NoncentralChiSquareDelta(in.ObservedChiSquare, in.DegreesOfFreedom, p, word);
  if (delta != NumericFailure) {
    return GoodAnswer(delta);
  }
  if (word != NoSuchChiSquareDelta) {
    return {};
  }
  double density = 0;
  int failure = 0;
  CalculatorAnswer answer = GoodAnswer(0);
  answer.noSolution = text::NoDeltaForChiSquare;
  answer.nearestProbability =
      NoncentralChiSquareCdf(in.ObservedChiSquare, in.DegreesOfFreedom, 0, density, failure);
  return answer;
}

}  // namespace poweranalysis
