#include "Tests/Support/Picture.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <stdexcept>
#include <utility>

namespace support {

namespace {

PixelRect common(const PixelRect& a, const PixelRect& b) {
  const int left = std::max(a.x, b.x);
  const int top = std::max(a.y, b.y);
  return {left, top, std::max(0, std::min(a.right(), b.right()) - left),
          std::max(0, std::min(a.bottom(), b.bottom()) - top)};
}

std::size_t area(const PixelRect& rect) {
  return static_cast<std::size_t>(rect.width) * static_cast<std::size_t>(rect.height);
}

bool isNear(std::uint32_t a, std::uint32_t b, int tolerance) {
  return std::ranges::all_of(std::array{16U, 8U, 0U}, [&](unsigned shift) {
    const auto channel = [&](std::uint32_t color) { return static_cast<int>(color >> shift & 0xffU); };
    return std::abs(channel(a) - channel(b)) <= tolerance;
  });
}

template <typename Predicate>
std::size_t countWhere(const PixelRect& part, Predicate predicate) {
  std::size_t found = 0;
  for (int y = part.y; y < part.bottom(); ++y) {
    for (int x = part.x; x < part.right(); ++x) found += predicate(x, y) ? 1U : 0U;
  }
  return found;
}

}  // namespace

Picture::Picture(int width, int height, std::vector<std::uint32_t> pixels)
    : width_(width), height_(height), pixels_(std::move(pixels)) {
  if (pixels_.size() != area(bounds())) throw std::invalid_argument("A picture needs as many pixels as its size says.");
}

Picture::Picture(int width, int height, std::uint32_t color)
    : Picture(width, height, std::vector<std::uint32_t>(area({0, 0, width, height}), color)) {}

std::uint32_t Picture::at(int x, int y) const {
  if (x < 0 || x >= width_ || y < 0 || y >= height_) throw std::out_of_range("There is no such pixel.");
  return pixels_[static_cast<std::size_t>(y) * static_cast<std::size_t>(width_) + static_cast<std::size_t>(x)];
}

Picture Picture::cropped(const PixelRect& part) const {
  const PixelRect inside = common(part, bounds());
  std::vector<std::uint32_t> result;
  result.reserve(area(inside));
  for (int y = inside.y; y < inside.bottom(); ++y) {
    for (int x = inside.x; x < inside.right(); ++x) result.push_back(at(x, y));
  }
  return {inside.width, inside.height, std::move(result)};
}

std::size_t Picture::count(std::uint32_t color, const PixelRect& part, int tolerance) const {
  return countWhere(common(part, bounds()), [&](int x, int y) { return isNear(at(x, y), color, tolerance); });
}

std::size_t Picture::differences(const Picture& other, const PixelRect& part) const {
  const PixelRect inside = common(part, bounds());
  if (other.bounds() != bounds()) return area(inside);
  return countWhere(inside, [&](int x, int y) { return at(x, y) != other.at(x, y); });
}

}  // namespace support
