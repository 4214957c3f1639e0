// The picture that programs behind a lens read in the screen's place, in the X server.
//
// It is black while the server itself hides the screen: by its screen saver, or, where no compositing manager uses it,
// by the overlay window, which lockers take because no window can come above it.
//
// Threads: one at a time.
// Units and axes: the picture is as large as the root window.
// Lifetime: windows that were redirected stay so as long as this object lives: those that were read, or, where the rule
// concerns others than our own, all of them from the beginning.
// Failure: `open` says in a sentence why it cannot be had; later ones leave the picture as it was.
#pragma once

#include <xcb/render.h>

#include <expected>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "Platform/Lens.h"
#include "Platform/Linux/Lens/ScreenNames.h"
#include "Platform/Linux/X11/Compositor.h"
#include "Platform/Linux/X11/Connection.h"
#include "Platform/Linux/X11/Scene.h"
#include "Platform/Linux/X11/ServerScreenSaver.h"
#include "Platform/Linux/X11/WindowList.h"

namespace platform::x11::lens {

class SharedScreen {
 public:
  static std::expected<std::unique_ptr<SharedScreen>, Error> open(const std::string& display, LensRule rule);
  SharedScreen(const SharedScreen&) = delete;
  SharedScreen& operator=(const SharedScreen&) = delete;
  ~SharedScreen();

  [[nodiscard]] const ScreenNames& names() const { return names_; }
  [[nodiscard]] int fileDescriptor() const { return connection_->fileDescriptor(); }
  [[nodiscard]] bool isLost() const { return connection_->isBroken(); }

  // Takes in what has happened, without painting anything. Never waits.
  void takeIn();
  // Brings the picture up to date with everything that any client has made the server do before. When this returns,
  // whoever reads the pixmap finds it so. One that was handed out before stays valid until the next but one.
  [[nodiscard]] xcb_pixmap_t update();

 private:
  struct Target {
    xcb_pixmap_t pixmap = 0;
    xcb_render_picture_t picture = 0;
    PixelRect source;
  };

  SharedScreen(std::unique_ptr<Connection> connection, LensRule rule);
  void makeRootPictures();
  void catchUp();
  void handle(const xcb_generic_event_t& event);
  void noteServerWindow(const xcb_generic_event_t& event);
  [[nodiscard]] bool isHidden() const;
  void blacken();
  void readScreens();
  void makeTarget();
  void release(Target& target);
  void leaveOut(std::vector<xcb_window_t> windows);
  [[nodiscard]] std::vector<xcb_window_t> windowsToLeaveOut();

  std::unique_ptr<Connection> connection_;
  LensRule rule_;
  ScreenNames names_;
  Scene scene_;
  WindowList windowList_;
  ServerScreenSaver screenSaver_;
  // The server's own that were mapped since this began: they are in no list of windows.
  std::set<xcb_window_t> serverWindows_;
  Target target_;
  Target formerTarget_;
  std::vector<xcb_window_t> leftOut_;
  std::optional<Compositor> compositor_;
  Region painted_;
  std::vector<Screen> screens_;
  bool isScreenStale_ = true;
};

}  // namespace platform::x11::lens
