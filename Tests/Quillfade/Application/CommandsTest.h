// A launched application, and short words for its commands.
#pragma once

#include "Tests/Quillfade/Application/DelegateTest.h"
#include "Tests/Quillfade/Selection/Pointer.h"

namespace quillfade {

// The answers to the alert of the permission gate.
inline constexpr int openSettings = 1000;
inline constexpr int useSolidCover = 1001;

class CommandsTest : public DelegateTest {
 protected:
  void twoScreens() { desktop.arrangeScreens({{{{0, 0}, {1440, 900}}, 1, 2}, {{{1440, 0}, {1920, 1080}}, 2, 1}}); }

  // Drags out an area while a selection runs, and lets its result arrive.
  void selectByDragging(platform::Point from, platform::Point to) {
    drag(desktop.windows(), from, to);
    desktop.runLoop().settle();
  }

  void cancelSelection() {
    desktop.windows().pressKey({platform::escapeKeyCode});
    desktop.runLoop().settle();
  }

  void chooseStyle(CoverStyle style) {
    platform::MenuItem item;
    item.tag = rawValue(style);
    delegate->chooseStyle(item);
  }

  [[nodiscard]] bool selecting() const { return !delegate->selector().windows().empty(); }
};

}  // namespace quillfade
