#pragma once

namespace poweranalysis {

// P(Z <= z) of the standard normal distribution.
//
//   With w the mass within |z| of the mean: (1 - w) / 2 below the mean, (1 + w) / 2 above it.
//   |z| < 4: w by two polynomials; 4 < |z| <= 8: w by a fitted exponential of a quadratic;
//   beyond 8: w constant. The result is never 0 or 1 and is not continuous at |z| = 4 and 8.
//
// Source: Ibbetson, D. (1963). Algorithm 209, Gauss. Communications of the ACM 6, 616. The tail
//         beyond |z| = 4 is this system's own.
// Domain: any z.
// Fails:  never.
double NormalCdf(double z);

// The z with P(Z <= z) = p.
//
//   y - N(y) / D(y) with y = sqrt(log(1 / q^2)) and q the smaller tail, signed.
//
// Source: Odeh, R. E. and Evans, J. O. (1974). Algorithm AS 70. Applied Statistics 23, 96-97, with
//         its coefficients cut to eight digits.
// Domain: 1e-35 < p < 1.
// Fails:  NumericFailure for any other p.
double NormalQuantile(double p);

}  // namespace poweranalysis
