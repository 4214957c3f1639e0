#include "Platform/Linux/Stream/CaptureSession.h"

#include <poll.h>

#include <algorithm>
#include <array>
#include <ctime>
#include <string>
#include <utility>

namespace platform::linux::stream {

namespace {

// A client whose changes come faster than we can process them must not prevent frames.
constexpr int mostReadsAtOnce = 10;

// A read that returns fewer events than this has left none behind: there is room for many more.
constexpr int manyEvents = 32;

constexpr std::chrono::milliseconds longestWaitForAnswer{20};

timespec toTimespec(std::chrono::nanoseconds duration) {
  const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(duration);
  return {seconds.count(), (duration - seconds).count()};
}

}  // namespace

std::expected<std::unique_ptr<CaptureSession>, Error> CaptureSession::open(const CaptureStreamSettings& settings,
                                                                           std::shared_ptr<posix::Wakeup> wakeup) {
  const xcb::PixelRect& source = settings.source;
  if (const auto fault = faultOf(source)) return std::unexpected(*fault);
  auto opened = xcb::Connection::open(settings.displayName);
  if (!opened) return std::unexpected(opened.error());
  const std::shared_ptr<xcb::Connection> connection = std::move(*opened);
  if (settings.unexpectedError) connection->setUnexpectedErrorHandler(settings.unexpectedError);
  if (const auto missing = connection->missingExtensions(); !missing.empty())
    return std::unexpected(Error{xcb::missingExtensionsSentence(missing)});
  auto loan = FrameLoan::make(connection, source.width, source.height, settings.serial, wakeup);
  std::unique_ptr<CaptureSession> session(new CaptureSession(settings, connection, std::move(loan), std::move(wakeup)));
  if (session->isLost()) return std::unexpected(Error{xcb::connectionLostSentence});
  return session;
}

CaptureSession::CaptureSession(const CaptureStreamSettings& settings, std::shared_ptr<xcb::Connection> connection,
                               std::shared_ptr<FrameLoan> loan, std::shared_ptr<posix::Wakeup> wakeup)
    : connection_(std::move(connection)),
      wakeup_(std::move(wakeup)),
      loan_(std::move(loan)),
      scene_(*connection_),
      compositor_(*connection_, scene_, settings.source, filterOf(settings, *connection_)),
      livePainter_(*connection_),
      interval_(settings.minimumFrameInterval),
      pace_(interval_) {}

void CaptureSession::takeIn(const xcb_generic_event_t& event) {
  scene_.handle(event);
  compositor_.handle(event);
}

int CaptureSession::takeInSome() {
  int events = 0;
  for (xcb::Event event = connection_->nextEvent(); event; event = connection_->nextQueuedEvent()) {
    takeIn(*event);
    ++events;
  }
  scene_.collectReplies();
  compositor_.collectReplies();
  return events;
}

bool CaptureSession::takeInMost() {
  for (int reads = 0; reads < mostReadsAtOnce; ++reads)
    if (takeInSome() < manyEvents) return true;
  return false;
}

void CaptureSession::admit(std::span<const xcb_window_t> windows) {
  for (int reads = 0; reads < mostReadsAtOnce && takeInSome() > 0; ++reads) {
  }
  compositor_.admit(windows);
}

std::shared_ptr<const Frame> CaptureSession::nextFrame() {
  isMoreToTakeIn_ = !takeInMost();
  isWholeWanted_ = loan_->takeWholeRequest() || isWholeWanted_;
  const compositor::Compositor::Changes changes = compositor_.changes();
  if (!isWholeWanted_ && changes == compositor::Compositor::Changes::none) return nullptr;
  const Clock::time_point now = Clock::now();
  if (loan_->isLent() || now < pace_.due()) return nullptr;
  // Painting nothing where nothing has changed is cheaper than asking first.
  if (paintLive()) {
    pace_.madeFrame(now);
  } else if (isWholeWanted_ || changes == compositor::Compositor::Changes::certain) {
    pace_.madeFrame(now);
    return compose();
  } else if (now >= nextExaminationDue_) {
    compositor_.examine();
    nextExaminationDue_ = now + interval_;
  }
  return nullptr;
}

bool CaptureSession::paintLive() {
  return loan_->paintLive([&](const LiveTarget& target) {
    if (std::exchange(isWholeWanted_, false)) compositor_.invalidate();
    livePainter_.paint(compositor_, target, loan_->changed());
  });
}

std::shared_ptr<const Frame> CaptureSession::compose() {
  const FrameLoan::Reading reading = loan_->reclaim();
  const bool isWhole = std::exchange(isWholeWanted_, false) || reading == FrameLoan::Reading::never;
  if (isWhole) compositor_.invalidate();
  if (reading == FrameLoan::Reading::missed) compositor_.repaint(loan_->changed());
  auto steps = compositor_.plan(loan_->changed());
  return loan_->lend(std::move(steps), isWhole);
}

std::optional<CaptureSession::Clock::time_point> CaptureSession::nextDeadline(Clock::time_point now) const {
  // Looking for one reply may read another, which then no longer makes the descriptor readable.
  if (compositor_.isExamining()) return now + longestWaitForAnswer;
  const compositor::Compositor::Changes changes = compositor_.changes();
  if (!isWholeWanted_ && changes == compositor::Compositor::Changes::none) return std::nullopt;
  // Returning a frame notifies.
  if (loan_->isLent()) return std::nullopt;
  if (isWholeWanted_ || changes == compositor::Compositor::Changes::certain) return pace_.due();
  return std::max(pace_.due(), nextExaminationDue_);
}

void CaptureSession::wait() {
  connection_->flush();
  // Sending may have read replies and events, which then no longer make the descriptor readable.
  if (scene_.collectReplies() || compositor_.collectReplies()) return;
  if (const xcb::Event event = connection_->nextQueuedEvent()) return takeIn(*event);
  const Clock::time_point now = Clock::now();
  const auto deadline = nextDeadline(now);
  timespec limit{};
  if (deadline) limit = toTimespec(std::max(*deadline - now, Clock::duration::zero()));
  // What there is to show has to wait, and further events would only wake the stream. poll ignores a negative
  // descriptor.
  const bool isResting = deadline && *deadline <= pace_.due() && !compositor_.isExamining() && !isMoreToTakeIn_;
  std::array<pollfd, 2> descriptors{
      {{isResting ? -1 : connection_->fileDescriptor(), POLLIN, 0}, {wakeup_->descriptor(), POLLIN, 0}}};
  ::ppoll(descriptors.data(), descriptors.size(), deadline ? &limit : nullptr, nullptr);
  if (descriptors[1].revents != 0) wakeup_->clear();
}

}  // namespace platform::linux::stream
