// What a click-through window shows, flattened from its views: a background, a live picture, one line of text and a
// border. Listed back to front.
//
// Threads: plain values. Units and axes: points in the window's own space, origin at its bottom-left corner, y up.
#pragma once

#include <optional>
#include <string>

#include "Platform/Canvas.h"
#include "Platform/Color.h"
#include "Platform/Geometry.h"

namespace platform::linux::views {

struct LabelContent {
  std::string text;
  TextStyle style;
  friend bool operator==(const LabelContent&, const LabelContent&) = default;
};

// A line inside the window's edges.
struct BorderContent {
  double width = 0;
  Color color;
  friend bool operator==(const BorderContent&, const BorderContent&) = default;
};

struct OverlayContent {
  Color background = colors::clear;   // clear: the window's own background shows
  std::optional<Rect> pictureLayer;   // where live frames go, stretched to fill it
  std::optional<LabelContent> label;  // centred in the window
  std::optional<BorderContent> border;
  friend bool operator==(const OverlayContent&, const OverlayContent&) = default;
};

}  // namespace platform::linux::views
