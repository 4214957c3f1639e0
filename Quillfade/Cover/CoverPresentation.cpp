// What a cover that is on shows: one live mirror per screen, or one solid window.

#include <algorithm>

#include "Quillfade/Cover/CoverArea.h"
#include "Quillfade/Cover/CoverWindow.h"
#include "Quillfade/Cover/OverlayController.h"
#include "Quillfade/Cover/ScreenChoice.h"

namespace quillfade {
namespace {

// Leaves the sharing type to the desktop, so that an audience sees the solid cover.
std::unique_ptr<platform::Window> makeSolidWindow(platform::Windows& windows) {
  auto attributes = coverWindowAttributes(windows);
  attributes.backgroundColor = platform::colors::windowBackground;
  return windows.makeWindow(attributes);
}

std::shared_ptr<platform::View> makeSolidView(platform::Views& views, platform::Size size, bool outline) {
  auto view = views.makeView({{0, 0}, size});
  view->setResizeMask(followsWindowSize);
  if (outline) {
    const auto border = views.makeView(view->bounds());
    border->setResizeMask(followsWindowSize);
    border->setLayerBorder(outlineWidth, outlineColor);
    view->addSubview(border);
  }
  return view;
}

// The part of the region on the screen under its centre, or else its part on the first screen.
std::optional<platform::Rect> solidArea(const platform::Rect& region, const platform::Screens& screens) {
  const auto screen = screenByCenter(region, screens);
  if (!screen) return std::nullopt;
  auto area = platform::intersection(region, screen->frame);
  if (!area || area->isEmpty()) {
    const auto all = screens.all();
    area = platform::intersection(region, all.empty() ? platform::Rect{} : all.front().frame);
  }
  return area && isWorthCovering(*area) ? area : std::nullopt;
}

}  // namespace

void OverlayController::present() {
  if (!region_ || platform_.sessionLock().isLocked()) return;
  if (style_ == CoverStyle::solid) {
    presentSolid(*region_);
  } else {
    presentLive(*region_);
  }
}

void OverlayController::presentLive(const platform::Rect& region) {
  for (const auto& screen : platform_.screens().all()) {
    const auto part = coveredPart(region, screen);
    if (!part) continue;
    const auto& mirror = liveMirrors_.emplace_back(std::make_shared<LiveMirror>(platform_));
    mirror->show(*part, showsOutline_);
  }
}

void OverlayController::presentSolid(const platform::Rect& region) {
  const auto area = solidArea(region, platform_.screens());
  if (!area) return;
  if (!solidWindow_) solidWindow_ = makeSolidWindow(platform_.windows());
  solidWindow_->setContentView(makeSolidView(platform_.views(), area->size, showsOutline_));
  solidWindow_->setFrame(*area, true);
  solidWindow_->orderFrontRegardless();
}

void OverlayController::hideAll() {
  for (const auto& mirror : liveMirrors_) mirror->hide();
  liveMirrors_.clear();
  if (solidWindow_) solidWindow_->orderOut();
  solidWindow_ = nullptr;
}

}  // namespace quillfade
