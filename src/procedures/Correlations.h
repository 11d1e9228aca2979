#pragma once

#include <cstdint>

#include "distributions/Correlation.h"
#include "procedures/CriticalPair.h"
#include "procedures/RequiredSizeSearch.h"

// Power and required size of the test of one correlation against a null value, by the distribution
// of r or by Fisher's z, and of the test that two independent correlations are equal, by Fisher's
// z.
namespace poweranalysis {

// The tolerance of the null hypothesis: on the scale of r, and for the search of two correlations
// on that of Fisher's z.
inline constexpr double CorrelationTolerance = .001;

// Fisher's z of a correlation, 0.5 ln((1 + r) / (1 - r)).
//
// Domain: -1 < r < 1.
double FisherZ(double r);

// --- The walk to a required size.

// What sets the walks of one and of two correlations apart.
struct WalkRules {
  std::int64_t cap;    // a candidate above it is cut to it
  double equalPowers;  // powers that differ by no more count as equal
};

inline constexpr std::int64_t NoWalkCap = 100000000;  // the walk gives up there
inline constexpr WalkRules OneCorrelationWalk = {150000, 1e-10};
inline constexpr WalkRules TwoCorrelationsWalk = {NoWalkCap, 1e-15};

// Secant steps of 1 to 200 upward from a first estimate that falls short, and a bracket that closes
// on two adjacent sizes: while Next() gives a trial, evaluate the power at size() and Record() it.
// result() then has the status SearchOk, SearchTooLarge or SearchCancelled, all without a message.
//
// Kept: unlike its neighbour SizeSearch it never tries a size below its start, and a step of 0
//       becomes 1.
class UpwardWalk {
 public:
  UpwardWalk(const WalkRules& rules,
             double powerGoal,
             std::int64_t first,
             double firstPower,
             ProcedureObserver& observer);

  // Chooses the next trial. False: the walk has ended.
  bool Next();
  std::int64_t size() const { return size_; }
  void Record(double power);
  const SearchResult& result() const { return result_; }

 private:
  std::int64_t StepAfter(double power) const;

  const WalkRules& rules_;
  ProcedureObserver& observer_;
  double powerGoal_;
  std::int64_t size_;
  std::int64_t lower_;
  std::int64_t upper_ = NoWalkCap;
  double upperPower_ = NumericFailure;
  std::int64_t direction_ = 1;
  std::int64_t step_ = 1;
  double lastPower_;
  SearchResult result_;
};

// The size that an estimate leads to: the estimate itself when its power exceeds the goal, else the
// end of the walk up from it. A power equal to the goal, and NaN, fall short. Asks the observer
// once per trial whether to stop. `powerAt` maps a size (std::int64_t) to a power.
//
// Kept: an estimate that passes is the answer although a smaller size may do.
template <class PowerAt>
SearchResult WalkUp(const WalkRules& rules,
                    double powerGoal,
                    std::int64_t first,
                    double firstPower,
                    PowerAt&& powerAt,
                    ProcedureObserver& observer) {
  if (firstPower > powerGoal) {
    return {first, firstPower, SearchOk};
  }
  UpwardWalk walk(rules, powerGoal, first, firstPower, observer);
  while (walk.Next()) {
    walk.Record(powerAt(walk.size()));
  }
  return walk.result();
}

// --- One correlation.

// All that the critical values of the test depend on.
struct CorrelationTest {
  std::int64_t n = 0;
  double alpha = 0;
  double rho0 = 0;
  std::int16_t algorithm = CorrelationFisherZRefined;
  std::int16_t form = H0TwoTailed;

