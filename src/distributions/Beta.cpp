#include "distributions/Beta.h"

#include <array>
#include <cmath>
#include <cstddef>
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

double StirlingLogGamma(double x) {
  const double shift = x - LastShifted <= 0.0 ? ShiftAboveThirteen(x) : 0.0;
  const double square = x * x;
  return std::log(x) * (x - 0.5) +
         ((stirling::A - (stirling::B - stirling::C / square) / square) / x + stirling::D - x) -
         shift;
}

constexpr std::size_t LargestKeptTwice = 1024;
static_assert(LargestKeptTwice / 2.0 < SmallestPlainStirling);

using KeptLogGammas = std::array<double, LargestKeptTwice + 1>;

// LogGamma of half its index.
const KeptLogGammas& KeptOnes() {
  static const KeptLogGammas kept = [] {
    KeptLogGammas values{};
    for (std::size_t twice = 1; twice < values.size(); ++twice) {
      values[twice] = StirlingLogGamma(static_cast<double>(twice) / 2.0);
    }
    return values;
  }();
  return kept;
}

// Where the quick fraction is as good as the plain one: beyond, rounding shows in the twelfth
// decimal, or its numerators and denominators leave the range of a double.
constexpr double LargestQuickSum = 5000.0;
constexpr int QuickPasses = 100;
constexpr double SmallestQuickProduct = 1e-250;

// A change this close to the tolerance, relative to it, is left to the plain recurrence.
constexpr double Doubt = 1e-3;

// BetaContinuedFraction without its divisions. The fraction is 1 / (1 + d1 / (1 + d2 / ...)), and
// the plain recurrence looks at every second approximant, those of its even part
//
//   1 / (beta0 - gamma1 / (beta1 - gamma2 / (beta2 - ...))),
//   beta_m = 1 + d_2m + d_(2m+1),  gamma_m = d_(2m-1) d_2m
//
// whose numerators A and denominators B follow without a division by each other. Two that are
// neighbours differ by the product of the gammas over B B', so that the change against the
// tolerance is the same test at the same pass. False where that is not certain.
bool QuickFraction(double a, double b, double x, double& fraction, int& passes) {
  const double sum = a + b;
  double odd = -sum * x / (a + 1.0);
  double previousA = 0.0;
  double previousB = 1.0;
  double A = 1.0;
  double B = 1.0 + odd;
  double product = 1.0;
  double change = 0.0;
  double bound = 0.0;
  int pass = 0;
  do {
    ++pass;
    const double m = pass;
    const double s = a + 2.0 * m;
    const double scale = x / ((s - 1.0) * s * (s + 1.0));
    const double even = m * (b - m) * (s + 1.0) * scale;
    const double gamma = odd * even;
    odd = -(a + m) * (sum + m) * (s - 1.0) * scale;
    const double beta = 1.0 + (even + odd);
    const double nextA = beta * A - gamma * previousA;
    const double nextB = beta * B - gamma * previousB;
    previousA = A;
    previousB = B;
    A = nextA;
    B = nextB;
    product *= gamma;
    // The plain recurrence compares its first approximant with 1.
    change = pass == 1 ? std::fabs(B - A) : std::fabs(product);
    bound = FractionTolerance * std::fabs(pass == 1 ? A : A * previousB);
  } while (change > bound * (1.0 + Doubt) && pass < QuickPasses);
  fraction = A / B;
  passes = pass;
  return change < bound * (1.0 - Doubt) && bound > SmallestQuickProduct;
}

double Fraction(double a, double b, double x, int& passes) {
  double fraction = 0.0;
  return a + b <= LargestQuickSum && QuickFraction(a, b, x, fraction, passes)
             ? fraction
             : BetaContinuedFraction(a, b, x, passes);
}

}  // namespace

double LogGamma(double x) {
  const double twice = x + x;
  if (twice >= 1.0 && twice <= static_cast<double>(LargestKeptTwice)) {
    const auto index = static_cast<std::int32_t>(twice);
    if (index == twice) {
      return KeptOnes()[static_cast<std::size_t>(index)];
    }
  }
  return StirlingLogGamma(x);
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
  double front = 0.0;
  return BetaShapes(a, b).Cdf(x, front, passes);
}

BetaShapes::BetaShapes(double a, double b)
    : a_(a), b_(b), logGammas_(LogGamma(a + b) - LogGamma(a) - LogGamma(b)) {}

double BetaShapes::Cdf(double x, double& front, int& passes) const {
  const bool inside = x != 0.0 && x != 1.0;
  front = inside ? std::exp(logGammas_ + a_ * std::log(x) + b_ * std::log(1.0 - x)) : 0.0;
  if ((a_ + 1.0) / (a_ + b_ + 2.0) > x) {
    return Fraction(a_, b_, x, passes) * front / a_;
  }
  return 1.0 - Fraction(b_, a_, 1.0 - x, passes) * front / b_;
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
