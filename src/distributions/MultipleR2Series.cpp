#include "distributions/MultipleR2Series.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <limits>

#include "distributions/Beta.h"
#include "distributions/BetaSeries.h"

namespace poweranalysis::r2 {

namespace {

constexpr std::int64_t TermsBetweenQuestions = 4096;
constexpr std::int64_t SearchWork = 20000000;
constexpr std::int64_t LogarithmicTerm = 4;  // the work of one

// The series.
constexpr double SmallTerm = 1e-16;       // terms below it are summed by themselves
constexpr double NegligibleRest = 1e-18;  // of the terms up to the peak index
constexpr double BoundedRest = 1e-07;     // of a geometric tail
// Kept: stands for the first weight ratio where that is zero, so that its logarithm exists.
constexpr double RatioFloor = 2.225073858507201e-305;

// Weights below 10^-330 make a term of zero whatever its beta function.
constexpr double VanishingWeight = -330.0;

// A running product of the ratios of the weights agrees with the sum of their logarithms to 5e-13
// while the logarithm of the first weight times the index of the peak is no larger than this.
// Beyond, that sum has its own rounding errors, and is kept.
constexpr double ProductWeights = 1e4;
constexpr double SmallestFirstLog = -250.0;

// Guard: from this index of the peak the sum of the logarithms, and a search with it, would take
// seconds, and its rounding errors reach 1e-8. The weights are then a running product from the
// first that is no less than 10^-300, which comes in closed form.
constexpr double LongSeries = 2e5;
constexpr double FirstLongWeight = -300.0;

// The power of such a sum need not be taken at every term while the rounding errors of the sum are
// small: the ratios carry the weight on.
constexpr double SmoothLogs = -1000.0;
constexpr double SmallestAnchor = 1e-290;
constexpr int ProductsBetweenPowers = 15;

// The continued fraction of a beta function stops with a relative error of some 1e-10; the
// recurrence between beta functions has no such error. A term whose share of the result is so
// small that this cannot show takes the recurrence, any other its own fraction.
constexpr double OwnFraction = 2e-6;

// Steps of continued fractions that a series may take about its peak; a series that would need
// more takes the recurrence for all terms. A step is worth a quarter of a term.
constexpr double FractionSteps = 1e7;
constexpr std::int64_t StepsPerTerm = 4;

// Up to this index of the peak every term counts, and all have their own fractions at once.
constexpr double ShortSeries = 48.0;

// A block is half as long as the part of the series before it.
constexpr double SmallestBlock = 8.0;
constexpr std::size_t LargestBlock = 1024;
constexpr double SmallestFront = 1e-280;
constexpr double InvisibleFront = 1e-25;
}  // namespace

Watch::Watch(SearchObserver& observer) : observer_(observer), nextAsk_(TermsBetweenQuestions) {
  observer_.Start(static_cast<std::int32_t>(LargestIndex));
}

Watch::~Watch() { observer_.Stop(); }

bool Watch::Count(std::int64_t terms) {
  work_ += terms;
  if (work_ < nextAsk_) {
    return cancelled_;
  }
  return Ask();
}

bool Watch::Ask() {
  nextAsk_ = work_ + TermsBetweenQuestions;
  const std::int64_t shown =
      std::min<std::int64_t>(work_, std::numeric_limits<std::int32_t>::max());
  cancelled_ = cancelled_ || observer_.Advance(static_cast<std::int32_t>(shown));
  return cancelled_;
}

bool Watch::IsExhausted() const { return work_ - searchStart_ > SearchWork; }

namespace {

// The larger root of the equation that the peak of the bounded terms satisfies, as a whole number,
// plus 2. Left a double: it passes any integer for a rho2 near 1.
double PeakIndex(double rho2, double N, double P) {
  const double r = std::sqrt(rho2);
  const double S = (P - 2.0) * (P - 2.0) + 4.0 * rho2 * (N - 2.0) * (N - P);
  const double G = 8.0 - 4.0 * N - (4.0 - 4.0 * N + 2.0 * P) / (1.0 - rho2);
  const double R = 2.0 * std::sqrt(S) / ((r - 1.0) * (r + 1.0));
  return std::trunc(std::max((G + R) / 8.0, (G - R) / 8.0)) + 2.0;
}

// x log(x / m) + m - x, the deviance of x from m, exact near x = m.
double Deviance(double x, double m) {
  const double v = (x - m) / (x + m);
  if (std::fabs(v) > 0.1) {
    return x * std::log(x / m) + m - x;
  }
  double sum = (x - m) * v;
  double power = 2.0 * x * v;
  for (double odd = 3.0; odd < 40.0; odd += 2.0) {
    power *= v * v;
    sum += power / odd;
  }
  return sum;
}

// What Stirling's formula leaves out of log(x!), x >= 1.
double StirlingRest(double x) {
  if (x < 15.0) {
    return LogGamma(x + 1.0) - ((x + 0.5) * std::log(x) - x + 0.918938533204672742);
  }
  const double square = x * x;
  return (1.0 / 12.0 - (1.0 / 360.0 - (1.0 / 1260.0 - 1.0 / (1680.0 * square)) / square) / square) /
         x;
}

// Natural logarithm of the weight in closed form, for j >= 1: the weight is A / (A + j) times a
// binomial probability, and that is a deviance away from its peak (Loader, C. (2000). Fast and
// accurate computation of binomial probabilities).
double LogWeight(const SeriesShape& shape, double j) {
  const double A = shape.A;
  const double total = A + j;
  return StirlingRest(total) - StirlingRest(A) - StirlingRest(j) -
         Deviance(A, total * (1.0 - shape.rho2)) - Deviance(j, total * shape.rho2) +
         0.5 * std::log(A / (6.283185307179586 * j * total));
}

constexpr double Ln10 = 2.302585092994046;

// The first index whose weight is no less than 10^-300, by bisection between 0 and the peak of the
// weights, up to which they rise; one beyond the last index of the series if there is none.
double FirstIndexOfLongSeries(const SeriesShape& shape) {
  const auto vanishes = [&](double j) { return LogWeight(shape, j) < FirstLongWeight * Ln10; };
  const double peak = std::floor((shape.A - 1.0) * shape.rho2 / (1.0 - shape.rho2));
  double vanishing = 0.0;
  double standing = std::min(std::max(1.0, peak), LargestIndex);
  if (vanishes(standing)) {
    return LargestIndex + 1.0;
  }
  while (standing - vanishing > 1.0) {
    const double middle = std::floor((vanishing + standing) / 2.0);
    (vanishes(middle) ? vanishing : standing) = middle;
  }
  return standing;
}

// The weights w_j in order of j, by a running product or by the sum of their logarithms.
class Weights {
 public:
  explicit Weights(const SeriesShape& shape) : shape_(shape) {
    const bool isLong = shape.M > LongSeries;
    byProduct_ = shape.F > SmallestFirstLog && (isLong || -shape.F * shape.M < ProductWeights);
    if (byProduct_) {
      weight_ = std::pow(10.0, shape.F);
    } else if (isLong) {
      byProduct_ = true;
      j_ = FirstIndexOfLongSeries(shape);
      weight_ = std::exp(LogWeight(shape, j_));
    } else {
      weight_ = std::pow(10.0, shape.F);
      logRho2_ = std::log10(shape.rho2);
    }
  }

