#pragma once

namespace poweranalysis {

// Natural logarithm of the gamma function.
//
//   Stirling's series with three correction terms; an x up to and including 13 is first raised
//   above 13 by the recurrence of the gamma function. Values at small whole and half-whole numbers,
//   which degrees of freedom and counts ask for, are kept from the first call on.
//
// Source: Abramowitz, M. and Stegun, I. A. (1964). Handbook of Mathematical Functions, 6.1.41.
// Domain: x > 0; the caller guarantees it.
// Fails:  never.
double LogGamma(double x);

// The constants of that series: log(x) (x - 1/2) + ((A - (B - C / x^2) / x^2) / x + D - x).
namespace stirling {
inline constexpr double A = 0.083333333333333;
inline constexpr double B = 0.002777777777778;
inline constexpr double C = 0.000793650793651;
inline constexpr double D = 0.918938533204673;
}  // namespace stirling

// From here on the series is what LogGamma evaluates, as it stands.
inline constexpr double SmallestPlainStirling = 512.5;

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

// `BetaCdf` for shapes that stay while x moves, bit for bit: their log-gammas are computed once.
class BetaShapes {
 public:
  BetaShapes(double a, double b);

  // I_x(a, b) for 0 < x < 1. `front` is x (1 - x) times the density there.
  double Cdf(double x, double& front, int& passes) const;

 private:
  double a_;
  double b_;
  double logGammas_;
};

// The continued fraction that `BetaCdf` stands for, by its even and odd recurrence, to a relative
// change of 1e-10.
//
// Source: Abramowitz, M. and Stegun, I. A. (1964). Handbook of Mathematical Functions, 26.5.8.
// Domain: as of `BetaCdf`.
// Fails:  never: after 10000 passes it gives the last approximation.
double BetaContinuedFraction(double a, double b, double x);
double BetaContinuedFraction(double a, double b, double x, int& passes);

}  // namespace poweranalysis
