#pragma once

#include <cstdint>

#include "distributions/MultipleR2.h"
#include "procedures/CriticalPair.h"
#include "procedures/RequiredSizeSearch.h"

// Power and required size of the test of a squared multiple correlation P2 against a null value C2,
// by the distribution of R2 in samples from a multivariate normal population.
namespace poweranalysis {

// The tolerance of the null hypothesis. The search's is that of BracketBisectSearch.
inline constexpr double SquaredCorrelationTolerance = .001;

// All that the critical values of the test depend on. `k` counts all variables, the criterion with
// them.
struct SquaredCorrelationTest {
  std::int64_t n = 0;
  std::int32_t k = 0;
  double alpha = 0;
  double c2 = 0;
  std::int16_t algorithm = R2Lee;
  std::int16_t form = H0TwoTailed;

  bool operator==(const SquaredCorrelationTest&) const = default;
};
using SquaredCorrelationCriticalCache = CriticalCache<SquaredCorrelationTest>;

// Power of the test that P2 is c2: the probability under rho2 that R2 lies beyond the critical
// values of MultipleR2CriticalValue, on both sides for form 0.
//
//   A form of 0 or 1 with c2 = 0 is the F test, form 3: nothing lies below 0.
//
// Source: Lee, Y.-S. (1971). Journal of the Royal Statistical Society B 33, 117-130; Fisher, R. A.
//         (1928). Proceedings of the Royal Society A 121, 654-673.
// Domain: n < 2^31, k >= 2, 0 <= rho2, c2 < 1, 0 < alpha < 1. Where rho2 = c2 passes the null
//         check, under an unknown form, the power is alpha.
// Fails:  NumericFailure when NullHypothesisCheck of rho2 - c2 refuses, with its refusal, and,
//         without a message, for n <= k, both with `err` 0. NumericFailure with `err` nonzero when
//         the distribution fails (2: the user asked to stop) and for an unknown form.
double SquaredCorrelationPower(std::int64_t n,
                               std::int32_t k,
                               double alpha,
                               double rho2,
                               double c2,
                               std::int16_t algorithm,
                               std::int16_t form,
                               int& err,
                               Refusal& refusal,
                               ProcedureObserver& observer);

// The same for the points of a curve, which keep their critical values in the cache.
double SquaredCorrelationPower(const SquaredCorrelationTest& test,
                               double rho2,
                               int& err,
                               Refusal& refusal,
                               SquaredCorrelationCriticalCache& criticals,
                               ProcedureObserver& observer);

// What is asked of a required-size search.
struct SquaredCorrelationSizeRequest {
  double rho2 = 0;
  double c2 = 0;
  double alpha = 0;
  double powerGoal = 0;
  std::int32_t k = 2;
  std::int16_t algorithm = R2Lee;
  std::int16_t form = H0TwoTailed;
};

// A size N whose power reaches the goal, by BracketBisectSearch from k + 2 and 5 k.
//
// Kept: the halving drops remainders, so that the answer can be a few above the smallest such N.
//       The tolerance of the null check is .05, far wider than elsewhere.
// Domain: as SquaredCorrelationPower, 0 < powerGoal < 1.
// Fails:  as BracketBisectSearch: status 1 for a refused null, with its refusal, and for a goal out
//         of reach (without a message), 2 for a cancellation (without a message).
SearchResult SquaredCorrelationRequiredN(const SquaredCorrelationSizeRequest& request,
                                         ProcedureObserver& observer);

}  // namespace poweranalysis
