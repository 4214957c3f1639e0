// Both notification centres. Observers are held weakly.
#import <AppKit/AppKit.h>

#import "Tests/Mac/Fakes/Bridge.h"
#import "Tests/Mac/Fakes/World.h"

NSNotificationName const NSApplicationDidChangeScreenParametersNotification =
    @"NSApplicationDidChangeScreenParametersNotification";

namespace {

struct Observation {
  __weak id observer;
  SEL action;
  std::string name;
};

}  // namespace

@implementation NSNotificationCenter {
 @protected
  std::vector<Observation> _observations;
}
+ (NSNotificationCenter*)defaultCenter {
  EXPECT_MAIN_THREAD();
  return fake::sharedObject(self);
}
- (void)addObserver:(id)observer selector:(SEL)action name:(NSNotificationName)name object:(id)object {
  EXPECT_MAIN_THREAD();
  if (object != nil || name == nil) fake::misuse("an observation of one sender, or of everything");
  _observations.push_back({observer, action, name.text});
}
- (void)post:(const std::string&)name {
  NSNotification* notification = [[NSNotification alloc] init];
  for (const auto& observation : std::vector(_observations)) {
    id observer = observation.observer;
    if (observer != nil && observation.name == name) fake::sendAction(observer, observation.action, notification);
  }
}
@end

@implementation NSDistributedNotificationCenter
+ (NSDistributedNotificationCenter*)defaultCenter {
  EXPECT_MAIN_THREAD();
  return fake::sharedObject(self);
}
- (void)addObserver:(id)observer selector:(SEL)action name:(NSNotificationName)name object:(id)object {
  fake::misuse("notifications that wait until the application is in front, which it never is");
}
- (void)addObserver:(id)observer
              selector:(SEL)action
                  name:(NSNotificationName)name
                object:(NSString*)object
    suspensionBehavior:(NSNotificationSuspensionBehavior)behaviour {
  if (behaviour != NSNotificationSuspensionBehaviorDeliverImmediately) fake::misuse("notifications that wait");
  [super addObserver:observer selector:action name:name object:object];
}
@end

@interface NSNotificationCenter (Fake)
- (void)post:(const std::string&)name;
@end

namespace fake {

void World::changeScreens() {
  event([] { [[NSNotificationCenter defaultCenter] post:NSApplicationDidChangeScreenParametersNotification.text]; });
}

void World::postFromLoginWindow(const std::string& name) {
  event([&] { [[NSDistributedNotificationCenter defaultCenter] post:name]; });
}

}  // namespace fake
