// Waits for descriptors and calls their handlers.
//
// Threads: one at a time. Ownership: does not own the descriptors; remove one before it is closed.
#pragma once

#include <sys/epoll.h>

#include <array>
#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <unordered_map>

#include "Platform/Linux/Lens/BusyPolling.h"
#include "Platform/Linux/Posix/FileDescriptor.h"

namespace platform::linux::lens {

class Poller {
 public:
  using Clock = std::chrono::steady_clock;
  // Called with the events that came, as for epoll; perhaps when there is nothing to do.
  using Handler = std::function<void(std::uint32_t events)>;

  Poller();

  void add(int descriptor, std::uint32_t events, Handler handler);
  void change(int descriptor, std::uint32_t events);
  void remove(int descriptor);
  // Waits, asleep or polling, and calls the handlers. They may add and remove handlers, themselves included. Returns at
  // the deadline.
  void wait(std::optional<Clock::time_point> deadline = std::nullopt);
  // For handlers: says what was just passed on. After a long message, more is expected at once.
  void notePassing(Passing passing) { busyPolling_.notePassing(passing); }

 private:
  static constexpr int mostEvents = 64;
  using Events = std::array<epoll_event, mostEvents>;

  [[nodiscard]] int next(Events& events, std::optional<Clock::time_point> deadline);

  posix::FileDescriptor epoll_;
  std::unordered_map<int, std::shared_ptr<Handler>> handlers_;
  BusyPolling busyPolling_;
  bool canPollBusily_;
};

}  // namespace platform::linux::lens
