// What the application tells of its state.
#pragma once

#include <string>

#include "Quillfade/Cover/OverlayController.h"

namespace quillfade {

// Lines for a person.
[[nodiscard]] std::string statusText(const OverlayController& overlay);
// One JSON object on one line: "enabled", "style", "outline" and "region" (null while none was chosen).
[[nodiscard]] std::string statusJson(const OverlayController& overlay);

}  // namespace quillfade
