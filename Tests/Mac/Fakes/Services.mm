// The permission, the login item, the process and its bundle.
#import <CoreGraphics/CoreGraphics.h>
#import <ServiceManagement/ServiceManagement.h>

#import "Tests/Mac/Fakes/Bridge.h"
#import "Tests/Mac/Fakes/World.h"

bool CGPreflightScreenCaptureAccess(void) {
  EXPECT_MAIN_THREAD();
  fake::record("CGPreflightScreenCaptureAccess");
  ++fake::world().preflights;
  return fake::world().captureAllowed;
}

bool CGRequestScreenCaptureAccess(void) {
  EXPECT_MAIN_THREAD();
  fake::record("CGRequestScreenCaptureAccess");
  auto& world = fake::world();
  ++world.permissionRequests;
  world.captureAllowed |= world.grantsOnRequest;
  return world.captureAllowed;
}

CFDictionaryRef CGSessionCopyCurrentDictionary(void) {
  EXPECT_MAIN_THREAD();
  fake::record("CGSessionCopyCurrentDictionary");
  if (!fake::world().hasSession) return nullptr;
  NSString* key = @"CGSSessionScreenIsLocked";
  NSNumber* value = [NSNumber numberOfTruth:YES];
  // An open session does not name the lock at all.
  NSDictionary* session = [NSDictionary dictionaryWithObjects:&value
                                                      forKeys:&key
                                                        count:fake::world().sessionSaysLocked ? 1 : 0];
  return (__bridge_retained CFDictionaryRef)session;
}

CGWindowLevel CGShieldingWindowLevel(void) {
  EXPECT_MAIN_THREAD();
  fake::record("CGShieldingWindowLevel");
  return 2147483628;
}

@implementation SMAppService
+ (SMAppService*)mainAppService {
  EXPECT_MAIN_THREAD();
  return fake::sharedObject(self);
}
- (SMAppServiceStatus)status {
  EXPECT_MAIN_THREAD();
  return static_cast<SMAppServiceStatus>(fake::world().loginItemStatus);
}
- (BOOL)change:(SMAppServiceStatus)status error:(NSError**)error {
  auto& world = fake::world();
  if (!world.loginItemFailure) {
    world.loginItemStatus = status;
    return YES;
  }
  // An error may be left out.
  if (!world.loginItemFailure->empty()) *error = [NSError errorOf:*world.loginItemFailure];
  return NO;
}
- (BOOL)registerAndReturnError:(NSError**)error {
  EXPECT_MAIN_THREAD();
  return [self change:SMAppServiceStatusEnabled error:error];
}
- (BOOL)unregisterAndReturnError:(NSError**)error {
  EXPECT_MAIN_THREAD();
  return [self change:SMAppServiceStatusNotRegistered error:error];
}
@end

@implementation NSProcessInfo
+ (NSProcessInfo*)processInfo {
  return fake::sharedObject(self);
}
- (NSDictionary<NSString*, NSString*>*)environment {
  std::vector<NSString*> keys;
  std::vector<NSString*> values;
  for (const auto& [key, value] : fake::world().environment) {
    keys.push_back([NSString stringOf:key]);
    values.push_back([NSString stringOf:value]);
  }
  return [NSDictionary dictionaryWithObjects:values.data() forKeys:keys.data() count:keys.size()];
}
@end

@implementation NSBundle
+ (NSBundle*)mainBundle {
  return fake::sharedObject(self);
}
- (NSString*)bundleIdentifier {
  const auto& identifier = fake::world().bundleIdentifier;
  return identifier ? [NSString stringOf:*identifier] : nil;
}
@end

NSString* NSHomeDirectory(void) {
  fake::record("NSHomeDirectory");
  return [NSString stringOf:fake::world().home];
}
