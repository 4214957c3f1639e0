// The windows of the screen as the capture service lists them: scene, properties and identity in one.
//
// Properties are remembered. An announced change marks a window as stale, and the next call reads all stale windows
// again, together; with nothing stale it sends nothing. The windows of another process of this product count as this
// program's own.
// Threads: that of the connection. Whoever reads the connection passes every event to `handle` after the scene has seen
// it, and adds the list to the scene's listeners.
// Units and axes: frames are points in the global space; the stacking is bottom to top.
// Ownership: keeps references to the connection and the scene, which must outlive it.
// Failure: a window that goes away while it is read, or writes nonsense, is listed with what is known of it.
#pragma once

#include <xcb/xcb.h>

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <span>
#include <utility>
#include <vector>

#include "Platform/Capture.h"
#include "Platform/Linux/Scene/ClientProperties.h"
#include "Platform/Linux/Scene/ProcessNames.h"
#include "Platform/Linux/Scene/Scene.h"
#include "Platform/Linux/Scene/WindowProperties.h"
#include "Platform/Linux/Xcb/Connection.h"
#include "Platform/Linux/Xcb/Coordinates.h"

namespace platform::linux::scene {

class WindowList final : public SceneListener {
 public:
  // `ownClients`: the resource bases of this program's connections.
  WindowList(xcb::Connection& connection, const Scene& scene, std::vector<std::uint32_t> ownClients);
  ~WindowList() override;
  WindowList(const WindowList&) = delete;
  WindowList& operator=(const WindowList&) = delete;

  // A window of ours that nobody else should count as one.
  void leaveOut(xcb_window_t window) { leftOut_ = window; }
  void setScreens(std::vector<xcb::ScreenGeometry> screens);
  // Whether the owner of a window gave it a shape, where that cannot be told from the window itself.
  void setShapedByOwner(std::function<std::optional<bool>(xcb_window_t)> isShapedByOwner) {
    isShapedByOwner_ = std::move(isShapedByOwner);
  }
  // Called when a list that was handed out is out of date: once, until the next one is handed out. A move counts only
  // where it may matter to the window's layer.
  void setChanged(std::function<void()> changed) { changed_ = std::move(changed); }

  // Leaves out input-only windows: they have nothing to capture.
  [[nodiscard]] std::vector<CaptureWindow> windows(const ShareableContentOptions& options);

  // What is known of one top-level; absent when it is not a top-level.
  [[nodiscard]] std::optional<WindowProperties> properties(xcb_window_t topLevel);
  [[nodiscard]] bool isOwn(xcb_window_t topLevel) const;
  // Whether nothing may be shown above it: it could be a lock screen, and nobody says otherwise.
  [[nodiscard]] bool isScreenLocker(xcb_window_t topLevel);
  // `mayOverlap` says whether a window that could be a lock screen is none.
  void setMayOverlap(std::function<bool(const CaptureWindow&)> mayOverlap) { mayOverlap_ = std::move(mayOverlap); }

  void handle(const xcb_generic_event_t& event);

  void windowAdded(const SceneWindow& window) override;
  void windowRemoved(const SceneWindow& window, Departure departure) override;
  void windowChanged(const SceneWindow& before, const SceneWindow& after) override;
  void windowReshaped(const SceneWindow& window) override;
  void windowRestacked(const SceneWindow& window) override;
  void compositingManagerChanged(bool isRunning) override;

 private:
  struct Record {
    bool isStale = true;
    ClientProperties own;  // of the top-level itself
    // The window of another client inside, as in a window manager's frame.
    xcb_window_t inner = XCB_NONE;
    ClientProperties ofInner;
    std::string processName;
    bool wasOverlay = false;  // since it was mapped
  };

  void refresh();
  void readTopLevels(const std::vector<xcb_window_t>& stale);
  void readInnerWindows(const std::vector<xcb_window_t>& stale);
  void readProcessNames(const std::vector<xcb_window_t>& stale);
  void setInner(xcb_window_t topLevel, xcb_window_t inner);
  void watch(xcb_window_t window);
  void markStale(xcb_window_t window);
  void markChanged();
  void handleReparent(const xcb_reparent_notify_event_t& event);
  void collectMarks();
  [[nodiscard]] bool isOwnClient(xcb_window_t window) const;
  [[nodiscard]] std::int64_t layer(const WindowProperties& window) const;
  [[nodiscard]] WindowProperties describe(const SceneWindow& window) const;
  [[nodiscard]] bool isLowestOfDesktop(std::span<const WindowProperties> all, std::size_t index) const;
  [[nodiscard]] std::vector<WindowProperties> describeAll();
  void noteOverlays(std::span<const WindowProperties> all);
  [[nodiscard]] CaptureWindow listed(const SceneWindow& window, const WindowProperties& properties) const;

  xcb::Connection& connection_;
  const Scene& scene_;
  std::vector<std::uint32_t> ownClients_;
  // Clients of other processes of this product.
  std::vector<std::uint32_t> markedClients_;
  PropertyAtoms atoms_;
  ProcessNames processNames_;
  std::vector<xcb::ScreenGeometry> screens_;
  std::vector<xcb::PixelRect> monitors_;
  std::map<xcb_window_t, Record> records_;
  // The top-level to which each window inside a frame belongs.
  std::map<xcb_window_t, xcb_window_t> frameOf_;
  std::function<void()> changed_;
  std::function<std::optional<bool>(xcb_window_t)> isShapedByOwner_;
  std::function<bool(const CaptureWindow&)> mayOverlap_;
  bool isHandedOut_ = false;
  xcb_window_t leftOut_ = XCB_NONE;
};

}  // namespace platform::linux::scene
