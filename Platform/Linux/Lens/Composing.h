// Has a shared screen brought up to date whenever somebody wants to read it, without ever waiting for the X server:
// whoever relays requests must not.
//
// Threads: one at a time.
// Ownership: of the screen.
// Failure: with a lost connection every request is answered, with the picture as it was.
#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>

#include "Platform/Linux/Lens/SharedScreen.h"

namespace platform::linux::lens {

class Composing {
 public:
  using Clock = SharedScreen::Clock;

  struct Picture {
    std::uint64_t request = 0;  // the last one that it answers
    std::uint32_t pixmap = 0;
  };

  explicit Composing(std::unique_ptr<SharedScreen> screen) : screen_(std::move(screen)) {}

  // Wants a picture of the screen as it is from now on. The result grows from request to request.
  [[nodiscard]] std::uint64_t request();
  // Goes on. To be called when the descriptor is ready or the deadline has passed; the result is a newer picture.
  [[nodiscard]] std::optional<Picture> advance();

  // Whether changes are to be reported as they come, and the picture kept up to date for that, also while nobody asks.
  void follow(bool isFollowed);
  [[nodiscard]] protocol::ScreenNames& names() { return screen_->names(); }

  // What to wait for now: the events of a descriptor, as for epoll, and a time.
  [[nodiscard]] int descriptor() const { return screen_->fileDescriptor(); }
  [[nodiscard]] std::uint32_t events() const;
  [[nodiscard]] std::optional<Clock::time_point> deadline() const;
  // Whether the descriptor is of no more use.
  [[nodiscard]] bool isLost() const { return screen_->isLost(); }

 private:
  void begin();
  [[nodiscard]] bool isUnderWay() const { return begun_ != finished_; }

  std::unique_ptr<SharedScreen> screen_;
  std::uint64_t requested_ = 0;
  std::uint64_t begun_ = 0;  // the last request that the picture under way answers
  std::uint64_t finished_ = 0;
  std::optional<Clock::time_point> restsUntil_;
  bool isFollowed_ = false;
};

}  // namespace platform::linux::lens
