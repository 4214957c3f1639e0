#include "Platform/Simulated/Views.h"

#include <utility>

namespace platform::simulated {

View::~View() {
  for (const auto& subview : subviews_) subview->superview_ = nullptr;
}

void View::setFrame(const Rect& frame) {
  record_.expectMainThread("View::setFrame");
  expectFinite(frame, "View::setFrame");
  if (windowFrame_ != nullptr) misuse("View::setFrame was called on a window's content view");
  didAnimate_ = didAnimate_ || !withoutAnimations_;
  resize(frame);
}

Rect View::bounds() const {
  record_.expectMainThread("View::bounds");
  return {{0, 0}, frame_.size};
}

void View::setResizeMask(unsigned mask) {
  record_.expectMainThread("View::setResizeMask");
  resizeMask_ = mask;
}

void View::setLayerBackground(const Color& color) {
  record_.expectMainThread("View::setLayerBackground");
  background_ = color;
}

void View::setLayerBorder(double width, const Color& color) {
  record_.expectMainThread("View::setLayerBorder");
  border_ = LayerBorder{width, color};
}

void View::addSublayer(std::shared_ptr<platform::DisplayLayer> layer) {
  record_.expectMainThread("View::addSublayer");
  auto own = std::dynamic_pointer_cast<DisplayLayer>(layer);
  if (!own) misuse("View::addSublayer was given no layer of this desktop");
  sublayers_.push_back(std::move(own));
}

void View::addSubview(std::shared_ptr<platform::View> subview) {
  record_.expectMainThread("View::addSubview");
  auto own = std::dynamic_pointer_cast<View>(subview);
  if (!own) misuse("View::addSubview was given no view of this desktop");
  if (own->superview_ != nullptr || own->windowFrame_ != nullptr) misuse("View::addSubview was given a view in use");
  own->superview_ = this;
  subviews_.push_back(own);
  if (isInWindow()) own->layOut();
}

void View::centerSubview(platform::View& subview) {
  record_.expectMainThread("View::centerSubview");
  auto* const own = dynamic_cast<View*>(&subview);
  if (own == nullptr || own->superview_ != this) misuse("View::centerSubview was given a view that is no subview");
  own->isCentered_ = true;
  own->centreInSuperview();
}

void View::setHidden(bool hidden) {
  record_.call(std::string("view: ") + (hidden ? "hide" : "show"));
  isHidden_ = hidden;
}

void View::setNeedsDisplay() {
  record_.expectMainThread("View::setNeedsDisplay");
  ++displayRequests_;
}

bool View::isInWindow() const {
  record_.expectMainThread("View::isInWindow");
  return root().windowFrame_ != nullptr;
}

Point View::convertFromWindow(Point windowPoint) const {
  record_.expectMainThread("View::convertFromWindow");
  const Point origin = originInWindow();
  return {windowPoint.x - origin.x, windowPoint.y - origin.y};
}

Rect View::convertToWindow(const Rect& rect) const {
  record_.expectMainThread("View::convertToWindow");
  const Point origin = originInWindow();
  return {{rect.origin.x + origin.x, rect.origin.y + origin.y}, rect.size};
}

Rect View::convertWindowRectToScreen(const Rect& windowRect) const {
  record_.expectMainThread("View::convertWindowRectToScreen");
  const Rect* const window = root().windowFrame_;
  if (window == nullptr) misuse("View::convertWindowRectToScreen was called on a view in no window");
  return {{windowRect.origin.x + window->origin.x, windowRect.origin.y + window->origin.y}, windowRect.size};
}

void View::setText(const std::string& text) {
  record_.call("label: text " + text);
  text_ = text;
  centreInSuperview();
}

void View::setStyle(const TextStyle& style) {
  record_.expectMainThread("Label::setStyle");
  style_ = style;
  centreInSuperview();
}

void View::setWindowFrame(const Rect* frame) {
  const bool enters = windowFrame_ == nullptr && frame != nullptr;
  windowFrame_ = frame;
  if (frame == nullptr) return;
  const bool keepsSize = frame_.size == frame->size;
  resize({{0, 0}, frame->size});
  // A view that enters a window lays out even if it already has its size.
  if (enters && keepsSize) layOut();
}

std::vector<DrawingStep> View::render() const {
  Canvas canvas;
  if (const auto responder = responder_.lock(); responder && responder->draws()) responder->draw(canvas);
  return canvas.steps();
}

const View& View::root() const {
  const View* view = this;
  while (view->superview_ != nullptr) view = view->superview_;
  return *view;
}

Point View::originInWindow() const {
  Point origin;
  // The root fills its window, so its own origin does not count.
  for (const View* view = this; view->superview_ != nullptr; view = view->superview_) {
    origin = {origin.x + view->frame_.origin.x, origin.y + view->frame_.origin.y};
  }
  return origin;
}

void View::resize(const Rect& frame) {
  const Size before = frame_.size;
  frame_ = frame;
  if (before == frame.size) return;
  for (const auto& subview : subviews_) subview->followSuperview(before, frame.size);
  layOut();
}

void View::layOut() {
  for (const auto& subview : subviews_) subview->centreInSuperview();
  if (const auto responder = responder_.lock()) responder->layout();
}

void View::followSuperview(const Size& before, const Size& after) {
  Rect frame = frame_;
  if ((resizeMask_ & resizemask::widthSizable) != 0) frame.size.width += after.width - before.width;
  if ((resizeMask_ & resizemask::heightSizable) != 0) frame.size.height += after.height - before.height;
  // Not through `setFrame`: following the superview never animates.
  resize(frame);
}

void View::centreInSuperview() {
  if (!isCentered_ || superview_ == nullptr) return;
  const Size size = text_ ? textSize(*text_, style_.font) : frame_.size;
  const Size space = superview_->frame_.size;
  frame_ = {{(space.width - size.width) / 2, (space.height - size.height) / 2}, size};
}

std::shared_ptr<platform::View> Views::makeView(const Rect& frame) { return makeView(frame, {}); }

std::shared_ptr<platform::View> Views::makeView(const Rect& frame, std::weak_ptr<ViewResponder> responder) {
  record_.expectMainThread("Views::makeView");
  auto view = std::make_shared<View>(record_, withoutAnimations_);
  view->setFrame(frame);
  view->setResponder(std::move(responder));
  return view;
}

std::shared_ptr<Label> Views::makeLabel(const std::string& text) {
  record_.expectMainThread("Views::makeLabel");
  auto label = std::make_shared<View>(record_, withoutAnimations_);
  label->setText(text);
  return label;
}

std::shared_ptr<platform::DisplayLayer> Views::makeDisplayLayer() {
  record_.expectMainThread("Views::makeDisplayLayer");
  return std::make_shared<DisplayLayer>(record_, withoutAnimations_);
}

void Views::withoutImplicitAnimations(const std::function<void()>& changes) {
  record_.expectMainThread("Views::withoutImplicitAnimations");
  const bool before = std::exchange(withoutAnimations_, true);
  changes();
  withoutAnimations_ = before;
}

}  // namespace platform::simulated
