#include "Platform/Mac/Tray/Menu.h"

#include <utility>

#include "Platform/Mac/Foundation/Bridge.h"

@interface QLFMenuDelegate : NSObject <NSMenuDelegate>
- (instancetype)initWithDelegate:(std::weak_ptr<platform::MenuDelegate>)delegate
                            menu:(std::weak_ptr<platform::Menu>)menu;
@end

@implementation QLFMenuDelegate {
  std::weak_ptr<platform::MenuDelegate> _delegate;
  std::weak_ptr<platform::Menu> _menu;
}

- (instancetype)initWithDelegate:(std::weak_ptr<platform::MenuDelegate>)delegate
                            menu:(std::weak_ptr<platform::Menu>)menu {
  self = [super init];
  if (self) {
    _delegate = std::move(delegate);
    _menu = std::move(menu);
  }
  return self;
}

- (void)menuWillOpen:(NSMenu*)opened {
  const auto delegate = _delegate.lock();
  const auto menu = _menu.lock();
  if (delegate && menu) delegate->menuWillOpen(*menu);
}

- (void)menuDidClose:(NSMenu*)closed {
  const auto delegate = _delegate.lock();
  const auto menu = _menu.lock();
  if (delegate && menu) delegate->menuDidClose(*menu);
}

@end

// The target of one menu item; the item keeps it alive as its represented object.
@interface QLFMenuTarget : NSObject
- (instancetype)initWithItem:(std::weak_ptr<const platform::MenuItem>)item;
- (void)perform:(id)sender;
@end

@implementation QLFMenuTarget {
  std::weak_ptr<const platform::MenuItem> _item;
}

- (instancetype)initWithItem:(std::weak_ptr<const platform::MenuItem>)item {
  self = [super init];
  if (self) _item = std::move(item);
  return self;
}

- (void)perform:(id)sender {
  if (const auto item = _item.lock()) item->action(*item);
}

@end

namespace platform::mac::tray {
namespace {

static_assert(modifierflags::control == NSEventModifierFlagControl);
static_assert(modifierflags::option == NSEventModifierFlagOption);
static_assert(modifierflags::command == NSEventModifierFlagCommand);
static_assert(static_cast<NSInteger>(ControlState::off) == NSControlStateValueOff);
static_assert(static_cast<NSInteger>(ControlState::on) == NSControlStateValueOn);

void setTarget(NSMenuItem* made, const std::shared_ptr<const MenuItem>& item) {
  QLFMenuTarget* target = [[QLFMenuTarget alloc] initWithItem:item];
  made.representedObject = target;
  made.target = target;
}

}  // namespace

std::shared_ptr<Menu> Menu::make() {
  const std::shared_ptr<Menu> made{new Menu()};
  made->self_ = made;
  return made;
}

void Menu::setDelegate(std::weak_ptr<MenuDelegate> delegate) {
  delegate_ = [[QLFMenuDelegate alloc] initWithDelegate:std::move(delegate) menu:self_];
  menu_.delegate = delegate_;
}

void Menu::removeAllItems() {
  [menu_ removeAllItems];
  items_.clear();
}

void Menu::addItem(MenuItem item) { [menu_ addItem:makeItem(std::move(item))]; }

NSMenuItem* Menu::makeItem(MenuItem value) {
  if (value.isSeparator) return [NSMenuItem separatorItem];
  const auto item = std::make_shared<const MenuItem>(std::move(value));
  items_.push_back(item);
  NSMenuItem* made = [[NSMenuItem alloc] initWithTitle:foundation::nsString(item->title)
                                                action:item->action ? @selector(perform:) : nullptr
                                         keyEquivalent:foundation::nsString(item->keyEquivalent)];
  if (item->action) setTarget(made, item);
  if (item->keyEquivalentModifierMask) made.keyEquivalentModifierMask = *item->keyEquivalentModifierMask;
  if (item->isEnabled) made.enabled = *item->isEnabled;
  made.state = static_cast<NSControlStateValue>(item->state.value_or(ControlState::off));
  made.tag = item->tag;
  if (!item->submenu.empty()) {
    NSMenu* submenu = [[NSMenu alloc] init];
    for (const MenuItem& child : item->submenu) [submenu addItem:makeItem(child)];
    made.submenu = submenu;
  }
  return made;
}

}  // namespace platform::mac::tray
