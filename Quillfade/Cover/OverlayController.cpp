#include "Quillfade/Cover/OverlayController.h"

#include <algorithm>
#include <utility>

#include "Quillfade/Basics/RectText.h"
#include "Quillfade/Cover/CoverArea.h"
#include "Quillfade/Settings/StoredRegion.h"
#include "Quillfade/Settings/StoredValues.h"

namespace quillfade {
namespace {

constexpr const char* enabledKey = "enabled";
constexpr const char* styleKey = "style";
constexpr const char* outlineKey = "outline";

CoverStyle loadStyle(const platform::Settings& settings) {
  const auto raw = asInteger(settings.object(styleKey));
  return raw ? coverStyle(*raw).value_or(CoverStyle::live) : CoverStyle::live;
}

}  // namespace

OverlayController::OverlayController(platform::Platform& platform)
    : platform_(platform),
      defaults_(platform.settings()),
      style_(loadStyle(defaults_)),
      showsOutline_(asBool(defaults_.object(outlineKey)).value_or(true)) {
  region_ = storedRegion(defaults_.object(regionKey));
}

void OverlayController::restore() {
  if (readBool(defaults_.object(enabledKey)) && region_) setEnabled(true);
}

void OverlayController::setEnabled(bool on) {
  cancelPeek();
  const bool accepted = on && region_ && std::ranges::any_of(platform_.screens().all(), [&](const auto& screen) {
                          return coveredPart(*region_, screen).has_value();
                        });
  isEnabled_ = accepted;
  defaults_.set(enabledKey, accepted);
  if (accepted) {
    // No `hideAll` first: a cover that is on may be off screen, as after a peek that was just cancelled. If one is
    // already there, the second lies over it and shows the same until the next `hideAll`, so the screen beneath is
    // never bare in between.
    present();
  } else {
    hideAll();
  }
  notifyStateChange();
}

void OverlayController::setRegion(const platform::Rect& rect) {
  region_ = rect;
  defaults_.set(regionKey, rectText(rect));
  if (!isEnabled_) return;
  hideAll();
  present();
}

void OverlayController::setStyle(CoverStyle newStyle) {
  if (newStyle == style_) return;
  if (isEnabled_) {
    hideAll();
    assignStyle(newStyle);
    present();
  } else {
    assignStyle(newStyle);
  }
  notifyStateChange();
}

void OverlayController::assignStyle(CoverStyle newStyle) {
  style_ = newStyle;
  defaults_.set(styleKey, rawValue(newStyle));
}

void OverlayController::setShowsOutline(bool shows) {
  showsOutline_ = shows;
  defaults_.set(outlineKey, shows);
}

void OverlayController::peek(double seconds) {
  if (!isEnabled_) return;
  if (peekWorkItem_) peekWorkItem_->cancel();
  hideAll();
  peekWorkItem_ = platform_.runLoop().after(seconds, [weakController = weak_from_this()] {
    const auto controller = weakController.lock();
    if (!controller || !controller->isEnabled_) return;
    controller->peekWorkItem_ = nullptr;
    controller->present();
  });
}

void OverlayController::cancelPeek() {
  if (peekWorkItem_) peekWorkItem_->cancel();
  peekWorkItem_ = nullptr;
}

void OverlayController::screensChanged() {
  if (!isEnabled_) return;
  hideAll();
  present();
}

void OverlayController::sessionLockChanged() {
  if (!isEnabled_) return;
  hideAll();
  // Whatever else keeps the cover away for now brings it back itself.
  if (!peekWorkItem_ && !isMenuOpen_) present();
}

void OverlayController::setMenuOpen(bool open) {
  isMenuOpen_ = open;
  if (!isEnabled_) return;
  if (open) {
    hideAll();
  } else {
    present();
  }
}

void OverlayController::notifyStateChange() const {
  if (onStateChange_) onStateChange_();
}

}  // namespace quillfade
