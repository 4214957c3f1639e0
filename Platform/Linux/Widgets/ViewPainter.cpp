#include "Platform/Linux/Widgets/ViewPainter.h"

#include <array>

#include "Platform/Linux/Widgets/PainterCanvas.h"

namespace platform::linux::widgets {

namespace {

void paintBorder(Canvas& canvas, const Rect& bounds, const views::BorderContent& border) {
  const double inset = border.width / 2;
  const Rect line{{inset, inset}, {bounds.width() - border.width, bounds.height() - border.width}};
  canvas.strokeRect(line, border.width, border.color);
}

Point placeInParent(const views::ViewNode& node, Canvas& canvas, const Rect& parent) {
  if (!node.isCentered()) return {node.frame().minX(), node.frame().minY()};
  const Size size = node.label() ? canvas.measureText(node.label()->text, node.label()->style) : node.bounds().size;
  return {parent.midX() - size.width / 2, parent.midY() - size.height / 2};
}

}  // namespace

void paintViews(const views::ViewNode& root, QPainter& painter, QPointF bottomLeft) {
  if (root.isHidden()) return;
  PainterCanvas canvas(painter, bottomLeft);
  const Rect bounds = root.bounds();
  if (root.background()) canvas.fillEvenOdd(std::array{bounds}, *root.background());
  if (const auto responder = root.responder(); responder && responder->draws()) responder->draw(canvas);
  if (const auto& label = root.label()) canvas.drawText(label->text, {0, 0}, label->style);
  if (root.border()) paintBorder(canvas, bounds, *root.border());
  for (const auto& subview : root.subviews()) {
    const Point place = placeInParent(*subview, canvas, bounds);
    paintViews(*subview, painter, {bottomLeft.x() + place.x, bottomLeft.y() - place.y});
  }
}

}  // namespace platform::linux::widgets
