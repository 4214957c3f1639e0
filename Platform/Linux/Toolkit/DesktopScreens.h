// The screens as Qt knows them, with their exact sizes in pixels from the X server.
//
// The order is Qt's, with the primary screen first. X11 knows no screen with the keyboard focus, so the primary screen
// counts as the main one.
// Threads: main thread only; observers are called there, from the event loop.
#pragma once

#include <QObject>
#include <QScreen>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "Platform/Linux/Xcb/Coordinates.h"
#include "Platform/Screens.h"

namespace platform::linux::toolkit {

class DesktopScreens : public Screens {
 public:
  DesktopScreens();

  [[nodiscard]] std::vector<Screen> all() const override;
  [[nodiscard]] std::optional<Screen> main() const override;
  // The middle of its pixel, so that it lies on the screen that shows it.
  [[nodiscard]] Point mouseLocation() const override;
  // Calls the observers once when the list of screens differs from what they last saw, however many signals the change
  // takes.
  void observeChanges(std::function<void()> observer) override;

  // In the order of `all`, for callers that work in pixels.
  [[nodiscard]] std::vector<xcb::ScreenGeometry> geometries() const;

  // Call it when the server announces a change. Qt passes on most of them, but not that the last screen goes or comes
  // back.
  void serverChanged() { scheduleCheck(); }

 private:
  struct Layout {
    std::vector<Screen> screens;
    std::vector<xcb::ScreenGeometry> geometries;
  };

  [[nodiscard]] const Layout& layout() const;
  void watch(QScreen& screen);
  void scheduleCheck();
  void check();

  QObject context_;
  std::vector<std::function<void()>> observers_;
  // Asking the server takes round trips, and the reply holds until Qt signals a change.
  mutable std::optional<Layout> layout_;
  std::vector<Screen> lastSeen_;
  bool checkIsScheduled_ = false;
};

// A non-zero number for each screen name; the same name gets the same number as long as no two names collide.
[[nodiscard]] std::vector<std::uint32_t> displayIdentifiers(std::span<const std::string> names);

}  // namespace platform::linux::toolkit
