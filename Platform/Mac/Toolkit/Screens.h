// The screens of the desktop.
//
// Threads: main thread only.
// Units and axes: AppKit's own, which the application shares. The capture service's global space starts at the top-left
// corner of the primary screen, y down; only `fromTopLeft` converts.
#pragma once

#import <AppKit/AppKit.h>

#include <memory>
#include <vector>

#include "Platform/Screens.h"

@class QLFScreenObserver;

namespace platform::mac::toolkit {

// From the top-left global space to the application's, given the height of the primary screen.
[[nodiscard]] Rect fromTopLeft(const Rect& rect, double primaryHeight);
// 0 without a screen.
[[nodiscard]] double primaryScreenHeight();

class Screens final : public platform::Screens {
 public:
  [[nodiscard]] std::vector<Screen> all() const override;
  [[nodiscard]] std::optional<Screen> main() const override;
  [[nodiscard]] Point mouseLocation() const override;
  void observeChanges(std::function<void()> observer) override;

 private:
  struct Observation {
    std::shared_ptr<std::function<void()>> callback;
    QLFScreenObserver* observer;
  };

  std::vector<Observation> observations_;
};

}  // namespace platform::mac::toolkit
