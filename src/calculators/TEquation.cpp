#include "calculators/Equations.h"
#include "distributions/NoncentralT.h"
#include "distributions/SolveParameter.h"
#include "distributions/UpperTails.h"

namespace poweranalysis {

namespace {

// P(T > t). Mirrored, it is a lower tail; without a noncentrality half that of the F distribution.
double UpperTail(const T1Params& in) {
  const double t = in.TObserved;
  return in.Delta == 0 && t > 0 ? NoncentralFUpper(t * t, 1, in.DegreesOfFreedom, 0) / 2
                                : NoncentralTCdf(-t, in.DegreesOfFreedom, -in.Delta);
}

}  // namespace

CalculatorAnswer SolveForT(const PowerSettings& block, double p) {
  const T1Params& in = block.T1.Working;
  int status = 0;
  int failure = 0;
  const double t = NoncentralTQuantile(in.Delta, in.DegreesOfFreedom, p, status, failure);
  return status == 0 && failure == 0 ? GoodAnswer(t) : CalculatorAnswer();
}

CalculatorAnswer SolveForTProbability(const PowerSettings& block, double /*p*/) {
  const T1Params& in = block.T1.Working;
  const double p = NoncentralTCdf(in.TObserved, in.DegreesOfFreedom, in.Delta);
  if (p == NumericFailure) {
    return {};
  }
  return ProbabilityAnswer(p, [&in] { return UpperTail(in); });
}

CalculatorAnswer SolveForTDelta(const PowerSettings& block, double p) {
  const T1Params& in = block.T1.Working;
  int status = 0;
  int failure = 0;
  const double start = NoncentralTDeltaStart(in.TObserved, in.DegreesOfFreedom, p);
  constexpr std::int32_t kNoSecondDf = 0;
  const double delta = SolveParameter(in.TObserved, in.DegreesOfFreedom, p, start, status, failure,
                                      SearchTDelta, kNoSecondDf);
  return status == 0 && failure == 0 ? GoodAnswer(delta) : CalculatorAnswer();
}

}  // namespace poweranalysis
