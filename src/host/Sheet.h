#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

// Sheets of numbers: cell means as they are kept in files and brought from other programs.
namespace poweranalysis {

// What is read of a sheet's file. A sheet of cell means has some hundred bytes; what is larger than
// these is another file, named by mistake.
inline constexpr std::size_t SheetFileLimit = std::size_t{1} << 20;
inline constexpr std::size_t SheetRowLimit = 1000;
inline constexpr std::size_t SheetColumnLimit = 256;
inline constexpr std::size_t SheetCellLimit = 256;  // bytes

struct Sheet {
  std::size_t rows = 0;
  std::size_t columns = 0;
  std::vector<double> cells;  // row by row; MissingValue() where there is no number

  double At(std::size_t row, std::size_t column) const { return cells[row * columns + column]; }
};

struct SheetResult {
  Sheet sheet;
  std::string error;  // empty when there is a sheet; else what is wrong with the text
};

enum class SheetFormat {
  Tabs,    // cells parted by tabs
  Commas,  // by RFC 4180; by semicolons instead of commas in a text that has any
};

// The sheet that a text holds.
//
//   "ZLV 1 <rows> <columns>", then a line for each row of numbers parted by tabs, an empty cell
//   for a missing number: this program's own form, read whatever the format; it must hold just
//   what its first line says.
//   Any other text: lines of cells as the format says. What is not a number is missing, as in a
//   line of headings; a short line is filled up with missing cells.
//
// Lines end with a line feed, a carriage return or both; a byte order mark is skipped. Not a sheet:
// a text that is empty or not UTF-8, that holds a NUL, or that is larger than the limits above.
SheetResult ParseSheet(std::string_view text, SheetFormat format);

// The sheet of a file: commas for the extension ".csv" in any case, tabs for any other. The error
// names the reason without the file.
SheetResult ReadSheet(const std::string& path);

// The program's own form. A number reads back to the same bits.
std::string FormatSheet(const Sheet& sheet);

// Spreadsheets and typographers write U+2212 for a minus: the text with "-" in its place.
std::string WithPlainMinus(std::string_view text);

}  // namespace poweranalysis
