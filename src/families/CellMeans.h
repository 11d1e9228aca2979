#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "settings/Records.h"

// The effect measures of expected cell means: what of a design whose means and common standard
// deviation within the cells are known the tests need, standardized effects and sums of squares.
namespace poweranalysis {

// What the grids of cell means hold, and the capacity of every other way to give them.
inline constexpr std::int64_t OneWayCapacity = 12;   // groups
inline constexpr std::int64_t TwoWayCapacity = 8;    // rows, and columns
inline constexpr std::int64_t ContrastCapacity = 8;  // groups

// Do the groups, or the rows and columns, of the record fit into its grid? A design that can be
// measured has at least two groups, rows and columns; a contrast has at least one group.
bool FitsGrid(const AV1Params& record);
bool FitsGrid(const PCParams& record);
bool FitsGrid(const AV2Params& record);

// Root mean squares of deviations in units of sigma, by the divisors of both customs.
struct EffectMeasure {
  double rmsse = 0;  // sqrt(sum of squares / (count less one))
  double f = 0;      // sqrt(sum of squares / count)
};

struct OneWayMeasures {
  std::array<double, OneWayCapacity> deviations{};  // of each mean from the grand mean
  EffectMeasure effect;
};

// Measures of the means of k groups: with d the deviations from the grand mean and q the sum of
// (d / sigma)^2, RMSSE = sqrt(q / (k - 1)) and f = sqrt(q / k).
//
// Source: Cohen, J. (1988). Statistical power analysis for the behavioral sciences, 2nd ed., 8.2.
// Domain: 2 to OneWayCapacity means, sigma > 0; the caller guarantees it.
// Fails:  never. Means beyond 1e150 can have infinite measures.
OneWayMeasures MeasureOneWay(std::span<const double> means, double sigma);

struct TwoWayMeasures {
  std::array<std::array<double, TwoWayCapacity>, TwoWayCapacity>
      deviations{};  // from the grand mean
  EffectMeasure row;
  EffectMeasure column;
  EffectMeasure interaction;
};

// Measures of an R by C table of means, row after row: with a and b the deviations of the row and
// column means from the grand mean g, and e = m - a - b - g,
//
//   row          sqrt(sum of a^2 / sigma^2 / (R - 1))
//   column       sqrt(sum of b^2 / sigma^2 / (C - 1))
//   interaction  sqrt(sum of e^2 / sigma^2 / ((R - 1) (C - 1)))
//
// and f with the counts R, C and R C in place of these divisors. `stride` steps from row to row.
//
// Source: as above.
// Domain: 2 to TwoWayCapacity rows and columns, stride >= columns, sigma > 0.
// Fails:  never; as above.
TwoWayMeasures MeasureTwoWay(std::span<const double> cells,
                             std::size_t rows,
                             std::size_t columns,
                             std::size_t stride,
                             double sigma);

struct ContrastMeasures {
  double psi = 0;        // sum of weight times mean
  double es = 0;         // psi / sigma
  double ssWeights = 0;  // sum of squared weights
};

// Measures of a contrast of means.
// Kept: the weights need not sum to zero.
//
// Domain: as many weights as means, sigma > 0.
// Fails:  never; as above.
ContrastMeasures MeasureContrast(std::span<const double> means,
                                 std::span<const double> weights,
                                 double sigma);

// Measures the cells of a record by its counts and its Sigma, and puts what the tests use into it:
// RMSSE and deviations; the three RMSSE and deviations; StandardizedEffect and SumOfSquaredWeights.
// Without a design that can be measured the record stays as it is, and there are no measures (all
// 0).
OneWayMeasures PutMeasures(AV1Params& record);
TwoWayMeasures PutMeasures(AV2Params& record);
ContrastMeasures PutMeasures(PCParams& record);

}  // namespace poweranalysis
