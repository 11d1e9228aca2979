#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace poweranalysis {

// The values BetaCdf(x, a + j, b) for j = 0, 1, 2, ..., one after the other: the terms of a mixture
// of central distributions.
//
//   Several terms are computed side by side. Each has its own continued fraction, ended by the same
//   test at the same pass as in BetaContinuedFraction, so that it carries the same error of that
//   truncation; only the divisions are shared. What the terms have in common (logarithms, the
//   log-gamma of b) is computed once. Where it cannot move a result by more than rounding the
//   front factors of a group of terms follow from the first by their ratio, corrected for the error
//   of LogGamma's truncated series; elsewhere each is computed as BetaCdf does it. From a sum of
//   the shapes of 20000 on a term is BetaCdf itself: there rounding alone moves it by 1e-12.
//
// Domain: 0 <= x <= 1, a > 0, b > 0, all finite.
// Fails:  never. A term agrees with BetaCdf to 1e-12 absolute.
class BetaSeries {
 public:
  enum class Terms {
    SideBySide,
    OneByOne,  // every term is BetaCdf itself, bit for bit
  };

  BetaSeries(double x, double a, double b, Terms terms = Terms::SideBySide);

  // BetaCdf(x, a + j, b) for the next j; the first call gives j = 0.
  double Next() {
    if (taken_ == count_) {
      Fill();
    }
    return values_[taken_++];
  }

  // The work done so far in steps of continued fractions, a step being some nanoseconds' work.
  std::int64_t Work() const { return work_; }

 private:
  static constexpr std::size_t Width = 8;
  using Lanes = std::array<double, Width>;

  void Fill();
  void FillPlain();
  bool IsDirect(double shape) const;
  void Finish(const Lanes& shapes);
  double FrontExponent(double shape, double logGammaOfSum) const;
  bool FollowRatios(const Lanes& shapes, Lanes& fronts) const;

  double x_;
  double a_;
  double b_;
  double logX_;
  double logRest_;
  double logGammaB_;
  bool plain_;
  double index_ = 0.0;
  std::size_t taken_ = 0;
  std::size_t count_ = 0;
  Lanes values_{};
  bool direct_ = false;  // which of the two fractions
  std::int64_t work_ = 0;
};

}  // namespace poweranalysis
