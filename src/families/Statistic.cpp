#include "families/Statistic.h"

#include <algorithm>

#include "distributions/Binomial.h"
#include "distributions/Correlation.h"
#include "distributions/MultipleR2.h"
#include "distributions/NoncentralChiSquare.h"
#include "distributions/NoncentralT.h"
#include "distributions/Normal.h"
#include "procedures/FTests.h"

namespace poweranalysis {

namespace {

// A failure of the distribution is its result's.
double Checked(double chance, int failure) { return failure == 0 ? chance : NumericFailure; }

double FChance(const Distribution& d, double x) {
  int failure = 0;
  return FTestCdf(x / d.scale, static_cast<std::int64_t>(d.df1), static_cast<std::int64_t>(d.df2),
                  d.noncentrality, d.algorithm, failure);
}

double ChiSquareChance(const Distribution& d, double x) {
  constexpr int kNoChance = 1;  // a sum that ended early is still a probability
  int failure = 0;
  double density = 0;
  const double chance = NoncentralChiSquareCdf(x / d.scale, static_cast<std::int32_t>(d.df1),
                                               d.noncentrality, density, failure);
  return failure == kNoChance ? NumericFailure : chance;
}

double SquaredCorrelationChance(const Distribution& d, double x) {
  int failure = 0;
  const double chance = MultipleR2Cdf(d.parameter, static_cast<std::int32_t>(d.n), d.variables, x,
                                      d.algorithm, failure);
  return Checked(chance, failure);
}

double CountChance(const Distribution& d, double x) {
  int failure = 0;
  return Checked(BinomialCdf(static_cast<double>(d.n), d.parameter, x, failure), failure);
}

double NormalChance(const Distribution& d, double x, bool withMean) {
  if (d.sd == 0) {
    return x > d.mean || (withMean && x == d.mean) ? 1 : 0;
  }
  return NormalCdf((x - d.mean) / d.sd);
}

}  // namespace

double ChanceUpTo(const Distribution& d, double x) {
  switch (d.kind) {
    case StatisticKind::T:
      return NoncentralTCdf(x, static_cast<std::int32_t>(d.df1), d.noncentrality);
    case StatisticKind::F:
      return FChance(d, x);
    case StatisticKind::ChiSquare:
      return ChiSquareChance(d, x);
    case StatisticKind::Correlation:
      return CorrelationCdf(d.parameter, static_cast<std::int32_t>(d.n), x, d.algorithm);
    case StatisticKind::SquaredCorrelation:
      return SquaredCorrelationChance(d, x);
    case StatisticKind::Binomial:
      return CountChance(d, x);
    default:
      return NormalChance(d, x, true);
  }
}

double ChanceBelow(const Distribution& d, double x) {
  switch (d.kind) {
    case StatisticKind::Binomial:
      return CountChance(d, x - 1);
    case StatisticKind::Normal:
      return NormalChance(d, x, false);
    default:
      return ChanceUpTo(d, x);
  }
}

double RejectionChance(const Statistic& statistic, const Distribution& distribution) {
  const bool hasUpper = statistic.upper != NumericFailure;
  const bool hasLower = statistic.lower != NumericFailure;
  if (!hasUpper && !hasLower) {
    return NumericFailure;
  }
  const double below = hasUpper ? ChanceBelow(distribution, statistic.upper) : 1;
  const double upTo = hasLower ? ChanceUpTo(distribution, statistic.lower) : 0;
  if (below == NumericFailure || upTo == NumericFailure) {
    return NumericFailure;
  }
  // Critical counts without room between them reject the count they share once.
  return statistic.lowTail == LowTail::Added ? std::min(1 - below + upTo, 1.0) : 1 - below - upTo;
}

}  // namespace poweranalysis
