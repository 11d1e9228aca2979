#include "distributions/SolveParameter.h"

#include <algorithm>
#include <iterator>

#include "distributions/Binomial.h"
#include "distributions/NoncentralChiSquare.h"
#include "distributions/NoncentralF.h"
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

double ChiSquare(double x, std::int32_t df, double delta, int& failure) {
  double density = 0.0;
  return NoncentralChiSquareCdf(x, df, delta, density, failure);
}

double ChiSquareDelta(const Design& design, double b, int& failure) {
  return ChiSquare(design.x, design.df, b, failure);
}

double ChiSquareQuantile(const Design& design, double b, int& failure) {
  return ChiSquare(b, design.df, design.x, failure);
}

template <FAlgorithm Algorithm>
double FDelta(const Design& design, double b, int& failure) {
  return NoncentralFCdfInt(design.x, design.df, design.df2, b, failure, Algorithm);
}

double FQuantile(const Design& design, double b, int& failure) {
  return NoncentralFCdfInt(b, design.df, design.df2, design.x, failure, FExact);
}

double Proportion(const Design& design, double b, int& failure) {
  return BinomialCdf(design.df, b, design.x, failure);
}

struct KindRow {
  SearchKind kind;
  SecantPolicy policy;
  Distribution distribution;    // none: the kind fails
  bool stepsThroughDf = false;  // an evaluation takes a step for every two degrees of freedom
};

constexpr SecantPolicy Free{};
constexpr SecantPolicy FreeAndTolerant{.nanIsLarge = true};
constexpr SecantPolicy FromZero{.triesZeroFirst = true};
constexpr SecantPolicy Nonnegative{.floorAtZero = true};
constexpr SecantPolicy WithinUnit{.floorAtZero = true, .ceilingAtOne = true};

constexpr KindRow Kinds[] = {
    {SearchChiSquareDelta, FromZero, ChiSquareDelta, true},
    {SearchTDelta, FreeAndTolerant, TDelta, true},
    {SearchFDelta, Nonnegative, FDelta<FExact>},
    {SearchTQuantile, Free, TQuantile, true},
    {SearchChiSquareQuantile, Nonnegative, ChiSquareQuantile, true},
    {SearchFQuantile, Nonnegative, FQuantile},
    // Kept: no floor, although its exact twin SearchFDelta has one.
    {SearchFDeltaApprox, Free, FDelta<FTiku>},
    {SearchBinomialProportion, WithinUnit, Proportion},
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
  std::int64_t steps = SearchStepLimit;
  return SolveParameter(x, df, target, start, status, failure, kind, df2, steps);
}

double SolveParameter(double x,
                      std::int32_t df,
                      double target,
                      double start,
                      int& status,
                      int& failure,
                      SearchKind kind,
                      std::int32_t df2,
                      std::int64_t& steps) {
  const KindRow& row = RowOf(kind);
  const Design design{x, df, df2};
  const std::int64_t stepsEach = row.stepsThroughDf ? df / 2 : 0;
  const auto residual = [&](double b, int& failed) {
    steps -= stepsEach;
    if (steps < 0) {
      failed = 1;
      return NumericFailure;
    }
    return ResidualOf(row, design, b, target, failed);
  };
  return SecantSearch(residual, start, row.policy, status, failure);
}

}  // namespace poweranalysis
