#pragma once

#include <cstdint>

#include "intervals/IntervalLimits.h"
#include "procedures/ProcedureObserver.h"
#include "settings/Records.h"

// Confidence limits from an observed t or F: on the noncentrality parameter, by inverting the
// noncentral distribution, and on the standardized effect or the root mean square standardized
// effect (RMSSE) that goes with it.
//
// Source: Steiger, J. H. and Fouladi, R. T. (1997). Noncentrality interval estimation and the
//         evaluation of statistical models. In Harlow, L. L., Mulaik, S. A. and Steiger, J. H.
//         (Eds.), What if there were no significance tests?, 221-257. Mahwah, NJ: Erlbaum.
namespace poweranalysis {

// --- From an observed t.

// The delta at which P(T <= t) = p, T noncentral t. It falls as p rises: the lower limit of an
// interval has the greater p.
//
//   The search of SolveParameter, kind SearchTDelta, from NoncentralTDeltaStart
//
// Domain: df >= 1, 0 < p < 1, any t.
// Fails:  NumericFailure when the search fails, and when it ends with a status: such a value does
//         not solve the equation. Both happen at few degrees of freedom, to five or so, and at
//         extreme t.
// Guards: a delta beyond the one where P(T <= 0) is p, which bounds it, has failed too. A search of more than some ten seconds fails; one of many degrees of freedom asks the
//         observer whether to stop, with a bar where it may take more than a second.
double TDeltaLimit(double t, std::int32_t df, double p, SearchObserver& observer);
double TDeltaLimit(double t, std::int32_t df, double p);

// A limit on the standardized effect of a planned contrast, the lower one (which 0) or the upper
// one (which 1).
//
//   TDeltaLimit(t, (n - 1) groups, p) sqrt(ss / n),  p = 1 - tail or tail,  tail half of what the
//   confidence leaves
//
// Domain: n >= 2, groups >= 1, ss > 0, 0 < confidence < 1.
// Fails:  NumericFailure with `err` 1 for n below 2, and for more degrees of freedom than the
//         distribution takes (guard). `err` is cleared on entry.
// Kept:   a failed TDeltaLimit goes through the product, and shows as a number.
double ContrastEsLimit(double confidence,
                       double t,
                       double ss,
                       std::int64_t n,
                       std::int64_t groups,
                       std::int16_t which,
                       int& err,
                       SearchObserver& observer);
double ContrastEsLimit(double confidence,
                       double t,
                       double ss,
                       std::int64_t n,
                       std::int64_t groups,
                       std::int16_t which,
                       int& err);

// Limits on delta and on the standardized effect, delta / sqrt(N) for one mean and for paired
// means, delta / sqrt(N1 N2 / (N1 + N2)) for two means.
//
// Domain: records within their ranges.
// Fails:  a failed TDeltaLimit has no limit on delta.
// Kept:   it goes through the quotient all the same, and its effect shows as a number.
IntervalLimits OneMeanInterval(const T1Params& record, ProcedureObserver& observer);
IntervalLimits TwoMeansInterval(const T2Params& record, ProcedureObserver& observer);
IntervalLimits PairedMeansInterval(const T3Params& record, ProcedureObserver& observer);

// Limits on the standardized effect of a planned contrast alone, and none unless the sum of squared
// weights is above 0.
//
// Fails:  as ContrastEsLimit.
IntervalLimits ContrastInterval(const PCParams& record, ProcedureObserver& observer);

// --- From an observed F.

// Limits on delta and RMSSE, on the power of the F test at these, and on the size per group that
// reaches the power goal at these.
//
//   delta   NoncentralFDelta at p = 1 - tail and tail, 0 where no positive delta reaches p
//   RMSSE   sqrt(delta / D),  D = (k - 1) N, the delta of an RMSSE of 1
//   power   FTestPower at delta, of fixed effects whatever the model is
//   size    OneWayRequiredN at the RMSSE, by the model; the upper RMSSE has the smaller size, which
//           is the lower limit. An RMSSE that is not above 0 has none.
//
// Domain: a record within its ranges; `sizeLimit` ends a search.
// Fails:  a limit whose search fails or is refused has none, and one on delta leaves the RMSSE, the
//         power and the size of its side without. The observer hears of refusals, of the size at
//         the upper RMSSE first. After a cancelled search the next one is not begun.
// Guards: a delta below 0, which only Tiku's approximation can give, counts as failed beyond its own
//         row. Degrees of freedom beyond 32 bits count as the largest of 32 bits in the search for
//         delta.
IntervalLimits OneWayInterval(const AV1Params& record,
                              std::int64_t sizeLimit,
                              ProcedureObserver& observer);

// The same for the effect that is chosen for the test, with the degrees of freedom of TwoWayDesign
// and TwoWayRequiredN. D is df1 C N for rows, df1 R N for columns and df1 N for the interaction.
//
// Fails:  as above; an unknown effect has no limits. Nothing can cancel it.
IntervalLimits TwoWayInterval(const AV2Params& record,
                              std::int64_t sizeLimit,
                              ProcedureObserver& observer);

}  // namespace poweranalysis
