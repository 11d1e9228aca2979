#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "distributions/GaussKronrod21.h"

// The exact distribution of the sample correlation: what its double integral is made of.
namespace poweranalysis::correlation {

// (1 - u)^(n - 2), a plain square for n = 4.
double InnerPower(double u, double n);

// What the inner integrand has at the nodes of one interval that does not depend on rho and x.
struct InnerRule {
  static constexpr std::size_t Nodes =
      std::size_t{2} * qags::Pairs + 1;  // below the centre, above it, centre

  std::array<double, Nodes> u;
  std::array<double, Nodes> square;  // u^2
  std::array<double, Nodes> power;   // (1 - u)^(n - 2)
};

// The rules of all intervals that the inner integrations of one n have met. The range is [0, 1] for
// every rho and x, and bisection meets the same intervals again and again: each power is taken once
// for all of them.
class InnerNodes {
 public:
  explicit InnerNodes(std::int32_t n);

  double Size() const { return n_; }

  // The rule of an interval. Valid until the next call.
  const InnerRule& Over(double lower, double upper);

 private:
  static constexpr std::size_t Slots = 64;  // an integration has met 15 intervals or fewer so far

  void Fill(InnerRule& rule, double lower, double upper) const;

  double n_;
  std::size_t used_ = 0;
  std::array<double, Slots> centres_ = {};  // 0 where the slot is empty
  std::array<InnerRule, Slots + 1> rules_;  // the last one for what finds no slot
};

// The inner integral as a power series in h = (rho x + 1) / 2.
//
//   Q = B(1/2, n - 1) 2F1(1/2, 1/2; n - 1/2; h)
//
// Where its terms vanish soon enough it stands in for the integration, whose result it meets to
// 9e-13 relative; that is what the integration is away from the integral there.
class InnerSeries {
 public:
  explicit InnerSeries(std::int32_t n);

  // False where the series is not to be used: the integration's own error is larger, or the terms
  // do not vanish within the table.
  bool Sum(double h, double& Q) const;

  // Whether the series may be used for n at all.
  static bool Holds(std::int32_t n);

 private:
  static constexpr std::size_t Limit = 128;

  std::size_t count_ = 0;
  std::array<double, Limit> coefficients_;
};

// The inner integrand at one x.
struct InnerIntegrand {
  InnerNodes& nodes;
  double slope;  // (rho x + 1) / 2
};

// The rule on one interval of an inner integration. AdaptiveIntegrate finds it by the type of the
// integrand and takes it in place of the one that evaluates the integrand node by node; its result
// is the same to the last bit.
qags::RuleEstimate GaussKronrod21(const InnerIntegrand& f, double lower, double upper);

// What all evaluations for one n share. About 34 kB, on the stack of the caller.
struct Workspace {
  explicit Workspace(std::int32_t n) : nodes(n), series(n) {}

  InnerNodes nodes;
  InnerSeries series;
};

// The density of r for one rho and n.
class Density {
 public:
  Density(double rho, Workspace& workspace);

  // `flag` 1 and NumericFailure when the inner integral fails.
  double At(double x, int& flag) const;

 private:
  bool Integrate(double h, double& Q) const;

  double rho_;
  Workspace& workspace_;
  double shapeExponent_;  // (n - 4) / 2
  double tiltExponent_;   // 1.5 - n
  double logRho_;         // ((n - 1) / 2) log10(1 - rho^2)
  double logFactor_;      // log10((n - 2) / (pi sqrt(2)))
};

struct Limits {
  double lower;
  double upper;
};

// The range whose integral gives P(R <= r), or for r > 0 its complement.
Limits LimitsFor(double r);

// P(R <= r) by the integral; see CorrelationCdf.
double ExactCdf(double rho, double r, Workspace& workspace);

}  // namespace poweranalysis::correlation
