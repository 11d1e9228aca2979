#include "distributions/Binomial.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "distributions/Beta.h"
#include "distributions/Common.h"
#include "distributions/Normal.h"
#include "distributions/SolveParameter.h"

namespace poweranalysis {

namespace {

constexpr double LongestStep = 200.0;
constexpr double FlatDifference = 1e-10;
constexpr int PassLimit = 2000;
constexpr double CountsEnd = 2147483648.0;  // 2^31

// A count and the distribution function there.
struct Point {
  double k;
  double value;
};

// The search for the smallest k whose value reaches p: two points that close in on it. An end that
// was never evaluated has log(p) for its value.
struct CountSearch {
  double p;
  double n;
  double pi;
  Point lower;
  Point upper;
  int failure = 0;

  double ValueAt(double k) { return BinomialCdf(n, pi, k, failure); }

  void Raise(const Point& point) {
    if (lower.k < point.k) {
      lower = point;
    }
  }

  void Lower(const Point& point) {
    if (point.k < upper.k) {
      upper = point;
    }
  }

  bool IsOpen() const { return upper.k - lower.k >= 2.0; }

  // The next step by the slope of the last one.
  double StepAfter(double step, double previous, double value) const {
    const double d = std::fabs(value - previous);
    if (d <= FlatDifference) {
      return 1.0;
    }
    const double next = std::trunc(std::fabs(value - p) * step / d);
    return next == 0.0 ? 1.0 : std::min(next, LongestStep);
  }

  void Place(const Point& point) {
    if (point.value < p) {
      Raise(point);
    } else {
      Lower(point);
    }
  }

  // Walks from the first count and its neighbour until the ends are neighbours. At 1 that is so
  // whatever the lower end: the caller has answered 0 itself.
  void Walk(const Point& first, double direction) {
    double step = 1.0;
    double previous = first.value;
    Point point{std::max(first.k + direction, 0.0), 0.0};
    point.value = ValueAt(point.k);
    Place(point);
    for (int pass = 0; pass < PassLimit && failure == 0 && IsOpen(); ++pass) {
      step = StepAfter(step, previous, point.value);
      previous = point.value;
      point.k = std::min(std::max(point.k + direction * step, 0.0), n);
      point.value = ValueAt(point.k);
      direction = point.value < p ? 1.0 : -1.0;
      Place(point);
    }
  }

  // What the walk has left open is halved.
  void Halve() {
    while (failure == 0 && IsOpen()) {
      const double k = std::floor(lower.k + (upper.k - lower.k) / 2.0);
      const double value = ValueAt(k);
      (value < p ? lower : upper) = {k, value};
    }
  }

  Point Answer() const {
    if (lower.value == p) {
      return lower;
    }
    // Nothing below n reaches p, and n was never evaluated.
    return upper.value < p ? Point{n, 1.0} : upper;
  }
};

double Fail(int& failure) {
  failure = 1;
  return NumericFailure;
}

double NormalEstimate(double p, double n, double pi) {
  const double k = std::ceil(n * pi + NormalQuantile(p) * std::sqrt((1.0 - pi) * pi * n));
  return std::min(std::max(k, 1.0), n);
}

// Kept: the last term of Wilson's limit stands outside the square root.
double ScoreStart(double n, double p, double k) {
  const double q = k / n;
  const double z = NormalQuantile(p);
  return (q + z * z / (2.0 * n) - z * std::sqrt(q * (1.0 - q) / n) + z * z / (4.0 * n * n)) * n /
         (z * z + n);
}

}  // namespace

double BinomialCdf(double n, double pi, double k, int& failure) {
  failure = 0;
  if (!(n >= 1.0) || std::isnan(k)) {
    return Fail(failure);
  }
  if (k < 0.0) {
    return 0.0;
  }
  if (k >= n) {
    return 1.0;
  }
  const double m = std::floor(k);
  const double beta = BetaCdf(pi, m + 1.0, n - m, failure);
  if (failure != 0) {
    return NumericFailure;
  }
  return std::isnan(beta) ? Fail(failure) : 1.0 - beta;
}

double BinomialQuantile(double p, double n, double pi, double& actual, int& failure, double logP) {
  failure = 0;
  if (!(n >= 1.0 && n < CountsEnd && pi >= 0.0 && pi <= 1.0 && p >= 0.0 && p <= 1.0)) {
    return Fail(failure);
  }
  if (n * std::log(pi) >= logP) {
    // Kept: `actual` is left to the caller.
    return n;
  }
  CountSearch search{p, n, pi, {0.0, logP}, {n, logP}};
  Point first{NormalEstimate(p, n, pi), 0.0};
  first.value = search.ValueAt(first.k);
  const bool isShort = first.value <= p;
  (isShort ? search.lower : search.upper) = first;
  search.Walk(first, isShort ? 1.0 : -1.0);
  search.Halve();
  if (search.failure != 0) {
    failure = search.failure;
    return NumericFailure;
  }
  const Point answer = search.Answer();
  actual = answer.value;
  return answer.k;
}

double BinomialProportionForP(double n, double p, double k, int& failure) {
  failure = 0;
  if (!(n >= 1.0 && n < CountsEnd)) {
    return Fail(failure);
  }
  int status = 0;
  const double pi = SolveParameter(k, static_cast<std::int32_t>(n), p, ScoreStart(n, p, k), status,
                                   failure, SearchBinomialProportion, 0);
  if (failure == 0) {
    failure = status;
  }
  return pi;
}

CountedProportion RoundProportionToCount(double proportion, double n) {
  const double low = std::floor(proportion * n);
  const double high = std::ceil(proportion * n);
  const bool lowIsNearer = std::fabs(high / n - proportion) > std::fabs(low / n - proportion);
  const double count = lowIsNearer ? low : high;
  return {count, count / n};
}

}  // namespace poweranalysis
