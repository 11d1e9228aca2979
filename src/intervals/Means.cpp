#include "intervals/Means.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "distributions/NoncentralF.h"
#include "distributions/NoncentralT.h"
#include "distributions/Normal.h"
#include "distributions/SolveParameter.h"
#include "intervals/LimitSearch.h"
#include "procedures/Anova.h"
#include "procedures/FTests.h"
#include "procedures/TTests.h"

namespace poweranalysis {

namespace {

// --- From an observed t.

// P(T <= t) lies on the known side of P(T <= 0), the normal probability of -delta. Beyond the delta
// where that is p, a value can only solve the equation for what is wrong with the distribution far
// in its tails.
bool IsPossible(double delta, double t, double p) {
  constexpr double kSlack = .001;
  const double edge = -NormalQuantile(p);
  return t >= 0 ? delta >= edge - kSlack : delta <= edge + kSlack;
}

// What an observed t is: a design whose delta is the one of a standardized effect of 1.
struct TObservation {
  double t = 0;
  double confidence = 0;
  TDesign unit;
};

// One limit, blank when the search for it was stopped or not begun.
template <class Search>
double SearchedLimit(Said title,
                     IntervalLimits& limits,
                     ProcedureObserver& observer,
                     Search&& search) {
  if (limits.cancelled) {
    return NumericFailure;
  }
  LimitSearch watched(observer, title);
  const double value = search(watched);
  limits.cancelled = watched.stopped();
  return limits.cancelled ? NumericFailure : value;
}

// Kept: a failed delta is divided as well.
double EffectAt(double delta, double unit, bool cancelled) {
  return cancelled ? NumericFailure : delta / unit;
}

IntervalLimits TInterval(const TObservation& observed, ProcedureObserver& observer) {
  const double tail = TailBeyond(observed.confidence);
  IntervalLimits limits;
  const auto limit = [&](Said title, double p, double& delta, double& effect) {
    delta = SearchedLimit(title, limits, observer, [&](SearchObserver& search) {
      return TDeltaLimit(observed.t, observed.unit.df, p, search);
    });
    effect = EffectAt(delta, observed.unit.delta, limits.cancelled);
  };
  limit(Said::ComputingLowerBound, 1 - tail, limits.delta.lower, limits.effect.lower);
  limit(Said::ComputingUpperBound, tail, limits.delta.upper, limits.effect.upper);
  return limits;
}

// --- From an observed F.

struct FObservation {
  double f = 0;
  FDesign unit;  // whose delta is the one of an RMSSE of 1
  double confidence = 0;
  double alpha = 0;
  std::int16_t algorithm = FExact;
};

std::int32_t Narrowed(std::int64_t df) {
  constexpr std::int64_t kLargest = std::numeric_limits<std::int32_t>::max();
  return static_cast<std::int32_t>(std::min(df, kLargest));
}

double FDeltaLimit(const FObservation& observed, double p) {
  int failure = 0;
  return NoncentralFDelta(observed.f, Narrowed(observed.unit.df1), Narrowed(observed.unit.df2), p,
                          failure, observed.algorithm);
}

double RmsseAt(double delta, const FObservation& observed) {
  return delta < 0 ? NumericFailure : std::sqrt(delta / observed.unit.delta);
}

double PowerAt(double delta, const FObservation& observed, CriticalFCache& criticals) {
  if (delta < 0) {
    return NumericFailure;
  }
  int err = 0;
  double critical = NumericFailure;
  return FTestPower(observed.unit.df1, observed.unit.df2, delta, observed.alpha, err,
                    observed.algorithm, critical, criticals);
}

// All but the sizes.
IntervalLimits FInterval(const FObservation& observed, CriticalFCache& criticals) {
  const double tail = TailBeyond(observed.confidence);
  IntervalLimits limits;
  limits.df1 = static_cast<double>(observed.unit.df1);
  limits.df2 = static_cast<double>(observed.unit.df2);
  limits.delta = {FDeltaLimit(observed, 1 - tail), FDeltaLimit(observed, tail)};
  limits.rmsse = {RmsseAt(limits.delta.lower, observed), RmsseAt(limits.delta.upper, observed)};
  limits.power = {PowerAt(limits.delta.lower, observed, criticals),
                  PowerAt(limits.delta.upper, observed, criticals)};
  return limits;
}

// The size that `search` finds for an RMSSE.
template <class Search>
double SizeAt(double rmsse, IntervalLimits& limits, ProcedureObserver& observer, Search& search) {
  if (!(rmsse > 0) || limits.cancelled) {
    return NumericFailure;
  }
  const SearchResult found = search(rmsse);
  observer.Tell(found.refusal);
  limits.cancelled = found.status == SearchCancelled;
  return found.status == SearchOk ? static_cast<double>(found.requiredSize) : NumericFailure;
}

// The greater effect needs the smaller size.
template <class Search>
void PutSizes(IntervalLimits& limits, ProcedureObserver& observer, Search&& search) {
  limits.size.lower = SizeAt(limits.rmsse.upper, limits, observer, search);
  limits.size.upper = SizeAt(limits.rmsse.lower, limits, observer, search);
}

}  // namespace

double TDeltaLimit(double t, std::int32_t df, double p, SearchObserver& observer) {
  // Steps of the recurrence: some ten seconds, and what a second's search has for its evaluations.
  constexpr std::int64_t kStepsOfALimit = 10 * SearchStepLimit;
  constexpr std::int32_t kPolledDf = 20'000;
  constexpr std::int32_t kLongDf = 5'000'000;
  constexpr std::int32_t kUsualEvaluations = 10;
  const bool isLong = df >= kLongDf;
  std::int64_t steps = kStepsOfALimit;
  std::int32_t evaluations = 0;
  const auto residual = [&](double delta, int& failure) {
    ++evaluations;
    steps -= df / 2;
    if (steps < 0 || (df >= kPolledDf && observer.Advance(evaluations))) {
      failure = 1;
      return NumericFailure;
    }
    return SolveResidual(t, delta, df, p, failure, SearchTDelta, 0);
  };
  if (isLong) {
    observer.Start(kUsualEvaluations);
  }
  int status = 0;
  int failure = 0;
  const double delta = SecantSearch(residual, NoncentralTDeltaStart(t, df, p),
                                    SearchPolicyOf(SearchTDelta), status, failure);
  if (isLong) {
    observer.Stop();
  }
  return status == 0 && failure == 0 && IsPossible(delta, t, p) ? delta : NumericFailure;
}

double TDeltaLimit(double t, std::int32_t df, double p) {
  SilentObserver observer;
  return TDeltaLimit(t, df, p, observer);
}

double ContrastEsLimit(double confidence,
                       double t,
                       double ss,
                       std::int64_t n,
                       std::int64_t groups,
                       std::int16_t which,
                       int& err,
                       SearchObserver& observer) {
  const double df = (static_cast<double>(n) - 1) * static_cast<double>(groups);
  err = n < 2 || df > LargestTDf ? 1 : 0;
  if (err != 0) {
    return NumericFailure;
  }
  const double tail = TailBeyond(confidence);
  const double p = which == 0 ? 1 - tail : tail;
  const double delta = TDeltaLimit(t, static_cast<std::int32_t>(df), p, observer);
  return delta * std::sqrt(ss / static_cast<double>(n));
}

double ContrastEsLimit(double confidence,
                       double t,
                       double ss,
                       std::int64_t n,
                       std::int64_t groups,
                       std::int16_t which,
                       int& err) {
  SilentObserver observer;
  return ContrastEsLimit(confidence, t, ss, n, groups, which, err, observer);
}

IntervalLimits OneMeanInterval(const T1Params& record, ProcedureObserver& observer) {
  return TInterval({record.TObserved, record.Confidence, OneGroupDesign(1, record.SampleSize)},
                   observer);
}

IntervalLimits TwoMeansInterval(const T2Params& record, ProcedureObserver& observer) {
  return TInterval({record.TObserved, record.Confidence,
                    TwoGroupsDesign(1, record.SampleSizeN1, record.SampleSizeN2)},
                   observer);
}

IntervalLimits PairedMeansInterval(const T3Params& record, ProcedureObserver& observer) {
  return TInterval({record.TObserved, record.Confidence, OneGroupDesign(1, record.SampleSize)},
                   observer);
}

IntervalLimits ContrastInterval(const PCParams& record, ProcedureObserver& observer) {
  IntervalLimits limits;
  if (!(record.SumOfSquaredWeights > 0)) {
    return limits;
  }
  const auto limit = [&](Said title, std::int16_t which) {
    return SearchedLimit(title, limits, observer, [&](SearchObserver& search) {
      int err = 0;
      return ContrastEsLimit(record.Confidence, record.TObserved, record.SumOfSquaredWeights,
                             record.SampleSize, record.NumberOfGroups, which, err, search);
    });
  };
  limits.effect.lower = limit(Said::ComputingLowerBound, 0);
  limits.effect.upper = limit(Said::ComputingUpperBound, 1);
  return limits;
}

IntervalLimits OneWayInterval(const AV1Params& record,
                              std::int64_t sizeLimit,
                              ProcedureObserver& observer) {
  CriticalFCache criticals;
  IntervalLimits limits =
      FInterval({record.FObserved, OneWayDesign(record.NumberOfGroups, record.N, 1),
                 record.Confidence, record.Alpha, record.Algorithm},
                criticals);
  PutSizes(limits, observer, [&](double rmsse) {
    const OneWayTest test = {record.NumberOfGroups, rmsse, record.Alpha, record.ModelType,
                             record.Algorithm};
    return OneWayRequiredN({test, record.Alpha, record.PowerGoal, sizeLimit}, criticals, observer);
  });
  return limits;
}

IntervalLimits TwoWayInterval(const AV2Params& record,
                              std::int64_t sizeLimit,
                              ProcedureObserver& observer) {
  const FDesign unit = TwoWayDesign(record.Rows, record.Columns, record.N, 1, record.EffectToTest);
  if (unit.df1 < 1) {
    return {};
  }
  CriticalFCache criticals;
  IntervalLimits limits = FInterval(
      {record.FObserved, unit, record.Confidence, record.Alpha, record.Algorithm}, criticals);
  PutSizes(limits, observer, [&](double rmsse) {
    return TwoWayRequiredN({record.Rows, record.Columns, rmsse, record.Alpha, record.PowerGoal,
                            record.Algorithm, record.EffectToTest, sizeLimit},
                           criticals, observer);
  });
  return limits;
}

}  // namespace poweranalysis
