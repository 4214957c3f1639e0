#include "Platform/Linux/Protocol/ReplyStream.h"

#include <xcb/composite.h>
#include <xcb/damage.h>
#include <xcb/xproto.h>

#include <algorithm>
#include <cstddef>

namespace platform::linux::protocol {

namespace {

constexpr std::uint8_t error = 0;
constexpr std::uint8_t reply = 1;
constexpr std::uint8_t sentEvent = 0x80;

}  // namespace

ReplyStream::Step ReplyStream::advance(Bytes bytes) {
  std::size_t done = 0;
  for (;;) {
    const auto passed = static_cast<std::size_t>(std::min<std::uint64_t>(body_, bytes.size() - done));
    body_ -= passed;
    done += passed;
    if (bytes.size() - done < messageSize) return {done, false};
    const Bytes message = bytes.subspan(done, messageSize);
    const auto type = std::to_integer<std::uint8_t>(message[0]);
    const auto kind = static_cast<std::uint8_t>(type & ~sentEvent);
    std::uint64_t length = messageSize;
    if (type == reply || kind == XCB_GE_GENERIC) length += std::uint64_t{wire_.get32(&message[4])} * 4;
    // KeymapNotify is the one message without a sequence number.
    if (kind != XCB_KEYMAP_NOTIFY) {
      lastRequest_ += static_cast<std::uint16_t>(wire_.get16(&message[2]) - static_cast<std::uint16_t>(lastRequest_));
      if (passOwnRequests(type == error)) return {done, true};
      if ((type == reply || type == error) && takeReply(message)) return {done, true};
      if (kind == names_.extensions.damageEvent && kind > reply) rewriteDamage(message);
      renumber(message);
    }
    body_ = lastLength_ = length;
  }
}

// A request gets no reply once the server has passed it without one.
bool ReplyStream::passOwnRequests(bool isError) {
  while (!replies_.empty() && replies_.front().request <= lastRequest_) {
    const auto [request, kind] = replies_.front();
    if (request == lastRequest_ && kind != ReplyTo::nothing) return false;
    replies_.pop_front();
    if (kind != ReplyTo::nothing) continue;
    ++ownRequests_;
    if (request == lastRequest_ && isError) return true;
  }
  return false;
}

bool ReplyStream::takeReply(Bytes message) {
  if (replies_.empty() || replies_.front().request != lastRequest_) return false;
  const ReplyTo kind = replies_.front().kind;
  replies_.pop_front();
  if (kind == ReplyTo::barrier) {
    ++ownRequests_;
    return true;
  }
  if (std::to_integer<std::uint8_t>(message[0]) == error) return false;
  if (kind == ReplyTo::screenImage) wire_.put32(&message[offsetof(xcb_get_image_reply_t, visual)], names_.rootVisual);
  if (kind == ReplyTo::overlayWindow)
    names_.overlay = wire_.get32(&message[offsetof(xcb_composite_get_overlay_window_reply_t, overlay_win)]);
  return false;
}

void ReplyStream::rewriteDamage(Bytes message) {
  const DamageBoards& boards = names_.boards;
  using Notify = xcb_damage_notify_event_t;
  constexpr std::size_t geometry = offsetof(Notify, geometry);
  if (!boards.holds(wire_.get32(&message[offsetof(Notify, drawable)]))) return;
  wire_.put32(&message[offsetof(Notify, drawable)], names_.root);
  wire_.put16(&message[geometry + offsetof(xcb_rectangle_t, width)], boards.width);
  wire_.put16(&message[geometry + offsetof(xcb_rectangle_t, height)], boards.height);
}

void ReplyStream::renumber(Bytes message) {
  if (ownRequests_ == 0) return;
  wire_.put16(&message[2], static_cast<std::uint16_t>(wire_.get16(&message[2]) - ownRequests_));
}

}  // namespace platform::linux::protocol
