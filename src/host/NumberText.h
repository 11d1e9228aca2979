#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "host/Workbook.h"

// Numbers as text, never dependent on the locale.
namespace poweranalysis {

// As printf's %.<precision>g.
std::string FormatGeneral(double value, int precision = 6);
// As printf's %.<decimals>f.
std::string FormatFixed(double value, int decimals);
// At most `decimals` decimals, trailing zeros cut; twelve significant digits when that would be
// wider than 24 characters.
std::string FormatDecimals(double value, int decimals);
// A number's text that has no digit but zeros, without its minus sign; any other as it is.
std::string WithoutSignOfZero(std::string text);
// The shortest text that reads back exactly.
std::string FormatShortest(double value);

// A cell of a summary table: six significant digits, whole numbers up to 1e15 in full, nothing for
// a missing value.
std::string FormatCell(double value, int digits = 6);
// The same by what the number is: an input loses no digit, so that where the text above does not
// read back as it the shortest text that does takes its place ("0.0001", but "1234567.891"), and
// a probability below 1 never shows as 1 but as ">0.999999".
std::string FormatCell(CellKind kind, double value, int digits = 6);

// A number's text as the reader of numbers takes it: without the plus sign that people may write
// before it.
std::string_view WithoutPlus(std::string_view text);
// The number that the whole text is, blanks around it aside; nothing for any other text. Digits
// that no double can hold are 0 or an infinity, which every range refuses.
std::optional<double> ReadNumber(std::string_view text);

// Format codes of RealToText and IntToText.
inline constexpr int RealPlain = 132;     // trailing zeros cut
inline constexpr int RealTickLabel = 36;  // all decimals, right-aligned
inline constexpr int IntTickLabel = 6;    // right-aligned

std::string RealToText(double value, int format, int width, int decimals);
std::string IntToText(std::int64_t value, int format, int width);

}  // namespace poweranalysis
