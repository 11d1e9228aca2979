#include "intervals/OneProportion.h"

#include <algorithm>
#include <cmath>

#include "distributions/Binomial.h"
#include "distributions/Normal.h"

namespace poweranalysis {

namespace {

struct Observed {
  double n = 0;
  double x = 0;
  double p = 0;
  double tail = 0;
  double z = 0;  // of 1 - tail
  double w = 0;  // of tail, below 0
};

Observed ObservationOf(const P1Params& record) {
  const double n = record.SampleSize;
  const CountedProportion counted = RoundProportionToCount(record.PObserved, n);
  const double tail = TailBeyond(record.Confidence);
  return {
      n, counted.count, counted.proportion, tail, NormalQuantile(1 - tail), NormalQuantile(tail)};
}

double PiAt(const Observed& o, double probability, double count) {
  int failure = 0;
  const double pi = BinomialProportionForP(o.n, probability, count, failure);
  return failure == 0 ? pi : NumericFailure;
}

LimitPair ExactLimits(const Observed& o) {
  return {o.x == 0 ? 0 : PiAt(o, 1 - o.tail, o.x - 1), o.x == o.n ? 1 : PiAt(o, o.tail, o.x)};
}

// The two differ in the sign of the correction for continuity, `side` -1 below and 1 above.
double ApproximateLimit(const Observed& o, double z, double side) {
  const double root = std::sqrt(z * z + side * 2 - 1 / o.n + 4 * o.p * ((1 - o.p) * o.n - side));
  return (2 * o.p * o.n + z * z + side - z * root) / (2 * (z * z + o.n));
}

LimitPair ApproximateLimits(const Observed& o) {
  return {o.p == 0 ? 0 : ApproximateLimit(o, o.z, -1), o.p == 1 ? 1 : ApproximateLimit(o, o.w, 1)};
}

LimitPair CrudeLimits(const Observed& o) {
  const double s = std::sqrt(o.p * (1 - o.p) / o.n);
  return {std::max(o.p - s * o.z, 0.0), o.p - s * o.w};
}

}  // namespace

void TieProportionToCount(P1Params& record) {
  const CountedProportion counted = RoundProportionToCount(record.PObserved, record.SampleSize);
  record.PObserved = counted.proportion;
  record.XObserved = static_cast<i32>(counted.count);
}

IntervalLimits OneProportionInterval(const P1Params& record) {
  const Observed observed = ObservationOf(record);
  IntervalLimits limits;
  limits.exact = ExactLimits(observed);
  limits.approximate = ApproximateLimits(observed);
  limits.crude = CrudeLimits(observed);
  return limits;
}

}  // namespace poweranalysis
