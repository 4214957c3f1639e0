// The login manager and a screen saver, as programs find them on a bus: both on one connection, both controlled by the
// test.
//
// It serves the bus on a thread and a connection of its own, as other processes would.
// Threads: main thread only. Failure: a name that is taken throws.
#pragma once

#include <QDBusConnection>
#include <QString>
#include <QThread>
#include <memory>
#include <string>

namespace qt {

class LockServices {
 public:
  explicit LockServices(const std::string& busAddress);
  ~LockServices();
  LockServices(const LockServices&) = delete;
  LockServices& operator=(const LockServices&) = delete;

  // The signals that `loginctl lock-session` and `unlock-session` cause.
  void requestLock() { signalFromSession(QStringLiteral("Lock")); }
  void requestUnlock() { signalFromSession(QStringLiteral("Unlock")); }
  void setLockedHint(bool locked);

  // A screen saver under a name of the session bus, such as "org.freedesktop.ScreenSaver".
  void startScreenSaver(const std::string& name);
  void setScreenSaverActive(const std::string& name, bool active);
  // As when the program crashes.
  void stopScreenSaver(const std::string& name);

  // How often clients have asked for the session.
  [[nodiscard]] int sessionRequests() const;
  void stopLoginManager();
  void startLoginManager();

 private:
  class Services;

  void signalFromSession(const QString& name);
  [[nodiscard]] QDBusConnection connection() const { return QDBusConnection(name_); }

  QString name_;
  QThread thread_;
  std::unique_ptr<Services> services_;
};

}  // namespace qt
