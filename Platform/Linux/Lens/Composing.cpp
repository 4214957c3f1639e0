#include "Platform/Linux/Lens/Composing.h"

#include <poll.h>

#include <array>
#include <utility>

namespace platform::x11::lens {

Composing::Composing(std::unique_ptr<SharedScreen> screen) : screen_(std::move(screen)), thread_([this] { run(); }) {}

Composing::~Composing() {
  {
    const std::lock_guard lock(mutex_);
    isEnding_ = true;
  }
  wanted_.notify();
  thread_.join();
}

std::uint64_t Composing::request() {
  std::uint64_t number = 0;
  {
    const std::lock_guard lock(mutex_);
    number = ++requested_;
  }
  wanted_.notify();
  return number;
}

Composing::Picture Composing::take() {
  finished_.clear();
  const std::lock_guard lock(mutex_);
  return picture_;
}

bool Composing::isEnding() {
  const std::lock_guard lock(mutex_);
  return isEnding_;
}

void Composing::run() {
  while (!isEnding()) {
    compose();
    if (!screen_->isLost()) screen_->takeIn();
    wait();
  }
}

// One picture answers everybody who asked before it was begun.
void Composing::compose() {
  std::uint64_t number = 0;
  {
    const std::lock_guard lock(mutex_);
    number = requested_;
    if (number == picture_.request) return;
  }
  const std::uint32_t pixmap = screen_->isLost() ? picture_.pixmap : screen_->update();
  {
    const std::lock_guard lock(mutex_);
    picture_ = {number, pixmap};
  }
  finished_.notify();
}

void Composing::wait() {
  std::array<pollfd, 2> descriptors{{{wanted_.descriptor(), POLLIN, 0}, {screen_->fileDescriptor(), POLLIN, 0}}};
  // A connection that is lost stays readable.
  ::poll(descriptors.data(), screen_->isLost() ? 1 : descriptors.size(), -1);
  wanted_.clear();
}

}  // namespace platform::x11::lens
