#include "intervals/ModelFit.h"

#include <algorithm>
#include <cmath>

#include "distributions/NoncentralChiSquare.h"

namespace poweranalysis {

namespace {

constexpr i32 kSeveralGroups = 2;

// The discrepancy of a model at which the statistic has the cumulative probability p.
double DiscrepancyAt(const SEMParams& record, double p) {
  int word = 0;
  const double delta =
      NoncentralChiSquareDelta(record.ObservedChiSquare, record.DegreesOfFreedom, p, word);
  if (delta == NumericFailure) {
    return word == NoSuchChiSquareDelta ? 0 : NumericFailure;
  }
  return std::max(delta / (record.SampleSize - record.Groups), 0.0);
}

double RmseaOf(double discrepancy, const SEMParams& record) {
  return discrepancy == NumericFailure
             ? NumericFailure
             : std::sqrt(record.Groups * discrepancy / record.DegreesOfFreedom);
}

double Gamma1Of(double discrepancy, const SEMParams& record) {
  return discrepancy == NumericFailure ? NumericFailure : record.P / (2 * discrepancy + record.P);
}

double Gamma2Of(double gamma1, const SEMParams& record) {
  const double moments = (record.P + 1.0) * record.P * .5 / record.DegreesOfFreedom;
  return gamma1 == NumericFailure ? NumericFailure : 1 - (1 - gamma1) * moments;
}

}  // namespace

IntervalLimits ModelFitInterval(const SEMParams& record) {
  IntervalLimits limits;
  if (record.SampleSize <= record.Groups) {
    return limits;
  }
  const double tail = TailBeyond(record.Confidence);
  const double low = DiscrepancyAt(record, 1 - tail);
  const double high = DiscrepancyAt(record, tail);
  limits.rmsea = {RmseaOf(low, record), RmseaOf(high, record)};
  if (record.Groups < kSeveralGroups) {
    limits.gamma1 = {Gamma1Of(high, record), Gamma1Of(low, record)};
    limits.gamma2 = {Gamma2Of(limits.gamma1.lower, record), Gamma2Of(limits.gamma1.upper, record)};
  }
  return limits;
}

}  // namespace poweranalysis
