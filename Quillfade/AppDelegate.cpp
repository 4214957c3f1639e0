#include "Quillfade/AppDelegate.h"

#include <array>
#include <string>
#include <utility>

#include "Quillfade/Fatal.h"
#include "Quillfade/Identity.h"

namespace quillfade {
namespace {

constexpr platform::Rect demonstrationRegion{{240, 240}, {520, 340}};

// Virtual key codes: physical positions on the ANSI layout.
constexpr std::uint32_t keyD = 2;
constexpr std::uint32_t keyP = 35;
constexpr std::uint32_t keyA = 0;
constexpr std::uint32_t keyF = 3;
constexpr std::uint32_t controlOptionCommand =
    platform::hotkeymodifiers::control | platform::hotkeymodifiers::option | platform::hotkeymodifiers::command;

}  // namespace

AppDelegate::AppDelegate(platform::Platform& platform)
    : platform_(platform),
      overlay_(std::make_shared<OverlayController>(platform)),
      selector_(std::make_shared<RegionSelector>(platform)) {}

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

void AppDelegate::bindHotKeys() {
  constexpr std::array<std::pair<std::uint32_t, Command>, 4> bindings{{
      {keyD, &AppDelegate::toggleCover},
      {keyP, &AppDelegate::peek},
      {keyA, &AppDelegate::selectArea},
      {keyF, &AppDelegate::wholeScreen},
  }};
  const auto manager = std::make_shared<HotKeyManager>(platform_.hotKeys());
  for (const auto& [keyCode, command] : bindings) {
    manager->bind(keyCode, controlOptionCommand, [weakDelegate = weak_from_this(), command] {
      if (const auto delegate = weakDelegate.lock()) ((*delegate).*command)();
    });
  }
  hotKeys_ = manager;
}

void AppDelegate::startDemonstration() {
  if (platform_.process().environmentVariable("QUILLFADE_DEMO") != "1") return;
  overlay_->setRegion(demonstrationRegion);
  overlay_->setEnabled(true);
}

void AppDelegate::screensChanged() { overlay_->screensChanged(); }

void AppDelegate::sessionLockChanged() {
  if (platform_.sessionLock().isLocked()) selector_->cancel();
  overlay_->sessionLockChanged();
}

}  // namespace quillfade
