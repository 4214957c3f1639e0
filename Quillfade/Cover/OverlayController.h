// The one coordinator of the cover: whether it is on, which area it covers and how, and what of it is on screen now.
//
// Threads: main thread only; `onStateChange` is called there, synchronously, after the state, the stored settings and
// the screen are up to date.
// Lifetime: always held by a shared pointer; delayed work holds the controller weakly.
// Units: points, global space; seconds.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "Platform/Platform.h"
#include "Quillfade/Cover/CoverStyle.h"
#include "Quillfade/Cover/LiveMirror.h"

namespace quillfade {

class OverlayController final : public std::enable_shared_from_this<OverlayController> {
 public:
  static constexpr double defaultPeekLength = 5;

  // Loads style, outline and region from the settings. Shows nothing.
  explicit OverlayController(platform::Platform& platform);

  [[nodiscard]] bool isEnabled() const { return isEnabled_; }
  [[nodiscard]] const std::optional<platform::Rect>& region() const { return region_; }
  [[nodiscard]] CoverStyle style() const { return style_; }
  [[nodiscard]] bool showsOutline() const { return showsOutline_; }
  [[nodiscard]] const std::vector<std::shared_ptr<LiveMirror>>& liveMirrors() const { return liveMirrors_; }

  // Replaces the callback.
  void setOnStateChange(std::function<void()> callback) { onStateChange_ = std::move(callback); }

  // Switches the cover on again if it was on when the program last ran. Call once, at launch.
  void restore();
  // Switching on is refused without a region that overlaps some screen enough.
  void setEnabled(bool on);
  // Takes any rectangle. Moves a cover that is on, but switches nothing on.
  void setRegion(const platform::Rect& rect);
  void setStyle(CoverStyle newStyle);
  // Stores the flag; a cover on screen changes only when it is presented again.
  void setShowsOutline(bool shows);
  // Hides a cover that is on, for this long. Another peek starts the time anew.
  void peek(double seconds = defaultPeekLength);
  void screensChanged();
  // A cover that is on stays away while the session is locked.
  void sessionLockChanged();
  // A cover that is on stays away while the menu is open.
  void setMenuOpen(bool open);

 private:
  // Only adds to what is shown: to rebuild the cover, call `hideAll` first. Shows nothing while the session is locked;
  // unlocking presents.
  void present();
  void presentLive(const platform::Rect& region);
  void presentSolid(const platform::Rect& region);
  void hideAll();
  void cancelPeek();
  void assignStyle(CoverStyle newStyle);
  void notifyStateChange() const;

  platform::Platform& platform_;
  platform::Settings& defaults_;
  std::unique_ptr<platform::Window> solidWindow_;
  std::vector<std::shared_ptr<LiveMirror>> liveMirrors_;
  std::shared_ptr<platform::DelayedTask> peekWorkItem_;
  std::function<void()> onStateChange_;
  bool isEnabled_ = false;
  bool isMenuOpen_ = false;
  std::optional<platform::Rect> region_;
  CoverStyle style_ = CoverStyle::live;
  bool showsOutline_ = true;
};

}  // namespace quillfade
