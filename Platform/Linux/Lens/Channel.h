// One direction of a connection: bytes, and the file descriptors that travel with them, from one socket to another.
//
// Received bytes are pending until they are released; released bytes are sent. Descriptors go with the byte with which
// they came, or before it. Long stretches that nobody needs to see go from socket to socket without being copied here.
//
// Threads: one at a time. Neither socket may block. Ownership: does not own the sockets; descriptors in transit are
// closed with the channel.
#pragma once

#include <sys/socket.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <limits>
#include <vector>

#include "Platform/Linux/Posix/FileDescriptor.h"
#include "Platform/Linux/Protocol/Wire.h"

namespace platform::linux::lens {

class Channel {
 public:
  enum class Outcome : std::uint8_t {
    done,     // something was received; everything was sent
    blocked,  // by the socket
    closed,   // the other end is gone, or the connection failed
  };

  static constexpr std::uint64_t everything = std::numeric_limits<std::uint64_t>::max();

  Channel(int from, int to) : from_(from), to_(to) {}

  // Receives what has arrived, as far as there is room, but no more than `most`.
  [[nodiscard]] Outcome receive(std::uint64_t most = everything);
  // Sends what was released.
  [[nodiscard]] Outcome send();
  // Moves up to `count` bytes that nobody needs to see and that belong to no message with descriptors. Only when
  // nothing is pending and nothing is left to send. `moved` says how many were taken in.
  [[nodiscard]] Outcome move(std::uint64_t count, std::uint64_t& moved);

  [[nodiscard]] protocol::Bytes pending() { return protocol::Bytes(buffer_).subspan(released_, end_ - released_); }
  void release(std::size_t count) { released_ += count; }
  // Removes the first pending bytes from the stream.
  void drop(std::size_t count);
  // Inserts bytes before the pending ones, and releases them.
  void insert(std::span<const std::byte> bytes);

  [[nodiscard]] bool hasPending() const { return released_ < end_; }
  // Whether the last `receive` or `move` may have left something in the socket.
  [[nodiscard]] bool mayHaveLeft() const { return mayHaveLeft_; }
  [[nodiscard]] bool hasReleased() const { return begin_ < released_ || inPipe_ > 0; }

 private:
  struct Descriptors {
    std::uint64_t position = 0;  // of the byte they travel with, counted from the beginning of the stream
    std::vector<posix::FileDescriptor> descriptors;
  };

  void makeRoom();
  [[nodiscard]] Outcome sendPiped();
  [[nodiscard]] Outcome sendSome();
  void keepDescriptors(const msghdr& message);

  int from_;
  int to_;
  std::vector<std::byte> buffer_;
  // [begin, released) is to be sent, [released, end) is pending.
  std::size_t begin_ = 0;
  std::size_t released_ = 0;
  std::size_t end_ = 0;
  bool mayHaveLeft_ = false;
  std::uint64_t position_ = 0;  // of `begin_` in the stream
  std::deque<Descriptors> descriptors_;
  std::array<posix::FileDescriptor, 2> pipe_;
  std::size_t inPipe_ = 0;
};

}  // namespace platform::linux::lens
