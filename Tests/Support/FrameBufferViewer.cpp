#include "Tests/Support/FrameBufferViewer.h"

#include <sys/socket.h>
#include <sys/time.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstring>
#include <stdexcept>

namespace support {

namespace {

using namespace std::string_literals;

constexpr std::size_t lengthOfVersion = 12;
constexpr std::size_t noAuthentication = 1;
constexpr std::size_t lengthOfPixelFormat = 16;
constexpr std::size_t framebufferUpdate = 0;
constexpr std::size_t colourMap = 1;
constexpr std::size_t bell = 2;
constexpr std::size_t cutText = 3;

std::string number16(int value) { return {static_cast<char>(value >> 8), static_cast<char>(value & 0xff)}; }

}  // namespace

FrameBufferViewer::FrameBufferViewer(const std::filesystem::path& socket)
    : socket_(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  std::strncpy(address.sun_path, socket.c_str(), sizeof address.sun_path - 1);
  const timeval patience{10, 0};
  ::setsockopt(socket_, SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
  if (::connect(socket_, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
    ::close(socket_);
    throw std::runtime_error("Nobody offers a screen at " + socket.string());
  }
  (void)receive(lengthOfVersion);
  send("RFB 003.003\n");
  if (receiveNumber(4) != noAuthentication) throw std::runtime_error("The screen is not offered to everybody.");
  send("\1"s);  // shared with other viewers
  (void)receive(4 + lengthOfPixelFormat);
  (void)receive(receiveNumber(4));
  // 32 bits per pixel, of which 24 count, little-endian: blue, green, red, unused.
  send("\0\0\0\0"s + "\x20\x18\0\1"s + "\0\xff\0\xff\0\xff"s + "\x10\x8\0"s + "\0\0\0"s);
}

FrameBufferViewer::~FrameBufferViewer() { ::close(socket_); }

std::uint32_t FrameBufferViewer::at(int x, int y) {
  send("\3\0"s + number16(x) + number16(y) + number16(1) + number16(1));
  for (;;) {
    const std::size_t type = receiveNumber(1);
    if (type == bell) continue;
    if (type == cutText) {
      (void)receive(3);
      (void)receive(receiveNumber(4));
    } else if (type == colourMap) {
      (void)receive(3);
      (void)receive(6 * receiveNumber(2));
    } else if (type == framebufferUpdate) {
      break;
    } else {
      throw std::runtime_error("What the server says makes no sense.");
    }
  }
  (void)receive(1);
  std::uint32_t color = 0;
  for (std::size_t rectangles = receiveNumber(2); rectangles > 0; --rectangles) {
    (void)receive(4);
    const std::size_t pixels = receiveNumber(2) * receiveNumber(2);
    if (receiveNumber(4) != 0) throw std::runtime_error("Only plain pixels were asked for.");
    const std::string bytes = receive(4 * pixels);
    std::memcpy(&color, bytes.data(), sizeof color);
  }
  return color & 0xffffffU;
}

std::string FrameBufferViewer::receive(std::size_t count) {
  std::string bytes(count, '\0');
  for (std::size_t done = 0; done < count;) {
    const auto received = ::recv(socket_, bytes.data() + done, count - done, 0);
    if (received <= 0) throw std::runtime_error("The server of the screen says nothing any more.");
    done += static_cast<std::size_t>(received);
  }
  return bytes;
}

std::size_t FrameBufferViewer::receiveNumber(std::size_t bytes) {
  std::size_t number = 0;
  for (const char byte : receive(bytes)) number = number << 8U | static_cast<unsigned char>(byte);
  return number;
}

void FrameBufferViewer::send(const std::string& bytes) {
  if (::send(socket_, bytes.data(), bytes.size(), MSG_NOSIGNAL) != static_cast<ssize_t>(bytes.size()))
    throw std::runtime_error("The server of the screen listens no more.");
}

}  // namespace support
