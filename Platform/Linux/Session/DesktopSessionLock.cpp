#include "Platform/Linux/Session/DesktopSessionLock.h"

#include <utility>

#include "Platform/Linux/Scene/StackKeeper.h"

namespace platform::linux::session {

DesktopSessionLock::DesktopSessionLock(xcb::Connection& connection, const scene::Scene& scene,
                                       scene::WindowList& windows, RunLoop& runLoop, double patience)
    : scene_(scene),
      windowList_(windows),
      runLoop_(runLoop),
      patience_(patience),
      serverSaver_(connection),
      screenSavers_([this](std::string_view service, bool isActive) {
        signs_.set(service, isActive);
        update();
      }),
      loginSession_({.lockRequested = [this] { requested(); },
                     .unlockRequested =
                         [this] {
                           signs_.unlockRequested();
                           update();
                         },
                     .lockedHintChanged =
                         [this](bool locked) {
                           signs_.set("login session", locked);
                           update();
                         }}) {
  settle();
}

DesktopSessionLock::~DesktopSessionLock() {
  if (patienceEnds_) patienceEnds_->cancel();
}

void DesktopSessionLock::handle(const xcb_generic_event_t& event) { serverSaver_.handle(event); }

void DesktopSessionLock::settle() {
  signs_.set("X server", serverSaver_.isActive());
  if (signs_.isRequested()) {
    signs_.set(LockSigns::lockerWindow, scene::lowestLocker(scene::viewableStack(scene_, windowList_)).has_value());
  }
  update();
}

void DesktopSessionLock::requested() {
  signs_.lockRequested();
  if (patienceEnds_) patienceEnds_->cancel();
  patienceEnds_ = runLoop_.after(patience_, [this] {
    signs_.requestGrewOld();
    update();
  });
  settle();
}

void DesktopSessionLock::update() {
  if (std::exchange(isLocked_, signs_.isLocked()) == isLocked_) return;
  // In a turn of its own: observers take windows off the screen, and events are being handled here.
  QMetaObject::invokeMethod(
      &context_,
      [this] {
        for (const auto& observer : std::vector(observers_)) observer();
      },
      Qt::QueuedConnection);
}

}  // namespace platform::linux::session
