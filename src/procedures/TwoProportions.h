#pragma once

#include <cstdint>

#include "procedures/TTests.h"

// Power and required size of two tests of proportions: the z-test of two independent ones, with or
// without a correction for continuity, and McNemar's test of two paired ones.
namespace poweranalysis {

// The tolerance of either null hypothesis, and the least distance of Eta from |Delta|.
inline constexpr double TwoProportionTolerance = .0001;

// --- Two independent proportions.

// The field Continuity.
inline constexpr std::int16_t NotCorrected = 0;
inline constexpr std::int16_t CorrectedForContinuity = 1;

// Beside NToVaryBoth, NToVaryN1 and NToVaryN2: N1 is sought and N2 = N1 / Ratio follows.
inline constexpr std::int16_t NToVaryRatio = 3;

struct TwoProportionTest {
  double pi1 = 0;
  double pi2 = 0;
  double alpha = 0;
  std::int16_t form = H0TwoTailed;
  std::int16_t continuity = NotCorrected;
};

// Power of groups of n1 and n2.
//
//   With d = pi1 - pi2, v = 1 / n1 + 1 / n2, s0 the standard error of d under the null hypothesis
//   (both groups at the weighted mean proportion), s1 its standard error in the population, z of
//   ZCritical and cc = v / 2 with the correction, else 0:
//     form 0:  1 - Phi((z s0 + cc - d) / s1) + Phi((-z s0 - cc - d) / s1)
//     form 1:  1 - Phi((z s0 + cc - d) / s1)
//     form 2:  Phi((z s0 - cc - d) / s1)
//
// Source: Fleiss, J. L. (1981). Statistical Methods for Rates and Proportions, 2nd ed., 38-45.
// Domain: proportions of 0 to 1, 0 < alpha < 1. A group of fewer than one has power 0.
// Fails:  NumericFailure, with `err` the result of NullHypothesisCheck, with its refusal, or 1 for
//         a form other than 0, 1 and 2.
double TwoProportionPower(
    const TwoProportionTest& test, std::int64_t n1, std::int64_t n2, int& err, Refusal& refusal);

struct TwoProportionSizeRequest {
  TwoProportionTest test = {};
  double powerGoal = 0;
  std::int16_t nToVary = NToVaryBoth;
  double ratio = 1;  // N1 / N2, read for NToVaryRatio alone
};

// Sizes of the two groups. A fixed one is read, the others are written.
struct GroupSizes {
  std::int64_t n1 = 0;
  std::int64_t n2 = 0;
};

// The first trial of the search, at least 10 and at most 9e15: the size of group 1 beside a group 2
// of 1 / ratio of it, by the normal distribution.
//
//   With w the ratio (1 unless it is fixed), A = z(goal) sqrt(pi1 (1 - pi1) + w pi2 (1 - pi2)),
//   B = z(1 - alpha) sqrt(pBar (1 - pBar) (w + 1)), pBar = (w pi1 + pi2) / (w + 1), h = (w + 1) / 2
//   and alpha halved for form 0:
//     ceil(((A + B) / d)^2), and corrected
//     ceil((2 d h + 2 A B + A^2 + B^2 + (A + B) sqrt(4 d h + 2 A B + A^2 + B^2)) / (2 d^2))
//
// Source: Casagrande, J. T., Pike, M. C. and Smith, P. G. (1978). Biometrics 34, 483-486; Fleiss,
//         J. L., Tytun, A. and Ury, H. K. (1980). Biometrics 36, 343-346.
std::int64_t TwoProportionEstimate(const TwoProportionSizeRequest& request);

// The groups at a value N of the search: N each; beside a fixed group M, the other has
// M N / max(2 M - N, 1), whole; at a fixed ratio N and N / ratio, whole. No group has fewer than
// one nor more than 9e15.
void SetGroups(const TwoProportionSizeRequest& request, std::int64_t n, GroupSizes& groups);

// N of the group that is varied (of group 1 for equal groups and a fixed ratio), with both groups
// left in `groups`.
//
//   From the estimate up by factors of 12 / 10 to a value that reaches the goal, from four below it
//   down by factors of 10 / 11 to one that falls short, then bisection; each at most 100 passes.
//   Beside a fixed group the whole numbers skip sizes, so that a smaller one may do.
//
// Domain: as TwoProportionPower, and 0 < powerGoal < 1, ratio > 0.
// Fails:  SizeFailure and `actualPower` NumericFailure. `err` is the result of NullHypothesisCheck,
//         with its refusal, or 1 without a message for a form or a choice of groups that does not
//         exist; it is 0 when the passes did not suffice, and the refusal says
//         SelectedGroupNotFound.
std::int64_t TwoProportionRequiredN(const TwoProportionSizeRequest& request,
                                    GroupSizes& groups,
                                    double& actualPower,
                                    int& err,
                                    Refusal& refusal);

// --- McNemar's test.

// Does Eta, the proportion of discordant pairs, exceed |delta| by .0001? 0 if so, and otherwise 1,
// and the refusal says EtaTooSmall.
std::int16_t McNemarParameterCheck(double delta, double eta, Refusal& refusal);

struct McNemarTest {
  double delta = 0;  // difference of the two proportions
  double eta = 0;
  double alpha = 0;
  std::int16_t form = H0TwoTailed;
};

// Power of n pairs.
//
//   Phi((sqrt(eta n) |delta| - z eta) / sqrt(eta^2 - delta^2 (eta + 3) / 4)), z at 1 - alpha, alpha
//   being halved for form 0
//
// Source: Miettinen, O. S. (1968). Biometrics 24, 339-352.
// Domain: n >= 0, 0 <= eta <= 1, 0 < alpha < 1.
// Fails:  NumericFailure, with `err` the result of NullHypothesisCheck; `err` stays 0 when
//         McNemarParameterCheck refuses. The refusal is that of the one or the other.
double McNemarPower(const McNemarTest& test, double n, int& err, Refusal& refusal);

// The whole number of pairs that reaches the goal, without its own limit.
//
//   ceil(((sqrt(eta - delta^2 (eta + 3) / (4 eta)) z(goal) + sqrt(eta) z) / |delta|)^2)
//
// Source and domain: as McNemarPower.
// Fails:  NumericFailure, with `err` -333 for a null that NullHypothesisCheck refuses; it stays 0
//         when McNemarParameterCheck does. The refusal is that of the one or the other.
double McNemarRequiredN(const McNemarTest& test, double goal, int& err, Refusal& refusal);

}  // namespace poweranalysis
