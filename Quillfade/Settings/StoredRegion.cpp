#include "Quillfade/Settings/StoredRegion.h"

#include "Quillfade/Basics/RectText.h"
#include "Quillfade/Settings/StoredValues.h"

namespace quillfade {
namespace {

constexpr double leastStoredExtent = 24;

}  // namespace

std::optional<platform::Rect> storedRegion(const std::optional<platform::SettingValue>& value) {
  const auto text = asString(value);
  if (!text) return std::nullopt;
  const auto rect = rectFromText(*text);
  if (!(rect.width() >= leastStoredExtent && rect.height() >= leastStoredExtent)) return std::nullopt;
  return rect;
}

}  // namespace quillfade
