// A region inside the X server: set operations on it cost a few bytes and no reply.
//
// Threads: that of its connection. Ownership: owns the region; the connection must outlive it. Both regions of an
// operation belong to the same connection. Failure: none, since all regions are our own.
#pragma once

#include <xcb/xfixes.h>

#include <algorithm>
#include <cstdint>
#include <span>
#include <utility>

#include "Platform/Linux/Xcb/Connection.h"
#include "Platform/Linux/Xcb/Coordinates.h"

namespace platform::linux::xcb {

[[nodiscard]] inline xcb_rectangle_t toRectangle(const PixelRect& rect) {
  return {static_cast<std::int16_t>(rect.x), static_cast<std::int16_t>(rect.y), static_cast<std::uint16_t>(rect.width),
          static_cast<std::uint16_t>(rect.height)};
}

// The smallest rectangle that holds both.
[[nodiscard]] inline PixelRect united(const PixelRect& a, const PixelRect& b) {
  const std::int32_t x = std::min(a.x, b.x);
  const std::int32_t y = std::min(a.y, b.y);
  return {x, y, std::max(a.right(), b.right()) - x, std::max(a.bottom(), b.bottom()) - y};
}

class Region {
 public:
  explicit Region(Connection& connection) : connection_(connection), id_(connection.newId()) {
    xcb_xfixes_create_region(connection_.get(), id_, 0, nullptr);
  }
  ~Region() { xcb_xfixes_destroy_region(connection_.get(), id_); }
  Region(const Region&) = delete;
  Region& operator=(const Region&) = delete;

  [[nodiscard]] xcb_xfixes_region_t id() const { return id_; }

  void clear() { set(std::span<const xcb_rectangle_t>{}); }
  void set(const PixelRect& rect) {
    const xcb_rectangle_t rectangle = toRectangle(rect);
    set({&rectangle, 1});
  }
  void set(std::span<const xcb_rectangle_t> rects) {
    xcb_xfixes_set_region(connection_.get(), id_, static_cast<std::uint32_t>(rects.size()), rects.data());
  }
  // Both must be of the same connection. Sends nothing.
  void swap(Region& other) noexcept { std::swap(id_, other.id_); }
  void copy(const Region& other) { xcb_xfixes_copy_region(connection_.get(), other.id_, id_); }
  void unite(const Region& other) { xcb_xfixes_union_region(connection_.get(), id_, other.id_, id_); }
  void intersect(const Region& other) { xcb_xfixes_intersect_region(connection_.get(), id_, other.id_, id_); }
  void subtract(const Region& other) { xcb_xfixes_subtract_region(connection_.get(), id_, other.id_, id_); }
  void translate(std::int32_t x, std::int32_t y) {
    xcb_xfixes_translate_region(connection_.get(), id_, static_cast<std::int16_t>(x), static_cast<std::int16_t>(y));
  }

 private:
  Connection& connection_;
  xcb_xfixes_region_t id_;
};

}  // namespace platform::linux::xcb
