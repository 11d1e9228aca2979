#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "procedures/RequiredSizeSearch.h"

// Power and required size of the t-tests of one mean, of two means and of paired means. All of it
// is exact noncentral t; the normal distribution serves only for the first trial of a search.
namespace poweranalysis {

// --- Effects.

// Standardized effect of one mean: (mu - mu0) / sigma.
double OneMeanEffect(double mu, double mu0, double sigma);
// Standardized effect of two independent means: (mu1 - mu2) / sigma.
double TwoMeansEffect(double mu1, double mu2, double sigma);
// Standard deviation of the differences of paired observations,
//   sqrt(sigma1^2 + sigma2^2 - 2 r sigma1 sigma2).
// Kept: it is shown under the label of a standard error, though it is not divided by sqrt(N).
double PairedSigmaDiff(double sigma1, double sigma2, double r);
// Standardized effect of paired means: (mu1 - mu2) / sigmaDiff.
double PairedMeansEffect(double mu1, double mu2, double sigmaDiff);

// --- Designs.

// What the noncentral t distribution of a test needs of a design.
struct TDesign {
  std::int32_t df = 0;
  double delta = 0;
};

// One mean, or paired means: df = n - 1, delta = es sqrt(n).
TDesign OneGroupDesign(double es, std::int64_t n);
// Two means: df = n1 + n2 - 2, delta = es sqrt(n1 n2 / (n1 + n2)).
TDesign TwoGroupsDesign(double es, std::int64_t n1, std::int64_t n2);
// Two means with n in each group: df = 2 n - 2, delta = es sqrt(n / 2).
TDesign EqualGroupsDesign(double es, std::int64_t n);

// --- Power.

// Critical value of t: the lower-tail quantile at alpha / 2 (two-tailed) or alpha (the other
// forms), a negative number for every alpha below .5. A caller that needs the upper one negates it.
//
//   the t at which NoncentralTCdf(t, df, 0) = p, searched from NormalQuantile(p)
//
// Source: Student (1908). Biometrika 6, 1-25, by the distribution of distributions/NoncentralT.
// Domain: df >= 1, 0 < alpha < 1.
// Fails:  NumericFailure when the distribution does.
double CriticalT(std::int32_t df, double alpha, std::int16_t form);

// Critical values already found, so that a search or a curve asks for each (df, alpha, form) once.
// Every value is the one that CriticalT gives. A plain value: each search or curve owns one.
class CriticalTCache {
 public:
  double Find(std::int32_t df, double alpha, std::int16_t form);

 private:
  struct Entry {
    double alpha = 0;
    double critical = 0;
    std::int32_t df = 0;  // 0: empty
    std::int16_t form = 0;
  };
  // A power of two, so that neighbouring degrees of freedom do not push each other out.
  static constexpr std::size_t kEntries = 64;

  std::array<Entry, kEntries> entries_{};
};

// Power of a t-test.
//
//   form 0:  F(crit) + 1 - F(-crit), both tails, so the small chance of rejecting on the wrong side
//   counts form 1:  1 - F(-crit) form 2:  F(crit) with F the noncentral t distribution with df and
//   delta, and crit of CriticalT, negative. Any other form has power 0.
//
// Source: Owen, D. B. (1965). Biometrika 52, 437-446.
// Domain: df >= 1.
// Fails:  NumericFailure when NullHypothesisCheck of delta refuses, with its refusal, when crit is
//         NumericFailure or when the distribution fails.
// Guard:  a delta beyond 1e15 in size counts as that.
double TTestPower(double crit, std::int32_t df, double delta, std::int16_t form, Refusal& refusal);

// Power of a design, with the critical value out of the cache.
double TTestPower(const TDesign& design,
                  double alpha,
                  std::int16_t form,
                  Refusal& refusal,
                  CriticalTCache& criticals);

// --- Required size.

// What is asked of a required-size search of a t-test.
struct TSizeRequest {
  double es = 0;  // standardized effect
  double alpha = 0;
  double powerGoal = 0;
  std::int16_t form = H0TwoTailed;
  std::int64_t sizeLimit = 0;  // of the family's `Upper` record
};

// Which group of two is sought, the field NToVary.
enum NToVaryChoice : std::int16_t {
  NToVaryBoth = 0,  // equal groups
  NToVaryN1 = 1,    // N2 is fixed
  NToVaryN2 = 2,    // N1 is fixed
};

// First estimates, from d = (NormalQuantile(powerGoal) - NormalQuantile(p)) / es with p as in
// CriticalT: the whole part of d^2, at least 2, for one group; twice the whole part of d^2 for
// equal groups. Whole numbers that may exceed any integer.
double OneGroupStart(double es, double alpha, double powerGoal, std::int16_t form);
double EqualGroupsStart(double es, double alpha, double powerGoal, std::int16_t form);

// The smallest N of one mean or of paired means whose power exceeds the goal.
//
// Domain: as TTestPower, and 0 < powerGoal < 1.
// Fails:  as RequiredSizeSearch for SearchMember::TTest.
SearchResult OneGroupRequiredN(const TSizeRequest& request,
                               CriticalTCache& criticals,
                               ProcedureObserver& observer);

// The smallest N of two means whose power exceeds the goal: per group, or of the group that
// `nToVary` seeks while the other keeps `fixedN`.
//
// Domain: as above; fixedN >= 1, unused for equal groups.
// Fails:  as RequiredSizeSearch for SearchMember::TTest; an unknown `nToVary` silently gives
//         SearchNullTrue.
SearchResult TwoGroupsRequiredN(const TSizeRequest& request,
                                std::int16_t nToVary,
                                std::int64_t fixedN,
                                CriticalTCache& criticals,
                                ProcedureObserver& observer);

// --- What the summary tables show.

// Critical value of t of one mean: -crit, but crit itself, negative, for the lower-tail test
// (form 2).
double ShownCriticalTOfOneMean(double crit, std::int16_t form);
// Critical value of t of two means and of paired means.
// Kept: -crit, positive, also for the lower-tail test.
double ShownCriticalT(double crit);
// Critical value of t beside a required N of two means.
// Kept: with the df of equal groups, 2 n - 2, also when a group is fixed.
double ShownCriticalTOfRequiredN(std::int64_t requiredN, double alpha, std::int16_t form);

}  // namespace poweranalysis
