// A plain client of an X server: it makes windows, changes them, and looks at the screen. It plays other programs, so
// it shares no code with what it tests.
//
// Threads: one at a time.
// Units and axes: device pixels in root coordinates, y down; colours 0x00RRGGBB, with alpha in the top byte for windows
// of depth 32 (premultiplied).
// Order: requests are buffered; `sync`, and every call that returns something from the server, sends them first.
// Failure: a lost connection, or a request that must not fail, throws.
#pragma once

#include <xcb/xcb.h>

#include <chrono>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "Tests/Support/Picture.h"
#include "Tests/Support/Wait.h"

namespace support {

struct WindowOptions {
  PixelRect frame{0, 0, 100, 100};  // the border lies around it
  std::uint32_t color = 0xffffffff;
  std::uint32_t border = 0;
  std::uint32_t borderColor = 0xff000000;
  int depth = 0;  // 0: that of the root; 32: with alpha
  bool overrideRedirect = true;
  bool inputOnly = false;
  bool mapped = true;
};

class XClient {
 public:
  explicit XClient(const std::string& display);
  ~XClient();
  XClient(const XClient&) = delete;
  XClient& operator=(const XClient&) = delete;

  [[nodiscard]] xcb_connection_t* connection() const { return connection_; }
  [[nodiscard]] xcb_window_t root() const { return screen_->root; }
  [[nodiscard]] PixelRect screenFrame() const;

  xcb_window_t createWindow(const WindowOptions& options);
  void map(xcb_window_t window);
  void unmap(xcb_window_t window);
  void destroy(xcb_window_t window);
  void setFrame(xcb_window_t window, const PixelRect& frame);
  void move(xcb_window_t window, int x, int y);
  void raise(xcb_window_t window);
  void lower(xcb_window_t window);
  // XCB_STACK_MODE_ABOVE or _BELOW the sibling.
  void restack(xcb_window_t window, xcb_stack_mode_t mode, xcb_window_t sibling);
  // The server itself repaints the background whenever a part comes into view, erasing what `fill` has drawn there.
  void setBackground(xcb_window_t window, std::uint32_t color);
  // Checks of two colours, from the window's top-left corner: a displaced pixel shows in them.
  void setBackgroundChecks(xcb_window_t window, int size, std::uint32_t first, std::uint32_t second);
  void fill(xcb_drawable_t drawable, const PixelRect& part, std::uint32_t color);
  void setBoundingShape(xcb_window_t window, std::span<const xcb_rectangle_t> rectangles);
  void setInputShape(xcb_window_t window, std::span<const xcb_rectangle_t> rectangles);

  [[nodiscard]] xcb_atom_t atom(const std::string& name);
  void setAtoms(xcb_window_t window, const std::string& property, const std::vector<std::string>& names);
  void setNumbers(xcb_window_t window, const std::string& property, const std::string& type,
                  const std::vector<std::uint32_t>& values);
  void setText(xcb_window_t window, const std::string& property, const std::string& type, const std::string& text);
  void setClass(xcb_window_t window, const std::string& instanceName, const std::string& className);
  // The property's 32-bit values; empty when it is absent or has another format.
  [[nodiscard]] std::vector<std::uint32_t> numbers(xcb_window_t window, const std::string& property);
  // The property's bytes; empty when it is absent.
  [[nodiscard]] std::string text(xcb_window_t window, const std::string& property);
  // Sends a request to the window manager, as programs do.
  void sendToRoot(xcb_window_t window, const std::string& type, const std::vector<std::uint32_t>& values);

  // When this returns, the server has carried out everything before it.
  void sync();
  [[nodiscard]] bool isConnected() const { return xcb_connection_has_error(connection_) == 0; }
  [[nodiscard]] Picture screenshot() { return screenshot(screenFrame()); }
  // What the screen shows there; the rectangle must lie on it.
  [[nodiscard]] Picture screenshot(const PixelRect& part) { return contents(root(), part); }
  [[nodiscard]] Picture contents(xcb_drawable_t drawable, const PixelRect& part);
  // The top-level windows, bottom to top.
  [[nodiscard]] std::vector<xcb_window_t> children(xcb_window_t window);
  // The window's rectangle on the screen, without its border; absent when the window is gone.
  [[nodiscard]] std::optional<PixelRect> frame(xcb_window_t window);
  [[nodiscard]] bool isViewable(xcb_window_t window);
  // A child of the root with this class (the second string of WM_CLASS); absent when none is on the screen.
  [[nodiscard]] std::optional<xcb_window_t> findTopLevel(const std::string& className);
  [[nodiscard]] xcb_window_t selectionOwner(const std::string& selection);
  [[nodiscard]] bool grabKey(xcb_keycode_t key, std::uint16_t modifiers);
  [[nodiscard]] bool grabPointer();
  [[nodiscard]] bool grabKeyboard();
  void ungrabPointer();

  void selectInput(xcb_window_t window, std::uint32_t eventMask);
  // Blocks until an event of this type (XCB_BUTTON_PRESS ...) comes, and drops those before it. False at the deadline.
  [[nodiscard]] bool waitForEvent(std::uint8_t type, std::chrono::milliseconds deadline);

 private:
  xcb_connection_t* connection_;
  const xcb_screen_t* screen_;
};

}  // namespace support
