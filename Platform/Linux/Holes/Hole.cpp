#include "Platform/Linux/Holes/Hole.h"

#include <cstddef>

namespace platform::linux::holes {

namespace {

constexpr std::uint32_t version = 1;
constexpr std::uint32_t noShape = 0xFFFFFFFF;
constexpr std::size_t headerSize = 4;

std::uint32_t packed(std::int32_t high, std::int32_t low) {
  return (static_cast<std::uint32_t>(high) & 0xFFFFU) << 16U | (static_cast<std::uint32_t>(low) & 0xFFFFU);
}

void append(std::vector<std::uint32_t>& values, std::span<const xcb::PixelRect> set) {
  for (const xcb::PixelRect& rect : set) {
    values.push_back(packed(rect.x, rect.y));
    values.push_back(packed(rect.width, rect.height));
  }
}

PixelSet unpacked(std::span<const std::uint32_t> values) {
  PixelSet set;
  for (std::size_t i = 0; i + 1 < values.size(); i += 2) {
    set.push_back({static_cast<std::int16_t>(values[i] >> 16U), static_cast<std::int16_t>(values[i] & 0xFFFFU),
                   static_cast<std::int32_t>(values[i + 1] >> 16U),
                   static_cast<std::int32_t>(values[i + 1] & 0xFFFFU)});
  }
  return set;
}

}  // namespace

PixelSet pierced(const Hole& hole) { return without(hole.own ? *hole.own : PixelSet{largestShape}, hole.areas); }

bool stands(const Hole& hole, const BoundingShape& now) { return now && holdSame(*now, pierced(hole)); }

BoundingShape ownShape(const BoundingShape& now, const std::optional<Hole>& before) {
  if (!before) return now;
  const Hole closed{.own = before->own, .areas = {}};
  return stands(*before, now) || stands(closed, now) ? before->own : now;
}

std::vector<std::uint32_t> written(const Hole& hole, std::uint32_t token) {
  const std::uint32_t ownCount = hole.own ? static_cast<std::uint32_t>(hole.own->size()) : noShape;
  std::vector<std::uint32_t> values{version, token, ownCount, static_cast<std::uint32_t>(hole.areas.size())};
  if (hole.own) append(values, *hole.own);
  append(values, hole.areas);
  return values;
}

std::optional<WrittenHole> readHole(std::span<const std::uint32_t> values) {
  if (values.size() < headerSize || values[0] != version) return std::nullopt;
  const bool isShaped = values[2] != noShape;
  const std::size_t own = isShaped ? values[2] : 0;
  const std::size_t areas = values[3];
  const auto rectangles = values.subspan(headerSize);
  if (rectangles.size() != 2 * (own + areas)) return std::nullopt;
  WrittenHole result{.hole = {.own = std::nullopt, .areas = unpacked(rectangles.subspan(2 * own))}, .token = values[1]};
  if (isShaped) result.hole.own = unpacked(rectangles.first(2 * own));
  return result;
}

}  // namespace platform::linux::holes
