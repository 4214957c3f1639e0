// The lock screen of a Linux desktop: the login manager, the screen savers of the session bus, and the X server's own.
//
// Monitors that merely save power (DPMS) do not count: they hide what is beneath anyway, and announce nothing.
// Threads: main thread only; observers are called from the event loop. Ownership: keeps references to everything that
// it is given.
#pragma once

#include <QObject>
#include <functional>
#include <memory>
#include <vector>

#include "Platform/Linux/Scene/Scene.h"
#include "Platform/Linux/Scene/WindowList.h"
#include "Platform/Linux/Session/LockSigns.h"
#include "Platform/Linux/Session/LoginSession.h"
#include "Platform/Linux/Session/ScreenSavers.h"
#include "Platform/Linux/Xcb/ServerScreenSaver.h"
#include "Platform/RunLoop.h"
#include "Platform/SessionLock.h"

namespace platform::linux::session {

class DesktopSessionLock final : public SessionLock {
 public:
  // `patience`: how many seconds a requested locker may take to appear.
  DesktopSessionLock(xcb::Connection& connection, const scene::Scene& scene, scene::WindowList& windows,
                     RunLoop& runLoop, double patience = 10);
  ~DesktopSessionLock() override;
  DesktopSessionLock(const DesktopSessionLock&) = delete;
  DesktopSessionLock& operator=(const DesktopSessionLock&) = delete;

  [[nodiscard]] bool isLocked() const override { return isLocked_; }
  void observeChanges(std::function<void()> observer) override { observers_.push_back(std::move(observer)); }

  void handle(const xcb_generic_event_t& event);
  // Call it after each batch of events, once the window list has seen them.
  void settle();

 private:
  void requested();
  void update();

  const scene::Scene& scene_;
  scene::WindowList& windowList_;
  RunLoop& runLoop_;
  double patience_;
  std::vector<std::function<void()>> observers_;
  LockSigns signs_;
  bool isLocked_ = false;
  std::shared_ptr<DelayedTask> patienceEnds_;
  QObject context_;
  xcb::ServerScreenSaver serverSaver_;
  ScreenSavers screenSavers_;
  LoginSession loginSession_;
};

}  // namespace platform::linux::session
