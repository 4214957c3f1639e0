// Draws into the view that AppKit has focused.
//
// Threads: main thread only.
// Units and axes: AppKit's own, which the port shares.
#pragma once

#include "Platform/Canvas.h"

namespace platform::mac::views {

class Canvas final : public platform::Canvas {
 public:
  void fillEvenOdd(std::span<const Rect> rects, const Color& color) override;
  void fillRoundedRect(const Rect& rect, double radius, const Color& color) override;
  void strokeRect(const Rect& rect, double lineWidth, const Color& color) override;
  [[nodiscard]] Size measureText(const std::string& text, const TextStyle& style) override;
  void drawText(const std::string& text, Point origin, const TextStyle& style) override;
};

}  // namespace platform::mac::views
