// What a test sees of the fakes: plain values, colours and fonts as words, rectangles in the application's own space.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "Platform/Geometry.h"

namespace fake {

struct MenuLine {
  bool isSeparator = false;
  std::string title;
  std::string key;
  std::uint64_t mask = 0x100000;  // AppKit's own: Command
  bool enabledFlag = true;
  bool canBeChosen = false;  // by AppKit's automatic enabling
  bool hasAction = false;
  std::int64_t state = 0;
  std::int64_t tag = 0;
  std::vector<MenuLine> submenu;
  friend bool operator==(const MenuLine&, const MenuLine&) = default;
};

struct BarLook {
  double length = 0;
  std::string symbol;  // empty without an image
  std::string description;
  bool isTemplate = false;
  std::string toolTip;
  friend bool operator==(const BarLook&, const BarLook&) = default;
};

struct LayerLook {
  platform::Rect frame;
  std::string gravity;
  std::vector<int> frames;  // numbers of those that were enqueued since the last flush
  int flushes = 0;
  bool didAnimate = false;
};

struct ViewLook {
  std::string kind;
  platform::Rect frame;
  platform::Rect bounds;
  std::uint64_t resizeMask = 0;
  bool isHidden = false;
  bool hasLayer = false;
  bool hasBitmap = false;  // to draw in, as large as the view
  std::string background;  // of the layer
  double borderWidth = 0;
  std::string border;
  std::string text;
  std::string font;
  std::string textColor;
  bool isTextCentred = false;
  bool isCentred = false;  // in its superview, by constraints in both directions
  std::vector<std::string> cursors;
  std::vector<ViewLook> subviews;
  std::vector<LayerLook> sublayers;
};

struct WindowLook {
  platform::Rect frame;
  std::int64_t level = 0;
  std::uint64_t behavior = 0;
  std::uint64_t styleMask = 0;
  std::uint64_t backing = 0;
  bool isDeferred = false;
  std::optional<bool> ignoresMouse;  // unless it was set, by what the pointer finds
  bool hasShadow = true;
  bool isOpaque = true;
  std::string background;
  bool isReleasedWhenClosed = true;
  bool isMovable = true;
  std::int64_t animation = 0;
  std::optional<std::uint64_t> sharing;  // unless it was set, the system's own
  bool canBecomeKey = false;
  bool canBecomeMain = false;
  bool isKey = false;
  ViewLook content;
};

struct AlertLook {
  std::string message;
  std::string information;
  std::vector<std::string> buttons;
  bool wasActive = false;  // the application was in front when it came
  friend bool operator==(const AlertLook&, const AlertLook&) = default;
};

struct AboutLook {
  std::string name;
  std::string applicationVersion;
  std::string version;
  std::string credits;
  std::string font;
  std::string color;
  friend bool operator==(const AboutLook&, const AboutLook&) = default;
};

struct HotKeyLook {
  std::uint32_t code = 0;
  std::uint32_t modifiers = 0;
  std::uint32_t signature = 0;
  std::uint32_t number = 0;
  friend bool operator==(const HotKeyLook&, const HotKeyLook&) = default;
};

enum class StreamPhase { made, starting, running, failed, stopping, stopped };

struct StreamLook {
  int number = 0;  // in the order in which they were made, from 1
  StreamPhase phase = StreamPhase::made;
  bool isAlive = true;
  std::uint32_t display = 0;
  std::vector<std::uint32_t> excluded;
  platform::Rect source;
  std::uint64_t width = 0;
  std::uint64_t height = 0;
  std::string interval;
  std::uint32_t pixelFormat = 0;
  bool showsCursor = false;
  std::int64_t queueDepth = 0;
};

}  // namespace fake
