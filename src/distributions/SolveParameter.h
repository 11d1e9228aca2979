#pragma once

#include <cstdint>

#include "distributions/SecantSearch.h"

namespace poweranalysis {

// What SolveParameter searches: a distribution and the variable that is free. Code 4 has no
// distribution attached.
enum SearchKind : std::int32_t {
  SearchChiSquareDelta = 1,
  SearchTDelta = 2,
  SearchFDelta = 3,
  SearchTQuantile = 5,
  SearchChiSquareQuantile = 6,
  SearchFQuantile = 7,
  SearchFDeltaApprox = 8,
  SearchBinomialProportion = 9,
};

// How the search of one kind treats its variable.
const SecantPolicy& SearchPolicyOf(SearchKind kind);

// One evaluation: the distribution named by the kind at the fixed argument x and the searched
// value b, minus the target. For the quantile kinds x is the noncentrality and b the quantile; for
// the others x is the quantile and b the noncentrality or proportion. df2 is the second degrees of
// freedom of the F kinds.
//
// Domain: that of the distribution; the F kinds take the exact algorithm, SearchFDeltaApprox
//         Tiku's.
// Fails:  NumericFailure with `failure` nonzero when the distribution fails, and with `failure` 1
//         for a kind that has no distribution. `failure` is cleared on entry.
// Kept:   for SearchTDelta a failed NoncentralTCdf is not a failure: its value minus the target
//         goes on as a very large residual.
double SolveResidual(double x,
                     double b,
                     std::int32_t df,
                     double target,
                     int& failure,
                     SearchKind kind,
                     std::int32_t df2);

// The b at which SolveResidual is zero, by SecantSearch from `start`.
//
// Fails:  NumericFailure with `failure` nonzero when an evaluation fails; otherwise a value, and a
//         nonzero `status` when that value was not shown to solve the equation. Both are cleared
//         on entry.
// Guard:  a t or chi-square search that has taken SearchStepLimit steps of its recurrence fails
//         with `failure` 1. One of all its evaluations gets there from 20000 degrees of freedom on.
double SolveParameter(double x,
                      std::int32_t df,
                      double target,
                      double start,
                      int& status,
                      int& failure,
                      SearchKind kind,
                      std::int32_t df2);

// Steps of a recurrence that searches may take, about a second's work; an evaluation takes one for
// every two degrees of freedom. A search that bounces across an edge of its distribution for all of
// its evaluations would take many times that at large degrees of freedom.
inline constexpr std::int64_t SearchStepLimit = 100'000'000;

// The same for a search that is one of several: `steps` is what they may still take together.
double SolveParameter(double x,
                      std::int32_t df,
                      double target,
                      double start,
                      int& status,
                      int& failure,
                      SearchKind kind,
                      std::int32_t df2,
                      std::int64_t& steps);

}  // namespace poweranalysis
