// Message ports. Both ends are in this one process here; a message is data that was copied, and arrives on a later
// turn.
#import <CoreFoundation/CoreFoundation.h>

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#import "Tests/Mac/Fakes/Bridge.h"
#import "Tests/Mac/Fakes/MessagePorts.h"
#import "Tests/Mac/Fakes/World.h"
#import "Tests/Mac/Runtime/Dispatch.h"

@interface FakeLocalPort : NSObject {
 @public
  std::string _name;
  CFMessagePortCallBack _receive;
  void* _context;
  BOOL _isValid;
}
@end

@interface FakeRemotePort : NSObject {
 @public
  __weak FakeLocalPort* _other;
}
- (FakeLocalPort*)validOther;
@end

@interface FakePortSource : NSObject {
 @public
  FakeLocalPort* _port;
}
@end

const CFRunLoopMode kCFRunLoopDefaultMode = (__bridge CFStringRef) @"kCFRunLoopDefaultMode";
const CFRunLoopMode kCFRunLoopCommonModes = (__bridge CFStringRef) @"kCFRunLoopCommonModes";

namespace {

constexpr SInt32 isInvalid = -3;
constexpr SInt32 timedOut = 3;  // of CFRunLoopRunInMode

// By name, as the login session knows them; that keeps none alive.
std::vector<__unsafe_unretained FakeLocalPort*>& names() {
  static auto& ports = *new std::vector<__unsafe_unretained FakeLocalPort*>;
  return ports;
}
// The main run loop keeps each port that it listens to, until the port is invalidated.
std::vector<FakeLocalPort*>& listened() {
  static auto& ports = *new std::vector<FakeLocalPort*>;
  return ports;
}
unsigned long delivered = 0;

FakeLocalPort* portNamed(const std::string& name) {
  const auto found = std::ranges::find_if(names(), [&](FakeLocalPort* port) { return port->_name == name; });
  return found == names().end() ? nil : *found;
}

id objectOf(CFMessagePortRef port) { return (__bridge id)port; }
FakeRemotePort* remoteOf(CFMessagePortRef port) {
  if (![objectOf(port) isKindOfClass:[FakeRemotePort class]]) fake::misuse("a port of another process was expected");
  return objectOf(port);
}
FakeLocalPort* localOf(CFMessagePortRef port) {
  if (![objectOf(port) isKindOfClass:[FakeLocalPort class]]) fake::misuse("a port of this process was expected");
  return objectOf(port);
}
std::string textOf(CFStringRef text) { return ((__bridge NSString*)text).text; }

void receive(FakeLocalPort* port, SInt32 number, const std::string& content) {
  const auto isListenedTo = std::ranges::find(listened(), port) != listened().end();
  if (!port->_isValid || !isListenedTo) return;
  ++delivered;
  NSData* data = [NSData dataWithBytes:content.data() length:content.size()];
  if (port->_receive((__bridge CFMessagePortRef)port, number, (__bridge CFDataRef)data, port->_context) != nullptr)
    fake::misuse("an answer that nobody waits for");
}

}  // namespace

@implementation FakeLocalPort
- (void)dealloc {
  EXPECT_MAIN_THREAD();
  if (_isValid) fake::misuse("a port went before it was invalidated");
}
@end

@implementation FakeRemotePort
- (FakeLocalPort*)validOther {
  FakeLocalPort* other = _other;
  return other != nil && other->_isValid ? other : nil;
}
@end

@implementation FakePortSource
@end

CFMessagePortRef CFMessagePortCreateLocal(CFAllocatorRef allocator, CFStringRef name, CFMessagePortCallBack receive,
                                          CFMessagePortContext* context, Boolean* shouldFreeInfo) {
  EXPECT_MAIN_THREAD();
  fake::record("CFMessagePortCreateLocal");
  if (allocator != nullptr || receive == nullptr || context == nullptr || shouldFreeInfo != nullptr)
    fake::misuse("a port with an unknown argument");
  if (context->version != 0 || context->retain != nullptr || context->release != nullptr)
    fake::misuse("a port that owns its context");
  if (const auto meanwhile = std::exchange(fake::world().beforePort, {})) meanwhile();
  const bool isTaken = portNamed(textOf(name)) != nil;
  if (isTaken) ++fake::world().takenPorts;
  if (fake::world().refusesPorts || isTaken) return nullptr;
  FakeLocalPort* made = [[FakeLocalPort alloc] init];
  made->_name = textOf(name);
  made->_receive = receive;
  made->_context = context->info;
  made->_isValid = YES;
  names().push_back(made);
  return (__bridge_retained CFMessagePortRef)made;
}

