// What a view draws on.
//
// Threads: main thread only. A canvas is valid for the one `draw` call that receives it.
// Units and axes: points in the view's own space, origin at its bottom-left corner, y up.
#pragma once

#include <span>
#include <string>

#include "Platform/Color.h"
#include "Platform/Geometry.h"

namespace platform {

enum class FontWeight { regular, medium, semibold };
enum class FontDesign { system, monospacedDigits };

struct Font {
  double size = 0;  // points
  FontWeight weight = FontWeight::regular;
  FontDesign design = FontDesign::system;
  friend bool operator==(const Font&, const Font&) = default;
};

struct TextStyle {
  Font font;
  Color color;
  friend bool operator==(const TextStyle&, const TextStyle&) = default;
};

class Canvas {
 public:
  virtual ~Canvas() = default;
  // Fills all these rectangles as one path, by the even-odd rule: where two overlap there is a hole.
  virtual void fillEvenOdd(std::span<const Rect> rects, const Color& color) = 0;
  virtual void fillRoundedRect(const Rect& rect, double radius, const Color& color) = 0;
  // The line is centred on the rectangle's edges.
  virtual void strokeRect(const Rect& rect, double lineWidth, const Color& color) = 0;
  [[nodiscard]] virtual Size measureText(const std::string& text, const TextStyle& style) = 0;
  // `origin` is the bottom-left corner of the text's box, whose size `measureText` returns.
  virtual void drawText(const std::string& text, Point origin, const TextStyle& style) = 0;
};

}  // namespace platform
