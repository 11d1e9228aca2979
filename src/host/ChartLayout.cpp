#include "host/ChartLayout.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <optional>

#include "host/NumberText.h"
#include "host/Utf8.h"

namespace poweranalysis {

namespace {

// Advance widths of the characters from blank to tilde in DejaVu Sans and DejaVu Sans Bold,
// in thousandths of the font size.
constexpr std::array<std::int16_t, 95> kRegularWidths = {
    318, 401, 460, 838, 636, 950, 780, 275, 390, 390, 500, 838, 318, 361,  318, 337, 636, 636, 636,
    636, 636, 636, 636, 636, 636, 636, 337, 337, 838, 838, 838, 531, 1000, 684, 686, 698, 770, 632,
    575, 775, 752, 295, 295, 656, 557, 863, 748, 787, 603, 787, 695, 635,  611, 732, 684, 989, 685,
    611, 685, 390, 337, 390, 838, 500, 500, 613, 635, 550, 635, 615, 352,  635, 634, 278, 278, 579,
    278, 974, 634, 612, 635, 635, 411, 521, 392, 634, 592, 818, 592, 592,  525, 636, 337, 636, 838};
constexpr std::array<std::int16_t, 95> kBoldWidths = {
    348,  456, 521, 838, 696, 1002, 872, 306,  457, 457, 523, 838, 380, 415,  380, 365,
    696,  696, 696, 696, 696, 696,  696, 696,  696, 696, 400, 400, 838, 838,  838, 580,
    1000, 774, 762, 734, 830, 683,  683, 821,  837, 372, 372, 775, 637, 995,  837, 850,
    733,  850, 770, 720, 682, 812,  774, 1103, 771, 724, 725, 457, 365, 457,  838, 500,
    500,  675, 716, 593, 716, 678,  435, 716,  712, 343, 343, 665, 343, 1042, 712, 687,
    716,  716, 493, 595, 478, 712,  652, 924,  645, 652, 582, 712, 365, 712,  838};
constexpr int kOtherWidth = 700;  // Greek, signs, superscripts

// The decimal number that a float was meant to be: 0.05, not 0.0500000007.
double MeantBy(float value) {
  std::array<char, 64> buffer{};
  const auto written = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value);
  double meant = static_cast<double>(value);
  std::from_chars(buffer.data(), written.ptr, meant);
  return meant;
}

// The step of an axis as a reader counts: as it is with up to two digits, else the largest of 1, 2
// and 5 times a power of ten below it.
double TidyStep(float axisStep) {
  const double step = MeantBy(axisStep);
  if (!(step > 0) || !std::isfinite(step)) {
    return 0;
  }
  const double power = std::pow(10.0, std::floor(std::log10(step)));
  const double tenths = step / power * 10;
  if (std::abs(tenths - std::round(tenths)) <= 1e-9 * tenths) {
    return step;
  }
  for (const double digit : {5.0, 2.0}) {
    if (tenths >= digit * 10) {
      return digit * power;
    }
  }
  return power;
}

// Decimals that a multiple of the step needs; nothing when it has more than a label bears.
std::optional<int> DecimalsOf(double step) {
  constexpr int kMost = 9;
  double scaled = step;
  for (int decimals = 0; decimals <= kMost; ++decimals, scaled *= 10) {
    if (std::abs(scaled - std::round(scaled)) <= 1e-6 * scaled) {
      return decimals;
    }
  }
  return std::nullopt;
}

std::string TickText(double value, double step) {
  constexpr double kLargestPlain = 1e9;
  const std::optional<int> decimals = DecimalsOf(step);
  if (!decimals || std::abs(value) >= kLargestPlain) {
    return FormatGeneral(std::abs(value) < step / 2 ? 0 : value);
  }
  std::string text = FormatFixed(value, *decimals);
  const bool isZero = text.find_first_of("123456789") == std::string::npos;
  return isZero ? "0" : text;
}

// 1, 2, 5, 10, 20, 50 and so on: how many steps lie between drawn ticks.
class Thinning {
 public:
  double every() const { return kMantissa[static_cast<std::size_t>(next_)] * scale_; }
  void Coarsen() {
    if (++next_ == 3) {
      next_ = 0;
      scale_ *= 10;
    }
  }