  [[nodiscard]] double Index() const { return j_; }
  [[nodiscard]] double Value() const { return weight_; }
  [[nodiscard]] std::int64_t WorkOfTerm() const { return byProduct_ ? 1 : LogarithmicTerm; }
  [[nodiscard]] bool Vanishes() const { return !byProduct_ && Log() < VanishingWeight; }

  void Next() {
    j_ += 1.0;
    if (byProduct_) {
      weight_ *= (shape_.A + j_ - 1.0) * shape_.rho2 / j_;
    } else if (j_ == 1.0) {
      L_ = std::log10(shape_.A * shape_.rho2 * shape_.A / (shape_.B + shape_.C));
    } else {
      // The two factors of the hypergeometric weight, A + j - 1 and B + C + j - 1, are equal.
      const double c = shape_.A + j_ - 1.0;
      const double log = std::log10(c);
      L_ = L_ + 2.0 * log + logRho2_ - std::log10(j_) - log;
      weight_ *= c * shape_.rho2 / j_;
    }
    if (!byProduct_ && --productsLeft_ <= 0) {
      weight_ = std::pow(10.0, Log());
      productsLeft_ = shape_.F > SmoothLogs && weight_ > SmallestAnchor ? ProductsBetweenPowers : 0;
    }
  }

 private:
  [[nodiscard]] double Log() const { return L_ + shape_.F; }

  const SeriesShape& shape_;
  bool byProduct_ = false;
  int productsLeft_ = 0;
  double j_ = 0.0;
  double L_ = 0.0;
  double weight_ = 0.0;
  double logRho2_ = 0.0;
};

// Weights and beta functions I_x(B + j, C) of consecutive terms.
class Terms {
 public:
  Terms(const SeriesShape& shape, Weights& weights)
      : shape_(shape), weights_(weights), isShort_(shape.M <= ShortSeries) {
    if (isShort_) {
      return;
    }
    logX_ = std::log(shape.x);
    logY_ = std::log(1.0 - shape.x);
    logGammaC_ = LogGamma(shape.C);
    const double spread = std::sqrt(shape.A * shape.rho2) / (1.0 - shape.rho2);
    ownFractions_ = 9.0 * spread * std::sqrt(2.0 * shape.A) < FractionSteps;
  }

