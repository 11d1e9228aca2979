#include "distributions/AdaptiveIntegrate.h"

#include <algorithm>
#include <cmath>

#include "distributions/EpsilonTable.h"

namespace poweranalysis::qags {

namespace {

constexpr int Limit = 20;

struct Interval {
  double lower = 0.0;
  double upper = 0.0;
  double area = 0.0;
  double error = 0.0;
};

// The two halves of the interval that was bisected last.
struct Halves {
  double lower, middle, upper;
  RuleEstimate left, right;
  double area, error;

  double Width() const { return std::fabs(middle - lower); }
};

// The intervals, with an order by error kept as far as it can still be needed (DQPSRT). Positions
// in the order and the interval numbers count from 0.
class IntervalList {
 public:
  int Count() const { return count_; }
  int WorstNumber() const { return worst_; }
  const Interval& Worst() const { return intervals_[worst_]; }
  double WorstError() const { return worstError_; }
  const Interval& operator[](int number) const { return intervals_[number]; }

  void Start(const Interval& whole) {
    intervals_[0] = whole;
    count_ = 1;
    worstError_ = whole.error;
  }

  // Replaces the worst interval by its halves; the worse half keeps its number.
  void Replace(const Halves& halves) {
    const Interval left{halves.lower, halves.middle, halves.left.result, halves.left.abserr};
    const Interval right{halves.middle, halves.upper, halves.right.result, halves.right.abserr};
    const bool rightIsWorse = right.error > left.error;
    intervals_[worst_] = rightIsWorse ? right : left;
    intervals_[count_++] = rightIsWorse ? left : right;
    Reorder();
  }

  // The last position of the order that is still maintained.
  int LastOrdered() const { return (count_ > Limit / 2 + 2 ? Limit + 3 - count_ : count_) - 1; }

  int Position() const { return position_; }
  void SetPosition(int position) { position_ = position; }
  void TakeFromPosition() { Take(order_[position_]); }

  void RestartFromLargest() {
    Take(order_[0]);
    position_ = 0;
  }

  double TotalArea() const {
    double sum = 0.0;
    for (int i = 0; i < count_; ++i) {
      sum += intervals_[i].area;
    }
    return sum;
  }

 private:
  void Take(int number) {
    worst_ = number;
    worstError_ = intervals_[number].error;
  }

  // Puts the bisected interval and the new one, the last, back into descending order.
  void Reorder() {
    const int last = count_ - 1;
    if (count_ <= 2) {
      order_[0] = 0;
      order_[1] = 1;
      TakeFromPosition();
      return;
    }
    MoveUpWhileLarger();
    const int lastOrdered = LastOrdered();
    const int beforeLast = lastOrdered - 1;
    const int slot = ShiftLarger(beforeLast);
    if (slot > beforeLast) {
      order_[beforeLast] = worst_;
      order_[lastOrdered] = last;
    } else {
      order_[slot - 1] = worst_;
      InsertLast(slot, beforeLast);
    }
    TakeFromPosition();
  }

  // After a difficult integrand the bisection may have made the error larger than before.
  void MoveUpWhileLarger() {
    const double error = intervals_[worst_].error;
    while (position_ > 0 && error > intervals_[order_[position_ - 1]].error) {
      order_[position_] = order_[position_ - 1];
      --position_;
    }
  }

  // Moves the entries below the worst up by one until its place is free; gives the place after it.
  int ShiftLarger(int beforeLast) {
    const double error = intervals_[worst_].error;
    int slot = position_ + 1;
    while (slot <= beforeLast && error < intervals_[order_[slot]].error) {
      order_[slot - 1] = order_[slot];
      ++slot;
    }
    return slot;
  }

  // Inserts the new interval from the bottom of the order.
  void InsertLast(int slot, int beforeLast) {
    const int last = count_ - 1;
    const double error = intervals_[last].error;
    int k = beforeLast;
    while (k >= slot && !(error < intervals_[order_[k]].error)) {
      order_[k + 1] = order_[k];
      --k;
    }
    order_[k + 1] = last;
  }

  Interval intervals_[Limit] = {};
  int order_[Limit + 1] = {};
  int count_ = 0;
  int worst_ = 0;
  int position_ = 0;
  double worstError_ = 0.0;
};

// One integration: the state of DQAGSE between its passes.
class Integration {
 public:
  Integration(const IntervalRule& rule, double lower, double upper, double epsabs, double epsrel)
      : rule_(rule), lower_(lower), upper_(upper), epsabs_(epsabs), epsrel_(epsrel) {}

  void Run() {
    const RuleEstimate whole = rule_(lower_, upper_);
    if (whole.flag != 0) {
      Abandon();
      return;
    }
    StartFrom(whole);
    if (SettledByFirstRule(whole)) {
      Finish();
      return;
    }
    PrepareExtrapolation();
    Subdivide();
  }

