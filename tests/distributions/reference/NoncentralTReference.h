#pragma once

#include <cmath>
#include <cstdint>

#include "distributions/AdaptiveIntegrate.h"
#include "distributions/Common.h"
#include "distributions/Normal.h"

// Owen's recursion written out step by step as it is defined, with nothing shared, precomputed or
// left out. The library's form is held against it.
namespace poweranalysis::reference {

struct PlainIntegrand {
  double h;

  IntegrandValue operator()(double x) const {
    const double y = x * x + 1.0;
    const double v = -0.5 * h * h * y;
    if (v - std::log(y) < -708.0) {
      return {0.0, 0};
    }
    return {std::exp(v) / y, 0};
  }
};

// The sum of the recursion in its scale, before and after the scale is put back.
inline double OwenSum(double t, std::int32_t df, double delta) {
  const double n = df;
  const bool even = df % 2 == 0;
  const double A = t / std::sqrt(n);
  const double B = n / (t * t + n);
  const double r = std::sqrt(B);
  const double b = r * delta;
  const double c = A * delta;
  double g = -0.5 * b * b;
  const double e = -0.5 * delta * delta - g;
  double M0 = NormalCdf(b * A) * r * A * 0.398942280401433;
  double M1 = c * B * M0;
  if (std::fabs(e) < 12.5) {
    M1 = M1 + std::exp(e) * B * A * 0.159154943091896;
  }
  double s = 0.0;
  if (df != 1) {
    s = even ? M0 : M1;
    if (df >= 4) {
      double a = 1.0;
      double k = 2.0;
      for (std::int32_t i = 0; i < (df - 2) / 2; ++i) {
        M0 = (a * c * M1 + M0) * B * (k - 1.0) / k;
        a = 1.0 / ((k - 1.0) * a);
        M1 = (a * c * M0 + M1) * B * k / (k + 1.0);
        s = s + (even ? M0 : M1);
        a = 1.0 / (k * a);
        k = k + 2.0;
        if (std::fabs(s) > 0.0) {
          const double L = std::log(std::fabs(s));
          if (std::fabs(L) > 500.0) {
            g = g + L;
            const double scale = std::exp(L);
            M0 = M0 / scale;
            M1 = M1 / scale;
            s = s / scale;
          }
        }
      }
    }
  }
  return s > 0.0 ? std::exp(std::log(s) + g) : s * std::exp(g);
}

inline double NoncentralTCdf(double t, std::int32_t df, double delta) {
  const double s = OwenSum(t, df, delta);
  if (df % 2 == 0) {
    return s * 2.506628274631 + NormalCdf(-delta);
  }
  const double n = df;
  const double b = std::sqrt(n / (t * t + n)) * delta;
  double result = 0.0;
  double abserr = 0.0;
  int neval = 0;
  int ier = 0;
  AdaptiveIntegrate(PlainIntegrand{b}, 0.0, t / std::sqrt(n), 1e-12, 1e-12, result, abserr, neval,
                    ier);
  const double T = result * 0.159154943091896;
  if (ier != 0 || T == NumericFailure) {
    return NumericFailure;
  }
  return 2.0 * (T + s) + NormalCdf(-b);
}

}  // namespace poweranalysis::reference
