// A picture read from the X server, as plain values.
//
// Units and axes: device pixels, origin at the top-left corner, y down; each pixel 0x00RRGGBB.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <vector>

#include "Platform/Linux/Xcb/Coordinates.h"

namespace support {

using platform::linux::xcb::PixelRect;

class Picture {
 public:
  Picture(int width, int height, std::vector<std::uint32_t> pixels);
  Picture(int width, int height, std::uint32_t color);

  [[nodiscard]] int width() const { return width_; }
  [[nodiscard]] int height() const { return height_; }
  [[nodiscard]] PixelRect bounds() const { return {0, 0, width_, height_}; }
  [[nodiscard]] std::uint32_t at(int x, int y) const;

  // The part of the picture inside the rectangle, which may reach beyond the picture.
  [[nodiscard]] Picture cropped(const PixelRect& part) const;

  [[nodiscard]] std::size_t count(std::uint32_t color) const { return count(color, bounds()); }
  // `tolerance`: how far red, green and blue may each be off.
  [[nodiscard]] std::size_t count(std::uint32_t color, const PixelRect& part, int tolerance = 0) const;
  // How many pixels differ; all of them if the sizes differ.
  [[nodiscard]] std::size_t differences(const Picture& other) const { return differences(other, bounds()); }
  [[nodiscard]] std::size_t differences(const Picture& other, const PixelRect& part) const;

  friend bool operator==(const Picture&, const Picture&) = default;

 private:
  int width_;
  int height_;
  std::vector<std::uint32_t> pixels_;
};

// Throws when the file cannot be written.
void writePng(const Picture& picture, const std::filesystem::path& path);

}  // namespace support
