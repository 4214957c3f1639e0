// Owns what an X connection hands out, and waits for the reply to one request.
//
// Threads: plain values, tied to a thread only as far as their connection is. Ownership: replies and events are freed
// with their holder.
// Failure: a failed request, or a connection that is gone, gives an empty `Reply`. Asking for the reply marks the error
// as expected; the caller decides what the missing reply means.
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

// The bit of an event's type that marks an event sent by another client rather than by the server.
inline constexpr std::uint8_t sentEventBit = 0x80;

[[nodiscard]] inline std::uint8_t eventType(const xcb_generic_event_t& event) {
  return static_cast<std::uint8_t>(event.response_type & ~sentEventBit);
}

[[nodiscard]] inline bool isSentByClient(const xcb_generic_event_t& event) {
  return (event.response_type & sentEventBit) != 0;
}

// Views an event as the kind that its type names.
template <typename T>
[[nodiscard]] const T& eventAs(const xcb_generic_event_t& event) {
  return reinterpret_cast<const T&>(event);
}

// Whether `earlier` is the same request or event as `later`, or came before it. Numbers wrap around.
[[nodiscard]] inline bool isNotAfter(std::uint32_t earlier, std::uint32_t later) {
  return static_cast<std::int32_t>(later - earlier) >= 0;
}

}  // namespace platform::linux::xcb
