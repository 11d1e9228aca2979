#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "distributions/Normal.h"

// The series and the approximation written out step by step as they are defined, with nothing
// shared, reordered or left out. The library's form is held against it.
namespace poweranalysis::reference {

struct ChiSquareSeries {
  double g;  // logarithm of T while that is below -50
  double T;  // twice the central density at the degrees of freedom reached
  double Q;  // central distribution function there
  std::int32_t reached;
};

inline void ChiSquareSeriesStep(ChiSquareSeries& series, double x) {
  const double n = series.reached;
  if (series.g < -50.0) {
    series.g = series.g + std::log(x / n);
    series.T = std::exp(series.g);
  } else {
    series.T = series.T * x / n;
  }
  series.Q = series.Q - series.T;
  series.reached += 2;
}

inline ChiSquareSeries ChiSquareSeriesStart(double x, std::int32_t df) {
  if (df % 2 != 0) {
    const double g = -0.5 * (std::log(x) + x) - 0.22579135264473;
    return {g, std::exp(g), 1.0 - 2.0 * (1.0 - NormalCdf(std::sqrt(x))), 1};
  }
  const double g = -0.5 * x;
  const double T = std::exp(g);
  return {g, T, 1.0 - T, 2};
}

inline double SankaranCdf(double x, std::int32_t df, double delta, double& density) {
  const double a = df + delta;
  const double b = a + delta;
  const double c = b + delta;
  const double h = 1.0 - 2.0 * a * c / (3.0 * b * b);
  const double A = b / a - c / b;
  const double y = std::pow((A + x) / a, h);
  const double mean = 1.0 + (h / a) * (A - 2.0 * c / (3.0 * b));
  const double sd = std::sqrt(2.0 * b * ((h / a) * (h / a)));
  const double z = (y - mean) / sd;
  density = std::exp(-z * z / 2.0) * 0.39894228;
  return std::max(0.0, NormalCdf(z));
}

inline double NoncentralChiSquareSeries(
    double x, std::int32_t df, double delta, double& density, int& failure) {
  const double L = delta / 2.0;
  const double u = std::exp(-L);
  const double tol = 1e-06 / u;
  double rem = 1.0 / u - 1.0;
  ChiSquareSeries series = ChiSquareSeriesStart(x, df);
  double D = 0.0;
  double w = 0.0;
  double sum = 0.0;
  int i = 0;
  if (df == 0) {
    rem = rem - L;
    D = series.T * L;
    w = L;
    i = 1;
    sum = 1.0 + L * series.Q;
    series.reached = 2;
  } else {
    while (series.reached < df - 1) {
      ChiSquareSeriesStep(series, x);
    }
    D = series.T;
    w = 1.0;
    i = 0;
    sum = series.Q;
    series.reached = df;
  }
  for (;;) {
    i = i + 1;
    w = w * L / i;
    ChiSquareSeriesStep(series, x);
    rem = rem - w;
    D = D + w * series.T;
    const double term = w * series.Q;
    sum = sum + term;
    const bool converged = series.Q * rem < tol && term < tol;
    if (i >= 500 || converged) {
      failure = converged ? 0 : 2;
      break;
    }
  }
  density = (u / 2.0) * D;
  return std::max(0.0, sum * u);
}

inline double NoncentralChiSquareCdf(
    double x, std::int32_t df, double delta, double& density, int& failure) {
  if (delta < 0.0 || x < 0.0) {
    density = -1.0;
    failure = 1;
    return 0.0;
  }
  if (x == 0.0 && df > 0) {
    density = 0.0;
    failure = 0;
    return 0.0;
  }
  if (std::exp(-delta / 2.0) <= 1e-200) {
    return SankaranCdf(x, df, delta, density);
  }
  return NoncentralChiSquareSeries(x, df, delta, density, failure);
}

}  // namespace poweranalysis::reference
