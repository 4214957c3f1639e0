// The content of the demonstration: a presenter's slide with a counter and a bar chart that change with every step.
//
// It is the background of an ordinary window, so the X server keeps it painted whatever lies above it.
#pragma once

#include <string>

#include "Tests/Support/XClient.h"

namespace demo {

class Slide {
 public:
  // Covers the whole screen, as a presentation does.
  explicit Slide(const std::string& display);

  // Shows the next state; when this returns, it is on the screen, or beneath whatever covers it.
  void advance();
  [[nodiscard]] int step() const { return step_; }
  // What the slide itself looks like now, whatever lies above it.
  [[nodiscard]] support::Picture picture() { return client_.contents(canvas_, client_.screenFrame()); }

 private:
  void paint();
  void paintDigit(int digit, int x, int y);

  support::XClient client_;
  xcb_window_t window_;
  xcb_pixmap_t canvas_;
  int step_ = 0;
};

}  // namespace demo
