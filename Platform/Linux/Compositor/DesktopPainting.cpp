#include "Platform/Linux/Compositor/DesktopPainting.h"

#include <charconv>
#include <optional>

namespace platform::linux::compositor {

namespace {

// The 12 of "v12.5"; none for a version without numbers.
std::optional<int> majorOf(std::string_view version) {
  if (version.starts_with('v')) version.remove_prefix(1);
  int number = 0;
  const auto read = std::from_chars(version.data(), version.data() + version.size(), number);
  if (read.ec != std::errc{}) return std::nullopt;
  return number;
}

}  // namespace

// What an option of picom changes is not visible here: its legacy backends still paint grey in later versions.
DesktopPainting desktopPainting(std::string_view name, std::string_view version) {
  constexpr DesktopPainting ofOld{.grey = 0x8080};
  if (name == "xcompmgr") return ofOld;
  const auto picom = majorOf(version);
  if (!picom) return {};
  if (*picom < 10) return ofOld;
  if (*picom < 12) return {};
  return {.beyondEdges = *picom == 12 ? XCB_RENDER_REPEAT_PAD : XCB_RENDER_REPEAT_NONE};
}

}  // namespace platform::linux::compositor
