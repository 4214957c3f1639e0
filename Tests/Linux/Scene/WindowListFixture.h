// A window list of a private screen.
#pragma once

#include "Platform/Linux/Scene/WindowList.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <fstream>
#include <memory>
#include <optional>
#include <random>
#include <ranges>
#include <string>

#include "Platform/Linux/Scene/Identity.h"
#include "Platform/Linux/Scene/ProductMark.h"
#include "Tests/Linux/EngineSupport.h"
#include "Tests/Support/Desktop.h"
#include "Tests/Support/GromitMpx.h"
#include "Tests/Support/Wait.h"
#include "Tests/Support/XClient.h"
#include "Tests/Support/XServer.h"

namespace platform::linux::scene {

using support::WindowOptions;

constexpr xcb::PixelRect wholeScreen{0, 0, 1280, 800};

class WindowListOnX : public testing::Test {
 protected:
  ~WindowListOnX() override { pump(); }

  void observe() {
    connection_ = connectTo(server_.display());
    scene_ = std::make_unique<Scene>(*connection_);
    list_ = std::make_unique<WindowList>(*connection_, *scene_, std::vector{connection_->resourceBase()});
    scene_->addListener(*list_);
    list_->setScreens({{.pixels = wholeScreen, .scale = 1, .points = {{0, 0}, {1280, 800}}}});
  }

  void pump() {
    if (!connection_) return;
    connection_->flush();
    while (const xcb::Event event = connection_->nextEvent()) {
      scene_->handle(*event);
      list_->handle(*event);
    }
    scene_->collectReplies();
  }

  std::vector<CaptureWindow> windows(const ShareableContentOptions& options = {}) {
    pump();
    return list_->windows(options);
  }

  std::optional<CaptureWindow> entry(xcb_window_t topLevel) {
    const auto all = windows();
    const auto found = std::ranges::find(all, topLevel, &CaptureWindow::windowID);
    return found == all.end() ? std::nullopt : std::optional(*found);
  }

  // The top-level window that holds the window of this class.
  std::optional<CaptureWindow> entryOf(const std::string& owner) {
    const auto all = windows();
    const auto found = std::ranges::find_if(all, [&](const CaptureWindow& window) {
      return window.isOnScreen && window.owningApplication && window.owningApplication->bundleIdentifier == owner;
    });
    return found == all.end() ? std::nullopt : std::optional(*found);
  }

  // Waits until it is on the screen with this layer.
  testing::AssertionResult reachesLayer(const std::string& owner, std::int64_t layer) {
    std::optional<CaptureWindow> last;
    const bool reached = support::waitUntil([&] {
      last = entryOf(owner);
      return last && last->windowLayer == layer;
    });
    if (reached) return testing::AssertionSuccess();
    if (!last) return testing::AssertionFailure() << owner << " is not on the screen";
    return testing::AssertionFailure() << owner << " is on layer " << last->windowLayer;
  }

  xcb_window_t createManaged(const std::string& className, const xcb::PixelRect& frame, int depth = 0) {
    const xcb_window_t window =
        client_.createWindow({.frame = frame, .depth = depth, .overrideRedirect = false, .mapped = false});
    client_.setClass(window, className, className);
    return window;
  }

  // A window manager that has just started may miss the first request.
  void show(xcb_window_t window) {
    EXPECT_TRUE(support::waitUntil([&] {
      client_.map(window);
      return client_.isViewable(window);
    }));
  }

  void removeDecorations(xcb_window_t window) {
    client_.setNumbers(window, "_MOTIF_WM_HINTS", "_MOTIF_WM_HINTS", {2, 0, 0, 0, 0});
  }

  support::XServer server_;
  support::XClient client_{server_.display()};
  std::unique_ptr<xcb::Connection> connection_;
  std::unique_ptr<Scene> scene_;
  std::unique_ptr<WindowList> list_;
};

inline std::string ownerOf(const std::optional<CaptureWindow>& window) {
  return window && window->owningApplication ? window->owningApplication->bundleIdentifier : "(none)";
}

}  // namespace platform::linux::scene
