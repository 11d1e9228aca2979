#include "host/TerminalPainter.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <string_view>
#include <vector>

#include "host/ChartLayout.h"
#include "host/Utf8.h"

namespace poweranalysis {

namespace {

struct CharacterSet {
  std::string_view vertical;
  std::string_view horizontal;
  std::string_view corner;
  std::string_view leftTick;
  std::string_view bottomTick;
  int dotsAcross;  // dots of the curve in one character
  int dotsDown;
};

constexpr CharacterSet kUnicode = {"│", "─", "└", "┤", "┬", 2, 4};
constexpr CharacterSet kAscii = {"|", "-", "+", "+", "+", 1, 1};

// What plain ASCII puts for the signs that the texts use.
struct Spelling {
  std::string_view sign;
  std::string_view ascii;
};
constexpr std::array<Spelling, 6> kSpellings = {
    {{"²", "^2"}, {"−", "-"}, {"≤", "<="}, {"≥", ">="}, {"≠", "<>"}, {"μ", "mu"}}};

// The characters of a UTF-8 text; control characters, which would move the cursor, become blanks.
std::vector<std::string> Characters(const std::string& text) {
  std::vector<std::string> characters;
  for (std::string_view rest = text; !rest.empty();) {
    std::string character(FirstCharacter(rest));
    rest.remove_prefix(character.size());
    const auto first = static_cast<unsigned char>(character.front());
    const bool control = first < 0x20U || first == 0x7FU ||
                         (first == 0xC2U && character.size() == 2 &&
                          static_cast<unsigned char>(character.back()) < 0xA0U);
    characters.push_back(control ? " " : std::move(character));
  }
  return characters;
}

int ColumnsOf(const std::string& text) { return static_cast<int>(Characters(text).size()); }

std::string InAscii(const std::string& text) {
  std::string ascii;
  for (const std::string& character : Characters(text)) {
    if (character.size() == 1) {
      ascii += static_cast<unsigned char>(character[0]) < 0x80U ? character : "?";
      continue;
    }
    const auto spelling =
        std::find_if(kSpellings.begin(), kSpellings.end(),
                     [&](const Spelling& entry) { return entry.sign == character; });
    ascii += spelling == kSpellings.end() ? "?" : spelling->ascii;
  }
  return ascii;
}

// Place of a cell in a table stored row by row.
std::size_t Index(int column, int row, int columns) {
  return static_cast<std::size_t>(row) * static_cast<std::size_t>(columns) +
         static_cast<std::size_t>(column);
}

// A sheet of character cells.
class Sheet {
 public:
  Sheet(int columns, int rows)
      : columns_(columns), rows_(rows), cells_(Index(0, rows, columns), " ") {}

  void Put(int column, int row, std::string_view character) {
    if (column >= 0 && column < columns_ && row >= 0 && row < rows_) {
      cells_[Index(column, row, columns_)] = character;
    }
  }

  void Write(int column, int row, const std::string& text) {
    for (const std::string& character : Characters(text)) {
      Put(column++, row, character);
    }
  }

  std::string Text() const {
    std::string text;
    for (int row = 0; row < rows_; ++row) {
      for (int column = 0; column < columns_; ++column) {
        text += cells_[Index(column, row, columns_)];
      }
      text.erase(text.find_last_not_of(' ') + 1);
      text += '\n';
    }
    return text;
  }

 private:
  int columns_;
  int rows_;
  std::vector<std::string> cells_;
};

// The dots of the curve over a block of cells.
class Dots {
 public:
  Dots(int columns, int rows, const CharacterSet& set)
      : across_(columns * set.dotsAcross),
        down_(rows * set.dotsDown),
        marks_(Index(0, down_, across_), 0) {}

  // Of a piece of the line, in axis fractions.
  void Line(const Point& from, const Point& to) {
    const int steps =
        std::max({1, std::abs(Column(to) - Column(from)), std::abs(Row(to) - Row(from))});
    for (int i = 0; i <= steps; ++i) {
      const double share = static_cast<double>(i) / steps;
      Mark({from.x + share * (to.x - from.x), from.y + share * (to.y - from.y)}, kOnLine);
    }
  }

