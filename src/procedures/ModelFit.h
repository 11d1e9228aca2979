#pragma once

#include <cstdint>

#include "procedures/CriticalPair.h"
#include "procedures/RequiredSizeSearch.h"

// Power and required size of tests of the fit of a structural equation model, in terms of the root
// mean square error of approximation (RMSEA).
namespace poweranalysis {

// The tolerance of the null hypothesis.
inline constexpr double ModelFitTolerance = .001;

// A test that the RMSEA is r0.
struct ModelFitTest {
  std::int64_t n = 0;
  std::int32_t df = 1;  // of the model
  double alpha = 0;
  double r0 = 0;
  std::int16_t form = H0AtMost;
};

// All that the critical values of such a test depend on.
struct ModelFitNull {
  double delta = 0;
  std::int32_t df = 0;
  double alpha = 0;
  std::int16_t form = H0AtMost;

  bool operator==(const ModelFitNull&) const = default;
};
using ModelFitCriticalCache = CriticalCache<ModelFitNull>;

// Power of a test of fit: the statistic is a noncentral chi-square with df degrees of freedom and
// the noncentrality r^2 (n - 1) df, or r0^2 (n - 1) df under the null hypothesis.
//
//   form 0:  1 - F(high) - F(low), high and low at 1 - alpha / 2 and alpha / 2
//   forms 1 and 3:  1 - F(c), c at 1 - alpha        form 2:  F(c), c at alpha
//   A form of 0 or 1 with r0 = 0 is the test of exact fit, form 3.
//
// Kept:   form 0 subtracts the lower tail, so that its power is below that of the upper tail alone
//         and can be negative. A critical value that a search left at 0 counts as it is.
// Source: Steiger, J. H. and Lind, J. C. (1980), as described by Browne, M. W. and Cudeck, R.
//         (1993). Alternative ways of assessing model fit. In Bollen and Long (eds.), Testing
//         structural equation models, 136-162.
// Domain: n >= 1, df >= 1, r, r0 >= 0, 0 < alpha < 1. Where r = r0 passes the null check, under an
//         unknown form, the power is alpha.
// Fails:  NumericFailure with `err` 1 when NullHypothesisCheck of r - r0 refuses, with its refusal;
//         without a message with `err` 1 for an unknown form and when there is no critical value,
//         which befalls noncentralities r0^2 (n - 1) df from some 810 to 921. A power with `err` 2
//         rests on a sum of 500 terms that did not suffice.
double ModelFitPower(std::int64_t n,
                     std::int32_t df,
                     double alpha,
                     double r,
                     double r0,
                     std::int16_t form,
                     int& err,
                     Refusal& refusal);

// The same for the points of a curve, which keep their critical values in the cache.
double ModelFitPower(const ModelFitTest& test,
                     double r,
                     int& err,
                     Refusal& refusal,
                     ModelFitCriticalCache& criticals);

// What is asked of a required-size search.
struct ModelFitSizeRequest {
  double r = 0;
  double r0 = 0;
  double alpha = 0;
  double powerGoal = 0;
  std::int32_t df = 1;
  std::int16_t form = H0AtMost;
};

// The largest N that a search tries.
inline constexpr std::int64_t LargestModelFitN = 100000000;

// A size N whose power reaches the goal: in hundreds up to the first power above it, then by
// halving steps down. actualPower is the power of that N.
//
// Kept: the halved steps, 50, 25, 12, 6, 3, 1 and 1, drop remainders, so that where the smallest
//       such N is 1 or 51 above a hundred the answer is one more.
// Domain: as ModelFitPower, 0 < powerGoal < 1.
// Fails:  both numbers missing with status 1 when NullHypothesisCheck with tolerance .001 refuses,
//         with its refusal, when no N up to LargestModelFitN has a power above the goal (the
//         refusal says SearchTooLarge) and for an unknown form (without a message); SearchCancelled
//         when the user stops the search (without a message).
SearchResult ModelFitRequiredN(const ModelFitSizeRequest& request, ProcedureObserver& observer);

}  // namespace poweranalysis
