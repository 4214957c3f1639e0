#include "Platform/Simulated/Canvas.h"

#include <algorithm>

namespace platform::simulated {

Size textSize(const std::string& text, const Font& font) {
  const auto characters = std::ranges::count_if(text, [](char byte) { return (byte & '\xC0') != '\x80'; });
  return {static_cast<double>(characters) * font.size / 2, font.size * 1.25};
}

void Canvas::fillEvenOdd(std::span<const Rect> rects, const Color& color) {
  steps_.emplace_back(EvenOddFill{{rects.begin(), rects.end()}, color});
}

void Canvas::fillRoundedRect(const Rect& rect, double radius, const Color& color) {
  steps_.emplace_back(RoundedFill{rect, radius, color});
}

void Canvas::strokeRect(const Rect& rect, double lineWidth, const Color& color) {
  steps_.emplace_back(Stroke{rect, lineWidth, color});
}

Size Canvas::measureText(const std::string& text, const TextStyle& style) { return textSize(text, style.font); }

void Canvas::drawText(const std::string& text, Point origin, const TextStyle& style) {
  steps_.emplace_back(DrawnText{text, origin, style});
}

}  // namespace platform::simulated
