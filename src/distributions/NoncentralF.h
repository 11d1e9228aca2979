#pragma once

#include <cstdint>

namespace poweranalysis {

// How the noncentral F distribution is computed. Any other code fails.
enum FAlgorithm : std::int16_t {
  FExact = 0,  // the Poisson mixture of central distributions
  FTiku = 1,   // Tiku's approximation by one central distribution
};

// Distribution function of the noncentral beta distribution with shapes a, b and noncentrality
// delta.
//
//   exp(-L) sum over j of L^j / j! I_x(a + j, b),  L = delta / 2
//   summed without the factor exp(-L), so that a large delta does not underflow the first terms.
//   Ends when a bound of the rest of that sum is 1e-9, when a term no longer changes it, or when
//   an I_x is zero.
//
// Source: Johnson, N. L., Kotz, S. and Balakrishnan, N. (1995). Continuous Univariate
//         Distributions, volume 2, chapter 30.
// Domain: 0 <= x <= 1, a > 0, b > 0, delta >= 0, shapes finite.
// Fails:  NumericFailure with `failure` 1 outside the domain, after 100000 terms, and where the
//         sum would take longer than a second or so (guard: 1.5e8 steps of continued fractions,
//         reached for shapes of some 1e8 with a delta of some 1e5). 0 with `failure` 1
//         when the bound of the rest runs away (delta above 1e50 at a tiny x). Large delta: more
//         than 100000 terms are needed from delta of about 2e5. `failure` is cleared on entry.
double NoncentralBetaCdf(double x, double a, double b, double delta, int& failure);

// P(F <= f) of the noncentral F distribution with real degrees of freedom.
//
//   NoncentralBetaCdf at x = a f / (a f + b), a = df1 / 2, b = df2 / 2
//
// Source: as above.
// Domain: df1 > 0, df2 > 0, both finite, delta >= 0, f >= 0. An infinite f, or one so large that
//         a f overflows, gives 1.
// Fails:  NumericFailure with `failure` 1 outside the domain, and where NoncentralBetaCdf fails in
//         any way. `failure` is cleared on entry.
double NoncentralFCdf(double f, double df1, double df2, double delta, int& failure);

// The same for whole degrees of freedom by the given FAlgorithm.
//
//   Tiku:  P(F <= f) = central P((f + (c - 1 - delta / df1) df2 / (df2 - 2)) / c) with v and df2
//          degrees of freedom; v and c match three moments.
//
// Source: Tiku, M. L. (1966). A note on approximating to the non-central F distribution.
//         Biometrika 53, 606-610.
// Domain: as above; for Tiku also df2 > 2. At or below that the value is what the formula gives,
//         and a formula that does not give a number fails.
// Fails:  NumericFailure with `failure` 1, also for an unknown algorithm.
double NoncentralFCdfInt(double f,
                         std::int32_t df1,
                         std::int32_t df2,
                         double delta,
                         int& failure,
                         std::int16_t algorithm);

// The f with central P(F <= f) = p, for real degrees of freedom.
//
//   A bracket about a start, widened until it holds the root, then Brent's method; the start is
//   26.6.16 of the Handbook with its own changes (see the source), or the normal approximation for
//   df1 or df2 at or below 1.1. From a start not far off, for a root of .01 to 10000, Halley's
//   method in log f comes to the same root within the tolerance of that search, 1e-10 in p.
//
// Source: Abramowitz, M. and Stegun, I. A. (1964). Handbook of Mathematical Functions, 26.6.16.
// Domain: df1 > 0, df2 > 0, 0 < p < 1. A start that is not a number (a small p at few degrees of
//         freedom) counts as one at or below zero.
// Fails:  NumericFailure with `failure` 1 when the bracket or Brent's method takes more than 1000
//         passes, which is also how p at or outside 0 and 1 ends; and for an argument that is not
//         a number or outside the domain. `failure` is cleared on entry.
double CentralFQuantile(double df1, double df2, double p, int& failure);

// The f with P(F <= f) = p, for real degrees of freedom.
//
//   Tiku's approximate quantile; for FExact refined by bracket and Brent. Delta 0 is the central
//   quantile for any algorithm.
//
// Source: as NoncentralFCdfInt.
// Domain: df1 > 0, df2 > 2, delta >= 0, 0 < p < 1. At df2 2 and below an exact search starts from
//         whatever the formula gives.
// Fails:  NumericFailure with `failure` 1 as CentralFQuantile; also when all evaluations of one
//         search take more than that work (the same guard, reached from a delta of some 5e4).
//         Any algorithm but FTiku is exact here. `failure` is cleared on entry.
double NoncentralFQuantile(
    double delta, double df1, double df2, double p, int& failure, std::int16_t algorithm);

// The delta at which P(F <= f) = p.
//
//   The search of SolveParameter, kind SearchFDelta or SearchFDeltaApprox, from the delta whose
//   mean is f.
//
// Domain: as NoncentralFCdfInt. The function falls as delta rises: a p above the central value has
//         no solution.
// Fails:  0 with `failure` 0 for a p above the central value. NumericFailure otherwise: with
//         `failure` 1 when the central value cannot be had or an argument is not a number, and
//         with `failure` holding the status of the search after a search, which is 0 when a
//         distribution failed within it. The guard is that of NoncentralFQuantile. `failure` is
//         cleared on entry.
double NoncentralFDelta(
    double f, std::int32_t df1, std::int32_t df2, double p, int& failure, std::int16_t algorithm);

}  // namespace poweranalysis
