// A display that is reached over the network, as through a tunnel: a socket of the test's own on the loopback
// interface.

#include <X11/Xauth.h>
#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <string>
#include <utility>

#include "Platform/Linux/Lens/ServerAddress.h"
#include "Tests/Support/TemporaryDirectory.h"
#include "Tests/Support/Variable.h"
#include "Tests/Support/Wait.h"

namespace lens {
namespace {

using platform::linux::lens::ServerAddress;

class NetworkDisplay : public testing::Test {
 public:
  ~NetworkDisplay() override { ::close(listener_); }

 protected:
  NetworkDisplay() {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    do {
      address.sin_port = htons(static_cast<std::uint16_t>(firstPort + ++number_));
    } while (::bind(listener_, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0 && number_ < 1000);
    ::listen(listener_, 4);
  }

  [[nodiscard]] ServerAddress address() const {
    return ServerAddress::parse("127.0.0.1:" + std::to_string(number_)).value();
  }
  // An authority file with one cookie, for the display of this number on this machine.
  [[nodiscard]] std::string authorityFor(std::array<char, 4> machine, char filling) const {
    std::string number = std::to_string(number_);
    std::string method = "MIT-MAGIC-COOKIE-1";
    std::array<char, 16> cookie{};
    cookie.fill(filling);
    Xauth entry{familyInternet, static_cast<unsigned short>(machine.size()),
                machine.data(), static_cast<unsigned short>(number.size()),
                number.data(),  static_cast<unsigned short>(method.size()),
                method.data(),  static_cast<unsigned short>(cookie.size()),
                cookie.data()};
    const std::string path = (directory_.path() / "authority").string();
    std::FILE* file = std::fopen(path.c_str(), "w");
    EXPECT_TRUE(file != nullptr && XauWriteAuth(file, &entry) == 1);
    if (file != nullptr) std::fclose(file);
    return path;
  }

  static constexpr int firstPort = 6000;
  static constexpr unsigned short familyInternet = 0;  // of the protocol
  int listener_ = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  int number_ = 400;
  support::TemporaryDirectory directory_;
};

TEST_F(NetworkDisplay, IsReachedOverTcp) {
  const auto program = address().connect();
  ASSERT_TRUE(program) << program.error().localizedDescription;
  ASSERT_TRUE(support::waitReadable(listener_));
  const int server = ::accept(listener_, nullptr, nullptr);
  ASSERT_GE(server, 0);
  EXPECT_EQ(::write(program->get(), "hello", 5), 5);
  ASSERT_TRUE(support::waitReadable(server));
  std::array<char, 8> heard{};
  EXPECT_EQ(::read(server, heard.data(), heard.size()), 5);
  EXPECT_EQ(std::string(heard.data()), "hello");
  ::close(server);
}

TEST_F(NetworkDisplay, ThatNobodyServesIsReportedInASentence) {
  ::close(std::exchange(listener_, -1));
  const auto program = address().connect();
  ASSERT_FALSE(program);
  EXPECT_EQ(program.error().localizedDescription, "The X11 display can no longer be reached.");
}

TEST_F(NetworkDisplay, HasTheCookieOfTheMachinesAddress) {
  const std::string path = authorityFor({127, 0, 0, 1}, 'c');
  const support::Variable authority("XAUTHORITY", path.c_str());
  EXPECT_EQ(std::string(address().credential().data), std::string(16, 'c'));
}

TEST_F(NetworkDisplay, DoesNotGetTheCookieOfAnotherMachine) {
  const std::string path = authorityFor({127, 0, 0, 9}, 'c');
  const support::Variable authority("XAUTHORITY", path.c_str());
  EXPECT_TRUE(address().credential().data.empty());
}

}  // namespace
}  // namespace lens
