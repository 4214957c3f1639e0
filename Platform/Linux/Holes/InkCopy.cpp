#include "Platform/Linux/Holes/InkCopy.h"

#include <array>
#include <span>

#include "Platform/Linux/Xcb/Replies.h"

namespace platform::linux::holes {

namespace {

// Copies what lies inside the windows, too. No event tells what could not be copied.
class Copying {
 public:
  Copying(xcb::Connection& connection, xcb_drawable_t drawable)
      : connection_(connection), context_(connection.newId()) {
    const std::array<std::uint32_t, 2> values{XCB_SUBWINDOW_MODE_INCLUDE_INFERIORS, 0};
    connection_.ignoreErrors(xcb_create_gc(connection_.get(), context_, drawable,
                                           XCB_GC_SUBWINDOW_MODE | XCB_GC_GRAPHICS_EXPOSURES, values.data()));
  }
  ~Copying() { connection_.ignoreErrors(xcb_free_gc(connection_.get(), context_)); }
  Copying(const Copying&) = delete;
  Copying& operator=(const Copying&) = delete;

  void blank(xcb_drawable_t drawable, const xcb::PixelRect& part) {
    const xcb_rectangle_t rect = xcb::toRectangle(part);
    connection_.ignoreErrors(xcb_poly_fill_rectangle(connection_.get(), drawable, context_, 1, &rect));
  }
  void copy(xcb_drawable_t from, xcb_drawable_t to, const xcb::PixelRect& part) {
    const xcb_rectangle_t rect = xcb::toRectangle(part);
    connection_.ignoreErrors(
        xcb_copy_area(connection_.get(), from, to, context_, rect.x, rect.y, rect.x, rect.y, rect.width, rect.height));
  }

 private:
  xcb::Connection& connection_;
  xcb_gcontext_t context_;
};

}  // namespace

InkCopy::InkCopy(xcb::Connection& connection, xcb_window_t window, std::uint8_t depth, const xcb::PixelRect& size)
    : connection_(connection), window_(window), size_(size), pixels_(connection.newId()) {
  connection_.ignoreErrors(xcb_create_pixmap(connection_.get(), depth, pixels_, window,
                                             static_cast<std::uint16_t>(size.width),
                                             static_cast<std::uint16_t>(size.height)));
  // Nothing is copied where the window has a hole already, and a new pixmap may hold anything.
  Copying copying(connection_, window);
  copying.blank(pixels_, size);
  copying.copy(window, pixels_, size);
}

InkCopy::~InkCopy() {
  unwatch();
  connection_.ignoreErrors(xcb_free_pixmap(connection_.get(), pixels_));
}

void InkCopy::watch(const PixelSet& areas) {
  if (damage_ || !connection_.has(xcb::Extension::damage) || !connection_.has(xcb::Extension::xfixes)) return;
  areas_ = common(areas, size_);
  damage_ = connection_.newId();
  connection_.ignoreErrors(xcb_damage_create(connection_.get(), *damage_, window_, XCB_DAMAGE_REPORT_LEVEL_NON_EMPTY));
  // At first, all of a window counts as drawn.
  connection_.ignoreErrors(xcb_damage_subtract(connection_.get(), *damage_, XCB_NONE, XCB_NONE));
}

void InkCopy::unwatch() {
  if (damage_) connection_.ignoreErrors(xcb_damage_destroy(connection_.get(), *damage_));
  damage_.reset();
}

bool InkCopy::isDrawnAnew() {
  xcb::Region drawn(connection_);
  connection_.ignoreErrors(xcb_damage_subtract(connection_.get(), *damage_, XCB_NONE, drawn.id()));
  const auto reply = xcb::awaitReply(connection_.get(), xcb_xfixes_fetch_region_reply,
                                     xcb_xfixes_fetch_region(connection_.get(), drawn.id()));
  if (!reply) return true;
  const std::span rectangles(xcb_xfixes_fetch_region_rectangles(reply.get()),
                             static_cast<std::size_t>(xcb_xfixes_fetch_region_rectangles_length(reply.get())));
  PixelSet parts;
  for (const xcb_rectangle_t& rect : rectangles) parts.push_back({rect.x, rect.y, rect.width, rect.height});
  return without(areas_, parts) != areas_;
}

// A program that draws at all knows what it shows better than an old copy does.
void InkCopy::bringBack() {
  if (!damage_ || isDrawnAnew()) return;
  Copying copying(connection_, window_);
  for (const xcb::PixelRect& area : areas_) copying.copy(pixels_, window_, area);
}

}  // namespace platform::linux::holes
