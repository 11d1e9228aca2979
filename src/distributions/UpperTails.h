#pragma once

#include <cstdint>

// The probabilities of larger values, summed from their own side. One minus a distribution function
// loses its digits where the function comes close to 1; a sum of the upper tails themselves keeps
// them.
//
//   A mixture's upper tail is the sum over j of w_j U_j, with w_j the weights of the mixture and
//   U_j the upper tail of its central distribution j. All terms are positive, and U_j rises with j
//   by terms that are positive themselves:
//     chi-square  U_(j+1) = U_j + e^(-x/2) (x/2)^(df/2 + j) / Gamma(df/2 + j + 1)
//     beta        U_(j+1) = U_j + x^(a+j) (1 - x)^b / ((a + j) B(a + j, b))
//
// Source: Abramowitz, M. and Stegun, I. A. (1964). Handbook of Mathematical Functions, 26.4.8,
//         26.4.25 and 26.5.16. Fisher, R. A. (1928). The general sampling distribution of the
//         multiple correlation coefficient. Proceedings of the Royal Society A 121, 654-673.
namespace poweranalysis {

// P(X > x) of the noncentral chi-square distribution.
//
// Domain: x >= 0, 1 <= df, delta >= 0.
// Fails:  NumericFailure outside the domain and after a million terms.
double NoncentralChiSquareUpper(double x, std::int32_t df, double delta);

// P(X > f) of the noncentral F distribution.
//
// Domain: f >= 0, df1 > 0, df2 > 0, delta >= 0.
// Fails:  as above.
double NoncentralFUpper(double f, double df1, double df2, double delta);

// P(R2 > x) of the squared multiple correlation of a sample of n, with k variables in all, by the
// exact series.
//
// Domain: 2 <= k < n, 0 <= rho2 < 1, 0 <= x <= 1.
// Fails:  as above.
double MultipleR2Upper(double rho2, std::int32_t n, std::int32_t k, double x);

}  // namespace poweranalysis
