#include "Platform/Linux/ClickThroughWindow.h"

#include <utility>

#include "Platform/Linux/Desktop/OverlayDescription.h"
#include "Platform/Linux/Desktop/Views.h"

namespace platform::x11 {

namespace {

// The text of a mirror goes with its first frame, which comes within some milliseconds as a rule: until then it would
// only flash, and the toolkit takes long to write the first letters of its life.
constexpr double labelDelay = 0.1;

}  // namespace

ClickThroughWindow::ClickThroughWindow(const Surroundings& surroundings, const WindowAttributes& attributes)
    : surroundings_(surroundings),
      backgroundColor_(attributes.backgroundColor),
      frame_(attributes.contentRect),
      window_(surroundings.connection, toCapturedPixels(frame_, surroundings.screens.geometries()),
              lookOf({}, attributes.backgroundColor, 1, 1)),
      palette_([this] { viewsChanged(); }) {
  surroundings_.stage.add(window_);
}

ClickThroughWindow::~ClickThroughWindow() {
  if (labelTask_) labelTask_->cancel();
  leaveContent();
  surroundings_.stage.remove(window_);
}

void ClickThroughWindow::leaveContent() {
  if (content_) content_->leaveWindow();
}

void ClickThroughWindow::setContentView(std::shared_ptr<View> view) {
  leaveContent();
  content_ = nodeOf(*view);
  content_->enterWindow(*this, frame_.size);
  window_.forgetFrames();
  window_.setLook(look());
}

void ClickThroughWindow::setFrame(const Rect& frame, bool display) {
  frame_ = frame;
  window_.setFrame(toCapturedPixels(frame, surroundings_.screens.geometries()));
  if (content_) content_->setFrame({{0, 0}, frame.size});
  if (display) window_.setLook(look());
}

void ClickThroughWindow::orderFrontRegardless() {
  writeLabelLater();
  window_.setLook(look());
  surroundings_.stage.orderFront(window_);
}

void ClickThroughWindow::writeLabelLater() {
  if (isLabelDue_ || labelTask_) return;
  labelTask_ = surroundings_.runLoop.after(labelDelay, [this] {
    isLabelDue_ = true;
    window_.setLook(look());
  });
}

void ClickThroughWindow::orderOut() { window_.orderOut(); }

void ClickThroughWindow::viewsChanged() {
  if (std::exchange(*updateIsPosted_, true)) return;
  surroundings_.runLoop.post([this, guard = std::weak_ptr(updateIsPosted_)] {
    const auto isPosted = guard.lock();
    if (!isPosted) return;
    *isPosted = false;
    window_.setLook(look());
  });
}

bool ClickThroughWindow::presentSample(std::shared_ptr<const SampleBuffer> sample) {
  auto frame = std::dynamic_pointer_cast<const Frame>(std::move(sample));
  if (!frame) return false;
  // A late frame of an older stream is dropped, which is no failure.
  window_.presentFrame(std::move(frame));
  return true;
}

void ClickThroughWindow::forgetSamples() { window_.forgetFrames(); }

OverlayLook ClickThroughWindow::look() const {
  OverlayContent content = content_ ? describe(*content_) : OverlayContent{};
  if (!isLabelDue_) content.label.reset();
  const double scale = scaleAt(frame_, surroundings_.screens.geometries());
  return lookOf(content, backgroundColor_, window_.frame().height, scale);
}

}  // namespace platform::x11
