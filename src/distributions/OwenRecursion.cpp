#include "distributions/OwenRecursion.h"

#include <array>
#include <cmath>

#include "distributions/Normal.h"

namespace poweranalysis {

namespace {

constexpr double InverseSqrtTwoPi = 0.398942280401433;
constexpr double InverseTwoPi = 0.159154943091896;

// Kept: from here on the exponential of M1 is left out and not computed small, which leaves a step
// in the seventh digit.
constexpr double ExponentLimit = 12.5;

// How often the recursion advances both M0 and M1.
std::int32_t StepsOf(std::int32_t df) { return df >= 4 ? (df - 2) / 2 : 0; }

bool IsEven(std::int32_t df) { return df % 2 == 0; }

// What the factored form needs at step j: the product of (k - 1) / k over the indexes k = 2, 4, ...
// (even df) or k = 3, 5, ... (odd df) up to 2 j or 2 j + 1, and one over the index that follows the
// next.
struct FactorRow {
  double product;
  double inverse;
};

constexpr std::int32_t RowCount = 8193;

constexpr std::array<FactorRow, RowCount> MakeRows(std::int32_t first) {
  std::array<FactorRow, RowCount> rows{};
  double product = 1.0;
  for (std::int32_t j = 0; j < RowCount; ++j) {
    const double k = 2.0 * j + first;
    rows[static_cast<std::size_t>(j)] = {product, 1.0 / (k + 1.0)};
    product = product * (k - 1.0) / k;
  }
  return rows;
}

constexpr std::array<FactorRow, RowCount> EvenRows = MakeRows(2);
constexpr std::array<FactorRow, RowCount> OddRows = MakeRows(3);

const FactorRow* RowsFor(std::int32_t df) { return IsEven(df) ? EvenRows.data() : OddRows.data(); }

// The sum over j of product_j B^j for j up to `last`, in four interleaved Horner chains.
double PowerSum(const FactorRow* rows, std::int32_t last, double B) {
  const double B2 = B * B;
  const double B4 = B2 * B2;
  double chain[4] = {};
  const std::int32_t whole = (last + 1) / 4 * 4;
  for (std::int32_t j = whole; j <= last; ++j) {
    chain[j - whole] = rows[j].product;
  }
  for (std::int32_t j = whole - 4; j >= 0; j -= 4) {
    for (std::int32_t i = 0; i < 4; ++i) {
      chain[i] = chain[i] * B4 + rows[j + i].product;
    }
  }
  return (chain[0] + B * chain[1]) + B2 * (chain[2] + B * chain[3]);
}

// The factored recursion from its head: X_j, the next difference D_j, the power B^j and the sum so
// far.
struct Head {
  double X;
  double D;
  double power = 1.0;
  double sum = 0.0;

  void Advance(const FactorRow& row, double B, double kappa) {
    sum += row.product * power * X;
    power *= B;
    const double next = (1.0 + (kappa - 1.0) * row.inverse) * D + kappa * row.inverse * X;
    X += D;
    D = next;
  }
};

// The same from its tail: the sum over all later steps as weights of X_j and D_j, in units of B^j.
struct Tail {
  double weightX;
  double weightD = 0.0;

