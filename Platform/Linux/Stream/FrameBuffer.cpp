#include "Platform/Linux/Stream/FrameBuffer.h"

#include <utility>

#include "Platform/Linux/Stream/Frame.h"

namespace platform::linux::stream {

namespace {

constexpr int longestWaitForServer = 1000;  // milliseconds

}  // namespace

std::shared_ptr<FrameBuffer> FrameBuffer::make(std::shared_ptr<xcb::Connection> connection, std::int32_t width,
                                               std::int32_t height, std::uint64_t streamSerial,
                                               std::shared_ptr<posix::Wakeup> wakeup) {
  std::shared_ptr<FrameBuffer> buffer(
      new FrameBuffer(std::move(connection), width, height, streamSerial, std::move(wakeup)));
  buffer->createFences();
  return buffer;
}

FrameBuffer::FrameBuffer(std::shared_ptr<xcb::Connection> connection, std::int32_t width, std::int32_t height,
                         std::uint64_t streamSerial, std::shared_ptr<posix::Wakeup> wakeup)
    : connection_(std::move(connection)),
      width_(width),
      height_(height),
      streamSerial_(streamSerial),
      wakeup_(std::move(wakeup)),
      changed_(*connection_) {}

FrameBuffer::~FrameBuffer() {
  // What the last reader sent names pictures that go with the connection.
  if (loan_ != Loan::read || connection_->isBroken()) return;
  awaitRead();
  connection_->synchronize(longestWaitForServer);
}

void FrameBuffer::createFences() {
  composed_ = connection_->newId();
  consumed_ = connection_->newId();
  xcb_sync_create_fence(connection_->get(), connection_->root(), composed_, 0);
  xcb_sync_create_fence(connection_->get(), connection_->root(), consumed_, 0);
  // A reader may name them at once, on a connection that the server gets to first: they must be there by then.
  connection_->synchronize(longestWaitForServer);
}

void FrameBuffer::destroyFences() {
  xcb_sync_destroy_fence(connection_->get(), composed_);
  xcb_sync_destroy_fence(connection_->get(), consumed_);
}

void FrameBuffer::awaitRead() {
  xcb_sync_await_fence(connection_->get(), 1, &consumed_);
  xcb_sync_reset_fence(connection_->get(), consumed_);
}

bool FrameBuffer::isLent() {
  const std::lock_guard lock(mutex_);
  isEndAwaited_ = loan_ == Loan::lent;
  return isEndAwaited_;
}

bool FrameBuffer::takeWholeRequest() {
  const std::lock_guard lock(mutex_);
  return std::exchange(isWholeRequested_, false);
}

// The lock is held while the requests are sent: whoever ends this must find them on their way.
bool FrameBuffer::paintLive(const std::function<void(const LiveTarget&)>& paint) {
  const std::lock_guard lock(mutex_);
  if (!target_) return false;
  if (std::exchange(loan_, Loan::none) == Loan::read) {
    awaitRead();
    wasEverRead_ = true;
  }
  paint(*target_);
  connection_->flush();
  return true;
}

FrameBuffer::Reading FrameBuffer::reclaim() {
  Loan outcome = Loan::none;
  {
    const std::lock_guard lock(mutex_);
    outcome = std::exchange(loan_, Loan::none);
  }
  if (outcome == Loan::read) {
    awaitRead();
    wasEverRead_ = true;
    return Reading::done;
  }
  if (outcome == Loan::dropped) {
    // Whether the reader waits for a fence is not known. A fence that goes lets go of all who wait for it.
    destroyFences();
    createFences();
  }
  if (!wasEverRead_) return Reading::never;
  return outcome == Loan::dropped ? Reading::missed : Reading::done;
}

std::shared_ptr<const Frame> FrameBuffer::lend(std::vector<compositor::PaintStep> steps, bool isWhole) {
  steps_ = std::move(steps);
  xcb_sync_trigger_fence(connection_->get(), composed_);
  connection_->flush();
  {
    const std::lock_guard lock(mutex_);
    loan_ = Loan::lent;
  }
  return std::make_shared<const Frame>(shared_from_this(), isWhole);
}

// The stream may have gone, and its fences with it, only if the server has: errors mean nothing to the reader.
void FrameBuffer::awaitComposed(xcb_connection_t* reader) const {
  xcb_discard_reply(reader, xcb_sync_await_fence_checked(reader, 1, &composed_).sequence);
  // Each side resets the fence that it waits for. Were it reset by the other side, whose requests the server may get to
  // later, a reader could find the fence as the frame before left it, and copy that one again.
  xcb_discard_reply(reader, xcb_sync_reset_fence_checked(reader, composed_).sequence);
}

void FrameBuffer::finishReading(xcb_connection_t* reader, const std::optional<LiveTarget>& target) {
  triggerConsumed(reader);
  endLoan(Loan::read, target);
}

// The stream's connection is about to wait for this request, so it must be on its way.
void FrameBuffer::triggerConsumed(xcb_connection_t* reader) const {
  xcb_discard_reply(reader, xcb_sync_trigger_fence_checked(reader, consumed_).sequence);
  xcb_flush(reader);
}

// As if one more frame had been lent and read, in which nothing has changed.
void FrameBuffer::endLive(xcb_connection_t* reader) {
  const std::lock_guard lock(mutex_);
  if (!std::exchange(target_, std::nullopt) || loan_ != Loan::none) return;
  xcb_sync_trigger_fence(connection_->get(), composed_);
  connection_->flush();
  awaitComposed(reader);
  triggerConsumed(reader);
  loan_ = Loan::read;
  // Sending may have read what the stream waits for: that does not make its descriptor readable again.
  wakeup_->notify();
}

void FrameBuffer::drop() { endLoan(Loan::dropped); }

void FrameBuffer::endLoan(Loan outcome, const std::optional<LiveTarget>& target) {
  bool isAwaited = false;
  {
    const std::lock_guard lock(mutex_);
    loan_ = outcome;
    target_ = target;
    isAwaited = std::exchange(isEndAwaited_, false);
  }
  if (isAwaited) wakeup_->notify();
}

void FrameBuffer::requestWhole() {
  std::shared_ptr<FrameBuffer> older;
  {
    const std::lock_guard lock(mutex_);
    isWholeRequested_ = true;
    if (hasEnded_) older = older_.lock();
  }
  wakeup_->notify();
  if (older) older->requestWhole();
}

void FrameBuffer::endStream() {
  {
    const std::lock_guard lock(mutex_);
    hasEnded_ = true;
  }
  requestWhole();
}

bool FrameBuffer::hasEnded() {
  const std::lock_guard lock(mutex_);
  return hasEnded_;
}

void FrameBuffer::tookOverFrom(const std::shared_ptr<FrameBuffer>& older) {
  {
    const std::lock_guard lock(mutex_);
    older_ = older;
    if (!hasEnded_) return;
  }
  older->requestWhole();
}

}  // namespace platform::linux::stream