 private:
  static constexpr std::array<double, 3> kMantissa = {1, 2, 5};
  int next_ = 0;
  double scale_ = 1;
};

bool HasLength(const Axis& axis) {
  return std::isfinite(axis.min) && std::isfinite(axis.max) && axis.max > axis.min;
}

// The tables of a chart, read back.
struct TickTable {
  std::vector<Tick> ticks;
  bool isRound = true;     // every position a multiple of the step
  bool tellsTruth = true;  // every label its position
};

TickTable ReadTickTable(const Chart& chart) {
  constexpr double kEnd = 1e-3;    // share of a step by which a tick may lie beyond the axis
  constexpr double kSlack = 1e-2;  // share of a step by which a position or a label may be off
  TickTable table;
  const double step = chart.yAxis.step;
  for (std::size_t i = 0; i < std::min(chart.tickPositions.size(), chart.tickLabels.size()); ++i) {
    const double position = chart.tickPositions[i];
    if (position > static_cast<double>(chart.yAxis.max) + kEnd * step) {
      continue;
    }
    std::string label = chart.tickLabels[i];
    label.erase(0, label.find_first_not_of(' '));
    double told = std::numeric_limits<double>::quiet_NaN();
    std::from_chars(label.data(), label.data() + label.size(), told);
    const double steps = position / step;
    table.isRound = table.isRound && std::abs(steps - std::round(steps)) <= kSlack;
    table.tellsTruth = table.tellsTruth && std::abs(told - position) <= kSlack * step;
    table.ticks.push_back({position, std::move(label)});
  }
  return table;
}

// Every n-th tick, counted from zero, so that thinned labels are the rounder ones.
std::vector<Tick> EveryNth(const std::vector<Tick>& ticks, double step, double every) {
  std::vector<Tick> kept;
  for (const Tick& tick : ticks) {
    const double steps = std::round(tick.position / step);
    if (std::fmod(std::abs(steps), every) == 0) {
      kept.push_back(tick);
    }
  }
  return kept;
}

bool IsDrawn(float value) { return std::isfinite(value) && value != FailedPoint; }

// Cuts the segment from a to b to the unit square (Liang, Y.-D. and Barsky, B. A. (1984). ACM
// Transactions on Graphics 3, 1-22). False when nothing is left.
bool ClipToUnitSquare(Point& a, Point& b) {
  const Point start = a;
  const Point way = {b.x - a.x, b.y - a.y};
  double enter = 0;
  double leave = 1;
  const auto cut = [&](double direction, double distance) {
    if (direction == 0) {
      return distance >= 0;
    }
    const double at = distance / direction;
    if (direction < 0) {
      enter = std::max(enter, at);
    } else {
      leave = std::min(leave, at);
    }
    return enter <= leave;
  };
  if (!cut(-way.x, start.x) || !cut(way.x, 1 - start.x) || !cut(-way.y, start.y) ||
      !cut(way.y, 1 - start.y)) {
    return false;
  }
  // An end inside stays as it is, bit for bit, so that the next segment joins it.
  if (enter > 0) {
    a = {start.x + enter * way.x, start.y + enter * way.y};
  }
  if (leave < 1) {
    b = {start.x + leave * way.x, start.y + leave * way.y};
  }
  return true;
}

bool InUnitSquare(const Point& point) {
  constexpr double kSlack = 1e-6;
  return point.x >= -kSlack && point.x <= 1 + kSlack && point.y >= -kSlack && point.y <= 1 + kSlack;
}

void AddSegment(Point from, Point to, std::vector<std::vector<Point>>& pieces) {
  if (!ClipToUnitSquare(from, to)) {
    return;
  }
  const bool continues = !pieces.empty() && !pieces.back().empty() &&
                         pieces.back().back().x == from.x && pieces.back().back().y == from.y;
  if (!continues) {
    pieces.push_back({from});
  }
  pieces.back().push_back(to);
}

}  // namespace

double TextWidth(std::string_view utf8, double size, bool bold) {
  const auto& widths = bold ? kBoldWidths : kRegularWidths;
  int thousandths = 0;
  while (!utf8.empty()) {
    const auto first = static_cast<unsigned char>(utf8.front());
    const bool isAscii = first >= ' ' && first <= '~';
    thousandths += isAscii ? widths[static_cast<std::size_t>(first - ' ')] : kOtherWidth;
    utf8.remove_prefix(FirstCharacter(utf8).size());
  }
  return thousandths * size / 1000;
}

