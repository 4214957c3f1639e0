// The replies of the server that a lens has to look into, from the moment when their request is passed on.
//
// Threads: plain values. Requests are numbered as the server counts them, from 1; replies and errors come in the order
// of their requests.
#pragma once

#include <cstdint>
#include <deque>

namespace platform::linux::protocol {

enum class ReplyTo : std::uint8_t {
  screenImage,    // names the visual of what it was read from
  overlayWindow,  // names that window
  barrier,        // to a question of the lens's own: the client must not see it
  nothing,        // a request of the lens's own without a reply; an error must not be seen either
};

struct PendingReply {
  std::uint64_t request = 0;
  ReplyTo kind = ReplyTo::screenImage;
};

using PendingReplies = std::deque<PendingReply>;

}  // namespace platform::linux::protocol
