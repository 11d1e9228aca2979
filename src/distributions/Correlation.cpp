#include "distributions/Correlation.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <optional>

#include "distributions/BracketAndBrent.h"
#include "distributions/Common.h"
#include "distributions/CorrelationDensity.h"
#include "distributions/NoncentralT.h"
#include "distributions/Normal.h"
#include "distributions/Polynomial.h"

namespace poweranalysis {

namespace {

// One power of 1 / m in a moment of z - atanh(rho): a polynomial in rho^2, highest power first,
// over a divisor.
struct GayenTerm {
  double coefficients[6];
  double divisor;
};

// The first moment has a factor rho besides. Gayen (1951), carried to the sixth power of 1 / m.
constexpr GayenTerm BiasTerms[] = {
    {{0, 0, 0, 0, 0, 1}, 2},
    {{0, 0, 0, 0, 1, 5}, 8},
    {{0, 0, 0, 3, 2, 11}, 16},
    {{0, 0, 75, -27, 13, 83}, 128},
    {{0, 735, -780, 138, 20, 143}, 256},
    {{19845, -33075, 14250, -990, 113, 625}, 1024},
};
// Kept: the moment itself has -113 rho^2 in the last term. Results agree with +113, and differ from
// those with -113 by less than 0.5 rho^2 / m^6.
constexpr GayenTerm SecondMomentTerms[] = {
    {{0, 0, 0, 0, 0, 1}, 1},
    {{0, 0, 0, 0, -1, 8}, 4},
    {{0, 0, 0, -9, -9, 88}, 24},
    {{0, 0, -75, 2, -19, 384}, 64},
    {{0, -11025, 8025, -375, -225, 16256}, 1920},
    {{-19845, 26460, -7194, 20, 113, 5120}, 512},
};

template <std::size_t Count>
double GayenSeries(const GayenTerm (&terms)[Count], double rho, std::int32_t n) {
  const double m = static_cast<double>(n) - 1.0;
  const double square = rho * rho;
  double sum = 0.0;
  for (std::size_t k = Count; k-- > 0;) {
    sum = (Horner(terms[k].coefficients, square) / terms[k].divisor + sum) / m;
  }
  return sum;
}

// Fisher's transform, written as it is defined: its rounding is part of the results.
double FisherZ(double r) { return 0.5 * std::log((1.0 + r) / (1.0 - r)); }

// Centre and spread of z by Gayen's series.
struct ZMoments {
  double bias;
  double deviation;
};

ZMoments RefinedMoments(double rho, std::int32_t n) {
  const double b = FisherZBias(rho, n);
  return {b, std::sqrt(FisherZSecondMoment(rho, n) - b * b)};
}

double CrudeVariance(std::int32_t n) { return 1.0 / (static_cast<double>(n) - 3.0); }

bool IsInside(double value, double lower, double upper) { return lower < value && value < upper; }

bool IsPopulation(double rho, std::int32_t n) { return IsInside(rho, -1.0, 1.0) && n >= 3; }

bool IsFisher(std::int16_t algorithm) {
  return algorithm == CorrelationFisherZRefined || algorithm == CorrelationFisherZCrude;
}

double FisherCdf(double rho, std::int32_t n, double r, std::int16_t algorithm) {
  if (!IsInside(r, -1.0, 1.0)) {
    return NumericFailure;
  }
  if (algorithm == CorrelationFisherZCrude) {
    return NormalCdf((FisherZ(r) - FisherZ(rho)) / std::sqrt(CrudeVariance(n)));
  }
  const ZMoments moments = RefinedMoments(rho, n);
  return NormalCdf((FisherZ(r) - (FisherZ(rho) + moments.bias)) / moments.deviation);
}

// P(R <= r) for one n and algorithm, many times. What exact evaluations share is made once.
class CdfOfSize {
 public:
  CdfOfSize(std::int32_t n, std::int16_t algorithm) : n_(n), algorithm_(algorithm) {
    if (!IsFisher(algorithm)) {
      workspace_.emplace(n);
    }
  }

