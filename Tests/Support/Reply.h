// Replies and events of the X server, freed automatically. An error counts as no reply.
#pragma once

#include <xcb/xcb.h>

#include <cstdlib>
#include <memory>

namespace support {

struct FreeReply {
  void operator()(void* memory) const { std::free(memory); }
};

template <typename T>
using Reply = std::unique_ptr<T, FreeReply>;

template <typename R, typename Cookie>
[[nodiscard]] Reply<R> waitForReply(xcb_connection_t* connection,
                                    R* (*function)(xcb_connection_t*, Cookie, xcb_generic_error_t**), Cookie cookie) {
  xcb_generic_error_t* error = nullptr;
  Reply<R> reply(function(connection, cookie, &error));
  const Reply<xcb_generic_error_t> freed(error);
  return reply;
}

}  // namespace support
