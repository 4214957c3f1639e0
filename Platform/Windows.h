// Borderless windows of the application.
//
// Threads: main thread only.
// Units and axes: frames are points in the global space.
// Ownership: the caller owns the window; dropping it takes it off the screen. A window shares its content view.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

#include "Platform/Capture.h"
#include "Platform/Color.h"
#include "Platform/Geometry.h"
#include "Platform/Views.h"

namespace platform {

using WindowLevel = std::int64_t;
inline constexpr WindowLevel screenSaverLevel = 1000;

enum class WindowStyle : unsigned { borderless = 0 };
enum class BackingStore : unsigned { buffered = 2 };
enum class AnimationBehavior : int { standard = 0, none = 2 };
enum class WindowSharing : unsigned {
  none = 0,  // left out of every capture of the screen
  readOnly = 1,
};

namespace collectionbehavior {
inline constexpr unsigned canJoinAllSpaces = 0x1;
inline constexpr unsigned stationary = 0x10;
inline constexpr unsigned ignoresCycle = 0x40;
inline constexpr unsigned fullScreenAuxiliary = 0x100;
}  // namespace collectionbehavior

struct WindowAttributes {
  Rect contentRect;
  WindowStyle style = WindowStyle::borderless;
  BackingStore backing = BackingStore::buffered;
  bool isDeferred = false;
  WindowLevel level = 0;
  unsigned collectionBehavior = 0;
  bool ignoresMouseEvents = false;  // clicks reach what lies beneath
  bool hasShadow = true;
  bool isOpaque = true;
  Color backgroundColor = colors::windowBackground;
  bool isReleasedWhenClosed = true;
  bool isMovable = true;
  AnimationBehavior animationBehavior = AnimationBehavior::standard;
  std::optional<WindowSharing> sharing;  // absent: the desktop's default
  bool canBecomeKey = false;
  bool canBecomeMain = false;
};

class Window {
 public:
  virtual ~Window() = default;
  virtual void setContentView(std::shared_ptr<View> view) = 0;
  virtual void setFrame(const Rect& frame, bool display) = 0;
  [[nodiscard]] virtual Rect frame() const = 0;
  // Shows the window above the others of its level; the active application stays active.
  virtual void orderFrontRegardless() = 0;
  virtual void makeKeyAndOrderFront() = 0;
  virtual void makeKey() = 0;
  virtual void makeFirstResponder(View& view) = 0;
  virtual void orderOut() = 0;
};

enum class EventMonitor : std::uint64_t {};

class Windows {
 public:
  virtual ~Windows() = default;
  virtual std::unique_ptr<Window> makeWindow(const WindowAttributes& attributes) = 0;
  // A level above all ordinary windows, menus and full-screen applications.
  [[nodiscard]] virtual WindowLevel shieldingLevel() const = 0;
  // Windows at that level stay below anything that could be a lock screen, unless `mayOverlap` says that it may be
  // covered. Until this is set, nothing may be. Called often.
  virtual void setMayOverlap(std::function<bool(const CaptureWindow&)> mayOverlap) = 0;
  // Sees every key press that is delivered to the application, before its windows do; returning true swallows it.
  virtual EventMonitor addLocalKeyDownMonitor(std::function<bool(const KeyEvent&)> handler) = 0;
  virtual void removeMonitor(EventMonitor monitor) = 0;
};

}  // namespace platform
