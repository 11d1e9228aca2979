#include "procedures/FTests.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "distributions/Common.h"
#include "distributions/NoncentralF.h"

namespace poweranalysis {

namespace {

// Knuth's multiplicative hash: the error degrees of freedom of a search run in multiples of the
// number of groups, which the lowest bits alone would crowd into few entries.
std::size_t IndexOf(std::int64_t df1, std::int64_t df2, double p, int bits) {
  constexpr std::uint64_t kGoldenRatio = 0x9E3779B97F4A7C15U;
  const std::uint64_t tail = p < .5 ? 1 : 0;  // the two critical values of a two-tailed test
  const std::uint64_t key =
      static_cast<std::uint64_t>(df2) * 2 + static_cast<std::uint64_t>(df1) * 8191 + tail;
  return static_cast<std::size_t>((key * kGoldenRatio) >> (64 - bits));
}

std::int32_t Narrowed(std::int64_t df) {
  constexpr std::int64_t kLargest = std::numeric_limits<std::int32_t>::max();
  return static_cast<std::int32_t>(std::min(df, kLargest));
}

// The critical value at 1 - alpha; false when there is none.
bool FindCritical(std::int64_t df1,
                  std::int64_t df2,
                  double alpha,
                  int& err,
                  double& crit,
                  CriticalFCache& criticals) {
  err = 0;
  crit = NumericFailure;
  if (df1 < 1 || df2 < 1) {
    err = 1;
    return false;
  }
  crit = criticals.Find(df1, df2, 1 - alpha, err);
  return err == 0;
}

// A failed probability is not a probability to subtract from 1.
double Complement(double probability) {
  return probability == NumericFailure ? NumericFailure : 1 - probability;
}

}  // namespace

double CriticalFCache::Find(std::int64_t df1, std::int64_t df2, double p, int& failure) {
  failure = 0;
  Entry& entry = entries_[IndexOf(df1, df2, p, kIndexBits)];
  if (entry.df1 == df1 && entry.df2 == df2 && entry.p == p) {
    return entry.critical;
  }
  const double critical =
      CentralFQuantile(static_cast<double>(df1), static_cast<double>(df2), p, failure);
  if (failure == 0 && !(critical >= 0)) {
    failure = 1;
  }
  if (failure != 0) {
    return NumericFailure;
  }
  entry = {p, critical, df1, df2};
  return critical;
}

double FTestCdf(double f,
                std::int64_t df1,
                std::int64_t df2,
                double delta,
                std::int16_t algorithm,
                int& failure) {
  failure = 0;
  if (f == std::numeric_limits<double>::infinity()) {
    return 1;
  }
  const double probability =
      algorithm == FExact
          ? NoncentralFCdf(f, static_cast<double>(df1), static_cast<double>(df2), delta, failure)
          : NoncentralFCdfInt(f, Narrowed(df1), Narrowed(df2), delta, failure, algorithm);
  if (failure == 0 && (probability == NumericFailure || std::isnan(probability))) {
    failure = 1;
  }
  return failure == 0 ? probability : NumericFailure;
}

double FTestPower(std::int64_t df1,
                  std::int64_t df2,
                  double delta,
                  double alpha,
                  int& err,
                  std::int16_t algorithm,
                  double& critOut,
                  CriticalFCache& criticals) {
  if (!FindCritical(df1, df2, alpha, err, critOut, criticals)) {
    return NumericFailure;
  }
  return Complement(FTestCdf(critOut, df1, df2, delta, algorithm, err));
}

double RandomEffectsPower(std::int64_t n,
                          std::int64_t df1,
                          std::int64_t df2,
                          double rmsse,
                          double alpha,
                          int& err,
                          std::int16_t algorithm,
                          double& critOut,
                          CriticalFCache& criticals) {
  if (!FindCritical(df1, df2, alpha, err, critOut, criticals)) {
    return NumericFailure;
  }
  const double ratio = static_cast<double>(n) * (rmsse * rmsse) + 1;
  return Complement(FTestCdf(critOut / ratio, df1, df2, 0, algorithm, err));
}

}  // namespace poweranalysis
