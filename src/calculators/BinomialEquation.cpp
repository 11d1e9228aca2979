#include <cmath>

#include "calculators/Equations.h"
#include "distributions/Beta.h"
#include "distributions/Binomial.h"

namespace poweranalysis {

namespace {

// P(X > x).
double UpperTail(const BinomialCalcParams& in, double x) {
  if (x >= in.SampleSize) {
    return 0;
  }
  int failure = 0;
  const double upper = BetaCdf(in.Pi, x + 1, in.SampleSize - x, failure);
  return failure == 0 ? upper : NumericFailure;
}

}  // namespace

CalculatorAnswer SolveForX(const PowerSettings& block, double p) {
  const BinomialCalcParams& in = block.BinomialCalc.Working;
  const double n = in.SampleSize;
  const double logP = std::log(p);
  CalculatorAnswer answer = GoodAnswer(0);
  if (n * std::log(1 - in.Pi) >= logP) {
    // The first term alone already reaches p.
    answer.actual = std::pow(1 - in.Pi, n);
    return answer;
  }
  int failure = 0;
  answer.actual = 1;  // of X = n, the one answer for which the search leaves it as it stands
  answer.value = std::trunc(BinomialQuantile(p, n, in.Pi, answer.actual, failure, logP));
  answer.good = failure == 0;
  if (answer.good) {
    const CalculatorAnswer actual =
        ProbabilityAnswer(answer.actual, [&] { return UpperTail(in, answer.value); });
    answer.actual = actual.value;
    answer.upper = actual.upper;
  }
  return answer;
}

CalculatorAnswer SolveForXProbability(const PowerSettings& block, double /*p*/) {
  const BinomialCalcParams& in = block.BinomialCalc.Working;
  int failure = 0;
  const double p = BinomialCdf(in.SampleSize, in.Pi, in.XObserved, failure);
  if (failure != 0) {
    return {};
  }
  return ProbabilityAnswer(p, [&in] { return UpperTail(in, in.XObserved); });
}

CalculatorAnswer SolveForPi(const PowerSettings& block, double p) {
  const BinomialCalcParams& in = block.BinomialCalc.Working;
  int failure = 0;
  const double pi = BinomialProportionForP(in.SampleSize, p, in.XObserved, failure);
  return failure == 0 ? GoodAnswer(pi) : CalculatorAnswer();
}

}  // namespace poweranalysis
