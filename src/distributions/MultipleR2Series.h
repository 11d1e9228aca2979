#pragma once

#include <cstdint>

#include "distributions/SearchObserver.h"

// The exact series of the distribution of R2, beneath the functions of MultipleR2.h.
namespace poweranalysis::r2 {

// What `failure` says.
inline constexpr int NotComputed = 1;
inline constexpr int Cancelled = 2;

inline constexpr double LargestIndex = 10000000.0;

// Counts the work of a call in terms of the series, one whose weight is a power of ten for four,
// asks the observer now and then whether to go on, and opens and closes what it shows.
class Watch {
 public:
  explicit Watch(SearchObserver& observer);
  Watch(const Watch&) = delete;
  Watch& operator=(const Watch&) = delete;
  ~Watch();

  // True when the call is to stop: asked by the observer after every 4096 terms.
  bool Count(std::int64_t terms);

  // The same at once, between two evaluations.
  bool Ask();

  // A search begins: its work is counted by itself.
  void BeginSearch() { searchStart_ = work_; }

  // True when the search has done all the work that it may.
  [[nodiscard]] bool IsExhausted() const;

 private:
  SearchObserver& observer_;
  std::int64_t work_ = 0;
  std::int64_t searchStart_ = 0;
  std::int64_t nextAsk_ = 0;
  bool cancelled_ = false;
};

// What the series is made of, with
//
//   A = (n - 1) / 2, B = (k - 1) / 2, C = (n - k) / 2,
//   F the decimal logarithm of the first weight, M the index from which the rest may be bounded
struct SeriesShape {
  SeriesShape(double at, double population, std::int32_t n, std::int32_t k);

  double x;
  double rho2;
  double A;
  double B;
  double C;
  double F;
  double M;
};

// The sum of the series.
//
// Domain: 0 <= x <= 1, 0 <= rho2 < 1, 2 <= k < n; the caller guarantees it.
// Fails:  as MultipleR2CdfExact. `failure` is only set.
double SeriesSum(const SeriesShape& shape, int& failure, Watch& watch);

}  // namespace poweranalysis::r2
