#include "desktop/ChartPainter.h"

#include <QFontMetricsF>
#include <QPaintDevice>
#include <QPolygonF>

#include "desktop/Strings.h"

namespace poweranalysis {

namespace {

class ItemPainter {
 public:
  ItemPainter(QPainter& painter, const ChartTheme& theme) : painter_(painter), theme_(theme) {}

  void operator()(const LineItem& line) {
    painter_.setPen(Pen(line.role, line.width));
    painter_.drawLine(At(line.from), At(line.to));
  }

  void operator()(const RectItem& rect) {
    painter_.fillRect(QRectF(rect.corner.x, rect.corner.y, rect.width, rect.height),
                      Colour(rect.role));
  }

  void operator()(const PolylineItem& line) {
    QPolygonF points;
    for (const Point& point : line.points) {
      points << At(point);
    }
    painter_.setPen(Pen(line.role, line.width));
    painter_.setBrush(Qt::NoBrush);
    painter_.drawPolyline(points);
  }

  void operator()(const DotItem& dot) {
    painter_.setPen(Qt::NoPen);
    painter_.setBrush(Colour(dot.role));
    painter_.drawEllipse(At(dot.centre), dot.radius, dot.radius);
  }

  void operator()(const TextItem& item) {
    const QString text = ToText(item.text);
    const QFont font = FontOf(item);
    painter_.setFont(font);
    painter_.setPen(Colour(item.role));
    const double width = QFontMetricsF(font, painter_.device()).horizontalAdvance(text);
    const double share = item.anchor == Anchor::Start ? 0 : item.anchor == Anchor::End ? 1 : 0.5;
    painter_.save();
    painter_.translate(At(item.at));
    painter_.rotate(-item.rotation);
    painter_.drawText(QPointF(-width * share, 0), text);
    painter_.restore();
  }

 private:
  static QPointF At(const Point& point) { return {point.x, point.y}; }
  QColor Colour(Role role) const {
    const Rgb& colour = theme_[role];
    return {colour.red, colour.green, colour.blue};
  }
  QPen Pen(Role role, double width) const {
    return {Colour(role), width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin};
  }
  // Sizes are in pixels of the list, whatever the resolution of the device is.
  QFont FontOf(const TextItem& item) const {
    constexpr double kPointsInInch = 72;
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setStyleHint(QFont::SansSerif);
    font.setPointSizeF(item.size * kPointsInInch / painter_.device()->logicalDpiY());
    font.setBold(item.bold);
    font.setHintingPreference(QFont::PreferNoHinting);
    return font;
  }

  QPainter& painter_;
  const ChartTheme& theme_;
};

}  // namespace

void PaintChart(QPainter& painter, const DisplayList& list, const ChartTheme& theme) {
  painter.save();
  painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing);
  ItemPainter items(painter, theme);
  for (const DisplayItem& item : list.items) {
    std::visit(items, item);
  }
  painter.restore();
}

}  // namespace poweranalysis
