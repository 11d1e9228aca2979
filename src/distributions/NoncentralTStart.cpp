#include "distributions/NoncentralTStart.h"

#include <cmath>

#include "distributions/Common.h"
#include "distributions/NoncentralT.h"
#include "distributions/Normal.h"
#include "distributions/SolveParameter.h"

namespace poweranalysis {

namespace {

constexpr std::int32_t FewDegrees = 3;

// The series about the central quantile, or `fallback` where that cannot be found.
double SeriesStart(
    double delta, std::int32_t df, double p, double z, double fallback, std::int64_t& steps) {
  int status = 0;
  int failure = 0;
  const double t0 = SolveParameter(0.0, df, p, z, status, failure, SearchTQuantile, 0, steps);
  if (status != 0 || failure != 0) {
    return fallback;
  }
  const double n = df;
  const double z2 = z * z;
  const double first = delta / (4.0 * n) * (2.0 * z2 + 1.0 + z * delta);
  const double second = 3.0 * (4.0 * z2 * z2 + 12.0 * z2 + 1.0) + 6.0 * delta * (z2 * z + 4.0 * z) -
                        4.0 * delta * delta * (z2 - 1.0) - 3.0 * z * delta * delta * delta;
  const std::int32_t divisor = NinetySixSquares(df);
  // The wrapped product is 0 for multiples of 16384: the term is left out there.
  return t0 + delta + first + (divisor == 0 ? 0.0 : delta / divisor * second);
}

}  // namespace

std::int32_t NinetySixSquares(std::int32_t n) {
  const auto bits = static_cast<std::uint32_t>(n);
  return static_cast<std::int32_t>(96U * bits * bits);
}

double NoncentralTDeltaStart(double t, std::int32_t df, double p) {
  const double z = NormalQuantile(p);
  const double n = df;
  return (1.0 - 1.0 / (4.0 * n)) * t - z * std::sqrt(1.0 + t * t / (2.0 * n));
}

QuantileStart FirstQuantileStart(double delta, std::int32_t df, double p, std::int64_t& steps) {
  const double z = NormalQuantile(p);
  if (df <= FewDegrees) {
    return {z + delta, false};
  }
  const double n = df;
  const double radicand = 8.0 * delta * delta * n + 1.0 - 8.0 * n + 16.0 * n * n - 8.0 * n * z * z;
  // A radicand that rounding has left a hair below zero counts as zero.
  if (radicand < 0.0 && !AlmostZero(-radicand)) {
    return {SeriesStart(delta, df, p, z, z + delta, steps), false};
  }
  const double root = std::sqrt(radicand < 0.0 ? 0.0 : radicand);
  const double divisor = 1.0 - 8.0 * n + 16.0 * n * n - 8.0 * n * z * z;
  return {4.0 * (z * n * root + 4.0 * delta * n * n - n * delta) / divisor, true};
}

double SecondQuantileStart(double delta, std::int32_t df, double p, std::int64_t& steps) {
  const double z = NormalQuantile(p);
  return SeriesStart(delta, df, p, z, z, steps);
}

}  // namespace poweranalysis
