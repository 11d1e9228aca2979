#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

#include "procedures/RequiredSizeSearch.h"

// Power and required size of the test of one proportion: exact, on the binomial distribution, and
// by the normal approximation. Both reject beyond critical counts that the normal distribution
// gives, so that the exact test has its own type I error rate and a power that is a sawtooth in N.
namespace poweranalysis {

// --- Critical values.

// Which end of the distribution a critical value bounds.
inline constexpr std::int16_t UpperSide = 0;
inline constexpr std::int16_t LowerSide = 1;

// Critical value of a normal distribution.
//
//   NormalQuantile(p) sd + mean, with p
//     form 0:  1 - alpha / 2 above, alpha / 2 below
//     form 1:  1 - alpha above
//     form 2:  alpha below
//
// Domain: 0 < alpha < 1; sd >= 0.
// Fails:  `err` 1 and NumericFailure for a side that the form does not reject on, and for any other
//         form; `err` is cleared on entry.
double ZCritical(
    double alpha, double mean, double sd, std::int16_t form, int& err, std::int16_t side);

// The field Algorithm of one proportion.
inline constexpr std::int16_t ProportionExact = 0;
inline constexpr std::int16_t ProportionNormal = 1;

// Critical count of n trials with success probability pi.
//
//   c = ZCritical with mean n pi and sd sqrt(n pi (1 - pi)); exact: ceil(c) above, floor(c) below
//
// Domain: n >= 1, 0 <= pi <= 1, 0 < alpha < 1.
// Fails:  as ZCritical.
double ProportionCriticalValue(std::int64_t n,
                               double alpha,
                               double pi,
                               std::int16_t form,
                               int& err,
                               std::int16_t side,
                               std::int16_t algorithm);

// --- Power.

struct OneProportionTest {
  double pi = 0;   // in the population
  double pi0 = 0;  // of the null hypothesis
  double alpha = 0;
  std::int16_t form = H0TwoTailed;
};

// Smallest gap of pi and pi0 that a required size is searched for. The results dialogs make their
// own null check with it.
inline constexpr double OneProportionTolerance = .0001;

// Power of n trials.
//
//   The chance of a count at or above the critical count of the upper side, at or below that of the
//   lower side, or both (form 0): by the binomial distribution, or by the normal one with mean n pi
//   and sd sqrt(n pi (1 - pi)). With pi = pi0 and `checkNull` 0 it is the actual alpha.
//
// Domain: 0 <= pi <= 1, 0 <= pi0 <= 1, 0 < alpha < 1. Fewer than one trial have power 0.
// Fails:  NumericFailure, and `err` as given: the result of NullHypothesisCheck, asked if
//         `checkNull` is set, with its refusal; 1 for a form other than 0, 1 and 2 or a failure of
//         the distribution.
double OneProportionPower(std::int64_t n,
                          const OneProportionTest& test,
                          int& err,
                          std::int16_t algorithm,
                          std::int16_t checkNull,
                          Refusal& refusal);

// --- Required size.

// The largest size that the walks of the exact search try.
inline constexpr std::int64_t LargestOneProportionN = 1000000000;

// The size by the normal approximation, not below 1 and possibly beyond any integer:
//
//   ceil(((z(alpha) sqrt(pi0 (1 - pi0)) + z(1 - goal) sqrt(pi (1 - pi))) / (pi - pi0))^2),
//
// alpha being halved for form 0.
//
// Source: Fleiss, J. L. (1981). Statistical Methods for Rates and Proportions, 2nd ed., 13-15.
double OneProportionEstimate(const OneProportionTest& test, double goal);

// N of one proportion: OneProportionEstimate for the normal approximation, and for the exact test
// the answer of SawtoothSearch from there.
//
// Domain: as OneProportionPower, and 0 < goal < 1.
// Fails:  SizeFailure, with `err`
//           SearchTooLarge   a refused null (the refusal of NullHypothesisCheck), a form other than
//                            0, 1 and 2, an estimate that is not a number (both without a message),
//                            or no size up to LargestOneProportionN (the refusal says
//                            SearchTooLarge)
//           SearchCancelled  the user stopped the search (the refusal says CancelledAtRequest)
std::int64_t OneProportionRequiredN(double goal,
                                    const OneProportionTest& test,
                                    int& err,
                                    std::int16_t algorithm,
                                    Refusal& refusal,
                                    ProcedureObserver& observer);

// Powers already found, so that a search evaluates a size once.
class RecentPowers {
 public:
  template <class PowerAt>
  double Find(std::int64_t size, PowerAt&& powerAt) {
    Entry& entry = entries_[static_cast<std::uint64_t>(size) % kEntries];
    if (entry.size != size) {
      entry = {size, powerAt(size)};
    }
    return entry.power;
  }