CFMessagePortRef CFMessagePortCreateRemote(CFAllocatorRef allocator, CFStringRef name) {
  EXPECT_MAIN_THREAD();
  fake::record("CFMessagePortCreateRemote");
  if (allocator != nullptr) fake::misuse("a port with an unknown argument");
  FakeLocalPort* other = portNamed(textOf(name));
  if (other == nil) return nullptr;
  FakeRemotePort* made = [[FakeRemotePort alloc] init];
  made->_other = other;
  return (__bridge_retained CFMessagePortRef)made;
}

SInt32 CFMessagePortSendRequest(CFMessagePortRef remote, SInt32 number, CFDataRef data, CFTimeInterval sendTimeout,
                                CFTimeInterval receiveTimeout, CFStringRef replyMode, CFDataRef* reply) {
  EXPECT_MAIN_THREAD();
  fake::record("CFMessagePortSendRequest");
  if (!(sendTimeout > 0) || receiveTimeout != 0 || replyMode != nullptr || reply != nullptr)
    fake::misuse("a message that waits for its answer");
  FakeLocalPort* other = [remoteOf(remote) validOther];
  if (other == nil) return isInvalid;
  fake::runLater(0, fake::Modes::common,
                 [other, number, content = ((__bridge NSData*)data).content] { receive(other, number, content); });
  return kCFMessagePortSuccess;
}

Boolean CFMessagePortIsValid(CFMessagePortRef port) {
  EXPECT_MAIN_THREAD();
  fake::record("CFMessagePortIsValid");
  return [remoteOf(port) validOther] != nil ? 1 : 0;
}

void CFMessagePortInvalidate(CFMessagePortRef port) {
  EXPECT_MAIN_THREAD();
  fake::record("CFMessagePortInvalidate");
  FakeLocalPort* local = localOf(port);
  local->_isValid = NO;
  std::erase(names(), local);
  std::erase(listened(), local);
}

CFRunLoopSourceRef CFMessagePortCreateRunLoopSource(CFAllocatorRef allocator, CFMessagePortRef port, CFIndex order) {
  EXPECT_MAIN_THREAD();
  fake::record("CFMessagePortCreateRunLoopSource");
  if (allocator != nullptr || order != 0) fake::misuse("a source with an unknown argument");
  FakePortSource* made = [[FakePortSource alloc] init];
  made->_port = localOf(port);
  return (__bridge_retained CFRunLoopSourceRef)made;
}

CFRunLoopRef CFRunLoopGetMain(void) {
  fake::record("CFRunLoopGetMain");
  return (__bridge CFRunLoopRef)[NSRunLoop mainRunLoop];
}

void CFRunLoopAddSource(CFRunLoopRef loop, CFRunLoopSourceRef source, CFRunLoopMode mode) {
  EXPECT_MAIN_THREAD();
  fake::record("CFRunLoopAddSource");
  if ((__bridge id)loop != [NSRunLoop mainRunLoop] || mode != kCFRunLoopCommonModes)
    fake::misuse("a source of another loop, or in other modes than the common ones");
  listened().push_back(((__bridge FakePortSource*)source)->_port);
}

// The test that waits here stands for another process: the application goes on in this loop.
CFRunLoopRunResult CFRunLoopRunInMode(CFRunLoopMode mode, CFTimeInterval seconds, Boolean returnsAfterSource) {
  EXPECT_MAIN_THREAD();
  fake::record("CFRunLoopRunInMode");
  if (mode != kCFRunLoopDefaultMode || returnsAfterSource == 0) fake::misuse("a loop in an unknown way");
  const auto before = delivered;
  const bool isHandled = fake::runUntil([before] { return delivered != before; }, seconds);
  return isHandled ? kCFRunLoopRunHandledSource : static_cast<CFRunLoopRunResult>(timedOut);
}

void fake::World::sendToPort(const std::string& name, const std::string& content) {
  FakeLocalPort* port = portNamed(name);
  if (port == nil) misuse("nobody has a port " + name);
  runLater(0, Modes::common, [port, content] { receive(port, 0, content); });
}

int fake::liveMessagePorts() { return static_cast<int>(names().size()); }
