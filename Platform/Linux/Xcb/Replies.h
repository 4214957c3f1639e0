// Ownership of what an X connection hands out, and waiting for the reply to one request.
//
// Threads: plain values, as free as the connection they came from.
// Ownership: replies and events are freed with their holder.
// Failure: a request that failed, or a connection that is gone, gives an empty `Reply`; asking for the reply names the
// error as expected, and the caller decides what its absence means.
#pragma once

#include <xcb/xcb.h>

#include <cstdlib>
#include <memory>

namespace platform::linux::xcb {

struct FreeDeleter {
  void operator()(void* memory) const { std::free(memory); }
};

template <typename T>
using Reply = std::unique_ptr<T, FreeDeleter>;
using Event = std::unique_ptr<xcb_generic_event_t, FreeDeleter>;

// Blocks for one reply: awaitReply(connection, xcb_get_geometry_reply, cookie). Send every request of a batch before
// the first wait.
template <typename R, typename Cookie>
[[nodiscard]] Reply<R> awaitReply(xcb_connection_t* connection,
                                  R* (*function)(xcb_connection_t*, Cookie, xcb_generic_error_t**), Cookie cookie) {
  return Reply<R>(function(connection, cookie, nullptr));
}

// The bit of an event's type that tells an event sent by another client from one of the server's own.
inline constexpr std::uint8_t sentEventBit = 0x80;

[[nodiscard]] inline std::uint8_t eventType(const xcb_generic_event_t& event) {
  return static_cast<std::uint8_t>(event.response_type & ~sentEventBit);
}

[[nodiscard]] inline bool isSentByClient(const xcb_generic_event_t& event) {
  return (event.response_type & sentEventBit) != 0;
}

// Sees an event as the kind that its type says it is.
template <typename T>
[[nodiscard]] const T& eventAs(const xcb_generic_event_t& event) {
  return reinterpret_cast<const T&>(event);
}

// Whether the request or event numbered `earlier` does not come after `later`. Numbers wrap around.
[[nodiscard]] inline bool isNotAfter(std::uint32_t earlier, std::uint32_t later) {
  return static_cast<std::int32_t>(later - earlier) >= 0;
}

}  // namespace platform::linux::xcb
