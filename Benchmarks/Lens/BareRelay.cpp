// The least that any proxy of a display has to do: it passes bytes both ways without looking at them. A yardstick, not
// a bound: the lens gathers small requests, and is faster with some.
//
// Its argument is the number of the real display. It prints its own number and serves that display until it is ended.
// One thread waits for each direction of each connection. The bytes go from socket to socket through a pipe, which was
// measured to be faster than reading and writing for large messages, and as fast for small ones. Descriptors are not
// passed.

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdlib>
#include <iostream>
#include <string>
#include <thread>

#include "Platform/Linux/Lens/LocalSocket.h"
#include "Platform/Linux/Posix/FileDescriptor.h"

namespace {

using platform::linux::lens::localAddress;
using platform::linux::lens::socketPath;
using platform::linux::posix::FileDescriptor;

constexpr int firstNumber = 200;
constexpr int lastNumber = 999;
constexpr int pipeSize = 1024 * 1024;

void pass(int from, int to) {
  std::array<int, 2> ends{};
  if (::pipe2(ends.data(), O_CLOEXEC) != 0) return;
  const FileDescriptor out(ends[0]);
  const FileDescriptor in(ends[1]);
  ::fcntl(in.get(), F_SETPIPE_SZ, pipeSize);
  for (;;) {
    ssize_t left = ::splice(from, nullptr, in.get(), nullptr, pipeSize, SPLICE_F_MOVE);
    if (left <= 0) break;
    while (left > 0) {
      const ssize_t sent = ::splice(out.get(), nullptr, to, nullptr, static_cast<std::size_t>(left), SPLICE_F_MOVE);
      if (sent <= 0) break;
      left -= sent;
    }
    if (left > 0) break;
  }
  ::shutdown(from, SHUT_RDWR);
  ::shutdown(to, SHUT_RDWR);
}

void serve(const FileDescriptor& client, int number) {
  const FileDescriptor server(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
  const auto address = localAddress(socketPath(number), false);
  if (::connect(server.get(), address.get(), address.length) != 0) return;
  const std::jthread replies([&] { pass(server.get(), client.get()); });
  pass(client.get(), server.get());
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) return EXIT_FAILURE;
  const int server = std::atoi(argv[1]);
  std::signal(SIGPIPE, SIG_IGN);
  const FileDescriptor listening(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
  int number = firstNumber;
  // The name has no file, so none is left behind.
  for (; number <= lastNumber; ++number) {
    const auto address = localAddress(socketPath(number), true);
    if (::bind(listening.get(), address.get(), address.length) == 0) break;
  }
  if (number > lastNumber || ::listen(listening.get(), 1) != 0) return EXIT_FAILURE;
  std::cout << number << std::endl;
  for (;;) {
    FileDescriptor client(::accept4(listening.get(), nullptr, nullptr, SOCK_CLOEXEC));
    if (!client.isOpen()) return EXIT_FAILURE;
    std::thread([client = std::move(client), server] { serve(client, server); }).detach();
  }
}
