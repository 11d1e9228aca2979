#pragma once

#include <cstdint>

namespace poweranalysis {

// The power function of a search, which evaluates no more sizes than an answer takes.
//
// Where the power is flat, or fails, the secant search walks by ones, and from a trial far from the
// answer that is a hundred thousand evaluations, in a search that nothing may be able to cancel.
// After `PatientTrials` sizes the answer is bisected within the bracket that the trials have left,
// or up to the limit; from then on a size gets the power of the answer or of the size below it,
// whichever side of the goal it is on, and the search comes to the same end without another
// evaluation. The limit keeps the power that it has.
//
// Domain: a power that rises with size, as far as it matters on which side of the goal it lies; one
//         that fails falls short, as do all sizes between two that fall short. Sizes from
//         `smallest` on.
template <class PowerAt>
class SettledPower {
 public:
  static constexpr int PatientTrials = 40;

  SettledPower(PowerAt powerAt, double goal, std::int64_t smallest, std::int64_t limit)
      : powerAt_(powerAt), goal_(goal), below_(smallest - 1), limit_(limit) {}

  double operator()(std::int64_t size) {
    if (settled_ && size != limit_) {
      return size > below_ ? abovePower_ : belowPower_;
    }
    const double power = Evaluate(size);
    if (++trials_ >= PatientTrials) {
      Settle();
    }
    return power;
  }

 private:
  static constexpr std::int64_t None = -1;

  double Evaluate(std::int64_t size) {
    const double power = powerAt_(size);
    if (power > goal_) {
      if (above_ == None || size < above_) {
        above_ = size;
        abovePower_ = power;
      }
    } else if (size > below_) {
      below_ = size;
      belowPower_ = power;
    }
    return power;
  }

  void Settle() {
    settled_ = true;
    if (above_ == None && below_ < limit_) {
      Evaluate(limit_);
    }
    while (above_ - below_ > 1) {
      Evaluate(below_ + (above_ - below_) / 2);
    }
  }

  PowerAt powerAt_;
  double goal_;
  std::int64_t below_;  // the largest size known to fall short
  double belowPower_ = 0;
  std::int64_t above_ = None;  // the smallest size known to exceed the goal
  double abovePower_ = 0;
  std::int64_t limit_;
  int trials_ = 0;
  bool settled_ = false;
};

}  // namespace poweranalysis
