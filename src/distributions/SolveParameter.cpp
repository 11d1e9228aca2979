#include "distributions/SolveParameter.h"

#include <algorithm>
#include <iterator>

#include "distributions/NoncentralT.h"

namespace poweranalysis {

namespace {

struct Design {
  double x;
  std::int32_t df;
  std::int32_t df2;
};

using Distribution = double (*)(const Design& design, double b, int& failure);

double TDelta(const Design& design, double b, int& /*failure*/) {
  // Kept: a failed integral is not reported, unlike in TQuantile.
  return NoncentralTCdf(design.x, design.df, b);
}

double TQuantile(const Design& design, double b, int& failure) {
  const double p = NoncentralTCdf(b, design.df, design.x);
  failure = p == NumericFailure ? 1 : 0;
  return p;
}

struct KindRow {
  SearchKind kind;
  SecantPolicy policy;
  Distribution distribution;  // none: the kind fails
};

constexpr SecantPolicy Free{};
constexpr SecantPolicy FreeAndTolerant{.nanIsLarge = true};
constexpr SecantPolicy FromZero{.triesZeroFirst = true};
constexpr SecantPolicy Nonnegative{.floorAtZero = true};
constexpr SecantPolicy Proportion{.floorAtZero = true, .ceilingAtOne = true};

constexpr KindRow Kinds[] = {
    {SearchChiSquareDelta, FromZero, nullptr},
    {SearchTDelta, FreeAndTolerant, TDelta},
    {SearchFDelta, Nonnegative, nullptr},
    {SearchTQuantile, Free, TQuantile},
    {SearchChiSquareQuantile, Nonnegative, nullptr},
    {SearchFQuantile, Nonnegative, nullptr},
    // Kept: no floor, although its exact twin SearchFDelta has one.
    {SearchFDeltaApprox, Free, nullptr},
    {SearchBinomialProportion, Proportion, nullptr},
};

constexpr KindRow NoKind{SearchKind{}, Free, nullptr};

const KindRow& RowOf(SearchKind kind) {
  const auto* row = std::find_if(std::begin(Kinds), std::end(Kinds),
                                 [kind](const KindRow& each) { return each.kind == kind; });
  return row == std::end(Kinds) ? NoKind : *row;
}

double ResidualOf(const KindRow& row, const Design& design, double b, double target, int& failure) {
  failure = 0;
  if (row.distribution == nullptr) {
    failure = 1;
    return NumericFailure;
  }
  const double value = row.distribution(design, b, failure);
  return failure != 0 ? NumericFailure : value - target;
}

}  // namespace

const SecantPolicy& SearchPolicyOf(SearchKind kind) { return RowOf(kind).policy; }

double SolveResidual(double x,
                     double b,
                     std::int32_t df,
                     double target,
                     int& failure,
                     SearchKind kind,
                     std::int32_t df2) {
  return ResidualOf(RowOf(kind), {x, df, df2}, b, target, failure);
}

double SolveParameter(double x,
                      std::int32_t df,
                      double target,
                      double start,
                      int& status,
                      int& failure,
                      SearchKind kind,
                      std::int32_t df2) {
  const KindRow& row = RowOf(kind);
  const Design design{x, df, df2};
  const auto residual = [&](double b, int& failed) {
    return ResidualOf(row, design, b, target, failed);
  };
  return SecantSearch(residual, start, row.policy, status, failure);
}

}  // namespace poweranalysis
