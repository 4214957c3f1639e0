// The application object and the About panel.
#import <AppKit/AppKit.h>

#include <cstdlib>

#import "Tests/Mac/Fakes/Bridge.h"
#import "Tests/Mac/Fakes/World.h"

NSAboutPanelOptionKey const NSAboutPanelOptionApplicationName = @"ApplicationName";
NSAboutPanelOptionKey const NSAboutPanelOptionApplicationVersion = @"ApplicationVersion";
NSAboutPanelOptionKey const NSAboutPanelOptionVersion = @"Version";
NSAboutPanelOptionKey const NSAboutPanelOptionCredits = @"Credits";

@implementation NSNotification
@end

@implementation NSApplication {
  __weak id<NSApplicationDelegate> _delegate;
}
+ (NSApplication*)sharedApplication {
  EXPECT_MAIN_THREAD();
  return fake::sharedObject(self);
}
- (id<NSApplicationDelegate>)delegate {
  EXPECT_MAIN_THREAD();
  return _delegate;
}
- (void)setDelegate:(id<NSApplicationDelegate>)delegate {
  EXPECT_MAIN_THREAD();
  _delegate = delegate;
}
- (BOOL)setActivationPolicy:(NSApplicationActivationPolicy)policy {
  EXPECT_MAIN_THREAD();
  fake::world().policies.push_back(static_cast<int>(policy));
  return YES;
}
- (void)activateIgnoringOtherApps:(BOOL)ignoring {
  EXPECT_MAIN_THREAD();
  if (!ignoring) fake::misuse("an activation that waits for other applications");
  ++fake::world().activations;
  fake::world().isActive = true;
}
- (void)run {
  EXPECT_MAIN_THREAD();
  id<NSApplicationDelegate> delegate = _delegate;
  if (delegate == nil) fake::misuse("the application runs without a delegate");
  fake::event([delegate] { [delegate applicationDidFinishLaunching:[[NSNotification alloc] init]]; });
  if (fake::world().script) fake::world().script();
}
- (NSArray<NSWindow*>*)windows {
  fake::misuse("the application's windows as AppKit lists them");
}
- (void)terminate:(id)sender {
  EXPECT_MAIN_THREAD();
  if (fake::world().beliefs.terminateExits) std::exit(EXIT_SUCCESS);
  fake::world().isTerminated = true;
}
- (void)orderFrontStandardAboutPanelWithOptions:(NSDictionary<NSAboutPanelOptionKey, id>*)options {
  EXPECT_MAIN_THREAD();
  if (options.size != 4) fake::misuse("an unknown option of the About panel");
  NSAttributedString* credits = [options objectForKey:NSAboutPanelOptionCredits];
  const auto text = [options](NSString* key) { return static_cast<NSString*>([options objectForKey:key]).text; };
  fake::world().aboutPanels.push_back({.name = text(NSAboutPanelOptionApplicationName),
                                       .applicationVersion = text(NSAboutPanelOptionApplicationVersion),
                                       .version = text(NSAboutPanelOptionVersion),
                                       .credits = credits.text,
                                       .font = credits.fontWords,
                                       .color = credits.colorWords});
}
@end
