#pragma once

#include <algorithm>
#include <cmath>

#include "distributions/Beta.h"
#include "distributions/Common.h"

// The Poisson mixture written out step by step as it is defined, with a beta evaluated afresh for
// every term and all tests on logarithms. The library's form is held against it.
namespace poweranalysis::reference {

// Terms evaluated after the first, and whether the bound of the rest ended the sum.
struct MixtureTrace {
  int terms = 0;
  bool boundEnded = false;
};

inline double NoncentralBetaCdf(
    double x, double a, double b, double delta, int& failure, MixtureTrace& trace) {
  const double L = delta / 2.0;
  double cs = 0.0;
  double cw = 0.0;
  double P = BetaCdf(x, a, b, failure);
  if (failure != 0) {
    return NumericFailure;
  }
  if (L == 0.0) {
    return P;
  }
  const double ln10 = std::log(10.0);
  const double E = std::exp(-L);
  double previous = 1e300;
  double j = 1.0;
  double w = L;
  double S = P;
  for (int iteration = 1;;) {
    const double B = BetaCdf(x, a + j, b, failure);
    ++trace.terms;
    if (failure != 0) {
      return NumericFailure;
    }
    if (AlmostZero(B)) {
      break;
    }
    const double v = std::log(w) + std::log(B) + cw * ln10;
    if (v > 705.0) {
      break;
    }
    S = std::exp(v) + P;
    if (S > 1e50) {
      S /= 1e50;
      P /= 1e50;
      w /= 1e50;
      cs += 50.0;
    }
    if (w > 1e50) {
      w /= 1e50;
      cw += 50.0;
    }
    if (S < 1e-50 && S != 0.0) {
      S *= 1e50;
      P *= 1e50;
      w *= 1e50;
      cs -= 50.0;
    }
    if (w < 1e-50) {
      w *= 1e50;
      cw -= 50.0;
    }
    w = w * L / (j + 1.0);
    const double e =
        std::log10(std::min(L / (j + 2.0) + E, 1.0)) + std::log10(w) + std::log10(B) + cs + cw;
    if (e <= -9.0) {
      trace.boundEnded = true;
      break;
    }
    if (e > 1e300 && previous < e) {
      failure = 1;
      return 0.0;
    }
    if (S == P) {
      break;
    }
    P = S;
    previous = e;
    j += 1.0;
    if (++iteration >= 100001) {
      failure = 1;
      return NumericFailure;
    }
  }
  return S == 0.0 ? 0.0 : std::exp(std::log(S) + cs * ln10 - L);
}

inline double NoncentralFCdf(
    double f, double df1, double df2, double delta, int& failure, MixtureTrace& trace) {
  failure = 0;
  if (df1 <= 0.0 || df2 <= 0.0 || delta < 0.0) {
    failure = 1;
    return NumericFailure;
  }
  const double a = df1 / 2.0;
  const double b = df2 / 2.0;
  const double x = a * f / (a * f + b);
  const double p = NoncentralBetaCdf(x, a, b, delta, failure, trace);
  return failure != 0 ? NumericFailure : p;
}

inline double NoncentralFCdf(double f, double df1, double df2, double delta, int& failure) {
  MixtureTrace trace;
  return NoncentralFCdf(f, df1, df2, delta, failure, trace);
}

}  // namespace poweranalysis::reference