  void Advance(const FactorRow& row, double B, double kappa) {
    const double coupling = kappa * B * row.inverse;
    const double weight = B * weightX + (B + (kappa - 1.0) * B * row.inverse) * weightD;
    weightX = B * weightX + (coupling * weightD + row.product);
    weightD = weight;
  }
};

// M_(2j) or M_(2j+1) is product_j B^j X_j with
//   X_(j+1) = X_j + D_j,  D_(j+1) = D_j + (kappa X_(j+1) - D_j) / index,  kappa = c^2 B.
// Each step waits for the one before, so the sum is taken from both ends at once: the two chains
// do not depend on each other and meet where they take equal time.
double MeetingSum(const OwenTerms& terms, std::int32_t df) {
  const FactorRow* rows = RowsFor(df);
  const std::int32_t last = StepsOf(df);
  const double kappa = terms.c * terms.c * terms.B;
  Head head = IsEven(df)
                  ? Head{terms.M0, terms.c * terms.M1}
                  : Head{terms.M1, terms.c * terms.B * 0.5 * (terms.M0 + terms.c * terms.M1)};
  Tail tail{rows[last].product};
  const std::int32_t tailSteps = last / 16 * 7;
  const std::int32_t meeting = last - tailSteps;
  std::int32_t j = 0;
  for (; j < tailSteps; ++j) {
    head.Advance(rows[j], terms.B, kappa);
    tail.Advance(rows[last - 1 - j], terms.B, kappa);
  }
  for (; j < meeting; ++j) {
    head.Advance(rows[j], terms.B, kappa);
  }
  return head.sum + head.power * (tail.weightX * head.X + tail.weightD * head.D);
}

}  // namespace

OwenTerms::OwenTerms(double t, std::int32_t df, double delta) {
  const double n = df;
  A = t / std::sqrt(n);
  B = n / (t * t + n);
  const double r = std::sqrt(B);
  b = r * delta;
  c = A * delta;
  logScale = -0.5 * b * b;
  const double e = -0.5 * delta * delta - logScale;
  M0 = NormalCdf(b * A) * r * A * InverseSqrtTwoPi;
  M1 = c * B * M0;
  if (std::fabs(e) < ExponentLimit) {
    M1 = M1 + std::exp(e) * B * A * InverseTwoPi;
  }
}

namespace owen {

// Where t and delta differ in sign the recursion subtracts and magnifies every rounding, so that
// another order of operations would show: the stepwise form stays there. Elsewhere all terms have
// one sign. The bounds keep every X below exp(400) and every power of B above exp(-500), so that no
// rescaling can be needed.
bool FactoredFormHolds(const OwenTerms& terms, std::int32_t df) {
  constexpr double GrowthLimit = 400.0;
  constexpr double SquareLimit = 1000.0;
  const double n = df;
  return terms.c >= 0.0 && terms.c * terms.c * terms.B * n <= GrowthLimit * GrowthLimit &&
         terms.A * terms.A * n <= SquareLimit && StepsOf(df) < RowCount;
}

double FactoredSum(const OwenTerms& terms, std::int32_t df) {
  if (terms.c == 0.0) {
    // Every D is exactly zero.
    return (IsEven(df) ? terms.M0 : terms.M1) * PowerSum(RowsFor(df), StepsOf(df), terms.B);
  }
  return MeetingSum(terms, df);
}

double StepwiseSum(const OwenTerms& terms, std::int32_t df, double& logScale) {
  const bool even = IsEven(df);
  const double B = terms.B;
  const double c = terms.c;
  double M0 = terms.M0;
  double M1 = terms.M1;
  double s = even ? M0 : M1;
  double a = 1.0;
  double k = 2.0;
  for (std::int32_t steps = StepsOf(df); steps > 0; --steps) {
    M0 = (a * c * M1 + M0) * B * (k - 1.0) / k;
    a = 1.0 / ((k - 1.0) * a);
    M1 = (a * c * M0 + M1) * B * k / (k + 1.0);
    s = s + (even ? M0 : M1);
    a = 1.0 / (k * a);
    k = k + 2.0;
    const double magnitude = std::fabs(s);
    if (magnitude > UpperScaleLimit || (magnitude < LowerScaleLimit && magnitude > 0.0)) {
      const double L = std::log(magnitude);
      const double scale = std::exp(L);
      logScale = logScale + L;
      M0 = M0 / scale;
      M1 = M1 / scale;
      s = s / scale;
    }
  }
  return s;
}

}  // namespace owen

double OwenSum(const OwenTerms& terms, std::int32_t df) {
  double logScale = terms.logScale;
  double s = 0.0;
  if (df != 1) {
    s = owen::FactoredFormHolds(terms, df) ? owen::FactoredSum(terms, df)
                                           : owen::StepwiseSum(terms, df, logScale);
  }
  return s > 0.0 ? std::exp(std::log(s) + logScale) : s * std::exp(logScale);
}

}  // namespace poweranalysis
