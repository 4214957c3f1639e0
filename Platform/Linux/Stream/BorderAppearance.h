// The line around a picture.
//
// Units: device pixels. Threads: plain values.
#pragma once

#include <cstdint>

namespace platform::linux::stream {

// 0xAARRGGBB, not premultiplied.
using Argb = std::uint32_t;

struct BorderAppearance {
  std::int32_t width = 0;
  Argb color = 0;
  friend bool operator==(const BorderAppearance&, const BorderAppearance&) = default;
};

}  // namespace platform::linux::stream
