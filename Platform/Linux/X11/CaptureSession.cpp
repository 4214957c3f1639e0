#include "Platform/Linux/X11/CaptureSession.h"

#include <poll.h>

#include <algorithm>
#include <array>
#include <ctime>
#include <string>
#include <utility>

namespace platform::x11 {

namespace {

// The protocol's coordinates have 16 bits.
constexpr std::int32_t largestExtent = 32767;

// A client that makes changes faster than they can be taken in must not keep frames from being made.
constexpr int mostReadsAtOnce = 10;

constexpr std::chrono::milliseconds longestWaitForAnswer{20};

// A whole frame is asked for when something that lay over the picture has gone, and may be seen there until it comes.
constexpr std::chrono::milliseconds wholeInterval{8};

timespec toTimespec(std::chrono::nanoseconds duration) {
  const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(duration);
  return {seconds.count(), (duration - seconds).count()};
}

WindowFilter filterOf(const CaptureStreamSettings& settings, const Connection& connection) {
  WindowFilter filter(settings.excludedWindows, settings.ownClients, connection.resourceMask());
  if (!settings.holdBack) return filter;
  filter.holdBackFrom(settings.holdBack->fromArea);
  for (const xcb_window_t judged : settings.holdBack->except) filter.admit(judged);
  return filter;
}

}  // namespace

std::expected<std::unique_ptr<CaptureSession>, Error> CaptureSession::open(const CaptureStreamSettings& settings,
                                                                           std::shared_ptr<Wakeup> wakeup) {
  const PixelRect& source = settings.source;
  if (source.isEmpty()) return std::unexpected(Error{"The area to show is empty."});
  if (source.width > largestExtent || source.height > largestExtent)
    return std::unexpected(Error{"The area to show is larger than the display server can handle."});
  auto opened = Connection::open(settings.displayName);
  if (!opened) return std::unexpected(opened.error());
  const std::shared_ptr<Connection> connection = std::move(*opened);
  if (settings.unexpectedError) connection->setUnexpectedErrorHandler(settings.unexpectedError);
  if (const auto missing = connection->missingExtensions(); !missing.empty())
    return std::unexpected(Error{missingExtensionsSentence(missing)});
  auto buffer = FrameBuffer::make(connection, source.width, source.height, settings.serial, wakeup);
  std::unique_ptr<CaptureSession> session(
      new CaptureSession(settings, connection, std::move(buffer), std::move(wakeup)));
  if (session->isLost()) return std::unexpected(Error{connectionLostSentence});
  return session;
}

CaptureSession::CaptureSession(const CaptureStreamSettings& settings, std::shared_ptr<Connection> connection,
                               std::shared_ptr<FrameBuffer> buffer, std::shared_ptr<Wakeup> wakeup)
    : connection_(std::move(connection)),
      wakeup_(std::move(wakeup)),
      buffer_(std::move(buffer)),
      scene_(*connection_),
      compositor_(*connection_, scene_, settings.source, filterOf(settings, *connection_)),
      livePainter_(*connection_),
      interval_(settings.minimumFrameInterval),
      nextFrameDue_(Clock::now()),
      nextWholeDue_(nextFrameDue_),
      nextExaminationDue_(nextFrameDue_) {}

void CaptureSession::takeIn(const xcb_generic_event_t& event) {
  scene_.handle(event);
  compositor_.handle(event);
}

bool CaptureSession::takeInSome() {
  Event event = connection_->nextEvent();
  const bool isAny = event != nullptr;
  while (event) {
    takeIn(*event);
    event = connection_->nextQueuedEvent();
  }
  scene_.collectReplies();
  compositor_.collectReplies();
  return isAny;
}

void CaptureSession::admit(std::span<const xcb_window_t> windows) {
  for (int times = 0; times < mostReadsAtOnce && takeInSome(); ++times) {
  }
  compositor_.admit(windows);
}

std::shared_ptr<const Frame> CaptureSession::nextFrame() {
  takeInSome();
  isWholeWanted_ = buffer_->takeWholeRequest() || isWholeWanted_;
  const Compositor::Changes changes = compositor_.changes();
  const Clock::time_point now = Clock::now();
  if ((!isWholeWanted_ && changes == Compositor::Changes::none) || buffer_->isLent() || now < due()) return nullptr;
  if (isWholeWanted_ || changes == Compositor::Changes::certain) return compose(now);
  if (changes == Compositor::Changes::possible && now >= nextExaminationDue_) {
    compositor_.examine();
    nextExaminationDue_ = now + interval_;
  }
  return nullptr;
}

std::shared_ptr<const Frame> CaptureSession::compose(Clock::time_point now) {
  nextFrameDue_ = now + interval_;
  nextWholeDue_ = now + std::min<Clock::duration>(interval_, wholeInterval);
  bool isWhole = std::exchange(isWholeWanted_, false);
  const bool isLive = buffer_->paintLive([&](const LiveTarget& target) {
    if (isWhole) compositor_.invalidate();
    livePainter_.paint(compositor_, target, buffer_->changed());
  });
  if (isLive) return nullptr;
  const FrameBuffer::Reading reading = buffer_->reclaim();
  isWhole = isWhole || reading == FrameBuffer::Reading::never;
  if (isWhole) compositor_.invalidate();
  if (reading == FrameBuffer::Reading::missed) compositor_.repaint(buffer_->changed());
  auto steps = compositor_.plan(buffer_->changed());
  return buffer_->lend(std::move(steps), isWhole);
}

std::optional<CaptureSession::Clock::time_point> CaptureSession::nextDeadline() const {
  // Looking for one answer may read another one, which then does not make the descriptor readable again.
  if (compositor_.isExamining()) return Clock::now() + longestWaitForAnswer;
  const Compositor::Changes changes = compositor_.changes();
  if (!isWholeWanted_ && changes == Compositor::Changes::none) return std::nullopt;
  // Giving a frame back notifies.
  if (buffer_->isLent()) return std::nullopt;
  if (isWholeWanted_ || changes == Compositor::Changes::certain) return due();
  return std::max(nextFrameDue_, nextExaminationDue_);
}

void CaptureSession::wait() {
  connection_->flush();
  // Sending may have read answers and events: they would not make the descriptor readable again.
  if (scene_.collectReplies() || compositor_.collectReplies()) return;
  if (const Event event = connection_->nextQueuedEvent()) return takeIn(*event);
  const auto deadline = nextDeadline();
  timespec limit{};
  if (deadline) limit = toTimespec(std::max(*deadline - Clock::now(), Clock::duration::zero()));
  std::array<pollfd, 2> descriptors{{{connection_->fileDescriptor(), POLLIN, 0}, {wakeup_->descriptor(), POLLIN, 0}}};
  ::ppoll(descriptors.data(), descriptors.size(), deadline ? &limit : nullptr, nullptr);
  if (descriptors[1].revents != 0) wakeup_->clear();
}

}  // namespace platform::x11
