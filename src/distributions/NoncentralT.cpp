#include "distributions/NoncentralT.h"

#include <cmath>

#include "distributions/AdaptiveIntegrate.h"
#include "distributions/Common.h"
#include "distributions/Normal.h"
#include "distributions/OwenRecursion.h"
#include "distributions/SolveParameter.h"

namespace poweranalysis {

namespace {

constexpr double InverseTwoPi = 0.159154943091896;
constexpr double SqrtTwoPi = 2.506628274631;
constexpr double IntegrationTolerance = 1e-12;
constexpr double LogUnderflow = -708.0;

// The guard compares v - log(y) with the limit. While v is at least -600 and y at most 1e40, whose
// logarithm is below 93, that cannot be reached and the logarithm is not taken.
constexpr double SafeExponent = -600.0;
constexpr double SafeSquare = 1e40;

double OwenQuotient(double exponentFactor, double x) {
  const double y = x * x + 1.0;
  const double v = exponentFactor * y;
  if (!(v >= SafeExponent && y <= SafeSquare) && v - std::log(y) < LogUnderflow) {
    return 0.0;
  }
  return std::exp(v) / y;
}

// 2 pi times Owen's T(h, upper), or the integrator's failure.
double OwenIntegral(double h, double upper, int& ier) {
  double result = 0.0;
  double abserr = 0.0;
  int neval = 0;
  const auto integrate = [&](const auto& f) {
    AdaptiveIntegrate(f,
                      0.0,
                      upper,
                      IntegrationTolerance,
                      IntegrationTolerance,
                      result,
                      abserr,
                      neval,
                      ier);
  };
  if (h == 0.0) {
    // The exponential is exactly 1.
    integrate([](double x) { return IntegrandValue{1.0 / (x * x + 1.0), 0}; });
  } else {
    const double exponentFactor = -0.5 * h * h;
    integrate([exponentFactor](double x) {
      return IntegrandValue{OwenQuotient(exponentFactor, x), 0};
    });
  }
  return result;
}

}  // namespace

double OwenTIntegrand(double x, double h) { return OwenQuotient(-0.5 * h * h, x); }

double NoncentralTCdf(double t, std::int32_t df, double delta) {
  const OwenTerms terms(t, df, delta);
  const double s = OwenSum(terms, df);
  if (df % 2 == 0) {
    return s * SqrtTwoPi + NormalCdf(-delta);
  }
  int ier = 0;
  const double T = OwenIntegral(terms.b, terms.A, ier) * InverseTwoPi;
  if (ier != 0 || T == NumericFailure) {
    return NumericFailure;
  }
  return 2.0 * (T + s) + NormalCdf(-terms.b);
}

double NoncentralTDeltaStart(double t, std::int32_t df, double p) {
  const double z = NormalQuantile(p);
  const double n = df;
  return (1.0 - 1.0 / (4.0 * n)) * t - z * std::sqrt(1.0 + t * t / (2.0 * n));
}

namespace {

// 96 n^2 as a 32-bit product.
//
// Kept: it wraps from n = 4730 on, which only moves the start of a search.
std::int32_t NinetySixSquares(std::int32_t n) {
  const auto unsignedN = static_cast<std::uint32_t>(n);
  return static_cast<std::int32_t>(96U * unsignedN * unsignedN);
}

// The start from a series in 1 / n about the central quantile, or `fallback` where that fails.
double SeriesStart(double delta, std::int32_t df, double p, double z, double fallback) {
  int status = 0;
  int failure = 0;
  const double t0 = CentralTQuantile(df, p, status, failure);
  if (status != 0 || failure != 0) {
    return fallback;
  }
  const double n = df;
  const double z2 = z * z;
  const double first = delta / (4.0 * n) * (2.0 * z2 + 1.0 + z * delta);
  const double second =
      3.0 * (4.0 * z2 * z2 + 12.0 * z2 + 1.0) + 6.0 * delta * (z2 * z + 4.0 * z) -
      4.0 * delta * delta * (z2 - 1.0) - 3.0 * z * delta * delta * delta;
  const std::int32_t divisor = NinetySixSquares(df);
  // The wrapped product is 0 for multiples of 16384: the term is left out there.
  return t0 + delta + first + (divisor == 0 ? 0.0 : delta / divisor * second);
}

// The radicand of the direct start, and the divisor that it shares.
struct DirectStart {
  double radicand;
  double divisor;

  DirectStart(double delta, double n, double z)
      : radicand(8.0 * delta * delta * n + 1.0 - 8.0 * n + 16.0 * n * n - 8.0 * n * z * z),
        divisor(1.0 - 8.0 * n + 16.0 * n * n - 8.0 * n * z * z) {}

  // A radicand that rounding has left a hair below zero counts as zero.
  bool Exists() const { return !(radicand < 0.0) || AlmostZero(-radicand); }

  double Value(double delta, double n, double z) const {
    const double root = std::sqrt(radicand < 0.0 ? 0.0 : radicand);
    return 4.0 * (z * n * root + 4.0 * delta * n * n - n * delta) / divisor;
  }
};

}  // namespace

double NoncentralTQuantile(
    double delta, std::int32_t df, double p, int& status, int& failure) {
  const double z = NormalQuantile(p);
  const double n = df;
  const auto search = [&](double start) {
    return SolveParameter(delta, df, p, start, status, failure, SearchTQuantile, 0);
  };
  if (df <= 3) {
    return search(z + delta);
  }
  const DirectStart direct(delta, n, z);
  if (!direct.Exists()) {
    return search(SeriesStart(delta, df, p, z, z + delta));
  }
  const double t = search(direct.Value(delta, n, z));
  if (status == 0 && failure == 0) {
    return t;
  }
  // Kept: where the central search fails too, z alone and not z + delta.
  const double second = search(SeriesStart(delta, df, p, z, z));
  return status == 0 && failure == 0 ? second : NumericFailure;
}

double CentralTQuantile(std::int32_t df, double p, int& status, int& failure) {
  return SolveParameter(
      0.0, df, p, NormalQuantile(p), status, failure, SearchTQuantile, 0);
}

}  // namespace poweranalysis
