#include "Platform/Linux/Tray/SymbolImage.h"

#include <QFile>
#include <QPainter>
#include <QPixmap>
#include <QSvgRenderer>
#include <utility>

namespace platform::linux::tray {

namespace {

// Enough to be seen where the ink is not, and little beside the ink where it is.
constexpr double edgeOpacity = 0.7;

QPixmap transparent(int size) {
  QPixmap pixmap(size, size);
  pixmap.fill(Qt::transparent);
  return pixmap;
}

// By the width of an edge on every side.
QPixmap widened(QSvgRenderer& drawing, int size) {
  QPixmap narrow = transparent(size);
  QPainter narrowPainter(&narrow);
  drawing.render(&narrowPainter);
  narrowPainter.end();
  QPixmap wide = transparent(size);
  QPainter painter(&wide);
  painter.setRenderHint(QPainter::SmoothPixmapTransform);
  const double width = size / 16.0;
  for (const double x : {-width, 0.0, width})
    for (const double y : {-width, 0.0, width}) painter.drawPixmap(QPointF(x, y), narrow);
  return wide;
}

}  // namespace

std::shared_ptr<SymbolImage> SymbolImage::named(const std::string& name, const std::string& accessibilityDescription) {
  QFile file(QStringLiteral(":/icons/") + QString::fromStdString(name) + QStringLiteral(".svg"));
  if (!file.open(QIODevice::ReadOnly)) return nullptr;
  return std::shared_ptr<SymbolImage>(new SymbolImage(file.readAll(), accessibilityDescription));
}

void SymbolImage::setTemplate(bool isTemplate) {
  if (std::exchange(isTemplate_, isTemplate) != isTemplate && listener_) listener_();
}

QIcon SymbolImage::icon(const QColor& ink) const {
  const QColor color = isTemplate_ ? ink : QColor(Qt::black);
  QSvgRenderer drawing(drawingIn(color));
  QSvgRenderer edge(drawingIn(color.lightnessF() < 0.5 ? Qt::white : Qt::black));
  QIcon icon;
  for (const int size : {16, 22, 24, 32, 48, 64}) {
    QPixmap pixmap = transparent(size);
    QPainter painter(&pixmap);
    if (isTemplate_) {
      painter.setOpacity(edgeOpacity);
      painter.drawPixmap(0, 0, widened(edge, size));
      painter.setOpacity(1);
    }
    drawing.render(&painter);
    painter.end();
    icon.addPixmap(pixmap);
  }
  return icon;
}

QByteArray SymbolImage::drawingIn(const QColor& color) const {
  QByteArray drawing = drawing_;
  return drawing.replace("currentColor", color.name(QColor::HexRgb).toUtf8());
}

}  // namespace platform::linux::tray
