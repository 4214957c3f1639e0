// A real annotation program, gromit-mpx, and a user who draws with it.
//
// Ownership: it ends with the object. It is ready, with nothing drawn, when the constructor returns, or that throws.
#pragma once

#include <string>

#include "Tests/Support/Desktop.h"
#include "Tests/Support/Input.h"

namespace support {

struct Stroke {
  int fromX = 0;
  int fromY = 0;
  int toX = 0;
  int toY = 0;
};

class GromitMpx {
 public:
  // Every stroke has this colour, 0xRRGGBB, and this width in pixels. The program makes its window a quarter
  // transparent when a compositing manager starts or stops while it runs; the ink is opaque otherwise.
  explicit GromitMpx(const std::string& display, std::uint32_t ink = defaultInk, int strokeWidth = 8);

  static constexpr std::uint32_t defaultInk = 0xff00ff;

  // Turns painting on, draws with the mouse, turns painting off. The program has taken all of it in when this returns;
  // it shows up on the screen soon after.
  void draw(const std::vector<Stroke>& strokes);
  // Asks the program to wipe everything.
  void clear();
  // The program's drawing window; it stays the same for the program's life.
  [[nodiscard]] xcb_window_t window() const { return window_; }

 private:
  void setPainting(bool on);

  PrivateHome home_;
  XClient client_;
  Input input_;
  std::optional<ChildProcess> process_;
  xcb_window_t window_ = XCB_NONE;
};

}  // namespace support
