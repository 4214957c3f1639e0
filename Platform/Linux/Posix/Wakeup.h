// Wakes a thread that waits for descriptors.
//
// Threads: `notify` on any, the rest on the waiting thread. Notifications between two waits count as one. Ownership:
// owns the descriptor.
#pragma once

#include <sys/eventfd.h>
#include <unistd.h>

#include <cstdint>

namespace platform::linux::posix {

class Wakeup {
 public:
  Wakeup() : descriptor_(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {}
  ~Wakeup() {
    if (descriptor_ >= 0) ::close(descriptor_);
  }
  Wakeup(const Wakeup&) = delete;
  Wakeup& operator=(const Wakeup&) = delete;

  // Readable from a notification until `clear`.
  [[nodiscard]] int descriptor() const { return descriptor_; }
  void notify() { ::eventfd_write(descriptor_, 1); }
  void clear() {
    eventfd_t count = 0;
    ::eventfd_read(descriptor_, &count);
  }

 private:
  int descriptor_;
};

}  // namespace platform::linux::posix
