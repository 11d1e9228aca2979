#include "distributions/BetaSeries.h"

#include <algorithm>
#include <cmath>

#include "distributions/Beta.h"

namespace poweranalysis {

namespace {

constexpr std::size_t Width = 8;
constexpr int FractionLimit = 10000;
constexpr double FractionTolerance = 1e-10;

// A change this close to the tolerance, relative to it, is not decided by a sum that differs from
// the plain one in its last bits: rounding moves it by 1e-5 of the tolerance at most.
constexpr double Doubt = 1e-4;

// From this sum of the shapes on the rounding of a fraction whose divisions are shared shows in the
// twelfth decimal.
constexpr double LargestSum = 20000.0;

// Front factors are linked by their ratio only up to this sum of the shapes: the rounding of the
// log-gammas (some 1e-13 there) is part of a factor computed afresh, and a linked one does not have
// the same.
constexpr double LargestLinkedSum = 300.0;

// Nor from one that is near underflow.
constexpr double SmallestLinkedExponent = -600.0;

// What a step of a fraction by itself costs, in steps taken side by side.
constexpr std::int64_t PlainCost = 5;

// What the rest of a term costs, in steps.
constexpr int FrontCost = 8;

// Two lanes to a register, which every 64-bit processor has.
using Pair = double __attribute__((vector_size(2 * sizeof(double))));
using PairMask = std::int64_t __attribute__((vector_size(2 * sizeof(double))));
constexpr std::size_t Pairs = Width / 2;

using Lanes = std::array<double, Width>;

Pair LoadPair(const double* from) { return Pair{from[0], from[1]}; }
Pair Both(double value) { return Pair{value, value}; }
Pair Magnitude(Pair v) {
  constexpr std::int64_t AllButSign = 0x7fffffffffffffff;
  return reinterpret_cast<Pair>(reinterpret_cast<PairMask>(v) & PairMask{AllButSign, AllButSign});
}

Pair Larger(Pair u, Pair v) { return u < v ? v : u; }

// What LogGamma's three terms of Stirling's series give too much, from its next terms
// (Abramowitz and Stegun, 6.1.41): 9.5e-12 at 13 and falling.
Pair LogGammaExcess(Pair x) {
  const Pair inverse = Both(1.0) / x;
  const Pair square = inverse * inverse;
  const Pair seventh = square * square * square * inverse;
  return seventh *
         (Both(1.0 / 1680.0) - square * (Both(1.0 / 1188.0) - square * Both(691.0 / 360360.0)));
}

// LogGamma of shape + b for all lanes: its series by the same operations, two lanes to a register,
// where LogGamma would come to it.
Lanes LogGammasOfSums(const Lanes& shapes, double b) {
  Lanes results;
  for (std::size_t l = 0; l < Width; l += 2) {
    const Pair x = LoadPair(&shapes[l]) + Both(b);
    if (!(x[0] >= SmallestPlainStirling)) {
      results[l] = LogGamma(x[0]);
      results[l + 1] = LogGamma(x[1]);
      continue;
    }
    const Pair square = x * x;
    const Pair inner = (Both(stirling::B) - Both(stirling::C) / square) / square;
    const Pair rest = (Both(stirling::A) - inner) / x + Both(stirling::D) - x;
    results[l] = std::log(x[0]) * (x[0] - 0.5) + rest[0];
    results[l + 1] = std::log(x[1]) * (x[1] - 0.5) + rest[1];
  }
  return results;
}

// Where LogGamma evaluates its series for x: it raises an x up to and including 13.
double SmallestUnshifted(double x) { return x <= 13.0 ? x + std::trunc(14.0 - x) : x; }

// x / (s (s + 1)) for s = start, start + 1, ...: the denominators of the coefficients.
// Lane l needs those of s = start + l + 2 m - 1 and the next in pass m, so neighbours share.
class Denominators {
 public:
  Denominators(double start, double x) : start_(start), x_(x) { Extend(0); }

