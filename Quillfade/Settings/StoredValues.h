// How stored values of one type read as another, as number bridging has it: a Bool reads as the integer 0 or 1, the
// integers 0 and 1 read as a Bool, nothing else converts: no fraction, and no text. It is different where a setting is
// read plainly as a Bool (`readBool`).
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "Platform/Settings.h"

namespace quillfade {

[[nodiscard]] std::optional<std::int64_t> asInteger(const std::optional<platform::SettingValue>& value);
[[nodiscard]] std::optional<bool> asBool(const std::optional<platform::SettingValue>& value);
[[nodiscard]] std::optional<std::string> asString(const std::optional<platform::SettingValue>& value);

// True for true, for every number but 0 (1.5 and 0.5, too) and for text that starts like an affirmation (Y, T or a
// number that is not 0); false for everything else and for nothing.
[[nodiscard]] bool readBool(const std::optional<platform::SettingValue>& value);

}  // namespace quillfade
