// macOS has no way in for commands: the system keeps one instance of a bundle, and hot keys and menu reach it.
//
// Threads: main thread only.
#pragma once

#include "Platform/RemoteControl.h"

namespace platform::mac {

class RemoteControl final : public platform::RemoteControl {
 public:
  Claim claim(Handler /*handler*/) override { return Claim::unavailable; }
  // Nobody waits.
  void announceQuestion() override {}
};

}  // namespace platform::mac
