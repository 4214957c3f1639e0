// The capture of a mirror: how it starts and restarts, how frames reach the view, and how the set of excluded windows
// is kept current.

#include <algorithm>
#include <span>
#include <utility>

#include "Quillfade/Basics/Fatal.h"
#include "Quillfade/Cover/CaptureSteps.h"
#include "Quillfade/Cover/ExclusionRules.h"
#include "Quillfade/Cover/LiveMirror.h"

namespace quillfade {
namespace {

constexpr platform::MediaTime minimumFrameInterval{1, 30};
constexpr int queueDepth = 6;
constexpr double refreshInterval = 1.5;

// Seconds between restarts for announced changes. So an overlay that blinks restarts the capture twice a second,
// however fast it blinks; a window that is visible whenever it is not an overlay, four times.
constexpr double leastRestartInterval = 0.5;

bool isAnyOf(std::span<const platform::CaptureWindow> windows, const std::vector<std::uint32_t>& numbers) {
  return std::ranges::any_of(
      windows, [&](const auto& window) { return std::ranges::find(numbers, window.windowID) != numbers.end(); });
}

bool isComplete(const platform::SampleBuffer& sample) {
  if (!sample.isValid()) return false;
  const auto attachments = sample.attachments();
  return attachments && !attachments->empty() &&
         attachments->front().status == static_cast<std::int64_t>(platform::FrameStatus::complete);
}

}  // namespace

// A check of the content. It covers every change announced before it began; changes announced while it lives are
// checked when it ends.
class LiveMirror::ContentCheck {
 public:
  explicit ContentCheck(LiveMirror& mirror) : mirror_(mirror.weak_from_this()) { ++mirror.checksUnderWay_; }
  ~ContentCheck() {
    const auto mirror = mirror_.lock();
    if (!mirror || --mirror->checksUnderWay_ > 0) return;
    if (std::exchange(mirror->isCheckWanted_, false)) mirror->contentChanged();
  }
  ContentCheck(const ContentCheck&) = delete;
  ContentCheck& operator=(const ContentCheck&) = delete;

