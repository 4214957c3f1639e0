#include "Platform/Mac/Toolkit/Application.h"

#include <utility>

@interface QLFApplicationDelegate : NSObject <NSApplicationDelegate>
- (instancetype)initWithDelegate:(std::weak_ptr<platform::ApplicationDelegate>)delegate;
@end

@implementation QLFApplicationDelegate {
  std::weak_ptr<platform::ApplicationDelegate> _delegate;
}

- (instancetype)initWithDelegate:(std::weak_ptr<platform::ApplicationDelegate>)delegate {
  self = [super init];
  if (self) _delegate = std::move(delegate);
  return self;
}

- (void)applicationDidFinishLaunching:(NSNotification*)notification {
  if (const auto delegate = _delegate.lock()) delegate->applicationDidFinishLaunching();
}

@end

namespace platform::mac::toolkit {
namespace {

static_assert(static_cast<NSInteger>(ActivationPolicy::regular) == NSApplicationActivationPolicyRegular);
static_assert(static_cast<NSInteger>(ActivationPolicy::accessory) == NSApplicationActivationPolicyAccessory);
static_assert(static_cast<NSInteger>(ActivationPolicy::prohibited) == NSApplicationActivationPolicyProhibited);

}  // namespace

Application::Application() : application_([NSApplication sharedApplication]) {}

void Application::setDelegate(std::weak_ptr<ApplicationDelegate> delegate) {
  delegate_ = [[QLFApplicationDelegate alloc] initWithDelegate:std::move(delegate)];
  application_.delegate = delegate_;
}

void Application::setActivationPolicy(ActivationPolicy policy) {
  [application_ setActivationPolicy:static_cast<NSApplicationActivationPolicy>(policy)];
}

void Application::run() {
  @autoreleasepool {
    [application_ run];
  }
}

void Application::activateIgnoringOtherApps() { [application_ activateIgnoringOtherApps:YES]; }

void Application::terminate() { [application_ terminate:nil]; }

}  // namespace platform::mac::toolkit
