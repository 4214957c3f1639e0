// The menu bar's items. The bar keeps an item until it is removed.
#import <AppKit/AppKit.h>

#import "Tests/Mac/Fakes/Bridge.h"
#import "Tests/Mac/Fakes/Menus.h"
#import "Tests/Mac/Fakes/World.h"

@interface NSImage () {
 @public
  std::string name;
  std::string description;
  BOOL isTemplate;
}
@end

@implementation NSImage
+ (instancetype)imageWithSystemSymbolName:(NSString*)name accessibilityDescription:(NSString*)description {
  EXPECT_MAIN_THREAD();
  if (fake::world().missingSymbols.contains(name.text)) return nil;
  NSImage* made = [[self alloc] init];
  made->name = name.text;
  made->description = description.text;
  return made;
}
- (void)setTemplate:(BOOL)templateImage {
  EXPECT_MAIN_THREAD();
  isTemplate = templateImage;
}
@end

@implementation NSStatusBarButton
@end

@interface NSStatusItem () {
 @public
  CGFloat length;
}
- (instancetype)initWithButton:(NSStatusBarButton*)button;
@end

@implementation NSStatusItem
- (instancetype)initWithButton:(NSStatusBarButton*)button {
  self = [super init];
  if (self) _button = button;
  return self;
}
@end

@implementation NSStatusBar {
 @public
  std::vector<NSStatusItem*> _items;
}
+ (NSStatusBar*)systemStatusBar {
  EXPECT_MAIN_THREAD();
  return fake::sharedObject(self);
}
- (NSStatusItem*)statusItemWithLength:(CGFloat)length {
  EXPECT_MAIN_THREAD();
  NSStatusBarButton* button = nil;
  const NSRect square{.origin = {.x = 0, .y = 0}, .size = {.width = 24, .height = 24}};
  if (fake::world().hasStatusButton) button = [[NSStatusBarButton alloc] initWithFrame:square];
  NSStatusItem* item = [[NSStatusItem alloc] initWithButton:button];
  item->length = length;
  _items.push_back(item);
  return item;
}
- (void)removeStatusItem:(NSStatusItem*)item {
  EXPECT_MAIN_THREAD();
  if (std::erase(_items, item) != 1) fake::misuse("an item that is not in the bar was removed");
}
@end

namespace fake {
namespace {

NSStatusItem* shownItem() {
  const auto& items = [NSStatusBar systemStatusBar]->_items;
  return items.empty() ? nil : items.back();
}

}  // namespace

NSMenu* shownMenu() { return shownItem().menu; }

int World::statusItems() const {
  int count = 0;
  @autoreleasepool {
    count = static_cast<int>([NSStatusBar systemStatusBar]->_items.size());
  }
  return count;
}

std::optional<BarLook> World::bar() const {
  std::optional<BarLook> look;
  @autoreleasepool {
    if (NSStatusItem* item = shownItem()) {
      look = BarLook{.length = item->length};
      if (NSImage* image = item.button.image) {
        look->symbol = image->name;
        look->description = image->description;
        look->isTemplate = image->isTemplate;
      }
      if (item.button.toolTip != nil) look->toolTip = item.button.toolTip.text;
    }
  }
  return look;
}

}  // namespace fake
