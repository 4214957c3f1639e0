// What the application says about its state.
#pragma once

#include <string>

#include "Quillfade/Cover/OverlayController.h"

namespace quillfade {

// In lines, for a person.
[[nodiscard]] std::string statusText(const OverlayController& overlay);
// One JSON object on one line: "enabled", "style", "outline" and "region" (null until one is chosen), and "note" where
// ink may still be seen.
[[nodiscard]] std::string statusJson(const OverlayController& overlay);

}  // namespace quillfade
