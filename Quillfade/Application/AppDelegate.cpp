#include "Quillfade/Application/AppDelegate.h"

#include <string>

#include "Quillfade/Basics/Demonstration.h"
#include "Quillfade/Basics/Fatal.h"
#include "Quillfade/Basics/Identity.h"
#include "Quillfade/Cover/ExclusionRules.h"
#include "Quillfade/Settings/UserRules.h"

namespace quillfade {

AppDelegate::AppDelegate(platform::Platform& platform)
    : platform_(platform),
      overlay_(std::make_shared<OverlayController>(platform)),
      selector_(std::make_shared<RegionSelector>(platform)),
      alerts_(platform) {}

platform::Application& AppDelegate::application() const {
  auto* application = platform_.sharedApplication();
  if (application == nullptr) fatalError("there is no shared application object");
  return *application;
}

// Each step relies on the ones before it.
void AppDelegate::applicationDidFinishLaunching() {
  application().setActivationPolicy(platform::ActivationPolicy::accessory);
  overlay_->setOnStateChange([weakDelegate = weak_from_this()] {
    if (const auto delegate = weakDelegate.lock()) delegate->updateStatusButton();
  });
  // A cover hides whatever the live copy leaves out, even where that could be a lock screen by its looks.
  platform_.windows().setMayOverlap([&platform = platform_](const platform::CaptureWindow& window) {
    return isExcluded(judge(window, platform.screens().main().value_or(platform::Screen{}),
                            platform.process().bundleIdentifier(), userRules(platform.rulesFile()).windows));
  });
  createStatusItem();
  bindHotKeys();
  platform_.screens().observeChanges([weakDelegate = weak_from_this()] {
    if (const auto delegate = weakDelegate.lock()) delegate->screensChanged();
  });
  platform_.sessionLock().observeChanges([weakDelegate = weak_from_this()] {
    if (const auto delegate = weakDelegate.lock()) delegate->sessionLockChanged();
  });
  updateStatusButton();
  overlay_->restore();
  startDemonstration();
  welcome();
}

void AppDelegate::createStatusItem() {
  auto& bar = platform_.statusBar();
  statusItem_ = bar.makeStatusItem(platform::StatusBar::squareLength);
  if (auto* button = statusItem_ ? statusItem_->button() : nullptr) {
    button->setImage(bar.systemSymbol("pencil", std::string{applicationName}));
    if (const auto image = button->image()) image->setTemplate(true);
    button->setToolTip(std::string{applicationName});
  }
  const auto menu = bar.makeMenu();
  menu->setDelegate(weak_from_this());
  if (!statusItem_) fatalError("the status bar gave no status item");
  statusItem_->setMenu(menu);
}

AppDelegate::Command AppDelegate::commandOf(HotKeyCommand name) {
  switch (name) {
    case HotKeyCommand::toggle:
      return &AppDelegate::toggleCover;
    case HotKeyCommand::peek:
      return &AppDelegate::peek;
    case HotKeyCommand::selectArea:
      return &AppDelegate::selectArea;
    case HotKeyCommand::wholeScreen:
      return &AppDelegate::wholeScreen;
  }
  fatalError("there is no such hot key");
}

void AppDelegate::bindHotKeys() {
  const auto manager = std::make_shared<HotKeyManager>(platform_.hotKeys());
  hotKeyTable_ = userRules(platform_.rulesFile()).hotKeys;
  for (const HotKey& key : hotKeyTable_) {
    const auto& [keyCode, modifiers] = key.combination;
    const auto reference = manager->bind(keyCode, modifiers, [weakDelegate = weak_from_this(), name = key.command] {
      if (const auto delegate = weakDelegate.lock()) commandOf(name)(*delegate);
    });
    hotKeyReferences_.push_back(reference);
  }
  hotKeys_ = manager;
}

std::vector<HotKeyState> AppDelegate::hotKeyStates() const {
  std::vector<HotKeyState> states;
  for (std::size_t i = 0; i < hotKeyReferences_.size(); ++i) {
    const auto reference = hotKeyReferences_[i];
    states.push_back(hotKeyState(hotKeyTable_.at(i), reference && platform_.hotKeys().isHeld(*reference)));
  }
  return states;
}

void AppDelegate::startDemonstration() {
  if (!wantsDemonstration(platform_.process())) return;
  overlay_->setRegion(demonstrationRegion);
  overlay_->setEnabled(true);
}

// Tells whoever starts the application for the first time where to find it.
void AppDelegate::welcome() {
  std::string text = translated("Look for the pencil: its menu offers everything.");
  const HotKeyState toggle = hotKeyStates().front();
  if (toggle.isBound)
    text += '\n' + translated("This key hides annotations, or shows them again: ") + toggle.combination;
  platform_.notifications().showOnce("welcomed", {translated("Quillfade is in the tray"), text});
}

std::string AppDelegate::translated(std::string_view english) const { return platform_.texts().translated(english); }

void AppDelegate::screensChanged() { overlay_->screensChanged(); }

void AppDelegate::sessionLockChanged() {
  if (platform_.sessionLock().isLocked()) selector_->cancel();
  overlay_->sessionLockChanged();
}

}  // namespace quillfade
