#include "Platform/Mac/Views/Canvas.h"

#import <AppKit/AppKit.h>

#include "Platform/Mac/Foundation/Bridge.h"
#include "Platform/Mac/Toolkit/Appearance.h"

namespace platform::mac::views {

void Canvas::fillEvenOdd(std::span<const Rect> rects, const Color& color) {
  if (rects.empty()) return;
  NSBezierPath* path = [NSBezierPath bezierPathWithRect:foundation::nsRect(rects.front())];
  for (const Rect& rect : rects.subspan(1))
    [path appendBezierPath:[NSBezierPath bezierPathWithRect:foundation::nsRect(rect)]];
  path.windingRule = NSWindingRuleEvenOdd;
  [toolkit::nsColor(color) setFill];
  [path fill];
}

void Canvas::fillRoundedRect(const Rect& rect, double radius, const Color& color) {
  [toolkit::nsColor(color) setFill];
  [[NSBezierPath bezierPathWithRoundedRect:foundation::nsRect(rect) xRadius:radius yRadius:radius] fill];
}

void Canvas::strokeRect(const Rect& rect, double lineWidth, const Color& color) {
  NSBezierPath* path = [NSBezierPath bezierPathWithRect:foundation::nsRect(rect)];
  path.lineWidth = lineWidth;
  [toolkit::nsColor(color) setStroke];
  [path stroke];
}

Size Canvas::measureText(const std::string& text, const TextStyle& style) {
  const NSSize size = [foundation::nsString(text) sizeWithAttributes:toolkit::attributes(style)];
  return {size.width, size.height};
}

void Canvas::drawText(const std::string& text, Point origin, const TextStyle& style) {
  [foundation::nsString(text) drawAtPoint:foundation::nsPoint(origin) withAttributes:toolkit::attributes(style)];
}

}  // namespace platform::mac::views
