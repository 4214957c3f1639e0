// The way in over D-Bus: one instance owns the name, and others hand it their commands.
//
// The interface has one method, `Run`: the words of a command in, an exit status and a text out.
// Threads: main thread only.
#pragma once

#include <QDBusVirtualObject>
#include <memory>

#include "Platform/RemoteControl.h"

namespace platform::x11 {

class SessionBus final : public RemoteControl {
 public:
  SessionBus();
  ~SessionBus() override;
  SessionBus(const SessionBus&) = delete;
  SessionBus& operator=(const SessionBus&) = delete;

  Claim claim(Handler handler) override;

 private:
  class Object;
  std::unique_ptr<Object> object_;
};

}  // namespace platform::x11
