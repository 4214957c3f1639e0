#include "Platform/Linux/Protocol/RequestStream.h"

#include <xcb/bigreq.h>
#include <xcb/composite.h>
#include <xcb/damage.h>
#include <xcb/render.h>
#include <xcb/shm.h>
#include <xcb/xproto.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <span>
#include <utility>

namespace platform::linux::protocol {

namespace {

constexpr std::uint32_t subwindowModeBit = XCB_RENDER_CP_SUBWINDOW_MODE;

constexpr std::size_t overlayOf = offsetof(xcb_composite_get_overlay_window_request_t, window);

constexpr std::size_t shortHeader = 4;
constexpr std::size_t longHeader = 8;
// Nothing beyond this many bytes of a request matters here.
constexpr std::size_t farthestLook = 64;

// Where a RENDER request names the pictures that it reads and the one that it draws to; 0 for none.
struct PictureUse {
  std::uint8_t minor;
  std::array<std::size_t, 2> sources;
  std::size_t destination;
};

// All requests that draw from one picture to another start alike.
template <class Request>
constexpr PictureUse drawing(std::uint8_t minor) {
  return {minor, {offsetof(Request, src), 0}, offsetof(Request, dst)};
}

constexpr std::array pictureUses{
    PictureUse{XCB_RENDER_COMPOSITE,
               {offsetof(xcb_render_composite_request_t, src), offsetof(xcb_render_composite_request_t, mask)},
               offsetof(xcb_render_composite_request_t, dst)},
    drawing<xcb_render_trapezoids_request_t>(XCB_RENDER_TRAPEZOIDS),
    drawing<xcb_render_triangles_request_t>(XCB_RENDER_TRIANGLES),
    drawing<xcb_render_tri_strip_request_t>(XCB_RENDER_TRI_STRIP),
    drawing<xcb_render_tri_fan_request_t>(XCB_RENDER_TRI_FAN),
    drawing<xcb_render_composite_glyphs_8_request_t>(XCB_RENDER_COMPOSITE_GLYPHS_8),
    drawing<xcb_render_composite_glyphs_16_request_t>(XCB_RENDER_COMPOSITE_GLYPHS_16),
    drawing<xcb_render_composite_glyphs_32_request_t>(XCB_RENDER_COMPOSITE_GLYPHS_32),
    PictureUse{XCB_RENDER_FILL_RECTANGLES, {}, offsetof(xcb_render_fill_rectangles_request_t, dst)},
    PictureUse{XCB_RENDER_CREATE_CURSOR, {offsetof(xcb_render_create_cursor_request_t, source), 0}, 0},
    PictureUse{XCB_RENDER_ADD_TRAPS, {}, offsetof(xcb_render_add_traps_request_t, picture)},
};

}  // namespace

RequestStream::RequestStream(ByteOrder order, const ScreenNames& names, PendingReplies& replies)
    : wire_(order), names_(names), replies_(replies) {
  const ExtensionNumbers& numbers = names_.extensions;
  for (const std::uint8_t major :
       {std::uint8_t{XCB_GET_IMAGE}, std::uint8_t{XCB_COPY_AREA}, std::uint8_t{XCB_COPY_PLANE},
        std::uint8_t{XCB_GRAB_SERVER}, std::uint8_t{XCB_UNGRAB_SERVER}, numbers.render, numbers.sharedMemory,
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

// Programs send millions of small requests a second, so each gets as little work as possible.
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

// Length 0 announces an extended length for clients that enabled it. For others it is an error of four bytes.
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
    case XCB_GRAB_SERVER:
    case XCB_UNGRAB_SERVER:
      request.bytes[0] = std::byte{XCB_NO_OPERATION};
      return true;
    case XCB_COPY_AREA:
    case XCB_COPY_PLANE:
      static_assert(offsetof(xcb_copy_area_request_t, src_drawable) ==
                    offsetof(xcb_copy_plane_request_t, src_drawable));
      return rewriteDrawable(request, offsetof(xcb_copy_area_request_t, src_drawable));
    case XCB_GET_IMAGE:
      return rewriteImage(request);
    default:
      break;
  }
  if (request.major == numbers.render) return rewriteRender(request);
  if (request.major == numbers.damage) return rewriteDamage(request);
  if (request.major == numbers.sharedMemory && request.minor == XCB_SHM_GET_IMAGE) return rewriteImage(request);
  if (request.major == numbers.sharedMemory || request.major == numbers.directRendering) {
    asksForDescriptors_ =
        asksForDescriptors_ || request.major == numbers.directRendering || request.minor == XCB_SHM_CREATE_SEGMENT;
  } else if (request.major == numbers.bigRequests) {
    hasBigRequests_ = hasBigRequests_ || request.minor == XCB_BIG_REQUESTS_ENABLE;
  } else if (request.minor == XCB_COMPOSITE_GET_OVERLAY_WINDOW && holds(request, overlayOf) &&
             wire_.get32(at(request, overlayOf)) == names_.root) {
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
  constexpr std::size_t drawable = offsetof(xcb_get_image_request_t, drawable);
  static_assert(drawable == offsetof(xcb_shm_get_image_request_t, drawable));
  if (!holds(request, drawable) || !names_.isScreen(wire_.get32(at(request, drawable)))) return true;
  if (!rewriteDrawable(request, drawable)) return false;
  replies_.push_back({count_ + 1, ReplyTo::screenImage});
  return true;
}

bool RequestStream::rewriteRender(const Request& request) {
  if (request.minor == XCB_RENDER_CREATE_PICTURE) return createPicture(request);
  if (screenPictures_.empty()) return true;
  if (request.minor == XCB_RENDER_CHANGE_PICTURE) {
    changePicture(request);
  } else if (request.minor == XCB_RENDER_FREE_PICTURE) {
    constexpr std::size_t picture = offsetof(xcb_render_free_picture_request_t, picture);
    if (holds(request, picture)) screenPictures_.erase(wire_.get32(at(request, picture)));
  } else {
    return usePictures(request);
  }
  return true;
}

bool RequestStream::createPicture(const Request& request) {
  using Create = xcb_render_create_picture_request_t;
  if (!holds(request, offsetof(Create, value_mask))) return true;
  const std::uint32_t picture = wire_.get32(at(request, offsetof(Create, pid)));
  const bool isOfScreen = names_.isScreen(wire_.get32(at(request, offsetof(Create, drawable))));
  if (!rewriteDrawable(request, offsetof(Create, drawable))) return false;
  if (!isOfScreen) return true;
  screenPictures_[picture] = false;
  noteSubwindowMode(request, picture, offsetof(Create, value_mask));
  return true;
}

void RequestStream::changePicture(const Request& request) {
  using Change = xcb_render_change_picture_request_t;
  if (!holds(request, offsetof(Change, value_mask))) return;
  const std::uint32_t picture = wire_.get32(at(request, offsetof(Change, picture)));
  if (screenPictures_.contains(picture)) noteSubwindowMode(request, picture, offsetof(Change, value_mask));
}

// Values follow the mask in the order of its bits.
void RequestStream::noteSubwindowMode(const Request& request, std::uint32_t picture, std::size_t maskOffset) {
  const std::uint32_t mask = wire_.get32(at(request, maskOffset));
  if ((mask & subwindowModeBit) == 0) return;
  const auto before = static_cast<std::size_t>(std::popcount(mask & (subwindowModeBit - 1)));
  const std::size_t offset = maskOffset + 4 + 4 * before;
  if (holds(request, offset)) screenPictures_[picture] = wire_.get32(at(request, offset)) != 0;
}

// The server refuses a request of any other length.
bool RequestStream::rewriteDamage(const Request& request) {
  using Create = xcb_damage_create_request_t;
  constexpr std::size_t destroyed = offsetof(xcb_damage_destroy_request_t, damage);
  if (request.minor == XCB_DAMAGE_DESTROY && holds(request, destroyed))
    screenDamages_.erase(wire_.get32(at(request, destroyed)));
  if (request.minor != XCB_DAMAGE_CREATE || request.length != request.header - shortHeader + sizeof(Create))
    return true;
  if (!names_.isScreen(wire_.get32(at(request, offsetof(Create, drawable))))) return true;
  // A board exists once a picture does.
  if (!picture_) return false;
  picture_.reset();
  if (names_.boards.pixmaps.empty()) return true;
  wire_.put32(at(request, offsetof(Create, drawable)), names_.boards.pixmaps.back());
  screenDamages_.insert(wire_.get32(at(request, offsetof(Create, damage))));
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