  double operator()(double rho, double r) {
    if (!IsPopulation(rho, n_) || std::isnan(r)) {
      return NumericFailure;
    }
    return workspace_ ? correlation::ExactCdf(rho, r, *workspace_)
                      : FisherCdf(rho, n_, r, algorithm_);
  }

 private:
  std::int32_t n_;
  std::int16_t algorithm_;
  std::optional<correlation::Workspace> workspace_;
};

// Each evaluation of the t distribution takes n / 2 steps: a second for a search here, and hours
// for the largest n.
constexpr std::int32_t LargestNullSize = 10000000;

// The exact quantile at rho = 0, where r sqrt(n - 2) / sqrt(1 - r^2) has the t distribution.
double NullQuantile(std::int32_t n, double p) {
  if (n > LargestNullSize) {
    return NumericFailure;
  }
  int status = 0;
  int failure = 0;
  const double t = CentralTQuantile(n - 2, p, status, failure);
  if (failure != 0) {
    return NumericFailure;
  }
  return t / std::sqrt(t * t + static_cast<double>(n) - 2.0);
}

constexpr BracketPolicy QuantilePolicy = [] {
  BracketPolicy policy;
  policy.factor = 1.2;
  // Kept: nothing holds a new point at or below 1.
  policy.floorsNewPoint = true;
  policy.newPointFloor = -1.0;
  policy.halfTolerance = 5e-37;
  policy.firstTests = BrentFirstTests::WithSlack;
  return policy;
}();

double SearchQuantile(double rho, std::int32_t n, double p, std::int16_t algorithm, double x0) {
  constexpr double overshoot = 1.006;
  CdfOfSize cdf(n, algorithm);
  const auto residual = [&](double x) { return cdf(rho, x) - p; };
  const double f0 = residual(x0);
  if (std::fabs(f0) <= brent::ZeroResidual) {
    return x0;
  }
  const double x1 = CorrelationQuantileStart(rho, n, p - overshoot * f0);
  const double f1 = residual(x1);
  if (std::fabs(f1) <= brent::ZeroResidual) {
    return x1;
  }
  int failure = 0;
  return BracketAndBrent({x0, f0}, {x1, f1}, residual, QuantilePolicy, failure);
}

constexpr double RhoBound = 0.99999999;
constexpr double RhoTolerance = 1e-08;
constexpr double RhoStep = 1e-06;
constexpr double SmallestRhoStep = 1e-12;
constexpr double FlatSlope = 1e-35;
constexpr double LargestResidual = 0.0001;
constexpr std::int32_t EvaluationLimit = 10000;
constexpr std::int32_t BarCount = 10;

double ClampRho(double rho) { return std::clamp(rho, -RhoBound, RhoBound); }

// The search for rho: its running values, and its end.
class RhoSearch {
 public:
  RhoSearch(std::int32_t n, double r, double p, std::int16_t algorithm, SearchObserver& observer)
      : n_(n), r_(r), p_(p), observer_(observer), cdf_(n, algorithm) {}

  double Run(int& failure) {
    observer_.Start(BarCount);
    rho_ = ClampRho(
        std::tanh(FisherZ(r_) - NormalQuantile(p_) / std::sqrt(static_cast<double>(n_) - 3.0)));
    f_ = Residual(rho_);
    ++counter_;
    if (!(std::fabs(f_) <= RhoTolerance) && TakeFirstSlope()) {
      Iterate(failure);
    }
    return End(failure);
  }

 private:
  double Residual(double rho) { return cdf_(rho, r_) - p_; }

  // False when the point beside the start is the answer.
  bool TakeFirstSlope() {
    const double h = std::max(rho_ * RhoStep, SmallestRhoStep);
    const double neighbour = ClampRho(rho_ - h);
    const double neighbourResidual = Residual(neighbour);
    // Kept: the whole h, even when the neighbour was moved to the bound.
    slope_ = (f_ - neighbourResidual) / h;
    if (std::fabs(neighbourResidual) <= RhoTolerance) {
      rho_ = neighbour;
      f_ = neighbourResidual;
      return false;
    }
    return true;
  }

