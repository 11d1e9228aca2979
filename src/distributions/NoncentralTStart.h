#pragma once

#include <cstdint>

namespace poweranalysis {

// Where the search for a noncentral t quantile starts.
struct QuantileStart {
  double t;
  bool isDirect;  // from the normal approximation solved for t
};

// The first start. `steps` is the work that the searches of the quantile may still take, as
// SolveParameter counts it.
//
//   df <= 3:  z + delta
//   otherwise the relation of NoncentralTDeltaStart solved for t, where it has a solution, or the
//   series start, with z + delta where the central search of that fails.
//
// Source: Jennett, W. J. and Welch, B. L. (1939), as NoncentralTDeltaStart.
// Domain: df >= 1.
// Fails:  never.
QuantileStart FirstQuantileStart(double delta, std::int32_t df, double p, std::int64_t& steps);

// The start after a direct one has failed: a series in 1 / df about the central quantile.
//
//   t0 + delta + delta (2 z^2 + 1 + z delta) / (4 n) + delta (...) / (96 n^2)
//
// Domain: df >= 1.
// Fails:  never.
// Kept:   where the central search fails it is z alone and not z + delta.
double SecondQuantileStart(double delta, std::int32_t df, double p, std::int64_t& steps);

// 96 n^2 as a 32-bit product. Kept: it wraps from n = 4730 on, which only moves a start.
std::int32_t NinetySixSquares(std::int32_t n);

}  // namespace poweranalysis
