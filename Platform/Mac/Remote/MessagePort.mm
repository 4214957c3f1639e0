#include "Platform/Mac/Remote/MessagePort.h"

#import <Foundation/Foundation.h>

#include "Platform/Mac/Foundation/Bridge.h"

namespace platform::mac::remote {
namespace {

constexpr CFTimeInterval patience = 1;  // seconds until a full queue has to have room

}  // namespace

OwnedPort remotePort(const std::string& name) {
  return OwnedPort{CFMessagePortCreateRemote(nullptr, (__bridge CFStringRef)foundation::nsString(name))};
}

bool sendMessage(CFMessagePortRef port, SInt32 number, const std::string& content) {
  return CFMessagePortSendRequest(port, number, (__bridge CFDataRef)foundation::nsData(content), patience, 0, nullptr,
                                  nullptr) == kCFMessagePortSuccess;
}

OwnedPort makePort(const std::string& name, CFMessagePortCallBack receive, void* context) {
  CFMessagePortContext described{};
  described.info = context;
  OwnedPort port{CFMessagePortCreateLocal(nullptr, (__bridge CFStringRef)foundation::nsString(name), receive,
                                          &described, nullptr)};
  if (!port) return nullptr;
  CFRunLoopSourceRef source = CFMessagePortCreateRunLoopSource(nullptr, port.get(), 0);
  CFRunLoopAddSource(CFRunLoopGetMain(), source, kCFRunLoopCommonModes);
  CFRelease(source);
  return port;
}

std::string contentOf(CFDataRef data) {
  NSData* bytes = (__bridge NSData*)data;
  return bytes.length == 0 ? std::string{} : std::string{static_cast<const char*>(bytes.bytes), bytes.length};
}

}  // namespace platform::mac::remote
