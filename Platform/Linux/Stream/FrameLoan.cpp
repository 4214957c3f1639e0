#include "Platform/Linux/Stream/FrameLoan.h"

#include <utility>

#include "Platform/Linux/Stream/Frame.h"

namespace platform::linux::stream {

namespace {

constexpr int longestWaitForServer = 1000;  // milliseconds

}  // namespace

std::shared_ptr<FrameLoan> FrameLoan::make(std::shared_ptr<xcb::Connection> connection, std::int32_t width,
                                           std::int32_t height, std::uint64_t streamSerial,
                                           std::shared_ptr<posix::Wakeup> wakeup) {
  std::shared_ptr<FrameLoan> loan(new FrameLoan(std::move(connection), width, height, streamSerial, std::move(wakeup)));
  loan->createFences();
  return loan;
}

FrameLoan::FrameLoan(std::shared_ptr<xcb::Connection> connection, std::int32_t width, std::int32_t height,
                     std::uint64_t streamSerial, std::shared_ptr<posix::Wakeup> wakeup)
    : connection_(std::move(connection)),
      width_(width),
      height_(height),
      streamSerial_(streamSerial),
      wakeup_(std::move(wakeup)),
      changed_(*connection_) {}

FrameLoan::~FrameLoan() {
  // The last reader's requests name pictures that go with the connection.
  if (state_ != State::read || connection_->isBroken()) return;
  awaitRead();
  connection_->synchronize(longestWaitForServer);
}

void FrameLoan::createFences() {
  composed_ = connection_->newId();
  consumed_ = connection_->newId();
  xcb_sync_create_fence(connection_->get(), connection_->root(), composed_, 0);
  xcb_sync_create_fence(connection_->get(), connection_->root(), consumed_, 0);
  // A reader may name them at once, on a connection that the server reaches first: they must exist by then.
  connection_->synchronize(longestWaitForServer);
}

void FrameLoan::destroyFences() {
  xcb_sync_destroy_fence(connection_->get(), composed_);
  xcb_sync_destroy_fence(connection_->get(), consumed_);
}

void FrameLoan::awaitRead() {
  xcb_sync_await_fence(connection_->get(), 1, &consumed_);
  xcb_sync_reset_fence(connection_->get(), consumed_);
}

bool FrameLoan::isLent() {
  const std::lock_guard lock(mutex_);
  isEndAwaited_ = state_ == State::lent;
  return isEndAwaited_;
}

bool FrameLoan::takeWholeRequest() {
  const std::lock_guard lock(mutex_);
  return std::exchange(isWholeRequested_, false);
}

// The lock is held while the requests are sent, so that whoever ends this finds them on their way.
bool FrameLoan::paintLive(const std::function<void(const LiveTarget&)>& paint) {
  const std::lock_guard lock(mutex_);
  if (!target_) return false;
  if (std::exchange(state_, State::none) == State::read) {
    awaitRead();
    wasEverRead_ = true;
  }
  paint(*target_);
  connection_->flush();
  return true;
}

FrameLoan::Reading FrameLoan::reclaim() {
  State outcome = State::none;
  {
    const std::lock_guard lock(mutex_);
    outcome = std::exchange(state_, State::none);
  }
  if (outcome == State::read) {
    awaitRead();
    wasEverRead_ = true;
    return Reading::done;
  }
  if (outcome == State::dropped) {
    // We cannot know whether the reader waits for a fence. Destroying a fence releases everybody who waits for it.
    destroyFences();
    createFences();
  }
  if (!wasEverRead_) return Reading::never;
  return outcome == State::dropped ? Reading::missed : Reading::done;
}

std::shared_ptr<const Frame> FrameLoan::lend(std::vector<compositor::PaintStep> steps, bool isWhole) {
  steps_ = std::move(steps);
  xcb_sync_trigger_fence(connection_->get(), composed_);
  connection_->flush();
  {
    const std::lock_guard lock(mutex_);
    state_ = State::lent;
  }
  return std::make_shared<const Frame>(shared_from_this(), isWhole);
}

// The stream and its fences can be gone only if the server is: errors mean nothing to the reader.
void FrameLoan::awaitComposed(xcb_connection_t* reader) const {
  xcb_discard_reply(reader, xcb_sync_await_fence_checked(reader, 1, &composed_).sequence);
  // Each side resets the fence that it waits for. If the other side did, whose requests the server may reach later, a
  // reader could find the fence as the previous frame left it, and copy that frame again.
  xcb_discard_reply(reader, xcb_sync_reset_fence_checked(reader, composed_).sequence);
}

void FrameLoan::finishReading(xcb_connection_t* reader, const std::optional<LiveTarget>& target) {
  triggerConsumed(reader);
  endLoan(State::read, target);
}

// The stream's connection is about to wait for this request, so it must be on its way.
void FrameLoan::triggerConsumed(xcb_connection_t* reader) const {
  xcb_discard_reply(reader, xcb_sync_trigger_fence_checked(reader, consumed_).sequence);
  xcb_flush(reader);
}

// As if one more frame had been lent and read, in which nothing has changed.
void FrameLoan::endLive(xcb_connection_t* reader) {
  const std::lock_guard lock(mutex_);
  if (!std::exchange(target_, std::nullopt) || state_ != State::none) return;
  xcb_sync_trigger_fence(connection_->get(), composed_);
  connection_->flush();
  awaitComposed(reader);
  triggerConsumed(reader);
  state_ = State::read;
  // Sending may have read what the stream waits for, which then no longer makes its descriptor readable.
  wakeup_->notify();
}

void FrameLoan::drop() { endLoan(State::dropped); }

void FrameLoan::endLoan(State outcome, const std::optional<LiveTarget>& target) {
  bool isAwaited = false;
  {
    const std::lock_guard lock(mutex_);
    state_ = outcome;
    target_ = target;
    isAwaited = std::exchange(isEndAwaited_, false);
  }
  if (isAwaited) wakeup_->notify();
}

void FrameLoan::requestWhole() {
  std::shared_ptr<FrameLoan> older;
  {
    const std::lock_guard lock(mutex_);
    isWholeRequested_ = true;
    if (hasEnded_) older = older_.lock();
  }
  wakeup_->notify();
  if (older) older->requestWhole();
}

void FrameLoan::endStream() {
  {
    const std::lock_guard lock(mutex_);
    hasEnded_ = true;
  }
  requestWhole();
}

bool FrameLoan::hasEnded() {
  const std::lock_guard lock(mutex_);
  return hasEnded_;
}

void FrameLoan::tookOverFrom(const std::shared_ptr<FrameLoan>& older) {
  {
    const std::lock_guard lock(mutex_);
    older_ = older;
    if (!hasEnded_) return;
  }
  older->requestWhole();
}

}  // namespace platform::linux::stream
