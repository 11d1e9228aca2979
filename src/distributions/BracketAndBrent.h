#pragma once

#include <algorithm>
#include <cmath>
#include <utility>

#include "distributions/Common.h"

namespace poweranalysis {

// The first tests for convergence in a pass, before the ones at 1e-10 that every routine has.
enum class BrentFirstTests {
  Exact,      // |xm| <= tol1, or f(b) = 0
  WithSlack,  // |xm| within the image slack of tol1, or |f(b)| of 1e-36
};

// The constants by which the root finders differ.
struct BracketPolicy {
  double factor = 1.6;          // how far a moved end goes, in widths of the bracket
  bool floorsMovedEnd = false;  // a moved end below the floor is set to it, ...
  double movedEndFloor = 0.0;
  double residualAtFloor = 0.0;  // ... and takes this residual without an evaluation
  bool floorsNewPoint = false;   // Brent's new point stays at or above its floor
  double newPointFloor = 0.0;
  double halfTolerance = 5e-11;
  BrentFirstTests firstTests = BrentFirstTests::Exact;
};

namespace brent {

inline constexpr int PassLimit = 1000;
inline constexpr double RelativeTolerance = 2e-36;
inline constexpr double ZeroResidual = 1e-36;

struct Point {
  double x;
  double f;
};

// Evaluates the residual at a moved end, or keeps the end on the floor.
template <class Residual>
Point MovedEnd(double x, const Residual& residual, const BracketPolicy& policy) {
  if (policy.floorsMovedEnd && x < policy.movedEndFloor) {
    return {policy.movedEndFloor, policy.residualAtFloor};
  }
  return {x, residual(x)};
}

// Moves the end with the smaller residual outward until the signs differ.
template <class Residual>
bool Bracket(Point& a, Point& b, const Residual& residual, const BracketPolicy& policy) {
  int passes = 0;
  while (a.f * b.f >= 0.0) {
    if (++passes > PassLimit) {
      return false;
    }
    if (std::fabs(b.f) <= std::fabs(a.f)) {
      b = MovedEnd(b.x + policy.factor * (b.x - a.x), residual, policy);
    } else {
      a = MovedEnd(a.x + policy.factor * (a.x - b.x), residual, policy);
    }
  }
  return true;
}

inline bool SameSign(double u, double v) { return (u > 0.0 && v > 0.0) || (u < 0.0 && v < 0.0); }

inline bool Converged(double xm, double tol1, double fb, BrentFirstTests tests) {
  const double distance = std::fabs(xm);
  const double magnitude = std::fabs(fb);
  if (tests == BrentFirstTests::Exact
          ? distance <= tol1 || fb == 0.0
          : AtMostWithSlack(distance, tol1) || AtMostWithSlack(magnitude, ZeroResidual)) {
    return true;
  }
  return AlmostEqual(distance, tol1) || AlmostEqual(magnitude, 0.0);
}

// The next step d: inverse quadratic interpolation, or the secant when a = c, where that stays
// inside the bracket and shrinks fast enough; otherwise half the bracket. e is the step before.
inline void ChooseStep(
    const Point& a, const Point& b, const Point& c, double xm, double tol1, double& d, double& e) {
  if (std::fabs(e) >= tol1 && std::fabs(a.f) > std::fabs(b.f)) {
    const double s = b.f / a.f;
    double p = 2.0 * xm * s;
    double q = 1.0 - s;
    if (a.x != c.x) {
      const double ratio = a.f / c.f;
      const double r = b.f / c.f;
      p = s * (2.0 * xm * ratio * (ratio - r) - (b.x - a.x) * (r - 1.0));
      q = (ratio - 1.0) * (r - 1.0) * (s - 1.0);
    }
    if (p > 0.0) {
      q = -q;
    }
    p = std::fabs(p);
    if (2.0 * p < std::min(3.0 * xm * q - std::fabs(tol1 * q), std::fabs(e * q))) {
      e = d;
      d = p / q;
      return;
    }
  }
  d = xm;
  e = d;
}

}  // namespace brent

// A zero of residual(x): a bracket widened from a and b, then Brent's method.
//
//   Ends for practical purposes once half the bracket is within 1e-10 of its tolerance, or the
//   residual within 1e-10 of zero, whatever the half tolerance of the policy.
//
// Source: Brent, R. P. (1973). Algorithms for Minimization without Derivatives, chapter 4.
// Domain: a and b different, with their residuals.
// Fails:  NumericFailure with `failure` 1 when either stage needs more than 1000 passes; `failure`
//         is not touched otherwise and belongs to the caller.
template <class Residual>
double BracketAndBrent(brent::Point a,
                       brent::Point b,
                       const Residual& residual,
                       const BracketPolicy& policy,
                       int& failure) {
  if (!brent::Bracket(a, b, residual, policy)) {
    failure = 1;
    return NumericFailure;
  }
  brent::Point c = b;
  double d = 0.0;
  double e = 0.0;
  for (int pass = 1; pass <= brent::PassLimit; ++pass) {
    if (brent::SameSign(b.f, c.f)) {
      c = a;
      d = e = b.x - a.x;
    }
    if (std::fabs(c.f) < std::fabs(b.f)) {
      a = std::exchange(b, c);
      c = a;
    }
    const double tol1 = brent::RelativeTolerance * std::fabs(b.x) + policy.halfTolerance;
    const double xm = (c.x - b.x) / 2.0;
    if (brent::Converged(xm, tol1, b.f, policy.firstTests)) {
      return b.x;
    }
    brent::ChooseStep(a, b, c, xm, tol1, d, e);
    a = b;
    double x = b.x + (std::fabs(d) > tol1 ? d : std::copysign(tol1, xm));
    if (policy.floorsNewPoint && x < policy.newPointFloor) {
      x = policy.newPointFloor;
    }
    b = {x, residual(x)};
  }
  failure = 1;
  return NumericFailure;
}

}  // namespace poweranalysis
