// Views, labels and the layer of captured frames.
//
// Threads: main thread only.
// Units and axes: AppKit's own, which the port shares.
#pragma once

#import <AppKit/AppKit.h>

#include "Platform/Views.h"

namespace platform::mac::views {

// The AppKit side of every view of this desktop.
class NativeView {
 public:
  virtual ~NativeView() = default;
  [[nodiscard]] virtual NSView* nsView() const = 0;
};

// The AppKit view of any view that comes from `Views`.
[[nodiscard]] NSView* nsView(const View& view);

class Views final : public platform::Views {
 public:
  std::shared_ptr<View> makeView(const Rect& frame) override;
  std::shared_ptr<View> makeView(const Rect& frame, std::weak_ptr<ViewResponder> responder) override;
  std::shared_ptr<Label> makeLabel(const std::string& text) override;
  std::shared_ptr<platform::DisplayLayer> makeDisplayLayer() override;
  void withoutImplicitAnimations(const std::function<void()>& changes) override;
};

}  // namespace platform::mac::views
