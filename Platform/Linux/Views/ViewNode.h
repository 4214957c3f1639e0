// A view as a plain retained node: it remembers how it should look, and the window that hosts its tree renders it by
// its own means.
//
// Threads: main thread only; responders are called there. Units and axes: points, y up; a node's frame is in its
// parent's space.
// Ownership: a node shares its children and its layers, and refers to its parent, its responder and its host without
// owning them. A child may outlive its parent.
#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "Platform/Linux/Views/OverlayContent.h"
#include "Platform/Linux/Views/ViewHost.h"
#include "Platform/Views.h"

namespace platform::linux::views {

class DisplayLayerNode;

class ViewNode {
 public:
  explicit ViewNode(const Rect& frame, std::weak_ptr<ViewResponder> responder = {});
  ~ViewNode();
  ViewNode(const ViewNode&) = delete;
  ViewNode& operator=(const ViewNode&) = delete;

  // For the host of a tree's root. Entering gives the root this size and lays out the whole tree.
  void enterWindow(ViewHost& host, Size size);
  void leaveWindow();

  // A change of size makes the children follow by their resize masks and calls the responder's layout.
  void setFrame(const Rect& frame);
  void setResizeMask(unsigned mask) { resizeMask_ = mask; }
  void setBackground(const Color& color);
  void setBorder(const BorderContent& border);
  void setLabel(const LabelContent& label);
  void setHidden(bool hidden);
  void addLayer(std::shared_ptr<DisplayLayerNode> layer);
  void addSubview(std::shared_ptr<ViewNode> subview);
  // Whoever renders the tree centres the node in its parent, at the size of its content.
  void centerInParent();
  void setNeedsDisplay();

  [[nodiscard]] ViewHost* host() const;  // null outside windows
  [[nodiscard]] Point originInWindow() const;

  [[nodiscard]] const Rect& frame() const { return frame_; }
  [[nodiscard]] Rect bounds() const { return {{0, 0}, {frame_.width(), frame_.height()}}; }
  [[nodiscard]] bool isHidden() const { return hidden_; }
  [[nodiscard]] bool isCentered() const { return centered_; }
  [[nodiscard]] const std::optional<Color>& background() const { return background_; }
  [[nodiscard]] const std::optional<BorderContent>& border() const { return border_; }
  [[nodiscard]] const std::optional<LabelContent>& label() const { return label_; }
  [[nodiscard]] const std::vector<std::shared_ptr<ViewNode>>& subviews() const { return subviews_; }
  [[nodiscard]] const std::vector<std::shared_ptr<DisplayLayerNode>>& layers() const { return layers_; }
  [[nodiscard]] std::shared_ptr<ViewResponder> responder() const { return responder_.lock(); }

 private:
  void layOut();
  void layOutTree();
  void followParent(double widthChange, double heightChange);

  Rect frame_;
  std::weak_ptr<ViewResponder> responder_;
  unsigned resizeMask_ = 0;
  bool hidden_ = false;
  bool centered_ = false;
  std::optional<Color> background_;
  std::optional<BorderContent> border_;
  std::optional<LabelContent> label_;
  std::vector<std::shared_ptr<ViewNode>> subviews_;
  std::vector<std::shared_ptr<DisplayLayerNode>> layers_;
  ViewNode* parent_ = nullptr;
  ViewHost* host_ = nullptr;  // set in a root only
};

}  // namespace platform::linux::views
