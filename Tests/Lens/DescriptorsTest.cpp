// Descriptors that the server sends come through the lens, whatever else is on its way.

#include <gtest/gtest.h>
#include <sys/socket.h>

#include <array>

#include "Platform/Linux/Lens/LocalSocket.h"
#include "Platform/Linux/Lens/ServerAddress.h"
#include "Platform/Linux/Posix/FileDescriptor.h"
#include "Platform/Linux/Protocol/Setup.h"
#include "Tests/Lens/OpenLens.h"
#include "Tests/Lens/ProtocolBytes.h"
#include "Tests/Support/Reply.h"
#include "Tests/Support/XServer.h"

namespace lens {
namespace {

namespace lens = platform::linux::lens;
namespace protocol = platform::linux::protocol;
using platform::linux::posix::FileDescriptor;

// Reads the raw stream: client libraries may themselves lose a descriptor that comes early.
class RawClient {
 public:
  explicit RawClient(const OpenLens& open) : socket_(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    const auto address = lens::localAddress(lens::socketPath(open.number()), false);
    if (::connect(socket_.get(), address.get(), address.length) != 0) throw std::runtime_error("No lens.");
    ::setenv("XAUTHORITY", open.authority().c_str(), 1);
    const auto credential = lens::ServerAddress::parse(open.display())->credential();
    ::unsetenv("XAUTHORITY");
    send(protocol::setupRequest({}, credential));
    const auto header = receive(8);
    setup_ = receive(std::size_t{4} * protocol::Wire(protocol::ByteOrder::little).get16(&header[6]));
  }

  void send(const std::vector<std::byte>& bytes) {
    if (::send(socket_.get(), bytes.data(), bytes.size(), MSG_NOSIGNAL) != static_cast<ssize_t>(bytes.size())) {
      throw std::runtime_error("The lens hung up.");
    }
  }

  // Receives this many bytes, and any descriptors that come with them.
  std::vector<std::byte> receive(std::size_t count) {
    std::vector<std::byte> bytes(count);
    for (std::size_t done = 0; done < count;) {
      iovec part{&bytes[done], count - done};
      alignas(cmsghdr) std::array<std::byte, CMSG_SPACE(sizeof(int) * 8)> control{};
      msghdr message{};
      message.msg_iov = &part;
      message.msg_iovlen = 1;
      message.msg_control = control.data();
      message.msg_controllen = control.size();
      if (!support::waitReadable(socket_.get())) throw std::runtime_error("Nothing comes.");
      const ssize_t received = ::recvmsg(socket_.get(), &message, MSG_CMSG_CLOEXEC);
      if (received <= 0) throw std::runtime_error("The lens hung up.");
      done += static_cast<std::size_t>(received);
      const cmsghdr* carried = CMSG_FIRSTHDR(&message);
      if (carried == nullptr || carried->cmsg_type != SCM_RIGHTS) continue;
      int descriptor = -1;
      std::memcpy(&descriptor, CMSG_DATA(carried), sizeof descriptor);
      descriptors_.emplace_back(descriptor);
    }
    return bytes;
  }

  [[nodiscard]] std::size_t descriptors() const { return descriptors_.size(); }
  // The first resource id that this client may use.
  [[nodiscard]] std::uint32_t firstId() const { return protocol::Wire(protocol::ByteOrder::little).get32(&setup_[4]); }

 private:
  FileDescriptor socket_;
  std::vector<std::byte> setup_;
  std::vector<FileDescriptor> descriptors_;
};

// The server cannot send the whole image at once, so it sends the descriptor along with the middle of it.
TEST(Descriptors, ArriveDuringALongReply) {
  const support::XServer server;
  support::XClient outside(server.display());
  const auto extension = support::waitForReply(outside.connection(), xcb_query_extension_reply,
                                               xcb_query_extension(outside.connection(), 7, "MIT-SHM"));
  ASSERT_TRUE(extension);
  const OpenLens open(server.display());
  RawClient client(open);
  constexpr std::size_t image = std::size_t{1280} * 800 * 4;
  for (std::uint32_t round = 0; round < 10; ++round) {
    lens::ProtocolBytes asked(protocol::ByteOrder::little);
    asked.request(73, 2, {outside.root(), 0, 1280U | 800U << 16U, ~0U});              // GetImage
    asked.request(extension->major_opcode, 7, {client.firstId() + round, 65536, 0});  // CreateSegment
    client.send(asked.bytes());
    const auto reply = client.receive(32 + image);
    EXPECT_EQ(protocol::Wire(protocol::ByteOrder::little).get32(&reply[4]), image / 4);
    EXPECT_EQ(client.receive(32)[0], std::byte{1});
    EXPECT_EQ(client.descriptors(), round + 1);
  }
}

}  // namespace
}  // namespace lens
