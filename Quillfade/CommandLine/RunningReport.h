// What the running application tells a doctor of itself, as text.
//
// Pure.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "Quillfade/Keys/HotKeyReport.h"

namespace quillfade {

struct RunningReport {
  std::vector<HotKeyState> hotKeys;
  bool mayCapture = false;  // whether it has the permission to capture the screen
  friend bool operator==(const RunningReport&, const RunningReport&) = default;
};

[[nodiscard]] std::string runningReportText(const RunningReport& report);
// The way back.
[[nodiscard]] RunningReport parseRunningReport(std::string_view text);

}  // namespace quillfade
