// A plain client of an X server: makes windows, changes them, and looks at the screen. It plays the part of other
// programs, so it shares no code with what it tests.
//
// Threads: one at a time.
// Units and axes: device pixels in root coordinates, y down; colours 0x00RRGGBB, with alpha in the top byte for windows
// of depth 32 (premultiplied).
// Order: requests are buffered; every call that answers something, and `sync`, sends them first.
// Failure: a lost connection or a request that must not fail throws.
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
  PixelRect frame{0, 0, 100, 100};  // the border lies around its size
  std::uint32_t color = 0xffffffff;
  std::uint32_t border = 0;
  std::uint32_t borderColor = 0xff000000;
  int depth = 0;  // 0: as the root; 32: with alpha
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
  // The server paints backgrounds again by itself whenever a part comes into view; what `fill` draws is lost then.
  void setBackground(xcb_window_t window, std::uint32_t color);
  // Squares of two colours, from the window's top-left corner: a picture in which a displaced pixel shows.
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
  // The property's 32-bit values; empty when it is not there or of another format.
  [[nodiscard]] std::vector<std::uint32_t> numbers(xcb_window_t window, const std::string& property);
  // The property's bytes; empty when it is not there.
  [[nodiscard]] std::string text(xcb_window_t window, const std::string& property);
  // Asks the window manager, as programs do.
  void sendToRoot(xcb_window_t window, const std::string& type, const std::vector<std::uint32_t>& values);

  // After this, the server has carried out everything before it.
  void sync();
  [[nodiscard]] bool isConnected() const { return xcb_connection_has_error(connection_) == 0; }
  [[nodiscard]] Picture screenshot() { return screenshot(screenFrame()); }
  // What the screen shows there; the rectangle must lie on it.
  [[nodiscard]] Picture screenshot(const PixelRect& part) { return contents(root(), part); }
  [[nodiscard]] Picture contents(xcb_drawable_t drawable, const PixelRect& part);
  // The top-level windows, bottom to top.
  [[nodiscard]] std::vector<xcb_window_t> children(xcb_window_t window);
  // Where the window (without its border) lies on the screen; absent when it is gone.
  [[nodiscard]] std::optional<PixelRect> frame(xcb_window_t window);
  [[nodiscard]] bool isViewable(xcb_window_t window);
  // A child of the root with this class, as WM_CLASS says it second; absent when there is none on the screen.
  [[nodiscard]] std::optional<xcb_window_t> findTopLevel(const std::string& className);
  [[nodiscard]] xcb_window_t selectionOwner(const std::string& selection);
  [[nodiscard]] bool grabKey(xcb_keycode_t key, std::uint16_t modifiers);
  [[nodiscard]] bool grabPointer();
  [[nodiscard]] bool grabKeyboard();
  void ungrabPointer();

  void selectInput(xcb_window_t window, std::uint32_t eventMask);
  // Blocks until an event of this type (XCB_BUTTON_PRESS ...) comes and drops those before it. False at the deadline.
  [[nodiscard]] bool waitForEvent(std::uint8_t type, std::chrono::milliseconds deadline);

 private:
  xcb_connection_t* connection_;
  const xcb_screen_t* screen_;
};

}  // namespace support
