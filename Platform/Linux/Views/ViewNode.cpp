#include "Platform/Linux/Views/ViewNode.h"

#include <utility>

#include "Platform/Linux/Views/DisplayLayerNode.h"

namespace platform::linux::views {

ViewNode::ViewNode(const Rect& frame, std::weak_ptr<ViewResponder> responder)
    : frame_(frame), responder_(std::move(responder)) {}

ViewNode::~ViewNode() {
  for (const auto& subview : subviews_) subview->parent_ = nullptr;
  for (const auto& layer : layers_) layer->setOwner(nullptr);
}

void ViewNode::enterWindow(ViewHost& host, Size size) {
  host_ = &host;
  setFrame({{0, 0}, size});
  layOutTree();
  setNeedsDisplay();
}

void ViewNode::leaveWindow() { host_ = nullptr; }

void ViewNode::setFrame(const Rect& frame) {
  if (frame == frame_) return;
  const Rect old = std::exchange(frame_, frame);
  if (old.size != frame.size) {
    for (const auto& subview : subviews_)
      subview->followParent(frame.width() - old.width(), frame.height() - old.height());
    layOut();
  }
  setNeedsDisplay();
}

void ViewNode::setBackground(const Color& color) {
  background_ = color;
  setNeedsDisplay();
}

void ViewNode::setBorder(const BorderContent& border) {
  border_ = border;
  setNeedsDisplay();
}

void ViewNode::setLabel(const LabelContent& label) {
  label_ = label;
  setNeedsDisplay();
}

void ViewNode::setHidden(bool hidden) {
  if (std::exchange(hidden_, hidden) != hidden) setNeedsDisplay();
}

void ViewNode::addLayer(std::shared_ptr<DisplayLayerNode> layer) {
  layer->setOwner(this);
  layers_.push_back(std::move(layer));
  setNeedsDisplay();
}

void ViewNode::addSubview(std::shared_ptr<ViewNode> subview) {
  subview->parent_ = this;
  subviews_.push_back(std::move(subview));
  setNeedsDisplay();
}

void ViewNode::centerInParent() {
  centered_ = true;
  setNeedsDisplay();
}

void ViewNode::setNeedsDisplay() {
  if (ViewHost* window = host()) window->viewsChanged();
}

ViewHost* ViewNode::host() const {
  const ViewNode* node = this;
  while (node->parent_) node = node->parent_;
  return node->host_;
}

Point ViewNode::originInWindow() const {
  Point origin;
  for (const ViewNode* node = this; node->parent_; node = node->parent_) {
    origin.x += node->frame_.minX();
    origin.y += node->frame_.minY();
  }
  return origin;
}

void ViewNode::layOut() {
  if (const auto target = responder()) target->layout();
}

void ViewNode::layOutTree() {
  layOut();
  for (const auto& subview : subviews_) subview->layOutTree();
}

void ViewNode::followParent(double widthChange, double heightChange) {
  Rect frame = frame_;
  if (resizeMask_ & resizemask::widthSizable) frame.size.width += widthChange;
  if (resizeMask_ & resizemask::heightSizable) frame.size.height += heightChange;
  setFrame(frame);
}

}  // namespace platform::linux::views
