// Menus with AppKit's automatic enabling.
#import <AppKit/AppKit.h>

#include <string>
#include <vector>

#import "Tests/Mac/Fakes/Bridge.h"
#import "Tests/Mac/Fakes/Menus.h"
#import "Tests/Mac/Fakes/World.h"
#import "Tests/Mac/Runtime/Dispatch.h"

@implementation NSMenuItem {
  NSString* _title;
  SEL _action;
  NSString* _key;
  BOOL _isSeparator;
}

+ (NSMenuItem*)separatorItem {
  EXPECT_MAIN_THREAD();
  NSMenuItem* made = [[self alloc] init];
  made->_isSeparator = YES;
  return made;
}
- (instancetype)initWithTitle:(NSString*)title action:(SEL)action keyEquivalent:(NSString*)key {
  EXPECT_MAIN_THREAD();
  if (title == nil || key == nil) fake::misuse("a menu item without a title or a key");
  self = [super init];
  if (!self) return nil;
  _title = title;
  _action = action;
  _key = key;
  _enabled = YES;
  _keyEquivalentModifierMask = NSEventModifierFlagCommand;
  return self;
}
- (void)dealloc {
  EXPECT_MAIN_THREAD();
}

// A menu that enables by itself looks at target and action only, and opens a submenu always.
- (BOOL)canBeChosen {
  if (_isSeparator) return NO;
  if (self.submenu != nil) return YES;
  return _action != nullptr && [self.target respondsToSelector:_action];
}
- (fake::MenuLine)line {
  if (_isSeparator) return {.isSeparator = true};
  fake::MenuLine line{.title = _title.text,
                      .key = _key.text,
                      .mask = self.keyEquivalentModifierMask,
                      .enabledFlag = static_cast<bool>(_enabled),
                      .canBeChosen = static_cast<bool>([self canBeChosen]),
                      .hasAction = _action != nullptr,
                      .state = self.state,
                      .tag = self.tag};
  if (self.submenu != nil) line.submenu = self.submenu.lines;
  return line;
}
- (void)act {
  if (!self.canBeChosen) fake::misuse("a line that cannot be chosen was: " + _title.text);
  fake::sendAction(self.target, _action, self);
}
- (BOOL)hasTitle:(const std::string&)title {
  return !_isSeparator && _title.text == title;
}

@end

@implementation NSMenu {
  __weak id<NSMenuDelegate> _delegate;
  std::vector<NSMenuItem*> _items;
}
- (NSInteger)numberOfItems {
  EXPECT_MAIN_THREAD();
  return static_cast<NSInteger>(_items.size());
}
- (instancetype)init {
  EXPECT_MAIN_THREAD();
  return [super init];
}
- (id<NSMenuDelegate>)delegate {
  EXPECT_MAIN_THREAD();
  return _delegate;
}
- (void)setDelegate:(id<NSMenuDelegate>)delegate {
  EXPECT_MAIN_THREAD();
  _delegate = delegate;
}
- (void)addItem:(NSMenuItem*)item {
  EXPECT_MAIN_THREAD();
  if (item == nil) fake::misuse("addItem: of nothing");
  _items.push_back(item);
}
- (void)removeAllItems {
  EXPECT_MAIN_THREAD();
  _items.clear();
}
- (std::vector<fake::MenuLine>)lines {
  std::vector<fake::MenuLine> lines;
  for (NSMenuItem* item : _items) lines.push_back(item.line);
  return lines;
}
- (NSMenuItem*)itemTitled:(const std::string&)title {
  for (NSMenuItem* item : _items) {
    if ([item hasTitle:title]) return item;
    if (NSMenuItem* inside = [item.submenu itemTitled:title]) return inside;
  }
  return nil;
}
@end

namespace fake {

// Like AppKit, the items of a menu whose delegate is gone do nothing.
void openShownMenu(NSMenu* menu) { [menu.delegate menuWillOpen:menu]; }
void closeShownMenu(NSMenu* menu) { [menu.delegate menuDidClose:menu]; }

void World::openMenu() {
  event([] {
    setTracking(true);
    openShownMenu(shownMenu());
  });
}

void World::closeMenu() {
  event([] {
    closeShownMenu(shownMenu());
    setTracking(false);
  });
}

void World::choose(const std::string& title) {
  openMenu();
  event([&] {
    NSMenu* menu = shownMenu();
    NSMenuItem* chosen = [menu itemTitled:title];
    if (chosen == nil) misuse("there is no line \"" + title + '"');
    setTracking(false);
    if (beliefs.menuClosesBeforeAction) closeShownMenu(menu);
    [chosen act];
    if (!beliefs.menuClosesBeforeAction) closeShownMenu(menu);
  });
}

std::vector<MenuLine> World::menu() const {
  std::vector<MenuLine> lines;
  @autoreleasepool {
    lines = shownMenu().lines;
  }
  return lines;
}

}  // namespace fake
