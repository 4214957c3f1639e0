// A canvas on a Qt painter.
//
// Threads: main thread only, within one paint event.
#pragma once

#include <QPainter>
#include <QPointF>

#include "Platform/Canvas.h"

namespace platform::linux::widgets {

class PainterCanvas : public Canvas {
 public:
  // `bottomLeft`: the view's origin in the painter's coordinates, which have y down.
  PainterCanvas(QPainter& painter, QPointF bottomLeft);

  void fillEvenOdd(std::span<const Rect> rects, const Color& color) override;
  void fillRoundedRect(const Rect& rect, double radius, const Color& color) override;
  void strokeRect(const Rect& rect, double lineWidth, const Color& color) override;
  [[nodiscard]] Size measureText(const std::string& text, const TextStyle& style) override;
  void drawText(const std::string& text, Point origin, const TextStyle& style) override;

 private:
  [[nodiscard]] QRectF flipped(const Rect& rect) const;

  QPainter& painter_;
  QPointF bottomLeft_;
};

}  // namespace platform::linux::widgets
