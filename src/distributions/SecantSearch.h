#pragma once

#include <algorithm>
#include <cmath>
#include <limits>

#include "distributions/Common.h"

namespace poweranalysis {

// How a secant search treats its variable.
struct SecantPolicy {
  bool floorAtZero = false;     // the variable stays at or above 0
  bool ceilingAtOne = false;    // and at or below 1
  bool triesZeroFirst = false;  // start at 1 or above, after a look at 0
  bool nanIsLarge = false;      // a residual that is not a number counts as a very large one
};

namespace secant {

inline constexpr double ValueTolerance = 1e-10;
inline constexpr double StepTolerance = 1e-10;
inline constexpr double RelativeStep = 0.0001;
inline constexpr double FlatSlope = 1e-35;
inline constexpr int EvaluationLimit = 10000;

inline double Bounded(double b, const SecantPolicy& policy) {
  if (policy.floorAtZero && b < 0.0) {
    b = 0.0;
  }
  if (policy.ceilingAtOne && b > 1.0) {
    b = 1.0;
  }
  return b;
}

// The point beside the start that gives the first slope.
inline double NeighbourOf(double start, double h, const SecantPolicy& policy) {
  const double neighbour = start - h;
  if (policy.floorAtZero && neighbour < 0.0) {
    return start > 0.0 ? 0.0 : -neighbour;
  }
  return neighbour;
}

// One evaluation. A residual that is not a number would pass the exit tests by accident, and a
// point that is not a number need not be a legal argument: both fail the evaluation or, where the
// policy says so, stand for a very large residual.
template <class Residual>
double Evaluate(const Residual& residual, double b, const SecantPolicy& policy, int& failure) {
  failure = 0;
  const double f = std::isnan(b) ? std::numeric_limits<double>::quiet_NaN() : residual(b, failure);
  if (failure != 0) {
    return NumericFailure;
  }
  if (std::isnan(f)) {
    failure = policy.nanIsLarge ? 0 : 1;
    return NumericFailure;
  }
  return f;
}

}  // namespace secant

// A zero of residual(b, failure) by the secant method with a numerical first slope.
//
//   b - f / slope, bounded by the policy, until |f| or the unbounded step is at most 1e-10, the
//   slope vanishes, or the count of evaluations reaches 10000.
//
// Domain: any finite start.
// Fails:  NumericFailure with `failure` nonzero when an evaluation fails. `status` counts an
//         exhausted search and a final |f| above 1e-10; the value is returned all the same. Both
//         are cleared on entry.
template <class Residual>
double SecantSearch(
    const Residual& residual, double start, const SecantPolicy& policy, int& status, int& failure) {
  using secant::Evaluate;
  status = 0;
  failure = 0;
  if (policy.triesZeroFirst) {
    start = start > 1.0 ? start : 1.0;
    if (std::fabs(Evaluate(residual, 0.0, policy, failure)) <= secant::ValueTolerance) {
      return 0.0;
    }
  }
  double b = start;
  double f = Evaluate(residual, b, policy, failure);
  if (failure != 0) {
    return NumericFailure;
  }
  const double h = std::max(start * secant::RelativeStep, secant::StepTolerance);
  const double neighbour = secant::NeighbourOf(start, h, policy);
  const double neighbourResidual = Evaluate(residual, neighbour, policy, failure);
  if (failure != 0) {
    return NumericFailure;
  }
  // Kept: the slope takes the whole h even when the neighbour was moved to the floor.
  double slope = (f - neighbourResidual) / h;
  int counter = 1;
  // Kept: a neighbour this close to zero ends the search where it started.
  bool moving = !(std::fabs(neighbour) <= secant::StepTolerance);
  while (moving && counter < secant::EvaluationLimit && !(std::fabs(f) <= secant::ValueTolerance) &&
         !(std::fabs(slope) < secant::FlatSlope)) {
    const double previous = b;
    const double previousResidual = f;
    const double unbounded = b - f / slope;
    ++counter;
    b = secant::Bounded(unbounded, policy);
    f = Evaluate(residual, b, policy, failure);
    if (failure != 0) {
      return NumericFailure;
    }
    slope = (previousResidual - f) / (previous - b);
    moving = std::fabs(unbounded - previous) > secant::StepTolerance;
  }
  status += counter >= secant::EvaluationLimit ? 1 : 0;
  status += !(std::fabs(f) <= secant::ValueTolerance) ? 1 : 0;
  return b;
}

}  // namespace poweranalysis
