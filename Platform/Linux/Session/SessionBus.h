// The way in over D-Bus: one instance owns the name, and others hand it their commands.
//
// A bus that dies and comes back is joined anew, for whoever owned the name before.
// The interface has one method, `Run`: the words of a command in, an exit status and a text out; and one signal,
// `Question`: the user is being asked something, so a reply may be long in coming.
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
