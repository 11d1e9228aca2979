#pragma once

namespace poweranalysis {

// P(X <= k) of the binomial distribution with n trials and success probability pi.
//
//   1 - I_pi(m + 1, n - m),  m the whole part of k
//
// Source: Abramowitz, M. and Stegun, I. A. (1964). Handbook of Mathematical Functions, 26.5.24.
// Domain: n >= 1, 0 <= pi <= 1, any k: 0 below 0 and 1 from n on.
// Fails:  NumericFailure with `failure` 1 for an n below 1, and with the failure of BetaCdf for a
//         pi outside [0, 1]. `failure` is cleared on entry.
// Guards: an n, pi or k that is not a number fails with `failure` 1, as does a result that is not a
// number.
double BinomialCdf(double n, double pi, double k, int& failure);

// The smallest k with P(X <= k) >= p, a whole number, and P(X <= k) itself in `actual`. `logP` is
// log(p).
//
//   A search in whole steps of at most 200, from the normal approximation, that narrows a bracket
//   to two neighbours
//
// Domain: 1 <= n < 2^31, 0 <= pi <= 1, 0 < p < 1. The caller answers k = 0 itself.
// Fails:  NumericFailure with `failure` nonzero when BinomialCdf fails. `failure` is cleared on
//         entry.
// Kept:   where n log(pi) >= logP the answer is n and `actual` is left as it stands. That can be
//         wrong: with n 2 and pi .8 it is 2 for p .3, although P(X <= 1) is .36.
// Guards: a k of n that the search has only assumed as its upper end is the answer with `actual`
//         1 once n - 1 falls short. A bracket of two neighbours always ends the search, with the
//         smaller k whose value reaches p; one that is still open after many passes is halved
//         until it closes. An n outside its domain, a pi outside [0, 1] and a p outside [0, 1]
//         fail with `failure` 1.
double BinomialQuantile(double p, double n, double pi, double& actual, int& failure, double logP);

// The pi with P(X <= k) = p.
//
//   SolveParameter from a score limit
//
// Source: Wilson, E. B. (1927). Probable inference, the law of succession, and statistical
//         inference. Journal of the American Statistical Association 22, 209-212, with the last
//         term outside the square root.
// Domain: 1 <= n < 2^31, 0 <= k < n, 0 < p < 1.
// Fails:  NumericFailure with `failure` nonzero when an evaluation fails, as for a k outside
//         [0, n]; otherwise `failure` is the status of the search, and the value is not shown to
//         have that probability when it is nonzero. A p of .5 with k 0 starts the search at 0,
//         where it stays with `failure` 1.
// Guards: an n outside its domain gives NumericFailure with `failure` 1.
double BinomialProportionForP(double n, double p, double k, int& failure);

// The nearest multiple of 1 / n to a proportion.
struct CountedProportion {
  double count;
  double proportion;
};

// A tie goes to the larger count.
//
// Domain: n >= 1, 0 <= proportion <= 1.
// Fails:  never.
CountedProportion RoundProportionToCount(double proportion, double n);

}  // namespace poweranalysis