  void Mark(const Point& at, std::uint8_t kind) {
    std::uint8_t& mark = At(Column(at), Row(at));
    mark = std::max(mark, kind);
  }

  std::uint8_t At(int column, int row) const { return marks_[Index(column, row, across_)]; }

  static constexpr std::uint8_t kOnLine = 1;
  static constexpr std::uint8_t kOnPoint = 2;

 private:
  std::uint8_t& At(int column, int row) { return marks_[Index(column, row, across_)]; }
  int Column(const Point& at) const {
    return std::clamp(static_cast<int>(std::lround(at.x * (across_ - 1))), 0, across_ - 1);
  }
  int Row(const Point& at) const {
    return std::clamp(static_cast<int>(std::lround((1 - at.y) * (down_ - 1))), 0, down_ - 1);
  }

  int across_;
  int down_;
  std::vector<std::uint8_t> marks_;
};

// The Braille pattern of a cell: U+2800 and one bit per dot.
std::string BraillePattern(const Dots& dots, int column, int row) {
  static constexpr std::array<std::array<unsigned, 2>, 4> kBits = {
      {{0x01, 0x08}, {0x02, 0x10}, {0x04, 0x20}, {0x40, 0x80}}};
  unsigned bits = 0;
  for (int down = 0; down < 4; ++down) {
    for (int across = 0; across < 2; ++across) {
      if (dots.At(column * 2 + across, row * 4 + down) != 0) {
        bits |= kBits[static_cast<std::size_t>(down)][static_cast<std::size_t>(across)];
      }
    }
  }
  if (bits == 0) {
    return " ";
  }
  return {static_cast<char>(0xE2), static_cast<char>(0xA0U | (bits >> 6U)),
          static_cast<char>(0x80U | (bits & 0x3FU))};
}

std::string AsciiMark(const Dots& dots, int column, int row) {
  static constexpr std::array<std::string_view, 3> kMarks = {" ", ".", "*"};
  return std::string(kMarks[dots.At(column, row)]);
}

class TerminalChart {
 public:
  TerminalChart(const Chart& chart, TerminalSize size, TerminalStyle style)
      : chart_(chart),
        ascii_(style == TerminalStyle::Ascii),
        set_(ascii_ ? kAscii : kUnicode),
        columns_(std::clamp(size.columns, kLeastColumns, kMost)),
        rows_(std::clamp(size.rows, kLeastRows, kMost)) {}

  std::string Paint() {
    Measure();
    Sheet sheet(columns_, rows_);
    WriteTitles(sheet);
    DrawFrame(sheet);
    DrawCurve(sheet);
    return sheet.Text();
  }

 private:
  static constexpr int kLeastColumns = 30;
  static constexpr int kLeastRows = 12;
  static constexpr int kMost = 500;
  static constexpr int kLeastPlot = 5;

  std::string Shown(const std::string& text) const { return ascii_ ? InAscii(text) : text; }

  void Measure() {
    for (const std::string& title : chart_.titles) {
      for (std::string& line : WrapText(Shown(title), [this](const std::string& text) {
             return ColumnsOf(text) <= columns_;
           })) {
        titles_.push_back(std::move(line));
      }
    }
    // Titles, the Y label, the plot, the axis, its labels, the X label.
    top_ = static_cast<int>(titles_.size()) + 1;
    constexpr int kBelow = 3;
    rows_ = std::max(rows_, top_ + kLeastPlot + kBelow);
    plotRows_ = rows_ - top_ - kBelow;
    yTicks_ = YAxisTicks(chart_, std::max(2, (plotRows_ + 1) / 2));
    left_ = 1;
    for (const Tick& tick : yTicks_) {
      left_ = std::max(left_, ColumnsOf(tick.label) + 1);
    }
    left_ = std::min(left_, columns_ / 2);
    plotColumns_ = columns_ - left_ - 1;
    MeasureXTicks();
  }

