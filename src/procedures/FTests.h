#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

// Power of F tests: what analyses of variance and tests of two variances share. Degrees of freedom
// are 64-bit: those of a two-way error term, (N - 1) R C, outgrow 32 bits.
namespace poweranalysis {

// Quantiles of the central F distribution already found, so that a search or a curve asks for each
// (df1, df2, p) once. Every value is the one that NoncentralFQuantile gives with delta 0, which
// does not depend on its algorithm. A plain value: each search or curve owns one.
class CriticalFCache {
 public:
  // Fails: NumericFailure with `failure` nonzero.
  double Find(std::int64_t df1, std::int64_t df2, double p, int& failure);

 private:
  struct Entry {
    double p = 0;
    double critical = 0;
    std::int64_t df1 = 0;  // 0: empty
    std::int64_t df2 = 0;
  };
  static constexpr int kIndexBits = 6;

  std::array<Entry, std::size_t{1} << kIndexBits> entries_{};
};

// P(F <= f) by an FAlgorithm; 1 at infinity.
//
// Domain: f >= 0, df1 >= 1, df2 >= 1, delta >= 0. For the approximation degrees of freedom beyond
//         32 bits count as the largest of 32 bits.
// Fails:  NumericFailure with `failure` nonzero when the distribution fails, does not give a
//         number, or is asked for another algorithm.
double FTestCdf(double f,
                std::int64_t df1,
                std::int64_t df2,
                double delta,
                std::int16_t algorithm,
                int& failure);

// Power of an F test at noncentrality delta.
//
//   1 - P(F(df1, df2, delta) <= crit),  crit the quantile of the central F at 1 - alpha
//
// Source: Tang, P. C. (1938). The power function of the analysis of variance tests with tables and
//         illustrations of their use. Statistical Research Memoirs 2, 126-149.
// Domain: 0 < alpha < 1, delta >= 0. With delta 0 the power is alpha.
// Fails:  NumericFailure with `err` nonzero when a degree of freedom is below 1 or a distribution
//         fails; `critOut` is NumericFailure too when the critical value is what failed.
double FTestPower(std::int64_t df1,
                  std::int64_t df2,
                  double delta,
                  double alpha,
                  int& err,
                  std::int16_t algorithm,
                  double& critOut,
                  CriticalFCache& criticals);

// Power of the F test of random effects of root mean square `rmsse`, in units of the error's
// standard deviation, with n observations per group.
//
//   1 - P(F(df1, df2) <= crit / (n rmsse^2 + 1)),  crit as above and given out unscaled
//
// The divisor is the ratio of the expected mean squares.
//
// Source: Scheffe, H. (1959). The analysis of variance, section 7.2. New York: Wiley.
// Domain, failure: as above.
double RandomEffectsPower(std::int64_t n,
                          std::int64_t df1,
                          std::int64_t df2,
                          double rmsse,
                          double alpha,
                          int& err,
                          std::int16_t algorithm,
                          double& critOut,
                          CriticalFCache& criticals);

}  // namespace poweranalysis
