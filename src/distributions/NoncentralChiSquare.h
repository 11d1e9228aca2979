#pragma once

#include <cstdint>

namespace poweranalysis {

// Degrees of freedom beyond which a search through the recurrence would run for seconds: out of
// range.
inline constexpr std::int32_t LargestChiSquareDf = 1'000'000;

// The word of NoncentralChiSquareDelta when no delta has the probability.
inline constexpr int NoSuchChiSquareDelta = 9999;

// P(X <= x) of the noncentral chi-square distribution with whole degrees of freedom; `density` is
// the density at x.
//
//   sum over i of exp(-L) L^i / i! Q(df + 2 i),  L = delta / 2
//   with Q the central distribution function, carried from two degrees of freedom to the next by
//   Q(n + 2) = Q(n) - T(n + 2), T twice the central density. The sum ends when what is left of it
//   is below 1e-6, after 500 terms at the latest. A delta whose exp(-L) is at most 1e-200 takes
//   Sankaran's normal approximation instead; `density` is then that of the normal deviate.
//
// Source: Abramowitz, M. and Stegun, I. A. (1964). Handbook of Mathematical Functions, 26.4.8 and
//         26.4.25. Sankaran, M. (1963). Approximations to the non-central chi-square distribution.
//         Biometrika 50, 199-204.
// Domain: x >= 0, df >= 0, delta >= 0. With df 0 the distribution has a point mass at 0.
// Fails:  an x or delta below 0 gives 0, density -1 and `failure` 1; 500 terms that do not suffice
//         give their sum and `failure` 2. The approximation leaves `failure` as it stood.
// Guards: an x or delta that is not a number, an infinite delta, a df below 0 or above
//         LargestChiSquareDf and an approximation that overflows count as out of range. An
//         infinite x gives 1 with density 0.
double NoncentralChiSquareCdf(
    double x, std::int32_t df, double delta, double& density, int& failure);

// The x with P(X <= x) = p.
//
//   SolveParameter from the cubic normal approximation, cut off at 0
//
// Source: Abdel-Aty, S. H. (1954). Approximate formulae for the percentage points and the
//         probability integral of the non-central chi-square distribution. Biometrika 41, 538-540.
// Domain: df >= 0, delta >= 0, 0 < p < 1.
// Fails:  NumericFailure with `status` 0 when an evaluation fails, as for a delta below 0; a value
//         with a nonzero `status` when it was not shown to have that probability. A start of 0, as
//         for one degree of freedom and p up to .0495, stays 0 with `status` 1.
double NoncentralChiSquareQuantile(double delta, std::int32_t df, double p, int& status);

// The delta with P(X <= x) = p.
//
//   SolveParameter from two steps of the normal approximation and one secant step between them
//
// Domain: x >= 0, df >= 0, 0 < p < 1.
// Fails:  NumericFailure with `word` NoSuchChiSquareDelta when p is above the value at delta 0, and
//         NumericFailure with `word` 0 when an evaluation fails, as where a step of the search
//         leaves the domain: a delta close to 0 is often overshot. Otherwise `word` is the status
//         of the search. A p of exactly .5 with x above df starts from 1 and fails for a large x.
// Guards: an x that is not finite, a p that is not a number and a df out of range give
//         NumericFailure with `word` 1. A negative radicand of the start counts as 0, and a start
//         that is not a number as 0.
double NoncentralChiSquareDelta(double x, std::int32_t df, double p, int& word);

}  // namespace poweranalysis
