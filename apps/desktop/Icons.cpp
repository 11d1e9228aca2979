#include "desktop/Icons.h"

#include <QFile>
#include <QPainter>
#include <QPixmap>
#include <QSvgRenderer>

namespace poweranalysis {

namespace {

// Painted here at a few sizes rather than through the icon plug-in for SVG, which is a separate
// package and may be missing.
QIcon Painted(const QString& path) {
  QSvgRenderer renderer(path);
  QIcon icon;
  for (const int side : {16, 24, 32, 48, 64, 96}) {
    QPixmap picture(side, side);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    renderer.render(&painter);
    painter.end();
    // The same when its row is chosen: a tint would blur it.
    icon.addPixmap(picture);
    icon.addPixmap(picture, QIcon::Selected);
  }
  return icon;
}

}  // namespace

QIcon IconOf(const QString& name) {
  const QString path = QStringLiteral(":/icons/%1.svg").arg(name);
  return Painted(QFile::exists(path) ? path : QStringLiteral(":/icons/plain.svg"));
}

QIcon IconOf(int number) { return IconOf(QString::number(number)); }

}  // namespace poweranalysis