  // The entries of the next pass; valid until the next call.
  const double* Advance() {
    if (next_ + Width + 1 > Size) {
      // Moved to an even place, so that the pairs of Extend stay whole.
      std::copy(table_.begin() + Chunk, table_.end(), table_.begin());
      start_ += static_cast<double>(Chunk);
      next_ -= Chunk;
      Extend(Size - Chunk);
    }
    const double* entries = table_.data() + next_;
    next_ += 2;
    return entries;
  }

 private:
  static constexpr std::size_t Chunk = 16;
  static constexpr std::size_t Size = Chunk + Width + 2;

  void Extend(std::size_t from) {
    for (std::size_t i = from; i < Size; i += 2) {
      const Pair s = Both(start_ + static_cast<double>(i)) + Pair{0.0, 1.0};
      const Pair entry = Both(x_) / (s * (s + Both(1.0)));
      table_[i] = entry[0];
      table_[i + 1] = entry[1];
    }
  }

  double start_;
  double x_;
  std::size_t next_ = 1;
  std::array<double, Size> table_{};
};

// The fraction is 1 / (1 + d1 / (1 + d2 / (1 + ...))). BetaContinuedFraction looks at every second
// approximant: those of its even part
//
//   1 / (beta0 - d1 d2 / (beta1 - d3 d4 / (beta2 - ...))),  beta_m = 1 + d_2m + d_(2m+1)
//
// which takes one division a pass.

// Coefficients of the fraction at (shape, b, x), a shape to each lane.
class DirectCoefficients {
 public:
  DirectCoefficients(const Lanes& shapes, double b, double x)
      : b_(b), x_(x), denominators_(shapes[0], x) {
    for (std::size_t i = 0; i < Pairs; ++i) {
      shape_[i] = LoadPair(&shapes[2 * i]);
      sum_[i] = shape_[i] + Both(b);
    }
  }

  Pair First(std::size_t i) const { return Both(-x_) * sum_[i] / (shape_[i] + Both(1.0)); }

  void Advance(double m) {
    m_ = m;
    even_ = m * (b_ - m);
    table_ = denominators_.Advance();
  }

  // m (b - m) x / ((shape - 1 + 2 m) (shape + 2 m))
  Pair Even(std::size_t i) const { return Both(even_) * LoadPair(table_ + 2 * i); }

  // -(shape + m) (shape + b + m) x / ((shape + 2 m) (shape + 1 + 2 m))
  Pair Odd(std::size_t i) const {
    return (shape_[i] + Both(m_)) * (sum_[i] + Both(m_)) * -LoadPair(table_ + 2 * i + 1);
  }

 private:
  double b_;
  double x_;
  double m_ = 0.0;
  double even_ = 0.0;
  const double* table_ = nullptr;
  Denominators denominators_;
  std::array<Pair, Pairs> shape_{};
  std::array<Pair, Pairs> sum_{};
};

// Coefficients of the fraction at (b, shape, 1 - x).
class MirroredCoefficients {
 public:
  MirroredCoefficients(const Lanes& shapes, double b, double x) : b_(b), y_(1.0 - x) {
    for (std::size_t i = 0; i < Pairs; ++i) {
      shape_[i] = LoadPair(&shapes[2 * i]);
      sum_[i] = shape_[i] + Both(b);
    }
  }

  Pair First(std::size_t i) const { return Both(-y_ / (b_ + 1.0)) * sum_[i]; }

  void Advance(double m) {
    m_ = m;
    const double s = b_ + 2.0 * m;
    const Pair scale = Both(y_) / (Pair{s - 1.0, s} * Pair{s, s + 1.0});
    even_ = m * scale[0];
    odd_ = -(b_ + m) * scale[1];
  }

  Pair Even(std::size_t i) const { return (shape_[i] - Both(m_)) * Both(even_); }
  Pair Odd(std::size_t i) const { return (sum_[i] + Both(m_)) * Both(odd_); }

