#include <algorithm>
#include <cmath>

#include "calculators/Equations.h"
#include "dialogs/Speaker.h"
#include "distributions/MultipleR2.h"
#include "distributions/Normal.h"
#include "distributions/UpperTails.h"

namespace poweranalysis {

namespace {

// As many variables as observations pass the dialog's own test, but leave no degrees of freedom.
bool HasDegreesOfFreedom(const R2Params& in) { return in.SampleSize > in.TotalNumberOfVars; }

// Without a bar, but it can be stopped.
HostObserver Stoppable() { return {nullptr, HostObserver::Bar::None}; }

// Where the search for rho2 begins: the estimate that allows for its own bias, less its normal
// deviate. The estimate may fall below 0, where no search could begin.
double Rho2Start(const R2Params& in, double p) {
  constexpr double kLowest = 0.0001;
  const double n = in.SampleSize;
  const double k = in.TotalNumberOfVars;
  const double r2 = in.R2Observed;
  const double rest = 1 - r2;
  const double mean = r2 - (k - 3) * rest / (n - k);
  const double variance = 4 * r2 * rest * rest * (n - k) * (n - k) / ((n * n - 1) * (n + 3));
  return std::max(kLowest, mean - NormalQuantile(p) * std::sqrt(variance));
}

}  // namespace

CalculatorAnswer SolveForR2(const PowerSettings& block, double p) {
  const R2Params& in = block.R2.Working;
  if (!HasDegreesOfFreedom(in)) {
    return {};
  }
  HostObserver observer = Stoppable();
  int failure = 0;
  const double r2 = MultipleR2Quantile(in.PopulationR2, in.SampleSize, in.TotalNumberOfVars, p,
                                       failure, in.Algorithm, observer);
  return failure == 0 ? GoodAnswer(r2) : CalculatorAnswer();
}

CalculatorAnswer SolveForR2Probability(const PowerSettings& block, double /*p*/) {
  const R2Params& in = block.R2.Working;
  if (in.R2Observed <= 0 || in.R2Observed >= 1) {
    return GoodAnswer(in.R2Observed <= 0 ? 0 : 1);
  }
  if (!HasDegreesOfFreedom(in)) {
    return {};
  }
  HostObserver observer = Stoppable();
  int failure = 0;
  const double p = MultipleR2Cdf(in.PopulationR2, in.SampleSize, in.TotalNumberOfVars,
                                 in.R2Observed, in.Algorithm, failure, observer);
  if (failure != 0) {
    return {};
  }
  // The approximation does not have its own upper tail: where it comes close to 1 the exact one is
  // taken.
  return ProbabilityAnswer(p, [&in] {
    return MultipleR2Upper(in.PopulationR2, in.SampleSize, in.TotalNumberOfVars, in.R2Observed);
  });
}

CalculatorAnswer SolveForRho2(const PowerSettings& block, double p) {
  const R2Params& in = block.R2.Working;
  if (!HasDegreesOfFreedom(in)) {
    return {};
  }
  HostObserver observer = Stoppable();
  int failure = 0;
  const double central = MultipleR2Cdf(0, in.SampleSize, in.TotalNumberOfVars, in.R2Observed,
                                       in.Algorithm, failure, observer);
  if (failure != 0) {
    return {};
  }
  // Kept: here the central probability itself has no solution, unlike that of F.
  if (p >= central) {
    CalculatorAnswer answer = GoodAnswer(0);
    answer.noSolution = text::NoP2ForR2;
    answer.nearestProbability = central;
    return answer;
  }
  double rho2 = MultipleR2RhoForP(Rho2Start(in, p), in.SampleSize, in.TotalNumberOfVars,
                                  in.R2Observed, p, failure, R2Lee, observer);
  if (in.Algorithm == R2Exact) {
    // The approximation's answer, even a poor one, is where the exact search begins.
    rho2 = MultipleR2RhoForP(rho2, in.SampleSize, in.TotalNumberOfVars, in.R2Observed, p, failure,
                             R2Exact, observer);
  }
  return failure == 0 ? GoodAnswer(rho2) : CalculatorAnswer();
}

}  // namespace poweranalysis
