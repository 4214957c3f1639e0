#include "Platform/Linux/Lens/Composing.h"

#include <sys/epoll.h>

namespace platform::linux::lens {

namespace {

// A program that films the screen will ask again soon, and until then handling events would only mean waking up for
// everything that is drawn.
constexpr std::chrono::seconds restAfterPicture{1};
// Nobody looks more often than sixty times a second.
constexpr std::chrono::microseconds restWhileFollowed{16'667};

}  // namespace

std::uint64_t Composing::request() {
  ++requested_;
  if (!isUnderWay()) begin();
  return requested_;
}

// One picture answers all requests made before it was begun.
void Composing::begin() {
  begun_ = requested_;
  restsUntil_.reset();
  screen_->beginUpdate();
}

std::optional<Composing::Picture> Composing::advance() {
  if (!isUnderWay()) {
    restsUntil_.reset();
    screen_->takeIn();
    if (isFollowed_ && screen_->hasChanged()) (void)request();
    return std::nullopt;
  }
  if (!screen_->isUpToDate()) return std::nullopt;
  finished_ = begun_;
  restsUntil_ = Clock::now() + (isFollowed_ ? Clock::duration(restWhileFollowed) : Clock::duration(restAfterPicture));
  if (requested_ != finished_) begin();
  return Picture{finished_, screen_->pixmap()};
}

// Changes may already be known that no further event will report.
void Composing::follow(bool isFollowed) {
  isFollowed_ = isFollowed;
  if (isFollowed_ && !isUnderWay()) restsUntil_ = Clock::now();
}

std::uint32_t Composing::events() const { return restsUntil_ ? 0U : std::uint32_t{EPOLLIN}; }

std::optional<Composing::Clock::time_point> Composing::deadline() const {
  return isUnderWay() ? screen_->deadline() : restsUntil_;
}

}  // namespace platform::linux::lens
