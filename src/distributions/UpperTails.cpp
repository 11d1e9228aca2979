#include "distributions/UpperTails.h"

#include <algorithm>
#include <cmath>

#include "distributions/Beta.h"
#include "distributions/Common.h"

namespace poweranalysis {

namespace {

constexpr int kTermLimit = 1'000'000;
constexpr double kLost = 1e-18;  // a share of the sum that is lost in its rounding

// A central upper tail and the logarithm of what it rises by.
struct Rising {
  double upper;
  double logStep;

  void Rise(double ratio) {
    upper = std::min(1.0, upper + std::exp(logStep));
    logStep += std::log(ratio);
  }
};

// The sum of w_j U_j. The weights begin with exp(`logWeight`); `weightRatio` and `stepRatio` give
// what the j-th weight and step are multiplied by to become the next.
template <class WeightRatio, class StepRatio>
double SumOfUpperTails(Rising central,
                       double logWeight,
                       WeightRatio weightRatio,
                       StepRatio stepRatio) {
  double sum = 0;
  for (int j = 0; j < kTermLimit; ++j) {
    const double weight = std::exp(logWeight);
    sum += weight * central.upper;
    const double ratio = weightRatio(j);
    // Once the weights fall, those to come add up to less than a geometric series.
    if (ratio < 1 && weight * ratio / (1 - ratio) <= kLost * sum) {
      return std::min(1.0, sum);
    }
    if (ratio < 1 && weight == 0) {
      return sum;
    }
    central.Rise(stepRatio(j));
    logWeight += std::log(ratio);
  }
  return NumericFailure;
}

// The central chi-square distribution with 1 or 2 degrees of freedom.
Rising LowestChiSquare(double x, bool odd) {
  constexpr double kLogHalfRootPi = -0.12078223763524522;
  const double half = x / 2;
  return odd ? Rising{std::erfc(std::sqrt(half)), std::log(half) / 2 - half - kLogHalfRootPi}
             : Rising{std::exp(-half), std::log(half) - half};
}

Rising CentralChiSquare(double x, std::int32_t df) {
  Rising central = LowestChiSquare(x, df % 2 != 0);
  for (std::int32_t n = df % 2 != 0 ? 1 : 2; n < df; n += 2) {
    central.Rise(x / (n + 2.0));
  }
  return central;
}

// The beta distribution with the shapes a and b at x; `rest` is 1 - x.
Rising CentralBeta(double x, double rest, double a, double b) {
  int failure = 0;
  const double logBeta = LogGamma(a) + LogGamma(b) - LogGamma(a + b);
  return {BetaCdf(rest, b, a, failure),
          a * std::log(x) + b * std::log(rest) - std::log(a) - logBeta};
}

// What the j-th step of a beta distribution is multiplied by.
auto BetaSteps(double x, double a, double b) {
  return [=](int j) { return x * (a + b + j) / (a + j + 1); };
}

auto PoissonWeights(double mean) {
  return [mean](int j) { return mean / (j + 1.0); };
}

}  // namespace

double NoncentralChiSquareUpper(double x, std::int32_t df, double delta) {
  if (!(x >= 0) || df < 1 || !(delta >= 0) || std::isinf(delta)) {
    return NumericFailure;
  }
  if (x == 0) {
    return 1;
  }
  return SumOfUpperTails(CentralChiSquare(x, df), -delta / 2, PoissonWeights(delta / 2),
                         [=](int j) { return x / (df + 2.0 * (j + 1)); });
}

double NoncentralFUpper(double f, double df1, double df2, double delta) {
  if (!(f >= 0) || !(df1 > 0) || !(df2 > 0) || !(delta >= 0) || std::isinf(delta)) {
    return NumericFailure;
  }
  if (f == 0) {
    return 1;
  }
  const double x = df1 * f / (df1 * f + df2);
  const double rest = df2 / (df1 * f + df2);
  const double a = df1 / 2;
  const double b = df2 / 2;
  return SumOfUpperTails(CentralBeta(x, rest, a, b), -delta / 2, PoissonWeights(delta / 2),
                         BetaSteps(x, a, b));
}

double MultipleR2Upper(double rho2, std::int32_t n, std::int32_t k, double x) {
  if (!(rho2 >= 0) || !(rho2 < 1) || k < 2 || n <= k || !(x >= 0) || !(x <= 1)) {
    return NumericFailure;
  }
  if (x == 0 || x == 1) {
    return x == 0 ? 1 : 0;
  }
  const double a = (k - 1) / 2.0;
  const double b = (n - k) / 2.0;
  const double A = (n - 1) / 2.0;
  return SumOfUpperTails(
      CentralBeta(x, 1 - x, a, b), A * std::log1p(-rho2),
      [=](int j) { return (A + j) * rho2 / (j + 1.0); }, BetaSteps(x, a, b));
}

}  // namespace poweranalysis
