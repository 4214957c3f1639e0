#include "Quillfade/Cover/LiveMirror.h"

#include <utility>

#include "Quillfade/Basics/Fatal.h"
#include "Quillfade/Basics/Identity.h"
#include "Quillfade/Cover/CaptureSteps.h"
#include "Quillfade/Cover/CoverWindow.h"
#include "Quillfade/Cover/ScreenChoice.h"

namespace quillfade {
namespace {

std::unique_ptr<platform::Window> makeMirrorWindow(platform::Windows& windows) {
  auto attributes = coverWindowAttributes(windows);
  attributes.backgroundColor = platform::colors::black;
  attributes.sharing = platform::WindowSharing::none;
  return windows.makeWindow(attributes);
}

std::string showMessage(const platform::Rect& region, bool permission) {
  return "show region=" + std::to_string(wholeNumber(region.width())) + 'x' +
         std::to_string(wholeNumber(region.height())) + " at " + std::to_string(wholeNumber(region.minX())) + ',' +
         std::to_string(wholeNumber(region.minY())) + " permission=" + (permission ? "true" : "false");
}

Task stopInBackground(std::shared_ptr<platform::CaptureStream> stream, platform::RunLoop& runLoop) {
  co_await nextTurn(runLoop);
  // The outcome does not matter: the mirror is already gone.
  (void)co_await stopCapture(runLoop, stream);
}

}  // namespace

LiveMirror::LiveMirror(platform::Platform& platform)
    : platform_(platform),
      log_(platform),
      sampleQueue_(platform.runLoop().makeSerialQueue(std::string{applicationIdentifier} + ".mirror",
                                                      platform::QualityOfService::userInteractive)) {}

void LiveMirror::show(const platform::Rect& region, bool outline) {
  targetRect_ = region;
  isShowing_ = true;
  if (!window_) window_ = makeMirrorWindow(platform_.windows());
  mirrorView_ = MirrorView::make(platform_.views(), outline, platform_.texts().translated(waitingStatus));
  window_->setContentView(mirrorView_->view());
  window_->setFrame(region, true);
  window_->orderFrontRegardless();
  start();
  startRefreshTimer();
  observeContent();
  log_.log(showMessage(region, platform_.screenCaptureAccess().preflight()));
}

void LiveMirror::hide() {
  isShowing_ = false;
  if (refreshTimer_) refreshTimer_->invalidate();
  refreshTimer_ = nullptr;
  contentObservation_ = nullptr;
  if (restartPause_) restartPause_->cancel();
  restartPause_ = nullptr;
  countUp(generation_);
  if (auto stopping = std::exchange(stream_, nullptr)) stopInBackground(std::move(stopping), platform_.runLoop());
  if (window_) window_->orderOut();
  window_ = nullptr;
  mirrorView_ = nullptr;
  log_.log("hide");
}

void LiveMirror::screensChanged() {
  if (isShowing_) start();
}

std::optional<LiveMirror::ScreenInfo> LiveMirror::screenInfo() const {
  const auto screen = screenByCenter(targetRect_, platform_.screens());
  if (!screen || !screen->displayID) return std::nullopt;
  return ScreenInfo{*screen, *screen->displayID, screen->backingScaleFactor};
}

bool LiveMirror::isStale(std::int64_t startGeneration) const { return generation_ != startGeneration || !isShowing_; }

}  // namespace quillfade
