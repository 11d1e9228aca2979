#pragma once

#include <cstdint>

#include "distributions/SearchObserver.h"

// The distribution of the squared multiple correlation R2 of a sample of n from a multivariate
// normal population whose squared multiple correlation is rho2. k counts all variables, the
// dependent one with them: the degrees of freedom are k - 1 and n - k.
//
// `failure` is cleared on entry by every function: 1 says that the value was not computed or not
// shown to solve the equation, 2 that the observer asked to stop. The exact series runs to ten
// million terms at most; an observer is asked after every few thousand terms, and after each
// evaluation of a search, whether it is to go on. Without an observer nothing can be cancelled.
namespace poweranalysis {

// How the distribution of R2 is computed.
enum R2Algorithm : std::int16_t {
  R2Lee = 0,    // Lee's noncentral F approximation, the Speed Algorithm
  R2Exact = 1,  // the mixture of incomplete beta functions, the Accuracy Algorithm
};

// What the distribution functions return when they fail; a probability never is. The searches
// take it as it is, a residual far below the target.
inline constexpr double R2CdfFailure = -1.0;

// P(R2 <= x) by the exact series.
//
//   sum over j of w_j I_x((k - 1) / 2 + j, (n - k) / 2),
//   w_0 = (1 - rho2)^A, w_j = w_(j-1) (A + j - 1) rho2 / j,  A = (n - 1) / 2
//   Ends beyond the peak of the terms, when those before the index of that peak are below 1e-18 in
//   sum, or a geometric bound of the rest is below 1e-7.
//
// Source: Fisher, R. A. (1928). The general sampling distribution of the multiple correlation
//         coefficient. Proceedings of the Royal Society A 121, 654-673.
// Domain: 2 <= k < n, 0 <= rho2 < 1, 0 <= x <= 1.
// Fails:  -1.0 with `failure` 1 outside the domain (guards: NaN, n <= k, k < 2). The sum so far
//         with `failure` 1 after ten million terms. -1.0 with `failure` 2 when cancelled.
//         Guards: terms whose weight is too small for a double are passed over without their beta
//         function. Where the peak lies beyond 200000 terms the weights come in closed form and
//         by ratios, from the first that a double holds, and if that lies beyond ten million the
//         sum is 0 with `failure` 1 at once.
double MultipleR2CdfExact(
    double x, double rho2, std::int32_t n, std::int32_t k, int& failure, SearchObserver& observer);
double MultipleR2CdfExact(double x, double rho2, std::int32_t n, std::int32_t k, int& failure);

// P(R2 <= x) by the noncentral F distribution that matches three moments.
//
//   R2 / (1 - R2) is taken as c nu / (n - k) times a noncentral F with nu and n - k
//   degrees of freedom
//
// Source: Lee, Y.-S. (1971). Some results on the sampling distribution of the multiple correlation
//         coefficient. Journal of the Royal Statistical Society B 33, 117-130.
// Domain: 2 <= k < n, 0 <= rho2, 0 <= x <= 1. A rho2 of 1 or more gives 0.
// Fails:  -1.0 with `failure` 1 outside the domain (guards: NaN, n <= k, k < 2, rho2 < 0) and where
//         NoncentralFCdf fails. Guard: a difference that rounding made negative counts as 0.
double MultipleR2CdfLee(double x, double rho2, std::int32_t n, std::int32_t k, int& failure);

// P(R2 <= x) by the given R2Algorithm.
//
// Domain: as above.
// Fails:  as above; -1.0 with `failure` 1 for any other algorithm.
double MultipleR2Cdf(double rho2,
                     std::int32_t n,
                     std::int32_t k,
                     double x,
                     std::int16_t algorithm,
                     int& failure,
                     SearchObserver& observer);
double MultipleR2Cdf(
    double rho2, std::int32_t n, std::int32_t k, double x, std::int16_t algorithm, int& failure);

// The x with P(R2 <= x) = p.
//
//   Secant search to 1e-7 in p or x, within [1e-7, 0.99999999], from the cube root approximation
//   of the noncentral F distribution.
//
// Source: Severo, N. C. and Zelen, M. (1960). Normal approximation to the chi-square and
//         non-central F probability functions. Biometrika 47, 411-416.
// Domain: 2 <= k < n, 0 <= rho2 < 1, 0 < p < 1.
// Fails:  NumericFailure with `failure` 1 outside the domain (guards: NaN, n <= k, k < 2, and a p
//         for which there is no quantile). The value last reached with `failure` 1 when the
//         residual there is above 1e-4, the search took 10000 passes, or the evaluation failed;
//         with `failure` 2 when cancelled. Guards: a start below 1e-6 takes its first slope
//         upwards, where the function is defined; a start that is not a number becomes 0.5; a
//         residual that is not a number ends the search; one search does the work of twenty million
//         terms at most, a second's or so, which only one that goes in circles needs.
double MultipleR2Quantile(double rho2,
                          std::int32_t n,
                          std::int32_t k,
                          double p,
                          int& failure,
                          std::int16_t algorithm,
                          SearchObserver& observer);
double MultipleR2Quantile(
    double rho2, std::int32_t n, std::int32_t k, double p, int& failure, std::int16_t algorithm);

// The critical value of a test about rho2 at level alpha.
//
//   The quantile at 1 - alpha / 2 (form 0, side 0), alpha / 2 (form 0, side 1), 1 - alpha (forms 1
//   and 3) or alpha (form 2). A form of 0 or 1 with rho2 0 counts as form 3: nothing lies below.
//
// Domain: as MultipleR2Quantile, with that p.
// Fails:  as MultipleR2Quantile; NumericFailure with `failure` 1 for any other form or, in form 0,
//         side.
double MultipleR2CriticalValue(std::int32_t n,
                               std::int32_t k,
                               double alpha,
                               double rho2,
                               std::int16_t algorithm,
                               std::int16_t form,
                               int& failure,
                               std::int16_t side,
                               SearchObserver& observer);
double MultipleR2CriticalValue(std::int32_t n,
                               std::int32_t k,
                               double alpha,
                               double rho2,
                               std::int16_t algorithm,
                               std::int16_t form,
                               int& failure,
                               std::int16_t side);

// The rho2 at which P(R2 <= r2) is the target.
//
//   Secant search to 1e-8 in p or rho2, within [0, 0.999999].
//
//   The result is 0 where the point beside the start solves the equation: a start need only be
//   that close by chance. A start of 0 is returned as it stands.
//
// Domain: 2 <= k < n, 0 <= r2 <= 1, 0 < target < 1, any finite start.
// Fails:  NumericFailure with `failure` 1 for n <= k, k < 2, a target outside (0, 1) and NaN
//         (guards). The value last reached with `failure` 1 when the residual there is above 1e-4,
//         the search took 10000 passes, or the evaluation failed; with `failure` 2 when cancelled.
//         The guards within the search are those of MultipleR2Quantile.
double MultipleR2RhoForP(double start,
                         std::int32_t n,
                         std::int32_t k,
                         double r2,
                         double target,
                         int& failure,
                         std::int16_t algorithm,
                         SearchObserver& observer);
double MultipleR2RhoForP(double start,
                         std::int32_t n,
                         std::int32_t k,
                         double r2,
                         double target,
                         int& failure,
                         std::int16_t algorithm);

// Confidence limits on rho2 from an observed r2, and the p value of r2 against rho2 = 0.
//
//   lower, upper:  rho2 at which r2 has the cumulative probability 1 - a and a, with
//                  a = (1 - confidence) / 2
//   oneSided:      the same at the confidence itself
//   pValue:        1 - P(R2 <= r2) at rho2 = 0, exact
//   A limit is searched with Lee's form; the exact algorithm searches again from that answer. A
//   limit whose probability is not below the one at rho2 = 0 is 0.
//
// The three words are the `failure` of the last search of each limit, 0 where none was made.
//
// Domain: 2 <= k < n, 0 <= r2 <= 1, 0 < confidence < 1.
// Fails:  the p value is -1 and the limits NumericFailure, with the words 0, when P(R2 <= r2) fails
//         (guards: n <= k, k < 2, NaN). A confidence outside (0, 1) leaves the p value and makes
//         the limits NumericFailure with the words 1 (guard).
void MultipleR2Interval(std::int32_t k,
                        double r2,
                        std::int32_t n,
                        double confidence,
                        double& lower,
                        double& upper,
                        double& oneSided,
                        int& lowerFailure,
                        int& upperFailure,
                        int& oneSidedFailure,
                        std::int16_t algorithm,
                        double& pValue,
                        SearchObserver& observer);
void MultipleR2Interval(std::int32_t k,
                        double r2,
                        std::int32_t n,
                        double confidence,
                        double& lower,
                        double& upper,
                        double& oneSided,
                        int& lowerFailure,
                        int& upperFailure,
                        int& oneSidedFailure,
                        std::int16_t algorithm,
                        double& pValue);

}  // namespace poweranalysis