  // Moves to the block of terms that starts where the weights stand.
  void NextBlock();

  [[nodiscard]] std::size_t Size() const { return size_; }
  [[nodiscard]] double First() const { return first_; }
  [[nodiscard]] double Weight(std::size_t i) const { return weight_[i]; }
  [[nodiscard]] double Beta(std::size_t i) const { return beta_[i]; }

  // The work of the block, in terms.
  [[nodiscard]] std::int64_t Work() const { return work_; }

 private:
  double Fresh(double j) const {
    int failure = 0;
    return std::max(0.0, BetaCdf(shape_.x, shape_.B + j, shape_.C, failure));
  }

  // The front factor of BetaCdf at the index.
  double Front(double j) const {
    const double a = shape_.B + j;
    return std::exp(LogGamma(a + shape_.C) - LogGamma(a) - logGammaC_ + a * logX_ +
                    shape_.C * logY_);
  }

  bool IsLowerTail(double a) const { return (a + 1.0) / (a + shape_.C + 2.0) > shape_.x; }

  void FillBeta();
  void FillByRecurrence(double lowest);
  void FillOwnFractions();
  void FillFractions(std::size_t begin, std::size_t end);

  const SeriesShape& shape_;
  Weights& weights_;
  bool isShort_;
  double logX_ = 0.0;
  double logY_ = 0.0;
  double logGammaC_ = 0.0;
  bool ownFractions_ = false;
  double first_ = 0.0;
  std::size_t size_ = 0;
  std::int64_t work_ = 0;
  std::array<double, LargestBlock> weight_;
  std::array<double, LargestBlock> beta_;
};

void Terms::NextBlock() {
  first_ = weights_.Index();
  const double size = std::floor(std::max(SmallestBlock, first_ / 2.0));
  size_ = size < static_cast<double>(LargestBlock) ? static_cast<std::size_t>(size) : LargestBlock;
  work_ = static_cast<std::int64_t>(size_) * weights_.WorkOfTerm();
  for (std::size_t i = 0; i < size_; ++i) {
    weight_[i] = weights_.Value();
    weights_.Next();
  }
  FillBeta();
}

void Terms::FillBeta() {
  if (shape_.x == 0.0 || shape_.x == 1.0) {
    std::fill_n(beta_.begin(), size_, shape_.x);
    return;
  }
  if (isShort_) {
    FillFractions(0, size_);
    return;
  }
  const double end = first_ + static_cast<double>(size_);
  const double lowest = Front(first_) / (shape_.B + first_);
  const double highest = Front(end) / (shape_.B + end);
  if (lowest > SmallestFront && highest > SmallestFront) {
    FillByRecurrence(lowest);
    if (ownFractions_) {
      FillOwnFractions();
    }
  } else if (std::max(lowest, highest) < InvisibleFront && !IsLowerTail(shape_.B + end)) {
    // Far above the mean of every beta distribution of the block.
    std::fill_n(beta_.begin(), size_, 1.0);
  } else {
    for (std::size_t i = 0; i < size_; ++i) {
      beta_[i] = Fresh(first_ + static_cast<double>(i));
    }
  }
}

// I_x(a, C) - I_x(a + 1, C) = x^a (1 - x)^C / (a B(a, C)): down from a fresh one at the top in the
// lower tail, up from one at the bottom for the complements of the upper tail. All terms are
// positive.
void Terms::FillByRecurrence(double lowest) {
  std::array<double, LargestBlock> front;
  std::size_t upper = 0;
  double a = shape_.B + first_;
  double f = lowest;
  for (std::size_t i = 0; i < size_; ++i) {
    front[i] = f;
    upper = IsLowerTail(a) ? upper : i + 1;
    f *= shape_.x * (a + shape_.C) / (a + 1.0);
    a += 1.0;
  }
  if (upper > 0) {
    beta_[0] = Fresh(first_);
    double complement = 1.0 - beta_[0];
    for (std::size_t i = 1; i < upper; ++i) {
      complement += front[i - 1];
      beta_[i] = 1.0 - complement;
    }
  }
  if (upper < size_) {
    double beta = Fresh(first_ + static_cast<double>(size_));
    for (std::size_t i = size_; i-- > upper;) {
      beta += front[i];
      beta_[i] = beta;
    }
  }
}

void Terms::FillOwnFractions() {
  const auto shows = [this](std::size_t i) {
    return weight_[i] * std::min(beta_[i], 1.0 - beta_[i]) > OwnFraction;
  };
  std::size_t begin = 0;
  while (begin < size_ && !shows(begin)) {
    ++begin;
  }
  std::size_t end = size_;
  while (end > begin && !shows(end - 1)) {
    --end;
  }
  if (begin < end) {
    FillFractions(begin, end);
  }
}

void Terms::FillFractions(std::size_t begin, std::size_t end) {
  BetaSeries series(shape_.x, shape_.B + first_ + static_cast<double>(begin), shape_.C);
  for (std::size_t i = begin; i < end; ++i) {
    beta_[i] = series.Next();
  }
  work_ += series.Work() / StepsPerTerm;
}

// Two sums, so that the small terms are not lost against the large ones.
struct SplitSum {
  double large = 0.0;
  double small = 0.0;

