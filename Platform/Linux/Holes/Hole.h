// What is done to one window: some areas are taken out of its bounding shape, which is put back later.
//
// The hole is written down on the window itself, so that another process can close it when this one cannot any more.
// Threads: pure functions of plain values.
// Units and axes: device pixels, origin at the window's corner inside its border, y down.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "Platform/Linux/Holes/PixelSet.h"

namespace platform::linux::holes {

// As far as the protocol's rectangles reach.
inline constexpr xcb::PixelRect largestShape{-32768, -32768, 65535, 65535};

// None: the window is simply its rectangle, and stays so when it is resized.
using BoundingShape = std::optional<PixelSet>;

struct Hole {
  BoundingShape own;  // the shape that its owner gave it
  PixelSet areas;     // what is missing
  friend bool operator==(const Hole&, const Hole&) = default;
};

// What the window's shape is with the hole. A window without a shape of its own may grow: it gets all that a shape can
// be but for the hole.
[[nodiscard]] PixelSet pierced(const Hole& hole);
// Whether the window still has the shape that it was given for the hole.
[[nodiscard]] bool stands(const Hole& hole, const BoundingShape& now);
// The owner's shape of a window that has this shape now, and was given a hole before or not: what differs from what it
// was given for the hole, or for the moments without it, is the owner's.
[[nodiscard]] BoundingShape ownShape(const BoundingShape& now, const std::optional<Hole>& before);

// As the value of a property. The token tells by which process the hole was made.
[[nodiscard]] std::vector<std::uint32_t> written(const Hole& hole, std::uint32_t token);
struct WrittenHole {
  Hole hole;
  std::uint32_t token = 0;
};
// Absent when it is none: anybody can write anything there.
[[nodiscard]] std::optional<WrittenHole> readHole(std::span<const std::uint32_t> values);

inline constexpr const char* holeProperty = "_QUILLFADE_HOLE";

}  // namespace platform::linux::holes
