#include "Platform/Linux/Lens/ServerAddress.h"

#include <X11/X.h>
#include <X11/Xauth.h>
#include <fcntl.h>
#include <netdb.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <unistd.h>
#include <xcb/xcb.h>

#include <array>
#include <cstdlib>
#include <memory>

#include "Platform/Linux/Lens/LocalSocket.h"
#include "Platform/Linux/Posix/HostName.h"

namespace platform::linux::lens {

namespace {

constexpr int firstPort = 6000;
constexpr const char* cookieMethod = "MIT-MAGIC-COOKIE-1";

posix::FileDescriptor connected(int family, const sockaddr* address, socklen_t length) {
  posix::FileDescriptor socket(::socket(family, SOCK_STREAM | SOCK_CLOEXEC, 0));
  if (!socket.isOpen() || ::connect(socket.get(), address, length) != 0) return posix::FileDescriptor();
  return socket;
}

}  // namespace

std::optional<ServerAddress> ServerAddress::parse(const std::string& display) {
  char* host = nullptr;
  ServerAddress address;
  if (xcb_parse_display(display.c_str(), &host, &address.number_, &address.screen_) == 0) return std::nullopt;
  const std::unique_ptr<char, decltype(&std::free)> owned(host, &std::free);
  address.host_ = host;
  return address;
}

std::expected<posix::FileDescriptor, Error> ServerAddress::connect() const {
  posix::FileDescriptor socket = isLocal() ? connectLocally() : connectOverNetwork();
  if (!socket.isOpen()) return std::unexpected(Error{"The X11 display can no longer be reached."});
  ::fcntl(socket.get(), F_SETFL, O_NONBLOCK);
  return socket;
}

posix::FileDescriptor ServerAddress::connectLocally() const {
  const std::string path = host_.starts_with('/') ? host_ : socketPath(number_);
  for (const bool isAbstract : {true, false}) {
    const LocalAddress address = localAddress(path, isAbstract);
    if (auto socket = connected(AF_UNIX, address.get(), address.length); socket.isOpen()) {
      enlargeSendBuffer(socket.get());
      return socket;
    }
  }
  return posix::FileDescriptor();
}

posix::FileDescriptor ServerAddress::connectOverNetwork() const {
  addrinfo hints{};
  hints.ai_socktype = SOCK_STREAM;
  addrinfo* found = nullptr;
  if (::getaddrinfo(host_.c_str(), std::to_string(firstPort + number_).c_str(), &hints, &found) != 0) {
    return posix::FileDescriptor();
  }
  const std::unique_ptr<addrinfo, decltype(&::freeaddrinfo)> owned(found, &::freeaddrinfo);
  for (const addrinfo* each = found; each != nullptr; each = each->ai_next) {
    auto socket = connected(each->ai_family, each->ai_addr, each->ai_addrlen);
    if (!socket.isOpen()) continue;
    const int noDelay = 1;
    ::setsockopt(socket.get(), IPPROTO_TCP, TCP_NODELAY, &noDelay, sizeof noDelay);
    return socket;
  }
  return posix::FileDescriptor();
}

// In the file, this machine's displays have a local name, however one connects to them; displays of others have
// addresses. Forwarded displays of other machines are local as well.
protocol::Credential ServerAddress::credential() const {
  const std::string name = posix::hostName();
  const std::string number = std::to_string(number_);
  std::array<char*, 1> methods{const_cast<char*>(cookieMethod)};
  const int methodLength = static_cast<int>(std::string_view(cookieMethod).size());
  const auto find = [&](unsigned short family, const char* address, std::size_t length) {
    return std::unique_ptr<Xauth, decltype(&XauDisposeAuth)>(
        XauGetBestAuthByAddr(family, static_cast<unsigned short>(length), address,
                             static_cast<unsigned short>(number.size()), number.c_str(), 1, methods.data(),
                             &methodLength),
        &XauDisposeAuth);
  };
  auto entry = find(FamilyLocal, name.data(), name.size());
  if (!isLocal()) {
    const posix::FileDescriptor socket = connectOverNetwork();
    sockaddr_storage peer{};
    socklen_t length = sizeof peer;
    if (socket.isOpen() && ::getpeername(socket.get(), reinterpret_cast<sockaddr*>(&peer), &length) == 0) {
      auto* const four = reinterpret_cast<const sockaddr_in*>(&peer);
      auto* const six = reinterpret_cast<const sockaddr_in6*>(&peer);
      auto remote = peer.ss_family == AF_INET6
                        ? find(FamilyInternet6, reinterpret_cast<const char*>(&six->sin6_addr), sizeof six->sin6_addr)
                        : find(FamilyInternet, reinterpret_cast<const char*>(&four->sin_addr), sizeof four->sin_addr);
      if (remote) entry = std::move(remote);
    }
  }
  if (!entry) return {};
  return {std::string(entry->name, entry->name_length), std::string(entry->data, entry->data_length)};
}

}  // namespace platform::linux::lens
