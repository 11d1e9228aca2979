#pragma once

#include <cstddef>

namespace poweranalysis {

// The polynomial with the given coefficients, highest power first, by Horner's rule.
template <std::size_t Count>
constexpr double Horner(const double (&coefficients)[Count], double x) {
  double sum = coefficients[0];
  for (std::size_t i = 1; i < Count; ++i) {
    sum = sum * x + coefficients[i];
  }
  return sum;
}

}  // namespace poweranalysis
