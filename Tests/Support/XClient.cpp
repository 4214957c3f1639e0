#include "Tests/Support/XClient.h"

#include <xcb/shape.h>

#include <array>
#include <stdexcept>

#include "Tests/Support/Reply.h"

namespace support {

namespace {

xcb_visualid_t visualOfDepth(const xcb_screen_t& screen, int depth) {
  for (auto depths = xcb_screen_allowed_depths_iterator(&screen); depths.rem > 0; xcb_depth_next(&depths)) {
    if (depths.data->depth == depth && depths.data->visuals_len > 0) return xcb_depth_visuals(depths.data)->visual_id;
  }
  throw std::runtime_error("The screen has no visual of this depth.");
}

xcb_rectangle_t toRectangle(const PixelRect& rect) {
  return {static_cast<std::int16_t>(rect.x), static_cast<std::int16_t>(rect.y), static_cast<std::uint16_t>(rect.width),
          static_cast<std::uint16_t>(rect.height)};
}

void configure(xcb_connection_t* connection, xcb_window_t window, std::uint16_t mask,
               const std::vector<std::uint32_t>& values) {
  xcb_configure_window(connection, window, mask, values.data());
}

}  // namespace

XClient::XClient(const std::string& display) {
  int number = 0;
  connection_ = xcb_connect(display.c_str(), &number);
  if (!isConnected()) {
    xcb_disconnect(connection_);
    throw std::runtime_error("There is no connection to the display " + display + ".");
  }
  screen_ = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data;
}

XClient::~XClient() { xcb_disconnect(connection_); }

PixelRect XClient::screenFrame() const { return {0, 0, screen_->width_in_pixels, screen_->height_in_pixels}; }

xcb_window_t XClient::createWindow(const WindowOptions& options) {
  const xcb_window_t window = xcb_generate_id(connection_);
  const int depth = options.depth == 0 ? screen_->root_depth : options.depth;
  const xcb_visualid_t visual = depth == screen_->root_depth ? screen_->root_visual : visualOfDepth(*screen_, depth);
  const xcb_rectangle_t frame = toRectangle(options.frame);
  if (options.inputOnly) {
    const std::uint32_t redirect = options.overrideRedirect ? 1 : 0;
    xcb_create_window(connection_, 0, window, root(), frame.x, frame.y, frame.width, frame.height, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, XCB_CW_OVERRIDE_REDIRECT, &redirect);
  } else {
    const xcb_colormap_t colormap = xcb_generate_id(connection_);
    xcb_create_colormap(connection_, XCB_COLORMAP_ALLOC_NONE, colormap, root(), visual);
    const std::array<std::uint32_t, 4> values{options.color, options.borderColor, options.overrideRedirect ? 1U : 0U,
                                              colormap};
    xcb_create_window(connection_, static_cast<std::uint8_t>(depth), window, root(), frame.x, frame.y, frame.width,
                      frame.height, static_cast<std::uint16_t>(options.border), XCB_WINDOW_CLASS_INPUT_OUTPUT, visual,
                      XCB_CW_BACK_PIXEL | XCB_CW_BORDER_PIXEL | XCB_CW_OVERRIDE_REDIRECT | XCB_CW_COLORMAP,
                      values.data());
  }
  if (!options.overrideRedirect) {
    // Marks position and size as the user's choice, so that a window manager keeps them.
    std::vector<std::uint32_t> hints(18);
    hints[0] = 1U | 2U;
    setNumbers(window, "WM_NORMAL_HINTS", "WM_SIZE_HINTS", hints);
  }
  if (options.mapped) map(window);
  return window;
}

void XClient::map(xcb_window_t window) { xcb_map_window(connection_, window); }

void XClient::unmap(xcb_window_t window) { xcb_unmap_window(connection_, window); }

void XClient::destroy(xcb_window_t window) { xcb_destroy_window(connection_, window); }

void XClient::setFrame(xcb_window_t window, const PixelRect& frame) {
  configure(connection_, window,
            XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y | XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT,
            {static_cast<std::uint32_t>(frame.x), static_cast<std::uint32_t>(frame.y),
             static_cast<std::uint32_t>(frame.width), static_cast<std::uint32_t>(frame.height)});
}

void XClient::move(xcb_window_t window, int x, int y) {
  configure(connection_, window, XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y,
            {static_cast<std::uint32_t>(x), static_cast<std::uint32_t>(y)});
}

void XClient::raise(xcb_window_t window) {
  configure(connection_, window, XCB_CONFIG_WINDOW_STACK_MODE, {XCB_STACK_MODE_ABOVE});
}

void XClient::lower(xcb_window_t window) {
  configure(connection_, window, XCB_CONFIG_WINDOW_STACK_MODE, {XCB_STACK_MODE_BELOW});
}

void XClient::restack(xcb_window_t window, xcb_stack_mode_t mode, xcb_window_t sibling) {
  configure(connection_, window, XCB_CONFIG_WINDOW_SIBLING | XCB_CONFIG_WINDOW_STACK_MODE,
            {sibling, static_cast<std::uint32_t>(mode)});
}

void XClient::setBackground(xcb_window_t window, std::uint32_t color) {
  xcb_change_window_attributes(connection_, window, XCB_CW_BACK_PIXEL, &color);
  xcb_clear_area(connection_, 0, window, 0, 0, 0, 0);
}

void XClient::setBackgroundChecks(xcb_window_t window, int size, std::uint32_t first, std::uint32_t second) {
  const auto geometry = waitForReply(connection_, xcb_get_geometry_reply, xcb_get_geometry(connection_, window));
  if (!geometry) throw std::runtime_error("The window to be given a background is gone.");
  const xcb_pixmap_t tile = xcb_generate_id(connection_);
  const auto side = static_cast<std::uint16_t>(2 * size);
  xcb_create_pixmap(connection_, geometry->depth, tile, window, side, side);
  fill(tile, {0, 0, side, side}, first);
  fill(tile, {size, 0, size, size}, second);
  fill(tile, {0, size, size, size}, second);
  xcb_change_window_attributes(connection_, window, XCB_CW_BACK_PIXMAP, &tile);
  xcb_free_pixmap(connection_, tile);
  xcb_clear_area(connection_, 0, window, 0, 0, 0, 0);
}

void XClient::fill(xcb_drawable_t drawable, const PixelRect& part, std::uint32_t color) {
  const xcb_gcontext_t context = xcb_generate_id(connection_);
  const std::array<std::uint32_t, 2> values{color, 0};
  xcb_create_gc(connection_, context, drawable, XCB_GC_FOREGROUND | XCB_GC_GRAPHICS_EXPOSURES, values.data());
  const xcb_rectangle_t rectangle = toRectangle(part);
  xcb_poly_fill_rectangle(connection_, drawable, context, 1, &rectangle);
  xcb_free_gc(connection_, context);
}

void XClient::setBoundingShape(xcb_window_t window, std::span<const xcb_rectangle_t> rectangles) {
  xcb_shape_rectangles(connection_, XCB_SHAPE_SO_SET, XCB_SHAPE_SK_BOUNDING, XCB_CLIP_ORDERING_UNSORTED, window, 0, 0,
                       static_cast<std::uint32_t>(rectangles.size()), rectangles.data());
}

void XClient::setInputShape(xcb_window_t window, std::span<const xcb_rectangle_t> rectangles) {
  xcb_shape_rectangles(connection_, XCB_SHAPE_SO_SET, XCB_SHAPE_SK_INPUT, XCB_CLIP_ORDERING_UNSORTED, window, 0, 0,
                       static_cast<std::uint32_t>(rectangles.size()), rectangles.data());
}

bool XClient::grabKey(xcb_keycode_t key, std::uint16_t modifiers) {
  const auto cookie =
      xcb_grab_key_checked(connection_, 0, root(), modifiers, key, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
  const Reply<xcb_generic_error_t> error(xcb_request_check(connection_, cookie));
  return error == nullptr;
}

bool XClient::grabPointer() {
  const auto reply =
      waitForReply(connection_, xcb_grab_pointer_reply,
                   xcb_grab_pointer(connection_, 0, root(), XCB_EVENT_MASK_BUTTON_PRESS | XCB_EVENT_MASK_BUTTON_RELEASE,
                                    XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC, XCB_NONE, XCB_NONE, XCB_CURRENT_TIME));
  return reply && reply->status == XCB_GRAB_STATUS_SUCCESS;
}

bool XClient::grabKeyboard() {
  const auto reply = waitForReply(
      connection_, xcb_grab_keyboard_reply,
      xcb_grab_keyboard(connection_, 0, root(), XCB_CURRENT_TIME, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC));
  return reply && reply->status == XCB_GRAB_STATUS_SUCCESS;
}

void XClient::ungrabPointer() {
  xcb_ungrab_pointer(connection_, XCB_CURRENT_TIME);
  sync();
}

}  // namespace support
