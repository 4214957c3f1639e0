// The least that any program can do to show what happens in one window: it redirects all windows and copies whatever is
// drawn to the topmost one to its own window beside it. It handles no other windows, leaves nothing out, keeps no pace
// and checks no errors. Its cost is that of the wake-ups, requests and copies alone.
//
// bare-mirror X Y: shows its window there
#include <xcb/composite.h>
#include <xcb/damage.h>
#include <xcb/render.h>
#include <xcb/xfixes.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>

#include "Platform/Linux/Xcb/Connection.h"
#include "Tests/Support/XClient.h"

namespace {

using platform::linux::xcb::Connection;

struct Source {
  xcb_window_t window = XCB_NONE;
  support::PixelRect frame;
};

Source topmostWindow() {
  support::XClient client("");
  Source topmost;
  for (const xcb_window_t window : client.children(client.root())) {
    const auto frame = client.frame(window);
    if (frame && client.isViewable(window)) topmost = {window, *frame};
  }
  return topmost;
}

xcb_render_picture_t pictureOf(Connection& connection, xcb_drawable_t drawable) {
  const xcb_render_picture_t picture = connection.newId();
  xcb_render_create_picture(connection.get(), picture, drawable, connection.formatOfVisual(connection.rootVisual()), 0,
                            nullptr);
  return picture;
}

xcb_window_t makeWindow(Connection& connection, std::int16_t x, std::int16_t y, const support::PixelRect& size) {
  const xcb_window_t window = connection.newId();
  const std::uint32_t overrideRedirect = 1;
  xcb_create_window(connection.get(), connection.rootDepth(), window, connection.root(), x, y,
                    static_cast<std::uint16_t>(size.width), static_cast<std::uint16_t>(size.height), 0,
                    XCB_WINDOW_CLASS_INPUT_OUTPUT, connection.rootVisual(), XCB_CW_OVERRIDE_REDIRECT,
                    &overrideRedirect);
  xcb_map_window(connection.get(), window);
  return window;
}

int run(std::int16_t x, std::int16_t y) {
  auto opened = Connection::open("");
  const Source source = topmostWindow();
  if (!opened || source.window == XCB_NONE) return EXIT_FAILURE;
  Connection& connection = **opened;
  xcb_connection_t* const c = connection.get();
  xcb_composite_redirect_subwindows(c, connection.root(), XCB_COMPOSITE_REDIRECT_AUTOMATIC);
  const xcb_pixmap_t pixels = connection.newId();
  xcb_composite_name_window_pixmap(c, source.window, pixels);
  const xcb_render_picture_t from = pictureOf(connection, pixels);
  const xcb_render_picture_t to = pictureOf(connection, makeWindow(connection, x, y, source.frame));
  const xcb_damage_damage_t damage = connection.newId();
  xcb_damage_create(c, damage, source.window, XCB_DAMAGE_REPORT_LEVEL_NON_EMPTY);
  const xcb_xfixes_region_t parts = connection.newId();
  xcb_xfixes_create_region(c, parts, 0, nullptr);
  connection.flush();
  while (const std::unique_ptr<xcb_generic_event_t, decltype(&std::free)> event{xcb_wait_for_event(c), &std::free}) {
    if ((event->response_type & 0x7f) !=
        connection.firstEvent(platform::linux::xcb::Extension::damage) + XCB_DAMAGE_NOTIFY)
      continue;
    xcb_damage_subtract(c, damage, XCB_NONE, parts);
    xcb_xfixes_set_picture_clip_region(c, to, parts, 0, 0);
    xcb_render_composite(c, XCB_RENDER_PICT_OP_SRC, from, XCB_NONE, to, 0, 0, 0, 0, 0, 0,
                         static_cast<std::uint16_t>(source.frame.width),
                         static_cast<std::uint16_t>(source.frame.height));
    xcb_flush(c);
  }
  return EXIT_SUCCESS;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    std::fprintf(stderr, "usage: bare-mirror X Y\n");
    return 2;
  }
  return run(static_cast<std::int16_t>(std::atoi(argv[1])), static_cast<std::int16_t>(std::atoi(argv[2])));
}
