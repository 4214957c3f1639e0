// The covered area as the settings keep it.
#pragma once

#include <optional>

#include "Platform/Geometry.h"
#include "Platform/Settings.h"

namespace quillfade {

inline constexpr const char* regionKey = "region";

// Absent unless the value is the text of a rectangle of at least 24 by 24 points. It is not checked against any screen.
[[nodiscard]] std::optional<platform::Rect> storedRegion(const std::optional<platform::SettingValue>& value);

}  // namespace quillfade
