#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "distributions/NoncentralF.h"
#include "procedures/FTests.h"
#include "procedures/RequiredSizeSearch.h"

// Power and required degrees of freedom of the chi-square test of one variance and of the F test of
// two. Under the alternative either statistic is a central one times a ratio of variances.
namespace poweranalysis {

// The relative difference of two variances, a / b - 1, which a null hypothesis of equal variances
// is checked by. Equal variances differ by 0, also when both are 0.
double VarianceEffect(double a, double b);

// --- One variance.

// Quantiles of the central chi-square distribution already found, so that a search or a curve asks
// for each (df, p) once. Every value is the one that NoncentralChiSquareQuantile gives with delta
// 0. A plain value: each search or curve owns one.
class CriticalChiSquareCache {
 public:
  // `status` is that of the quantile's search: nonzero where the value was not shown to solve the
  // equation.
  double Find(std::int32_t df, double p, int& status);

 private:
  struct Entry {
    double p = 0;
    double critical = 0;
    std::int32_t df = 0;  // 0: empty
    int status = 0;
  };
  static constexpr std::size_t kEntries = 64;

  std::array<Entry, kEntries> entries_{};
};

// Power of the chi-square test of one variance against var0.
//
//   form 0:  (1 - F(q(1 - alpha / 2) r)) + F(q(alpha / 2) r)
//   form 1:  1 - F(q(1 - alpha) r)
//   form 2:  F(q(alpha) r)
//   with F and q the central chi-square distribution and its quantiles, and r = var0 / var
//
// Kept: for 1 to 3 degrees of freedom and a small alpha the lower quantile is found as 0, with
//       `err` nonzero beside a power that then lacks its lower tail.
//
// Source: Hays, W. L. (1988). Statistics, 4th ed., chapter 9. New York: Holt, Rinehart and Winston.
// Domain: df >= 1, 0 < alpha < 1. A var of 0 makes r infinite.
// Fails:  NumericFailure with `err` nonzero when NullHypothesisCheck of var - var0 refuses, with
//         its refusal, for a variance below 0, another form, and when a distribution fails.
//         Otherwise `err` is the status of the last quantile.
double ChiSquareVariancePower(double alpha,
                              std::int64_t df,
                              double var,
                              double var0,
                              std::int16_t form,
                              int& err,
                              Refusal& refusal,
                              CriticalChiSquareCache& criticals);

struct OneVarianceDfRequest {
  double var = 0;
  double var0 = 0;  // under the null hypothesis
  double alpha = 0;
  double powerGoal = 0;
  std::int16_t form = H0TwoTailed;
  std::int64_t sizeLimit = 0;  // of the family's `Upper` record; the refusal alone uses it
};

// First estimate: the whole part of (sqrt(2 var^2) (z2 - (var0 / var) z1) / (var0 - var))^2 with
//   form 0:  z1 = NormalQuantile(1 - alpha / 2), z2 = NormalQuantile(1 - powerGoal), both negated
//            if var < var0
//   form 1:  z1 = NormalQuantile(1 - alpha), z2 = NormalQuantile(1 - powerGoal)
//   form 2:  z1 = NormalQuantile(alpha), z2 = NormalQuantile(powerGoal)
// A whole number that may exceed any integer or not be a number.
double OneVarianceStart(double var, double var0, double alpha, double powerGoal, std::int16_t form);

// The smallest degrees of freedom whose power exceeds the goal.
//
// Domain: as ChiSquareVariancePower, and 0 < powerGoal < 1.
// Fails:  as RequiredSizeSearch for SearchMember::OneVariance; a variance below 0 and a form that
//         is not 0, 1 or 2 give SearchNullTrue without a message.
SearchResult OneVarianceRequiredDf(const OneVarianceDfRequest& request,
                                   CriticalChiSquareCache& criticals,
                                   ProcedureObserver& observer);

// --- Two variances.

// Power of the F test of two variances whose ratio is `ratio`.
//
//   form 0:  F(q(alpha / 2) / ratio) + (1 - F(q(1 - alpha / 2) / ratio))
//   form 1:  1 - F(q(1 - alpha) / ratio)
//   form 2:  F(q(alpha) / ratio)
//   with F and q the central F distribution and its quantiles
//
// Kept: the null hypothesis is checked by the ratio itself and not by its difference from 1, so
//       that form 2 is always refused as a true null.
//
// Source: Hays, W. L. (1988). Statistics, 4th ed., chapter 9. New York: Holt, Rinehart and Winston.
// Domain: 0 < alpha < 1.
// Fails:  NumericFailure: with `err` as it stood when a degree of freedom is below 1; with `err`
//         nonzero when NullHypothesisCheck refuses, with its refusal, for a ratio that is not above
//         0, another form, and when a distribution fails.
double TwoVariancePower(double ratio,
                        double alpha,
                        std::int64_t df1,
                        std::int64_t df2,
                        std::int16_t form,
                        int& err,
                        std::int16_t algorithm,
                        Refusal& refusal,
                        CriticalFCache& criticals);

// The field DfToVary. Its range is wider than its choices.
enum DfToVaryChoice : std::int16_t {
  DfToVaryBoth = 0,  // equal degrees of freedom
  DfToVaryDf1 = 1,   // Df2 is fixed
};

struct TwoVariancesDfRequest {
  double ratio = 0;
  double alpha = 0;
  double powerGoal = 0;
  std::int16_t form = H0TwoTailed;
  std::int16_t dfToVary = DfToVaryBoth;
  std::int64_t fixedDf2 = 0;  // unused for equal degrees of freedom
  std::int16_t algorithm = FExact;
  std::int64_t sizeLimit = 0;  // of the family's `Upper` record
};

// First estimate: the whole part of 2 e^2, e = (a + NormalQuantile(powerGoal) R) / (R - 1), with R
// the ratio, or its inverse where it is below 1 (form 0) or the lower tail rejects (form 2), and a
// = NormalQuantile(1 - alpha / 2) for form 0, NormalQuantile(1 - alpha) otherwise. A whole number
// that may exceed any integer or not be a number.
double TwoVariancesStart(double ratio, double alpha, double powerGoal, std::int16_t form);

// The smallest degrees of freedom, of both groups or of the first, whose power exceeds the goal; 1
// when that reaches it.
//
// Kept: form 2 finds nothing. Every trial is refused as a true null, and this is reported to the
// observer each time, until the limit ends the search.
//
// Domain: as TwoVariancePower, and 0 < powerGoal < 1; fixedDf2 >= 1.
// Fails:  as RequiredSizeSearch for SearchMember::TwoVariances; another `dfToVary` or form gives
//         SearchNullTrue without a message.
SearchResult TwoVariancesRequiredDf(const TwoVariancesDfRequest& request,
                                    CriticalFCache& criticals,
                                    ProcedureObserver& observer);

}  // namespace poweranalysis
