#import <AppKit/AppKit.h>

#import "Tests/Mac/Fakes/Bridge.h"
#import "Tests/Mac/Fakes/World.h"

@interface NSScreen () {
 @public
  fake::ScreenSetup setup;
}
@end

@implementation NSScreen

+ (NSScreen*)screenOf:(const fake::ScreenSetup&)setup {
  NSScreen* made = [[NSScreen alloc] init];
  made->setup = setup;
  return made;
}
+ (NSArray<NSScreen*>*)screens {
  EXPECT_MAIN_THREAD();
  std::vector<id> all;
  for (const auto& setup : fake::world().screens) all.push_back([self screenOf:setup]);
  return [NSArray arrayOf:all];
}
+ (NSScreen*)mainScreen {
  EXPECT_MAIN_THREAD();
  const auto& world = fake::world();
  return world.mainScreen ? [self screenOf:world.screens.at(*world.mainScreen)] : nil;
}
- (NSRect)frame {
  EXPECT_MAIN_THREAD();
  return fake::cgRect(setup.frame);
}
- (NSDictionary<NSDeviceDescriptionKey, id>*)deviceDescription {
  EXPECT_MAIN_THREAD();
  if (!setup.number) return @{};
  return @{@"NSScreenNumber" : [NSNumber numberWithLongLong:*setup.number]};
}
- (CGFloat)backingScaleFactor {
  EXPECT_MAIN_THREAD();
  return setup.scale;
}

@end
