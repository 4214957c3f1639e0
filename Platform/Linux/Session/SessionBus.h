// The entrance over D-Bus: one instance owns the name, and others send it their commands.
//
// The owner of the name rejoins a bus that dies and comes back. The interface has one method, `Run` (the words of a
// command in, an exit status and a text out), and one signal, `Question` (the user is being asked something, so a reply
// may take long).
// Threads: main thread only.
#pragma once

#include <QDBusConnection>
#include <QDBusVirtualObject>
#include <memory>
#include <optional>

#include "Platform/Linux/Session/SessionBusReturn.h"
#include "Platform/RemoteControl.h"

namespace platform::linux::session {

class SessionBus final : public RemoteControl {
 public:
  SessionBus();
  ~SessionBus() override;
  SessionBus(const SessionBus&) = delete;
  SessionBus& operator=(const SessionBus&) = delete;

  Claim claim(Handler handler) override;
  void announceQuestion() override;

 private:
  class Object;

  bool own(const QDBusConnection& bus);

  QDBusConnection bus_;
  std::unique_ptr<Object> object_;
  std::optional<SessionBusReturn> busReturn_;
};

}  // namespace platform::linux::session
