#include "procedures/Anova.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "distributions/NoncentralChiSquare.h"
#include "distributions/Normal.h"
#include "procedures/SettledPower.h"

namespace poweranalysis {

namespace {

constexpr std::int64_t kSmallestGroup = 2;

double AsDouble(std::int64_t count) { return static_cast<double>(count); }

double Squared(double x) { return x * x; }

std::int32_t ContrastDf(std::int64_t groups, std::int64_t n) {
  constexpr std::int64_t kLargest = std::numeric_limits<std::int32_t>::max();
  return static_cast<std::int32_t>(std::min((n - 1) * groups, kLargest));
}

// Every power is 1 long before, and the recursion of the noncentral t distribution overflows long
// after. Weights next to nothing reach it.
double WithinReach(double delta) {
  constexpr double kFarthest = 1e15;
  return std::clamp(delta, -kFarthest, kFarthest);
}

// Power of one trial of a search: a noncentrality too large for the exact distribution falls back
// on Tiku's approximation, short of the effects that overflow it. Without, every size of a design
// of many cells would fall short of the goal, a second's work each, up to the limit.
template <class PowerBy>
double PowerWithinReach(double rmsse, std::int16_t algorithm, PowerBy powerBy) {
  constexpr double kLargestEffect = 1e15;
  const double power = powerBy(rmsse, algorithm);
  return power == NumericFailure && algorithm == FExact
             ? powerBy(std::min(rmsse, kLargestEffect), std::int16_t{FTiku})
             : power;
}

}  // namespace

// --- Planned contrast.

TDesign ContrastDesign(std::int64_t groups, std::int64_t n, double es, double ss) {
  const double delta = es == 0 ? 0 : WithinReach(es / std::sqrt(ss / AsDouble(n)));
  return {ContrastDf(groups, n), delta};
}

double ContrastPower(std::int64_t groups,
                     std::int64_t n,
                     double alpha,
                     double es,
                     double ss,
                     Refusal& refusal,
                     CriticalTCache& criticals) {
  refusal = {};
  if (n < kSmallestGroup) {
    return NumericFailure;
  }
  return TTestPower(ContrastDesign(groups, n, es, ss), alpha, H0TwoTailed, refusal, criticals);
}

double ContrastStart(double es, double ss, double alpha, double powerGoal) {
  const double z = NormalQuantile(powerGoal) - NormalQuantile(alpha * .5);
  return std::trunc(Squared(z / es) * ss);
}

SearchResult ContrastRequiredN(const ContrastSizeRequest& request,
                               CriticalTCache& criticals,
                               ProcedureObserver& observer) {
  const SearchRequest search{
      .effect = request.es,
      .powerGoal = request.powerGoal,
      .start = ContrastStart(request.es, request.ss, request.alpha, request.powerGoal),
      .sizeLimit = request.sizeLimit};
  const auto powerAt = [&](std::int64_t n) {
    return TrialPower(observer, [&](Refusal& refusal) {
      return ContrastPower(request.groups, n, request.alpha, request.es, request.ss, refusal,
                           criticals);
    });
  };
  return RequiredSizeSearch(SearchMember::PlannedContrast, search, powerAt, observer);
}

// --- One-way analysis of variance.

FDesign OneWayDesign(std::int64_t groups, std::int64_t n, double rmsse) {
  return {groups - 1, (n - 1) * groups, Squared(rmsse) * AsDouble(n) * AsDouble(groups - 1)};
}

double OneWayPower(
    const OneWayTest& test, std::int64_t n, int& err, double& critOut, CriticalFCache& criticals) {
  const FDesign design = OneWayDesign(test.groups, n, test.rmsse);
  return test.model == RandomEffects
             ? RandomEffectsPower(n, design.df1, design.df2, test.rmsse, test.alpha, err,
                                  test.algorithm, critOut, criticals)
             : FTestPower(design.df1, design.df2, design.delta, test.alpha, err, test.algorithm,
                          critOut, criticals);
}

// Kept: neither exact nor the usual rule, on purpose; it only sets the first trial.
double FixedEffectsStart(std::int64_t groups, double rmsse, double alpha, double powerGoal) {
  const double z = NormalQuantile(powerGoal) + NormalQuantile(1 - alpha * .5);
  return std::trunc(Squared(z / rmsse) / std::sqrt(AsDouble(groups - 1)));
}

double RandomEffectsStart(std::int64_t groups, double rmsse, double alpha, double powerGoal) {
  const auto df1 = static_cast<std::int32_t>(groups - 1);
  int status = 0;
  const double q1 = NoncentralChiSquareQuantile(0, df1, 1 - alpha, status);
  const double q2 = NoncentralChiSquareQuantile(0, df1, 1 - powerGoal, status);
  // q2 is 0 for few groups and a high goal: an infinite estimate, which the search takes as none.
  return std::trunc(((q1 / df1) / (q2 / df1) - 1) / Squared(rmsse));
}

SearchResult OneWayRequiredN(const OneWaySizeRequest& request,
                             CriticalFCache& criticals,
                             ProcedureObserver& observer) {
  const OneWayTest& test = request.test;
  const double start =
      test.model == RandomEffects
          ? RandomEffectsStart(test.groups, test.rmsse, request.committedAlpha, request.powerGoal)
          : FixedEffectsStart(test.groups, test.rmsse, test.alpha, request.powerGoal);
  const SearchRequest search{.effect = test.rmsse,
                             .powerGoal = request.powerGoal,
                             .start = start,
                             .sizeLimit = request.sizeLimit};
  const auto powerAt = [&](std::int64_t n) {
    return PowerWithinReach(test.rmsse, test.algorithm, [&](double rmsse, std::int16_t algorithm) {
      OneWayTest trial = test;
      trial.rmsse = rmsse;
      trial.algorithm = algorithm;
      int err = 0;
      double crit = 0;
      return OneWayPower(trial, n, err, crit, criticals);
    });
  };
  return RequiredSizeSearch(
      SearchMember::OneWayAnova, search,
      SettledPower(powerAt, request.powerGoal, kSmallestGroup, request.sizeLimit), observer);
}

// --- Two-way analysis of variance.

FDesign TwoWayDesign(
    std::int64_t rows, std::int64_t columns, std::int64_t n, double rmsse, std::int16_t effect) {
  FDesign design{.df2 = (n - 1) * rows * columns};
  double cellsPerLevel = 1;
  switch (effect) {
    case RowEffect:
      design.df1 = rows - 1;
      cellsPerLevel = AsDouble(columns);
      break;
    case ColumnEffect:
      design.df1 = columns - 1;
      cellsPerLevel = AsDouble(rows);
      break;
    case InteractionEffect:
      design.df1 = (rows - 1) * (columns - 1);
      break;
    default:
      break;
  }
  design.delta = AsDouble(design.df1) * cellsPerLevel * AsDouble(n) * Squared(rmsse);
  return design;
}

std::int64_t ShownTwoWayEffectDf(std::int64_t rows, std::int64_t columns, std::int16_t effect) {
  return effect == InteractionEffect ? (columns - 1) * (columns - 1)
                                     : TwoWayDesign(rows, columns, 1, 0, effect).df1;
}

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
                   CriticalFCache& criticals) {
  constexpr double kTolerance = PolicyOf(SearchMember::TwoWayAnova).nullTolerance;
  if (NullHypothesisCheck(rmsse, H0AtMost, kTolerance, TrueNull::Exactly, refusal) != 0) {
    err = 1;
    critOut = NumericFailure;
    return NumericFailure;
  }
  const FDesign design = TwoWayDesign(rows, columns, n, rmsse, effect);
  return FTestPower(design.df1, design.df2, design.delta, alpha, err, algorithm, critOut,
                    criticals);
}

SearchResult TwoWayRequiredN(const TwoWaySizeRequest& request,
                             CriticalFCache& criticals,
                             ProcedureObserver& observer) {
  const SearchRequest search{
      .effect = request.rmsse, .powerGoal = request.powerGoal, .sizeLimit = request.sizeLimit};
  const auto powerAt = [&](std::int64_t n) {
    const auto powerBy = [&](double rmsse, std::int16_t algorithm) {
      return TrialPower(observer, [&](Refusal& refusal) {
        int err = 0;
        double crit = 0;
        return TwoWayPower(request.alpha, request.rows, request.columns, n, rmsse, algorithm,
                           request.effect, crit, err, refusal, criticals);
      });
    };
    return PowerWithinReach(request.rmsse, request.algorithm, powerBy);
  };
  return RequiredSizeSearch(
      SearchMember::TwoWayAnova, search,
      SettledPower(powerAt, request.powerGoal, kSmallestGroup, request.sizeLimit), observer);
}

}  // namespace poweranalysis
