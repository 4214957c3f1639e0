#include "Platform/Linux/Cover/OverlayPainter.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <string_view>
#include <utility>

#include "Platform/Linux/Stream/BorderPainting.h"
#include "Platform/Linux/Xcb/Region.h"

namespace platform::linux::cover {

namespace {

std::uint8_t channel(stream::Argb color, unsigned shift) { return static_cast<std::uint8_t>(color >> shift); }

const xcb_visualtype_t* findVisual(const xcb::Connection& connection, xcb_visualid_t visual) {
  auto screens = xcb_setup_roots_iterator(xcb_get_setup(connection.get()));
  for (; screens.rem > 0; xcb_screen_next(&screens)) {
    auto depths = xcb_screen_allowed_depths_iterator(screens.data);
    for (; depths.rem > 0; xcb_depth_next(&depths)) {
      auto visuals = xcb_depth_visuals_iterator(depths.data);
      for (; visuals.rem > 0; xcb_visualtype_next(&visuals)) {
        if (visuals.data->visual_id == visual) return visuals.data;
      }
    }
  }
  return nullptr;
}

// The colour as an opaque pixel of the visual.
std::uint32_t pixelOf(stream::Argb color, const xcb::Connection& connection, xcb_visualid_t visualId) {
  const xcb_visualtype_t* visual = findVisual(connection, visualId);
  if (visual == nullptr) return color & 0xFFFFFFU;
  const std::uint32_t opaque =
      connection.visualHasAlpha(visualId) ? ~(visual->red_mask | visual->green_mask | visual->blue_mask) : 0;
  const auto placed = [](std::uint8_t value, std::uint32_t mask) {
    if (mask == 0) return 0U;
    const std::uint64_t largest = mask >> std::countr_zero(mask);
    return static_cast<std::uint32_t>((value * largest + 127) / 255) << std::countr_zero(mask);
  };
  return opaque | placed(channel(color, 16), visual->red_mask) | placed(channel(color, 8), visual->green_mask) |
         placed(channel(color, 0), visual->blue_mask);
}

xcb_render_fixed_t fixed(double value) { return static_cast<xcb_render_fixed_t>(std::lround(value * 65536)); }

}  // namespace

OverlayPainter::OverlayPainter(xcb::Connection& connection, xcb_window_t window, xcb_visualid_t visual,
                               std::int32_t width, std::int32_t height)
    : connection_(connection),
      window_(window),
      visual_(visual),
      width_(width),
      height_(height),
      canBlend_(connection.has(xcb::Extension::render) && connection.has(xcb::Extension::xfixes) &&
                connection.formatOfVisual(visual) != 0),
      context_(connection.newId()) {
  const std::uint32_t noExposures = 0;
  xcb_create_gc(connection_.get(), context_, window_, XCB_GC_GRAPHICS_EXPOSURES, &noExposures);
  if (!canBlend_) return;
  picture_ = connection_.newId();
  xcb_render_create_picture(connection_.get(), picture_, window_, connection_.formatOfVisual(visual_), 0, nullptr);
}

OverlayPainter::~OverlayPainter() {
  if (picture_ != XCB_NONE) xcb_render_free_picture(connection_.get(), picture_);
  xcb_free_gc(connection_.get(), context_);
}

void OverlayPainter::setAppearance(const OverlayAppearance& appearance) {
  if (appearance.label != appearance_.label) {
    label_.reset();
    if (appearance.label && canBlend_) label_.emplace(connection_, *appearance.label);
  }
  appearance_ = appearance;
  const std::uint32_t pixel = pixelOf(appearance.background, connection_, visual_);
  xcb_change_gc(connection_.get(), context_, XCB_GC_FOREGROUND, &pixel);
  if (!showsPicture_) restoreBackground();
}

void OverlayPainter::restoreBackground() {
  showsPicture_ = false;
  const std::uint32_t pixel = isSeenThrough_ ? 0 : pixelOf(appearance_.background, connection_, visual_);
  xcb_change_window_attributes(connection_.get(), window_, XCB_CW_BACK_PIXEL, &pixel);
}

void OverlayPainter::setSeenThrough(bool isSeenThrough) {
  isSeenThrough_ = isSeenThrough;
  restoreBackground();
}

holes::PixelSet OverlayPainter::shownParts() const {
  const xcb::PixelRect whole{0, 0, width_, height_};
  const std::int32_t line = appearance_.border ? appearance_.border->width : 0;
  const xcb::PixelRect within{line, line, width_ - 2 * line, height_ - 2 * line};
  holes::PixelSet parts =
      holes::without({whole}, holes::PixelSet{intersection(appearance_.picture.value_or(xcb::PixelRect{}), within)});
  if (label_) parts.push_back(labelRect());
  return parts;
}

// Otherwise the background would flash wherever something above the picture goes away.
void OverlayPainter::giveUpBackground() {
  if (std::exchange(showsPicture_, true)) return;
  const std::uint32_t none = XCB_BACK_PIXMAP_NONE;
  xcb_change_window_attributes(connection_.get(), window_, XCB_CW_BACK_PIXMAP, &none);
}

void OverlayPainter::setSize(std::int32_t width, std::int32_t height) {
  width_ = width;
  height_ = height;
}

void OverlayPainter::paint(const xcb::PixelRect& part) {
  const xcb::PixelRect visible = intersection(part, {0, 0, width_, height_});
  if (visible.isEmpty()) return;
  const xcb_rectangle_t rectangle = xcb::toRectangle(visible);
  xcb_poly_fill_rectangle(connection_.get(), window_, context_, 1, &rectangle);
  if (isSeenThrough_ && appearance_.picture) clearPicture(intersection(visible, *appearance_.picture));
  if (!canBlend_) return;
  xcb::Region region(connection_);
  region.set(visible);
  setClip(region.id(), 0, 0);
  blendLabelInClip();
  blendBorderInClip();
}

void OverlayPainter::clearPicture(const xcb::PixelRect& part) {
  const auto sized = [](std::int32_t size) { return static_cast<std::uint16_t>(size); };
  if (part.isEmpty()) return;
  xcb_clear_area(connection_.get(), 0, window_, static_cast<std::int16_t>(part.x), static_cast<std::int16_t>(part.y),
                 sized(part.width), sized(part.height));
}

void OverlayPainter::blendLabel() {
  if (!canBlend_) return;
  setClip(XCB_NONE, 0, 0);
  blendLabelInClip();
}

bool OverlayPainter::paintFrame(const stream::Frame& frame) {
  if (!canBlend_ || !appearance_.picture || appearance_.picture->isEmpty() || frame.width() <= 0 ||
      frame.height() <= 0) {
    return false;
  }
  const xcb::PixelRect target = *appearance_.picture;
  const bool fitsExactly = frame.width() == target.width && frame.height() == target.height;
  if (!fitsExactly && !frame.isWhole()) {
    frame.requestWhole();
    return false;
  }
  if (!frame.beginReading(connection_.get())) return false;
  giveUpBackground();
  if (fitsExactly) {
    frame.paint(connection_.get(), picture_, target.x, target.y);
    setClip(frame.changedRegion(), target.x, target.y);
  } else {
    stretch(frame, target);
  }
  blendLabelInClip();
  blendBorderInClip();
  frame.endReading(connection_.get(), fitsExactly ? liveTarget() : std::nullopt);
  return true;
}

// With a label over it, the picture comes here frame by frame.
std::optional<stream::LiveTarget> OverlayPainter::liveTarget() const {
  if (label_) return std::nullopt;
  return stream::LiveTarget{window_, appearance_.picture->x, appearance_.picture->y, width_,
                            height_, appearance_.border};
}

// For a frame of another size, as between a resize of the window and the first frame made for it: paints the whole
// frame aside and stretches it. A stretched pixel reaches beyond its place, so everything is painted, and the clip
// stays at the target.
void OverlayPainter::stretch(const stream::Frame& frame, const xcb::PixelRect& target) {
  xcb_connection_t* const c = connection_.get();
  constexpr std::string_view filter = "bilinear";
  const std::uint32_t repeat = XCB_RENDER_REPEAT_PAD;
  const xcb_render_picture_t source = connection_.newId();
  const xcb_pixmap_t aside = connection_.newId();
  xcb_create_pixmap(c, connection_.rootDepth(), aside, window_, static_cast<std::uint16_t>(frame.width()),
                    static_cast<std::uint16_t>(frame.height()));
  xcb_render_create_picture(c, source, aside, connection_.formatOfVisual(connection_.rootVisual()),
                            XCB_RENDER_CP_REPEAT, &repeat);
  xcb_free_pixmap(c, aside);
  frame.paint(c, source, 0, 0);
  // A source picture is read within its clip.
  xcb_xfixes_set_picture_clip_region(c, source, XCB_NONE, 0, 0);
  const xcb_render_transform_t transform{fixed(double(frame.width()) / target.width),
                                         0,
                                         0,
                                         0,
                                         fixed(double(frame.height()) / target.height),
                                         0,
                                         0,
                                         0,
                                         fixed(1)};
  xcb_render_set_picture_transform(c, source, transform);
  xcb_render_set_picture_filter(c, source, filter.size(), filter.data(), 0, nullptr);
  xcb::Region region(connection_);
  region.set(target);
  setClip(region.id(), 0, 0);
  xcb_render_composite(c, XCB_RENDER_PICT_OP_SRC, source, XCB_NONE, picture_, 0, 0, 0, 0,
                       static_cast<std::int16_t>(target.x), static_cast<std::int16_t>(target.y),
                       static_cast<std::uint16_t>(target.width), static_cast<std::uint16_t>(target.height));
  xcb_render_free_picture(c, source);
}

xcb::PixelRect OverlayPainter::labelRect() const {
  if (!label_) return {};
  return {(width_ - label_->width()) / 2, (height_ - label_->height()) / 2, label_->width(), label_->height()};
}

void OverlayPainter::setClip(xcb_xfixes_region_t region, std::int32_t x, std::int32_t y) {
  xcb_xfixes_set_picture_clip_region(connection_.get(), picture_, region, static_cast<std::int16_t>(x),
                                     static_cast<std::int16_t>(y));
}

void OverlayPainter::blendLabelInClip() {
  const xcb::PixelRect rect = labelRect();
  if (rect.isEmpty()) return;
  xcb_render_composite(connection_.get(), XCB_RENDER_PICT_OP_OVER, label_->id(), XCB_NONE, picture_, 0, 0, 0, 0,
                       static_cast<std::int16_t>(rect.x), static_cast<std::int16_t>(rect.y),
                       static_cast<std::uint16_t>(rect.width), static_cast<std::uint16_t>(rect.height));
}

void OverlayPainter::blendBorderInClip() {
  if (appearance_.border) stream::blendBorder(connection_, picture_, width_, height_, *appearance_.border);
}

}  // namespace platform::linux::cover