  void Add(double T) { (T >= SmallTerm ? large : small) += T; }
  [[nodiscard]] double Total() const { return large + small; }
};

// A bound of the ratio of all terms from the one at the index.
double RatioBound(const SeriesShape& shape, double j) {
  const double c = j + shape.A - 1.0;
  return c * c * shape.rho2 / ((j + shape.B - 1.0) * j);
}

bool RestIsNegligible(const SeriesShape& shape, double j, double T, double previous) {
  return (shape.M - j) * T <= NegligibleRest && T < previous && j > 1.0 && j < shape.M;
}

bool RestIsBounded(const SeriesShape& shape, double j, double T) {
  if (!(j > 0.0 && T < BoundedRest)) {
    return false;
  }
  const double R = RatioBound(shape, j);
  return R < 1.0 && T / (1.0 - R) < BoundedRest;
}

// Whether the terms, too small for a double so far, have passed their largest already.
bool HasFallen(const SeriesShape& shape, double j) {
  int failure = 0;
  const double before = BetaCdf(shape.x, shape.B + j - 1.0, shape.C, failure);
  const double here = BetaCdf(shape.x, shape.B + j, shape.C, failure);
  const double ratio = (shape.A + j - 1.0) * shape.rho2 / j;
  return !(here > 0.0) || here * ratio < before || RatioBound(shape, j) < 1.0;
}

// Passes over the terms whose weights vanish. True when the series ends among them, or would have
// taken ten million terms to come out of them.
bool EndsBeforeItBegins(const SeriesShape& shape, Weights& weights, int& failure, Watch& watch) {
  if (weights.Index() > LargestIndex) {
    failure = HasFallen(shape, LargestIndex) ? 0 : NotComputed;
    return true;
  }
  if (weights.Index() > 0.0 && HasFallen(shape, weights.Index())) {
    return true;
  }
  double nextTest = 64.0;
  while (weights.Vanishes()) {
    weights.Next();
    const double j = weights.Index();
    if (j >= nextTest) {
      nextTest = j + std::max(64.0, j / 8.0);
      if (HasFallen(shape, j)) {
        return true;
      }
    }
    if (watch.Count(LogarithmicTerm)) {
      failure = Cancelled;
      return true;
    }
  }
  return false;
}

// The series at rho2 = 0: the first weight is 1, the second the floor, and there is no third.
double CentralSum(const SeriesShape& shape) {
  int failure = 0;
  const double first = std::max(0.0, BetaCdf(shape.x, shape.B, shape.C, failure));
  // The beta functions fall, so the second term is at most the floor times the first: added or
  // not, the sum is the same number.
  return first + RatioFloor * first;
}

}  // namespace

SeriesShape::SeriesShape(double at, double population, std::int32_t n, std::int32_t k)
    : x(at),
      rho2(population),
      A((n - 1.0) / 2.0),
      B((k - 1.0) / 2.0),
      C((static_cast<double>(n) - k) / 2.0),
      F(A * std::log10(1.0 - population)),
      M(PeakIndex(population, n - 1.0, k - 1.0)) {}

double SeriesSum(const SeriesShape& shape, int& failure, Watch& watch) {
  if (shape.rho2 == 0.0) {
    return CentralSum(shape);
  }
  Weights weights(shape);
  if (EndsBeforeItBegins(shape, weights, failure, watch)) {
    return failure == Cancelled ? -1.0 : 0.0;
  }
  Terms terms(shape, weights);
  SplitSum sum;
  double previous = 0.0;
  while (true) {
    terms.NextBlock();
    for (std::size_t i = 0; i < terms.Size(); ++i) {
      const double j = terms.First() + static_cast<double>(i);
      if (j > LargestIndex) {
        failure = NotComputed;
        return sum.Total();
      }
      if (!(terms.Beta(i) > 0.0)) {
        return sum.Total();
      }
      const double T = terms.Weight(i) * terms.Beta(i);
      sum.Add(T);
      if (RestIsNegligible(shape, j, T, previous) || RestIsBounded(shape, j, T)) {
        return sum.Total();
      }
      previous = T;
    }
    if (watch.Count(terms.Work())) {
      failure = Cancelled;
      return -1.0;
    }
  }
}

}  // namespace poweranalysis::r2
