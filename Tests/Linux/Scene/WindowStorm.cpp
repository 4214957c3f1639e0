#include "Tests/Linux/Scene/WindowStorm.h"

#include <xcb/shape.h>

#include <array>
#include <cstddef>
#include <cstdlib>

namespace platform::linux::scene {

namespace {

constexpr std::size_t mostWindows = 14;

}  // namespace

std::uint32_t WindowStorm::color() {
  // Premultiplied, so that it also suits windows with alpha.
  const auto alpha = static_cast<std::uint32_t>(between(0, 255));
  const auto part = [&] { return static_cast<std::uint32_t>(between(0, static_cast<int>(alpha))); };
  return alpha << 24U | part() << 16U | part() << 8U | part();
}

support::PixelRect WindowStorm::place() {
  return {between(-40, screen_.width - 10), between(-40, screen_.height - 10), between(1, screen_.width / 2),
          between(1, screen_.height / 2)};
}

xcb_window_t WindowStorm::any() {
  return windows_[static_cast<std::size_t>(between(0, static_cast<int>(windows_.size()) - 1))];
}

void WindowStorm::change() {
  if (windows_.size() < 3) return create();
  switch (between(0, 13)) {
    case 0:
      return windows_.size() < mostWindows ? create() : destroy();
    case 1:
      return destroy();
    case 2:
    case 3:
      return client_.move(any(), between(-40, screen_.width), between(-40, screen_.height));
    case 4:
      return client_.setFrame(any(), place());
    case 5: {
      const std::uint32_t width = static_cast<std::uint32_t>(between(0, 6));
      xcb_configure_window(client_.connection(), any(), XCB_CONFIG_WINDOW_BORDER_WIDTH, &width);
      return;
    }
    case 6:
    case 7:
      return restack();
    case 8:
      return client_.map(any());
    case 9:
      return client_.unmap(any());
    case 10:
      return reshape();
    case 11:
      return reparent();
    default:
      return draw();
  }
}

void WindowStorm::create() {
  const int kind = between(0, 9);
  const support::PixelRect frame = place();
  windows_.push_back(client_.createWindow({.frame = frame,
                                           .color = color(),
                                           .border = kind < 3 ? static_cast<std::uint32_t>(kind) : 0,
                                           .borderColor = color(),
                                           .depth = kind >= 3 && kind < 6 ? 32 : 0,
                                           .overrideRedirect = kind % 2 == 0,
                                           .inputOnly = kind == 9,
                                           .mapped = between(0, 3) > 0}));
}

void WindowStorm::destroy() {
  const xcb_window_t window = any();
  // Windows inside it go as well.
  for (const xcb_window_t inner : inner_) xcb_destroy_window(client_.connection(), inner);
  inner_.clear();
  client_.destroy(window);
  std::erase(windows_, window);
}

void WindowStorm::restack() {
  const xcb_window_t window = any();
  const xcb_window_t sibling = any();
  switch (between(0, 3)) {
    case 0:
      return client_.raise(window);
    case 1:
      return client_.lower(window);
    case 2:
      xcb_circulate_window(client_.connection(), static_cast<std::uint8_t>(between(0, 1)), client_.root());
      return;
    default:
      if (window == sibling) return;
      return client_.restack(window, between(0, 1) == 0 ? XCB_STACK_MODE_ABOVE : XCB_STACK_MODE_BELOW, sibling);
  }
}

void WindowStorm::reshape() {
  const xcb_window_t window = any();
  if (between(0, 2) == 0) {
    xcb_shape_mask(client_.connection(), XCB_SHAPE_SO_SET, XCB_SHAPE_SK_BOUNDING, window, 0, 0, XCB_NONE);
    return;
  }
  std::array<xcb_rectangle_t, 3> parts{};
  for (xcb_rectangle_t& part : parts)
    part = {static_cast<std::int16_t>(between(-10, 80)), static_cast<std::int16_t>(between(-10, 80)),
            static_cast<std::uint16_t>(between(1, 90)), static_cast<std::uint16_t>(between(1, 90))};
  client_.setBoundingShape(window, {parts.data(), static_cast<std::size_t>(between(0, 3))});
}

void WindowStorm::reparent() {
  if (!inner_.empty()) {
    const xcb_window_t window = inner_.back();
    inner_.pop_back();
    xcb_reparent_window(client_.connection(), window, client_.root(), static_cast<std::int16_t>(between(0, 200)),
                        static_cast<std::int16_t>(between(0, 200)));
    windows_.push_back(window);
    return;
  }
  const xcb_window_t window = any();
  const xcb_window_t parent = any();
  if (window == parent) return;
  // A window without pixels cannot contain one that has some: the server refuses, and the window stays where it is.
  const auto refused =
      xcb_request_check(client_.connection(), xcb_reparent_window_checked(client_.connection(), window, parent, 3, 4));
  if (refused != nullptr) {
    std::free(refused);
    return;
  }
  std::erase(windows_, window);
  inner_.push_back(window);
}

void WindowStorm::draw() {
  // The part may lie outside the window, or the window may have no pixels.
  client_.fill(any(), place(), color());
}

void WindowStorm::keepWindows() {
  xcb_set_close_down_mode(client_.connection(), XCB_CLOSE_DOWN_RETAIN_PERMANENT);
  client_.sync();
}

}  // namespace platform::linux::scene
