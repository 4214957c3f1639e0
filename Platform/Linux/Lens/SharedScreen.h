// The picture in the X server that programs behind a lens read instead of the screen.
//
// It is black while the server itself hides the screen: by its screen saver or, where no compositing manager uses it,
// by the overlay window, which lockers take because no window can be above it.
//
// Changes of the picture are reported on the damage boards.
//
// Threads: one at a time. Units and axes: the picture is as large as the root window.
// Lifetime: windows redirected by this object stay redirected as long as it lives. These are the windows that were read
// or, where the rule concerns windows other than our own, all windows from the beginning.
// Failure: `open` says in a sentence why there can be no picture; later failures leave the picture as it was.
#pragma once

#include <xcb/render.h>

#include <chrono>
#include <expected>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "Platform/Lens.h"
#include "Platform/Linux/Compositor/Compositor.h"
#include "Platform/Linux/Protocol/ScreenNames.h"
#include "Platform/Linux/Scene/Scene.h"
#include "Platform/Linux/Scene/WindowList.h"
#include "Platform/Linux/Xcb/Connection.h"
#include "Platform/Linux/Xcb/ServerScreenSaver.h"

namespace platform::linux::lens {

class SharedScreen {
 public:
  using Clock = std::chrono::steady_clock;

  static std::expected<std::unique_ptr<SharedScreen>, Error> open(const std::string& display, LensRule rule);
  SharedScreen(const SharedScreen&) = delete;
  SharedScreen& operator=(const SharedScreen&) = delete;
  ~SharedScreen();

  [[nodiscard]] protocol::ScreenNames& names() { return names_; }
  [[nodiscard]] int fileDescriptor() const { return connection_->fileDescriptor(); }
  [[nodiscard]] bool isLost() const { return connection_->isBroken(); }

  // Handles what has happened, without painting anything. Never waits.
  void takeIn();
  // Begins to bring the picture up to date with everything that any client has had the server do before.
  void beginUpdate();
  // Continues the update. Call it again when the descriptor is readable or the deadline has passed. Once it returns
  // true, whoever reads the pixmap finds the picture up to date. A pixmap handed out before stays valid until the next
  // but one.
  [[nodiscard]] bool isUpToDate();
  [[nodiscard]] Clock::time_point deadline() const { return deadline_; }
  // Whether an update would change the picture, as far as known.
  [[nodiscard]] bool hasChanged() const;
  [[nodiscard]] xcb_pixmap_t pixmap() const { return target_.pixmap; }

 private:
  struct Target {
    xcb_pixmap_t pixmap = 0;
    xcb_render_picture_t picture = 0;
    xcb::PixelRect source;
  };

  SharedScreen(std::unique_ptr<xcb::Connection> connection, LensRule rule);
  void makeRootPictures();
  void ask();
  [[nodiscard]] bool isAnswered();
  [[nodiscard]] bool isTooLate();
  [[nodiscard]] bool isDescribed() const;
  void handle(const xcb_generic_event_t& event);
  void findServerWindow();
  void noteServerWindow(const xcb_generic_event_t& event);
  [[nodiscard]] bool isHidden() const;
  void blacken();
  void makeBoard();
  void report(const xcb::Region& changed);
  void readScreens();
  void makeTarget();
  void release(Target& target);
  // Whether there was anything to do.
  bool paint();
  void leaveOut(std::vector<xcb_window_t> windows);
  [[nodiscard]] std::vector<xcb_window_t> windowsToLeaveOut();

  std::unique_ptr<xcb::Connection> connection_;
  LensRule rule_;
  protocol::ScreenNames names_;
  scene::Scene scene_;
  scene::WindowList windowList_;
  xcb::ServerScreenSaver screenSaver_;
  // The server's own windows on the screen, which are in no list of windows.
  std::set<xcb_window_t> serverWindows_;
  Target target_;
  Target formerTarget_;
  std::vector<xcb_window_t> leftOut_;
  std::optional<compositor::Compositor> compositor_;
  xcb::Region painted_;
  xcb::Region whole_;
  xcb::PixelRect board_;  // as large as the last one
  bool isBlack_ = false;
  bool isListStale_ = false;
  std::vector<Screen> screens_;
  bool isScreenStale_ = true;
  // Asked during an update to learn that the server is past everything that came before.
  std::uint32_t question_ = 0;
  int questions_ = 0;
  Clock::time_point deadline_;
  bool isPainted_ = false;  // but perhaps not carried out yet
};

}  // namespace platform::linux::lens
