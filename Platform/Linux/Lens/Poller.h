// Waits for descriptors, and calls those who want to know.
//
// Threads: one at a time. Ownership: not of the descriptors; remove one before it is closed.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <unordered_map>

#include "Platform/Linux/Desktop/FileDescriptor.h"

namespace platform::x11::lens {

class Poller {
 public:
  // With the events that came, as for epoll. May come when there is nothing to do.
  using Handler = std::function<void(std::uint32_t events)>;

  Poller();

  void add(int descriptor, std::uint32_t events, Handler handler);
  void change(int descriptor, std::uint32_t events);
  void remove(int descriptor);
  // Waits, and calls the handlers. They may add and remove, themselves included.
  void wait();

 private:
  FileDescriptor epoll_;
  std::unordered_map<int, std::shared_ptr<Handler>> handlers_;
};

}  // namespace platform::x11::lens
