#include "distributions/NoncentralChiSquare.h"

#include <algorithm>
#include <cmath>

#include "distributions/Common.h"
#include "distributions/Normal.h"
#include "distributions/SolveParameter.h"

namespace poweranalysis {

namespace {

constexpr double SmallestWeight = 1e-200;
constexpr double Truncation = 1e-06;
constexpr double LogScaleLimit = -50.0;
constexpr int TermLimit = 500;
constexpr double HalfLogHalfPi = 0.22579135264473;
constexpr double InverseSqrtTwoPi = 0.39894228;
constexpr double TwoNinths = 0.2222222222222222;

// The central distribution on its way up in steps of two degrees of freedom.
struct CentralTerms {
  double g;              // logarithm of T while that is below -50
  double T;              // twice the density
  double Q;              // the distribution function
  std::int32_t reached;  // the degrees of freedom
};

CentralTerms StartOfTerms(double x, std::int32_t df) {
  if (df % 2 != 0) {
    const double g = -0.5 * (std::log(x) + x) - HalfLogHalfPi;
    return {g, std::exp(g), 1.0 - 2.0 * (1.0 - NormalCdf(std::sqrt(x))), 1};
  }
  const double g = -0.5 * x;
  const double T = std::exp(g);
  return {g, T, 1.0 - T, 2};
}

void ChiSquareSeriesStep(CentralTerms& terms, double x) {
  const double n = terms.reached;
  if (terms.g < LogScaleLimit) {
    terms.g += std::log(x / n);
    terms.T = std::exp(terms.g);
  } else {
    // Kept: g is left behind, so that a sum once started as a product stays one.
    terms.T = terms.T * x / n;
  }
  terms.Q -= terms.T;
  terms.reached += 2;
}

// The steps up to df while T is still a logarithm. It is below the last digit of Q there, so that
// one T at the end is enough.
void RaiseLogarithm(CentralTerms& terms, double x, std::int32_t df) {
  while (terms.reached < df && terms.g < LogScaleLimit) {
    terms.g += std::log(x / terms.reached);
    terms.reached += 2;
  }
  terms.T = std::exp(terms.g);
}

// The sums of the series as they grow, in the scale of the weights.
struct Sums {
  double rem;  // Poisson mass still to come
  double D;    // density
  double w;    // weight
  int i;       // index of the term
  double sum;  // distribution function
};

Sums StartOfSums(CentralTerms& terms, double x, std::int32_t df, double L, double u) {
  const double rem = 1.0 / u - 1.0;
  if (df == 0) {
    terms.reached = 2;
    return {rem - L, terms.T * L, L, 1, 1.0 + L * terms.Q};
  }
  if (terms.g < LogScaleLimit) {
    RaiseLogarithm(terms, x, df);
  }
  while (terms.reached < df - 1) {
    ChiSquareSeriesStep(terms, x);
  }
  terms.reached = df;
  return {rem, terms.T, 1.0, 0, terms.Q};
}

// What a series gives.
struct SeriesResult {
  double p;
  double density;
  int failure;
};

// The series term by term as it is defined.
SeriesResult StepwiseSeries(double x, std::int32_t df, double L, double u) {
  const double tol = Truncation / u;
  CentralTerms terms = StartOfTerms(x, df);
  Sums sums = StartOfSums(terms, x, df, L, u);
  bool converged = false;
  do {
    ++sums.i;
    sums.w = sums.w * L / sums.i;
    ChiSquareSeriesStep(terms, x);
    sums.rem -= sums.w;
    sums.D += sums.w * terms.T;
    const double term = sums.w * terms.Q;
    sums.sum += term;
    converged = terms.Q * sums.rem < tol && term < tol;
  } while (!converged && sums.i < TermLimit);
  return {std::max(0.0, sums.sum * u), (u / 2.0) * sums.D, converged ? 0 : 2};
}

// The same in fewer operations. Up to this x the first T needs no logarithm, and the product that
// follows differs from the sum of logarithms by less than 1e-12; beyond it the rounding of that sum
// is part of the result, and the logarithms stay.
constexpr double LargestFactoredX = 1400.0;
constexpr double SmallestFactoredX = 1e-30;
// A T below this is lost in Q.
constexpr double LostTerm = 1e-40;
// Poisson weights more than this many standard deviations below the mean add up to 1e-17.
constexpr double LostDeviations = 8.5;
// A stop that is this close, relatively, is left to the stepwise series.
constexpr double DecisionMargin = 1e-7;

// Raises the terms by whole groups of four steps: the factors x / n of a group have one
// denominator, n (n + 2) (n + 4) (n + 6) = m (m + 8) with m = n (n + 6).
void RaiseByFours(CentralTerms& terms, double x, std::int32_t groups) {
  const double square = x * x;
  const double fourth = square * square;
  double n = terms.reached;
  double lost = 0.0;
  terms.reached += 8 * groups;
  for (; groups > 1 && terms.T < LostTerm && n < x; groups -= 2, n += 16.0) {
    const double m = n * (n + 6.0);
    const double next = (n + 8.0) * (n + 14.0);
    terms.T *= fourth * fourth / (m * (m + 8.0) * (next * (next + 8.0)));
  }
  for (; groups > 0 && terms.T != 0.0; --groups, n += 8.0) {
    const double m = n * (n + 6.0);
    const double inverse = 1.0 / (m * (m + 8.0));
    const double numerator =
        x * ((n + 2.0) * (n + 4.0) * (n + 6.0) + x * ((n + 4.0) * (n + 6.0) + x * (n + 6.0 + x)));
    lost += terms.T * (inverse * numerator);
    terms.T *= inverse * fourth;
  }
  terms.Q -= lost;
}

void RaiseTo(CentralTerms& terms, double x, std::int32_t df) {
  if (x > LargestFactoredX) {
    RaiseLogarithm(terms, x, df);
  }
  const std::int32_t steps = (df - terms.reached) / 2;
  RaiseByFours(terms, x, steps / 4);
  for (std::int32_t i = 0; i < steps % 4; ++i) {
    terms.T *= x / terms.reached;
    terms.Q -= terms.T;
    terms.reached += 2;
  }
}

// L^count / count!
double WeightAt(double L, std::int32_t count) {
  double w = 1.0;
  double i = 1.0;
  const double square = L * L;
  const double fourth = square * square;
  for (; i + 3.0 <= count; i += 4.0) {
    const double m = i * (i + 3.0);
    w *= fourth / (m * (m + 2.0));
  }
  for (; i <= count; i += 1.0) {
    w *= L / i;
  }
  return w;
}

// True where rounding could have moved the stop of the series. The two terms at which it was
// decided are given by the larger of their two tests over the tolerance.
bool StopIsUnsure(double last, double previous) {
  return std::fabs(last - 1.0) < DecisionMargin || std::fabs(previous - 1.0) < DecisionMargin;
}

// The series from the first weight that counts, with one division a term. False where its stop is
// not certain to be that of the stepwise series.
bool FactoredSeries(double x, std::int32_t df, double L, double u, SeriesResult& result) {
  const auto first = static_cast<std::int32_t>(std::max(0.0, L - LostDeviations * std::sqrt(L)));
  CentralTerms terms = StartOfTerms(x, df);
  RaiseTo(terms, x, df + 2 * first);
  // The series itself would go on by logarithms, or would have stopped before: any earlier term
  // had a larger Q and all of the mass to come.
  if ((x > LargestFactoredX && terms.g < LogScaleLimit) ||
      (first > 0 && terms.Q < 1.01 * Truncation)) {
    return false;
  }
  const double tol = Truncation / u;
  double w = WeightAt(L, first);
  double rem = 1.0 / u - (first == 0 ? 1.0 : w);
  double D = w * terms.T;
  double sum = w * terms.Q;
  double n = terms.reached;
  double i = first;
  double previous = 0.0;
  double largest = 0.0;
  do {
    i += 1.0;
    const double inverse = 1.0 / (i * n);
    w *= L * n * inverse;
    terms.T *= x * i * inverse;
    n += 2.0;
    terms.Q -= terms.T;
    rem -= w;
    D += w * terms.T;
    const double term = w * terms.Q;
    sum += term;
    previous = largest;
    largest = std::max(terms.Q * rem, term);
  } while (!(largest < tol) && i < TermLimit);
  result = {std::max(0.0, sum * u), (u / 2.0) * D, largest < tol ? 0 : 2};
  return !StopIsUnsure(largest / tol, previous / tol);
}

double SeriesCdf(double x, std::int32_t df, double L, double u, double& density, int& failure) {
  SeriesResult result{};
  if (df == 0 || x < SmallestFactoredX || !FactoredSeries(x, df, L, u, result)) {
    result = StepwiseSeries(x, df, L, u);
  }
  density = result.density;
  failure = result.failure;
  return result.p;
}

// Sankaran's normal deviate of x.
double SankaranDeviate(double x, std::int32_t df, double delta) {
  const double a = df + delta;
  const double b = a + delta;
  const double c = b + delta;
  const double h = 1.0 - 2.0 * a * c / (3.0 * b * b);
  const double A = b / a - c / b;
  const double y = std::pow((A + x) / a, h);
  const double ratio = h / a;
  const double mean = 1.0 + ratio * (A - 2.0 * c / (3.0 * b));
  const double sd = std::sqrt(2.0 * b * (ratio * ratio));
  return (y - mean) / sd;
}

double OutOfRange(double& density, int& failure) {
  density = -1.0;
  failure = 1;
  return 0.0;
}

double ApproximateCdf(double x, std::int32_t df, double delta, double& density, int& failure) {
  const double z = SankaranDeviate(x, df, delta);
  if (std::isnan(z)) {
    return OutOfRange(density, failure);
  }
  // Kept: the density of z and not of x, and `failure` as the caller left it.
  density = std::exp(-z * z / 2.0) * InverseSqrtTwoPi;
  return std::max(0.0, NormalCdf(z));
}

bool IsInDomain(double x, std::int32_t df, double delta) {
  return delta >= 0.0 && x >= 0.0 && std::isfinite(delta) && df >= 0 && df <= LargestChiSquareDf;
}

// One hand-made step from a delta towards the one where the normal deviate of x falls by v.
double NormalStep(double delta, std::int32_t df, double s, double v) {
  const double radicand = 4.0 * (delta - v * s) + 2.0 * df;
  const double next = std::sqrt(std::max(0.0, radicand));
  return std::max(0.0, delta - v * (next + s) / 2.0);
}

double DeltaStart(double x, std::int32_t df, double p) {
  const auto residual = [&](double delta) {
    double density = 0.0;
    int failure = 0;
    return NoncentralChiSquareCdf(x, df, delta, density, failure) - p;
  };
  const double z = NormalQuantile(p);
  const double d0 = std::max(0.0, x - df);
  const double s0 = std::sqrt(4.0 * d0 + 2.0 * df);
  const double d1 = NormalStep(d0, df, s0, z);
  const double f1 = residual(d1);
  const double s1 = std::sqrt(4.0 * d1 + 2.0 * df);
  const double d2 = NormalStep(d1, df, s1, (x - df - d1) / s1 - z);
  const double f2 = residual(d2);
  const double start = f1 - f2 != 0.0 ? d2 - f2 * (d1 - d2) / (f1 - f2) : 0.0;
  return std::isfinite(start) ? start : 0.0;
}

}  // namespace

double NoncentralChiSquareCdf(
    double x, std::int32_t df, double delta, double& density, int& failure) {
  if (!IsInDomain(x, df, delta)) {
    // Kept: 0 and not NumericFailure.
    return OutOfRange(density, failure);
  }
  if ((x == 0.0 && df > 0) || std::isinf(x)) {
    density = 0.0;
    failure = 0;
    return x == 0.0 ? 0.0 : 1.0;
  }
  const double L = delta / 2.0;
  const double u = std::exp(-L);
  if (u <= SmallestWeight) {
    return ApproximateCdf(x, df, delta, density, failure);
  }
  return SeriesCdf(x, df, L, u, density, failure);
}

double NoncentralChiSquareQuantile(double delta, std::int32_t df, double p, int& status) {
  const double s = df + delta;
  const double c = ((delta / s + 1.0) / s) * TwoNinths;
  const double root = NormalQuantile(p) * std::sqrt(c) + 1.0 - c;
  const double start = s * root * root * root;
  int failure = 0;
  // Kept: a start cut off at 0 ends the search there.
  return SolveParameter(delta, df, p, start > 0.0 ? start : 0.0, status, failure,
                        SearchChiSquareQuantile, 0);
}

double NoncentralChiSquareDelta(double x, std::int32_t df, double p, int& word) {
  if (!std::isfinite(x) || std::isnan(p) || df < 0 || df > LargestChiSquareDf) {
    word = 1;
    return NumericFailure;
  }
  double density = 0.0;
  int failure = 0;
  if (p > NoncentralChiSquareCdf(x, df, 0.0, density, failure)) {
    word = NoSuchChiSquareDelta;
    return NumericFailure;
  }
  return SolveParameter(x, df, p, DeltaStart(x, df, p), word, failure, SearchChiSquareDelta, 0);
}

}  // namespace poweranalysis
