#pragma once

namespace poweranalysis {

// Natural logarithm of the gamma function.
//
//   Stirling's series with three correction terms; an x up to and including 13 is first raised
//   above 13 by the recurrence of the gamma function.
//
// Source: Abramowitz, M. and Stegun, I. A. (1964). Handbook of Mathematical Functions, 6.1.41.
// Domain: x > 0; the caller guarantees it.
// Fails:  never.
double LogGamma(double x);

// Regularised incomplete beta function I_x(a, b).
//
//   x^a (1 - x)^b / (a B(a, b)) times the continued fraction at (a, b, x), or one minus the same
//   with the roles exchanged, whichever converges fast.
//
// Source: Abramowitz, M. and Stegun, I. A. (1964). Handbook of Mathematical Functions, 26.5.8.
// Domain: a > 0, b > 0, 0 <= x <= 1.
// Fails:  `failure` 1 and the result 0 for x outside [0, 1]; `failure` is cleared on entry.
double BetaCdf(double x, double a, double b, int& failure);

// The same, and how many passes its continued fraction took; a caller that evaluates many can bound
// its work by it.
double BetaCdf(double x, double a, double b, int& failure, int& passes);

// The continued fraction of `BetaCdf`, by its even and odd recurrence, to a relative change of
// 1e-10.
//
// Source: Abramowitz, M. and Stegun, I. A. (1964). Handbook of Mathematical Functions, 26.5.8.
// Domain: as of `BetaCdf`.
// Fails:  never: after 10000 passes it gives the last approximation.
double BetaContinuedFraction(double a, double b, double x);
double BetaContinuedFraction(double a, double b, double x, int& passes);

}  // namespace poweranalysis
