#include "Platform/Linux/Widgets/PainterCanvas.h"

#include <QFontMetricsF>
#include <QPainterPath>
#include <QPen>

#include "Platform/Linux/Toolkit/TextAndColors.h"

namespace platform::linux::widgets {

PainterCanvas::PainterCanvas(QPainter& painter, QPointF bottomLeft) : painter_(painter), bottomLeft_(bottomLeft) {
  painter_.setRenderHint(QPainter::Antialiasing);
}

void PainterCanvas::fillEvenOdd(std::span<const Rect> rects, const Color& color) {
  QPainterPath path;
  path.setFillRule(Qt::OddEvenFill);
  for (const Rect& rect : rects) path.addRect(flipped(rect));
  painter_.fillPath(path, toolkit::toQColor(color));
}

void PainterCanvas::fillRoundedRect(const Rect& rect, double radius, const Color& color) {
  QPainterPath path;
  path.addRoundedRect(flipped(rect), radius, radius);
  painter_.fillPath(path, toolkit::toQColor(color));
}

void PainterCanvas::strokeRect(const Rect& rect, double lineWidth, const Color& color) {
  QPen pen(toolkit::toQColor(color), lineWidth);
  pen.setJoinStyle(Qt::MiterJoin);
  painter_.setPen(pen);
  painter_.setBrush(Qt::NoBrush);
  painter_.drawRect(flipped(rect));
}

Size PainterCanvas::measureText(const std::string& text, const TextStyle& style) {
  const QFontMetricsF metrics(toolkit::toQFont(style.font), painter_.device());
  return {metrics.horizontalAdvance(QString::fromStdString(text)), metrics.height()};
}

void PainterCanvas::drawText(const std::string& text, Point origin, const TextStyle& style) {
  const QFont font = toolkit::toQFont(style.font);
  const QFontMetricsF metrics(font, painter_.device());
  painter_.setFont(font);
  painter_.setPen(toolkit::toQColor(style.color));
  const QPointF baseline(bottomLeft_.x() + origin.x, bottomLeft_.y() - origin.y - metrics.descent());
  painter_.drawText(baseline, QString::fromStdString(text));
}

QRectF PainterCanvas::flipped(const Rect& rect) const {
  return {bottomLeft_.x() + rect.minX(), bottomLeft_.y() - rect.maxY(), rect.width(), rect.height()};
}

}  // namespace platform::linux::widgets
