// The session bus's return: a bus that dies and comes back at its address is joined anew.
//
// The toolkit keeps its own connection to the session bus for as long as the process lives, also when the bus has died;
// so whoever is on the bus has to be told of another one.
// Threads: main thread only; the callback comes from the event loop.
// Ownership: the new connection is dropped with this object, or with the next one.
// Failure: without a bus from the beginning there is none to come back; one that is gone is looked for every second.
#pragma once

#include <QDBusConnection>
#include <QString>
#include <QTimer>
#include <functional>
#include <optional>

namespace platform::linux::session {

class SessionBusReturn {
 public:
  explicit SessionBusReturn(std::function<void(const QDBusConnection&)> returned);
  ~SessionBusReturn();
  SessionBusReturn(const SessionBusReturn&) = delete;
  SessionBusReturn& operator=(const SessionBusReturn&) = delete;

 private:
  void watch(QDBusConnection bus);
  void query();

  std::function<void(const QDBusConnection&)> returned_;
  QString name_;
  // Started by the bus library when the bus is gone.
  std::optional<QTimer> query_;
};

}  // namespace platform::linux::session
