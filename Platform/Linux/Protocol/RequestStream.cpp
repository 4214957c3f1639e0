#include "Platform/Linux/Protocol/RequestStream.h"

#include <algorithm>
#include <array>
#include <bit>
#include <span>
#include <utility>

namespace platform::linux::protocol {

namespace {

// Major numbers of the core protocol, and minor ones of extensions.
constexpr std::uint8_t grabServer = 36;
constexpr std::uint8_t ungrabServer = 37;
constexpr std::uint8_t copyArea = 62;
constexpr std::uint8_t copyPlane = 63;
constexpr std::uint8_t getImage = 73;
constexpr std::uint8_t noOperation = 127;
constexpr std::uint8_t enableBigRequests = 0;
constexpr std::uint8_t getOverlayWindow = 7;
constexpr std::uint8_t sharedMemoryGetImage = 4;
constexpr std::uint8_t sharedMemoryCreateSegment = 7;
constexpr std::uint8_t renderCreatePicture = 4;
constexpr std::uint8_t renderChangePicture = 5;
constexpr std::uint8_t renderFreePicture = 7;
constexpr std::uint8_t damageCreate = 1;
constexpr std::uint8_t damageDestroy = 2;

constexpr std::size_t lengthOfDamageCreate = 16;

constexpr std::uint32_t subwindowModeBit = 1U << 8U;

constexpr std::size_t shortHeader = 4;
constexpr std::size_t longHeader = 8;
// As far into a request as anything matters here.
constexpr std::size_t farthestLook = 64;

// Where a RENDER request names the pictures that it reads and the one that it draws to; 0 for none.
struct PictureUse {
  std::uint8_t minor;
  std::array<std::size_t, 2> sources;
  std::size_t destination;
};
constexpr std::array pictureUses{
    PictureUse{8, {8, 12}, 16},  // Composite
    PictureUse{10, {8, 0}, 12},  // Trapezoids
    PictureUse{11, {8, 0}, 12},  // Triangles
    PictureUse{12, {8, 0}, 12},  // TriStrip
    PictureUse{13, {8, 0}, 12},  // TriFan
    PictureUse{23, {8, 0}, 12},  // CompositeGlyphs8
    PictureUse{24, {8, 0}, 12},  // CompositeGlyphs16
    PictureUse{25, {8, 0}, 12},  // CompositeGlyphs32
    PictureUse{26, {0, 0}, 8},   // FillRectangles
    PictureUse{27, {8, 0}, 0},   // CreateCursor
    PictureUse{32, {0, 0}, 4},   // AddTraps
};

}  // namespace

RequestStream::RequestStream(ByteOrder order, const ScreenNames& names, PendingReplies& replies)
    : wire_(order), names_(names), replies_(replies) {
  const ExtensionNumbers& numbers = names_.extensions;
  for (const std::uint8_t major :
       {getImage, copyArea, copyPlane, grabServer, ungrabServer, numbers.render, numbers.sharedMemory,
        numbers.composite, numbers.bigRequests, numbers.directRendering, numbers.damage}) {
    isOfConcern_[major] = major != 0;
  }
}

RequestStream::Step RequestStream::advance(Bytes bytes) {
  if (isMalformed_) return {0, Stop::malformed};
  std::size_t done = 0;
  for (;;) {
    const auto passed = static_cast<std::size_t>(std::min<std::uint64_t>(body_, bytes.size() - done));
    body_ -= passed;
    done += passed;
    done += passUnconcerned(bytes.subspan(done));
    const auto request = readHeader(bytes.subspan(done));
    if (!request) return {done, Stop::needsMore};
    if (request->length < request->header) {
      isMalformed_ = true;
      return {done, Stop::malformed};
    }
    if (isOfConcern_[request->major]) {
      const auto wanted = static_cast<std::size_t>(std::min<std::uint64_t>(request->length, farthestLook));
      if (request->bytes.size() < wanted) return {done, Stop::needsMore};
      if (!rewrite(*request)) return {done, Stop::screenRead};
    }
    ++count_;
    body_ = lastLength_ = request->length;
    if (std::exchange(isDamageMade_, false))
      return {done + static_cast<std::size_t>(std::exchange(body_, 0)), Stop::damageMade};
  }
}

// Programs send millions of small requests a second, so there is as little as possible to be done for one.
std::size_t RequestStream::passUnconcerned(Bytes bytes) {
  const Wire wire = wire_;
  const std::byte* const begin = bytes.data();
  std::size_t done = 0;
  std::size_t last = 0;
  std::uint64_t count = 0;
  while (bytes.size() - done >= shortHeader && !isOfConcern_[std::to_integer<std::uint8_t>(begin[done])]) {
    const std::size_t length = std::size_t{wire.get16(begin + done + 2)} * 4;
    if (length == 0 || length > bytes.size() - done) break;
    done += length;
    last = length;
    ++count;
  }
  if (count > 0) lastLength_ = last;
  count_ += count;
  return done;
}

// A length of 0 announces a longer one for clients that have asked for it. Without that it is an error of four bytes.
std::optional<RequestStream::Request> RequestStream::readHeader(Bytes bytes) const {
  if (bytes.size() < shortHeader) return std::nullopt;
  Request request{.major = std::to_integer<std::uint8_t>(bytes[0]), .minor = std::to_integer<std::uint8_t>(bytes[1])};
  const std::uint64_t words = wire_.get16(&bytes[2]);
  request.length = std::max<std::uint64_t>(words, 1) * 4;
  if (words == 0 && hasBigRequests_) {
    if (bytes.size() < longHeader) return std::nullopt;
    request.header = longHeader;
    request.length = std::uint64_t{wire_.get32(&bytes[4])} * 4;
  }
  request.bytes = bytes.first(static_cast<std::size_t>(std::min<std::uint64_t>(bytes.size(), request.length)));
  return request;
}

bool RequestStream::rewrite(const Request& request) {
  const ExtensionNumbers& numbers = names_.extensions;
  switch (request.major) {
    case grabServer:
    case ungrabServer:
      request.bytes[0] = std::byte{noOperation};
      return true;
    case copyArea:
    case copyPlane:
      return rewriteDrawable(request, 4);
    case getImage:
      return rewriteImage(request);
    default:
      break;
  }
  if (request.major == numbers.render) return rewriteRender(request);
  if (request.major == numbers.damage) return rewriteDamage(request);
  if (request.major == numbers.sharedMemory && request.minor == sharedMemoryGetImage) return rewriteImage(request);
  if (request.major == numbers.sharedMemory || request.major == numbers.directRendering) {
    asksForDescriptors_ =
        asksForDescriptors_ || request.major == numbers.directRendering || request.minor == sharedMemoryCreateSegment;
  } else if (request.major == numbers.bigRequests) {
    hasBigRequests_ = hasBigRequests_ || request.minor == enableBigRequests;
  } else if (request.minor == getOverlayWindow && holds(request, 4) && wire_.get32(at(request, 4)) == names_.root) {
    replies_.push_back({count_ + 1, ReplyTo::overlayWindow});
  }
  return true;
}

bool RequestStream::rewriteDrawable(const Request& request, std::size_t offset) {
  if (!holds(request, offset) || !names_.isScreen(wire_.get32(at(request, offset)))) return true;
  if (!picture_) return false;
  wire_.put32(at(request, offset), *picture_);
  picture_.reset();
  return true;
}

bool RequestStream::rewriteImage(const Request& request) {
  if (!holds(request, 4) || !names_.isScreen(wire_.get32(at(request, 4)))) return true;
  if (!rewriteDrawable(request, 4)) return false;
  replies_.push_back({count_ + 1, ReplyTo::screenImage});
  return true;
}

bool RequestStream::rewriteRender(const Request& request) {
  if (request.minor == renderCreatePicture) return createPicture(request);
  if (screenPictures_.empty()) return true;
  if (request.minor == renderChangePicture) {
    changePicture(request);
  } else if (request.minor == renderFreePicture) {
    if (holds(request, 4)) screenPictures_.erase(wire_.get32(at(request, 4)));
  } else {
    return usePictures(request);
  }
  return true;
}

bool RequestStream::createPicture(const Request& request) {
  if (!holds(request, 16)) return true;
  const std::uint32_t picture = wire_.get32(at(request, 4));
  const bool isOfScreen = names_.isScreen(wire_.get32(at(request, 8)));
  if (!rewriteDrawable(request, 8)) return false;
  if (!isOfScreen) return true;
  screenPictures_[picture] = false;
  noteSubwindowMode(request, picture, 16);
  return true;
}

void RequestStream::changePicture(const Request& request) {
  if (!holds(request, 8)) return;
  const std::uint32_t picture = wire_.get32(at(request, 4));
  if (screenPictures_.contains(picture)) noteSubwindowMode(request, picture, 8);
}

// Values follow the mask in the order of its bits.
void RequestStream::noteSubwindowMode(const Request& request, std::uint32_t picture, std::size_t maskOffset) {
  const std::uint32_t mask = wire_.get32(at(request, maskOffset));
  if ((mask & subwindowModeBit) == 0) return;
  const auto before = static_cast<std::size_t>(std::popcount(mask & (subwindowModeBit - 1)));
  const std::size_t offset = maskOffset + 4 + 4 * before;
  if (holds(request, offset)) screenPictures_[picture] = wire_.get32(at(request, offset)) != 0;
}

// One of another length is refused by the server.
bool RequestStream::rewriteDamage(const Request& request) {
  if (request.minor == damageDestroy && holds(request, 4)) screenDamages_.erase(wire_.get32(at(request, 4)));
  if (request.minor != damageCreate || request.length != request.header - shortHeader + lengthOfDamageCreate)
    return true;
  if (!names_.isScreen(wire_.get32(at(request, 8)))) return true;
  // There is a board once there is a picture.
  if (!picture_) return false;
  picture_.reset();
  if (names_.boards.pixmaps.empty()) return true;
  wire_.put32(at(request, 8), names_.boards.pixmaps.back());
  screenDamages_.insert(wire_.get32(at(request, 4)));
  isDamageMade_ = true;
  return true;
}

bool RequestStream::usePictures(const Request& request) {
  const auto* const use = std::ranges::find(pictureUses, request.minor, &PictureUse::minor);
  if (use == pictureUses.end()) return true;
  const auto named = [&](std::size_t offset) {
    return offset != 0 && holds(request, offset) ? screenPictures_.find(wire_.get32(at(request, offset)))
                                                 : screenPictures_.end();
  };
  const bool reads =
      std::ranges::any_of(use->sources, [&](auto offset) { return named(offset) != screenPictures_.end(); });
  if (reads && !picture_) return false;
  if (reads) picture_.reset();
  if (const auto drawn = named(use->destination); drawn != screenPictures_.end()) {
    wire_.put32(at(request, use->destination), drawn->second ? names_.rootPictureOverWindows : names_.rootPicture);
  }
  return true;
}

}  // namespace platform::linux::protocol
