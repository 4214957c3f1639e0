// How stored values of one type read as another, as in number bridging: a Bool reads as the integer 0 or 1, the
// integers 0 and 1 read as a Bool, and nothing else converts: no fraction, no text. Settings read plainly as a Bool
// (`readBool`) are more lenient.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "Platform/Settings.h"

namespace quillfade {

[[nodiscard]] std::optional<std::int64_t> asInteger(const std::optional<platform::SettingValue>& value);
[[nodiscard]] std::optional<bool> asBool(const std::optional<platform::SettingValue>& value);
[[nodiscard]] std::optional<std::string> asString(const std::optional<platform::SettingValue>& value);

// True for true, for every number except 0 (1.5 and 0.5, too), and for text that starts like a yes (Y, T or a number
// that is not 0); false for everything else and for nothing.
[[nodiscard]] bool readBool(const std::optional<platform::SettingValue>& value);

}  // namespace quillfade
