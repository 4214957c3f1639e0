#include "Platform/Linux/Stream/CaptureStream.h"

#include <poll.h>

#include <mutex>
#include <optional>
#include <utility>
#include <vector>

#include "Platform/Linux/Posix/Wakeup.h"
#include "Platform/Linux/Stream/CaptureSession.h"

namespace platform::linux::stream {

// What happens on the stream's thread. Other threads call `start`, `stop`, `end` and `setOutput`.
class CaptureStream::Worker {
 public:
  Worker(CaptureStreamSettings settings, std::weak_ptr<StreamDelegate> delegate)
      : settings_(std::move(settings)), delegate_(std::move(delegate)) {}

  // Call it before the thread runs.
  void setOutput(std::weak_ptr<StreamOutput> output, std::shared_ptr<SerialQueue> queue) {
    output_ = std::move(output);
    queue_ = std::move(queue);
  }

  void start(Completion completion) {
    command([&] { start_ = std::move(completion); });
  }

  void stop(Completion completion) {
    command([&] {
      isStopped_ = true;
      stops_.push_back(std::move(completion));
    });
  }

  // Wakes the thread only if there is something to admit: the set of windows is judged again and again.
  void admit(const std::vector<xcb_window_t>& windows) {
    bool isHoldingBack = false;
    {
      const std::lock_guard lock(mutex_);
      // The last call counts: a window that it no longer names is gone, or is to be left out.
      admitted_ = windows;
      isHoldingBack = isHoldingBack_;
    }
    if (isHoldingBack) wakeup_->notify();
  }

  void backgroundChanged() {
    command([&] { isBackgroundChanged_ = true; });
  }

  void end() {
    command([&] { isStopped_ = isEnded_ = true; });
  }

  void run() {
    while (!isEnded()) {
      if (const Completion started = takeStart()) capture(started);
      for (const Completion& stopped : takeStops()) stopped({});
      if (!hasCommands()) waitForCommand();
    }
    for (const Completion& stopped : takeStops()) stopped({});
  }

 private:
  template <typename Change>
  void command(Change change) {
    {
      const std::lock_guard lock(mutex_);
      change();
    }
    wakeup_->notify();
  }

  [[nodiscard]] bool isStopped() const {
    const std::lock_guard lock(mutex_);
    return isStopped_;
  }

  [[nodiscard]] bool isEnded() const {
    const std::lock_guard lock(mutex_);
    return isEnded_;
  }

  [[nodiscard]] bool hasCommands() const {
    const std::lock_guard lock(mutex_);
    return isEnded_ || start_ || !stops_.empty();
  }

  [[nodiscard]] Completion takeStart() {
    const std::lock_guard lock(mutex_);
    return std::exchange(start_, nullptr);
  }

  [[nodiscard]] std::vector<Completion> takeStops() {
    const std::lock_guard lock(mutex_);
    return std::exchange(stops_, {});
  }

  void waitForCommand() {
    pollfd descriptor{wakeup_->descriptor(), POLLIN, 0};
    ::poll(&descriptor, 1, -1);
    wakeup_->clear();
  }

  void capture(const Completion& started) {
    auto session = CaptureSession::open(settings_, wakeup_);
    if (!session) return started(std::unexpected(session.error()));
    started({});
    while (!isStopped()) {
      passOnNews(**session);
      if (auto frame = (*session)->nextFrame()) deliver(std::move(frame));
      if ((*session)->isLost()) return reportLoss();
      if (!mayAdmit((*session)->isHoldingBack())) (*session)->wait();
    }
  }

  void passOnNews(CaptureSession& session) {
    std::vector<xcb_window_t> admitted;
    bool isBackgroundChanged = false;
    {
      const std::lock_guard lock(mutex_);
      admitted.swap(admitted_);
      isBackgroundChanged = std::exchange(isBackgroundChanged_, false);
    }
    if (!admitted.empty()) session.admit(admitted);
    if (isBackgroundChanged) session.forgetWallpaper();
  }

  // Notes whether windows are held back, and returns whether they may already be admitted.
  [[nodiscard]] bool mayAdmit(bool isHoldingBack) {
    const std::lock_guard lock(mutex_);
    isHoldingBack_ = isHoldingBack;
    return isHoldingBack && !admitted_.empty();
  }

  void deliver(std::shared_ptr<const Frame> frame) {
    queue_->perform([output = output_, frame = std::move(frame)] {
      if (const auto receiver = output.lock()) receiver->streamDidOutput(frame, StreamOutputType::screen);
    });
  }

  void reportLoss() {
    if (const auto delegate = delegate_.lock()) delegate->streamDidStop({xcb::connectionLostSentence});
  }

  const CaptureStreamSettings settings_;
  const std::weak_ptr<StreamDelegate> delegate_;
  std::weak_ptr<StreamOutput> output_;
  std::shared_ptr<SerialQueue> queue_;
  const std::shared_ptr<posix::Wakeup> wakeup_ = std::make_shared<posix::Wakeup>();

  mutable std::mutex mutex_;
  Completion start_;
  std::vector<Completion> stops_;
  std::vector<xcb_window_t> admitted_;
  bool isHoldingBack_ = false;
  bool isBackgroundChanged_ = false;
  bool isStopped_ = false;
  bool isEnded_ = false;
};

CaptureStream::CaptureStream(CaptureStreamSettings settings, std::weak_ptr<StreamDelegate> delegate)
    : worker_(std::make_shared<Worker>(std::move(settings), std::move(delegate))) {}

CaptureStream::~CaptureStream() { finish(); }

void CaptureStream::finish() {
  worker_->end();
  if (!thread_.joinable()) return;
  if (thread_.get_id() == std::this_thread::get_id())
    thread_.detach();
  else
    thread_.join();
}

std::expected<void, Error> CaptureStream::addOutput(std::weak_ptr<StreamOutput> output, StreamOutputType type,
                                                    std::shared_ptr<SerialQueue> queue) {
  if (type != StreamOutputType::screen) return std::unexpected(Error{"There is no sound to capture."});
  if (thread_.joinable()) return std::unexpected(Error{"The capture has already started."});
  worker_->setOutput(std::move(output), std::move(queue));
  return {};
}

void CaptureStream::startCapture(Completion completion) {
  worker_->start(std::move(completion));
  runWorker();
}

void CaptureStream::stopCapture(Completion completion) {
  worker_->stop(std::move(completion));
  runWorker();
}

void CaptureStream::admit(const std::vector<std::uint32_t>& windowIDs) { worker_->admit(windowIDs); }

void CaptureStream::backgroundChanged() { worker_->backgroundChanged(); }

void CaptureStream::runWorker() {
  if (!thread_.joinable()) thread_ = std::thread([worker = worker_] { worker->run(); });
}

}  // namespace platform::linux::stream
