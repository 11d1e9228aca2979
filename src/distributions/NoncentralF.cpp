#include "distributions/NoncentralF.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "distributions/Beta.h"
#include "distributions/BetaSeries.h"
#include "distributions/BracketAndBrent.h"
#include "distributions/Common.h"
#include "distributions/Normal.h"
#include "distributions/SecantSearch.h"
#include "distributions/SolveParameter.h"

namespace poweranalysis {

namespace {

constexpr double LogBoundOfRest = -9.0;  // decimal
constexpr double LogLargestTerm = 705.0;
constexpr double ScaleStep = 1e50;
constexpr double ScaleDigits = 50.0;
constexpr double Ln10 = 2.302585092994046;
constexpr int TermLimit = 100000;

// Within these the products of weight and beta stay in range, and tests on products stand for the
// tests on their logarithms. Nearer to the bound than Doubt, relative, the logarithms decide.
constexpr double SmallestPlainBeta = 1e-250;
constexpr double LargestPlainTerm = 1e300;
constexpr double LargestPlainDigits = 250.0;
constexpr double Doubt = 1e-6;

// Above this the last step, exp(log S + cs ln 10 - L), rounds coarser than 1e-12, so that a sum
// that differs in its last digit moves the result by more: every operation is then the plain one.
constexpr double LargestPlainL = 4000.0;

// What is left of the work one call may do, in steps of continued fractions: about a second's.
class WorkLeft {
 public:
  bool IsSpent() const { return left_ <= 0; }
  void Take(std::int64_t work) { left_ -= work; }
  std::int64_t Left() const { return left_; }

 private:
  std::int64_t left_ = 150'000'000;
};

// The sum of L^j / j! I_x(a + j, b) and the weight of its next term, both with powers of 1e50 taken
// out: the sum is S 10^cs, the weight w 10^(cs + cw).
class MixtureSum {
 public:
  MixtureSum(double first, double L) : L_(L), E_(std::exp(-L)), S_(first), P_(first), w_(L) {}

  // Adds the next term. False, and nothing added, when it would overflow.
  bool Add(double B) {
    plain_ = L_ <= LargestPlainL && B >= SmallestPlainBeta && std::fabs(cw_) <= LargestPlainDigits;
    double term = plain_ ? w_ * B * weightPower_ : 0.0;
    if (!plain_ || term > LargestPlainTerm) {
      const double v = std::log(w_) + std::log(B) + cw_ * Ln10;
      if (v > LogLargestTerm) {
        return false;
      }
      term = std::exp(v);
    }
    S_ = term + P_;
    Rescale();
    w_ = w_ * L_ / (j_ + 1.0);
    share_ = std::min(L_ / (j_ + 2.0) + E_, 1.0);
    return true;
  }

  // Whether the terms that are left are bounded by 1e-9. B is that of the term added last;
  // `fresh` evaluates it anew for a case that its last digits decide.
  template <class Fresh>
  bool RestIsSmall(double B, const Fresh& fresh) const {
    if (plain_) {
      const double bound = share_ * w_ * B;
      if (!(std::fabs(bound - smallRest_) <= Doubt * smallRest_)) {
        return bound < smallRest_;
      }
      B = fresh();
    }
    return std::log10(share_) + std::log10(w_) + std::log10(B) + cs_ + cw_ <= LogBoundOfRest;
  }

  // Whether the bound has run away: it is finite as long as the weight is.
  bool HasRunAway() const { return std::isinf(w_); }

  bool IsUnchanged() const { return S_ == P_; }

  void Advance() {
    P_ = S_;
    j_ += 1.0;
  }

  double j() const { return j_; }

  double Result() const { return S_ == 0.0 ? 0.0 : std::exp(std::log(S_) + cs_ * Ln10 - L_); }

 private:
  void Rescale() {
    const double cs = cs_;
    const double cw = cw_;
    if (S_ > ScaleStep) {
      S_ /= ScaleStep;
      P_ /= ScaleStep;
      w_ /= ScaleStep;
      cs_ += ScaleDigits;
    }
    if (w_ > ScaleStep) {
      w_ /= ScaleStep;
      cw_ += ScaleDigits;
    }
    if (S_ < 1.0 / ScaleStep && S_ != 0.0) {
      S_ *= ScaleStep;
      P_ *= ScaleStep;
      w_ *= ScaleStep;
      cs_ -= ScaleDigits;
    }
    if (w_ < 1.0 / ScaleStep) {
      w_ *= ScaleStep;
      cw_ -= ScaleDigits;
    }
    if (cs != cs_ || cw != cw_) {
      TakePowers();
    }
  }