 private:
  double b_;
  double y_;
  double m_ = 0.0;
  double even_ = 0.0;
  double odd_ = 0.0;
  std::array<Pair, Pairs> shape_{};
  std::array<Pair, Pairs> sum_{};
};

// The fractions of the lanes and, for each, whether its end is in doubt.
struct Fractions {
  std::array<Pair, Pairs> values{};
  std::array<PairMask, Pairs> doubtful{};
  int passes = 0;
};

constexpr double CloseBelow = FractionTolerance * (1.0 + Doubt);
constexpr double SureBelow = FractionTolerance * (1.0 - Doubt);

// One pair of lanes: the fraction so far, its last change, the reciprocal of its last denominator
// and the last odd coefficient.
struct Steed {
  Pair value;
  Pair delta;
  Pair inverse;
  Pair odd;
  PairMask open;
  PairMask doubtful;

  // The next approximant. Lanes that are done have no change and stay where they are.
  void Step(Pair even, Pair nextOdd) {
    const Pair product = odd * even * inverse;
    odd = nextOdd;
    inverse = Both(1.0) / (Both(1.0) + (even + odd) - product);
    delta *= product * inverse;
    value += delta;
  }

  // The lanes that are not done and whose change is small enough.
  PairMask Closing(Pair change) const {
    return open & (Magnitude(change) <= Both(CloseBelow) * Magnitude(value));
  }

