#include "Quillfade/Application/AppDelegate.h"

#include <string>

#include "Quillfade/Application/SharedApplication.h"
#include "Quillfade/Basics/Demonstration.h"
#include "Quillfade/Cover/ExclusionRules.h"
#include "Quillfade/Settings/UserRules.h"

namespace quillfade {

AppDelegate::AppDelegate(platform::Platform& platform)
    : platform_(platform),
      overlay_(std::make_shared<OverlayController>(platform)),
      selector_(std::make_shared<RegionSelector>(platform)),
      commands_(std::make_shared<Commands>(platform, overlay_, selector_)),
      statusMenu_(platform, *overlay_, commands_) {}

// Each step relies on the ones before it.
void AppDelegate::applicationDidFinishLaunching() {
  sharedApplication(platform_).setActivationPolicy(platform::ActivationPolicy::accessory);
  overlay_->setOnStateChange([weakDelegate = weak_from_this()] {
    if (const auto delegate = weakDelegate.lock()) delegate->updateStatusButton();
  });
  // A cover hides whatever the live copy leaves out, even a window that could be a lock screen.
  platform_.windows().setMayOverlap([&platform = platform_](const platform::CaptureWindow& window) {
    return isExcluded(judge(window, platform.screens().main().value_or(platform::Screen{}),
                            platform.process().bundleIdentifier(), userRules(platform.rulesFile()).windows));
  });
  statusMenu_.create(weak_from_this());
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

void AppDelegate::bindHotKeys() {
  const auto manager = std::make_shared<HotKeyManager>(platform_.hotKeys());
  hotKeyTable_ = userRules(platform_.rulesFile()).hotKeys;
  statusMenu_.setHotKeys(hotKeyTable_);
  for (const HotKey& key : hotKeyTable_) {
    const auto& [keyCode, modifiers] = key.combination;
    const auto reference = manager->bind(keyCode, modifiers,
                                         [weakCommands = std::weak_ptr(commands_), command = key.command] {
                                           if (const auto commands = weakCommands.lock()) commands->perform(command);
                                         },
                                         {std::string{key.word}, platform_.texts().translated(key.title)});
    hotKeyReferences_.push_back(reference);
  }
  hotKeys_ = manager;
}

std::vector<HotKeyState> AppDelegate::hotKeyStates() const {
  constexpr auto refused = platform::HotKeyStanding::Kind::taken;
  std::vector<HotKeyState> states;
  for (std::size_t i = 0; i < hotKeyReferences_.size(); ++i) {
    const auto reference = hotKeyReferences_[i];
    states.push_back(hotKeyState(
        hotKeyTable_.at(i), reference ? platform_.hotKeys().standing(*reference) : platform::HotKeyStanding{refused}));
  }
  return states;
}

void AppDelegate::startDemonstration() {
  if (!wantsDemonstration(platform_.process())) return;
  overlay_->setRegion(demonstrationRegion);
  overlay_->setEnabled(true);
}

// Tells a first-time user where to find the application.
void AppDelegate::welcome() {
  const platform::Texts& texts = platform_.texts();
  std::string text = texts.translated("Look for the pencil: its menu offers everything.");
  const HotKeyState toggle = hotKeyStates().front();
  if (toggle.isBound())
    text += '\n' + texts.translated("This key hides annotations, or shows them again: ") + toggle.combination;
  platform_.notifications().showOnce("welcomed", {texts.translated("Quillfade is in the tray"), text});
}

void AppDelegate::menuWillOpen(platform::Menu& /*menu*/) {
  overlay_->setMenuOpen(true);
  rebuildMenu();
}

void AppDelegate::menuDidClose(platform::Menu& /*menu*/) { overlay_->setMenuOpen(false); }

void AppDelegate::screensChanged() { overlay_->screensChanged(); }

void AppDelegate::sessionLockChanged() {
  if (platform_.sessionLock().isLocked()) selector_->cancel();
  overlay_->sessionLockChanged();
}

}  // namespace quillfade
