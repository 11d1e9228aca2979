#pragma once

#include <cstdint>

#include "distributions/SearchObserver.h"

namespace poweranalysis {

// How the distribution of r is computed. In all functions here any value but 1 and 2 means exact.
enum CorrelationAlgorithm : std::int16_t {
  CorrelationExact = 0,
  CorrelationFisherZRefined = 1,
  CorrelationFisherZCrude = 2,
};

// E(z - atanh(rho)) of Fisher's z = atanh(r).
//
//   rho / (2 m) + (5 rho + rho^3) / (8 m^2) + ... to the sixth power of 1 / m,  m = n - 1
//
// Source: Gayen, A. K. (1951). The frequency distribution of the product-moment correlation
//         coefficient in random samples of any size drawn from non-normal universes. Biometrika 38,
//         219-247.
// Domain: n >= 2, -1 <= rho <= 1.
// Fails:  never.
double FisherZBias(double rho, std::int32_t n);

// E((z - atanh(rho))^2) of Fisher's z.
//
//   1 / m + (8 - rho^2) / (4 m^2) + ... to the sixth power of 1 / m,  m = n - 1
//
// Source, domain, failure: as FisherZBias.
// Kept:   +113 rho^2 in the last term, where the moment has -113 rho^2.
double FisherZSecondMoment(double rho, std::int32_t n);

// The inner integrand of the density of r at x.
//
//   (1 - u)^(n - 2) / sqrt(u - (rho x + 1) u^2 / 2)
//
// Source: Hotelling, H. (1953). New light on the correlation coefficient and its transforms.
//         Journal of the Royal Statistical Society B 15, 193-232.
// Domain: 0 < u < 1, n >= 3, rho x < 1. Singular at u = 0, which no node of the rule touches.
// Fails:  never.
double CorrelationIntegrand(double u, double rho, double x, std::int32_t n);

// The density of r at x.
//
//   (n - 2) / (pi sqrt(2)) (1 - rho^2)^((n-1)/2) (1 - x^2)^((n-4)/2) (1 - rho x)^(3/2 - n) Q,
//   Q the integral of CorrelationIntegrand over u from 0 to 1, to 1e-8; 0 where Q is not positive
//
// Source: as CorrelationIntegrand.
// Domain: n >= 3, -1 < rho < 1, -1 < x < 1.
// Fails:  NumericFailure with `flag` 1 when the integral fails; `flag` is cleared on entry.
double CorrelationDensity(double x, double rho, std::int32_t n, int& flag);

// P(R <= r) of the sample correlation R of n pairs from a bivariate normal population.
//
//   exact:    the density integrated to 1e-6 from -1 to r, or, for r > 0, one minus the integral
//             from r to 1
//   refined:  Phi((atanh(r) - atanh(rho) - b) / s), b FisherZBias, s^2 = FisherZSecondMoment - b^2
//   crude:    Phi((atanh(r) - atanh(rho)) sqrt(n - 3)), 1/2 for n = 3
//
// Source: Hotelling (1953), Gayen (1951) as above. Fisher, R. A. (1921). On the "probable error" of
//         a coefficient of correlation deduced from a small sample. Metron 1, 3-32.
// Domain: n >= 3, -1 < rho < 1; -1 < r < 1, or any r for exact: 1 from r = 1 on, 0 up to r = -1.
// Fails:  NumericFailure when an integral of either level fails: for n = 3 where rho x comes near 1
//         in the range of integration.
// Guard:  NumericFailure for n < 3, |rho| >= 1, for |r| >= 1 in the Fisher forms, for NaN in rho or
//         r, and for an integral that does not come out as a number.
// Kept:   above n of some 500 the first rule over a wide range can miss a narrow density: the
//         result is then 0 or 1 by the side of the integration, which the sign of r chooses and not
//         that of rho.
double CorrelationCdf(double rho, std::int32_t n, double r, std::int16_t algorithm);

// The r at cumulative p by the refined form.
//
//   tanh(atanh(rho) + b + s z),  z the normal quantile of p, b and s as in CorrelationCdf
//
// Source: Gayen (1951).
// Domain: n >= 3, -1 < rho < 1, 0 < p < 1.
// Fails:  NumericFailure outside its domain.
double CorrelationQuantileStart(double rho, std::int32_t n, double p);

// The r with P(R <= r) = p.
//
//   refined:  CorrelationQuantileStart
//   crude:    tanh(atanh(rho) + z / sqrt(n - 3)); the refined value for n = 3
//   exact:    for rho = 0 t / sqrt(t^2 + n - 2) with t the central t quantile of n - 2 degrees of
//             freedom; otherwise BracketAndBrent on CorrelationCdf from the refined value
//
// Domain: n >= 3, -1 < rho < 1, 0 < p < 1.
// Fails:  NumericFailure outside its domain, and when the bracket or Brent's method needs more than
//         1000 passes.
// Guard:  NumericFailure when the search for t fails, and at rho = 0 for n above 10 million, where
//         that search would take from seconds to hours.
// Kept:   the search keeps its points at or above -1 and does not limit them above. A failed
//         CorrelationCdf is not looked for: its value takes part as a large residual.
double CorrelationQuantile(double rho, std::int32_t n, double p, std::int16_t algorithm);

// The rho at which P(R <= r) = p.
//
//   A secant search to 1e-8 from tanh(atanh(r) - z / sqrt(n - 3)), within +-0.99999999, in at most
//   10000 evaluations. The observer is started with the count 10 and advanced once per pass, from
//   3.
//
// Domain: n >= 3, -1 < r < 1, 0 < p < 1.
// Fails:  NumericFailure with `failure` 1 when the evaluations run out or the residual stays above
//         0.0001. `failure` 2, with the value last reached, when the observer asked to stop; 1 all
//         the same when the residual was still above 0.0001. `failure` is cleared on entry.
// Guard:  NumericFailure with `failure` 1, without calling the observer, outside the domain. The
//         start is kept within the bounds, too; a residual that is not a number ends the search
//         with `failure` 1: n = 3 with p = 1/2.
// Kept:   a cancelled search stops the observer twice. A failed CorrelationCdf takes part as a
//         large residual.
double CorrelationRhoForP(std::int32_t n,
                          double r,
                          double p,
                          int& failure,
                          std::int16_t algorithm,
                          SearchObserver& observer);

// The same, without an observer.
double CorrelationRhoForP(std::int32_t n, double r, double p, int& failure, std::int16_t algorithm);

}  // namespace poweranalysis
