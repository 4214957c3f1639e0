// What the server sends a client after the setup: replies, events and errors, passed on unchanged except that
//
// - an image read from the picture that stands for the screen names the screen's visual, since a pixmap has none;
// - damage reported on a board becomes damage of the screen;
// - answers to the lens's own questions are left out, and sequence numbers are those the client counts: it knows
//   nothing of the lens's own requests.
//
// Threads: one at a time. Ownership: keeps references to names and replies, which must outlive it. Failure: none; any
// bytes are valid messages.
#pragma once

#include <cstddef>
#include <cstdint>

#include "Platform/Linux/Protocol/PendingReplies.h"
#include "Platform/Linux/Protocol/ScreenNames.h"
#include "Platform/Linux/Protocol/Wire.h"

namespace platform::linux::protocol {

class ReplyStream {
 public:
  // Every message has at least this length; an answer to the lens's own question has exactly this length.
  static constexpr std::size_t messageSize = 32;

  struct Step {
    std::size_t length = 0;      // this many bytes can be passed on
    bool isBarrierNext = false;  // the next message is not for the client: drop it, then go on
  };

  ReplyStream(ByteOrder order, ScreenNames& names, PendingReplies& replies)
      : wire_(order), names_(names), replies_(replies) {}

  // Looks at the bytes after those passed on or dropped so far, and rewrites them in place.
  [[nodiscard]] Step advance(Bytes bytes);

  [[nodiscard]] std::uint64_t remainingBody() const { return body_; }
  void skip(std::uint64_t count) { body_ -= count; }
  // The full length of the last message.
  [[nodiscard]] std::uint64_t lastLength() const { return lastLength_; }

  // The last request, in the server's count, that a message has shown to be carried out.
  [[nodiscard]] std::uint64_t lastRequest() const { return lastRequest_; }

 private:
  // True when the message must be dropped.
  bool passOwnRequests(bool isError);
  bool takeReply(Bytes message);
  void rewriteDamage(Bytes message);
  void renumber(Bytes message);

  Wire wire_;
  ScreenNames& names_;
  PendingReplies& replies_;
  std::uint64_t body_ = 0;
  std::uint64_t lastLength_ = 0;
  std::uint64_t lastRequest_ = 0;
  // The lens's own requests that the server has carried out.
  std::uint16_t ownRequests_ = 0;
};

}  // namespace platform::linux::protocol
