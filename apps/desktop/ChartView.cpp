#include "desktop/ChartView.h"

#include <QApplication>
#include <QClipboard>
#include <QKeyEvent>
#include <QMimeData>
#include <QMouseEvent>
#include <QPainter>
#include <QRubberBand>
#include <QToolTip>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>

#include "desktop/ChartPainter.h"
#include "desktop/Strings.h"
#include "exporters/Exporters.h"
#include "host/NumberText.h"

namespace poweranalysis {

namespace {

constexpr double kSmallestFraction = 1e-4;  // single precision distinguishes no more

// A round step for some eight ticks.
float RoundStep(double length) {
  constexpr double kTicks = 8;
  const double rough = length / kTicks;
  const double power = std::pow(10.0, std::floor(std::log10(rough)));
  for (const double factor : {1.0, 2.0, 5.0}) {
    if (rough <= factor * power) {
      return static_cast<float>(factor * power);
    }
  }
  return static_cast<float>(10 * power);
}

Axis Part(const Axis& axis, double from, double to) {
  const double min = static_cast<double>(axis.min);
  const double length = static_cast<double>(axis.max) - min;
  Axis part;
  part.min = static_cast<float>(min + from * length);
  part.max = static_cast<float>(min + to * length);
  part.step = RoundStep((to - from) * length);
  return part;
}

}  // namespace

ChartView::ChartView(QWidget* parent) : QWidget(parent) {
  setMouseTracking(true);
  setFocusPolicy(Qt::StrongFocus);
  setAccessibleName(tr("Chart"));
  setAccessibleDescription(tr("No chart"));
}

void ChartView::Show(const Chart& chart) {
  chart_ = chart;
  ResetZoom();
}

void ChartView::SetDark(bool dark) {
  dark_ = dark;
  update();
}

void ChartView::SetTextScale(double scale) {
  textScale_ = scale;
  LayOut();
}

// Letters are enlarged only as far as the plot between them keeps its room.
double ChartView::Scale() const {
  constexpr double kLeastWidth = 440;
  constexpr double kLeastHeight = 330;
  const double most = std::min(width() / kLeastWidth, height() / kLeastHeight);
  return std::max(0.5, std::min(textScale_, most));
}

void ChartView::LayOut() {
  scale_ = Scale();
  list_ = LayOutChart(shown_, {width() / scale_, height() / scale_});
  setAccessibleDescription(ToText(list_.title + ". " + list_.description));
  update();
}

void ChartView::resizeEvent(QResizeEvent*) { LayOut(); }

// The plot is the rectangle that the two axes, drawn as one line of three points, span.
QRectF ChartView::PlotRect() const {
  for (const DisplayItem& item : list_.items) {
    const auto* line = std::get_if<PolylineItem>(&item);
    if (line != nullptr && line->role == Role::Axis && line->points.size() == 3) {
      const Point& top = line->points.front();
      const Point& right = line->points.back();
      return {top.x * scale_, top.y * scale_, (right.x - top.x) * scale_,
              (right.y - top.y) * scale_};
    }
  }
  return rect();
}

QPointF ChartView::PositionOf(std::size_t index) const {
  const QRectF plot = PlotRect();
  return {
      plot.left() + AxisFraction(shown_.xAxis, static_cast<double>(shown_.x[index])) * plot.width(),
      plot.bottom() -
          AxisFraction(shown_.yAxis, static_cast<double>(shown_.y[index])) * plot.height()};
}

bool ChartView::InSight(std::size_t index) const {
  return index < shown_.x.size() && index < shown_.y.size() && shown_.y[index] != FailedPoint &&
         std::isfinite(shown_.y[index]) &&
         PlotRect().adjusted(-1, -1, 1, 1).contains(PositionOf(index));
}

QString ChartView::ReadOut() const {
  if (!point_) {
    return {};
  }
  const auto name = [](const std::string& label, const char* other) {
    return label.empty() ? QString::fromLatin1(other) : ToText(label);
  };
  return tr("%1 = %2, %3 = %4")
      .arg(name(shown_.xLabel, "X"), ToText(FormatShortest(ShortestDouble(shown_.x[*point_]))),
           name(shown_.yLabel, "Y"), ToText(FormatShortest(ShortestDouble(shown_.y[*point_]))));
}

void ChartView::SetPoint(std::optional<std::size_t> index) {
  if (index == point_) {
    return;
  }
  point_ = index;
  const QString text = ReadOut();
  if (point_) {
    QToolTip::showText(mapToGlobal(PositionOf(*point_).toPoint() + QPoint(6, -30)), text, this);
  } else {
    QToolTip::hideText();
  }
  Q_EMIT PointRead(text);
  update();
}

void ChartView::PointAt(QPointF position) {
  constexpr double kReach = 24;
  std::optional<std::size_t> nearest;
  double least = kReach;
  for (std::size_t i = 0; i < shown_.x.size(); ++i) {
    if (InSight(i)) {
      const QPointF away = PositionOf(i) - position;
      const double distance = std::hypot(away.x(), away.y());
      if (distance < least) {
        least = distance;
        nearest = i;
      }
    }
  }
  SetPoint(nearest);
}

void ChartView::Step(int direction) {
  const int count = static_cast<int>(shown_.x.size());
  int place = point_ ? static_cast<int>(*point_) : (direction > 0 ? -1 : count);
  for (place += direction; place >= 0 && place < count; place += direction) {
    if (InSight(static_cast<std::size_t>(place))) {
      SetPoint(static_cast<std::size_t>(place));
      return;
    }
  }
}

// --- Zoom.

void ChartView::ShowFractions(double left, double right, double bottom, double top) {
  if (right - left < kSmallestFraction || top - bottom < kSmallestFraction) {
    return;
  }
  const Axis x = Part(shown_.xAxis, left, right);
  const Axis y = Part(shown_.yAxis, bottom, top);
  if (!(x.max > x.min) || !(y.max > y.min)) {
    return;
  }
  shown_.xAxis = x;
  shown_.yAxis = y;
  // The table of ticks belongs to the whole axis.
  shown_.tickPositions.clear();
  shown_.tickLabels.clear();
  zoomed_ = true;
  SetPoint(std::nullopt);
  LayOut();
  Q_EMIT ZoomChanged(true);
}

void ChartView::Zoom(double factor, QPointF centre) {
  const QRectF plot = PlotRect();
  const double x = (centre.x() - plot.left()) / plot.width();
  const double y = (plot.bottom() - centre.y()) / plot.height();
  ShowFractions(x - x * factor, x + (1 - x) * factor, y - y * factor, y + (1 - y) * factor);
}

void ChartView::ResetZoom() {
  shown_ = chart_;
  zoomed_ = false;
  SetPoint(std::nullopt);
  LayOut();
  Q_EMIT ZoomChanged(false);
}

// --- Events.

void ChartView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const ChartTheme& theme = dark_ ? DarkTheme() : LightTheme();
  painter.save();
  painter.scale(scale_, scale_);
  PaintChart(painter, list_, theme);
  painter.restore();
  painter.setRenderHint(QPainter::Antialiasing);
  if (point_ && InSight(*point_)) {
    const Rgb& colour = theme[Role::Title];
    painter.setPen(QPen(QColor(colour.red, colour.green, colour.blue), 1.5));
    painter.setBrush(Qt::NoBrush);
    painter.drawEllipse(PositionOf(*point_), 7 * scale_, 7 * scale_);
  }
  if (hasFocus()) {
    painter.setPen(QPen(palette().color(QPalette::Highlight), 1));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
  }
}

