// The server replies that a lens has to inspect, noted when their requests are passed on.
//
// Threads: plain values. Requests are numbered as the server counts them, from 1; replies and errors come in the order
// of their requests.
#pragma once

#include <cstdint>
#include <deque>

namespace platform::linux::protocol {

enum class ReplyTo : std::uint8_t {
  screenImage,    // names the visual of the drawable that was read
  overlayWindow,  // names that window
  barrier,        // to the lens's own question: the client must not see it
  nothing,        // to the lens's own request, which has no reply; an error must not be seen either
};

struct PendingReply {
  std::uint64_t request = 0;
  ReplyTo kind = ReplyTo::screenImage;
};

using PendingReplies = std::deque<PendingReply>;

}  // namespace platform::linux::protocol
