// What a client sends after its setup: one request after the other, passed on as it is, but for those that read the
// screen or would stop the server.
//
// - Reads of the screen (core, MIT-SHM and RENDER) come to read the picture that stands for it. RENDER pictures of the
//   screen are made on that picture, and drawing to one of them goes to the real screen.
// - Damage of the screen comes to be followed on a board, where what changes in the picture is reported.
// - GrabServer and UngrabServer become requests that do nothing: a program that grabs the server before it reads would
//   wait for whoever paints the picture, and that one for the grab.
//
// Threads: one at a time. Ownership: keeps references to names and replies, which outlive it.
// Failure: a stream that is no X protocol stops as malformed and stays so. Requests that the server will refuse for
// their length are passed on for it to do so.
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
    needsMore,   // nothing else can be said about the bytes that are there
    screenRead,  // the next request reads the screen: `provide` a picture, then go on
    damageMade,  // the last request began to follow the screen's damage: report all of it, then go on
    malformed,
  };
  struct Step {
    std::size_t length = 0;  // so many bytes can be passed on
    Stop stop = Stop::needsMore;
  };

  RequestStream(ByteOrder order, const ScreenNames& names, PendingReplies& replies);

  // Looks at bytes that follow those passed on so far, and rewrites them in place.
  [[nodiscard]] Step advance(Bytes bytes);
  // The pixmap that the request at which the stream stopped reads in the screen's place.
  void provide(std::uint32_t picture) { picture_ = picture; }

  // How many bytes belong to the request under way and concern nobody here; `skip` when they went another way.
  [[nodiscard]] std::uint64_t remainingBody() const { return body_; }
  void skip(std::uint64_t count) { body_ -= count; }
  // Of the last request, as a whole.
  [[nodiscard]] std::uint64_t lastLength() const { return lastLength_; }
  // Whether there was a request whose reply brings descriptors.
  [[nodiscard]] bool asksForDescriptors() const { return asksForDescriptors_; }

  // Whether the client follows the screen's damage.
  [[nodiscard]] bool followsDamage() const { return !screenDamages_.empty(); }

  // The number of the last request, and making room for one of the lens's own after it.
  [[nodiscard]] std::uint64_t requestCount() const { return count_; }
  std::uint64_t countOwnRequest() { return ++count_; }

 private:
  // One request; `bytes` is as much of it as there is.
  struct Request {
    std::uint8_t major = 0;
    std::uint8_t minor = 0;
    std::uint64_t length = 0;
    std::size_t header = 4;
    Bytes bytes;
  };

  // The length of the requests at the beginning that are there as a whole and concern nobody here; counts them.
  [[nodiscard]] std::size_t passUnconcerned(Bytes bytes);
  [[nodiscard]] std::optional<Request> readHeader(Bytes bytes) const;
  // False when it has to wait for a picture.
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
  // By major number.
  std::array<bool, 256> isOfConcern_{};
  std::uint64_t count_ = 0;
  std::uint64_t body_ = 0;
  std::uint64_t lastLength_ = 0;
  bool asksForDescriptors_ = false;
  bool hasBigRequests_ = false;
  bool isMalformed_ = false;
  bool isDamageMade_ = false;
  std::optional<std::uint32_t> picture_;
  // RENDER pictures of the screen, and whether drawing to them goes over the windows on it.
  std::unordered_map<std::uint32_t, bool> screenPictures_;
  std::unordered_set<std::uint32_t> screenDamages_;
};

}  // namespace platform::linux::protocol