  void TakePowers() {
    weightPower_ = cw_ == 0.0 ? 1.0 : std::pow(10.0, cw_);
    smallRest_ = std::pow(10.0, LogBoundOfRest - cs_ - cw_);
  }

  double L_;
  double E_;
  double S_;
  double P_;  // the sum before its last term
  double w_;
  double j_ = 1.0;
  double cs_ = 0.0;
  double cw_ = 0.0;
  double share_ = 1.0;
  bool plain_ = true;
  double weightPower_ = 1.0;
  double smallRest_ = 1e-9;
};

double Failed(int& failure) {
  failure = 1;
  return NumericFailure;
}

bool IsShape(double a) { return a > 0.0 && std::isfinite(a); }

double OrFailed(double p, int& failure) { return std::isnan(p) ? Failed(failure) : p; }

double PoissonMixture(double x, double a, double b, double L, int& failure, WorkLeft& work) {
  BetaSeries betas(
      x, a, b, L <= LargestPlainL ? BetaSeries::Terms::SideBySide : BetaSeries::Terms::OneByOne);
  MixtureSum sum(betas.Next(), L);
  for (int term = 1; term <= TermLimit; ++term) {
    const double B = betas.Next();
    if (std::isnan(B) || betas.Work() > work.Left()) {
      break;
    }
    // Kept: an overflowing term ends the sum without it.
    if (AlmostZero(B) || !sum.Add(B)) {
      work.Take(betas.Work());
      return OrFailed(sum.Result(), failure);
    }
    const auto fresh = [&] {
      int ignored = 0;
      return BetaCdf(x, a + sum.j(), b, ignored);
    };
    const bool small = sum.RestIsSmall(B, fresh);
    if (!small && sum.HasRunAway()) {
      // Kept: zero and not NumericFailure.
      failure = 1;
      return 0.0;
    }
    if (small || sum.IsUnchanged()) {
      work.Take(betas.Work());
      return OrFailed(sum.Result(), failure);
    }
    sum.Advance();
  }
  work.Take(betas.Work());
  return Failed(failure);
}

double BetaMixture(double x, double a, double b, double delta, int& failure, WorkLeft& work) {
  failure = 0;
  if (!(x >= 0.0 && x <= 1.0) || !IsShape(a) || !IsShape(b) || !(delta >= 0.0)) {
    return Failed(failure);
  }
  const double L = delta / 2.0;
  if (L == 0.0) {
    return OrFailed(BetaCdf(x, a, b, failure), failure);
  }
  return PoissonMixture(x, a, b, L, failure, work);
}

double FCdf(double f, double df1, double df2, double delta, int& failure, WorkLeft& work) {
  failure = 0;
  if (!IsShape(df1) || !IsShape(df2) || !(delta >= 0.0)) {
    return Failed(failure);
  }
  const double a = df1 / 2.0;
  const double b = df2 / 2.0;
  if (a * f == std::numeric_limits<double>::infinity()) {
    // The quotient below would not be a number.
    return 1.0;
  }
  const double x = a * f / (a * f + b);
  const double p = BetaMixture(x, a, b, delta, failure, work);
  return failure != 0 ? NumericFailure : p;
}

// The central F distribution that stands for a noncentral one: P(F <= f) is the central P at
// (f + shift) / c with v and df2 degrees of freedom.
struct Tiku {
  double v;
  double c;
  double shift;
};

Tiku TikuOf(double d1, double d2, double delta) {
  const double m = d2 - 2.0;
  const double s = d1 + delta;
  const double u = d1 + 2.0 * delta;
  const double K = s * s + u * m;
  const double H = 2.0 * (s * s * s) + 3.0 * s * u * m + (d1 + 3.0 * delta) * (m * m);
  const double v = (std::sqrt(H * H / (H * H - 4.0 * (K * K * K))) - 1.0) * m / 2.0;
  const double c = (H / K) * (v / d1) / (2.0 * v + d2 - 2.0);
  return {v, c, (c - 1.0 - delta / d1) * d2 / m};
}

double FCdfInt(double f,
               double df1,
               double df2,
               double delta,
               int& failure,
               std::int16_t algorithm,
               WorkLeft& work) {
  failure = 0;
  if (algorithm == FExact) {
    return FCdf(f, df1, df2, delta, failure, work);
  }
  if (algorithm != FTiku) {
    return Failed(failure);
  }
  const Tiku tiku = TikuOf(df1, df2, delta);
  return FCdf((f + tiku.shift) / tiku.c, tiku.v, df2, 0.0, failure, work);
}

constexpr double FewDegreesOfFreedom = 1.1;
constexpr double BracketFactor = 1.6;
constexpr double HalfTolerance = 5e-11;

double CubicStart(double df1, double df2, double z) {
  // Kept: z to the third power where the published formula squares it, and 2 / h where it has the
  // difference of the reciprocals of df2 - 1 and df1 - 1. Only the start depends on them.
  const double h = 2.0 / (1.0 / (df1 - 1.0) + 1.0 / (df2 - 1.0));
  const double q = (z * z * z - 3.0) / 6.0;
  const double w =
      std::sqrt(q + h) * z / h - (q + 0.8333333333333334 - 2.0 / (3.0 * h)) * (2.0 / h);
  return std::exp(2.0 * w);
}

// The normal approximation from the mean and the variance of F.
double NormalStart(double df1, double df2, double z) {
  const double m = df2 - 2.0;
  return std::sqrt((2.0 / ((df2 - 4.0) * m)) * (df1 * df1 / m + df1)) * (df2 / df1) * z +
         (df2 / df1) * df1 / m;
}

struct Ends {
  double lower;
  double upper;
};

double CentralStart(double df1, double df2, double p) {
  const double z = NormalQuantile(p);
  if (df1 > FewDegreesOfFreedom && df2 > FewDegreesOfFreedom) {
    return CubicStart(df1, df2, z);
  }
  return df2 > 4.0 ? NormalStart(df1, df2, z) : 1.0;
}

Ends CentralEnds(double start) {
  // A start that is not a number (the square root above, for a small p) is treated as one below
  // zero.
  if (!(start > 0.0)) {
    return {0.0, 0.5};
  }
  return {0.99 * start, 1.01 * start};
}

template <class Residual>
double FindRoot(const Ends& ends,
                const Residual& residual,
                const BracketPolicy& policy,
                int& failure) {
  const brent::Point lower{ends.lower, residual(ends.lower)};
  const brent::Point upper{ends.upper, residual(ends.upper)};
  return BracketAndBrent(lower, upper, residual, policy, failure);
}

// Where the quick search below may stand for the other.
constexpr double LargestQuickSum = 1e5;
constexpr double SmallestQuickF = 1e-2;
constexpr double LargestQuickF = 1e4;
constexpr double SmallestQuickTail = 1e-7;
constexpr double LargestQuickStep = 1.0;
constexpr double QuickTolerance = 1e-12;
constexpr int QuickPasses = 6;

// The central quantile by Halley's method in log f, which beta function and density come to in two
// or three passes where Brent's method takes ten. With F' = dF / d log f,
//
//   F'' / F' = a - (a + b) x,  x = a f / (a f + b)
//
// and a step s leaves an error of (h^2 / 12 + (a + b) x (1 - x) / 6) s^3, h = F'' / F'. The root is
// that of the bracket to within the tolerances of its search. False where that does not go
// smoothly: far off, in a tail, or where those tolerances are not far above the last digit.
bool QuickCentralRoot(double a, double b, double p, double f, double& root) {
  const BetaShapes shapes(a, b);
  for (int pass = 0; pass < QuickPasses && f >= SmallestQuickF && f <= LargestQuickF; ++pass) {
    const double x = a * f / (a * f + b);
    double slope = 0.0;
    int ignored = 0;
    const double value = shapes.Cdf(x, slope, ignored);
    if (!(value > SmallestQuickTail && value < 1.0 - SmallestQuickTail)) {
      return false;
    }
    const double newton = (value - p) / slope;
    const double h = a - (a + b) * x;
    const double step = newton / (newton * h / 2.0 - 1.0);
    if (!(std::fabs(step) < LargestQuickStep)) {
      return false;
    }
    f *= std::exp(step);
    const double error =
        (h * h / 12.0 + (a + b) * x * (1.0 - x) / 6.0) * std::fabs(step * step * step);
    if (slope * error < QuickTolerance) {
      root = f;
      return true;
    }
  }
  return false;
}

double ExactQuantile(double delta, double df1, double df2, double p, double approx, int& failure) {
  failure = 0;
  WorkLeft work;
  const auto residual = [&](double x) {
    return work.IsSpent() ? std::numeric_limits<double>::quiet_NaN()
                          : FCdf(x, df1, df2, delta, failure, work) - p;
  };
  const Ends ends = approx > 0.0 ? Ends{0.999 * approx, 1.001 * approx} : Ends{1e-06, 2e-06};
  // Kept: no floor in the bracket, unlike CentralFQuantile. A point below zero fails, and the
  // failure value is a large negative residual.
  const BracketPolicy policy{
      .factor = BracketFactor, .floorsNewPoint = true, .halfTolerance = HalfTolerance};
  const double root = FindRoot(ends, residual, policy, failure);
  return failure != 0 || !std::isfinite(root) ? Failed(failure) : root;
}

}  // namespace

double NoncentralBetaCdf(double x, double a, double b, double delta, int& failure) {
  WorkLeft work;
  return BetaMixture(x, a, b, delta, failure, work);
}

double NoncentralFCdf(double f, double df1, double df2, double delta, int& failure) {
  WorkLeft work;
  return FCdf(f, df1, df2, delta, failure, work);
}

double NoncentralFCdfInt(double f,
                         std::int32_t df1,
                         std::int32_t df2,
                         double delta,
                         int& failure,
                         std::int16_t algorithm) {
  WorkLeft work;
  return FCdfInt(f, df1, df2, delta, failure, algorithm, work);
}

double CentralFQuantile(double df1, double df2, double p, int& failure) {
  failure = 0;
  if (!IsShape(df1) || !IsShape(df2) || std::isnan(p)) {
    return Failed(failure);
  }
  const double start = CentralStart(df1, df2, p);
  double quick = 0.0;
  if (df1 + df2 <= 2.0 * LargestQuickSum && p > SmallestQuickTail && p < 1.0 - SmallestQuickTail &&
      QuickCentralRoot(df1 / 2.0, df2 / 2.0, p, start, quick)) {
    return quick;
  }
  const auto residual = [&](double x) { return NoncentralFCdf(x, df1, df2, 0.0, failure) - p; };
  const BracketPolicy policy{.factor = BracketFactor,
                             .floorsMovedEnd = true,
                             .residualAtFloor = -p,
                             .floorsNewPoint = true,
                             .halfTolerance = HalfTolerance};
  const double root = FindRoot(CentralEnds(start), residual, policy, failure);
  return failure != 0 || !std::isfinite(root) ? Failed(failure) : root;
}

double NoncentralFQuantile(
    double delta, double df1, double df2, double p, int& failure, std::int16_t algorithm) {
  if (delta == 0.0) {
    return CentralFQuantile(df1, df2, p, failure);
  }
  failure = 0;
  if (!IsShape(df1) || !IsShape(df2) || !(delta >= 0.0) || std::isnan(p)) {
    return Failed(failure);
  }
  const Tiku tiku = TikuOf(df1, df2, delta);
  const double approx = CentralFQuantile(tiku.v, df2, p, failure) * tiku.c - tiku.shift;
  if (algorithm == FTiku) {
    return failure != 0 ? NumericFailure : OrFailed(approx, failure);
  }
  return ExactQuantile(delta, df1, df2, p, approx, failure);
}

double NoncentralFDelta(
    double f, std::int32_t df1, std::int32_t df2, double p, int& failure, std::int16_t algorithm) {
  WorkLeft work;
  const double central = FCdfInt(f, df1, df2, 0.0, failure, algorithm, work);
  if (failure != 0 || std::isnan(p)) {
    return Failed(failure);
  }
  if (p > central) {
    return 0.0;
  }
  const double d1 = df1;
  const double d2 = df2;
  const double start = std::fabs(d1 * f * (d2 - 2.0) / d2 - d1);
  const auto residual = [&](double delta, int& failed) {
    const double value =
        work.IsSpent() ? Failed(failed) : FCdfInt(f, d1, d2, delta, failed, algorithm, work);
    return failed != 0 ? NumericFailure : value - p;
  };
  const SecantPolicy& policy =
      SearchPolicyOf(algorithm == FExact ? SearchFDelta : SearchFDeltaApprox);
  int searchFailure = 0;
  // Kept: the caller gets the status; that a distribution failed shows in the value alone.
  const double delta = SecantSearch(residual, start, policy, failure, searchFailure);
  return failure != 0 || searchFailure != 0 ? NumericFailure : delta;
}

}  // namespace poweranalysis
