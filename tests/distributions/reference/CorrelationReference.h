#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "distributions/AdaptiveIntegrate.h"
#include "distributions/Common.h"
#include "distributions/Normal.h"

// The distribution of r written out step by step as it is defined, with nothing shared, tabled or
// left out. The library's form is held against it.
namespace poweranalysis::reference {

inline double GayenBias(double r, std::int32_t n) {
  const double m = n - 1.0;
  const auto power = [&](double k) { return std::pow(r, k); };
  return (r / 2 + (5 * r + power(3)) / (8 * m) +
          (11 * r + 2 * power(3) + 3 * power(5)) / (16 * std::pow(m, 2)) +
          (83 * r + 13 * power(3) - 27 * power(5) + 75 * power(7)) / (128 * std::pow(m, 3)) +
          (143 * r + 20 * power(3) + 138 * power(5) - 780 * power(7) + 735 * power(9)) /
              (256 * std::pow(m, 4)) +
          (625 * r + 113 * power(3) - 990 * power(5) + 14250 * power(7) - 33075 * power(9) +
           19845 * power(11)) /
              (1024 * std::pow(m, 5))) /
         m;
}

inline double GayenSecondMoment(double r, std::int32_t n) {
  const double m = n - 1.0;
  const auto power = [&](double k) { return std::pow(r, k); };
  return (1 + (8 - power(2)) / (4 * m) +
          (88 - 9 * power(2) - 9 * power(4)) / (24 * std::pow(m, 2)) +
          (384 - 19 * power(2) + 2 * power(4) - 75 * power(6)) / (64 * std::pow(m, 3)) +
          (16256 - 225 * power(2) - 375 * power(4) + 8025 * power(6) - 11025 * power(8)) /
              (1920 * std::pow(m, 4)) +
          (5120 + 113 * power(2) + 20 * power(4) - 7194 * power(6) + 26460 * power(8) -
           19845 * power(10)) /
              (512 * std::pow(m, 5))) /
         m;
}

inline double HotellingIntegrand(double u, double rho, double x, double n) {
  const double factor = n - 2 == 2 ? (1 - u) * (1 - u) : std::pow(1 - u, n - 2);
  return factor / std::sqrt(u - (rho * x + 1) * (u * u) / 2);
}

// The density; how many times the inner integrand was evaluated is added to `evaluations`.
inline IntegrandValue HotellingDensity(double x, double rho, double n, long& evaluations) {
  double Q = 0.0;
  double abserr = 0.0;
  int neval = 0;
  int ier = 0;
  AdaptiveIntegrate(
      [&](double u) {
        return IntegrandValue{HotellingIntegrand(u, rho, x, n), 0};
      },
      0.0, 1.0, 1e-08, 1e-08, Q, abserr, neval, ier);
  evaluations += neval;
  if (ier != 0) {
    return {NumericFailure, 1};
  }
  if (!(Q > 0)) {
    return {0.0, 0};
  }
  const double logarithm = (n - 4) / 2 * std::log10(1 - x * x) +
                           (1.5 - n) * std::log10(1 - rho * x) +
                           (n - 1) / 2 * std::log10(1 - rho * rho) +
                           std::log10((n - 2) / 4.442882938158366) + std::log10(Q);
  return {std::pow(10.0, logarithm), 0};
}

inline double ExactCdf(double rho, std::int32_t n, double r, long& evaluations) {
  if (r >= 1) {
    return 1.0;
  }
  if (r <= -1) {
    return 0.0;
  }
  const double lower = r > 0 ? r : -1.0;
  const double upper = r > 0 ? 1.0 : r;
  double integral = 0.0;
  double abserr = 0.0;
  int neval = 0;
  int ier = 0;
  AdaptiveIntegrate([&](double x) { return HotellingDensity(x, rho, n, evaluations); }, lower,
                    upper, 1e-06, 1e-06, integral, abserr, neval, ier);
  if (ier != 0) {
    return NumericFailure;
  }
  return r > 0 ? 1.0 - integral : integral;
}

inline double CorrelationCdf(double rho, std::int32_t n, double r, int algorithm) {
  const double z = 0.5 * std::log((1 + r) / (1 - r));
  const double zeta = 0.5 * std::log((1 + rho) / (1 - rho));
  if (algorithm == 1) {
    const double b = GayenBias(rho, n);
    const double s = std::sqrt(GayenSecondMoment(rho, n) - b * b);
    return NormalCdf((z - (zeta + b)) / s);
  }
  if (algorithm == 2) {
    return NormalCdf((z - zeta) / std::sqrt(1 / (n - 3.0)));
  }
  long evaluations = 0;
  return ExactCdf(rho, n, r, evaluations);
}

// The secant search for rho without its observer. NaN where it fails.
inline double RhoForP(std::int32_t n, double r, double p, int algorithm) {
  const double limit = 0.99999999;
  const auto clamp = [&](double value) { return std::min(limit, std::max(-limit, value)); };
  const auto residual = [&](double at) { return CorrelationCdf(at, n, r, algorithm) - p; };
  double rho =
      clamp(std::tanh(0.5 * std::log((1 + r) / (1 - r)) - NormalQuantile(p) / std::sqrt(n - 3.0)));
  double f = residual(rho);
  int counter = 2;
  if (!(std::fabs(f) <= 1e-08)) {
    const double h = std::max(rho * 1e-06, 1e-12);
    const double rho1 = clamp(rho - h);
    const double f1 = residual(rho1);
    double slope = (f - f1) / h;
    if (std::fabs(f1) <= 1e-08) {
      return rho1;
    }
    while (true) {
      ++counter;
      if (std::fabs(slope) < 1e-35) {
        break;
      }
      const double oldF = f;
      const double oldRho = rho;
      rho = clamp(rho - f / slope);
      f = residual(rho);
      if (std::fabs(rho - oldRho) <= 1e-08 || counter == 10000 || std::fabs(f) <= 1e-08) {
        break;
      }
      slope = (oldF - f) / (oldRho - rho);
    }
  }
  return counter == 10000 || std::fabs(f) > 0.0001 ? std::nan("") : rho;
}

}  // namespace poweranalysis::reference