 private:
  struct Entry {
    std::int64_t size = -1;  // -1: empty
    double power = 0;
  };
  // A power of two, so that neighbouring sizes do not push each other out.
  static constexpr std::size_t kEntries = 32;

  std::array<Entry, kEntries> entries_{};
};

struct SawtoothRequest {
  double powerGoal = 0;
  double start = 0;  // a whole number
  std::int64_t sizeLimit = LargestOneProportionN;
};

// The required size of a test whose power rises and falls again with every step of its critical
// count.
//
//   Up from the start by one to the first size that reaches the goal, down from four below it to
//   one that falls short, bisection between the two; then on down by one, taking every size that
//   reaches the goal, until a tooth rises and still falls short.
//
// The answer reaches the goal, a greater size need not, and a smaller one beyond a tooth that falls
// short may.
//
// Domain: any request; powerAt maps a size to a power, where NumericFailure and NaN fall short.
// Fails:  SearchTooLarge and SearchCancelled, with their refusals and both numbers missing.
template <class PowerAt>
class SawtoothSearch {
 public:
  SawtoothSearch(const SawtoothRequest& request, PowerAt powerAt, ProcedureObserver& observer)
      : request_(request), powerAt_(powerAt), observer_(observer) {}

  SearchResult Run() {
    if (WalkUp() && WalkDown()) {
      Bisect();
      WalkOnBelow();
    }
    if (status_ != SearchOk) {
      return {SizeFailure, NumericFailure, status_, refusal_};
    }
    return {answer_, answerPower_, SearchOk};
  }

 private:
  // A poll costs as much as many powers.
  static constexpr std::int64_t kTrialsAPoll = 4096;
  static constexpr std::int64_t kFirstStepDown = 4;

  double Power(std::int64_t size) { return powers_.Find(size, powerAt_); }
  bool Reaches(double power) const { return power >= request_.powerGoal; }
  void Take(std::int64_t size, double power) {
    answer_ = size;
    answerPower_ = power;
  }
  bool Stopped() {
    if (++trials_ % kTrialsAPoll == 0 && observer_.StopRequested()) {
      Refuse(SearchCancelled, {Said::CancelledAtRequest});
    }
    return status_ != SearchOk;
  }
  void Refuse(int status, const Refusal& refusal) {
    status_ = status;
    refusal_ = refusal;
  }

  bool WalkUp() {
    const auto limit = static_cast<double>(request_.sizeLimit);
    for (double size = request_.start; size <= limit; size += 1) {
      const auto trial = static_cast<std::int64_t>(size);
      const double power = Power(trial);
      if (Reaches(power)) {
        Take(trial, power);
        return true;
      }
      if (Stopped()) {
        return false;
      }
    }
    Refuse(SearchTooLarge, {Said::SearchTooLarge, {request_.sizeLimit}});
    return false;
  }

  bool WalkDown() {
    lower_ = std::max<std::int64_t>(1, answer_ - kFirstStepDown);
    while (lower_ >= 1 && Reaches(Power(lower_))) {
      --lower_;
      if (Stopped()) {
        return false;
      }
    }
    return true;
  }

  void Bisect() {
    while (answer_ - lower_ > 1) {
      const std::int64_t middle = lower_ + (answer_ - lower_) / 2;
      const double power = Power(middle);
      if (Reaches(power)) {
        Take(middle, power);
      } else {
        lower_ = middle;
      }
    }
  }

  void WalkOnBelow() {
    if (lower_ <= 1) {
      return;
    }
    double above = Power(lower_);
    while (lower_ > 1 && !Stopped()) {
      --lower_;
      const double power = Power(lower_);
      if (Reaches(power)) {
        Take(lower_, power);
      } else if (power > above) {
        return;
      }
      above = power;
    }
  }

  const SawtoothRequest& request_;
  PowerAt powerAt_;
  ProcedureObserver& observer_;
  RecentPowers powers_;
  std::int64_t lower_ = 0;
  std::int64_t answer_ = SizeFailure;
  double answerPower_ = NumericFailure;
  std::int64_t trials_ = 0;
  int status_ = SearchOk;
  Refusal refusal_;
};

}  // namespace poweranalysis
