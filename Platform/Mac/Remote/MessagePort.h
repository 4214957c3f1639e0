// Message ports of Core Foundation: one to receive on, and sending to one by its name.
//
// Threads: main thread only; messages are received there, from the main run loop, in its common modes.
#pragma once

#import <CoreFoundation/CoreFoundation.h>

#include <memory>
#include <string>

namespace platform::mac::remote {

struct Released {
  void operator()(CFTypeRef object) const { CFRelease(object); }
};
using OwnedPort = std::unique_ptr<__CFMessagePort, Released>;

// Null when nobody has a port of that name.
[[nodiscard]] OwnedPort remotePort(const std::string& name);
// False when the message could not be handed over.
bool sendMessage(CFMessagePortRef port, SInt32 number, const std::string& content);

// Null when the name is taken. `receive` gets `context` with each message, until the port is invalidated.
[[nodiscard]] OwnedPort makePort(const std::string& name, CFMessagePortCallBack receive, void* context);
// Of a received message.
[[nodiscard]] std::string contentOf(CFDataRef data);

}  // namespace platform::mac::remote