 private:
  std::weak_ptr<LiveMirror> mirror_;
};

void LiveMirror::start() {
  countUp(generation_);
  runStart(weak_from_this(), generation_, platform_.runLoop(), std::make_shared<const ContentCheck>(*this));
}

Task LiveMirror::runStart(std::weak_ptr<LiveMirror> weakMirror, std::int64_t startGeneration,
                          platform::RunLoop& runLoop, std::shared_ptr<const ContentCheck> check) {
  co_await nextTurn(runLoop);
  const auto mirror = weakMirror.lock();
  if (!mirror) co_return;

  const ContentResult content = co_await shareableContent(mirror->platform_);
  if (!content) {
    mirror->startFailed(content.error());
    co_return;
  }
  if (mirror->isStale(startGeneration)) co_return;
  const auto info = mirror->screenInfo();
  if (!info) co_return;
  const auto display = std::ranges::find(content->displays, info->displayID, &platform::CaptureDisplay::displayID);
  if (display == content->displays.end()) co_return;

  const auto excluded = mirror->excluded(*content, info->screen);
  mirror->currentExclusionKey_ = key(excluded);
  mirror->log_.logCandidates(*content, excluded);
  mirror->admittedWindows_ = admittedWindows(*content, excluded);
  const platform::ContentFilter filter{
      *display, excluded,
      holdingBack(info->screen, mirror->admittedWindows_, userRules(mirror->platform_.rulesFile()).windows)};
  const auto newStream = mirror->platform_.capture().makeStream(filter, mirror->configuration(*info), mirror);
  const auto added = newStream->addOutput(mirror, platform::StreamOutputType::screen, mirror->sampleQueue_);
  if (!added) {
    mirror->startFailed(added.error());
    co_return;
  }
  const StreamResult started = co_await startCapture(runLoop, newStream);
  if (!started) {
    mirror->startFailed(started.error());
    co_return;
  }
  if (mirror->isStale(startGeneration)) {
    (void)co_await stopCapture(runLoop, newStream);
    co_return;
  }
  // The new stream runs before the old one stops, so the picture never has a gap.
  const auto oldStream = std::exchange(mirror->stream_, newStream);
  check.reset();
  if (oldStream) (void)co_await stopCapture(runLoop, oldStream);
  mirror->log_.log("stream started, excluding " + std::to_string(excluded.size()) + " window(s)");
}

std::vector<platform::CaptureWindow> LiveMirror::excluded(const platform::ShareableContent& content,
                                                          const platform::Screen& screen) {
  const auto own = platform_.process().bundleIdentifier();
  auto excluded = excludedWindows(content, screen, own, userRules(platform_.rulesFile()).windows);
  const auto isOwn = [&](const platform::CaptureWindow& window) { return ownerIdentifier(window) == own; };
  mayMissInk_ = content.isPartial && std::ranges::all_of(excluded, isOwn);
  return excluded;
}

void LiveMirror::startFailed(const platform::Error& error) {
  log_.log("stream start failed: " + error.localizedDescription);
  platform_.runLoop().post([mirror = shared_from_this()] {
    if (mirror->mirrorView_) mirror->mirrorView_->setStatus(mirror->platform_.texts().translated(failureStatus));
  });
}

platform::StreamConfiguration LiveMirror::configuration(const ScreenInfo& info) const {
  const auto& frame = info.screen.frame;
  return {
      .sourceRect = {targetRect_.minX() - frame.minX(), frame.maxY() - targetRect_.maxY(), targetRect_.width(),
                     targetRect_.height()},
      .width = roundedNumber(targetRect_.width() * info.backingScaleFactor),
      .height = roundedNumber(targetRect_.height() * info.backingScaleFactor),
      .minimumFrameInterval = minimumFrameInterval,
      .pixelFormat = platform::PixelFormat::bgra32,
      .showsCursor = true,
      .queueDepth = queueDepth,
  };
}

void LiveMirror::streamDidOutput(std::shared_ptr<const platform::SampleBuffer> sample,
                                 platform::StreamOutputType type) {
  if (type != platform::StreamOutputType::screen || !isComplete(*sample)) return;
  platform_.runLoop().post([weakMirror = weak_from_this(), sample = std::move(sample)] {
    if (const auto mirror = weakMirror.lock()) mirror->showFrame(sample);
  });
}

void LiveMirror::showFrame(std::shared_ptr<const platform::SampleBuffer> sample) {
  if (!mirrorView_) return;
  auto& renderer = mirrorView_->displayLayer().sampleBufferRenderer();
  if (renderer.status() == platform::RendererStatus::failed) renderer.flush();
  renderer.enqueue(std::move(sample));
  mirrorView_->hideStatus();
  if (!didLogFirstFrame_) {
    didLogFirstFrame_ = true;
    log_.log("first live frame received");
  }
}

void LiveMirror::streamDidStop(const platform::Error& error) {
  log_.log("stream stopped: " + error.localizedDescription);
}

void LiveMirror::startRefreshTimer() {
  if (refreshTimer_) refreshTimer_->invalidate();
  refreshTimer_ = platform_.runLoop().every(refreshInterval, [weakMirror = weak_from_this()] {
    if (const auto mirror = weakMirror.lock()) mirror->refreshExclusions();
  });
  platform_.runLoop().addToCommonModes(*refreshTimer_);
}

void LiveMirror::observeContent() {
  contentObservation_ = platform_.capture().observeContent([weakMirror = weak_from_this()] {
    if (const auto mirror = weakMirror.lock()) mirror->contentChanged();
  });
}

void LiveMirror::contentChanged() {
  if (!isShowing_) return;
  if (checksUnderWay_ > 0) {
    isCheckWanted_ = true;
    return;
  }
  runRefresh(weak_from_this(), platform_.runLoop(), std::make_shared<const ContentCheck>(*this));
}

void LiveMirror::pauseRestarts() {
  if (restartPause_) restartPause_->cancel();
  isRestartWanted_ = false;
  restartPause_ = platform_.runLoop().after(leastRestartInterval, [weakMirror = weak_from_this()] {
    const auto mirror = weakMirror.lock();
    if (!mirror) return;
    mirror->restartPause_ = nullptr;
    if (std::exchange(mirror->isRestartWanted_, false)) mirror->contentChanged();
  });
}

void LiveMirror::refreshExclusions() {
  if (isShowing_) runRefresh(weak_from_this(), platform_.runLoop(), nullptr);
}

Task LiveMirror::runRefresh(std::weak_ptr<LiveMirror> weakMirror, platform::RunLoop& runLoop,
                            std::shared_ptr<const ContentCheck> check) {
  co_await nextTurn(runLoop);
  const auto mirror = weakMirror.lock();
  if (!mirror || !mirror->isShowing_) co_return;
  const auto info = mirror->screenInfo();
  if (!info) co_return;

  const ContentResult content = co_await shareableContent(mirror->platform_);
  if (!content) {
    mirror->log_.log("exclusion refresh failed: " + content.error().localizedDescription);
    co_return;
  }
  const auto excluded = mirror->excluded(*content, info->screen);
  const bool isOverlaySeen = isAnyOf(excluded, mirror->admittedWindows_);
  mirror->admittedWindows_ = admittedWindows(*content, excluded);
  if (mirror->stream_) mirror->stream_->admit(mirror->admittedWindows_);
  const std::string newKey = key(excluded);
  if (newKey == mirror->currentExclusionKey_) co_return;
  // An overlay that is gone can stay on the list for a while, and a new one is held back. A visible one cannot wait.
  const bool isAnnounced = check != nullptr;
  if (isAnnounced && mirror->restartPause_ && !isOverlaySeen) {
    mirror->isRestartWanted_ = true;
    co_return;
  }
  mirror->currentExclusionKey_ = newKey;
  mirror->log_.log("overlay set changed, restarting capture");
  mirror->pauseRestarts();
  mirror->start();
}

}  // namespace quillfade
