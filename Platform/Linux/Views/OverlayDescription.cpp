#include "Platform/Linux/Views/OverlayDescription.h"

#include "Platform/Linux/Views/DisplayLayerNode.h"

namespace platform::linux::views {

namespace {

// Later nodes lie above earlier ones, so the last one found wins.
void collect(const ViewNode& node, OverlayContent& content) {
  if (node.isHidden()) return;
  if (node.background()) content.background = *node.background();
  for (const auto& layer : node.layers()) {
    const Point origin = node.originInWindow();
    const Rect& frame = layer->frame();
    content.pictureLayer = Rect{{origin.x + frame.origin.x, origin.y + frame.origin.y}, frame.size};
  }
  if (node.label() && !node.label()->text.empty()) content.label = node.label();
  if (node.border()) content.border = node.border();
  for (const auto& subview : node.subviews()) collect(*subview, content);
}

}  // namespace

OverlayContent describe(const ViewNode& root) {
  OverlayContent content;
  collect(root, content);
  return content;
}

}  // namespace platform::linux::views
