#pragma once

#include <cmath>

#include "distributions/GaussKronrod21.h"

namespace poweranalysis {

namespace qags {

// A rule with its integrand, seen as a function of an interval, so that the subdivision is compiled
// once for all integrands. It refers to the integrand and does not outlive it.
class IntervalRule {
 public:
  template <class Integrand>
  explicit IntervalRule(const Integrand& f)
      : integrand_(&f), apply_([](const void* integrand, double lower, double upper) {
          return GaussKronrod21(*static_cast<const Integrand*>(integrand), lower, upper);
        }) {}

  RuleEstimate operator()(double lower, double upper) const {
    return apply_(integrand_, lower, upper);
  }

 private:
  const void* integrand_;
  RuleEstimate (*apply_)(const void*, double, double);
};

void Integrate(const IntervalRule& rule,
               double lower,
               double upper,
               double epsabs,
               double epsrel,
               double& result,
               double& abserr,
               int& neval,
               int& ier);

}  // namespace qags

// The integral of f from `lower` to `upper` to epsabs or epsrel, whichever is wider, by globally
// adaptive bisection with extrapolation (QAGS). `abserr` is the estimated error, `neval` the
// number of evaluations of f. f(x) gives an IntegrandValue.
//
//   21-point Gauss-Kronrod rule on at most 20 intervals; epsilon algorithm on the sums.
//
// Source: Piessens, R., de Doncker-Kapenga, E., Ueberhuber, C. W. and Kahaner, D. K. (1983).
//         QUADPACK. Springer. Routines DQAGSE, DQK21, DQPSRT, DQELG.
// Domain: finite limits in any order.
// Fails:  `ier` nonzero: 1 the twentieth interval was reached; 2 rounding error; 3 bad behaviour of
//         f at a point; 4 the extrapolation does not converge; 5 probably divergent; 6 the
//         tolerances cannot be met, nothing computed; 99 f raised its flag, result 0.
template <class Integrand>
void AdaptiveIntegrate(const Integrand& f,
                       double lower,
                       double upper,
                       double epsabs,
                       double epsrel,
                       double& result,
                       double& abserr,
                       int& neval,
                       int& ier) {
  qags::Integrate(qags::IntervalRule(f), lower, upper, epsabs, epsrel, result, abserr, neval, ier);
}

}  // namespace poweranalysis
