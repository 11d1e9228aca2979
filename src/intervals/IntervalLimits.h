#pragma once

#include <array>
#include <cstddef>

#include "distributions/Common.h"

namespace poweranalysis {

// What a confidence limit is of.
enum class Limit {
  Delta,
  Es,
  Rmsse,
  Power,
  RequiredN,
  Rho,
  P2,
  P2Bound,
  PiExact,
  PiApproximate,
  PiCrude,
  Rmsea,
  Gamma1,
  Gamma2,
};

// Both limits of an interval, each NumericFailure where there is none.
struct LimitPair {
  double lower = NumericFailure;
  double upper = NumericFailure;

  bool operator==(const LimitPair&) const = default;
};

// What an interval estimation gives. Pairs that a family does not have stay without limits.
struct IntervalLimits {
  // From an observed t or F.
  LimitPair delta;   // noncentrality
  LimitPair effect;  // standardized
  LimitPair rmsse;
  // Of the test of a design like the observed one, were the limits the truth.
  LimitPair power;
  LimitPair size;  // required for the power goal: whole numbers

  LimitPair rho;
  LimitPair rho2;      // P2
  LimitPair oneSided;  // of P2 as well: a lower limit alone, at the whole level
  LimitPair exact;     // of a proportion
  LimitPair approximate;
  LimitPair crude;
  LimitPair rmsea;
  LimitPair gamma1;
  LimitPair gamma2;

  double pValue = NumericFailure;
  double df1 = NumericFailure;
  double df2 = NumericFailure;
  bool cancelled = false;  // what was not computed then has no limits
};

inline const LimitPair& PairOf(const IntervalLimits& limits, Limit limit) {
  // In the order of Limit.
  constexpr std::array kPairs = {
      &IntervalLimits::delta,       &IntervalLimits::effect,   &IntervalLimits::rmsse,
      &IntervalLimits::power,       &IntervalLimits::size,     &IntervalLimits::rho,
      &IntervalLimits::rho2,        &IntervalLimits::oneSided, &IntervalLimits::exact,
      &IntervalLimits::approximate, &IntervalLimits::crude,    &IntervalLimits::rmsea,
      &IntervalLimits::gamma1,      &IntervalLimits::gamma2,
  };
  return limits.*kPairs[static_cast<std::size_t>(limit)];
}

// The probability beyond each limit of a two-sided interval.
constexpr double TailBeyond(double confidence) { return (1 - confidence) * .5; }

}  // namespace poweranalysis
