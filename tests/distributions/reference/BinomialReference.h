#pragma once

#include <algorithm>
#include <cmath>

#include "distributions/Beta.h"
#include "distributions/Common.h"

// The distribution function and the stepping search written out as they are defined. Where the
// search has no way out, the passes end at a limit and the result is NumericFailure.
namespace poweranalysis::reference {

inline double BinomialCdf(double n, double pi, double k, int& failure) {
  if (n < 1.0) {
    failure = 1;
    return NumericFailure;
  }
  failure = 0;
  if (k < 0.0) {
    return 0.0;
  }
  if (k >= n) {
    return 1.0;
  }
  const double m = std::floor(k);
  const double result = 1.0 - BetaCdf(pi, m + 1.0, n - m, failure);
  return failure != 0 ? NumericFailure : result;
}

inline double BinomialQuantile(double p,
                               double n,
                               double pi,
                               double normalQuantile,
                               double& actual,
                               double logP,
                               int& passes) {
  int failure = 0;
  passes = 0;
  if (n * std::log(pi) >= logP) {
    return n;
  }
  double step = 1.0;
  const double k0 = std::min(
      std::max(std::ceil(n * pi + normalQuantile * std::sqrt((1.0 - pi) * pi * n)), 1.0), n);
  double c_now = BinomialCdf(n, pi, k0, failure);
  double direction = 0.0;
  double lower = 0.0;
  double lowerValue = logP;
  double upper = n;
  double upperValue = logP;
  if (c_now <= p) {
    direction = 1.0;
    lower = k0;
    lowerValue = c_now;
  } else {
    direction = -1.0;
    upper = k0;
    upperValue = c_now;
  }
  double c_prev = c_now;
  double k = std::max(k0 + direction, 0.0);
  c_now = BinomialCdf(n, pi, k, failure);
  if (c_now >= p && k < upper) {
    upper = k;
    upperValue = c_now;
  }
  if (c_now < p && lower < k) {
    lower = k;
    lowerValue = c_now;
  }
  while (!(upper - lower < 2.0 && p <= upperValue && (lowerValue < p || lowerValue == 0.0))) {
    if (++passes > 200000) {
      return NumericFailure;
    }
    const double d = std::fabs(c_now - c_prev);
    if (d <= 1e-10) {
      step = 1.0;
    } else {
      step = std::trunc(std::fabs(c_now - p) * step / d);
      step = step == 0.0 ? 1.0 : std::min(step, 200.0);
    }
    k = std::min(std::max(k + direction * step, 0.0), n);
    c_prev = c_now;
    c_now = BinomialCdf(n, pi, k, failure);
    if (c_now < p) {
      direction = 1.0;
      if (lower < k) {
        lower = k;
        lowerValue = c_now;
      }
    } else {
      direction = -1.0;
      if (k < upper) {
        upper = k;
        upperValue = c_now;
      }
      if (k == 1.0) {
        break;
      }
    }
  }
  actual = upperValue;
  return upper;
}

}  // namespace poweranalysis::reference
