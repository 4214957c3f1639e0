#include "Platform/Linux/Desktop/SymbolImage.h"

#include <QFile>
#include <QPainter>
#include <QPixmap>
#include <QSvgRenderer>
#include <utility>

namespace platform::x11 {

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
  QByteArray drawing = drawing_;
  QSvgRenderer renderer(drawing.replace("currentColor", color.name(QColor::HexRgb).toUtf8()));
  QIcon icon;
  for (const int size : {16, 22, 24, 32, 48, 64}) {
    QPixmap pixmap(size, size);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    renderer.render(&painter);
    icon.addPixmap(pixmap);
  }
  return icon;
}

}  // namespace platform::x11
