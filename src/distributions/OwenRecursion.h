#pragma once

#include <cstdint>

namespace poweranalysis {

// The quantities of Owen's recursion at one point, in his notation.
//
// Source: Owen, D. B. (1965). Biometrika 52, 437-446.
struct OwenTerms {
  double A;
  double B;
  double b;
  double c;
  double logScale;  // the logarithm by which the sum is to be multiplied
  double M0;
  double M1;

  OwenTerms(double t, std::int32_t df, double delta);
};

// The sum S of the recursion with its scale put back; 0 for df = 1.
//
//   S = M_0 + M_2 + ... (even df) or M_1 + M_3 + ... (odd df), up to M_(df - 2), with
//   M_k = (k - 1) / k B (a_k c M_(k-1) + M_(k-2)),  a_k = 1 / ((k - 2) a_(k-1))
double OwenSum(const OwenTerms& terms, std::int32_t df);

namespace owen {

// The limits of the rescaling test: |s| lies outside them exactly when |log|s|| > 500, rounding of
// the logarithm included.
inline constexpr double UpperScaleLimit = 0x1.45ba2a9f7e4dbp+721;
inline constexpr double LowerScaleLimit = 0x1.9265e78d442c4p-722;

// True when the factored form may stand for the stepwise one.
bool FactoredFormHolds(const OwenTerms& terms, std::int32_t df);

// The sum without its scale, for df of 2 or more: as the recursion is written, and with the
// factors that depend on the index alone taken out of it.
double StepwiseSum(const OwenTerms& terms, std::int32_t df, double& logScale);
double FactoredSum(const OwenTerms& terms, std::int32_t df);

}  // namespace owen

}  // namespace poweranalysis
