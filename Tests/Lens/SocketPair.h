// Two connected local sockets.
#pragma once

#include <gtest/gtest.h>
#include <sys/socket.h>

#include <array>

#include "Platform/Linux/Posix/FileDescriptor.h"

namespace platform::linux::lens {

struct SocketPair {
  // `flags`: SOCK_NONBLOCK, or nothing.
  explicit SocketPair(int flags = 0) {
    std::array<int, 2> ends{};
    EXPECT_EQ(::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | flags, 0, ends.data()), 0);
    near = posix::FileDescriptor(ends[0]);
    far = posix::FileDescriptor(ends[1]);
  }

  posix::FileDescriptor near;
  posix::FileDescriptor far;
};

}  // namespace platform::linux::lens
