#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "distributions/Beta.h"
#include "distributions/NoncentralF.h"
#include "distributions/Normal.h"

// The distribution of R2 and its searches written out step by step as they are defined, with
// nothing shared, precomputed or left out. Every beta function is a fresh one, every weight a sum
// of logarithms. The library's forms are held against it.
namespace poweranalysis::reference {

// Index of the peak after which no term may end the series by its size alone.
inline double PeakIndex(double rho2, double N, double P) {
  const double r = std::sqrt(rho2);
  const double S = (P - 2.0) * (P - 2.0) + 4.0 * rho2 * (N - 2.0) * (N - P);
  const double G = 8.0 - 4.0 * N - (4.0 - 4.0 * N + 2.0 * P) / (1.0 - rho2);
  const double R = 2.0 * std::sqrt(S) / ((r - 1.0) * (r + 1.0));
  return std::trunc(std::max((G + R) / 8.0, (G - R) / 8.0)) + 2.0;
}

inline double MultipleR2CdfExact(
    double x, double rho2, std::int32_t n, std::int32_t k, int& failure, double* terms = nullptr) {
  failure = 0;
  const double N = n - 1.0;
  const double P = k - 1.0;
  const double A = N / 2.0;
  const double B = P / 2.0;
  const double C = (static_cast<double>(n) - k) / 2.0;
  const double F = A * std::log10(1.0 - rho2);
  const double M = PeakIndex(rho2, N, P);
  double large = 0.0;
  double small = 0.0;
  double L = 0.0;
  double c = A;
  double d = B + C;
  double previousLog = 0.0;
  double j = 0.0;
  int betaFailure = 0;
  double beta = BetaCdf(x, B, C, betaFailure);
  if (betaFailure != 0) {
    failure = betaFailure;
    return -1.0;
  }
  while (true) {
    if (!(beta > 0.0)) {
      break;
    }
    if (j == 1.0) {
      if (!(B + C > 0.0)) {
        failure = 1;
        return -1.0;
      }
      const double first = A * rho2 * A / (B + C);
      L = std::log10(A == 0.0 || first == 0.0 ? 2.225073858507201e-305 : first);
    } else if (j >= 2.0) {
      c += 1.0;
      d += 1.0;
      L = L + 2.0 * std::log10(c) + std::log10(rho2) - std::log10(j) - std::log10(d);
    }
    const double logT = std::log10(beta) + L + F;
    const double T = std::pow(10.0, logT);
    (T >= 1e-16 ? large : small) += T;
    if ((M - j) * T <= 1e-18 && logT < previousLog && j > 1.0 && j < M) {
      break;
    }
    if (j > 0.0) {
      const double R = (j + A - 1.0) * (j + A - 1.0) * rho2 / ((j + B - 1.0) * j);
      if (R < 1.0 && T / (1.0 - R) < 1e-07) {
        break;
      }
    }
    previousLog = logT;
    j += 1.0;
    if (j > 10000000.0) {
      failure = 1;
      break;
    }
    beta = BetaCdf(x, B + j, C, betaFailure);
    if (betaFailure != 0) {
      failure = betaFailure;
      return -1.0;
    }
  }
  if (terms != nullptr) {
    *terms = j;
  }
  return large + small;
}

inline double MultipleR2CdfLee(
    double x, double rho2, std::int32_t n, std::int32_t k, int& failure) {
  failure = 0;
  const double v = x / (1.0 - x);
  const double N = n - 1.0;
  const double P = k - 1.0;
  const double Q = N - P;
  const double g = 1.0 / (1.0 - rho2);
  if (rho2 >= 1.0) {
    return 0.0;
  }
  const double p1 = (g - 1.0) * N + P;
  const double p2 = (g * g - 1.0) * N + P;
  const double p3 = (g * g * g - 1.0) * N + P;
  const double c = (p2 - std::sqrt(std::max(0.0, p2 * p2 - p3 * p1))) / p1;
  const double nu = (p2 - 2.0 * (g - 1.0) * std::sqrt(g) * std::sqrt(Q * N)) / (c * c);
  const double delta = std::sqrt(Q * N) * (g - 1.0) * std::sqrt(g) / (c * c);
  const double p = NoncentralFCdf(Q * v / (nu * c), nu, Q, delta, failure);
  return failure != 0 ? -1.0 : p;
}

inline double MultipleR2Cdf(
    double rho2, std::int32_t n, std::int32_t k, double x, std::int16_t algorithm, int& failure) {
  return algorithm == 0 ? MultipleR2CdfLee(x, rho2, n, k, failure)
                        : MultipleR2CdfExact(x, rho2, n, k, failure);
}

inline double QuantileStart(double rho2, std::int32_t n, std::int32_t k, double p) {
  const double Q = n - k;
  const double z = NormalQuantile(p);
  const double a = n * rho2 / (1.0 - rho2) + k - 1.0;
  const double b = n * (1.0 / ((1.0 - rho2) * (1.0 - rho2)) - 1.0) + k - 1.0;
  const double c = 2.0 * b / (9.0 * a * a);
  const double e = 2.0 / (9.0 * Q);
  const double f = 1.0 - 1.0 / (9.0 * Q);
  const double W =
      (z * std::sqrt((1.0 - c) * (1.0 - c) * e + f * f * c - c * e * z * z) + (1.0 - c) * f) /
      (f * f - e * z * z);
  const double F0 = W * W * W * a;
  return std::min(0.999999, std::max(0.0, F0 / (F0 + Q)));
}

inline double MultipleR2Quantile(
    double rho2, std::int32_t n, std::int32_t k, double p, int& failure, std::int16_t algorithm) {
  double x = QuantileStart(rho2, n, k, p);
  double f = MultipleR2Cdf(rho2, n, k, x, algorithm, failure) - p;
  const double h = std::max(x * 1e-06, 1e-06);
  const double x1 = x - h;
  const double f1 = MultipleR2Cdf(rho2, n, k, x1, algorithm, failure) - p;
  if (std::fabs(f1) <= 1e-07) {
    return x1;
  }
  double slope = (f - f1) / h;
  int counter = 3;
  while (!(std::fabs(slope) < 1e-35)) {
    const double oldX = x;
    const double oldF = f;
    x = std::min(0.99999999, std::max(1e-07, x - f / slope));
    f = MultipleR2Cdf(rho2, n, k, x, algorithm, failure) - p;
    if (std::fabs(x - oldX) <= 1e-07) {
      break;
    }
    if (counter >= 10000) {
      failure = 1;
      break;
    }
    if (std::fabs(f) <= 1e-07) {
      break;
    }
    ++counter;
    slope = (f - oldF) / (x - oldX);
  }
  if (std::fabs(f) > 0.0001) {
    failure = 1;
  }
  return x;
}

inline double MultipleR2RhoForP(double start,
                                std::int32_t n,
                                std::int32_t k,
                                double r2,
                                double target,
                                int& failure,
                                std::int16_t algorithm) {
  const auto clamped = [](double v) { return std::min(0.999999, std::max(0.0, v)); };
  double rho = start;
  double f = MultipleR2Cdf(rho, n, k, r2, algorithm, failure) - target;
  if (!(std::fabs(f) <= 1e-08)) {
    const double h = std::max(rho * 1e-06, 1e-12);
    const double rho1 = clamped(start - h);
    const double f1 = MultipleR2Cdf(rho1, n, k, r2, algorithm, failure) - target;
    double slope = (f - f1) / h;
    if (std::fabs(f1) <= 1e-08) {
      return 0.0;
    }
    int counter = 3;
    while (!(std::fabs(slope) < 1e-35)) {
      const double oldRho = rho;
      const double oldF = f;
      rho = clamped(rho - f / slope);
      f = MultipleR2Cdf(rho, n, k, r2, algorithm, failure) - target;
      if (std::fabs(rho - oldRho) <= 1e-08) {
        break;
      }
      if (counter >= 10000) {
        failure = 1;
        break;
      }
      if (std::fabs(f) <= 1e-08) {
        break;
      }
      ++counter;
      slope = (f - oldF) / (rho - oldRho);
    }
  }
  if (std::fabs(f) > 0.0001) {
    failure = 1;
  }
  return rho;
}

}  // namespace poweranalysis::reference
