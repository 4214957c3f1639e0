// What the server sends a client after its setup: replies, events and errors, passed on as they are, but that
//
// - an image read from the picture that stands for the screen says the screen's visual again, which a pixmap has not;
// - damage that is reported on a board is the screen's;
// - the answers to the lens's own questions are left out, and the numbers of the requests are those that the client
//   counts, which does not know of the lens's own ones.
//
// Threads: one at a time. Ownership: keeps references to names and replies, which outlive it.
// Failure: none; any bytes are messages.
#pragma once

#include <cstddef>
#include <cstdint>

#include "Platform/Linux/Protocol/PendingReplies.h"
#include "Platform/Linux/Protocol/ScreenNames.h"
#include "Platform/Linux/Protocol/Wire.h"

namespace platform::linux::protocol {

class ReplyStream {
 public:
  // Every message is that long at least; the answer to a question of the lens's own is exactly that long.
  static constexpr std::size_t messageSize = 32;

  struct Step {
    std::size_t length = 0;      // so many bytes can be passed on
    bool isBarrierNext = false;  // the next message is none of the client's: to be dropped, then go on
  };

  ReplyStream(ByteOrder order, ScreenNames& names, PendingReplies& replies)
      : wire_(order), names_(names), replies_(replies) {}

  // Looks at bytes that follow those passed on or dropped so far, and rewrites them in place.
  [[nodiscard]] Step advance(Bytes bytes);

  [[nodiscard]] std::uint64_t remainingBody() const { return body_; }
  void skip(std::uint64_t count) { body_ -= count; }
  // Of the last message, as a whole.
  [[nodiscard]] std::uint64_t lastLength() const { return lastLength_; }

  // The last request, as the server counts, of which a message has told that the server has carried it out.
  [[nodiscard]] std::uint64_t lastRequest() const { return lastRequest_; }

 private:
  // True when the message is to be dropped.
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
  // The lens's own that the server has carried out.
  std::uint16_t ownRequests_ = 0;
};

}  // namespace platform::linux::protocol
