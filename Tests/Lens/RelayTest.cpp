#include "Platform/Linux/Lens/Relay.h"

#include <gtest/gtest.h>
#include <sys/epoll.h>
#include <unistd.h>

#include <utility>
#include <vector>

#include "Tests/Lens/ProtocolBytes.h"
#include "Tests/Lens/SocketPair.h"

namespace platform::linux::lens {
namespace {

constexpr std::size_t wordsOfLongMessage = 16384;

class NoPictures : public PictureSource {
 public:
  std::uint64_t requestPicture() override {
    ADD_FAILURE() << "Nobody reads the screen.";
    return 0;
  }
};

// A program and a server whose connection has just been set up.
class RelayTest : public testing::Test {
 protected:
  RelayTest() {
    EXPECT_TRUE(relay_.serverReady(EPOLLOUT));
    EXPECT_FALSE(arrivedAt(server_.far).empty());
    const std::vector<std::byte> accepted{std::byte{1}, std::byte{0}, std::byte{11}, std::byte{0},
                                          std::byte{0}, std::byte{0}, std::byte{0},  std::byte{0}};
    serverSends(accepted);
  }

  void programSends(const std::vector<std::byte>& bytes) {
    send(client_.far, bytes);
    EXPECT_TRUE(relay_.clientReady(EPOLLIN));
    EXPECT_EQ(arrivedAt(server_.far), bytes);
  }
  void serverSends(const std::vector<std::byte>& bytes) {
    send(server_.far, bytes);
    EXPECT_TRUE(relay_.serverReady(EPOLLIN));
    EXPECT_EQ(arrivedAt(client_.far), bytes);
  }

  static std::vector<std::byte> request() {
    ProtocolBytes bytes(protocol::ByteOrder::little);
    bytes.request(127, 0, {0});
    return bytes.bytes();
  }
  static std::vector<std::byte> longRequest() {
    std::vector<std::byte> image(4 * wordsOfLongMessage);
    image[0] = std::byte{72};
    protocol::Wire(protocol::ByteOrder::little).put16(&image[2], wordsOfLongMessage);
    return image;
  }
  static std::vector<std::byte> reply(std::uint32_t more = 0) {
    ProtocolBytes bytes(protocol::ByteOrder::little);
    bytes.message(1, 1, 0, more);
    return bytes.bytes();
  }

  [[nodiscard]] Passing passing() const { return relay_.passing(); }

 private:
  static void send(const posix::FileDescriptor& socket, const std::vector<std::byte>& bytes) {
    EXPECT_EQ(::write(socket.get(), bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
  }
  static std::vector<std::byte> arrivedAt(const posix::FileDescriptor& socket) {
    std::vector<std::byte> bytes(8 * wordsOfLongMessage);
    std::size_t count = 0;
    ssize_t received = 0;
    while ((received = ::read(socket.get(), &bytes[count], bytes.size() - count)) > 0) {
      count += static_cast<std::size_t>(received);
    }
    bytes.resize(count);
    return bytes;
  }

  SocketPair client_{SOCK_NONBLOCK};
  SocketPair server_{SOCK_NONBLOCK};
  protocol::ScreenNames names_{.root = 0x50a};
  NoPictures pictures_;
  Relay relay_{std::move(client_.near), std::move(server_.near), {}, {}, names_, pictures_};
};

TEST_F(RelayTest, TellsALongRequestFromAShortOne) {
  programSends(request());
  EXPECT_EQ(passing(), Passing::shortMessages);
  programSends(longRequest());
  EXPECT_EQ(passing(), Passing::longRequest);
  programSends(request());
  EXPECT_EQ(passing(), Passing::shortMessages);
}

TEST_F(RelayTest, TellsALongReplyFromAShortOne) {
  serverSends(reply());
  EXPECT_EQ(passing(), Passing::shortMessages);
  serverSends(reply(wordsOfLongMessage));
  EXPECT_EQ(passing(), Passing::longReply);
  serverSends(reply());
  EXPECT_EQ(passing(), Passing::shortMessages);
}

TEST_F(RelayTest, ALongMessageInTheOtherDirectionDoesNotCount) {
  serverSends(reply(wordsOfLongMessage));
  programSends(request());
  EXPECT_EQ(passing(), Passing::shortMessages);
  programSends(longRequest());
  serverSends(reply());
  EXPECT_EQ(passing(), Passing::shortMessages);
}

}  // namespace
}  // namespace platform::linux::lens
