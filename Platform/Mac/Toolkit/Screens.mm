#include "Platform/Mac/Toolkit/Screens.h"

#include <utility>

#include "Platform/Mac/Foundation/Bridge.h"

@interface QLFScreenObserver : NSObject
- (instancetype)initWithCallback:(std::weak_ptr<std::function<void()>>)callback;
- (void)screensChanged:(NSNotification*)notification;
@end

@implementation QLFScreenObserver {
  std::weak_ptr<std::function<void()>> _callback;
}

- (instancetype)initWithCallback:(std::weak_ptr<std::function<void()>>)callback {
  self = [super init];
  if (self) _callback = std::move(callback);
  return self;
}

- (void)screensChanged:(NSNotification*)notification {
  if (const auto callback = _callback.lock()) (*callback)();
}

@end

namespace platform::mac::toolkit {
namespace {

std::optional<std::uint32_t> displayID(NSScreen* screen) {
  id number = [screen.deviceDescription objectForKey:@"NSScreenNumber"];
  if (![number isKindOfClass:[NSNumber class]]) return std::nullopt;
  return static_cast<NSNumber*>(number).unsignedIntValue;
}

Screen describe(NSScreen* screen) {
  return {
      .frame = foundation::fromNSRect(screen.frame),
      .displayID = displayID(screen),
      .backingScaleFactor = screen.backingScaleFactor,
  };
}

}  // namespace

Rect fromTopLeft(const Rect& rect, double primaryHeight) {
  return {{rect.origin.x, primaryHeight - rect.origin.y - rect.size.height}, rect.size};
}

double primaryScreenHeight() {
  NSScreen* primary = [NSScreen screens].firstObject;
  return primary != nil ? primary.frame.size.height : 0;
}

std::vector<Screen> Screens::all() const {
  std::vector<Screen> described;
  for (NSScreen* screen in [NSScreen screens]) described.push_back(describe(screen));
  return described;
}

std::optional<Screen> Screens::main() const {
  NSScreen* screen = [NSScreen mainScreen];
  if (screen == nil) return std::nullopt;
  return describe(screen);
}

Point Screens::mouseLocation() const { return foundation::fromNSPoint([NSEvent mouseLocation]); }

void Screens::observeChanges(std::function<void()> observer) {
  const auto callback = std::make_shared<std::function<void()>>(std::move(observer));
  QLFScreenObserver* forwarder = [[QLFScreenObserver alloc] initWithCallback:callback];
  [[NSNotificationCenter defaultCenter] addObserver:forwarder
                                           selector:@selector(screensChanged:)
                                               name:NSApplicationDidChangeScreenParametersNotification
                                             object:nil];
  observations_.push_back({callback, forwarder});
}

}  // namespace platform::mac::toolkit
