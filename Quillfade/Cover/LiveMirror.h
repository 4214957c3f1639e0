// A live picture of one rectangle of a screen, without the overlays, in a window exactly over that rectangle.
//
// Threads: main thread only, except for the two stream callbacks. Those come on the capture service's threads and touch
// no state of the mirror: one posts a job to the main queue, the other writes a line to the log.
// Lifetime: always held by a shared pointer. Pending work holds the mirror weakly or is made stale by `generation`:
// every show, hide and restart increments it, and a capture start that finds a value other than its own gives up.
// Units: points, global space.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Platform/Platform.h"
#include "Quillfade/Basics/Task.h"
#include "Quillfade/Cover/DiagnosticLog.h"
#include "Quillfade/Cover/MirrorView.h"

namespace quillfade {

class LiveMirror final : public platform::StreamOutput,
                         public platform::StreamDelegate,
                         public std::enable_shared_from_this<LiveMirror> {
 public:
  explicit LiveMirror(platform::Platform& platform);

  // Shows the mirror over `region` and starts capturing. Showing it again keeps its window.
  void show(const platform::Rect& region, bool outline);
  // Takes the window away at once; capturing stops in the background.
  void hide();
  // Restarts the capture for the same rectangle, if the mirror is showing.
  void screensChanged();

  [[nodiscard]] bool isShowing() const { return isShowing_; }
  [[nodiscard]] std::int64_t generation() const { return generation_; }
  [[nodiscard]] const std::string& currentExclusionKey() const { return currentExclusionKey_; }
  // No window of another program is left out, and there may be ink in one that nobody can see.
  [[nodiscard]] bool mayMissInk() const { return mayMissInk_; }
  [[nodiscard]] const std::shared_ptr<platform::CaptureStream>& stream() const { return stream_; }
  [[nodiscard]] const std::shared_ptr<MirrorView>& mirrorView() const { return mirrorView_; }

  void streamDidOutput(std::shared_ptr<const platform::SampleBuffer> sample, platform::StreamOutputType type) override;
  void streamDidStop(const platform::Error& error) override;

 private:
  struct ScreenInfo {
    platform::Screen screen;
    std::uint32_t displayID = 0;
    double backingScaleFactor = 1;
  };

  [[nodiscard]] std::optional<ScreenInfo> screenInfo() const;
  [[nodiscard]] bool isStale(std::int64_t startGeneration) const;
  // By the current rules, the user's included. Notes whether that may miss ink.
  [[nodiscard]] std::vector<platform::CaptureWindow> excluded(const platform::ShareableContent& content,
                                                              const platform::Screen& screen);
  [[nodiscard]] platform::StreamConfiguration configuration(const ScreenInfo& info) const;

  void start();
  class ContentCheck;

  static Task runStart(std::weak_ptr<LiveMirror> weakMirror, std::int64_t startGeneration, platform::RunLoop& runLoop,
                       std::shared_ptr<const ContentCheck> check);
  void startFailed(const platform::Error& error);

  void startRefreshTimer();
  void refreshExclusions();
  static Task runRefresh(std::weak_ptr<LiveMirror> weakMirror, platform::RunLoop& runLoop,
                         std::shared_ptr<const ContentCheck> check);
  void observeContent();
  // Checks the content at once, or as soon as the check or start under way has ended.
  void contentChanged();
  void pauseRestarts();

  void showFrame(std::shared_ptr<const platform::SampleBuffer> sample);

  platform::Platform& platform_;
  DiagnosticLog log_;
  std::unique_ptr<platform::Window> window_;
  std::shared_ptr<MirrorView> mirrorView_;
  std::shared_ptr<platform::CaptureStream> stream_;
  std::shared_ptr<platform::SerialQueue> sampleQueue_;
  platform::Rect targetRect_;
  std::string currentExclusionKey_;
  std::shared_ptr<platform::Timer> refreshTimer_;
  std::shared_ptr<void> contentObservation_;
  // The windows that the rules last let into the picture.
  std::vector<std::uint32_t> admittedWindows_;
  int checksUnderWay_ = 0;
  bool isCheckWanted_ = false;
  // Pending while it is too early for another restart that can wait.
  std::shared_ptr<platform::DelayedTask> restartPause_;
  bool isRestartWanted_ = false;
  std::int64_t generation_ = 0;
  bool isShowing_ = false;
  bool didLogFirstFrame_ = false;
  bool mayMissInk_ = false;
};

}  // namespace quillfade
