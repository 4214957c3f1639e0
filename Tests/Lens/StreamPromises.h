// What the streams of a lens promise for any bytes at all: they come to an end, they never look beyond what they are
// given (which the sanitizers would see), and the result is the same wherever the bytes are cut.
//
// The first two bytes of the input choose the byte order, the size of the pieces and what is awaited.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "Platform/Linux/Protocol/ReplyStream.h"
#include "Platform/Linux/Protocol/RequestStream.h"
#include "Platform/Linux/Protocol/Setup.h"

namespace lens {

namespace protocol = platform::linux::protocol;

inline protocol::ScreenNames anyNames() {
  return {.extensions = {133, 140, 138, 130, 149, 143, 91},
          .root = 0x50a,
          .rootVisual = 0x21,
          .overlay = 0x60b,
          .rootPicture = 0x400010,
          .rootPictureOverWindows = 0x400011,
          .boards = {.pixmaps = {0x400020}, .whole = 0x400021, .width = 1280, .height = 800}};
}

struct Outcome {
  std::vector<std::byte> bytes;
  std::uint64_t requests = 0;
  bool isMalformed = false;
  friend bool operator==(const Outcome&, const Outcome&) = default;
};

inline Outcome passRequests(std::vector<std::byte> bytes, protocol::ByteOrder order, std::size_t piece) {
  const protocol::ScreenNames names = anyNames();
  protocol::PendingReplies replies;
  protocol::RequestStream stream(order, names, replies);
  std::size_t done = 0;
  bool isMalformed = false;
  std::size_t end = 0;
  while (end < bytes.size() && !isMalformed) {
    end = std::min(end + piece, bytes.size());
    for (;;) {
      const auto step = stream.advance(protocol::Bytes(bytes).subspan(done, end - done));
      done += step.length;
      isMalformed = step.stop == protocol::RequestStream::Stop::malformed;
      if (step.stop == protocol::RequestStream::Stop::needsMore || isMalformed) break;
      if (step.stop == protocol::RequestStream::Stop::screenRead) stream.provide(0x400002);
    }
  }
  bytes.resize(done);
  return {std::move(bytes), stream.requestCount(), isMalformed};
}

inline Outcome passReplies(std::vector<std::byte> bytes, protocol::ByteOrder order, std::size_t piece,
                           unsigned awaited) {
  protocol::ScreenNames names = anyNames();
  protocol::PendingReplies replies;
  for (std::uint64_t request = 1; request <= 8; ++request) {
    if ((awaited >> (request - 1) & 1U) != 0) replies.push_back({request, static_cast<protocol::ReplyTo>(request % 4)});
  }
  protocol::ReplyStream stream(order, names, replies);
  std::vector<std::byte> result;
  std::vector<std::byte> pending;
  for (std::size_t begin = 0; begin < bytes.size(); begin += piece) {
    const auto next = std::span(bytes).subspan(begin, std::min(piece, bytes.size() - begin));
    pending.insert(pending.end(), next.begin(), next.end());
    bool isBarrierNext = true;
    while (isBarrierNext) {
      const auto step = stream.advance(pending);
      isBarrierNext = step.isBarrierNext;
      const auto length = static_cast<std::ptrdiff_t>(step.length);
      result.insert(result.end(), pending.begin(), pending.begin() + length);
      pending.erase(pending.begin(), pending.begin() + length +
                                         (isBarrierNext ? std::ptrdiff_t{protocol::ReplyStream::messageSize} : 0));
    }
  }
  return {std::move(result), stream.lastRequest(), false};
}

// Whether all promises hold.
inline bool keepsPromises(std::span<const std::byte> input) {
  (void)protocol::parseSetupRequest(input);
  (void)protocol::setupReplyLength(protocol::ByteOrder::big, input);
  if (input.size() < 2) return true;
  const auto choice = std::to_integer<unsigned>(input[0]);
  const auto order = (choice & 1U) != 0 ? protocol::ByteOrder::big : protocol::ByteOrder::little;
  const std::size_t piece = 1 + choice / 2;
  const auto awaited = std::to_integer<unsigned>(input[1]);
  const std::vector<std::byte> bytes(input.begin() + 2, input.end());
  return passRequests(bytes, order, piece) == passRequests(bytes, order, bytes.size() + 1) &&
         passReplies(bytes, order, piece, awaited) == passReplies(bytes, order, bytes.size() + 1, awaited);
}

}  // namespace lens
