#include "distributions/CorrelationDensity.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <iterator>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

#include "distributions/AdaptiveIntegrate.h"
#include "distributions/Common.h"

namespace poweranalysis::correlation {

namespace {

constexpr double OuterTolerance = 1e-06;
constexpr double InnerTolerance = 1e-08;
constexpr double PiRootTwo = 4.442882938158366;

constexpr double SeriesPrecision = 1e-17;

struct SizeRange {
  std::int32_t first;
  std::int32_t last;
};

// Where the relative difference of series and integration was measured below 9e-13. It is much the
// same for all h, but not for all n: the integration ends one bisection sooner or later, and up to
// 2.8e-12 off from 841 on and 1.1e-12 from 217 to 228.
constexpr SizeRange SeriesRanges[] = {{3, 215}, {230, 830}, {885, 978}, {1020, 1500}};
constexpr std::size_t BetaCount = 1500;

// B(1/2, m) for whole m, by B(1/2, m + 1) = B(1/2, m) m / (m + 1/2) from B(1/2, 1) = 2.
constexpr std::array<double, BetaCount> MakeBetaHalves() {
  std::array<double, BetaCount> table{};
  long double value = 2.0L;
  for (std::size_t m = 1; m < BetaCount; ++m) {
    table[m] = static_cast<double>(value);
    const auto whole = static_cast<long double>(m);
    value *= whole / (whole + 0.5L);
  }
  return table;
}
constexpr std::array<double, BetaCount> BetaHalves = MakeBetaHalves();

// Ten of the quotients of the inner integrand. Division and square root are correctly rounded, so
// that two at a time give the same bits as one by one.
void Quotients(const double* u,
               const double* square,
               const double* power,
               double slope,
               double (&quotients)[qags::Pairs]) {
#if defined(__SSE2__)
  static_assert(qags::Pairs % 2 == 0);
  const __m128d slopes = _mm_set1_pd(slope);
  for (int j = 0; j < qags::Pairs; j += 2) {
    const __m128d radicand =
        _mm_sub_pd(_mm_loadu_pd(u + j), _mm_mul_pd(slopes, _mm_loadu_pd(square + j)));
    _mm_storeu_pd(quotients + j, _mm_div_pd(_mm_loadu_pd(power + j), _mm_sqrt_pd(radicand)));
  }
#else
  for (int j = 0; j < qags::Pairs; ++j) {
    quotients[j] = power[j] / std::sqrt(u[j] - slope * square[j]);
  }
#endif
}

// A slot to look in first. The centres of the intervals are dyadic: their high bits differ.
std::size_t FirstSlot(double centre, std::size_t slots) {
  std::uint64_t bits = 0;
  static_assert(sizeof bits == sizeof centre);
  std::memcpy(&bits, &centre, sizeof bits);
  // 2^64 over the golden ratio spreads neighbours far apart.
  return static_cast<std::size_t>((bits * 0x9E3779B97F4A7C15U) >> 32U) % slots;
}

}  // namespace

double InnerPower(double u, double n) {
  const double v = 1.0 - u;
  return n == 4.0 ? v * v : std::pow(v, n - 2.0);
}

// Only the keys have a value at first: the rules are filled as they are met.
InnerNodes::InnerNodes(std::int32_t n) : n_(n) {}  // NOLINT(*-member-init)

const InnerRule& InnerNodes::Over(double lower, double upper) {
  const double centre = 0.5 * (lower + upper);
  std::size_t slot = FirstSlot(centre, Slots);
  while (centres_[slot] != centre) {
    if (used_ == Slots) {
      slot = Slots;
      Fill(rules_[slot], lower, upper);
      break;
    }
    if (centres_[slot] == 0.0) {
      centres_[slot] = centre;
      ++used_;
      Fill(rules_[slot], lower, upper);
      break;
    }
    slot = (slot + 1) % Slots;
  }
  return rules_[slot];
}

void InnerNodes::Fill(InnerRule& rule, double lower, double upper) const {
  const double centre = 0.5 * (lower + upper);
  const double half = 0.5 * (upper - lower);
  for (std::size_t j = 0; j < qags::Pairs; ++j) {
    const double offset = half * qags::Nodes[j];
    rule.u[j] = centre - offset;
    rule.u[qags::Pairs + j] = centre + offset;
  }
  rule.u[InnerRule::Nodes - 1] = centre;
  for (std::size_t i = 0; i < InnerRule::Nodes; ++i) {
    rule.square[i] = rule.u[i] * rule.u[i];
    rule.power[i] = InnerPower(rule.u[i], n_);
  }
}

qags::RuleEstimate GaussKronrod21(const InnerIntegrand& f, double lower, double upper) {
  const InnerRule& rule = f.nodes.Over(lower, upper);
  constexpr std::size_t above = qags::Pairs;
  constexpr std::size_t centre = InnerRule::Nodes - 1;
  qags::NodeValues values;
  Quotients(rule.u.data(), rule.square.data(), rule.power.data(), f.slope, values.below);
  Quotients(rule.u.data() + above, rule.square.data() + above, rule.power.data() + above, f.slope,
            values.above);
  values.centre = rule.power[centre] / std::sqrt(rule.u[centre] - f.slope * rule.square[centre]);
  return qags::Weigh(values, 0.5 * (upper - lower));
}

// Only the coefficients that are used have a value.
InnerSeries::InnerSeries(std::int32_t n) {  // NOLINT(*-member-init)
  if (!Holds(n)) {
    return;
  }
  double coefficient = BetaHalves[static_cast<std::size_t>(n - 1)];
  const double negligible = SeriesPrecision * coefficient;
  const double c = static_cast<double>(n) - 0.5;
  double k = 0.0;
  while (count_ < Limit && coefficient > negligible) {
    coefficients_[count_++] = coefficient;
    coefficient *= (k + 0.5) * (k + 0.5) / ((c + k) * (k + 1.0));
    k += 1.0;
  }
}

bool InnerSeries::Holds(std::int32_t n) {
  return std::any_of(std::begin(SeriesRanges), std::end(SeriesRanges),
                     [n](const SizeRange& range) { return range.first <= n && n <= range.last; });
}

bool InnerSeries::Sum(double h, double& Q) const {
  if (count_ == 0) {
    return false;
  }
  // The terms fall faster than h^k: what follows a term is at most the term times h / (1 - h).
  const double negligible = SeriesPrecision * coefficients_[0] * (1.0 - h);
  double sum = 0.0;
  double power = 1.0;
  for (std::size_t k = 0; k < count_; ++k) {
    const double term = coefficients_[k] * power;
    sum += term;
    if (term <= negligible) {
      Q = sum;
      return true;
    }
    power *= h;
  }
  Q = sum;
  return count_ < Limit;
}

Density::Density(double rho, Workspace& workspace)
    : rho_(rho),
      workspace_(workspace),
      shapeExponent_((workspace.nodes.Size() - 4.0) / 2.0),
      tiltExponent_(1.5 - workspace.nodes.Size()),
      logRho_((workspace.nodes.Size() - 1.0) / 2.0 * std::log10(1.0 - rho * rho)),
      logFactor_(std::log10((workspace.nodes.Size() - 2.0) / PiRootTwo)) {}

bool Density::Integrate(double h, double& Q) const {
  double abserr = 0.0;
  int neval = 0;
  int ier = 0;
  AdaptiveIntegrate(InnerIntegrand{workspace_.nodes, h}, 0.0, 1.0, InnerTolerance, InnerTolerance,
                    Q, abserr, neval, ier);
  return ier == 0;
}

double Density::At(double x, int& flag) const {
  flag = 0;
  const double h = (rho_ * x + 1.0) / 2.0;
  double Q = 0.0;
  if (!workspace_.series.Sum(h, Q) && !Integrate(h, Q)) {
    flag = 1;
    return NumericFailure;
  }
  if (!(Q > 0.0)) {
    return 0.0;
  }
  const double exponent = shapeExponent_ * std::log10(1.0 - x * x) +
                          tiltExponent_ * std::log10(1.0 - rho_ * x) + logRho_ + logFactor_ +
                          std::log10(Q);
  return std::pow(10.0, exponent);
}

Limits LimitsFor(double r) {
  // Kept: the sign of r chooses the side, whatever rho is. A density that lies on the same side is
  // not found any better by this rule.
  return r > 0.0 ? Limits{r, 1.0} : Limits{-1.0, r};
}

double ExactCdf(double rho, double r, Workspace& workspace) {
  if (r >= 1.0) {
    return 1.0;
  }
  if (r <= -1.0) {
    return 0.0;
  }
  const Density density(rho, workspace);
  const auto integrand = [&density](double x) {
    IntegrandValue result;
    result.value = density.At(x, result.flag);
    return result;
  };
  const Limits limits = LimitsFor(r);
  double integral = 0.0;
  double abserr = 0.0;
  int neval = 0;
  int ier = 0;
  AdaptiveIntegrate(integrand, limits.lower, limits.upper, OuterTolerance, OuterTolerance, integral,
                    abserr, neval, ier);
  // A node that rounds to an end of the range does not give a number for small n.
  if (ier != 0 || std::isnan(integral)) {
    return NumericFailure;
  }
  return r > 0.0 ? 1.0 - integral : integral;
}

}  // namespace poweranalysis::correlation
