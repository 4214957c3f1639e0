// A canvas that remembers what was drawn on it.
//
// Threads: main thread only. Units and axes: those of the port.
#pragma once

#include <span>
#include <string>
#include <variant>
#include <vector>

#include "Platform/Canvas.h"

namespace platform::simulated {

struct EvenOddFill {
  std::vector<Rect> rects;
  Color color;
  friend bool operator==(const EvenOddFill&, const EvenOddFill&) = default;
};

struct RoundedFill {
  Rect rect;
  double radius = 0;
  Color color;
  friend bool operator==(const RoundedFill&, const RoundedFill&) = default;
};

struct Stroke {
  Rect rect;
  double lineWidth = 0;
  Color color;
  friend bool operator==(const Stroke&, const Stroke&) = default;
};

struct DrawnText {
  std::string text;
  Point origin;
  TextStyle style;
  friend bool operator==(const DrawnText&, const DrawnText&) = default;
};

using DrawingStep = std::variant<EvenOddFill, RoundedFill, Stroke, DrawnText>;

// The size of a text here: every character is half as wide as the font's size, and one and a quarter times as high.
[[nodiscard]] Size textSize(const std::string& text, const Font& font);

class Canvas final : public platform::Canvas {
 public:
  void fillEvenOdd(std::span<const Rect> rects, const Color& color) override;
  void fillRoundedRect(const Rect& rect, double radius, const Color& color) override;
  void strokeRect(const Rect& rect, double lineWidth, const Color& color) override;
  [[nodiscard]] Size measureText(const std::string& text, const TextStyle& style) override;
  void drawText(const std::string& text, Point origin, const TextStyle& style) override;

  [[nodiscard]] const std::vector<DrawingStep>& steps() const { return steps_; }

 private:
  std::vector<DrawingStep> steps_;
};

}  // namespace platform::simulated