  bool operator==(const CorrelationTest&) const = default;
};
using CorrelationCriticalCache = CriticalCache<CorrelationTest>;

// Critical value of r: CorrelationQuantile at CriticalProbability under rho0.
//
// Domain: 3 <= n < 2^31, -1 < rho0 < 1, 0 < alpha < 1.
// Fails:  NumericFailure when the quantile does and for an unknown form.
double CorrelationCritical(std::int64_t n,
                           double alpha,
                           double rho0,
                           std::int16_t algorithm,
                           std::int16_t form,
                           std::int16_t side);

// Power of the test that a correlation is rho0: the probability under rho that r lies beyond the
// critical values, on both sides for form 0.
//
// Source: Hotelling, H. (1953). Journal of the Royal Statistical Society B 15, 193-232; Gayen,
//         A. K. (1951). Biometrika 38, 219-247; Fisher, R. A. (1921). Metron 1, 3-32.
// Domain: n < 2^31, -1 < rho, rho0 < 1, 0 < alpha < 1.
// Fails:  NumericFailure with status 1 when NullHypothesisCheck of rho - rho0 refuses, with its
//         refusal; without a message for n below 3 (crude: 4), an unknown form and when the
//         distribution fails. Otherwise `status` is 0.
double CorrelationPower(std::int64_t n,
                        double alpha,
                        double rho,
                        double rho0,
                        std::int16_t algorithm,
                        std::int16_t form,
                        int& status,
                        Refusal& refusal);

// The same for the points of a curve, which keep their critical values in the cache.
double CorrelationPower(const CorrelationTest& test,
                        double rho,
                        int& status,
                        Refusal& refusal,
                        CorrelationCriticalCache& criticals);

// Above this first estimate a search leaves the exact distribution, whose time grows with n.
inline constexpr std::int64_t LargestExactEstimate = 1000;

// The status of a search that went on with the refined approximation. Its size and power are good.
inline constexpr int CorrelationSwitched = 99;

// What is asked of a required-size search of one correlation.
struct CorrelationSizeRequest {
  double rho = 0;
  double rho0 = 0;
  double alpha = 0;
  double powerGoal = 0;
  std::int16_t algorithm = CorrelationFisherZRefined;
  std::int16_t form = H0TwoTailed;
};

// First estimate of a required size.
//
//   trunc(((z(goal) - z(q)) / (atanh(rho) - atanh(rho0)))^2 + 4),  z the normal quantile
//   q = 1 - alpha / 2 (form 0, rho > rho0), alpha / 2 (form 0 otherwise), alpha (form 1),
//   1 - alpha (form 2)
//
// Kept: in form 2, and in form 0 with rho > rho0, the two quantiles nearly cancel, so that the
//       estimate starts far too low.
double CorrelationFirstEstimate(const CorrelationSizeRequest& request);

// A size N whose power exceeds the goal: the first estimate when it does, else the end of the walk
// up from it. Both a passing first estimate and one that starts the walk may be more than the
// smallest such N.
//
// Domain: as CorrelationPower, 0 < powerGoal < 1.
// Fails:  status 1 with both numbers missing: NullHypothesisCheck with tolerance .001 refused, with
//         its refusal; N above 150000 would be needed (the refusal says SearchTooLarge); the user
//         stopped the search, or the form is unknown (both without a message).
//         Status 99 with an answer: the exact algorithm gave way to the refined one, because the
//         first estimate exceeds LargestExactEstimate; the observer had the notice
//         SwitchingToRefined before the walk.
SearchResult CorrelationRequiredN(const CorrelationSizeRequest& request,
                                  ProcedureObserver& observer);

// --- Two correlations.

// Critical value of the normal deviate: NormalQuantile of CriticalProbability.
//
// Fails:  NumericFailure for form 3 and unknown forms.
double FisherZCritical(double alpha, std::int16_t form, std::int16_t side);

// The standardized difference Z of the two Fisher z is normal with this mean and standard
// deviation.
struct ZDifference {
  double mean = 0;
  double sd = NumericFailure;  // for an unknown algorithm
};

// The mean and the standard deviation of FisherZPowerTerm.
ZDifference FisherZDifference(
    double rho1, double rho2, std::int64_t n1, std::int64_t n2, std::int16_t algorithm);

// One normal tail term, P(Z <= c) of the standardized difference Z of the two Fisher z.
//
//   Phi((c - (atanh(rho1) - atanh(rho2) + b1 - b2) / sqrt(v)) / s),  v = 1/(n1 - 3) + 1/(n2 - 3)
//   refined:  bi FisherZBias,  s^2 = (m1 - b1^2 + m2 - b2^2) / v,  mi FisherZSecondMoment
//   crude:    bi = 0, s = 1
//
// Source: as CorrelationPower.
// Domain: 3 <= n1, n2 < 2^31, -1 < rho1, rho2 < 1. With n1 or n2 of 3, v is infinite and the term
//         that of no effect: Phi(c) crude, 0 or 1 by the sign of c refined.
// Fails:  NumericFailure for any other algorithm: there is no exact distribution here.
double FisherZPowerTerm(
    double rho1, double rho2, std::int64_t n1, std::int64_t n2, double c, std::int16_t algorithm);

// Power of the test that two independent correlations are equal.
//
// Domain: as FisherZPowerTerm, 0 < alpha < 1.
// Fails:  NumericFailure when NullHypothesisCheck of rho1 - rho2 refuses, with its refusal; without
//         a message for an unknown form and for any algorithm other than refined and crude.
double TwoCorrelationsPower(double rho1,
                            double rho2,
                            std::int64_t n1,
                            std::int64_t n2,
                            double alpha,
                            std::int16_t form,
                            std::int16_t algorithm,
                            Refusal& refusal);

// What is asked of a required-size search of two correlations. `nToVary` is a NToVaryChoice; the
// size of the group that is sought is not read.
struct TwoCorrelationsSizeRequest {
  double rho1 = 0;
  double rho2 = 0;
  double alpha = 0;
  double powerGoal = 0;
  std::int64_t n1 = 0;
  std::int64_t n2 = 0;
  std::int16_t form = H0TwoTailed;
  std::int16_t algorithm = CorrelationFisherZRefined;
  std::int16_t nToVary = 0;
};

// A size of the varied group, or of each group, whose power exceeds the goal: the normal estimate
// when it does, else the end of the walk up from it.
//
//   equal groups:  n0 = 2 ((z(1 - alpha/k) + z(goal)) / (atanh(rho1) - atanh(rho2)))^2 + 3,
//                  k = 2 for form 0 and 1 otherwise; at least 4
//   m fixed:       ((n0 + 3) m - 6 n0) / (2 m - n0 - 3), at least 4
//
// Kept: a passing estimate may be more than the smallest such size. The null check here runs on the
//       scale of Fisher's z, that of the power on the scale of r.
// Domain: as TwoCorrelationsPower, 0 < powerGoal < 1; a fixed group of 3 or more.
// Fails:  status 1 with both numbers missing: NullHypothesisCheck with tolerance .001 refused, with
//         its refusal; no size of the varied group helps the fixed one (the refusal says IncreaseN2
//         or IncreaseN1); without a message for an effect that runs against the test, an unknown
//         algorithm, form or nToVary, when the user stops the search and for equal groups of more
//         than 100000000.
SearchResult TwoCorrelationsRequiredN(const TwoCorrelationsSizeRequest& request,
                                      ProcedureObserver& observer);

}  // namespace poweranalysis