std::vector<Tick> AxisTicks(const Axis& axis, int most) {
  constexpr double kEnd = 1e-3;  // share of a step by which a tick may lie beyond the axis
  constexpr double kMostSteps = 1e15;
  const double step = TidyStep(axis.step);
  if (!HasLength(axis) || !(step > 0)) {
    return {};
  }
  const double low = axis.min;
  const double high = axis.max;
  if (std::max(std::abs(low), std::abs(high)) / step > kMostSteps) {
    return {};
  }
  for (Thinning thinning;; thinning.Coarsen()) {
    const double distance = step * thinning.every();
    const double first = std::ceil(low / distance - kEnd);
    const double last = std::floor(high / distance + kEnd);
    if (last - first + 1 > std::max(most, 1)) {
      continue;
    }
    std::vector<Tick> ticks;
    for (double n = first; n <= last; ++n) {
      ticks.push_back({n * distance, TickText(n * distance, distance)});
    }
    return ticks;
  }
}

std::vector<Tick> YAxisTicks(const Chart& chart, int most) {
  const TickTable table = ReadTickTable(chart);
  const double step = chart.yAxis.step;
  const bool isTidy = step > 0 && TidyStep(chart.yAxis.step) == MeantBy(chart.yAxis.step);
  if (table.ticks.size() < 2 || !isTidy || !table.isRound || !table.tellsTruth ||
      !HasLength(chart.yAxis)) {
    return AxisTicks(chart.yAxis, most);
  }
  Thinning thinning;
  std::vector<Tick> ticks = table.ticks;
  while (static_cast<int>(ticks.size()) > std::max(most, 1)) {
    thinning.Coarsen();
    ticks = EveryNth(table.ticks, step, thinning.every());
  }
  return ticks;
}

double AxisFraction(const Axis& axis, double value) {
  const double low = axis.min;
  const double high = axis.max;
  return high > low ? (value - low) / (high - low) : 0.5;
}

ChartCurve VisibleCurve(const Chart& chart) {
  ChartCurve curve;
  Point previous;
  bool joins = false;  // the point before was drawn
  for (std::size_t i = 0; i < std::min(chart.x.size(), chart.y.size()); ++i) {
    if (!IsDrawn(chart.x[i]) || !IsDrawn(chart.y[i])) {
      joins = false;
      continue;
    }
    const Point point = {AxisFraction(chart.xAxis, static_cast<double>(chart.x[i])),
                         AxisFraction(chart.yAxis, static_cast<double>(chart.y[i]))};
    if (InUnitSquare(point)) {
      curve.points.push_back(point);
    }
    if (joins) {
      AddSegment(previous, point, curve.pieces);
    }
    previous = point;
    joins = true;
  }
  return curve;
}

const ChartTheme& LightTheme() {
  static constexpr ChartTheme kTheme = {{{255, 255, 255},  // background
                                         {226, 229, 233},  // grid
                                         {95, 102, 112},   // axis
                                         {63, 70, 80},     // tick text
                                         {34, 40, 49},     // label
                                         {17, 22, 30},     // title
                                         {63, 70, 80},     // subtitle
                                         {31, 95, 168}}};  // data
  return kTheme;
}

const ChartTheme& DarkTheme() {
  static constexpr ChartTheme kTheme = {{{27, 30, 35},
                                         {55, 60, 68},
                                         {138, 146, 158},
                                         {190, 196, 205},
                                         {222, 226, 231},
                                         {240, 242, 245},
                                         {190, 196, 205},
                                         {106, 172, 240}}};
  return kTheme;
}

// --- The layout itself

namespace {

constexpr double kOuter = 18;      // blank round the picture
constexpr double kLeading = 1.38;  // line distance in font sizes
constexpr double kTickSize = 12;
constexpr double kTickMark = 5;
constexpr double kLabelSize = 13.5;
constexpr double kSmallest = 0.78;  // a title shrinks so far before it wraps
constexpr int kMostTicks = 12;

class Layout {
 public:
  Layout(const Chart& chart, ChartSize size) : chart_(chart) {
    constexpr double kLeastWidth = 240;
    constexpr double kLeastHeight = 180;
    list_.width = std::max(size.width, kLeastWidth);
    list_.height = std::max(size.height, kLeastHeight);
  }

  DisplayList Make() {
    Add(RectItem{Role::Background, {0, 0}, list_.width, list_.height});
    list_.title = Describe();
    list_.description = Summary();
    AddTitles();
    PlacePlot();
    AddGrid();
    AddAxes();
    AddCurve();
    return std::move(list_);
  }

