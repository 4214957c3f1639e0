// Has a shared screen brought up to date whenever somebody wants to read it. It never waits for the X server, since the
// relaying thread must not.
//
// Threads: one at a time. Ownership: owns the screen. Failure: with a lost connection every request is answered with
// the old picture.
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

  // Requests a picture of the screen as it is from now on. The result grows from request to request.
  [[nodiscard]] std::uint64_t request();
  // Goes on. Call it when the descriptor is ready or the deadline has passed; the result is a newer picture.
  [[nodiscard]] std::optional<Picture> advance();

  // Whether changes are to be reported as they come. If so, the picture is kept up to date even while nobody asks for
  // it.
  void follow(bool isFollowed);
  [[nodiscard]] protocol::ScreenNames& names() { return screen_->names(); }

  // What to wait for now: a descriptor, its events as for epoll, and a time.
  [[nodiscard]] int descriptor() const { return screen_->fileDescriptor(); }
  [[nodiscard]] std::uint32_t events() const;
  [[nodiscard]] std::optional<Clock::time_point> deadline() const;
  // Whether the descriptor is useless from now on.
  [[nodiscard]] bool isLost() const { return screen_->isLost(); }

 private:
  void begin();
  [[nodiscard]] bool isUnderWay() const { return begun_ != finished_; }

  std::unique_ptr<SharedScreen> screen_;
  std::uint64_t requested_ = 0;
  std::uint64_t begun_ = 0;  // the last request that the picture being made answers
  std::uint64_t finished_ = 0;
  std::optional<Clock::time_point> restsUntil_;
  bool isFollowed_ = false;
};

}  // namespace platform::linux::lens
