// The top-level windows of a screen as plain data: their attributes, their stacking, and what has changed.
//
// Threads: one thread. Nothing here knows the X server; the model's owner feeds it.
// Units and axes: device pixels in root coordinates, y down. Ownership: `windows` is valid until the next event.
// Lifetime of a window: from its creation, or its arrival below the root, until it is destroyed or leaves. The server
// reuses ids, so an id names a window only together with its generation.
#pragma once

#include <xcb/xcb.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "Platform/Linux/Xcb/Coordinates.h"

namespace platform::linux::scene {

struct SceneWindow {
  xcb_window_t id = 0;
  std::uint64_t generation = 0;
  xcb::PixelRect outer;     // with its border
  std::int32_t border = 0;  // width of the border, on all four sides
  std::uint8_t depth = 0;   // 0 for input-only windows
  xcb_visualid_t visual = 0;
  bool isInputOnly = false;
  bool isOverrideRedirect = false;
  bool isViewable = false;
  bool isShaped = false;     // its bounding shape is not simply its rectangle
  bool isDescribed = false;  // false until depth, visual and shape are known

  friend bool operator==(const SceneWindow&, const SceneWindow&) = default;
};

enum class Departure : std::uint8_t { destroyed, reparented };

// Told of each change after the model has applied it. Listeners must not feed the model from inside a call.
class SceneListener {
 public:
  virtual ~SceneListener() = default;
  virtual void windowAdded(const SceneWindow& window) = 0;
  virtual void windowRemoved(const SceneWindow& window, Departure departure) = 0;
  // Some field has changed, other than the place in the stack.
  virtual void windowChanged(const SceneWindow& before, const SceneWindow& after) = 0;
  // Its bounding shape has changed (it may have been shaped before).
  virtual void windowReshaped(const SceneWindow& window) = 0;
  virtual void windowRestacked(const SceneWindow& window) = 0;
  // A compositing manager took over the screen, perhaps from another one, or went away.
  virtual void compositingManagerChanged(bool isRunning) = 0;
};

// A window's place in its parent: the rectangle includes the border.
struct WindowGeometry {
  xcb::PixelRect outer;
  std::int32_t border = 0;
};

class SceneModel {
 public:
  // What one reply of the server says about a window.
  struct Attributes {
    xcb_visualid_t visual = 0;
    bool isInputOnly = false;
    bool isOverrideRedirect = false;
    bool isViewable = false;
  };
  struct Stub {
    xcb_window_t id = 0;
    std::uint64_t generation = 0;
    friend bool operator==(const Stub&, const Stub&) = default;
  };

  // Told in the order in which they were added. Remove each before it is destroyed.
  void addListener(SceneListener& listener) { listeners_.push_back(&listener); }
  void removeListener(SceneListener& listener) { std::erase(listeners_, &listener); }

  // Bottom to top.
  [[nodiscard]] std::span<const SceneWindow> windows() const { return windows_; }
  [[nodiscard]] const SceneWindow* find(xcb_window_t id) const;
  // The window by which a compositing manager holds the screen; none without one.
  [[nodiscard]] xcb_window_t compositingManager() const { return compositingManager_; }
  [[nodiscard]] bool hasCompositingManager() const { return compositingManager_ != XCB_NONE; }

  // Windows first seen since the last call, about which the server must be asked. Answer with `describe...`, in any
  // order; answers for a window that is gone are ignored.
  [[nodiscard]] std::vector<Stub> takeStubs();

  // Puts an unknown window on top.
  void adopt(xcb_window_t id);
  void created(xcb_window_t id, const WindowGeometry& geometry, bool isOverrideRedirect);
  void removed(xcb_window_t id, Departure departure);
  void mapped(xcb_window_t id, bool isOverrideRedirect);
  void unmapped(xcb_window_t id);
  void configured(xcb_window_t id, const WindowGeometry& geometry, bool isOverrideRedirect);
  void moved(xcb_window_t id, std::int32_t x, std::int32_t y);
  // Directly above that sibling; at the bottom without one; on top when the sibling is unknown.
  void restacked(xcb_window_t id, std::optional<xcb_window_t> sibling);
  void raised(xcb_window_t id);
  void reshaped(xcb_window_t id, bool isShaped);
  void compositingManagerIs(xcb_window_t window);

  void describeAttributes(Stub stub, const Attributes& attributes);
  void describeGeometry(Stub stub, const WindowGeometry& geometry, std::uint8_t depth);
  void describeShape(Stub stub, bool isShaped);

 private:
  // The parts of a description that are still missing.
  struct Missing {
    Stub window;
    unsigned parts = 0;
  };
  [[nodiscard]] std::optional<std::size_t> indexOf(xcb_window_t id) const;
  void add(const SceneWindow& window);
  template <typename Telling>
  void tell(Telling telling);
  void moveTo(std::size_t from, std::size_t to);
  template <typename Change>
  void change(xcb_window_t id, Change apply);
  template <typename Change>
  void describe(Stub stub, unsigned part, Change apply);

  std::vector<SceneWindow> windows_;
  std::vector<Missing> missing_;
  std::vector<Stub> stubs_;
  std::uint64_t nextGeneration_ = 1;
  xcb_window_t compositingManager_ = XCB_NONE;
  std::vector<SceneListener*> listeners_;
};

}  // namespace platform::linux::scene