 private:
  template <class Item>
  void Add(Item item) {
    list_.items.emplace_back(std::move(item));
  }

  // The titles in one line.
  std::string Describe() const {
    std::string text;
    for (const std::string& title : chart_.titles) {
      text.append(text.empty() || title.empty() ? "" : "; ").append(title);
    }
    return text;
  }

  std::string Summary() const;
  void AddTitles();
  void AddTitle(const std::string& text, Role role, double size, bool bold);
  double AddLines(const std::string& text, const TextItem& first, double room, double least);
  void PlacePlot();
  void AddGrid();
  void AddAxes();
  void AddCurve();
  Point ToPicture(const Point& fraction) const {
    return {left_ + fraction.x * (right_ - left_), bottom_ - fraction.y * (bottom_ - top_)};
  }
  double X(double value) const { return ToPicture({AxisFraction(chart_.xAxis, value), 0}).x; }
  double Y(double value) const { return ToPicture({0, AxisFraction(chart_.yAxis, value)}).y; }

  const Chart& chart_;
  DisplayList list_;
  std::vector<Tick> xTicks_;
  std::vector<Tick> yTicks_;
  double titlesEnd_ = 0;
  double left_ = 0;  // the plot rectangle
  double right_ = 0;
  double top_ = 0;
  double bottom_ = 0;
};

std::string Summary(const std::string& label, const std::vector<float>& values) {
  float low = std::numeric_limits<float>::infinity();
  float high = -low;
  for (const float value : values) {
    if (IsDrawn(value)) {
      low = std::min(low, value);
      high = std::max(high, value);
    }
  }
  if (low > high) {
    return label + ": none";
  }
  return label + " from " + FormatGeneral(static_cast<double>(low)) + " to " +
         FormatGeneral(static_cast<double>(high));
}

std::string Layout::Summary() const {
  const std::size_t count = VisibleCurve(chart_).points.size();
  return std::to_string(count) + (count == 1 ? " point. " : " points. ") +
         poweranalysis::Summary(chart_.xLabel.empty() ? "X" : chart_.xLabel, chart_.x) + "; " +
         poweranalysis::Summary(chart_.yLabel.empty() ? "Y" : chart_.yLabel, chart_.y) + ".";
}

// Shrinks a text to its room, but not below the share `least` of its size, then wraps it. The first
// line's baseline is at `first.at`; returns the distance between the first and the last.
double Layout::AddLines(const std::string& text, const TextItem& first, double room, double least) {
  const double width = TextWidth(text, first.size, first.bold);
  const double shrink = width > room ? std::max(least, room / width) : 1.0;
  TextItem item = first;
  item.size = std::floor(first.size * shrink * 10) / 10;
  const auto fits = [&](const std::string& line) {
    return TextWidth(line, item.size, item.bold) <= room;
  };
  const std::vector<std::string> lines = WrapText(text, fits);
  const double upright = item.rotation == 0 ? 1 : 0;
  double distance = 0;
  for (std::size_t i = 0; i < lines.size(); ++i) {
    distance = static_cast<double>(i) * item.size * kLeading;
    item.at = {first.at.x + distance * (1 - upright), first.at.y + distance * upright};
    item.text = lines[i];
    Add(item);
  }
  return distance;
}

void Layout::AddTitle(const std::string& text, Role role, double size, bool bold) {
  if (text.empty()) {
    return;
  }
  const double baseline = titlesEnd_ + size * 1.1;
  titlesEnd_ =
      baseline + size * (kLeading - 1.1) +
      AddLines(text, {role, {list_.width / 2, baseline}, Anchor::Middle, size, bold, 0, {}},
               list_.width - 2 * kOuter, kSmallest);
}

void Layout::AddTitles() {
  titlesEnd_ = kOuter - 2;
  AddTitle(chart_.titles[0], Role::Title, 17, true);
  AddTitle(chart_.titles[1], Role::Subtitle, 13.5, false);
  AddTitle(chart_.titles[2], Role::Title, 13.5, false);
}

double WidestLabel(const std::vector<Tick>& ticks) {
  double widest = 0;
  for (const Tick& tick : ticks) {
    widest = std::max(widest, TextWidth(tick.label, kTickSize, false));
  }
  return widest;
}

void Layout::PlacePlot() {
  constexpr double kYTickDistance = 26;
  constexpr double kLabelGap = 14;
  constexpr double kLeast = 40;
  top_ = titlesEnd_ + 14;
  bottom_ = list_.height - kOuter - kTickMark - kTickSize * 1.25 -
            (chart_.xLabel.empty() ? 0 : kLabelSize + 10);
  bottom_ = std::max(bottom_, top_ + kLeast);
  const int mostY = std::clamp(static_cast<int>((bottom_ - top_) / kYTickDistance), 2, kMostTicks);
  yTicks_ = YAxisTicks(chart_, mostY);
  left_ =
      kOuter + (chart_.yLabel.empty() ? 0 : kLabelSize + 10) + WidestLabel(yTicks_) + kTickMark + 4;
  right_ = std::max(list_.width - kOuter - 10, left_ + kLeast);
  for (int most = kMostTicks; most >= 1; --most) {
    xTicks_ = AxisTicks(chart_.xAxis, most);
    const auto count = static_cast<double>(xTicks_.size());
    if (count * (WidestLabel(xTicks_) + kLabelGap) <= right_ - left_) {
      break;
    }
  }
}

void Layout::AddGrid() {
  constexpr double kWidth = 1;
  for (const Tick& tick : xTicks_) {
    Add(LineItem{Role::Grid, {X(tick.position), top_}, {X(tick.position), bottom_}, kWidth});
  }
  for (const Tick& tick : yTicks_) {
    Add(LineItem{Role::Grid, {left_, Y(tick.position)}, {right_, Y(tick.position)}, kWidth});
  }
}

// Room of a text centred at `middle` of a picture `length` long.
double RoomAbout(double middle, double length) {
  constexpr double kBlank = kOuter / 2;
  return 2 * (std::min(middle, length - middle) - kBlank);
}

void Layout::AddAxes() {
  constexpr double kWidth = 1.2;
  constexpr double kOneLine = 0;  // a label beside its axis has no room for a second line
  for (const Tick& tick : xTicks_) {
    const double x = X(tick.position);
    Add(LineItem{Role::Axis, {x, bottom_}, {x, bottom_ + kTickMark}, kWidth});
    Add(TextItem{Role::TickText,
                 {x, bottom_ + kTickMark + kTickSize * 1.1},
                 Anchor::Middle,
                 kTickSize,
                 false,
                 0,
                 tick.label});
  }
  for (const Tick& tick : yTicks_) {
    const double y = Y(tick.position);
    Add(LineItem{Role::Axis, {left_ - kTickMark, y}, {left_, y}, kWidth});
    Add(TextItem{Role::TickText,
                 {left_ - kTickMark - 4, y + kTickSize * 0.36},
                 Anchor::End,
                 kTickSize,
                 false,
                 0,
                 tick.label});
  }
  Add(PolylineItem{Role::Axis, {{left_, top_}, {left_, bottom_}, {right_, bottom_}}, kWidth});
  AddLines(chart_.xLabel,
           {Role::Label,
            {(left_ + right_) / 2, list_.height - kOuter + 2},
            Anchor::Middle,
            kLabelSize,
            false,
            0,
            {}},
           RoomAbout((left_ + right_) / 2, list_.width), kOneLine);
  AddLines(chart_.yLabel,
           {Role::Label,
            {kOuter + kLabelSize * 0.75, (top_ + bottom_) / 2},
            Anchor::Middle,
            kLabelSize,
            false,
            90,
            {}},
           RoomAbout((top_ + bottom_) / 2, list_.height), kOneLine);
}

void Layout::AddCurve() {
  constexpr double kLine = 2;
  constexpr double kShare = 0.3;  // of the distance of the points that a marker may cover
  const ChartCurve curve = VisibleCurve(chart_);
  for (const std::vector<Point>& piece : curve.pieces) {
    PolylineItem line{Role::Data, {}, kLine};
    for (const Point& point : piece) {
      line.points.push_back(ToPicture(point));
    }
    Add(std::move(line));
  }
  const double distance =
      (right_ - left_) / static_cast<double>(std::max<std::size_t>(curve.points.size(), 1));
  const double radius = std::clamp(distance * kShare, 1.2, 3.4);
  for (const Point& point : curve.points) {
    Add(DotItem{Role::Data, ToPicture(point), radius});
  }
}

}  // namespace

DisplayList LayOutChart(const Chart& chart, ChartSize size) { return Layout(chart, size).Make(); }

}  // namespace poweranalysis