  void MeasureXTicks() {
    constexpr int kMostTicks = 12;
    constexpr int kGap = 2;
    for (int most = kMostTicks; most >= 1; --most) {
      xTicks_ = AxisTicks(chart_.xAxis, most);
      int widest = 0;
      for (const Tick& tick : xTicks_) {
        widest = std::max(widest, ColumnsOf(tick.label) + kGap);
      }
      if (static_cast<int>(xTicks_.size()) * widest <= plotColumns_) {
        return;
      }
    }
  }

  void WriteCentred(Sheet& sheet, int row, const std::string& text) const {
    sheet.Write(std::max(0, (columns_ - ColumnsOf(text)) / 2), row, text);
  }

  void WriteTitles(Sheet& sheet) const {
    for (std::size_t i = 0; i < titles_.size(); ++i) {
      WriteCentred(sheet, static_cast<int>(i), titles_[i]);
    }
    sheet.Write(0, top_ - 1, Shown(chart_.yLabel));
    const std::string label = Shown(chart_.xLabel);
    const int middle = left_ + 1 + plotColumns_ / 2;
    const int width = ColumnsOf(label);
    sheet.Write(std::clamp(middle - width / 2, 0, std::max(0, columns_ - width)), rows_ - 1, label);
  }

  void DrawFrame(Sheet& sheet) const {
    const int axisRow = top_ + plotRows_;
    for (int row = top_; row < axisRow; ++row) {
      sheet.Put(left_, row, set_.vertical);
    }
    for (int column = left_ + 1; column < columns_; ++column) {
      sheet.Put(column, axisRow, set_.horizontal);
    }
    sheet.Put(left_, axisRow, set_.corner);
    for (const Tick& tick : yTicks_) {
      const int row = CellRow(AxisFraction(chart_.yAxis, tick.position));
      sheet.Write(left_ - 1 - ColumnsOf(tick.label), row, tick.label);
      sheet.Put(left_, row, set_.leftTick);
    }
    for (const Tick& tick : xTicks_) {
      const int column = CellColumn(AxisFraction(chart_.xAxis, tick.position));
      const int width = ColumnsOf(tick.label);
      sheet.Put(column, axisRow, set_.bottomTick);
      sheet.Write(std::clamp(column - width / 2, 0, columns_ - width), axisRow + 1, tick.label);
    }
  }

  // The cell in which the dot of an axis fraction lies.
  int CellColumn(double fraction) const {
    const int dots = plotColumns_ * set_.dotsAcross;
    return left_ + 1 + static_cast<int>(std::lround(fraction * (dots - 1))) / set_.dotsAcross;
  }
  int CellRow(double fraction) const {
    const int dots = plotRows_ * set_.dotsDown;
    return top_ + static_cast<int>(std::lround((1 - fraction) * (dots - 1))) / set_.dotsDown;
  }

  void DrawCurve(Sheet& sheet) const {
    Dots dots(plotColumns_, plotRows_, set_);
    const ChartCurve curve = VisibleCurve(chart_);
    for (const std::vector<Point>& piece : curve.pieces) {
      for (std::size_t i = 1; i < piece.size(); ++i) {
        dots.Line(piece[i - 1], piece[i]);
      }
    }
    for (const Point& point : curve.points) {
      dots.Mark(point, Dots::kOnPoint);
    }
    for (int row = 0; row < plotRows_; ++row) {
      for (int column = 0; column < plotColumns_; ++column) {
        const std::string cell =
            ascii_ ? AsciiMark(dots, column, row) : BraillePattern(dots, column, row);
        if (cell != " ") {
          sheet.Put(left_ + 1 + column, top_ + row, cell);
        }
      }
    }
  }

  const Chart& chart_;
  bool ascii_;
  const CharacterSet& set_;
  int columns_;
  int rows_;
  int top_ = 0;   // first row of the plot
  int left_ = 0;  // column of the Y axis
  int plotRows_ = 0;
  int plotColumns_ = 0;
  std::vector<std::string> titles_;
  std::vector<Tick> xTicks_;
  std::vector<Tick> yTicks_;
};

}  // namespace

std::string PaintTerminal(const Chart& chart, TerminalSize size, TerminalStyle style) {
  return TerminalChart(chart, size, style).Paint();
}

}  // namespace poweranalysis
