#pragma once

#include "intervals/IntervalLimits.h"
#include "settings/Records.h"

// Confidence limits on the fit of a structural equation model.
namespace poweranalysis {

// Limits on RMSEA and on the population gamma indices of fit, from the chi-square statistic of K
// groups, P variables and N observations in all:
//
//   delta    NoncentralChiSquareDelta at 1 - a below and a above, a half of what the confidence
//            leaves; F = delta / (N - K)
//   RMSEA    sqrt(K F / df)
//   gamma 1  P / (2 F + P), for one group; its lower limit goes with the upper one of F
//   gamma 2  1 - (1 - gamma 1) P (P + 1) / (2 df)
//
// Source: Steiger, J. H. (1990). Structural model evaluation and modification: an interval
//         estimation approach. Multivariate Behavioral Research 25, 173-180; and (1998). A note on
//         multiple sample extensions of the RMSEA fit index. Structural Equation Modeling 5,
//         411-419.
// Domain: a record within its ranges.
// Fails:  a chi-square that is too small for a limit has a delta of 0. A search that fails for
//         another reason, as for a statistic beyond what the series can sum, leaves what follows
//         from it without limits.
// Guard:  no limits for N up to K.
// Kept:   no groups at all count as one for the gamma indices, and have an RMSEA of 0.
IntervalLimits ModelFitInterval(const SEMParams& record);

}  // namespace poweranalysis
