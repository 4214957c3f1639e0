#include "Platform/Linux/Views/Views.h"

#include <QtGlobal>
#include <utility>

#include "Platform/Linux/Views/DisplayLayerNode.h"

namespace platform::linux::views {

namespace {

class NodeBacked {
 public:
  explicit NodeBacked(std::shared_ptr<ViewNode> node) : node_(std::move(node)) {}
  virtual ~NodeBacked() = default;
  [[nodiscard]] const std::shared_ptr<ViewNode>& node() const { return node_; }

 private:
  std::shared_ptr<ViewNode> node_;
};

Rect movedBy(const Rect& rect, Point offset) {
  return {{rect.origin.x + offset.x, rect.origin.y + offset.y}, rect.size};
}

std::shared_ptr<DisplayLayerNode> layerNode(std::shared_ptr<DisplayLayer> layer) {
  auto node = std::dynamic_pointer_cast<DisplayLayerNode>(std::move(layer));
  if (!node) qFatal("This display layer belongs to another desktop.");
  return node;
}

template <typename Port>
class NodeView : public Port, public NodeBacked {
 public:
  using NodeBacked::NodeBacked;

  void setFrame(const Rect& frame) override { node()->setFrame(frame); }
  [[nodiscard]] Rect bounds() const override { return node()->bounds(); }
  void setResizeMask(unsigned mask) override { node()->setResizeMask(mask); }
  void setLayerBackground(const Color& color) override { node()->setBackground(color); }
  void setLayerBorder(double width, const Color& color) override { node()->setBorder({width, color}); }
  void addSublayer(std::shared_ptr<DisplayLayer> layer) override { node()->addLayer(layerNode(std::move(layer))); }
  void addSubview(std::shared_ptr<View> subview) override { node()->addSubview(nodeOf(*subview)); }
  void centerSubview(View& subview) override { nodeOf(subview)->centerInParent(); }
  void setHidden(bool hidden) override { node()->setHidden(hidden); }
  void setNeedsDisplay() override { node()->setNeedsDisplay(); }
  [[nodiscard]] bool isInWindow() const override { return node()->host() != nullptr; }

  [[nodiscard]] Point convertFromWindow(Point windowPoint) const override {
    const Point origin = node()->originInWindow();
    return {windowPoint.x - origin.x, windowPoint.y - origin.y};
  }
  [[nodiscard]] Rect convertToWindow(const Rect& rect) const override {
    return movedBy(rect, node()->originInWindow());
  }
  [[nodiscard]] Rect convertWindowRectToScreen(const Rect& windowRect) const override {
    const ViewHost* host = node()->host();
    return host ? movedBy(windowRect, host->windowFrame().origin) : windowRect;
  }
};

class LabelView : public NodeView<Label> {
 public:
  using NodeView<Label>::NodeView;

  void setText(const std::string& text) override {
    LabelContent content = *node()->label();
    content.text = text;
    node()->setLabel(content);
  }
  void setStyle(const TextStyle& style) override {
    LabelContent content = *node()->label();
    content.style = style;
    node()->setLabel(content);
  }
};

constexpr TextStyle plainLabelStyle{{.size = 13}, colors::label};

}  // namespace

std::shared_ptr<View> DesktopViews::makeView(const Rect& frame) { return makeView(frame, {}); }

std::shared_ptr<View> DesktopViews::makeView(const Rect& frame, std::weak_ptr<ViewResponder> responder) {
  return std::make_shared<NodeView<View>>(std::make_shared<ViewNode>(frame, std::move(responder)));
}

std::shared_ptr<Label> DesktopViews::makeLabel(const std::string& text) {
  auto node = std::make_shared<ViewNode>(Rect{});
  node->setLabel({text, plainLabelStyle});
  return std::make_shared<LabelView>(std::move(node));
}

std::shared_ptr<DisplayLayer> DesktopViews::makeDisplayLayer() { return std::make_shared<DisplayLayerNode>(); }

std::shared_ptr<ViewNode> nodeOf(View& view) {
  auto* backed = dynamic_cast<NodeBacked*>(&view);
  if (!backed) qFatal("This view belongs to another desktop.");
  return backed->node();
}

}  // namespace platform::linux::views
