// Where the local sockets of a display are, and how much they hold.
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

// The one in the file system, or the one that has the same name but no file. Clients try the latter first, so whoever
// serves a display must have both.
[[nodiscard]] inline LocalAddress localAddress(std::string_view path, bool isAbstract) {
  LocalAddress result;
  result.address.sun_family = AF_UNIX;
  const std::size_t offset = isAbstract ? 1 : 0;
  const std::string_view fitting = path.substr(0, sizeof result.address.sun_path - 1 - offset);
  std::ranges::copy(fitting, result.address.sun_path + offset);
  result.length = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + offset + fitting.size());
  return result;
}

// Makes a local socket hold more of what its other end has not taken yet, as far as the system lets a user have it. A
// long message then comes in fewer pieces, for each of which somebody would have to wake up.
inline void enlargeSendBuffer(int socket) {
  constexpr int size = 1024 * 1024;
  ::setsockopt(socket, SOL_SOCKET, SO_SNDBUF, &size, sizeof size);
}

}  // namespace platform::linux::lens
