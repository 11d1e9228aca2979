#include "distributions/Beta.h"

#include <cmath>
#include <cstdint>

namespace poweranalysis {

namespace {

constexpr double LastShifted = 13.0;
constexpr int FractionLimit = 10000;
constexpr double FractionTolerance = 1e-10;

// log of x (x + 1) ... up to the factor that still lies at or below 13; x moves past it.
double ShiftAboveThirteen(double& x) {
  const auto factors = static_cast<std::int64_t>(LastShifted + 1.0 - x);
  double product = 1.0;
  for (std::int64_t i = 0; i < factors; ++i) {
    product *= x;
    x += 1.0;
  }
  return std::log(product);
}

}  // namespace

double LogGamma(double x) {
  const double shift = x - LastShifted <= 0.0 ? ShiftAboveThirteen(x) : 0.0;
  const double square = x * x;
  return std::log(x) * (x - 0.5) +
         ((0.083333333333333 - (0.002777777777778 - 0.000793650793651 / square) / square) / x +
          0.918938533204673 - x) -
         shift;
}

double BetaCdf(double x, double a, double b, int& failure) {
  int passes = 0;
  return BetaCdf(x, a, b, failure, passes);
}

double BetaCdf(double x, double a, double b, int& failure, int& passes) {
  failure = 0;
  passes = 0;
  if (x < 0.0 || x > 1.0) {
    // Kept: zero and not NumericFailure; the callers turn the flag into it.
    failure = 1;
    return 0.0;
  }
  const bool inside = x != 0.0 && x != 1.0;
  const double front = inside ? std::exp(LogGamma(a + b) - LogGamma(a) - LogGamma(b) +
                                         a * std::log(x) + b * std::log(1.0 - x))
                              : 0.0;
  if ((a + 1.0) / (a + b + 2.0) > x) {
    return BetaContinuedFraction(a, b, x, passes) * front / a;
  }
  return 1.0 - BetaContinuedFraction(b, a, 1.0 - x, passes) * front / b;
}

double BetaContinuedFraction(double a, double b, double x) {
  int passes = 0;
  return BetaContinuedFraction(a, b, x, passes);
}

double BetaContinuedFraction(double a, double b, double x, int& passes) {
  const double qab = a + b;
  const double qap = a + 1.0;
  const double qam = a - 1.0;
  double am = 1.0;
  double bm = 1.0;
  double az = 1.0;
  double bz = 1.0 - qab * x / qap;
  int pass = 1;
  for (; pass <= FractionLimit; ++pass) {
    const double m = pass;
    const double even = m * (b - m) * x / ((qam + 2.0 * m) * (a + 2.0 * m));
    const double ap = az + even * am;
    const double bp = bz + even * bm;
    const double odd = -(a + m) * (qab + m) * x / ((qap + 2.0 * m) * (a + 2.0 * m));
    const double app = ap + odd * az;
    const double bpp = bp + odd * bz;
    const double previous = az;
    am = ap / bpp;
    bm = bp / bpp;
    az = app / bpp;
    bz = 1.0;
    if (std::fabs(previous - az) <= FractionTolerance * std::fabs(az)) {
      break;
    }
  }
  passes = pass;
  // Kept: an exhausted loop is not reported.
  return az;
}

}  // namespace poweranalysis
