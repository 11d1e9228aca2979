#pragma once

#include <cstdint>

#include "procedures/RequiredSizeSearch.h"

// Power and required size of tests of survival in two groups of one size: the log-rank test of two
// survival rates, and the comparison of two exponential survival parameters under accrual,
// follow-up and dropout. All sizes are of one group, and all are closed forms.
namespace poweranalysis {

// Smallest gap of two survival rates or of two exponential parameters that a required size is
// computed for.
inline constexpr double SurvivalTolerance = .001;

// --- Log-rank test.

struct LogRankTest {
  double pi1 = 0;
  double pi2 = 0;
  double alpha = 0;
  std::int16_t form = H0TwoTailed;
};

// Power of n in each group, with no check of the null hypothesis.
//
//   Phi(x), x = sqrt(2 n (2 - pi1 - pi2) (h^2 - 1)^2) / (sqrt(2) (1 + h)^2) - z with the hazard
//   ratio h = ln pi1 / ln pi2; events = ((1 + h) / (1 - h))^2 (x + z)^2, whole
//
// Source: Freedman, L. S. (1982). Statistics in Medicine 1, 121-129.
// Domain: n >= 0, 0 < alpha < 1.
// Fails:  NumericFailure, `err` 1 and `events` SizeFailure, without a message: a rate that is not
//         inside (0, 1), equal rates, a form other than 0 and 1.
double LogRankPower(std::int64_t n, const LogRankTest& test, int& err, std::int64_t& events);

// N of one group and the events to be observed in both.
//
//   events = ((1 + h) / (1 - h))^2 (z + z(goal))^2, N = events / (2 - pi1 - pi2) rounded up
//
// Source and domain: as above, and 0 < goal < 1.
// Fails:  SizeFailure, `err` 1 and `events` SizeFailure: a null that NullHypothesisCheck refuses,
//         with its refusal, and without a message as above.
std::int64_t LogRankRequiredN(
    const LogRankTest& test, double goal, std::int64_t& events, int& err, Refusal& refusal);

// --- Exponential survival.

// The chance that an event is seen: of exponential events at rate lambda and dropouts at rate d,
// with entry spread evenly over the first t0 of t.
//
//   (lambda / s) (1 - (exp(-(t - t0) s) - exp(-t s)) / (s t0)), s = lambda + d
//
// Source: Lachin, J. M. and Foulkes, M. A. (1986). Biometrics 42, 507-519.
// Domain: lambda > 0, d >= 0, t >= t0 > 0.
// Fails:  never; outside the domain it may be anything.
double EventProbability(double lambda, double d, double t, double t0);

struct ExponentialSurvivalTest {
  double lambda1 = 0;
  double lambda2 = 0;
  double d = 0;         // rate of dropouts; 0 without
  std::int32_t t = 0;   // longest follow-up
  std::int32_t t0 = 0;  // accrual
  double alpha = 0;
  std::int16_t form = H0TwoTailed;
};

// Power of n in each group.
//
//   With a <= b the two parameters, Pa and Pb their event probabilities and z of ZCritical,
//   Phi((ln b - ln a) sqrt(n Pa Pb / (Pa + Pb)) - z)
//
// Source: George, S. L. and Desu, M. M. (1974). Journal of Chronic Diseases 27, 15-24.
// Domain: n >= 0, 0 < alpha < 1; t >= t0, which the dialogs see to.
// Fails:  NumericFailure: a null that NullHypothesisCheck refuses, with its refusal, and without a
//         message a parameter that is not above 0 or a negative dropout rate, a form other than 0
//         and 1, a result that is not finite.
double ExponentialSurvivalPower(std::int64_t n,
                                const ExponentialSurvivalTest& test,
                                Refusal& refusal);

// N of one group.
//
//   ((z + z(goal)) / (ln lambda1 - ln lambda2))^2 (1 / P1 + 1 / P2), rounded up
//
// Source and domain: as above, and 0 < goal < 1.
// Fails:  SizeFailure and `err` 1: what NullHypothesisCheck or FollowUpCheck refuses, with its
//         refusal, and without a message as above, or a size beyond 9e15.
std::int64_t ExponentialSurvivalRequiredN(const ExponentialSurvivalTest& test,
                                          double goal,
                                          int& err,
                                          Refusal& refusal);

// Is t at least t0? 0 if so, and otherwise 1, and the refusal says FollowUpTooShort.
std::int16_t FollowUpCheck(std::int32_t t, std::int32_t t0, Refusal& refusal);

}  // namespace poweranalysis
