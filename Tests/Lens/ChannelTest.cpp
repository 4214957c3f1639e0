#include "Platform/Linux/Lens/Channel.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <numeric>
#include <string>

#include "Tests/Lens/SocketPair.h"

namespace platform::linux::lens {
namespace {

using Outcome = Channel::Outcome;

std::span<const std::byte> bytesOf(std::string_view text) { return std::as_bytes(std::span(text)); }

void sendWith(const posix::FileDescriptor& socket, std::string_view text, std::initializer_list<int> descriptors) {
  alignas(cmsghdr) std::array<std::byte, CMSG_SPACE(sizeof(int) * 8)> control{};
  iovec part{const_cast<char*>(text.data()), text.size()};
  msghdr message{};
  message.msg_iov = &part;
  message.msg_iovlen = 1;
  message.msg_control = control.data();
  message.msg_controllen = CMSG_SPACE(sizeof(int) * descriptors.size());
  cmsghdr* header = CMSG_FIRSTHDR(&message);
  header->cmsg_level = SOL_SOCKET;
  header->cmsg_type = SCM_RIGHTS;
  header->cmsg_len = CMSG_LEN(sizeof(int) * descriptors.size());
  std::memcpy(CMSG_DATA(header), std::data(descriptors), sizeof(int) * descriptors.size());
  ASSERT_EQ(::sendmsg(socket.get(), &message, 0), static_cast<ssize_t>(text.size()));
}

struct Received {
  std::string text;
  std::vector<posix::FileDescriptor> descriptors;
};

Received receiveSome(const posix::FileDescriptor& socket) {
  alignas(cmsghdr) std::array<std::byte, CMSG_SPACE(sizeof(int) * 8)> control{};
  std::string text(65536, '\0');
  iovec part{text.data(), text.size()};
  msghdr message{};
  message.msg_iov = &part;
  message.msg_iovlen = 1;
  message.msg_control = control.data();
  message.msg_controllen = control.size();
  const ssize_t count = ::recvmsg(socket.get(), &message, MSG_CMSG_CLOEXEC);
  Received result{text.substr(0, static_cast<std::size_t>(std::max<ssize_t>(count, 0))), {}};
  for (cmsghdr* header = CMSG_FIRSTHDR(&message); header != nullptr; header = CMSG_NXTHDR(&message, header)) {
    for (std::size_t i = 0; i < (header->cmsg_len - CMSG_LEN(0)) / sizeof(int); ++i) {
      int descriptor = -1;
      std::memcpy(&descriptor, CMSG_DATA(header) + i * sizeof(int), sizeof descriptor);
      result.descriptors.emplace_back(descriptor);
    }
  }
  return result;
}

ino_t identity(int descriptor) {
  struct stat status{};
  EXPECT_EQ(::fstat(descriptor, &status), 0);
  return status.st_ino;
}

std::size_t openDescriptors() {
  std::size_t count = 0;
  for (int descriptor = 0; descriptor < 1024; ++descriptor) count += ::fcntl(descriptor, F_GETFD) >= 0 ? 1U : 0U;
  return count;
}

class Channels : public testing::Test {
 protected:
  SocketPair source_{SOCK_NONBLOCK};
  SocketPair sink_{SOCK_NONBLOCK};
  Channel channel_{source_.near.get(), sink_.near.get()};
};

TEST_F(Channels, OnlyWhatIsReleasedIsSent) {
  ASSERT_EQ(::write(source_.far.get(), "abcdef", 6), 6);
  EXPECT_EQ(channel_.receive(), Outcome::done);
  channel_.release(2);
  EXPECT_EQ(channel_.send(), Outcome::done);
  EXPECT_EQ(receiveSome(sink_.far).text, "ab");
  EXPECT_EQ(channel_.pending().size(), 4U);
  channel_.drop(1);
  channel_.insert(bytesOf("xyz"));
  channel_.release(3);
  EXPECT_EQ(channel_.send(), Outcome::done);
  EXPECT_EQ(receiveSome(sink_.far).text, "xyzdef");
}

TEST_F(Channels, BytesCanBeInsertedBeforeAnythingWasReceived) {
  channel_.insert(bytesOf("hello"));
  EXPECT_EQ(channel_.send(), Outcome::done);
  EXPECT_EQ(receiveSome(sink_.far).text, "hello");
  ASSERT_EQ(::write(source_.far.get(), "abc", 3), 3);
  EXPECT_EQ(channel_.receive(), Outcome::done);
  EXPECT_EQ(channel_.pending().size(), 3U);
}

TEST_F(Channels, DescriptorsTravelWithTheirBytes) {
  const posix::FileDescriptor first(::open("/", O_RDONLY | O_DIRECTORY));
  const posix::FileDescriptor second(::open("/tmp", O_RDONLY | O_DIRECTORY));
  ASSERT_EQ(::write(source_.far.get(), "plain", 5), 5);
  sendWith(source_.far, "one", {first.get()});
  sendWith(source_.far, "two", {second.get(), first.get()});
  while (channel_.receive() == Outcome::done) {
  }
  channel_.release(channel_.pending().size());
  EXPECT_EQ(channel_.send(), Outcome::done);
  std::string text;
  std::vector<ino_t> identities;
  std::vector<std::size_t> positions;
  while (text.size() < 11) {
    const Received received = receiveSome(sink_.far);
    ASSERT_FALSE(received.text.empty());
    for (const posix::FileDescriptor& descriptor : received.descriptors) {
      identities.push_back(identity(descriptor.get()));
      positions.push_back(text.size());
    }
    text += received.text;
  }
  EXPECT_EQ(text, "plainonetwo");
  EXPECT_EQ(identities, (std::vector{identity(first.get()), identity(second.get()), identity(first.get())}));
  ASSERT_EQ(positions.size(), 3U);
  EXPECT_LE(positions[0], 5U);
  EXPECT_LE(positions[1], 8U);
}

TEST_F(Channels, DescriptorsInTransitAreClosedWithTheChannel) {
  const std::size_t before = openDescriptors();
  {
    Channel channel(source_.near.get(), sink_.near.get());
    sendWith(source_.far, "one", {sink_.far.get(), sink_.far.get()});
    EXPECT_EQ(channel.receive(), Outcome::done);
    EXPECT_EQ(openDescriptors(), before + 2);
  }
  EXPECT_EQ(openDescriptors(), before);
}

TEST_F(Channels, WhatTheOtherEndDoesNotTakeIsKept) {
  std::string sent(400'000, ' ');
  std::iota(sent.begin(), sent.end(), '\0');
  std::size_t written = 0;
  std::string got;
  bool wasBlocked = false;
  while (got.size() < sent.size()) {
    const ssize_t count = ::write(source_.far.get(), sent.data() + written, sent.size() - written);
    if (count > 0) written += static_cast<std::size_t>(count);
    (void)channel_.receive();
    channel_.release(channel_.pending().size());
    wasBlocked = channel_.send() == Outcome::blocked || wasBlocked;
    if (wasBlocked || written == sent.size()) got += receiveSome(sink_.far).text;
  }
  EXPECT_TRUE(wasBlocked);
  EXPECT_TRUE(got == sent);
}

TEST_F(Channels, AnUninspectedStretchArrivesComplete) {
  std::string sent(600'000, ' ');
  std::iota(sent.begin(), sent.end(), '\0');
  std::size_t written = 0;
  std::uint64_t left = sent.size();
  std::string got;
  while (got.size() < sent.size()) {
    const ssize_t count = ::write(source_.far.get(), sent.data() + written, sent.size() - written);
    if (count > 0) written += static_cast<std::size_t>(count);
    if (channel_.hasReleased()) {
      EXPECT_NE(channel_.send(), Outcome::closed);
    } else if (left > 0) {
      std::uint64_t moved = 0;
      EXPECT_NE(channel_.move(left, moved), Outcome::closed);
      left -= moved;
    }
    got += receiveSome(sink_.far).text;
  }
  EXPECT_TRUE(got == sent);
}

TEST_F(Channels, AClosedEndIsNoticed) {
  source_.far = posix::FileDescriptor();
  EXPECT_EQ(channel_.receive(), Outcome::closed);
  sink_.far = posix::FileDescriptor();
  channel_.insert(bytesOf("x"));
  EXPECT_EQ(channel_.send(), Outcome::closed);
}

}  // namespace
}  // namespace platform::linux::lens
