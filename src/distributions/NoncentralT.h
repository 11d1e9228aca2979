#pragma once

#include <cstdint>

namespace poweranalysis {

// Degrees of freedom beyond which one evaluation would run for seconds: out of range.
inline constexpr std::int32_t LargestTDf = 100'000'000;

// P(T <= t) of the noncentral t distribution with whole degrees of freedom.
//
//   even df:  Phi(-delta) + sqrt(2 pi) S
//   odd df:   Phi(-b) + 2 (T(b, A) + S),  A = t / sqrt(df), b = delta sqrt(df / (t^2 + df))
//   with S Owen's finite sum of about df / 2 terms and T his T function, which the adaptive
//   integrator evaluates. Delta 0 is the central distribution.
//
// Source: Owen, D. B. (1965). A special case of a bivariate non-central t-distribution. Biometrika
//         52, 437-446.
// Domain: df >= 1, any real t and delta; the caller guarantees it.
// Fails:  NumericFailure when the integral for odd df fails. The result is not clamped: far in a
//         tail it may leave [0, 1] by some 1e-8.
// Guards: NumericFailure for a df above LargestTDf, and where the recursion overflows or the result
//         is not a number for another reason: |delta| from some 1e35 on, NaN.
double NoncentralTCdf(double t, std::int32_t df, double delta);

// The same for a value that is to be added to a much larger one: as good as NoncentralTCdf
// absolutely (to some 1e-15 at critical values of t), but not relative to a small result. Where t
// and delta differ in sign it takes the factored recursion that NoncentralTCdf must leave alone
// there, a dozen times as fast.
//
// Source, domain, failure: as above.
double NoncentralTCdfBesideLarger(double t, std::int32_t df, double delta);

// Integrand of Owen's T function, exp(-h^2 (1 + x^2) / 2) / (1 + x^2).
//
// Source: Owen, D. B. (1956). Tables for computing bivariate normal probabilities. Annals of
//         Mathematical Statistics 27, 1075-1090.
// Domain: any real h and x.
// Fails:  never; 0 where the quotient would underflow.
double OwenTIntegrand(double x, double h);

// A start for the delta at which P(T <= t) = p.
//
//   (1 - 1 / (4 df)) t - z sqrt(1 + t^2 / (2 df)),  z the normal quantile of p
//
// Source: Jennett, W. J. and Welch, B. L. (1939). The control of proportion defective as judged by
//         a single quality characteristic varying on a continuous scale. Supplement to the Journal
//         of the Royal Statistical Society 6, 80-88.
// Domain: df >= 1, 1e-35 < p < 1.
// Fails:  never.
double NoncentralTDeltaStart(double t, std::int32_t df, double p);

// The t with P(T <= t) = p.
//
//   SolveParameter from the relation above solved for t; where that relation has no solution, or
//   the search from it fails, from a series in 1 / df about the central quantile
//
// Domain: df >= 1, 1e-35 < p < 1, any real delta.
// Fails:  NumericFailure or a value with `status` or `failure` nonzero, after both starts.
// Guard:  that of SolveParameter, for all searches of a call together.
double NoncentralTQuantile(double delta, std::int32_t df, double p, int& status, int& failure);

// The same for delta 0, searched from the normal quantile of p.
//
// Domain: df >= 1, 1e-35 < p < 1.
// Fails:  as SolveParameter.
double CentralTQuantile(std::int32_t df, double p, int& status, int& failure);

}  // namespace poweranalysis
