#include "Platform/Linux/Desktop/SymbolImage.h"

#include <QFile>
#include <QPainter>
#include <QPixmap>
#include <QSvgRenderer>
#include <utility>

namespace platform::x11 {

namespace {

// Enough to be seen where the ink is not, and little beside the ink where it is.
constexpr double edgeOpacity = 0.7;

QPixmap transparent(int size) {
  QPixmap pixmap(size, size);
  pixmap.fill(Qt::transparent);
  return pixmap;
}

// By the width of an edge on every side.
QPixmap widened(const QPixmap& drawing) {
  const double width = drawing.width() / 16.0;
  QPixmap result = transparent(drawing.width());
  QPainter painter(&result);
  painter.setRenderHint(QPainter::SmoothPixmapTransform);
  for (const double x : {-width, 0.0, width})
    for (const double y : {-width, 0.0, width}) painter.drawPixmap(QPointF(x, y), drawing);
  return result;
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
  QIcon icon;
  for (const int size : {16, 22, 24, 32, 48, 64}) {
    QPixmap pixmap = transparent(size);
    QPainter painter(&pixmap);
    if (isTemplate_) {
      painter.setOpacity(edgeOpacity);
      painter.drawPixmap(0, 0, widened(drawn(color.lightnessF() < 0.5 ? Qt::white : Qt::black, size)));
      painter.setOpacity(1);
    }
    painter.drawPixmap(0, 0, drawn(color, size));
    painter.end();
    icon.addPixmap(pixmap);
  }
  return icon;
}

QPixmap SymbolImage::drawn(const QColor& color, int size) const {
  QByteArray drawing = drawing_;
  QSvgRenderer renderer(drawing.replace("currentColor", color.name(QColor::HexRgb).toUtf8()));
  QPixmap pixmap = transparent(size);
  QPainter painter(&pixmap);
  renderer.render(&painter);
  return pixmap;
}

}  // namespace platform::x11
