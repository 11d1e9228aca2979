#pragma once

#include <QImage>
#include <QRectF>
#include <QWidget>
#include <optional>

#include "host/ChartLayout.h"

class QRubberBand;

namespace poweranalysis {

// A chart on the screen. The point under the pointer is read out; arrow keys move from point to
// point; a rectangle drawn with the mouse zooms in, the wheel too, and a double-click or 0 shows
// all again.
class ChartView : public QWidget {
  Q_OBJECT

 public:
  explicit ChartView(QWidget* parent = nullptr);

  void Show(const Chart& chart);
  const Chart& chart() const { return chart_; }
  // The chart with the axes as zoomed.
  const Chart& shown() const { return shown_; }
  void SetDark(bool dark);
  // Sizes of the letters, 1 as laid out.
  void SetTextScale(double scale);

  void Zoom(double factor, QPointF centre);
  void ZoomIn() { Zoom(0.5, PlotRect().center()); }
  void ZoomOut() { Zoom(2, PlotRect().center()); }
  void ResetZoom();
  bool zoomed() const { return zoomed_; }
  // The point that is read out, as "x = 50, y = 0.69".
  QString ReadOut() const;
  void PointAt(QPointF position);
  QRectF PlotRect() const;
  void CopyPicture() const;

  QSize sizeHint() const override { return {800, 560}; }
  QSize minimumSizeHint() const override { return {240, 180}; }

 Q_SIGNALS:
  void PointRead(const QString& text);
  void ZoomChanged(bool zoomed);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void leaveEvent(QEvent* event) override;

 private:
  void LayOut();
  double Scale() const;
  // Axes from two corners of the plot, in fractions of it.
  void ShowFractions(double left, double right, double bottom, double top);
  QPointF PositionOf(std::size_t index) const;
  bool InSight(std::size_t index) const;
  void SetPoint(std::optional<std::size_t> index);
  void Step(int direction);

  Chart chart_;
  Chart shown_;
  DisplayList list_;
  double scale_ = 1;      // as laid out
  double textScale_ = 1;  // as wished
  bool dark_ = false;
  bool zoomed_ = false;
  std::optional<std::size_t> point_;
  std::optional<QPoint> dragStart_;
  QRubberBand* band_ = nullptr;
};

}  // namespace poweranalysis