  // Ends those lanes.
  void Close(Pair change) {
    const PairMask close = Closing(change);
    doubtful |= close & (Magnitude(change) > Both(SureBelow) * Magnitude(value));
    open &= ~close;
    delta = reinterpret_cast<Pair>(reinterpret_cast<PairMask>(delta) & ~close);
  }
};

bool Any(PairMask mask) { return (mask[0] | mask[1]) != 0; }

// BetaContinuedFraction for all lanes at once, each ended at its own pass; lanes from `count` on
// are not waited for.
template <class Coefficients>
void EvaluateFractions(Coefficients&& coefficients, std::size_t count, Fractions& result) {
  const Pair one = Both(1.0);
  std::array<Steed, Pairs> lanes;
  coefficients.Advance(1);
  for (std::size_t i = 0; i < Pairs; ++i) {
    Steed& lane = lanes[i];
    lane.odd = coefficients.First(i);
    lane.inverse = one / (one + lane.odd);
    lane.value = lane.inverse;
    lane.delta = lane.value;
    lane.open = PairMask{2 * i < count ? -1 : 0, 2 * i + 1 < count ? -1 : 0};
    lane.doubtful = PairMask{0, 0};
    lane.Step(coefficients.Even(i), coefficients.Odd(i));
    // The plain recurrence compares its first approximant with 1.
    lane.Close(one - lane.value);
  }
  int pass = 1;
  bool open = true;
  while (open && pass < FractionLimit) {
    ++pass;
    coefficients.Advance(pass);
    PairMask closing{0, 0};
    for (std::size_t i = 0; i < Pairs; ++i) {
      lanes[i].Step(coefficients.Even(i), coefficients.Odd(i));
      closing |= lanes[i].Closing(lanes[i].delta);
    }
    if (Any(closing)) {
      PairMask left{0, 0};
      for (Steed& lane : lanes) {
        lane.Close(lane.delta);
        left |= lane.open;
      }
      open = Any(left);
    }
  }
  result.passes = pass;
  for (std::size_t i = 0; i < Pairs; ++i) {
    result.values[i] = lanes[i].value;
    result.doubtful[i] = lanes[i].doubtful;
  }
}

}  // namespace

BetaSeries::BetaSeries(double x, double a, double b, Terms terms)
    : x_(x),
      a_(a),
      b_(b),
      logX_(std::log(x)),
      logRest_(std::log(1.0 - x)),
      logGammaB_(LogGamma(b)),
      plain_(terms == Terms::OneByOne || x == 0.0 || x == 1.0) {}

void BetaSeries::Fill() {
  taken_ = 0;
  if (plain_ || a_ + index_ + b_ > LargestSum) {
    FillPlain();
    return;
  }
  Lanes shapes;
  for (std::size_t l = 0; l < Width; ++l) {
    shapes[l] = a_ + (index_ + static_cast<double>(l));
  }
  direct_ = IsDirect(shapes[0]);
  count_ = 1;
  while (count_ < Width && IsDirect(shapes[count_]) == direct_) {
    ++count_;
  }
  Fractions fractions;
  if (direct_) {
    EvaluateFractions(DirectCoefficients(shapes, b_, x_), count_, fractions);
  } else {
    EvaluateFractions(MirroredCoefficients(shapes, b_, x_), count_, fractions);
  }
  for (std::size_t l = 0; l < count_; ++l) {
    values_[l] = fractions.values[l / 2][l % 2];
    if (fractions.doubtful[l / 2][l % 2] != 0) {
      values_[l] = direct_ ? BetaContinuedFraction(shapes[l], b_, x_)
                           : BetaContinuedFraction(b_, shapes[l], 1.0 - x_);
    }
  }
  Finish(shapes);
  index_ += static_cast<double>(count_);
  work_ += static_cast<std::int64_t>(Width) * (fractions.passes + FrontCost);
}

void BetaSeries::FillPlain() {
  int failure = 0;
  int passes = 0;
  values_[0] = BetaCdf(x_, a_ + index_, b_, failure, passes);
  index_ += 1.0;
  count_ = 1;
  work_ += PlainCost * (passes + FrontCost);
}

bool BetaSeries::IsDirect(double shape) const { return (shape + 1.0) / (shape + b_ + 2.0) > x_; }

// The values of the terms from their fractions and their front factors.
void BetaSeries::Finish(const Lanes& shapes) {
  Lanes fronts;
  if (!FollowRatios(shapes, fronts)) {
    const Lanes sums = LogGammasOfSums(shapes, b_);
    for (std::size_t l = 0; l < count_; ++l) {
      fronts[l] = std::exp(FrontExponent(shapes[l], sums[l]));
    }
  }
  for (std::size_t l = 0; l < count_; ++l) {
    const double product = values_[l] * fronts[l];
    values_[l] = direct_ ? product / shapes[l] : 1.0 - product / b_;
  }
}

double BetaSeries::FrontExponent(double shape, double logGammaOfSum) const {
  return logGammaOfSum - LogGamma(shape) - logGammaB_ + shape * logX_ + b_ * logRest_;
}

// Each front factor is the one before times x (shape + b) / shape, but for the error of LogGamma,
// in which the two differ. False where that does not do.
bool BetaSeries::FollowRatios(const Lanes& shapes, Lanes& fronts) const {
  if (shapes[Width - 1] + b_ > LargestLinkedSum) {
    return false;
  }
  const double exponent = FrontExponent(shapes[0], LogGamma(shapes[0] + b_));
  if (!(exponent > SmallestLinkedExponent)) {
    return false;
  }
  const Pair smallestSum = Both(SmallestUnshifted(shapes[0] + b_));
  const Pair smallestShape = Both(SmallestUnshifted(shapes[0]));
  Lanes ratios;
  Lanes excess;
  for (std::size_t l = 0; l < Width; l += 2) {
    const Pair shape = LoadPair(&shapes[l]);
    const Pair sum = shape + Both(b_);
    const Pair ratio = Both(x_) * sum / shape;
    const Pair error =
        LogGammaExcess(Larger(sum, smallestSum)) - LogGammaExcess(Larger(shape, smallestShape));
    ratios[l] = ratio[0];
    ratios[l + 1] = ratio[1];
    excess[l] = error[0];
    excess[l + 1] = error[1];
  }
  double front = std::exp(exponent);
  fronts[0] = front;
  for (std::size_t l = 1; l < Width; ++l) {
    front *= ratios[l - 1];
    fronts[l] = front * (1.0 + (excess[l] - excess[0]));
  }
  return true;
}

}  // namespace poweranalysis
