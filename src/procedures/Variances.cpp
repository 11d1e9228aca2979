#include "procedures/Variances.h"

#include <cmath>

#include "distributions/Common.h"
#include "distributions/NoncentralChiSquare.h"
#include "distributions/Normal.h"
#include "procedures/SettledPower.h"

namespace poweranalysis {

namespace {

bool HasBranch(std::int16_t form) { return form >= H0TwoTailed && form <= H0AtLeast; }

// A search that nothing serves, with no message about it.
constexpr SearchResult kNotServed = {SizeFailure, NumericFailure, SearchNullTrue};

// Power of a test that rejects beyond the quantiles of its statistic under the null hypothesis.
// `below` maps p to the probability, under the alternative, of a statistic up to the quantile at p,
// and to NumericFailure when that fails, with `err` nonzero.
template <class Below>
double PowerBeyondQuantiles(double alpha, std::int16_t form, Below below) {
  if (form == H0AtLeast) {
    return below(alpha);
  }
  const double upTo = below(1 - (form == H0TwoTailed ? alpha / 2 : alpha));
  if (upTo == NumericFailure || form == H0AtMost) {
    return upTo == NumericFailure ? NumericFailure : 1 - upTo;
  }
  const double lower = below(alpha / 2);
  return lower == NumericFailure ? NumericFailure : (1 - upTo) + lower;
}

}  // namespace

double VarianceEffect(double a, double b) { return a == b ? 0 : a / b - 1; }

// --- One variance.

double CriticalChiSquareCache::Find(std::int32_t df, double p, int& status) {
  // The two quantiles of a two-tailed test share their degrees of freedom.
  const std::uint32_t tail = p < .5 ? 1 : 0;
  Entry& entry = entries_[(static_cast<std::uint32_t>(df) * 2 + tail) % kEntries];
  if (entry.df != df || entry.p != p) {
    int found = 0;
    const double critical = NoncentralChiSquareQuantile(0, df, p, found);
    entry = {p, critical, df, found};
  }
  status = entry.status;
  return entry.critical;
}

double ChiSquareVariancePower(double alpha,
                              std::int64_t df,
                              double var,
                              double var0,
                              std::int16_t form,
                              int& err,
                              Refusal& refusal,
                              CriticalChiSquareCache& criticals) {
  constexpr double kTolerance = PolicyOf(SearchMember::OneVariance).nullTolerance;
  err = 1;
  if (NullHypothesisCheck(var - var0, form, kTolerance, TrueNull::Exactly, refusal) != 0 ||
      !(var >= 0 && var0 >= 0) || !HasBranch(form) || df < 1 || df > LargestChiSquareDf) {
    return NumericFailure;
  }
  err = 0;
  const double r = var0 / var;
  const auto wholeDf = static_cast<std::int32_t>(df);
  return PowerBeyondQuantiles(alpha, form, [&](double p) {
    const double quantile = criticals.Find(wholeDf, p, err);
    int failure = quantile == NumericFailure ? 1 : 0;
    double density = 0;
    const double below = failure == 0
                             ? NoncentralChiSquareCdf(quantile * r, wholeDf, 0, density, failure)
                             : NumericFailure;
    if (failure != 0) {
      err = failure;
      return NumericFailure;
    }
    return below;
  });
}

double OneVarianceStart(
    double var, double var0, double alpha, double powerGoal, std::int16_t form) {
  const bool lowerTail = form == H0AtLeast;
  double z1 = NormalQuantile(lowerTail ? alpha : 1 - (form == H0TwoTailed ? alpha / 2 : alpha));
  double z2 = NormalQuantile(lowerTail ? powerGoal : 1 - powerGoal);
  if (form == H0TwoTailed && var < var0) {
    z1 = -z1;
    z2 = -z2;
  }
  const double root = std::sqrt(2 * (var * var)) * (z2 - (var0 / var) * z1) / (var0 - var);
  return std::trunc(root * root);
}

SearchResult OneVarianceRequiredDf(const OneVarianceDfRequest& request,
                                   CriticalChiSquareCache& criticals,
                                   ProcedureObserver& observer) {
  if (!HasBranch(request.form) || !(request.var >= 0 && request.var0 >= 0)) {
    return kNotServed;
  }
  const SearchRequest search{.effect = VarianceEffect(request.var, request.var0),
                             .form = request.form,
                             .powerGoal = request.powerGoal,
                             .start = OneVarianceStart(request.var, request.var0, request.alpha,
                                                       request.powerGoal, request.form),
                             .sizeLimit = request.sizeLimit};
  const auto powerAt = [&](std::int64_t df) {
    return TrialPower(observer, [&](Refusal& refusal) {
      int err = 0;
      return ChiSquareVariancePower(request.alpha, df, request.var, request.var0, request.form, err,
                                    refusal, criticals);
    });
  };
  constexpr std::int64_t kLimit = PolicyOf(SearchMember::OneVariance).ownLimit;
  return RequiredSizeSearch(SearchMember::OneVariance, search,
                            SettledPower(powerAt, request.powerGoal, 1, kLimit), observer);
}

// --- Two variances.

double TwoVariancePower(double ratio,
                        double alpha,
                        std::int64_t df1,
                        std::int64_t df2,
                        std::int16_t form,
                        int& err,
                        std::int16_t algorithm,
                        Refusal& refusal,
                        CriticalFCache& criticals) {
  constexpr double kTolerance = PolicyOf(SearchMember::TwoVariances).nullTolerance;
  refusal = {};
  if (df1 < 1 || df2 < 1) {
    return NumericFailure;
  }
  err = 1;
  if (NullHypothesisCheck(ratio, form, kTolerance, TrueNull::Exactly, refusal) != 0 ||
      !(ratio > 0) || !HasBranch(form)) {
    return NumericFailure;
  }
  err = 0;
  return PowerBeyondQuantiles(alpha, form, [&](double p) {
    const double quantile = criticals.Find(df1, df2, p, err);
    return err == 0 ? FTestCdf(quantile / ratio, df1, df2, 0, algorithm, err) : NumericFailure;
  });
}

double TwoVariancesStart(double ratio, double alpha, double powerGoal, std::int16_t form) {
  const bool inverted = form == H0AtLeast || (form == H0TwoTailed && ratio < 1);
  const double R = inverted ? 1 / ratio : ratio;
  const double a = NormalQuantile(1 - (form == H0TwoTailed ? alpha / 2 : alpha));
  const double e = (a + NormalQuantile(powerGoal) * R) / (R - 1);
  return std::trunc(2 * (e * e));
}

SearchResult TwoVariancesRequiredDf(const TwoVariancesDfRequest& request,
                                    CriticalFCache& criticals,
                                    ProcedureObserver& observer) {
  const bool equalDf = request.dfToVary == DfToVaryBoth;
  if (!HasBranch(request.form) || !(equalDf || request.dfToVary == DfToVaryDf1)) {
    // Kept: the range of DfToVary is wider than its choices.
    return kNotServed;
  }
  const SearchRequest search{
      .effect = request.ratio - 1,
      .form = request.form,
      .powerGoal = request.powerGoal,
      .start = TwoVariancesStart(request.ratio, request.alpha, request.powerGoal, request.form),
      .sizeLimit = request.sizeLimit};
  const auto powerAt = [&](std::int64_t df1) {
    return TrialPower(observer, [&](Refusal& refusal) {
      int err = 0;
      return TwoVariancePower(request.ratio, request.alpha, df1, equalDf ? df1 : request.fixedDf2,
                              request.form, err, request.algorithm, refusal, criticals);
    });
  };
  if (request.form == H0AtLeast) {
    // Kept: every trial speaks.
    return RequiredSizeSearch(SearchMember::TwoVariances, search, powerAt, observer);
  }
  return RequiredSizeSearch(SearchMember::TwoVariances, search,
                            SettledPower(powerAt, request.powerGoal, 1, request.sizeLimit),
                            observer);
}

}  // namespace poweranalysis
