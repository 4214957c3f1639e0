// A real annotation program, gromit-mpx, and a user who draws with it.
//
// Ownership: the program ends with the object.
// Failure: the program is ready, with nothing drawn, when the constructor returns, or the constructor throws.
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
  // transparent if a compositing manager starts or stops while it runs; otherwise the ink is opaque.
  explicit GromitMpx(const std::string& display, std::uint32_t ink = defaultInk, int strokeWidth = 8);

  static constexpr std::uint32_t defaultInk = 0xff00ff;

  // Turns painting on, draws with the mouse, and turns painting off. When this returns, the program has taken it all
  // in; it shows on the screen soon after.
  void draw(const std::vector<Stroke>& strokes);
  // Tells the program to clear everything.
  void clear();
  // The program's drawing window; the same for the program's whole life.
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