  double result = 0.0;
  double abserr = 0.0;
  int neval = 0;
  int ier = 0;

 private:
  enum class Next { Bisect, Judge, Sum };

  void Abandon() {
    result = 0.0;
    ier = 99;
    Count();
  }

  void Count() { neval = 42 * std::max(intervals_.Count(), 1) - 21; }

  void Finish() {
    if (ier > 2) {
      --ier;
    }
    Count();
  }

  double Bound(double value) const { return std::max(epsabs_, epsrel_ * std::fabs(value)); }

  void StartFrom(const RuleEstimate& whole) {
    intervals_.Start({lower_, upper_, whole.result, whole.abserr});
    result = whole.result;
    abserr = whole.abserr;
    resabs_ = whole.resabs;
    errorBound_ = Bound(result);
  }

  // Nothing to subdivide: no better is possible, or good already. An error equal to resasc means
  // that the rule has seen no convergence yet.
  bool SettledByFirstRule(const RuleEstimate& whole) {
    if (abserr <= 100.0 * Epsilon * resabs_ && abserr > errorBound_) {
      ier = 2;
      return true;
    }
    return (abserr <= errorBound_ && abserr != whole.resasc) || abserr == 0.0;
  }

  void PrepareExtrapolation() {
    sameSign_ = std::fabs(result) >= (1.0 - 50.0 * Epsilon) * resabs_;
    table_.Start(result);
    area_ = result;
    errorSum_ = abserr;
    abserr = Largest;
  }

  void Subdivide() {
    Next next = Next::Bisect;
    while (next == Next::Bisect && intervals_.Count() <= Limit) {
      const Halves halves = Bisect();
      if (halves.left.flag != 0 || halves.right.flag != 0) {
        Abandon();
        return;
      }
      Account(halves);
      next = AfterBisection(halves);
    }
    if (next == Next::Judge) {
      next = JudgeExtrapolation();
    }
    if (next == Next::Sum) {
      result = intervals_.TotalArea();
      abserr = errorSum_;
    }
    Finish();
  }

  Halves Bisect() const {
    const Interval& worst = intervals_.Worst();
    Halves halves{};
    halves.lower = worst.lower;
    halves.middle = 0.5 * (worst.lower + worst.upper);
    halves.upper = worst.upper;
    halves.left = rule_(halves.lower, halves.middle);
    if (halves.left.flag == 0) {
      halves.right = rule_(halves.middle, halves.upper);
    }
    halves.area = halves.left.result + halves.right.result;
    halves.error = halves.left.abserr + halves.right.abserr;
    return halves;
  }

  // Brings the sums and the counts of rounding trouble up to date and lists the halves.
  void Account(const Halves& halves) {
    lastError_ = intervals_.WorstError();
    errorSum_ = errorSum_ + halves.error - lastError_;
    area_ = area_ + halves.area - intervals_.Worst().area;
    CountRoundoff(halves);
    errorBound_ = Bound(area_);
    const int count = intervals_.Count() + 1;
    if (roundoffPlain_ + roundoffExtrapolating_ >= 10 || roundoffGrowing_ >= 20) {
      ier = 2;
    }
    if (roundoffExtrapolating_ >= 5) {
      extrapolationRoundoff_ = true;
    }
    if (count == Limit) {
      ier = 1;
    }
    if (std::max(std::fabs(halves.lower), std::fabs(halves.upper)) <=
        (1.0 + 100.0 * Epsilon) * (std::fabs(halves.middle) + 1000.0 * SmallestNormal)) {
      ier = 4;
    }
    intervals_.Replace(halves);
  }

  void CountRoundoff(const Halves& halves) {
    if (halves.left.resasc == halves.left.abserr || halves.right.resasc == halves.right.abserr) {
      return;
    }
    if (!(std::fabs(intervals_.Worst().area - halves.area) > 1e-5 * std::fabs(halves.area) ||
          halves.error < 0.99 * lastError_)) {
      ++(extrapolating_ ? roundoffExtrapolating_ : roundoffPlain_);
    }
    if (intervals_.Count() + 1 > 10 && halves.error > lastError_) {
      ++roundoffGrowing_;
    }
  }

  Next AfterBisection(const Halves& halves) {
    if (errorSum_ <= errorBound_) {
      return Next::Sum;
    }
    if (ier != 0) {
      return Next::Judge;
    }
    if (intervals_.Count() == 2) {
      smallWidth_ = std::fabs(upper_ - lower_) * 0.375;
      largeError_ = errorSum_;
      errorTest_ = errorBound_;
      table_.SetSecond(area_);
      return Next::Bisect;
    }
    if (extrapolationOff_) {
      return Next::Bisect;
    }
    largeError_ -= lastError_;
    if (halves.Width() > smallWidth_) {
      largeError_ += halves.error;
    }
    return LargeIntervalLeft() ? Next::Bisect : Extrapolate();
  }

