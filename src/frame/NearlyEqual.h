#pragma once

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <limits>

// Comparison of floating numbers by their distance in units in the last place.
namespace poweranalysis {

// The integer image of a floating number, ascending with it through zero.
template <class Integer, class Real>
Integer OrderedImage(Real value) {
  static_assert(sizeof(Integer) == sizeof(Real));
  Integer image = 0;
  std::memcpy(&image, &value, sizeof image);
  return image < 0 ? std::numeric_limits<Integer>::min() - image : image;
}

// Units in the last place within which two numbers count as equal.
inline constexpr int NearUnits = 15;

inline bool NearlyEqual(float u, float v) {
  const std::int64_t distance =
      std::int64_t{OrderedImage<std::int32_t>(u)} - std::int64_t{OrderedImage<std::int32_t>(v)};
  return std::abs(distance) <= NearUnits;
}

inline bool NearlyEqual(double u, double v) {
  const auto a = static_cast<std::uint64_t>(OrderedImage<std::int64_t>(u));
  const auto b = static_cast<std::uint64_t>(OrderedImage<std::int64_t>(v));
  const std::uint64_t distance = u < v ? b - a : a - b;
  return distance <= NearUnits;
}

}  // namespace poweranalysis
