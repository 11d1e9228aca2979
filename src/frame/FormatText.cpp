#include "frame/FormatText.h"

#include <cctype>
#include <stdexcept>
#include <vector>

#include "host/NumberText.h"

namespace poweranalysis {

namespace {

struct Conversion {
  bool leftAligned = false;
  int width = 0;
  int precision = -1;  // -1: none given
  bool starWidth = false;
  bool starPrecision = false;
  char letter = 0;
};

// Reads the conversion after a '%' at format[at]; leaves `at` behind it.
Conversion ReadConversion(std::string_view format, std::size_t& at) {
  Conversion c;
  const auto peek = [&] { return at < format.size() ? format[at] : '\0'; };
  const auto number = [&](int& value, bool& star) {
    if (peek() == '*') {
      star = true;
      ++at;
      return;
    }
    value = 0;
    while (std::isdigit(static_cast<unsigned char>(peek())) != 0) {
      value = value * 10 + (format[at++] - '0');
    }
  };
  if (peek() == '-') {
    c.leftAligned = true;
    ++at;
  }
  number(c.width, c.starWidth);
  if (peek() == '.') {
    ++at;
    number(c.precision, c.starPrecision);
  }
  if (peek() == 'l') {
    ++at;
  }
  c.letter = peek();
  if (c.letter == '\0' || std::string_view("gfds%").find(c.letter) == std::string_view::npos) {
    throw std::invalid_argument("unknown conversion in format: " + std::string(format));
  }
  ++at;
  return c;
}

template <class T>
T Take(std::span<const FormatArg> args, std::size_t& next, std::string_view format) {
  const T* value = next < args.size() ? std::get_if<T>(&args[next].value()) : nullptr;
  if (value == nullptr) {
    throw std::invalid_argument("arguments do not fit the format: " + std::string(format));
  }
  ++next;
  return *value;
}

std::string Digits(std::int64_t value, int precision) {
  return precision == 0 && value == 0 ? std::string() : std::to_string(value);
}

std::string Aligned(std::string body, const Conversion& c) {
  const auto width = static_cast<std::size_t>(c.width < 0 ? 0 : c.width);
  if (body.size() >= width) {
    return body;
  }
  const std::string blanks(width - body.size(), ' ');
  return c.leftAligned ? body + blanks : blanks + body;
}

std::string Convert(Conversion c,
                    std::span<const FormatArg> args,
                    std::size_t& next,
                    std::string_view format) {
  constexpr int kDefaultPrecision = 6;
  if (c.starWidth) {
    c.width = static_cast<int>(Take<std::int64_t>(args, next, format));
  }
  if (c.starPrecision) {
    c.precision = static_cast<int>(Take<std::int64_t>(args, next, format));
  }
  const int precision = c.precision < 0 ? kDefaultPrecision : c.precision;
  switch (c.letter) {
    case 'g':
      return Aligned(FormatGeneral(Take<double>(args, next, format), precision), c);
    case 'f':
      return Aligned(FormatFixed(Take<double>(args, next, format), precision), c);
    case 'd':
      return Aligned(Digits(Take<std::int64_t>(args, next, format), c.precision), c);
    default:
      return Aligned(std::string(Take<std::string_view>(args, next, format)), c);
  }
}

}  // namespace

std::string FormatText(std::string_view format, std::span<const FormatArg> args) {
  std::string out;
  std::size_t next = 0;
  for (std::size_t at = 0; at < format.size();) {
    if (format[at] != '%') {
      out += format[at++];
      continue;
    }
    ++at;
    const Conversion c = ReadConversion(format, at);
    out += c.letter == '%' ? "%" : Convert(c, args, next, format);
  }
  if (next != args.size()) {
    throw std::invalid_argument("more arguments than the format takes: " + std::string(format));
  }
  return out;
}

std::string FormatText(std::string_view format, std::initializer_list<FormatArg> args) {
  return FormatText(format, std::span<const FormatArg>(args.begin(), args.size()));
}

std::string FormatResource(int id, std::initializer_list<FormatArg> args) {
  return FormatText(LoadText(id), args);
}

std::string FormatSlots(std::string_view format) {
  std::string slots;
  for (std::size_t at = 0; at < format.size();) {
    if (format[at++] != '%') {
      continue;
    }
    const Conversion c = ReadConversion(format, at);
    if (c.letter != '%') {
      slots += std::string(c.starWidth ? "*" : "") + (c.starPrecision ? "*" : "") + c.letter;
    }
  }
  return slots;
}

}  // namespace poweranalysis