  void Iterate(int& failure) {
    for (;;) {
      ++counter_;
      if (observer_.Advance(counter_)) {
        // Kept: closed here and once more at the end.
        observer_.Stop();
        failure = 2;
        return;
      }
      // Written so that a slope that is not a number ends the search.
      if (!(std::fabs(slope_) >= FlatSlope)) {
        return;
      }
      const double previous = rho_;
      const double previousResidual = f_;
      rho_ = ClampRho(rho_ - f_ / slope_);
      f_ = Residual(rho_);
      if (std::fabs(rho_ - previous) <= RhoTolerance || counter_ >= EvaluationLimit ||
          !(std::fabs(f_) > RhoTolerance)) {
        return;
      }
      slope_ = (previousResidual - f_) / (previous - rho_);
    }
  }

  double End(int& failure) {
    observer_.Stop();
    if (counter_ >= EvaluationLimit || !(std::fabs(f_) <= LargestResidual)) {
      failure = 1;
      return NumericFailure;
    }
    return rho_;
  }

  std::int32_t n_;
  double r_;
  double p_;
  SearchObserver& observer_;
  CdfOfSize cdf_;
  double rho_ = 0.0;
  double f_ = 0.0;
  double slope_ = 0.0;
  std::int32_t counter_ = 1;
};

}  // namespace

double FisherZBias(double rho, std::int32_t n) { return rho * GayenSeries(BiasTerms, rho, n); }

double FisherZSecondMoment(double rho, std::int32_t n) {
  return GayenSeries(SecondMomentTerms, rho, n);
}

double CorrelationIntegrand(double u, double rho, double x, std::int32_t n) {
  return correlation::InnerPower(u, n) / std::sqrt(u - (rho * x + 1.0) * (u * u) / 2.0);
}

double CorrelationDensity(double x, double rho, std::int32_t n, int& flag) {
  correlation::Workspace workspace(n);
  return correlation::Density(rho, workspace).At(x, flag);
}

double CorrelationCdf(double rho, std::int32_t n, double r, std::int16_t algorithm) {
  return CdfOfSize(n, algorithm)(rho, r);
}

double CorrelationQuantileStart(double rho, std::int32_t n, double p) {
  if (!IsPopulation(rho, n) || !IsInside(p, 0.0, 1.0)) {
    return NumericFailure;
  }
  const ZMoments moments = RefinedMoments(rho, n);
  return std::tanh(moments.deviation * NormalQuantile(p) + FisherZ(rho) + moments.bias);
}

double CorrelationQuantile(double rho, std::int32_t n, double p, std::int16_t algorithm) {
  if (!IsPopulation(rho, n) || !IsInside(p, 0.0, 1.0)) {
    return NumericFailure;
  }
  const double x0 = CorrelationQuantileStart(rho, n, p);
  if (algorithm == CorrelationFisherZRefined) {
    return x0;
  }
  if (algorithm == CorrelationFisherZCrude) {
    return n < 4 ? x0 : std::tanh(NormalQuantile(p) * std::sqrt(CrudeVariance(n)) + FisherZ(rho));
  }
  return rho == 0.0 ? NullQuantile(n, p) : SearchQuantile(rho, n, p, algorithm, x0);
}

double CorrelationRhoForP(std::int32_t n,
                          double r,
                          double p,
                          int& failure,
                          std::int16_t algorithm,
                          SearchObserver& observer) {
  failure = 0;
  if (n < 3 || !IsInside(r, -1.0, 1.0) || !IsInside(p, 0.0, 1.0)) {
    failure = 1;
    return NumericFailure;
  }
  return RhoSearch(n, r, p, algorithm, observer).Run(failure);
}

double CorrelationRhoForP(
    std::int32_t n, double r, double p, int& failure, std::int16_t algorithm) {
  SilentObserver nobody;
  return CorrelationRhoForP(n, r, p, failure, algorithm, nobody);
}

}  // namespace poweranalysis
