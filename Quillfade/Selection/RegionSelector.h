// One area selection across all screens.
//
// Threads: main thread only; the completion comes on a later turn of the main queue.
// Lifetime: always held by a shared pointer; views and the key monitor hold the selector weakly.
// Units: points, global space.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "Platform/Platform.h"
#include "Quillfade/Selection/SelectionWindow.h"

namespace quillfade {

class RegionSelector final : public std::enable_shared_from_this<RegionSelector> {
 public:
  using Completion = std::function<void(std::optional<platform::Rect>)>;

  explicit RegionSelector(platform::Platform& platform) : platform_(platform) {}

  // Starts a selection. The completion is called once, with nothing when the user cancels. While a selection runs,
  // another one is dropped together with its completion. Never begin one while the session is locked.
  void begin(Completion completion);
  // Ends a selection as Escape would; harmless without one.
  void cancel() { finish(std::nullopt); }

  [[nodiscard]] const std::vector<SelectionWindow>& windows() const { return windows_; }

 private:
  void finish(const std::optional<platform::Rect>& rect);
  void openWindow(const platform::Screen& screen);
  void focusWindowUnderPointer();
  void installKeyMonitor();

  platform::Platform& platform_;
  std::vector<SelectionWindow> windows_;
  Completion completion_;
  std::optional<platform::EventMonitor> keyMonitor_;
};

}  // namespace quillfade
