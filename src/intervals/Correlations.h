#pragma once

#include "intervals/IntervalLimits.h"
#include "procedures/ProcedureObserver.h"
#include "settings/Records.h"

// Confidence limits and p values from an observed correlation, simple or squared and multiple.
namespace poweranalysis {

// Limits on rho, and the p value of the observed correlation R under rho0.
//
//   limits   CorrelationRhoForP at 1 - a and a, with a half of what the confidence leaves
//   p value  with c = P(R <= the observed R) under rho0:
//            form 0  (1 - c) + (1 - c)
//            form 1  1 - c
//            form 2  c
//
// Source: the distributions of distributions/Correlation.h.
// Domain: a record within its ranges.
// Fails:  a failed search leaves its limit alone without one, as both are for 3 observations and
//         the exact or the crude form; a failed distribution, or another form, leaves no p value. A cancelled search leaves its
//         limit without one, and the next search is not begun.
// Kept:   the two-sided p value is not folded to the smaller tail: for an R below rho0 it is above 1.
IntervalLimits CorrelationInterval(const RParams& record, ProcedureObserver& observer);

// Limits on P2, the p value of the observed R2 under P2 = 0, and the power of the test against the
// null value, and the size N that reaches the power goal, at these limits.
//
//   limits, p value  MultipleR2Interval
//   forms 1 and 3    at limits above the null value: the lower power is that at the lower limit, and
//                    the lower size that at the upper limit
//   form 2           at limits below it: the lower power is that at the upper limit, and the lower
//                    size that at the lower limit
//   form 0           neither
//
// Source: Lee, Y.-S. (1971). Journal of the Royal Statistical Society B 33, 117-130; Fisher, R. A.
//         (1928). Proceedings of the Royal Society A 121, 654-673.
// Domain: a record within its ranges.
// Fails:  as MultipleR2Interval, SquaredCorrelationPower and SquaredCorrelationRequiredN, each row
//         by itself: a limit within .05 of the null value has a power and no size. The observer
//         hears of refusals, of the lower size first. A cancelled search leaves its limit without
//         one, and what comes after it is not begun.
// Kept:   limits on P2 are shown as their searches leave them, whatever their status. The p value
//         is -1 where the distribution fails, as for N up to the number of variables.
IntervalLimits SquaredCorrelationInterval(const R2Params& record, ProcedureObserver& observer);

}  // namespace poweranalysis
