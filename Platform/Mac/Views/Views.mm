#include "Platform/Mac/Views/Views.h"

#import <QuartzCore/QuartzCore.h>

#include <utility>
#include <vector>

#include "Platform/Mac/Foundation/Bridge.h"
#include "Platform/Mac/Toolkit/Appearance.h"
#include "Platform/Mac/Views/DisplayLayer.h"
#include "Platform/Mac/Views/ResponderView.h"

namespace platform::mac::views {
namespace {

static_assert(resizemask::widthSizable == NSViewWidthSizable);
static_assert(resizemask::heightSizable == NSViewHeightSizable);

// Implements a port's view with an AppKit view of the class `Native`.
template <class Port, class Native>
class ViewOver : public Port, public NativeView {
 public:
  explicit ViewOver(Native* view) : view_(view) {}
  [[nodiscard]] NSView* nsView() const override { return view_; }

  void setFrame(const Rect& frame) override { view_.frame = foundation::nsRect(frame); }
  [[nodiscard]] Rect bounds() const override { return foundation::fromNSRect(view_.bounds); }
  void setResizeMask(unsigned mask) override { view_.autoresizingMask = mask; }

  void setLayerBackground(const Color& color) override {
    view_.wantsLayer = YES;
    CALayer* layer = [CALayer layer];
    layer.backgroundColor = toolkit::nsColor(color).CGColor;
    view_.layer = layer;
  }
  void setLayerBorder(double width, const Color& color) override {
    view_.wantsLayer = YES;
    view_.layer.borderWidth = width;
    view_.layer.borderColor = toolkit::nsColor(color).CGColor;
  }
  void addSublayer(std::shared_ptr<platform::DisplayLayer> layer) override {
    // Every layer of this desktop comes from `makeDisplayLayer`.
    [view_.layer addSublayer:static_cast<const DisplayLayer&>(*layer).layer()];
    layers_.push_back(std::move(layer));
  }

  void addSubview(std::shared_ptr<View> subview) override {
    [view_ addSubview:views::nsView(*subview)];
    subviews_.push_back(std::move(subview));
  }
  void centerSubview(View& subview) override {
    NSView* centred = views::nsView(subview);
    centred.translatesAutoresizingMaskIntoConstraints = NO;
    [NSLayoutConstraint activateConstraints:@[
      [centred.centerXAnchor constraintEqualToAnchor:view_.centerXAnchor],
      [centred.centerYAnchor constraintEqualToAnchor:view_.centerYAnchor],
    ]];
  }

  void setHidden(bool hidden) override { view_.hidden = hidden; }
  void setNeedsDisplay() override { view_.needsDisplay = YES; }
  [[nodiscard]] bool isInWindow() const override { return view_.window != nil; }
  [[nodiscard]] Point convertFromWindow(Point windowPoint) const override {
    return foundation::fromNSPoint([view_ convertPoint:foundation::nsPoint(windowPoint) fromView:nil]);
  }
  [[nodiscard]] Rect convertToWindow(const Rect& rect) const override {
    return foundation::fromNSRect([view_ convertRect:foundation::nsRect(rect) toView:nil]);
  }
  [[nodiscard]] Rect convertWindowRectToScreen(const Rect& windowRect) const override {
    return foundation::fromNSRect([view_.window convertRectToScreen:foundation::nsRect(windowRect)]);
  }

 protected:
  [[nodiscard]] Native* native() const { return view_; }

 private:
  Native* view_;
  std::vector<std::shared_ptr<View>> subviews_;
  std::vector<std::shared_ptr<platform::DisplayLayer>> layers_;
};

using PlainView = ViewOver<View, NSView>;

class TextLabel final : public ViewOver<Label, NSTextField> {
 public:
  using ViewOver::ViewOver;
  void setText(const std::string& text) override { native().stringValue = foundation::nsString(text); }
  void setStyle(const TextStyle& style) override {
    native().font = toolkit::nsFont(style.font);
    native().textColor = toolkit::nsColor(style.color);
    native().alignment = NSTextAlignmentCenter;
  }
};

}  // namespace

NSView* nsView(const View& view) { return dynamic_cast<const NativeView&>(view).nsView(); }

std::shared_ptr<View> Views::makeView(const Rect& frame) {
  return std::make_shared<PlainView>([[NSView alloc] initWithFrame:foundation::nsRect(frame)]);
}

std::shared_ptr<View> Views::makeView(const Rect& frame, std::weak_ptr<ViewResponder> responder) {
  const auto asked = responder.lock();
  Class kind = asked && asked->draws() ? [QLFDrawingView class] : [QLFResponderView class];
  return std::make_shared<PlainView>([[kind alloc] initWithFrame:foundation::nsRect(frame)
                                                       responder:std::move(responder)]);
}

std::shared_ptr<Label> Views::makeLabel(const std::string& text) {
  return std::make_shared<TextLabel>([NSTextField labelWithString:foundation::nsString(text)]);
}

std::shared_ptr<platform::DisplayLayer> Views::makeDisplayLayer() { return std::make_shared<DisplayLayer>(); }

void Views::withoutImplicitAnimations(const std::function<void()>& changes) {
  [CATransaction begin];
  [CATransaction setDisableActions:YES];
  changes();
  [CATransaction commit];
}

}  // namespace platform::mac::views
