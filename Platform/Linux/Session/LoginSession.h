// This user's session as the login manager (logind, elogind) keeps it.
//
// Threads: main thread only; callbacks come from the event loop. Failure: without a login manager, or without a
// session, nothing is reported.
#pragma once

#include <QAction>
#include <QDBusConnection>
#include <QObject>
#include <functional>
#include <optional>

#include "Platform/Linux/Session/BusFlag.h"

namespace platform::linux::session {

struct LoginSessionListener {
  // Somebody asked for the session to be locked or unlocked; the desktop's locker has yet to follow.
  std::function<void()> lockRequested;
  std::function<void()> unlockRequested;
  // What the desktop says about the session.
  std::function<void(bool locked)> lockedHintChanged;
};

class LoginSession {
 public:
  explicit LoginSession(LoginSessionListener listener);

 private:
  void find();
  void follow(const QString& path);

  LoginSessionListener listener_;
  QDBusConnection bus_;
  QObject context_;
  QDBusServiceWatcher watcher_;
  // Bus signals can only be connected to named slots. An action's `trigger` is one, and it calls back at once, so
  // requests keep their place among the answers.
  QAction lock_;
  QAction unlock_;
  std::optional<BusFlag> lockedHint_;
};

}  // namespace platform::linux::session
