#include "Platform/Linux/Lens/PrivateDisplay.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <utility>

#include "Platform/Linux/Lens/LocalSocket.h"

namespace platform::linux::lens {

namespace {

constexpr int firstNumber = 100;
constexpr int lastNumber = 999;
constexpr int waitingPrograms = 128;

std::string lockPath(int number) { return "/tmp/.X" + std::to_string(number) + "-lock"; }

// In the format of display servers.
std::string lockText() {
  std::array<char, 16> text{};
  std::snprintf(text.data(), text.size(), "%10d\n", static_cast<int>(::getpid()));
  return text.data();
}

bool isHeldByTheLiving(const std::string& path) {
  const auto file = posix::openRegularFile(path, O_RDONLY);
  // The lock has just gone; the first to come gets it.
  if (!file) return file.error() != ENOENT;
  const auto text = posix::readAll(file->get());
  const int process = text ? std::atoi(text->c_str()) : 0;
  return process <= 0 || ::kill(process, 0) == 0 || errno != ESRCH;
}

// Appears together with its content, because servers take an empty lock for a stale one. Returns the error number, 0
// for none.
int writeLock(const std::string& path) {
  std::string draft = path + "-XXXXXX";
  const posix::FileDescriptor file(::mkostemp(draft.data(), O_CLOEXEC));
  if (!file.isOpen()) return errno;
  int error = posix::writeAll(file.get(), lockText()).has_value() && ::fchmod(file.get(), 0444) == 0 ? 0 : EIO;
  if (error == 0 && ::link(draft.c_str(), path.c_str()) != 0) error = errno;
  ::unlink(draft.c_str());
  return error;
}

posix::FileDescriptor listeningSocket(const LocalAddress& address) {
  posix::FileDescriptor socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
  if (!socket.isOpen()) return socket;
  // The file inherits the mode of the socket.
  ::fchmod(socket.get(), 0600);
  const bool isListening =
      ::bind(socket.get(), address.get(), address.length) == 0 && ::listen(socket.get(), waitingPrograms) == 0;
  return isListening ? std::move(socket) : posix::FileDescriptor();
}

}  // namespace

std::expected<PrivateDisplay, Error> PrivateDisplay::make() {
  if (::mkdir(socketDirectory, 0777) == 0) ::chmod(socketDirectory, 01777);
  for (int number = firstNumber; number <= lastNumber; ++number) {
    PrivateDisplay display;
    if (display.claim(number)) return display;
  }
  return std::unexpected(Error{"No display number is free, or /tmp/.X11-unix cannot be written to."});
}

PrivateDisplay::PrivateDisplay(PrivateDisplay&& other) noexcept
    : number_(std::exchange(other.number_, -1)),
      isBound_(std::exchange(other.isBound_, false)),
      sockets_(std::move(other.sockets_)) {}

PrivateDisplay::~PrivateDisplay() { release(); }

bool PrivateDisplay::claim(int number) { return lock(number) && listen(); }

bool PrivateDisplay::lock(int number) {
  const std::string path = lockPath(number);
  if (const int error = writeLock(path); error != 0) {
    if (error != EEXIST || isHeldByTheLiving(path)) return false;
    ::unlink(path.c_str());
    if (writeLock(path) != 0) return false;
  }
  number_ = number;
  return true;
}

bool PrivateDisplay::listen() {
  const std::string path = socketPath(number_);
  sockets_[0] = listeningSocket(localAddress(path, true));
  if (!sockets_[0].isOpen()) return false;
  // Left behind by somebody who is gone: the number is ours.
  ::unlink(path.c_str());
  sockets_[1] = listeningSocket(localAddress(path, false));
  isBound_ = sockets_[1].isOpen();
  return isBound_;
}

void PrivateDisplay::release() {
  if (number_ < 0) return;
  if (isBound_) ::unlink(socketPath(number_).c_str());
  ::unlink(lockPath(number_).c_str());
}

posix::FileDescriptor PrivateDisplay::accept(const posix::FileDescriptor& socket) {
  posix::FileDescriptor connection(::accept4(socket.get(), nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK));
  if (!connection.isOpen()) return connection;
  enlargeSendBuffer(connection.get());
  ucred peer{};
  socklen_t length = sizeof peer;
  const bool isKnown = ::getsockopt(connection.get(), SOL_SOCKET, SO_PEERCRED, &peer, &length) == 0;
  // The superuser can look at everything even without a socket.
  const bool isAllowed = isKnown && (peer.uid == ::geteuid() || peer.uid == 0);
  return isAllowed ? std::move(connection) : posix::FileDescriptor();
}

}  // namespace platform::linux::lens
