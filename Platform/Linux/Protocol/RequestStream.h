// What a client sends after the setup: requests, passed on unchanged except for those that read the screen or would
// stop the server.
//
// - Reads of the screen (core, MIT-SHM and RENDER) read the picture that stands for it instead. RENDER pictures of the
//   screen are made on that picture, and drawing to one of them goes to the real screen.
// - Damage of the screen is followed on a board instead, where changes of the picture are reported.
// - GrabServer and UngrabServer become requests that do nothing. A program that grabs the server before it reads would
//   otherwise wait for the painter of the picture, which in turn would wait for the grab.
//
// Threads: one at a time. Ownership: keeps references to names and replies, which must outlive it. Failure: a stream
// that is not X protocol stops as malformed and stays so. Requests of a wrong length are passed on for the server to
// refuse.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <unordered_map>
#include <unordered_set>

#include "Platform/Linux/Protocol/PendingReplies.h"
#include "Platform/Linux/Protocol/ScreenNames.h"
#include "Platform/Linux/Protocol/Wire.h"

namespace platform::linux::protocol {

class RequestStream {
 public:
  enum class Stop : std::uint8_t {
    needsMore,   // nothing more can be said about these bytes
    screenRead,  // the next request reads the screen: `provide` a picture, then go on
    damageMade,  // the last request began to follow the screen's damage: report all of it, then go on
    malformed,
  };
  struct Step {
    std::size_t length = 0;  // this many bytes can be passed on
    Stop stop = Stop::needsMore;
  };

  RequestStream(ByteOrder order, const ScreenNames& names, PendingReplies& replies);

  // Looks at the bytes after those passed on so far, and rewrites them in place.
  [[nodiscard]] Step advance(Bytes bytes);
  // The pixmap to read instead of the screen, for the request at which the stream stopped.
  void provide(std::uint32_t picture) { picture_ = picture; }

  // How many bytes of the current request are left and need no look; `skip` those that were sent another way.
  [[nodiscard]] std::uint64_t remainingBody() const { return body_; }
  void skip(std::uint64_t count) { body_ -= count; }
  // The full length of the last request.
  [[nodiscard]] std::uint64_t lastLength() const { return lastLength_; }
  // Whether any request so far has a reply that brings descriptors.
  [[nodiscard]] bool asksForDescriptors() const { return asksForDescriptors_; }

  // Whether the client follows the screen's damage.
  [[nodiscard]] bool followsDamage() const { return !screenDamages_.empty(); }

  // The number of the last request; `countOwnRequest` makes room for one of the lens's own after it.
  [[nodiscard]] std::uint64_t requestCount() const { return count_; }
  std::uint64_t countOwnRequest() { return ++count_; }

 private:
  // One request; `bytes` is the part of it that has arrived.
  struct Request {
    std::uint8_t major = 0;
    std::uint8_t minor = 0;
    std::uint64_t length = 0;
    std::size_t header = 4;
    Bytes bytes;
  };

  // Counts the complete requests at the beginning that need no look, and returns their length.
  [[nodiscard]] std::size_t passUnconcerned(Bytes bytes);
  [[nodiscard]] std::optional<Request> readHeader(Bytes bytes) const;
  // False when the request has to wait for a picture.
  [[nodiscard]] bool rewrite(const Request& request);
  [[nodiscard]] bool rewriteDrawable(const Request& request, std::size_t offset);
  [[nodiscard]] bool rewriteImage(const Request& request);
  [[nodiscard]] bool rewriteRender(const Request& request);
  [[nodiscard]] bool createPicture(const Request& request);
  void changePicture(const Request& request);
  [[nodiscard]] bool rewriteDamage(const Request& request);
  [[nodiscard]] bool usePictures(const Request& request);
  void noteSubwindowMode(const Request& request, std::uint32_t picture, std::size_t maskOffset);

  [[nodiscard]] bool holds(const Request& request, std::size_t offset) const {
    return request.bytes.size() >= request.header - 4 + offset + 4;
  }
  [[nodiscard]] std::byte* at(const Request& request, std::size_t offset) const {
    return request.bytes.data() + request.header - 4 + offset;
  }

  Wire wire_;
  const ScreenNames& names_;
  PendingReplies& replies_;
  // By major opcode.
  std::array<bool, 256> isOfConcern_{};
  std::uint64_t count_ = 0;
  std::uint64_t body_ = 0;
  std::uint64_t lastLength_ = 0;
  bool asksForDescriptors_ = false;
  bool hasBigRequests_ = false;
  bool isMalformed_ = false;
  bool isDamageMade_ = false;
  std::optional<std::uint32_t> picture_;
  // RENDER pictures of the screen, and whether drawing to them also covers the windows on it.
  std::unordered_map<std::uint32_t, bool> screenPictures_;
  std::unordered_set<std::uint32_t> screenDamages_;
};

}  // namespace platform::linux::protocol
