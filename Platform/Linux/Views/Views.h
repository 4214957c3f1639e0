// The views that the application holds: thin handles on nodes, so that a label can be both a `Label` and a node of the
// same tree as everything else.
//
// Threads: main thread only. Ownership: a handle shares its node; a tree shares nodes, so a handle may be dropped while
// its view stays in a window. Every view passed to this adapter must be its own: a view of another desktop ends the
// process.
#pragma once

#include <memory>

#include "Platform/Linux/Views/ViewNode.h"
#include "Platform/Views.h"

namespace platform::linux::views {

class DesktopViews : public Views {
 public:
  std::shared_ptr<View> makeView(const Rect& frame) override;
  std::shared_ptr<View> makeView(const Rect& frame, std::weak_ptr<ViewResponder> responder) override;
  std::shared_ptr<Label> makeLabel(const std::string& text) override;
  std::shared_ptr<DisplayLayer> makeDisplayLayer() override;
  // Nothing here ever animates.
  void withoutImplicitAnimations(const std::function<void()>& changes) override { changes(); }
};

// The node behind a view that `DesktopViews` made.
[[nodiscard]] std::shared_ptr<ViewNode> nodeOf(View& view);

}  // namespace platform::linux::views
