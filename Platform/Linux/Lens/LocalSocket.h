// Where a display's local sockets are, and how much they hold.
//
// Threads: any.
#pragma once

#include <sys/socket.h>
#include <sys/un.h>

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>

namespace platform::linux::lens {

inline constexpr const char* socketDirectory = "/tmp/.X11-unix";

[[nodiscard]] inline std::string socketPath(int number) {
  return std::string(socketDirectory) + "/X" + std::to_string(number);
}

struct LocalAddress {
  sockaddr_un address{};
  socklen_t length = 0;
  [[nodiscard]] const sockaddr* get() const { return reinterpret_cast<const sockaddr*>(&address); }
};

// The address in the file system, or the abstract one of the same name without a file. Clients try the latter first, so
// a display must serve both.
[[nodiscard]] inline LocalAddress localAddress(std::string_view path, bool isAbstract) {
  LocalAddress result;
  result.address.sun_family = AF_UNIX;
  const std::size_t offset = isAbstract ? 1 : 0;
  const std::string_view fitting = path.substr(0, sizeof result.address.sun_path - 1 - offset);
  std::ranges::copy(fitting, result.address.sun_path + offset);
  result.length = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + offset + fitting.size());
  return result;
}

// Lets a local socket hold more of what the other end has not read yet, up to the system's limit for a user. A long
// message then comes in fewer pieces, each of which would wake somebody up.
inline void enlargeSendBuffer(int socket) {
  constexpr int size = 1024 * 1024;
  ::setsockopt(socket, SOL_SOCKET, SO_SNDBUF, &size, sizeof size);
}

}  // namespace platform::linux::lens
