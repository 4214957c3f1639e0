// Keeps a shared screen on a thread of its own: whoever relays requests must never wait for the X server.
//
// Threads: every method on the thread that made it.
// Ownership: the thread ends with the object.
// Failure: with a lost connection every request is answered at once, with the picture as it was.
#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <thread>

#include "Platform/Linux/Lens/SharedScreen.h"
#include "Platform/Linux/X11/Wakeup.h"

namespace platform::x11::lens {

class Composing {
 public:
  struct Picture {
    std::uint64_t request = 0;  // the last one that it answers
    std::uint32_t pixmap = 0;
  };

  explicit Composing(std::unique_ptr<SharedScreen> screen);
  ~Composing();
  Composing(const Composing&) = delete;
  Composing& operator=(const Composing&) = delete;

  // Wants a picture of the screen as it is from now on. The result grows from request to request.
  [[nodiscard]] std::uint64_t request();
  // Readable when there is a newer picture.
  [[nodiscard]] int descriptor() const { return finished_.descriptor(); }
  [[nodiscard]] Picture take();

 private:
  void run();
  void compose();
  void wait();
  [[nodiscard]] bool isEnding();

  std::unique_ptr<SharedScreen> screen_;
  Wakeup wanted_;
  Wakeup finished_;
  std::mutex mutex_;
  std::uint64_t requested_ = 0;
  Picture picture_;
  bool isEnding_ = false;
  std::thread thread_;
};

}  // namespace platform::x11::lens
