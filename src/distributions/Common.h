#pragma once

#include <cmath>
#include <cstdint>
#include <cstring>

namespace poweranalysis {

// What a routine returns when the number could not be computed. It lies outside every range of
// results, and callers test for it by equality.
inline constexpr double NumericFailure = -9999.0;

// The same for a size or any other whole number.
inline constexpr std::int32_t SizeFailure = -9999;

// How many representable doubles a value may lie beyond a bound and still count as inside it.
inline constexpr std::int64_t ImageSlack = 15;

// The 64 bits of a double read as a signed integer. For nonnegative doubles the images are ordered
// as the doubles are, one step for each representable value. Every double with the sign bit set
// has a negative image.
inline std::int64_t IntegerImage(double value) {
  std::int64_t image = 0;
  static_assert(sizeof image == sizeof value);
  std::memcpy(&image, &value, sizeof image);
  return image;
}

// True when the nonnegative value exceeds the nonnegative bound by no more than the slack.
inline bool AtMostWithSlack(double value, double bound) {
  return IntegerImage(value) <= IntegerImage(bound) + ImageSlack;
}

// Near equality of the root finders: |u - v| at most 1e-10, with the slack. NaN equals nothing.
inline bool AlmostEqual(double u, double v) { return AtMostWithSlack(std::fabs(u - v), 1e-10); }

// The same against zero for a magnitude: an image of at most 15, so that the smallest denormals
// count as zero.
//
// Kept: the images are compared as signed integers, so that a magnitude that rounding has made
// negative counts as zero, whatever its size.
inline bool AlmostZero(double magnitude) { return IntegerImage(magnitude) <= ImageSlack; }

}  // namespace poweranalysis
