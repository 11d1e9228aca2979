#pragma once

#include <cstdint>

#include "distributions/NoncentralF.h"
#include "procedures/FTests.h"
#include "procedures/RequiredSizeSearch.h"
#include "procedures/TTests.h"

// Power and required group size of a planned contrast among means and of the one-way and two-way
// analysis of variance. All groups, and all cells, have the same size n.
namespace poweranalysis {

// --- Planned contrast.

// The two-tailed t-test of a contrast: df = (n - 1) groups, delta = es / sqrt(ss / n) with the
// standardized effect es and the sum of squared contrast weights ss.
// Guard: delta stays within 1e15.
TDesign ContrastDesign(std::int64_t groups, std::int64_t n, double es, double ss);

// Power of a planned contrast, always two-tailed.
//
//   TTestPower of the design above at CriticalT(df, alpha, 0)
//
// Source: Owen, D. B. (1965). Biometrika 52, 437-446, for the noncentral t distribution.
// Domain: groups >= 1, ss > 0.
// Fails:  NumericFailure for n below 2, without a message, and as TTestPower.
double ContrastPower(std::int64_t groups,
                     std::int64_t n,
                     double alpha,
                     double es,
                     double ss,
                     Refusal& refusal,
                     CriticalTCache& criticals);

struct ContrastSizeRequest {
  double es = 0;  // standardized effect
  double ss = 0;  // sum of squared weights
  std::int64_t groups = 0;
  double alpha = 0;
  double powerGoal = 0;
  std::int64_t sizeLimit = 0;  // of the family's `Upper` record
};

// First estimate: the whole part of (z / es)^2 ss, z = NormalQuantile(powerGoal) -
// NormalQuantile(alpha / 2). A whole number that may exceed any integer.
double ContrastStart(double es, double ss, double alpha, double powerGoal);

// A size per group whose power exceeds the goal.
//
// Kept: not always the smallest. The bracket starts above 2, so that the least answer of an
//       estimate below 2 is 3; the answer 2 comes only from an estimate of 2. And a candidate above
//       the limit leaves the status SearchTooLarge even when the search goes on to an answer, so
//       that a caller has to go by the size.
//
// Domain: as ContrastPower, and 0 < powerGoal < 1.
// Fails:  as RequiredSizeSearch for SearchMember::PlannedContrast.
SearchResult ContrastRequiredN(const ContrastSizeRequest& request,
                               CriticalTCache& criticals,
                               ProcedureObserver& observer);

// --- One-way analysis of variance.

// The field ModelType.
enum AnovaModel : std::int16_t {
  FixedEffects = 0,
  RandomEffects = 1,
};

// What an F test needs of a design.
struct FDesign {
  std::int64_t df1 = 0;  // of the effect
  std::int64_t df2 = 0;  // of the error
  double delta = 0;
};

// df1 = groups - 1, df2 = (n - 1) groups, delta = rmsse^2 n (groups - 1), with rmsse the root mean
// square standardized effect. Delta is shown for random effects too, which do not use it.
FDesign OneWayDesign(std::int64_t groups, std::int64_t n, double rmsse);

// What is tested, with the size left open.
struct OneWayTest {
  std::int64_t groups = 0;
  double rmsse = 0;
  double alpha = 0;
  std::int16_t model = FixedEffects;
  std::int16_t algorithm = FExact;
};

// Power of the one-way analysis of variance: FTestPower for fixed effects, RandomEffectsPower for
// random ones. No null hypothesis is checked: rmsse 0 has the power alpha in either model.
//
// Domain, failure: as FTestPower.
double OneWayPower(
    const OneWayTest& test, std::int64_t n, int& err, double& critOut, CriticalFCache& criticals);

struct OneWaySizeRequest {
  OneWayTest test;
  // Of the committed record, for the first estimate of random effects.
  // Kept: it differs from test.alpha in a plot over alpha; only the first trial depends on it.
  double committedAlpha = 0;
  double powerGoal = 0;
  std::int64_t sizeLimit = 0;  // of the family's `Upper` record
};

// First estimates, whole numbers that may exceed any integer, or not a number at all:
//   fixed:   ((NormalQuantile(powerGoal) + NormalQuantile(1 - alpha / 2)) / rmsse)^2
//            / sqrt(groups - 1)
//   random:  ((q1 / df1) / (q2 / df1) - 1) / rmsse^2, with df1 = groups - 1 and q1, q2 the
//            chi-square quantiles at 1 - alpha and 1 - powerGoal
double FixedEffectsStart(std::int64_t groups, double rmsse, double alpha, double powerGoal);
double RandomEffectsStart(std::int64_t groups, double rmsse, double alpha, double powerGoal);

// The smallest size per group whose power exceeds the goal. Guard: a trial whose exact distribution
// fails, as it does from noncentralities of some 1e5, has the power by Tiku's approximation.
//
// Domain: as OneWayPower, and 0 < powerGoal < 1.
// Fails:  as RequiredSizeSearch for SearchMember::OneWayAnova.
SearchResult OneWayRequiredN(const OneWaySizeRequest& request,
                             CriticalFCache& criticals,
                             ProcedureObserver& observer);

// --- Two-way analysis of variance, fixed effects, n observations in each of rows x columns cells.

// The effect tested, as in the field EffectToTest.
enum TwoWayEffect : std::int16_t {
  RowEffect = 0,
  ColumnEffect = 1,
  InteractionEffect = 2,
};

// Degrees of freedom and noncentrality of one effect:
//
//   row          R - 1              (R - 1) C n rmsse^2
//   column       C - 1              (C - 1) R n rmsse^2
//   interaction  (R - 1) (C - 1)    (R - 1) (C - 1) n rmsse^2
//
// and df2 = (n - 1) R C. An unknown effect has df1 0.
FDesign TwoWayDesign(
    std::int64_t rows, std::int64_t columns, std::int64_t n, double rmsse, std::int16_t effect);

// Degrees of freedom of the effect as the summary table of the power shows them.
// Kept: (C - 1) (C - 1) for the interaction, where the test has (R - 1) (C - 1); the two agree for
//       square designs.
std::int64_t ShownTwoWayEffectDf(std::int64_t rows, std::int64_t columns, std::int16_t effect);

// Power of the F test of one effect.
//
// Domain: rows >= 2, columns >= 2.
// Fails:  NumericFailure, with critOut NumericFailure and err 1, when NullHypothesisCheck refuses
//         an rmsse not above 0, with its refusal; otherwise as FTestPower.
double TwoWayPower(double alpha,
                   std::int64_t rows,
                   std::int64_t columns,
                   std::int64_t n,
                   double rmsse,
                   std::int16_t algorithm,
                   std::int16_t effect,
                   double& critOut,
                   int& err,
                   Refusal& refusal,
                   CriticalFCache& criticals);

struct TwoWaySizeRequest {
  std::int64_t rows = 0;
  std::int64_t columns = 0;
  double rmsse = 0;
  double alpha = 0;
  double powerGoal = 0;
  std::int16_t algorithm = FExact;
  std::int16_t effect = RowEffect;
  std::int64_t sizeLimit = 0;  // of the family's `Upper` record
};

// The smallest size per cell whose power for the effect exceeds the goal, searched from 5.
// Kept: no progress is shown and nothing can cancel it.
// Guard as in OneWayRequiredN.
//
// Domain: as TwoWayPower, and 0 < powerGoal < 1.
// Fails:  as RequiredSizeSearch for SearchMember::TwoWayAnova.
SearchResult TwoWayRequiredN(const TwoWaySizeRequest& request,
                             CriticalFCache& criticals,
                             ProcedureObserver& observer);

}  // namespace poweranalysis