void ChartView::mousePressEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton && PlotRect().contains(event->position())) {
    dragStart_ = event->position().toPoint();
  }
}

void ChartView::mouseMoveEvent(QMouseEvent* event) {
  constexpr int kLeastDrag = 6;
  const QPoint here = event->position().toPoint();
  if (dragStart_ && (here - *dragStart_).manhattanLength() > kLeastDrag) {
    if (band_ == nullptr) {
      band_ = new QRubberBand(QRubberBand::Rectangle, this);
      band_->setAccessibleName(tr("Part of the chart to zoom to"));
    }
    band_->setGeometry(
        QRect(*dragStart_, here).normalized().intersected(PlotRect().toAlignedRect()));
    band_->show();
    return;
  }
  PointAt(event->position());
}

void ChartView::mouseReleaseEvent(QMouseEvent*) {
  if (dragStart_ && band_ != nullptr && band_->isVisible()) {
    const QRectF plot = PlotRect();
    const QRect chosen = band_->geometry();
    band_->hide();
    ShowFractions((chosen.left() - plot.left()) / plot.width(),
                  (chosen.right() - plot.left()) / plot.width(),
                  (plot.bottom() - chosen.bottom()) / plot.height(),
                  (plot.bottom() - chosen.top()) / plot.height());
  }
  dragStart_.reset();
}

void ChartView::mouseDoubleClickEvent(QMouseEvent*) { ResetZoom(); }

void ChartView::wheelEvent(QWheelEvent* event) {
  constexpr double kWheelZoom = 0.8;
  const int turned = event->angleDelta().y();
  if (turned == 0 || !PlotRect().contains(event->position())) {
    return;
  }
  Zoom(turned > 0 ? kWheelZoom : 1 / kWheelZoom, event->position());
  event->accept();
}

void ChartView::keyPressEvent(QKeyEvent* event) {
  switch (event->key()) {
    case Qt::Key_Right:
      return Step(1);
    case Qt::Key_Left:
      return Step(-1);
    case Qt::Key_Plus:
    case Qt::Key_Equal:
      return ZoomIn();
    case Qt::Key_Minus:
      return ZoomOut();
    case Qt::Key_0:
      return ResetZoom();
    default:
      QWidget::keyPressEvent(event);
  }
}

void ChartView::leaveEvent(QEvent*) { SetPoint(std::nullopt); }

void ChartView::CopyPicture() const {
  constexpr int kScale = 2;
  const DisplayList list = LayOutChart(shown_);
  QImage image(QSize(static_cast<int>(list.width), static_cast<int>(list.height)) * kScale,
               QImage::Format_ARGB32);
  image.fill(Qt::white);
  QPainter painter(&image);
  painter.scale(kScale, kScale);
  PaintChart(painter, list);
  painter.end();
  auto* copied = new QMimeData;
  copied->setImageData(image);
  copied->setText(ToText(list.title + ". " + list.description));
  QApplication::clipboard()->setMimeData(copied);
}

}  // namespace poweranalysis
