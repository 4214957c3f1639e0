#include "Platform/Linux/Cover/ClickThroughWindow.h"

#include <utility>

#include "Platform/Linux/Holes/SeeThroughFrame.h"
#include "Platform/Linux/Views/OverlayDescription.h"
#include "Platform/Linux/Views/Views.h"

namespace platform::linux::cover {

ClickThroughWindow::ClickThroughWindow(const Surroundings& surroundings, const WindowAttributes& attributes)
    : surroundings_(surroundings),
      backgroundColor_(attributes.backgroundColor),
      frame_(attributes.contentRect),
      window_(surroundings.connection, xcb::toCapturedPixels(frame_, surroundings.screens.geometries()),
              appearanceOf({}, attributes.backgroundColor, 1, 1), surroundings.seeThroughVisual),
      palette_([this] { viewsChanged(); }) {
  surroundings_.stage.add(window_);
}

ClickThroughWindow::~ClickThroughWindow() {
  leaveContent();
  surroundings_.stage.remove(window_);
}

void ClickThroughWindow::leaveContent() {
  if (content_) content_->leaveWindow();
}

void ClickThroughWindow::setContentView(std::shared_ptr<View> view) {
  leaveContent();
  content_ = views::nodeOf(*view);
  content_->enterWindow(*this, frame_.size);
  forgetSamples();
  window_.setAppearance(appearance());
}

void ClickThroughWindow::setFrame(const Rect& frame, bool display) {
  frame_ = frame;
  window_.setFrame(xcb::toCapturedPixels(frame, surroundings_.screens.geometries()));
  if (content_) content_->setFrame({{0, 0}, frame.size});
  if (display) window_.setAppearance(appearance());
}

void ClickThroughWindow::orderFrontRegardless() {
  isOrderedFront_ = true;
  updateLater();
}

void ClickThroughWindow::orderOut() {
  isOrderedFront_ = false;
  window_.orderOut();
}

void ClickThroughWindow::viewsChanged() { updateLater(); }

void ClickThroughWindow::updateLater() {
  if (std::exchange(*updateIsPosted_, true)) return;
  surroundings_.runLoop.post([this, guard = std::weak_ptr(updateIsPosted_)] {
    const auto isPosted = guard.lock();
    if (!isPosted) return;
    *isPosted = false;
    update();
  });
}

void ClickThroughWindow::update() {
  window_.setAppearance(appearance());
  if (std::exchange(isOrderedFront_, false)) surroundings_.stage.orderFront(window_);
  // A late frame of an older stream is dropped, which is no failure.
  for (auto& frame : std::exchange(waitingFrames_, {})) window_.presentFrame(std::move(frame));
}

bool ClickThroughWindow::presentSample(std::shared_ptr<const SampleBuffer> sample) {
  if (std::dynamic_pointer_cast<const holes::SeeThroughFrame>(sample)) return window_.showThrough();
  auto frame = std::dynamic_pointer_cast<const stream::Frame>(std::move(sample));
  if (!frame) return false;
  waitingFrames_.push_back(std::move(frame));
  if (*updateIsPosted_ || appearance().label)
    updateLater();
  else
    update();
  return true;
}

void ClickThroughWindow::forgetSamples() {
  waitingFrames_.clear();
  window_.forgetFrames();
}

OverlayAppearance ClickThroughWindow::appearance() const {
  const views::OverlayContent content = content_ ? describe(*content_) : views::OverlayContent{};
  const double scale = xcb::scaleAt(frame_, surroundings_.screens.geometries());
  return appearanceOf(content, backgroundColor_, window_.frame().height, scale);
}

}  // namespace platform::linux::cover
