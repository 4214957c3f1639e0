// The session bus's return: rejoins a bus that dies and comes back at its address.
//
// The toolkit keeps its own connection to the session bus for the life of the process, even when the bus has died, so
// users of the bus must be told of a new connection.
// Threads: main thread only; the callback comes from the event loop.
// Ownership: the new connection is dropped with this object, or for the next one.
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
  // The bus library starts it when the bus is gone.
  std::optional<QTimer> query_;
};

}  // namespace platform::linux::session