  bool WorstIsLarge() const {
    return std::fabs(intervals_.Worst().upper - intervals_.Worst().lower) > smallWidth_;
  }

  // True when a larger interval is to be bisected before the next extrapolation.
  bool LargeIntervalLeft() {
    if (!extrapolating_) {
      if (WorstIsLarge()) {
        return true;
      }
      extrapolating_ = true;
      intervals_.SetPosition(1);
    }
    if (extrapolationRoundoff_ || largeError_ <= errorTest_) {
      return false;
    }
    const int last = intervals_.LastOrdered();
    for (int k = intervals_.Position(); k <= last; ++k) {
      intervals_.TakeFromPosition();
      if (WorstIsLarge()) {
        return true;
      }
      intervals_.SetPosition(intervals_.Position() + 1);
    }
    return false;
  }

  Next Extrapolate() {
    double limitError = 0.0;
    const double limit = table_.Extrapolate(area_, limitError);
    ++passesWithoutGain_;
    if (passesWithoutGain_ > 5 && abserr < 1e-3 * errorSum_) {
      ier = 5;
    }
    if (limitError < abserr) {
      passesWithoutGain_ = 0;
      abserr = limitError;
      result = limit;
      correction_ = largeError_;
      errorTest_ = Bound(limit);
      if (abserr <= errorTest_) {
        return Next::Judge;
      }
    }
    if (table_.Count() == 1) {
      extrapolationOff_ = true;
    }
    if (ier == 5) {
      return Next::Judge;
    }
    intervals_.RestartFromLargest();
    extrapolating_ = false;
    smallWidth_ *= 0.5;
    largeError_ = errorSum_;
    return Next::Bisect;
  }

  // The extrapolated value or the plain sum, and whether the integral looks divergent. Judge says
  // that the extrapolated value is taken.
  Next JudgeExtrapolation() {
    if (abserr == Largest) {
      return Next::Sum;
    }
    if (ier != 0 || extrapolationRoundoff_) {
      if (extrapolationRoundoff_) {
        abserr += correction_;
      }
      if (ier == 0) {
        ier = 3;
      }
      if (result != 0.0 && area_ != 0.0) {
        if (abserr / std::fabs(result) > errorSum_ / std::fabs(area_)) {
          return Next::Sum;
        }
      } else if (abserr > errorSum_) {
        return Next::Sum;
      } else if (area_ == 0.0) {
        return Next::Judge;
      }
    }
    TestDivergence();
    return Next::Judge;
  }

  void TestDivergence() {
    if (!sameSign_ && std::max(std::fabs(result), std::fabs(area_)) <= resabs_ * 0.01) {
      return;
    }
    const double ratio = result / area_;
    if (0.01 > ratio || ratio > 100.0 || errorSum_ > std::fabs(area_)) {
      ier = 6;
    }
  }

  const IntervalRule& rule_;
  double lower_, upper_, epsabs_, epsrel_;
  IntervalList intervals_;
  EpsilonTable table_;
  double resabs_ = 0.0;
  double area_ = 0.0;
  double errorSum_ = 0.0;
  double errorBound_ = 0.0;
  double lastError_ = 0.0;
  double largeError_ = 0.0;  // of the intervals wider than smallWidth_
  double errorTest_ = 0.0;
  double smallWidth_ = 0.0;
  double correction_ = 0.0;
  int roundoffPlain_ = 0;
  int roundoffExtrapolating_ = 0;
  int roundoffGrowing_ = 0;
  int passesWithoutGain_ = 0;
  bool sameSign_ = false;
  bool extrapolating_ = false;
  bool extrapolationOff_ = false;
  bool extrapolationRoundoff_ = false;
};

}  // namespace

void Integrate(const IntervalRule& rule,
               double lower,
               double upper,
               double epsabs,
               double epsrel,
               double& result,
               double& abserr,
               int& neval,
               int& ier) {
  result = 0.0;
  abserr = 0.0;
  neval = 0;
  ier = 0;
  if (epsabs <= 0.0 && epsrel < std::max(50.0 * Epsilon, 5e-29)) {
    ier = 6;
    return;
  }
  Integration integration(rule, lower, upper, epsabs, epsrel);
  integration.Run();
  result = integration.result;
  abserr = integration.abserr;
  neval = integration.neval;
  ier = integration.ier;
}

}  // namespace poweranalysis::qags
