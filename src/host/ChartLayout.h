#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "host/Workbook.h"

// The one layout of a chart. It becomes a list of simple things to draw, and thin painters (SVG,
// PNG and PDF, a window) draw that list, so that paper, screen and notebook show the same picture.
namespace poweranalysis {

// The value of a point that could not be computed. It stays in the data of a chart and is never
// drawn: the line breaks there.
inline constexpr float FailedPoint = -9999.0F;

// --- Display list. The origin is the top left corner, y grows downwards, lengths are in pixels of
// 1/96 inch.

// What an item is, so that a painter picks the colour.
enum class Role { Background, Grid, Axis, TickText, Label, Title, Subtitle, Data };
inline constexpr int RoleCount = 8;

struct Point {
  double x = 0;
  double y = 0;
};

struct LineItem {
  Role role;
  Point from;
  Point to;
  double width;
};

// A filled rectangle.
struct RectItem {
  Role role;
  Point corner;
  double width;
  double height;
};

struct PolylineItem {
  Role role;
  std::vector<Point> points;  // two or more
  double width;
};

// A filled circle.
struct DotItem {
  Role role;
  Point centre;
  double radius;
};

enum class Anchor { Start, Middle, End };

// One line of text. `at` is on the baseline; the rotation in degrees turns counter-clockwise about
// it.
struct TextItem {
  Role role;
  Point at;
  Anchor anchor;
  double size;
  bool bold;
  double rotation;
  std::string text;  // UTF-8
};

using DisplayItem = std::variant<LineItem, RectItem, PolylineItem, DotItem, TextItem>;

struct DisplayList {
  double width = 0;
  double height = 0;
  std::string title;  // for those who do not see the picture
  std::string description;
  std::vector<DisplayItem> items;  // the later cover the earlier
};

struct ChartSize {
  double width = 800;
  double height = 560;
};

// Sizes below 240 x 180 are taken as that.
DisplayList LayOutChart(const Chart& chart, ChartSize size = {});

// Width of a text in the advance widths of DejaVu Sans, the widest of the usual sans-serif fonts,
// so that what fits here fits in all of them.
double TextWidth(std::string_view utf8, double size, bool bold);

// --- Colours

struct Rgb {
  std::uint8_t red;
  std::uint8_t green;
  std::uint8_t blue;
};

struct ChartTheme {
  Rgb colours[RoleCount];  // by Role

  const Rgb& operator[](Role role) const { return colours[static_cast<int>(role)]; }
};

const ChartTheme& LightTheme();
const ChartTheme& DarkTheme();

// --- Parts of the layout that every painter of charts shares.

struct Tick {
  double position = 0;  // in the units of the axis
  std::string label;
};

// Ticks at round multiples of the axis' step, at most `most`. A step of many digits counts as the
// round one below it.
std::vector<Tick> AxisTicks(const Axis& axis, int most);

// The ticks of the Y axis: those of the chart's own tick table, thinned to `most`. The table of a
// clamped axis starts half a step beyond its bound: its positions are not round, and where its
// labels round them they would mislead the reader. The ticks of the axis stand in for such a table.
std::vector<Tick> YAxisTicks(const Chart& chart, int most);

// Where a value lies on an axis, 0 at its minimum and 1 at its maximum; 0.5 on an axis without
// length.
double AxisFraction(const Axis& axis, double value);

// The points of a chart inside its axes, and the pieces of the line that joins neighbours, cut off
// at the axes and broken at failed points. Coordinates are axis fractions.
struct ChartCurve {
  std::vector<Point> points;
  std::vector<std::vector<Point>> pieces;
};
ChartCurve VisibleCurve(const Chart& chart);

// Breaks a text at blanks into lines that `fits` accepts; a word that alone does not fit stands
// alone.
template <class Fits>
std::vector<std::string> WrapText(const std::string& text, Fits fits) {
  std::vector<std::string> lines;
  std::size_t start = 0;
  while (start < text.size()) {
    std::size_t end = text.size();
    while (!fits(text.substr(start, end - start))) {
      const std::size_t blank = text.rfind(' ', end - 1);
      if (blank == std::string::npos || blank <= start) {
        end = text.find(' ', start + 1);
        end = end == std::string::npos ? text.size() : end;
        break;
      }
      end = blank;
    }
    const std::size_t last = text.find_last_not_of(' ', end - 1);
    lines.push_back(text.substr(start, last == std::string::npos ? 0 : last + 1 - start));
    start = text.find_first_not_of(' ', end);
    start = start == std::string::npos ? text.size() : start;
  }
  return lines;
}

}  // namespace poweranalysis
