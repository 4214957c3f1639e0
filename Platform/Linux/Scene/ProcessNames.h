// Which program made a window, for windows that do not say so themselves.
//
// The X server knows the process at the other end of each local connection. The process that a window claims counts
// only where the server cannot tell: any client can write any number there, and one from inside a container means
// another process out here.
// Threads: that of the connection. Failure: no name for a window that is gone, a client on another machine or a process
// that has ended.
#pragma once

#include <sys/types.h>
#include <xcb/xcb.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "Platform/Linux/Xcb/Connection.h"

namespace platform::linux::scene {

class ProcessNames {
 public:
  explicit ProcessNames(xcb::Connection& connection);

  struct Question {
    xcb_window_t window = 0;
    std::optional<std::uint32_t> claimedProcess;
  };
  // One name for each question, in the same order; empty where there is none. At most one round trip.
  [[nodiscard]] std::vector<std::string> ask(const std::vector<Question>& questions);

 private:
  xcb::Connection& connection_;
  bool serverKnows_;
};

// The system's short name of a process (at most 15 bytes); empty when there is no such process.
[[nodiscard]] std::string processName(std::uint32_t id);

}  // namespace platform::linux::scene
