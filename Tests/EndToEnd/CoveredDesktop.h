// What the end-to-end tests share: a private X server, a board of checks on it, and the real program over part of it.
//
// Units and axes: device pixels, y down, on a screen of 1280 x 800.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "Tests/EndToEnd/Screenshots.h"
#include "Tests/Support/GromitMpx.h"
#include "Tests/Support/QuillfadeProgram.h"
#include "Tests/Support/XServer.h"

namespace endtoend {

using support::PixelRect;

// 520 x 340 points at (240, 240) from the bottom-left corner.
inline constexpr PixelRect area{240, 220, 520, 340};
// The cover without its outline.
inline constexpr PixelRect inside{241, 221, 518, 338};
inline constexpr PixelRect wholeScreen{0, 0, 1280, 800};
inline constexpr int inkTolerance = 80;

inline const std::string firstFrame = "first live frame received";
inline const std::string overlaysChanged = "overlay set changed, restarting capture";

[[nodiscard]] std::size_t ink(const Picture& picture, const PixelRect& part);
// `part` of the screen, which the program calls a region, as stored in its settings.
[[nodiscard]] std::string regionText(const PixelRect& part);
[[nodiscard]] std::string settingsWithRegion(const PixelRect& part, bool outline = false);

class CoveredDesktop : public testing::Test {
 protected:
  CoveredDesktop();

  // Starts the program and waits until its live cover shows the first frame.
  support::QuillfadeProgram& cover(const support::QuillfadeOptions& options = {});
  [[nodiscard]] support::QuillfadeProgram& quillfade() { return *quillfade_; }

  // Makes the monitors L and R, each 640 pixels wide; L is the primary one.
  void splitIntoTwoScreens();

  // Lines that cross the edges of the area.
  static std::vector<support::Stroke> crossingStrokes();
  // Starts gromit-mpx and draws the crossing strokes; waits until they show below the area.
  void drawInk();

  [[nodiscard]] bool shows(const std::function<bool(const Picture&)>& condition,
                           std::chrono::milliseconds deadline = support::defaultDeadline);
  [[nodiscard]] bool showsNoInk(const PixelRect& part, std::chrono::milliseconds deadline = support::defaultDeadline);

  support::XServer server_;
  support::XClient client_{server_.display()};
  // A desktop's background, beneath everything else, with or without a window manager.
  xcb_window_t board_;
  std::optional<support::GromitMpx> gromit_;

 private:
  std::optional<support::QuillfadeProgram> quillfade_;
};

}  // namespace endtoend
