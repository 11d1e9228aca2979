#include "host/NumberText.h"

#include <array>
#include <charconv>
#include <cmath>
#include <limits>

#include "host/Workbook.h"

namespace poweranalysis {

namespace {

// Long enough for 1e308 with the decimals that any format here asks for.
constexpr std::size_t kBuffer = 512;

std::string ToChars(double value, std::chars_format format, int precision) {
  std::array<char, kBuffer> buffer{};
  const auto [end, error] =
      std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, format, precision);
  return error == std::errc{} ? std::string(buffer.data(), end) : std::string();
}

std::string RightAligned(const std::string& text, int width) {
  const auto wanted = static_cast<std::size_t>(width < 0 ? 0 : width);
  return text.size() < wanted ? std::string(wanted - text.size(), ' ') + text : text;
}

}  // namespace

std::string WithoutSignOfZero(std::string text) {
  const bool negative = !text.empty() && text.front() == '-';
  const bool zero = text.find_first_not_of("-0.") == std::string::npos;
  return negative && zero ? text.substr(1) : text;
}

namespace {

// Whole numbers up to 1e15 stand in full.
bool IsShownWhole(double value) {
  constexpr double kWhole = 1e15;
  return std::floor(value) == value && std::abs(value) <= kWhole;
}

// A negative zero shows as "0".
std::string WholeText(double value) { return FormatFixed(value + 0.0, 0); }

std::string WithoutTrailingZeros(std::string text) {
  if (text.find('.') == std::string::npos) {
    return text;
  }
  text.erase(text.find_last_not_of('0') + 1);
  if (text.back() == '.') {
    text.pop_back();
  }
  return WithoutSignOfZero(text);
}

}  // namespace

std::string FormatGeneral(double value, int precision) {
  return ToChars(value, std::chars_format::general, precision);
}

std::string FormatFixed(double value, int decimals) {
  return ToChars(value, std::chars_format::fixed, decimals);
}

std::string FormatDecimals(double value, int decimals) {
  constexpr std::size_t kWidest = 24;
  constexpr int kDigits = 12;
  if (!std::isfinite(value)) {
    return FormatGeneral(value);
  }
  std::string text = WithoutTrailingZeros(FormatFixed(value, decimals));
  return text.size() > kWidest ? FormatGeneral(value, kDigits) : text;
}

std::string FormatShortest(double value) {
  std::array<char, kBuffer> buffer{};
  const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value);
  return std::string(buffer.data(), result.ptr);
}

std::string FormatCell(double value, int digits) {
  if (IsMissing(value)) {
    return {};
  }
  return IsShownWhole(value) ? WholeText(value) : FormatGeneral(value, digits);
}

namespace {

// A negative zero shows as 0, and is not lost by that.
bool ReadsBackAs(double value, const std::string& text) {
  double read = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), read);
  return error == std::errc{} && end == text.data() + text.size() && read == value;
}

}  // namespace

std::string FormatCell(CellKind kind, double value, int digits) {
  std::string text = FormatCell(value, digits);
  if (kind == CellKind::Input && !IsMissing(value) && !ReadsBackAs(value, text)) {
    return FormatShortest(value);
  }
  const bool rounded = kind == CellKind::Probability && value < 1 && text == "1";
  return rounded ? ">0." + std::string(static_cast<std::size_t>(digits), '9') : text;
}

std::string_view WithoutPlus(std::string_view text) {
  const bool signedOnce = text.size() > 1 && text[0] == '+' && text[1] != '-';
  return signedOnce ? text.substr(1) : text;
}

namespace {

constexpr std::string_view kBlanks = " \t\r\n";

std::string_view Trimmed(std::string_view text) {
  const std::size_t first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) {
    return {};
  }
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

// What digits stand for that no double can hold: zero, or an infinity.
double OutOfReach(std::string_view text) {
  const bool negative = text.front() == '-';
  text.remove_prefix(negative ? 1 : 0);
  const std::size_t exponent = text.find_first_of("eE");
  const char sign = exponent == std::string_view::npos ? '\0' : text[exponent + 1];
  const bool small = sign == '-' || (sign == '\0' && (text.front() == '0' || text.front() == '.'));
  const double size = small ? 0 : std::numeric_limits<double>::infinity();
  return negative ? -size : size;
}

}  // namespace

std::optional<double> ReadNumber(std::string_view text) {
  text = WithoutPlus(Trimmed(text));
  double value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (text.empty() || end != text.data() + text.size()) {
    return std::nullopt;
  }
  if (error == std::errc::result_out_of_range) {
    return OutOfReach(text);
  }
  return error == std::errc{} ? std::optional<double>(value) : std::nullopt;
}

std::string RealToText(double value, int format, int width, int decimals) {
  return RightAligned(format == RealTickLabel ? WithoutSignOfZero(FormatFixed(value, decimals))
                                              : FormatDecimals(value, decimals),
                      format == RealTickLabel ? width : 0);
}

std::string IntToText(std::int64_t value, int format, int width) {
  return RightAligned(std::to_string(value), format == IntTickLabel ? width : 0);
}

}  // namespace poweranalysis
