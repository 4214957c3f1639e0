// This machine's name on the network.
//
// Threads: any. Failure: an empty name.
#pragma once

#include <unistd.h>

#include <array>
#include <climits>
#include <string>

namespace platform::linux::posix {

[[nodiscard]] inline std::string hostName() {
  std::array<char, HOST_NAME_MAX + 1> name{};
  return ::gethostname(name.data(), name.size() - 1) == 0 ? name.data() : "";
}

}  // namespace platform::linux::posix
