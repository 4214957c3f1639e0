#include "Platform/Linux/Cover/OverlayStage.h"

#include <chrono>
#include <utility>

#include "Platform/Linux/Toolkit/CompositingManager.h"

namespace platform::linux::cover {

OverlayStage::OverlayStage(xcb::Connection& connection, const scene::Scene& scene, scene::WindowList& windows,
                           RunLoop& runLoop)
    : connection_(connection), scene_(scene), windowList_(windows), runLoop_(runLoop), echo_(connection, runLoop) {}

OverlayStage::~OverlayStage() {
  if (again_) again_->cancel();
}

void OverlayStage::add(OverlayWindow& window) { windows_.push_back(&window); }

void OverlayStage::remove(OverlayWindow& window) {
  keeper_.release(window.id());
  awaited_.erase(window.id());
  heldBack_.erase(window.id());
  std::erase(windows_, &window);
}

void OverlayStage::orderFront(OverlayWindow& window) {
  const bool comes = !window.isShown();
  const bool isHeldBack = comes && window.canBeSeenThrough() && managerMissesFirstPictures();
  if (comes) awaited_.insert(window.id());
  if (isHeldBack) window.holdBack();
  window.orderFront(scene::lowestLocker(scene::viewableStack(scene_, windowList_)));
  keeper_.keepOnTop(window.id());
  if (isHeldBack) releaseOnceKnown(window);
}

// wlroots never shows a window whose first picture reaches it before the news that the window is there: Xwayland sends
// the two on separate ways, and no second picture until the first was shown.
bool OverlayStage::managerMissesFirstPictures() {
  if (!managerMissesFirstPictures_) {
    const auto name = toolkit::compositingManager(connection_);
    if (name && !name->empty()) managerMissesFirstPictures_ = *name == "wlroots wm";
  }
  return managerMissesFirstPictures_.value_or(false);
}

void OverlayStage::releaseOnceKnown(OverlayWindow& window) {
  const std::uint64_t number = heldBack_[window.id()] = ++questions_;
  echo_.ask([this, &window, id = window.id(), number] {
    const auto found = heldBack_.find(id);
    if (found == heldBack_.end() || found->second != number) return;
    heldBack_.erase(found);
    window.release();
    connection_.flush();
  });
}

void OverlayStage::setMayOverlap(std::function<bool(const CaptureWindow&)> mayOverlap) {
  windowList_.setMayOverlap(std::move(mayOverlap));
  reconsider();
}

void OverlayStage::reconsider() {
  mayHaveChanged_ = false;
  keepOnTop();
  connection_.flush();
}

void OverlayStage::handle(const xcb_generic_event_t& event) {
  mayHaveChanged_ = true;
  echo_.handle(event);
  if (xcb::eventType(event) == XCB_MAP_NOTIFY) awaited_.erase(xcb::eventAs<xcb_map_notify_event_t>(event).window);
  for (auto* window : windows_) window->handle(event);
}

void OverlayStage::settle() {
  if (std::exchange(mayHaveChanged_, false)) keepOnTop();
}

void OverlayStage::keepOnTop() {
  if (again_) again_->cancel();
  again_ = nullptr;
  if (windows_.empty()) return;
  const auto now = scene::StackKeeper::TimePoint::clock::now();
  const auto decision = keeper_.decide(scene::viewableStack(scene_, windowList_), now);
  for (const auto& move : decision.moves) apply(connection_, move);
  if (decision.again) {
    again_ = runLoop_.after(std::chrono::duration<double>(*decision.again - now).count(), [this] {
      keepOnTop();
      connection_.flush();
    });
  }
}

}  // namespace platform::linux::cover
