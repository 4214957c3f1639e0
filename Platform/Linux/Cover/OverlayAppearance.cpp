#include "Platform/Linux/Cover/OverlayAppearance.h"

#include <algorithm>
#include <cmath>

#include "Platform/Linux/Toolkit/TextAndColors.h"

namespace platform::linux::cover {

namespace {

stream::Argb argbOf(const Color& color) { return toolkit::toQColor(color).rgba(); }

std::int32_t rounded(double value) { return static_cast<std::int32_t>(std::lround(value)); }

// Edges are rounded, not sizes, so that a layer that fills the window in points also fills it in pixels.
xcb::PixelRect pixelsOf(const Rect& rect, std::int32_t windowHeight, double scale) {
  const std::int32_t left = rounded(rect.minX() * scale);
  const std::int32_t right = rounded(rect.maxX() * scale);
  const std::int32_t bottom = windowHeight - rounded(rect.minY() * scale);
  const std::int32_t top = windowHeight - rounded(rect.maxY() * scale);
  return {left, top, right - left, bottom - top};
}

}  // namespace

OverlayAppearance appearanceOf(const views::OverlayContent& content, const Color& windowBackground,
                               std::int32_t windowHeight, double scale) {
  OverlayAppearance appearance;
  appearance.background = argbOf(content.background.alpha > 0 ? content.background : windowBackground);
  if (content.pictureLayer) appearance.picture = pixelsOf(*content.pictureLayer, windowHeight, scale);
  if (content.label) {
    appearance.label = {content.label->text, content.label->style.font, argbOf(content.label->style.color)};
    appearance.label->font.size *= scale;
  }
  if (content.border && content.border->width > 0) {
    appearance.border = {.width = std::max(1, rounded(content.border->width * scale)),
                         .color = argbOf(content.border->color)};
  }
  return appearance;
}

}  // namespace platform::linux::cover
