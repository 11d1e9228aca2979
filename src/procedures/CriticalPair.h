#pragma once

#include <cstdint>

#include "distributions/Common.h"
#include "procedures/RequiredSizeSearch.h"

// What the tests of correlations and of model fit share: the critical values of a hypothesis form,
// and the power beyond them.
namespace poweranalysis {

// Which of the two critical values of a two-tailed test. The other forms have the high one alone.
inline constexpr std::int16_t HighSide = 0;
inline constexpr std::int16_t LowSide = 1;

// The status of a procedure that gives its own.
inline constexpr int ProcedureOk = 0;
inline constexpr int ProcedureFailed = 1;

struct CriticalPair {
  double high = NumericFailure;
  double low = NumericFailure;  // two-tailed tests only
  int failure = ProcedureOk;    // of the distribution
};

// P(statistic <= critical value) under the null hypothesis:
//
//   form 0:  1 - alpha / 2 for the high side, alpha / 2 for the low side
//   forms 1 and 3:  1 - alpha        form 2:  alpha
//
// Domain: any form.
// Fails:  NumericFailure for a form that is none of these.
inline double CriticalProbability(double alpha, std::int16_t form, std::int16_t side) {
  switch (form) {
    case H0TwoTailed:
      return side == HighSide ? 1 - alpha / 2 : alpha / 2;
    case H0AtMost:
    case H0Zero:
      return 1 - alpha;
    case H0AtLeast:
      return alpha;
    default:
      return NumericFailure;
  }
}

// The critical values of a form, each by `critical(side)`.
template <class Critical>
CriticalPair FindCriticals(std::int16_t form, Critical critical) {
  CriticalPair pair;
  pair.high = critical(HighSide);
  if (form == H0TwoTailed) {
    pair.low = critical(LowSide);
  }
  return pair;
}

// The critical values found last, so that a curve whose points share them finds them once. `Test`
// holds all that they depend on and compares equal when they are the same. A plain value: each
// search or curve owns one.
template <class Test>
class CriticalCache {
 public:
  template <class FindPair>
  const CriticalPair& Find(const Test& test, FindPair findPair) {
    if (!known_ || !(test == test_)) {
      pair_ = findPair(test);
      test_ = test;
      known_ = true;
    }
    return pair_;
  }

 private:
  Test test_{};
  CriticalPair pair_;
  bool known_ = false;
};

// What the low side of a two-tailed test adds to its power.
enum class LowTail { Added, Subtracted };

// P(rejection), with cdf(c) = P(statistic <= c) under the alternative:
//
//   form 0:  1 - (cdf(high) - cdf(low)), or 1 - cdf(high) - cdf(low) with LowTail::Subtracted
//   forms 1 and 3:  1 - cdf(high)        form 2:  cdf(high)
//
// Fails:  NumericFailure for any other form, when a critical value is missing and when cdf fails.
// Guard:  a cdf that falls from low to high has lost its density in between, as integration can,
//         and fails: the power would be as much as 2.
template <class Cdf>
double RejectionProbability(std::int16_t form,
                            const CriticalPair& pair,
                            Cdf cdf,
                            LowTail lowTail = LowTail::Added) {
  const bool known = form == H0TwoTailed || form == H0AtMost || form == H0AtLeast || form == H0Zero;
  if (!known || pair.high == NumericFailure) {
    return NumericFailure;
  }
  const double high = cdf(pair.high);
  if (high == NumericFailure || form == H0AtLeast) {
    return high;
  }
  if (form != H0TwoTailed) {
    return 1 - high;
  }
  const double low = pair.low == NumericFailure ? NumericFailure : cdf(pair.low);
  constexpr double kErrorOfCdf = 1e-5;
  if (low == NumericFailure || low > high + kErrorOfCdf) {
    return NumericFailure;
  }
  return lowTail == LowTail::Added ? 1 - (high - low) : 1 - high - low;
}

}  // namespace poweranalysis
