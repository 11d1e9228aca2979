#pragma once

#include "intervals/IntervalLimits.h"
#include "settings/Records.h"

// Confidence limits from an observed proportion.
namespace poweranalysis {

// Moves the observed proportion to the nearest one that a whole count can have, a tie up, and sets
// the count: .5 of 5 becomes .6, 3 of 5. A proportion that comes from a count stays.
void TieProportionToCount(P1Params& record);

// Limits on the proportion of the population, with x of n observed and p = x / n:
//
//   exact        the pi with P(X < x) = 1 - a below and P(X <= x) = a above, 0 for x = 0 and 1 for
//                x = n
//   approximate  (2 p n + z^2 - 1 - z sqrt(z^2 - 2 - 1/n + 4 p ((1 - p) n + 1))) / (2 (z^2 + n)),
//                (2 p n + w^2 + 1 - w sqrt(w^2 + 2 - 1/n + 4 p ((1 - p) n - 1))) / (2 (w^2 + n)),
//                0 for p = 0 and 1 for p = 1
//   crude        p - s z, at least 0, and p - s w,  s = sqrt(p (1 - p) / n)
//
//   with z and w the normal quantiles of 1 - a and of a, half of what the confidence leaves. The
//   proportion counts as TieProportionToCount makes it.
//
// Source: Clopper, C. J. and Pearson, E. S. (1934). Biometrika 26, 404-413; Fleiss, J. L. (1981).
//         Statistical Methods for Rates and Proportions, 2nd ed., 14-15, for the approximate ones.
// Domain: a record within its ranges.
// Fails:  an exact limit whose search fails or ends with a status is missing.
// Kept:   a status can come with a value that is good to nine digits, as for 1 of 150000: it is
//         missing all the same. The crude lower limit stays at or above 0; the upper one can be
//         above 1.
IntervalLimits OneProportionInterval(const P1Params& record);

}  // namespace poweranalysis
