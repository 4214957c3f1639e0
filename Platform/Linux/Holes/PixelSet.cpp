#include "Platform/Linux/Holes/PixelSet.h"

#include <utility>

namespace platform::linux::holes {

namespace {

// What is left of it above, below, left and right of the hole.
void addWithout(PixelSet& left, const xcb::PixelRect& rect, const xcb::PixelRect& hole) {
  const xcb::PixelRect common = intersection(rect, hole);
  if (common.isEmpty()) return left.push_back(rect);
  const auto add = [&](const xcb::PixelRect& part) {
    if (!part.isEmpty()) left.push_back(part);
  };
  add({rect.x, rect.y, rect.width, common.y - rect.y});
  add({rect.x, common.bottom(), rect.width, rect.bottom() - common.bottom()});
  add({rect.x, common.y, common.x - rect.x, common.height});
  add({common.right(), common.y, rect.right() - common.right(), common.height});
}

}  // namespace

PixelSet without(PixelSet set, std::span<const xcb::PixelRect> holes) {
  for (const xcb::PixelRect& hole : holes) {
    PixelSet left;
    for (const xcb::PixelRect& rect : set) addWithout(left, rect, hole);
    set = std::move(left);
  }
  return set;
}

PixelSet common(std::span<const xcb::PixelRect> set, const xcb::PixelRect& bounds) {
  PixelSet result;
  for (const xcb::PixelRect& rect : set) {
    const xcb::PixelRect part = intersection(rect, bounds);
    if (!part.isEmpty()) result.push_back(part);
  }
  return result;
}

PixelSet moved(std::span<const xcb::PixelRect> set, std::int32_t x, std::int32_t y) {
  PixelSet result;
  for (const xcb::PixelRect& rect : set) result.push_back({rect.x + x, rect.y + y, rect.width, rect.height});
  return result;
}

bool holdSame(std::span<const xcb::PixelRect> a, std::span<const xcb::PixelRect> b) {
  return without({a.begin(), a.end()}, b).empty() && without({b.begin(), b.end()}, a).empty();
}

std::vector<xcb_rectangle_t> toRectangles(std::span<const xcb::PixelRect> set) {
  std::vector<xcb_rectangle_t> rectangles;
  for (const xcb::PixelRect& rect : set) rectangles.push_back(xcb::toRectangle(rect));
  return rectangles;
}

}  // namespace platform::linux::holes
