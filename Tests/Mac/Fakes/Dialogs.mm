// Alerts, which a test answers, and links.
#import <AppKit/AppKit.h>

#include <utility>

#import "Tests/Mac/Fakes/Bridge.h"
#import "Tests/Mac/Fakes/World.h"
#import "Tests/Mac/Runtime/Dispatch.h"

@implementation NSAlert {
  std::vector<std::string> _buttons;
}
- (NSButton*)addButtonWithTitle:(NSString*)title {
  EXPECT_MAIN_THREAD();
  _buttons.push_back(title.text);
  return [[NSButton alloc] initWithFrame:{.origin = {.x = 0, .y = 0}, .size = {.width = 80, .height = 24}}];
}
- (NSModalResponse)runModal {
  EXPECT_MAIN_THREAD();
  auto& world = fake::world();
  world.alerts.push_back({self.messageText.text, self.informativeText.text, _buttons, world.isActive});
  fake::setTracking(true);
  if (const auto meanwhile = std::exchange(world.duringAlert, nullptr)) meanwhile();
  fake::setTracking(false);
  if (world.alertAnswers.empty()) return NSAlertFirstButtonReturn + static_cast<NSInteger>(_buttons.size()) - 1;
  const auto answer = world.alertAnswers.front();
  world.alertAnswers.erase(world.alertAnswers.begin());
  return answer;
}
@end

@implementation NSWorkspace
+ (NSWorkspace*)sharedWorkspace {
  EXPECT_MAIN_THREAD();
  return fake::sharedObject(self);
}
- (BOOL)openURL:(NSURL*)link {
  EXPECT_MAIN_THREAD();
  fake::world().openedLinks.push_back(link.path);
  return YES;
}
@end
