#include "distributions/NoncentralT.h"

#include <cmath>

#include "distributions/AdaptiveIntegrate.h"
#include "distributions/Common.h"
#include "distributions/NoncentralTStart.h"
#include "distributions/Normal.h"
#include "distributions/OwenRecursion.h"
#include "distributions/SolveParameter.h"

namespace poweranalysis {

namespace {

constexpr double InverseTwoPi = 0.159154943091896;
constexpr double SqrtTwoPi = 2.506628274631;
constexpr double IntegrationTolerance = 1e-12;
constexpr double LogUnderflow = -708.0;

// The guard compares v - log(y) with the limit. While v is at least -600 and y at most 1e40, whose
// logarithm is below 93, that cannot be reached and the logarithm is not taken.
constexpr double SafeExponent = -600.0;
constexpr double SafeSquare = 1e40;

double OwenQuotient(double exponentFactor, double x) {
  const double y = x * x + 1.0;
  const double v = exponentFactor * y;
  if (!(v >= SafeExponent && y <= SafeSquare) && v - std::log(y) < LogUnderflow) {
    return 0.0;
  }
  return std::exp(v) / y;
}

// 2 pi times Owen's T(h, upper), or the integrator's failure.
double OwenIntegral(double h, double upper, int& ier) {
  double result = 0.0;
  double abserr = 0.0;
  int neval = 0;
  const auto integrate = [&](const auto& f) {
    AdaptiveIntegrate(f, 0.0, upper, IntegrationTolerance, IntegrationTolerance, result, abserr,
                      neval, ier);
  };
  if (h == 0.0) {
    // The exponential is exactly 1.
    integrate([](double x) { return IntegrandValue{1.0 / (x * x + 1.0), 0}; });
  } else {
    const double exponentFactor = -0.5 * h * h;
    integrate([exponentFactor](double x) {
      return IntegrandValue{OwenQuotient(exponentFactor, x), 0};
    });
  }
  return result;
}

double NumberOrFailure(double p) { return std::isnan(p) ? NumericFailure : p; }

// P(T <= t) from the sum of the recursion.
double CdfOfSum(const OwenTerms& terms, double s, std::int32_t df, double delta) {
  if (df % 2 == 0) {
    return NumberOrFailure(s * SqrtTwoPi + NormalCdf(-delta));
  }
  int ier = 0;
  const double T = OwenIntegral(terms.b, terms.A, ier) * InverseTwoPi;
  if (ier != 0 || T == NumericFailure) {
    return NumericFailure;
  }
  return NumberOrFailure(2.0 * (T + s) + NormalCdf(-terms.b));
}

}  // namespace

double OwenTIntegrand(double x, double h) { return OwenQuotient(-0.5 * h * h, x); }

double NoncentralTCdf(double t, std::int32_t df, double delta) {
  if (df > LargestTDf) {
    return NumericFailure;
  }
  const OwenTerms terms(t, df, delta);
  return CdfOfSum(terms, OwenSum(terms, df), df, delta);
}

double NoncentralTCdfBesideLarger(double t, std::int32_t df, double delta) {
  if (df > LargestTDf) {
    return NumericFailure;
  }
  const OwenTerms terms(t, df, delta);
  OwenTerms mirrored = terms;
  mirrored.c = std::fabs(terms.c);
  const bool factored = df >= 2 && owen::FactoredFormHolds(mirrored, df);
  const double s =
      factored ? owen::FactoredSum(terms, df) * std::exp(terms.logScale) : OwenSum(terms, df);
  return CdfOfSum(terms, s, df, delta);
}

double NoncentralTQuantile(double delta, std::int32_t df, double p, int& status, int& failure) {
  std::int64_t steps = SearchStepLimit;
  const auto search = [&](double start) {
    return SolveParameter(delta, df, p, start, status, failure, SearchTQuantile, 0, steps);
  };
  const QuantileStart first = FirstQuantileStart(delta, df, p, steps);
  const double t = search(first.t);
  if (!first.isDirect || (status == 0 && failure == 0)) {
    return t;
  }
  const double second = search(SecondQuantileStart(delta, df, p, steps));
  return status == 0 && failure == 0 ? second : NumericFailure;
}

double CentralTQuantile(std::int32_t df, double p, int& status, int& failure) {
  return SolveParameter(0.0, df, p, NormalQuantile(p), status, failure, SearchTQuantile, 0);
}

}  // namespace poweranalysis
