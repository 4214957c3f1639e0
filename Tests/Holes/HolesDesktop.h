// A desktop on which ink is taken away by holes in its windows, as in a Wayland session, with nothing but an X server:
// what decides is what the session says of itself.
//
// Units and axes: device pixels, y down.
#pragma once

#include <optional>
#include <vector>

#include "Tests/EndToEnd/CoveredDesktop.h"
#include "Tests/Holes/HolesSupport.h"
#include "Tests/Linux/Shortcuts/ShortcutServices.h"

namespace endtoend {

class HolesDesktop : public CoveredDesktop {
 protected:
  using Shape = std::optional<std::vector<PixelRect>>;

  [[nodiscard]] support::QuillfadeOptions inWaylandSession(const PixelRect& part = area, bool outline = false) const {
    return {.demonstration = false,
            .settings = settingsWithRegion(part, outline),
            .environment = {{"XDG_SESSION_TYPE", "wayland"}, {"DBUS_SESSION_BUS_ADDRESS", bus_.address()}}};
  }

  Shape shape(xcb_window_t window) { return platform::linux::holes::shapeOf(client_.connection(), window); }
  // Whether the window has its own shape again, and nothing is left of the hole.
  [[nodiscard]] bool isGivenBack(xcb_window_t window, const Shape& own = std::nullopt,
                                 std::chrono::milliseconds deadline = support::defaultDeadline) {
    return support::waitUntil(
        [&] { return shape(window) == own && client_.numbers(window, "_QUILLFADE_HOLE").empty(); }, deadline);
  }

  // A pane over the whole screen that lets clicks through, as ink is drawn on.
  xcb_window_t makePane(std::uint32_t color = 0xffff00ff, const PixelRect& frame = wholeScreen) {
    const auto pane = client_.createWindow({.frame = frame, .color = color, .depth = 32, .mapped = false});
    client_.setInputShape(pane, {});
    client_.map(pane);
    client_.sync();
    return pane;
  }
  // Whether ink is seen all over that part of the screen.
  [[nodiscard]] static bool isFull(const Picture& screen, const PixelRect& part) {
    return screen.count(0xff00ff, part) == platform::linux::holes::sizeOf(part);
  }

  // With --debug, as it runs here, gromit-mpx 1.7 fills its whole window under a compositing manager: nothing that it
  // draws or wipes shows.
  [[nodiscard]] bool areStrokesLostInInk() { return isFull(client_.screenshot(), {0, 0, wholeScreen.width, 20}); }

  // Once the program has asked for its keys, which it does at each of its starts.
  void press(const std::string& key, std::size_t starts = 1) {
    constexpr std::size_t requests = 8;  // two for each key
    ASSERT_TRUE(support::waitUntil([&] { return keys_.requests("setShortcutKeys").size() >= requests * starts; }));
    keys_.press(key);
  }
  void pressToggle() { press("toggle"); }

  support::Input input_{server_.display()};
  support::SessionBus bus_;
  qt::KWinKeys keys_{bus_.address()};
};

}  // namespace endtoend
