// Commands from outside, through message ports of Core Foundation.
//
// A port's name has one owner in a login session, and loses it however that process ends: so there is one instance. A
// message goes to that owner alone, and who sends it knows whether it arrived. Distributed notifications have none of
// these; Apple events would ask the user for a permission, and an XPC service would have to be installed.
// Requests are served while an alert or a menu is open, too.
// Threads: main thread only.
#pragma once

#import <CoreFoundation/CoreFoundation.h>

#include <memory>
#include <string>
#include <vector>

#include "Platform/RemoteControl.h"

namespace platform::mac::remote {

class RemoteControl final : public platform::RemoteControl {
 public:
  RemoteControl() = default;
  ~RemoteControl() override;
  RemoteControl(const RemoteControl&) = delete;
  RemoteControl& operator=(const RemoteControl&) = delete;

  Claim claim(Handler handler) override;
  void announceQuestion() override;

 private:
  struct Desk;

  std::shared_ptr<Desk> desk_;
  CFMessagePortRef port_ = nullptr;
};

}  // namespace platform::mac::remote
