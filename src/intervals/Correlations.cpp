#include "intervals/Correlations.h"

#include "distributions/Correlation.h"
#include "distributions/MultipleR2.h"
#include "intervals/LimitSearch.h"
#include "procedures/SquaredCorrelation.h"

namespace poweranalysis {

namespace {

// --- One correlation.

double RhoLimit(const RParams& record,
                double p,
                Said title,
                IntervalLimits& limits,
                ProcedureObserver& observer) {
  if (limits.cancelled) {
    return NumericFailure;
  }
  LimitSearch search(observer, title);
  int failure = 0;
  const double rho =
      CorrelationRhoForP(record.SampleSize, record.RObserved, p, failure, record.Algorithm, search);
  limits.cancelled = search.stopped();
  return failure == 0 && !limits.cancelled ? rho : NumericFailure;
}

double CorrelationPValue(const RParams& record) {
  const double c =
      CorrelationCdf(record.Rho0, record.SampleSize, record.RObserved, record.Algorithm);
  if (c == NumericFailure) {
    return NumericFailure;
  }
  switch (record.H0Type) {
    case H0TwoTailed:
      return (1 - c) + (1 - c);
    case H0AtMost:
      return 1 - c;
    case H0AtLeast:
      return c;
    default:
      return NumericFailure;
  }
}

// --- Squared multiple correlation.

constexpr int kStopped = 2;  // the word of a search that the observer stopped

// Does the test of this form, other than the two-tailed one, point from the null value to here?
bool IsBeyondNull(double limit, const R2Params& record) {
  if (limit == NumericFailure) {
    return false;
  }
  return record.H0Type == H0AtLeast ? limit < record.R2Null : limit > record.R2Null;
}

// Power and size at the limits of P2.
class AtLimits {
 public:
  AtLimits(const R2Params& record, ProcedureObserver& observer, IntervalLimits& limits)
      : record_(record), observer_(observer), limits_(limits) {}

  double Power(double rho2) {
    if (limits_.cancelled || !IsBeyondNull(rho2, record_)) {
      return NumericFailure;
    }
    int err = 0;
    Refusal refusal;
    const double power =
        SquaredCorrelationPower({record_.SampleSize, record_.TotalNumberOfVars, record_.Alpha,
                                 record_.R2Null, record_.Algorithm, record_.H0Type},
                                rho2, err, refusal, criticals_, observer_);
    observer_.Tell(refusal);
    limits_.cancelled = err == kStopped;
    return power;
  }

  double Size(double rho2) {
    if (limits_.cancelled || !IsBeyondNull(rho2, record_)) {
      return NumericFailure;
    }
    const SearchResult found =
        SquaredCorrelationRequiredN({rho2, record_.R2Null, record_.Alpha, record_.PowerGoal,
                                     record_.TotalNumberOfVars, record_.Algorithm, record_.H0Type},
                                    observer_);
    observer_.Tell(found.refusal);
    limits_.cancelled = found.status == SearchCancelled;
    return found.status == SearchOk ? static_cast<double>(found.requiredSize) : NumericFailure;
  }

 private:
  const R2Params& record_;
  ProcedureObserver& observer_;
  IntervalLimits& limits_;
  SquaredCorrelationCriticalCache criticals_;
};

void PutSquaredCorrelationLimits(const R2Params& record,
                                 ProcedureObserver& observer,
                                 IntervalLimits& limits) {
  EvaluationObserver evaluation(observer);
  int lower = 0;
  int upper = 0;
  int oneSided = 0;
  MultipleR2Interval(record.TotalNumberOfVars, record.R2Observed, record.SampleSize,
                     record.Confidence, limits.rho2.lower, limits.rho2.upper, limits.oneSided.lower,
                     lower, upper, oneSided, record.Algorithm, limits.pValue, evaluation);
  const auto stop = [&limits](int word, double& limit) {
    if (word == kStopped) {
      limits.cancelled = true;
      limit = NumericFailure;
    }
  };
  stop(lower, limits.rho2.lower);
  stop(upper, limits.rho2.upper);
  stop(oneSided, limits.oneSided.lower);
}

}  // namespace

IntervalLimits CorrelationInterval(const RParams& record, ProcedureObserver& observer) {
  const double tail = TailBeyond(record.Confidence);
  IntervalLimits limits;
  limits.rho.lower = RhoLimit(record, 1 - tail, Said::ComputingLowerBound, limits, observer);
  limits.rho.upper = RhoLimit(record, tail, Said::ComputingUpperBound, limits, observer);
  limits.pValue = CorrelationPValue(record);
  return limits;
}

IntervalLimits SquaredCorrelationInterval(const R2Params& record, ProcedureObserver& observer) {
  IntervalLimits limits;
  PutSquaredCorrelationLimits(record, observer, limits);
  if (record.H0Type == H0TwoTailed) {
    return limits;
  }
  const bool pointsDown = record.H0Type == H0AtLeast;
  // The limit that the test detects least, and the one that it detects best.
  const double near = pointsDown ? limits.rho2.upper : limits.rho2.lower;
  const double far = pointsDown ? limits.rho2.lower : limits.rho2.upper;
  AtLimits at(record, observer, limits);
  limits.power = {at.Power(near), at.Power(far)};
  limits.size = {at.Size(far), at.Size(near)};
  return limits;
}

}  // namespace poweranalysis
