#pragma once

#include <array>
#include <cstdint>
#include <initializer_list>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <variant>

#include "frame/Texts.h"

namespace poweranalysis {

// One argument of a format: a whole number, a real number or a text.
class FormatArg {
 public:
  template <class T>
  requires std::is_integral_v<T> FormatArg(T value)
      : value_(static_cast<std::int64_t>(value)) {}     // NOLINT(google-explicit-constructor)
  FormatArg(double value) : value_(value) {}            // NOLINT(google-explicit-constructor)
  FormatArg(std::string_view value) : value_(value) {}  // NOLINT(google-explicit-constructor)
  FormatArg(const std::string& value) : value_(std::string_view(value)) {}  // NOLINT
  FormatArg(const char* value) : value_(std::string_view(value)) {}         // NOLINT

  const std::variant<std::int64_t, double, std::string_view>& value() const { return value_; }

 private:
  std::variant<std::int64_t, double, std::string_view> value_;
};

// printf formatting of the conversions that the texts use (%g %f %d %ld %s %%, with flag '-',
// width, precision and '*'), independent of the locale. As in C, precision zero prints nothing for
// the whole number 0 ("%.ld"). Throws std::invalid_argument when format and arguments do not fit:
// the texts are the program's own, so that is a programming error.
std::string FormatText(std::string_view format, std::span<const FormatArg> args);
std::string FormatText(std::string_view format, std::initializer_list<FormatArg> args);

// The text of a number, formatted.
std::string FormatResource(int id, std::initializer_list<FormatArg> args);

// The conversions of a format, one letter each ('g', 'f', 'd', 's'; '*' stands before its own), for
// checks of tables against texts.
std::string FormatSlots(std::string_view format);

}  // namespace poweranalysis
